// Answers "what is at this path?" for many paths in the same folders. A folder asked about
// often is listed once (names and kinds, no metadata) and then answered from the listing;
// a few questions about a folder go to the disk directly, so five rows in a folder of a
// million files do not list it. Listings are kept for the object's lifetime: make one per
// run, since the disk may change between runs.
#pragma once

#include <QHash>
#include <QString>
#include <optional>

#include "platform/FileSystem.h"

namespace qp {

class FolderListing {
public:
    // `folder` with its trailing '/', `fileName` with its extension.
    bool exists(const QString& folder, const QString& fileName);
    // True for a folder, false for a file, nullopt when nothing can be read there.
    std::optional<bool> isFolder(const QString& folder, const QString& fileName);

private:
    static constexpr int kAskBeforeListing = 64;
    struct Folder {
        int asked = 0;
        bool listed = false;
        QHash<QString, platform::EntryKind> entries;  // by path key of the name
    };
    // The listing of `folder`, or null while it is cheaper to ask the disk.
    const Folder* listing(const QString& folder);

    QHash<QString, Folder> m_folders;
    // Rows come folder by folder: the last listing answers most questions without a look-up.
    QString m_lastFolder;
    const Folder* m_lastListing = nullptr;
};

}  // namespace qp
