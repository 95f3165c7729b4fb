// The compiled form of a Pascal script: a tree of typed nodes whose variables are resolved
// to slots, and the machine that runs it. Private to the interpreter (the parser builds the
// tree, PascalScript.h is the public face).
#pragma once

#include <QElapsedTimer>
#include <QString>
#include <functional>
#include <memory>
#include <random>
#include <vector>

#include "script/PascalDiagnostic.h"
#include "script/PascalValue.h"

namespace qp::pascal {

// What one run may use. A row's operations are counted per row; time, memory and stack
// over the whole run.
struct Limits {
    qint64 operationsPerRow = 10'000'000;
    qint64 timeLimitMs = 30'000;
    qsizetype maxStringLength = 1 << 20;  // UTF-16 units
    qsizetype maxArrayLength = 1 << 20;
    qint64 maxLiveUnits = qint64(32) << 20;  // what the global variables may hold, in UTF-16 units
    qsizetype maxStackBytes = 256 * 1024;     // C++ stack the script's calls may take
};

class Machine {
public:
    explicit Machine(Limits limits);

    std::vector<Value> globals;
    Value* frame = nullptr;  // the locals of the running procedure
    const Limits limits;
    std::mt19937_64 random;

    // Called for every statement and loop turn.
    void tick(const Position& at)
    {
        if (++m_ops > m_rowLimit)
            tooManyOperations(at);
        if ((m_ops & 0xFFF) == 0)
            checkClock(at);
    }
    // Called for every string or array a built-in or an operator makes: big values cost
    // operations in proportion, and what the globals hold is measured now and then.
    void produced(qsizetype units);
    // Throws NativeError when a string would be longer than allowed.
    void checkLength(qsizetype units) const;

    void startRow();
    // Marks the top of the stack the script may use from here on.
    void setStackBase(const void* base) { m_stackBase = reinterpret_cast<quintptr>(base); }
    // Throws when a call would take the stack (or the call depth) beyond the limits.
    void enterCall(const Position& at);
    void leaveCall() { --m_depth; }

private:
    [[noreturn]] void tooManyOperations(const Position& at) const;
    void checkClock(const Position& at) const;
    void measureGlobals();

    qint64 m_ops = 0;
    qint64 m_rowLimit = 0;
    qint64 m_producedSinceCheck = 0;
    qint64 m_checkAfter = 0;
    quintptr m_stackBase = 0;
    int m_depth = 0;
    QElapsedTimer m_clock;
};

// ---------------------------------------------------------------------------------------
// Expressions

struct Expr {
    Type type;
    Position at;
    int depth = 1;  // height of the tree below, which bounds the evaluation's recursion

    virtual ~Expr() = default;
    virtual Value eval(Machine& m) const = 0;
    // Shortcuts that skip building a Value where the type allows.
    virtual qint64 evalInt(Machine& m) const { return eval(m).i; }
    virtual double evalDouble(Machine& m) const { return eval(m).d; }
    virtual QString evalString(Machine& m) const { return eval(m).s; }
    // The value of a literal (or of a constant made of one).
    virtual const Value* literal() const { return nullptr; }
};
using ExprPtr = std::unique_ptr<Expr>;

// Something that can be assigned to: a variable, an array element, a character of a string.
struct Designator : Expr {
    // The Value the designator names, or null when it names none (a character of a string).
    virtual Value* storage(Machine& m) const = 0;
    virtual void assign(Machine& m, Value v) const = 0;
    bool writable = true;
    QString name;  // for messages
};

// ---------------------------------------------------------------------------------------
// Statements

enum class Flow { Normal, Break, Continue, Exit };

struct Stmt {
    Position at;
    virtual ~Stmt() = default;
    virtual Flow exec(Machine& m) const = 0;
};
using StmtPtr = std::unique_ptr<Stmt>;

// ---------------------------------------------------------------------------------------
// Procedures and built-ins

struct Function {
    struct Param {
        QString name;
        Type type;
        bool byReference = false;  // var: the value is copied back to the argument
        bool constant = false;
        int slot = 0;
    };
    QString name;
    Type result;  // Void for a procedure
    std::vector<Param> params;
    int slotCount = 0;
    int resultSlot = -1;
    StmtPtr body;  // null while only declared forward
    Position at;
};

// A built-in: its name, its signature and what it does. The signature is a result code, ":"
// and one code per parameter: I Integer, D Double (an Integer is widened), B Boolean, C Char,
// S String (a Char is widened), T array of String, A any array, O any ordinal, L a list
// "[…]", V (result only) none. "&" before a code marks a var parameter; parameters after
// "|" may be left out. A name may have several entries: the first that fits the arguments
// is taken.
struct Native {
    QString name;
    QString signature;
    std::function<Value(Machine&, Value* args, int count)> call;
};

using NativeTable = std::vector<Native>;

// The language's own built-ins (strings, numbers, dates, …).
const NativeTable& languageNatives();

// A variable the host program provides (FileName, FileIndex …): the first global slots, in
// the order given.
struct HostVariable {
    QString name;
    Type type;
    bool writable = false;
};

struct Host {
    std::vector<HostVariable> variables;
    NativeTable functions;  // beside the language's own; found first
};

struct Program {
    NativeTable hostFunctions;  // the tree points into it
    std::vector<std::unique_ptr<Function>> functions;
    // Initial values of global variables and of constants that are no literal, in order.
    std::vector<StmtPtr> initializers;
    StmtPtr main;
    int globalCount = 0;
    std::vector<bool> hostVariableUsed;  // so that the host fills only what the script reads
};

// Compiles a script; throws ScriptError.
std::unique_ptr<Program> parseProgram(const QString& source, Host host);

}  // namespace qp::pascal
