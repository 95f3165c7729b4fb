#include "core/FolderListing.h"

#include <utility>
#include <vector>

#include "core/PathText.h"

namespace qp {

void NameKinds::build(const std::vector<std::pair<quint64, platform::EntryKind>>& names)
{
    size_t size = 16;
    while (size < names.size() * 2)
        size *= 2;
    m_slots.assign(size, 0);
    m_mask = size - 1;
    for (const auto& [key, kind] : names) {
        const quint64 wanted = tag(key);
        size_t at = size_t(wanted >> 2) & m_mask;
        while (m_slots[at] != 0 && (m_slots[at] & ~quint64(3)) != wanted)
            at = (at + 1) & m_mask;
        m_slots[at] = wanted | quint64(kind);
    }
}

std::optional<platform::EntryKind> NameKinds::find(quint64 key) const
{
    if (m_slots.empty())
        return std::nullopt;
    const quint64 wanted = tag(key);
    for (size_t at = size_t(wanted >> 2) & m_mask; m_slots[at] != 0; at = (at + 1) & m_mask) {
        if ((m_slots[at] & ~quint64(3)) == wanted)
            return platform::EntryKind(m_slots[at] & 3);
    }
    return std::nullopt;
}

quint64 FolderListing::nameKey(QStringView name)
{
    static const size_t seed = QHashSeed::globalSeed();
    if (!platform::pathKeysIgnoreCase())
        return qHash(name, seed);
    const platform::Path folded = platform::pathKey(
        platform::PathView(reinterpret_cast<const char16_t*>(name.utf16()), size_t(name.size())));
    return qHash(QStringView(folded.data(), qsizetype(folded.size())), seed);
}

const FolderListing::Folder& FolderListing::folderState(const QString& folder)
{
    // Rows of one folder usually share the folder's string, which makes the test a pointer
    // comparison.
    const bool same = m_last
        && ((folder.constData() == m_lastFolder.constData() && folder.size() == m_lastFolder.size())
            || folder == m_lastFolder);
    if (!same) {
        m_last = &m_folders[pathKey(folder)];
        m_lastFolder = folder;
    }
    Folder& entry = *m_last;
    if (entry.state == State::Asking && ++entry.asked > kAskBeforeListing)
        list(folder, entry);
    return entry;
}

void FolderListing::list(const QString& folder, Folder& entry)
{
    // Gathered first so that the table is sized once.
    std::vector<std::pair<quint64, platform::EntryKind>> found;
    const bool listed =
        platform::listNames(toPlatformPath(folder), [&](platform::PathView name, platform::EntryKind kind) {
            found.emplace_back(nameKey(QStringView(name.data(), qsizetype(name.size()))), kind);
        });
    if (listed) {
        entry.entries.build(found);
        entry.state = State::Listed;
    } else {
        // A folder that is gone holds nothing; one that cannot be listed (no read right)
        // may still answer questions about single names.
        entry.state = platform::exists(toPlatformPath(folder)) ? State::Unlistable : State::Missing;
    }
}

bool FolderListing::exists(const QString& folder, const QString& fileName)
{
    const Folder& known = folderState(folder);
    if (known.state == State::Listed)
        return known.entries.find(nameKey(fileName)).has_value();
    if (known.state == State::Missing)
        return false;
    return platform::exists(toPlatformPath(folder + fileName));
}

std::optional<bool> FolderListing::isFolder(const QString& folder, const QString& fileName)
{
    const Folder& known = folderState(folder);
    if (known.state == State::Missing)
        return std::nullopt;
    if (known.state == State::Listed) {
        const auto found = known.entries.find(nameKey(fileName));
        if (!found)
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
