#include "script/PascalLexer.h"

#include <QCoreApplication>
#include <QSet>
#include <limits>

namespace qp::pascal {

QString scriptTr(const char* text) { return QCoreApplication::translate("PascalScript", text); }

namespace {

const QSet<QString>& keywords()
{
    static const QSet<QString> words = {
        QStringLiteral("and"),     QStringLiteral("array"),     QStringLiteral("begin"),  QStringLiteral("case"),
        QStringLiteral("const"),   QStringLiteral("div"),       QStringLiteral("do"),     QStringLiteral("downto"),
        QStringLiteral("else"),    QStringLiteral("end"),       QStringLiteral("for"),    QStringLiteral("forward"),
        QStringLiteral("function"), QStringLiteral("if"),       QStringLiteral("in"),     QStringLiteral("mod"),
        QStringLiteral("not"),     QStringLiteral("of"),        QStringLiteral("or"),     QStringLiteral("procedure"),
        QStringLiteral("program"), QStringLiteral("repeat"),    QStringLiteral("shl"),    QStringLiteral("shr"),
        QStringLiteral("then"),    QStringLiteral("to"),        QStringLiteral("type"),   QStringLiteral("until"),
        QStringLiteral("uses"),    QStringLiteral("var"),       QStringLiteral("while"),  QStringLiteral("xor"),
    };
    return words;
}

bool isIdentifierStart(QChar c) { return c == u'_' || c.isLetter(); }
bool isIdentifierPart(QChar c) { return c == u'_' || c.isLetterOrNumber(); }
bool isDigit(QChar c) { return c >= u'0' && c <= u'9'; }
int hexDigit(QChar c)
{
    if (isDigit(c))
        return c.unicode() - u'0';
    const char16_t lower = c.unicode() | 0x20;
    return lower >= u'a' && lower <= u'f' ? lower - u'a' + 10 : -1;
}

class Lexer {
public:
    explicit Lexer(const QString& source) : m_text(source) {}

    std::vector<Token> run()
    {
        std::vector<Token> tokens;
        for (;;) {
            skipSpaceAndComments();
            Token token;
            token.at = here();
            if (m_pos >= m_text.size()) {
                tokens.push_back(token);
                return tokens;
            }
            const QChar c = m_text[m_pos];
            if (isIdentifierStart(c))
                word(token);
            else if (isDigit(c) || (c == u'$' && hexDigit(peek(1)) >= 0))
                number(token);
            else if (c == u'\'' || c == u'#')
                string(token);
            else
                symbol(token);
            tokens.push_back(std::move(token));
        }
    }

private:
    QChar peek(qsizetype ahead) const
    {
        const qsizetype at = m_pos + ahead;
        return at < m_text.size() ? m_text[at] : QChar();
    }
    Position here() const { return Position{m_line, int(m_pos - m_lineStart) + 1}; }
    [[noreturn]] void fail(const Position& at, const QString& message) const { throw ScriptError{at, message}; }

    void newLine()
    {
        ++m_line;
        m_lineStart = m_pos + 1;
    }

    void skipSpaceAndComments()
    {
        while (m_pos < m_text.size()) {
            const QChar c = m_text[m_pos];
            if (c == u'\n') {
                newLine();
                ++m_pos;
            } else if (c.isSpace()) {
                ++m_pos;
            } else if (c == u'/' && peek(1) == u'/') {
                while (m_pos < m_text.size() && m_text[m_pos] != u'\n')
                    ++m_pos;
            } else if (c == u'{') {
                skipComment(QStringLiteral("}"));
            } else if (c == u'(' && peek(1) == u'*') {
                skipComment(QStringLiteral("*)"));
            } else {
                return;
            }
        }
    }

    void skipComment(const QString& close)
    {
        const Position start = here();
        m_pos += close.size() == 1 ? 1 : 2;
        while (m_pos < m_text.size()) {
            if (QStringView(m_text).mid(m_pos).startsWith(close)) {
                m_pos += close.size();
                return;
            }
            if (m_text[m_pos] == u'\n')
                newLine();
            ++m_pos;
        }
        fail(start, scriptTr("注释没有结束"));
    }

    void word(Token& token)
    {
        const qsizetype start = m_pos;
        while (m_pos < m_text.size() && isIdentifierPart(m_text[m_pos]))
            ++m_pos;
        token.spelling = m_text.mid(start, m_pos - start);
        token.text = token.spelling.toCaseFolded();
        token.kind = keywords().contains(token.text) ? Tok::Keyword : Tok::Identifier;
    }

    void number(Token& token)
    {
        token.kind = Tok::Integer;
        if (m_text[m_pos] == u'$') {
            ++m_pos;
            quint64 value = 0;
            for (int d; (d = hexDigit(peek(0))) >= 0; ++m_pos) {
                if (value >> 60)
                    fail(token.at, scriptTr("数字太大"));
                value = value << 4 | quint64(d);
            }
            token.integer = qint64(value);
            return;
        }
        const qsizetype start = m_pos;
        while (isDigit(peek(0)))
            ++m_pos;
        bool real = false;
        if (peek(0) == u'.' && isDigit(peek(1))) {
            real = true;
            for (++m_pos; isDigit(peek(0));)
                ++m_pos;
        }
        const QChar e = peek(0);
        if ((e == u'e' || e == u'E')
            && (isDigit(peek(1)) || ((peek(1) == u'+' || peek(1) == u'-') && isDigit(peek(2))))) {
            real = true;
            m_pos += 2;
            while (isDigit(peek(0)))
                ++m_pos;
        }
        const QStringView digits = QStringView(m_text).mid(start, m_pos - start);
        bool ok = false;
        if (real) {
            token.kind = Tok::Real;
            token.real = digits.toDouble(&ok);
        } else {
            token.integer = digits.toLongLong(&ok);
        }
        if (!ok)
            fail(token.at, scriptTr("数字太大"));
    }

    // Quoted parts and #codes written next to each other make one string.
    void string(Token& token)
    {
        token.kind = Tok::String;
        while (m_pos < m_text.size()) {
            if (m_text[m_pos] == u'\'')
                quoted(token);
            else if (m_text[m_pos] == u'#')
                characterCode(token);
            else
                return;
        }
    }

    void quoted(Token& token)
    {
        const Position start = here();
        ++m_pos;
        for (;;) {
            if (m_pos >= m_text.size() || m_text[m_pos] == u'\n')
                fail(start, scriptTr("字符串没有结束"));
            const QChar c = m_text[m_pos++];
            if (c != u'\'') {
                token.text.append(c);
            } else if (peek(0) == u'\'') {
                token.text.append(c);
                ++m_pos;
            } else {
                return;
            }
        }
    }

    void characterCode(Token& token)
    {
        const Position start = here();
        ++m_pos;
        qint64 code = 0;
        const bool hex = peek(0) == u'$';
        if (hex)
            ++m_pos;
        const qsizetype first = m_pos;
        for (int d; (d = hex ? hexDigit(peek(0)) : (isDigit(peek(0)) ? peek(0).unicode() - u'0' : -1)) >= 0; ++m_pos) {
            code = code * (hex ? 16 : 10) + d;
            if (code > 0x10FFFF)
                fail(start, scriptTr("字符编码无效"));
        }
        if (m_pos == first)
            fail(start, scriptTr("“#”后面应为字符编码"));
        const char32_t c = char32_t(code);
        token.text.append(QString::fromUcs4(&c, 1));
    }

    void symbol(Token& token)
    {
        token.kind = Tok::Symbol;
        static const QStringView pairs[] = {u":=", u"<>", u"<=", u">=", u".."};
        for (QStringView pair : pairs) {
            if (QStringView(m_text).mid(m_pos).startsWith(pair)) {
                token.text = pair.toString();
                m_pos += 2;
                return;
            }
        }
        const QChar c = m_text[m_pos];
        if (!QStringView(u"+-*/=<>()[],;:.^@").contains(c))
            fail(token.at, scriptTr("无法识别的字符“%1”").arg(c));
        token.text = c;
        ++m_pos;
    }

    const QString& m_text;
    qsizetype m_pos = 0;
    qsizetype m_lineStart = 0;
    int m_line = 1;
};

}  // namespace

std::vector<Token> tokenize(const QString& source) { return Lexer(source).run(); }

}  // namespace qp::pascal
