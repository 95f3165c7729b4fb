#include "core/PathText.h"

namespace qp {

QString internalSeparators(const QString& path)
{
#ifdef _WIN32
    QString result = path;
    result.replace(QLatin1Char('\\'), QLatin1Char('/'));
    return result;
#else
    return path;
#endif
}

QString nativeSeparators(const QString& path)
{
#ifdef _WIN32
    QString result = path;
    result.replace(QLatin1Char('/'), QLatin1Char('\\'));
    return result;
#else
    return path;
#endif
}

QString pathKey(const QString& path)
{
    if (!platform::pathKeysIgnoreCase())
        return path;
    return fromPlatformPath(platform::pathKey(toPlatformPath(path)));
}

bool isAbsolutePath(const QString& path)
{
#ifdef _WIN32
    if (path.startsWith(QLatin1String("//")))
        return true;
    return path.size() >= 3 && path[0].isLetter() && path[1] == QLatin1Char(':') && path[2] == QLatin1Char('/');
#else
    return path.startsWith(QLatin1Char('/'));
#endif
}

bool isRootPath(const QString& path)
{
#ifdef _WIN32
    return (path.size() == 2 || (path.size() == 3 && path[2] == QLatin1Char('/'))) && path[0].isLetter()
        && path[1] == QLatin1Char(':');
#else
    return !path.isEmpty() && path.count(QLatin1Char('/')) == path.size();
#endif
}

PathParts splitPath(const QString& fullPath)
{
    QString path = fullPath;
    while (path.size() > 1 && path.endsWith(QLatin1Char('/')))
        path.chop(1);
    const qsizetype slash = path.lastIndexOf(QLatin1Char('/'));
    if (slash < 0)
        return {QString(), path};
    return {path.left(slash + 1), path.mid(slash + 1)};
}

}  // namespace qp
