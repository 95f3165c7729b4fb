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

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#else
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
fs::path utf8Path(const char* text) { return fs::path(reinterpret_cast<const char8_t*>(text)); }

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
    FolderRenamer renamer;  // the same answers through a kept folder handle
    for (const bool inFolder : {false, true})
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.label) + (inFolder ? " (in folder)" : ""));
        const fs::path dir = root_ / std::to_string(n++);
        fs::create_directory(dir);
        make(dir / "from", c.source, "source");
        make(dir / "to", c.target, "target");

        const RenameResult r = inFolder ? renamer.rename(toPath(dir) + u"/", u"from", u"to")
                                        : renameNoReplace(toPath(dir / "from"), toPath(dir / "to"));
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

TEST_F(TempTree, FolderRenamerNeverLetsAnObjectLeaveItsFolder)
{
    fs::create_directory(root_ / "sub");
    writeText(root_ / "a", "a");
    FolderRenamer renamer;
    const Path folder = toPath(root_) + u"/";
    for (const Path& bad : {Path(u"sub/a"), Path(u".."), Path(u"."), Path(), Path(u"x\0y", 3)}) {
        EXPECT_EQ(renamer.rename(folder, u"a", bad).status, RenameStatus::InvalidName) << show(bad);
        EXPECT_EQ(renamer.rename(folder, bad, u"b").status, RenameStatus::InvalidName) << show(bad);
    }
    EXPECT_EQ(readText(root_ / "a"), "a");
    // A renamed folder is let go of: its old path names nothing any more.
    ASSERT_TRUE(renamer.rename(folder, u"sub", u"moved").ok());
    renamer.release();
    EXPECT_EQ(renamer.rename(folder + u"sub/", u"x", u"y").status, RenameStatus::SourceMissing);
    ASSERT_TRUE(renamer.rename(folder, u"a", u"b").ok());
    EXPECT_EQ(readText(root_ / "b"), "a");
}

TEST(NameRules, DeviceNamesForbiddenCharactersAndPlainNames)
{
    for (const char16_t* name : {u"CON", u"con.txt", u"Lpt3.tar.gz", u"nul .x", u"AUX", u"com9", u"PRN."})
        EXPECT_TRUE(isReservedDeviceName(name)) << show(name);
    for (const char16_t* name : {u"CONSOLE", u"com0", u"COM10.txt", u"LPT", u"xcon", u".con", u""})
        EXPECT_FALSE(isReservedDeviceName(name)) << show(name);
    for (const char16_t c : std::u16string_view(u"*/:<>?\\|\x01\x1f"))
        EXPECT_TRUE(isForbiddenInName(c, true)) << int(c);
    EXPECT_FALSE(isForbiddenInName(u'"', true));
    for (const char16_t c : std::u16string_view(u"*:<>?\\|\x01\n\""))
        EXPECT_FALSE(isForbiddenInName(c, false)) << int(c);
    EXPECT_TRUE(isForbiddenInName(u'/', false) && isForbiddenInName(0, false));
    EXPECT_EQ(isPlainName(u"a\\b"), !windowsNamesAlways());
    EXPECT_TRUE(isPlainName(u"...") && isPlainName(u" "));
}

TEST_F(TempTree, RenameChangingOnlyCaseKeepsTheObject)
{
    struct Case {
        const char* from;
        const char* to;
        bool folder;
    };
    const Case cases[] = {
        {"photo.jpg", "PHOTO.JPG", false},
        {"Report.TXT", "report.txt", false},
        {"\xC3\xA4rger.txt", "\xC3\x84rger.txt", false},  // ä -> Ä
        {"album", "Album", true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.from);
        const fs::path dir = root_ / (std::string(c.folder ? "d-" : "f-") + std::to_string(&c - cases));
        fs::create_directory(dir);
        const fs::path from = dir / utf8Path(c.from);
        if (c.folder) {
            fs::create_directory(from);
            writeText(from / "inner.txt", "data");
        } else {
            writeText(from, "data");
        }
        const RenameResult r = renameNoReplace(toPath(from), toPath(dir / utf8Path(c.to)));
        ASSERT_TRUE(r.ok()) << r.systemMessage;
        // The folder holds the new spelling, and only it.
        EXPECT_EQ(walkTree(dir, false).paths, std::vector<std::string>{c.to});
        EXPECT_EQ(readText(c.folder ? dir / utf8Path(c.to) / "inner.txt" : dir / utf8Path(c.to)), "data");
    }
}

// Where names compare without case, a target spelled like another object in other letters
// is that object: the rename must fail and leave both alone. Where case matters it is a
// free name.
TEST_F(TempTree, RenameOntoACaseVariantOfAnotherObject)
{
    struct Case {
        const char* label;
        const char* existing;
        bool existingIsFolder;
        const char* target;
    };
    const Case cases[] = {
        {"file onto upper-case spelling of a file", "b.txt", false, "B.TXT"},
        {"file onto mixed spelling of a file", "Notes.Md", false, "nOTES.mD"},
        {"file onto other spelling of a folder", "Docs", true, "docs"},
        {"non-ASCII letters", "\xC3\xA9t\xC3\xA9.txt", false, "\xC3\x89T\xC3\x89.txt"},  // été / ÉTÉ
    };
    const RenameStatus expected = pathKeysIgnoreCase() ? RenameStatus::TargetExists : RenameStatus::Ok;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        const fs::path dir = root_ / std::to_string(&c - cases);
        fs::create_directory(dir);
        writeText(dir / "source", "source");
        const fs::path existing = dir / utf8Path(c.existing);
        if (c.existingIsFolder) {
            fs::create_directory(existing);
            writeText(existing / "inner.txt", "existing");
        } else {
            writeText(existing, "existing");
        }
        const RenameResult r = renameNoReplace(toPath(dir / "source"), toPath(dir / utf8Path(c.target)));
        EXPECT_EQ(r.status, expected) << r.systemMessage;
        EXPECT_EQ(readText(c.existingIsFolder ? existing / "inner.txt" : existing), "existing");
        EXPECT_EQ(fs::exists(dir / "source"), !r.ok());
    }
}

// Names Windows refuses, reads as a stream, or would store other than spelled. Elsewhere
// they are ordinary names and must land exactly as given, trailing dots and spaces included.
TEST_F(TempTree, RenameToNamesWindowsCannotHoldAsSpelled)
{
    const std::string names[] = {"a<b", "a>b", "a:b", "a\"b", "a|b", "a?b", "a*b", "tab\tname",
                                 "dot.",  "space ", "both. ", "dots..."};
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        const fs::path dir = root_ / std::to_string(&name - names);
        fs::create_directory(dir);
        writeText(dir / "source", "source");
        const RenameResult r = renameNoReplace(toPath(dir / "source"), toPath(dir) + u'/' + *toUtf16(name));
#ifdef _WIN32
        EXPECT_EQ(r.status, RenameStatus::InvalidName);
        EXPECT_EQ(r.systemError, ERROR_INVALID_NAME);
        EXPECT_FALSE(r.systemMessage.empty());
        EXPECT_EQ(walkTree(dir, false).paths, std::vector<std::string>{"source"});
#else
        ASSERT_TRUE(r.ok()) << r.systemMessage;
        EXPECT_EQ(walkTree(dir, false).paths, std::vector<std::string>{name});
#endif
    }
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

TEST_F(TempTree, AppendRemoveAndListNames)
{
    {
        AppendFile journal;
        ASSERT_TRUE(journal.open(at("journal.txt")));
        EXPECT_TRUE(journal.append("one\r\n"));
        EXPECT_TRUE(journal.append("two\r\n"));
        // Every append is in the file at once, before the file is closed.
        EXPECT_EQ(readText(root_ / "journal.txt"), "one\r\ntwo\r\n");
    }
    AppendFile again;
    ASSERT_TRUE(again.open(at("journal.txt")));
    EXPECT_TRUE(again.append("three"));
    again.close();
    EXPECT_FALSE(again.append("lost"));
    EXPECT_EQ(readText(root_ / "journal.txt"), "one\r\ntwo\r\nthree");

    fs::create_directory(root_ / "folder");
    writeText(root_ / ".hidden", "");
    std::vector<std::string> names;
    EXPECT_TRUE(listNames(at(""), [&](PathView name, EntryKind kind) {
        // A file system may not say; when it does, it must be right.
        const char* shown = kind == EntryKind::Folder ? "/" : kind == EntryKind::File ? "" : "?";
        names.push_back(show(name) + (kind == EntryKind::Unknown ? "" : shown));
    }));
    std::vector<std::string> expected{".hidden", "folder/", "journal.txt"};
    for (std::string& name : names) {
        if (name == "folder") name = "folder/";  // an undecided kind is allowed
    }
    EXPECT_EQ(sorted(names), expected);
    EXPECT_FALSE(listNames(at("missing"), [](PathView, EntryKind) {}));

    EXPECT_FALSE(removeFile(at("folder")));  // never a folder
    EXPECT_TRUE(fs::is_directory(root_ / "folder"));
    EXPECT_TRUE(removeFile(at("journal.txt")));
    EXPECT_FALSE(fs::exists(root_ / "journal.txt"));
    EXPECT_TRUE(removeFile(at("journal.txt")));  // already gone
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

TEST_F(TempTree, ReadChunksHandsOverTheWholeFileInFullPieces)
{
    std::string content(10000, '\0');
    for (std::size_t i = 0; i < content.size(); ++i)
        content[i] = static_cast<char>(i * 7 + i / 256);
    writeText(root_ / "data", content);

    struct Case {
        std::size_t chunk;
        std::vector<std::size_t> sizes;
    };
    for (const Case& c : {Case{4096, {4096, 4096, 1808}}, Case{10000, {10000}}, Case{20000, {10000}},
                          Case{2500, {2500, 2500, 2500, 2500}}}) {
        std::string seen;
        std::vector<std::size_t> sizes;
        EXPECT_TRUE(readChunks(at("data"), c.chunk, [&](std::string_view piece) {
            seen.append(piece);
            sizes.push_back(piece.size());
            return true;
        }));
        EXPECT_EQ(seen, content) << c.chunk;
        EXPECT_EQ(sizes, c.sizes) << c.chunk;
    }

    int calls = 0;
    EXPECT_TRUE(readChunks(at("data"), 1000, [&](std::string_view) { return ++calls < 3; }));
    EXPECT_EQ(calls, 3);

    writeText(root_ / "empty", "");
    calls = 0;
    EXPECT_TRUE(readChunks(at("empty"), 64, [&](std::string_view) { return ++calls > 0; }));
    EXPECT_EQ(calls, 0);

    fs::create_directory(root_ / "dir");
    const auto never = [](std::string_view) {
        ADD_FAILURE() << "no piece expected";
        return true;
    };
    EXPECT_FALSE(readChunks(at("dir"), 64, never));
    EXPECT_FALSE(readChunks(at("nope"), 64, never));
#ifndef _WIN32
    // A named pipe without a writer: refused at once instead of waiting for one.
    ASSERT_EQ(::mkfifo((root_ / "pipe").c_str(), 0600), 0);
    EXPECT_FALSE(readChunks(at("pipe"), 64, never));
#endif
}

TEST_F(TempTree, ReadOnlyFileReadsAtOffsetsAndRefusesWhatIsNoFile)
{
    writeText(root_ / "data", "0123456789");
    ReadOnlyFile file;
    ASSERT_TRUE(file.open(at("data")));
    EXPECT_EQ(file.size(), 10u);
    char buffer[8] = {};
    struct Case {
        std::uint64_t offset;
        std::size_t count;
        std::string expected;
    };
    for (const Case& c : {Case{0, 4, "0123"}, Case{6, 8, "6789"}, Case{10, 4, ""}, Case{1000, 4, ""}}) {
        const std::int64_t got = file.readAt(c.offset, buffer, c.count);
        ASSERT_GE(got, 0) << c.offset;
        EXPECT_EQ(std::string(buffer, std::size_t(got)), c.expected) << c.offset;
    }
    // The file stays readable while another program renames it away.
    std::error_code ec;
    fs::rename(root_ / "data", root_ / "moved", ec);
    if (!ec) {
        EXPECT_EQ(file.readAt(2, buffer, 2), 2);
    }
    file.close();
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(file.readAt(0, buffer, 1), -1);

    fs::create_directory(root_ / "dir");
    EXPECT_FALSE(file.open(at("dir")));
    EXPECT_FALSE(file.open(at("nope")));
#ifndef _WIN32
    ASSERT_EQ(::mkfifo((root_ / "pipe").c_str(), 0600), 0);
    EXPECT_FALSE(file.open(at("pipe")));
#endif
    EXPECT_FALSE(file.isOpen());
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
    EXPECT_TRUE(walk(u"", true, {[](const DirEntry&) { return false; }, [&](WalkProblem, PathView) { ++reported; }, {}}));
    EXPECT_EQ(reported, 1u);
}

// ---- what the file system treats as one name -----------------------------------------

// The path key must put two spellings together exactly when the file system opens the
// same object for both: otherwise duplicate and conflict checks would disagree with the disk.
TEST_F(TempTree, PathKeysAgreeWithTheFileSystem)
{
    struct Case {
        const char* created;
        const char* probe;
        bool sameWithoutCase;  // NTFS: one simple upper-case mapping per code unit
    };
    const Case cases[] = {
        {"Photo.JPG", "photo.jpg", true},
        {"\xC3\x84rger", "\xC3\xA4rger", true},                // Ä / ä
        {"\xCE\xA3\xCE\xBF\xCF\x86", "\xCF\x83\xCE\xBF\xCF\x86", true},  // Σοφ / σοφ
        {"\xD0\x96", "\xD0\xB6", true},                        // Ж / ж
        {"\xEF\xBC\xA1", "\xEF\xBD\x81", true},                // full-width Ａ / ａ
        {"stra\xC3\x9F" "e", "STRASSE", false},                  // ß has no single upper-case letter
        {"\xC4\xB0" "d", "id", false},                           // İ is not I
        {"\xE6\x96\x87\xE4\xBB\xB6", "\xE6\x96\x87\xE4\xBB\xB6", true},  // 文件: no case at all
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.created);
        const fs::path dir = root_ / std::to_string(&c - cases);
        fs::create_directory(dir);
        writeText(dir / utf8Path(c.created), "x");
        const Path created = toPath(dir / utf8Path(c.created));
        const Path probe = toPath(dir / utf8Path(c.probe));
        const bool same = created == probe || (pathKeysIgnoreCase() && c.sameWithoutCase);
        EXPECT_EQ(pathKey(created) == pathKey(probe), same);
        EXPECT_EQ(exists(probe), same);
    }
}

// ---- times -----------------------------------------------------------------------------

namespace {

constexpr FileTime kSecond = 1'000'000'000;

// Sets modification and access time with the system's own call (100 ns is the finest step
// both systems keep).
bool setTimes(const fs::path& p, FileTime modified, FileTime accessed)
{
#ifdef _WIN32
    auto toFiletime = [](FileTime t) {
        const std::uint64_t ticks = static_cast<std::uint64_t>(t / 100 + 116444736000000000LL);
        return FILETIME{static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
    };
    HANDLE h = CreateFileW(p.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                           OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (h == INVALID_HANDLE_VALUE) return false;
    const FILETIME m = toFiletime(modified), a = toFiletime(accessed);
    const bool ok = SetFileTime(h, nullptr, &a, &m) != 0;
    CloseHandle(h);
    return ok;
#else
    const struct timespec times[2] = {{static_cast<time_t>(accessed / kSecond), static_cast<long>(accessed % kSecond)},
                                      {static_cast<time_t>(modified / kSecond), static_cast<long>(modified % kSecond)}};
    return ::utimensat(AT_FDCWD, p.c_str(), times, 0) == 0;
#endif
}

}  // namespace

TEST_F(TempTree, TimesAreNanosecondsSinceTheUnixEpoch)
{
    writeText(root_ / "f", "x");
    fs::create_directory(root_ / "d");
    struct Case {
        const char* label;
        FileTime modified, accessed;
    };
    const Case cases[] = {
        {"2001-09-09 01:46:40.1234567 UTC", 1'000'000'000 * kSecond + 123'456'700, 1'000'000'000 * kSecond},
        {"1980-01-01 UTC, before any file here", 315'532'800 * kSecond, 315'532'800 * kSecond + 100},
        {"2100-01-01 UTC, past 32-bit seconds", 4'102'444'800 * kSecond, 4'102'444'800 * kSecond},
    };
    for (const char* name : {"f", "d"}) {
        for (const Case& c : cases) {
            SCOPED_TRACE(std::string(name) + ": " + c.label);
            ASSERT_TRUE(setTimes(root_ / name, c.modified, c.accessed));
            const auto info = stat(at(name));
            ASSERT_TRUE(info);
            EXPECT_EQ(info->modified, c.modified);
            EXPECT_EQ(info->accessed, c.accessed);
            EXPECT_GT(info->created, 0);
            // The walk reads the times from the folder listing, not from stat.
            EXPECT_EQ(walkTree(root_, false).info.at(name).modified, c.modified);
        }
    }
}

// ---- long paths ------------------------------------------------------------------------

// Past 260 characters Windows takes a path only through the "\\?\" prefix; every
// operation must reach such paths, and rename must still refuse to replace there.
TEST_F(TempTree, PathsPastTheClassicLengthLimitWorkEverywhere)
{
    const std::string name(90, 'n');
    const Path deep = at(name + "/" + name + "/" + name);  // over 280 characters
    ASSERT_GT(deep.size(), 280u);
    ASSERT_TRUE(createFolders(deep + u"/inner"));
    EXPECT_TRUE(isFolder(deep + u"/inner"));

    std::string error;
    ASSERT_TRUE(writeFileAtomically(deep + u"/file.txt", "long", &error)) << error;
    ASSERT_TRUE(writeFileAtomically(deep + u"/other.txt", "other", &error)) << error;
    EXPECT_EQ(stat(deep + u"/file.txt")->size, 4u);
    EXPECT_EQ(readFile(deep + u"/file.txt", 100).bytes, "long");

    RenameResult r = renameNoReplace(deep + u"/file.txt", deep + u"/renamed.txt");
    ASSERT_TRUE(r.ok()) << r.systemMessage;
    r = renameNoReplace(deep + u"/inner", deep + u"/Inner folder");
    ASSERT_TRUE(r.ok()) << r.systemMessage;
    r = renameNoReplace(deep + u"/renamed.txt", deep + u"/other.txt");
    EXPECT_EQ(r.status, RenameStatus::TargetExists);
    EXPECT_EQ(readFile(deep + u"/other.txt", 100).bytes, "other");
    EXPECT_EQ(readFile(deep + u"/renamed.txt", 100).bytes, "long");

    const std::string prefix = name + "/" + name + "/" + name;
    const Walked w = walkTree(root_, true);
    EXPECT_TRUE(w.problems.empty());
    EXPECT_EQ(sorted(w.paths), (std::vector<std::string>{name, name + "/" + name, prefix, prefix + "/Inner folder",
                                                         prefix + "/other.txt", prefix + "/renamed.txt"}));
    EXPECT_EQ(w.info.at(prefix + "/renamed.txt").size, 4u);

    // Back to a short path in one move, which also lets the test's cleanup reach everything.
    r = renameNoReplace(deep, at("short"));
    ASSERT_TRUE(r.ok()) << r.systemMessage;
    EXPECT_EQ(readText(root_ / "short" / "renamed.txt"), "long");
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

#ifdef _WIN32

// ---- Windows only: the attribute word, names Win32 rewrites or refuses ------------------

namespace {

// Wine keeps no archive bit of its own: every file reads as archive. Real Windows keeps
// what was set.
bool underWine() { return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr; }

std::wstring extended(const fs::path& p) { return L"\\\\?\\" + p.wstring(); }

bool createRaw(const std::wstring& path)
{
    HANDLE h = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h == INVALID_HANDLE_VALUE) return false;
    CloseHandle(h);
    return true;
}

}  // namespace

TEST_F(TempTree, WindowsAttributesAreSetReadAndKeptByRename)
{
    writeText(root_ / "f", "x");
    const std::uint32_t cases[] = {AttrReadOnly, AttrHidden, AttrSystem, AttrArchive,
                                   AttrReadOnly | AttrHidden | AttrSystem, AttrArchive | AttrReadOnly | AttrHidden | AttrSystem, 0};
    for (std::uint32_t bits : cases) {
        SCOPED_TRACE(bits);
        ASSERT_TRUE(setAttributes(at("f"), bits));
        const std::uint32_t expected = bits | (underWine() ? std::uint32_t{AttrArchive} : 0u);
        EXPECT_EQ(attributeLetters(stat(at("f"))->attributes), attributeLetters(expected));
        EXPECT_EQ(walkTree(root_, false).info.at("f").attributes & 0x27u, expected);
    }

    // A renamer must be able to rename protected files, and must not change their attributes.
    ASSERT_TRUE(setAttributes(at("f"), AttrReadOnly | AttrHidden | AttrSystem));
    const std::uint32_t before = stat(at("f"))->attributes;
    const RenameResult r = renameNoReplace(at("f"), at("g"));
    ASSERT_TRUE(r.ok()) << r.systemMessage;
    EXPECT_EQ(stat(at("g"))->attributes, before);
    EXPECT_TRUE(setAttributes(at("g"), 0));

    fs::create_directory(root_ / "d");
    ASSERT_TRUE(setAttributes(at("d"), AttrHidden | AttrSystem));
    EXPECT_EQ(attributeLetters(stat(at("d"))->attributes), u"<DIR>HS");
    ASSERT_TRUE(setAttributes(at("d"), 0));
    EXPECT_EQ(attributeLetters(stat(at("d"))->attributes), u"<DIR>");
}

// ERROR_ALREADY_EXISTS is the whole answer: no retry with replacing, whatever protects the target.
TEST_F(TempTree, WindowsExistingTargetIsNeverReplaced)
{
    const std::uint32_t protections[] = {0, AttrReadOnly, AttrHidden, AttrSystem, AttrReadOnly | AttrHidden | AttrSystem};
    for (std::uint32_t bits : protections) {
        SCOPED_TRACE(bits);
        const fs::path dir = root_ / std::to_string(bits);
        fs::create_directory(dir);
        writeText(dir / "source", "source");
        writeText(dir / "target", "target");
        ASSERT_TRUE(setAttributes(toPath(dir / "target"), bits));
        const std::uint32_t before = stat(toPath(dir / "target"))->attributes;

        const RenameResult r = renameNoReplace(toPath(dir / "source"), toPath(dir / "TARGET"));
        EXPECT_EQ(r.status, RenameStatus::TargetExists);
        EXPECT_EQ(r.systemError, ERROR_ALREADY_EXISTS);
        EXPECT_EQ(readText(dir / "target"), "target");
        EXPECT_EQ(readText(dir / "source"), "source");
        EXPECT_EQ(stat(toPath(dir / "target"))->attributes, before);
        EXPECT_TRUE(setAttributes(toPath(dir / "target"), 0));
    }
}

// Win32 trims dots and spaces from the end of a name it is given, unless the path carries
// the "\\?\" prefix; names that keep them exist only when made through the prefix. The
// platform layer spells such names literally, so a file listed as "x." can be read and
// renamed to a proper name, and refuses to make new ones (RenameToNamesWindowsCannotHold...).
TEST_F(TempTree, WindowsTrimsTrailingDotsAndSpacesOutsideThePrefix)
{
    const std::pair<const wchar_t*, const char*> trimmed[] = {
        {L"dot.", "dot"}, {L"space ", "space"}, {L"mixed. .. ", "mixed"}, {L"inner. dot.x", "inner. dot.x"}};
    for (const auto& [given, stored] : trimmed) {
        ASSERT_TRUE(createRaw((root_ / given).wstring()));
        EXPECT_TRUE(fs::exists(root_ / stored)) << stored;
    }
    ASSERT_TRUE(createRaw(extended(root_ / L"kept.")));
    ASSERT_TRUE(createRaw(extended(root_ / L"kept ")));
    EXPECT_EQ(sorted(walkTree(root_, false).paths),
              (std::vector<std::string>{"dot", "inner. dot.x", "kept ", "kept.", "mixed", "space"}));

    EXPECT_TRUE(isFile(at("kept.")));
    EXPECT_FALSE(exists(at("kept")));
    EXPECT_EQ(readFile(at("kept."), 10).status, ReadStatus::Ok);
    RenameResult r = renameNoReplace(at("kept."), at("kept"));
    ASSERT_TRUE(r.ok()) << r.systemMessage;
    r = renameNoReplace(at("kept "), at("kept"));
    EXPECT_EQ(r.status, RenameStatus::TargetExists);
    r = renameNoReplace(at("kept "), at("kept too"));
    ASSERT_TRUE(r.ok()) << r.systemMessage;
    EXPECT_EQ(sorted(walkTree(root_, false).paths),
              (std::vector<std::string>{"dot", "inner. dot.x", "kept", "kept too", "mixed", "space"}));
}

// The file system itself refuses these characters, with or without the prefix. ':' is not
// among them: NTFS reads "a:b" as stream "b" of file "a", while Wine makes a file of that
// name; the platform layer refuses it before either can happen.
TEST_F(TempTree, WindowsRefusesForbiddenCharactersItself)
{
    writeText(root_ / "source", "source");
    for (const wchar_t* name : {L"a<b", L"a>b", L"a\"b", L"a|b", L"a?b", L"a*b", L"a\x01" L"b"}) {
        SCOPED_TRACE(toUtf8(Path(name, name + std::wcslen(name))));
        for (const std::wstring& path : {(root_ / name).wstring(), extended(root_ / name)}) {
            EXPECT_FALSE(createRaw(path));
            EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_NAME));
            EXPECT_FALSE(MoveFileExW((root_ / L"source").c_str(), path.c_str(), 0));
            EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_NAME));
        }
    }
    EXPECT_EQ(walkTree(root_, false).paths, std::vector<std::string>{"source"});
}

#endif  // _WIN32
