// The operations behind the window's menus, buttons and grids. Each runs through guarded()
// and calls the Session operation that quillet calls too.
#include "ui/window/MainWindow.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QListView>
#include <QMenu>
#include <QPushButton>
#include <QTableView>

#include "core/CommandFile.h"
#include "core/CommandList.h"
#include "core/Loader.h"
#include "core/PathText.h"
#include "core/ProgrammeFile.h"
#include "core/SettingsKeys.h"
#include "execution/FileOperations.h"
#include "execution/Preview.h"
#include "execution/RenameRunner.h"
#include "execution/Undo.h"
#include "ui/dialogs/ExportForms.h"
#include "ui/dialogs/FileDialogs.h"
#include "ui/dialogs/GoRenameOKForm.h"
#include "ui/dialogs/GuiApplyDialogs.h"
#include "ui/models/CommandListModel.h"
#include "ui/models/MessageModel.h"
#include "ui/models/RenameListModel.h"
#include "ui/window/FunctionPanel.h"
#include "ui/window/LoadBar.h"

namespace qp::ui {

namespace {

const QString kHintTitle = QStringLiteral("温馨提示");
const QString kCommandFileFolderKey = QStringLiteral("OpenDialogInitialDirMMenuCMDLoadFromFile");

}  // namespace

// ---------------------------------------------------------------------------------------
// Loading

void MainWindow::loadPaths(const QStringList& paths)
{
    if (paths.isEmpty())
        return;
    guarded([&] {
        if (!requireFileRenamePage(m_session))
            return;
        const LoadResult result = Loader(m_session).addPaths(paths);
        if (result.outcome == LoadResult::Outcome::Loaded)
            fitColumns();
    });
    m_loadBar->syncFromSession();
}

void MainWindow::addFiles()
{
    guarded([&] {
        if (!requireFileRenamePage(m_session))
            return;
        const QStringList files = chooseFiles(
            m_interaction, this, m_session,
            FileDialogOptions{tr("请选择需要更名的文件"), tr("所有文件 (*)"), {}, keys::kAddFilesFolder, false, true});
        if (!files.isEmpty() && Loader(m_session).addPaths(files).outcome == LoadResult::Outcome::Loaded)
            fitColumns();
    });
    m_loadBar->syncFromSession();
}

void MainWindow::addFolders()
{
    guarded([&] {
        if (!requireFileRenamePage(m_session))
            return;
        const QStringList folders = chooseFolders(m_interaction, this, m_session);
        if (!folders.isEmpty() && Loader(m_session).addPaths(folders).outcome == LoadResult::Outcome::Loaded)
            fitColumns();
    });
    m_loadBar->syncFromSession();
}

void MainWindow::addListFile()
{
    guarded([&] {
        if (!requireFileRenamePage(m_session))
            return;
        const QString file = chooseFile(m_interaction, this, m_session,
                                        FileDialogOptions{tr("导入一个带路径的文件名列表文本文件"),
                                                       tr("带路径的文件名列表文本文件 (*.txt)"),
                                                       QStringLiteral("txt"), keys::kListFileFolder});
        if (!file.isEmpty() && Loader(m_session).addListFile(file).outcome == LoadResult::Outcome::Loaded)
            fitColumns();
    });
    m_loadBar->syncFromSession();
}

void MainWindow::loadTypedPath()
{
    guarded([&] {
        if (!requireFileRenamePage(m_session))
            return;
        if (Loader(m_session).loadTypedPath().outcome == LoadResult::Outcome::Loaded)
            fitColumns();
    });
    m_loadBar->syncFromSession();
}

void MainWindow::traverseList()
{
    guarded([&] {
        if (!requireFileRenamePage(m_session))
            return;
        if (Loader(m_session).traverseList().outcome == LoadResult::Outcome::Loaded)
            fitColumns();
    });
    m_loadBar->syncFromSession();
}

void MainWindow::filterList()
{
    guarded([&] {
        if (!requireFileRenamePage(m_session) || m_session.renameList().isEmpty())
            return;
        // Fewer rows number differently: the commands run again over what is left.
        if (Loader(m_session).filterList() > 0)
            m_session.runAllCommands();
    });
}

// ---------------------------------------------------------------------------------------
// Rename programmes

void MainWindow::exportProgramme()
{
    guarded([&] {
        if (!requireFileRenamePage(m_session) || m_session.renameList().isEmpty())
            return;
        const QString file = chooseFile(
            m_interaction, this, m_session,
            FileDialogOptions{tr("导出更名方案"), tr("更名方案 (*.txt)"), QStringLiteral("txt"), kProgrammeFolderKey, true});
        if (!file.isEmpty())
            ProgrammeFile(m_session).exportTo(file);
    });
}

void MainWindow::importProgramme()
{
    guarded([&] {
        if (!requireFileRenamePage(m_session))
            return;
        const QString file = chooseFile(m_interaction, this, m_session,
                                        FileDialogOptions{tr("导入更名方案文件或快照文件"),
                                                       tr("更名方案文件或快照文件 (*.txt)"), QStringLiteral("txt"),
                                                       kProgrammeFolderKey});
        if (file.isEmpty())
            return;
        if (ProgrammeFile(m_session).importFrom(file).outcome == ProgrammeImport::Outcome::Imported) {
            // The imported names are the new names until something runs the commands.
            m_session.setNewNamesCurrent(true);
            fitColumns();
        }
    });
}

// ---------------------------------------------------------------------------------------
// Commands

void MainWindow::endCommand()
{
    guarded([&] { qp::endCurrentCommand(m_session); });
}

void MainWindow::deleteLastCommand()
{
    guarded([&] { qp::deleteLastCommand(m_session); });
}

void MainWindow::deleteCommandsAfterChosen()
{
    const QModelIndex current = m_commandGrid->currentIndex();
    if (!current.isValid())
        return;
    guarded([&] { qp::deleteCommandsAfter(m_session, current.row()); });
}

void MainWindow::clearCommands()
{
    guarded([&] { qp::clearCommandList(m_session); });
}

void MainWindow::refreshCommands()
{
    guarded([&] { qp::refreshCommandList(m_session); });
}

void MainWindow::saveCommands()
{
    guarded([&] {
        saveCommandFile(m_session, [this] {
            return chooseFile(m_interaction, this, m_session,
                              FileDialogOptions{tr("保存批处理命令文件"), tr("*.frc (*.frc)"), QStringLiteral("frc"),
                                             kCommandFileFolderKey, true});
        });
    });
}

void MainWindow::loadCommands()
{
    loadCommandFile(QString());
}

void MainWindow::loadCommandFile(const QString& given)
{
    bool loaded = false;
    guarded([&] {
        const CommandFileResult result = qp::loadCommandFile(m_session, [&] {
            if (!given.isEmpty())
                return given;
            return chooseFile(m_interaction, this, m_session,
                              FileDialogOptions{tr("载入批处理命令文件"), tr("批处理命令文件 (*.frc)"),
                                             QStringLiteral("frc"),
                                             kCommandFileFolderKey});
        });
        loaded = result.outcome == CommandFileResult::Outcome::Done;
        if (loaded)
            fitColumns();
    });
    // A command file may carry other settings with it.
    if (loaded)
        syncOptionsFromSettings();
}

void MainWindow::fillRecentMenu()
{
    m_recentMenu->clear();
    const QList<RecentCommandFile> recent = recentCommandFileMenu(m_session.settings());
    for (const RecentCommandFile& entry : recent) {
        QAction* item = m_recentMenu->addAction(entry.caption);
        const QString path = entry.path;
        connect(item, &QAction::triggered, this, [this, path] { loadCommandFile(path); });
    }
    if (!recent.isEmpty())
        m_recentMenu->addSeparator();
    m_recentMenu->addAction(action(QStringLiteral("MMenuCMDClearRecent")));
    action(QStringLiteral("MMenuCMDClearRecent"))->setEnabled(!recent.isEmpty());
}

void MainWindow::clearRecentCommands()
{
    guarded([&] { clearRecentCommandFiles(m_session); });
}

void MainWindow::exitProgram() { close(); }

void MainWindow::clearPageHistories()
{
    m_panel->clearHistories();
    scheduleSave();
}

void MainWindow::commandChosen(const QModelIndex& index)
{
    if (!index.isValid() || index.row() >= m_session.commandList().size())
        return;
    m_panel->showPageFor(m_session.commandList().rows()[size_t(index.row())].functionCode);
}

// ---------------------------------------------------------------------------------------
// Preview, apply, undo

void MainWindow::preview()
{
    guarded([&] { Preview(m_session).run(false); });
}

void MainWindow::apply()
{
    ApplyResult result;
    guarded([&] {
        DiskOperations disk;
        GuiApplyDialogs dialogs(m_session, m_interaction, this);
        RenameRunner runner(m_session, disk, {}, &dialogs);
        result = runner.apply();
        if (result.end == ApplyResult::End::Done)
            m_interaction.status(tr("对象批量更名完成。"));
    });
    if (result.end == ApplyResult::End::Done && result.showCompletionDialog)
        showCompletion(result);
}

void MainWindow::showCompletion(const ApplyResult& result)
{
#ifdef _WIN32
    const bool uacNote =
        m_session.settings().readBool(keys::kGeneral, QStringLiteral("UAC"), true) && result.systemDriveMet;
#else
    // User account control is a Windows matter; elsewhere the system drive is every drive.
    const bool uacNote = false;
#endif
    TGoRenameOKForm form(result.summary, result.snapshotPath, uacNote,
                         m_session.settings().readBool(keys::kOperation, keys::kApplyConfirmDlgShow, true), this);
    // The viewer opens on this apply, the newest one.
    form.setSaveSnapshot([this] { return viewSnapshots(); });
    m_interaction.runModal(form);
    m_session.settings().writeBool(keys::kOperation, keys::kApplyConfirmDlgShow, form.alwaysShow());
    scheduleSave();
}

bool MainWindow::viewSnapshots()
{
    DiskOperations disk;
    TExportSnapshotForm form(m_session, m_interaction, disk, this);
    return m_interaction.runModal(form) == QDialog::Accepted;
}

void MainWindow::exportContrast()
{
    DiskOperations disk;
    TExportContrastFileForm form(m_session, m_interaction, disk, this);
    m_interaction.runModal(form);
}

void MainWindow::undo()
{
    guarded([&] {
        DiskOperations disk;
        if (Undo(m_session, disk).undoLast().end == UndoResult::End::Done)
            m_interaction.status(tr("撤销上一次的批量更名完成。"));
    });
}

// ---------------------------------------------------------------------------------------
// The rename grid

void MainWindow::setTicks(int how)
{
    guarded([&] {
        RenameList& list = m_session.renameList();
        for (qsizetype r = 0; r < list.size(); ++r)
            list[r].selected = how == 2 ? !list.at(r).selected : how == 1;
    });
    scheduleRerun();
}

void MainWindow::tickAll() { setTicks(1); }
void MainWindow::tickNone() { setTicks(0); }
void MainWindow::invertTicks() { setTicks(2); }

void MainWindow::removeChosenRows()
{
    const QModelIndexList chosen = m_renameGrid->selectionModel()->selectedRows();
    if (chosen.isEmpty())
        return;
    guarded([&] {
        std::vector<bool> drop(size_t(m_session.renameList().size()), false);
        for (const QModelIndex& index : chosen) {
            if (index.row() < m_session.renameList().size())
                drop[size_t(index.row())] = true;
        }
        m_session.renameList().removeRows(drop);
        m_session.runAllCommands();
    });
}

void MainWindow::clearList()
{
    guarded([&] { m_session.renameList().clear(); });
}

void MainWindow::sortByColumn(int column)
{
    if (!RenameListModel::isSortable(column))
        return;
    m_sortOrder = column == m_sortColumn && m_sortOrder == Qt::AscendingOrder ? Qt::DescendingOrder
                                                                               : Qt::AscendingOrder;
    m_sortColumn = column;
    guarded([&] {
        m_renameModel->sort(column, m_sortOrder);
        // Numbering counts in grid order: the new order numbers differently.
        m_session.runAllCommands();
    });
    QHeaderView* header = m_renameGrid->horizontalHeader();
    header->setSortIndicatorShown(true);
    header->setSortIndicator(column, m_sortOrder);
}

void MainWindow::showLinkedRow(const QModelIndex& message)
{
    const int row = m_messageModel->linkedRow(message);
    if (row < 0 || row >= m_renameModel->rowCount())
        return;
    const QModelIndex target = m_renameModel->index(row, RenameListModel::ColName);
    m_renameGrid->setCurrentIndex(target);
    m_renameGrid->selectRow(row);
    m_renameGrid->scrollTo(target, QAbstractItemView::PositionAtCenter);
}

}  // namespace qp::ui
