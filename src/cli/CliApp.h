// The command-line tool's logic, kept out of main() so that tests can drive it.
//   quillet [--settings FILE] [--set "Section/Key=Value"]... COMMAND [options] [PATH...]
//   quillet fields [--format tsv|json] PATH...
//
// Each run builds one Session as the desktop program does, from a copy of the settings
// file held in memory (nothing is ever written back to it), answers every question the
// engine asks at once, prints the rows on standard output and the message log on
// standard error.
#pragma once

#include <QString>
#include <QStringList>
#include <QTextStream>
#include <functional>
#include <optional>

#include "core/SettingsStore.h"

namespace qp {
class CommandRegistry;
class Session;
class FileOperations;
class RenameList;
}  // namespace qp

namespace qp::cli {

enum ExitCode { ExitDone = 0, ExitRowsFailed = 1, ExitBadUsage = 2 };

struct SettingOverride {
    QString section;
    QString key;
    QString value;
};
// "Section/Key=Value": the section ends at the first "/", the key at the first "=" after it.
std::optional<SettingOverride> parseOverride(const QString& text);

// Rows as printed: one "state TAB full path TAB new file name" line each, paths with the
// platform's separators; or one JSON array of objects.
void writeRowsAsTsv(const RenameList& list, QTextStream& out);
QByteArray rowsAsJson(const RenameList& list);
// The JSON objects' fields as CSV with a header line ("--format csv"), CR LF ended.
QString rowsAsCsv(const RenameList& list);

// Snapshot files are named "AutoSnapshot/[yyyymmddhhmmsszzz]/N.txt": a later run has a
// greater stamp, and within a run a later apply a greater N. Whether `a` is newer than `b`.
bool isNewerSnapshot(const QString& a, const QString& b);
// What undo takes without --snapshot: the newest unfinished journal, else the newest
// snapshot under settingsFolder + "AutoSnapshot/"; empty when there is none.
QString snapshotToUndo(const QString& settingsFolder, FileOperations& ops);

class CliApp {
public:
    // Registers the command families the pipeline knows; called once per run.
    using FamilyRegistrar = std::function<void(CommandRegistry&)>;

    CliApp(QTextStream& out, QTextStream& err, FamilyRegistrar registrar = {})
        : m_out(out), m_err(err), m_registrar(std::move(registrar))
    {
    }

    // `arguments` includes the program name first, as QCoreApplication::arguments() does.
    int run(const QStringList& arguments);

private:
    int fail(const QString& message);
    // "fields": every metadata field of each file, as TSV (path, tag, value) or JSON.
    int printFields(const Session& session, const QStringList& paths, bool json);

    QTextStream& m_out;
    QTextStream& m_err;
    FamilyRegistrar m_registrar;
};

}  // namespace qp::cli
