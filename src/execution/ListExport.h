// Exports of the window's lists (the rename list's visible columns, the message pane) as a
// table of texts: a .txt file (columns separated by TAB), a .csv file that spreadsheets
// read (quoted where needed), or an .xlsx workbook. Text files are UTF-8 with a byte-order
// mark and CR LF line ends. The same CSV rows serve `quillet preview --format csv`.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <optional>
#include <vector>

namespace qp {

class FileOperations;

struct TextTable {
    QStringList header;  // empty: no header line
    std::vector<QStringList> rows;
};

enum class ListFormat { Text, Csv, Xlsx };

// The format a file name asks for by its extension (letter case ignored).
std::optional<ListFormat> listFormatOf(const QString& path);

// One CSV record: fields holding a comma, a quote, a line break or leading/trailing blanks
// are quoted, quotes doubled; the record ends with CR LF.
QString csvRecord(const QStringList& fields);
// The table's lines without a byte-order mark.
QString tableAsCsv(const TextTable& table);
QString tableAsText(const TextTable& table);

// Writes the table whole to `path` in `format`; `title` names the sheet and the workbook.
// Returns the problem in the system's words, empty when the file was written.
QString exportTable(const TextTable& table, ListFormat format, const QString& title, const QString& path,
                    FileOperations& disk);

}  // namespace qp
