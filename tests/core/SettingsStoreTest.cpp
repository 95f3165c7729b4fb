#include "core/SettingsStore.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <limits>
#include "../support/QStringPrinter.h"

using qp::SettingsStore;


namespace {

// Expected document text written with "\n"; the store writes CRLF.
QString crlf(const char* text) { return QString::fromUtf8(text).replace(QStringLiteral("\n"), QStringLiteral("\r\n")); }

QByteArray fileBytes(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<unreadable>");
}

}  // namespace

TEST(SettingsStore, TypedReadsFallBackToTheDefault)
{
    // readInt with default 7; readBool with default true and with default false.
    struct Row { const char* raw; qint64 integer; bool boolOrTrue; bool boolOrFalse; };
    const Row rows[] = {
        {nullptr, 7, true, false},  // missing key
        {"", 7, true, false},           {"1", 1, true, true},          {"0", 0, false, false},
        {" 1\t", 1, true, true},        {"TRUE", 7, true, true},       {"False", 7, false, false},
        {"yes", 7, true, false},        {"2", 2, true, false},         {"-42", -42, true, false},
        {"+42", 42, true, false},       {"1 2", 7, true, false},       {"12abc", 7, true, false},
        {"-", 7, true, false},          {"\xEF\xBC\x91\xEF\xBC\x92", 7, true, false},  // full-width digits
        {"9223372036854775807", std::numeric_limits<qint64>::max(), true, false},
        {"9223372036854775808", 7, true, false},
        {"-9223372036854775808", std::numeric_limits<qint64>::min(), true, false},
        {"-9223372036854775809", 7, true, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.raw == nullptr ? "<missing>" : row.raw);
        SettingsStore s;
        if (row.raw != nullptr)
            s.writeRaw("General Config", "Value", QString::fromUtf8(row.raw));
        EXPECT_EQ(s.readInt("General Config", "Value", 7), row.integer);
        EXPECT_EQ(s.readBool("General Config", "Value", true), row.boolOrTrue);
        EXPECT_EQ(s.readBool("General Config", "Value", false), row.boolOrFalse);
    }
    SettingsStore s;
    s.writeBool("A", "b", false);
    s.writeInt("A", "i", std::numeric_limits<qint64>::min());
    EXPECT_EQ(s.readRaw("A", "b", "?"), "0");
    EXPECT_EQ(s.readInt("A", "i", 0), std::numeric_limits<qint64>::min());
}

TEST(SettingsStore, StringsSurviveWritingAndReloading)
{
    struct Row { const char* value; const char* raw; };
    const Row rows[] = {
        {"", ""}, {"a", "a"}, {"|", "|"}, {"|x", "|x"}, {"a=b", "a=b"},
        {" a ", "| a |"}, {" ", "| |"}, {"\t", "|\t|"}, {"a ", "|a |"},
        {"|x|", "||x||"}, {"||", "||||"}, {"|a| ", "||a| |"}, {"文件　", "|文件　|"},
    };
    SettingsStore s;
    for (int i = 0; i < int(std::size(rows)); ++i)
        s.writeString("S", QString::number(i), QString::fromUtf8(rows[i].value));
    SettingsStore reloaded;
    reloaded.parseBytes(s.toBytes());
    for (int i = 0; i < int(std::size(rows)); ++i) {
        SCOPED_TRACE(rows[i].raw);
        EXPECT_EQ(s.readRaw("S", QString::number(i), "?"), QString::fromUtf8(rows[i].raw));
        EXPECT_EQ(s.readString("S", QString::number(i), "?"), QString::fromUtf8(rows[i].value));
        EXPECT_EQ(reloaded.readString("S", QString::number(i), "?"), QString::fromUtf8(rows[i].value));
    }
}

TEST(SettingsStore, ParsesEdgeCases)
{
    struct Row { const char* name; QByteArray input; const char* expected; int ignored; bool invalidUtf8; };
    const Row rows[] = {
        {"no BOM", "[A]\nk=v\n", "[A]\nk=v\n", 0, false},
        {"BOM", "\xEF\xBB\xBF[A]\r\nk=v", "[A]\nk=v\n", 0, false},
        {"CR, LF, CRLF mixed", "[A]\rk=1\r\n\r\nj=2\n\n\r[B]\n", "[A]\nk=1\nj=2\n\n[B]\n", 0, false},
        {"invalid UTF-8 keeps the rest", "[A]\nk=\xFF\xC0x\n[B]\nj=2\n",
         "[A]\nk=\xEF\xBF\xBD\xEF\xBF\xBDx\n\n[B]\nj=2\n", 0, true},
        {"NUL bytes", QByteArray("[A]\nk=a\0b\n[B]\nj=2\n", 18), nullptr, 0, false},
        {"lines without =, comments", "[A]\nnoise\n;c=1\n# c=2\n  \nk=v\n=x\n", "[A]\nk=v\n", 2, false},
        {"keys before a section", "k=1\nj=2\n[A]\nk=3\n", "[A]\nk=3\n", 2, false},
        {"duplicate section and key", "[A]\nk=1\nj=2\n[B]\n[a]\nK=3\nm=4\n", "[A]\nk=3\nj=2\nm=4\n\n[B]\n", 0, false},
        {"empty values, = in values", "[A]\nk=\nj==a=b=\n", "[A]\nk=\nj==a=b=\n", 0, false},
        {"key trimmed, value kept", "  [ Interface Config ]  \n\t k \t= v \n", "[Interface Config]\nk= v \n", 0, false},
        {"[x]=1 is a key", "[A]\n[x]=1\n", "[A]\n[x]=1\n", 0, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        SettingsStore s;
        const SettingsStore::LoadReport report = s.parseBytes(row.input);
        if (row.expected != nullptr) {
            EXPECT_EQ(s.toText(), crlf(row.expected));
        }
        EXPECT_EQ(report.ignoredLines, row.ignored);
        EXPECT_EQ(report.invalidUtf8, row.invalidUtf8);
    }
    SettingsStore s;
    s.parseBytes(rows[4].input);
    EXPECT_EQ(s.readRaw("A", "k", ""), QStringView(u"a\0b", 3).toString());
    EXPECT_EQ(s.readInt("B", "j", 0), 2);

    // A line break inside a value is written as a space, so it cannot start a section.
    s.writeRaw("A", "k", "one\r\n[C]\nx=1");
    s.parseBytes(s.toBytes());
    EXPECT_EQ(s.sectionNames(), QStringList({"A", "B"}));
    EXPECT_EQ(s.readRaw("A", "k", ""), "one  [C] x=1");

    // Ten megabytes on one line, twice, in linear time.
    const QByteArray big(10 * 1024 * 1024, 'x');
    const auto report = s.parseBytes("[A]\nk=" + big + "\n" + big + "\n[B]\nj=1\n");
    EXPECT_EQ(s.readRaw("A", "k", "").size(), big.size());
    EXPECT_EQ(report.ignoredLines, 1);
    EXPECT_EQ(s.readInt("B", "j", 0), 1);
}

TEST(SettingsStore, KeepsOrderAndSpellingAndIgnoresCase)
{
    SettingsStore s;
    s.parseBytes("[CommandList]\nCount=2\n[CMD_E320240501093015123]\nZ=1\nA=2\n[Interface Config]\nShowGrid=1\n");
    const QString text = s.toText();
    SettingsStore again;
    again.parseBytes(text.toUtf8());
    EXPECT_EQ(again.toText(), text);
    EXPECT_EQ(again.sectionNames(), QStringList({"CommandList", "CMD_E320240501093015123", "Interface Config"}));
    EXPECT_EQ(again.sectionLines("cmd_e320240501093015123"), QStringList({"Z=1", "A=2"}));
    EXPECT_TRUE(again.sectionLines("nope").isEmpty());

    again.writeInt("INTERFACE CONFIG", "SHOWGRID", 0);
    EXPECT_TRUE(again.hasKey("interface config", "showgrid"));
    EXPECT_EQ(again.sectionEntries("Interface Config"), (QList<QPair<QString, QString>>{{"ShowGrid", "0"}}));
}

TEST(SettingsStore, EraseKeepsLookupsRightAndWritesAppend)
{
    SettingsStore s;
    s.parseBytes("[A]\na=1\nb=2\nc=3\n[B]\nx=1\n[C]\ny=1\n");
    s.eraseSection("b");
    s.eraseKey("A", "A");
    s.eraseKey("A", "missing");
    s.eraseSection("missing");
    EXPECT_FALSE(s.hasSection("B"));
    EXPECT_EQ(s.readInt("A", "c", 0), 3);
    EXPECT_EQ(s.readInt("C", "y", 0), 1);
    s.writeInt("A", "a", 9);   // comes back at the end of its section
    s.writeInt("A", "c", 4);   // stays where it is
    s.writeInt("B", "x", 5);   // a new section goes last
    s.writeInt("C", "z", 2);
    EXPECT_EQ(s.toText(), crlf("[A]\nb=2\nc=4\na=9\n\n[C]\ny=1\nz=2\n\n[B]\nx=5\n"));
}

TEST(SettingsStore, SavesAndLoadsThroughTheFileSystem)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString path = dir.filePath("QuilletPro.ini");
    SettingsStore s;
    s.parseBytes("[Empty]");
    s.writeString("General Config", "Name", " 名字 ");
    s.writeBool("General Config", "Flag", true);
    QString error;
    ASSERT_TRUE(s.save(path, &error)) << error.toStdString();
    const QByteArray bytes = fileBytes(path);
    EXPECT_EQ(bytes, "\xEF\xBB\xBF" + crlf("[Empty]\n\n[General Config]\nName=| 名字 |\nFlag=1\n").toUtf8());

    SettingsStore loaded;
    loaded.writeRaw("Stale", "k", "v");
    const auto report = loaded.load(path);
    EXPECT_FALSE(report.fileMissing || report.unreadable || report.invalidUtf8);
    EXPECT_EQ(loaded.fileName(), path);
    EXPECT_EQ(loaded.toText(), s.toText());

    // The target's parent is a regular file, or the target is a folder: the old file stays.
    loaded.writeInt("General Config", "Flag", 0);
    EXPECT_FALSE(loaded.save(path + "/child.ini", &error));
    EXPECT_TRUE(error.startsWith(QString::fromUtf8("无法保存设置文件："))) << error.toStdString();
    ASSERT_TRUE(QDir().mkpath(dir.filePath("folder")));
    EXPECT_FALSE(loaded.save(dir.filePath("folder"), &error));
    EXPECT_EQ(fileBytes(path), bytes);

    EXPECT_TRUE(loaded.load(dir.filePath("none.ini")).fileMissing);
    EXPECT_EQ(loaded.fileName(), dir.filePath("none.ini"));
    EXPECT_TRUE(loaded.sectionNames().isEmpty());
    EXPECT_TRUE(s.load(dir.filePath("folder")).unreadable);  // there, but not a readable file
    EXPECT_TRUE(s.sectionNames().isEmpty());

    ASSERT_TRUE(s.save(path));
    ASSERT_TRUE(QFile::resize(path, 257LL * 1024 * 1024));  // sparse: costs no disk
    const auto tooLarge = s.load(path);
    EXPECT_TRUE(tooLarge.unreadable);
    EXPECT_FALSE(tooLarge.message.isEmpty());
    EXPECT_FALSE(s.hasSection("General Config"));
}

TEST(SettingsStore, NumberedLinesShrinkAndDistrustTheirCount)
{
    SettingsStore s;
    s.writeNumberedLines("S", "Count", "Line", {" indented", "b", "c"});
    s.writeNumberedLines("S", "Count", "Line", {" indented", "b"});
    EXPECT_EQ(s.readNumberedLines("S", "Count", "Line"), QStringList({" indented", "b"}));
    EXPECT_FALSE(s.hasKey("S", "Line3"));
    // A damaged count is bounded by the keys there are, so reading it costs nothing.
    s.writeInt("S", "Count", 4000000000000LL);
    EXPECT_EQ(s.readNumberedLines("S", "Count", "Line").size(), 3);
}
