// Conversions between the core's QString paths and the platform layer's UTF-16 paths,
// and the separator rules: '/' inside the program, the platform's own when shown.
#pragma once

#include <QString>

#include "platform/FileSystem.h"

namespace qp {

inline platform::Path toPlatformPath(const QString& path) { return path.toStdU16String(); }
// The same text seen in place, for a call that only reads it.
inline platform::PathView platformView(const QString& path)
{
    return platform::PathView(reinterpret_cast<const char16_t*>(path.utf16()), size_t(path.size()));
}

inline QString fromPlatformPath(platform::PathView path)
{
    return QString(reinterpret_cast<const QChar*>(path.data()), static_cast<qsizetype>(path.size()));
}

// Paths typed or read from files: on Windows a backslash is a separator and becomes '/';
// on Linux a backslash is an ordinary character of a name and stays.
QString internalSeparators(const QString& path);
// Paths shown to a person or printed: the platform's separator.
QString nativeSeparators(const QString& path);

// The comparison key of a path (case-folded where the file system ignores case).
QString pathKey(const QString& path);

// A full path: "/…" on Linux; "X:/…" or "//server/…" on Windows.
bool isAbsolutePath(const QString& path);
// A path naming a whole file system ("/", "C:/"), which can be listed but never renamed.
bool isRootPath(const QString& path);

// Splits a full path after its last '/': the folder keeps its trailing '/'.
// A path that ends with '/' (other than the root itself) is taken without that '/'.
struct PathParts {
    QString folder;
    QString fileName;
};
PathParts splitPath(const QString& fullPath);

}  // namespace qp
