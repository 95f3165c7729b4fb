// The main window of QuilletPro. It holds the Session, and every menu item, button and
// toolbar entry calls the same Session operation as the command line does; questions come
// back through GuiInteraction (message boxes) and GuiApplyDialogs (apply's forms).
//
// Page "1.文件名处理" holds the function panel, the load controls, the rename grid, the
// command grid and the message grid. The grids are views over the session's own lists;
// after every operation the window tells their models to read the lists again.
#pragma once

#include <QMainWindow>
#include <QPointer>
#include <QTimer>

#include "core/Session.h"
#include "ui/GuiInteraction.h"

class QCheckBox;
class QLabel;
class QLineEdit;
class QListView;
class QMenu;
class QProgressBar;
class QTabWidget;
class QTableView;
class QToolBar;

namespace qp {
struct ApplyResult;
}

namespace qp::ui {

class CommandListModel;
class FunctionPanel;
class LoadBar;
class MessageModel;
class UpdateChecker;
struct UpdateCheckResult;
class RenameListModel;

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    MainWindow(SettingsStore settings, QString runStamp, QWidget* parent = nullptr);
    ~MainWindow() override;

    Session& session() { return m_session; }
    GuiInteraction& interaction() { return m_interaction; }
    // Tests answer dialogs through their widgets instead of a modal loop.
    void setModalRunner(ModalRunner runner) { m_interaction.setModalRunner(std::move(runner)); }

    FunctionPanel* functionPanel() const { return m_panel; }
    LoadBar* loadBar() const { return m_loadBar; }
    QTableView* renameGrid() const { return m_renameGrid; }
    RenameListModel* renameModel() const { return m_renameModel; }
    QTableView* commandGrid() const { return m_commandGrid; }
    QListView* messageGrid() const { return m_messageGrid; }
    QLabel* statusText() const { return m_statusText; }
    QProgressBar* progressBar() const { return m_progress; }
    // A menu or toolbar action by its object name ("MMenuGoRename", …).
    QAction* action(const QString& name) const;

    // Objects dropped on the list or named on the command line: '/'-separated full paths.
    void loadPaths(const QStringList& paths);

    // Whether an operation is running, so that another cannot start now.
    bool busy() const { return m_running || m_interaction.busy(); }
    // After the window is shown (MainWindowShell.cpp): the welcome page when it is due, then
    // the automatic update check when it is on and due.
    void startShell();
    UpdateChecker* updateChecker() const { return m_updateChecker; }

public slots:
    // A function page recorded, changed or removed a command: the command grid and the new
    // names in the rename grid are shown again. FunctionPanel::addPage connects a page's
    // commandChanged() signal here through the panel.
    void refreshAfterCommandChange();

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // Building the window.
    QWidget* buildFileRenamePage();
    void buildActions();
    void buildMenus();
    void buildToolBar();
    void buildStatusBar();
    QAction* addAction(const QString& name, const QString& text, void (MainWindow::*slot)(),
                       const QKeySequence& shortcut = {});

    // Runs an operation unless one is running already (a second apply cannot start while
    // the first pumps events), then shows the lists as the operation left them.
    template <typename Operation>
    void guarded(Operation&& operation)
    {
        if (m_running || m_interaction.busy())
            return;
        m_running = true;
        struct Done {
            MainWindow* window;
            ~Done()
            {
                window->m_running = false;
                window->afterOperation();
            }
        } done{this};
        operation();
    }
    void afterOperation();
    void updateActions();
    void setControlsEnabled(bool enabled);
    void fitColumns();
    void syncOptionsFromSettings();
    void scheduleSave();
    void scheduleRerun();

    // File menu.
    void addFiles();
    void addFolders();
    void addListFile();
    void loadTypedPath();
    void traverseList();
    void filterList();
    void exportProgramme();
    void importProgramme();
    void exitProgram();
    // Command menu.
    void endCommand();
    void deleteLastCommand();
    void deleteCommandsAfterChosen();
    void clearCommands();
    void refreshCommands();
    void saveCommands();
    void loadCommands();
    void loadCommandFile(const QString& file);
    void clearRecentCommands();
    void fillRecentMenu();
    void clearPageHistories();
    // Settings menu: the options form and the user meta-variables (MainWindowSettings.cpp).
    void openSettings();
    void defineUserLists();
    void viewUserLists();
    // Preview, apply, undo.
    void preview();
    void apply();
    void undo();
    void showCompletion(const ApplyResult& result);
    // "查看和导出快照文件"; true when a snapshot was saved.
    bool viewSnapshots();
    void showSnapshots() { viewSnapshots(); }
    void exportContrast();
    // The rename grid.
    void tickAll();
    void tickNone();
    void invertTicks();
    void setTicks(int how);
    void removeChosenRows();
    void clearList();
    void sortByColumn(int column);
    void showLinkedRow(const QModelIndex& message);
    void commandChosen(const QModelIndex& index);
    // The application shell (MainWindowShell.cpp): the filter tool, the list exports, the
    // help menu (welcome page, update check, file-manager menu, about).
    void buildShellActions();
    void updateShellActions();
    void openFilterTool();
    void exportRenameList(bool chosenOnly);
    void exportAllRows() { exportRenameList(false); }
    void exportChosenRows() { exportRenameList(true); }
    void exportMessages();
    void showWelcome();
    void showAbout();
    void checkForUpdatesNow() { checkForUpdates(true); }
    void checkForUpdates(bool manual);
    void updateCheckFinished(const UpdateCheckResult& result);
    void addToFileManager();
    void removeFromFileManager();

    GuiInteraction m_interaction;
    Session m_session;

    QTabWidget* m_tabs = nullptr;
    FunctionPanel* m_panel = nullptr;
    LoadBar* m_loadBar = nullptr;
    QTableView* m_renameGrid = nullptr;
    RenameListModel* m_renameModel = nullptr;
    QTableView* m_commandGrid = nullptr;
    CommandListModel* m_commandModel = nullptr;
    QListView* m_messageGrid = nullptr;
    MessageModel* m_messageModel = nullptr;
    QToolBar* m_toolBar = nullptr;
    QLabel* m_statusText = nullptr;
    QLabel* m_rowCount = nullptr;
    QProgressBar* m_progress = nullptr;
    QMenu* m_recentMenu = nullptr;
    QCheckBox* m_autoPreview = nullptr;
    QCheckBox* m_previewFirst = nullptr;
    QLineEdit* m_previewCount = nullptr;

    UpdateChecker* m_updateChecker = nullptr;
    bool m_manualUpdateCheck = false;

    QHash<QString, QAction*> m_actions;
    QTimer m_saveTimer;
    QTimer m_rerunTimer;
    bool m_running = false;
    int m_sortColumn = -1;
    Qt::SortOrder m_sortOrder = Qt::AscendingOrder;
};

}  // namespace qp::ui
