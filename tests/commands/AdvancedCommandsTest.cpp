#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <vector>

#include "commands/AdvancedCommands.h"
#include "commands/RenameFromList.h"
#include "core/CommandRegistry.h"
#include "core/Session.h"
#include "../support/QStringPrinter.h"
#include "../support/CommandRows.h"
#include "../support/TempTree.h"

namespace qp {
namespace {

using test::Params;

// Runs advanced commands through the real pipeline. The commands tell files from folders by
// the row as it was loaded, so the rows need not exist on disk; they live under a real
// temporary folder only so that their full paths are absolute on every platform.
class AdvancedCommandsTest : public ::testing::Test {
protected:
    AdvancedCommandsTest() : session(SettingsStore(), ui, QStringLiteral("[20240305140709123]"))
    {
        registerAdvancedCommands(session.pipeline().registry());
    }

    QString addCommand(const char* code, const Params& params)
    {
        return test::appendCommand(session.settings(), QLatin1String(code), advancedCommandComment(code), params);
    }

    void addRow(const char* fileName, bool folder = false, const char* folderName = "d")
    {
        test::appendRow(session.renameList(), tree.path(folderName) + '/' + QString::fromUtf8(fileName), folder);
    }

    // Each row's new pair as "name|ext".
    QStringList run()
    {
        EXPECT_TRUE(session.pipeline().runAll(true));
        QStringList pairs;
        for (const FileEntry& row : session.renameList().rows())
            pairs.append(row.newName + '|' + row.newExt);
        return pairs;
    }

    void reset()
    {
        session.renameList().clear();
        session.settings().eraseSection("CommandList");
        session.messages().clear();
    }

    QStringList logLines(const QString& containing) const
    {
        QStringList found;
        for (const MessageLine& line : session.messages().lines()) {
            if (line.text.contains(containing))
                found.append(line.text);
        }
        return found;
    }

    test::TempTree tree;
    ScriptedInteraction ui;
    Session session;
};

struct Case {
    const char* code;
    Params params;
    const char* fileName;
    const char* asFile;  // expected "name|ext"
    const char* asFolder;
};

TEST_F(AdvancedCommandsTest, NameCommandsOnFilesAndFolders)
{
    const Case cases[] = {
        // A101 works on name + extension and splits again; a folder's name stays whole.
        {"A101", {{"A1_RegexText", "_(\\w+)$"}, {"A1_RegexReplaceText", ".$1"}}, "a_txt", "a|.txt", "a.txt|"},
        {"A101", {{"A1_RegexText", "\\.txt$"}, {"A1_RegexReplaceText", ""}}, "a.b.txt", "a|.b", "a.b|"},
        {"A101", {{"A1_RegexText", "(\\d+)"}, {"A1_RegexReplaceText", "<$1>"}}, "v1.mp3", "v<1>|.mp<3>", "v<1>.mp<3>|"},
        // A102 works on the name only; the extension is never touched.
        {"A102", {{"A1_RegexText", "(\\d+)"}, {"A1_RegexReplaceText", "<$1>"}}, "v1.mp3", "v<1>|.mp3", "v<1>.mp<3>|"},
        {"A102", {{"A1_RegexText", "$"}, {"A1_RegexReplaceText", ".bak"}}, "a.txt", "a.bak|.txt", "a.txt.bak|"},
        // Letter case is ignored unless asked for.
        {"A102", {{"A1_RegexText", "abc"}, {"A1_RegexReplaceText", "x"}}, "ABC.abc", "x|.abc", "x.x|"},
        {"A102", {{"A1_RegexText", "abc"}, {"A1_RegexReplaceText", "x"}, {"A1_CaseFlag", "1"}}, "ABC", "ABC|", "ABC|"},
        {"A102", {{"A1_RegexText", "(?<w>\\w+) (\\w+)"}, {"A1_RegexReplaceText", "\\U${w}\\E-$2$9"}}, "ab cd", "AB-cd|", "AB-cd|"},
        {"A102", {{"A1_RegexText", ""}, {"A1_RegexReplaceText", "x"}}, "a", "a|", "a|"},
        // Pinyin of the name; the extension stays as it is.
        {"A301", {}, "重庆.txt", "chong_qing|.txt", "chong_qing.txt|"},
        {"A302", {{"A3_HZToPYLinkStr", "-"}}, "重庆.txt", "chóng-qìng|.txt", "chóng-qìng.txt|"},
        {"A301", {{"A3_HZToPYLinkStr", ""}, {"A3_HZToPY1stUpperCase", "1"}, {"A3_HZToPY1stLetter", "1"}}, "重庆大学", "CQDX|", "CQDX|"},
        {"A301", {{"A3_HZToPYLeftStr", "["}, {"A3_HZToPYRightStr", "]"}, {"A3_HZToPYLinkStr", "| |"}}, "重庆", "[chong] [qing]|", "[chong] [qing]|"},
        {"A301", {{"A3_HZToPYKeepHZ", "1"}, {"A3_HZToPYPolyphone", "1"}}, "重", "重chong,zhong|", "重chong,zhong|"},
        {"A301", {{"A3_HZToPYUnkown", "0"}}, "兙重", "兙_chong|", "兙_chong|"},
        {"A303", {{"A3_HZToPY1stUpperCase", "1"}}, "张三.doc", "Z张三|.doc", "Z张三.doc|"},
        {"A303", {{"A3_HZToPYLetterStr", "0"}}, "阿", "ā阿|", "ā阿|"},
        // Digits, numerals and number symbols in the name.
        {"A401", {}, "2024-05.09", "二〇二四-〇五|.09", "二〇二四-〇五.〇九|"},
        {"A402", {}, "第12集", "第壹贰集|", "第壹贰集|"},
        {"A403", {}, "二〇二四年叁月.三", "2024年3月|.三", "2024年3月.3|"},
        {"A404", {}, "①Ⅻ⒛.②", "(1)1220.|.②", "(1)1220..(2)|"},
    };
    for (const Case& c : cases) {
        reset();
        addRow(c.fileName);
        addRow(c.fileName, true);
        addCommand(c.code, c.params);
        EXPECT_EQ(run(), (QStringList{QString::fromUtf8(c.asFile), QString::fromUtf8(c.asFolder)}))
            << c.code << " on " << c.fileName;
    }
}

TEST_F(AdvancedCommandsTest, EveryCodeIsDescribedRegisteredAndDispatched)
{
    for (const QString& code : advancedCommandCodes()) {
        EXPECT_FALSE(advancedCommandComment(code).isEmpty()) << code.toStdString();
        EXPECT_TRUE(session.pipeline().registry().knows(code)) << code.toStdString();
        // Only the commands that may change the extension go to the extension executor.
        const bool extensionSide = code == u"A101" || code == u"A1101";
        EXPECT_EQ(executorFor(code) == ExecutorSide::Extension, extensionSide) << code.toStdString();
    }
}

TEST_F(AdvancedCommandsTest, InvalidPatternLeavesNamesAndLogsOncePerRun)
{
    for (int i = 0; i < 4; ++i)
        addRow((std::to_string(i) + ".txt").c_str());
    addCommand("A101", {{"A1_RegexText", "(t"}, {"A1_RegexReplaceText", "x"}});
    for (int runs = 1; runs <= 2; ++runs) {
        EXPECT_EQ(run(), (QStringList{"0|.txt", "1|.txt", "2|.txt", "3|.txt"}));
        EXPECT_EQ(logLines("missing closing parenthesis").size(), runs);
        EXPECT_EQ(logLines("（位置 2）：(t").size(), runs);
    }
    reset();
    addRow("a.txt");
    addRow("b.txt");
    addCommand("A102", {{"A1_RegexText", "a|b"}, {"A1_RegexReplaceText", "${1"}});
    EXPECT_EQ(run(), (QStringList{"a|.txt", "b|.txt"}));
    EXPECT_EQ(logLines("${1").size(), 1);
}

// ---- A11 ------------------------------------------------------------------------------

class RenameFromListTest : public AdvancedCommandsTest {
protected:
    QString addList(const QStringList& lines)
    {
        const QString section = addCommand("A1101", {});
        renamelist::writeLines(session.settings(), section, lines);
        return section;
    }
    QString pathOf(const char* folder, const char* name) const { return tree.path(folder) + '/' + name; }
};

TEST_F(RenameFromListTest, MatchesByFullPathOrByNameAndCountsTheRest)
{
    addRow("a.txt", false, "one");
    addRow("a.txt", false, "two");
    addRow("b.txt", false, "two");
    addRow("keep.txt", false, "two");
    addRow("album", true, "two");
    addRow("c.d.txt", false, "two");
    addList({
        "a.txt=by-name.doc",
        pathOf("two", "a.txt") + "\tby-path.tar.gz",  // a full path wins over a name
        "b.txt=first",
        "b.txt=second",  // a repeated old name: the first line counts
        pathOf("two", "album/") + "=2024.Trip",  // a folder keeps its whole new name
        "c<61>d.txt=x",
        "c.d.txt=" + pathOf("elsewhere", "e<61>f.png"),  // of a path only the name is used
        "; a comment, and an empty line",
        "",
        "no separator here",
        "relative/path.txt=z",
    });
    EXPECT_EQ(run(), (QStringList{"by-name|.doc", "by-path.tar|.gz", "first|", "keep|.txt", "2024.Trip|", "e=f|.png"}));
    const QStringList lines = logLines("文件名对照列表更名");
    ASSERT_EQ(lines.size(), 1);
    EXPECT_TRUE(lines[0].contains("5 个对象按列表更名，1 个对象在列表中没有对应项")) << lines[0].toStdString();
    EXPECT_TRUE(lines[0].contains("1 行的原名与前面的行重复")) << lines[0].toStdString();
    EXPECT_TRUE(lines[0].contains("2 行无法识别")) << lines[0].toStdString();
}

TEST_F(RenameFromListTest, LetterCaseFollowsThePlatformsPathRules)
{
    addRow("Photo.JPG");
    addList({"photo.jpg=renamed.jpg"});
    const bool ignoresCase = pathKey("A") == pathKey("a");
    EXPECT_EQ(run(), QStringList{ignoresCase ? "renamed|.jpg" : "Photo|.JPG"});
}

TEST_F(RenameFromListTest, UntickedRowsAreNeitherRenamedNorCounted)
{
    addRow("a.txt");
    addRow("b.txt");
    session.renameList()[1].selected = false;
    addList({"a.txt=x.txt", "b.txt=y.txt"});
    EXPECT_EQ(run(), (QStringList{"x|.txt", "b|.txt"}));
    EXPECT_EQ(logLines("1 个对象按列表更名，0 个对象在列表中没有对应项").size(), 1);
}

TEST_F(RenameFromListTest, ShorterListRemovesTheOldLines)
{
    const QString section = addList({"a=b", "c=d", "e=f"});
    renamelist::writeLines(session.settings(), section, {"g=h"});
    EXPECT_EQ(renamelist::readLines(session.settings(), section), QStringList{"g=h"});
    EXPECT_FALSE(session.settings().hasKey(section, "A11_NLLine2"));
    EXPECT_FALSE(session.settings().hasKey(section, "A11_NLLine3"));
}

TEST_F(RenameFromListTest, ListFilesInEveryEncodingTheyComeIn)
{
    const QString text = QStringLiteral("旧.txt=新.txt\r\nb\tc\n");
    const QByteArray utf8 = text.toUtf8();
    QByteArray le("\xFF\xFE"), be("\xFE\xFF");
    for (const QChar c : text) {
        le.append(char(c.unicode() & 0xFF)).append(char(c.unicode() >> 8));
        be.append(char(c.unicode() >> 8)).append(char(c.unicode() & 0xFF));
    }
    const struct {
        const char* name;
        QByteArray bytes;
    } files[] = {{"plain.txt", utf8}, {"bom.txt", "\xEF\xBB\xBF" + utf8}, {"le.txt", le}, {"be.txt", be}};
    for (const auto& f : files) {
        const QString path = tree.file(f.name, f.bytes.toStdString());
        const renamelist::FileText read = renamelist::readFile(path);
        EXPECT_TRUE(read.error.isEmpty()) << f.name;
        EXPECT_EQ(read.lines, (QStringList{"旧.txt=新.txt", "b\tc"})) << f.name;
    }
    const renamelist::FileText broken = renamelist::readFile(tree.file("latin1.txt", "caf\xE9=cafe\n"));
    EXPECT_TRUE(broken.lines.isEmpty());
    EXPECT_TRUE(broken.error.contains("编码格式错误"));
    EXPECT_TRUE(renamelist::readFile(tree.path("missing.txt")).error.contains("不存在"));
}

}  // namespace
}  // namespace qp
