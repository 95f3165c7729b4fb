// One row of the rename list, and the helpers that fill and show it. Sizes, times and
// attributes are kept as numbers and formatted only when shown or exported.
#pragma once

#include <QString>
#include <cstdint>

namespace qp {

enum RowState : int {
    StateRenamed = 0,
    StateLoaded = 1,   // loaded, unchanged or skipped
    StateFailed = 2,   // failed or in conflict
};

enum IconIndex : int { IconFile = 3, IconFolder = 4 };

struct FileEntry {
    QString name;        // a file's name without extension; a folder's whole name
    QString ext;         // a file's extension with its dot; always empty for a folder
    QString newName;
    QString newExt;
    QString path;        // containing folder with trailing '/'
    QString pdfPassword;
    std::uint64_t size = 0;
    std::int64_t modified = 0;   // nanoseconds since 1970 UTC
    std::uint32_t attributes = 0;  // platform attribute word
    int icon = 0;
    int state = StateLoaded;
    bool selected = true;
    bool isFolder = false;

    QString fullPath() const { return path + name + ext; }
    QString fileName() const { return name + ext; }
    QString newFileName() const { return newName + newExt; }
    QString attributeLetters() const;
    // "yyyy/mm/dd hh:mm:ss" in local time.
    QString modifiedText() const;
    // Column "大小(Bytes)": friendly or the decimal byte count.
    QString sizeText(bool friendly) const;
};

struct NameParts {
    QString name;
    QString ext;
};
// Splits at the last dot of a file name: "archive.tar.gz" -> "archive.tar" + ".gz",
// ".profile" -> "" + ".profile". A folder keeps its whole name.
NameParts splitFileName(const QString& fileName, bool isFolder);

// 1 Byte, 512 Bytes, 1.50 KB, ... up to EB, by powers of 1024.
QString friendlySize(std::uint64_t bytes);

QString formatFileTime(std::int64_t nanosecondsSinceEpoch);

}  // namespace qp
