// The snapshot viewer and the contrast-list export, opened from the window's menus and
// answered through their own widgets.
#include <gtest/gtest.h>

#include <QAction>
#include <algorithm>
#include <QCheckBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTableView>

#include "DialogScript.h"
#include "WindowTest.h"
#include "execution/ContrastList.h"
#include "execution/RenameRunner.h"
#include "ui/dialogs/ExportForms.h"
#include "../support/QStringPrinter.h"
#include "../support/Spreadsheet.h"

namespace qp::ui {
namespace {

using test::click;
using test::DialogScript;
using test::WindowTest;

template <typename Widget>
Widget& child(QDialog& dialog, const char* name)
{
    auto* widget = dialog.findChild<Widget*>(QLatin1String(name));
    if (widget == nullptr)
        throw std::runtime_error(std::string("no child ") + name + " in " + dialog.objectName().toStdString());
    return *widget;
}

DialogScript::Handler saveAs(const QString& path)
{
    return [path](QDialog& dialog) {
        static_cast<QFileDialog&>(dialog).selectFile(path);
        dialog.accept();
    };
}

class ExportTest : public WindowTest {
protected:
    // Loads w/ and renames every row to its name with `suffix`, then applies.
    void applyWithSuffix(const QString& suffix)
    {
        RenameList& list = session().renameList();
        for (qsizetype r = 0; r < list.size(); ++r)
            list[r].newName = list[r].name + suffix;
        window.action("MMenuGoRename")->trigger();
    }

};

TEST_F(ExportTest, SnapshotViewerShowsEachApplyAndSavesAnExactCopy)
{
    tree.file("w/a.txt");
    tree.file("w/照片.jpg");
    loadFolder(tree.path("w"));
    script.on("apply.confirm", click("确定"));
    script.on("TGoRenameOKForm", click("关闭(&C)"));
    applyWithSuffix("1");
    applyWithSuffix("2");
    ASSERT_TRUE(exists("w/照片12.jpg"));
    QFile::remove(tree.path("w/a12.txt"));  // gone since: its row shows as not existing

    struct Seen {
        QString headline;
        int shown = 0;
        std::vector<QStringList> rows;
    };
    std::vector<Seen> seen;
    auto look = [&](QDialog& dialog) {
        auto& form = static_cast<TExportSnapshotForm&>(dialog);
        Seen s{child<QLabel>(dialog, "headline").text(), form.shownApply(), {}};
        const QAbstractItemModel* model = form.grid()->model();
        for (int r = 0; r < model->rowCount(); ++r) {
            s.rows.push_back({model->index(r, 0).data().toString(),
                              model->index(r, 1).data(Qt::CheckStateRole).toInt() == Qt::Checked ? "是" : "否",
                              QDir::fromNativeSeparators(model->index(r, 2).data().toString()),
                              model->index(r, 3).data().toString()});
        }
        // Rows come in the order the folder listed them; compare them by path.
        std::sort(s.rows.begin(), s.rows.end(), [](const QStringList& a, const QStringList& b) { return a[2] < b[2]; });
        seen.push_back(std::move(s));
    };
    const QString copy = tree.path("copies/undo-first.txt");
    QDir().mkpath(tree.path("copies"));
    script.on("TExportSnapshotForm", [&](QDialog& dialog) {
        look(dialog);
        child<QSpinBox>(dialog, "SpinEditApplyNumber").setValue(1);
        look(dialog);
        click("保存本次更名快照(&S)")(dialog);
    });
    script.on("FileDialog", saveAs(copy));
    script.on("snapshot.copied", click("确定"));
    window.action("MMenuGoExportSnapshot")->trigger();

    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0].headline, "程序本次运行过程中已进行了 2 次批量更名操作。");
    EXPECT_EQ(seen[0].shown, 2);  // the newest apply first
    const std::vector<QStringList> second = {{"1", "否", tree.path("w/a12.txt"), "a1.txt"},
                                             {"2", "是", tree.path("w/照片12.jpg"), "照片1.jpg"}};
    // Numbered 1, 2 in whatever order: put the numbers aside.
    for (auto& row : seen[0].rows)
        row[0] = QString::number(&row - &seen[0].rows[0] + 1);
    for (auto& row : seen[1].rows)
        row[0] = QString::number(&row - &seen[1].rows[0] + 1);
    EXPECT_EQ(seen[0].rows, second);
    EXPECT_EQ(seen[1].shown, 1);
    const std::vector<QStringList> first = {{"1", "否", tree.path("w/a1.txt"), "a.txt"},
                                            {"2", "否", tree.path("w/照片1.jpg"), "照片.jpg"}};
    EXPECT_EQ(seen[1].rows, first);

    // The copy is the first apply's snapshot, byte for byte.
    QFile original(snapshotPath(settingsFolderOf(session()), session().runStamp(), 1));
    QFile saved(copy);
    ASSERT_TRUE(original.open(QIODevice::ReadOnly));
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    EXPECT_EQ(saved.readAll(), original.readAll());
    EXPECT_EQ(session().settings().readString(keys::kInterface, "OpenDialogInitialDirMMenuGoExportSnapshot", {}),
              tree.path("copies/"));
    EXPECT_TRUE(script.unexpected.isEmpty()) << script.unexpected.join(',').toStdString();
}

TEST_F(ExportTest, SnapshotViewerOffersNothingToSaveWhenTheSnapshotIsGone)
{
    tree.file("w/a.txt");
    loadFolder(tree.path("w"));
    script.on("apply.confirm", click("确定"));
    script.on("TGoRenameOKForm", click("关闭(&C)"));
    applyWithSuffix("1");
    QFile::remove(snapshotPath(settingsFolderOf(session()), session().runStamp(), 1));
    bool saveEnabled = true;
    int rows = -1;
    script.on("TExportSnapshotForm", [&](QDialog& dialog) {
        saveEnabled = child<QPushButton>(dialog, "save").isEnabled();
        rows = static_cast<TExportSnapshotForm&>(dialog).grid()->model()->rowCount();
        click("退出(&X)")(dialog);
    });
    window.action("MMenuGoExportSnapshot")->trigger();
    EXPECT_EQ(rows, 0);
    EXPECT_FALSE(saveEnabled);
    EXPECT_FALSE(script.seen.contains("FileDialog"));
}

TEST(ContrastSaveFilter, NamesThePatternsOfTheChosenOutputs)
{
    struct Case {
        bool text;
        bool sheet;
        SpreadsheetFormat format;
        const char* filter;
    };
    const Case cases[] = {
        {true, false, SpreadsheetFormat::Xls, "导出的文件类型 (*.txt)"},
        {true, true, SpreadsheetFormat::Xls, "导出的文件类型 (*.txt *.xls)"},
        {true, true, SpreadsheetFormat::Xlsx, "导出的文件类型 (*.txt *.xlsx)"},
        {false, true, SpreadsheetFormat::Xlsx, "导出的文件类型 (*.xlsx)"},
    };
    for (const Case& c : cases) {
        ContrastOptions o;
        o.text = c.text;
        o.spreadsheet = c.sheet;
        o.format = c.format;
        EXPECT_EQ(contrastSaveFilter(o), QString::fromUtf8(c.filter));
    }
}

TEST_F(ExportTest, ContrastExportWritesTextAndWorkbookFromTheDialog)
{
    tree.file("w/a.txt");
    tree.file("w/长文件名.txt");
    loadFolder(tree.path("w"));
    RenameList& list = session().renameList();
    for (qsizetype r = 0; r < list.size(); ++r)
        list[r].newName = QStringLiteral("新") + list[r].name;
    window.refreshAfterCommandChange();

    const QString chosen = tree.path("out/list.txt");
    QDir().mkpath(tree.path("out"));
    QString rowsLabel;
    bool sheetOptionsStartDisabled = false;
    script.on("TExportContrastFileForm", [&](QDialog& dialog) {
        rowsLabel = child<QLabel>(dialog, "rowCount").text();
        sheetOptionsStartDisabled = !child<QRadioButton>(dialog, "RadioButtonXlsx").isEnabled();
        click("导出为 MS Excel 文件（无需Excel软件支持）")(dialog);
        click("MS Excel 2007/2010格式(*.xlsx)")(dialog);
        child<QLineEdit>(dialog, "EditSheetName").setText(QStringLiteral("对照"));
        child<QSpinBox>(dialog, "SpinEditOldColumn").setValue(2);
        child<QSpinBox>(dialog, "SpinEditNewColumn").setValue(4);
        click("UTF-8")(dialog);
        click("新旧文件名之间使用分隔字符")(dialog);
        child<QLineEdit>(dialog, "EditSeparator").setText(QStringLiteral(" -> "));
        click("含扩展名一起处理")(dialog);
        click("保存至...(&S)")(dialog);
    });
    QString filter;
    script.on("FileDialog", [&](QDialog& dialog) {
        filter = static_cast<QFileDialog&>(dialog).nameFilters().join(';');
        saveAs(chosen)(dialog);
    });
    script.on("contrast.saved", click("确定"));
    window.action("MMenuFileExportContrast")->trigger();

    EXPECT_EQ(rowsLabel, "更名文件列表当前行数：2行");
    EXPECT_TRUE(sheetOptionsStartDisabled);
    EXPECT_EQ(filter, "导出的文件类型 (*.txt *.xlsx)");
    QFile text(chosen);
    ASSERT_TRUE(text.open(QIODevice::ReadOnly));
    const QByteArray bytes = text.readAll();
    ASSERT_TRUE(bytes.startsWith("\xEF\xBB\xBF")) << bytes.left(8).toHex().toStdString();  // UTF-8 with its mark
    QStringList lines = QString::fromUtf8(bytes.mid(3)).split(QStringLiteral("\r\n"));
    std::sort(lines.begin(), lines.end());
    EXPECT_EQ(lines, (QStringList{"", "a.txt -> 新a.txt", "长文件名.txt -> 新长文件名.txt"}));
    const auto sheets = qp::test::readSpreadsheet(tree.path("out/list.xlsx"));
    ASSERT_TRUE(sheets.has_value());
    ASSERT_EQ(sheets->size(), 1u);
    EXPECT_EQ(sheets->front().name, "对照");
    const std::vector<QStringList> rows = {{"", "a.txt", "", "新a.txt"}, {"", "长文件名.txt", "", "新长文件名.txt"}};
    std::vector<QStringList> written = sheets->front().rows;
    std::sort(written.begin(), written.end(), [](const QStringList& a, const QStringList& b) { return a[1] < b[1]; });
    EXPECT_EQ(written, rows);
    EXPECT_EQ(session().settings().readString(keys::kInterface, "OpenDialogInitialDirMMenuFileExportContrast", {}),
              tree.path("out/"));
    EXPECT_TRUE(script.unexpected.isEmpty()) << script.unexpected.join(',').toStdString();
}

TEST_F(ExportTest, ContrastExportWritesNothingWhenTheSaveDialogIsCancelled)
{
    tree.file("w/a.txt");
    loadFolder(tree.path("w"));
    script.on("TExportContrastFileForm", [&](QDialog& dialog) {
        click("保存至...(&S)")(dialog);
        click("退出(&X)")(dialog);
    });
    script.on("FileDialog", [](QDialog& dialog) { dialog.reject(); });
    window.action("MMenuFileExportContrast")->trigger();
    EXPECT_EQ(QDir(tree.path("w")).entryList(QDir::Files), QStringList{"a.txt"});
    EXPECT_FALSE(script.seen.contains("contrast.saved"));
}

}  // namespace
}  // namespace qp::ui
