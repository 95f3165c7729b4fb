// Recursive-descent parser and type checker: tokens in, a typed tree with resolved slots out.
// Every error names the line and column of the token where it was found.
#include <QHash>
#include <QSet>
#include <optional>

#include "script/PascalLexer.h"
#include "script/PascalNodes.h"

namespace qp::pascal {

namespace {

// Nested statements and parenthesised expressions, together: the parser and the evaluator
// recurse once per level, so the level bounds the stack they take.
constexpr int kMaxNesting = 100;
// Height of an expression tree (a long chain "a + b + c …" is a tall tree too).
constexpr int kMaxTreeDepth = 256;

struct Symbol {
    enum class What { Variable, Constant, TypeName, Function, Native };
    What what = What::Variable;
    Type type;
    bool global = true;
    int slot = -1;
    bool writable = true;
    Value literal;  // of a Constant
    Function* function = nullptr;
    std::vector<const Native*> natives;
    QString spelling;
};

struct Signature {
    struct Param {
        QChar code;
        bool byReference = false;
    };
    QChar result;
    std::vector<Param> params;
    size_t required = 0;
};

Signature parseSignature(const QString& text)
{
    Signature s;
    s.result = text[0];
    s.required = size_t(-1);
    bool byReference = false;
    for (qsizetype i = 2; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c == u'&') {
            byReference = true;
        } else if (c == u'|') {
            s.required = s.params.size();
        } else {
            s.params.push_back({c, byReference});
            byReference = false;
        }
    }
    if (s.required == size_t(-1))
        s.required = s.params.size();
    return s;
}

Type typeOfCode(QChar code)
{
    switch (code.unicode()) {
    case u'I': return kInteger;
    case u'D': return kDouble;
    case u'B': return kBoolean;
    case u'C': return kChar;
    case u'S': return kString;
    case u'T': return kStringArray;
    default: return kVoid;
    }
}

bool isOneCharLiteral(const Expr& e) { return e.type.kind == Kind::String && e.literal() && e.literal()->s.size() == 1; }

bool accepts(QChar code, bool byReference, const Expr& arg)
{
    const Type t = arg.type;
    switch (code.unicode()) {
    case u'I': return t.kind == Kind::Integer;
    case u'D': return t.kind == Kind::Double || (!byReference && t.kind == Kind::Integer);
    case u'B': return t.kind == Kind::Boolean;
    case u'C': return t.kind == Kind::Char || (!byReference && isOneCharLiteral(arg));
    case u'S': return t.kind == Kind::String || (!byReference && t.kind == Kind::Char);
    case u'T': return t == kStringArray;
    case u'A': return t.kind == Kind::Array;
    case u'O': return t.isOrdinal() || (!byReference && isOneCharLiteral(arg));
    case u'L': return t.kind == Kind::List;
    default: return false;
    }
}

// An ordinal reinterpreted as another ordinal: Integer(c), Char(i), Boolean(i).
struct Retype final : Unary {
    qint64 mask = -1;
    bool toBoolean = false;
    Value eval(Machine& m) const override { return Value::integer(evalInt(m)); }
    qint64 evalInt(Machine& m) const override
    {
        const qint64 v = operand->evalInt(m);
        return toBoolean ? (v != 0) : (v & mask);
    }
};

class Parser {
public:
    Parser(std::vector<Token> tokens, Program& program, const std::vector<HostVariable>& variables)
        : m_tokens(std::move(tokens)), m_program(program)
    {
        predefine(variables);
    }

    void run()
    {
        if (acceptKeyword(u"program")) {
            identifier();
            expectSymbol(u";");
        }
        if (acceptKeyword(u"uses")) {
            // There are no units to use; the clause is allowed so that scripts written for
            // other programs compile.
            do
                identifier();
            while (acceptSymbol(u","));
            expectSymbol(u";");
        }
        declarations(true);
        if (cur().isKeyword(u"begin")) {
            m_program.main = compound();
            if (!acceptSymbol(u".") && cur().kind != Tok::End)
                fail(cur().at, scriptTr("程序的“end”后面应为“.”"));
        } else {
            // A script may be just statements, without begin … end.
            m_program.main = statementList();
        }
        if (cur().kind != Tok::End)
            fail(cur().at, scriptTr("此处应为脚本结尾，而不是“%1”").arg(describe(cur())));
        for (const auto& function : m_program.functions) {
            if (!function->body)
                fail(function->at, scriptTr("“%1”声明为 forward 但没有定义").arg(function->name));
        }
    }

private:
    // -----------------------------------------------------------------------------------
    // Tokens

    const Token& cur() const { return m_tokens[m_pos]; }
    const Token& ahead() const { return m_tokens[std::min(m_pos + 1, m_tokens.size() - 1)]; }
    void advance()
    {
        if (m_pos + 1 < m_tokens.size())
            ++m_pos;
    }
    bool acceptSymbol(QStringView s)
    {
        if (!cur().isSymbol(s))
            return false;
        advance();
        return true;
    }
    bool acceptKeyword(QStringView k)
    {
        if (!cur().isKeyword(k))
            return false;
        advance();
        return true;
    }
    static QString describe(const Token& t)
    {
        switch (t.kind) {
        case Tok::End: return scriptTr("脚本结尾");
        case Tok::String: return u'\'' + t.text + u'\'';
        case Tok::Identifier: return t.spelling;
        case Tok::Integer: return QString::number(t.integer);
        case Tok::Real: return QString::number(t.real);
        default: return t.text;
        }
    }
    [[noreturn]] static void fail(const Position& at, const QString& message) { throw ScriptError{at, message}; }
    void expectSymbol(QStringView s)
    {
        if (!acceptSymbol(s))
            fail(cur().at, scriptTr("此处应为“%1”，而不是“%2”").arg(s.toString(), describe(cur())));
    }
    void expectKeyword(QStringView k)
    {
        if (!acceptKeyword(k))
            fail(cur().at, scriptTr("此处应为“%1”，而不是“%2”").arg(k.toString(), describe(cur())));
    }
    QString identifier(QString* spelling = nullptr)
    {
        if (cur().kind != Tok::Identifier)
            fail(cur().at, scriptTr("此处应为名称，而不是“%1”").arg(describe(cur())));
        if (spelling)
            *spelling = cur().spelling;
        QString name = cur().text;
        advance();
        return name;
    }

    struct Nesting {
        Parser& p;
        Nesting(Parser& parser, const Position& at) : p(parser)
        {
            if (++p.m_nesting > kMaxNesting)
                fail(at, scriptTr("嵌套层数过多（最多 %1 层）").arg(kMaxNesting));
        }
        ~Nesting() { --p.m_nesting; }
    };

    // -----------------------------------------------------------------------------------
    // Symbols

    void predefine(const std::vector<HostVariable>& variables)
    {
        const std::pair<const char*, Type> types[] = {
            {"integer", kInteger}, {"int64", kInteger}, {"longint", kInteger}, {"cardinal", kInteger},
            {"longword", kInteger}, {"word", kInteger}, {"byte", kInteger}, {"smallint", kInteger},
            {"shortint", kInteger}, {"uint64", kInteger}, {"nativeint", kInteger}, {"double", kDouble},
            {"real", kDouble}, {"extended", kDouble}, {"single", kDouble}, {"currency", kDouble},
            {"tdatetime", kDouble}, {"tdate", kDouble}, {"ttime", kDouble}, {"boolean", kBoolean},
            {"char", kChar}, {"widechar", kChar}, {"ansichar", kChar}, {"string", kString},
            {"widestring", kString}, {"unicodestring", kString}, {"ansistring", kString},
            {"tstringarray", kStringArray}, {"twidestringarray", kStringArray},
        };
        for (const auto& [name, type] : types) {
            Symbol s;
            s.what = Symbol::What::TypeName;
            s.type = type;
            m_globals.insert(QString::fromLatin1(name), s);
        }
        const std::pair<const char*, qint64> integers[] = {
            {"maxint", 2147483647}, {"rfreplaceall", 0}, {"rfignorecase", 1}};
        for (const auto& [name, value] : integers)
            constant(QString::fromLatin1(name), kInteger, Value::integer(value));
        constant(QStringLiteral("true"), kBoolean, Value::boolean(true));
        constant(QStringLiteral("false"), kBoolean, Value::boolean(false));
        constant(QStringLiteral("pi"), kDouble, Value::real(3.14159265358979323846));
        for (const Native& n : languageNatives())
            addNative(n);
        for (const Native& n : m_program.hostFunctions)
            addNative(n);
        m_program.hostVariableUsed.assign(variables.size(), false);
        for (const HostVariable& v : variables) {
            Symbol s;
            s.type = v.type;
            s.slot = m_program.globalCount++;
            s.writable = v.writable;
            s.spelling = v.name;
            m_globals.insert(v.name.toCaseFolded(), s);
            m_declared.insert(v.name.toCaseFolded());
        }
    }

    void constant(const QString& name, Type type, Value value)
    {
        Symbol s;
        s.what = Symbol::What::Constant;
        s.type = type;
        s.literal = std::move(value);
        m_globals.insert(name, s);
    }

    void addNative(const Native& n)
    {
        Symbol& s = m_globals[n.name.toCaseFolded()];
        if (s.what != Symbol::What::Native) {
            s = Symbol{};
            s.what = Symbol::What::Native;
        }
        s.natives.push_back(&n);
        s.spelling = n.name;
        if (!m_signatures.contains(&n)) {
            m_signatures.insert(&n, parseSignature(n.signature));
            Q_ASSERT(m_signatures[&n].params.size() <= NativeCall::kMaxArguments);
        }
    }

    const Symbol* lookup(const QString& name) const
    {
        if (m_locals) {
            const auto it = m_locals->constFind(name);
            if (it != m_locals->constEnd())
                return &*it;
        }
        const auto it = m_globals.constFind(name);
        return it != m_globals.constEnd() ? &*it : nullptr;
    }

    // Names of the script may hide the predefined ones, but not each other within a scope.
    void declare(const Position& at, const QString& name, Symbol s)
    {
        QHash<QString, Symbol>& scope = m_locals ? *m_locals : m_globals;
        if (m_declared.contains(scopeKey(name)))
            fail(at, scriptTr("重复定义“%1”").arg(s.spelling));
        m_declared.insert(scopeKey(name));
        scope.insert(name, std::move(s));
    }
    QString scopeKey(const QString& name) const { return m_locals ? m_function->name + u'.' + name : name; }

    int newSlot(bool global) { return global ? m_program.globalCount++ : m_function->slotCount++; }

    std::unique_ptr<VarRef> variableRef(const Symbol& s, const Position& at)
    {
        if (s.global && size_t(s.slot) < m_program.hostVariableUsed.size())
            m_program.hostVariableUsed[size_t(s.slot)] = true;
        auto ref = std::make_unique<VarRef>();
        ref->type = s.type;
        ref->at = at;
        ref->global = s.global;
        ref->slot = s.slot;
        ref->writable = s.writable;
        ref->name = s.spelling;
        return ref;
    }

    // Where initial values go: the run's start for globals, the procedure's start for locals.
    void initialize(const Symbol& s, ExprPtr value, const Position& at)
    {
        auto assign = std::make_unique<Assign>();
        assign->at = at;
        assign->target = variableRef(s, at);
        assign->value = std::move(value);
        (m_locals ? m_prologue : m_program.initializers).push_back(std::move(assign));
    }

    // -----------------------------------------------------------------------------------
    // Declarations

    void declarations(bool global)
    {
        for (;;) {
            if (acceptKeyword(u"const")) {
                constSection();
            } else if (acceptKeyword(u"var")) {
                varSection();
            } else if (acceptKeyword(u"type")) {
                typeSection();
            } else if (cur().isKeyword(u"procedure") || cur().isKeyword(u"function")) {
                if (!global)
                    fail(cur().at, scriptTr("不支持在过程或函数中再定义过程或函数"));
                routine();
            } else {
                return;
            }
        }
    }

    void constSection()
    {
        while (cur().kind == Tok::Identifier) {
            const Position at = cur().at;
            Symbol s;
            const QString name = identifier(&s.spelling);
            std::optional<Type> declared;
            if (acceptSymbol(u":"))
                declared = parseType();
            expectSymbol(u"=");
            ExprPtr value = expression();
            if (declared)
                value = convert(std::move(value), *declared, at);
            s.type = value->type;
            if (value->type.kind == Kind::List)
                fail(at, scriptTr("常量不能是列表"));
            if (const Value* literal = value->literal()) {
                s.what = Symbol::What::Constant;
                s.literal = *literal;
            } else {
                s.global = !m_locals;
                s.slot = newSlot(s.global);
                s.writable = false;
                initialize(s, std::move(value), at);
            }
            declare(at, name, s);
            expectSymbol(u";");
        }
    }

    void varSection()
    {
        while (cur().kind == Tok::Identifier) {
            std::vector<std::pair<Position, Symbol>> names;
            std::vector<QString> keys;
            do {
                Symbol s;
                const Position at = cur().at;
                keys.push_back(identifier(&s.spelling));
                names.emplace_back(at, s);
            } while (acceptSymbol(u","));
            expectSymbol(u":");
            const Type type = parseType();
            ExprPtr value;
            const Position valueAt = cur().at;
            if (acceptSymbol(u"=")) {
                if (names.size() > 1)
                    fail(valueAt, scriptTr("只能给单个变量指定初值"));
                value = convert(expression(), type, valueAt);
            }
            expectSymbol(u";");
            for (size_t i = 0; i < names.size(); ++i) {
                Symbol& s = names[i].second;
                s.type = type;
                s.global = !m_locals;
                s.slot = newSlot(s.global);
                declare(names[i].first, keys[i], s);
                if (value)
                    initialize(s, std::move(value), valueAt);
            }
        }
    }

    void typeSection()
    {
        while (cur().kind == Tok::Identifier) {
            const Position at = cur().at;
            Symbol s;
            const QString name = identifier(&s.spelling);
            expectSymbol(u"=");
            s.what = Symbol::What::TypeName;
            s.type = parseType();
            expectSymbol(u";");
            declare(at, name, s);
        }
    }

    Type parseType()
    {
        if (acceptKeyword(u"array")) {
            if (cur().isSymbol(u"["))
                fail(cur().at, scriptTr("不支持定长数组，请使用动态数组（array of …）"));
            expectKeyword(u"of");
            const Position at = cur().at;
            const Type element = parseType();
            if (element.kind == Kind::Array)
                fail(at, scriptTr("不支持多维数组"));
            return arrayOf(element.kind);
        }
        const Position at = cur().at;
        QString spelling;
        const Symbol* s = lookup(identifier(&spelling));
        if (!s || s->what != Symbol::What::TypeName)
            fail(at, scriptTr("“%1”不是类型").arg(spelling));
        return s->type;
    }

    void routine()
    {
        const bool isFunction = cur().isKeyword(u"function");
        advance();
        const Position at = cur().at;
        QString spelling;
        const QString name = identifier(&spelling);

        auto header = std::make_unique<Function>();
        header->name = spelling;
        header->at = at;
        const bool hasParams = parameters(*header);
        // The definition of a routine declared forward may leave its header out.
        if (isFunction && (hasParams || !cur().isSymbol(u";") || !isForward(name))) {
            expectSymbol(u":");
            header->result = parseType();
        }
        expectSymbol(u";");

        Function* function = declareRoutine(at, name, std::move(header), hasParams);
        if (acceptKeyword(u"forward")) {
            expectSymbol(u";");
            return;
        }
        body(*function);
        expectSymbol(u";");
    }

    bool parameters(Function& f)
    {
        if (!acceptSymbol(u"("))
            return false;
        if (acceptSymbol(u")"))
            return true;
        do {
            const bool byReference = acceptKeyword(u"var");
            const bool constant = !byReference && acceptKeyword(u"const");
            std::vector<QString> names;
            do
                names.push_back(identifier());
            while (acceptSymbol(u","));
            expectSymbol(u":");
            const Type type = parseType();
            for (const QString& n : names)
                f.params.push_back({n, type, byReference, constant, f.slotCount++});
        } while (acceptSymbol(u";"));
        expectSymbol(u")");
        return true;
    }

    static bool sameSignature(const Function& a, const Function& b)
    {
        if (a.result != b.result || a.params.size() != b.params.size())
            return false;
        for (size_t i = 0; i < a.params.size(); ++i) {
            if (a.params[i].type != b.params[i].type || a.params[i].byReference != b.params[i].byReference)
                return false;
        }
        return true;
    }

    bool isForward(const QString& name) const
    {
        const auto it = m_globals.constFind(name);
        return it != m_globals.constEnd() && it->what == Symbol::What::Function && !it->function->body;
    }

    // A new routine, or the definition of one declared forward (whose header may then be
    // left out, or must repeat the forward one).
    Function* declareRoutine(const Position& at, const QString& name, std::unique_ptr<Function> header, bool hasParams)
    {
        if (isForward(name)) {
            Function* earlier = m_globals.constFind(name)->function;
            if ((hasParams || header->result.kind != Kind::Void) && !sameSignature(*earlier, *header))
                fail(at, scriptTr("“%1”的定义与 forward 声明不一致").arg(header->name));
            if (hasParams) {
                for (size_t i = 0; i < earlier->params.size(); ++i)
                    earlier->params[i].name = header->params[i].name;
            }
            return earlier;
        }
        Symbol s;
        s.what = Symbol::What::Function;
        s.type = header->result;
        s.spelling = header->name;
        s.function = header.get();
        m_program.functions.push_back(std::move(header));
        declare(at, name, s);
        return s.function;
    }

    void body(Function& f)
    {
        QHash<QString, Symbol> locals;
        m_locals = &locals;
        m_function = &f;
        m_prologue.clear();
        for (const Function::Param& p : f.params) {
            Symbol s;
            s.type = p.type;
            s.global = false;
            s.slot = p.slot;
            s.writable = !p.constant;
            s.spelling = p.name;
            declare(f.at, p.name, s);
        }
        if (f.result.kind != Kind::Void) {
            f.resultSlot = f.slotCount++;
            Symbol s;
            s.type = f.result;
            s.global = false;
            s.slot = f.resultSlot;
            s.spelling = QStringLiteral("Result");
            declare(f.at, QStringLiteral("result"), s);
        }
        declarations(false);
        auto block = std::make_unique<Block>();
        block->at = cur().at;
        block->body = std::move(m_prologue);
        block->body.push_back(compound());
        f.body = std::move(block);
        m_locals = nullptr;
        m_function = nullptr;
    }

    // -----------------------------------------------------------------------------------
    // Statements

    std::unique_ptr<Block> compound()
    {
        expectKeyword(u"begin");
        auto block = statementList();
        if (!acceptKeyword(u"end"))
            fail(cur().at, scriptTr("此处应为“;”或“end”，而不是“%1”").arg(describe(cur())));
        return block;
    }

    std::unique_ptr<Block> statementList()
    {
        auto block = std::make_unique<Block>();
        block->at = cur().at;
        do {
            if (StmtPtr s = statement())
                block->body.push_back(std::move(s));
        } while (acceptSymbol(u";"));
        return block;
    }

    // A word the script has not given another meaning.
    bool isPlain(const Token& t, QStringView word) const { return t.kind == Tok::Identifier && t.text == word && !lookup(t.text); }

    StmtPtr statement()
    {
        const Token& t = cur();
        Nesting nesting(*this, t.at);
        if (t.isKeyword(u"begin"))
            return compound();
        if (t.isKeyword(u"if"))
            return ifStatement();
        if (t.isKeyword(u"case"))
            return caseStatement();
        if (t.isKeyword(u"for"))
            return forStatement();
        if (t.isKeyword(u"while"))
            return whileStatement();
        if (t.isKeyword(u"repeat"))
            return repeatStatement();
        if (isPlain(t, u"exit") || isPlain(t, u"break") || isPlain(t, u"continue"))
            return jump();
        if (t.kind == Tok::Identifier)
            return simpleStatement();
        return nullptr;  // the empty statement
    }

    StmtPtr jump()
    {
        auto j = std::make_unique<Jump>();
        j->at = cur().at;
        const QString word = identifier();
        if (word == u"exit") {
            j->flow = Flow::Exit;
            if (acceptSymbol(u"(")) {
                if (!m_function || m_function->result.kind == Kind::Void)
                    fail(j->at, scriptTr("只有函数的 Exit 可以带返回值"));
                j->value = convert(expression(), m_function->result, j->at);
                j->resultSlot = m_function->resultSlot;
                expectSymbol(u")");
            }
        } else {
            if (m_loops == 0)
                fail(j->at, scriptTr("%1 只能用在循环中").arg(word == u"break" ? QStringLiteral("Break") : QStringLiteral("Continue")));
            j->flow = word == u"break" ? Flow::Break : Flow::Continue;
        }
        return j;
    }

    StmtPtr simpleStatement()
    {
        const Position at = cur().at;
        ExprPtr target;
        // Classic Pascal: a function's name on the left of ":=" inside it sets its result.
        if (m_function && m_function->resultSlot >= 0 && cur().text == m_function->name.toCaseFolded()
            && ahead().isSymbol(u":=")) {
            advance();
            target = variableRef(*lookup(QStringLiteral("result")), at);
        } else {
            target = designatorOrCall();
        }
        if (cur().isSymbol(u":=")) {
            advance();
            const Position valueAt = cur().at;
            auto* designator = dynamic_cast<Designator*>(target.get());
            if (!designator || !designator->writable)
                fail(at, designator ? scriptTr("“%1”是只读的，不能赋值").arg(designator->name)
                                    : scriptTr("赋值号左边必须是变量"));
            auto assign = std::make_unique<Assign>();
            assign->at = at;
            assign->value = convert(expression(), designator->type, valueAt);
            target.release();
            assign->target.reset(designator);
            return assign;
        }
        if (!dynamic_cast<NativeCall*>(target.get()) && !dynamic_cast<UserCall*>(target.get()))
            fail(cur().at, scriptTr("此处应为“:=”，而不是“%1”").arg(describe(cur())));
        auto call = std::make_unique<CallStmt>();
        call->at = at;
        call->call = std::move(target);
        return call;
    }

    ExprPtr condition()
    {
        const Position at = cur().at;
        ExprPtr c = expression();
        if (c->type.kind != Kind::Boolean)
            fail(at, scriptTr("条件必须是 Boolean，而不是 %1").arg(typeName(c->type)));
        return c;
    }

    StmtPtr ifStatement()
    {
        auto s = std::make_unique<If>();
        s->at = cur().at;
        advance();
        s->condition = condition();
        expectKeyword(u"then");
        s->then = statement();
        if (acceptKeyword(u"else"))
            s->otherwise = statement();
        return s;
    }

    StmtPtr whileStatement()
    {
        auto s = std::make_unique<While>();
        s->at = cur().at;
        advance();
        s->condition = condition();
        expectKeyword(u"do");
        ++m_loops;
        s->body = statement();
        --m_loops;
        return s;
    }

    StmtPtr repeatStatement()
    {
        auto s = std::make_unique<Repeat>();
        s->at = cur().at;
        advance();
        ++m_loops;
        s->body.body = std::move(statementList()->body);
        --m_loops;
        expectKeyword(u"until");
        s->condition = condition();
        return s;
    }

    StmtPtr forStatement()
    {
        auto s = std::make_unique<For>();
        s->at = cur().at;
        advance();
        const Position at = cur().at;
        QString spelling;
        const Symbol* v = lookup(identifier(&spelling));
        if (!v || v->what != Symbol::What::Variable || !v->writable || !v->type.isOrdinal())
            fail(at, scriptTr("for 循环的变量“%1”必须是可写的整数或字符变量").arg(spelling));
        s->variable = variableRef(*v, at);
        expectSymbol(u":=");
        s->from = convert(expression(), v->type, at);
        if (acceptKeyword(u"downto"))
            s->down = true;
        else
            expectKeyword(u"to");
        s->to = convert(expression(), v->type, at);
        expectKeyword(u"do");
        ++m_loops;
        s->body = statement();
        --m_loops;
        return s;
    }

    Value caseLabel(const Type& type)
    {
        const Position at = cur().at;
        ExprPtr e = convert(expression(), type, at);
        if (!e->literal())
            fail(at, scriptTr("case 的分支标签必须是常量"));
        return *e->literal();
    }

    StmtPtr caseStatement()
    {
        auto s = std::make_unique<Case>();
        s->at = cur().at;
        advance();
        s->selector = expression();
        const Type type = s->selector->type;
        if (!type.isOrdinal() && type.kind != Kind::String)
            fail(s->at, scriptTr("case 的选择表达式必须是整数、字符或字符串"));
        s->text = type.kind == Kind::String;
        expectKeyword(u"of");
        while (!cur().isKeyword(u"else") && !cur().isKeyword(u"end")) {
            Case::Branch branch;
            do {
                Case::Label label;
                label.low = caseLabel(type);
                label.high = acceptSymbol(u"..") ? caseLabel(type) : label.low;
                branch.labels.push_back(std::move(label));
            } while (acceptSymbol(u","));
            expectSymbol(u":");
            branch.body = statement();
            s->branches.push_back(std::move(branch));
            if (!acceptSymbol(u";"))
                break;
        }
        if (acceptKeyword(u"else"))
            s->otherwise = statementList();
        expectKeyword(u"end");
        return s;
    }

    // -----------------------------------------------------------------------------------
    // Expressions

    template <typename Node>
    ExprPtr finish(std::unique_ptr<Node> node, std::initializer_list<const Expr*> children)
    {
        int depth = 0;
        for (const Expr* child : children)
            depth = std::max(depth, child->depth);
        node->depth = depth + 1;
        if (node->depth > kMaxTreeDepth)
            fail(node->at, scriptTr("表达式过于复杂"));
        bool constant = children.size() > 0;
        for (const Expr* child : children)
            constant = constant && child->literal();
        ExprPtr e = std::move(node);
        return constant ? fold(std::move(e)) : std::move(e);
    }

    // An operator over literals becomes a literal, so that "-1" or "2 * 8" can be a case
    // label or a constant.
    static ExprPtr fold(ExprPtr e)
    {
        Machine m{Limits{}};
        Value v = e->eval(m);
        return std::make_unique<Literal>(e->type, std::move(v), e->at);
    }

    template <typename Node>
    std::unique_ptr<Node> unaryNode(ExprPtr operand, Type type, const Position& at)
    {
        auto node = std::make_unique<Node>();
        node->type = type;
        node->at = at;
        node->operand = std::move(operand);
        return node;
    }
    template <typename Node>
    ExprPtr unary(ExprPtr operand, Type type, const Position& at)
    {
        const Expr* child = operand.get();
        auto node = unaryNode<Node>(std::move(operand), type, at);
        return finish(std::move(node), {child});
    }

    template <typename Node>
    ExprPtr binary(Op op, ExprPtr l, ExprPtr r, Type type, const Position& at)
    {
        auto node = std::make_unique<Node>();
        node->op = op;
        node->type = type;
        node->at = at;
        const Expr* a = l.get();
        const Expr* b = r.get();
        node->left = std::move(l);
        node->right = std::move(r);
        return finish(std::move(node), {a, b});
    }

    // The value of `e` as type `to`, or a compile error. Integers widen to Double, a Char to
    // a String, and a one-character string literal serves as a Char.
    ExprPtr convert(ExprPtr e, const Type& to, const Position& at)
    {
        if (e->type == to)
            return e;
        const Position where = e->at;
        if (to.kind == Kind::Double && e->type.kind == Kind::Integer)
            return unary<IntToDouble>(std::move(e), kDouble, where);
        if (to.kind == Kind::String && e->type.kind == Kind::Char)
            return unary<CharToString>(std::move(e), kString, where);
        if (to.kind == Kind::Char && isOneCharLiteral(*e))
            return std::make_unique<Literal>(kChar, Value::character(e->literal()->s[0].unicode()), where);
        fail(at, scriptTr("类型不匹配：%1 不能用作 %2").arg(typeName(e->type), typeName(to)));
    }

    ExprPtr expression()
    {
        ExprPtr left = simpleExpression();
        static const std::pair<QStringView, Op> relations[] = {{u"=", Op::Eq},  {u"<>", Op::Ne}, {u"<", Op::Lt},
                                                               {u">", Op::Gt},  {u"<=", Op::Le}, {u">=", Op::Ge}};
        const Position at = cur().at;
        if (acceptKeyword(u"in"))
            return membership(std::move(left), at);
        for (const auto& [symbol, op] : relations) {
            if (acceptSymbol(symbol))
                return comparison(op, symbol, std::move(left), simpleExpression(), at);
        }
        return left;
    }

    ExprPtr comparison(Op op, QStringView symbol, ExprPtr l, ExprPtr r, const Position& at)
    {
        const Type a = l->type;
        const Type b = r->type;
        if (a.kind == Kind::Integer && b.kind == Kind::Integer)
            return binary<IntCompare>(op, std::move(l), std::move(r), kBoolean, at);
        if (a.isNumeric() && b.isNumeric())
            return binary<DoubleCompare>(op, convert(std::move(l), kDouble, at), convert(std::move(r), kDouble, at), kBoolean, at);
        if (a == b && (a.kind == Kind::Char || a.kind == Kind::Boolean))
            return binary<IntCompare>(op, std::move(l), std::move(r), kBoolean, at);
        if (a.isText() && b.isText())
            return binary<StringCompare>(op, convert(std::move(l), kString, at), convert(std::move(r), kString, at), kBoolean, at);
        operatorMismatch(symbol, a, b, at);
    }

    [[noreturn]] static void operatorMismatch(QStringView symbol, const Type& a, const Type& b, const Position& at)
    {
        fail(at, scriptTr("运算符“%1”不能用于 %2 和 %3").arg(symbol.toString(), typeName(a), typeName(b)));
    }

    ExprPtr membership(ExprPtr item, const Position& at)
    {
        ExprPtr set = simpleExpression();
        auto* list = dynamic_cast<ListLiteral*>(set.get());
        if (!list)
            fail(at, scriptTr("“in”的右边必须是“[…]”列表"));
        if (!item->type.isOrdinal())
            fail(at, scriptTr("“in”只能用于整数、字符和 Boolean"));
        auto node = std::make_unique<InList>();
        node->type = kBoolean;
        node->at = at;
        node->depth = std::max(item->depth, set->depth) + 1;
        for (auto& [low, high] : list->entries) {
            ExprPtr lo = convert(std::move(low), item->type, at);
            ExprPtr hi = high ? convert(std::move(high), item->type, at) : nullptr;
            node->ranges.emplace_back(std::move(lo), std::move(hi));
        }
        node->item = std::move(item);
        return node;
    }

    ExprPtr simpleExpression()
    {
        ExprPtr left = term();
        for (;;) {
            const Position at = cur().at;
            const Token& t = cur();
            if (t.isSymbol(u"+") || t.isSymbol(u"-")) {
                const bool plus = t.isSymbol(u"+");
                advance();
                left = additive(plus, std::move(left), term(), at);
            } else if (t.isKeyword(u"or") || t.isKeyword(u"xor")) {
                const Op op = t.isKeyword(u"or") ? Op::Or : Op::Xor;
                const QString symbol = t.text;
                advance();
                left = logical(op, symbol, std::move(left), term(), at);
            } else {
                return left;
            }
        }
    }

    ExprPtr additive(bool plus, ExprPtr l, ExprPtr r, const Position& at)
    {
        const Type a = l->type;
        const Type b = r->type;
        const Op op = plus ? Op::Add : Op::Sub;
        if (plus && a.isText() && b.isText())
            return binary<Concat>(op, convert(std::move(l), kString, at), convert(std::move(r), kString, at), kString, at);
        return arithmetic(op, plus ? u"+" : u"-", std::move(l), std::move(r), at);
    }

    ExprPtr arithmetic(Op op, QStringView symbol, ExprPtr l, ExprPtr r, const Position& at)
    {
        const Type a = l->type;
        const Type b = r->type;
        if (a.kind == Kind::Integer && b.kind == Kind::Integer && op != Op::Divide)
            return binary<IntArithmetic>(op, std::move(l), std::move(r), kInteger, at);
        if (a.isNumeric() && b.isNumeric())
            return binary<DoubleArithmetic>(op, convert(std::move(l), kDouble, at), convert(std::move(r), kDouble, at), kDouble, at);
        operatorMismatch(symbol, a, b, at);
    }

    ExprPtr logical(Op op, const QString& symbol, ExprPtr l, ExprPtr r, const Position& at)
    {
        const Type a = l->type;
        const Type b = r->type;
        if (a.kind == Kind::Boolean && b.kind == Kind::Boolean) {
            if (op == Op::Xor)
                return binary<IntArithmetic>(op, std::move(l), std::move(r), kBoolean, at);
            return binary<ShortCircuit>(op, std::move(l), std::move(r), kBoolean, at);
        }
        if (a.kind == Kind::Integer && b.kind == Kind::Integer)
            return binary<IntArithmetic>(op, std::move(l), std::move(r), kInteger, at);
        operatorMismatch(symbol, a, b, at);
    }

    ExprPtr term()
    {
        ExprPtr left = factor();
        for (;;) {
            const Position at = cur().at;
            const Token& t = cur();
            if (t.isSymbol(u"*") || t.isSymbol(u"/")) {
                const bool times = t.isSymbol(u"*");
                advance();
                left = arithmetic(times ? Op::Mul : Op::Divide, times ? u"*" : u"/", std::move(left), factor(), at);
            } else if (t.isKeyword(u"and")) {
                advance();
                left = logical(Op::And, QStringLiteral("and"), std::move(left), factor(), at);
            } else if (t.isKeyword(u"div") || t.isKeyword(u"mod") || t.isKeyword(u"shl") || t.isKeyword(u"shr")) {
                const QString word = t.text;
                const Op op = word == u"div" ? Op::IntDiv : word == u"mod" ? Op::Mod : word == u"shl" ? Op::Shl : Op::Shr;
                advance();
                ExprPtr r = factor();
                if (left->type.kind != Kind::Integer || r->type.kind != Kind::Integer)
                    operatorMismatch(word, left->type, r->type, at);
                left = binary<IntArithmetic>(op, std::move(left), std::move(r), kInteger, at);
            } else {
                return left;
            }
        }
    }

    ExprPtr factor()
    {
        const Token& t = cur();
        const Position at = t.at;
        Nesting nesting(*this, at);
        switch (t.kind) {
        case Tok::Integer: {
            auto e = std::make_unique<Literal>(kInteger, Value::integer(t.integer), at);
            advance();
            return e;
        }
        case Tok::Real: {
            auto e = std::make_unique<Literal>(kDouble, Value::real(t.real), at);
            advance();
            return e;
        }
        case Tok::String: {
            auto e = std::make_unique<Literal>(kString, Value::string(t.text), at);
            advance();
            return e;
        }
        case Tok::Identifier:
            return designatorOrCall();
        default:
            break;
        }
        if (acceptSymbol(u"(")) {
            ExprPtr e = expression();
            expectSymbol(u")");
            return postfix(std::move(e));
        }
        if (acceptKeyword(u"not")) {
            ExprPtr e = factor();
            if (e->type.kind == Kind::Boolean)
                return unary<BoolNot>(std::move(e), kBoolean, at);
            if (e->type.kind == Kind::Integer)
                return unary<IntNot>(std::move(e), kInteger, at);
            fail(at, scriptTr("“not”不能用于 %1").arg(typeName(e->type)));
        }
        if (t.isSymbol(u"-") || t.isSymbol(u"+")) {
            const bool minus = t.isSymbol(u"-");
            advance();
            ExprPtr e = factor();
            if (!e->type.isNumeric())
                fail(at, scriptTr("正负号不能用于 %1").arg(typeName(e->type)));
            if (!minus)
                return e;
            if (e->type.kind == Kind::Integer)
                return unary<IntNegate>(std::move(e), kInteger, at);
            return unary<DoubleNegate>(std::move(e), kDouble, at);
        }
        if (acceptSymbol(u"["))
            return listLiteral(at);
        fail(at, scriptTr("此处应为表达式，而不是“%1”").arg(describe(t)));
    }

    ExprPtr listLiteral(const Position& at)
    {
        auto list = std::make_unique<ListLiteral>();
        list->at = at;
        list->type = Type{Kind::List};
        if (!acceptSymbol(u"]")) {
            do {
                ExprPtr item = expression();
                ExprPtr high = acceptSymbol(u"..") ? expression() : nullptr;
                if (item->type.kind == Kind::List || item->type.kind == Kind::Void)
                    fail(item->at, scriptTr("列表中不能有 %1").arg(typeName(item->type)));
                const bool first = list->entries.empty();
                list->type.element = first || list->type.element == item->type.kind ? item->type.kind : Kind::Void;
                list->depth = std::max({list->depth, item->depth + 1, high ? high->depth + 1 : 0});
                list->entries.emplace_back(std::move(item), std::move(high));
            } while (acceptSymbol(u","));
            expectSymbol(u"]");
        }
        return list;
    }

    ExprPtr designatorOrCall()
    {
        const Position at = cur().at;
        QString spelling;
        const QString name = identifier(&spelling);
        const Symbol* s = lookup(name);
        if (!s)
            fail(at, scriptTr("未知的名称“%1”").arg(spelling));
        switch (s->what) {
        case Symbol::What::Variable:
            return postfix(variableRef(*s, at));
        case Symbol::What::Constant:
            return postfix(std::make_unique<Literal>(s->type, s->literal, at));
        case Symbol::What::TypeName:
            return postfix(cast(s->type, spelling, at));
        case Symbol::What::Function:
            return postfix(userCall(*s->function, at));
        case Symbol::What::Native:
            return postfix(nativeCall(*s, at));
        }
        fail(at, spelling);
    }

    ExprPtr postfix(ExprPtr base)
    {
        while (cur().isSymbol(u"[")) {
            Position at = cur().at;
            advance();
            do {
                base = index(std::move(base), at);
                at = cur().at;
            } while (acceptSymbol(u","));
            expectSymbol(u"]");
        }
        return base;
    }

    ExprPtr index(ExprPtr base, const Position& at)
    {
        const Type type = base->type;
        if (type.kind != Kind::Array && type.kind != Kind::String)
            fail(at, scriptTr("%1 不能用下标").arg(typeName(type)));
        ExprPtr i = expression();
        if (i->type.kind != Kind::Integer)
            fail(at, scriptTr("下标必须是整数"));
        auto* designator = dynamic_cast<Designator*>(base.get());
        const bool assignable = designator && designator->writable
            && (dynamic_cast<VarRef*>(designator) || dynamic_cast<ArrayElement*>(designator));
        auto fill = [&](auto node, Type elementType) -> ExprPtr {
            node->type = elementType;
            node->at = at;
            node->baseIsDesignator = assignable;
            node->writable = assignable;
            node->name = designator ? designator->name : QString();
            const Expr* a = base.get();
            const Expr* b = i.get();
            node->base = std::move(base);
            node->index = std::move(i);
            return finish(std::move(node), {a, b});
        };
        if (type.kind == Kind::Array)
            return fill(std::make_unique<ArrayElement>(), Type{type.element});
        return fill(std::make_unique<StringChar>(), kChar);
    }

    // Integer(c), Char(i), Boolean(i), String(c), Double(i).
    ExprPtr cast(const Type& to, const QString& spelling, const Position& at)
    {
        expectSymbol(u"(");
        ExprPtr e = expression();
        expectSymbol(u")");
        if (isOneCharLiteral(*e) && to.kind != Kind::String)
            e = convert(std::move(e), kChar, at);
        const Type from = e->type;
        if (from == to)
            return e;
        if (to.isOrdinal() && from.isOrdinal()) {
            auto node = unaryNode<Retype>(std::move(e), to, at);
            node->toBoolean = to.kind == Kind::Boolean;
            node->mask = to.kind == Kind::Char ? 0xFFFF : -1;
            const Expr* child = node->operand.get();
            return finish(std::move(node), {child});
        }
        if ((to.kind == Kind::String && from.kind == Kind::Char) || (to.kind == Kind::Double && from.kind == Kind::Integer))
            return convert(std::move(e), to, at);
        fail(at, scriptTr("不能把 %1 转换为 %2").arg(typeName(from), spelling));
    }

    std::vector<ExprPtr> arguments()
    {
        std::vector<ExprPtr> args;
        if (!acceptSymbol(u"("))
            return args;
        if (acceptSymbol(u")"))
            return args;
        do
            args.push_back(expression());
        while (acceptSymbol(u","));
        expectSymbol(u")");
        return args;
    }

    static const Designator* outArgument(const Expr& arg)
    {
        auto* d = dynamic_cast<const Designator*>(&arg);
        return d && d->writable ? d : nullptr;
    }

    template <typename Node>
    ExprPtr callNode(std::unique_ptr<Node> node, std::vector<ExprPtr> args, std::vector<const Designator*> outs)
    {
        int depth = 0;
        for (const ExprPtr& a : args)
            depth = std::max(depth, a->depth);
        node->depth = depth + 1;
        if (node->depth > kMaxTreeDepth)
            fail(node->at, scriptTr("表达式过于复杂"));
        node->args = std::move(args);
        node->outs = std::move(outs);
        return node;
    }

    ExprPtr userCall(const Function& f, const Position& at)
    {
        std::vector<ExprPtr> args = arguments();
        if (args.size() != f.params.size())
            fail(at, scriptTr("“%1”需要 %2 个参数，这里有 %3 个").arg(f.name).arg(f.params.size()).arg(args.size()));
        std::vector<const Designator*> outs(args.size(), nullptr);
        for (size_t i = 0; i < args.size(); ++i) {
            const Function::Param& p = f.params[i];
            if (p.byReference) {
                outs[i] = outArgument(*args[i]);
                if (!outs[i] || args[i]->type != p.type)
                    fail(args[i]->at, scriptTr("var 参数“%1”需要一个 %2 类型的变量").arg(p.name, typeName(p.type)));
            } else {
                const Position where = args[i]->at;
                args[i] = convert(std::move(args[i]), p.type, where);
            }
        }
        auto node = std::make_unique<UserCall>();
        node->function = &f;
        node->type = f.result;
        node->at = at;
        return callNode(std::move(node), std::move(args), std::move(outs));
    }

    static bool fits(const Signature& sig, const std::vector<ExprPtr>& args)
    {
        if (args.size() < sig.required || args.size() > sig.params.size())
            return false;
        for (size_t i = 0; i < args.size(); ++i) {
            const Signature::Param& p = sig.params[i];
            if (!accepts(p.code, p.byReference, *args[i]))
                return false;
            if (p.byReference && !outArgument(*args[i]))
                return false;
        }
        return true;
    }

    ExprPtr nativeCall(const Symbol& s, const Position& at)
    {
        std::vector<ExprPtr> args = arguments();
        const Native* chosen = nullptr;
        for (const Native* n : s.natives) {
            if (fits(m_signatures[n], args)) {
                chosen = n;
                break;
            }
        }
        if (!chosen) {
            for (const ExprPtr& a : args) {
                if (a->type.kind == Kind::Void)
                    fail(a->at, scriptTr("过程没有返回值，不能用作参数"));
            }
            fail(at, scriptTr("“%1”的参数个数或类型不对").arg(s.spelling));
        }
        const Signature& sig = m_signatures[chosen];
        std::vector<const Designator*> outs(args.size(), nullptr);
        for (size_t i = 0; i < args.size(); ++i) {
            const Signature::Param& p = sig.params[i];
            const Position where = args[i]->at;
            if (p.byReference)
                outs[i] = outArgument(*args[i]);
            else if (const Type t = typeOfCode(p.code); t.kind != Kind::Void)
                args[i] = convert(std::move(args[i]), t, where);
            else if (p.code == u'O' && isOneCharLiteral(*args[i]))
                args[i] = convert(std::move(args[i]), kChar, where);
            else if (p.code == u'L' && static_cast<const ListLiteral&>(*args[i]).hasRanges())
                fail(where, scriptTr("列表中的范围（..）只能用于“in”"));
        }
        auto node = std::make_unique<NativeCall>();
        node->native = chosen;
        node->type = typeOfCode(sig.result);
        node->at = at;
        return callNode(std::move(node), std::move(args), std::move(outs));
    }

    std::vector<Token> m_tokens;
    size_t m_pos = 0;
    Program& m_program;
    QHash<QString, Symbol> m_globals;
    QHash<QString, Symbol>* m_locals = nullptr;
    QSet<QString> m_declared;
    QHash<const Native*, Signature> m_signatures;
    Function* m_function = nullptr;
    std::vector<StmtPtr> m_prologue;
    int m_loops = 0;
    int m_nesting = 0;
};

}  // namespace

std::unique_ptr<Program> parseProgram(const QString& source, Host host)
{
    auto program = std::make_unique<Program>();
    program->hostFunctions = std::move(host.functions);
    Parser parser(tokenize(source), *program, host.variables);
    parser.run();
    return program;
}

}  // namespace qp::pascal
