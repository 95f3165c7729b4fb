// The settings form and the user meta-variable forms, driven through their widgets: what the
// user sets must reach the settings (only on "确定"), come back when the form is opened again,
// and change the new names where it should.
#include <gtest/gtest.h>

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableView>
#include <QTableWidget>
#include <QTest>

#include <functional>

#include "DialogScript.h"
#include "PageDriver.h"
#include "WindowTest.h"
#include "../support/QStringPrinter.h"
#include "commands/NormalCommands.h"
#include "core/SettingsKeys.h"
#include "ui/dialogs/ConfigForm.h"
#include "ui/dialogs/UserMetaVariableForms.h"
#include "ui/models/RenameListModel.h"
#include "ui/pages/FrameFileRenameNormal.h"
#include "ui/window/LoadBar.h"
#include "ui/window/MainWindow.h"
#include "../support/TempTree.h"

namespace qp::ui {
namespace {

using test::click;
using test::DialogScript;
using test::findControl;

void choose(QWidget& form, const QString& key, const QString& text)
{
    auto* box = findControl<QComboBox>(form, key);
    const int index = box->findText(text);
    ASSERT_GE(index, 0) << text.toStdString();
    box->setCurrentIndex(index);
}

void retype(QWidget& edit, const QString& text)
{
    if (auto* line = qobject_cast<QLineEdit*>(&edit))
        line->selectAll();
    else
        qobject_cast<QAbstractSpinBox*>(&edit)->selectAll();
    for (QChar c : text)
        QTest::sendKeyEvent(QTest::Click, &edit, Qt::Key_unknown, QString(c), Qt::NoModifier);
}

int metaRow(TConfigForm& form, const QString& tag)
{
    const auto found = form.metaVariableGrid()->findItems(tag, Qt::MatchExactly);
    return found.isEmpty() ? -1 : found.first()->row();
}

// F2 on the tag's "值" cell, the new text, Enter: as a user edits a parameter. False when the
// cell would not open an editor.
bool editParameter(TConfigForm& form, const QString& tag, const QString& text)
{
    form.tabs()->setCurrentIndex(TConfigForm::TabMetaVariables);
    QTableWidget* grid = form.metaVariableGrid();
    grid->setCurrentCell(metaRow(form, tag), TConfigForm::ColValue);
    QTest::keyClick(grid, Qt::Key_F2);
    auto* editor = qobject_cast<QLineEdit*>(grid->indexWidget(grid->currentIndex()));
    if (!editor)
        return false;
    retype(*editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
    QCoreApplication::processEvents();  // the delegate commits in a queued call
    return true;
}

// One change a user makes on one tab, and what it leaves in the settings.
struct Change {
    const char* what;
    std::function<void(TConfigForm&)> make;
    QString section;
    QString key;
    QString stored;  // as the settings read it back (readString)
    bool affectsNames;
};

std::vector<Change> changesOnEveryTab()
{
    using namespace keys;
    return {
        {"auto preview off", [](TConfigForm& f) { click("自动预览：命令有变化时立即执行命令列表")(f); }, kOperation,
         kAutoPreview, "0", true},
        {"preview row limit", [](TConfigForm& f) { retype(*findControl<QSpinBox>(f, kAutoPreviewNum), "25"); }, kOperation,
         kAutoPreviewNum, "25", true},
        {"system objects skipped", [](TConfigForm& f) { choose(f, kAttribSRename, "跳过"); }, kOperation, kAttribSRename,
         "0", false},
        {"keep commands after apply",
         [](TConfigForm& f) { choose(f, kAfterApplyClearCmd, "保留命令列表，对更名后的文件重新执行"); }, kOperation,
         kAfterApplyClearCmd, "0", false},
        {"friendly sizes", [](TConfigForm& f) { click("以 KB、MB、GB 显示文件大小")(f); }, kOperation,
         kFileSizeFriendly, "1", false},
        {"numbering text with a blank",
         [](TConfigForm& f) { retype(*findControl<QLineEdit>(f, kFileNameSameLeftStr), " ["); }, kOperation,
         kFileNameSameLeftStr, " [", false},
        {"empty name", [](TConfigForm& f) { retype(*findControl<QLineEdit>(f, kFileNameNullSet), "无名"); }, kOperation,
         kFileNameNullSet, "无名", false},
        {"hash warning off", [](TConfigForm& f) { click("文件校验系列元变量")(f); }, kInterface, kIgnoreHashWarning, "1",
         false},
        {"parameter with edge blanks",
         [](TConfigForm& f) { ASSERT_TRUE(editParameter(f, "<SUBSTR>", " 2/3 ")); }, kUnitVariable,
         QStringLiteral("<SUBSTR>"), "<20>2/3<20>", true},
    };
}

class ConfigFormTest : public ::testing::Test {
protected:
    std::unique_ptr<TConfigForm> open()
    {
        auto form = std::make_unique<TConfigForm>(settings);
        form->show();
        return form;
    }
    SettingsStore settings;
};

TEST_F(ConfigFormTest, EachChangeIsStoredOnOkAndShownAgain)
{
    for (const Change& change : changesOnEveryTab()) {
        SCOPED_TRACE(change.what);
        settings.clear();
        auto form = open();
        change.make(*form);
        click("确定")(*form);
        EXPECT_EQ(form->result(), QDialog::Accepted);
        EXPECT_EQ(settings.readString(change.section, change.key, "(absent)"), change.stored);
        EXPECT_EQ(form->newNamesAffected(), change.affectsNames);

        // Opened again, the form shows what is stored: OK without a change writes the same file.
        const QString written = settings.toText();
        auto again = open();
        click("确定")(*again);
        EXPECT_EQ(settings.toText(), written);
        EXPECT_FALSE(again->newNamesAffected());
    }
}

TEST_F(ConfigFormTest, CancelWritesNothing)
{
    settings.writeString(keys::kUnitVariable, "<SUBSTR>", "3/3");
    const QString before = settings.toText();
    auto form = open();
    for (const Change& change : changesOnEveryTab())
        change.make(*form);
    click("取消")(*form);
    EXPECT_EQ(form->result(), QDialog::Rejected);
    EXPECT_EQ(settings.toText(), before);
}

TEST_F(ConfigFormTest, ParametersAreShownWithRealBlanksAndOnlyChangedOnesAreWritten)
{
    settings.writeString(keys::kUnitVariable, "<ATTRIB>", "aa(<20>-<20>)");
    auto form = open();
    EXPECT_EQ(form->metaVariableGrid()->item(metaRow(*form, "<ATTRIB>"), TConfigForm::ColValue)->text(), "aa( - )");
    EXPECT_EQ(form->metaVariableGrid()->item(metaRow(*form, "<SIZE>"), TConfigForm::ColValue)->text(), "AUTO( )");
    click("确定")(*form);
    EXPECT_EQ(settings.readRaw(keys::kUnitVariable, "<ATTRIB>", {}), "aa(<20>-<20>)");
    EXPECT_EQ(settings.sectionLines(keys::kUnitVariable).size(), 1);
}

TEST_F(ConfigFormTest, DefaultsResetOnlyTheCurrentTab)
{
    settings.writeBool(keys::kOperation, keys::kAutoPreview, false);
    settings.writeInt(keys::kOperation, keys::kFileNameSameStart, 7);
    settings.writeString(keys::kOperation, keys::kFileNameSameRightStr, "]");
    settings.writeString(keys::kUnitVariable, "<SUBSTR>", "3/3");

    auto form = open();
    form->tabs()->setCurrentIndex(TConfigForm::TabNumbering);
    click("当前页默认值(&D)")(*form);
    click("确定")(*form);
    EXPECT_EQ(settings.readInt(keys::kOperation, keys::kFileNameSameStart, 0), 2);
    EXPECT_EQ(settings.readString(keys::kOperation, keys::kFileNameSameRightStr, {}), ")");
    EXPECT_FALSE(settings.readBool(keys::kOperation, keys::kAutoPreview, true));
    EXPECT_EQ(settings.readString(keys::kUnitVariable, "<SUBSTR>", {}), "3/3");

    form = open();
    form->tabs()->setCurrentIndex(TConfigForm::TabMetaVariables);
    click("当前页默认值(&D)")(*form);
    click("确定")(*form);
    EXPECT_EQ(settings.readString(keys::kUnitVariable, "<SUBSTR>", {}), "1/1(L)");
    EXPECT_FALSE(settings.readBool(keys::kOperation, keys::kAutoPreview, true));
    EXPECT_TRUE(form->newNamesAffected());
}

TEST_F(ConfigFormTest, StoredNumbersOutsideTheChoicesShowTheChoiceThatActsTheSame)
{
    const struct {
        QString key;
        QString stored;
        QString shown;
    } cases[] = {
        {keys::kAttribRRename, "5", "强制进行更名操作"},
        {keys::kAttribRRename, "0", "跳过"},
        {keys::kTooLongCut, "7", "跳过"},
        {keys::kTooLongCut, "3", "操作系统处理方式（含扩展名直接从尾部删除多余字符）"},
        {keys::kAfterApplyClearCmd, "0", "保留命令列表，对更名后的文件重新执行"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.key.toStdString() + "=" + c.stored.toStdString());
        settings.clear();
        settings.writeRaw(keys::kOperation, c.key, c.stored);
        auto form = open();
        EXPECT_EQ(findControl<QComboBox>(*form, c.key)->currentText(), c.shown);
    }
}

TEST_F(ConfigFormTest, OnlyTagsWithAParameterCanBeEditedAndTheChosenTagShowsItsHelp)
{
    auto form = open();
    EXPECT_FALSE(editParameter(*form, "<NAME>", "x"));
    EXPECT_TRUE(form->metaVariableGrid()->item(metaRow(*form, "<NAME>"), TConfigForm::ColValue)->text().isEmpty());

    QTableWidget* grid = form->metaVariableGrid();
    QTableWidgetItem* size = grid->item(metaRow(*form, "<SIZE>"), TConfigForm::ColDescription);
    grid->scrollToItem(size);
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->visualItemRect(size).center());
    const QString help = form->helpBox()->toPlainText();
    EXPECT_TRUE(help.startsWith("<SIZE>\n\n描述：")) << help.toStdString();
    EXPECT_TRUE(help.contains("缺省设置：AUTO( )")) << help.toStdString();
}

// ---------------------------------------------------------------------------------------
// Through the main window's menu "设置".

class SettingsMenuTest : public test::WindowTest {
protected:
    SettingsMenuTest() { registerNormalCommands(session().pipeline().registry()); }

    TFrameFileRenameNormal& page() { return *window.findChild<TFrameFileRenameNormal*>(); }

    // Types into a text box of the normal page, one key at a time, as a user does.
    void type(const char* box, const QString& text)
    {
        QLineEdit* edit = test::findControl<QComboBox>(page(), box)->lineEdit();
        edit->setFocus();
        for (QChar c : text)
            QTest::sendKeyEvent(QTest::Click, edit, Qt::Key_unknown, QString(c), Qt::NoModifier);
    }

    QStringList newNames(bool sorted = true)
    {
        QStringList names;
        for (const FileEntry& row : session().renameList().rows())
            names.append(row.newName);
        if (sorted)
            names.sort();
        return names;
    }
};

TEST_F(SettingsMenuTest, AChangedParameterChangesThePreviewedNamesAndOptionsReachTheWindow)
{
    tree.file("w/abcdef.txt");
    tree.file("w/uvwxyz.txt");
    loadFolder(tree.path("w"));
    page().findChild<QAbstractButton*>("RadioButtonN1AddDirect")->click();
    type("ComboBoxN1AddStr", "<SUBSTR>_");
    ASSERT_EQ(newNames(), (QStringList{"a_abcdef", "u_uvwxyz"}));

    // Cancel first: nothing changes.
    script.on("TConfigForm", [](QDialog& dialog) {
        ASSERT_TRUE(editParameter(static_cast<TConfigForm&>(dialog), "<SUBSTR>", "2/3"));
        click("取消")(dialog);
    });
    script.on("TConfigForm", [](QDialog& dialog) {
        ASSERT_TRUE(editParameter(static_cast<TConfigForm&>(dialog), "<SUBSTR>", "2/3"));
        click("以 KB、MB、GB 显示文件大小")(dialog);
        click("确定")(dialog);
    });
    window.action("MMenuSetConfig")->trigger();
    EXPECT_EQ(newNames(), (QStringList{"a_abcdef", "u_uvwxyz"}));
    EXPECT_FALSE(window.action("MMenuSetFileSizeFriendly")->isChecked());

    window.action("MMenuSetConfig")->trigger();
    EXPECT_EQ(newNames(), (QStringList{"bcd_abcdef", "vwx_uvwxyz"}));
    EXPECT_TRUE(window.action("MMenuSetFileSizeFriendly")->isChecked());
    EXPECT_EQ(window.session().settings().readString(keys::kUnitVariable, "<SUBSTR>", {}), "2/3");
    EXPECT_TRUE(script.unexpected.isEmpty()) << script.unexpected.join(',').toStdString();
}

TEST_F(SettingsMenuTest, UserListsAreDefinedFromTheNewNamesAndFromTheNumberingPage)
{
    tree.file("w/a.txt");
    tree.file("w/b.txt");
    tree.file("w/c.txt");
    loadFolder(tree.path("w"));
    page().findChild<QAbstractButton*>("RadioButtonN1AddDirect")->click();
    type("ComboBoxN1AddStr", "x");

    script.on("TUVUSERSelectForm", [](QDialog& dialog) {
        auto& form = static_cast<TUVUSERSelectForm&>(dialog);
        EXPECT_EQ(form.stateLabel(2)->text(), "未定义");
        EXPECT_EQ(form.countLabel(2)->text(), "字符串列表数量：0");
        click("定义<USER2>")(dialog);
        EXPECT_EQ(form.stateLabel(2)->text(), "已定义");
        EXPECT_EQ(form.countLabel(2)->text(), "字符串列表数量：3");
        click("关闭(&C)")(dialog);
    });
    window.action("MMenuSetUVUSER")->trigger();
    EXPECT_EQ(newNames(), (QStringList{"xa", "xb", "xc"}));
    EXPECT_EQ(window.session().userList(2), newNames(false));

    // "赋值到" on the numbering section fills a list as well.
    page().findChild<QAbstractButton*>("RadioButtonN4AutoNumExpression")->click();
    type("ComboBoxN4Expression", "<#>");
    page().findChild<QComboBox*>("ComboBoxN4AssignTo")->setCurrentIndex(5);
    page().findChild<QAbstractButton*>("PushButtonN4AssignTo")->click();
    script.on("TUVUSERSelectForm", [](QDialog& dialog) {
        auto& form = static_cast<TUVUSERSelectForm&>(dialog);
        EXPECT_EQ(form.stateLabel(5)->text(), "已定义");
        EXPECT_EQ(form.countLabel(5)->text(), "字符串列表数量：3");
        EXPECT_EQ(form.stateLabel(2)->text(), "已定义");
    });
    window.action("MMenuSetUVUSER")->trigger();

    // A row added later has no line in either list.
    tree.file("v/d.txt");
    loadFolder(tree.path("v"));
    const QString firstName = window.session().renameList().at(0).name;
    script.on("TViewUVUSERForm", [firstName](QDialog& dialog) {
        auto& form = static_cast<TViewUVUSERForm&>(dialog);
        EXPECT_EQ(form.summary()->text(), "更名文件列表内对象：4个；已被定义的用户自定义元变量：2个");
        QAbstractItemModel* grid = form.grid()->model();
        ASSERT_EQ(grid->columnCount(), TViewUVUSERForm::ColFirstList + 2);
        EXPECT_EQ(grid->headerData(TViewUVUSERForm::ColFirstList, Qt::Horizontal).toString(), "<USER2>");
        EXPECT_EQ(grid->headerData(TViewUVUSERForm::ColFirstList + 1, Qt::Horizontal).toString(), "<USER5>");
        EXPECT_EQ(grid->index(0, TViewUVUSERForm::ColName).data().toString(), firstName + ".txt");
        EXPECT_EQ(grid->index(0, TViewUVUSERForm::ColFirstList).data().toString(), "x" + firstName);
        EXPECT_EQ(grid->index(3, TViewUVUSERForm::ColName).data().toString(), "d.txt");
        EXPECT_EQ(grid->index(3, TViewUVUSERForm::ColFirstList).data().toString(), "<NULL>");
        EXPECT_EQ(grid->index(3, TViewUVUSERForm::ColFirstList + 1).data().toString(), "<NULL>");
    });
    window.action("MMenuSetViewUVUSER")->trigger();
    EXPECT_EQ(script.seen.count("TViewUVUSERForm"), 1);
    EXPECT_TRUE(script.unexpected.isEmpty()) << script.unexpected.join(',').toStdString();
}

}  // namespace
}  // namespace qp::ui
