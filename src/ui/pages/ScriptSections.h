// The script sections of the advanced page, "1.A.12.Pascal 脚本更名" and
// "1.A.13.Python 脚本更名": an editor with line numbers and colouring, "测试" that runs the
// script over the chosen row of the rename list without changing it, and example scripts.
//
// The script is recorded like any text box of a page, but a moment after the typing stops
// rather than on every key, so that a half-typed script does not run (and, for Python,
// start a process) once per character.
#pragma once

#include <QObject>
#include <functional>

#include "commands/ScriptCommands.h"

class QLabel;
class QTimer;

namespace qp::ui {

class FunctionPage;
class PageSection;
class ScriptEditor;

class ScriptSection : public QObject {
    Q_OBJECT
public:
    using Quietly = std::function<void(const std::function<void()>&)>;
    using Language = scriptcommands::Language;

    struct Example {
        QString caption;
        QString text;
    };
    static QList<Example> examples(Language language);

    // Builds the section's controls into `section`; `quietly` runs a change of the page's
    // controls without recording it.
    ScriptSection(FunctionPage& page, PageSection& section, Language language, Quietly quietly);

    ScriptEditor* editor() const { return m_editor; }
    QLabel* result() const { return m_result; }

    // "测试": the script over the row chosen in the rename list (else the first ticked row).
    void test();
    // Replaces the script with example `index` (one undoable edit) and turns the command on.
    void insertExample(int index);

private:
    qsizetype chosenRow() const;
    void showResult(const QString& text, bool problem);
    void checkSyntax();
    QString testPascal(qsizetype row, bool* problem);
    QString testPython(qsizetype row, bool* problem);

    FunctionPage& m_page;
    PageSection& m_section;
    Language m_language;
    Quietly m_quietly;
    ScriptEditor* m_editor = nullptr;
    QLabel* m_result = nullptr;
    QTimer* m_idle = nullptr;
};

}  // namespace qp::ui
