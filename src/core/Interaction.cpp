#include "core/Interaction.h"

namespace qp {

void ScriptedInteraction::answer(const QString& questionId, QList<Button> answers)
{
    m_answers.insert(questionId, std::move(answers));
    m_used.remove(questionId);
}

Button ScriptedInteraction::ask(const Question& question)
{
    asked.append(question);
    const auto it = m_answers.constFind(question.id);
    if (it != m_answers.constEnd() && !it->isEmpty()) {
        int& used = m_used[question.id];
        const Button button = it->at(qMin(used, it->size() - 1));
        ++used;
        return button;
    }
    if (m_policy == Policy::Affirmative) {
        if (question.buttons.testFlag(Button::Yes))
            return Button::Yes;
        if (question.buttons.testFlag(Button::Ok))
            return Button::Ok;
    }
    return question.defaultButton;
}

void ScriptedInteraction::notify(const Notice& notice) { notices.append(notice); }

void ScriptedInteraction::progress(const QString& caption, int percent)
{
    if (!captions.contains(caption))
        captions.append(caption);
    lastPercent = percent;
}

void ScriptedInteraction::status(const QString& text) { statuses.append(text); }

bool ScriptedInteraction::stopRequested()
{
    ++m_polls;
    return m_stopAfterPolls >= 0 && m_polls > m_stopAfterPolls;
}

void ScriptedInteraction::setBusy(bool value)
{
    if (busy != value)
        ++busyChanges;
    busy = value;
}

}  // namespace qp
