// How the engine asks, tells and reports progress without knowing who is listening:
// the GUI answers with message boxes, the command line and tests from a table.
#pragma once

#include <QFlags>
#include <QHash>
#include <QList>
#include <QString>

namespace qp {

enum class Button { None = 0, Ok = 0x1, Cancel = 0x2, Yes = 0x4, No = 0x8 };
Q_DECLARE_FLAGS(Buttons, Button)
Q_DECLARE_OPERATORS_FOR_FLAGS(Buttons)

enum class Icon { Information, Question, Warning, Error };

struct Question {
    QString id;       // stable, for scripted answers and "do not ask again" settings
    QString title;    // "温馨提示", "提示", "警告"
    QString text;
    Buttons buttons = Button::Ok;
    Button defaultButton = Button::Ok;
    Icon icon = Icon::Question;
};

struct Notice {
    QString id;
    QString title;
    QString text;
    Icon icon = Icon::Information;
};

class Interaction {
public:
    virtual ~Interaction() = default;

    virtual Button ask(const Question& question) = 0;
    virtual void notify(const Notice& notice) = 0;
    // A long step: caption and whole-number percent; end with progressDone().
    virtual void progress(const QString& caption, int percent) = 0;
    virtual void progressDone() = 0;
    virtual void status(const QString& text) = 0;
    // Polled between objects of a long step; also the place where a GUI pumps its events.
    virtual bool stopRequested() = 0;
    // The main window is disabled while the engine works.
    virtual void setBusy(bool busy) = 0;
};

// Answers from a table keyed by question id and records everything it was told.
// A question not in the table gets `fallback`: when that is None, the question's default
// button; when it is the affirmative policy (Yes, else Ok), as the command line needs.
class ScriptedInteraction : public Interaction {
public:
    enum class Policy { DefaultButton, Affirmative };

    explicit ScriptedInteraction(Policy policy = Policy::DefaultButton) : m_policy(policy) {}

    // Answers for one id are used in order; the last one repeats.
    void answer(const QString& questionId, QList<Button> answers);
    void requestStopAfter(int polls) { m_stopAfterPolls = polls; }

    Button ask(const Question& question) override;
    void notify(const Notice& notice) override;
    void progress(const QString& caption, int percent) override;
    void progressDone() override {}
    void status(const QString& text) override;
    bool stopRequested() override;
    void setBusy(bool busy) override;

    QList<Question> asked;
    QList<Notice> notices;
    QStringList captions;   // each caption once, in order of first appearance
    QStringList statuses;
    int lastPercent = -1;
    bool busy = false;
    int busyChanges = 0;

private:
    Policy m_policy;
    QHash<QString, QList<Button>> m_answers;
    QHash<QString, int> m_used;
    int m_stopAfterPolls = -1;
    int m_polls = 0;
};

// Makes a window busy for one scope, and ready again however the scope ends.
class BusyScope {
public:
    explicit BusyScope(Interaction& interaction) : m_interaction(interaction) { m_interaction.setBusy(true); }
    ~BusyScope()
    {
        m_interaction.progressDone();
        m_interaction.setBusy(false);
    }
    BusyScope(const BusyScope&) = delete;
    BusyScope& operator=(const BusyScope&) = delete;

private:
    Interaction& m_interaction;
};

}  // namespace qp
