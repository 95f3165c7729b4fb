#include "ui/pages/FrameFileRenameNormal.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
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

#include "commands/NormalCommands.h"
#include "core/Session.h"
#include "ui/dialogs/N3EditorForms.h"
#include "ui/dialogs/ReplaceEditForm.h"
#include "ui/widgets/CheckListComboBox.h"
#include "ui/widgets/HistoryComboBox.h"
#include "ui/widgets/MetaVariableMenu.h"

namespace qp::ui {

namespace {

const QString kPresetPrompt = QStringLiteral("请选择预设字符集");
constexpr int kIndent = 22;  // sub-rows line up under the text of their option

}  // namespace

// One section: its controls, what each writes into the command's section, and the option
// that gives the sub-code. The builders create a control, register how it is stored and
// wire it to the section's selection handler.
struct TFrameFileRenameNormal::Group {
    using Writer = std::function<void(SettingsStore&, const QString&)>;

    Group(TFrameFileRenameNormal& frame, QString code, const QString& title, void (TFrameFileRenameNormal::*handler)())
        : frame(frame)
        , code(std::move(code))
        , handler(handler)
    {
        box = new QGroupBox(title, frame.m_content);
        box->setObjectName(QStringLiteral("GroupBox") + this->code);
        rows = new QVBoxLayout(box);
        rows->setContentsMargins(6, 4, 6, 6);
        rows->setSpacing(3);
        options = new QButtonGroup(box);
    }

    void changed() { (frame.*handler)(); }

    QString subCode() const
    {
        if (computedSubCode)
            return computedSubCode();
        for (const auto& [radio, sub] : subCodes) {
            if (radio->isChecked())
                return sub;
        }
        return {};
    }

    // "保持不变", then the section's "Ok" button at the end of the first row.
    QRadioButton* keepOption()
    {
        keep = new QRadioButton(tr("保持不变"), box);
        keep->setObjectName(QStringLiteral("RadioButton%1Keep").arg(code));
        keep->setChecked(true);
        options->addButton(keep);
        QObject::connect(keep, &QRadioButton::clicked, &frame, [this] { changed(); });
        ok = new QPushButton(QStringLiteral("Ok"), box);
        ok->setObjectName(QStringLiteral("PushButton%1Ok").arg(code));
        ok->setEnabled(false);
        ok->setAutoDefault(false);
        ok->setToolTip(tr("把本组的设置作为一条命令加入命令列表，并结束这条命令"));
        QObject::connect(keep, &QRadioButton::toggled, ok, [this](bool on) { ok->setEnabled(!on); });
        QObject::connect(ok, &QPushButton::clicked, &frame, [this] { frame.okClick(*this); });
        return keep;
    }

    // An option of the section; choosing it gives `sub`.
    QRadioButton* option(const QString& name, const QString& caption, const QString& sub, const QString& key)
    {
        QRadioButton* radio = choice(options, name, caption, key, false);
        subCodes.emplace_back(radio, sub);
        return radio;
    }

    // A radio button of one of the section's sets (placement, fill character …).
    QRadioButton* choice(QButtonGroup* set, const QString& name, const QString& caption, const QString& key, bool checked)
    {
        auto* radio = new QRadioButton(caption, box);
        radio->setObjectName(name);
        radio->setChecked(checked);
        set->addButton(radio);
        if (!key.isEmpty())
            writers.push_back([radio, key](SettingsStore& s, const QString& section) { s.writeBool(section, key, radio->isChecked()); });
        QObject::connect(radio, &QRadioButton::clicked, &frame, [this] { changed(); });
        return radio;
    }

    QCheckBox* check(const QString& name, const QString& caption, const QString& key, bool checked)
    {
        auto* box_ = new QCheckBox(caption, box);
        box_->setObjectName(name);
        box_->setChecked(checked);
        writers.push_back([box_, key](SettingsStore& s, const QString& section) { s.writeBool(section, key, box_->isChecked()); });
        QObject::connect(box_, &QCheckBox::clicked, &frame, [this] { changed(); });
        return box_;
    }

    QSpinBox* spin(const QString& name, const QString& key, int minimum, int maximum, int value)
    {
        auto* spin_ = new QSpinBox(box);
        spin_->setObjectName(name);
        spin_->setRange(minimum, maximum);
        spin_->setValue(value);
        // Ten digits and a sign would make the start and step boxes as wide as a text box.
        spin_->setMaximumWidth(spin_->fontMetrics().horizontalAdvance(QStringLiteral("-00000000")) + 32);
        writers.push_back([spin_, key](SettingsStore& s, const QString& section) { s.writeInt(section, key, spin_->value()); });
        QObject::connect(spin_, &QSpinBox::valueChanged, &frame, [this] { changed(); });
        return spin_;
    }

    // A fixed list whose stored value is the index of the chosen entry.
    QComboBox* list(const QString& name, const QString& key, const QStringList& items, int index)
    {
        auto* list_ = new QComboBox(box);
        list_->setObjectName(name);
        list_->addItems(items);
        list_->setCurrentIndex(index);
        if (!key.isEmpty())
            writers.push_back([list_, key](SettingsStore& s, const QString& section) { s.writeInt(section, key, list_->currentIndex()); });
        QObject::connect(list_, &QComboBox::currentIndexChanged, &frame, [this] { changed(); });
        return list_;
    }

    // A text box with its drop-down history.
    HistoryComboBox* text(const QString& name, const QString& key, const QString& initial = {}, int width = 12)
    {
        auto* text_ = new HistoryComboBox(frame.m_session.settings(), name, box);
        text_->setMinimumContentsLength(width);
        text_->setTextQuietly(initial);
        texts.push_back(text_);
        if (!key.isEmpty())
            writers.push_back([text_, key](SettingsStore& s, const QString& section) { s.writeString(section, key, text_->currentText()); });
        QObject::connect(text_, &QComboBox::editTextChanged, &frame, [this] { changed(); });
        return text_;
    }

    // The "元变量" button beside an expression text box.
    QToolButton* metaButton(HistoryComboBox* target)
    {
        auto* button = new QToolButton(box);
        button->setObjectName(QStringLiteral("ToolButton") + target->objectName().mid(8) + QStringLiteral("Meta"));
        button->setText(tr("元变量"));
        button->setPopupMode(QToolButton::InstantPopup);
        button->setMenu(frame.m_inserter->createMenu(target->lineEdit(), button));
        return button;
    }

    QPushButton* button(const QString& name, const QString& caption)
    {
        auto* button_ = new QPushButton(caption, box);
        button_->setObjectName(name);
        button_->setAutoDefault(false);
        return button_;
    }

    QLabel* label(const QString& caption) { return new QLabel(caption, box); }

    QLabel* hint(const QString& caption)
    {
        QLabel* l = label(caption);
        QPalette palette = l->palette();
        palette.setColor(QPalette::WindowText, palette.color(QPalette::PlaceholderText));
        l->setPalette(palette);
        return l;
    }

    // One line of controls, indented under the options when `indent`.
    QHBoxLayout* row(std::initializer_list<QWidget*> widgets, bool indent = false)
    {
        auto* line = new QHBoxLayout;
        line->setSpacing(4);
        if (indent)
            line->addSpacing(kIndent);
        for (QWidget* w : widgets)
            line->addWidget(w);
        line->addStretch(1);
        rows->addLayout(line);
        return line;
    }

    TFrameFileRenameNormal& frame;
    QString code;
    void (TFrameFileRenameNormal::*handler)();
    QGroupBox* box = nullptr;
    QVBoxLayout* rows = nullptr;
    QButtonGroup* options = nullptr;
    QRadioButton* keep = nullptr;
    QPushButton* ok = nullptr;
    std::vector<std::pair<QRadioButton*, QString>> subCodes;
    std::function<QString()> computedSubCode;
    std::vector<Writer> writers;
    std::vector<HistoryComboBox*> texts;
};

// ---------------------------------------------------------------------------------------

TFrameFileRenameNormal::TFrameFileRenameNormal(Session& session, QWidget* parent)
    : QWidget(parent)
    , m_session(session)
{
    setObjectName(QStringLiteral("TFrameFileRenameNormal"));
    m_quiet = true;
    m_inserter = new MetaVariableInserter(session, this);

    auto* outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    m_scroll = new QScrollArea(this);
    m_scroll->setObjectName(QStringLiteral("ScrollBoxNormal"));
    m_scroll->setWidgetResizable(true);
    m_scroll->setFrameShape(QFrame::NoFrame);
    outer->addWidget(m_scroll);
    m_content = new QWidget;
    auto* sections = new QVBoxLayout(m_content);
    sections->setContentsMargins(4, 4, 4, 4);
    sections->setSpacing(6);

    buildN1(newGroup(QStringLiteral("N1"), tr("1.N.1.添加与补齐"), &TFrameFileRenameNormal::N1_SelectedClick));
    buildN2(newGroup(QStringLiteral("N2"), tr("1.N.2.替换"), &TFrameFileRenameNormal::N2_SelectedClick));
    buildN3(newGroup(QStringLiteral("N3"), tr("1.N.3.删除与保留"), &TFrameFileRenameNormal::N3_SelectedClick));
    buildN4(newGroup(QStringLiteral("N4"), tr("1.N.4.自动编号"), &TFrameFileRenameNormal::N4_SelectedClick));
    buildN5(newGroup(QStringLiteral("N5"), tr("1.N.5.移动"), &TFrameFileRenameNormal::N5_SelectedClick));
    buildN6(newGroup(QStringLiteral("N6"), tr("1.N.6.字母大小写"), &TFrameFileRenameNormal::N6_SelectedClick));
    for (const auto& group : m_groups)
        sections->addWidget(group->box);
    sections->addStretch(1);
    m_scroll->setWidget(m_content);
    m_quiet = false;
}

TFrameFileRenameNormal::~TFrameFileRenameNormal() = default;

TFrameFileRenameNormal::Group& TFrameFileRenameNormal::newGroup(const QString& code, const QString& title,
                                                                void (TFrameFileRenameNormal::*handler)())
{
    m_groups.push_back(std::make_unique<Group>(*this, code, title, handler));
    return *m_groups.back();
}

// ---------------------------------------------------------------------------------------
// The sections

void TFrameFileRenameNormal::buildN1(Group& g)
{
    QRadioButton* keep = g.keepOption();
    QRadioButton* direct = g.option(QStringLiteral("RadioButtonN1AddDirect"), tr("直接添加"), QStringLiteral("N101"), QStringLiteral("N1_AddDirect"));
    QRadioButton* fill = g.option(QStringLiteral("RadioButtonN1AddFill"), tr("补齐添加"), QStringLiteral("N102"), QStringLiteral("N1_AddFill"));
    g.row({keep, direct, fill})->addWidget(g.ok);

    HistoryComboBox* content = g.text(QStringLiteral("ComboBoxN1AddStr"), QStringLiteral("N1_AddStr"), {}, 20);
    g.row({g.label(tr("内容")), content, g.metaButton(content)}, true);

    QPushButton* longest = g.button(QStringLiteral("PushButtonN1GetLongest"), tr("获取列表最长"));
    connect(longest, &QPushButton::clicked, this, &TFrameFileRenameNormal::getLongestName);
    g.row({g.label(tr("补齐长度")), g.spin(QStringLiteral("SpinBoxN1FillLength"), QStringLiteral("N1_FillLength"), 0, 255, 8),
           longest, g.hint(tr("补齐时内容将重复至设置补齐长度"))},
          true);

    auto* place = new QButtonGroup(g.box);
    g.row({g.choice(place, QStringLiteral("RadioButtonN1AddLeft"), tr("文件名之前"), QStringLiteral("N1_AddLeft"), true),
           g.choice(place, QStringLiteral("RadioButtonN1AddRight"), tr("文件名之后"), QStringLiteral("N1_AddRight"), false)},
          true);
    g.row({g.choice(place, QStringLiteral("RadioButtonN1AddInsert"), tr("插入位置"), QStringLiteral("N1_AddInsert"), false),
           g.spin(QStringLiteral("SpinBoxN1InsertPos"), QStringLiteral("N1_InsertPos"), 0, 255, 1),
           g.check(QStringLiteral("CheckBoxN1InsertPosFromRight"), tr("从后计算"), QStringLiteral("N1_InsertPosFormRight"), false)},
          true);
    g.row({g.choice(place, QStringLiteral("RadioButtonN1AddInsertByStr"), tr("插入到字符串"), QStringLiteral("N1_AddInsertByStr"), false),
           g.text(QStringLiteral("ComboBoxN1AddInsertByStrText"), QStringLiteral("N1_AddInsertByStrText")),
           g.list(QStringLiteral("ComboBoxN1AddInsertByStrPos"), QStringLiteral("N1_AddInsertByStrPos"), {tr("后"), tr("前")}, 0),
           g.label(tr("含多个时为从左第几个")),
           g.spin(QStringLiteral("SpinBoxN1AddInsertByStrWhich"), QStringLiteral("N1_AddInsertByStrWhich"), 1, 255, 1)},
          true);
    g.row({g.choice(place, QStringLiteral("RadioButtonN1AddInsertByLR"), tr("插入到左"), QStringLiteral("N1_AddInsertByLR"), false),
           g.text(QStringLiteral("ComboBoxN1AddInsertByLeft"), QStringLiteral("N1_AddInsertByLeft"), {}, 6), g.label(tr("右")),
           g.text(QStringLiteral("ComboBoxN1AddInsertByRight"), QStringLiteral("N1_AddInsertByRight"), {}, 6),
           g.label(tr("为间隔的字符串")),
           g.list(QStringLiteral("ComboBoxN1AddInsertByLRPos"), QStringLiteral("N1_AddInsertByLRPos"), {tr("后"), tr("前")}, 0),
           g.check(QStringLiteral("CheckBoxN1AddInsertByLRPosIncludeLR"), tr("含间隔符"), QStringLiteral("N1_AddInsertByLRPosIncludeLR"), false)},
          true);
}

void TFrameFileRenameNormal::buildN2(Group& g)
{
    g.row({g.keepOption()})->addWidget(g.ok);

    HistoryComboBox* replace = g.text(QStringLiteral("ComboBoxN2Replace"), QStringLiteral("N2_ReplaceText"), {}, 14);
    QPushButton* editor = g.button(QStringLiteral("PushButtonN2Editor"), tr("编辑器"));
    connect(editor, &QPushButton::clicked, this, &TFrameFileRenameNormal::openReplaceEditor);
    g.row({g.option(QStringLiteral("RadioButtonN2Search"), tr("查找"), QStringLiteral("N201"), QStringLiteral("N2_SearchAndReplace")),
           g.text(QStringLiteral("ComboBoxN2Search"), QStringLiteral("N2_SearchText"), {}, 14), g.label(tr("替换为")), replace,
           g.metaButton(replace), editor});
    g.row({g.hint(tr("查找替换多项内容时用“|”分隔"))}, true);

    auto* order = new QButtonGroup(g.box);
    g.row({g.check(QStringLiteral("CheckBoxN2Case"), tr("区分大小写"), QStringLiteral("N2_CaseFlag"), false),
           g.choice(order, QStringLiteral("RadioButtonN2SameTime"), tr("同时查找并替换"), QStringLiteral("N2_SameTimeFlag"), true),
           g.choice(order, QStringLiteral("RadioButtonN2FromLToR"), tr("从左到右顺序查找并替换"), QStringLiteral("N2_FromLToRFlag"), false)},
          true);
    g.row({g.label(tr("替换第")), g.text(QStringLiteral("ComboBoxN2ReplaceSet"), QStringLiteral("N2_ReplaceTextSet"), QStringLiteral("1~-1"), 8),
           g.label(tr("次出现的"))},
          true);

    HistoryComboBox* replaceLR = g.text(QStringLiteral("ComboBoxN2ReplaceLR"), QStringLiteral("N2_ReplaceTextLR"), {}, 10);
    g.row({g.option(QStringLiteral("RadioButtonN2SearchLR"), tr("替换以左"), QStringLiteral("N202"), QStringLiteral("N2_SearchAndReplaceLR")),
           g.text(QStringLiteral("ComboBoxN2SearchLeft"), QStringLiteral("N2_SearchLeft"), {}, 6), g.label(tr("右")),
           g.text(QStringLiteral("ComboBoxN2SearchRight"), QStringLiteral("N2_SearchRight"), {}, 6), g.label(tr("隔的字符串为：")),
           replaceLR, g.metaButton(replaceLR),
           g.check(QStringLiteral("CheckBoxN2SearchIncludeLR"), tr("含间隔符"), QStringLiteral("N2_SearchIncludeLRFlag"), false)});
}

void TFrameFileRenameNormal::buildN3(Group& g)
{
    QRadioButton* keep = g.keepOption();
    g.row({keep, g.option(QStringLiteral("RadioButtonN3DelWhole"), tr("清空文件名"), QStringLiteral("N301"), QStringLiteral("N3_DelWhole")),
           g.option(QStringLiteral("RadioButtonN3DelTrim"), tr("去除两端空格"), QStringLiteral("N302"), QStringLiteral("N3_DelTrim"))})
        ->addWidget(g.ok);

    const QStringList deleteOrKeep{tr("删除"), tr("保留")};
    g.row({g.option(QStringLiteral("RadioButtonN3DelFromTo"), tr("从位置"), QStringLiteral("N303"), QStringLiteral("N3_DelFromTo")),
           g.spin(QStringLiteral("SpinBoxN3DelFrom"), QStringLiteral("N3_DelFrom"), 1, 256, 1),
           g.list(QStringLiteral("ComboBoxN3DelOrKeep"), QStringLiteral("N3_DelOrKeep"), deleteOrKeep, 0),
           g.spin(QStringLiteral("SpinBoxN3DelTo"), QStringLiteral("N3_DelTo"), 1, 256, 1), g.label(tr("个字符")),
           g.check(QStringLiteral("CheckBoxN3DelFromToFromRight"), tr("从后计算"), QStringLiteral("N3_DelFromToFromRight"), false)});
    g.row({g.option(QStringLiteral("RadioButtonN3DelCut"), tr("以字符串"), QStringLiteral("N304"), QStringLiteral("N3_DelCut")),
           g.text(QStringLiteral("ComboBoxN3CutWord"), QStringLiteral("N3_CutWord"), {}, 8), g.label(tr("为界剪裁")),
           g.list(QStringLiteral("ComboBoxN3DelCutDirection"), QStringLiteral("N3_DelCutDirection"), {tr("后面"), tr("前面")}, 0),
           g.check(QStringLiteral("CheckBoxN3DelCutIncludeSelf"), tr("剪裁本身"), QStringLiteral("N3_DelCutIncludeSelf"), true),
           g.label(tr("含多个时为从左第几个")),
           g.spin(QStringLiteral("SpinBoxN3DelCutWhichWord"), QStringLiteral("N3_DelCutWhichWord"), 1, 255, 1)});
    g.row({g.option(QStringLiteral("RadioButtonN3DelCutLR"), tr("以左"), QStringLiteral("N305"), QStringLiteral("N3_DelCutLR")),
           g.text(QStringLiteral("ComboBoxN3CutWordLeft"), QStringLiteral("N3_CutWordLeft"), {}, 6), g.label(tr("右")),
           g.text(QStringLiteral("ComboBoxN3CutWordRight"), QStringLiteral("N3_CutWordRight"), {}, 6), g.label(tr("为间隔的字符串")),
           g.list(QStringLiteral("ComboBoxN3DelOrKeepLR"), QStringLiteral("N3_DelOrKeepLR"), deleteOrKeep, 0),
           g.check(QStringLiteral("CheckBoxN3DelCutIncludeSelfLR"), tr("含间隔符"), QStringLiteral("N3_DelCutIncludeSelfLR"), false)});

    g.row({g.option(QStringLiteral("RadioButtonN3DelPart"), tr("在文件名中"), QStringLiteral("N306"), QStringLiteral("N3_DelPart")),
           g.list(QStringLiteral("ComboBoxN3DelPartDeleteOrHold"), QStringLiteral("N3_DelPartDeleteOrHold"), deleteOrKeep, 0),
           g.label(tr("以下内容"))});
    QPushButton* words = g.button(QStringLiteral("PushButtonN3TheStringEditor"), tr("编辑器"));
    connect(words, &QPushButton::clicked, this, &TFrameFileRenameNormal::openWordEditor);
    g.row({g.check(QStringLiteral("CheckBoxN3DelPartTheString"), tr("指定字符串"), QStringLiteral("N3_DelPartTheString"), false),
           g.text(QStringLiteral("ComboBoxN3TheString"), QStringLiteral("N3_TheString"), {}, 16), words},
          true);
    QPushButton* charset = g.button(QStringLiteral("PushButtonN3UserCharsetEditor"), tr("编辑器"));
    connect(charset, &QPushButton::clicked, this, &TFrameFileRenameNormal::openCharsetEditor);
    g.row({g.check(QStringLiteral("CheckBoxN3DelPartUserCharset"), tr("指定字符集"), QStringLiteral("N3_DelPartUserCharset"), false),
           g.text(QStringLiteral("ComboBoxN3TheUserCharset"), QStringLiteral("N3_TheUserCharset"), {}, 16), charset},
          true);

    auto* presets = new CheckListComboBox(g.box);
    presets->setObjectName(QStringLiteral("ComboBoxN3FixedCharset"));
    presets->setItems(presetCharsetNames());
    presets->setPrompt(kPresetPrompt);
    // With none chosen this stores the prompt, which the command reads as "no preset set".
    g.writers.push_back([presets](SettingsStore& s, const QString& section) {
        s.writeString(section, QStringLiteral("N3_FixedCharsetString"), joinPresetCharsets(presets->checkedItems()));
    });
    connect(presets, &CheckListComboBox::checkedItemsChanged, this, [&g] { g.changed(); });
    g.row({g.label(tr("预设字符集")), presets}, true);
}

void TFrameFileRenameNormal::buildN4(Group& g)
{
    g.row({g.keepOption()})->addWidget(g.ok);

    g.row({g.option(QStringLiteral("RadioButtonN4AutoNumPos"), tr("插入位置"), QStringLiteral("N401"), QStringLiteral("N4_AutoNumPos")),
           g.spin(QStringLiteral("SpinBoxN4InsertPos"), QStringLiteral("N4_InsertPos"), 0, 255, 1),
           g.check(QStringLiteral("CheckBoxN4InsertPosFromRight"), tr("从后计算"), QStringLiteral("N4_InsertPosFromRight"), false)});
    g.row({g.option(QStringLiteral("RadioButtonN4AutoNumPosByStr"), tr("插入到字符串"), QStringLiteral("N402"), QStringLiteral("N4_AutoNumPosByStr")),
           g.text(QStringLiteral("ComboBoxN4InsertPosByStr"), QStringLiteral("N4_InsertPosByStr"), {}, 8),
           g.list(QStringLiteral("ComboBoxN4InsertPosByStrLorR"), QStringLiteral("N4_InsertPosByStrLorR"), {tr("后"), tr("前")}, 0),
           g.label(tr("含多个时为从左第几个")),
           g.spin(QStringLiteral("SpinBoxN4InsertPosByStrWhich"), QStringLiteral("N4_InsertPosByStrWhich"), 1, 255, 1)});

    HistoryComboBox* expression = g.text(QStringLiteral("ComboBoxN4Expression"), QStringLiteral("N4_InsertExpression"), QStringLiteral("<#>"), 16);
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
    g.row({g.option(QStringLiteral("RadioButtonN4AutoNumExpression"), tr("表达式"), QStringLiteral("N403"), QStringLiteral("N4_AutoNumExpression")),
           expression, number, g.metaButton(expression)});

    g.row({g.label(tr("始于")), g.spin(QStringLiteral("SpinBoxN4Start"), QStringLiteral("N4_Start"), INT_MIN, INT_MAX, 1),
           g.label(tr("增量")), g.spin(QStringLiteral("SpinBoxN4Increment"), QStringLiteral("N4_Increment"), INT_MIN, INT_MAX, 1),
           g.label(tr("位数")), g.spin(QStringLiteral("SpinBoxN4DigitUnits"), QStringLiteral("N4_DigitUnits"), 1, 255, 1),
           g.label(tr("分组")), g.spin(QStringLiteral("SpinBoxN4GroupCount"), QStringLiteral("N4_GroupCount"), 1, 255, 1),
           g.list(QStringLiteral("ComboBoxN4AutoNumType"), QStringLiteral("N4_AutoNumType"), {tr("数字"), tr("小写字母"), tr("大写字母")}, 0)},
          true);
    g.row({g.check(QStringLiteral("CheckBoxN4Reset"), tr("重置"), QStringLiteral("N4_Reset"), false), g.label(tr("超出")),
           g.spin(QStringLiteral("SpinBoxN4ResetValue"), QStringLiteral("N4_ResetValue"), INT_MIN, INT_MAX, 8),
           g.check(QStringLiteral("CheckBoxN4SkipNoCheckRow"), tr("未复选行不计数"), QStringLiteral("N4_SkipNoCheckRow"), true),
           g.check(QStringLiteral("CheckBoxN4ByPath"), tr("按路径单独计数"), QStringLiteral("N4_ByPath"), false)},
          true);
    HistoryComboBox* except = g.text(QStringLiteral("ComboBoxN4ExceptText"), QStringLiteral("N4_ExceptText"), {}, 16);
    // The executor treats an exclusion list holding a lone "*" specially; the page tells it so.
    g.writers.push_back([except](SettingsStore& s, const QString& section) {
        bool star = false;
        for (const QString& item : except->currentText().split(QLatin1Char('|')))
            star = star || item.trimmed() == u"*";
        s.writeBool(section, QStringLiteral("N4_ExceptTextHaveSingleStar"), star);
    });
    g.row({g.check(QStringLiteral("CheckBoxN4Except"), tr("排除"), QStringLiteral("N4_Except"), false), except}, true);

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

void TFrameFileRenameNormal::buildN5(Group& g)
{
    g.row({g.keepOption()})->addWidget(g.ok);
    g.row({g.option(QStringLiteral("RadioButtonN5Move"), tr("子字符串：从位置"), QStringLiteral("N501"), QStringLiteral("N5_Move")),
           g.spin(QStringLiteral("SpinBoxN5Position"), QStringLiteral("N5_Position"), 1, 255, 1), g.label(tr("字符数")),
           g.spin(QStringLiteral("SpinBoxN5Length"), QStringLiteral("N5_Length"), 1, 256, 1),
           g.check(QStringLiteral("CheckBoxN5FromRight"), tr("从后计算"), QStringLiteral("N5_FromRight"), false)});
    g.row({g.option(QStringLiteral("RadioButtonN5MoveLR"), tr("子字符串：左"), QStringLiteral("N502"), QStringLiteral("N5_MoveLR")),
           g.text(QStringLiteral("ComboBoxN5MoveByStrLeft"), QStringLiteral("N5_MoveByStrLeft"), {}, 6), g.label(tr("右")),
           g.text(QStringLiteral("ComboBoxN5MoveByStrRight"), QStringLiteral("N5_MoveByStrRight"), {}, 6),
           g.label(tr("为间隔的字符串")),
           g.check(QStringLiteral("CheckBoxN5MoveByStrIncludeLR"), tr("含间隔符"), QStringLiteral("N5_MoveByStrIncludeLR"), false)});
    g.row({g.option(QStringLiteral("RadioButtonN5MoveStr"), tr("子字符串："), QStringLiteral("N503"), QStringLiteral("N5_MoveStr")),
           g.text(QStringLiteral("ComboBoxN5MoveStr"), QStringLiteral("N5_MoveStrText"), {}, 14)});
    g.row({g.list(QStringLiteral("ComboBoxN5MoveDirection"), QStringLiteral("N5_MoveDirection"), {tr("向左"), tr("向右")}, 1),
           g.label(tr("移动")), g.spin(QStringLiteral("SpinBoxN5MoveMum"), QStringLiteral("N5_MoveMum"), 1, 255, 1),
           g.label(tr("个字符"))},
          true);
}

void TFrameFileRenameNormal::buildN6(Group& g)
{
    QRadioButton* keep = g.keepOption();
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
    g.row({keep, change, function})->addWidget(g.ok);

    g.row({g.label(tr("例外")), g.text(QStringLiteral("ComboBoxN6ExceptWord"), QStringLiteral("N6_ExceptWord"), {}, 14)}, true);

    auto* words = new QButtonGroup(g.box);
    QLabel* wordsLabel = g.label(tr("单词分隔："));
    QRadioButton* bySeparator = g.choice(words, QStringLiteral("RadioButtonN6UseSeparator"), tr("指定字符或字符串"), QStringLiteral("N6_UseSeparator"), true);
    HistoryComboBox* separator = g.text(QStringLiteral("ComboBoxN6CutText"), QStringLiteral("N6_Separator"), QStringLiteral(" "), 6);
    QRadioButton* notNumOrLetter = g.choice(words, QStringLiteral("RadioButtonN6NotNumOrLetter"), tr("非数字和字母"), QStringLiteral("N6_NotNumOrLetter"), false);
    QRadioButton* notLetter = g.choice(words, QStringLiteral("RadioButtonN6NotLetter"), tr("非字母"), QStringLiteral("N6_NotLetter"), false);
    g.row({wordsLabel, bySeparator, separator, notNumOrLetter, notLetter}, true);

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

void TFrameFileRenameNormal::N1_SelectedClick() { selectedClick(*m_groups[0]); }
void TFrameFileRenameNormal::N2_SelectedClick() { selectedClick(*m_groups[1]); }
void TFrameFileRenameNormal::N3_SelectedClick() { selectedClick(*m_groups[2]); }
void TFrameFileRenameNormal::N4_SelectedClick() { selectedClick(*m_groups[3]); }
void TFrameFileRenameNormal::N5_SelectedClick() { selectedClick(*m_groups[4]); }
void TFrameFileRenameNormal::N6_SelectedClick() { selectedClick(*m_groups[5]); }

RecordAnswer TFrameFileRenameNormal::selectedClick(Group& group)
{
    if (m_quiet)
        return {};
    // Running the commands disables the window, which takes the keyboard focus from the box
    // being typed in; it is given back afterwards so that the typing carries on.
    const QPointer<QWidget> focus = window()->focusWidget();
    const auto giveFocusBack = qScopeGuard([&] {
        if (focus && isAncestorOf(focus) && focus->isEnabled() && !focus->hasFocus())
            focus->setFocus(Qt::OtherFocusReason);
    });
    const CommandList& list = m_session.commandList();
    const auto before = std::make_tuple(list.size(), list.lastIsOpen());
    const RecordAnswer answer = recordCommand(m_session, group.code, group.keep->isChecked());
    if (answer.write)
        writeAndRun(group, answer);
    updateAssignState();
    if (answer.write || answer.removed || before != std::make_tuple(list.size(), list.lastIsOpen()))
        emit commandChanged();
    return answer;
}

void TFrameFileRenameNormal::writeAndRun(Group& group, const RecordAnswer& answer)
{
    SettingsStore& settings = m_session.settings();
    const QString subCode = group.subCode();
    // Written on every change, not only for a new command: switching "直接添加" to
    // "补齐添加" changes the open command's sub-code in place.
    m_session.commandList().describe(answer.section, subCode, normalCommandComment(subCode));
    for (const Group::Writer& write : group.writers)
        write(settings, answer.section);

    // A new command is applied on top of the present new names. An updated one is not: its
    // earlier version is already in those names, and the new version on top of them would
    // apply both (typing "aa" as the replacement of "a" would double every "a" once per
    // keystroke). The whole list then runs again from the current names.
    if (answer.created)
        m_session.pipeline().runOne(answer.section);
    else
        m_session.pipeline().runAll(false);
}

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

void TFrameFileRenameNormal::okClick(Group& group)
{
    for (HistoryComboBox* text : group.texts)
        text->remember();
    if (!selectedClick(group).write)
        return;
    // The command is complete: end it, and show the section as having nothing pending, so
    // that a later change starts a new command instead of silently adding to this one.
    m_session.commandList().endCurrent();
    m_quiet = true;
    group.keep->setChecked(true);
    m_quiet = false;
    emit commandChanged();
}

// ---------------------------------------------------------------------------------------
// The page's own actions

void TFrameFileRenameNormal::resetToUnchanged()
{
    m_quiet = true;
    for (const auto& group : m_groups)
        group->keep->setChecked(true);
    m_quiet = false;
}

void TFrameFileRenameNormal::showSection(const QString& functionCode)
{
    QGroupBox* box = section(functionCode);
    if (box == nullptr)
        return;
    m_content->layout()->activate();
    m_scroll->verticalScrollBar()->setValue(box->geometry().top() - m_content->layout()->contentsMargins().top());
}

QGroupBox* TFrameFileRenameNormal::section(const QString& functionCode) const
{
    for (const auto& group : m_groups) {
        if (group->code.compare(functionCode, Qt::CaseInsensitive) == 0)
            return group->box;
    }
    return nullptr;
}

void TFrameFileRenameNormal::clearHistory()
{
    for (const auto& group : m_groups) {
        for (HistoryComboBox* text : group->texts)
            text->forgetHistory();
    }
}

void TFrameFileRenameNormal::setDialogRunner(DialogRunner runner)
{
    m_runner = runner;
    m_inserter->setDialogRunner(std::move(runner));
}

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
