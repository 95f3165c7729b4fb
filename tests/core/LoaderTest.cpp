#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "../support/TempTree.h"
#include "core/ComboHistory.h"
#include "core/Loader.h"
#include "core/Session.h"
#include "core/SettingsKeys.h"

namespace qp {
namespace {

using test::TempTree;

class LoaderTest : public ::testing::Test {
protected:
    LoaderTest() : session(SettingsStore(), ui, QStringLiteral("[20240305140709123]")) {}

    void options(bool recursive, bool folderRows)
    {
        session.settings().writeBool(keys::kOperation, keys::kFlagFindDeepin, recursive);
        session.settings().writeBool(keys::kOperation, keys::kFlagAddFolder, folderRows);
    }

    QStringList fullPaths() const
    {
        QStringList paths;
        for (const FileEntry& row : session.renameList().rows())
            paths.append(row.fullPath());
        return paths;
    }

    QStringList messageTexts() const
    {
        QStringList texts;
        for (const MessageLine& line : session.messages().lines())
            texts.append(line.text.mid(11));  // without "[hh:mm:ss] "
        return texts;
    }

    TempTree tree;
    ScriptedInteraction ui;
    Session session;
    Loader loader{session};
};

TEST_F(LoaderTest, ExpansionFollowsTheTwoLoadOptions)
{
    tree.file("top/a.txt");
    tree.file("top/sub/b.txt");
    tree.folder("top/sub/empty");
    const QString top = tree.path("top");
    struct Case {
        bool recursive, folderRows;
        QStringList expected;
    };
    const Case cases[] = {
        {false, true, {top}},
        {false, false, {}},
        {true, false, {top + "/a.txt", top + "/sub/b.txt"}},
        {true, true, {top, top + "/a.txt", top + "/sub", top + "/sub/b.txt", top + "/sub/empty"}},
    };
    for (const Case& c : cases) {
        session.renameList().clear();
        options(c.recursive, c.folderRows);
        loader.addPaths({top});
        QStringList got = fullPaths();
        got.sort();  // the order of a folder's children is the file system's
        EXPECT_EQ(got, c.expected) << c.recursive << c.folderRows;
    }
}

TEST_F(LoaderTest, RowsAreFilledFromTheFileSystem)
{
    const QString file = tree.file("d/archive.tar.gz", std::string(1536, 'x'));
    const QString folder = tree.folder("d/v1.2");
    options(false, true);
    const LoadResult result = loader.addPaths({file, folder});
    ASSERT_EQ(result.outcome, LoadResult::Outcome::Loaded);
    ASSERT_EQ(session.renameList().size(), 2);

    const FileEntry& f = session.renameList().at(0);
    EXPECT_EQ(f.path, tree.path("d") + "/");
    EXPECT_EQ(f.name, QStringLiteral("archive.tar"));
    EXPECT_EQ(f.ext, QStringLiteral(".gz"));
    EXPECT_EQ(f.newName, f.name);
    EXPECT_EQ(f.newExt, f.ext);
    EXPECT_EQ(f.size, 1536u);
    EXPECT_EQ(f.sizeText(true), QStringLiteral("1.50 KB"));
    EXPECT_EQ(f.state, StateLoaded);
    EXPECT_EQ(f.icon, IconFile);
    EXPECT_TRUE(f.selected);
    EXPECT_GT(f.modified, 0);

    const FileEntry& d = session.renameList().at(1);
    EXPECT_EQ(d.name, QStringLiteral("v1.2"));
    EXPECT_TRUE(d.ext.isEmpty());
    EXPECT_EQ(d.icon, IconFolder);
    EXPECT_TRUE(d.attributeLetters().startsWith(QStringLiteral("<DIR>")));

    EXPECT_TRUE(ui.statuses.contains(QStringLiteral("对象载入完毕。")));
    EXPECT_TRUE(messageTexts().contains(QStringLiteral("对象载入完毕。")));
    for (const char* caption : {"分析文件结构", "剔除重复对象", "载入对象至列表"})
        EXPECT_TRUE(ui.captions.contains(QString::fromUtf8(caption))) << caption;
    EXPECT_FALSE(ui.busy);
}

TEST_F(LoaderTest, DuplicatesAreDroppedAcrossAndWithinLoads)
{
    const QString a = tree.file("a.txt");
    const QString b = tree.file("b.txt");
    options(true, true);
    loader.addPaths({a});
    const LoadResult second = loader.addPaths({a, b, b, tree.path()});
    EXPECT_EQ(second.added, 2);  // b and the folder itself; a and b once each
    QStringList got = fullPaths();
    got.sort();
    EXPECT_EQ(got, (QStringList{tree.path(), a, b}));

    const LoadResult third = loader.addPaths({a});
    EXPECT_EQ(third.outcome, LoadResult::Outcome::NothingNew);
    EXPECT_EQ(ui.statuses.last(), QStringLiteral("未发现新对象！"));
}

TEST_F(LoaderTest, RowsOfVanishedObjectsGoAtTheNextLoad)
{
    const QString a = tree.file("a.txt");
    const QString b = tree.file("b.txt");
    options(false, true);
    loader.addPaths({a, b});
    session.renameList()[1].state = StateFailed;
    std::filesystem::remove(tree.root() / "a.txt");
    const LoadResult result = loader.addPaths({tree.file("c.txt")});
    EXPECT_EQ(result.vanishedRows, 1);
    EXPECT_EQ(fullPaths(), (QStringList{b, tree.path("c.txt")}));
    EXPECT_EQ(session.renameList().at(0).state, StateLoaded);  // every load resets the state
}

TEST_F(LoaderTest, PendingImportIsAskedAndCancelChangesNothing)
{
    const QString a = tree.file("a.txt");
    options(false, true);
    session.setPendingImport(true);
    ui.answer(QStringLiteral("load.pendingImport"), {Button::Cancel, Button::Ok});

    EXPECT_EQ(loader.addPaths({a}).outcome, LoadResult::Outcome::Cancelled);
    EXPECT_TRUE(session.renameList().isEmpty());
    EXPECT_TRUE(session.pendingImport());

    EXPECT_EQ(loader.addPaths({a}).outcome, LoadResult::Outcome::Loaded);
    EXPECT_FALSE(session.pendingImport());
    ASSERT_EQ(ui.asked.size(), 2);
    EXPECT_EQ(ui.asked[0].title, QStringLiteral("温馨提示"));
    EXPECT_TRUE(ui.asked[0].text.startsWith(QStringLiteral("更名文件列表中内容为导入的更名方案文件或快照文件")));
}

TEST_F(LoaderTest, FilterKeepsAndExcludesCandidates)
{
    tree.file("m/a.mp3");
    tree.file("m/b.WMA");
    tree.file("m/c.txt");
    tree.file("m/sub/d.mp3");
    options(true, true);
    session.keepText = QStringLiteral("*.mp3|*.wma");
    session.excludeText = QStringLiteral("d.*");
    const LoadResult result = loader.addPaths({tree.path("m")});
    QStringList got = fullPaths();
    got.sort();
    EXPECT_EQ(got, (QStringList{tree.path("m/a.mp3"), tree.path("m/b.WMA")}));
    EXPECT_EQ(result.filteredOut, 4);  // m, m/sub, c.txt, d.mp3
    EXPECT_TRUE(ui.captions.contains(QStringLiteral("对象过滤")));

    session.keepText = QStringLiteral("*.mp3");
    session.excludeText.clear();
    EXPECT_EQ(loader.filterList(), 1);
    EXPECT_EQ(fullPaths(), QStringList{tree.path("m/a.mp3")});
}

TEST_F(LoaderTest, CommandsRunAfterALoadUnlessSwitchedOff)
{
    int runs = 0;
    session.setCommandRunner([&] { ++runs; });
    options(false, true);
    loader.addPaths({tree.file("a.txt")});
    EXPECT_EQ(runs, 1);
    session.settings().writeBool(keys::kOperation, keys::kAddNewFilesIgnoreCmd, true);
    loader.addPaths({tree.file("b.txt")});
    EXPECT_EQ(runs, 1);
    loader.addPaths({tree.path("a.txt")});  // nothing new: nothing to run
    EXPECT_EQ(runs, 1);
}

TEST_F(LoaderTest, TypedPathIsLoadedAndRemembered)
{
    options(false, true);
    session.pathText = tree.path("missing");
    EXPECT_EQ(loader.loadTypedPath().outcome, LoadResult::Outcome::NothingNew);
    EXPECT_TRUE(messageTexts().contains(QStringLiteral("对象不存在：") + tree.path("missing")));

    session.pathText = tree.file("x.txt");
    EXPECT_EQ(loader.loadTypedPath().added, 1);
    EXPECT_EQ(readHistory(session.settings(), keys::kOperation, keys::kPathHistory),
              (QStringList{tree.path("x.txt"), tree.path("missing")}));
}

TEST_F(LoaderTest, ListFileSkipsWhatCannotNameAnObject)
{
    const QString a = tree.file("a.txt");
    const QString b = tree.file("b b.txt");
    const QString c = tree.file("c.txt");
    std::string list = "\xEF\xBB\xBF";  // a BOM is allowed
    list += a.toStdString() + "\r\n";
    list += "\r\n   \n";                        // blank lines
    list += "relative/path.txt\n";              // not a full path
    list += "\"" + b.toStdString() + "\"\n";    // quoted, as a file manager copies it
    list += "/no/such/file\n";                  // dropped silently
    list += tree.path().toStdString() + "/\xC3\x28.txt\n";  // not UTF-8
    list += std::string(10 * 1024 * 1024, 'x') + "\n";      // a 10 MB line
    list += a.toStdString() + "\n";             // repeated
    list += std::string(a.toStdString()).append(1, '\0').append("tail") + "\n";  // a NUL inside
    list += c.toStdString();                    // no line end at the end
    std::ofstream(tree.root() / "list.txt", std::ios::binary) << list;

    options(false, true);
    loader.addListFile(tree.path("list.txt"));
    EXPECT_EQ(fullPaths(), (QStringList{a, b, c}));
    EXPECT_TRUE(messageTexts().contains(QStringLiteral("列表文件中有 1 行不是完整路径，已忽略。")));
    EXPECT_TRUE(messageTexts().contains(QStringLiteral("列表文件中有 1 行不是有效的 UTF-8 文本，已忽略。")));
}

TEST_F(LoaderTest, ListFileInUtf16IsRead)
{
    const QString a = tree.file("ä.txt");
    const QString text = QStringLiteral("\uFEFF") + a + QStringLiteral("\r\n");
    std::ofstream out(tree.root() / "list16.txt", std::ios::binary);
    out.write(reinterpret_cast<const char*>(text.utf16()), std::streamsize(text.size() * 2));
    out.close();
    options(false, true);
    loader.addListFile(tree.path("list16.txt"));
    EXPECT_EQ(fullPaths(), QStringList{a});
}

TEST_F(LoaderTest, MissingListFileIsReported)
{
    loader.addListFile(tree.path("nope.txt"));
    ASSERT_FALSE(messageTexts().isEmpty());
    EXPECT_TRUE(messageTexts().first().startsWith(QStringLiteral("无法读取列表文件：")));
    EXPECT_TRUE(session.renameList().isEmpty());
}

#ifndef _WIN32
TEST_F(LoaderTest, UndecodableNamesNeverBecomeRows)
{
    tree.file("ok.txt");
    std::ofstream(tree.root() / "bad\xFF.txt") << "x";
    options(true, false);
    loader.addPaths({tree.path()});
    EXPECT_EQ(fullPaths(), QStringList{tree.path("ok.txt")});
    ASSERT_FALSE(messageTexts().isEmpty());
    EXPECT_TRUE(messageTexts()[0].startsWith(QStringLiteral("文件名编码无法识别，已跳过：")));
    EXPECT_EQ(messageTexts().filter(QStringLiteral("文件名编码无法识别")).size(), 1);
}
#endif

TEST_F(LoaderTest, TraverseListExpandsTheListedFolders)
{
    tree.file("one/a.txt");
    tree.file("one/deep/b.txt");
    tree.file("two/c.txt");
    options(false, true);

    loader.addPaths({tree.file("loose.txt")});
    loader.traverseList();
    ASSERT_EQ(ui.notices.size(), 1);
    EXPECT_EQ(ui.notices[0].text, QStringLiteral("更名文件列表中未发现文件夹，无需遍历。"));

    loader.addPaths({tree.path("one"), tree.path("two")});
    ui.answer(QStringLiteral("load.traverseManyFolders"), {Button::No, Button::Yes});
    EXPECT_EQ(loader.traverseList().outcome, LoadResult::Outcome::Cancelled);
    EXPECT_EQ(session.renameList().size(), 3);

    options(false, false);  // folders below are rows whatever "含文件夹名" says
    const LoadResult result = loader.traverseList();
    EXPECT_EQ(result.added, 4);  // a, deep, b, c
    EXPECT_TRUE(ui.captions.contains(QStringLiteral("正在遍历各文件夹并剔除重复对象")));
    EXPECT_EQ(loader.traverseList().outcome, LoadResult::Outcome::NothingNew);  // all known now
}

// The large-list question comes only when both sides hold more than 10000 entries.
class LargeListTest : public LoaderTest {
protected:
    static void SetUpTestSuite()
    {
        big = new TempTree;
        for (int i = 0; i < 20002; ++i)
            std::ofstream(big->root() / ((i < 10001 ? "old" : "new") + std::to_string(i)));
    }
    static void TearDownTestSuite() { delete big; }

    QStringList paths(const char* prefix, int from, int to) const
    {
        QStringList list;
        for (int i = from; i < to; ++i)
            list.append(big->path(prefix + std::to_string(i)));
        return list;
    }

    void loadOld(int count)
    {
        session.settings().writeBool(keys::kOperation, keys::kAddNewFilesIgnoreCmd, true);
        options(false, true);
        loader.addPaths(paths("old", 0, count));
        ui.asked.clear();
    }

    static TempTree* big;
};
TempTree* LargeListTest::big = nullptr;

TEST_F(LargeListTest, ThresholdIsStrict)
{
    loadOld(10001);
    loader.addPaths(paths("new", 10001, 20001));  // 10000 candidates: no question
    EXPECT_TRUE(ui.asked.isEmpty());
}

TEST_F(LargeListTest, CancelLeavesTheListAlone)
{
    loadOld(10001);
    ui.answer(QStringLiteral("load.largeListDedupe"), {Button::Cancel});
    EXPECT_EQ(loader.addPaths(paths("new", 10001, 20002)).outcome, LoadResult::Outcome::Cancelled);
    EXPECT_EQ(session.renameList().size(), 10001);
    ASSERT_EQ(ui.asked.size(), 1);
    EXPECT_EQ(ui.asked[0].text.count(QLatin1Char('\r')), 3);
}

TEST_F(LargeListTest, NoThenCancelAsksAgainAndNoThenOkSkipsDedupe)
{
    loadOld(10001);
    ui.answer(QStringLiteral("load.largeListDedupe"), {Button::No, Button::No});
    ui.answer(QStringLiteral("load.largeListNoDedupe"), {Button::Cancel, Button::Ok});
    QStringList candidates = paths("new", 10001, 20002);
    candidates.append(big->path("old0"));  // a duplicate the user chose not to look for
    const LoadResult result = loader.addPaths(candidates);
    EXPECT_EQ(result.added, 10002);
    ASSERT_EQ(ui.asked.size(), 4);
    EXPECT_EQ(ui.asked[1].title, QStringLiteral("警告"));
}

TEST_F(LargeListTest, YesRemovesDuplicates)
{
    loadOld(10001);
    ui.answer(QStringLiteral("load.largeListDedupe"), {Button::Yes});
    QStringList candidates = paths("new", 10001, 20002);
    candidates.append(big->path("old0"));
    EXPECT_EQ(loader.addPaths(candidates).added, 10001);
}

}  // namespace
}  // namespace qp
