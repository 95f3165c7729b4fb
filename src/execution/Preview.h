// Preview: turns the proposed names of the rename list into names that can really be given
// on disk, numbers duplicates, marks rows whose new name is the current name of another
// object that is itself being renamed, and finds out whether those conflicts form a cycle.
// It changes nothing on disk. Rename execution runs it first and consumes its result.
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

#include "core/FileEntry.h"

namespace qp {

class Session;
class SettingsStore;

struct PreviewResult {
    // Every row's current full path, at the row's index ("RowPathIndex").
    std::vector<QString> rowPaths;
    // pathKey(rowPaths[i]) -> i, for look-ups by path.
    QHash<QString, qsizetype> rowByKey;
    // Row indices of the files and of the folders, in row order (every row, changed or not).
    std::vector<qsizetype> fileWork;
    std::vector<qsizetype> folderWork;
    // Some checked row's target is the current name of another object being renamed.
    bool foundExist = false;
    // Those conflicts cannot be ordered: they form a cycle.
    bool foundExistAndExchange = false;
    std::vector<qsizetype> conflictRows;
    QStringList conflictMessages;
    bool stopped = false;  // the user stopped the preview
    bool simple = false;   // simple rename: names were not checked
    bool ran = false;      // false when preview did not run (wrong page, empty list)
};


// The settings that number a duplicate target: "photo.jpg" -> "photo(2).jpg".
struct DuplicateNumbering {
    enum Kind { Digits = 0, LowerLetters = 1, UpperLetters = 2 };
    int kind = Digits;
    qint64 start = 2;
    qint64 increase = 1;
    int width = 1;  // the number text is padded on the left to this many characters
    QString left = QStringLiteral("(");
    QString right = QStringLiteral(")");

    // The "FileNameSame…" keys of "Operation Config".
    static DuplicateNumbering fromSettings(const SettingsStore& settings);
    // The number as text: decimal, or base 26 with "a"/"A" for 0, padded to `width`.
    QString numberText(qint64 number) const;
};

// Turns a proposed name into one that can be given on disk. Under the Windows rules an
// extension of exactly "." goes, control characters and * / : < > ? \ | are deleted (the
// double quote stays), and trailing dots and spaces and leading spaces are dropped.
// Otherwise only '/' and NUL are deleted and everything else stays as it is. An empty
// result (or "." or "..") becomes `emptyName` without extension, and a file's result is
// split again at its last dot.
NameParts cleanNewName(const QString& newName, const QString& newExt, bool isFolder, const QString& emptyName,
                       bool windowsRules);

// Whether names follow the Windows rules: always on Windows, elsewhere when the setting
// "WindowsSafeNames" asks for names that also work there.
bool windowsNameRules(const SettingsStore& settings);

// Whether the moves, given as each row's successor (the row whose current path is its
// target, or -1), form a cycle, so that no rename order frees every target first.
// Self-successors are ignored. O(n).
bool hasRenameCycle(const std::vector<qsizetype>& successor);

// Preview of the whole rename list ("预览更名结果"). Execution runs it before it renames.
class Preview {
public:
    explicit Preview(Session& session);

    // Whether a path names an object on disk; by default the disk, read through folder
    // listings for folders with many targets; replaced by benchmarks.
    using DiskCheck = std::function<bool(const QString& fullPath)>;
    void setDiskCheck(DiskCheck check)
    {
        m_exists = std::move(check);
        m_diskCheckReplaced = true;
    }

    // Re-runs the commands where the settings ask for it, cleans every row's new name,
    // numbers duplicates, records conflicts and looks for a cycle among them. In simple
    // rename only the work lists are built.
    PreviewResult run(bool simpleRename);

private:
    struct RunState;
    qsizetype validateRow(RunState& state, qsizetype row);
    QString numbered(RunState& state, const QString& folder, const QString& name, const QString& ext);
    void numberTaken(RunState& state, const QString& folder, NameParts& clean, bool reserved);
    bool findCycle(const PreviewResult& result);

    Session& m_session;
    DiskCheck m_exists;
    bool m_diskCheckReplaced = false;
};

}  // namespace qp
