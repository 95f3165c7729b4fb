#include "ui/dialogs/ConfigForm.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <functional>

#include "core/SettingsKeys.h"
#include "core/SettingsStore.h"
#include "platform/FileSystem.h"
#include "execution/Preview.h"
#include "execution/RenameRunner.h"
#include "expressions/MetaVariableCatalogue.h"

namespace qp::ui {

namespace {

// The rows the toolbar's "只预览前" box can show (three digits).
constexpr int kMostPreviewRows = 999;
// ComboHistory keeps between 1 and 200 entries per box.
constexpr int kMostHistoryEntries = 200;
constexpr int kNumberLimit = 999999999;

QSpinBox* spinBox(int low, int high, QWidget* parent)
{
    auto* spin = new QSpinBox(parent);
    spin->setRange(low, high);
    spin->setAccelerated(true);
    return spin;
}

QComboBox* choices(const QList<std::pair<QString, int>>& items, QWidget* parent)
{
    auto* box = new QComboBox(parent);
    for (const auto& [text, value] : items)
        box->addItem(text, value);
    return box;
}

QHBoxLayout* row(std::initializer_list<QWidget*> widgets, bool stretch = true)
{
    auto* layout = new QHBoxLayout;
    for (QWidget* widget : widgets)
        layout->addWidget(widget);
    if (stretch)
        layout->addStretch(1);
    return layout;
}

}  // namespace

// One widget bound to one key: how to read the stored value into the widget, and how the
// widget's value is written back.
struct TConfigForm::Option {
    QWidget* widget = nullptr;
    QString section;
    QString key;
    QVariant defaultValue;  // bool, int or QString: also says how the key is read and written
    int tab = 0;
    bool affectsNames = false;
    // Stored numbers a choice list does not offer are shown as the choice that acts the same.
    std::function<int(qint64)> normalise;

    QVariant stored(const SettingsStore& settings) const
    {
        switch (defaultValue.typeId()) {
        case QMetaType::Bool:
            return settings.readBool(section, key, defaultValue.toBool());
        case QMetaType::Int:
            return int(settings.readInt(section, key, defaultValue.toInt()));
        default:
            return settings.readString(section, key, defaultValue.toString());
        }
    }

    void write(SettingsStore& settings, const QVariant& value) const
    {
        switch (defaultValue.typeId()) {
        case QMetaType::Bool:
            settings.writeBool(section, key, value.toBool());
            break;
        case QMetaType::Int:
            settings.writeInt(section, key, value.toInt());
            break;
        default:
            settings.writeString(section, key, value.toString());
        }
    }

    QVariant shown() const
    {
        if (auto* check = qobject_cast<QCheckBox*>(widget))
            return check->isChecked();
        if (auto* spin = qobject_cast<QSpinBox*>(widget))
            return spin->value();
        if (auto* list = qobject_cast<QComboBox*>(widget)) {
            if (defaultValue.typeId() == QMetaType::QString)
                return list->currentData().toString();
            const int value = list->currentData().toInt();
            return defaultValue.typeId() == QMetaType::Bool ? QVariant(value != 0) : QVariant(value);
        }
        return qobject_cast<QLineEdit*>(widget)->text();
    }

    void show(const QVariant& value) const
    {
        if (auto* check = qobject_cast<QCheckBox*>(widget)) {
            check->setChecked(value.toBool());
        } else if (auto* spin = qobject_cast<QSpinBox*>(widget)) {
            spin->setValue(value.toInt());
        } else if (auto* list = qobject_cast<QComboBox*>(widget); list && defaultValue.typeId() == QMetaType::QString) {
            list->setCurrentIndex(std::max(0, list->findData(value.toString())));
        } else if (auto* list = qobject_cast<QComboBox*>(widget)) {
            const int number = normalise ? normalise(value.toLongLong()) : value.toInt();
            list->setCurrentIndex(std::max(0, list->findData(number)));
        } else {
            qobject_cast<QLineEdit*>(widget)->setText(value.toString());
        }
    }
};

TConfigForm::TConfigForm(SettingsStore& settings, QWidget* parent)
    : QDialog(parent)
    , m_settings(settings)
{
    setObjectName(QStringLiteral("TConfigForm"));
    setWindowTitle(tr("选项设置"));

    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName(QStringLiteral("PageControlConfig"));
    const std::pair<QWidget* (TConfigForm::*)(), QString> pages[] = {
        {&TConfigForm::buildOperationTab, tr("更名操作")},
        {&TConfigForm::buildNumberingTab, tr("重名编号")},
        {&TConfigForm::buildGeneralTab, tr("常规")},
        {&TConfigForm::buildMetaVariableTab, tr("元变量")},
    };
    for (const auto& [build, title] : pages) {
        m_buildingTab = m_tabs->count();
        m_tabs->addTab((this->*build)(), title);
    }

    auto* defaults = new QPushButton(tr("当前页默认值(&D)"), this);
    defaults->setObjectName(QStringLiteral("ButtonDefaults"));
    defaults->setAutoDefault(false);
    auto* ok = new QPushButton(tr("确定"), this);
    ok->setObjectName(QStringLiteral("ButtonOK"));
    ok->setDefault(true);
    auto* cancel = new QPushButton(tr("取消"), this);
    cancel->setObjectName(QStringLiteral("ButtonCancel"));
    cancel->setAutoDefault(false);
    connect(defaults, &QPushButton::clicked, this, &TConfigForm::resetCurrentTab);
    connect(ok, &QPushButton::clicked, this, &TConfigForm::accept);
    connect(cancel, &QPushButton::clicked, this, &TConfigForm::reject);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(defaults);
    buttons->addStretch(1);
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs, 1);
    layout->addLayout(buttons);

    load();
    resize(760, 600);
}

TConfigForm::~TConfigForm() = default;

template <typename Widget>
Widget* TConfigForm::bind(Widget* widget, const QString& section, const QString& key, const QVariant& defaultValue,
                          bool affectsNames)
{
    widget->setObjectName(key);
    m_options.push_back(Option{widget, section, key, defaultValue, m_buildingTab, affectsNames, {}});
    return widget;
}

QWidget* TConfigForm::buildOperationTab()
{
    using namespace keys;
    auto* page = new QWidget(this);

    auto* preview = new QGroupBox(tr("自动预览"), page);
    auto* previewLayout = new QVBoxLayout(preview);
    previewLayout->addWidget(bind(new QCheckBox(tr("自动预览：命令有变化时立即执行命令列表"), preview), kOperation,
                                  kAutoPreview, true, true));
    auto* first = bind(new QCheckBox(tr("只预览前"), preview), kOperation, kAutoPreviewBefore, false, true);
    auto* count = bind(spinBox(0, kMostPreviewRows, preview), kOperation, kAutoPreviewNum, 10, true);
    previewLayout->addLayout(row({first, count, new QLabel(tr("个对象（其余对象在预览和更名时处理）"), preview)}));

    auto* apply = new QGroupBox(tr("应用更名"), page);
    auto* applyLayout = new QVBoxLayout(apply);
    applyLayout->addWidget(
        bind(new QCheckBox(tr("应用更名和撤销更名前先确认"), apply), kOperation, kApplyConfirm, true));
    applyLayout->addWidget(bind(new QCheckBox(tr("更名完毕后显示“批量更名完成”对话框"), apply), kOperation,
                                kApplyConfirmDlgShow, true));
    applyLayout->addWidget(bind(new QCheckBox(tr("出现更名冲突时不再警告，直接启用智能更名"), apply), kInterface,
                                kIgnoreSmartRenameWarning, false));
    auto* after = bind(choices({{tr("清空命令列表"), 1}, {tr("保留命令列表，对更名后的文件重新执行"), 0}}, apply),
                       kOperation, kAfterApplyClearCmd, true);
    applyLayout->addLayout(row({new QLabel(tr("更名完成后："), apply), after}));
    // Windows always holds names to its rules; elsewhere they are a choice, for names that
    // must also work on Windows (shared drives, archives).
    const QString safeText = tr("新文件名遵守 Windows 的命名规则");
    auto* safe = platform::windowsNamesAlways()
                     ? new QCheckBox(safeText, apply)
                     : bind(new QCheckBox(safeText, apply), kOperation, kWindowsSafeNames, false, true);
    if (platform::windowsNamesAlways()) {
        safe->setChecked(true);
        safe->setEnabled(false);
    }
    safe->setObjectName(QStringLiteral("CheckBoxWindowsSafeNames"));
    safe->setToolTip(tr("预览时删除 \\ / : * ? < > | 和控制字符以及末尾的点和空格，并为 CON、NUL、COM1 等设备名编号。"
                        "Windows 下始终如此；Linux 下不选时只删除“/”。"));
    applyLayout->addWidget(safe);
    auto* simple = bind(spinBox(0, kNumberLimit, apply), kOperation, kRenameSelectCount, 10000);
    applyLayout->addLayout(
        row({new QLabel(tr("对象数达到"), apply), simple, new QLabel(tr("个时，询问是否选择简单更名"), apply)}));

    auto* special = new QGroupBox(tr("特殊对象的处理方式"), page);
    auto* specialLayout = new QFormLayout(special);
    const auto attributeRow = [&](const QString& label, const QString& renameKey, const QString& notAskKey) {
        auto* choice = bind(choices({{tr("跳过"), 0}, {tr("强制进行更名操作"), 1}}, special), kOperation, renameKey, 1);
        m_options.back().normalise = [](qint64 stored) { return stored != 0 ? 1 : 0; };
        auto* notAsk = bind(new QCheckBox(tr("不再询问"), special), kOperation, notAskKey, false);
        specialLayout->addRow(label, row({choice, notAsk}));
    };
    attributeRow(tr("只读属性的对象："), kAttribRRename, kAttribRNotAsk);
    attributeRow(tr("系统属性的对象："), kAttribSRename, kAttribSNotAsk);
    auto* cut = bind(choices({{tr("跳过"), int(Shortening::Skip)},
                              {tr("从后向前删除文件名至符合系统规定长度后更名"), int(Shortening::FromEnd)},
                              {tr("从前向后删除文件名至符合系统规定长度后更名"), int(Shortening::FromStart)},
                              {tr("操作系统处理方式（含扩展名直接从尾部删除多余字符）"), int(Shortening::SystemWay)}},
                             special),
                     kOperation, kTooLongCut, int(Shortening::FromEnd));
    // Apply skips an object for any stored number that is not one of the three ways.
    m_options.back().normalise = [](qint64 stored) { return stored >= 1 && stored <= 3 ? int(stored) : 0; };
    auto* cutNotAsk = bind(new QCheckBox(tr("不再询问"), special), kOperation, kTooLongNotAsk, false);
    specialLayout->addRow(tr("文件名过长的对象："), row({cut, cutNotAsk}));

    auto* show = new QGroupBox(tr("显示"), page);
    auto* showLayout = new QVBoxLayout(show);
    showLayout->addWidget(bind(new QCheckBox(tr("以 KB、MB、GB 显示文件大小"), show), kOperation, kFileSizeFriendly, false));

    auto* layout = new QVBoxLayout(page);
    for (QWidget* group : {static_cast<QWidget*>(preview), static_cast<QWidget*>(apply), static_cast<QWidget*>(special),
                           static_cast<QWidget*>(show)})
        layout->addWidget(group);
    layout->addStretch(1);
    return page;
}

QWidget* TConfigForm::buildNumberingTab()
{
    using namespace keys;
    const DuplicateNumbering defaults;
    auto* page = new QWidget(this);

    auto* empty = new QGroupBox(tr("新文件名为空时"), page);
    auto* emptyLayout = new QFormLayout(empty);
    emptyLayout->addRow(tr("使用的文件名："),
                        bind(new QLineEdit(empty), kOperation, kFileNameNullSet, QStringLiteral("(null)")));

    auto* same = new QGroupBox(tr("新文件名与已有对象重名时，在文件名后添加编号"), page);
    auto* sameLayout = new QFormLayout(same);
    auto* kind = bind(choices({{tr("数字（0-9）"), DuplicateNumbering::Digits},
                               {tr("小写字母（a-z）"), DuplicateNumbering::LowerLetters},
                               {tr("大写字母（A-Z）"), DuplicateNumbering::UpperLetters}},
                              same),
                      kOperation, kFileNameSameCharKind, defaults.kind);
    auto* start = bind(spinBox(-kNumberLimit, kNumberLimit, same), kOperation, kFileNameSameStart, int(defaults.start));
    auto* step =
        bind(spinBox(-kNumberLimit, kNumberLimit, same), kOperation, kFileNameSameIncrease, int(defaults.increase));
    auto* width = bind(spinBox(0, 255, same), kOperation, kFileNameSameDigitCapacity, defaults.width);
    auto* left = bind(new QLineEdit(same), kOperation, kFileNameSameLeftStr, defaults.left);
    auto* right = bind(new QLineEdit(same), kOperation, kFileNameSameRightStr, defaults.right);
    sameLayout->addRow(tr("编号字符："), row({kind}));
    sameLayout->addRow(tr("起始编号："), row({start}));
    sameLayout->addRow(tr("编号增量："), row({step}));
    sameLayout->addRow(tr("最少位数："), row({width, new QLabel(tr("（不足时左边补“0”“a”或“A”）"), same)}));
    sameLayout->addRow(tr("编号前的文字："), row({left}));
    sameLayout->addRow(tr("编号后的文字："), row({right}));
    m_numberingExample = new QLabel(same);
    m_numberingExample->setObjectName(QStringLiteral("LabelNumberingExample"));
    sameLayout->addRow(tr("示例："), m_numberingExample);

    connect(kind, &QComboBox::currentIndexChanged, this, &TConfigForm::showNumberingExample);
    for (QSpinBox* spin : {start, step, width})
        connect(spin, &QSpinBox::valueChanged, this, &TConfigForm::showNumberingExample);
    for (QLineEdit* edit : {left, right})
        connect(edit, &QLineEdit::textChanged, this, &TConfigForm::showNumberingExample);

    auto* layout = new QVBoxLayout(page);
    layout->addWidget(empty);
    layout->addWidget(same);
    layout->addStretch(1);
    return page;
}

QWidget* TConfigForm::buildGeneralTab()
{
    using namespace keys;
    auto* page = new QWidget(this);

    auto* ignore = new QGroupBox(tr("忽略插入特殊元变量时的提示（不建议选中）："), page);
    auto* ignoreLayout = new QVBoxLayout(ignore);
    ignoreLayout->addWidget(
        bind(new QCheckBox(tr("文件校验系列元变量"), ignore), kInterface, kIgnoreHashWarning, false));
    ignoreLayout->addWidget(
        bind(new QCheckBox(tr("需遍历文件的系列元变量"), ignore), kInterface, kIgnoreFolderWarning, false));

    auto* window = new QGroupBox(tr("界面"), page);
    auto* windowLayout = new QVBoxLayout(window);
    windowLayout->addWidget(bind(new QCheckBox(tr("显示实际图标"), window), kInterface, kShowTrueIcon, false));
    auto* history = bind(spinBox(1, kMostHistoryEntries, window), kOperation, kHistorySize, kDefaultHistorySize);
    windowLayout->addLayout(row({new QLabel(tr("下拉框保存的历史记录数："), window), history}));

    // The language of the window; the program reads it when it starts.
    auto* language = new QComboBox(window);
    language->addItem(tr("跟随系统"), QString());
    language->addItem(QStringLiteral("中文"), QStringLiteral("zh_CN"));
    language->addItem(QStringLiteral("English"), QStringLiteral("en"));
    bind(language, kInterface, QStringLiteral("Language"), QString());
    windowLayout->addLayout(row({new QLabel(tr("界面语言："), window), language, new QLabel(tr("（重新启动后生效）"), window)}));
    // Pascal and Python scripts (the commands A12 and A13).
    auto* scripts = new QGroupBox(tr("脚本"), page);
    auto* scriptLayout = new QVBoxLayout(scripts);
    auto* python = bind(new QLineEdit(scripts), kScriptConfig, kPythonExe, QString());
    python->setPlaceholderText(tr("留空则使用 python3（Windows：py -3 或 python）"));
    scriptLayout->addLayout(row({new QLabel(tr("Python 程序："), scripts), python}));
    auto* limit = bind(spinBox(1, 3600, scripts), kScriptConfig, kScriptTimeLimit, kDefaultScriptTimeLimit, true);
    scriptLayout->addLayout(row({new QLabel(tr("脚本运行时间上限（秒）："), scripts), limit}));
    // How the text of old music tags and photo data is decoded when it does not say.
    auto* tags = new QGroupBox(tr("文件信息"), page);
    auto* tagsLayout = new QVBoxLayout(tags);
    auto* legacy = bind(choices({{tr("自动（选常用汉字最多的解码）"), 0}, {QStringLiteral("GBK"), 1}, {QStringLiteral("Big5"), 2},
                                 {QStringLiteral("Shift_JIS"), 3}, {QStringLiteral("Latin-1"), 4}},
                                tags),
                        kOperation, kLegacyTagEncoding, 0, true);
    tagsLayout->addLayout(row({new QLabel(tr("非 Unicode 标签编码："), tags), legacy}));

    auto* layout = new QVBoxLayout(page);
    layout->addWidget(ignore);
    layout->addWidget(window);
    layout->addWidget(scripts);
    layout->addWidget(tags);
    layout->addStretch(1);
    return page;
}

QWidget* TConfigForm::buildMetaVariableTab()
{
    auto* page = new QWidget(this);
    const auto& catalogue = metaVariableCatalogue();

    auto* gridBox = new QGroupBox(tr("元变量名称及参数设置"), page);
    m_metaGrid = new QTableWidget(int(catalogue.size()), 3, gridBox);
    m_metaGrid->setObjectName(QStringLiteral("NextGridUnitVariable"));
    m_metaGrid->setHorizontalHeaderLabels({tr("名称"), tr("值"), tr("描述")});
    m_metaGrid->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_metaGrid->setSelectionMode(QAbstractItemView::SingleSelection);
    m_metaGrid->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked
                                | QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
    m_metaGrid->setAlternatingRowColors(true);
    m_metaGrid->setWordWrap(false);
    m_metaGrid->verticalHeader()->hide();
    m_metaGrid->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_metaGrid->verticalHeader()->setDefaultSectionSize(m_metaGrid->fontMetrics().height() + 6);
    m_metaGrid->horizontalHeader()->setHighlightSections(false);
    m_metaGrid->horizontalHeader()->setSectionResizeMode(ColDescription, QHeaderView::Stretch);
    int nameWidth = 0;
    for (const MetaVariableInfo& info : catalogue)
        nameWidth = std::max(nameWidth, m_metaGrid->fontMetrics().horizontalAdvance(info.tag));
    m_metaGrid->setColumnWidth(ColName, nameWidth + 24);
    m_metaGrid->setColumnWidth(ColValue, m_metaGrid->fontMetrics().horizontalAdvance(QStringLiteral("<FCY>-<FCM>-<FCD>")) + 24);
    for (int r = 0; r < int(catalogue.size()); ++r) {
        const MetaVariableInfo& info = catalogue[size_t(r)];
        auto* name = new QTableWidgetItem(info.tag);
        name->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        auto* value = new QTableWidgetItem;
        // Tags without a parameter have nothing to edit.
        value->setFlags(info.hasParameter() ? Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsEditable
                                            : Qt::ItemIsSelectable);
        auto* description = new QTableWidgetItem(info.description);
        description->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        description->setToolTip(info.description);
        m_metaGrid->setItem(r, ColName, name);
        m_metaGrid->setItem(r, ColValue, value);
        m_metaGrid->setItem(r, ColDescription, description);
    }
    auto* gridLayout = new QVBoxLayout(gridBox);
    gridLayout->addWidget(m_metaGrid);

    auto* helpBox = new QGroupBox(tr("元变量描述及参数说明"), page);
    m_help = new QPlainTextEdit(helpBox);
    m_help->setObjectName(QStringLiteral("MemoUnitVariableHelp"));
    m_help->setReadOnly(true);
    m_help->setFixedHeight(m_help->fontMetrics().lineSpacing() * 10 + 12);
    auto* helpLayout = new QVBoxLayout(helpBox);
    helpLayout->addWidget(m_help);
    connect(m_metaGrid, &QTableWidget::currentCellChanged, this, &TConfigForm::showHelp);

    auto* layout = new QVBoxLayout(page);
    layout->addWidget(gridBox, 1);
    layout->addWidget(helpBox);
    return page;
}

void TConfigForm::load()
{
    for (const Option& option : m_options)
        option.show(option.stored(m_settings));
    const auto& catalogue = metaVariableCatalogue();
    m_loadedParameters.clear();
    for (int r = 0; r < int(catalogue.size()); ++r) {
        const QString parameter = metaVariableParameter(m_settings, catalogue[size_t(r)]);
        m_loadedParameters.append(parameter);
        m_metaGrid->item(r, ColValue)->setText(parameter);
    }
    m_metaGrid->setCurrentCell(0, ColValue);
    showHelp();
    showNumberingExample();
}

void TConfigForm::accept()
{
    m_newNamesAffected = false;
    for (const Option& option : m_options) {
        const QVariant value = option.shown();
        if (option.affectsNames && value != option.stored(m_settings))
            m_newNamesAffected = true;
        option.write(m_settings, value);
    }
    // Parameters are written only where the user changed them, so the file does not fill
    // up with every tag's default.
    const auto& catalogue = metaVariableCatalogue();
    for (int r = 0; r < int(catalogue.size()); ++r) {
        const QString value = m_metaGrid->item(r, ColValue)->text();
        if (catalogue[size_t(r)].hasParameter() && value != m_loadedParameters[r]) {
            setMetaVariableParameter(m_settings, catalogue[size_t(r)], value);
            m_newNamesAffected = true;
        }
    }
    QDialog::accept();
}

void TConfigForm::resetCurrentTab()
{
    const int tab = m_tabs->currentIndex();
    for (const Option& option : m_options) {
        if (option.tab == tab)
            option.show(option.defaultValue);
    }
    if (tab == TabMetaVariables) {
        const auto& catalogue = metaVariableCatalogue();
        for (int r = 0; r < int(catalogue.size()); ++r)
            m_metaGrid->item(r, ColValue)->setText(catalogue[size_t(r)].defaultParameter);
        showHelp();
    }
}

void TConfigForm::showHelp()
{
    const int r = m_metaGrid->currentRow();
    const auto& catalogue = metaVariableCatalogue();
    m_help->setPlainText(r >= 0 && r < int(catalogue.size()) ? catalogue[size_t(r)].help : QString());
}

void TConfigForm::showNumberingExample()
{
    DuplicateNumbering numbering;
    const auto valueOf = [this](const QString& key) {
        for (const Option& option : m_options) {
            if (option.key == key)
                return option.shown();
        }
        return QVariant();
    };
    numbering.kind = valueOf(keys::kFileNameSameCharKind).toInt();
    numbering.start = valueOf(keys::kFileNameSameStart).toLongLong();
    numbering.increase = valueOf(keys::kFileNameSameIncrease).toLongLong();
    numbering.width = valueOf(keys::kFileNameSameDigitCapacity).toInt();
    numbering.left = valueOf(keys::kFileNameSameLeftStr).toString();
    numbering.right = valueOf(keys::kFileNameSameRightStr).toString();
    QStringList names;
    for (qint64 k = 0; k < 3; ++k)
        names.append(tr("照片") + numbering.left + numbering.numberText(numbering.start + k * numbering.increase)
                      + numbering.right + QStringLiteral(".jpg"));
    m_numberingExample->setText(tr("第二个“照片.jpg”起依次为 %1 …").arg(names.join(tr("、"))));
}

}  // namespace qp::ui
