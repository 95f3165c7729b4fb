// Answers the window's dialogs through their own widgets, without a modal loop: installed
// as the window's modal runner, it looks up a handler by the dialog's object name (the
// question id of a message box, the class name of a form) and records every dialog it saw.
#pragma once

#include <QAbstractButton>
#include <QDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QStringList>
#include <QTest>
#include <functional>
#include <map>

#include "ui/GuiInteraction.h"

namespace qp::ui::test {

class DialogScript {
public:
    using Handler = std::function<void(QDialog&)>;

    // Handlers are used in order for repeated dialogs; the last one repeats.
    void on(const QString& name, Handler handler) { m_handlers[name].push_back(std::move(handler)); }

    ModalRunner runner()
    {
        return [this](QDialog& dialog) {
            seen.append(dialog.objectName());
            if (auto* box = qobject_cast<QMessageBox*>(&dialog))
                texts.append(box->text());
            const auto it = m_handlers.find(dialog.objectName());
            if (it == m_handlers.end() || it->second.empty()) {
                unexpected.append(dialog.objectName());
                return int(QDialog::Rejected);
            }
            int& used = m_used[dialog.objectName()];
            const size_t at = std::min(size_t(used), it->second.size() - 1);
            ++used;
            dialog.show();
            it->second[at](dialog);
            if (dialog.isVisible())
                dialog.reject();
            return dialog.result();
        };
    }

    QStringList seen;
    QStringList texts;       // the texts of the message boxes, in order
    QStringList unexpected;  // dialogs nobody answered (rejected)

private:
    std::map<QString, std::vector<Handler>> m_handlers;
    std::map<QString, int> m_used;
};

// Clicks the button whose text is `text` (as the user reads it, mnemonics included). A
// check box or radio button is clicked on its indicator, at its left end.
inline DialogScript::Handler click(const QString& text)
{
    return [text](QDialog& dialog) {
        for (QAbstractButton* button : dialog.findChildren<QAbstractButton*>()) {
            if (button->text() == text) {
                const bool indicator = button->isCheckable() && !qobject_cast<QPushButton*>(button);
                const QPoint at = indicator ? QPoint(button->height() / 2, button->height() / 2) : button->rect().center();
                QTest::mouseClick(button, Qt::LeftButton, {}, at);
                return;
            }
        }
        ADD_FAILURE() << "no button " << text.toStdString() << " in " << dialog.objectName().toStdString();
    };
}

}  // namespace qp::ui::test
