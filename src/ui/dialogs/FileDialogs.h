// The open and save dialogs of the window, each starting in the folder it used last (kept
// under its own key of "Interface Config"), and the folder picker that takes several folders
// at once. Every dialog runs through GuiInteraction::runModal, so tests answer it through
// its own widgets.
#pragma once

#include <QDialog>
#include <QString>
#include <QStringList>

#include "ui/widgets/DialogRunner.h"

class QFileSystemModel;
class QLineEdit;
class QTreeView;

namespace qp {
class Session;
}

namespace qp::ui {

class GuiInteraction;

struct FileDialogOptions {
    QString title;
    QString filter;         // Qt's form: "说明 (*.txt)"
    QString defaultSuffix;  // without the dot
    QString folderKey;      // "Interface Config" key of the folder to start in
    bool save = false;      // a save dialog (asks before replacing a file)
    bool several = false;   // several files may be chosen
};

// The chosen files, '/'-separated; empty when cancelled. The folder is remembered.
QStringList chooseFiles(GuiInteraction& ui, QWidget* parent, Session& session, const FileDialogOptions& options);
QString chooseFile(GuiInteraction& ui, QWidget* parent, Session& session, const FileDialogOptions& options);
// The same through a page's dialog runner.
QStringList chooseFiles(const DialogRunner& run, QWidget* parent, Session& session, const FileDialogOptions& options);
QString chooseFile(const DialogRunner& run, QWidget* parent, Session& session, const FileDialogOptions& options);

// "添加一个或多个文件夹及文件夹下的对象": several folders, starting in the folder of
// "SelectFolderDialogInitFolderNameOpen".
QStringList chooseFolders(GuiInteraction& ui, QWidget* parent, Session& session);

// A folder tree from which several folders can be chosen (the file dialogs of the desktop
// choose one folder at a time).
class TSelectFoldersForm : public QDialog {
    Q_OBJECT
public:
    explicit TSelectFoldersForm(const QString& startFolder, QWidget* parent = nullptr);

    // The chosen folders, '/'-separated, in the order they were chosen.
    QStringList selectedFolders() const;
    // Chooses these folders (as a click with Ctrl on each would).
    void selectFolders(const QStringList& folders);

private:
    void goTo(const QString& folder);

    QFileSystemModel* m_model = nullptr;
    QTreeView* m_tree = nullptr;
    QLineEdit* m_where = nullptr;
};

}  // namespace qp::ui
