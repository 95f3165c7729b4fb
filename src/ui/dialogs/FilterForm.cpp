#include "ui/dialogs/FilterForm.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QVBoxLayout>

#include "core/Session.h"

namespace qp::ui {

namespace {

// The edits pause this long before the matching rows are counted again.
constexpr int kCountDelayMs = 200;
constexpr int kLargestSize = 999999999;

QComboBox* choices(const QStringList& texts, QWidget* parent)
{
    auto* box = new QComboBox(parent);
    box->addItems(texts);
    return box;
}

QHBoxLayout* row(std::initializer_list<QWidget*> widgets)
{
    auto* layout = new QHBoxLayout;
    for (QWidget* widget : widgets)
        layout->addWidget(widget);
    layout->addStretch(1);
    return layout;
}

// Bytes per unit of the size boxes: bytes, KB, MB, GB.
std::uint64_t unitBytes(int unit) { return std::uint64_t(1) << (10 * unit); }

}  // namespace

TFilterForm::TFilterForm(Session& session, QWidget* parent)
    : QDialog(parent)
    , m_session(session)
{
    setObjectName(QStringLiteral("TFilterForm"));
    setWindowTitle(tr("筛选"));

    m_keep = new QRadioButton(tr("保留符合条件的对象，移除其余对象"), this);
    m_keep->setChecked(true);
    m_remove = new QRadioButton(tr("移除符合条件的对象"), this);
    m_count = new QLabel(this);
    m_count->setObjectName(QStringLiteral("LabelMatchCount"));

    auto* run = new QPushButton(tr("筛选"), this);
    run->setObjectName(QStringLiteral("ButtonOK"));
    run->setDefault(true);
    auto* cancel = new QPushButton(tr("取消"), this);
    cancel->setObjectName(QStringLiteral("ButtonCancel"));
    connect(run, &QPushButton::clicked, this, &TFilterForm::accept);
    connect(cancel, &QPushButton::clicked, this, &TFilterForm::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(buildSetsRow());
    layout->addWidget(buildPatternGroup());
    layout->addWidget(buildKindGroup());
    layout->addWidget(buildRangeGroup());
    layout->addWidget(m_keep);
    layout->addWidget(m_remove);
    layout->addWidget(m_count);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(run);
    buttons->addWidget(cancel);
    layout->addLayout(buttons);

    m_countTimer.setSingleShot(true);
    m_countTimer.setInterval(kCountDelayMs);
    connect(&m_countTimer, &QTimer::timeout, this, &TFilterForm::countNow);
    watchChanges();
    countNow();
}

QWidget* TFilterForm::buildSetsRow()
{
    auto* box = new QWidget(this);
    m_sets = new QComboBox(box);
    m_sets->setObjectName(QStringLiteral("ComboBoxFilterSets"));
    m_sets->setEditable(true);
    m_sets->setMinimumContentsLength(16);
    m_sets->lineEdit()->setPlaceholderText(tr("方案名称"));
    auto* save = new QPushButton(tr("保存方案"), box);
    save->setObjectName(QStringLiteral("ButtonSaveSet"));
    save->setAutoDefault(false);
    auto* remove = new QPushButton(tr("删除方案"), box);
    remove->setObjectName(QStringLiteral("ButtonRemoveSet"));
    remove->setAutoDefault(false);
    connect(save, &QPushButton::clicked, this, &TFilterForm::saveSet);
    connect(remove, &QPushButton::clicked, this, &TFilterForm::removeSet);
    connect(m_sets, &QComboBox::textActivated, this, &TFilterForm::loadSet);
    auto* layout = new QHBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new QLabel(tr("筛选方案："), box));
    layout->addWidget(m_sets, 1);
    layout->addWidget(save);
    layout->addWidget(remove);
    fillSets(QString());
    return box;
}

QWidget* TFilterForm::buildPatternGroup()
{
    auto* group = new QGroupBox(tr("名称"), this);
    m_pattern = new QLineEdit(group);
    m_pattern->setObjectName(QStringLiteral("EditPattern"));
    m_pattern->setPlaceholderText(tr("例如 *.jpg|*.png；留空表示不按名称筛选"));
    m_syntax = choices({tr("通配符（* ?，多个用 | 分隔）"), tr("正则表达式")}, group);
    m_syntax->setObjectName(QStringLiteral("ComboBoxSyntax"));
    m_subject = choices({tr("文件名"), tr("文件名和扩展名"), tr("完整路径")}, group);
    m_subject->setObjectName(QStringLiteral("ComboBoxSubject"));
    m_subject->setCurrentIndex(int(RowFilterSpec::Subject::NameWithExtension));
    m_caseSensitive = new QCheckBox(tr("区分大小写"), group);
    auto* layout = new QFormLayout(group);
    layout->addRow(tr("匹配："), m_pattern);
    layout->addRow(tr("方式："), row({m_syntax, m_caseSensitive}));
    layout->addRow(tr("对象的："), row({m_subject}));
    return group;
}

QWidget* TFilterForm::buildKindGroup()
{
    auto* group = new QGroupBox(tr("对象"), this);
    m_files = new QCheckBox(tr("文件"), group);
    m_folders = new QCheckBox(tr("文件夹"), group);
    m_hidden = new QCheckBox(tr("隐藏对象"), group);
    m_system = new QCheckBox(tr("系统对象"), group);
    for (QCheckBox* box : {m_files, m_folders, m_hidden, m_system})
        box->setChecked(true);
    const QStringList flags{tr("不限"), tr("是"), tr("否")};
    m_readOnly = choices(flags, group);
    m_readOnly->setObjectName(QStringLiteral("ComboBoxReadOnly"));
    m_archive = choices(flags, group);
    m_archive->setObjectName(QStringLiteral("ComboBoxArchive"));
    auto* layout = new QVBoxLayout(group);
    layout->addLayout(row({m_files, m_folders, m_hidden, m_system}));
    layout->addLayout(row({new QLabel(tr("只读属性："), group), m_readOnly, new QLabel(tr("存档属性："), group), m_archive}));
    return group;
}

QWidget* TFilterForm::buildRangeGroup()
{
    auto* group = new QGroupBox(tr("大小和日期"), this);
    m_useSize = new QCheckBox(tr("文件大小介于"), group);
    m_minSize = new QSpinBox(group);
    m_maxSize = new QSpinBox(group);
    for (QSpinBox* spin : {m_minSize, m_maxSize})
        spin->setRange(0, kLargestSize);
    m_maxSize->setValue(1024);
    m_sizeUnit = choices({tr("字节"), QStringLiteral("KB"), QStringLiteral("MB"), QStringLiteral("GB")}, group);
    m_sizeUnit->setCurrentIndex(1);
    m_useDate = new QCheckBox(tr("修改日期介于"), group);
    m_from = new QDateEdit(QDate::currentDate().addMonths(-1), group);
    m_to = new QDateEdit(QDate::currentDate(), group);
    for (QDateEdit* date : {m_from, m_to}) {
        date->setCalendarPopup(true);
        date->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    }
    auto* layout = new QVBoxLayout(group);
    layout->addLayout(row({m_useSize, m_minSize, new QLabel(tr("和"), group), m_maxSize, m_sizeUnit}));
    layout->addLayout(row({m_useDate, m_from, new QLabel(tr("和"), group), m_to}));
    layout->addWidget(new QLabel(tr("（两端都包括在内；文件夹没有大小，不受大小限制）"), group));
    return group;
}

void TFilterForm::watchChanges()
{
    auto later = [this] { m_countTimer.start(); };
    connect(m_pattern, &QLineEdit::textChanged, this, later);
    for (QComboBox* box : {m_syntax, m_subject, m_readOnly, m_archive, m_sizeUnit})
        connect(box, &QComboBox::currentIndexChanged, this, later);
    for (QCheckBox* box : {m_caseSensitive, m_files, m_folders, m_hidden, m_system, m_useSize, m_useDate})
        connect(box, &QCheckBox::toggled, this, later);
    for (QSpinBox* spin : {m_minSize, m_maxSize})
        connect(spin, &QSpinBox::valueChanged, this, later);
    for (QDateEdit* date : {m_from, m_to})
        connect(date, &QDateEdit::dateChanged, this, later);
    connect(m_keep, &QRadioButton::toggled, this, later);
}

RowFilterSpec TFilterForm::spec() const
{
    using Spec = RowFilterSpec;
    Spec spec;
    spec.pattern = m_pattern->text();
    spec.syntax = Spec::Syntax(m_syntax->currentIndex());
    spec.subject = Spec::Subject(m_subject->currentIndex());
    spec.caseSensitive = m_caseSensitive->isChecked();
    spec.files = m_files->isChecked();
    spec.folders = m_folders->isChecked();
    spec.hidden = m_hidden->isChecked();
    spec.system = m_system->isChecked();
    if (m_useSize->isChecked()) {
        const std::uint64_t unit = unitBytes(m_sizeUnit->currentIndex());
        spec.minSize = std::uint64_t(m_minSize->value()) * unit;
        // The upper end takes in the whole last unit: "1 KB" includes 1,500 bytes.
        spec.maxSize = (std::uint64_t(m_maxSize->value()) + 1) * unit - 1;
    }
    if (m_useDate->isChecked()) {
        spec.from = m_from->date();
        spec.to = m_to->date();
    }
    spec.readOnly = Spec::Flag(m_readOnly->currentIndex());
    spec.archive = Spec::Flag(m_archive->currentIndex());
    spec.action = m_keep->isChecked() ? Spec::Action::Keep : Spec::Action::Remove;
    return spec;
}

void TFilterForm::setSpec(const RowFilterSpec& spec)
{
    m_pattern->setText(spec.pattern);
    m_syntax->setCurrentIndex(int(spec.syntax));
    m_subject->setCurrentIndex(int(spec.subject));
    m_caseSensitive->setChecked(spec.caseSensitive);
    m_files->setChecked(spec.files);
    m_folders->setChecked(spec.folders);
    m_hidden->setChecked(spec.hidden);
    m_system->setChecked(spec.system);
    m_useSize->setChecked(spec.minSize || spec.maxSize);
    if (spec.minSize || spec.maxSize) {
        // The largest unit in which both ends are whole numbers; the upper end is shown as
        // the last unit it takes in whole.
        const std::uint64_t low = spec.minSize.value_or(0);
        const std::optional<std::uint64_t> pastHigh =
            spec.maxSize ? std::optional<std::uint64_t>(*spec.maxSize + 1) : std::nullopt;
        int unit = 3;
        while (unit > 0 && (low % unitBytes(unit) != 0 || (pastHigh && *pastHigh % unitBytes(unit) != 0)))
            --unit;
        m_sizeUnit->setCurrentIndex(unit);
        m_minSize->setValue(int(std::min<std::uint64_t>(low / unitBytes(unit), kLargestSize)));
        m_maxSize->setValue(
            pastHigh ? int(std::min<std::uint64_t>(*pastHigh / unitBytes(unit) - 1, kLargestSize)) : kLargestSize);
    }
    m_useDate->setChecked(spec.from || spec.to);
    if (spec.from)
        m_from->setDate(*spec.from);
    if (spec.to)
        m_to->setDate(*spec.to);
    m_readOnly->setCurrentIndex(int(spec.readOnly));
    m_archive->setCurrentIndex(int(spec.archive));
    (spec.action == RowFilterSpec::Action::Keep ? m_keep : m_remove)->setChecked(true);
    countNow();
}

void TFilterForm::countNow()
{
    m_countTimer.stop();
    auto compiled = RowFilter::compile(spec());
    if (auto* problem = std::get_if<QString>(&compiled)) {
        m_count->setStyleSheet(QStringLiteral("color: #c00000"));
        m_count->setText(*problem);
        return;
    }
    const RowFilter& filter = std::get<RowFilter>(compiled);
    qsizetype matching = 0;
    for (const FileEntry& row : m_session.renameList().rows())
        matching += filter.matches(row) ? 1 : 0;
    m_count->setStyleSheet(QString());
    m_count->setText(tr("符合条件的对象：%1 个（共 %2 个）").arg(matching).arg(m_session.renameList().size()));
}

void TFilterForm::fillSets(const QString& current)
{
    const QSignalBlocker blocker(m_sets);
    m_sets->clear();
    m_sets->addItems(filtersets::names(m_session.settings()));
    m_sets->setCurrentText(current);
}

void TFilterForm::loadSet(const QString& name)
{
    if (const std::optional<RowFilterSpec> stored = filtersets::read(m_session.settings(), name))
        setSpec(*stored);
}

bool TFilterForm::saveSet()
{
    const QString name = m_sets->currentText().trimmed();
    const QString problem = filtersets::write(m_session.settings(), name, spec());
    if (!problem.isEmpty()) {
        m_count->setStyleSheet(QStringLiteral("color: #c00000"));
        m_count->setText(problem);
        return false;
    }
    m_session.saveSettings();
    fillSets(name);
    return true;
}

void TFilterForm::removeSet()
{
    const QString name = m_sets->currentText().trimmed();
    filtersets::remove(m_session.settings(), name);
    m_session.saveSettings();
    fillSets(QString());
}

void TFilterForm::accept()
{
    // A spec the filter cannot use keeps the form open with the reason shown.
    countNow();
    if (std::holds_alternative<QString>(RowFilter::compile(spec())))
        return;
    QDialog::accept();
}

}  // namespace qp::ui
