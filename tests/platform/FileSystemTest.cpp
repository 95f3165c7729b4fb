#include "platform/FileSystem.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <vector>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace fs = std::filesystem;
using namespace qp::platform;

namespace {

Path toPath(const fs::path& p) { return p.generic_u16string(); }
std::string show(PathView p) { return toUtf8(p); }

void writeText(const fs::path& p, const std::string& text) { std::ofstream(p, std::ios::binary) << text; }

std::string readText(const fs::path& p)
{
    std::ifstream in(p, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

std::vector<std::string> sorted(std::vector<std::string> v)
{
    std::sort(v.begin(), v.end());
    return v;
}

// A fresh folder per test, removed afterwards.
class TempTree : public ::testing::Test {
protected:
    void SetUp() override
    {
        std::random_device random;
        root_ = fs::temp_directory_path() / ("qp-platform-test-" + std::to_string(random()) + std::to_string(random()));
        fs::create_directories(root_);
    }
    void TearDown() override
    {
        std::error_code ec;
        fs::remove_all(root_, ec);
    }
    Path at(const std::string& relative) const { return toPath(root_ / relative); }
    fs::path root_;
};

struct Walked {
    std::vector<std::string> paths;  // relative to the root, in the order reported
    std::map<std::string, FileInfo> info;
    std::vector<std::pair<WalkProblem, std::string>> problems;
    bool finished = false;
};

Walked walkTree(const fs::path& root, bool recursive, int stopAfter = -1, const Path& rootSuffix = {})
{
    Walked w;
    const std::string rootText = show(toPath(root)) + "/";
    WalkEvents events;
    events.entry = [&](const DirEntry& e) {
        EXPECT_EQ(show(e.folder).rfind(rootText, 0), 0u) << show(e.folder);
        EXPECT_EQ(e.folder.back(), u'/');
        const std::string relative = (show(e.folder) + show(e.name)).substr(rootText.size());
        w.paths.push_back(relative);
        w.info[relative] = e.info;
        return stopAfter < 0 || static_cast<int>(w.paths.size()) < stopAfter;
    };
    events.problem = [&](WalkProblem p, PathView what) { w.problems.emplace_back(p, show(what)); };
    w.finished = walk(toPath(root) + rootSuffix, recursive, events);
    return w;
}

}  // namespace

// ---- UTF-8 / UTF-16 and letters --------------------------------------------------------

TEST(Utf, DecodesWellFormedAndRejectsEverythingElse)
{
    struct Case {
        const char* label;
        std::string bytes;
        std::optional<Path> strict;
        Path lossy;  // each maximal ill-formed part becomes one U+FFFD
    };
    const Case cases[] = {
        {"empty", "", u"", u""},
        {"ascii", "a.txt", u"a.txt", u"a.txt"},
        {"two bytes", "\xC3\xA9", u"\u00E9", u"\u00E9"},
        {"three bytes", "\xE4\xB8\xAD\xE6\x96\x87", u"\u4E2D\u6587", u"\u4E2D\u6587"},
        {"four bytes -> pair", "\xF0\x9F\x98\x80", u"\U0001F600", u"\U0001F600"},
        {"highest scalar", "\xF4\x8F\xBF\xBF", u"\U0010FFFF", u"\U0010FFFF"},
        {"last before surrogates", "\xED\x9F\xBF", u"\uD7FF", u"\uD7FF"},
        {"overlong (2)", "\xC0\xAF", std::nullopt, u"\uFFFD\uFFFD"},
        {"overlong (3)", "\xE0\x80\xAF", std::nullopt, u"\uFFFD\uFFFD\uFFFD"},
        {"overlong (4)", "\xF0\x80\x80\xAF", std::nullopt, u"\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"encoded high surrogate", "\xED\xA0\x80", std::nullopt, u"\uFFFD\uFFFD\uFFFD"},
        {"encoded low surrogate", "\xED\xBF\xBF", std::nullopt, u"\uFFFD\uFFFD\uFFFD"},
        {"above U+10FFFF", "\xF4\x90\x80\x80", std::nullopt, u"\uFFFD\uFFFD\uFFFD\uFFFD"},
        {"F5 lead", "\xF5\x80", std::nullopt, u"\uFFFD\uFFFD"},
        {"lone continuation", "a\x80z", std::nullopt, u"a\uFFFDz"},
        {"truncated at end", "ab\xE4\xB8", std::nullopt, u"ab\uFFFD"},
        {"truncated before ascii", "\xE4\xB8x", std::nullopt, u"\uFFFDx"},
        {"truncated before valid", "\xF0\x9F\x98\xC3\xA9", std::nullopt, u"\uFFFD\u00E9"},
        {"FF byte", "bad\xFF.txt", std::nullopt, u"bad\uFFFD.txt"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        EXPECT_EQ(toUtf16(c.bytes), c.strict);
        EXPECT_EQ(toUtf16Lossy(c.bytes), c.lossy);
        Path buffer = u"keep";
        EXPECT_EQ(appendUtf16(c.bytes, buffer), c.strict.has_value());
        EXPECT_EQ(buffer, c.strict ? u"keep" + *c.strict : Path(u"keep"));
    }
}

TEST(Utf, EncodesUtf16AndReplacesUnpairedSurrogates)
{
    const std::pair<Path, std::string> cases[] = {
        {u"abc", "abc"},
        {u"\u00E9\u4E2D", "\xC3\xA9\xE4\xB8\xAD"},
        {u"\U0001F600", "\xF0\x9F\x98\x80"},
        {Path(u"a") + char16_t(0xD83D), "a\xEF\xBF\xBD"},                         // high at the end
        {Path{char16_t(0xDE00), u'b'}, "\xEF\xBF\xBD" "b"},                       // lone low
        {Path{char16_t(0xDE00), char16_t(0xD83D)}, "\xEF\xBF\xBD\xEF\xBF\xBD"},  // reversed pair
        {Path{char16_t(0xD83D), u'x'}, "\xEF\xBF\xBDx"},
    };
    for (const auto& [text, bytes] : cases) EXPECT_EQ(toUtf8(text), bytes) << bytes;
}

TEST(Attributes, LettersInFixedOrder)
{
    const std::pair<std::uint32_t, Path> cases[] = {
        {0, u""},
        {AttrArchive, u"A"},
        {AttrSystem | AttrHidden, u"HS"},
        {AttrDirectory | AttrReadOnly | AttrHidden, u"<DIR>RH"},
        {AttrDirectory | AttrArchive | AttrReadOnly | AttrHidden | AttrSystem, u"<DIR>ARHS"},
        {0x80 | 0x2000, u""},  // bits without a letter
    };
    for (const auto& [bits, letters] : cases) EXPECT_EQ(attributeLetters(bits), letters) << bits;
}

TEST(System, PathKeysDriveAndExecutable)
{
    if (pathKeysIgnoreCase()) {
        EXPECT_EQ(pathKey(u"C:\\Data/Photo.JPG"), pathKey(u"c:/data/photo.jpg"));
        EXPECT_NE(pathKey(u"c:/data/a"), pathKey(u"c:/data/b"));
    } else {
        EXPECT_EQ(pathKey(u"/Data/Photo.JPG"), u"/Data/Photo.JPG");
    }
    const Path drive = systemDrive();
    ASSERT_FALSE(drive.empty());
    EXPECT_EQ(drive.back(), u'/');
    EXPECT_TRUE(isFolder(drive));
    const Path self = executablePath();
    EXPECT_TRUE(isFile(self)) << show(self);
    EXPECT_EQ(self.find(u'\\'), Path::npos);
}

// ---- stat and attributes -------------------------------------------------------------

TEST_F(TempTree, StatDescribesFilesFoldersAndAbsence)
{
    writeText(root_ / "five.txt", "12345");
    fs::create_directory(root_ / "folder");
    const std::int64_t now = std::chrono::duration_cast<std::chrono::nanoseconds>(
                                 std::chrono::system_clock::now().time_since_epoch()).count();

    const auto file = stat(at("five.txt"));
    ASSERT_TRUE(file);
    EXPECT_FALSE(file->isFolder || file->isSymlink || (file->attributes & AttrDirectory));
    EXPECT_EQ(file->size, 5u);
    EXPECT_LT(std::llabs(file->modified - now), 600'000'000'000LL);  // within ten minutes: units and epoch
    EXPECT_GT(file->created, 0);

    const auto folder = stat(at("folder"));
    ASSERT_TRUE(folder);
    EXPECT_TRUE(folder->isFolder && (folder->attributes & AttrDirectory));
    EXPECT_EQ(folder->size, 0u);
    EXPECT_TRUE(stat(at("folder/")));

    EXPECT_FALSE(stat(at("nothing")) || stat(at("five.txt/below")));
    EXPECT_TRUE(isFile(at("five.txt")) && !isFolder(at("five.txt")));
    EXPECT_TRUE(isFolder(at("folder")) && !isFile(at("folder")));
    EXPECT_FALSE(exists(at("nothing")) || isFile(at("nothing")) || isFolder(at("nothing")));
}

// A path that no file system can hold must not be cut or patched into one that names
// something else: "a.txt" + NUL + "x" is not "a.txt", and a lone surrogate is not U+FFFD.
TEST_F(TempTree, UnrepresentablePathsNameNothing)
{
    writeText(root_ / "a.txt", "keep");
    std::vector<Path> bad{at("a.txt") + u'\0' + u"x"};
#ifndef _WIN32
    writeText(root_ / "\xEF\xBF\xBD", "replacement character");
    bad.push_back(at("") + u'\xDC00');  // Windows names may hold lone surrogates; Linux names cannot
#endif
    for (const Path& path : bad) {
        EXPECT_FALSE(stat(path)) << show(path);
        EXPECT_EQ(readFile(path, 100).status, ReadStatus::Missing);
        EXPECT_EQ(renameNoReplace(path, at("moved")).status, RenameStatus::InvalidName);
        EXPECT_EQ(renameNoReplace(at("a.txt"), path).status, RenameStatus::InvalidName);
        EXPECT_FALSE(writeFileAtomically(path, "x", nullptr));
    }
    EXPECT_EQ(readText(root_ / "a.txt"), "keep");
#ifndef _WIN32
    EXPECT_EQ(readText(root_ / "\xEF\xBF\xBD"), "replacement character");
#endif
}

TEST_F(TempTree, ReadOnlyCanBeSetAndCleared)
{
    writeText(root_ / "f.txt", "x");
    const std::uint32_t others = stat(at("f.txt"))->attributes & ~static_cast<std::uint32_t>(AttrReadOnly);
    ASSERT_TRUE(setAttributes(at("f.txt"), others | AttrReadOnly));
    EXPECT_NE(stat(at("f.txt"))->attributes & AttrReadOnly, 0u);
    ASSERT_TRUE(setAttributes(at("f.txt"), others));
    EXPECT_EQ(stat(at("f.txt"))->attributes & AttrReadOnly, 0u);
    EXPECT_FALSE(setAttributes(at("missing"), 0));
}

// ---- rename without replace ------------------------------------------------------------

TEST_F(TempTree, RenameNeverReplacesAndReportsWhy)
{
    enum class Kind { None, File, EmptyFolder, FullFolder };
    struct Case {
        const char* label;
        Kind source, target;
        RenameStatus expected;
    };
    const Case cases[] = {
        {"file to free name", Kind::File, Kind::None, RenameStatus::Ok},
        {"folder with contents to free name", Kind::FullFolder, Kind::None, RenameStatus::Ok},
        {"file onto file", Kind::File, Kind::File, RenameStatus::TargetExists},
        {"file onto folder", Kind::File, Kind::FullFolder, RenameStatus::TargetExists},
        {"folder onto empty folder", Kind::FullFolder, Kind::EmptyFolder, RenameStatus::TargetExists},
        {"folder onto folder", Kind::FullFolder, Kind::FullFolder, RenameStatus::TargetExists},
        {"folder onto file", Kind::FullFolder, Kind::File, RenameStatus::TargetExists},
        {"missing source", Kind::None, Kind::None, RenameStatus::SourceMissing},
        {"missing source, existing target", Kind::None, Kind::File, RenameStatus::SourceMissing},
    };
    auto make = [](const fs::path& p, Kind kind, const std::string& content) {
        if (kind == Kind::File) writeText(p, content);
        if (kind == Kind::EmptyFolder || kind == Kind::FullFolder) fs::create_directory(p);
        if (kind == Kind::FullFolder) writeText(p / "inner.txt", content);
    };
    auto content = [](const fs::path& p, Kind kind) { return readText(kind == Kind::File ? p : p / "inner.txt"); };
    int n = 0;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        const fs::path dir = root_ / std::to_string(n++);
        fs::create_directory(dir);
        make(dir / "from", c.source, "source");
        make(dir / "to", c.target, "target");

        const RenameResult r = renameNoReplace(toPath(dir / "from"), toPath(dir / "to"));
        EXPECT_EQ(r.status, c.expected) << r.systemMessage;
        if (r.ok()) {
            EXPECT_FALSE(fs::exists(dir / "from"));
            EXPECT_EQ(content(dir / "to", c.source), "source");
            continue;
        }
        EXPECT_NE(r.systemError, 0);
        EXPECT_FALSE(r.systemMessage.empty());
        if (c.source != Kind::None) {
            EXPECT_EQ(content(dir / "from", c.source), "source");
        }
        if (c.target == Kind::File || c.target == Kind::FullFolder) {
            EXPECT_EQ(content(dir / "to", c.target), "target");
        }
        if (c.target == Kind::EmptyFolder) {
            EXPECT_TRUE(fs::is_empty(dir / "to"));
        }
    }
}

TEST_F(TempTree, RenameChangingOnlyCaseKeepsTheObject)
{
    writeText(root_ / "photo.jpg", "data");
    const RenameResult r = renameNoReplace(at("photo.jpg"), at("PHOTO.JPG"));
    ASSERT_TRUE(r.ok()) << r.systemMessage;
    EXPECT_EQ(readText(root_ / "PHOTO.JPG"), "data");
    EXPECT_EQ(walkTree(root_, false).paths, std::vector<std::string>{"PHOTO.JPG"});
}

// ---- folders and whole-file I/O ------------------------------------------------------

TEST_F(TempTree, CreateFoldersMakesEveryLevelAndToleratesExisting)
{
    EXPECT_TRUE(createFolders(at("a/b/c")));
    EXPECT_TRUE(fs::is_directory(root_ / "a" / "b" / "c"));
    EXPECT_TRUE(createFolders(at("a/b/c")));
    EXPECT_TRUE(createFolders(at("a/b/")));
    writeText(root_ / "file", "x");
    EXPECT_FALSE(createFolders(at("file")));
    EXPECT_FALSE(createFolders(at("file/below")));
}

TEST_F(TempTree, WriteAtomicallyReplacesWholeAndLeavesNoTemporary)
{
    std::string error;
    ASSERT_TRUE(writeFileAtomically(at("state/settings.ini"), "first version, rather long\n", &error)) << error;
    EXPECT_EQ(readText(root_ / "state" / "settings.ini"), "first version, rather long\n");
    ASSERT_TRUE(writeFileAtomically(at("state/settings.ini"), "short", &error)) << error;
    EXPECT_EQ(readText(root_ / "state" / "settings.ini"), "short");
    EXPECT_EQ(walkTree(root_ / "state", false).paths, std::vector<std::string>{"settings.ini"});

    ASSERT_TRUE(writeFileAtomically(at("empty"), "", nullptr));
    EXPECT_EQ(readFile(at("empty"), 0).status, ReadStatus::Ok);

    fs::create_directory(root_ / "occupied");
    EXPECT_FALSE(writeFileAtomically(at("occupied"), "x", &error));
    EXPECT_FALSE(error.empty());
    EXPECT_TRUE(fs::is_directory(root_ / "occupied"));
    EXPECT_EQ(walkTree(root_ / "occupied", false).paths.size(), 0u);
}

TEST_F(TempTree, ReadFileReportsMissingTooLargeAndBinaryContent)
{
    const std::string binary("a\0b\xFF\r\n", 6);
    writeText(root_ / "bin", binary);
    const ReadResult whole = readFile(at("bin"), 6);
    EXPECT_EQ(whole.status, ReadStatus::Ok);
    EXPECT_EQ(whole.bytes, binary);
    EXPECT_TRUE(whole.systemMessage.empty());
    EXPECT_EQ(readFile(at("bin"), 5).status, ReadStatus::TooLarge);
    EXPECT_TRUE(readFile(at("bin"), 5).bytes.empty());

    const ReadResult missing = readFile(at("nope"), 100);
    EXPECT_EQ(missing.status, ReadStatus::Missing);
    EXPECT_FALSE(missing.systemMessage.empty());
    EXPECT_EQ(readFile(at("nofolder/nope"), 100).status, ReadStatus::Missing);
    fs::create_directory(root_ / "dir");
    EXPECT_EQ(readFile(at("dir"), 100).status, ReadStatus::Unreadable);
}

// ---- walk ----------------------------------------------------------------------------

TEST_F(TempTree, WalkListsDepthFirstWithFoldersBeforeTheirContents)
{
    fs::create_directories(root_ / "sub" / "deeper");
    fs::create_directory(root_ / "empty");
    for (const char* name : {"a.txt", ".hidden", "sub/b.txt", "sub/deeper/c.txt", "z.txt"}) writeText(root_ / name, name);

    const Walked all = walkTree(root_, true);
    EXPECT_TRUE(all.finished);
    EXPECT_TRUE(all.problems.empty());
    EXPECT_EQ(sorted(all.paths), (std::vector<std::string>{".hidden", "a.txt", "empty", "sub", "sub/b.txt",
                                                           "sub/deeper", "sub/deeper/c.txt", "z.txt"}));
    // A folder comes first, and everything below it follows without interruption.
    for (const std::string folder : {"sub", "sub/deeper"}) {
        const auto at = std::find(all.paths.begin(), all.paths.end(), folder);
        const auto end = std::find_if(at + 1, all.paths.end(), [&](const std::string& p) { return p.rfind(folder + "/", 0) != 0; });
        EXPECT_EQ(end - at - 1, folder == "sub" ? 3 : 1) << folder;
    }
    EXPECT_TRUE(all.info.at("sub").isFolder);
    EXPECT_EQ(all.info.at("sub/deeper/c.txt").size, std::strlen("sub/deeper/c.txt"));

    const std::vector<std::string> top{".hidden", "a.txt", "empty", "sub", "z.txt"};
    EXPECT_EQ(sorted(walkTree(root_, false).paths), top);
    EXPECT_EQ(sorted(walkTree(root_, false, -1, u"/").paths), top);  // trailing separator on the root
}

TEST_F(TempTree, WalkStopsWhenToldAndSurvivesAMissingRoot)
{
    fs::create_directories(root_ / "x" / "y");
    for (const char* name : {"1", "2", "x/3", "x/y/4"}) writeText(root_ / name, "");
    for (int stopAfter : {1, 3, 5}) {
        const Walked w = walkTree(root_, true, stopAfter);
        EXPECT_FALSE(w.finished);
        EXPECT_EQ(w.paths.size(), static_cast<std::size_t>(stopAfter));
    }
    EXPECT_TRUE(walkTree(root_, true, 7).finished);  // six entries in all

    const Walked gone = walkTree(root_ / "gone", true);
    EXPECT_TRUE(gone.finished && gone.paths.empty());
    EXPECT_EQ(gone.problems, (decltype(gone.problems){{WalkProblem::Unreadable, show(toPath(root_ / "gone")) + "/"}}));
    std::size_t reported = 0;
    EXPECT_TRUE(walk(u"", true, {[](const DirEntry&) { return false; }, [&](WalkProblem, PathView) { ++reported; }}));
    EXPECT_EQ(reported, 1u);
}

#ifndef _WIN32

// ---- Linux only: synthesised attributes, links, undecodable names, permissions --------

TEST_F(TempTree, LinuxAttributesComeFromNameAndOwnerWriteBit)
{
    struct Case {
        const char* name;
        bool folder;
        mode_t mode;
        Path letters;
    };
    const Case cases[] = {
        {"plain", false, 0644, u""},          {".dotfile", false, 0644, u"H"},  {"locked", false, 0444, u"R"},
        {"group-only", false, 0464, u"R"},    {".both", false, 0400, u"RH"},    {"dir", true, 0755, u"<DIR>"},
        {".dir", true, 0555, u"<DIR>RH"},
    };
    for (const Case& c : cases) {
        const fs::path p = root_ / c.name;
        c.folder ? (void)fs::create_directory(p) : writeText(p, "x");
        ASSERT_EQ(::chmod(p.c_str(), c.mode), 0);
        EXPECT_EQ(attributeLetters(stat(toPath(p))->attributes), c.letters) << c.name;
    }
    EXPECT_EQ(attributeLetters(stat(u"/")->attributes), u"<DIR>");
}

TEST_F(TempTree, LinuxSetAttributesChangesOnlyWriteBits)
{
    writeText(root_ / "f", "x");
    const std::string f = (root_ / "f").string();
    auto mode = [&] {
        struct stat st;
        ::stat(f.c_str(), &st);
        return st.st_mode & 07777;
    };
    ::chmod(f.c_str(), 0666);
    ASSERT_TRUE(setAttributes(at("f"), AttrReadOnly));
    EXPECT_EQ(mode(), 0444u);
    ASSERT_TRUE(setAttributes(at("f"), 0));
    EXPECT_EQ(mode(), 0644u);  // only the owner gets write permission back

    // Hidden, system and archive cannot be expressed here; asking for them changes nothing.
    for (std::uint32_t bits : {0x02u /*H*/, 0x04u /*S*/, 0x20u /*A*/, 0x03u /*RH*/}) {
        EXPECT_FALSE(setAttributes(at("f"), bits)) << bits;
        EXPECT_EQ(mode(), 0644u);
    }
    writeText(root_ / ".h", "x");
    EXPECT_TRUE(setAttributes(at(".h"), AttrHidden | AttrReadOnly));
    EXPECT_FALSE(setAttributes(at(".h"), 0));
}

TEST_F(TempTree, LinuxSymlinksAreDescribedByTheirTargets)
{
    writeText(root_ / "target.txt", "1234567");
    fs::create_directory(root_ / "dir");
    fs::create_symlink("target.txt", root_ / "to-file");
    fs::create_directory_symlink("dir", root_ / "to-dir");
    fs::create_symlink("does-not-exist", root_ / "broken");
    struct Case {
        const char* name;
        bool folder;
        std::uint64_t size;
    };
    // A broken link is a file with the link's own size (the length of what it points at).
    for (const Case c : {Case{"to-file", false, 7}, Case{"to-dir", true, 0}, Case{"broken", false, 14}}) {
        const auto info = stat(at(c.name));
        ASSERT_TRUE(info) << c.name;
        EXPECT_TRUE(info->isSymlink) << c.name;
        EXPECT_EQ(info->isFolder, c.folder) << c.name;
        EXPECT_EQ((info->attributes & AttrDirectory) != 0, c.folder) << c.name;
        EXPECT_EQ(info->size, c.size) << c.name;
    }
}

TEST_F(TempTree, LinuxWalkListsLinkLoopsWithoutEnteringThem)
{
    fs::create_directory(root_ / "sub");
    writeText(root_ / "sub" / "f", "");
    fs::create_directory_symlink("..", root_ / "sub" / "up");
    fs::create_directory_symlink(root_ / "sub", root_ / "again");

    const Walked w = walkTree(root_, true);
    EXPECT_TRUE(w.finished);
    EXPECT_EQ(sorted(w.paths), (std::vector<std::string>{"again", "sub", "sub/f", "sub/up"}));
    for (const char* link : {"again", "sub/up"}) EXPECT_TRUE(w.info.at(link).isSymlink && w.info.at(link).isFolder);
}

TEST_F(TempTree, LinuxWalkSkipsNamesThatAreNotUtf8)
{
    const std::string dir = root_.string();
    writeText(dir + "/bad\xFF.txt", "");
    ASSERT_EQ(::mkdir((dir + "/dir\xC0\xAF").c_str(), 0755), 0);
    writeText(dir + "/dir\xC0\xAF/inside", "");
    writeText(root_ / "good.txt", "");

    const Walked w = walkTree(root_, true);
    EXPECT_TRUE(w.finished);
    EXPECT_EQ(w.paths, std::vector<std::string>{"good.txt"});
    auto problems = w.problems;
    std::sort(problems.begin(), problems.end());
    const std::string folder = show(toPath(root_)) + "/";
    EXPECT_EQ(problems, (decltype(problems){{WalkProblem::BadNameEncoding, folder + "bad\uFFFD.txt"},
                                            {WalkProblem::BadNameEncoding, folder + "dir\uFFFD\uFFFD"}}));
}

TEST_F(TempTree, LinuxWalkReportsAnUnreadableFolderAndGoesOn)
{
    if (::geteuid() == 0) GTEST_SKIP() << "permissions do not apply to root";
    fs::create_directory(root_ / "locked");
    writeText(root_ / "locked" / "secret", "");
    writeText(root_ / "open.txt", "");
    ::chmod((root_ / "locked").c_str(), 0);
    const Walked w = walkTree(root_, true);
    ::chmod((root_ / "locked").c_str(), 0755);

    EXPECT_TRUE(w.finished);
    EXPECT_EQ(sorted(w.paths), (std::vector<std::string>{"locked", "open.txt"}));
    EXPECT_EQ(w.problems, (decltype(w.problems){{WalkProblem::Unreadable, show(toPath(root_)) + "/locked/"}}));
}

TEST_F(TempTree, LinuxWalkGoesAThousandLevelsDeepWithFewDescriptors)
{
    fs::path p = root_;
    for (int i = 0; i < 1000; ++i) p /= "d";
    fs::create_directories(p);
    writeText(p / "leaf", "");

    struct rlimit saved, tight;
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &saved), 0);
    tight = saved;
    tight.rlim_cur = 64;
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &tight), 0);
    const Walked w = walkTree(root_, true);
    ::setrlimit(RLIMIT_NOFILE, &saved);

    EXPECT_TRUE(w.finished && w.problems.empty());
    ASSERT_EQ(w.paths.size(), 1001u);
    EXPECT_EQ(w.paths.back().size(), 1000u * 2 + 4);
}

TEST_F(TempTree, LinuxRenameMapsSystemErrors)
{
    writeText(root_ / "f", "x");
    const RenameResult tooLong = renameNoReplace(at("f"), at(std::string(300, 'n')));
    EXPECT_EQ(tooLong.status, RenameStatus::NameTooLong);
    EXPECT_EQ(tooLong.systemError, ENAMETOOLONG);

    fs::create_directories(root_ / "dir" / "child");
    EXPECT_EQ(renameNoReplace(at("dir"), at("dir/child/dir")).status, RenameStatus::InvalidName);
    EXPECT_TRUE(fs::is_directory(root_ / "dir" / "child"));

    if (::geteuid() != 0) {
        fs::create_directory(root_ / "ro");
        writeText(root_ / "ro" / "g", "");
        ::chmod((root_ / "ro").c_str(), 0555);
        const RenameResult denied = renameNoReplace(at("ro/g"), at("ro/h"));
        ::chmod((root_ / "ro").c_str(), 0755);
        EXPECT_EQ(denied.status, RenameStatus::AccessDenied);
        EXPECT_EQ(denied.systemMessage, std::strerror(EACCES));
    }
}

#endif  // _WIN32
