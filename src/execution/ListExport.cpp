#include "execution/ListExport.h"

#include <QCoreApplication>

#include "core/PathText.h"
#include "execution/FileOperations.h"
#include "execution/XlsxFile.h"

namespace qp {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("ListExport", text); }

bool needsQuotes(const QString& field)
{
    for (QChar c : field) {
        if (c == u',' || c == u'"' || c == u'\n' || c == u'\r')
            return true;
    }
    return !field.isEmpty() && (field.front().isSpace() || field.back().isSpace());
}

template <typename Record>
QString tableLines(const TextTable& table, Record record)
{
    QString text;
    if (!table.header.isEmpty())
        text += record(table.header);
    for (const QStringList& row : table.rows)
        text += record(row);
    return text;
}

QString textRecord(const QStringList& fields) { return fields.join(u'\t') + QLatin1String("\r\n"); }

QByteArray withBom(const QString& text) { return QByteArrayLiteral("\xEF\xBB\xBF") + text.toUtf8(); }

std::vector<Worksheet> sheetsOf(const TextTable& table, const QString& title)
{
    std::vector<Worksheet> sheets;
    const int headerRows = table.header.isEmpty() ? 0 : 1;
    const qsizetype perSheet = kXlsxMaxRows - headerRows;
    const qsizetype total = qsizetype(table.rows.size());
    for (qsizetype first = 0; first < total || sheets.empty(); first += perSheet) {
        const QString suffix = sheets.empty() ? QString() : QStringLiteral(" (%1)").arg(sheets.size() + 1);
        Worksheet sheet{sheetNameFrom(title, tr("列表"), suffix), {}};
        auto put = [&sheet](int row, const QStringList& fields) {
            for (int column = 0; column < fields.size(); ++column)
                sheet.cells.push_back({row, column, fields[column]});
        };
        if (headerRows)
            put(0, table.header);
        const qsizetype end = std::min(total, first + perSheet);
        for (qsizetype r = first; r < end; ++r)
            put(int(r - first) + headerRows, table.rows[size_t(r)]);
        sheets.push_back(std::move(sheet));
    }
    return sheets;
}

}  // namespace

std::optional<ListFormat> listFormatOf(const QString& path)
{
    const std::pair<const char*, ListFormat> known[] = {
        {".txt", ListFormat::Text}, {".csv", ListFormat::Csv}, {".xlsx", ListFormat::Xlsx}};
    for (const auto& [extension, format] : known) {
        if (path.endsWith(QLatin1String(extension), Qt::CaseInsensitive))
            return format;
    }
    return std::nullopt;
}

QString csvRecord(const QStringList& fields)
{
    QString line;
    for (qsizetype i = 0; i < fields.size(); ++i) {
        if (i > 0)
            line += u',';
        if (needsQuotes(fields[i])) {
            QString quoted = fields[i];
            quoted.replace(QLatin1String("\""), QLatin1String("\"\""));
            line += u'"' + quoted + u'"';
        } else {
            line += fields[i];
        }
    }
    return line + QLatin1String("\r\n");
}

QString tableAsCsv(const TextTable& table) { return tableLines(table, csvRecord); }

QString tableAsText(const TextTable& table) { return tableLines(table, textRecord); }

QString exportTable(const TextTable& table, ListFormat format, const QString& title, const QString& path,
                    FileOperations& disk)
{
    QString error;
    switch (format) {
    case ListFormat::Xlsx:
        writeXlsxFile(sheetsOf(table, title), title, path, disk, &error);
        return error;
    case ListFormat::Csv:
    case ListFormat::Text: {
        const QString text = format == ListFormat::Csv ? tableAsCsv(table) : tableAsText(table);
        if (!disk.writeFileAtomically(path, withBom(text), &error))
            return tr("无法写入文件：%1（%2）").arg(nativeSeparators(path), error);
        return {};
    }
    }
    return {};
}

}  // namespace qp
