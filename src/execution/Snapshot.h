// Snapshot files: the record of one apply from which it can be undone, and the journal
// that the same file is while the apply runs.
//
// Format (UTF-8 with byte-order mark, CR LF, ini form, "=" in a name written "<61>"):
//
//   ;… comment header …
//   [Rename Config]
//   FoundExist=0|1
//   FoundExistAndExchange=0|1
//   Unfinished=1                 only while the apply runs (or when it was killed)
//
//   [Rename Programme]
//   <where the object is>=<the name to give back>     one line per row, in row order
//
//   [Rename Journal]             only while the apply runs
//   <from>=<to>                  written before each rename
//   +  or  +D                    written after it succeeded (+D: it was a folder)
//
// A finished snapshot has the first two sections only. While unfinished, "[Rename
// Programme]" says where every object was when the journal was started, and the journal
// lists the renames since then in order, so where every object is can be worked out
// however the run ended: every rename before the last one is marked done or not, and the
// last one is looked up on disk. Readers of rename programmes see only the second section,
// which names existing objects with their own names, so importing it changes nothing.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <optional>
#include <vector>

namespace qp {

class FileOperations;

// The name of a first-pass temporary: this prefix before the object's whole name.
inline const QString kTemporaryPrefix = QStringLiteral(",FRP,");

// settingsFolder + "AutoSnapshot/" + runStamp + "/" + counter + ".txt"; the folder ends with '/'.
QString snapshotFolder(const QString& settingsFolder, const QString& runStamp);
QString snapshotPath(const QString& settingsFolder, const QString& runStamp, int counter);

struct SnapshotLine {
    QString path;  // where the object is, '/'-separated
    QString name;  // the name to give it back (with extension, without folder)
};

struct JournalMove {
    QString from;
    QString to;
    bool done = false;       // marked done in the journal
    bool folder = false;     // marked done as a folder
};

struct SnapshotData {
    bool foundExist = false;
    bool foundExistAndExchange = false;
    bool unfinished = false;
    std::vector<SnapshotLine> lines;
    std::vector<JournalMove> moves;  // only in an unfinished journal
};

// The whole file. An unfinished journal ends with the "[Rename Journal]" heading, to which
// journalMove() and journalDone() lines are appended.
QByteArray snapshotBytes(const SnapshotData& data);
QByteArray journalMove(const QString& from, const QString& to);
QByteArray journalDone(bool folder);

// Reads a snapshot or journal ("<61>" decoded, separators made internal). nullopt when the
// text has no "[Rename Programme]" line.
std::optional<SnapshotData> parseSnapshot(QStringView text);
// The snapshot or journal file at `path`, read as UTF-8; nullopt when it cannot be read or
// is not a snapshot.
std::optional<SnapshotData> readSnapshot(const QString& path, FileOperations& ops);

// Where each line's object is now: the journal's renames applied to the lines, the last
// unconfirmed one decided by looking at the disk (its target there and its source gone).
// A renamed folder carries the lines below it along.
std::vector<SnapshotLine> resolveJournal(const SnapshotData& data, FileOperations& ops);

// Keeps the journal of one batch: started whole before the first rename, one line
// written before each rename and a mark after each confirmed one, rewritten whole at the end.
class Journal {
public:
    explicit Journal(FileOperations& ops) : m_ops(ops) {}
    ~Journal();
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    // Writes `start` (marked unfinished) to `path` and opens it for the lines that follow.
    bool begin(const QString& path, SnapshotData start, QString* error);
    // Continues the finished snapshot at `path` as the journal of its own undo: the
    // journal section is appended, the rest of the file stays as it is.
    bool beginOnFinished(const QString& path);
    bool active() const { return m_active; }
    // Before a rename: where from, where to. False when the line could not be written
    // (the rename must then not be made).
    bool move(const QString& from, const QString& to);
    // After the rename was seen to have happened.
    void confirm(bool folder) { m_pendingDone = folder ? 2 : 1; }
    // Rewrites the file whole as `finished` (no journal left in it).
    bool finish(const SnapshotData& finished, QString* error);
    // Deletes the file: nothing that it records is left to undo.
    void discard();

private:
    FileOperations& m_ops;
    QString m_path;
    bool m_active = false;
    int m_pendingDone = 0;  // 0 none, 1 file, 2 folder
};

// The unfinished journals under settingsFolder + "AutoSnapshot/" (every run), for the GUI
// and the command line to offer at start-up.
QStringList findUnfinishedJournals(const QString& settingsFolder, FileOperations& ops);

}  // namespace qp
