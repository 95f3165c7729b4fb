#include "script/PascalScript.h"

#include <QRandomGenerator>
#include <new>

namespace qp::pascal {

QString typeName(const Type& type)
{
    auto name = [](Kind kind) -> QString {
        switch (kind) {
        case Kind::Integer: return QStringLiteral("Integer");
        case Kind::Double: return QStringLiteral("Double");
        case Kind::Boolean: return QStringLiteral("Boolean");
        case Kind::Char: return QStringLiteral("Char");
        case Kind::String: return QStringLiteral("String");
        case Kind::List: return scriptTr("列表");
        case Kind::Array: return QStringLiteral("array");
        case Kind::Void: break;
        }
        return scriptTr("无值（过程）");
    };
    if (type.kind == Kind::Array)
        return QStringLiteral("array of ") + name(type.element);
    return name(type.kind);
}

// ---------------------------------------------------------------------------------------
// Machine

Machine::Machine(Limits l)
    : limits(l), random(QRandomGenerator::global()->generate64())
{
    m_clock.start();
    m_checkAfter = limits.maxLiveUnits / 2;
}

void Machine::startRow() { m_rowLimit = m_ops + limits.operationsPerRow; }

void Machine::tooManyOperations(const Position& at) const
{
    throw ScriptError{at, scriptTr("运算次数超过上限（每个文件 %1 次），可能是死循环").arg(limits.operationsPerRow)};
}

void Machine::checkClock(const Position& at) const
{
    if (m_clock.elapsed() > limits.timeLimitMs)
        throw ScriptError{at, scriptTr("脚本运行超过时间上限（%1 秒）").arg(limits.timeLimitMs / 1000.0)};
}

void Machine::checkLength(qsizetype units) const
{
    if (units > limits.maxStringLength)
        throw NativeError{scriptTr("字符串过长（超过 %1 个字符）").arg(limits.maxStringLength)};
}

void Machine::produced(qsizetype units)
{
    // Making a big value costs in proportion, so that a row cannot churn through memory
    // within its operation budget.
    m_ops += units >> 2;
    m_producedSinceCheck += units;
    if (m_producedSinceCheck > m_checkAfter)
        measureGlobals();
}

// What outlives a row is what the globals hold; locals die with their procedure and are
// bounded by the operation budget and the stack.
void Machine::measureGlobals()
{
    qint64 live = 0;
    for (const Value& v : globals) {
        live += v.s.size();
        if (v.a) {
            live += qint64(v.a->size()) * qint64(sizeof(Value) / 2);
            for (const Value& item : *v.a)
                live += item.s.size();
        }
    }
    if (live > limits.maxLiveUnits)
        throw NativeError{scriptTr("脚本占用的内存过多（全局变量超过 %1 MB）").arg(limits.maxLiveUnits * 2 >> 20)};
    m_producedSinceCheck = 0;
    m_checkAfter = std::max<qint64>(limits.maxLiveUnits - live, limits.maxLiveUnits / 64);
}

void Machine::enterCall(const Position& at)
{
    const char probe = 0;
    const quintptr here = reinterpret_cast<quintptr>(&probe);
    // The stack grows downwards on every platform the program runs on.
    if (m_stackBase && m_stackBase > here && m_stackBase - here > quintptr(limits.maxStackBytes))
        throw ScriptError{at, scriptTr("递归层数过多（已调用 %1 层）").arg(m_depth)};
    ++m_depth;
}

// ---------------------------------------------------------------------------------------
// Script and run

Script::Script(std::unique_ptr<Program> program) : m_program(std::move(program)) {}
Script::~Script() = default;

std::shared_ptr<const Script> Script::compile(const QString& source, Host host, ScriptError* error)
{
    try {
        return std::shared_ptr<const Script>(new Script(parseProgram(source, std::move(host))));
    } catch (const ScriptError& e) {
        if (error)
            *error = e;
    } catch (const std::bad_alloc&) {
        if (error)
            *error = ScriptError{Position{1, 1}, scriptTr("内存不足")};
    }
    return nullptr;
}

ScriptRun::ScriptRun(std::shared_ptr<const Script> script, Limits limits)
    : m_script(std::move(script)), m_machine(limits)
{
    m_machine.globals.resize(size_t(m_script->program().globalCount));
}

bool ScriptRun::runOnce(ScriptError* error)
{
    if (m_failed) {
        *error = ScriptError{Position{}, scriptTr("脚本已出错停止")};
        return false;
    }
    const char base = 0;
    m_machine.setStackBase(&base);
    const Program& program = m_script->program();
    try {
        m_machine.startRow();
        m_machine.frame = nullptr;
        if (!m_started) {
            m_started = true;
            for (const StmtPtr& init : program.initializers)
                init->exec(m_machine);
        }
        program.main->exec(m_machine);
        return true;
    } catch (const ScriptError& e) {
        *error = e;
    } catch (const NativeError& e) {
        *error = ScriptError{program.main->at, e.message};
    } catch (const std::bad_alloc&) {
        *error = ScriptError{program.main->at, scriptTr("内存不足")};
    }
    m_failed = true;
    return false;
}

}  // namespace qp::pascal
