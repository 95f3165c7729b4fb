#include "ui/window/MainWindow.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QDropEvent>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QSplitter>
#include <QStatusBar>
#include <QStyle>
#include <QTabWidget>
#include <QTableView>
#include <QToolBar>
#include <QUrl>
#include <QVBoxLayout>

#include "core/CommandList.h"
#include "core/PathText.h"
#include "core/SettingsKeys.h"
#include "metadata/FieldCatalogue.h"
#include "ui/models/CommandListModel.h"
#include "ui/models/MessageModel.h"
#include "ui/models/RenameListModel.h"
#include "ui/pages/FrameFileRenameAdvanced.h"
#include "ui/pages/FrameFileRenameExt.h"
#include "ui/pages/FrameFileRenameMetadata.h"
#include "ui/pages/FrameFileRenameNormal.h"
#include "ui/window/FunctionPanel.h"
#include "ui/window/LoadBar.h"

namespace qp::ui {

namespace {

// Column widths fitted to the contents stop here; longer names are cut in the cell and
// shown whole in its tool tip.
constexpr int kWidestFittedColumn = 360;
// Settings are written this long after the last change, so that typing on a page does not
// write the file at every key.
constexpr int kSaveDelayMs = 800;
// Ticks, sorts and the preview options run the commands again after this pause, so that
// several clicks in a row cost one run.
constexpr int kRerunDelayMs = 150;

QTableView* makeGrid(QWidget* parent, const QString& name)
{
    auto* grid = new QTableView(parent);
    grid->setObjectName(name);
    grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid->setAlternatingRowColors(true);
    grid->setWordWrap(false);
    grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid->setContextMenuPolicy(Qt::ActionsContextMenu);
    // Fixed row heights: a million rows then cost the header nothing to lay out.
    QHeaderView* rows = grid->verticalHeader();
    rows->setSectionResizeMode(QHeaderView::Fixed);
    rows->setDefaultSectionSize(grid->fontMetrics().height() + 6);
    rows->hide();
    grid->horizontalHeader()->setHighlightSections(false);
    return grid;
}

QAction* separator(QObject* parent)
{
    auto* action = new QAction(parent);
    action->setSeparator(true);
    return action;
}

}  // namespace

MainWindow::MainWindow(SettingsStore settings, QString runStamp, QWidget* parent)
    : QMainWindow(parent)
    , m_session(std::move(settings), m_interaction, std::move(runStamp))
{
    setObjectName(QStringLiteral("TMainForm"));
    setWindowTitle(tr("Quillet Pro 批量文件更名"));
    resize(1280, 800);
    m_session.commandList().rebuildFromStore();

    m_tabs = new QTabWidget(this);
    m_tabs->addTab(buildFileRenamePage(), tr("1.文件名处理"));
    setCentralWidget(m_tabs);
    connect(m_tabs, &QTabWidget::currentChanged, this,
            [this](int index) { m_session.setOnFileRenamePage(index == 0); });

    buildActions();
    buildMenus();
    buildToolBar();
    buildStatusBar();

    m_interaction.attach(this, m_statusText, m_progress);
    connect(&m_interaction, &GuiInteraction::busyChanged, this, [this](bool busy) {
        setControlsEnabled(!busy);
        if (!busy)
            m_renameModel->refresh();
    });
    m_session.messages().setListener([this](const MessageLine&) { m_messageModel->lineAdded(); });
    m_session.setPageResetter([this] { m_panel->resetAll(); });
    connect(m_panel, &FunctionPanel::commandChanged, this, &MainWindow::refreshAfterCommandChange);

    m_saveTimer.setSingleShot(true);
    m_saveTimer.setInterval(kSaveDelayMs);
    connect(&m_saveTimer, &QTimer::timeout, this, [this] { m_session.saveSettings(); });
    m_rerunTimer.setSingleShot(true);
    m_rerunTimer.setInterval(kRerunDelayMs);
    connect(&m_rerunTimer, &QTimer::timeout, this, [this] {
        if (m_running || m_interaction.busy()) {
            m_rerunTimer.start();
            return;
        }
        guarded([this] { m_session.runAllCommands(); });
    });

    buildShellActions();
    syncOptionsFromSettings();
    updateActions();
}

MainWindow::~MainWindow()
{
    // The log outlives nothing it could call back into once the window is gone.
    m_session.messages().setListener({});
    m_session.setPageResetter({});
}

// ---------------------------------------------------------------------------------------
// Building

QWidget* MainWindow::buildFileRenamePage()
{
    auto* page = new QWidget(this);
    page->setObjectName(QStringLiteral("FileRenamePage"));

    m_panel = new FunctionPanel(page);
    m_panel->setObjectName(QStringLiteral("FunctionPanel"));
    m_panel->setMinimumWidth(300);
    // The pages' forms go through the window's modal runner, as every other dialog does.
    const DialogRunner windowRunner = [this](QDialog& dialog) { return m_interaction.runModal(dialog); };
    auto* normal = new TFrameFileRenameNormal(m_session);
    normal->setDialogRunner(windowRunner);
    m_panel->addPage(tr("1.N.普通更名"), {QStringLiteral("N1"), QStringLiteral("N2"), QStringLiteral("N4")}, normal);
    auto* ext = new TFrameFileRenameExt(m_session);
    ext->setDialogRunner(windowRunner);
    m_panel->addPage(tr("1.E.扩展名更名"), {QStringLiteral("E")}, ext);
    auto* advanced = new TFrameFileRenameAdvanced(m_session);
    advanced->setDialogRunner(windowRunner);
    m_panel->addPage(tr("1.A.高级更名"), {QStringLiteral("A1"), QStringLiteral("A1_1")}, advanced);
    // One page per metadata field family (music, photo, media …), each serving its letter.
    std::vector<TFrameFileRenameMetadata*> fieldPages;
    for (const metadata::FamilyInfo& family : metadata::fieldFamilies()) {
        auto* fields = new TFrameFileRenameMetadata(m_session, family.letter);
        fields->setDialogRunner(windowRunner);
        m_panel->addPage(family.pageTitle, {QString(family.letter)}, fields);
        fieldPages.push_back(fields);
    }

    m_loadBar = new LoadBar(m_session, page);
    m_renameModel = new RenameListModel(m_session.renameList(), this);
    m_renameGrid = makeGrid(page, QStringLiteral("NextGridFileRename"));
    m_renameGrid->setModel(m_renameModel);
    m_renameGrid->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_renameGrid->setAcceptDrops(true);
    m_renameGrid->viewport()->installEventFilter(this);
    QHeaderView* header = m_renameGrid->horizontalHeader();
    header->setSectionsClickable(true);
    header->setSortIndicatorShown(false);
    for (int column = 0; column < RenameListModel::ColumnCount; ++column)
        m_renameGrid->setColumnHidden(column, RenameListModel::isHiddenColumn(column));
    const int narrow = m_renameGrid->fontMetrics().horizontalAdvance(QStringLiteral("选择")) + 16;
    m_renameGrid->setColumnWidth(RenameListModel::ColSelected, narrow);
    m_renameGrid->setColumnWidth(RenameListModel::ColIcon, 28);
    m_renameGrid->setColumnWidth(RenameListModel::ColState, 28);
    connect(header, &QHeaderView::sectionClicked, this, &MainWindow::sortByColumn);
    // The field pickers of the metadata pages follow the current row.
    connect(m_renameGrid->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [fieldPages](const QModelIndex& current) {
                for (TFrameFileRenameMetadata* fields : fieldPages)
                    fields->showFieldsOf(current.isValid() ? current.row() : -1);
            });
    connect(m_renameModel, &RenameListModel::ticksChanged, this, &MainWindow::scheduleRerun);

    m_commandModel = new CommandListModel(m_session.commandList(), this);
    m_commandGrid = makeGrid(page, QStringLiteral("NextGridCommand"));
    m_commandGrid->setModel(m_commandModel);
    m_commandGrid->setSelectionMode(QAbstractItemView::SingleSelection);
    m_commandGrid->horizontalHeader()->setSectionResizeMode(CommandListModel::ColComment, QHeaderView::Stretch);
    m_commandGrid->setColumnWidth(CommandListModel::ColNumber, 44);
    m_commandGrid->setColumnWidth(CommandListModel::ColCode, 48);
    m_commandGrid->setColumnWidth(CommandListModel::ColSection, 210);
    m_commandGrid->setColumnWidth(CommandListModel::ColStatus, 44);
    connect(m_commandGrid, &QTableView::clicked, this, &MainWindow::commandChosen);
    connect(m_commandGrid, &QTableView::activated, this, &MainWindow::commandChosen);

    m_messageModel = new MessageModel(m_session.messages(), this);
    m_messageGrid = new QListView(page);
    m_messageGrid->setObjectName(QStringLiteral("NextGridMsg"));
    m_messageGrid->setModel(m_messageModel);
    m_messageGrid->setUniformItemSizes(true);
    m_messageGrid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    connect(m_messageGrid, &QListView::clicked, this, &MainWindow::showLinkedRow);
    connect(m_messageModel, &MessageModel::linesShown, m_messageGrid, &QListView::scrollToBottom);

    auto* listSide = new QWidget(page);
    auto* listLayout = new QVBoxLayout(listSide);
    listLayout->setContentsMargins(0, 0, 0, 0);
    listLayout->addWidget(m_loadBar);
    listLayout->addWidget(m_renameGrid, 1);

    auto* top = new QSplitter(Qt::Horizontal, page);
    top->addWidget(m_panel);
    top->addWidget(listSide);
    top->setStretchFactor(1, 1);
    top->setSizes({340, 940});

    auto* bottom = new QSplitter(Qt::Horizontal, page);
    bottom->addWidget(m_commandGrid);
    bottom->addWidget(m_messageGrid);
    bottom->setSizes({640, 640});

    auto* whole = new QSplitter(Qt::Vertical, page);
    whole->setObjectName(QStringLiteral("FileRenameSplitter"));
    whole->addWidget(top);
    whole->addWidget(bottom);
    whole->setStretchFactor(0, 1);
    whole->setSizes({560, 180});

    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(whole);

    connect(m_loadBar, &LoadBar::loadPathRequested, this, &MainWindow::loadTypedPath);
    connect(m_loadBar, &LoadBar::traverseRequested, this, &MainWindow::traverseList);
    connect(m_loadBar, &LoadBar::filterRequested, this, &MainWindow::filterList);
    connect(m_loadBar, &LoadBar::trueIconsToggled, m_renameModel, &RenameListModel::setTrueIcons);
    connect(m_loadBar, &LoadBar::settingsChanged, this, &MainWindow::scheduleSave);
    return page;
}

QAction* MainWindow::addAction(const QString& name, const QString& text, void (MainWindow::*slot)(),
                               const QKeySequence& shortcut)
{
    auto* action = new QAction(text, this);
    action->setObjectName(name);
    if (!shortcut.isEmpty())
        action->setShortcut(shortcut);
    connect(action, &QAction::triggered, this, slot);
    m_actions.insert(name, action);
    QMainWindow::addAction(action);  // shortcuts work wherever the focus is
    return action;
}

QAction* MainWindow::action(const QString& name) const { return m_actions.value(name); }

void MainWindow::buildActions()
{
    QStyle* style = QApplication::style();
    addAction(QStringLiteral("MMenuFileAddFiles"), tr("添加一个或多个文件"), &MainWindow::addFiles,
              QKeySequence(Qt::CTRL | Qt::Key_O))
        ->setIcon(style->standardIcon(QStyle::SP_FileIcon));
    addAction(QStringLiteral("MMenuFileAddFolder"), tr("添加一个或多个文件夹及文件夹下的对象(&D)"),
              &MainWindow::addFolders, QKeySequence(Qt::CTRL | Qt::Key_D))
        ->setIcon(style->standardIcon(QStyle::SP_DirIcon));
    addAction(QStringLiteral("MMenuFileAddFileListFile"), tr("导入一个带路径的文件名列表文本文件(&F)"),
              &MainWindow::addListFile);
    addAction(QStringLiteral("MMenuFileExportProgramme"), tr("导出更名方案(&M)"), &MainWindow::exportProgramme);
    addAction(QStringLiteral("MMenuFileImportProgramme"), tr("导入更名方案或快照文件(&I)"),
              &MainWindow::importProgramme);
    addAction(QStringLiteral("MMenuFileExportContrast"), tr("导出更名对照列表文件(&E)"), &MainWindow::exportContrast);
    addAction(QStringLiteral("MMenuFileExit"), tr("退出(&X)"), &MainWindow::exitProgram, QKeySequence::Quit);

    addAction(QStringLiteral("MMenuCMDEndCurrent"), tr("结束当前命令（插入空命令）"), &MainWindow::endCommand,
              QKeySequence(Qt::CTRL | Qt::Key_E));
    addAction(QStringLiteral("MMenuCMDDeleteLast"), tr("删除最后一条命令(&D)"), &MainWindow::deleteLastCommand);
    addAction(QStringLiteral("PMenuCMDDeleteAfter"), tr("删除选择项之后的命令(&C)"),
              &MainWindow::deleteCommandsAfterChosen);
    addAction(QStringLiteral("MMenuCMDClear"), tr("清空命令列表"), &MainWindow::clearCommands);
    addAction(QStringLiteral("MMenuCMDRefresh"), tr("刷新命令列表(&R)"), &MainWindow::refreshCommands);
    addAction(QStringLiteral("MMenuCMDSaveToFile"), tr("保存批处理命令(&S)"), &MainWindow::saveCommands,
              QKeySequence(Qt::CTRL | Qt::Key_S))
        ->setIcon(style->standardIcon(QStyle::SP_DialogSaveButton));
    addAction(QStringLiteral("MMenuCMDLoadFromFile"), tr("载入批处理命令(&L)"), &MainWindow::loadCommands,
              QKeySequence(Qt::CTRL | Qt::Key_L))
        ->setIcon(style->standardIcon(QStyle::SP_DialogOpenButton));
    addAction(QStringLiteral("MMenuCMDClearRecent"), tr("清除最近的批处理文件列表(&C)"),
              &MainWindow::clearRecentCommands);

    addAction(QStringLiteral("MMenuGoPreview"), tr("预览更名结果"), &MainWindow::preview, QKeySequence(Qt::Key_F5))
        ->setIcon(style->standardIcon(QStyle::SP_FileDialogContentsView));
    addAction(QStringLiteral("MMenuGoRename"), tr("应用更名结果"), &MainWindow::apply, QKeySequence(Qt::Key_F9))
        ->setIcon(style->standardIcon(QStyle::SP_DialogApplyButton));
    addAction(QStringLiteral("MMenuGoBack"), tr("撤销上次更名操作"), &MainWindow::undo,
              QKeySequence(Qt::CTRL | Qt::Key_Z))
        ->setIcon(style->standardIcon(QStyle::SP_ArrowBack));
    addAction(QStringLiteral("MMenuGoExportSnapshot"), tr("查看和导出快照文件(&V)"), &MainWindow::showSnapshots);

    addAction(QStringLiteral("PMenuNGFileRenameTickAll"), tr("全部选择"), &MainWindow::tickAll);
    addAction(QStringLiteral("PMenuNGFileRenameTickNone"), tr("全部不选"), &MainWindow::tickNone);
    addAction(QStringLiteral("PMenuNGFileRenameTickInvert"), tr("反向选择"), &MainWindow::invertTicks);
    addAction(QStringLiteral("PMenuNGFileRenameRemove"), tr("从列表中移除选中的行"), &MainWindow::removeChosenRows,
              QKeySequence(Qt::Key_Delete))
        ->setShortcutContext(Qt::WidgetShortcut);
    addAction(QStringLiteral("PMenuNGFileRenameClear"), tr("清空更名文件列表"), &MainWindow::clearList);

    // Settings kept in "Operation Config" and "Interface Config" that the window shows.
    auto* autoPreview = new QAction(tr("自动预览"), this);
    autoPreview->setObjectName(QStringLiteral("MMenuSetAutoPreview"));
    autoPreview->setCheckable(true);
    m_actions.insert(autoPreview->objectName(), autoPreview);
    auto* trueIcons = new QAction(tr("显示实际图标"), this);
    trueIcons->setObjectName(QStringLiteral("MMenuSetShowTrueIcon"));
    trueIcons->setCheckable(true);
    m_actions.insert(trueIcons->objectName(), trueIcons);
    auto* friendly = new QAction(tr("以 KB、MB、GB 显示文件大小"), this);
    friendly->setObjectName(QStringLiteral("MMenuSetFileSizeFriendly"));
    friendly->setCheckable(true);
    m_actions.insert(friendly->objectName(), friendly);
    addAction(QStringLiteral("MMenuSetClearHistory"), tr("清除功能页的下拉框历史记录"),
              &MainWindow::clearPageHistories);
    addAction(QStringLiteral("MMenuSetConfig"), tr("选项设置(&O)..."), &MainWindow::openSettings);
    addAction(QStringLiteral("MMenuSetUVUSER"), tr("用户自定义元变量 <USER0>~<USER9>"), &MainWindow::defineUserLists);
    addAction(QStringLiteral("MMenuSetViewUVUSER"), tr("查看用户自定义元变量(&V)"), &MainWindow::viewUserLists);

    connect(autoPreview, &QAction::toggled, this, [this](bool on) { m_autoPreview->setChecked(on); });
    connect(trueIcons, &QAction::toggled, this, [this](bool on) { m_loadBar->trueIconsBox()->setChecked(on); });
    connect(m_loadBar->trueIconsBox(), &QCheckBox::toggled, trueIcons, &QAction::setChecked);
    connect(friendly, &QAction::toggled, this, [this](bool on) {
        m_session.settings().writeBool(keys::kOperation, keys::kFileSizeFriendly, on);
        m_renameModel->setFriendlySizes(on);
        scheduleSave();
    });

    // The rename grid's and the command grid's own menus.
    m_renameGrid->addActions({action(QStringLiteral("PMenuNGFileRenameTickAll")),
                              action(QStringLiteral("PMenuNGFileRenameTickNone")),
                              action(QStringLiteral("PMenuNGFileRenameTickInvert")), separator(this),
                              action(QStringLiteral("PMenuNGFileRenameRemove")),
                              action(QStringLiteral("PMenuNGFileRenameClear")), separator(this),
                              action(QStringLiteral("MMenuGoPreview")), action(QStringLiteral("MMenuGoRename"))});
    m_commandGrid->addActions({action(QStringLiteral("PMenuCMDDeleteAfter")), separator(this),
                               action(QStringLiteral("MMenuCMDEndCurrent")),
                               action(QStringLiteral("MMenuCMDDeleteLast")), action(QStringLiteral("MMenuCMDClear")),
                               action(QStringLiteral("MMenuCMDRefresh"))});
}

void MainWindow::buildMenus()
{
    QMenu* file = menuBar()->addMenu(tr("文件(&F)"));
    file->setObjectName(QStringLiteral("MMenuFile"));
    file->addAction(action(QStringLiteral("MMenuFileAddFiles")));
    file->addAction(action(QStringLiteral("MMenuFileAddFolder")));
    file->addAction(action(QStringLiteral("MMenuFileAddFileListFile")));
    file->addSeparator();
    file->addAction(action(QStringLiteral("MMenuFileExportProgramme")));
    file->addAction(action(QStringLiteral("MMenuFileImportProgramme")));
    file->addAction(action(QStringLiteral("MMenuFileExportContrast")));
    file->addSeparator();
    file->addAction(action(QStringLiteral("MMenuFileExit")));

    QMenu* commands = menuBar()->addMenu(tr("命令(&C)"));
    commands->addAction(action(QStringLiteral("MMenuCMDEndCurrent")));
    commands->addAction(action(QStringLiteral("MMenuCMDDeleteLast")));
    commands->addAction(action(QStringLiteral("MMenuCMDClear")));
    commands->addAction(action(QStringLiteral("MMenuCMDRefresh")));
    commands->addSeparator();
    commands->addAction(action(QStringLiteral("MMenuCMDSaveToFile")));
    commands->addAction(action(QStringLiteral("MMenuCMDLoadFromFile")));
    m_recentMenu = commands->addMenu(tr("最近打开的批处理命令(&T)"));
    m_recentMenu->setObjectName(QStringLiteral("MMenuCMDRecent"));
    connect(m_recentMenu, &QMenu::aboutToShow, this, &MainWindow::fillRecentMenu);
    fillRecentMenu();

    QMenu* go = menuBar()->addMenu(tr("更名(&R)"));
    go->addAction(action(QStringLiteral("MMenuGoPreview")));
    go->addAction(action(QStringLiteral("MMenuGoRename")));
    go->addAction(action(QStringLiteral("MMenuGoBack")));
    go->addSeparator();
    go->addAction(action(QStringLiteral("MMenuGoExportSnapshot")));

    QMenu* settings = menuBar()->addMenu(tr("设置(&S)"));
    settings->addAction(action(QStringLiteral("MMenuSetAutoPreview")));
    settings->addAction(action(QStringLiteral("MMenuSetShowTrueIcon")));
    settings->addAction(action(QStringLiteral("MMenuSetFileSizeFriendly")));
    settings->addSeparator();
    settings->addAction(action(QStringLiteral("MMenuSetClearHistory")));
    settings->addSeparator();
    settings->addAction(action(QStringLiteral("MMenuSetUVUSER")));
    settings->addAction(action(QStringLiteral("MMenuSetViewUVUSER")));
    settings->addSeparator();
    settings->addAction(action(QStringLiteral("MMenuSetConfig")));
}

void MainWindow::buildToolBar()
{
    m_toolBar = addToolBar(tr("工具栏"));
    m_toolBar->setObjectName(QStringLiteral("ToolBarMain"));
    m_toolBar->setMovable(false);
    m_toolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_toolBar->addAction(action(QStringLiteral("MMenuFileAddFiles")));
    m_toolBar->addAction(action(QStringLiteral("MMenuFileAddFolder")));
    m_toolBar->addSeparator();
    m_toolBar->addAction(action(QStringLiteral("MMenuGoPreview")));
    m_toolBar->addAction(action(QStringLiteral("MMenuGoRename")));
    m_toolBar->addAction(action(QStringLiteral("MMenuGoBack")));
    m_toolBar->addSeparator();

    m_autoPreview = new QCheckBox(tr("自动预览"), m_toolBar);
    m_autoPreview->setObjectName(QStringLiteral("CheckBoxAutoPreview"));
    m_previewFirst = new QCheckBox(tr("只预览前"), m_toolBar);
    m_previewFirst->setObjectName(QStringLiteral("CheckBoxAutoPreviewBefore"));
    m_previewCount = new QLineEdit(m_toolBar);
    m_previewCount->setObjectName(QStringLiteral("EditAutoPreviewNum"));
    m_previewCount->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]{0,3}")), m_previewCount));
    m_previewCount->setMaxLength(3);
    m_previewCount->setFixedWidth(m_previewCount->fontMetrics().horizontalAdvance(QStringLiteral("0000")) + 12);
    m_toolBar->addWidget(m_autoPreview);
    m_toolBar->addWidget(m_previewFirst);
    m_toolBar->addWidget(m_previewCount);

    auto write = [this](const QString& key, auto value) {
        SettingsStore& settings = m_session.settings();
        if constexpr (std::is_same_v<decltype(value), bool>)
            settings.writeBool(keys::kOperation, key, value);
        else
            settings.writeInt(keys::kOperation, key, value);
        scheduleSave();
        scheduleRerun();
    };
    connect(m_autoPreview, &QCheckBox::toggled, this, [this, write](bool on) {
        action(QStringLiteral("MMenuSetAutoPreview"))->setChecked(on);
        write(keys::kAutoPreview, on);
    });
    connect(m_previewFirst, &QCheckBox::toggled, this, [write](bool on) { write(keys::kAutoPreviewBefore, on); });
    connect(m_previewCount, &QLineEdit::textEdited, this, [write](const QString& text) {
        if (!text.isEmpty())
            write(keys::kAutoPreviewNum, text.toLongLong());
    });
}

void MainWindow::buildStatusBar()
{
    m_statusText = new QLabel(this);
    m_statusText->setObjectName(QStringLiteral("StatusText"));
    m_rowCount = new QLabel(this);
    m_progress = new QProgressBar(this);
    m_progress->setObjectName(QStringLiteral("ProgressBar"));
    m_progress->setRange(0, 100);
    m_progress->setMinimumWidth(260);
    m_progress->setVisible(false);
    statusBar()->addWidget(m_statusText, 1);
    statusBar()->addPermanentWidget(m_progress);
    statusBar()->addPermanentWidget(m_rowCount);
}

void MainWindow::syncOptionsFromSettings()
{
    const SettingsStore& settings = m_session.settings();
    m_loadBar->syncFromSession();
    {
        const QSignalBlocker a(m_autoPreview), b(m_previewFirst);
        m_autoPreview->setChecked(settings.readBool(keys::kOperation, keys::kAutoPreview, true));
        m_previewFirst->setChecked(settings.readBool(keys::kOperation, keys::kAutoPreviewBefore, false));
    }
    m_previewCount->setText(QString::number(settings.readInt(keys::kOperation, keys::kAutoPreviewNum, 10)));
    const bool trueIcons = settings.readBool(keys::kInterface, keys::kShowTrueIcon, false);
    const bool friendly = settings.readBool(keys::kOperation, keys::kFileSizeFriendly, false);
    for (auto [name, on] : {std::pair{QStringLiteral("MMenuSetAutoPreview"), m_autoPreview->isChecked()},
                            std::pair{QStringLiteral("MMenuSetShowTrueIcon"), trueIcons},
                            std::pair{QStringLiteral("MMenuSetFileSizeFriendly"), friendly}}) {
        const QSignalBlocker blocker(action(name));
        action(name)->setChecked(on);
    }
    m_renameModel->setTrueIcons(trueIcons);
    m_renameModel->setFriendlySizes(friendly);
}

// ---------------------------------------------------------------------------------------
// Running operations

void MainWindow::afterOperation()
{
    m_renameModel->refresh();
    m_commandModel->refresh();
    m_messageModel->flush();
    updateActions();
    scheduleSave();
}

void MainWindow::refreshAfterCommandChange()
{
    m_renameModel->refresh();
    m_commandModel->refresh();
    m_messageModel->flush();
    updateActions();
    scheduleSave();
}

void MainWindow::updateActions()
{
    const bool rows = !m_session.renameList().isEmpty();
    const CommandList& commands = m_session.commandList();
    for (const char* name : {"MMenuGoPreview", "MMenuGoRename", "MMenuFileExportProgramme", "MMenuFileExportContrast",
                             "PMenuNGFileRenameTickAll",
                             "PMenuNGFileRenameTickNone", "PMenuNGFileRenameTickInvert", "PMenuNGFileRenameRemove",
                             "PMenuNGFileRenameClear"})
        action(QLatin1String(name))->setEnabled(rows);
    m_loadBar->traverseButton()->setEnabled(rows);
    for (const char* name : {"MMenuCMDDeleteLast", "MMenuCMDClear", "MMenuCMDSaveToFile", "PMenuCMDDeleteAfter"})
        action(QLatin1String(name))->setEnabled(!commands.isEmpty());
    action(QStringLiteral("MMenuCMDEndCurrent"))->setEnabled(rows && commands.lastIsOpen());
    action(QStringLiteral("MMenuGoBack"))->setEnabled(m_session.applyCounter() > 0);
    action(QStringLiteral("MMenuGoExportSnapshot"))->setEnabled(m_session.applyCounter() > 0);
    action(QStringLiteral("MMenuSetClearHistory"))->setEnabled(m_panel->hasHistories());
    m_rowCount->setText(tr("更名文件列表对象 %1 个").arg(m_session.renameList().size()));
    updateShellActions();
}

void MainWindow::setControlsEnabled(bool enabled)
{
    // The window itself stays enabled: a question asked in the middle of an operation is a
    // child of it and would be disabled with it.
    m_tabs->setEnabled(enabled);
    menuBar()->setEnabled(enabled);
    m_toolBar->setEnabled(enabled);
}

void MainWindow::scheduleSave() { m_saveTimer.start(); }

void MainWindow::scheduleRerun() { m_rerunTimer.start(); }

void MainWindow::fitColumns()
{
    for (int column = RenameListModel::ColName; column < RenameListModel::ColumnCount; ++column) {
        if (m_renameGrid->isColumnHidden(column) || column == RenameListModel::ColState)
            continue;
        m_renameGrid->resizeColumnToContents(column);
        if (m_renameGrid->columnWidth(column) > kWidestFittedColumn)
            m_renameGrid->setColumnWidth(column, kWidestFittedColumn);
    }
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    // An operation is pumping events under this window: it cannot go away now.
    if (m_running || m_interaction.busy()) {
        m_interaction.requestStop();
        event->ignore();
        return;
    }
    m_saveTimer.stop();
    m_session.saveSettings();
    QMainWindow::closeEvent(event);
}

// ---------------------------------------------------------------------------------------
// Dropped files

bool MainWindow::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_renameGrid->viewport()) {
        switch (event->type()) {
        case QEvent::DragEnter:
        case QEvent::DragMove: {
            auto* drag = static_cast<QDropEvent*>(event);
            if (drag->mimeData()->hasUrls() && !m_interaction.busy()) {
                drag->acceptProposedAction();
                return true;
            }
            break;
        }
        case QEvent::Drop: {
            auto* drop = static_cast<QDropEvent*>(event);
            QStringList paths;
            for (const QUrl& url : drop->mimeData()->urls()) {
                if (url.isLocalFile())
                    paths.append(internalSeparators(QDir::cleanPath(url.toLocalFile())));
            }
            drop->acceptProposedAction();
            // Loading opens questions and pumps events: not inside the drop's own handler.
            QTimer::singleShot(0, this, [this, paths] { loadPaths(paths); });
            return true;
        }
        default:
            break;
        }
    }
    return QMainWindow::eventFilter(watched, event);
}

}  // namespace qp::ui
