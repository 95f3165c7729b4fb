#include "ui/pages/FrameFileRenameNormal.h"

#include <QCoreApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QScopeGuard>
#include <QScrollArea>
#include <QScrollBar>
#include <QSpinBox>
#include <QToolButton>
#include <QVBoxLayout>

#include <climits>
#include <functional>
#include <tuple>
#include <utility>

#include "commands/NormalCommands.h"
#include "core/Session.h"
#include "ui/dialogs/N3EditorForms.h"
#include "ui/dialogs/ReplaceEditForm.h"
#include "ui/widgets/CheckListComboBox.h"
#include "ui/widgets/HistoryComboBox.h"
#include "ui/widgets/MetaVariableMenu.h"

namespace qp::ui {

namespace {


// An option, then the two texts that bound a string on its left and right ("左 … 右 …"). The
// boxes are short at least and share the width the row leaves.
void boundsRow(PageSection& g, QRadioButton* option, const std::pair<QString, QString>& left, const std::pair<QString, QString>& right, int indent)
{
    HistoryComboBox* leftText = g.text(left.first, left.second, {}, 4);
    QLabel* rightLabel = g.label(QObject::tr("右"));
    HistoryComboBox* rightText = g.text(right.first, right.second, {}, 4);
    QHBoxLayout* line = g.row({option, leftText, rightLabel, rightText}, indent);
    PageSection::widen(line, leftText);
    PageSection::widen(line, rightText);
}

}  // namespace

// ---------------------------------------------------------------------------------------

TFrameFileRenameNormal::TFrameFileRenameNormal(Session& session, QWidget* parent)
    : FunctionPage(session, QStringLiteral("TFrameFileRenameNormal"), QStringLiteral("ScrollBoxNormal"), parent)
{
    m_n[0] = &addSection(QStringLiteral("N1"), tr("1.N.1.添加与补齐"), [this] { N1_SelectedClick(); });
    m_n[1] = &addSection(QStringLiteral("N2"), tr("1.N.2.替换"), [this] { N2_SelectedClick(); });
    m_n[2] = &addSection(QStringLiteral("N3"), tr("1.N.3.删除与保留"), [this] { N3_SelectedClick(); });
    m_n[3] = &addSection(QStringLiteral("N4"), tr("1.N.4.自动编号"), [this] { N4_SelectedClick(); });
    m_n[4] = &addSection(QStringLiteral("N5"), tr("1.N.5.移动"), [this] { N5_SelectedClick(); });
    m_n[5] = &addSection(QStringLiteral("N6"), tr("1.N.6.字母大小写"), [this] { N6_SelectedClick(); });
    buildN1(*m_n[0]);
    buildN2(*m_n[1]);
    buildN3(*m_n[2]);
    buildN4(*m_n[3]);
    buildN5(*m_n[4]);
    buildN6(*m_n[5]);
    finishSections();
}

TFrameFileRenameNormal::~TFrameFileRenameNormal() = default;

QString TFrameFileRenameNormal::commentOf(const QString& subCode) const { return normalCommandComment(subCode); }

// ---------------------------------------------------------------------------------------
// The sections

// The panel beside the rename list is narrow, so every section starts with "保持不变" and
// "Ok" on a line of their own, and a long row goes on in an indented line below it. Text
// boxes are given a small minimum width and take whatever width their row leaves.

void TFrameFileRenameNormal::buildN1(PageSection& g)
{
    g.keepRow();
    g.row({g.option(QStringLiteral("RadioButtonN1AddDirect"), tr("直接添加"), QStringLiteral("N101"), QStringLiteral("N1_AddDirect")),
           g.option(QStringLiteral("RadioButtonN1AddFill"), tr("补齐添加"), QStringLiteral("N102"), QStringLiteral("N1_AddFill"))});

    HistoryComboBox* content = g.text(QStringLiteral("ComboBoxN1AddStr"), QStringLiteral("N1_AddStr"), {}, 12);
    PageSection::widen(g.row({g.label(tr("内容")), content, g.metaButton(content)}, true), content);

    QSpinBox* length = g.spin(QStringLiteral("SpinBoxN1FillLength"), QStringLiteral("N1_FillLength"), 0, 255, 8);
    QPushButton* longest = g.button(QStringLiteral("PushButtonN1GetLongest"), tr("获取列表最长"));
    connect(longest, &QPushButton::clicked, this, &TFrameFileRenameNormal::getLongestName);
    g.row({g.label(tr("补齐长度")), length, longest}, true);
    g.row({g.hint(tr("补齐时内容将重复至设置补齐长度"))}, true);

    auto* place = new QButtonGroup(g.box);
    g.row({g.choice(place, QStringLiteral("RadioButtonN1AddLeft"), tr("文件名之前"), QStringLiteral("N1_AddLeft"), true),
           g.choice(place, QStringLiteral("RadioButtonN1AddRight"), tr("文件名之后"), QStringLiteral("N1_AddRight"), false)},
          true);
    g.row({g.choice(place, QStringLiteral("RadioButtonN1AddInsert"), tr("插入位置"), QStringLiteral("N1_AddInsert"), false),
           g.spin(QStringLiteral("SpinBoxN1InsertPos"), QStringLiteral("N1_InsertPos"), 0, 255, 1),
           g.check(QStringLiteral("CheckBoxN1InsertPosFromRight"), tr("从后计算"), QStringLiteral("N1_InsertPosFormRight"), false)},
          true);

    QRadioButton* byText = g.choice(place, QStringLiteral("RadioButtonN1AddInsertByStr"), tr("插入到字符串"), QStringLiteral("N1_AddInsertByStr"), false);
    HistoryComboBox* text = g.text(QStringLiteral("ComboBoxN1AddInsertByStrText"), QStringLiteral("N1_AddInsertByStrText"), {}, 6);
    PageSection::widen(g.row({byText, text, g.list(QStringLiteral("ComboBoxN1AddInsertByStrPos"), QStringLiteral("N1_AddInsertByStrPos"), {tr("后"), tr("前")}, 0)}, true),
                       text);
    g.row({g.label(tr("含多个时为从左第几个")),
           g.spin(QStringLiteral("SpinBoxN1AddInsertByStrWhich"), QStringLiteral("N1_AddInsertByStrWhich"), 1, 255, 1)},
          2);

    boundsRow(g, g.choice(place, QStringLiteral("RadioButtonN1AddInsertByLR"), tr("插入到左"), QStringLiteral("N1_AddInsertByLR"), false),
              {QStringLiteral("ComboBoxN1AddInsertByLeft"), QStringLiteral("N1_AddInsertByLeft")},
              {QStringLiteral("ComboBoxN1AddInsertByRight"), QStringLiteral("N1_AddInsertByRight")}, 1);
    g.row({g.label(tr("为间隔的字符串")),
           g.list(QStringLiteral("ComboBoxN1AddInsertByLRPos"), QStringLiteral("N1_AddInsertByLRPos"), {tr("后"), tr("前")}, 0),
           g.check(QStringLiteral("CheckBoxN1AddInsertByLRPosIncludeLR"), tr("含间隔符"), QStringLiteral("N1_AddInsertByLRPosIncludeLR"), false)},
          2);
}

void TFrameFileRenameNormal::buildN2(PageSection& g)
{
    g.keepRow();

    QRadioButton* find = g.option(QStringLiteral("RadioButtonN2Search"), tr("查找"), QStringLiteral("N201"), QStringLiteral("N2_SearchAndReplace"));
    HistoryComboBox* search = g.text(QStringLiteral("ComboBoxN2Search"), QStringLiteral("N2_SearchText"), {}, 10);
    PageSection::widen(g.row({find, search}), search);
    QLabel* replaceLabel = g.label(tr("替换为"));
    HistoryComboBox* replace = g.text(QStringLiteral("ComboBoxN2Replace"), QStringLiteral("N2_ReplaceText"), {}, 10);
    PageSection::widen(g.row({replaceLabel, replace, g.metaButton(replace)}, true), replace);
    QPushButton* editor = g.button(QStringLiteral("PushButtonN2Editor"), tr("编辑器"));
    connect(editor, &QPushButton::clicked, this, &TFrameFileRenameNormal::openReplaceEditor);
    g.row({editor, g.hint(tr("查找替换多项内容时用“|”分隔"))}, true);

    g.row({g.check(QStringLiteral("CheckBoxN2Case"), tr("区分大小写"), QStringLiteral("N2_CaseFlag"), false)}, true);
    auto* order = new QButtonGroup(g.box);
    g.row({g.choice(order, QStringLiteral("RadioButtonN2SameTime"), tr("同时查找并替换"), QStringLiteral("N2_SameTimeFlag"), true),
           g.choice(order, QStringLiteral("RadioButtonN2FromLToR"), tr("从左到右顺序查找并替换"), QStringLiteral("N2_FromLToRFlag"), false)},
          true);
    g.row({g.label(tr("替换第")), g.text(QStringLiteral("ComboBoxN2ReplaceSet"), QStringLiteral("N2_ReplaceTextSet"), QStringLiteral("1~-1"), 8),
           g.label(tr("次出现的"))},
          true);

    boundsRow(g, g.option(QStringLiteral("RadioButtonN2SearchLR"), tr("替换以左"), QStringLiteral("N202"), QStringLiteral("N2_SearchAndReplaceLR")),
              {QStringLiteral("ComboBoxN2SearchLeft"), QStringLiteral("N2_SearchLeft")},
              {QStringLiteral("ComboBoxN2SearchRight"), QStringLiteral("N2_SearchRight")}, 0);
    QLabel* between = g.label(tr("隔的字符串为："));
    HistoryComboBox* replaceLR = g.text(QStringLiteral("ComboBoxN2ReplaceLR"), QStringLiteral("N2_ReplaceTextLR"), {}, 8);
    PageSection::widen(g.row({between, replaceLR, g.metaButton(replaceLR)}, true), replaceLR);
    g.row({g.check(QStringLiteral("CheckBoxN2SearchIncludeLR"), tr("含间隔符"), QStringLiteral("N2_SearchIncludeLRFlag"), false)}, true);
}

void TFrameFileRenameNormal::buildN3(PageSection& g)
{
    g.keepRow();
    g.row({g.option(QStringLiteral("RadioButtonN3DelWhole"), tr("清空文件名"), QStringLiteral("N301"), QStringLiteral("N3_DelWhole")),
           g.option(QStringLiteral("RadioButtonN3DelTrim"), tr("去除两端空格"), QStringLiteral("N302"), QStringLiteral("N3_DelTrim"))});

    const QStringList deleteOrKeep{tr("删除"), tr("保留")};
    g.row({g.option(QStringLiteral("RadioButtonN3DelFromTo"), tr("从位置"), QStringLiteral("N303"), QStringLiteral("N3_DelFromTo")),
           g.spin(QStringLiteral("SpinBoxN3DelFrom"), QStringLiteral("N3_DelFrom"), 1, 256, 1),
           g.list(QStringLiteral("ComboBoxN3DelOrKeep"), QStringLiteral("N3_DelOrKeep"), deleteOrKeep, 0),
           g.spin(QStringLiteral("SpinBoxN3DelTo"), QStringLiteral("N3_DelTo"), 1, 256, 1), g.label(tr("个字符"))});
    g.row({g.check(QStringLiteral("CheckBoxN3DelFromToFromRight"), tr("从后计算"), QStringLiteral("N3_DelFromToFromRight"), false)}, true);

    QRadioButton* cut = g.option(QStringLiteral("RadioButtonN3DelCut"), tr("以字符串"), QStringLiteral("N304"), QStringLiteral("N3_DelCut"));
    HistoryComboBox* word = g.text(QStringLiteral("ComboBoxN3CutWord"), QStringLiteral("N3_CutWord"), {}, 6);
    PageSection::widen(g.row({cut, word, g.label(tr("为界剪裁"))}), word);
    g.row({g.list(QStringLiteral("ComboBoxN3DelCutDirection"), QStringLiteral("N3_DelCutDirection"), {tr("后面"), tr("前面")}, 0),
           g.check(QStringLiteral("CheckBoxN3DelCutIncludeSelf"), tr("剪裁本身"), QStringLiteral("N3_DelCutIncludeSelf"), true)},
          true);
    g.row({g.label(tr("含多个时为从左第几个")),
           g.spin(QStringLiteral("SpinBoxN3DelCutWhichWord"), QStringLiteral("N3_DelCutWhichWord"), 1, 255, 1)},
          true);

    boundsRow(g, g.option(QStringLiteral("RadioButtonN3DelCutLR"), tr("以左"), QStringLiteral("N305"), QStringLiteral("N3_DelCutLR")),
              {QStringLiteral("ComboBoxN3CutWordLeft"), QStringLiteral("N3_CutWordLeft")},
              {QStringLiteral("ComboBoxN3CutWordRight"), QStringLiteral("N3_CutWordRight")}, 0);
    g.row({g.label(tr("为间隔的字符串")), g.list(QStringLiteral("ComboBoxN3DelOrKeepLR"), QStringLiteral("N3_DelOrKeepLR"), deleteOrKeep, 0),
           g.check(QStringLiteral("CheckBoxN3DelCutIncludeSelfLR"), tr("含间隔符"), QStringLiteral("N3_DelCutIncludeSelfLR"), false)},
          true);

    g.row({g.option(QStringLiteral("RadioButtonN3DelPart"), tr("在文件名中"), QStringLiteral("N306"), QStringLiteral("N3_DelPart")),
           g.list(QStringLiteral("ComboBoxN3DelPartDeleteOrHold"), QStringLiteral("N3_DelPartDeleteOrHold"), deleteOrKeep, 0),
           g.label(tr("以下内容"))});
    QCheckBox* byWords = g.check(QStringLiteral("CheckBoxN3DelPartTheString"), tr("指定字符串"), QStringLiteral("N3_DelPartTheString"), false);
    HistoryComboBox* theWords = g.text(QStringLiteral("ComboBoxN3TheString"), QStringLiteral("N3_TheString"), {}, 5);
    QPushButton* words = g.button(QStringLiteral("PushButtonN3TheStringEditor"), tr("编辑器"));
    connect(words, &QPushButton::clicked, this, &TFrameFileRenameNormal::openWordEditor);
    PageSection::widen(g.row({byWords, theWords, words}, true), theWords);
    QCheckBox* byCharset = g.check(QStringLiteral("CheckBoxN3DelPartUserCharset"), tr("指定字符集"), QStringLiteral("N3_DelPartUserCharset"), false);
    HistoryComboBox* theCharset = g.text(QStringLiteral("ComboBoxN3TheUserCharset"), QStringLiteral("N3_TheUserCharset"), {}, 5);
    QPushButton* charset = g.button(QStringLiteral("PushButtonN3UserCharsetEditor"), tr("编辑器"));
    connect(charset, &QPushButton::clicked, this, &TFrameFileRenameNormal::openCharsetEditor);
    PageSection::widen(g.row({byCharset, theCharset, charset}, true), theCharset);

    auto* presets = new CheckListComboBox(g.box);
    presets->setObjectName(QStringLiteral("ComboBoxN3FixedCharset"));
    QStringList shownPresets;
    for (const QString& name : presetCharsetNames())
        shownPresets.append(QCoreApplication::translate("CharacterSets", name.toUtf8().constData()));
    presets->setItems(presetCharsetNames(), shownPresets);
    presets->setPrompt(tr("请选择预设字符集"));
    // With none chosen this stores the prompt, which the command reads as "no preset set".
    g.writers.push_back([presets](SettingsStore& s, const QString& section) {
        s.writeString(section, QStringLiteral("N3_FixedCharsetString"), joinPresetCharsets(presets->checkedItems()));
    });
    connect(presets, &CheckListComboBox::checkedItemsChanged, this, [&g] { g.changed(); });
    g.row({g.label(tr("预设字符集")), presets}, true);
}

void TFrameFileRenameNormal::buildN4(PageSection& g)
{
    g.keepRow();

    g.row({g.option(QStringLiteral("RadioButtonN4AutoNumPos"), tr("插入位置"), QStringLiteral("N401"), QStringLiteral("N4_AutoNumPos")),
           g.spin(QStringLiteral("SpinBoxN4InsertPos"), QStringLiteral("N4_InsertPos"), 0, 255, 1),
           g.check(QStringLiteral("CheckBoxN4InsertPosFromRight"), tr("从后计算"), QStringLiteral("N4_InsertPosFromRight"), false)});
    QRadioButton* byText = g.option(QStringLiteral("RadioButtonN4AutoNumPosByStr"), tr("插入到字符串"), QStringLiteral("N402"), QStringLiteral("N4_AutoNumPosByStr"));
    HistoryComboBox* text = g.text(QStringLiteral("ComboBoxN4InsertPosByStr"), QStringLiteral("N4_InsertPosByStr"), {}, 6);
    PageSection::widen(g.row({byText, text, g.list(QStringLiteral("ComboBoxN4InsertPosByStrLorR"), QStringLiteral("N4_InsertPosByStrLorR"), {tr("后"), tr("前")}, 0)}),
                       text);
    g.row({g.label(tr("含多个时为从左第几个")),
           g.spin(QStringLiteral("SpinBoxN4InsertPosByStrWhich"), QStringLiteral("N4_InsertPosByStrWhich"), 1, 255, 1)},
          true);

    QRadioButton* byExpression = g.option(QStringLiteral("RadioButtonN4AutoNumExpression"), tr("表达式"), QStringLiteral("N403"), QStringLiteral("N4_AutoNumExpression"));
    HistoryComboBox* expression = g.text(QStringLiteral("ComboBoxN4Expression"), QStringLiteral("N4_InsertExpression"), QStringLiteral("<#>"), 7);
    expression->setFixedItems({QStringLiteral("<#>"), QStringLiteral("<#>.<CNAME>"), QStringLiteral("<#>--<CNAME>"),
                               QStringLiteral("<#>_<CNAME>"), QStringLiteral("<CNAME>.<#>"), QStringLiteral("<EXT>.<#>"),
                               QStringLiteral("<.EXT>.<#>"), QStringLiteral("<FILENAME>.<#>"), QStringLiteral("pic_<#>"),
                               QStringLiteral("file_<#>")});
    QPushButton* number = g.button(QStringLiteral("PushButtonN4Number"), QStringLiteral("<#>"));
    number->setToolTip(tr("在光标处插入编号"));
    number->setFixedWidth(number->fontMetrics().horizontalAdvance(number->text()) + 24);
    connect(number, &QPushButton::clicked, this, [expression] {
        expression->lineEdit()->insert(QStringLiteral("<#>"));
        expression->setFocus();
    });
    PageSection::widen(g.row({byExpression, expression, number, g.metaButton(expression)}), expression);

    // The numbering's figures in columns: start and step above digits and grouping.
    QGridLayout* figures = g.grid();
    figures->setHorizontalSpacing(4);
    figures->addWidget(g.label(tr("始于")), 0, 0);
    figures->addWidget(g.spin(QStringLiteral("SpinBoxN4Start"), QStringLiteral("N4_Start"), INT_MIN, INT_MAX, 1), 0, 1);
    figures->addWidget(g.label(tr("增量")), 0, 2);
    figures->addWidget(g.spin(QStringLiteral("SpinBoxN4Increment"), QStringLiteral("N4_Increment"), INT_MIN, INT_MAX, 1), 0, 3);
    figures->addWidget(g.label(tr("位数")), 1, 0);
    figures->addWidget(g.spin(QStringLiteral("SpinBoxN4DigitUnits"), QStringLiteral("N4_DigitUnits"), 1, 255, 1), 1, 1);
    figures->addWidget(g.label(tr("分组")), 1, 2);
    figures->addWidget(g.spin(QStringLiteral("SpinBoxN4GroupCount"), QStringLiteral("N4_GroupCount"), 1, 255, 1), 1, 3);
    figures->addWidget(g.list(QStringLiteral("ComboBoxN4AutoNumType"), QStringLiteral("N4_AutoNumType"), {tr("数字"), tr("小写字母"), tr("大写字母")}, 0),
                       2, 1, 1, 3, Qt::AlignLeft);
    figures->setColumnStretch(4, 1);

    g.row({g.check(QStringLiteral("CheckBoxN4Reset"), tr("重置"), QStringLiteral("N4_Reset"), false), g.label(tr("超出")),
           g.spin(QStringLiteral("SpinBoxN4ResetValue"), QStringLiteral("N4_ResetValue"), INT_MIN, INT_MAX, 8)},
          true);
    g.row({g.check(QStringLiteral("CheckBoxN4SkipNoCheckRow"), tr("未复选行不计数"), QStringLiteral("N4_SkipNoCheckRow"), true),
           g.check(QStringLiteral("CheckBoxN4ByPath"), tr("按路径单独计数"), QStringLiteral("N4_ByPath"), false)},
          true);
    QCheckBox* exclude = g.check(QStringLiteral("CheckBoxN4Except"), tr("排除"), QStringLiteral("N4_Except"), false);
    HistoryComboBox* except = g.text(QStringLiteral("ComboBoxN4ExceptText"), QStringLiteral("N4_ExceptText"), {}, 10);
    // The executor treats an exclusion list holding a lone "*" specially; the page tells it so.
    g.writers.push_back([except](SettingsStore& s, const QString& section) {
        bool star = false;
        for (const QString& item : except->currentText().split(QLatin1Char('|')))
            star = star || item.trimmed() == u"*";
        s.writeBool(section, QStringLiteral("N4_ExceptTextHaveSingleStar"), star);
    });
    PageSection::widen(g.row({exclude, except}, true), except);

    auto* fill = new QButtonGroup(g.box);
    g.row({g.label(tr("补位符")),
           g.choice(fill, QStringLiteral("RadioButtonN4AutoSupplement"), tr("自动"), QStringLiteral("N4_AutoSupplement"), true),
           g.choice(fill, QStringLiteral("RadioButtonN4ManualSupplement"), tr("自定义"), QStringLiteral("N4_ManualSupplement"), false),
           g.text(QStringLiteral("ComboBoxN4SupplementText"), QStringLiteral("N4_SupplementText"), QStringLiteral("0"), 4)},
          true);

    // Not part of the command: copies the numbers of the latest numbering run into a user
    // list. There are none before a numbering command has run.
    m_assignButton = g.button(QStringLiteral("PushButtonN4AssignTo"), tr("赋值到"));
    m_assignList = new QComboBox(g.box);
    m_assignList->setObjectName(QStringLiteral("ComboBoxN4AssignTo"));
    for (int n = 0; n < Session::kUserListCount; ++n)
        m_assignList->addItem(QStringLiteral("<USER%1>").arg(n));
    updateAssignState();
    connect(m_assignButton, &QPushButton::clicked, this, &TFrameFileRenameNormal::assignNumbers);
    g.row({m_assignButton, m_assignList}, true);
}

void TFrameFileRenameNormal::buildN5(PageSection& g)
{
    g.keepRow();
    g.row({g.option(QStringLiteral("RadioButtonN5Move"), tr("子字符串：从位置"), QStringLiteral("N501"), QStringLiteral("N5_Move")),
           g.spin(QStringLiteral("SpinBoxN5Position"), QStringLiteral("N5_Position"), 1, 255, 1), g.label(tr("字符数")),
           g.spin(QStringLiteral("SpinBoxN5Length"), QStringLiteral("N5_Length"), 1, 256, 1)});
    g.row({g.check(QStringLiteral("CheckBoxN5FromRight"), tr("从后计算"), QStringLiteral("N5_FromRight"), false)}, true);

    boundsRow(g, g.option(QStringLiteral("RadioButtonN5MoveLR"), tr("子字符串：左"), QStringLiteral("N502"), QStringLiteral("N5_MoveLR")),
              {QStringLiteral("ComboBoxN5MoveByStrLeft"), QStringLiteral("N5_MoveByStrLeft")},
              {QStringLiteral("ComboBoxN5MoveByStrRight"), QStringLiteral("N5_MoveByStrRight")}, 0);
    g.row({g.label(tr("为间隔的字符串")),
           g.check(QStringLiteral("CheckBoxN5MoveByStrIncludeLR"), tr("含间隔符"), QStringLiteral("N5_MoveByStrIncludeLR"), false)},
          true);

    QRadioButton* byText = g.option(QStringLiteral("RadioButtonN5MoveStr"), tr("子字符串："), QStringLiteral("N503"), QStringLiteral("N5_MoveStr"));
    HistoryComboBox* text = g.text(QStringLiteral("ComboBoxN5MoveStr"), QStringLiteral("N5_MoveStrText"), {}, 10);
    PageSection::widen(g.row({byText, text}), text);
    g.row({g.list(QStringLiteral("ComboBoxN5MoveDirection"), QStringLiteral("N5_MoveDirection"), {tr("向左"), tr("向右")}, 1),
           g.label(tr("移动")), g.spin(QStringLiteral("SpinBoxN5MoveMum"), QStringLiteral("N5_MoveMum"), 1, 255, 1),
           g.label(tr("个字符"))},
          true);
}

void TFrameFileRenameNormal::buildN6(PageSection& g)
{
    g.keepRow();
    auto* change = new QRadioButton(tr("转换为："), g.box);
    change->setObjectName(QStringLiteral("RadioButtonN6Change"));
    g.options->addButton(change);
    connect(change, &QRadioButton::clicked, this, [&g] { g.changed(); });
    QComboBox* function = g.list(QStringLiteral("ComboBoxN6Function"), QStringLiteral("N6_Function"),
                                 {tr("全部大写"), tr("全部小写"), tr("一大一小"), tr("一小一大"), tr("大小写反转"), tr("随机大小写"),
                                  tr("单词首字母大写后面小写"), tr("单词首字母大写后面不变")},
                                 0);
    // The list's entries are N601 … N608 in order.
    g.computedSubCode = [change, function] {
        return change->isChecked() ? QStringLiteral("N6%1").arg(function->currentIndex() + 1, 2, 10, QLatin1Char('0')) : QString();
    };
    g.row({change, function});

    QLabel* exceptLabel = g.label(tr("例外"));
    HistoryComboBox* except = g.text(QStringLiteral("ComboBoxN6ExceptWord"), QStringLiteral("N6_ExceptWord"), {}, 10);
    PageSection::widen(g.row({exceptLabel, except}, true), except);

    // The label above its choices: the three of them and the separator box make too long a line.
    auto* words = new QButtonGroup(g.box);
    QLabel* wordsLabel = g.label(tr("单词分隔："));
    g.row({wordsLabel}, true);
    QRadioButton* bySeparator = g.choice(words, QStringLiteral("RadioButtonN6UseSeparator"), tr("指定字符或字符串"), QStringLiteral("N6_UseSeparator"), true);
    HistoryComboBox* separator = g.text(QStringLiteral("ComboBoxN6CutText"), QStringLiteral("N6_Separator"), QStringLiteral(" "), 6);
    g.row({bySeparator, separator}, 2);
    QRadioButton* notNumOrLetter = g.choice(words, QStringLiteral("RadioButtonN6NotNumOrLetter"), tr("非数字和字母"), QStringLiteral("N6_NotNumOrLetter"), false);
    QRadioButton* notLetter = g.choice(words, QStringLiteral("RadioButtonN6NotLetter"), tr("非字母"), QStringLiteral("N6_NotLetter"), false);
    g.row({notNumOrLetter, notLetter}, 2);

    // Word separation matters to the two word functions only.
    auto wordFunction = [=] {
        const bool on = function->currentIndex() >= 6;
        for (QWidget* w : std::initializer_list<QWidget*>{wordsLabel, bySeparator, separator, notNumOrLetter, notLetter})
            w->setEnabled(on);
    };
    connect(function, &QComboBox::currentIndexChanged, this, wordFunction);
    wordFunction();
}

// ---------------------------------------------------------------------------------------
// Recording

void TFrameFileRenameNormal::N1_SelectedClick() { selectedClick(*m_n[0]); }
void TFrameFileRenameNormal::N2_SelectedClick() { selectedClick(*m_n[1]); }
void TFrameFileRenameNormal::N3_SelectedClick() { selectedClick(*m_n[2]); }
void TFrameFileRenameNormal::N4_SelectedClick() { selectedClick(*m_n[3]); }
void TFrameFileRenameNormal::N5_SelectedClick() { selectedClick(*m_n[4]); }
void TFrameFileRenameNormal::N6_SelectedClick() { selectedClick(*m_n[5]); }

void TFrameFileRenameNormal::updateAssignState()
{
    // A run started elsewhere (a loaded command file, a preview) may have numbered the rows
    // too; the session knows whether any numbering has run.
    const bool numbered = m_session.numbersForAssignment.has_value();
    m_assignButton->setEnabled(numbered);
    m_assignList->setEnabled(numbered);
}

void TFrameFileRenameNormal::showEvent(QShowEvent* event)
{
    updateAssignState();
    QWidget::showEvent(event);
}

// ---------------------------------------------------------------------------------------
// The page's own actions

void TFrameFileRenameNormal::getLongestName()
{
    auto* length = findChild<QSpinBox*>(QStringLiteral("SpinBoxN1FillLength"));
    length->setValue(int(std::min<qsizetype>(longestNameLength(m_session.renameList()), length->maximum())));
}

void TFrameFileRenameNormal::openReplaceEditor()
{
    auto* search = findChild<HistoryComboBox*>(QStringLiteral("ComboBoxN2Search"));
    auto* replace = findChild<HistoryComboBox*>(QStringLiteral("ComboBoxN2Replace"));
    TReplaceEditForm form(search->currentText(), replace->currentText(), this);
    if (m_runner(form) != QDialog::Accepted)
        return;
    search->setTextQuietly(form.searchText());
    replace->setTextQuietly(form.replaceText());
    search->remember();
    replace->remember();
    N2_SelectedClick();
}

void TFrameFileRenameNormal::openWordEditor()
{
    auto* words = findChild<HistoryComboBox*>(QStringLiteral("ComboBoxN3TheString"));
    TN3DelWordEditorForm form(words->currentText(), this);
    if (m_runner(form) != QDialog::Accepted)
        return;
    words->setTextQuietly(form.words());
    words->remember();
    N3_SelectedClick();
}

void TFrameFileRenameNormal::openCharsetEditor()
{
    auto* charset = findChild<HistoryComboBox*>(QStringLiteral("ComboBoxN3TheUserCharset"));
    TN3UserCharsetEditorForm form(charset->currentText(), this);
    if (m_runner(form) != QDialog::Accepted)
        return;
    charset->setTextQuietly(form.charset());
    charset->remember();
    N3_SelectedClick();
}

void TFrameFileRenameNormal::assignNumbers()
{
    const QString tag = m_assignList->currentText();
    if (!assignNumbersToUserList(m_session, m_assignList->currentIndex())) {
        m_session.interaction().notify(Notice{QStringLiteral("normal.assignNoNumbers"), tr("温馨提示"),
                                              tr("还没有执行过自动编号命令，没有可赋值的编号。"), Icon::Information});
        return;
    }
    m_session.messages().add(tr("自动编号已赋值到 %1。").arg(tag));
}

}  // namespace qp::ui
