// Passes, search order and the tags that read only the row and the session.
#include <QRandomGenerator>
#include <random>

#include "ExpressionFixture.h"
#include "expressions/TagParts.h"
#include "support/TempTree.h"

namespace qp::test {
namespace {

struct Case {
    const char* text;
    const char* expected;
};

class Passes : public ExpressionTest {};

TEST_F(Passes, BracketsTagsAndCase)
{
    addRow("/data/ABCDEFGHIJK.txt");
    session.renameList()[0].newName = "new";
    session.renameList()[0].newExt = ".md";
    for (const Case& c : {
             Case{"plain text", "plain text"},
             Case{"a<b", "ab"},
             Case{"a>b", "ab"},
             Case{"x>y<z", "xyz"},
             Case{"<FOO>", "FOO"},
             Case{"<name>.<ext>", "ABCDEFGHIJK.txt"},
             Case{"<Name>-<NAME>-<nAmE>", "ABCDEFGHIJK-ABCDEFGHIJK-ABCDEFGHIJK"},
             Case{"<FILENAME>|<CFILENAME>", "ABCDEFGHIJK.txt|new.md"},
             Case{"<CNAME><.EXT><.CEXT><CEXT>", "new.txt.mdmd"},
             Case{"<<NAME>>", "ABCDEFGHIJK"},
             Case{"<NAME", "NAME"},
             Case{"<NAME2>", "NAME2"},
             Case{"<NA<NAME>ME>", "NAABCDEFGHIJKME"},
             Case{"<>", ""},
             Case{"", ""},
         })
        EXPECT_EQ(expand(QString::fromUtf8(c.text)), QString::fromUtf8(c.expected)) << c.text;
}

TEST_F(Passes, ValuesThatHoldTagsAreSeenByLaterPassesOnly)
{
    addRow("/data/<NAME>.txt");
    addRow("/data/<SAMPLENO>.txt");
    addRow("/data/a<b>c.txt");
    addRow("/data/<EXT.txt");
    // One bracket pair, one pass: the value's own tag is never expanded.
    EXPECT_EQ(expand("<FILENAME>", 0), "NAME.txt");
    // Two passes: the second finds "<NAME>" (before "<EXT>" in the search order), and its
    // value is "<NAME>" again; no pass is left for "<EXT>".
    EXPECT_EQ(expand("<FILENAME>|<EXT>", 0), "NAME.txt|EXT");
    // Search order, not position: "<NAME>" is expanded first and brings in "<SAMPLENO>".
    EXPECT_EQ(expand("<SAMPLENO><NAME>", 1), "22");
    EXPECT_EQ(expand("<NAME>", 2), "abc");
    // A value can close a bracket that the text opened.
    EXPECT_EQ(expand("<NAME>.txt>", 3), "EXT.txt");
    EXPECT_EQ(expand("<NAME><.EXT>>", 3), "EXT.txt");
}

TEST_F(Passes, EmptyNamesFoldersAndRowsOutsideTheList)
{
    addRow("/data/.profile");
    addRow("/data/Folder.d", true);
    EXPECT_EQ(expand("[<NAME>][<EXT>][<.EXT>]", 0), "[][profile][.profile]");
    EXPECT_EQ(expand("[<NAME>][<EXT>][<FILENAME>]", 1), "[Folder.d][][Folder.d]");
    EXPECT_EQ(expand("[<NAME>][<SAMPLENO>]", 7), "[][8]");
    EXPECT_EQ(expand("[<NAME>]", -1), "[]");
}

TEST_F(Passes, ParametersAreReadOnceAndSpacesComeFromTwenty)
{
    addRow("/data/ABCDEF.txt");
    setParameter("<SUBSTR>", "2/3");
    const MetaExpression expression("<SUBSTR>", options);
    EXPECT_EQ(expression.expand(session, 0), "BCD");
    setParameter("<SUBSTR>", "1/1");
    EXPECT_EQ(expression.expand(session, 0), "BCD");  // the same run keeps what it read
    EXPECT_EQ(expand("<SUBSTR>"), "A");
    setParameter("<DIR>", "1(<20>)2");
    addRow("/x/y/f.txt");
    EXPECT_EQ(expand("<DIR>", 1), "y x");
}

// ---- substrings ------------------------------------------------------------------------------

TEST_F(ExpressionTest, SubstrAndCsubstrInBothModes)
{
    addRow("/data/ABCDEFGHIJK.txt");
    session.renameList()[0].newName = "0123456789";
    struct Row {
        const char* parameter;
        const char* substr;
        const char* csubstr;
    };
    for (const Row& r : {
             Row{"1/1(L)", "A", "0"}, Row{"2/3", "BCD", "123"}, Row{"2/3(R)", "HIJ", "678"},
             Row{"3", "CDE", "234"}, Row{"0/2", "AB", "01"}, Row{"2/0", "", ""}, Row{"20/2", "", ""},
             Row{"10/5", "JK", "9"}, Row{"10/5(R)", "AB", "0"}, Row{"12/1(R)", "", ""}, Row{"x/y", "A", "0"},
             Row{"1/1(r)", "K", "9"}, Row{"-3/-2", "CD", "23"}, Row{"1/99999999999999999999", "ABCDEFGHIJK", "0123456789"},
         }) {
        setParameter("<SUBSTR>", r.parameter);
        setParameter("<CSUBSTR>", r.parameter);
        EXPECT_EQ(expand("<SUBSTR>"), r.substr) << r.parameter;
        EXPECT_EQ(expand("<CSUBSTR>"), r.csubstr) << r.parameter;
    }
}

// ---- numbering, random, list tags -----------------------------------------------------------

TEST_F(ExpressionTest, SampleNumbersFromTheRowIndex)
{
    for (int i = 0; i < 12; ++i)
        addRow(QStringLiteral("/d/f%1.txt").arg(i));
    struct Row {
        const char* parameter;
        std::vector<std::pair<int, const char*>> values;
    };
    for (const Row& r : {
             Row{nullptr, {{0, "1"}, {1, "2"}, {9, "10"}}},
             Row{"3/2/3", {{0, "003"}, {1, "005"}, {4, "011"}}},
             Row{"10/5/2", {{0, "10"}, {1, "15"}, {2, "20"}}},
             Row{"1/1/1", {{9, "10"}}},
             Row{"", {{0, "1"}, {3, "4"}}},
             Row{"x/y/z", {{2, "3"}}},
             Row{"5", {{0, "5"}, {1, "6"}}},
             Row{"0/0/4", {{11, "0000"}}},
             Row{"a7b/+2", {{1, "9"}}},
         }) {
        if (r.parameter)
            setParameter("<SAMPLENO>", r.parameter);
        for (const auto& [row, expected] : r.values)
            EXPECT_EQ(expand("<SAMPLENO>", row), expected) << (r.parameter ? r.parameter : "default") << " row " << row;
    }
    setParameter("<SAMPLENO>", "1/1/99999");
    EXPECT_EQ(expand("<SAMPLENO>", 0).size(), 255);
    setParameter("<SAMPLENO>", "99999999999999999999/99999999999999999999/1");
    EXPECT_FALSE(expand("<SAMPLENO>", 11).isEmpty());
}

TEST_F(ExpressionTest, RandomStringsFollowTheirAlphabet)
{
    addRow("/d/a.txt");
    addRow("/d/b.txt");
    struct Row {
        const char* parameter;
        int length;
        const char* alphabet;
    };
    for (const Row& r : {
             Row{nullptr, 8, "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_"},
             Row{"4(N)", 4, "0123456789"},
             Row{"(UL)", 8, "_"},
             Row{"12(lc)", 12, "abcdefghijklmnopqrstuvwxyz"},
             Row{"3(UC)(N)", 3, "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ"},
             Row{"0(N)", 0, ""},
             Row{"5", 0, ""},
         }) {
        if (r.parameter)
            setParameter("<R>", r.parameter);
        const QString value = expand("<R>");
        EXPECT_EQ(value.size(), r.length) << r.parameter;
        for (QChar c : value)
            EXPECT_TRUE(QString::fromLatin1(r.alphabet).contains(c)) << r.parameter << " " << value.toStdString();
    }
    setParameter("<R>", "16");
    setParameter("<R>", "16(N)(LC)");
    const MetaExpression twice("<R>-<r>", options);
    const QString first = twice.expand(session, 0);
    const QStringList halves = first.split(u'-');
    ASSERT_EQ(halves.size(), 2);
    EXPECT_EQ(halves[0], halves[1]);
    EXPECT_NE(twice.expand(session, 1), first);
}

TEST_F(ExpressionTest, UserListsAndListCount)
{
    for (const char* name : {"a", "b", "c"})
        addRow(QStringLiteral("/d/%1.txt").arg(QLatin1String(name)));
    for (qsizetype i = 0; i < 3; ++i)
        session.renameList()[i].newName = QStringLiteral("new<%1>").arg(i);
    int refreshed = 0;
    defineUserList(session, 3, [&] { ++refreshed; });
    EXPECT_EQ(refreshed, 1);
    EXPECT_EQ(session.userList(3), (QStringList{"new<0>", "new<1>", "new<2>"}));
    session.renameList()[1].newName = "later";
    EXPECT_EQ(expand("<USER3>/<LISTNUM>", 1), "new1/3");
    EXPECT_EQ(expand("[<USER0>]", 1), "[]");

    session.settings().writeBool("Operation Config", "AutoPreview", false);
    defineUserList(session, 3, [&] { ++refreshed; });
    EXPECT_EQ(refreshed, 1);
    EXPECT_EQ(session.userList(3).at(1), "later");
    defineUserList(session, 10, [&] { ++refreshed; });  // no such list: nothing happens
    EXPECT_EQ(refreshed, 1);

    session.userList(9) = QStringList{"only"};
    EXPECT_EQ(expand("<USER9>", 0), "only");
    EXPECT_EQ(expand("[<USER9>]", 2), "[]");
}

// ---- folder names ------------------------------------------------------------------------------

TEST_F(ExpressionTest, DirLevelsRangesAndDirection)
{
    addRow("C:/A/B/C/f.txt");  // a Windows path with its drive, as Windows keeps it
    addRow("/A/B/C/f.txt");    // the same on Linux: no drive
    addRow("/f.txt");          // directly in the root
    addRow("C:/f.txt");
    struct Row {
        const char* parameter;
        const char* windows;
        const char* linux;
        const char* root;
        const char* driveRoot;
    };
    for (const Row& r : {
             Row{"0", "C", "", "", "C"},
             Row{"1", "C", "C", "", "C"},
             Row{"2", "B", "B", "", "C"},
             Row{"9", "A", "A", "", "C"},
             Row{"x", "C", "C", "", "C"},
             Row{"1->", "A", "A", "", "C"},
             Row{"9->", "C", "C", "", "C"},
             Row{"1(\\)2", "C\\B", "C\\B", "", "C"},
             Row{"2(\\)1", "B\\C", "B\\C", "", "C"},
             Row{"1(\\)2->", "A\\B", "A\\B", "", "C"},
             Row{"3(-)3", "A", "A", "", "C"},
             Row{"1(-)9", "C-B-A", "C-B-A", "", "C"},
             Row{"0(/)1", "C/C", "/C", "", "C"},
             Row{"3(, )1->", "C, B, A", "C, B, A", "", "C"},
             Row{"1(-", "C", "C", "", "C"},
             Row{"(-)3", "C-B-A", "C-B-A", "", "C"},
         }) {
        setParameter("<DIR>", r.parameter);
        EXPECT_EQ(expand("<DIR>", 0), r.windows) << r.parameter;
        EXPECT_EQ(expand("<DIR>", 1), r.linux) << r.parameter;
        EXPECT_EQ(expand("<DIR>", 2), r.root) << r.parameter;
        EXPECT_EQ(expand("<DIR>", 3), r.driveRoot) << r.parameter;
    }
}

// ---- never fails -------------------------------------------------------------------------------

// Random texts of brackets, tag names in any case and other characters, with random
// parameters, against a real folder: every expansion returns, no bracket survives, and the
// result is the one a rebuild and rescan after every pass gives.
TEST(ExpansionNeverFails, RandomTextsAndParameters)
{
    TempTree tree;
    tree.file("d/a.txt", "hello");
    tree.file("d/sub/b.bin", std::string(1000, 'x'));
    tree.folder("d/empty");
    ScriptedInteraction ui;
    Session session(SettingsStore(), ui, QStringLiteral("[20240305140709123]"));
    for (const QString& path : {tree.path("d/a.txt"), tree.path("d/sub/b.bin"), tree.path("d/missing.x")}) {
        FileEntry row;
        const qsizetype slash = path.lastIndexOf(u'/');
        row.path = path.left(slash + 1);
        row.name = path.mid(slash + 1).section(u'.', 0, 0);
        row.ext = "." + path.section(u'.', -1);
        row.newName = "<" + row.name;
        session.renameList().append(row, path);
    }
    FileEntry folder;
    folder.path = tree.path("") + "/";
    folder.name = "d";
    folder.isFolder = true;
    session.renameList().append(folder, "folder");
    session.userList(0) = QStringList{"<NAME>", ">", "<"};

    static const char* const kPieces[] = {
        "<", ">", "<<", ">>", "NAME", "name", "FILENAME", "CEXT", ".EXT", "USER0", "NCRC32", "NMD5", "NSHA1",
        "CRC32", "SIZE", "SPSIZE", "DISIZE", "SAMPLENO", "ATTRIB", "DIR", "R", "SUBSTR", "CSUBSTR", "SPALLNUM",
        "DIALLNUM", "DIDIRNUM", "LISTNUM", "DIFNSUBSTR", "Y", "M", "D", "W", "DATE", "H", "N", "S", "TIME", "FDATE",
        "FCTIME", "FAW", "FOO", "(", ")", "/", "->", "-", "0", "7", "99999999999999999999", "aaa", "<20>", "年",
        "\xF0\x9F\x98\x80", " ", ".", "ß", "ı",
    };
    constexpr int kPieceCount = int(sizeof(kPieces) / sizeof(kPieces[0]));
    static const char* const kParameterTags[] = {"<SUBSTR>", "<CSUBSTR>", "<SAMPLENO>", "<R>", "<DIR>",
                                                 "<ATTRIB>", "<SIZE>", "<DISIZE>", "<NMD5>", "<DIFNSUBSTR>",
                                                 "<DATE>", "<Y>", "<FTIME>", "<DIALLNUM>"};
    const int iterations = qEnvironmentVariableIntValue("QP_EXPRESSION_FUZZ_ITERATIONS") > 0
                               ? qEnvironmentVariableIntValue("QP_EXPRESSION_FUZZ_ITERATIONS")
                               : 3000;
    std::mt19937 random(20240305);
    // Pieces alone, or wrapped in brackets as a whole tag (name in random case). A tidy
    // text has no bracket outside a known tag.
    auto text = [&](int pieces, bool tidy = false) {
        QString out;
        for (int i = 0; i < pieces; ++i) {
            QString piece = QString::fromUtf8(kPieces[random() % kPieceCount]);
            const QByteArray name = piece.toLatin1();
            const bool known = expr::findTag(name.constData(), int(name.size())) >= 0;
            if (tidy && (piece.contains(u'<') || piece.contains(u'>')))
                piece = "_";
            else if (random() % 3 == 0 && (known || !tidy))
                piece = '<' + (random() % 2 ? piece.toLower() : piece) + '>';
            out += piece;
        }
        return out;
    };
    int changed = 0;
    ExpressionOptions options;
    options.seed = 7;
    options.locale = QLocale(QLocale::Chinese, QLocale::China);
    options.clock = [] { return QDateTime(QDate(2024, 3, 5), QTime(14, 7, 9)); };
    ExpressionOptions stepByStep = options;
    stepByStep.stepByStep = true;
    for (int i = 0; i < iterations; ++i) {
        if (i % 5 == 0) {
            for (const char* tag : kParameterTags)
                session.settings().writeString("UnitVariable", tag, text(int(random() % 6)));
        }
        const QString input = text(int(random() % 24), i % 2 == 1);
        const MetaExpression expression(input, options);
        const MetaExpression reference(input, stepByStep);
        for (qsizetype row = -1; row <= session.renameList().size(); ++row) {
            const QString out = expression.expand(session, row);
            ASSERT_FALSE(out.contains(u'<') || out.contains(u'>')) << input.toStdString();
            ASSERT_EQ(out, reference.expand(session, row)) << input.toStdString();
            if (out != QString(input).remove(u'<').remove(u'>'))
                ++changed;
        }
    }
    EXPECT_GT(changed, iterations);  // the texts did hold tags
}

}  // namespace
}  // namespace qp::test
