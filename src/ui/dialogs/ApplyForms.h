// The questions apply asks on its way: simple or smart rename for a long list, the rename
// conflict warning, read-only and system objects, and names too long for the file system.
// Each form is answered through its own buttons and gives back what the engine's
// ApplyDialogs interface needs.
#pragma once

#include <QDialog>
#include <functional>

#include "execution/RenameRunner.h"

class QButtonGroup;
class QCheckBox;
class QLineEdit;

namespace qp {
class RenameList;
}

namespace qp::ui {

// "批量更名方式选择": from "RenameSelectCount" rows on, simple rename is offered.
class TSimpleRenameSelectForm : public QDialog {
    Q_OBJECT
public:
    explicit TSimpleRenameSelectForm(qsizetype rows, QWidget* parent = nullptr);
    ApplyMode mode() const { return m_mode; }

private:
    ApplyMode m_mode = ApplyMode::Stop;
};

// "更名冲突警告": the rows whose new name is the current name of another row being
// renamed, and whether to go on with smart rename.
class TRenameWarningForm : public QDialog {
    Q_OBJECT
public:
    TRenameWarningForm(const RenameList& list, const PreviewResult& preview, QWidget* parent = nullptr);
    ConflictAnswer answer() const;

private:
    QCheckBox* m_dontShowAgain = nullptr;
    bool m_proceed = false;
};

// "以下对象为只读属性：" / "以下对象为系统属性：": skip it or rename it anyway.
class TFileNameAttribWarningForm : public QDialog {
    Q_OBJECT
public:
    TFileNameAttribWarningForm(bool system, const QString& path, int preselected, QWidget* parent = nullptr);
    ChoiceAnswer answer() const;

private:
    QButtonGroup* m_choice = nullptr;
    QCheckBox* m_dontAskAgain = nullptr;
};

// A full name longer than the file system allows: skip it, or shorten it one of three ways.
// `correctedFor(choice)` gives the name a choice would make (empty for skip, or when no
// shortening fits).
class TFileNameTooLongWarningForm : public QDialog {
    Q_OBJECT
public:
    TFileNameTooLongWarningForm(const QString& path, const QString& proposed,
                                std::function<QString(int choice)> correctedFor, int preselected,
                                QWidget* parent = nullptr);
    ChoiceAnswer answer() const;

private:
    void showCorrected();

    std::function<QString(int)> m_correctedFor;
    QButtonGroup* m_choice = nullptr;
    QLineEdit* m_corrected = nullptr;
    QCheckBox* m_dontAskAgain = nullptr;
};

}  // namespace qp::ui
