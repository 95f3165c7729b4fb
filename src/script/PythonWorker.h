// Python scripts run in a separate interpreter process, one per run: the rows go to it as
// JSON on standard input, the new names come back as JSON on standard output, and nothing
// changes unless the answer is complete and well-formed.
//
// The user's script defines `rename(rows)`, which changes row["name"] and row["extension"]
// of the rows it is given (a list of dicts), or `rename_one(row)`, called for each selected
// row, which changes the row or returns its new name. A small wrapper of ours loads the
// script, calls the function and writes the answer; whatever the script prints goes to
// standard error, whose lines the caller shows in the message pane.
#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <functional>
#include <vector>

namespace qp::python {

struct Row {
    qsizetype index = 0;
    QString name;       // the name so far, without extension
    QString extension;  // with its dot
    QString folder;     // with its trailing separator
    QString diskName;   // the object's name with extension on disk; "path" is folder + diskName
    bool selected = true;
    qint64 size = 0;
    QString modified;  // local time as "2024-05-01T09:30:15", empty when unknown
};

struct NewName {
    QString name;
    QString extension;
};

struct Options {
    // The setting "PythonExe": a program, or empty for the platform's usual names.
    QString configuredInterpreter;
    qint64 timeLimitMs = 30'000;
    // Polled while the script runs (where a GUI pumps its events); true stops the script.
    std::function<bool()> stopRequested;
};

struct Result {
    bool ok = false;
    std::vector<NewName> names;  // one per row, when ok
    QString error;               // why nothing changes, in the program's words
    QStringList errorOutput;     // the lines the script wrote to standard error
    bool interpreterMissing = false;
};

// The interpreters to try in order, each as program and leading arguments: the configured
// one alone when set, else "python3" (Linux), or "py -3" then "python" (Windows).
QList<QStringList> interpreterCandidates(const QString& configured);

// The JSON the worker reads: {"script": …, "folders": [each folder once], "rows": [[index,
// name, extension, folder number, disk name or null when it is name + extension, selected,
// size, modified or null], …]}. The wrapper makes each row a dict with the documented keys.
QByteArray requestJson(const QString& script, const std::vector<Row>& rows);
// The worker's answer checked against the number of rows sent: [[name, …], [extension, …]].
Result parseAnswer(const QByteArray& json, size_t rowCount);

Result run(const QString& script, const std::vector<Row>& rows, const Options& options);

}  // namespace qp::python
