// A1201 "Pascal 脚本更名" and A1301 "Python 脚本更名": names made by the user's own scripts.
//
// The script is kept in the command's section one line per key ("A12_PascalScriptLinesCount"
// and "A12_PSLine1" …, "A13_PythonScriptLinesCount" and "A13_PYLine1" …). A Pascal script is
// compiled once per run and then run for each ticked row by the extension executor, on the
// whole name with its extension ("FileName"); its global variables keep their values from
// row to row. A Python script runs once per command after the rows, over all of them, in
// one worker process. Either way, an error leaves every row of the run as it was and is
// reported once.
#pragma once

#include <QDateTime>
#include <QHash>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <memory>

#include "script/PascalTree.h"
#include "script/PythonWorker.h"

namespace qp {

class CommandRegistry;
class Session;
class SettingsStore;
struct FileEntry;

namespace scriptcommands {

enum class Language { Pascal, Python };

QString functionCode(Language language);  // "A12", "A13"
QString subCode(Language language);       // "A1201", "A1301"
QString languageName(Language language);  // "Pascal", "Python"

// The description ("CMDComment") of a script sub-code, empty for other codes.
QString comment(const QString& code);

// The script stored in a command section; empty when there is none.
QString readScript(const SettingsStore& store, const QString& section, Language language);
void writeScript(SettingsStore& store, const QString& section, Language language, const QString& text);

// "ScriptTimeLimit" of "[Script Config]", in milliseconds.
qint64 timeLimitMs(const SettingsStore& settings);
// What a Pascal run may use, with the time limit of the settings.
pascal::Limits pascalLimits(const SettingsStore& settings);
// The worker's settings for this session: interpreter, time limit, the stop request.
python::Options pythonOptions(Session& session);
// The local wall-clock time of file times. The zone's offset is looked up once per quarter
// hour of UTC, as asking the system for every row costs more than the rest of the row.
class LocalTimes {
public:
    // Date and time as a clock in the local zone shows them (no zone attached); invalid for 0.
    QDateTime at(std::int64_t nanosecondsSinceEpoch);

private:
    QHash<qint64, int> m_offsets;
};

// A row as the Python worker receives it, with `name` and `ext` as the new name so far.
python::Row pythonRow(const FileEntry& row, qsizetype index, const QString& name, const QString& ext, LocalTimes& times);

// A compiled Pascal script and its run: the command runs it over the rows of a pipeline
// run, the page's "测试" over one row.
class PascalRenamer {
public:
    PascalRenamer(const QString& source, pascal::Limits limits);
    ~PascalRenamer();
    PascalRenamer(const PascalRenamer&) = delete;
    PascalRenamer& operator=(const PascalRenamer&) = delete;

    bool compiled() const;
    // Runs the script for row `row` of the session's list, `fileName` (the name with its
    // extension) in and out. False on a run-time error, after which the run is spent.
    bool rename(Session& session, qsizetype row, QString& fileName);
    // The compile error or the run-time error, with line and column, for the message pane.
    QString errorMessage() const;

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

void registerScriptCommands(CommandRegistry& registry);

}  // namespace scriptcommands
}  // namespace qp
