// Reads a spreadsheet back with Debian's python3-xlrd, a reader written independently of
// ours, so that a test checks the file and not our own idea of it.
#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

namespace qp::test {

struct ReadSheet {
    QString name;
    std::vector<QStringList> rows;  // every cell as text, empty where nothing was written
};

// The sheets of an .xls or .xlsx file; nothing when the reader rejects the file (the
// reason goes to the test log).
std::optional<std::vector<ReadSheet>> readSpreadsheet(const QString& path);

}  // namespace qp::test
