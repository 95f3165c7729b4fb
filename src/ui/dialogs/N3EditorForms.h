// The two editors of "删除/保留部分字符串": the list of texts (stored joined by "|") and the
// set of characters.
#pragma once

#include <QDialog>
#include <QString>

class QLabel;
class QPlainTextEdit;

namespace qp::ui {

// One text per line; empty lines are dropped, a line of blanks is a text of its own.
QString joinWordLines(const QString& lines);
QString wordLines(const QString& stored);
// The characters of `text` without line breaks and without repeats, in first-seen order
// (a character outside the basic plane counts as one).
QString uniqueCharacters(const QString& text);

class TN3DelWordEditorForm : public QDialog {
    Q_OBJECT
public:
    explicit TN3DelWordEditorForm(const QString& words, QWidget* parent = nullptr);
    // The texts joined by "|".
    QString words() const;
    QPlainTextEdit* editor() const { return m_edit; }

private:
    QPlainTextEdit* m_edit = nullptr;
};

class TN3UserCharsetEditorForm : public QDialog {
    Q_OBJECT
public:
    explicit TN3UserCharsetEditorForm(const QString& charset, QWidget* parent = nullptr);
    QString charset() const;
    QPlainTextEdit* editor() const { return m_edit; }

private:
    void append(const QString& characters);
    void updateCount();

    QPlainTextEdit* m_edit = nullptr;
    QLabel* m_count = nullptr;
};

}  // namespace qp::ui
