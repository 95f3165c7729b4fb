#include "ui/widgets/ScriptEditor.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QPainter>
#include <QRegularExpression>
#include <QSet>
#include <QTextBlock>

namespace qp::ui {

namespace {

const QSet<QString>& pascalKeywords()
{
    static const QSet<QString> words = [] {
        QSet<QString> w;
        for (const char* k : {"and", "array", "begin", "case", "const", "div", "do", "downto", "else", "end", "for",
                              "forward", "function", "if", "in", "mod", "not", "of", "or", "procedure", "program",
                              "repeat", "shl", "shr", "then", "to", "type", "until", "uses", "var", "while", "xor",
                              "exit", "break", "continue", "result", "true", "false"})
            w.insert(QString::fromLatin1(k));
        return w;
    }();
    return words;
}

const QSet<QString>& pythonKeywords()
{
    static const QSet<QString> words = [] {
        QSet<QString> w;
        for (const char* k : {"False", "None", "True", "and", "as", "assert", "break", "class", "continue", "def",
                              "del", "elif", "else", "except", "finally", "for", "from", "global", "if", "import",
                              "in", "is", "lambda", "nonlocal", "not", "or", "pass", "raise", "return", "try",
                              "while", "with", "yield"})
            w.insert(QString::fromLatin1(k));
        return w;
    }();
    return words;
}

QTextCharFormat textFormat(const QColor& colour, bool bold = false, bool italic = false)
{
    QTextCharFormat f;
    f.setForeground(colour);
    if (bold)
        f.setFontWeight(QFont::Bold);
    f.setFontItalic(italic);
    return f;
}

}  // namespace

// ---------------------------------------------------------------------------------------
// Highlighter

ScriptHighlighter::ScriptHighlighter(Language language, QTextDocument* document)
    : QSyntaxHighlighter(document), m_language(language)
{
    m_keyword = textFormat(QColor(0x00, 0x33, 0x99), true);
    m_string = textFormat(QColor(0xA3, 0x15, 0x15));
    m_number = textFormat(QColor(0x09, 0x86, 0x58));
    m_comment = textFormat(QColor(0x6A, 0x73, 0x7D), false, true);
}

// A comment or string opened on an earlier line: where it ends on this one.
qsizetype ScriptHighlighter::continueOpen(const QString& text)
{
    const int state = previousBlockState();
    QString close;
    switch (state) {
    case BraceComment: close = QStringLiteral("}"); break;
    case ParenComment: close = QStringLiteral("*)"); break;
    case TripleDouble: close = QStringLiteral("\"\"\""); break;
    case TripleSingle: close = QStringLiteral("'''"); break;
    default: return 0;
    }
    const qsizetype end = text.indexOf(close);
    const QTextCharFormat& f = state >= TripleDouble ? m_string : m_comment;
    if (end < 0) {
        setFormat(0, int(text.size()), f);
        setCurrentBlockState(state);
        return text.size();
    }
    setFormat(0, int(end + close.size()), f);
    return end + close.size();
}

// A comment or triple-quoted string opened at `start`, its text from `from` on.
qsizetype ScriptHighlighter::openComment(const QString& text, qsizetype start, qsizetype from, State state, const QString& close)
{
    const QTextCharFormat& f = state >= TripleDouble ? m_string : m_comment;
    const qsizetype end = text.indexOf(close, from);
    if (end < 0) {
        setFormat(int(start), int(text.size() - start), f);
        setCurrentBlockState(state);
        return text.size();
    }
    setFormat(int(start), int(end + close.size() - start), f);
    return end + close.size();
}

// The end of a one-line string starting at `start` (its quote).
qsizetype ScriptHighlighter::stringEnd(const QString& text, qsizetype start) const
{
    const QChar quote = text[start];
    for (qsizetype i = start + 1; i < text.size(); ++i) {
        if (m_language == Language::Python && text[i] == u'\\') {
            ++i;
        } else if (text[i] == quote) {
            if (m_language == Language::Pascal && i + 1 < text.size() && text[i + 1] == quote)
                ++i;  // '' inside a Pascal string
            else
                return i + 1;
        }
    }
    return text.size();
}

void ScriptHighlighter::highlightBlock(const QString& text)
{
    setCurrentBlockState(Plain);
    const bool pascal = m_language == Language::Pascal;
    const QSet<QString>& keywords = pascal ? pascalKeywords() : pythonKeywords();
    for (qsizetype i = continueOpen(text); i < text.size();) {
        const QChar c = text[i];
        const QStringView rest = QStringView(text).mid(i);
        if ((pascal && rest.startsWith(u"//")) || (!pascal && c == u'#')) {
            setFormat(int(i), int(text.size() - i), m_comment);
            return;
        }
        if (pascal && c == u'{') {
            i = openComment(text, i, i + 1, BraceComment, QStringLiteral("}"));
        } else if (pascal && rest.startsWith(u"(*")) {
            i = openComment(text, i, i + 2, ParenComment, QStringLiteral("*)"));
        } else if (!pascal && (rest.startsWith(u"\"\"\"") || rest.startsWith(u"'''"))) {
            const bool dq = c == u'"';
            i = openComment(text, i, i + 3, dq ? TripleDouble : TripleSingle, dq ? QStringLiteral("\"\"\"") : QStringLiteral("'''"));
        } else if (c == u'\'' || (!pascal && c == u'"')) {
            const qsizetype end = stringEnd(text, i);
            setFormat(int(i), int(end - i), m_string);
            i = end;
        } else if (pascal && c == u'#') {
            qsizetype end = i + 1;
            while (end < text.size() && (text[end].isLetterOrNumber() || text[end] == u'$'))
                ++end;
            setFormat(int(i), int(end - i), m_string);
            i = end;
        } else if (c.isLetter() || c == u'_') {
            qsizetype end = i;
            while (end < text.size() && (text[end].isLetterOrNumber() || text[end] == u'_'))
                ++end;
            const QString word = text.mid(i, end - i);
            if (keywords.contains(pascal ? word.toLower() : word))
                setFormat(int(i), int(end - i), m_keyword);
            i = end;
        } else if (c.isDigit() || (pascal && c == u'$')) {
            qsizetype end = i + 1;
            while (end < text.size() && (text[end].isLetterOrNumber() || text[end] == u'.'))
                ++end;
            setFormat(int(i), int(end - i), m_number);
            i = end;
        } else {
            ++i;
        }
    }
}

// ---------------------------------------------------------------------------------------
// Editor

class LineNumberMargin : public QWidget {
public:
    explicit LineNumberMargin(ScriptEditor* editor) : QWidget(editor), m_editor(editor) {}
    QSize sizeHint() const override { return QSize(m_editor->lineNumberWidth(), 0); }

protected:
    void paintEvent(QPaintEvent* event) override { m_editor->paintLineNumbers(event); }

private:
    ScriptEditor* m_editor;
};

ScriptEditor::ScriptEditor(ScriptHighlighter::Language language, QWidget* parent) : QPlainTextEdit(parent)
{
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setLineWrapMode(QPlainTextEdit::NoWrap);
    setTabChangesFocus(false);
    setTabStopDistance(fontMetrics().horizontalAdvance(QLatin1Char(' ')) * 4);
    new ScriptHighlighter(language, document());
    m_margin = new LineNumberMargin(this);
    auto widen = [this] { setViewportMargins(lineNumberWidth(), 0, 0, 0); };
    connect(this, &QPlainTextEdit::blockCountChanged, this, widen);
    connect(this, &QPlainTextEdit::updateRequest, this, &ScriptEditor::updateMargin);
    widen();
}

int ScriptEditor::lineNumberWidth() const
{
    const int digits = int(QString::number(std::max(1, blockCount())).size());
    return 8 + fontMetrics().horizontalAdvance(QLatin1Char('9')) * std::max(digits, 2);
}

void ScriptEditor::updateMargin(const QRect& rect, int dy)
{
    if (dy != 0)
        m_margin->scroll(0, dy);
    else
        m_margin->update(0, rect.y(), m_margin->width(), rect.height());
}

void ScriptEditor::resizeEvent(QResizeEvent* event)
{
    QPlainTextEdit::resizeEvent(event);
    const QRect area = contentsRect();
    m_margin->setGeometry(QRect(area.left(), area.top(), lineNumberWidth(), area.height()));
}

void ScriptEditor::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Tab && event->modifiers() == Qt::NoModifier) {
        insertPlainText(QStringLiteral("    "));
        return;
    }
    QPlainTextEdit::keyPressEvent(event);
}

void ScriptEditor::paintLineNumbers(QPaintEvent* event)
{
    QPainter painter(m_margin);
    painter.fillRect(event->rect(), palette().color(QPalette::AlternateBase));
    painter.setPen(palette().color(QPalette::PlaceholderText));
    const int width = m_margin->width() - 4;
    const int height = fontMetrics().height();
    for (QTextBlock block = firstVisibleBlock(); block.isValid(); block = block.next()) {
        const QRectF box = blockBoundingGeometry(block).translated(contentOffset());
        if (box.top() > event->rect().bottom())
            break;
        if (block.isVisible() && box.bottom() >= event->rect().top())
            painter.drawText(0, int(box.top()), width, height, Qt::AlignRight, QString::number(block.blockNumber() + 1));
    }
}

}  // namespace qp::ui
