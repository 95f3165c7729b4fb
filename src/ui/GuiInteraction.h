// Answers the engine's questions with message boxes and shows its progress in the
// main window's status bar.
#pragma once

#include <QPointer>
#include <QWidget>

#include "core/Interaction.h"

class QLabel;
class QProgressBar;

namespace qp::ui {

class GuiInteraction : public Interaction {
public:
    GuiInteraction() = default;
    void attach(QWidget* window, QLabel* statusText, QProgressBar* progressBar);

    Button ask(const Question& question) override;
    void notify(const Notice& notice) override;
    void progress(const QString& caption, int percent) override;
    void progressDone() override;
    void status(const QString& text) override;
    bool stopRequested() override;
    void setBusy(bool busy) override;

private:
    QPointer<QWidget> m_window;
    QPointer<QLabel> m_statusText;
    QPointer<QProgressBar> m_progress;
};

}  // namespace qp::ui
