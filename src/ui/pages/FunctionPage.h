// What every function page shares: a scrollable column of sections, one per function
// ("1.N.1.添加与补齐", "1.E.3.扩展名自动编号", …). Each section starts with "保持不变",
// checked; choosing another option or changing any control of the section records the
// section's command in the command list (a new command, or the open one of this function
// updated in place), writes the section's keys and runs it, so the new names follow as the
// user types. Its "Ok" button ends the command.
//
// A page derives from FunctionPage, builds its sections with addSection() and the control
// makers of PageSection (each maker registers how its control is stored), and says which
// "CMDComment" goes with a sub-code.
#pragma once

#include <QWidget>
#include <functional>
#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

#include "core/CommandList.h"
#include "ui/widgets/DialogRunner.h"

class QButtonGroup;
class QCheckBox;
class QComboBox;
class QGridLayout;
class QGroupBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QScrollArea;
class QSpinBox;
class QToolButton;
class QVBoxLayout;

namespace qp {
class Session;
class SettingsStore;
}  // namespace qp

namespace qp::ui {

class FunctionPage;
class HistoryComboBox;
class MetaVariableInserter;

// One section of a page: its group box, its options and controls, what each control writes
// into the command's section, and the option that gives the sub-code ("N201", "E703", …).
class PageSection {
public:
    using Writer = std::function<void(SettingsStore&, const QString& section)>;

    // `handler` is the page's selection handler for this section; without one a change
    // records the section directly.
    PageSection(FunctionPage& page, QString code, const QString& title, std::function<void()> handler);

    // Records the section's command (or removes it) as the user changed something.
    void changed();
    QString subCode() const;

    // "保持不变", then the section's "Ok" button.
    QRadioButton* keepOption();
    // The section's first line: "保持不变" and "Ok" on their own, as the narrow panel wants.
    void keepRow();
    // An option of the section; choosing it gives `sub`. `key` (may be empty) stores
    // whether it is chosen, only so that the page can show it again.
    QRadioButton* option(const QString& name, const QString& caption, const QString& sub, const QString& key);
    // A radio button of one of the section's own sets (placement, fill character …).
    QRadioButton* choice(QButtonGroup* set, const QString& name, const QString& caption, const QString& key, bool checked);
    QButtonGroup* newChoiceSet();
    QCheckBox* check(const QString& name, const QString& caption, const QString& key, bool checked);
    QSpinBox* spin(const QString& name, const QString& key, int minimum, int maximum, int value);
    // A fixed list whose stored value is the index of the chosen entry.
    QComboBox* list(const QString& name, const QString& key, const QStringList& items, int index);
    // A short text box without a history (a fill character, say).
    QLineEdit* line(const QString& name, const QString& key, const QString& initial, int width);
    // A text box with its drop-down history ("DATAStore_" + name).
    HistoryComboBox* text(const QString& name, const QString& key, const QString& initial = {}, int width = 12);
    // The "元变量" button beside an expression text box.
    QToolButton* metaButton(HistoryComboBox* target);
    QPushButton* button(const QString& name, const QString& caption);
    QLabel* label(const QString& caption);
    // A label in the placeholder colour, for remarks beside a control.
    QLabel* hint(const QString& caption);
    // One line of controls, indented under the options when `indent` (true, or 1), or
    // further under an indented choice when it is 2 (the rest of a row too long for one line).
    QHBoxLayout* row(std::initializer_list<QWidget*> widgets, int indent = 0);
    // An empty grid in the section's column, indented as row() does; for controls that line
    // up in columns.
    QGridLayout* grid(bool indent = true);
    // Lets a text box of a row take the width the row leaves, so that a small minimum width
    // (for the narrow panel) still gives a long box where there is room.
    static void widen(QHBoxLayout* row, QWidget* box);
    // A writer for a value no single control holds.
    void addWriter(Writer writer) { writers.push_back(std::move(writer)); }

    FunctionPage& page;
    QString code;
    std::function<void()> handler;
    QGroupBox* box = nullptr;
    QVBoxLayout* rows = nullptr;
    QButtonGroup* options = nullptr;
    QRadioButton* keep = nullptr;
    QPushButton* ok = nullptr;
    std::vector<std::pair<QRadioButton*, QString>> subCodes;
    // For sections whose sub-code follows from more than the chosen option.
    std::function<QString()> computedSubCode;
    std::vector<Writer> writers;
    std::vector<HistoryComboBox*> texts;
};

class FunctionPage : public QWidget {
    Q_OBJECT
public:
    ~FunctionPage() override;

    // Every section back to "保持不变"; records nothing and keeps the other controls.
    void resetToUnchanged();
    // Scrolls the section of a function code ("N3", "E7", "A11") to the top of the page.
    void showSection(const QString& functionCode);
    // Forgets every drop-down history of the page; the texts in the boxes stay.
    void clearHistory();
    // How the page opens its editors and warnings (tests answer them without a screen).
    virtual void setDialogRunner(DialogRunner runner);
    // The section of a function code, null for a code the page does not have.
    QGroupBox* section(const QString& functionCode) const;

    Session& session() const { return m_session; }
    MetaVariableInserter* inserter() const { return m_inserter; }
    QWidget* content() const { return m_content; }

signals:
    // A section recorded, changed, ended or removed a command.
    void commandChanged();

protected:
    // `scrollName` names the scroll area ("ScrollBoxNormal").
    FunctionPage(Session& session, const QString& objectName, const QString& scrollName, QWidget* parent);

    PageSection& addSection(const QString& code, const QString& title, std::function<void()> handler = {});
    // Puts the sections into the page; called once, after the last addSection().
    void finishSections();
    // The "CMDComment" stored with a sub-code.
    virtual QString commentOf(const QString& subCode) const = 0;
    // Called after every recording attempt, whatever it did.
    virtual void afterRecording() {}

public:
    // Records a section's command, writes its keys and runs it (or removes it).
    RecordAnswer selectedClick(PageSection& section);

protected:
    // Runs `change` without recording anything.
    void quietly(const std::function<void()>& change);

    Session& m_session;
    DialogRunner m_runner = runModal;

private:
    friend class PageSection;
    void writeAndRun(PageSection& section, const RecordAnswer& answer);
    void okClick(PageSection& section);

    std::vector<std::unique_ptr<PageSection>> m_sections;
    QScrollArea* m_scroll = nullptr;
    QWidget* m_content = nullptr;
    MetaVariableInserter* m_inserter = nullptr;
    // Set while the page changes its own controls: nothing is recorded then.
    bool m_quiet = false;
};

}  // namespace qp::ui
