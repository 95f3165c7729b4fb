#include "core/FolderListing.h"

#include <limits>

#include "core/PathText.h"

namespace qp {

const FolderListing::Folder* FolderListing::listing(const QString& folder)
{
    if (m_lastListing && folder == m_lastFolder)
        return m_lastListing;
    m_lastListing = nullptr;  // adding a folder below may move the others
    Folder& entry = m_folders[pathKey(folder)];
    if (entry.listed) {
        m_lastFolder = folder;
        m_lastListing = &entry;
        return &entry;
    }
    if (++entry.asked <= kAskBeforeListing)
        return nullptr;
    entry.asked = std::numeric_limits<int>::min();  // one try only
    entry.listed = platform::listNames(toPlatformPath(folder), [&](platform::PathView name, platform::EntryKind kind) {
        entry.entries.insert(pathKey(fromPlatformPath(name)), kind);
    });
    if (!entry.listed) {
        entry.entries.clear();
        return nullptr;
    }
    m_lastFolder = folder;
    m_lastListing = &entry;
    return &entry;
}

bool FolderListing::exists(const QString& folder, const QString& fileName)
{
    if (const Folder* listed = listing(folder))
        return listed->entries.contains(pathKey(fileName));
    return platform::exists(toPlatformPath(folder + fileName));
}

std::optional<bool> FolderListing::isFolder(const QString& folder, const QString& fileName)
{
    if (const Folder* listed = listing(folder)) {
        const auto found = listed->entries.constFind(pathKey(fileName));
        if (found == listed->entries.cend())
            return std::nullopt;
        if (*found != platform::EntryKind::Unknown)
            return *found == platform::EntryKind::Folder;
    }
    const auto info = platform::stat(toPlatformPath(folder + fileName));
    if (!info)
        return std::nullopt;
    return info->isFolder;
}

}  // namespace qp
