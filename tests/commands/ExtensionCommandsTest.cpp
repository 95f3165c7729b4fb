#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "commands/ExtensionCommands.h"
#include "core/Session.h"
#include "../support/CommandRows.h"
#include "../support/TempTree.h"
#include "../support/QStringPrinter.h"


namespace qp {
namespace {

using test::Params;

// A byte string literal with its embedded zero bytes (the terminating one left out).
template <size_t N>
std::string bytes(const char (&text)[N])
{
    return std::string(text, N - 1);
}

// Minimal but real files of each type, written byte for byte.
const std::string kPng = bytes("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\0\1\0\0\0\1\x08\x06\0\0\0\x1f\x15\xc4\x89"
                       "\0\0\0\rIDATx\x9c" "c\xf8\x0f\0\0\x01\x01\0\x05\x18\xd8N\0\0\0\0IEND\xae" "B`\x82");
const std::string kPdf = "%PDF-1.4\n1 0 obj\n<< /Type /Catalog >>\nendobj\ntrailer\n<< /Root 1 0 R >>\n%%EOF\n";
const std::string kZip = bytes(
    "PK\x03\x04\x14\0\0\0\0\0\x24\x1f\x76\x5d\x86\xa6\x10\x36\x05\0\0\0\x05\0\0\0\x05\0\0\0" "a.txthello"
    "PK\x01\x02\x14\x03\x14\0\0\0\0\0\x24\x1f\x76\x5d\x86\xa6\x10\x36\x05\0\0\0\x05\0\0\0\x05\0\0\0\0\0\0\0\0\0"
    "\0\0\x80\x01\0\0\0\0" "a.txt"
    "PK\x05\x06\0\0\0\0\x01\0\x01\0\x33\0\0\0\x28\0\0\0\0\0");


// Runs extension commands through the real pipeline over rows that exist on disk: files
// under "<case>/f/" and folders of the same whole names under "<case>/d/".
class ExtensionCommandsTest : public ::testing::Test {
protected:
    ExtensionCommandsTest() : session(SettingsStore(), ui, QStringLiteral("[20240305140709123]"))
    {
        registerExtensionCommands(session.pipeline().registry());
    }

    void addCommand(const char* code, const Params& params)
    {
        test::appendCommand(session.settings(), QLatin1String(code), extensionCommandComment(code), params);
    }

    void addFile(const std::string& relative, const std::string& content = "x")
    {
        addRow(tree.file(relative, content), false);
    }
    void addFolder(const std::string& relative) { addRow(tree.folder(relative), true); }
    // A row whose object is not (or no longer) on disk.
    void addMissing(const std::string& relative) { addRow(tree.path(relative), false); }

    void addRow(const QString& fullPath, bool folder) { test::appendRow(session.renameList(), fullPath, folder); }

    // Each row's new pair as "name|ext", so that where the split falls is part of the result.
    QStringList run()
    {
        EXPECT_TRUE(session.pipeline().runAll(true));
        QStringList pairs;
        for (const FileEntry& row : session.renameList().rows())
            pairs.append(row.newName + '|' + row.newExt);
        return pairs;
    }

    int logLines(const QString& text) const
    {
        const auto& lines = session.messages().lines();
        return int(std::count_if(lines.begin(), lines.end(), [&](const MessageLine& l) { return l.text.contains(text); }));
    }

    test::TempTree tree;
    ScriptedInteraction ui;
    Session session;
};

struct Case {
    const char* code;
    Params params;
    const char* fileName;  // the whole name a file and a folder both carry
    const char* asFile;    // expected "name|ext"
    const char* asFolder;
};

TEST_F(ExtensionCommandsTest, FilesAndFoldersSideBySide)
{
    const Case cases[] = {
        // Adding to the extension: no re-split, a dot in the content stays in the extension.
        {"E101", {{"E1_Content", "txt"}}, "a", "a|.txt", "a.txt|"},
        {"E101", {{"E1_Content", "txt"}}, "a.b.doc", "a.b|.txtdoc", "a.b.doc.txt|"},
        {"E101", {{"E1_Content", "txt"}}, ".profile", "|.txtprofile", ".profile.txt|"},
        {"E101", {{"E1_Content", "t.x"}}, "a.doc", "a|.t.xdoc", "a.doc.t.x|"},
        {"E101", {{"E1_Content", ""}}, "a.doc", "a|.doc", "a.doc|"},
        {"E102", {{"E1_Content", "1"}}, "a.doc", "a|.doc1", "a.doc.1|"},
        // Find and replace: files only, case per flag, then re-split.
        {"E103", {{"E1_SearchStr", "O"}, {"E1_Content", "x"}}, "a.DoC", "a|.DxC", "a.DoC|"},
        {"E103", {{"E1_SearchStr", "O"}, {"E1_Content", "x"}, {"E1_CaseFlag", "1"}}, "a.DoC", "a|.DoC", "a.DoC|"},
        {"E103", {{"E1_SearchStr", "c"}, {"E1_Content", ".z"}}, "n.abc", "n.ab|.z", "n.abc|"},
        {"E103", {{"E1_SearchStr", ""}, {"E1_Content", "z"}}, "n.abc", "n|.abc", "n.abc|"},
        // Emptying and deleting.
        {"E201", {}, "a.b.txt", "a.b|", "a.b.txt|"},
        {"E202", {}, "archive.tar.gz", "archive|.tar", "archive.tar.gz|"},
        {"E202", {}, ".profile", "|", ".profile|"},
        // Part of the extension, from the left and from the right.
        {"E203", {{"E2_DelOrKeep", "1"}, {"E2_DelExtCharFromRight", "1"}, {"E2_DelExtCharTo", "2"}}, "x.html", "x|.ml", "x.html|"},
        {"E203", {{"E2_DelOrKeep", "0"}, {"E2_DelExtCharFrom", "2"}, {"E2_DelExtCharTo", "2"}}, "x.html", "x|.hl", "x.html|"},
        {"E203", {{"E2_DelOrKeep", "1"}, {"E2_DelExtCharFrom", "3"}, {"E2_DelExtCharTo", "10"}}, "x.html", "x|.ml", "x.html|"},
        {"E203", {{"E2_DelOrKeep", "1"}, {"E2_DelExtCharFromRight", "1"}, {"E2_DelExtCharFrom", "3"}, {"E2_DelExtCharTo", "5"}}, "x.html", "x|.ht", "x.html|"},
        {"E203", {{"E2_DelExtCharFromRight", "1"}, {"E2_DelExtCharFrom", "2"}, {"E2_DelExtCharTo", "2"}}, "x.html", "x|.hl", "x.html|"},
        {"E203", {{"E2_DelOrKeep", "1"}, {"E2_DelExtCharFromRight", "1"}, {"E2_DelExtCharFrom", "7"}}, "x.html", "x|.", "x.html|"},
        {"E203", {{"E2_DelOrKeep", "1"}}, "a", "a|.", "a|"},
        {"E203", {{"E2_DelOrKeep", "1"}}, "a.b.tar.gz", "a.b.tar|.g", "a.b.tar.gz|"},
        // Letter case: ASCII letters only, folders have no extension to change.
        {"E401", {}, "photo.JPG", "photo|.JPG", "photo.JPG|"},
        {"E402", {}, "photo.JPG", "photo|.jpg", "photo.JPG|"},
        {"E402", {}, "photo.ÄB", "photo|.Äb", "photo.ÄB|"},
        // Regular expressions over the dot-free extension, replacement with group references.
        {"E501", {{"E5_RegexText", "(\\w)(\\w+)"}, {"E5_RegexReplaceText", "$2$1"}}, "a.txt", "a|.xtt", "a.txt|"},
        {"E501", {{"E5_RegexText", "(\\w)(\\w+)"}, {"E5_RegexReplaceText", "$2$1"}}, "a.tar.gz", "a.tar|.zg", "a.tar.gz|"},
        {"E501", {{"E5_RegexText", "x"}, {"E5_RegexReplaceText", "y"}}, "a", "a|.", "a|"},
        {"E501", {{"E5_RegexText", "t"}, {"E5_RegexReplaceText", "[${0}]"}}, "a.txt", "a|.[t]x[t]", "a.txt|"},
        {"E501", {{"E5_RegexText", "(?<all>.+)"}, {"E5_RegexReplaceText", "\\U${all}"}}, "a.txt", "a|.TXT", "a.txt|"},
        {"E501", {{"E5_RegexText", "(a)|(b)"}, {"E5_RegexReplaceText", "[$1$2$7]"}}, "n.ab", "n|.[a][b]", "n.ab|"},
        {"E501", {{"E5_RegexText", "^(..)"}, {"E5_RegexReplaceText", "$1."}}, "n.abcd", "n.ab|.cd", "n.abcd|"},
        {"E501", {{"E5_RegexText", "\\w+"}, {"E5_RegexReplaceText", "<$0>"}}, "报告.文档1", "报告|.<文档1>", "报告.文档1|"},
        {"E501", {{"E5_RegexText", ""}, {"E5_RegexReplaceText", "z"}}, "a", "a|", "a|"},
        // A fixed extension; its dots put text into the name.
        {"E601", {{"E6_FixExtName", "pdf"}}, "a.b.txt", "a.b|.pdf", "a.b.txt|"},
        {"E601", {{"E6_FixExtName", "tar.gz"}}, "a.txt", "a.tar|.gz", "a.txt|"},
        {"E601", {{"E6_FixExtName", ""}}, "a.txt", "a|.txt", "a.txt|"},
        // A new extension, the old one joins the name.
        {"E701", {{"E7_AddNewExtStr", "bak"}}, "a.txt", "a.txt|.bak", "a.txt.bak|"},
        {"E701", {{"E7_AddNewExtStr", ""}}, "a.txt", "a|.txt", "a.txt|"},
        // The extension's dot replaced.
        {"E702", {{"E7_ReplaceDotStr", "_"}}, "a.b.txt", "a|.b_txt", "a.b.txt_|"},
        {"E702", {{"E7_ReplaceDotStr", "_"}}, "a", "a|", "a_|"},
        // The rightmost occurrence in the whole name becomes the dot.
        {"E703", {{"E7_ReplaceStrStr", "_"}}, "a_b_c.txt", "a_b.c|.txt", "a_b.c.txt|"},
        {"E703", {{"E7_ReplaceStrStr", "B"}}, "a_b.txt", "a_b|.txt", "a_b.txt|"},
        {"E703", {{"E7_ReplaceStrStr", "-"}}, "a-b", "a|.b", "a.b|"},
        {"E703", {{"E7_ReplaceStrStr", ""}}, "a-b", "a-b|", "a-b|"},
        // Moving the dot.
        {"E704", {{"E7_MoveDotLeftRight", "1"}}, "name.abcd", "namea|.bcd", "name.abcd|"},
        {"E704", {{"E7_MoveDotLeftRight", "0"}}, "name.abcd", "nam|.eabcd", "name.abc.d|"},
        {"E704", {{"E7_MoveDotLeftRight", "1"}, {"E7_MoveDotNum", "9"}}, "n.ab", "nab|.", "n.ab|"},
        {"E704", {{"E7_MoveDotNum", "5"}}, "abc", "|.abc", "abc|"},
        {"E704", {{"E7_MoveDotNum", "0"}}, "abc", "abc|.", "abc|"},
        {"E704", {{"E7_MoveDotNum", "9"}}, "name.abcd", "|.nameabcd", ".name.abcd|"},
    };
    int index = 0;
    for (const Case& c : cases) {
        const std::string where = "c" + std::to_string(index++);
        addFile(where + "/f/" + c.fileName);
        addFolder(where + "/d/" + c.fileName);
        addCommand(c.code, c.params);
        EXPECT_EQ(run(), (QStringList{QString::fromUtf8(c.asFile), QString::fromUtf8(c.asFolder)}))
            << c.code << " on " << c.fileName;
        session.renameList().clear();
        session.settings().eraseSection("CommandList");
    }
}

TEST_F(ExtensionCommandsTest, E703WithoutItsTextLeavesTheColumnsAsTheyAre)
{
    addFile("e/README.x");
    session.renameList()[0].name = "README.x";  // as a name command may leave a row
    session.renameList()[0].ext.clear();
    for (const char* text : {"", "-"}) {
        session.settings().eraseSection("CommandList");
        addCommand("E703", {{"E7_ReplaceStrStr", text}});
        EXPECT_EQ(run(), QStringList{"README.x|"}) << text;
    }
}

TEST_F(ExtensionCommandsTest, AnObjectThatIsGoneCountsAsAFolder)
{
    addMissing("gone/a.txt");
    addFile("here/a.txt", kPdf);
    for (const char* code : {"E101", "E201", "E501", "E601", "E705"}) {
        session.settings().eraseSection("CommandList");
        addCommand(code, {{"E1_Content", "x"}, {"E5_RegexText", "t"}, {"E5_RegexReplaceText", "T"}, {"E6_FixExtName", "y"}});
        const QStringList pairs = run();
        // Folders keep their extension column as it is; only E101's folder rule touches the name.
        EXPECT_EQ(pairs[0], QString(code) == "E101" ? "a.x|.txt" : "a|.txt") << code;
        EXPECT_NE(pairs[1], "a|.txt") << code;  // the same row on disk is a file and changes
    }
}

TEST_F(ExtensionCommandsTest, NumbersFollowTheRowPositionInEveryForm)
{
    const struct {
        Params params;
        const char* expected;  // rows 0, 1, 2 (row 1 unticked) and the folder at row 3
    } cases[] = {
        {{{"E3_DigitUnits", "3"}}, "a|.001txt a|.txt a|.003txt d.004|"},
        {{{"E3_DigitUnits", "3"}, {"E3_InsertPos", "2"}}, "a|.tx001t a|.txt a|.tx003t d.004|"},
        {{{"E3_InsertPos", "99"}, {"E3_Start", "9"}, {"E3_Increment", "-3"}}, "a|.txt9 a|.txt a|.txt3 d.0|"},
        {{{"E3_DigitUnits", "3"}, {"E3_AutoSupplement", "0"}}, "a|.1txt a|.txt a|.3txt d.4|"},
        {{{"E3_DigitUnits", "3"}, {"E3_AutoSupplement", "0"}, {"E3_ManualSupplement", "1"}, {"E3_SupplementText", "ab"}},
         "a|.abab1txt a|.txt a|.abab3txt d.abab4|"},
        {{{"E3_Digit", "0"}, {"E3_UpperCase", "1"}, {"E3_DigitUnits", "2"}}, "a|.ABtxt a|.txt a|.ADtxt d.AE|"},
        {{{"E3_Digit", "0"}, {"E3_UpperCase", "1"}, {"E3_LowerCase", "1"}, {"E3_Start", "25"}}, "a|.ztxt a|.txt a|.bbtxt d.bc|"},
        {{{"E3_Digit", "0"}, {"E3_Start", "0"}, {"E3_DigitUnits", "3"}}, "a|.txt a|.txt a|.txt d.|"},
        // Numbers from elsewhere are held to what the page offers.
        {{{"E3_Start", "9223372036854775807"}, {"E3_Increment", "-9223372036854775808"}, {"E3_DigitUnits", "2000000000"},
          {"E3_AutoSupplement", "0"}}, "a|.2147483647txt a|.txt a|.-2147483649txt d.-4294967297|"},
    };
    for (const auto& c : cases) {
        session.renameList().clear();
        session.settings().eraseSection("CommandList");
        const std::string where = "n" + std::to_string(&c - cases);
        for (int i = 0; i < 3; ++i)
            addFile(where + "/" + std::to_string(i) + "/a.txt");
        addFolder(where + "/d");
        session.renameList()[1].selected = false;
        addCommand("E301", c.params);
        EXPECT_EQ(run().join(' '), c.expected);
    }
}

TEST_F(ExtensionCommandsTest, InvalidPatternLeavesNamesAndLogsOncePerRun)
{
    for (int i = 0; i < 5; ++i)
        addFile("r/" + std::to_string(i) + ".txt");
    addCommand("E501", {{"E5_RegexText", "(t"}, {"E5_RegexReplaceText", "x"}});
    for (int runs = 1; runs <= 2; ++runs) {
        EXPECT_EQ(run(), (QStringList{"0|.txt", "1|.txt", "2|.txt", "3|.txt", "4|.txt"}));
        EXPECT_EQ(logLines("missing closing parenthesis"), runs);
        EXPECT_EQ(logLines("（位置 2）：(t"), runs);
    }
}

TEST_F(ExtensionCommandsTest, RejectedReplacementLeavesNamesAndLogsOnce)
{
    for (int i = 0; i < 3; ++i)
        addFile("r/" + std::to_string(i) + ".txt");
    addCommand("E501", {{"E5_RegexText", "t"}, {"E5_RegexReplaceText", "${1"}});
    EXPECT_EQ(run(), (QStringList{"0|.txt", "1|.txt", "2|.txt"}));
    EXPECT_EQ(logLines("${1"), 1);
}

TEST_F(ExtensionCommandsTest, LongReplacementOutgrowsTheBuffer)
{
    addFile("r/a.txt");
    const std::string many(300, 'z');
    addCommand("E501", {{"E5_RegexText", "x"}, {"E5_RegexReplaceText", many.c_str()}});
    EXPECT_EQ(run(), QStringList{"a|.t" + QString::fromStdString(many) + "t"});
}

TEST_F(ExtensionCommandsTest, E601IsDescribedAsE501)
{
    EXPECT_EQ(extensionCommandComment("E601"), extensionCommandComment("E501"));
    EXPECT_EQ(extensionCommandComment("E501"), "扩展名正则表达式");
    for (const QString& code : extensionCommandCodes()) {
        EXPECT_FALSE(extensionCommandComment(code).isEmpty()) << code.toStdString();
        EXPECT_TRUE(session.pipeline().registry().knows(code)) << code.toStdString();
    }
}

TEST_F(ExtensionCommandsTest, E705TakesTheExtensionFromTheContent)
{
    const struct {
        const char* fileName;
        const std::string& content;
        const char* expected;
    } cases[] = {
        {"picture.dat", kPng, "picture|.png"},
        {"picture", kPng, "picture|.png"},
        {"SHOUT.PNG", kPng, "SHOUT|.PNG"},  // an extension that fits is kept as written
        {"a.b.c", kPdf, "a.b|.pdf"},
        {".hidden", kPdf, "|.pdf"},
        {"bundle.bin", kZip, "bundle|.zip"},
        {"notes.md", "plain words and nothing more\n", "notes|.md"},
        {"empty.xyz", "", "empty|.xyz"},
    };
    for (const auto& c : cases)
        addFile(std::string("t/") + c.fileName, c.content);
    addFolder("t/folder.png");
    addCommand("E705", {{"E7_SmartIDExt", "1"}});
    QStringList expected;
    for (const auto& c : cases)
        expected.append(QString::fromUtf8(c.expected));
    expected.append("folder.png|");
    EXPECT_EQ(run(), expected);
}

}  // namespace
}  // namespace qp
