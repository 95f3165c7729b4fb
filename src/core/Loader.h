// Loading objects into the rename list. Every way of adding (chosen files or folders, a
// list file, the typed path, traversing the listed folders again) runs the same steps:
// gather candidates, expand folders, drop duplicates, filter by name, append the rows,
// then re-run the command list.
#pragma once

#include <QHash>
#include <QString>
#include <QStringList>
#include <vector>

#include "core/FileEntry.h"
#include "platform/FileSystem.h"

namespace qp {

class RenameList;
class Session;

// The objects found by one load, already in the form of rows so that they can join the
// list without another copy.
struct LoadCandidates {
    std::vector<FileEntry> rows;
    std::vector<QString> keys;  // comparison keys, when duplicate removal has made them
    qsizetype size() const { return qsizetype(rows.size()); }
    bool empty() const { return rows.empty(); }
};

// Drops the candidates whose path the list already knows and, when `mayRepeat`, repeats
// within the candidates (a folder and a file in it chosen together, repeated list lines):
// two rows for one object could only fail later. Keeps order and fills in the keys of the
// rows that stay; returns how many went.
qsizetype dropKnownAndRepeated(LoadCandidates& candidates, const RenameList& list, bool mayRepeat);

// A row for an object found on disk: name split from the extension, state "loaded",
// new name equal to the current one. Extensions are shared between rows by `extensions`.
class RowMaker {
public:
    FileEntry make(const QString& folder, QStringView fileName, const platform::FileInfo& info);

private:
    QString sharedExtension(QStringView ext);
    QHash<QString, QString> m_extensions;
};

struct LoadResult {
    enum class Outcome { Loaded, NothingNew, Cancelled };
    Outcome outcome = Outcome::NothingNew;
    qsizetype added = 0;
    qsizetype vanishedRows = 0;  // rows dropped because their object is gone
    qsizetype duplicates = 0;
    qsizetype filteredOut = 0;
    qsizetype skipped = 0;       // unreadable folders, undecodable names, missing paths
};

// The usable lines of a list file: full paths of existing objects, in file order.
struct ListFileContent {
    QStringList paths;
    qsizetype relativeLines = 0;
    qsizetype undecodableLines = 0;
    bool unreadable = false;
    QString message;  // the OS's text when unreadable
};
ListFileContent readListFile(const QString& listFile);

class Loader {
public:
    explicit Loader(Session& session) : m_session(session) {}

    // Chosen files and folders, dropped objects, command-line paths: full paths, '/'-separated.
    LoadResult addPaths(const QStringList& paths);
    LoadResult addListFile(const QString& listFile);
    // The path box's text is the candidate.
    LoadResult loadTypedPath();
    // Every object below the folders that are rows of the list becomes a candidate.
    LoadResult traverseList();
    // Applies the keep/exclude boxes to the rows already listed; returns how many went.
    qsizetype filterList();

private:
    using Candidates = LoadCandidates;

    bool confirmPendingImport();
    void rememberPathText();
    LoadResult run(const QStringList& paths);
    LoadResult finish(Candidates candidates, LoadResult result);
    bool gather(const QStringList& paths, Candidates& out, LoadResult& result);
    bool expandFolder(const QString& folder, Candidates& out, LoadResult& result, const QString& caption);
    bool removeDuplicates(Candidates& candidates, LoadResult& result);
    void filter(Candidates& candidates, LoadResult& result);
    void appendRows(Candidates& candidates, LoadResult& result);
    RowMaker m_rowMaker;
    void reportSkipped(const QString& text, LoadResult& result);
    bool tick(qsizetype done, qsizetype total, const QString& caption);

    Session& m_session;
    bool m_recursive = false;
    bool m_folderRows = true;
    // Candidates of one load can repeat each other only when they come from more than one
    // chosen path; a single folder walk never lists an object twice.
    bool m_severalSources = false;
};

}  // namespace qp
