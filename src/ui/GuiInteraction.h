// Answers the engine's questions with message boxes and shows its progress in the main
// window's status bar.
//
// Long operations run on the UI thread. While one runs the window is busy: its controls are
// disabled, and the engine polls stopRequested() between objects, which is where the window
// repaints. Repainting a grid costs far more than renaming a row, so events are pumped at
// most about 30 times a second however often the engine polls.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <functional>

#include "core/Interaction.h"

class QDialog;
class QLabel;
class QProgressBar;
class QWidget;

namespace qp::ui {

// Runs a modal dialog and returns its result code. The program calls QDialog::exec();
// tests put in a runner that answers through the dialog's own widgets instead.
using ModalRunner = std::function<int(QDialog&)>;

class GuiInteraction : public QObject, public Interaction {
    Q_OBJECT
public:
    GuiInteraction() = default;
    void attach(QWidget* window, QLabel* statusText, QProgressBar* progressBar);

    void setModalRunner(ModalRunner runner) { m_runner = std::move(runner); }
    int runModal(QDialog& dialog);

    Button ask(const Question& question) override;
    void notify(const Notice& notice) override;
    void progress(const QString& caption, int percent) override;
    void progressDone() override;
    void status(const QString& text) override;
    bool stopRequested() override;
    // Busy scopes nest (apply runs preview, which runs the commands): the window is ready
    // again only when the outermost one ends.
    void setBusy(bool busy) override;

    bool busy() const { return m_busyDepth > 0; }
    // Esc while busy: the next poll answers "stop" (loading, the commands and preview stop;
    // apply and undo go on, since half an apply is worse than a slow one).
    void requestStop() { m_stop = true; }
    // Lets the window paint now if the last pump is long enough ago.
    void pump();

    // Milliseconds between two pumps.
    static constexpr int kPumpInterval = 33;

signals:
    // The outermost busy scope began (true) or ended (false).
    void busyChanged(bool busy);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPointer<QWidget> m_window;
    QPointer<QLabel> m_statusText;
    QPointer<QProgressBar> m_progress;
    ModalRunner m_runner;
    QElapsedTimer m_sincePump;
    int m_busyDepth = 0;
    bool m_stop = false;
};

}  // namespace qp::ui
