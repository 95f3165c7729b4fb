// Loading objects into the rename list. Every way of adding (chosen files or folders, a
// list file, the typed path, traversing the listed folders again) runs the same steps:
// gather candidates, expand folders, drop duplicates, filter by name, append the rows,
// then re-run the command list.
#pragma once

#include <QString>
#include <QStringList>
#include <vector>

#include "platform/FileSystem.h"

namespace qp {

class Session;

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
    struct Candidate {
        QString folder;  // shared between the candidates of one folder
        QString name;
        platform::FileInfo info;
    };
    using Candidates = std::vector<Candidate>;

    bool confirmPendingImport();
    void rememberPathText();
    LoadResult run(const QStringList& paths);
    LoadResult finish(Candidates candidates, LoadResult result);
    bool gather(const QStringList& paths, Candidates& out, LoadResult& result);
    bool expandFolder(const QString& folder, Candidates& out, LoadResult& result, const QString& caption);
    bool removeDuplicates(Candidates& candidates, LoadResult& result);
    void filter(Candidates& candidates, LoadResult& result);
    void appendRows(Candidates& candidates, LoadResult& result);
    void reportSkipped(const QString& text, LoadResult& result);
    bool tick(qsizetype done, qsizetype total, const QString& caption);

    Session& m_session;
    bool m_recursive = false;
    bool m_folderRows = true;
};

}  // namespace qp
