#include "execution/XlsxFile.h"

#include <QCoreApplication>
#include <QRandomGenerator>

#include <xlsxwriter.h>

#include "core/PathText.h"
#include "execution/FileOperations.h"

namespace qp {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("XlsxFile", text); }

QString cannotWrite(const QString& path, const QString& reason)
{
    return tr("无法写入文件：%1（%2）").arg(nativeSeparators(path), reason);
}

void fillSheets(lxw_workbook* workbook, const std::vector<Worksheet>& sheets)
{
    for (const Worksheet& sheet : sheets) {
        lxw_worksheet* worksheet = workbook_add_worksheet(workbook, sheet.name.toUtf8().constData());
        if (!worksheet)
            continue;
        for (const SheetCell& cell : sheet.cells) {
            worksheet_write_string(worksheet, lxw_row_t(cell.row), lxw_col_t(cell.column),
                                   cell.text.toUtf8().constData(), nullptr);
        }
    }
}

}  // namespace

bool writeXlsxFile(const std::vector<Worksheet>& sheets, const QString& title, const QString& path,
                   FileOperations& disk, QString* error)
{
    const QString temporary =
        path + QStringLiteral(".~%1.tmp").arg(QRandomGenerator::global()->generate(), 8, 16, QLatin1Char('0'));
    const std::optional<std::string> nativeTemporary = platform::toUtf8Path(toPlatformPath(temporary));
    lxw_workbook* workbook = nativeTemporary ? workbook_new(nativeTemporary->c_str()) : nullptr;
    if (!workbook) {
        *error = cannotWrite(path, tr("无法创建临时文件"));
        return false;
    }
    QByteArray titleBytes = title.toUtf8();
    QByteArray author = QByteArrayLiteral("Quillet Pro");
    lxw_doc_properties properties{};
    properties.title = titleBytes.data();
    properties.author = author.data();
    workbook_set_properties(workbook, &properties);
    fillSheets(workbook, sheets);
    const lxw_error closed = workbook_close(workbook);
    const std::optional<QByteArray> bytes = closed == LXW_NO_ERROR ? disk.readFile(temporary) : std::nullopt;
    disk.removeFile(temporary);
    QString reason = QString::fromUtf8(lxw_strerror(closed));
    if (bytes && disk.writeFileAtomically(path, *bytes, &reason))
        return true;
    *error = cannotWrite(path, reason);
    return false;
}

}  // namespace qp
