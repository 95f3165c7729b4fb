// Rename programme files: the rename list written as "old full path=new file name" lines
// under "[Rename Programme]", and read back (from a programme or a snapshot file, which
// share the form) into a fresh rename list whose new names are the file's.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QStringView>
#include <functional>
#include <vector>

namespace qp {

class RenameList;
class Session;

// The settings key ("Interface Config") of the folder the export and import dialogs open in.
extern const QString kProgrammeFolderKey;

// The whole file an export writes: UTF-8 with BOM, CR LF line ends.
QByteArray programmeFileBytes(const RenameList& list);

// One "key=value" line as it stands, split at its first "=".
struct ProgrammeLine {
    QString oldPath;
    QString newName;
};

// A rename programme, snapshot or journal as written; programmes and snapshots share this
// one reader. A key is kept exactly as written but for blanks before it (a full path never
// begins with one), the value is everything after the first "=", and both are still in
// their written form (see text::fromNameField). Comment lines (";" or "#"), lines without
// "=" and other sections are passed over; a section may appear more than once.
struct RenameFileText {
    std::vector<ProgrammeLine> config;     // [Rename Config]
    std::vector<ProgrammeLine> programme;  // [Rename Programme], in file order, repeats kept
    std::vector<ProgrammeLine> plan;       // [Rename Plan]
    std::vector<QString> journal;          // [Rename Journal]: every non-empty line as written
    bool hasJournal = false;
};
RenameFileText readRenameFile(QStringView text);

// The same reading, handing each line over in place instead of copying it: `entry` gets
// the section and, for key=value lines, the key and the value (journal lines: the whole
// line as `value` and an empty key).
enum class RenameSection { Config, Programme, Plan, Journal };
void forEachRenameFileLine(QStringView text,
                           const std::function<void(RenameSection, QStringView key, QStringView value)>& entry);

// The imported texts: "<61>", "<13>" and "<10>" become "=", CR and LF, then control
// characters and * / < > ? | go. The old path keeps the platform's separator so that full
// paths survive, and CR and LF, which only an escape can have put there (they are part of
// the object's real name); a new name keeps neither, so an imported line can only rename an
// object where it is.
QString cleanProgrammePath(QStringView raw);
QString cleanProgrammeName(QStringView raw);

struct ProgrammeImport {
    enum class Outcome {
        Imported,
        Cancelled,     // the question was answered Cancel, or a stop was requested
        Unreadable,    // the file could not be read
        NotUtf8,
        NoEntries,     // no "Rename Programme" line: a format error
        NothingFound,  // every listed object is missing
    };
    Outcome outcome = Outcome::Cancelled;
    qsizetype loaded = 0;        // rows now in the list
    qsizetype missingCount = 0;  // lines whose object does not exist
    qsizetype repeated = 0;      // lines naming an object an earlier line already named
    QStringList missing;         // "对象不存在：" lines, the first few hundred
};

class ProgrammeFile {
public:
    explicit ProgrammeFile(Session& session) : m_session(session) {}

    // Writes the rename list to `fileName` (whole, through a temporary file). False for an
    // empty list (nothing is written) or when the file could not be written.
    bool exportTo(const QString& fileName);
    // Replaces the command list and the rename list with the objects of the file and their
    // new names, leaving them to be applied.
    ProgrammeImport importFrom(const QString& fileName);

private:
    void rememberFolder(const QString& fileName);

    Session& m_session;
};

}  // namespace qp
