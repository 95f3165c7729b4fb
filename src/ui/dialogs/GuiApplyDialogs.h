// Apply's questions answered with the window's forms.
#pragma once

#include "execution/RenameRunner.h"

class QWidget;

namespace qp {
class Session;
}

namespace qp::ui {

class GuiInteraction;

class GuiApplyDialogs : public ApplyDialogs {
public:
    GuiApplyDialogs(Session& session, GuiInteraction& ui, QWidget* parent)
        : m_session(session)
        , m_ui(ui)
        , m_parent(parent)
    {
    }

    ApplyMode chooseMode(qsizetype rows) override;
    ConflictAnswer conflictWarning(const PreviewResult& preview) override;
    ChoiceAnswer attributeQuestion(bool system, const QString& path, int preselected) override;
    ChoiceAnswer tooLongQuestion(const QString& path, const QString& proposed, const QString& corrected,
                                 int preselected) override;

private:
    bool isFolderRow(const QString& path) const;

    Session& m_session;
    GuiInteraction& m_ui;
    QWidget* m_parent;
};

}  // namespace qp::ui
