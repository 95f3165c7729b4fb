// The two export dialogs of the window.
//
// "查看和导出快照文件" shows the snapshot of any apply of this run, with whether each renamed
// object still exists, and saves a copy of it where the user wants, so that the apply can be
// undone later by importing that copy as a rename programme.
//
// "导出更名对照列表文件" writes the old and new names of the rename list side by side, as a
// text file and/or a spreadsheet, through the same engine as `quillet export --contrast`.
#pragma once

#include <QDialog>
#include <QString>
#include <vector>

#include "execution/ContrastList.h"
#include "execution/Snapshot.h"

class QButtonGroup;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QSpinBox;
class QTableView;

namespace qp {
class FileOperations;
class Session;
}  // namespace qp

namespace qp::ui {

class GuiInteraction;
class SnapshotRowsModel;

class TExportSnapshotForm : public QDialog {
    Q_OBJECT
public:
    TExportSnapshotForm(Session& session, GuiInteraction& ui, FileOperations& disk, QWidget* parent = nullptr);
    ~TExportSnapshotForm() override;

    // Shows the snapshot of apply `number` (1 = the first of this run).
    void showApply(int number);
    int shownApply() const;
    // The snapshot file of the shown apply.
    QString snapshotFile() const;
    QTableView* grid() const { return m_grid; }

private:
    void save();
    void fitColumns();

    Session& m_session;
    GuiInteraction& m_ui;
    FileOperations& m_disk;
    SnapshotRowsModel* m_model = nullptr;
    QSpinBox* m_number = nullptr;
    QTableView* m_grid = nullptr;
    QPushButton* m_save = nullptr;
};

// The filter of the contrast list's save dialog: "导出的文件类型 (*.txt *.xls)" and so on, in
// the form Qt's file dialog reads (patterns separated by spaces).
QString contrastSaveFilter(const ContrastOptions& options);

class TExportContrastFileForm : public QDialog {
    Q_OBJECT
public:
    TExportContrastFileForm(Session& session, GuiInteraction& ui, FileOperations& disk, QWidget* parent = nullptr);

    // What the controls say now.
    ContrastOptions options() const;

private:
    void build();
    void updateEnabled();
    void save();

    Session& m_session;
    GuiInteraction& m_ui;
    FileOperations& m_disk;
    QCheckBox* m_spreadsheet = nullptr;
    QWidget* m_sheetOptions = nullptr;
    QWidget* m_textOptions = nullptr;
    QRadioButton* m_xlsx = nullptr;
    QRadioButton* m_xls = nullptr;
    QLineEdit* m_sheetName = nullptr;
    QSpinBox* m_oldColumn = nullptr;
    QSpinBox* m_newColumn = nullptr;
    QCheckBox* m_text = nullptr;
    QButtonGroup* m_encoding = nullptr;
    QRadioButton* m_aligned = nullptr;
    QRadioButton* m_separated = nullptr;
    QLineEdit* m_separator = nullptr;
    QCheckBox* m_withExtension = nullptr;
    QPushButton* m_save = nullptr;
};

}  // namespace qp::ui
