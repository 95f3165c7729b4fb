// A plain-text editor for scripts: a fixed-width font, line numbers in a margin on the
// left, keywords, strings, numbers and comments coloured for Pascal or Python, and Tab
// typing four spaces (Python reads indentation, and mixed tabs make scripts fail).
#pragma once

#include <QPlainTextEdit>
#include <QSyntaxHighlighter>
#include <QTextCharFormat>

namespace qp::ui {

class ScriptHighlighter : public QSyntaxHighlighter {
    Q_OBJECT
public:
    enum class Language { Pascal, Python };
    ScriptHighlighter(Language language, QTextDocument* document);

protected:
    void highlightBlock(const QString& text) override;

private:
    // Block states: what a line leaves open for the next one.
    enum State { Plain = 0, BraceComment, ParenComment, TripleDouble, TripleSingle };

    qsizetype continueOpen(const QString& text);
    qsizetype stringEnd(const QString& text, qsizetype start) const;
    qsizetype openComment(const QString& text, qsizetype start, qsizetype from, State state, const QString& close);

    Language m_language;
    QTextCharFormat m_keyword;
    QTextCharFormat m_string;
    QTextCharFormat m_number;
    QTextCharFormat m_comment;
};

class ScriptEditor : public QPlainTextEdit {
    Q_OBJECT
public:
    ScriptEditor(ScriptHighlighter::Language language, QWidget* parent = nullptr);

    int lineNumberWidth() const;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    friend class LineNumberMargin;
    void paintLineNumbers(QPaintEvent* event);
    void updateMargin(const QRect& rect, int dy);

    QWidget* m_margin = nullptr;
};

}  // namespace qp::ui
