// Answers "what is at this path?" for many paths in the same folders. A folder asked about
// often is listed once (names and kinds, no metadata) and then answered from the listing;
// a few questions about a folder go to the disk directly, so five rows in a folder of a
// million files do not list it. Listings are kept for the object's lifetime: make one per
// run, since the disk may change between runs.
#pragma once

#include <QHash>
#include <QString>
#include <QStringView>
#include <optional>
#include <utility>
#include <vector>

#include "platform/FileSystem.h"

namespace qp {

// The names of one listed folder with their kinds, by a seeded 64-bit hash of each name's
// path key rather than the name itself: a listing of a million names holds no strings, and
// a look-up touches one cache line. Two names that share a hash would make one of them look
// present: a false conflict, never a lost file.
class NameKinds {
public:
    void build(const std::vector<std::pair<quint64, platform::EntryKind>>& names);
    // Null when the name is not there.
    std::optional<platform::EntryKind> find(quint64 key) const;

private:
    // Open addressing with linear probing; a slot holds the key with its two low bits
    // replaced by the kind, and 0 marks an empty slot.
    static quint64 tag(quint64 key) { return (key & ~quint64(3)) ? key & ~quint64(3) : 4; }
    std::vector<quint64> m_slots;
    quint64 m_mask = 0;
};

class FolderListing {
public:
    // `folder` with its trailing '/', `fileName` with its extension.
    bool exists(const QString& folder, const QString& fileName);
    // True for a folder, false for a file, nullopt when nothing can be read there.
    std::optional<bool> isFolder(const QString& folder, const QString& fileName);

private:
    static constexpr int kAskBeforeListing = 64;
    enum class State { Asking, Listed, Unlistable, Missing };
    struct Folder {
        State state = State::Asking;
        int asked = 0;
        NameKinds entries;
    };
    static quint64 nameKey(QStringView name);
    // What is known about `folder`; lists it once it has been asked about often enough.
    const Folder& folderState(const QString& folder);
    static void list(const QString& folder, Folder& entry);

    QHash<QString, Folder> m_folders;
    // Rows come folder by folder: the last folder answers most questions without a look-up.
    // Valid until the next folder is added to m_folders, which only folderState() does.
    QString m_lastFolder;
    Folder* m_last = nullptr;
};

}  // namespace qp
