#include "execution/ContrastList.h"

#include <QCoreApplication>
#include <QStringEncoder>
#include <algorithm>

#include "core/PathText.h"
#include "core/RenameList.h"
#include "execution/FileOperations.h"
#include "execution/XlsWorkbook.h"
#include "execution/XlsxFile.h"
#include "platform/TextEncoding.h"

namespace qp {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("ContrastList", text); }

QString defaultSheetName() { return tr("更名对照列表"); }

QString cannotWrite(const QString& path, const QString& reason)
{
    return tr("无法写入文件：%1（%2）").arg(nativeSeparators(path), reason);
}

constexpr int kColumnGap = 4;  // blanks between the old-name column and the new names

struct WideRange {
    char32_t first;
    char32_t last;
};

// East Asian wide and full-width characters, which a monospaced font draws two columns wide.
constexpr WideRange kWide[] = {
    {0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0x33FF},   {0x3400, 0x4DBF},   {0x4E00, 0x9FFF},
    {0xA000, 0xA4CF},   {0xA960, 0xA97F},   {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE10, 0xFE19},
    {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},   {0xFFE0, 0xFFE6},   {0x1F300, 0x1F64F}, {0x1F680, 0x1F6FF},
    {0x1F900, 0x1F9FF}, {0x20000, 0x2FFFD}, {0x30000, 0x3FFFD},
};

int columnsOf(char32_t c)
{
    switch (QChar::category(c)) {
    case QChar::Mark_NonSpacing:
    case QChar::Mark_Enclosing:
    case QChar::Other_Format:
        return 0;
    default:
        break;
    }
    for (const WideRange& range : kWide) {
        if (c >= range.first && c <= range.last)
            return 2;
    }
    return 1;
}

QString encodingNameOf(ContrastEncoding encoding)
{
    switch (encoding) {
    case ContrastEncoding::Unicode:
        return QStringLiteral("UTF-16LE");
    case ContrastEncoding::UnicodeBigEndian:
        return QStringLiteral("UTF-16BE");
    case ContrastEncoding::Utf8:
        return QStringLiteral("UTF-8");
    case ContrastEncoding::Ansi:
        break;
    }
    return QString::fromStdString(platform::ansiEncodingName());
}

// The rows' cells on one sheet: old names in one column, new names in another. Asking for
// the same column twice puts the new names in the next one.
std::vector<SheetCell> sheetCells(const std::vector<ContrastRow>& rows, const SheetRows& sheet, int oldColumn,
                                  int newColumn)
{
    oldColumn = std::max(oldColumn, 1) - 1;
    newColumn = std::max(newColumn, 1) - 1;
    if (newColumn == oldColumn)
        ++newColumn;
    std::vector<SheetCell> cells;
    cells.reserve(size_t(sheet.count) * 2);
    for (qsizetype i = 0; i < sheet.count; ++i) {
        const ContrastRow& row = rows[size_t(sheet.first + i)];
        SheetCell left{int(i), std::min(oldColumn, newColumn), oldColumn < newColumn ? row.oldName : row.newName};
        SheetCell right{int(i), std::max(oldColumn, newColumn), oldColumn < newColumn ? row.newName : row.oldName};
        cells.push_back(std::move(left));
        cells.push_back(std::move(right));
    }
    return cells;
}

bool writeXls(const std::vector<ContrastRow>& rows, const ContrastOptions& options, const QString& path,
              FileOperations& disk, QString* error)
{
    if (std::max(options.oldColumn, options.newColumn) + 1 > kXlsMaxColumns) {
        *error = tr("Excel 97-2003 格式的工作表最多有 %1 列。").arg(kXlsMaxColumns);
        return false;
    }
    std::vector<Worksheet> sheets;
    for (const SheetRows& sheet : splitIntoSheets(qsizetype(rows.size()), kXlsMaxRows, options.sheetName))
        sheets.push_back({sheet.name, sheetCells(rows, sheet, options.oldColumn, options.newColumn)});
    QString reason;
    if (disk.writeFileAtomically(path, xlsWorkbook(sheets), &reason))
        return true;
    *error = cannotWrite(path, reason);
    return false;
}

bool writeXlsx(const std::vector<ContrastRow>& rows, const ContrastOptions& options, const QString& path,
               FileOperations& disk, QString* error)
{
    std::vector<Worksheet> sheets;
    for (const SheetRows& sheet : splitIntoSheets(qsizetype(rows.size()), kXlsxMaxRows, options.sheetName))
        sheets.push_back({sheet.name, sheetCells(rows, sheet, options.oldColumn, options.newColumn)});
    return writeXlsxFile(sheets, defaultSheetName(), path, disk, error);
}

}  // namespace

std::vector<ContrastRow> contrastRows(const RenameList& list, bool withExtension)
{
    std::vector<ContrastRow> rows;
    rows.reserve(size_t(list.size()));
    for (const FileEntry& row : list.rows())
        rows.push_back(withExtension ? ContrastRow{row.fileName(), row.newFileName()} : ContrastRow{row.name, row.newName});
    return rows;
}

int displayWidth(QStringView text)
{
    int width = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        char32_t c = text[i].unicode();
        if (text[i].isHighSurrogate() && i + 1 < text.size() && text[i + 1].isLowSurrogate()) {
            c = QChar::surrogateToUcs4(text[i], text[i + 1]);
            ++i;
        }
        width += columnsOf(c);
    }
    return width;
}

QString contrastText(const std::vector<ContrastRow>& rows, bool aligned, const QString& separator)
{
    int column = 0;
    if (aligned) {
        for (const ContrastRow& row : rows)
            column = std::max(column, displayWidth(row.oldName));
        column += kColumnGap;
    }
    QString text;
    for (const ContrastRow& row : rows) {
        text += row.oldName;
        if (aligned)
            text += QString(column - displayWidth(row.oldName), QLatin1Char(' '));
        else
            text += separator;
        text += row.newName;
        text += QLatin1String("\r\n");
    }
    return text;
}

EncodedText encodeText(const QString& text, ContrastEncoding encoding)
{
    EncodedText encoded;
    encoded.encodingName = encodingNameOf(encoding);
    const bool unicode = encoding != ContrastEncoding::Ansi;
    QStringEncoder encoder(encoded.encodingName.toLatin1().constData(),
                           unicode ? QStringConverter::Flag::WriteBom : QStringConverter::Flag::Default);
    if (!encoder.isValid()) {
        // An encoding this system cannot write: fall back to UTF-8, which holds every name.
        encoded.encodingName = QStringLiteral("UTF-8");
        encoder = QStringEncoder(QStringConverter::Utf8);
    }
    encoded.bytes = encoder.encode(text);
    encoded.lossy = encoder.hasError();
    return encoded;
}

std::vector<SheetRows> splitIntoSheets(qsizetype rows, qsizetype rowsPerSheet, const QString& wantedName)
{
    std::vector<SheetRows> sheets;
    for (qsizetype first = 0; first < rows || sheets.empty(); first += rowsPerSheet) {
        const QString suffix = sheets.empty() ? QString() : QStringLiteral(" (%1)").arg(sheets.size() + 1);
        sheets.push_back({sheetNameFrom(wantedName, defaultSheetName(), suffix), first,
                          std::min(rowsPerSheet, rows - first)});
    }
    return sheets;
}

QString contrastOutputPath(const QString& chosen, const QString& extension)
{
    QString base = chosen;
    for (const char* known : {".txt", ".xlsx", ".xls"}) {
        if (base.endsWith(QLatin1String(known), Qt::CaseInsensitive)) {
            base.chop(qsizetype(qstrlen(known)));
            break;
        }
    }
    return base + extension;
}

ContrastExportResult exportContrastList(const RenameList& list, const ContrastOptions& options,
                                        const QString& textPath, const QString& sheetPath, FileOperations& disk)
{
    ContrastExportResult result;
    const std::vector<ContrastRow> rows = contrastRows(list, options.withExtension);
    if (options.text) {
        const EncodedText encoded = encodeText(contrastText(rows, options.aligned, options.separator), options.encoding);
        QString error;
        if (!disk.writeFileAtomically(textPath, encoded.bytes, &error)) {
            result.error = cannotWrite(textPath, error);
            return result;
        }
        result.written.append(textPath);
        result.lossy = encoded.lossy;
    }
    if (options.spreadsheet) {
        QString error;
        const bool written = options.format == SpreadsheetFormat::Xlsx ? writeXlsx(rows, options, sheetPath, disk, &error)
                                                                       : writeXls(rows, options, sheetPath, disk, &error);
        if (!written) {
            result.error = error;
            return result;
        }
        result.written.append(sheetPath);
    }
    return result;
}

}  // namespace qp
