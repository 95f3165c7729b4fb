#include <gtest/gtest.h>

#include <QFile>

#include "core/RenameList.h"
#include "execution/ContrastList.h"
#include "execution/FileOperations.h"
#include "execution/XlsWorkbook.h"
#include "platform/TextEncoding.h"
#include "../support/QStringPrinter.h"
#include "../support/Spreadsheet.h"
#include "../support/TempTree.h"

namespace qp {
namespace {

std::vector<ContrastRow> pairs(std::initializer_list<std::pair<const char*, const char*>> names)
{
    std::vector<ContrastRow> rows;
    for (const auto& [from, to] : names)
        rows.push_back({QString::fromUtf8(from), QString::fromUtf8(to)});
    return rows;
}

TEST(ContrastList, DisplayWidthCountsWideCharactersTwice)
{
    const struct {
        const char* text;
        int width;
    } cases[] = {
        {"", 0},          {"abc", 3},        {"报告", 4},        {"ｆｕｌｌ", 8},   {"한글", 4},
        {"カナ", 4},      {"😀", 2},         {"𠀀", 2},          {"e\u0301", 1},    {"a\u200db", 2},
        {"【书】", 6},    {"Ä-ß", 3},        {"\u3000", 2},
    };
    for (const auto& c : cases)
        EXPECT_EQ(displayWidth(QString::fromUtf8(c.text)), c.width) << c.text;
}

TEST(ContrastList, AlignedTextPutsEveryNewNameInOneColumn)
{
    const auto rows = pairs({{"a", "A"}, {"报告一", "新"}, {"photo 😀", "x"}, {"", "empty"}});
    const QString text = contrastText(rows, true, QString());
    const QStringList lines = text.split(QStringLiteral("\r\n"));
    ASSERT_EQ(lines.size(), 5);
    EXPECT_TRUE(lines.last().isEmpty()) << "every line ends with CR LF";
    for (int i = 0; i < 4; ++i) {
        const QString& line = lines[i];
        const QString& newName = rows[size_t(i)].newName;
        ASSERT_TRUE(line.endsWith(newName));
        EXPECT_EQ(displayWidth(QStringView(line).chopped(newName.size())), 8 + 4) << line.toStdString();
    }
    EXPECT_EQ(contrastText(pairs({{"a", "b"}, {"c", "d"}}), false, QStringLiteral("<>")), "a<>b\r\nc<>d\r\n");
    EXPECT_EQ(contrastText({}, true, QString()), "");
}

TEST(ContrastList, EncodingsWriteTheirByteOrderMarks)
{
    const QString text = QStringLiteral("报a\r\n");
    const struct {
        ContrastEncoding encoding;
        QByteArray bytes;
    } cases[] = {
        {ContrastEncoding::Utf8, QByteArray("\xEF\xBB\xBF\xE6\x8A\xA5" "a\r\n")},
        {ContrastEncoding::Unicode, QByteArray("\xFF\xFE\xA5\x62" "a\0\r\0\n\0", 10)},
        {ContrastEncoding::UnicodeBigEndian, QByteArray("\xFE\xFF\x62\xA5\0a\0\r\0\n", 10)},
    };
    for (const auto& c : cases) {
        const EncodedText encoded = encodeText(text, c.encoding);
        EXPECT_EQ(encoded.bytes, c.bytes) << encoded.encodingName.toStdString();
        EXPECT_FALSE(encoded.lossy);
    }
}

TEST(ContrastList, AnsiFollowsTheLanguageOfTheLocale)
{
    const struct {
        const char* locale;
        const char* codeset;
        const char* expected;
    } cases[] = {
        {"zh_CN.UTF-8", "UTF-8", "GB18030"}, {"zh_SG", "GB2312", "GB18030"},  {"zh_TW.UTF-8", "UTF-8", "Big5"},
        {"zh_HK", "BIG5-HKSCS", "Big5"},     {"ja_JP.UTF-8", "UTF-8", "Shift_JIS"}, {"ko_KR.UTF-8", "UTF-8", "EUC-KR"},
        {"de_DE.ISO-8859-1", "ISO-8859-1", "ISO-8859-1"}, {"en_US.UTF-8", "UTF-8", "UTF-8"},
        {"C", "ANSI_X3.4-1968", "UTF-8"},    {"", "", "UTF-8"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(platform::ansiEncodingNameFor(c.locale, c.codeset), c.expected) << c.locale;
}

TEST(ContrastList, AnsiTextIsWrittenInTheCodePageAndSaysWhatItLost)
{
    qputenv("LC_ALL", "zh_CN.UTF-8");
    const EncodedText chinese = encodeText(QStringLiteral("报告\r\n"), ContrastEncoding::Ansi);
    EXPECT_EQ(chinese.encodingName, "GB18030");
    EXPECT_EQ(chinese.bytes, QByteArray("\xB1\xA8\xB8\xE6\r\n"));
    EXPECT_FALSE(chinese.lossy);
    qputenv("LC_ALL", "ja_JP.UTF-8");
    const EncodedText japanese = encodeText(QStringLiteral("a😀"), ContrastEncoding::Ansi);
    EXPECT_EQ(japanese.encodingName, "Shift_JIS");
    EXPECT_TRUE(japanese.lossy);
    qunsetenv("LC_ALL");
}

TEST(ContrastList, LongListsGoOnInFurtherSheets)
{
    const auto names = [](const std::vector<SheetRows>& sheets) {
        QStringList list;
        for (const SheetRows& s : sheets)
            list.append(QStringLiteral("%1:%2+%3").arg(s.name).arg(s.first).arg(s.count));
        return list;
    };
    EXPECT_EQ(names(splitIntoSheets(0, 10, QString())), QStringList{"更名对照列表:0+0"});
    EXPECT_EQ(names(splitIntoSheets(10, 10, "a")), QStringList{"a:0+10"});
    EXPECT_EQ(names(splitIntoSheets(21, 10, "a")), (QStringList{"a:0+10", "a (2):10+10", "a (3):20+1"}));
    EXPECT_EQ(sheetNameFrom(" a[b]:c*d?e/f\\g ", "x"), "a_b__c_d_e_f_g");
    EXPECT_EQ(sheetNameFrom(QString(40, 'n'), "x", " (2)").size(), 31);
    EXPECT_EQ(sheetNameFrom("", "x"), "x");
}

TEST(ContrastList, OutputPathsTakeTheirOwnExtension)
{
    EXPECT_EQ(contrastOutputPath("/a/list", ".txt"), "/a/list.txt");
    EXPECT_EQ(contrastOutputPath("/a/list.txt", ".xls"), "/a/list.xls");
    EXPECT_EQ(contrastOutputPath("/a/list.XLSX", ".txt"), "/a/list.txt");
    EXPECT_EQ(contrastOutputPath("/a/list.csv", ".txt"), "/a/list.csv.txt");
}

// The .xls writer, read back by an independent reader: names of every script, several
// sheets, cells left empty, and a file big enough to need the extra FAT index sectors.
TEST(ContrastList, XlsWorkbookReadsBackCellForCell)
{
    test::TempTree tree;
    DiskOperations disk;
    std::vector<Worksheet> sheets = {
        {"对照", {{0, 0, "old"}, {0, 1, "new"}, {1, 0, "报告.txt"}, {1, 2, "😀 é"}, {3, 1, QString()}}},
        {"second", {{0, 3, "x"}}},
    };
    const QString small = tree.path("small.xls");
    ASSERT_TRUE(disk.writeFileAtomically(small, xlsWorkbook(sheets), nullptr));
    const auto read = test::readSpreadsheet(small);
    ASSERT_TRUE(read);
    ASSERT_EQ(read->size(), 2u);
    EXPECT_EQ((*read)[0].name, "对照");
    ASSERT_EQ((*read)[0].rows.size(), 2u);
    EXPECT_EQ((*read)[0].rows[0], (QStringList{"old", "new", ""}));
    EXPECT_EQ((*read)[0].rows[1], (QStringList{"报告.txt", "", "😀 é"}));
    EXPECT_EQ((*read)[1].rows, std::vector<QStringList>{(QStringList{"", "", "", "x"})});

    Worksheet big{"big", {}};
    const QString longText(400, u'长');
    for (int row = 0; row < 12000; ++row) {
        big.cells.push_back({row, 0, QString::number(row)});
        big.cells.push_back({row, 1, longText});
    }
    const QByteArray bytes = xlsWorkbook({big});
    ASSERT_GT(bytes.size(), 109 * 128 * 512) << "the header's FAT index is not enough";
    const QString large = tree.path("large.xls");
    ASSERT_TRUE(disk.writeFileAtomically(large, bytes, nullptr));
    const auto readLarge = test::readSpreadsheet(large);
    ASSERT_TRUE(readLarge);
    ASSERT_EQ((*readLarge)[0].rows.size(), 12000u);
    EXPECT_EQ((*readLarge)[0].rows[11999], (QStringList{"11999", longText}));
}

class ContrastExport : public ::testing::Test {
protected:
    ContrastExport()
    {
        for (const auto& [name, ext, newName, newExt] : {std::tuple{"报告", ".txt", "REPORT", ".TXT"},
                                                       std::tuple{"photo 😀", ".jpg", "photo", ".jpg"},
                                                       std::tuple{"folder", "", "Folder", ""}}) {
            FileEntry row;
            row.path = QStringLiteral("/d/");
            row.name = QString::fromUtf8(name);
            row.ext = QString::fromUtf8(ext);
            row.newName = QString::fromUtf8(newName);
            row.newExt = QString::fromUtf8(newExt);
            list.append(row);
        }
    }

    RenameList list;
    test::TempTree tree;
    DiskOperations disk;
};

TEST_F(ContrastExport, TextAndSpreadsheetsHoldTheSameRows)
{
    ContrastOptions options;
    options.encoding = ContrastEncoding::Utf8;
    options.aligned = false;
    options.separator = QStringLiteral(" => ");
    options.withExtension = true;
    options.spreadsheet = true;
    options.oldColumn = 3;
    options.newColumn = 1;
    options.sheetName = QStringLiteral("名单");
    for (const SpreadsheetFormat format : {SpreadsheetFormat::Xls, SpreadsheetFormat::Xlsx}) {
        options.format = format;
        const QString sheetPath = tree.path(format == SpreadsheetFormat::Xls ? "list.xls" : "list.xlsx");
        const ContrastExportResult result = exportContrastList(list, options, tree.path("list.txt"), sheetPath, disk);
        ASSERT_TRUE(result.error.isEmpty()) << result.error.toStdString();
        EXPECT_EQ(result.written, (QStringList{tree.path("list.txt"), sheetPath}));
        QFile text(tree.path("list.txt"));
        ASSERT_TRUE(text.open(QIODevice::ReadOnly));
        EXPECT_EQ(QString::fromUtf8(text.readAll()),
                  QString::fromUtf8("\uFEFF报告.txt => REPORT.TXT\r\nphoto 😀.jpg => photo.jpg\r\nfolder => Folder\r\n"));
        const auto read = test::readSpreadsheet(sheetPath);
        ASSERT_TRUE(read);
        ASSERT_EQ(read->size(), 1u);
        EXPECT_EQ(read->front().name, "名单");
        EXPECT_EQ(read->front().rows, (std::vector<QStringList>{{"REPORT.TXT", "", "报告.txt"},
                                                                {"photo.jpg", "", "photo 😀.jpg"},
                                                                {"Folder", "", "folder"}}));
    }
}

TEST_F(ContrastExport, OnlyTheChosenOutputsAreWrittenAndFailuresAreReported)
{
    ContrastOptions options;
    options.text = false;
    options.spreadsheet = true;
    options.oldColumn = options.newColumn = 2;  // the new names move one column right
    const ContrastExportResult result = exportContrastList(list, options, tree.path("no.txt"), tree.path("x.xls"), disk);
    EXPECT_EQ(result.written, QStringList{tree.path("x.xls")});
    EXPECT_FALSE(QFile::exists(tree.path("no.txt")));
    const auto read = test::readSpreadsheet(tree.path("x.xls"));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->front().rows.front(), (QStringList{"", "报告", "REPORT"}));

    options.oldColumn = 300;
    EXPECT_FALSE(exportContrastList(list, options, {}, tree.path("y.xls"), disk).error.isEmpty());
    options = ContrastOptions{};
    const ContrastExportResult failed = exportContrastList(list, options, tree.folder("taken"), {}, disk);
    EXPECT_TRUE(failed.error.startsWith("无法写入文件：")) << failed.error.toStdString();
    EXPECT_TRUE(failed.written.isEmpty());
}

}  // namespace
}  // namespace qp
