#include "ui/dialogs/GuiApplyDialogs.h"

#include "core/PathText.h"
#include "core/Session.h"
#include "execution/Snapshot.h"
#include "ui/GuiInteraction.h"
#include "ui/dialogs/ApplyForms.h"

namespace qp::ui {

ApplyMode GuiApplyDialogs::chooseMode(qsizetype rows)
{
    TSimpleRenameSelectForm form(rows, m_parent);
    m_ui.runModal(form);
    return form.mode();
}

ConflictAnswer GuiApplyDialogs::conflictWarning(const PreviewResult& preview)
{
    TRenameWarningForm form(m_session.renameList(), preview, m_parent);
    m_ui.runModal(form);
    return form.answer();
}

ChoiceAnswer GuiApplyDialogs::attributeQuestion(bool system, const QString& path, int preselected)
{
    TFileNameAttribWarningForm form(system, path, preselected, m_parent);
    m_ui.runModal(form);
    return form.answer();
}

bool GuiApplyDialogs::isFolderRow(const QString& path) const
{
    // The question is about one object now and then; a walk over the rows is cheap next to
    // the person answering it. The object may already sit under its temporary name.
    const QString key = pathKey(path);
    for (const FileEntry& row : m_session.renameList().rows()) {
        if (!row.isFolder)
            continue;
        if (pathKey(row.fullPath()) == key || pathKey(row.path + kTemporaryPrefix + row.fileName()) == key)
            return true;
    }
    return false;
}

ChoiceAnswer GuiApplyDialogs::tooLongQuestion(const QString& path, const QString& proposed, const QString& corrected,
                                              int preselected)
{
    const QString folder = splitPath(path).folder;
    const bool folderRow = isFolderRow(path);
    auto correctedFor = [=](int choice) -> QString {
        if (choice == preselected && !corrected.isEmpty())
            return corrected;
        const NameParts parts = splitFileName(proposed, folderRow);
        const auto shortened =
            shortenName(folder, parts.name, parts.ext, folderRow, Shortening(choice), platformLengthRule());
        return shortened ? shortened->name + shortened->ext : QString();
    };
    TFileNameTooLongWarningForm form(path, proposed, correctedFor, preselected, m_parent);
    m_ui.runModal(form);
    return form.answer();
}

}  // namespace qp::ui
