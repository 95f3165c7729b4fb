#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>

#include "execution/FileOperations.h"
#include "execution/ListExport.h"
#include "../support/QStringPrinter.h"
#include "../support/Spreadsheet.h"
#include "../support/TempTree.h"

namespace qp {
namespace {

TEST(ListExport, CsvQuotesOnlyWhatSpreadsheetsWouldMisread)
{
    const std::pair<QStringList, const char*> cases[] = {
        {{"a", "报告.txt", ""}, "a,报告.txt,\r\n"},
        {{"a,b", "say \"hi\""}, "\"a,b\",\"say \"\"hi\"\"\"\r\n"},
        {{"two\nlines", " lead", "trail "}, "\"two\nlines\",\" lead\",\"trail \"\r\n"},
        {{"=1+1"}, "=1+1\r\n"},  // names are kept exactly, formula-like or not
    };
    for (const auto& [fields, expected] : cases)
        EXPECT_EQ(csvRecord(fields), QString::fromUtf8(expected));
}

TEST(ListExport, FormatFollowsTheExtension)
{
    EXPECT_EQ(listFormatOf(QStringLiteral("/x/a.TXT")), ListFormat::Text);
    EXPECT_EQ(listFormatOf(QStringLiteral("/x/a.csv")), ListFormat::Csv);
    EXPECT_EQ(listFormatOf(QStringLiteral("/x/a.xlsx")), ListFormat::Xlsx);
    EXPECT_EQ(listFormatOf(QStringLiteral("/x/a.xls")), std::nullopt);
}

class ListExportFiles : public ::testing::Test {
protected:
    QByteArray written(const char* name)
    {
        QFile file(tree.path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    TextTable table{{"实际文件名", "新文件名"}, {{"报告", "REPORT"}, {"a\tb", "c,d"}}};
    test::TempTree tree;
    DiskOperations disk;
};

TEST_F(ListExportFiles, TextFilesAreUtf8WithBomAndCrLf)
{
    ASSERT_EQ(exportTable(table, ListFormat::Text, "更名文件列表", tree.path("l.txt"), disk), QString());
    EXPECT_EQ(written("l.txt"), QByteArray("\xEF\xBB\xBF实际文件名\t新文件名\r\n报告\tREPORT\r\na\tb\tc,d\r\n"));
    ASSERT_EQ(exportTable(table, ListFormat::Csv, "更名文件列表", tree.path("l.csv"), disk), QString());
    EXPECT_EQ(written("l.csv"), QByteArray("\xEF\xBB\xBF实际文件名,新文件名\r\n报告,REPORT\r\na\tb,\"c,d\"\r\n"));
}

TEST_F(ListExportFiles, WorkbooksHoldTheHeaderAndEveryCell)
{
    ASSERT_EQ(exportTable(table, ListFormat::Xlsx, "更名文件列表", tree.path("l.xlsx"), disk), QString());
    const auto sheets = test::readSpreadsheet(tree.path("l.xlsx"));
    ASSERT_TRUE(sheets);
    ASSERT_EQ(sheets->size(), 1u);
    EXPECT_EQ(sheets->front().name, "更名文件列表");
    EXPECT_EQ(sheets->front().rows,
              (std::vector<QStringList>{{"实际文件名", "新文件名"}, {"报告", "REPORT"}, {"a\tb", "c,d"}}));
}

TEST_F(ListExportFiles, AnUnwritablePlaceIsReportedAndLeavesNothing)
{
    const QString folder = tree.folder("taken.csv");
    for (ListFormat format : {ListFormat::Csv, ListFormat::Xlsx})
        EXPECT_TRUE(exportTable(table, format, "x", folder, disk).startsWith("无法写入文件：")) << int(format);
    EXPECT_TRUE(QFileInfo(folder).isDir());
}

}  // namespace
}  // namespace qp
