// The main window. For now it holds the session, its status bar and message pane; the
// rename list, command list and function pages are added to it page by page.
#pragma once

#include <QMainWindow>

#include "core/Session.h"
#include "ui/GuiInteraction.h"

class QLabel;
class QListWidget;
class QProgressBar;

namespace qp::ui {

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    MainWindow(SettingsStore settings, QString runStamp, QWidget* parent = nullptr);

    Session& session() { return m_session; }

private:
    void showMessage(const MessageLine& line);

    GuiInteraction m_interaction;
    Session m_session;
    QLabel* m_statusText = nullptr;
    QProgressBar* m_progress = nullptr;
    QListWidget* m_messages = nullptr;
};

}  // namespace qp::ui
