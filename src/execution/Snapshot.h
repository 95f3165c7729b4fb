// Snapshot files: the record of one apply from which it can be undone, and the journal
// that the same file is while the apply (or an undo) runs.
//
// Format (UTF-8 with byte-order mark, CR LF, ini form; in names "=" is written "<61>", CR
// "<13>" and LF "<10>"):
//
//   ;… comment header …
//   [Rename Config]
//   FoundExist=0|1
//   FoundExistAndExchange=0|1
//   Unfinished=1                 only while the batch runs (or when it was killed)
//
//   [Rename Programme]
//   <where the object is>=<the name to give back>     one line per row, in row order
//
//   [Rename Plan]                only while a batch runs
//   <from>=<to>                  every rename of the batch, in order, full paths; a
//   *<from>=<to>                 leading "*" marks a folder
//
//   [Rename Journal]             only while a batch runs
//   ^p                           the plan's first p renames put everything under temporary
//                                names; the rest start only once all of those are marked
//   +k  /  -k                    rename k of the plan (from 1) was made / failed
//   !k                           the plan was given up at rename k: k and later never ran
//   <from>=<to>                  a rename outside the plan (putting a temporary name back),
//                                numbered after the plan; written before it is made
//
// The plan is on disk, synced, before the first rename; the marks follow in batches. So
// however the batch ended, where every object is can be worked out: a marked rename is known,
// and the few unmarked ones at the end are decided by looking at the disk (a rename that
// never replaces leaves its target there and its source gone, and nothing else does).
// Readers of rename programmes see only "[Rename Programme]", which while the batch runs
// names the objects where they were before it, each with its own name: importing it changes
// nothing.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <chrono>
#include <functional>
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

struct PlannedMove {
    QString from;  // full paths, '/'-separated
    QString to;
    bool folder = false;
};

struct SnapshotData {
    bool foundExist = false;
    bool foundExistAndExchange = false;
    bool unfinished = false;
    std::vector<SnapshotLine> lines;
    // Only in an unfinished journal: the plan, then the renames outside it, and what the
    // marks say of each (indices from 0).
    std::vector<PlannedMove> moves;
    qsizetype planMoves = 0;           // how many of `moves` the plan holds
    qsizetype firstPass = 0;           // how many of them go to temporary names
    std::vector<qsizetype> made;
    std::vector<qsizetype> failed;
    std::vector<qsizetype> givenUp;    // "!k": plan renames from k on never ran
};

// The whole file; an unfinished one ends with its journal section, to which the marks are
// appended.
QByteArray snapshotBytes(const SnapshotData& data);
// The pieces a batch writes its file from without building SnapshotData: the header up to
// and including the "[Rename Programme]" heading, one programme line (the object at
// folder + name, the name to give back), the heading of the plan. snapshotHead: the header
// with the data's lines.
QByteArray snapshotHeader(bool foundExist, bool foundExistAndExchange, bool unfinished);
void appendProgrammeLine(QByteArray& out, const QString& folder, const QString& name, const QString& giveBack);
void appendPlanHeading(QByteArray& out);
QByteArray snapshotHead(const SnapshotData& data);
// One line of the plan, or of a rename outside it; the second form for a rename inside
// `folder` (ending with '/').
void appendMoveLine(QByteArray& out, const QString& from, const QString& to, bool folder);
void appendMoveLine(QByteArray& out, const QString& folder, const QString& fromName, const QString& toName,
                    bool isFolder);

// Reads a snapshot or journal (names decoded, separators made internal). nullopt when the
// text has no "[Rename Programme]" line.
std::optional<SnapshotData> parseSnapshot(QStringView text);
// The snapshot or journal file at `path`, read as UTF-8; nullopt when it cannot be read or
// is not a snapshot.
std::optional<SnapshotData> readSnapshot(const QString& path, FileOperations& ops);

// Where each line's object is now: the renames the journal marks as made applied to the
// lines, the unmarked ones decided on disk. A renamed folder carries the lines below it.
std::vector<SnapshotLine> resolveJournal(const SnapshotData& data, FileOperations& ops);

// Keeps the journal of one batch: the plan written whole and synced before the first
// rename, the marks after it in batches (at most every kMarksPerWrite renames or
// kMarkInterval), the file rewritten whole at the end.
class Journal {
public:
    static constexpr qsizetype kMarksPerWrite = 1024;
    static constexpr std::chrono::milliseconds kMarkInterval{100};

    explicit Journal(FileOperations& ops) : m_ops(ops) {}
    // Closes the file without writing what is pending, as a killed process would.
    ~Journal();
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;

    // Fills a file in order into `out`; `spill` hands what has gathered in `out` to the file
    // once there is enough of it, so that a large file is never held whole.
    using Producer = std::function<void(QByteArray& out, const std::function<void()>& spill)>;

    // Writes what `produce` makes (an unfinished header, the programme, the plan heading and
    // `planMoves` plan lines, of which the first `firstPass` go to temporary names) and the
    // journal heading to `path`, synced, and opens it for the marks.
    bool begin(const QString& path, const Producer& produce, qsizetype planMoves, qsizetype firstPass,
               QString* error);
    // Continues the finished snapshot at `path` as the journal of its own undo: the plan
    // and the journal heading are appended and synced; the rest of the file stays.
    bool beginOnFinished(const QString& path, const QByteArray& planLines, qsizetype firstPass);
    bool active() const { return m_active; }
    qsizetype moveCount() const { return m_moves; }

    // Rename k was tried; `made`: it happened.
    void mark(qsizetype k, bool made);
    // Writes the marks still pending: due before the renames that depend on them start (the
    // end of the first pass).
    bool flush();
    // The plan ends here: renames k and later were never tried.
    bool giveUpAt(qsizetype k);
    // A rename outside the plan, written before it is made; its number, or -1 when the line
    // could not be written (then the rename must not be made).
    qsizetype extraMove(const QString& from, const QString& to, bool folder);
    // Rewrites the file whole as `finished` (no plan or journal left in it), or as the bytes
    // of such a file.
    bool finish(const SnapshotData& finished, QString* error);
    bool finish(const Producer& produce, QString* error);
    // Deletes the file: nothing that it records is left to undo.
    void discard();

private:
    bool writeInPieces(const QString& path, const Producer& produce, qsizetype firstPass, bool journalHeading,
                       QString* error);
    bool openForMarks(const QString& path, qsizetype moves);

    FileOperations& m_ops;
    QString m_path;
    bool m_active = false;
    qsizetype m_moves = 0;
    QByteArray m_pending;
    qsizetype m_pendingCount = 0;
    std::chrono::steady_clock::time_point m_lastWrite;
};

// The unfinished journals under settingsFolder + "AutoSnapshot/" (every run), for the GUI
// and the command line to offer at start-up.
QStringList findUnfinishedJournals(const QString& settingsFolder, FileOperations& ops);

}  // namespace qp
