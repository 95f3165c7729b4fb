// The normal family: commands N101 to N608, the everyday edits of a row's main name (add and
// pad, replace, delete and keep, numbering, move, letter case). They never touch the
// extension. Each stored command is compiled once per run and applied to many rows.
#pragma once

#include <QString>
#include <QStringList>

namespace qp {

class CommandRegistry;
class RenameList;
class Session;

// The sub-codes this family serves, in the order of the function pages.
QStringList normalCommandCodes();

// The description ("CMDComment") a page stores with the sub-code, empty for other codes.
QString normalCommandComment(const QString& code);

// Registers a factory for every normal sub-code.
void registerNormalCommands(CommandRegistry& registry);

// The preset character sets of "删除/保留部分字符串": their names as the drop-down shows
// them, in its order. A command stores the chosen names joined by ";" (with a trailing ";"
// when only one is chosen, so that a stored value without ";" means "none chosen").
QStringList presetCharsetNames();
QString joinPresetCharsets(const QStringList& names);
QStringList splitPresetCharsets(const QString& stored);

// "获取列表最长": the length, in UTF-16 code units, of the longest current main name.
qsizetype longestNameLength(const RenameList& list);

// "赋值到": copies the number each row took in the latest numbering run (empty for rows that
// took none) into user list n (0-9), replacing what it held. False when no numbering
// command has run yet.
bool assignNumbersToUserList(Session& session, int n);

}  // namespace qp
