#include "ui/pages/ScriptSections.h"

#include <QAbstractItemView>
#include <QButtonGroup>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QRadioButton>
#include <QTextCursor>
#include <QTimer>
#include <QVBoxLayout>

#include "core/FileEntry.h"
#include "core/Session.h"
#include "ui/pages/FunctionPage.h"
#include "ui/widgets/ScriptEditor.h"

namespace qp::ui {

namespace {

// How long the typing must pause before the script is recorded and run.
constexpr int kIdleMs = 700;
constexpr qsizetype kShownOutputLines = 6;

}  // namespace

QList<ScriptSection::Example> ScriptSection::examples(Language language)
{
    if (language == Language::Pascal) {
        return {
            {tr("加三位序号前缀"),
             QStringLiteral("var\n  n: Integer;\nbegin\n  Inc(n);  // 全局变量的值从一个文件保留到下一个文件\n"
                            "  FileName := Format('%.3d_', [n]) + FileName;\nend.")},
            {tr("扩展名改为小写"),
             QStringLiteral("begin\n  FileName := WideExtractBaseName(FileName) + LowerCase(ExtractFileExt(FileName));\nend.")},
            {tr("修改日期作前缀"),
             QStringLiteral("begin\n  FileName := FormatDateTime('yyyymmdd_', FileModified) + FileName;\nend.")},
            {tr("正则表达式：交换两段"),
             QStringLiteral("begin\n  FileName := ReplaceRegExpr(FileName, '^([^-]+)-([^.]+)', '$2-$1');\nend.")},
            {tr("用音乐标题作文件名"),
             QStringLiteral("var\n  Title: String;\nbegin\n  Title := GetField('M.TITLE');\n  if Title <> '' then\n"
                            "    FileName := Title + ExtractFileExt(FileName);\nend.")},
        };
    }
    return {
        {tr("加三位序号前缀"),
         QStringLiteral("def rename(rows):\n    n = 0\n    for row in rows:\n        if row[\"selected\"]:\n            n += 1\n"
                        "            row[\"name\"] = \"%03d_%s\" % (n, row[\"name\"])\n")},
        {tr("扩展名改为小写"), QStringLiteral("def rename_one(row):\n    row[\"extension\"] = row[\"extension\"].lower()\n")},
        {tr("修改日期作前缀"),
         QStringLiteral("def rename_one(row):\n    if row[\"modified\"]:\n"
                        "        return row[\"modified\"][:10].replace(\"-\", \"\") + \"_\" + row[\"name\"]\n")},
        {tr("正则表达式：空白改为下划线"),
         QStringLiteral("import re\n\n\ndef rename_one(row):\n    return re.sub(r\"\\s+\", \"_\", row[\"name\"])\n")},
    };
}

ScriptSection::ScriptSection(FunctionPage& page, PageSection& g, Language language, Quietly quietly)
    : QObject(&page), m_page(page), m_section(g), m_language(language), m_quietly(std::move(quietly))
{
    const QString code = scriptcommands::functionCode(language);
    setObjectName(QStringLiteral("ScriptSection") + code);
    g.row({g.keepOption(), g.option(QStringLiteral("RadioButton%1Script").arg(code), tr("按下面的脚本更名"),
                                     scriptcommands::subCode(language), code + QStringLiteral("_Script"))})
        ->addWidget(g.ok);

    m_editor = new ScriptEditor(language == Language::Pascal ? ScriptHighlighter::Language::Pascal
                                                             : ScriptHighlighter::Language::Python,
                                g.box);
    m_editor->setObjectName(QStringLiteral("PlainTextEdit%1Script").arg(code));
    m_editor->setPlaceholderText(language == Language::Pascal
                                     ? tr("FileName 是含扩展名的文件名，改它即可更名。可用 FilePath、FileFolder、FileIndex、"
                                          "FileCount、FileSize、FileModified、IsFolder、Initialized。")
                                     : tr("定义 rename(rows) 修改各行的 name 和 extension，或定义 rename_one(row) 返回新文件名。"));
    m_editor->setMinimumHeight(m_editor->fontMetrics().lineSpacing() * 12);
    g.rows->addWidget(m_editor);
    g.addWriter([this](SettingsStore& s, const QString& section) {
        scriptcommands::writeScript(s, section, m_language, m_editor->toPlainText());
    });

    m_idle = new QTimer(this);
    m_idle->setSingleShot(true);
    m_idle->setInterval(kIdleMs);
    connect(m_editor, &QPlainTextEdit::textChanged, m_idle, qOverload<>(&QTimer::start));
    connect(m_idle, &QTimer::timeout, this, [this] {
        checkSyntax();
        m_section.changed();
    });
    // Choosing an option or "Ok" records the script as it stands; a later pause has nothing to add.
    connect(g.options, &QButtonGroup::buttonClicked, m_idle, &QTimer::stop);
    connect(g.ok, &QPushButton::clicked, m_idle, &QTimer::stop);

    QPushButton* run = g.button(QStringLiteral("PushButton%1Test").arg(code), tr("测试"));
    run->setToolTip(tr("在更名列表中选定的行上试运行脚本，只显示结果，不改动任何名称"));
    connect(run, &QPushButton::clicked, this, &ScriptSection::test);
    QPushButton* insert = g.button(QStringLiteral("PushButton%1Examples").arg(code), tr("插入示例"));
    auto* menu = new QMenu(insert);
    const QList<Example> list = examples(language);
    for (int i = 0; i < list.size(); ++i)
        menu->addAction(list[i].caption, this, [this, i] { insertExample(i); });
    insert->setMenu(menu);
    g.row({run, insert});

    m_result = g.hint(QString());
    m_result->setObjectName(QStringLiteral("Label%1Result").arg(code));
    m_result->setWordWrap(true);
    m_result->setTextInteractionFlags(Qt::TextSelectableByMouse);
    g.rows->addWidget(m_result);
}

void ScriptSection::showResult(const QString& text, bool problem)
{
    m_result->setText(text);
    m_result->setStyleSheet(problem ? QStringLiteral("color: #c00000;") : QString());
}

void ScriptSection::checkSyntax()
{
    if (m_language != Language::Pascal || m_editor->toPlainText().trimmed().isEmpty())
        return;
    const scriptcommands::PascalRenamer renamer(m_editor->toPlainText(), pascal::Limits{});
    showResult(renamer.compiled() ? tr("语法正确。") : renamer.errorMessage(), !renamer.compiled());
}

qsizetype ScriptSection::chosenRow() const
{
    const RenameList& list = m_page.session().renameList();
    if (const auto* grid = m_page.window()->findChild<QAbstractItemView*>(QStringLiteral("NextGridFileRename"))) {
        const int row = grid->currentIndex().row();
        if (row >= 0 && row < list.size())
            return row;
    }
    for (qsizetype i = 0; i < list.size(); ++i) {
        if (list.at(i).selected)
            return i;
    }
    return list.isEmpty() ? -1 : 0;
}

void ScriptSection::test()
{
    const qsizetype row = chosenRow();
    if (row < 0) {
        showResult(tr("更名列表是空的，没有可以试运行的行。"), true);
        return;
    }
    bool problem = false;
    const QString text = m_language == Language::Pascal ? testPascal(row, &problem) : testPython(row, &problem);
    showResult(text, problem);
}

QString ScriptSection::testPascal(qsizetype row, bool* problem)
{
    Session& session = m_page.session();
    scriptcommands::PascalRenamer renamer(m_editor->toPlainText(), scriptcommands::pascalLimits(session.settings()));
    const QString before = session.renameList()[row].fileName();
    QString name = before;
    *problem = !renamer.compiled() || !renamer.rename(session, row, name);
    return *problem ? renamer.errorMessage() : tr("测试：%1 → %2").arg(before, name);
}

QString ScriptSection::testPython(qsizetype row, bool* problem)
{
    Session& session = m_page.session();
    const FileEntry& entry = session.renameList()[row];
    scriptcommands::LocalTimes times;
    const python::Result result = python::run(m_editor->toPlainText(), {scriptcommands::pythonRow(entry, row, entry.name, entry.ext, times)},
                                              scriptcommands::pythonOptions(session));
    *problem = !result.ok;
    QString text = result.ok ? tr("测试：%1 → %2").arg(entry.fileName(), result.names[0].name + result.names[0].extension)
                             : result.error;
    const QStringList output = result.errorOutput.mid(std::max<qsizetype>(0, result.errorOutput.size() - kShownOutputLines));
    if (!output.isEmpty())
        text += u'\n' + output.join(u'\n');
    return text;
}

void ScriptSection::insertExample(int index)
{
    const QList<Example> list = examples(m_language);
    if (index < 0 || index >= list.size())
        return;
    // Through a cursor rather than setPlainText(), so that Ctrl+Z brings the earlier script back.
    m_quietly([&] {
        m_section.subCodes.front().first->setChecked(true);
        QTextCursor cursor(m_editor->document());
        cursor.select(QTextCursor::Document);
        cursor.insertText(list[index].text);
    });
    m_idle->stop();
    checkSyntax();
    m_page.selectedClick(m_section);
}

}  // namespace qp::ui
