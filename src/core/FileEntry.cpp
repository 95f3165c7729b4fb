#include "core/FileEntry.h"

#include <QDateTime>

#include "core/PathText.h"
#include "platform/FileSystem.h"

namespace qp {

QString FileEntry::attributeLetters() const
{
    return fromPlatformPath(platform::attributeLetters(attributes));
}

QString FileEntry::modifiedText() const { return formatFileTime(modified); }

QString FileEntry::sizeText(bool friendly) const
{
    return friendly ? friendlySize(size) : QString::number(size);
}

NameParts splitFileName(const QString& fileName, bool isFolder)
{
    if (isFolder)
        return {fileName, QString()};
    const qsizetype dot = fileName.lastIndexOf(QLatin1Char('.'));
    if (dot < 0)
        return {fileName, QString()};
    return {fileName.left(dot), fileName.mid(dot)};
}

QString friendlySize(std::uint64_t bytes)
{
    static const char* const units[] = {"KB", "MB", "GB", "TB", "PB", "EB"};
    if (bytes < 1024)
        return QString::number(bytes) + (bytes <= 1 ? QStringLiteral(" Byte") : QStringLiteral(" Bytes"));
    int unit = 0;
    while (unit + 1 < 6 && bytes >= (std::uint64_t(1) << (10 * (unit + 2))))
        ++unit;
    const double scaled = double(bytes) / double(std::uint64_t(1) << (10 * (unit + 1)));
    return QString::asprintf("%.2f %s", scaled, units[unit]);
}

QString formatFileTime(std::int64_t nanosecondsSinceEpoch)
{
    const qint64 ms = nanosecondsSinceEpoch / 1000000;
    return QDateTime::fromMSecsSinceEpoch(ms).toString(QStringLiteral("yyyy/MM/dd HH:mm:ss"));
}

}  // namespace qp
