#include "ui/GuiInteraction.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>

namespace qp::ui {

namespace {

QMessageBox::Icon boxIcon(Icon icon)
{
    switch (icon) {
    case Icon::Information:
        return QMessageBox::Information;
    case Icon::Question:
        return QMessageBox::Question;
    case Icon::Warning:
        return QMessageBox::Warning;
    case Icon::Error:
        return QMessageBox::Critical;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButton boxButton(Button button)
{
    switch (button) {
    case Button::Ok:
        return QMessageBox::Ok;
    case Button::Cancel:
        return QMessageBox::Cancel;
    case Button::Yes:
        return QMessageBox::Yes;
    case Button::No:
        return QMessageBox::No;
    case Button::None:
        break;
    }
    return QMessageBox::NoButton;
}

}  // namespace

void GuiInteraction::attach(QWidget* window, QLabel* statusText, QProgressBar* progressBar)
{
    m_window = window;
    m_statusText = statusText;
    m_progress = progressBar;
}

Button GuiInteraction::ask(const Question& question)
{
    QMessageBox box(boxIcon(question.icon), question.title, question.text, QMessageBox::NoButton, m_window);
    for (Button b : {Button::Yes, Button::No, Button::Ok, Button::Cancel}) {
        if (question.buttons.testFlag(b))
            box.addButton(boxButton(b));
    }
    box.setDefaultButton(boxButton(question.defaultButton));
    switch (box.exec()) {
    case QMessageBox::Ok:
        return Button::Ok;
    case QMessageBox::Yes:
        return Button::Yes;
    case QMessageBox::No:
        return Button::No;
    default:
        return Button::Cancel;
    }
}

void GuiInteraction::notify(const Notice& notice)
{
    QMessageBox box(boxIcon(notice.icon), notice.title, notice.text, QMessageBox::Ok, m_window);
    box.exec();
}

void GuiInteraction::progress(const QString& caption, int percent)
{
    if (m_progress) {
        m_progress->setFormat(caption + QStringLiteral(" %p%"));
        m_progress->setValue(percent);
        m_progress->setVisible(true);
    }
}

void GuiInteraction::progressDone()
{
    if (m_progress)
        m_progress->setVisible(false);
}

void GuiInteraction::status(const QString& text)
{
    if (m_statusText)
        m_statusText->setText(text);
}

bool GuiInteraction::stopRequested()
{
    QApplication::processEvents();
    return false;
}

void GuiInteraction::setBusy(bool busy)
{
    if (m_window)
        m_window->setEnabled(!busy);
}

}  // namespace qp::ui
