#include "ui/GuiInteraction.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>

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

struct ButtonInfo {
    Button button;
    QMessageBox::StandardButton standard;
    const char* text;
};

// The engine's order of buttons, with the program's own captions (the standard buttons
// would follow the desktop's language instead of the program's).
const ButtonInfo kButtons[] = {
    {Button::Yes, QMessageBox::Yes, QT_TRANSLATE_NOOP("qp::ui::GuiInteraction", "是(&Y)")},
    {Button::No, QMessageBox::No, QT_TRANSLATE_NOOP("qp::ui::GuiInteraction", "否(&N)")},
    {Button::Ok, QMessageBox::Ok, QT_TRANSLATE_NOOP("qp::ui::GuiInteraction", "确定")},
    {Button::Cancel, QMessageBox::Cancel, QT_TRANSLATE_NOOP("qp::ui::GuiInteraction", "取消")},
};

// The engine writes line breaks as CR LF or, in one question, a bare CR.
QString boxText(QString text)
{
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return text;
}

}  // namespace

void GuiInteraction::attach(QWidget* window, QLabel* statusText, QProgressBar* progressBar)
{
    m_window = window;
    m_statusText = statusText;
    m_progress = progressBar;
}

int GuiInteraction::runModal(QDialog& dialog)
{
    return m_runner ? m_runner(dialog) : dialog.exec();
}

Button GuiInteraction::ask(const Question& question)
{
    QMessageBox box(boxIcon(question.icon), question.title, boxText(question.text), QMessageBox::NoButton, m_window);
    box.setObjectName(question.id);
    for (const ButtonInfo& info : kButtons) {
        if (!question.buttons.testFlag(info.button))
            continue;
        QPushButton* button = box.addButton(info.standard);
        button->setText(tr(info.text));
        if (info.button == question.defaultButton)
            box.setDefaultButton(button);
    }
    // Closing the box without a button is a "no" to whatever was asked.
    if (question.buttons.testFlag(Button::Cancel))
        box.setEscapeButton(QMessageBox::Cancel);
    else if (question.buttons.testFlag(Button::No))
        box.setEscapeButton(QMessageBox::No);
    runModal(box);
    switch (box.standardButton(box.clickedButton())) {
    case QMessageBox::Ok:
        return Button::Ok;
    case QMessageBox::Yes:
        return Button::Yes;
    case QMessageBox::No:
        return Button::No;
    default:
        return question.buttons.testFlag(Button::Cancel) ? Button::Cancel : Button::No;
    }
}

void GuiInteraction::notify(const Notice& notice)
{
    QMessageBox box(boxIcon(notice.icon), notice.title, boxText(notice.text), QMessageBox::NoButton, m_window);
    box.setObjectName(notice.id);
    box.addButton(QMessageBox::Ok)->setText(tr("确定"));
    runModal(box);
}

void GuiInteraction::progress(const QString& caption, int percent)
{
    if (m_progress) {
        m_progress->setFormat(caption + QStringLiteral(" %p%"));
        m_progress->setValue(percent);
        m_progress->setVisible(true);
    }
    pump();
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
    pump();
}

bool GuiInteraction::stopRequested()
{
    pump();
    return m_stop;
}

void GuiInteraction::pump()
{
    if (m_sincePump.isValid() && m_sincePump.elapsed() < kPumpInterval)
        return;
    m_sincePump.start();
    QCoreApplication::processEvents();
}

void GuiInteraction::setBusy(bool busy)
{
    if (busy) {
        if (m_busyDepth++ > 0)
            return;
        m_stop = false;
        m_sincePump.start();
        qApp->installEventFilter(this);
        QApplication::setOverrideCursor(Qt::BusyCursor);
        emit busyChanged(true);
        return;
    }
    if (m_busyDepth == 0 || --m_busyDepth > 0)
        return;
    qApp->removeEventFilter(this);
    QApplication::restoreOverrideCursor();
    emit busyChanged(false);
}

bool GuiInteraction::eventFilter(QObject* watched, QEvent* event)
{
    // The window's controls are disabled while busy, so Esc is caught before any of them;
    // a question asked meanwhile keeps its own Esc.
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape
        && !QApplication::activeModalWidget()) {
        m_stop = true;
        return true;
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace qp::ui
