// The "元变量" quick-insert menu beside a command text box: every meta-variable tag, grouped
// by what it reads (the metadata field tags by family), with a short description. Choosing one inserts the tag at the text
// box's cursor; tags that hash file contents or walk folders warn first, unless the user
// switched that warning off.
#pragma once

#include <QObject>
#include <QString>

#include "ui/widgets/DialogRunner.h"

class QLineEdit;
class QMenu;
class QWidget;

namespace qp {
class Session;
class SettingsStore;
}

namespace qp::ui {

enum class TagWarning { None, Hash, FolderTraversal };

// The warning inserting `tag` ("<MD5>") calls for under the present settings: content
// hashes unless "IgnoreUseHashUnitVariableWarning"; folder tags unless
// "IgnoreUseFindFolderUnitVariableWarning", and only when their depth is 0 (every level)
// or 2 and more.
TagWarning tagWarning(const SettingsStore& settings, const QString& tag);
// The folder depth a folder tag's stored parameter asks for (its first number; none: 0).
qint64 folderTagDepth(const SettingsStore& settings, const QString& tag);

class MetaVariableInserter : public QObject {
    Q_OBJECT
public:
    // `dialogParent` owns the warning forms while they are shown.
    MetaVariableInserter(Session& session, QWidget* dialogParent);

    void setDialogRunner(DialogRunner runner) { m_runner = std::move(runner); }

    // A menu of every tag whose entries insert into `target`.
    QMenu* createMenu(QLineEdit* target, QWidget* parent);
    // Shows the warning the tag calls for; false when the user chose "取消(&C)". A ticked
    // "忽略此提示对话框" is saved whichever button closed the form.
    bool confirm(const QString& tag);
    // Inserts the tag at the cursor (replacing a selection) once confirmed.
    bool insert(QLineEdit* target, const QString& tag);

private:
    Session& m_session;
    QWidget* m_dialogParent;
    DialogRunner m_runner = runModal;
};

}  // namespace qp::ui
