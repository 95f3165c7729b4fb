// The advanced family's first commands: A1 regular expressions on the whole name or on the
// name only, A3 Chinese characters to pinyin, A4 digits, Chinese numerals and number symbols,
// and A11 renaming from an old/new list (see RenameFromList.h for its list).
#pragma once

#include <QString>
#include <QStringList>

namespace qp {

class CommandRegistry;

// The sub-codes this family serves so far.
QStringList advancedCommandCodes();

// The description ("CMDComment") a page stores with the sub-code, empty for other codes.
QString advancedCommandComment(const QString& code);

// Registers a factory for every advanced sub-code. Each factory reads its section once per
// run (patterns compiled, readings rendered, the old/new list hashed) and the result is
// applied to many rows.
void registerAdvancedCommands(CommandRegistry& registry);

}  // namespace qp
