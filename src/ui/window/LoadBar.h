// The controls above the rename list: the path box "路径" with its history, "载入路径",
// the load options "遍历文件夹" / "含文件夹名", the filter boxes "过滤：保留" / "排除"
// (Enter filters the list), "遍历文件列表" and "显示实际图标". The texts of the boxes live
// in the Session, the options and histories in its settings.
#pragma once

#include <QWidget>

class QCheckBox;
class QComboBox;
class QPushButton;

namespace qp {
class Session;
}

namespace qp::ui {

class LoadBar : public QWidget {
    Q_OBJECT
public:
    explicit LoadBar(Session& session, QWidget* parent = nullptr);

    // Fills the boxes and options from the session and its settings (at start, after a
    // load pushed the path into its history, after a command file brought other settings).
    void syncFromSession();

    QComboBox* pathBox() const { return m_path; }
    QComboBox* keepBox() const { return m_keep; }
    QComboBox* excludeBox() const { return m_exclude; }
    QPushButton* loadButton() const { return m_load; }
    QPushButton* traverseButton() const { return m_traverse; }
    QCheckBox* recursiveBox() const { return m_recursive; }
    QCheckBox* folderRowsBox() const { return m_folderRows; }
    QCheckBox* trueIconsBox() const { return m_trueIcons; }

    // The fixed entries of the keep box's drop-down; the exclude box has them without "*.*".
    static QStringList keepPresets();

signals:
    void loadPathRequested();
    void traverseRequested();
    void filterRequested();
    void trueIconsToggled(bool on);
    // An option was changed and written to the settings.
    void settingsChanged();

private:
    void fillHistory(QComboBox* box, const QString& key, const QStringList& presets, const QString& text);
    void filterEntered();
    void keepEdited(const QString& text);

    Session& m_session;
    QComboBox* m_path = nullptr;
    QComboBox* m_keep = nullptr;
    QComboBox* m_exclude = nullptr;
    QPushButton* m_load = nullptr;
    QPushButton* m_traverse = nullptr;
    QCheckBox* m_recursive = nullptr;
    QCheckBox* m_folderRows = nullptr;
    QCheckBox* m_trueIcons = nullptr;
};

}  // namespace qp::ui
