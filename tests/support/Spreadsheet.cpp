#include "Spreadsheet.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <cstdio>

namespace qp::test {

namespace {

const char* const kReader = R"(
import json, sys, xlrd
book = xlrd.open_workbook(sys.argv[1])
sheets = [{"name": s.name, "rows": [[str(s.cell_value(r, c)) for c in range(s.ncols)] for r in range(s.nrows)]}
          for s in book.sheets()]
sys.stdout.write(json.dumps(sheets))
)";

}  // namespace

std::optional<std::vector<ReadSheet>> readSpreadsheet(const QString& path)
{
    QProcess python;
    // The system's interpreter, which is the one Debian's python3-xlrd belongs to.
    python.start(QStringLiteral("/usr/bin/python3"), {QStringLiteral("-c"), QString::fromLatin1(kReader), path});
    python.waitForFinished(-1);
    if (python.exitStatus() != QProcess::NormalExit || python.exitCode() != 0) {
        std::fprintf(stderr, "xlrd rejected %s: %s\n", qPrintable(path), python.readAllStandardError().constData());
        return std::nullopt;
    }
    std::vector<ReadSheet> sheets;
    for (const QJsonValue& sheet : QJsonDocument::fromJson(python.readAllStandardOutput()).array()) {
        ReadSheet read{sheet[QStringLiteral("name")].toString(), {}};
        for (const QJsonValue& row : sheet[QStringLiteral("rows")].toArray()) {
            QStringList cells;
            for (const QJsonValue& cell : row.toArray())
                cells.append(cell.toString());
            read.rows.push_back(cells);
        }
        sheets.push_back(std::move(read));
    }
    return sheets;
}

}  // namespace qp::test
