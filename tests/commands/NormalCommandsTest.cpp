#include <gtest/gtest.h>

#include <set>
#include <vector>

#include "commands/NormalCommands.h"
#include "core/Session.h"
#include "../support/CommandRows.h"
#include "../support/QStringPrinter.h"


namespace qp {
namespace {

using test::Params;

// One command over one name, through the real pipeline.
struct Case {
    const char* code;
    Params params;
    const char* name;
    const char* expected;
};

// A row for the multi-row cases: its folder, its whole file name and whether it is ticked.
struct Row {
    const char* folder;
    const char* fileName;
    bool ticked = true;
};

class NormalCommandsTest : public ::testing::Test {
protected:
    NormalCommandsTest() : session(SettingsStore(), ui, QStringLiteral("[20240305140709123]"))
    {
        registerNormalCommands(session.pipeline().registry());
    }

    void setCommand(const char* code, const Params& params)
    {
        session.settings().eraseSection("CommandList");
        test::appendCommand(session.settings(), QLatin1String(code), normalCommandComment(code), params);
    }

    void setRows(const std::vector<Row>& rows)
    {
        session.renameList().clear();
        for (const Row& r : rows) {
            const NameParts parts = splitFileName(QString::fromUtf8(r.fileName), false);
            FileEntry row;
            row.path = QString::fromUtf8(r.folder);
            row.name = row.newName = parts.name;
            row.ext = row.newExt = parts.ext;
            row.selected = r.ticked;
            session.renameList().append(row);
        }
    }

    // New names without extension, one per row.
    QStringList run()
    {
        EXPECT_TRUE(session.pipeline().runAll(true));
        return test::newNames(session.renameList());
    }

    QString runOn(const Case& c)
    {
        setCommand(c.code, c.params);
        // The extension rides along unchanged: the family edits the main name only.
        setRows({{"/d/", "x.ext"}});
        session.renameList()[0].name = session.renameList()[0].newName = QString::fromUtf8(c.name);
        const QString result = run().front();
        EXPECT_EQ(session.renameList()[0].newExt, ".ext") << c.code;
        return result;
    }

    void expectAll(const std::vector<Case>& cases)
    {
        for (const Case& c : cases)
            EXPECT_EQ(runOn(c), QString::fromUtf8(c.expected)) << c.code << " on \"" << c.name << "\"";
    }

    ScriptedInteraction ui;
    Session session;
};

// "😀" is one character of two UTF-16 code units; "𠀀" (U+20000) is a CJK ideograph of two.
TEST_F(NormalCommandsTest, AddText)
{
    expectAll({
        {"N101", {{"N1_AddStr", "x-"}, {"N1_AddLeft", "1"}}, "abc", "x-abc"},
        {"N101", {{"N1_AddStr", "-x"}, {"N1_AddRight", "1"}}, "abc", "abc-x"},
        {"N101", {{"N1_AddStr", "X"}, {"N1_AddLeft", "1"}}, "", "X"},
        {"N101", {{"N1_AddStr", ""}, {"N1_AddLeft", "1"}}, "abc", "abc"},
        {"N101", {{"N1_AddStr", "X"}}, "abc", "abc"},  // no place chosen
        {"N101", {{"N1_AddStr", "<NAME>-"}, {"N1_AddLeft", "1"}}, "abc", "abc-abc"},
        {"N101", {{"N1_AddStr", "|  |"}, {"N1_AddRight", "1"}}, "a", "a  "},
        // At a position, from either end.
        {"N101", {{"N1_AddStr", "X"}, {"N1_AddInsert", "1"}, {"N1_InsertPos", "0"}}, "abc", "Xabc"},
        {"N101", {{"N1_AddStr", "X"}, {"N1_AddInsert", "1"}, {"N1_InsertPos", "2"}}, "abc", "abXc"},
        {"N101", {{"N1_AddStr", "X"}, {"N1_AddInsert", "1"}, {"N1_InsertPos", "3"}}, "abc", "abcX"},
        {"N101", {{"N1_AddStr", "X"}, {"N1_AddInsert", "1"}, {"N1_InsertPos", "99"}}, "abc", "abcX"},
        {"N101", {{"N1_AddStr", "X"}, {"N1_AddInsert", "1"}, {"N1_InsertPos", "0"}, {"N1_InsertPosFormRight", "1"}}, "abc", "abcX"},
        {"N101", {{"N1_AddStr", "X"}, {"N1_AddInsert", "1"}, {"N1_InsertPos", "1"}, {"N1_InsertPosFormRight", "1"}}, "abc", "abXc"},
        {"N101", {{"N1_AddStr", "X"}, {"N1_AddInsert", "1"}, {"N1_InsertPos", "3"}, {"N1_InsertPosFormRight", "1"}}, "abc", "Xabc"},
        {"N101", {{"N1_AddStr", "X"}, {"N1_AddInsert", "1"}, {"N1_InsertPos", "99"}, {"N1_InsertPosFormRight", "1"}}, "abc", "Xabc"},
        {"N101", {{"N1_AddStr", "X"}, {"N1_AddInsert", "1"}, {"N1_InsertPos", "1"}}, "文件", "文X件"},
        {"N101", {{"N1_AddStr", "X"}, {"N1_AddInsert", "1"}, {"N1_InsertPos", "2"}}, "a😀b", "a😀Xb"},
        {"N101", {{"N1_AddStr", "X"}, {"N1_AddInsert", "1"}, {"N1_InsertPos", "2"}, {"N1_InsertPosFormRight", "1"}}, "a𠀀b", "a𠀀Xb"},
        // At a text: after (0) or before (1) it; beyond the last occurrence means the last.
        {"N101", {{"N1_AddStr", "X"}, {"N1_AddInsertByStr", "1"}, {"N1_AddInsertByStrText", "a"}}, "bab", "baXb"},
        {"N101", {{"N1_AddStr", "X"}, {"N1_AddInsertByStr", "1"}, {"N1_AddInsertByStrText", "a"}, {"N1_AddInsertByStrPos", "1"}}, "bab", "bXab"},
        {"N101", {{"N1_AddStr", "X"}, {"N1_AddInsertByStr", "1"}, {"N1_AddInsertByStrText", "_"}, {"N1_AddInsertByStrWhich", "5"}}, "a_b_c", "a_b_Xc"},
        {"N101", {{"N1_AddStr", "X"}, {"N1_AddInsertByStr", "1"}, {"N1_AddInsertByStrText", "_"}, {"N1_AddInsertByStrWhich", "2"}}, "a_b_c", "a_b_Xc"},
        {"N101", {{"N1_AddStr", "X"}, {"N1_AddInsertByStr", "1"}, {"N1_AddInsertByStrText", "z"}}, "abc", "abc"},
        // "aaa" holds "aa" once without overlap, so occurrence 2 falls back to the first.
        {"N101", {{"N1_AddStr", "X"}, {"N1_AddInsertByStr", "1"}, {"N1_AddInsertByStrText", "aa"}, {"N1_AddInsertByStrWhich", "2"}}, "aaa", "aaXa"},
        // At a delimited text, with or without its delimiters.
        {"N101", {{"N1_AddStr", "X"}, {"N1_AddInsertByLR", "1"}, {"N1_AddInsertByLeft", "("}, {"N1_AddInsertByRight", ")"}}, "a(b)c", "a(bX)c"},
        {"N101", {{"N1_AddStr", "X"}, {"N1_AddInsertByLR", "1"}, {"N1_AddInsertByLeft", "("}, {"N1_AddInsertByRight", ")"}, {"N1_AddInsertByLRPosIncludeLR", "1"}}, "a(b)c", "a(b)Xc"},
        {"N101", {{"N1_AddStr", "X"}, {"N1_AddInsertByLR", "1"}, {"N1_AddInsertByLeft", "("}, {"N1_AddInsertByRight", ")"}, {"N1_AddInsertByLRPos", "1"}}, "a(b)c", "a(Xb)c"},
        {"N101", {{"N1_AddStr", "X"}, {"N1_AddInsertByLR", "1"}, {"N1_AddInsertByLeft", "("}, {"N1_AddInsertByRight", ")"}}, "abc", "abc"},
        // The first flag set wins.
        {"N101", {{"N1_AddStr", "X"}, {"N1_AddRight", "1"}, {"N1_AddInsert", "1"}, {"N1_AddLeft", "0"}}, "abc", "abcX"},
        // Padding repeats the text up to the pad length, never cutting the name.
        {"N102", {{"N1_AddStr", "ab"}, {"N1_FillLength", "7"}, {"N1_AddLeft", "1"}}, "xyz", "ababxyz"},
        {"N102", {{"N1_AddStr", "ab"}, {"N1_FillLength", "3"}, {"N1_AddLeft", "1"}}, "xyz", "xyz"},
        {"N102", {{"N1_AddStr", "ab"}, {"N1_FillLength", "2"}, {"N1_AddLeft", "1"}}, "xyz", "xyz"},
        {"N102", {{"N1_AddStr", "0"}, {"N1_FillLength", "4"}, {"N1_AddRight", "1"}}, "", "0000"},
        {"N102", {{"N1_AddStr", "ab"}, {"N1_FillLength", "6"}, {"N1_AddInsert", "1"}, {"N1_InsertPos", "1"}}, "xyz", "xabayz"},
        {"N102", {{"N1_AddStr", "😀"}, {"N1_FillLength", "5"}, {"N1_AddLeft", "1"}}, "ab", "😀ab"},  // no half emoji
    });
    // A fill length from elsewhere is held to what the page offers.
    EXPECT_EQ(runOn({"N102", {{"N1_AddStr", "ab"}, {"N1_FillLength", "2000000000"}, {"N1_AddLeft", "1"}}, "xyz", ""}).size(),
              255);
}

TEST_F(NormalCommandsTest, FindAndReplace)
{
    expectAll({
        {"N201", {{"N2_SearchText", "a|b"}, {"N2_ReplaceText", "b|c"}}, "ab", "bc"},
        {"N201", {{"N2_SearchText", "a|b"}, {"N2_ReplaceText", "b|c"}, {"N2_SameTimeFlag", "0"}}, "ab", "cc"},
        // Simultaneous items never match across another item's replacement.
        {"N201", {{"N2_SearchText", "ab|ba"}, {"N2_ReplaceText", "b|x"}}, "aba", "ba"},
        {"N201", {{"N2_SearchText", "ab|ba"}, {"N2_ReplaceText", "b|x"}, {"N2_SameTimeFlag", "0"}}, "aba", "x"},
        {"N201", {{"N2_SearchText", "a|b|c"}, {"N2_ReplaceText", "1"}}, "abcabc", "11"},  // unpaired items delete
        {"N201", {{"N2_SearchText", "a|"}, {"N2_ReplaceText", "1|2|3"}}, "abc", "1bc"},
        // The occurrence set.
        {"N201", {{"N2_SearchText", "a"}, {"N2_ReplaceText", "X"}, {"N2_ReplaceTextSet", "-1"}}, "a_a_a", "a_a_X"},
        {"N201", {{"N2_SearchText", "a"}, {"N2_ReplaceText", "X"}, {"N2_ReplaceTextSet", "2"}}, "a_a_a", "a_X_a"},
        {"N201", {{"N2_SearchText", "a"}, {"N2_ReplaceText", "X"}, {"N2_ReplaceTextSet", "1|3"}}, "a_a_a", "X_a_X"},
        {"N201", {{"N2_SearchText", "a"}, {"N2_ReplaceText", "X"}, {"N2_ReplaceTextSet", "2~-1"}}, "a_a_a", "a_X_X"},
        {"N201", {{"N2_SearchText", "a"}, {"N2_ReplaceText", "X"}, {"N2_ReplaceTextSet", "-2~-1"}}, "a_a_a", "a_X_X"},
        {"N201", {{"N2_SearchText", "a"}, {"N2_ReplaceText", "X"}, {"N2_ReplaceTextSet", "2~-2"}}, "a_a", "a_a"},
        {"N201", {{"N2_SearchText", "a"}, {"N2_ReplaceText", "X"}, {"N2_ReplaceTextSet", "3~1"}}, "a_a_a", "a_a_a"},
        {"N201", {{"N2_SearchText", "a"}, {"N2_ReplaceText", "X"}, {"N2_ReplaceTextSet", "9|-9"}}, "a_a_a", "a_a_a"},
        {"N201", {{"N2_SearchText", "a"}, {"N2_ReplaceText", "X"}, {"N2_ReplaceTextSet", " "}}, "a_a", "X_X"},
        {"N201", {{"N2_SearchText", "a"}, {"N2_ReplaceText", "X"}, {"N2_ReplaceTextSet", "x|~"}}, "a_a", "a_a"},
        {"N201", {{"N2_SearchText", "a|b"}, {"N2_ReplaceText", "1|2"}, {"N2_ReplaceTextSet", "-1"}}, "abab", "ab12"},
        // Letter case, empty texts, overlap.
        {"N201", {{"N2_SearchText", "A"}, {"N2_ReplaceText", "x"}}, "aAa", "xxx"},
        {"N201", {{"N2_SearchText", "A"}, {"N2_ReplaceText", "x"}, {"N2_CaseFlag", "1"}}, "aAa", "axa"},
        {"N201", {{"N2_SearchText", ""}, {"N2_ReplaceText", "x"}}, "abc", "abc"},
        {"N201", {{"N2_SearchText", "a"}, {"N2_ReplaceText", "x"}}, "", ""},
        {"N201", {{"N2_SearchText", "aa"}, {"N2_ReplaceText", "X"}}, "aaa", "Xa"},
        {"N201", {{"N2_SearchText", "a|b"}, {"N2_ReplaceText", "|"}}, "cab", "c"},
        {"N201", {{"N2_SearchText", "文件"}, {"N2_ReplaceText", "档"}}, "文件1文件", "档1档"},
        {"N201", {{"N2_SearchText", "É"}, {"N2_ReplaceText", "e"}}, "été", "ete"},
        {"N201", {{"N2_SearchText", "a"}, {"N2_ReplaceText", "<NAME>"}}, "ab", "abb"},
        // Between delimiters: the piece is looked for again ignoring case, anywhere.
        {"N202", {{"N2_SearchLeft", "("}, {"N2_SearchRight", ")"}, {"N2_ReplaceTextLR", "R"}}, "a(A)", "R(A)"},
        {"N202", {{"N2_SearchLeft", "("}, {"N2_SearchRight", ")"}, {"N2_ReplaceTextLR", "R"}, {"N2_SearchIncludeLRFlag", "1"}}, "x(y)z", "xRz"},
        {"N202", {{"N2_SearchLeft", "("}, {"N2_SearchRight", ")"}, {"N2_ReplaceTextLR", "R"}}, "a(b(c)d)", "a(b(R)d)"},
        {"N202", {{"N2_SearchLeft", "("}, {"N2_SearchRight", ")"}, {"N2_ReplaceTextLR", "R"}}, "a()b(x)", "a()b(R)"},
        {"N202", {{"N2_SearchLeft", "["}, {"N2_SearchRight", "]"}, {"N2_ReplaceTextLR", "R"}}, "a(b)", "a(b)"},
        {"N202", {{"N2_SearchLeft", "-"}, {"N2_SearchRight", "-"}, {"N2_ReplaceTextLR", "R"}}, "a-b-c", "a-b-c"},
        {"N202", {{"N2_SearchLeft", "【"}, {"N2_SearchRight", "】"}, {"N2_ReplaceTextLR", "新"}}, "【旧】歌", "【新】歌"},
    });
}

TEST_F(NormalCommandsTest, DeleteAndKeep)
{
    expectAll({
        {"N301", {}, "abc", ""},
        {"N302", {}, "  a b  ", "a b"},
        {"N302", {}, "\t\u3000a\u00a0", "a"},
        {"N302", {}, "   ", ""},
        // By position and count, from either end.
        {"N303", {{"N3_DelFrom", "2"}, {"N3_DelTo", "2"}}, "abcdef", "adef"},
        {"N303", {{"N3_DelFrom", "2"}, {"N3_DelTo", "2"}, {"N3_DelOrKeep", "1"}}, "abcdef", "bc"},
        {"N303", {{"N3_DelFrom", "1"}, {"N3_DelTo", "1"}}, "abcdef", "bcdef"},
        {"N303", {{"N3_DelFrom", "6"}, {"N3_DelTo", "1"}}, "abcdef", "abcde"},
        {"N303", {{"N3_DelFrom", "5"}, {"N3_DelTo", "9"}}, "abcdef", "abcd"},
        {"N303", {{"N3_DelFrom", "7"}, {"N3_DelTo", "1"}}, "abcdef", "abcdef"},
        {"N303", {{"N3_DelFrom", "7"}, {"N3_DelTo", "1"}, {"N3_DelOrKeep", "1"}}, "abcdef", ""},
        {"N303", {{"N3_DelFrom", "0"}, {"N3_DelTo", "2"}}, "abcdef", "cdef"},
        {"N303", {{"N3_DelFrom", "1"}, {"N3_DelTo", "3"}, {"N3_DelFromToFromRight", "1"}}, "abcdef", "abc"},
        {"N303", {{"N3_DelFrom", "1"}, {"N3_DelTo", "3"}, {"N3_DelFromToFromRight", "1"}, {"N3_DelOrKeep", "1"}}, "abcdef", "def"},
        {"N303", {{"N3_DelFrom", "6"}, {"N3_DelTo", "1"}, {"N3_DelFromToFromRight", "1"}}, "abcdef", "bcdef"},
        {"N303", {{"N3_DelFrom", "5"}, {"N3_DelTo", "9"}, {"N3_DelFromToFromRight", "1"}}, "abcdef", "cdef"},
        {"N303", {{"N3_DelFrom", "9"}, {"N3_DelTo", "2"}, {"N3_DelFromToFromRight", "1"}}, "abcdef", "abcdef"},
        {"N303", {{"N3_DelFrom", "1"}, {"N3_DelTo", "3"}}, "", ""},
        {"N303", {{"N3_DelFrom", "1"}, {"N3_DelTo", "2"}, {"N3_DelFromToFromRight", "1"}}, "一二三四", "一二"},
        {"N303", {{"N3_DelFrom", "2"}, {"N3_DelTo", "1"}}, "a😀b", "ab"},  // half a character takes it all
        {"N303", {{"N3_DelFrom", "3"}, {"N3_DelTo", "1"}, {"N3_DelOrKeep", "1"}}, "a😀b", "😀"},
        {"N303", {{"N3_DelFrom", "2"}, {"N3_DelTo", "1"}, {"N3_DelFromToFromRight", "1"}}, "a𠀀b", "ab"},
        // Cutting at a text.
        {"N304", {{"N3_CutWord", "-"}, {"N3_DelCutWhichWord", "2"}}, "a-b-c", "a-b"},
        {"N304", {{"N3_CutWord", "-"}, {"N3_DelCutWhichWord", "2"}, {"N3_DelCutIncludeSelf", "0"}}, "a-b-c", "a-b-"},
        {"N304", {{"N3_CutWord", "-"}, {"N3_DelCutDirection", "1"}}, "a-b-c", "b-c"},
        {"N304", {{"N3_CutWord", "-"}, {"N3_DelCutDirection", "1"}, {"N3_DelCutIncludeSelf", "0"}}, "a-b-c", "-b-c"},
        {"N304", {{"N3_CutWord", "-"}, {"N3_DelCutWhichWord", "5"}}, "a-b-c", "a-b"},
        {"N304", {{"N3_CutWord", "-"}}, "-abc", ""},
        {"N304", {{"N3_CutWord", "z"}}, "abc", "abc"},
        {"N304", {{"N3_CutWord", ""}}, "abc", "abc"},
        {"N304", {{"N3_CutWord", "的"}, {"N3_DelCutDirection", "1"}}, "我的歌", "歌"},
        // Between delimiters.
        {"N305", {{"N3_CutWordLeft", "("}, {"N3_CutWordRight", ")"}}, "a(b)c", "a()c"},
        {"N305", {{"N3_CutWordLeft", "("}, {"N3_CutWordRight", ")"}, {"N3_DelCutIncludeSelfLR", "1"}}, "a(b)c", "ac"},
        {"N305", {{"N3_CutWordLeft", "("}, {"N3_CutWordRight", ")"}, {"N3_DelOrKeepLR", "1"}}, "a(b)c", "b"},
        {"N305", {{"N3_CutWordLeft", "("}, {"N3_CutWordRight", ")"}, {"N3_DelOrKeepLR", "1"}, {"N3_DelCutIncludeSelfLR", "1"}}, "a(b)c", "(b)"},
        {"N305", {{"N3_CutWordLeft", "("}, {"N3_CutWordRight", ")"}, {"N3_DelOrKeepLR", "1"}}, "abc", ""},
        {"N305", {{"N3_CutWordLeft", "("}, {"N3_CutWordRight", ")"}}, "abc", "abc"},
        {"N305", {{"N3_CutWordLeft", "("}, {"N3_CutWordRight", ")"}}, "B(b)", "(b)"},
        // Listed texts and character sets.
        {"N306", {{"N3_DelPartTheString", "1"}, {"N3_TheString", "ab|cd"}}, "xabycdz", "xyz"},
        {"N306", {{"N3_DelPartTheString", "1"}, {"N3_TheString", "ab|cd"}, {"N3_DelPartDeleteOrHold", "1"}}, "xabycdz", "abcd"},
        {"N306", {{"N3_DelPartTheString", "1"}, {"N3_TheString", "AB"}}, "xaby", "xy"},
        {"N306", {{"N3_DelPartTheString", "1"}, {"N3_TheString", "--"}}, "a---b", "a-b"},  // non-overlapping
        {"N306", {{"N3_DelPartTheString", "1"}, {"N3_TheString", "__|x"}}, "x_____y", "_y"},
        {"N306", {{"N3_DelPartTheString", "0"}, {"N3_TheString", "a"}}, "abc", "abc"},
        {"N306", {{"N3_DelPartUserCharset", "1"}, {"N3_TheUserCharset", "-_"}}, "a-b_c", "abc"},
        {"N306", {{"N3_DelPartUserCharset", "1"}, {"N3_TheUserCharset", "😀"}, {"N3_DelPartDeleteOrHold", "1"}}, "a😀b😀", "😀😀"},
        {"N306", {{"N3_FixedCharsetString", "数字（0-9）;"}}, "a1b22", "ab"},
        {"N306", {{"N3_FixedCharsetString", "数字（0-9）;"}, {"N3_DelPartDeleteOrHold", "1"}}, "a1b22", "122"},
        {"N306", {{"N3_FixedCharsetString", "中文汉字;"}, {"N3_DelPartDeleteOrHold", "1"}}, "abc中文𠀀x", "中文𠀀"},
        {"N306", {{"N3_FixedCharsetString", "表情符号;空白字符;"}}, "a 😀 b", "ab"},
        {"N306", {{"N3_FixedCharsetString", "中文标点符号;括号"}}, "《书》，(1)", "书1"},
        {"N306", {{"N3_FixedCharsetString", "请选择预设字符集"}, {"N3_DelPartDeleteOrHold", "1"}}, "abc", "abc"},
    });
}

TEST_F(NormalCommandsTest, MoveAPiece)
{
    expectAll({
        {"N503", {{"N5_MoveStrText", "ab"}, {"N5_MoveMum", "5"}}, "abcd", "cdab"},
        {"N503", {{"N5_MoveStrText", "cd"}, {"N5_MoveMum", "1"}, {"N5_MoveDirection", "0"}}, "abcd", "acdb"},
        {"N503", {{"N5_MoveStrText", "cd"}, {"N5_MoveMum", "9"}, {"N5_MoveDirection", "0"}}, "abcd", "cdab"},
        {"N503", {{"N5_MoveStrText", "z"}, {"N5_MoveMum", "1"}}, "abcd", "abcd"},
        {"N503", {{"N5_MoveStrText", "a"}, {"N5_MoveMum", "1"}}, "a😀b", "😀ab"},
        {"N501", {{"N5_Position", "1"}, {"N5_Length", "2"}, {"N5_MoveMum", "1"}}, "abcd", "cabd"},
        {"N501", {{"N5_Position", "1"}, {"N5_Length", "2"}, {"N5_FromRight", "1"}, {"N5_MoveDirection", "0"}}, "abcd", "acdb"},
        {"N501", {{"N5_Position", "3"}, {"N5_Length", "2"}, {"N5_MoveMum", "1"}}, "abab", "aabb"},
        {"N501", {{"N5_Position", "9"}, {"N5_Length", "2"}}, "abcd", "abcd"},
        {"N501", {{"N5_Position", "1"}, {"N5_Length", "1"}, {"N5_MoveMum", "2"}}, "文件名", "件名文"},
        {"N502", {{"N5_MoveByStrLeft", "["}, {"N5_MoveByStrRight", "]"}}, "x[ab]yz", "x[]abyz"},
        {"N502", {{"N5_MoveByStrLeft", "["}, {"N5_MoveByStrRight", "]"}, {"N5_MoveByStrIncludeLR", "1"}, {"N5_MoveMum", "9"}}, "x[ab]yz", "xyz[ab]"},
    });
}

TEST_F(NormalCommandsTest, LetterCaseTouchesAsciiLettersOnly)
{
    expectAll({
        {"N601", {{"N6_ExceptWord", "mp3"}}, "song mp3 remix", "SONG mp3 REMIX"},
        {"N601", {}, "café ｆｕｌｌ", "CAFé ｆｕｌｌ"},
        {"N602", {}, "ABC ÉΣ", "abc ÉΣ"},
        {"N603", {}, "a1b2", "A1B2"},
        {"N603", {}, "a b", "A B"},
        {"N604", {}, "abcd", "aBcD"},
        {"N603", {}, "😀ab", "😀Ab"},  // the two code units take two positions
        {"N605", {}, "aBc-Ä", "AbC-Ä"},
        {"N607", {}, "hello WORLD", "Hello World"},
        {"N608", {}, "hello WORLD", "Hello WORLD"},
        {"N607", {{"N6_Separator", "__"}}, "ab__cD_e", "Ab__Cd_e"},
        {"N607", {{"N6_Separator", ""}}, "ab cD", "Ab cd"},
        {"N607", {{"N6_UseSeparator", "0"}, {"N6_NotLetter", "1"}}, "3d model", "3D Model"},
        {"N607", {{"N6_UseSeparator", "0"}, {"N6_NotNumOrLetter", "1"}}, "3d model", "3d Model"},
        {"N608", {{"N6_UseSeparator", "0"}, {"N6_NotLetter", "1"}}, "mY-fILE", "MY-FILE"},
        {"N607", {{"N6_UseSeparator", "0"}, {"N6_NotLetter", "1"}}, "é-abc中def", "é-Abc中Def"},
        {"N607", {{"N6_ExceptWord", "MP3"}}, "the mp3 file", "The MP3 File"},
        {"N602", {{"N6_ExceptWord", "DVD"}}, "A DVD RIP DVD", "a DVD rip DVD"},
    });
}

TEST_F(NormalCommandsTest, RandomCaseKeepsTheLettersAndUsesBothCases)
{
    setCommand("N606", {});
    std::vector<Row> rows(200, Row{"/d/", "abcDEF-1é.txt"});
    setRows(rows);
    std::set<QString> seen;
    for (const QString& name : run()) {
        EXPECT_EQ(name.toLower(), "abcdef-1é");
        seen.insert(name);
    }
    EXPECT_GT(seen.size(), 30u);
}

TEST_F(NormalCommandsTest, NumberForms)
{
    QStringList widths;
    for (int i = 1; i <= 5; ++i)
        widths << QString(254, '0') + QString::number(i);
    const QString widest = widths.join(' ');
    const struct {
        Params params;
        QString expected;  // the numbers of five ticked rows (or the first of them)
    } cases[] = {
        {{}, "1 2 3 4 5"},
        {{{"N4_DigitUnits", "3"}}, "001 002 003 004 005"},
        {{{"N4_Start", "-5"}, {"N4_DigitUnits", "3"}, {"N4_Increment", "3"}}, "-005 -002 001 004 007"},
        {{{"N4_Start", "10"}, {"N4_Increment", "-10"}}, "10 0 -10 -20 -30"},
        {{{"N4_AutoNumType", "2"}, {"N4_Start", "0"}}, "A B C D E"},
        {{{"N4_AutoNumType", "2"}, {"N4_Start", "24"}}, "Y Z BA BB BC"},
        {{{"N4_AutoNumType", "1"}, {"N4_DigitUnits", "3"}}, "aab aac aad aae aaf"},
        {{{"N4_DigitUnits", "3"}, {"N4_AutoSupplement", "0"}, {"N4_ManualSupplement", "1"}, {"N4_SupplementText", "ab"}},
         "abab1 abab2 abab3 abab4 abab5"},
        {{{"N4_DigitUnits", "3"}, {"N4_AutoSupplement", "0"}}, "1 2 3 4 5"},
        {{{"N4_GroupCount", "2"}}, "1 1 2 2 3"},
        {{{"N4_Reset", "1"}, {"N4_ResetValue", "3"}}, "1 2 3 1 2"},
        {{{"N4_Reset", "1"}, {"N4_ResetValue", "5"}, {"N4_Increment", "2"}, {"N4_GroupCount", "2"}}, "1 1 3 3 5"},
        {{{"N4_Reset", "1"}, {"N4_ResetValue", "0"}}, "1 1 1 1 1"},
        {{{"N4_Reset", "1"}, {"N4_ResetValue", "3"}, {"N4_Increment", "0"}}, "1 1 1 1 1"},
        {{{"N4_Start", "9"}, {"N4_Reset", "1"}, {"N4_ResetValue", "7"}, {"N4_Increment", "-1"}}, "9 8 7 9 8"},
        // Numbers from elsewhere are held to 32 bits: no overflow, no division trap.
        {{{"N4_Reset", "1"}, {"N4_ResetValue", "-9223372036854775808"}, {"N4_Increment", "-1"}}, "1 0 -1 -2 -3"},
        {{{"N4_Start", "9223372036854775807"}}, "2147483647 2147483648 2147483649 2147483650 2147483651"},
        {{{"N4_DigitUnits", "2000000000"}, {"N4_GroupCount", "-5"}}, widest},
    };
    for (const auto& c : cases) {
        Params params = c.params;
        params.emplace_back("N4_InsertExpression", "<#>");
        setCommand("N403", params);
        setRows(std::vector<Row>(5, Row{"/d/", "f.txt"}));
        EXPECT_EQ(run().join(' '), c.expected) << c.expected.left(40).toStdString();
    }
}

TEST_F(NormalCommandsTest, WhichRowsCountAndWhereTheNumberGoes)
{
    const std::vector<Row> rows = {
        {"/a/", "one.txt"}, {"/b/", "two.jpg", false}, {"/a/", "three.jpg"}, {"/b/", "four.txt"}, {"/a/", "five.txt"},
    };
    const struct {
        const char* code;
        Params params;
        const char* expected;
    } cases[] = {
        {"N403", {{"N4_InsertExpression", "<#>"}}, "1 two 2 3 4"},
        {"N403", {{"N4_InsertExpression", "<#>"}, {"N4_SkipNoCheckRow", "0"}}, "1 two 3 4 5"},
        {"N403", {{"N4_InsertExpression", "<#>"}, {"N4_ByPath", "1"}}, "1 two 2 1 3"},
        {"N403", {{"N4_InsertExpression", "<#>"}, {"N4_ByPath", "1"}, {"N4_SkipNoCheckRow", "0"}}, "1 two 2 2 3"},
        {"N403", {{"N4_InsertExpression", "<#>"}, {"N4_Except", "1"}, {"N4_ExceptText", "*.jpg"}}, "1 two three 2 3"},
        {"N403", {{"N4_InsertExpression", "<#>"}, {"N4_Except", "1"}, {"N4_ExceptText", " one.* | FIVE.TXT "}}, "one two 1 2 five"},
        {"N403", {{"N4_InsertExpression", "<#>"}, {"N4_Except", "0"}, {"N4_ExceptText", "*.jpg"}}, "1 two 2 3 4"},
        {"N403", {{"N4_InsertExpression", "<#>"}, {"N4_Except", "1"}, {"N4_ExceptText", "x|*"}}, "one two three four five"},
        {"N403", {{"N4_InsertExpression", "<#>"}, {"N4_Except", "1"}, {"N4_ExceptText", "|"}}, "1 two 2 3 4"},
        {"N403", {{"N4_InsertExpression", "<#>_<NAME>"}}, "1_one two 2_three 3_four 4_five"},
        {"N403", {{"N4_InsertExpression", "x.<#>.y"}}, "x.1.y two x.2.y x.3.y x.4.y"},
        {"N403", {{"N4_InsertExpression", "<NAME>"}}, "one two three four five"},
        {"N401", {{"N4_InsertPos", "1"}}, "o1ne two t2hree f3our f4ive"},
        {"N401", {{"N4_InsertPos", "0"}, {"N4_InsertPosFromRight", "1"}}, "one1 two three2 four3 five4"},
        {"N402", {{"N4_InsertPosByStr", "e"}, {"N4_InsertPosByStrWhich", "2"}}, "one1 two three2 four five4"},
        {"N402", {{"N4_InsertPosByStr", "e"}, {"N4_InsertPosByStrLorR", "1"}}, "on1e two thr2ee four fiv4e"},
    };
    for (const auto& c : cases) {
        setCommand(c.code, c.params);
        setRows(rows);
        EXPECT_EQ(run().join(' '), c.expected) << c.code << " " << c.expected;
    }
}

// A letter number can meet the brackets of a tag; the number goes in before expansion, so
// "<NA" + "M" + "E>" is the tag <NAME>.
TEST_F(NormalCommandsTest, NumberJoinsTheExpressionBeforeTagsAreExpanded)
{
    setCommand("N403", {{"N4_InsertExpression", "<NA<#>E>"}, {"N4_AutoNumType", "2"}, {"N4_Start", "12"}});
    setRows({{"/d/", "song.mp3"}, {"/d/", "tune.mp3"}});
    EXPECT_EQ(run(), (QStringList{"song", "NANE"}));
}

TEST_F(NormalCommandsTest, NumbersAreKeptForAssignmentToAUserList)
{
    EXPECT_FALSE(assignNumbersToUserList(session, 3));
    setCommand("N401", {{"N4_InsertPos", "0"}, {"N4_DigitUnits", "2"}});
    setRows({{"/d/", "a.txt"}, {"/d/", "b.txt", false}, {"/d/", "c.txt"}});
    run();
    ASSERT_TRUE(assignNumbersToUserList(session, 3));
    EXPECT_EQ(session.userList(3), (QStringList{"01", "", "02"}));
    EXPECT_FALSE(assignNumbersToUserList(session, 10));
}

TEST_F(NormalCommandsTest, CommandsApplyInListOrderAndLeaveUntickedRows)
{
    SettingsStore& store = session.settings();
    setCommand("N201", {{"N2_SearchText", "a"}, {"N2_ReplaceText", "b"}});
    store.writeString("CMD_2", "CMDid", "N601");
    store.writeInt("CommandList", "CommandListCount", 2);
    store.writeString("CommandList", "2", "CMD_2");
    setRows({{"/d/", "banana.txt"}, {"/d/", "apple.txt", false}});
    EXPECT_EQ(run(), (QStringList{"BBNBNB", "apple"}));
}

TEST_F(NormalCommandsTest, EveryCodeIsRegisteredAndDescribed)
{
    for (const QString& code : normalCommandCodes()) {
        EXPECT_TRUE(session.pipeline().registry().knows(code)) << code.toStdString();
        EXPECT_FALSE(normalCommandComment(code).isEmpty()) << code.toStdString();
    }
    EXPECT_EQ(normalCommandComment("N306"), "删除/保留部分字符串");
    EXPECT_TRUE(normalCommandComment("E101").isEmpty());
}

TEST_F(NormalCommandsTest, PresetNamesRoundTripThroughTheStoredValue)
{
    const QStringList names = presetCharsetNames();
    ASSERT_GE(names.size(), 8);
    EXPECT_EQ(joinPresetCharsets({}), "请选择预设字符集");
    EXPECT_TRUE(splitPresetCharsets("请选择预设字符集").isEmpty());
    EXPECT_EQ(splitPresetCharsets(joinPresetCharsets({names[0]})), QStringList{names[0]});
    EXPECT_EQ(splitPresetCharsets(joinPresetCharsets(names)), names);
    for (const QString& name : names)
        EXPECT_FALSE(name.contains(';'));
}

TEST_F(NormalCommandsTest, LongestNameCountsCodeUnits)
{
    setRows({{"/d/", "ab.txt"}, {"/d/", "a😀b.c"}, {"/d/", "xyz"}});
    EXPECT_EQ(longestNameLength(session.renameList()), 4);
}

// No command leaves half a surrogate pair, whatever positions it is given.
TEST_F(NormalCommandsTest, NoCommandSplitsASurrogatePair)
{
    const QString names[] = {"😀", "a😀", "😀b", "𠀀𠀀𠀀", "a😀b😀c"};
    const auto whole = [](const QString& text) {
        for (qsizetype i = 0; i < text.size(); ++i) {
            if (text[i].isHighSurrogate() != (i + 1 < text.size() && text[i + 1].isLowSurrogate()))
                return false;
            if (text[i].isLowSurrogate() && (i == 0 || !text[i - 1].isHighSurrogate()))
                return false;
        }
        return true;
    };
    for (int position = 0; position <= 6; ++position) {
        for (int count = 0; count <= 4; ++count) {
            const std::string p = std::to_string(position), n = std::to_string(count);
            for (const char* right : {"0", "1"}) {
                const std::vector<std::pair<const char*, Params>> commands = {
                    {"N101", {{"N1_AddStr", "X"}, {"N1_AddInsert", "1"}, {"N1_InsertPos", p.c_str()}, {"N1_InsertPosFormRight", right}}},
                    {"N303", {{"N3_DelFrom", p.c_str()}, {"N3_DelTo", n.c_str()}, {"N3_DelFromToFromRight", right}}},
                    {"N303", {{"N3_DelFrom", p.c_str()}, {"N3_DelTo", n.c_str()}, {"N3_DelFromToFromRight", right}, {"N3_DelOrKeep", "1"}}},
                    {"N501", {{"N5_Position", p.c_str()}, {"N5_Length", n.c_str()}, {"N5_FromRight", right}, {"N5_MoveMum", n.c_str()}, {"N5_MoveDirection", right}}},
                    {"N102", {{"N1_AddStr", "😀a"}, {"N1_FillLength", p.c_str()}, {"N1_AddRight", "1"}}},
                    {"N603", {}},
                };
                for (const auto& [code, params] : commands) {
                    for (const QString& name : names) {
                        const QString result = runOn({code, params, name.toUtf8().constData(), ""});
                        EXPECT_TRUE(whole(result)) << code << " p=" << p << " n=" << n << " right=" << right;
                    }
                }
            }
        }
    }
}

}  // namespace
}  // namespace qp
