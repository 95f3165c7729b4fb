#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QUrl>

#include "DialogScript.h"
#include "WindowTest.h"
#include "commands/ExtensionCommands.h"
#include "commands/NormalCommands.h"
#include "core/CommandList.h"
#include "core/SettingsKeys.h"
#include "ui/dialogs/FileDialogs.h"
#include "ui/models/CommandListModel.h"
#include "ui/models/RenameListModel.h"
#include "ui/pages/FrameFileRenameNormal.h"
#include "ui/window/FunctionPanel.h"
#include "ui/window/LoadBar.h"
#include "ui/window/MainWindow.h"
#include "../support/QStringPrinter.h"
#include "../support/TempTree.h"

namespace qp::ui {
namespace {

using test::click;
using test::DialogScript;
using test::WindowTest;

// A function page as the panel sees one: it counts what the panel asks of it.
class FakePage : public QWidget {
    Q_OBJECT
public:
    void resetToUnchanged() { ++resets; }
    void showSection(const QString& code) { sections.append(code); }
    int resets = 0;
    QStringList sections;
signals:
    void commandChanged();
};

TEST_F(WindowTest, LoadsAFolderAppliesAndUndoes)
{
    tree.file("w/a.txt", "a");
    tree.file("w/sub/照片.txt", "b");
    tree.file("w/keep.doc", "c");
    loadFolder(tree.path("w"));
    ASSERT_EQ(grid().rowCount(), 3);
    EXPECT_TRUE(column(RenameListModel::ColName).contains(QStringLiteral("照片")));
    EXPECT_EQ(window.action("MMenuGoRename")->isEnabled(), true);
    EXPECT_FALSE(window.action("MMenuGoBack")->isEnabled());
    // The path went into the box's history.
    EXPECT_EQ(window.loadBar()->pathBox()->itemText(0), tree.path("w"));

    recordExtension("E103", {{"E1_SearchStr", "txt"}, {"E1_Content", "md"}});
    ASSERT_EQ(window.commandGrid()->model()->rowCount(), 1);
    EXPECT_EQ(window.commandGrid()->model()->index(0, CommandListModel::ColCode).data().toString(), "E1");
    EXPECT_EQ(window.commandGrid()->model()->index(0, CommandListModel::ColComment).data().toString(),
              extensionCommandComment("E103"));
    const int photo = int(column(RenameListModel::ColName).indexOf(QStringLiteral("照片")));
    EXPECT_EQ(cell(photo, RenameListModel::ColNewExt), ".md");

    // Apply: confirmation, the warning about extensions, then the completion form.
    script.on("apply.confirm", click("确定"));
    script.on("apply.extensionWarning", click("确定"));
    script.on("TGoRenameOKForm", click("关闭(&C)"));
    window.action("MMenuGoRename")->trigger();
    EXPECT_EQ(script.seen, (QStringList{"apply.confirm", "apply.extensionWarning", "TGoRenameOKForm"}));
    EXPECT_TRUE(exists("w/sub/照片.md"));
    EXPECT_TRUE(exists("w/keep.doc"));
    EXPECT_EQ(cell(photo, RenameListModel::ColName), QStringLiteral("照片"));
    EXPECT_EQ(cell(photo, RenameListModel::ColExt), ".md");
    EXPECT_EQ(session().renameList().at(photo).state, 0);
    EXPECT_EQ(grid().index(photo, RenameListModel::ColState).data(Qt::ToolTipRole).toString(), "已更名");
    // "AfterApplyClearCmd": the command list is empty after the apply.
    EXPECT_EQ(window.commandGrid()->model()->rowCount(), 0);
    EXPECT_TRUE(window.action("MMenuGoBack")->isEnabled());

    script.on("undo.confirm", click("确定"));
    window.action("MMenuGoBack")->trigger();
    EXPECT_TRUE(exists("w/sub/照片.txt"));
    EXPECT_FALSE(exists("w/sub/照片.md"));
    EXPECT_EQ(cell(photo, RenameListModel::ColExt), ".txt");
    EXPECT_FALSE(window.action("MMenuGoBack")->isEnabled());
    EXPECT_TRUE(script.unexpected.isEmpty()) << script.unexpected.join(',').toStdString();
}

// The whole path a user takes, through the real replace section of the normal page.
TEST_F(WindowTest, AReplaceTypedOnTheNormalPageIsAppliedAndUndone)
{
    registerNormalCommands(session().pipeline().registry());
    tree.file("w/holiday photo.jpg", "a");
    tree.file("w/photo list.txt", "b");
    loadFolder(tree.path("w"));
    ASSERT_EQ(grid().rowCount(), 2);

    auto* page = window.findChild<TFrameFileRenameNormal*>();
    ASSERT_NE(page, nullptr);
    QTest::mouseClick(page->findChild<QAbstractButton*>("RadioButtonN2Search"), Qt::LeftButton);
    const auto type = [&](const char* box, const QString& text) {
        QLineEdit* edit = page->findChild<QComboBox*>(box)->lineEdit();
        edit->setFocus();
        for (QChar c : text)
            QTest::sendKeyEvent(QTest::Click, edit, Qt::Key_unknown, QString(c), Qt::NoModifier);
    };
    type("ComboBoxN2Search", "photo");
    type("ComboBoxN2Replace", "照片");
    ASSERT_EQ(window.commandGrid()->model()->rowCount(), 1);
    EXPECT_EQ(window.commandGrid()->model()->index(0, CommandListModel::ColComment).data().toString(), "查找替换字符串");
    QStringList names = column(RenameListModel::ColNewName);
    names.sort();
    EXPECT_EQ(names, (QStringList{"holiday 照片", "照片 list"}));

    script.on("apply.confirm", click("确定"));
    script.on("TGoRenameOKForm", click("关闭(&C)"));
    window.action("MMenuGoRename")->trigger();
    EXPECT_TRUE(exists("w/holiday 照片.jpg"));
    EXPECT_TRUE(exists("w/照片 list.txt"));
    for (const FileEntry& row : session().renameList().rows())
        EXPECT_EQ(row.state, 0);

    script.on("undo.confirm", click("确定"));
    window.action("MMenuGoBack")->trigger();
    EXPECT_TRUE(exists("w/holiday photo.jpg"));
    EXPECT_TRUE(exists("w/photo list.txt"));
    EXPECT_TRUE(script.unexpected.isEmpty()) << script.unexpected.join(',').toStdString();
}

TEST_F(WindowTest, ASwapGoesThroughTheConflictWarning)
{
    tree.file("w/f.one", "1");
    tree.file("w/f.two", "2");
    loadFolder(tree.path("w"));
    ASSERT_EQ(grid().rowCount(), 2);
    // one -> two and two -> one, by way of a third name.
    recordExtension("E103", {{"E1_SearchStr", "one"}, {"E1_Content", "tmp"}});
    recordExtension("E103", {{"E1_SearchStr", "two"}, {"E1_Content", "one"}});
    recordExtension("E103", {{"E1_SearchStr", "tmp"}, {"E1_Content", "two"}});
    session().settings().writeBool(keys::kOperation, keys::kAfterApplyClearCmd, false);
    session().settings().writeBool(keys::kOperation, QStringLiteral("ApplyConfirmDlgShow"), false);
    script.on("apply.confirm", click("确定"));
    script.on("apply.extensionWarning", click("确定"));

    // First cancelled in the warning: nothing is renamed.
    int listed = 0;
    script.on("TRenameWarningForm", [&](QDialog& form) {
        listed = form.findChild<QTableView*>("conflicts")->model()->rowCount();
        click("取消更名操作")(form);
    });
    window.action("MMenuGoRename")->trigger();
    EXPECT_EQ(listed, 2);
    EXPECT_EQ(QFile(tree.path("w/f.one")).size(), 1);
    EXPECT_FALSE(window.action("MMenuGoBack")->isEnabled());
    EXPECT_TRUE(window.renameGrid()->isEnabled());

    // Then continued with smart rename, never to be asked again.
    script.on("TRenameWarningForm", [](QDialog& form) {
        click("不再提示本对话框并直接启用智能更名继续操作")(form);
        click("启用智能更名操作继续")(form);
    });
    window.action("MMenuGoRename")->trigger();
    QFile one(tree.path("w/f.one"));
    ASSERT_TRUE(one.open(QIODevice::ReadOnly));
    EXPECT_EQ(one.readAll(), "2");
    EXPECT_TRUE(session().settings().readBool(keys::kInterface, "IgnoreUseSmartRenameDlgWarning", false));
    EXPECT_EQ(script.seen.count("TRenameWarningForm"), 2);
}

TEST_F(WindowTest, KeepUnchangedRemovesTheOpenCommandAndRestoresTheNames)
{
    tree.file("w/a.txt");
    loadFolder(tree.path("w"));
    auto record = [&](bool keepUnchanged, const char* content) {
        const RecordAnswer answer = recordCommand(session(), "E1", keepUnchanged);
        if (answer.write) {
            session().commandList().describe(answer.section, "E102", extensionCommandComment("E102"));
            session().settings().writeString(answer.section, "E1_Content", content);
            // A changed command is run again from the current names.
            if (answer.created)
                session().pipeline().runOne(answer.section);
            else
                session().runAllCommands();
        }
        window.refreshAfterCommandChange();
    };
    record(false, "1");
    record(false, "2");  // the open command changes in place
    ASSERT_EQ(window.commandGrid()->model()->rowCount(), 1);
    EXPECT_EQ(window.commandGrid()->model()->index(0, CommandListModel::ColStatus).data().toString(), "");
    EXPECT_EQ(cell(0, RenameListModel::ColNewExt), ".txt2");
    EXPECT_TRUE(window.action("MMenuCMDEndCurrent")->isEnabled());
    record(true, nullptr);
    EXPECT_EQ(window.commandGrid()->model()->rowCount(), 0);
    EXPECT_EQ(cell(0, RenameListModel::ColNewExt), ".txt");
    EXPECT_FALSE(window.action("MMenuCMDDeleteLast")->isEnabled());
}

TEST_F(WindowTest, ChoosingACommandShowsItsPageAndEndingResetsThePages)
{
    auto* normal = new FakePage;
    auto* other = new FakePage;
    window.functionPanel()->addPage("N", {"N1", "N2", "N4"}, normal);
    window.functionPanel()->addPage("A", {"A1"}, other);
    tree.file("w/a.txt");
    loadFolder(tree.path("w"));
    for (const char* code : {"N3", "A2"}) {
        const RecordAnswer answer = recordCommand(session(), QLatin1String(code), false);
        session().commandList().describe(answer.section, QLatin1String(code) + QStringLiteral("01"), code);
    }
    emit other->commandChanged();  // the page tells the window, which shows the list
    ASSERT_EQ(window.commandGrid()->model()->rowCount(), 2);

    QTableView* commands = window.commandGrid();
    QTest::mouseClick(commands->viewport(), Qt::LeftButton, {},
                      commands->visualRect(commands->model()->index(0, 1)).center());
    EXPECT_EQ(window.functionPanel()->currentPage(), normal);
    EXPECT_EQ(normal->sections, QStringList{"N3"});
    QTest::mouseClick(commands->viewport(), Qt::LeftButton, {},
                      commands->visualRect(commands->model()->index(1, 1)).center());
    EXPECT_EQ(window.functionPanel()->currentPage(), other);

    window.action("MMenuCMDEndCurrent")->trigger();
    EXPECT_EQ(normal->resets, 1);
    EXPECT_EQ(other->resets, 1);
    EXPECT_EQ(commands->model()->index(1, CommandListModel::ColStatus).data().toString(), "Ok");

    // "删除选择项之后的命令(&C)" keeps the chosen row.
    commands->setCurrentIndex(commands->model()->index(0, 0));
    window.action("PMenuCMDDeleteAfter")->trigger();
    EXPECT_EQ(commands->model()->rowCount(), 1);
}

TEST_F(WindowTest, DroppedFilesAndFoldersAreLoaded)
{
    const QString file = tree.file("w/dropped.txt");
    tree.file("w/inner/deep.txt");
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(file), QUrl::fromLocalFile(tree.path("w/inner"))});
    QWidget* viewport = window.renameGrid()->viewport();
    QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(viewport, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(viewport, &drop);
    EXPECT_TRUE(QTest::qWaitFor([&] { return grid().rowCount() == 2; }));
    EXPECT_EQ(column(RenameListModel::ColName), (QStringList{"dropped", "deep"}));
}

TEST_F(WindowTest, ApplyCannotStartWhileItRuns)
{
    tree.file("w/a.txt");
    loadFolder(tree.path("w"));
    script.on("apply.confirm", [&](QDialog& box) {
        window.action("MMenuGoRename")->trigger();  // a second start while the first asks
        click("取消")(box);
    });
    window.action("MMenuGoRename")->trigger();
    EXPECT_EQ(script.seen, QStringList{"apply.confirm"});
}

TEST_F(WindowTest, PendingImportIsAskedBeforeLoading)
{
    tree.file("w/a.txt");
    session().setPendingImport(true);
    script.on("load.pendingImport", click("取消"));
    loadFolder(tree.path("w"));
    EXPECT_EQ(script.seen, QStringList{"load.pendingImport"});
    EXPECT_EQ(grid().rowCount(), 0);
    script.on("load.pendingImport", click("确定"));
    loadFolder(tree.path("w"));
    EXPECT_EQ(grid().rowCount(), 1);
    EXPECT_FALSE(session().pendingImport());
}

TEST_F(WindowTest, AddDialogsStartInTheirRememberedFolders)
{
    const QString a = tree.file("w/x/a.txt");
    tree.file("w/y/b.txt");
    tree.file("w/z/c.txt");
    session().settings().writeString(keys::kInterface, keys::kAddFilesFolder, tree.path("w/x/"));
    QString startedIn;
    script.on("FileDialog", [&](QDialog& dialog) {
        auto& files = static_cast<QFileDialog&>(dialog);
        startedIn = files.directory().absolutePath();
        files.selectFile(a);
        dialog.accept();
    });
    window.action("MMenuFileAddFiles")->trigger();
    EXPECT_EQ(startedIn, tree.path("w/x"));
    EXPECT_EQ(grid().rowCount(), 1);

    script.on("TSelectFoldersForm", [&](QDialog& dialog) {
        static_cast<TSelectFoldersForm&>(dialog).selectFolders({tree.path("w/y"), tree.path("w/z")});
        click("确定")(dialog);
    });
    window.action("MMenuFileAddFolder")->trigger();
    EXPECT_EQ(grid().rowCount(), 3);
    EXPECT_EQ(session().settings().readString(keys::kInterface, keys::kAddFolderFolder, {}), tree.path("w/"));
}

TEST_F(WindowTest, CompletionFormSavesACopyOfTheSnapshot)
{
    tree.file("w/a.txt");
    loadFolder(tree.path("w"));
    session().renameList()[0].newName = QStringLiteral("b");
    const QString copy = tree.path("copies/mine.txt");
    QDir().mkpath(tree.path("copies"));
    script.on("apply.confirm", click("确定"));
    script.on("TGoRenameOKForm", [](QDialog& form) {
        click("更名完毕后始终显示此对话框")(form);  // untick: do not show it again
        click("保存本次更名快照(&S)")(form);
    });
    // The completion form's button opens the snapshot viewer on this apply.
    script.on("TExportSnapshotForm", click("保存本次更名快照(&S)"));
    script.on("FileDialog", [&](QDialog& dialog) {
        static_cast<QFileDialog&>(dialog).selectFile(copy);
        dialog.accept();
    });
    script.on("snapshot.copied", click("确定"));
    window.action("MMenuGoRename")->trigger();
    EXPECT_TRUE(exists("w/b.txt"));
    QFile saved(copy);
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    EXPECT_TRUE(saved.readAll().contains("b.txt=a.txt"));
    EXPECT_FALSE(session().settings().readBool(keys::kOperation, "ApplyConfirmDlgShow", true));
    EXPECT_EQ(session().settings().readString(keys::kInterface, "OpenDialogInitialDirMMenuGoExportSnapshot", {}),
              tree.path("copies/"));
    EXPECT_TRUE(script.unexpected.isEmpty()) << script.unexpected.join(',').toStdString();
}

TEST_F(WindowTest, ReadOnlyObjectsAndLongListsAreAskedAbout)
{
    tree.file("w/a.txt");
    const QString locked = tree.file("w/locked.txt");
    QFile::setPermissions(locked, QFile::ReadOwner);
    loadFolder(tree.path("w"));
    for (qsizetype r = 0; r < session().renameList().size(); ++r)
        session().renameList()[r].newName += QStringLiteral("-new");
    session().settings().writeInt(keys::kOperation, "RenameSelectCount", 2);
    session().settings().writeBool(keys::kOperation, "ApplyConfirmDlgShow", false);
    script.on("apply.confirm", click("确定"));
    script.on("TSimpleRenameSelectForm", click("选择简单更名继续(&C)"));
    script.on("TFileNameAttribRWarningForm", [](QDialog& form) {
        click("跳过")(form);
        click("继续(&C)")(form);
    });
    window.action("MMenuGoRename")->trigger();
    EXPECT_EQ(script.seen, (QStringList{"apply.confirm", "TSimpleRenameSelectForm", "TFileNameAttribRWarningForm"}));
    EXPECT_TRUE(exists("w/a-new.txt"));
    EXPECT_TRUE(exists("w/locked.txt"));
    EXPECT_EQ(session().settings().readInt(keys::kOperation, "FileNameAttribRRename", 1), 0);
    bool told = false;
    for (const MessageLine& line : session().messages().lines())
        told = told || line.text.contains(QStringLiteral("只读属性，跳过："));
    EXPECT_TRUE(told);
}

TEST_F(WindowTest, CommandFilesAreSavedAndLoadedThroughTheirDialogsAndTheRecentMenu)
{
    tree.file("w/a.txt");
    loadFolder(tree.path("w"));
    recordExtension("E102", {{"E1_Content", "1"}});
    const QString file = tree.path("commands/list.frc");
    QDir().mkpath(tree.path("commands"));
    script.on("FileDialog", [&](QDialog& dialog) {
        static_cast<QFileDialog&>(dialog).selectFile(file);
        dialog.accept();
    });
    script.on("commands.saved", click("确定"));
    window.action("MMenuCMDSaveToFile")->trigger();
    ASSERT_TRUE(QFile::exists(file));

    script.on("commands.clear", click("是(&Y)"));
    script.on("commands.cleared", click("确定"));
    window.action("MMenuCMDClear")->trigger();
    EXPECT_EQ(window.commandGrid()->model()->rowCount(), 0);
    EXPECT_EQ(cell(0, RenameListModel::ColNewExt), ".txt");

    auto* recent = window.findChild<QMenu*>("MMenuCMDRecent");
    ASSERT_NE(recent, nullptr);
    emit recent->aboutToShow();
    const QList<QAction*> entries = recent->actions();
    ASSERT_GE(entries.size(), 1);
    EXPECT_TRUE(entries.first()->text().startsWith("01. list.frc | ")) << entries.first()->text().toStdString();
    entries.first()->trigger();
    EXPECT_EQ(window.commandGrid()->model()->rowCount(), 1);
    EXPECT_EQ(cell(0, RenameListModel::ColNewExt), ".txt1");
    EXPECT_TRUE(script.unexpected.isEmpty()) << script.unexpected.join(',').toStdString();
}

TEST_F(WindowTest, AProgrammeIsExportedAndImportedThroughTheMenus)
{
    tree.file("w/a.txt");
    loadFolder(tree.path("w"));
    session().renameList()[0].newName = QStringLiteral("b");
    const QString file = tree.path("plan.txt");
    script.on("FileDialog", [&](QDialog& dialog) {
        static_cast<QFileDialog&>(dialog).selectFile(file);
        dialog.accept();
    });
    script.on("programme.export.done", click("确定"));
    window.action("MMenuFileExportProgramme")->trigger();
    ASSERT_TRUE(QFile::exists(file));

    script.on("programme.import.replaceList", click("确定"));
    script.on("programme.import.done", click("确定"));
    window.action("MMenuFileImportProgramme")->trigger();
    ASSERT_EQ(grid().rowCount(), 1);
    EXPECT_EQ(cell(0, RenameListModel::ColNewName), "b");
    EXPECT_TRUE(session().pendingImport());
    EXPECT_TRUE(script.unexpected.isEmpty()) << script.unexpected.join(',').toStdString();
}

TEST_F(WindowTest, HeaderClickSortsTheListItselfAndNumbersAgain)
{
    for (const char* name : {"w/b10.txt", "w/b2.txt", "w/a.txt"})
        tree.file(name);
    loadFolder(tree.path("w"));
    QHeaderView* header = window.renameGrid()->horizontalHeader();
    const auto clickHeader = [&](int column) {
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          QPoint(header->sectionViewportPosition(column) + 5, header->height() / 2));
    };
    clickHeader(RenameListModel::ColName);
    EXPECT_EQ(column(RenameListModel::ColName), (QStringList{"a", "b2", "b10"}));
    EXPECT_EQ(session().renameList().at(2).name, "b10");
    clickHeader(RenameListModel::ColName);
    EXPECT_EQ(column(RenameListModel::ColName), (QStringList{"b10", "b2", "a"}));
    EXPECT_EQ(header->sortIndicatorOrder(), Qt::DescendingOrder);
}

TEST_F(WindowTest, EnterInTheFilterBoxFiltersTheList)
{
    tree.file("w/a.txt");
    tree.file("w/b.doc");
    loadFolder(tree.path("w"));
    ASSERT_EQ(grid().rowCount(), 2);
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    QLineEdit* keep = window.loadBar()->keepBox()->lineEdit();
    keep->setFocus();
    keep->selectAll();
    QTest::keyClicks(keep, "*.doc");
    QTest::keyClick(keep, Qt::Key_Return);
    EXPECT_EQ(column(RenameListModel::ColName), QStringList{"b"});
    EXPECT_EQ(window.loadBar()->keepBox()->itemText(0), "*.doc");  // remembered
    // Typing "<f>" gathers the marker at the front.
    keep->selectAll();
    QTest::keyClicks(keep, "*.*|<f>");
    EXPECT_EQ(keep->text(), "<F>*.*");
}

TEST_F(WindowTest, MessagesShowWithTheirColourAndLeadToTheirRow)
{
    for (const char* name : {"w/a.txt", "w/b.txt", "w/c.txt"})
        tree.file(name);
    loadFolder(tree.path("w"));
    session().messages().add(QStringLiteral("无法读取文件夹：/x"), MessageColour::Red, 2);
    QListView* messages = window.messageGrid();
    ASSERT_TRUE(QTest::qWaitFor([&] { return messages->model()->rowCount() == session().messages().lines().size(); }));
    const QModelIndex last = messages->model()->index(messages->model()->rowCount() - 1, 0);
    EXPECT_TRUE(last.data().toString().endsWith("] 无法读取文件夹：/x"));
    EXPECT_EQ(last.data(Qt::ForegroundRole).value<QColor>(), QColor(Qt::red));
    messages->scrollTo(last);
    QTest::mouseClick(messages->viewport(), Qt::LeftButton, {}, messages->visualRect(last).center());
    EXPECT_EQ(window.renameGrid()->currentIndex().row(), 2);
}

TEST_F(WindowTest, BusyDisablesTheControlsUntilTheOutermostStepEnds)
{
    Interaction& ui = session().interaction();
    ui.setBusy(true);
    ui.setBusy(true);  // preview inside apply
    EXPECT_FALSE(window.renameGrid()->isEnabled());
    ui.setBusy(false);
    EXPECT_FALSE(window.renameGrid()->isEnabled());
    ui.setBusy(false);
    EXPECT_TRUE(window.renameGrid()->isEnabled());

    ui.status(QStringLiteral("未发现新对象！"));
    EXPECT_EQ(window.statusText()->text(), QStringLiteral("未发现新对象！"));
    ui.progress(QStringLiteral("对象过滤"), 42);
    EXPECT_EQ(window.progressBar()->text(), QStringLiteral("对象过滤 42%"));
}

}  // namespace
}  // namespace qp::ui

#include "MainWindowTest.moc"
