// The node kinds of the compiled tree. Each operator node is chosen by the parser for its
// operand types, so evaluation never looks at a type: integer addition, string concatenation
// and the comparisons of each type are separate nodes.
#pragma once

#include <limits>
#include <new>

#include "script/PascalTree.h"

namespace qp::pascal {

enum class Op { Add, Sub, Mul, Divide, IntDiv, Mod, And, Or, Xor, Shl, Shr, Eq, Ne, Lt, Gt, Le, Ge };

[[noreturn]] inline void runtimeError(const Position& at, const QString& message) { throw ScriptError{at, message}; }

struct Literal final : Expr {
    Value value;
    Literal(Type t, Value v, Position p)
    {
        type = t;
        value = std::move(v);
        at = p;
    }
    Value eval(Machine&) const override { return value; }
    qint64 evalInt(Machine&) const override { return value.i; }
    double evalDouble(Machine&) const override { return value.d; }
    QString evalString(Machine&) const override { return value.s; }
    const Value* literal() const override { return &value; }
};

struct VarRef final : Designator {
    bool global = true;
    int slot = 0;
    Value* storage(Machine& m) const override { return global ? &m.globals[size_t(slot)] : &m.frame[slot]; }
    Value eval(Machine& m) const override { return *storage(m); }
    qint64 evalInt(Machine& m) const override { return storage(m)->i; }
    double evalDouble(Machine& m) const override { return storage(m)->d; }
    QString evalString(Machine& m) const override { return storage(m)->s; }
    void assign(Machine& m, Value v) const override { *storage(m) = std::move(v); }
};

// a[i] of a dynamic array, counted from 0.
struct ArrayElement final : Designator {
    ExprPtr base;
    ExprPtr index;
    bool baseIsDesignator = false;

    Value* element(Machine& m, const Value& array) const
    {
        const qint64 i = index->evalInt(m);
        const qsizetype length = array.arrayLength();
        if (i < 0 || i >= length)
            runtimeError(at, scriptTr("数组下标 %1 超出范围（长度 %2）").arg(i).arg(length));
        return &(*array.a)[size_t(i)];
    }
    Value* storage(Machine& m) const override
    {
        if (!baseIsDesignator)
            return nullptr;
        Value* array = static_cast<const Designator&>(*base).storage(m);
        return array ? element(m, *array) : nullptr;
    }
    Value eval(Machine& m) const override
    {
        const Value array = base->eval(m);
        return *element(m, array);
    }
    void assign(Machine& m, Value v) const override
    {
        if (Value* target = storage(m))
            *target = std::move(v);
    }
};

// s[i] of a string, counted from 1.
struct StringChar final : Designator {
    ExprPtr base;
    ExprPtr index;
    bool baseIsDesignator = false;

    qsizetype position(Machine& m, qsizetype length) const
    {
        const qint64 i = index->evalInt(m);
        if (i < 1 || i > length)
            runtimeError(at, scriptTr("字符串下标 %1 超出范围（长度 %2）").arg(i).arg(length));
        return qsizetype(i - 1);
    }
    Value* storage(Machine&) const override { return nullptr; }
    Value eval(Machine& m) const override { return Value::character(char16_t(evalInt(m))); }
    qint64 evalInt(Machine& m) const override
    {
        // s[i] of a variable reads the variable in place: copying the string for one
        // character would cost more than the rest of the loop it stands in.
        if (const Value* text = baseIsDesignator ? static_cast<const Designator&>(*base).storage(m) : nullptr)
            return text->s[position(m, text->s.size())].unicode();
        const QString s = base->evalString(m);
        return s[position(m, s.size())].unicode();
    }
    void assign(Machine& m, Value v) const override
    {
        Value* text = baseIsDesignator ? static_cast<const Designator&>(*base).storage(m) : nullptr;
        if (text)
            text->s[position(m, text->s.size())] = QChar(char16_t(v.i));
    }
};

struct Unary : Expr {
    ExprPtr operand;
};

struct IntNegate final : Unary {
    Value eval(Machine& m) const override { return Value::integer(evalInt(m)); }
    qint64 evalInt(Machine& m) const override { return qint64(0 - quint64(operand->evalInt(m))); }
};

struct DoubleNegate final : Unary {
    Value eval(Machine& m) const override { return Value::real(evalDouble(m)); }
    double evalDouble(Machine& m) const override { return -operand->evalDouble(m); }
};

struct BoolNot final : Unary {
    Value eval(Machine& m) const override { return Value::integer(evalInt(m)); }
    qint64 evalInt(Machine& m) const override { return operand->evalInt(m) ? 0 : 1; }
};

struct IntNot final : Unary {
    Value eval(Machine& m) const override { return Value::integer(evalInt(m)); }
    qint64 evalInt(Machine& m) const override { return ~operand->evalInt(m); }
};

struct IntToDouble final : Unary {
    Value eval(Machine& m) const override { return Value::real(evalDouble(m)); }
    double evalDouble(Machine& m) const override { return double(operand->evalInt(m)); }
};

struct CharToString final : Unary {
    Value eval(Machine& m) const override { return Value::string(evalString(m)); }
    QString evalString(Machine& m) const override { return charText(operand->evalInt(m)); }
};

struct Binary : Expr {
    Op op = Op::Add;
    ExprPtr left;
    ExprPtr right;
};

struct IntArithmetic final : Binary {
    Value eval(Machine& m) const override { return Value::integer(evalInt(m)); }
    qint64 evalInt(Machine& m) const override
    {
        const qint64 a = left->evalInt(m);
        const qint64 b = right->evalInt(m);
        // Whole numbers wrap around as the processor's do, without undefined behaviour.
        switch (op) {
        case Op::Add: return qint64(quint64(a) + quint64(b));
        case Op::Sub: return qint64(quint64(a) - quint64(b));
        case Op::Mul: return qint64(quint64(a) * quint64(b));
        case Op::IntDiv:
        case Op::Mod:
            if (b == 0)
                runtimeError(at, scriptTr("除数为零"));
            if (b == -1)
                return op == Op::Mod ? 0 : qint64(0 - quint64(a));
            return op == Op::Mod ? a % b : a / b;
        case Op::And: return a & b;
        case Op::Or: return a | b;
        case Op::Xor: return a ^ b;
        case Op::Shl: return qint64(quint64(a) << (b & 63));
        case Op::Shr: return qint64(quint64(a) >> (b & 63));
        default: return 0;
        }
    }
};

struct DoubleArithmetic final : Binary {
    Value eval(Machine& m) const override { return Value::real(evalDouble(m)); }
    double evalDouble(Machine& m) const override
    {
        const double a = left->evalDouble(m);
        const double b = right->evalDouble(m);
        switch (op) {
        case Op::Add: return a + b;
        case Op::Sub: return a - b;
        case Op::Mul: return a * b;
        case Op::Divide:
            if (b == 0)
                runtimeError(at, scriptTr("除数为零"));
            return a / b;
        default: return 0;
        }
    }
};

template <typename T>
bool compareWith(Op op, const T& a, const T& b)
{
    switch (op) {
    case Op::Eq: return a == b;
    case Op::Ne: return a != b;
    case Op::Lt: return a < b;
    case Op::Gt: return a > b;
    case Op::Le: return a <= b;
    case Op::Ge: return a >= b;
    default: return false;
    }
}

struct IntCompare final : Binary {
    Value eval(Machine& m) const override { return Value::integer(evalInt(m)); }
    qint64 evalInt(Machine& m) const override { return compareWith(op, left->evalInt(m), right->evalInt(m)); }
};

struct DoubleCompare final : Binary {
    Value eval(Machine& m) const override { return Value::integer(evalInt(m)); }
    qint64 evalInt(Machine& m) const override { return compareWith(op, left->evalDouble(m), right->evalDouble(m)); }
};

// Strings compare by UTF-16 code unit, as Delphi's operators do.
struct StringCompare final : Binary {
    Value eval(Machine& m) const override { return Value::integer(evalInt(m)); }
    qint64 evalInt(Machine& m) const override
    {
        const int order = QString::compare(left->evalString(m), right->evalString(m), Qt::CaseSensitive);
        return compareWith(op, order, 0);
    }
};

// "and" and "or" of Booleans stop as soon as the result is known.
struct ShortCircuit final : Binary {
    Value eval(Machine& m) const override { return Value::integer(evalInt(m)); }
    qint64 evalInt(Machine& m) const override
    {
        const bool a = left->evalInt(m) != 0;
        if (op == Op::And ? !a : a)
            return a;
        return right->evalInt(m) != 0;
    }
};

struct Concat final : Binary {
    Value eval(Machine& m) const override { return Value::string(evalString(m)); }
    QString evalString(Machine& m) const override
    {
        QString a = left->evalString(m);
        const QString b = right->evalString(m);
        try {
            m.checkLength(a.size() + b.size());
            a += b;
            m.produced(a.size());
        } catch (const NativeError& e) {
            runtimeError(at, e.message);
        }
        return a;
    }
};

// x in [a, b..c]: ordinals only.
struct InList final : Expr {
    ExprPtr item;
    std::vector<std::pair<ExprPtr, ExprPtr>> ranges;  // second null: a single value
    Value eval(Machine& m) const override { return Value::integer(evalInt(m)); }
    qint64 evalInt(Machine& m) const override
    {
        const qint64 v = item->evalInt(m);
        for (const auto& [low, high] : ranges) {
            const qint64 lo = low->evalInt(m);
            if (high ? (v >= lo && v <= high->evalInt(m)) : v == lo)
                return 1;
        }
        return 0;
    }
};

// "[a, b..c]": the right side of "in" (which takes its entries apart), or a list of items
// handed to a built-in (Format, StringReplace), each item keeping its type in Value::tag.
struct ListLiteral final : Expr {
    std::vector<std::pair<ExprPtr, ExprPtr>> entries;  // second null: one item, else a range

    bool hasRanges() const
    {
        for (const auto& entry : entries) {
            if (entry.second)
                return true;
        }
        return false;
    }
    Value eval(Machine& m) const override
    {
        auto list = std::make_shared<Array>();
        list->reserve(entries.size());
        for (const auto& entry : entries) {
            Value v = entry.first->eval(m);
            v.tag = entry.first->type.kind;
            list->push_back(std::move(v));
        }
        return Value::array(std::move(list));
    }
};

struct NativeCall final : Expr {
    static constexpr size_t kMaxArguments = 6;
    const Native* native = nullptr;
    std::vector<ExprPtr> args;
    std::vector<const Designator*> outs;  // the argument of each var parameter, else null

    // The arguments on the stack, only as many as the call has.
    struct Arguments {
        alignas(Value) unsigned char raw[sizeof(Value) * kMaxArguments];
        size_t count = 0;
        Value* data() { return reinterpret_cast<Value*>(raw); }
        void push(Value v) { new (data() + count++) Value(std::move(v)); }
        ~Arguments()
        {
            for (size_t i = 0; i < count; ++i)
                data()[i].~Value();
        }
    };

    Value eval(Machine& m) const override
    {
        Arguments values;
        for (const ExprPtr& arg : args)
            values.push(arg->eval(m));
        Value result;
        try {
            result = native->call(m, values.data(), int(values.count));
        } catch (const NativeError& e) {
            runtimeError(at, e.message);
        }
        for (size_t i = 0; i < values.count; ++i) {
            if (outs[i])
                outs[i]->assign(m, std::move(values.data()[i]));
        }
        return result;
    }
};

struct UserCall final : Expr {
    const Function* function = nullptr;
    std::vector<ExprPtr> args;
    std::vector<const Designator*> outs;

    Value eval(Machine& m) const override
    {
        std::vector<Value> locals(size_t(function->slotCount));
        for (size_t i = 0; i < args.size(); ++i)
            locals[size_t(function->params[i].slot)] = args[i]->eval(m);
        {
            m.enterCall(at);
            Value* caller = m.frame;
            struct Return {
                Machine& m;
                Value* caller;
                ~Return()
                {
                    m.frame = caller;
                    m.leaveCall();
                }
            } restore{m, caller};
            m.frame = locals.data();
            function->body->exec(m);
        }
        for (size_t i = 0; i < args.size(); ++i) {
            if (outs[i])
                outs[i]->assign(m, std::move(locals[size_t(function->params[i].slot)]));
        }
        return function->resultSlot >= 0 ? std::move(locals[size_t(function->resultSlot)]) : Value();
    }
};

// ---------------------------------------------------------------------------------------
// Statements

struct Assign final : Stmt {
    std::unique_ptr<Designator> target;
    ExprPtr value;
    Flow exec(Machine& m) const override
    {
        m.tick(at);
        target->assign(m, value->eval(m));
        return Flow::Normal;
    }
};

struct CallStmt final : Stmt {
    ExprPtr call;
    Flow exec(Machine& m) const override
    {
        m.tick(at);
        call->eval(m);
        return Flow::Normal;
    }
};

struct Block final : Stmt {
    std::vector<StmtPtr> body;
    Flow exec(Machine& m) const override
    {
        for (const StmtPtr& s : body) {
            const Flow f = s->exec(m);
            if (f != Flow::Normal)
                return f;
        }
        return Flow::Normal;
    }
};

struct If final : Stmt {
    ExprPtr condition;
    StmtPtr then;
    StmtPtr otherwise;
    Flow exec(Machine& m) const override
    {
        m.tick(at);
        if (condition->evalInt(m))
            return then ? then->exec(m) : Flow::Normal;
        return otherwise ? otherwise->exec(m) : Flow::Normal;
    }
};

// Break ends the loop, Continue goes on with the next turn, Exit leaves the procedure.
inline bool leavesLoop(Flow f, Flow& out)
{
    if (f == Flow::Break) {
        out = Flow::Normal;
        return true;
    }
    if (f == Flow::Exit) {
        out = Flow::Exit;
        return true;
    }
    return false;
}

struct While final : Stmt {
    ExprPtr condition;
    StmtPtr body;
    Flow exec(Machine& m) const override
    {
        Flow out = Flow::Normal;
        for (;;) {
            m.tick(at);
            if (!condition->evalInt(m))
                return Flow::Normal;
            if (body && leavesLoop(body->exec(m), out))
                return out;
        }
    }
};

struct Repeat final : Stmt {
    Block body;
    ExprPtr condition;
    Flow exec(Machine& m) const override
    {
        Flow out = Flow::Normal;
        for (;;) {
            m.tick(at);
            if (leavesLoop(body.exec(m), out))
                return out;
            if (condition->evalInt(m))
                return Flow::Normal;
        }
    }
};

struct For final : Stmt {
    std::unique_ptr<VarRef> variable;
    ExprPtr from;
    ExprPtr to;
    bool down = false;
    StmtPtr body;
    Flow exec(Machine& m) const override
    {
        const qint64 first = from->evalInt(m);
        const qint64 last = to->evalInt(m);
        if (down ? first < last : first > last)
            return Flow::Normal;
        Flow out = Flow::Normal;
        for (qint64 v = first;; v += down ? -1 : 1) {
            m.tick(at);
            variable->storage(m)->i = v;
            if (body && leavesLoop(body->exec(m), out))
                return out;
            if (v == last)
                return Flow::Normal;
        }
    }
};

struct Case final : Stmt {
    struct Label {
        Value low;
        Value high;
    };
    struct Branch {
        std::vector<Label> labels;
        StmtPtr body;
    };
    ExprPtr selector;
    bool text = false;  // String selector: labels compare as strings
    std::vector<Branch> branches;
    StmtPtr otherwise;

    bool matches(const Label& label, const Value& v) const
    {
        if (text)
            return v.s >= label.low.s && v.s <= label.high.s;
        return v.i >= label.low.i && v.i <= label.high.i;
    }
    Flow exec(Machine& m) const override
    {
        m.tick(at);
        const Value v = selector->eval(m);
        for (const Branch& branch : branches) {
            for (const Label& label : branch.labels) {
                if (matches(label, v))
                    return branch.body ? branch.body->exec(m) : Flow::Normal;
            }
        }
        return otherwise ? otherwise->exec(m) : Flow::Normal;
    }
};

struct Jump final : Stmt {
    Flow flow = Flow::Break;
    // Exit(value) in a function: the value goes into Result first.
    ExprPtr value;
    int resultSlot = -1;
    Flow exec(Machine& m) const override
    {
        m.tick(at);
        if (value)
            m.frame[resultSlot] = value->eval(m);
        return flow;
    }
};

}  // namespace qp::pascal
