#include "ui/dialogs/N3EditorForms.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSet>
#include <QVBoxLayout>

namespace qp::ui {

namespace {

const QChar kSeparator = QLatin1Char('|');

QDialogButtonBox* okCancel(QDialog* dialog)
{
    auto* buttons = new QDialogButtonBox(dialog);
    buttons->addButton(QDialog::tr("确定(&O)"), QDialogButtonBox::AcceptRole)->setObjectName(QStringLiteral("ButtonOk"));
    buttons->addButton(QDialog::tr("取消(&C)"), QDialogButtonBox::RejectRole)->setObjectName(QStringLiteral("ButtonCancel"));
    QObject::connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);
    return buttons;
}

QPlainTextEdit* plainEditor(const QString& name, const QString& text, QWidget* parent)
{
    auto* edit = new QPlainTextEdit(text, parent);
    edit->setObjectName(name);
    edit->setLineWrapMode(QPlainTextEdit::NoWrap);
    return edit;
}

}  // namespace

QString joinWordLines(const QString& lines)
{
    QStringList words;
    for (const QString& line : lines.split(QLatin1Char('\n'))) {
        QString word = line;
        word.remove(QLatin1Char('\r'));
        // A "|" inside a line would split it when the list is read; so be it, as two texts.
        for (const QString& part : word.split(kSeparator, Qt::SkipEmptyParts))
            words.append(part);
    }
    return words.join(kSeparator);
}

QString wordLines(const QString& stored) { return stored.split(kSeparator, Qt::SkipEmptyParts).join(QLatin1Char('\n')); }

QString uniqueCharacters(const QString& text)
{
    QString result;
    QSet<char32_t> seen;
    for (char32_t c : text.toUcs4()) {
        if (c == U'\n' || c == U'\r' || seen.contains(c))
            continue;
        seen.insert(c);
        result.append(QString::fromUcs4(&c, 1));
    }
    return result;
}

TN3DelWordEditorForm::TN3DelWordEditorForm(const QString& words, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("TN3DelWordEditorForm"));
    setWindowTitle(tr("指定字符串编辑器"));
    auto* layout = new QVBoxLayout(this);
    auto* hint = new QLabel(tr("每行一个要删除或保留的字符串，空行不计。"), this);
    hint->setWordWrap(true);
    layout->addWidget(hint);
    m_edit = plainEditor(QStringLiteral("PlainTextEditWords"), wordLines(words), this);
    layout->addWidget(m_edit, 1);
    layout->addWidget(okCancel(this));
    resize(420, 360);
}

QString TN3DelWordEditorForm::words() const { return joinWordLines(m_edit->toPlainText()); }

TN3UserCharsetEditorForm::TN3UserCharsetEditorForm(const QString& charset, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("TN3UserCharsetEditorForm"));
    setWindowTitle(tr("指定字符集编辑器"));
    auto* layout = new QVBoxLayout(this);
    auto* hint = new QLabel(tr("输入要删除或保留的字符，每个字符都单独计算；换行和重复的字符在保存时去掉。"), this);
    hint->setWordWrap(true);
    layout->addWidget(hint);
    m_edit = plainEditor(QStringLiteral("PlainTextEditCharset"), charset, this);
    m_edit->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    layout->addWidget(m_edit, 1);

    auto* quick = new QHBoxLayout;
    quick->addWidget(new QLabel(tr("添加："), this));
    const struct {
        const char* name;
        const char* caption;
        QString characters;
    } sets[] = {
        {"ButtonDigits", QT_TR_NOOP("数字"), QStringLiteral("0123456789")},
        {"ButtonLower", QT_TR_NOOP("小写字母"), QStringLiteral("abcdefghijklmnopqrstuvwxyz")},
        {"ButtonUpper", QT_TR_NOOP("大写字母"), QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZ")},
        {"ButtonSpace", QT_TR_NOOP("空格"), QStringLiteral(" ")},
        {"ButtonPunctuation", QT_TR_NOOP("英文标点"), QStringLiteral("!#$%&'()+,-.;=@[]^_`{}~")},
    };
    for (const auto& set : sets) {
        auto* button = new QPushButton(tr(set.caption), this);
        button->setObjectName(QLatin1String(set.name));
        button->setAutoDefault(false);
        const QString characters = set.characters;
        connect(button, &QPushButton::clicked, this, [this, characters] { append(characters); });
        quick->addWidget(button);
    }
    quick->addStretch(1);
    layout->addLayout(quick);
    m_count = new QLabel(this);
    m_count->setObjectName(QStringLiteral("LabelCount"));
    layout->addWidget(m_count);
    layout->addWidget(okCancel(this));
    connect(m_edit, &QPlainTextEdit::textChanged, this, &TN3UserCharsetEditorForm::updateCount);
    updateCount();
    resize(460, 300);
}

QString TN3UserCharsetEditorForm::charset() const { return uniqueCharacters(m_edit->toPlainText()); }

void TN3UserCharsetEditorForm::append(const QString& characters)
{
    m_edit->setPlainText(uniqueCharacters(m_edit->toPlainText() + characters));
}

void TN3UserCharsetEditorForm::updateCount()
{
    m_count->setText(tr("共 %1 个字符").arg(charset().toUcs4().size()));
}

}  // namespace qp::ui
