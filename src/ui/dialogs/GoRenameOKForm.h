// "批量更名完成": the counts of an apply, where its snapshot is, and a button that saves a
// copy of the snapshot where the user wants it (so the apply can be undone after the program
// is closed, by importing the copy as a rename programme).
#pragma once

#include <QDialog>
#include <functional>

class QCheckBox;

namespace qp::ui {

class TGoRenameOKForm : public QDialog {
    Q_OBJECT
public:
    // `summary`: "更名文件列表对象…个，操作成功…个，失败…个，跳过…个。"; `systemDriveNote`:
    // objects on the system drive were met while user account control is on.
    TGoRenameOKForm(const QString& summary, const QString& snapshotPath, bool systemDriveNote,
                    bool alwaysShow, QWidget* parent = nullptr);

    // "保存本次更名快照(&S)": true when the copy was saved (the form then closes).
    void setSaveSnapshot(std::function<bool()> save) { m_save = std::move(save); }
    // "更名完毕后始终显示此对话框".
    bool alwaysShow() const;

private:
    std::function<bool()> m_save;
    QCheckBox* m_alwaysShow = nullptr;
};

}  // namespace qp::ui
