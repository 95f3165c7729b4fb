// The Pascal-script interpreter: a script is compiled once into a typed tree and then run
// many times, once per row, by a ScriptRun whose global variables keep their values from one
// row to the next.
//
// Safe by construction: no built-in writes a file, starts a process or reaches the network.
// Every row has an operation budget, the whole run a time limit, and strings, arrays, the
// memory the globals hold and the depth of recursion are bounded; going beyond any of them
// is a run-time error, never a hang or a crash.
#pragma once

#include <QDateTime>
#include <QString>
#include <memory>
#include <optional>

#include "script/PascalTree.h"

namespace qp::pascal {

// TDateTime: days since 1899-12-30, the time of day as the fraction (local time).
double toDateTime(const QDateTime& time);
// Nothing for a value outside the years 1 to 9999.
std::optional<QDateTime> fromDateTime(double value);

class Script {
public:
    // The compiled script, or null with *error set (line, column and message).
    static std::shared_ptr<const Script> compile(const QString& source, Host host, ScriptError* error);
    ~Script();

    const Program& program() const { return *m_program; }
    // Whether the script reads or writes host variable n at all.
    bool usesVariable(int n) const { return m_program->hostVariableUsed[size_t(n)]; }

private:
    explicit Script(std::unique_ptr<Program> program);
    std::unique_ptr<Program> m_program;
};

class ScriptRun {
public:
    ScriptRun(std::shared_ptr<const Script> script, Limits limits = {});

    // Host variable n (in the order the Host listed them), to set before a row and read after.
    Value& variable(int n) { return m_machine.globals[size_t(n)]; }

    // Runs the script's main part once. The first call sets the global variables' initial
    // values. False with *error set on a run-time error; the run is spent then.
    bool runOnce(ScriptError* error);

private:
    std::shared_ptr<const Script> m_script;
    Machine m_machine;
    bool m_started = false;
    bool m_failed = false;
};

}  // namespace qp::pascal
