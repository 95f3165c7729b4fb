// The application shell around the rename page: the filter tool, the exports of the rename
// list and the message pane, and the help menu (welcome page, update check, the file
// manager's context menu, about).
#include "ui/window/MainWindow.h"

#include <QAction>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QFile>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QTableView>
#include <algorithm>
#include <numeric>

#include "core/CommandList.h"
#include "core/DesktopIntegration.h"
#include "core/PathText.h"
#include "core/RowFilter.h"
#include "core/ThirdPartyNotices.h"
#include "core/UpdateInfo.h"
#include "execution/FileOperations.h"
#include "execution/ListExport.h"
#include "ui/dialogs/AboutForm.h"
#include "ui/dialogs/FileDialogs.h"
#include "ui/dialogs/FilterForm.h"
#include "ui/dialogs/UpdateForm.h"
#include "ui/dialogs/WelcomeForm.h"
#include "ui/models/MessageModel.h"
#include "ui/models/RenameListModel.h"
#include "ui/shell/UpdateChecker.h"

namespace qp::ui {

namespace {

const QString kExportListFolderKey = QStringLiteral("OpenDialogInitialDirMMenuFileExportList");
const QString kExportMessagesFolderKey = QStringLiteral("OpenDialogInitialDirPMenuMsgExport");
// A result that arrives while an operation runs waits this long before it is shown again.
constexpr int kBusyRetryMs = 250;

QAction* separatorAction(QObject* parent)
{
    auto* action = new QAction(parent);
    action->setSeparator(true);
    return action;
}

}  // namespace

void MainWindow::buildShellActions()
{
    addAction(QStringLiteral("MMenuFileFilter"), tr("筛选(&I)..."), &MainWindow::openFilterTool,
              QKeySequence(Qt::CTRL | Qt::Key_I));
    addAction(QStringLiteral("MMenuFileExportList"), tr("导出更名文件列表(&X)..."), &MainWindow::exportAllRows);
    addAction(QStringLiteral("PMenuNGFileRenameExportChosen"), tr("导出选中的行..."), &MainWindow::exportChosenRows);
    addAction(QStringLiteral("PMenuMsgExport"), tr("导出信息列表..."), &MainWindow::exportMessages);
    addAction(QStringLiteral("MMenuHelpWelcome"), tr("欢迎页(&W)"), &MainWindow::showWelcome);
    addAction(QStringLiteral("MMenuHelpCheckUpdate"), tr("检查更新(&U)"), &MainWindow::checkForUpdatesNow);
    addAction(QStringLiteral("MMenuHelpAddToFileManager"), tr("添加到文件管理器的右键菜单"),
              &MainWindow::addToFileManager);
    addAction(QStringLiteral("MMenuHelpRemoveFromFileManager"), tr("从文件管理器的右键菜单移除"),
              &MainWindow::removeFromFileManager);
    addAction(QStringLiteral("MMenuHelpAbout"), tr("关于 Quillet Pro(&A)"), &MainWindow::showAbout);

    if (auto* file = menuBar()->findChild<QMenu*>(QStringLiteral("MMenuFile"))) {
        QAction* exit = action(QStringLiteral("MMenuFileExit"));
        file->insertAction(exit, action(QStringLiteral("MMenuFileFilter")));
        file->insertAction(exit, action(QStringLiteral("MMenuFileExportList")));
        file->insertSeparator(exit);
    }
    QMenu* help = menuBar()->addMenu(tr("帮助(&H)"));
    help->setObjectName(QStringLiteral("MMenuHelp"));
    for (const char* name : {"MMenuHelpWelcome", "MMenuHelpCheckUpdate", "", "MMenuHelpAddToFileManager",
                             "MMenuHelpRemoveFromFileManager", "", "MMenuHelpAbout"}) {
        if (*name)
            help->addAction(action(QLatin1String(name)));
        else
            help->addSeparator();
    }
    m_renameGrid->addActions({separatorAction(this), action(QStringLiteral("MMenuFileFilter")),
                              action(QStringLiteral("MMenuFileExportList")),
                              action(QStringLiteral("PMenuNGFileRenameExportChosen"))});
    m_messageGrid->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_messageGrid->addAction(action(QStringLiteral("PMenuMsgExport")));

    m_updateChecker = new UpdateChecker(this);
    connect(m_updateChecker, &UpdateChecker::finished, this, &MainWindow::updateCheckFinished);
}

void MainWindow::updateShellActions()
{
    const bool rows = !m_session.renameList().isEmpty();
    for (const char* name : {"MMenuFileFilter", "MMenuFileExportList", "PMenuNGFileRenameExportChosen"})
        action(QLatin1String(name))->setEnabled(rows);
}

void MainWindow::startShell()
{
    if (TWelcomeForm::showsAtStart(m_session.settings()))
        showWelcome();
    if (updateCheckDue(UpdateSettings::read(m_session.settings()), QDateTime::currentDateTime()))
        checkForUpdates(false);
}

// ---------------------------------------------------------------------------------------
// The filter tool

void MainWindow::openFilterTool()
{
    if (busy() || m_session.renameList().isEmpty() || !requireFileRenamePage(m_session))
        return;
    TFilterForm form(m_session, this);
    const bool accepted = m_interaction.runModal(form) == QDialog::Accepted;
    scheduleSave();  // filter sets may have been saved or removed
    if (!accepted)
        return;
    const RowFilterSpec spec = form.spec();
    guarded([&] { filterRows(m_session, spec); });
}

// ---------------------------------------------------------------------------------------
// Exports

void MainWindow::exportRenameList(bool chosenOnly)
{
    if (busy())
        return;
    std::vector<int> rows;
    if (chosenOnly) {
        for (const QModelIndex& index : m_renameGrid->selectionModel()->selectedRows())
            rows.push_back(index.row());
        std::sort(rows.begin(), rows.end());
    } else {
        rows.resize(size_t(m_renameModel->rowCount()));
        std::iota(rows.begin(), rows.end(), 0);
    }
    if (rows.empty()) {
        m_interaction.status(tr("没有可导出的行。"));
        return;
    }
    // The columns the grid shows, with their texts as shown; the state column says in words
    // what its icon shows.
    TextTable table;
    std::vector<int> columns;
    for (int column = 0; column < RenameListModel::ColumnCount; ++column) {
        if (m_renameGrid->isColumnHidden(column) || column == RenameListModel::ColSelected
            || column == RenameListModel::ColIcon)
            continue;
        columns.push_back(column);
        table.header.append(m_renameModel->headerData(column, Qt::Horizontal, Qt::ToolTipRole).toString());
    }
    table.rows.reserve(rows.size());
    for (int row : rows) {
        QStringList cells;
        for (int column : columns) {
            const QModelIndex index = m_renameModel->index(row, column);
            cells.append(index.data(column == RenameListModel::ColState ? Qt::ToolTipRole : Qt::DisplayRole).toString());
        }
        table.rows.push_back(std::move(cells));
    }
    const QString file = chooseFile(m_interaction, this, m_session,
                                    FileDialogOptions{tr("导出更名文件列表"),
                                                   tr("文本文件 (*.txt);;CSV 文件 (*.csv);;Excel 工作簿 (*.xlsx)"),
                                                   QStringLiteral("txt"), kExportListFolderKey, true});
    if (file.isEmpty())
        return;
    DiskOperations disk;
    const QString error =
        exportTable(table, listFormatOf(file).value_or(ListFormat::Text), tr("更名文件列表"), file, disk);
    if (error.isEmpty())
        m_session.messages().add(tr("已导出 %1 行到：%2").arg(rows.size()).arg(nativeSeparators(file)));
    else
        m_session.messages().add(error, MessageColour::Red);
    m_messageModel->flush();
}

void MainWindow::exportMessages()
{
    if (busy() || m_session.messages().lines().isEmpty())
        return;
    TextTable table;
    for (const MessageLine& line : m_session.messages().lines())
        table.rows.push_back({line.text});
    const QString file = chooseFile(m_interaction, this, m_session,
                                    FileDialogOptions{tr("导出信息列表"),
                                                   tr("文本文件 (*.txt);;CSV 文件 (*.csv);;Excel 工作簿 (*.xlsx)"),
                                                   QStringLiteral("txt"), kExportMessagesFolderKey, true});
    if (file.isEmpty())
        return;
    DiskOperations disk;
    const QString error = exportTable(table, listFormatOf(file).value_or(ListFormat::Text), tr("信息列表"), file, disk);
    if (!error.isEmpty())
        m_session.messages().add(error, MessageColour::Red);
    m_messageModel->flush();
}

// ---------------------------------------------------------------------------------------
// Help

void MainWindow::showWelcome()
{
    if (busy())
        return;
    TWelcomeForm form(m_session.settings(), this);
    m_interaction.runModal(form);
    scheduleSave();
    if (!form.chosenCommandFile().isEmpty())
        loadCommandFile(form.chosenCommandFile());
}

void MainWindow::showAbout()
{
    TAboutForm form(findNoticeFile(QCoreApplication::applicationDirPath()), this);
    m_interaction.runModal(form);
}

void MainWindow::checkForUpdates(bool manual)
{
    UpdateSettings settings = UpdateSettings::read(m_session.settings());
    if (settings.url.isEmpty()) {
        if (manual)
            m_session.messages().add(tr("检查更新：没有设置更新地址（设置文件 [General Config] 中的 UpdateUrl）。"),
                                     MessageColour::Red);
        m_messageModel->flush();
        return;
    }
    if (m_updateChecker->running())
        return;
    m_manualUpdateCheck = manual;
    settings.lastCheck = QDateTime::currentDateTime();
    settings.write(m_session.settings());
    scheduleSave();
    m_updateChecker->check(QUrl(settings.url));
}

void MainWindow::updateCheckFinished(const UpdateCheckResult& result)
{
    // A form in the middle of an operation would run inside its event pumping.
    if (busy()) {
        QTimer::singleShot(kBusyRetryMs, this, [this, result] { updateCheckFinished(result); });
        return;
    }
    const QString current = QCoreApplication::applicationVersion();
    UpdateSettings settings = UpdateSettings::read(m_session.settings());
    const std::optional<UpdateVerdict> verdict =
        result.info ? judgeUpdate(*result.info, current, settings.skippedVersion) : std::nullopt;
    MessageLog& log = m_session.messages();
    if (!result.info) {
        log.add(tr("检查更新失败：%1").arg(result.error), MessageColour::Red);
    } else if (!verdict) {
        log.add(tr("检查更新：无法比较版本 %1 与当前版本 %2。").arg(result.info->version, current), MessageColour::Red);
    } else if (*verdict == UpdateVerdict::Older) {
        log.add(tr("检查更新：更新信息中的版本 %1 低于当前版本 %2，已忽略。").arg(result.info->version, current),
                MessageColour::Red);
    } else if (*verdict == UpdateVerdict::Current) {
        log.add(tr("检查更新：已是最新版本（%1）。").arg(current));
    } else if (*verdict == UpdateVerdict::Skipped && !m_manualUpdateCheck) {
        log.add(tr("检查更新：新版本 %1 已设为跳过。").arg(result.info->version));
    } else {
        TUpdateForm form(*result.info, current, this);
        m_interaction.runModal(form);
        if (form.choice() == TUpdateForm::OpenPage)
            QDesktopServices::openUrl(result.info->url);
        if (form.choice() == TUpdateForm::Skip) {
            settings.skippedVersion = result.info->version;
            settings.write(m_session.settings());
            scheduleSave();
        }
    }
    m_messageModel->flush();
}

namespace {

void reportIntegration(MessageLog& log, const IntegrationReport& report, const QString& doneText,
                       const QString& nothingText)
{
    for (const QString& problem : report.problems)
        log.add(problem, MessageColour::Red);
    if (report.ok())
        log.add(report.done.isEmpty() ? nothingText : doneText.arg(report.done.join(QStringLiteral("，"))));
}

}  // namespace

void MainWindow::addToFileManager()
{
    QFile icon(QStringLiteral(":/icons/quilletpro-256.png"));
    const QByteArray png = icon.open(QIODevice::ReadOnly) ? icon.readAll() : QByteArray();
    reportIntegration(m_session.messages(),
                      installDesktopIntegration(desktopPlacesFromEnvironment(), QCoreApplication::applicationFilePath(), png),
                      tr("已添加到文件管理器的右键菜单：%1"), QString());
    m_messageModel->flush();
}

void MainWindow::removeFromFileManager()
{
    reportIntegration(m_session.messages(), removeDesktopIntegration(desktopPlacesFromEnvironment()),
                      tr("已从文件管理器的右键菜单移除：%1"), tr("文件管理器的右键菜单中没有 Quillet Pro 的项目。"));
    m_messageModel->flush();
}

}  // namespace qp::ui
