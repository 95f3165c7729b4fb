// A1101 "文件名对照列表更名": new names from a list of old/new pairs.
//
// The list is kept in the command's section, one line per key: "A11_NameListLinesCount" = n,
// then "A11_NLLine1" … "A11_NLLine<n>". A line is "old=new" or "old<TAB>new" (a TAB wins
// over "="), with "<61>" standing for an "=" inside a name; blanks around each part, empty
// lines and lines beginning with ";" are ignored. An old part that is a full path is matched
// against the row's full path on disk, any other old part against the row's name with
// extension; both with the platform's path rules (letter case ignored on Windows). The new
// part is a whole file name with its extension; of a path only the last part is used.
#pragma once

#include <QString>
#include <QStringList>
#include <memory>
#include <optional>

namespace qp {

class CompiledCommand;
class SettingsStore;
struct CommandSection;

namespace renamelist {

inline const QString kLinesCountKey = QStringLiteral("A11_NameListLinesCount");
inline const QString kLineKeyPrefix = QStringLiteral("A11_NLLine");

struct Pair {
    QString oldText;  // a full path ('/'-separated) or a name with extension
    QString newName;  // a name with extension, never a path
    bool byPath = false;
};

// The pair a list line gives; nothing for a line to skip (empty, comment) or one that
// cannot be used (no separator, an empty part, an old part that is a relative path).
// `skipped` tells the two apart.
std::optional<Pair> parseLine(QStringView line, bool* skipped = nullptr);

// The list's lines as stored in a command section.
QStringList readLines(const SettingsStore& store, const QString& section);
// Stores `lines` in a command section, removing numbered keys an earlier, longer list left.
void writeLines(SettingsStore& store, const QString& section, const QStringList& lines);

// A list file: UTF-8 with or without a byte-order mark, or UTF-16 with one. `error` holds
// the message for the user when the file cannot be used; `lines` is empty then.
struct FileText {
    QStringList lines;
    QString error;
};
FileText readFile(const QString& fileName);

// The compiled command: the list hashed once per run by its comparison keys.
std::unique_ptr<CompiledCommand> compile(const CommandSection& section);

}  // namespace renamelist
}  // namespace qp
