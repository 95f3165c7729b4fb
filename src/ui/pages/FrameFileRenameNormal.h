// The function pages of the normal family: six sections, "1.N.1.添加与补齐" to
// "1.N.6.字母大小写", in one scrollable frame. Each section's first option, "保持不变", is
// checked at the start; choosing another option or changing any control of the section
// records the section's command in the command list (a new command, or the open one of
// this function updated in place) and runs it, so the new names follow as the user types.
#pragma once

#include <QWidget>
#include <memory>
#include <vector>

#include "core/CommandList.h"
#include "ui/widgets/DialogRunner.h"

class QComboBox;
class QGroupBox;
class QPushButton;
class QScrollArea;

namespace qp {
class Session;
}

namespace qp::ui {

class MetaVariableInserter;

class TFrameFileRenameNormal : public QWidget {
    Q_OBJECT
public:
    explicit TFrameFileRenameNormal(Session& session, QWidget* parent = nullptr);
    ~TFrameFileRenameNormal() override;

    // Every section back to "保持不变"; records nothing and keeps the other controls.
    void resetToUnchanged();
    // "N1".."N6": scrolls that section to the top of the frame.
    void showSection(const QString& functionCode);
    // Forgets every drop-down history of the page; the texts in the boxes stay.
    void clearHistory();

    // How the page opens its editors and warnings (tests answer them without a screen).
    void setDialogRunner(DialogRunner runner);
    // The section of "N1".."N6", null for any other code.
    QGroupBox* section(const QString& functionCode) const;

signals:
    // A section recorded, changed, ended or removed a command.
    void commandChanged();

protected:
    void showEvent(QShowEvent* event) override;

private:
    struct Group;

    // The selection handlers, one per section, wired to every control of the section.
    void N1_SelectedClick();
    void N2_SelectedClick();
    void N3_SelectedClick();
    void N4_SelectedClick();
    void N5_SelectedClick();
    void N6_SelectedClick();
    RecordAnswer selectedClick(Group& group);
    void writeAndRun(Group& group, const RecordAnswer& answer);
    void okClick(Group& group);

    void buildN1(Group& g);
    void buildN2(Group& g);
    void buildN3(Group& g);
    void buildN4(Group& g);
    void buildN5(Group& g);
    void buildN6(Group& g);
    Group& newGroup(const QString& code, const QString& title, void (TFrameFileRenameNormal::*handler)());

    void openReplaceEditor();
    void openWordEditor();
    void openCharsetEditor();
    void getLongestName();
    void assignNumbers();
    void updateAssignState();

    Session& m_session;
    std::vector<std::unique_ptr<Group>> m_groups;
    QScrollArea* m_scroll = nullptr;
    QWidget* m_content = nullptr;
    MetaVariableInserter* m_inserter = nullptr;
    DialogRunner m_runner = runModal;
    QPushButton* m_assignButton = nullptr;
    QComboBox* m_assignList = nullptr;
    // Set while the page changes its own controls: nothing is recorded then.
    bool m_quiet = false;
};

}  // namespace qp::ui
