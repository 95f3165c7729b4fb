// The rename contrast list: every row's current and new name side by side, as a text file
// in one of four encodings and as a spreadsheet (.xls or .xlsx). The export dialog and
// `quillet export --contrast` both write it through exportContrastList().
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <vector>

namespace qp {

class FileOperations;
class RenameList;

enum class ContrastEncoding { Ansi, Unicode, UnicodeBigEndian, Utf8 };
enum class SpreadsheetFormat { Xls, Xlsx };

struct ContrastOptions {
    bool withExtension = false;  // "含扩展名一起处理"

    bool text = true;  // "导出为文本文件 (*.txt)"
    ContrastEncoding encoding = ContrastEncoding::Ansi;
    bool aligned = true;  // else the separator goes between the names
    QString separator = QStringLiteral("<>");

    bool spreadsheet = false;  // "导出为 MS Excel 文件（无需Excel软件支持）"
    SpreadsheetFormat format = SpreadsheetFormat::Xls;
    QString sheetName;  // empty: "更名对照列表"
    int oldColumn = 1;  // 1-based
    int newColumn = 2;
};

struct ContrastRow {
    QString oldName;
    QString newName;
};

std::vector<ContrastRow> contrastRows(const RenameList& list, bool withExtension);

// The text lines, CR LF ended. Aligned: the new names start in one column when the file is
// shown in a monospaced font, wide (CJK) characters counting as two columns.
QString contrastText(const std::vector<ContrastRow>& rows, bool aligned, const QString& separator);

// The columns a text takes in a monospaced font: 2 for East Asian wide and full-width
// characters, 0 for combining marks and joiners, 1 for the rest.
int displayWidth(QStringView text);

struct EncodedText {
    QByteArray bytes;
    QString encodingName;
    bool lossy = false;  // some characters have no form in the encoding and became "?"
};
// With a byte-order mark for the three Unicode encodings; ANSI is the system's legacy code
// page (see platform::ansiEncodingName()).
EncodedText encodeText(const QString& text, ContrastEncoding encoding);

// The sheets of the list: one row per name pair; a list longer than a sheet holds goes on
// in further sheets named "<name> (2)", "<name> (3)" …
struct SheetRows {
    QString name;
    qsizetype first = 0;  // index into the rows
    qsizetype count = 0;
};
std::vector<SheetRows> splitIntoSheets(qsizetype rows, qsizetype rowsPerSheet, const QString& wantedName);

struct ContrastExportResult {
    QStringList written;  // the files written, in order
    QString error;        // the first failure, in the system's words; empty when all went well
    bool lossy = false;   // the text file lost characters its encoding cannot hold
};

// The file an output goes to: the chosen name with `extension` in place of a ".txt",
// ".xls" or ".xlsx" it may already end with.
QString contrastOutputPath(const QString& chosen, const QString& extension);

// Writes the text file to `textPath` and the spreadsheet to `sheetPath` (each only when its
// output is chosen), whole or not at all.
ContrastExportResult exportContrastList(const RenameList& list, const ContrastOptions& options,
                                        const QString& textPath, const QString& sheetPath, FileOperations& disk);

}  // namespace qp
