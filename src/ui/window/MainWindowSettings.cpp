// The window's settings menu: the options form and the user meta-variables.
#include "ui/window/MainWindow.h"

#include "ui/dialogs/ConfigForm.h"
#include "ui/dialogs/UserMetaVariableForms.h"

namespace qp::ui {

void MainWindow::openSettings()
{
    if (m_running || m_interaction.busy())
        return;
    TConfigForm form(m_session.settings(), this);
    if (m_interaction.runModal(form) != QDialog::Accepted)
        return;
    syncOptionsFromSettings();
    scheduleSave();
    // A parameter changes what a tag means in every command: the new names follow at once.
    if (form.newNamesAffected())
        guarded([this] { m_session.runAllCommands(); });
}

void MainWindow::defineUserLists()
{
    if (m_running || m_interaction.busy())
        return;
    // Defining a list first previews, as "预览更名结果" does, so it takes the names as they
    // would be given.
    TUVUSERSelectForm form(m_session, [this] { preview(); }, this);
    m_interaction.runModal(form);
}

void MainWindow::viewUserLists()
{
    TViewUVUSERForm form(m_session, this);
    m_interaction.runModal(form);
}

}  // namespace qp::ui
