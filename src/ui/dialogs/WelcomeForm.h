// The welcome page: shown at start until "不再显示" is ticked ("Interface Config" /
// "ShowWelcome"), and from the help menu. It gives short tips, lists the recent command
// files (double-click one to load it) and, once, asks whether the program may look for new
// versions now and then.
#pragma once

#include <QDialog>

class QCheckBox;
class QListWidget;

namespace qp {
class SettingsStore;
}

namespace qp::ui {

class TWelcomeForm : public QDialog {
    Q_OBJECT
public:
    explicit TWelcomeForm(SettingsStore& settings, QWidget* parent = nullptr);

    // Whether the page opens at start.
    static bool showsAtStart(const SettingsStore& settings);

    QListWidget* recentList() const { return m_recent; }
    QCheckBox* dontShowBox() const { return m_dontShow; }
    QCheckBox* updateBox() const { return m_update; }  // null once the question was answered
    // The command file chosen from the list, '/'-separated; empty when none.
    QString chosenCommandFile() const { return m_chosen; }

    // Closing in any way writes the two answers to the settings.
    void done(int result) override;

private:
    SettingsStore& m_settings;
    QListWidget* m_recent = nullptr;
    QCheckBox* m_dontShow = nullptr;
    QCheckBox* m_update = nullptr;
    QString m_chosen;
};

}  // namespace qp::ui
