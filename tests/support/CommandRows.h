// Puts commands and rows into a session the way the program stores them, for tests that run
// the real pipeline: a command is a fresh settings section listed in "CommandList", a row a
// FileEntry split from a full path.
#pragma once

#include <utility>
#include <vector>

#include "core/FileEntry.h"
#include "core/PathText.h"
#include "core/RenameList.h"
#include "core/SettingsStore.h"

namespace qp::test {

using Params = std::vector<std::pair<const char*, const char*>>;

// Appends a command with its parameters (raw, as a page writes them) to the stored list; its
// section starts empty, so no key of an earlier command is read again. Returns its name.
inline QString appendCommand(SettingsStore& store, const QString& code, const QString& comment, const Params& params)
{
    const qint64 n = store.readInt(QStringLiteral("CommandList"), QStringLiteral("CommandListCount"), 0) + 1;
    const QString section = QStringLiteral("CMD_%1_%2").arg(code).arg(n);
    store.eraseSection(section);
    store.writeString(section, QStringLiteral("CMDid"), code);
    store.writeString(section, QStringLiteral("CMDComment"), comment);
    for (const auto& [key, value] : params)
        store.writeRaw(section, QString::fromUtf8(key), QString::fromUtf8(value));
    store.writeInt(QStringLiteral("CommandList"), QStringLiteral("CommandListCount"), n);
    store.writeString(QStringLiteral("CommandList"), QString::number(n), section);
    return section;
}

// Appends a row for the object at `fullPath` ('/'-separated); its new name starts as its name.
inline FileEntry& appendRow(RenameList& list, const QString& fullPath, bool folder = false)
{
    const PathParts where = splitPath(fullPath);
    const NameParts parts = splitFileName(where.fileName, folder);
    FileEntry row;
    row.path = where.folder;
    row.name = row.newName = parts.name;
    row.ext = row.newExt = parts.ext;
    row.isFolder = folder;
    list.append(row);
    return list[list.size() - 1];
}

// Each row's new name (without extension), in row order.
inline QStringList newNames(const RenameList& list)
{
    QStringList names;
    for (const FileEntry& row : list.rows())
        names.append(row.newName);
    return names;
}

}  // namespace qp::test
