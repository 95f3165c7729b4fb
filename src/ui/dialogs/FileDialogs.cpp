#include "ui/dialogs/FileDialogs.h"

#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileSystemModel>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

#include "core/PathText.h"
#include "core/Session.h"
#include "core/SettingsKeys.h"
#include "ui/GuiInteraction.h"

namespace qp::ui {

namespace {

QString startFolder(const Session& session, const QString& key)
{
    const QString folder = session.settings().readString(keys::kInterface, key, QString());
    return folder.isEmpty() ? QDir::homePath() : nativeSeparators(folder);
}

void rememberFolder(Session& session, const QString& key, const QString& path, bool isFolder)
{
    const QString internal = internalSeparators(path);
    session.settings().writeString(keys::kInterface, key, isFolder ? internal : splitPath(internal).folder);
    session.saveSettings();
}

}  // namespace

QStringList chooseFiles(GuiInteraction& ui, QWidget* parent, Session& session, const FileDialogOptions& options)
{
    return chooseFiles([&ui](QDialog& dialog) { return ui.runModal(dialog); }, parent, session, options);
}

QString chooseFile(GuiInteraction& ui, QWidget* parent, Session& session, const FileDialogOptions& options)
{
    const QStringList files = chooseFiles(ui, parent, session, options);
    return files.isEmpty() ? QString() : files.first();
}

QStringList chooseFiles(const DialogRunner& run, QWidget* parent, Session& session, const FileDialogOptions& options)
{
    QFileDialog dialog(parent, options.title, startFolder(session, options.folderKey), options.filter);
    dialog.setObjectName(QStringLiteral("FileDialog"));
    dialog.setAcceptMode(options.save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(options.save ? QFileDialog::AnyFile
                                 : (options.several ? QFileDialog::ExistingFiles : QFileDialog::ExistingFile));
    if (!options.defaultSuffix.isEmpty())
        dialog.setDefaultSuffix(options.defaultSuffix);
    if (run(dialog) != QDialog::Accepted)
        return {};
    QStringList files;
    for (const QString& file : dialog.selectedFiles())
        files.append(internalSeparators(QDir::cleanPath(file)));
    if (!files.isEmpty())
        rememberFolder(session, options.folderKey, files.first(), false);
    return files;
}

QString chooseFile(const DialogRunner& run, QWidget* parent, Session& session, const FileDialogOptions& options)
{
    const QStringList files = chooseFiles(run, parent, session, options);
    return files.isEmpty() ? QString() : files.first();
}

QStringList chooseFolders(GuiInteraction& ui, QWidget* parent, Session& session)
{
    TSelectFoldersForm form(startFolder(session, keys::kAddFolderFolder), parent);
    if (ui.runModal(form) != QDialog::Accepted)
        return {};
    const QStringList folders = form.selectedFolders();
    if (!folders.isEmpty()) {
        // The next time starts where these were: in the folder that holds them.
        rememberFolder(session, keys::kAddFolderFolder, splitPath(folders.first()).folder, true);
    }
    return folders;
}

TSelectFoldersForm::TSelectFoldersForm(const QString& startFolder, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("TSelectFoldersForm"));
    setWindowTitle(tr("请选择一个或多个文件夹"));
    resize(520, 560);
    m_model = new QFileSystemModel(this);
    m_model->setFilter(QDir::AllDirs | QDir::Drives | QDir::NoDotAndDotDot | QDir::Hidden);
    m_model->setRootPath(QString());
    m_tree = new QTreeView(this);
    m_tree->setModel(m_model);
    m_tree->setSelectionMode(QAbstractItemView::ExtendedSelection);
    for (int column = 1; column < m_model->columnCount(); ++column)
        m_tree->hideColumn(column);
    m_tree->header()->hide();
    m_where = new QLineEdit(this);
    m_where->setPlaceholderText(tr("输入文件夹路径后按回车"));

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setText(tr("确定"));
    buttons->button(QDialogButtonBox::Cancel)->setText(tr("取消"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_where, &QLineEdit::returnPressed, this, [this] { goTo(m_where->text()); });
    connect(m_tree->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this, ok = buttons->button(QDialogButtonBox::Ok)] { ok->setEnabled(!selectedFolders().isEmpty()); });
    buttons->button(QDialogButtonBox::Ok)->setEnabled(false);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(tr("将选中的文件夹载入文件列表"), this));
    layout->addWidget(m_where);
    layout->addWidget(m_tree, 1);
    layout->addWidget(buttons);
    goTo(startFolder);
}

void TSelectFoldersForm::goTo(const QString& folder)
{
    const QModelIndex index = m_model->index(QDir::fromNativeSeparators(folder));
    if (!index.isValid())
        return;
    m_tree->setCurrentIndex(index);
    m_tree->expand(index);
    m_tree->scrollTo(index, QAbstractItemView::PositionAtTop);
    m_where->setText(QDir::toNativeSeparators(m_model->filePath(index)));
}

QStringList TSelectFoldersForm::selectedFolders() const
{
    const QModelIndexList rows = m_tree->selectionModel()->selectedRows();
    QStringList folders;
    for (const QModelIndex& index : rows)
        folders.append(internalSeparators(m_model->filePath(index)));
    return folders;
}

void TSelectFoldersForm::selectFolders(const QStringList& folders)
{
    QItemSelectionModel* selection = m_tree->selectionModel();
    selection->clearSelection();
    for (const QString& folder : folders) {
        const QModelIndex index = m_model->index(QDir::fromNativeSeparators(folder));
        if (index.isValid())
            selection->select(index, QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
}

}  // namespace qp::ui
