// The command-line tool's logic, kept out of main() so that tests can drive it.
//   quillet [--settings FILE] [--set "Section/Key=Value"]... COMMAND [options] [PATH...]
#pragma once

#include <QString>
#include <QStringList>
#include <QTextStream>
#include <optional>

#include "core/SettingsStore.h"

namespace qp::cli {

enum ExitCode { ExitDone = 0, ExitRowsFailed = 1, ExitBadUsage = 2 };

struct SettingOverride {
    QString section;
    QString key;
    QString value;
};
// "Section/Key=Value": the section ends at the first "/", the key at the first "=" after it.
std::optional<SettingOverride> parseOverride(const QString& text);

class CliApp {
public:
    CliApp(QTextStream& out, QTextStream& err) : m_out(out), m_err(err) {}

    // `arguments` includes the program name first, as QCoreApplication::arguments() does.
    int run(const QStringList& arguments);

private:
    int fail(const QString& message);

    QTextStream& m_out;
    QTextStream& m_err;
};

}  // namespace qp::cli
