// The extension family: commands E101 to E705, which change a row's extension and, by
// splitting the rebuilt whole name again at its last dot, can move text between the name
// and the extension.
#pragma once

#include <QString>
#include <QStringList>

namespace qp {

class CommandRegistry;

// The sub-codes this family serves.
QStringList extensionCommandCodes();

// The description ("CMDComment") a page stores with the sub-code, empty for other codes.
// E601 is described as E501 is ("扩展名正则表达式"); the command list shows both so.
QString extensionCommandComment(const QString& code);

// Registers a factory for every extension sub-code. Each factory reads its section once per
// run (patterns compiled, file-type database loaded) and the result is applied to many rows.
void registerExtensionCommands(CommandRegistry& registry);

}  // namespace qp
