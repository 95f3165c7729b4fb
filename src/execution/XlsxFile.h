// Office Open XML workbooks (.xlsx) of text cells through libxlsxwriter, written whole or
// not at all: the library writes a temporary file beside the target, whose bytes then
// replace the target through FileOperations.
#pragma once

#include <QString>
#include <vector>

#include "execution/XlsWorkbook.h"

namespace qp {

class FileOperations;

// The most rows one sheet of an .xlsx file holds.
constexpr qsizetype kXlsxMaxRows = 1048576;

// False with *error set (in the system's words) when the file could not be written.
bool writeXlsxFile(const std::vector<Worksheet>& sheets, const QString& title, const QString& path,
                   FileOperations& disk, QString* error);

}  // namespace qp
