#include "ui/dialogs/ApplyForms.h"

#include <QAbstractTableModel>
#include <QCoreApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QFileIconProvider>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QVBoxLayout>

#include "core/PathText.h"
#include "core/RenameList.h"

namespace qp::ui {

namespace {

QLabel* wrappedLabel(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    label->setWordWrap(true);
    return label;
}

QLineEdit* readOnlyField(const QString& text, QWidget* parent)
{
    auto* field = new QLineEdit(text, parent);
    field->setReadOnly(true);
    field->setCursorPosition(0);
    return field;
}

// The rows in conflict as the warning lists them, read from the rename list.
class ConflictRowsModel : public QAbstractTableModel {
public:
    ConflictRowsModel(const RenameList& list, const std::vector<qsizetype>& rows, QObject* parent)
        : QAbstractTableModel(parent)
        , m_list(list)
        , m_rows(rows)
    {
        QFileIconProvider icons;
        m_file = icons.icon(QAbstractFileIconProvider::File);
        m_folder = icons.icon(QAbstractFileIconProvider::Folder);
    }

    int rowCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : int(m_rows.size()); }
    int columnCount(const QModelIndex& parent) const override { return parent.isValid() ? 0 : 5; }

    QVariant data(const QModelIndex& index, int role) const override
    {
        const qsizetype r = m_rows[size_t(index.row())];
        if (r < 0 || r >= m_list.size())
            return {};
        const FileEntry& row = m_list.at(r);
        if (role == Qt::DecorationRole && index.column() == 1)
            return row.isFolder ? m_folder : m_file;
        if (role != Qt::DisplayRole)
            return {};
        switch (index.column()) {
        case 0:
            return qlonglong(r + 1);  // the row's place in the rename list
        case 2:
            return row.fileName();
        case 3:
            return row.newFileName();
        case 4:
            return nativeSeparators(row.path);
        default:
            return {};
        }
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        static const char* const captions[] = {
            QT_TRANSLATE_NOOP("TRenameWarningForm", "序号"), QT_TRANSLATE_NOOP("TRenameWarningForm", "图标"),
            QT_TRANSLATE_NOOP("TRenameWarningForm", "实际文件名"),
            QT_TRANSLATE_NOOP("TRenameWarningForm", "新文件名"), QT_TRANSLATE_NOOP("TRenameWarningForm", "路径")};
        if (orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 && section < 5)
            return QCoreApplication::translate("TRenameWarningForm", captions[section]);
        return QAbstractTableModel::headerData(section, orientation, role);
    }

private:
    const RenameList& m_list;
    const std::vector<qsizetype> m_rows;
    QIcon m_file;
    QIcon m_folder;
};

QRadioButton* addChoice(QButtonGroup* group, QVBoxLayout* layout, const QString& text, int id)
{
    auto* button = new QRadioButton(text, layout->parentWidget());
    group->addButton(button, id);
    layout->addWidget(button);
    return button;
}

}  // namespace

// ---------------------------------------------------------------------------------------

TSimpleRenameSelectForm::TSimpleRenameSelectForm(qsizetype rows, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("TSimpleRenameSelectForm"));
    setWindowTitle(tr("批量更名方式选择"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(wrappedLabel(
        tr("更名文件列表中共有 %1 个对象。智能更名会检查和修正每个新文件名，对象很多时需要较长时间；"
           "简单更名省去这些检查，速度更快。与智能更名相比，简单更名：")
            .arg(rows),
        this));
    layout->addWidget(wrappedLabel(tr("1. 不过滤文件名中的非法字符；\n"
                                      "2. 不处理空文件名；\n"
                                      "3. 不为同一文件夹中重名的对象编号；\n"
                                      "4. 不删除文件名末尾的空格和点；\n"
                                      "5. 不调整新文件名是其它对象旧文件名时的更名顺序；\n"
                                      "6. 不处理更名死循环（例如两个对象互换名称）。"),
                                   this));
    layout->addWidget(wrappedLabel(tr("请确认新文件名没有以上问题后再选择简单更名。"), this));

    auto* simple = new QPushButton(tr("选择简单更名继续(&C)"), this);
    simple->setObjectName(QStringLiteral("simple"));
    auto* smart = new QPushButton(tr("选择智能更名继续(&S)"), this);
    smart->setObjectName(QStringLiteral("smart"));
    auto* stop = new QPushButton(tr("先不更名了，我再考虑一下(&C)"), this);
    stop->setObjectName(QStringLiteral("stop"));
    smart->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(simple);
    buttons->addWidget(smart);
    buttons->addWidget(stop);
    layout->addLayout(buttons);
    connect(simple, &QPushButton::clicked, this, [this] {
        m_mode = ApplyMode::Simple;
        accept();
    });
    connect(smart, &QPushButton::clicked, this, [this] {
        m_mode = ApplyMode::Smart;
        accept();
    });
    connect(stop, &QPushButton::clicked, this, &QDialog::reject);
}

// ---------------------------------------------------------------------------------------

TRenameWarningForm::TRenameWarningForm(const RenameList& list, const PreviewResult& preview, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("TRenameWarningForm"));
    setWindowTitle(tr("更名冲突警告"));
    resize(720, 420);
    const QString count = QString::number(preview.conflictRows.size());
    const QString headline =
        preview.foundExistAndExchange
            ? tr("即将更名的新文件名中有 %1 个现实中已经存在，更名出现冲突，且已经发现更名死循环问题。").arg(count)
            : tr("即将更名的新文件名中有 %1 个现实中已经存在，更名出现冲突，但未发现更名死循环问题。").arg(count);
    auto* layout = new QVBoxLayout(this);
    auto* title = wrappedLabel(headline, this);
    title->setStyleSheet(QStringLiteral("font-weight: bold; color: #b00000;"));
    layout->addWidget(title);
    layout->addWidget(wrappedLabel(
        tr("下表中对象的新文件名正是列表中其它待更名对象的当前文件名。智能更名会先更名占用这些名称的对象；"
           "存在更名死循环（例如两个对象互换名称）时，先将所有对象更名为临时名称，再更名为新文件名。"),
        this));

    auto* table = new QTableView(this);
    table->setObjectName(QStringLiteral("conflicts"));
    table->setModel(new ConflictRowsModel(list, preview.conflictRows, table));
    table->verticalHeader()->hide();
    table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->horizontalHeader()->setStretchLastSection(true);
    table->setColumnWidth(0, 60);
    table->setColumnWidth(1, 40);
    table->setColumnWidth(2, 180);
    table->setColumnWidth(3, 180);
    layout->addWidget(table, 1);

    m_dontShowAgain = new QCheckBox(tr("不再提示本对话框并直接启用智能更名继续操作"), this);
    layout->addWidget(m_dontShowAgain);
    auto* cancel = new QPushButton(tr("取消更名操作"), this);
    cancel->setObjectName(QStringLiteral("cancel"));
    auto* proceed = new QPushButton(tr("启用智能更名操作继续"), this);
    proceed->setObjectName(QStringLiteral("proceed"));
    proceed->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(proceed);
    buttons->addWidget(cancel);
    layout->addLayout(buttons);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(proceed, &QPushButton::clicked, this, [this] {
        m_proceed = true;
        accept();
    });
}

ConflictAnswer TRenameWarningForm::answer() const
{
    return ConflictAnswer{m_proceed, m_proceed && m_dontShowAgain->isChecked()};
}

// ---------------------------------------------------------------------------------------

TFileNameAttribWarningForm::TFileNameAttribWarningForm(bool system, const QString& path, int preselected,
                                                       QWidget* parent)
    : QDialog(parent)
{
    setObjectName(system ? QStringLiteral("TFileNameAttribSWarningForm") : QStringLiteral("TFileNameAttribRWarningForm"));
    setWindowTitle(tr("温馨提示"));
    setMinimumWidth(480);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(system ? tr("以下对象为系统属性：") : tr("以下对象为只读属性："), this));
    layout->addWidget(readOnlyField(nativeSeparators(path), this));
    m_choice = new QButtonGroup(this);
    addChoice(m_choice, layout, tr("跳过"), 0);
    addChoice(m_choice, layout, tr("强制进行更名操作"), 1);
    m_choice->button(preselected == 0 ? 0 : 1)->setChecked(true);
    m_dontAskAgain = new QCheckBox(tr("按以上设置进行更名操作而不再询问"), this);
    layout->addWidget(m_dontAskAgain);
    auto* go = new QPushButton(tr("继续(&C)"), this);
    go->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(go);
    layout->addLayout(buttons);
    connect(go, &QPushButton::clicked, this, &QDialog::accept);
}

ChoiceAnswer TFileNameAttribWarningForm::answer() const
{
    return ChoiceAnswer{m_choice->checkedId() == 0 ? 0 : 1, m_dontAskAgain->isChecked()};
}

// ---------------------------------------------------------------------------------------

TFileNameTooLongWarningForm::TFileNameTooLongWarningForm(const QString& path, const QString& proposed,
                                                         std::function<QString(int choice)> correctedFor,
                                                         int preselected, QWidget* parent)
    : QDialog(parent)
    , m_correctedFor(std::move(correctedFor))
{
    setObjectName(QStringLiteral("TFileNameTooLongWarningForm"));
    setWindowTitle(tr("温馨提示"));
    setMinimumWidth(560);
    auto* layout = new QVBoxLayout(this);
#ifdef _WIN32
    const QString rule = tr("以下文件名（含路径）的总长度大于系统规定：（系统规定含“:”“\\”字符最长为258字符）");
#else
    const QString rule =
        tr("以下文件名（含路径）的总长度大于系统规定：（系统规定文件名最长为255字节，含路径最长为4095字节，按 UTF-8 计）");
#endif
    layout->addWidget(wrappedLabel(rule, this));
    layout->addWidget(readOnlyField(nativeSeparators(path), this));
    auto* names = new QFormLayout;
    names->addRow(tr("新文件名："), readOnlyField(proposed, this));
    m_corrected = readOnlyField(QString(), this);
    m_corrected->setObjectName(QStringLiteral("corrected"));
    names->addRow(tr("修正后的新文件名："), m_corrected);
    layout->addLayout(names);

    m_choice = new QButtonGroup(this);
    addChoice(m_choice, layout, tr("跳过"), int(Shortening::Skip));
    addChoice(m_choice, layout, tr("从后向前删除文件名至符合系统规定长度后更名"), int(Shortening::FromEnd));
    addChoice(m_choice, layout, tr("从前向后删除文件名至符合系统规定长度后更名"), int(Shortening::FromStart));
    addChoice(m_choice, layout, tr("操作系统处理方式（含扩展名直接从尾部删除多余字符）"), int(Shortening::SystemWay));
    const int checked = preselected >= 0 && preselected <= 3 ? preselected : int(Shortening::FromEnd);
    m_choice->button(checked)->setChecked(true);
    m_dontAskAgain = new QCheckBox(tr("按以上设置进行更名操作而不再询问"), this);
    layout->addWidget(m_dontAskAgain);
    auto* go = new QPushButton(tr("继续(&C)"), this);
    go->setDefault(true);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(go);
    layout->addLayout(buttons);
    connect(go, &QPushButton::clicked, this, &QDialog::accept);
    connect(m_choice, &QButtonGroup::idToggled, this, [this](int, bool on) {
        if (on)
            showCorrected();
    });
    showCorrected();
}

void TFileNameTooLongWarningForm::showCorrected()
{
    const int choice = m_choice->checkedId();
    if (choice == int(Shortening::Skip)) {
        m_corrected->setText(tr("（跳过，不更名）"));
        return;
    }
    const QString name = m_correctedFor ? m_correctedFor(choice) : QString();
    m_corrected->setText(name.isEmpty() ? tr("（无法缩短到规定长度，将跳过）") : name);
    m_corrected->setCursorPosition(0);
}

ChoiceAnswer TFileNameTooLongWarningForm::answer() const
{
    return ChoiceAnswer{m_choice->checkedId(), m_dontAskAgain->isChecked()};
}

}  // namespace qp::ui
