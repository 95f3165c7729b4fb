// The date and time groups: pictures in zh_CN, composed tags and the file's own times.
#include <QFile>
#include <QRegularExpression>

#include "ExpressionFixture.h"
#include "expressions/TagParts.h"
#include "support/TempTree.h"

namespace qp::test {
namespace {

TEST(DatePictures, CodesInChinese)
{
    const QLocale zh(QLocale::Chinese, QLocale::China);
    const QDateTime sunday(QDate(2007, 6, 3), QTime(9, 5, 7));
    const QDateTime december(QDate(2010, 12, 25), QTime(23, 45, 59));
    struct Row {
        const char* picture;
        const char* sunday;
        const char* december;
    };
    for (const Row& r : {
             Row{"yyyy", "2007", "2010"}, Row{"yy", "07", "10"}, Row{"m", "6", "12"}, Row{"mm", "06", "12"},
             Row{"mmm", "6月", "12月"}, Row{"mmmm", "六月", "十二月"}, Row{"d", "3", "25"}, Row{"dd", "03", "25"},
             Row{"ddd", "周日", "周六"}, Row{"dddd", "星期日", "星期六"}, Row{"ddddd", "2007-6-3", "2010-12-25"},
             Row{"dddddd", "2007年6月3日", "2010年12月25日"}, Row{"h", "9", "23"}, Row{"hh", "09", "23"},
             Row{"n", "5", "45"}, Row{"nn", "05", "45"}, Row{"s", "7", "59"}, Row{"ss", "07", "59"},
             Row{"YYYY年MM月DD日", "2007年06月03日", "2010年12月25日"}, Row{"hh:nn:ss", "09:05:07", "23:45:59"},
             Row{"[x] ", "[x] ", "[x] "}, Row{"", "", ""},
         }) {
        EXPECT_EQ(expr::formatPicture(sunday, QString::fromUtf8(r.picture), zh), QString::fromUtf8(r.sunday)) << r.picture;
        EXPECT_EQ(expr::formatPicture(december, QString::fromUtf8(r.picture), zh), QString::fromUtf8(r.december))
            << r.picture;
    }
}

TEST_F(ExpressionTest, CurrentDateAndTimeGroups)
{
    addRow("/d/a.txt");
    EXPECT_EQ(expand("<DATE> <TIME>"), "2007-06-03 09.05.07");
    // Without a clock of its own the expression reads the system's.
    options.clock = {};
    EXPECT_TRUE(QRegularExpression("^\\d{4}-\\d\\d-\\d\\d \\d\\d\\.\\d\\d\\.\\d\\d$")
                    .match(expand("<DATE> <TIME>"))
                    .hasMatch());
    options.clock = [this] { return now; };
    EXPECT_EQ(expand("<y>/<m>/<d> <w> <h>:<n>:<s>"), "2007/06/03 周日 09:05:07");
    setParameter("<DATE>", "<Y>年<M>月<D>日 <w>");
    setParameter("<M>", "m");
    setParameter("<W>", "dddd");
    EXPECT_EQ(expand("<date>"), "2007年6月03日 星期日");
    // One pass does the whole group: the composed tag and every single tag in the text.
    EXPECT_EQ(expand("<M>|<DATE>|<W>"), "6|2007年6月03日 星期日|星期日");
    setParameter("<TIME>", "<H>时<N>分");
    setParameter("<H>", "h");
    EXPECT_EQ(expand("<TIME>"), "9时05分");
    // The clock is read for each row.
    const MetaExpression expression("<S>", options);
    EXPECT_EQ(expression.expand(session, 0), "07");
    now = now.addSecs(10);
    EXPECT_EQ(expression.expand(session, 0), "17");
}

TEST_F(ExpressionTest, FileTimesMissingFilesAndFolders)
{
    TempTree tree;
    const QString path = tree.file("dated.txt", "x");
    const QDateTime modified(QDate(2001, 2, 3), QTime(4, 5, 6));
    const QDateTime accessed(QDate(2003, 11, 30), QTime(22, 1, 0));
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.setFileTime(modified, QFileDevice::FileModificationTime));
        ASSERT_TRUE(file.setFileTime(accessed, QFileDevice::FileAccessTime));
    }
    addRow(path);
    addRow(tree.path("missing.txt"));
    addRow(tree.folder("sub"), true);
    EXPECT_EQ(expand("<FDATE> <FTIME>"), "2001-02-03 04.05.06");
    EXPECT_EQ(expand("<FADATE> <FATIME> <FAW>"), "2003-11-30 22.01.00 周日");
    setParameter("<FM>", "mmmm");
    EXPECT_EQ(expand("<FM>"), "二月");
    EXPECT_TRUE(QRegularExpression("^\\d{4}-\\d\\d-\\d\\d \\d\\d\\.\\d\\d\\.\\d\\d$")
                    .match(expand("<FCDATE> <FCTIME>"))
                    .hasMatch());
    EXPECT_EQ(expand("[<FDATE>][<FCY>][<FATIME>]", 1), "[][][]");
    EXPECT_FALSE(expand("<FY>", 2).isEmpty());
}

}  // namespace
}  // namespace qp::test
