#include "ui/pages/FrameFileRenameAdvanced.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHash>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTextCursor>
#include <QVBoxLayout>

#include "commands/AdvancedCommands.h"
#include "commands/RenameFromList.h"
#include "core/FileEntry.h"
#include "core/PathText.h"
#include "core/Session.h"
#include "ui/dialogs/FileDialogs.h"
#include "ui/pages/ScriptSections.h"
#include "ui/widgets/HistoryComboBox.h"

namespace qp::ui {

namespace {

const QString kListFolderKey = QStringLiteral("OpenDialogInitialDirPushButtonA11LoadList");

// How a name stands on one side of a list line: an "=" inside it would end the old name.
QString listSide(const QString& name)
{
    QString text = name;
    return text.replace(QLatin1Char('='), QStringLiteral("<61>"));
}

}  // namespace

TFrameFileRenameAdvanced::TFrameFileRenameAdvanced(Session& session, QWidget* parent)
    : FunctionPage(session, QStringLiteral("TFrameFileRenameAdvanced"), QStringLiteral("ScrollBoxAdvanced"), parent)
{
    buildA1(addSection(QStringLiteral("A1"), tr("1.A.1.正则表达式")));
    buildA3(addSection(QStringLiteral("A3"), tr("1.A.3.汉字转拼音")));
    buildA4(addSection(QStringLiteral("A4"), tr("1.A.4.数字与汉字的转换")));
    m_listSection = &addSection(QStringLiteral("A11"), tr("1.A.11.文件名对照列表更名"));
    buildA11(*m_listSection);
    const ScriptSection::Quietly quiet = [this](const std::function<void()>& change) { quietly(change); };
    new ScriptSection(*this, addSection(QStringLiteral("A12"), tr("1.A.12.Pascal 脚本更名")), ScriptSection::Language::Pascal, quiet);
    new ScriptSection(*this, addSection(QStringLiteral("A13"), tr("1.A.13.Python 脚本更名")), ScriptSection::Language::Python, quiet);
    finishSections();
}

TFrameFileRenameAdvanced::~TFrameFileRenameAdvanced() = default;

QString TFrameFileRenameAdvanced::commentOf(const QString& subCode) const
{
    const QString comment = advancedCommandComment(subCode);
    return comment.isEmpty() ? scriptcommands::comment(subCode) : comment;
}

// ---------------------------------------------------------------------------------------
// The sections

void TFrameFileRenameAdvanced::buildA1(PageSection& g)
{
    g.row({g.keepOption(), g.option(QStringLiteral("RadioButtonA1Regex"), tr("仅文件名"), QStringLiteral("A102"), QStringLiteral("A1_Regex")),
           g.option(QStringLiteral("RadioButtonA1IncludeExt"), tr("含扩展名"), QStringLiteral("A101"), QStringLiteral("A1_IncludeExt"))})
        ->addWidget(g.ok);
    HistoryComboBox* pattern = g.text(QStringLiteral("ComboBoxA1Regex"), QStringLiteral("A1_RegexText"), {}, 10);
    HistoryComboBox* replacement = g.text(QStringLiteral("ComboBoxA1RegexReplace"), QStringLiteral("A1_RegexReplaceText"), {}, 10);
    replacement->setToolTip(tr("$1、${name}：第 1 组、名为 name 的组所匹配的文字；\\U…\\E：其间转为大写"));
    PageSection::widen(g.row({g.label(tr("表达式")), pattern}, true), pattern);
    PageSection::widen(g.row({g.label(tr("替换为")), replacement}, true), replacement);
    g.row({g.check(QStringLiteral("CheckBoxA1Case"), tr("区分大小写"), QStringLiteral("A1_CaseFlag"), false),
           g.hint(tr("替换为中可用 $1、${name}"))},
          true);
}

void TFrameFileRenameAdvanced::buildA3(PageSection& g)
{
    g.keepRow();
    g.row({g.option(QStringLiteral("RadioButtonA3HZToPYStr"), tr("汉字转英文字母串拼音"), QStringLiteral("A301"), QStringLiteral("A3_HZToPYStr"))});
    g.row({g.option(QStringLiteral("RadioButtonA3HZToPYTone"), tr("汉字转带声调的汉语拼音"), QStringLiteral("A302"), QStringLiteral("A3_HZToPYTone"))});
    // "英文字母串方式" matters to the first-initial mode only, so it stands beside it.
    g.row({g.option(QStringLiteral("RadioButtonA3HZToPYInitial"), tr("只插入第一个汉字声母"), QStringLiteral("A303"), QStringLiteral("A3_HZToPYInitial")),
           g.check(QStringLiteral("CheckBoxA3HZToPYLetterStr"), tr("英文字母串方式"), QStringLiteral("A3_HZToPYLetterStr"), true)});

    // The ticks in two columns, so that the section stays as narrow as the panel.
    QGridLayout* ticks = g.grid();
    ticks->addWidget(g.check(QStringLiteral("CheckBoxA3HZToPY1stLetter"), tr("只取首字母"), QStringLiteral("A3_HZToPY1stLetter"), false), 0, 0);
    ticks->addWidget(g.check(QStringLiteral("CheckBoxA3HZToPY1stUpperCase"), tr("首字母大写"), QStringLiteral("A3_HZToPY1stUpperCase"), false), 0, 1);
    ticks->addWidget(g.check(QStringLiteral("CheckBoxA3HZToPYPolyphone"), tr("显示多音字的多个拼音"), QStringLiteral("A3_HZToPYPolyphone"), false), 1, 0);
    ticks->addWidget(g.check(QStringLiteral("CheckBoxA3HZToPYKeepHZ"), tr("包含汉字"), QStringLiteral("A3_HZToPYKeepHZ"), false), 1, 1);
    ticks->addWidget(g.check(QStringLiteral("CheckBoxA3HZToPYUnkown"), tr("未知字符显示“~”"), QStringLiteral("A3_HZToPYUnkown"), true), 2, 0);
    ticks->setColumnStretch(2, 1);

    QGridLayout* texts = g.grid();
    texts->setHorizontalSpacing(4);
    texts->addWidget(g.label(tr("左附加")), 0, 0);
    texts->addWidget(g.text(QStringLiteral("ComboBoxA3HZToPYLeftStr"), QStringLiteral("A3_HZToPYLeftStr"), {}, 3), 0, 1);
    texts->addWidget(g.label(tr("右附加")), 0, 2);
    texts->addWidget(g.text(QStringLiteral("ComboBoxA3HZToPYRightStr"), QStringLiteral("A3_HZToPYRightStr"), {}, 3), 0, 3);
    texts->addWidget(g.label(tr("字符：连接")), 1, 0);
    texts->addWidget(g.text(QStringLiteral("ComboBoxA3HZToPYLinkStr"), QStringLiteral("A3_HZToPYLinkStr"), QStringLiteral("_"), 3), 1, 1);
    texts->setColumnStretch(4, 1);
}

void TFrameFileRenameAdvanced::buildA4(PageSection& g)
{
    g.keepRow();
    g.row({g.option(QStringLiteral("RadioButtonA4DigitToSmallHZ"), tr("数字转小写汉字数字"), QStringLiteral("A401"), QStringLiteral("A4_DigitToSmallHZ")),
           g.hint(tr("2024 → 二〇二四"))});
    g.row({g.option(QStringLiteral("RadioButtonA4DigitToCapitalHZ"), tr("数字转大写汉字数字"), QStringLiteral("A402"), QStringLiteral("A4_DigitToCapitalHZ")),
           g.hint(tr("2024 → 贰零贰肆"))});
    g.row({g.option(QStringLiteral("RadioButtonA4HZToDigit"), tr("汉字数字转阿拉伯数字"), QStringLiteral("A403"), QStringLiteral("A4_HZToDigit")),
           g.hint(tr("二〇二四 → 2024"))});
    g.row({g.option(QStringLiteral("RadioButtonA4SymbolToDigit"), tr("特殊数字符号转普通数字"), QStringLiteral("A404"), QStringLiteral("A4_SymbolToDigit")),
           g.hint(tr("① → (1)，Ⅻ → 12"))});
}

void TFrameFileRenameAdvanced::buildA11(PageSection& g)
{
    g.row({g.keepOption(), g.option(QStringLiteral("RadioButtonA11NameList"), tr("按下面的列表更名"), QStringLiteral("A1101"), QStringLiteral("A11_NameList"))})
        ->addWidget(g.ok);

    m_nameList = new QPlainTextEdit(g.box);
    m_nameList->setObjectName(QStringLiteral("PlainTextEditA11NameList"));
    m_nameList->setPlaceholderText(tr("每行一对：原文件名=新文件名，或两者之间用 TAB 分隔。原文件名可以是完整路径；"
                                      "以“;”开头的行不用。"));
    m_nameList->setLineWrapMode(QPlainTextEdit::NoWrap);
    // A TAB is a separator of the list, not a way out of the box.
    m_nameList->setTabChangesFocus(false);
    m_nameList->setMinimumHeight(m_nameList->fontMetrics().lineSpacing() * 8);
    g.rows->addWidget(m_nameList);
    g.addWriter([this](SettingsStore& s, const QString& section) { renamelist::writeLines(s, section, nameListLines()); });
    connect(m_nameList, &QPlainTextEdit::textChanged, this, [this, &g] {
        updatePairCount();
        g.changed();
    });
    m_pairCount = g.hint(QString());
    m_pairCount->setObjectName(QStringLiteral("LabelA11PairCount"));
    g.row({m_pairCount});

    QPushButton* load = g.button(QStringLiteral("PushButtonA11LoadList"), tr("载入列表文件..."));
    load->setToolTip(tr("UTF-8 或带字节顺序标记的 UTF-16 文本文件"));
    connect(load, &QPushButton::clicked, this, &TFrameFileRenameAdvanced::loadNameList);
    QPushButton* fill = g.button(QStringLiteral("PushButtonA11FillFromList"), tr("从文件列表填入"));
    fill->setToolTip(tr("每个对象一行“原名=原名”，只需改等号右边"));
    connect(fill, &QPushButton::clicked, this, &TFrameFileRenameAdvanced::fillNameListFromRows);
    g.row({load, fill});
    updatePairCount();
}

// ---------------------------------------------------------------------------------------
// The old/new list

QStringList TFrameFileRenameAdvanced::nameListLines() const
{
    QStringList lines = m_nameList->toPlainText().split(QLatin1Char('\n'));
    // The line after a last line break is nothing the user wrote.
    while (!lines.isEmpty() && lines.back().isEmpty())
        lines.removeLast();
    return lines;
}

void TFrameFileRenameAdvanced::updatePairCount()
{
    int pairs = 0;
    int unusable = 0;
    for (const QString& line : nameListLines()) {
        bool skipped = false;
        if (renamelist::parseLine(line, &skipped))
            ++pairs;
        else if (!skipped)
            ++unusable;
    }
    QString text = tr("列表中有 %1 对").arg(pairs);
    if (unusable > 0)
        text += tr("，%1 行无法识别").arg(unusable);
    m_pairCount->setText(text);
}

void TFrameFileRenameAdvanced::putNameList(const QString& text)
{
    // Through a cursor rather than setPlainText(), so that Ctrl+Z brings the earlier list back.
    // Both changes are made quietly and recorded once, as one change of the section.
    quietly([&] {
        findChild<QRadioButton*>(QStringLiteral("RadioButtonA11NameList"))->setChecked(true);
        QTextCursor cursor(m_nameList->document());
        cursor.select(QTextCursor::Document);
        cursor.insertText(text);
    });
    updatePairCount();
    selectedClick(*m_listSection);
}

void TFrameFileRenameAdvanced::loadNameList()
{
    const QString file = chooseFile(m_runner, this, m_session,
                                    FileDialogOptions{tr("载入文件名对照列表"), tr("文本文件 (*.txt);;所有文件 (*)"), {}, kListFolderKey});
    if (file.isEmpty())
        return;
    const renamelist::FileText read = renamelist::readFile(file);
    if (!read.error.isEmpty()) {
        m_session.interaction().notify(Notice{QStringLiteral("advanced.nameListUnreadable"), tr("温馨提示"), read.error, Icon::Warning});
        return;
    }
    putNameList(read.lines.join(QLatin1Char('\n')));
}

void TFrameFileRenameAdvanced::fillNameListFromRows()
{
    const auto& rows = m_session.renameList().rows();
    if (rows.empty())
        return;
    // A name that several rows share is written as the full path, so that each of those rows
    // can be given its own new name.
    QHash<QString, int> uses;
    for (const FileEntry& row : rows)
        ++uses[pathKey(row.fileName())];
    QStringList lines;
    lines.reserve(qsizetype(rows.size()));
    for (const FileEntry& row : rows) {
        const QString old = uses.value(pathKey(row.fileName())) > 1 ? nativeSeparators(row.fullPath()) : row.fileName();
        lines.append(listSide(old) + QLatin1Char('=') + listSide(row.fileName()));
    }
    putNameList(lines.join(QLatin1Char('\n')));
}

}  // namespace qp::ui
