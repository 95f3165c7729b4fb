// "筛选": the filter tool. The form edits a RowFilterSpec (pattern, kinds, size and date
// ranges, attributes, keep or remove), shows how many rows of the list match while it is
// edited, and keeps named filter sets in the settings. The window runs filterRows() with the
// spec when the user clicks "筛选".
#pragma once

#include <QDialog>
#include <QTimer>

#include "core/RowFilter.h"

class QCheckBox;
class QComboBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class QRadioButton;
class QSpinBox;

namespace qp {
class Session;
}

namespace qp::ui {

class TFilterForm : public QDialog {
    Q_OBJECT
public:
    explicit TFilterForm(Session& session, QWidget* parent = nullptr);

    RowFilterSpec spec() const;
    void setSpec(const RowFilterSpec& spec);

    QLineEdit* patternBox() const { return m_pattern; }
    QComboBox* setsBox() const { return m_sets; }
    QLabel* matchCount() const { return m_count; }
    // Counts the matching rows now instead of after the pause that follows each change.
    void countNow();

    // Stores the form's spec under the name in the sets box; false (with a message box
    // through the parent's runner) when the name cannot be used.
    bool saveSet();
    void removeSet();

    void accept() override;

private:
    QWidget* buildPatternGroup();
    QWidget* buildKindGroup();
    QWidget* buildRangeGroup();
    QWidget* buildSetsRow();
    void fillSets(const QString& current);
    void loadSet(const QString& name);
    void watchChanges();

    Session& m_session;
    QLineEdit* m_pattern = nullptr;
    QComboBox* m_syntax = nullptr;
    QComboBox* m_subject = nullptr;
    QCheckBox* m_caseSensitive = nullptr;
    QCheckBox* m_files = nullptr;
    QCheckBox* m_folders = nullptr;
    QCheckBox* m_hidden = nullptr;
    QCheckBox* m_system = nullptr;
    QCheckBox* m_useSize = nullptr;
    QSpinBox* m_minSize = nullptr;
    QSpinBox* m_maxSize = nullptr;
    QComboBox* m_sizeUnit = nullptr;
    QCheckBox* m_useDate = nullptr;
    QDateEdit* m_from = nullptr;
    QDateEdit* m_to = nullptr;
    QComboBox* m_readOnly = nullptr;
    QComboBox* m_archive = nullptr;
    QRadioButton* m_keep = nullptr;
    QRadioButton* m_remove = nullptr;
    QComboBox* m_sets = nullptr;
    QLabel* m_count = nullptr;
    QTimer m_countTimer;
};

}  // namespace qp::ui
