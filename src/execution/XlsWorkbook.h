// A workbook of text cells in the Excel 97–2003 format (.xls): the BIFF8 records Excel needs
// to open a plain sheet of text, inside the compound-file container that holds them. No
// library on our platforms writes this format, and text cells need only a small part of it.
#pragma once

#include <QByteArray>
#include <QString>
#include <vector>

namespace qp {

struct SheetCell {
    int row = 0;     // 0-based, below kXlsMaxRows
    int column = 0;  // 0-based, below kXlsMaxColumns
    QString text;
};

struct Worksheet {
    QString name;  // at most 31 characters, none of []:*?/\ (see sheetNameFrom)
    std::vector<SheetCell> cells;  // in row order, and by column within a row
};

constexpr int kXlsMaxRows = 65536;
constexpr int kXlsMaxColumns = 256;

// The whole .xls file. Cells longer than a record can hold are cut at 4,000 characters,
// far beyond any file name.
QByteArray xlsWorkbook(const std::vector<Worksheet>& sheets);

// A name Excel accepts for a sheet: the characters it forbids become "_", and the name is
// cut so that `suffix` still fits within 31 characters; empty gives `fallback`.
QString sheetNameFrom(const QString& wanted, const QString& fallback, const QString& suffix = {});

}  // namespace qp
