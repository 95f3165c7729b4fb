// The function pages of the normal family: six sections, "1.N.1.添加与补齐" to
// "1.N.6.字母大小写", in one scrollable frame. Each section's first option, "保持不变", is
// checked at the start; choosing another option or changing any control of the section
// records the section's command in the command list (a new command, or the open one of
// this function updated in place) and runs it, so the new names follow as the user types.
#pragma once

#include <array>

#include "ui/pages/FunctionPage.h"

class QComboBox;
class QPushButton;

namespace qp::ui {

class TFrameFileRenameNormal : public FunctionPage {
    Q_OBJECT
public:
    explicit TFrameFileRenameNormal(Session& session, QWidget* parent = nullptr);
    ~TFrameFileRenameNormal() override;

protected:
    void showEvent(QShowEvent* event) override;
    QString commentOf(const QString& subCode) const override;
    void afterRecording() override { updateAssignState(); }

private:
    // The selection handlers, one per section, wired to every control of the section.
    void N1_SelectedClick();
    void N2_SelectedClick();
    void N3_SelectedClick();
    void N4_SelectedClick();
    void N5_SelectedClick();
    void N6_SelectedClick();

    void buildN1(PageSection& g);
    void buildN2(PageSection& g);
    void buildN3(PageSection& g);
    void buildN4(PageSection& g);
    void buildN5(PageSection& g);
    void buildN6(PageSection& g);

    void openReplaceEditor();
    void openWordEditor();
    void openCharsetEditor();
    void getLongestName();
    void assignNumbers();
    void updateAssignState();

    std::array<PageSection*, 6> m_n{};
    QPushButton* m_assignButton = nullptr;
    QComboBox* m_assignList = nullptr;
};

}  // namespace qp::ui
