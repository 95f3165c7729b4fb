#include <gtest/gtest.h>

#include "core/FileEntry.h"
#include "core/NameFilter.h"
#include "core/PathText.h"

namespace qp {
namespace {

struct SplitCase {
    const char* fileName;
    bool isFolder;
    const char* name;
    const char* ext;
};

TEST(FileEntry, SplitsNameAtTheLastDot)
{
    const SplitCase cases[] = {
        {"archive.tar.gz", false, "archive.tar", ".gz"},
        {"README", false, "README", ""},
        {".profile", false, "", ".profile"},
        {"a.b.c", false, "a.b", ".c"},
        {"trailing.", false, "trailing", "."},
        {"v1.2", true, "v1.2", ""},
        {".git", true, ".git", ""},
        {"照片.JPG", false, "照片", ".JPG"},
    };
    for (const SplitCase& c : cases) {
        const NameParts parts = splitFileName(QString::fromUtf8(c.fileName), c.isFolder);
        EXPECT_EQ(parts.name, QString::fromUtf8(c.name)) << c.fileName;
        EXPECT_EQ(parts.ext, QString::fromUtf8(c.ext)) << c.fileName;
    }
}

TEST(FileEntry, FriendlySizeChoosesTheHighestPowerReached)
{
    const std::pair<std::uint64_t, const char*> cases[] = {
        {0, "0 Byte"},
        {1, "1 Byte"},
        {2, "2 Bytes"},
        {512, "512 Bytes"},
        {1023, "1023 Bytes"},
        {1024, "1.00 KB"},
        {1536, "1.50 KB"},
        {(1ull << 20) - 1, "1024.00 KB"},
        {1ull << 20, "1.00 MB"},
        {1ull << 30, "1.00 GB"},
        {1ull << 40, "1.00 TB"},
        {1ull << 50, "1.00 PB"},
        {(1ull << 60) - 1, "1024.00 PB"},
        {1ull << 60, "1.00 EB"},
        {~0ull, "16.00 EB"},
    };
    for (const auto& [bytes, expected] : cases)
        EXPECT_EQ(friendlySize(bytes), QLatin1String(expected)) << bytes;
}

TEST(FileEntry, SizeColumnFollowsTheFriendlySwitch)
{
    FileEntry entry;
    entry.size = 1024;
    EXPECT_EQ(entry.sizeText(true), QStringLiteral("1.00 KB"));
    EXPECT_EQ(entry.sizeText(false), QStringLiteral("1024"));
}

TEST(FileEntry, FullPathJoinsFolderNameAndExtension)
{
    FileEntry entry;
    entry.path = QStringLiteral("/data/music/");
    entry.name = QStringLiteral("song.live");
    entry.ext = QStringLiteral(".mp3");
    EXPECT_EQ(entry.fullPath(), QStringLiteral("/data/music/song.live.mp3"));
}

TEST(PathText, SplitsAfterTheLastSeparator)
{
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"/a/b/c.txt", "/a/b/", "c.txt"},
        {"/a/b/", "/a/", "b"},
        {"/a", "/", "a"},
        {"/", "/", ""},
        {"name", "", "name"},
    };
    for (const auto& [full, folder, name] : cases) {
        const PathParts parts = splitPath(QString::fromUtf8(full));
        EXPECT_EQ(parts.folder, QString::fromUtf8(folder)) << full;
        EXPECT_EQ(parts.fileName, QString::fromUtf8(name)) << full;
    }
}

#ifndef _WIN32
TEST(PathText, LinuxPathRules)
{
    EXPECT_TRUE(isAbsolutePath(QStringLiteral("/x")));
    EXPECT_FALSE(isAbsolutePath(QStringLiteral("x/y")));
    EXPECT_FALSE(isAbsolutePath(QStringLiteral("C:/x")));
    EXPECT_TRUE(isRootPath(QStringLiteral("/")));
    EXPECT_FALSE(isRootPath(QStringLiteral("/home")));
    // A backslash is part of a Linux name, never a separator.
    EXPECT_EQ(internalSeparators(QStringLiteral("a\\b")), QStringLiteral("a\\b"));
    EXPECT_NE(pathKey(QStringLiteral("/A/x.TXT")), pathKey(QStringLiteral("/a/X.txt")));
}
#endif

}  // namespace
}  // namespace qp

#include "../support/TempTree.h"
#include "core/FolderListing.h"

namespace qp {
namespace {

// Many questions about several folders, asked in turns: the answers must stay those of the
// disk once the folders have been listed (and the listings have moved in memory).
TEST(FolderListing, AnswersLikeTheDiskAcrossFolders)
{
    test::TempTree tree;
    for (int f = 0; f < 20; ++f) {
        tree.file("d" + std::to_string(f) + "/file" + std::to_string(f) + ".txt");
        tree.folder("d" + std::to_string(f) + "/sub");
    }
    FolderListing listing;
    for (int round = 0; round < 100; ++round) {
        for (int f = 0; f < 20; ++f) {
            const QString folder = tree.path("d" + std::to_string(f)) + u'/';
            const QString file = QStringLiteral("file%1.txt").arg(f);
            ASSERT_TRUE(listing.exists(folder, file)) << round << " " << f;
            EXPECT_FALSE(listing.exists(folder, QStringLiteral("file%1.txt").arg(f + 1)));
            EXPECT_EQ(listing.isFolder(folder, file), std::optional<bool>(false));
            EXPECT_EQ(listing.isFolder(folder, QStringLiteral("sub")), std::optional<bool>(true));
            EXPECT_EQ(listing.isFolder(folder, QStringLiteral("gone")), std::nullopt);
        }
    }
}

// A listed folder of many names answers for every one of them and for none other; a folder
// that is gone holds nothing, however often it is asked about.
TEST(FolderListing, ListedAndMissingFoldersAnswerEveryName)
{
    test::TempTree tree;
    for (int i = 0; i < 500; ++i)
        tree.file("big/n" + std::to_string(i) + (i % 7 ? ".txt" : ""));
    tree.folder("big/子文件夹");
    const QString big = tree.path("big") + u'/';
    const QString gone = tree.path("gone") + u'/';
    FolderListing listing;
    for (int round = 0; round < 2; ++round) {
        for (int i = 0; i < 500; ++i) {
            const QString name = QStringLiteral("n%1").arg(i) + (i % 7 ? QStringLiteral(".txt") : QString());
            ASSERT_TRUE(listing.exists(big, name)) << i;
            EXPECT_FALSE(listing.exists(big, name + u'x')) << i;
            EXPECT_EQ(listing.isFolder(big, name), std::optional<bool>(false)) << i;
            EXPECT_FALSE(listing.exists(gone, name));
            EXPECT_EQ(listing.isFolder(gone, name), std::nullopt);
        }
        EXPECT_EQ(listing.isFolder(big, QStringLiteral("子文件夹")), std::optional<bool>(true));
    }
}

}  // namespace
}  // namespace qp
