#include "ui/dialogs/UserMetaVariableForms.h"

#include <QAbstractTableModel>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPalette>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>
#include <vector>

#include "expressions/MetaVariables.h"

namespace qp::ui {

namespace {

QString userTag(int n) { return QStringLiteral("<USER%1>").arg(n); }

// The rows of the rename list with the defined lists beside them. It reads the session's
// lists directly, so a long list costs no copy.
class UserListModel : public QAbstractTableModel {
public:
    explicit UserListModel(const Session& session, QObject* parent)
        : QAbstractTableModel(parent)
        , m_session(session)
    {
        for (int n = 0; n < Session::kUserListCount; ++n) {
            if (userListDefined(session, n)) {
                m_lists.push_back(n);
                m_rows = std::max(m_rows, int(session.userList(n).size()));
            }
        }
        m_rows = std::max(m_rows, int(session.renameList().size()));
    }

    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : m_rows; }
    int columnCount(const QModelIndex& parent = {}) const override
    {
        return parent.isValid() ? 0 : TViewUVUSERForm::ColFirstList + int(m_lists.size());
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override
    {
        if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
            return {};
        if (section == TViewUVUSERForm::ColNumber)
            return TViewUVUSERForm::tr("序号");
        if (section == TViewUVUSERForm::ColName)
            return TViewUVUSERForm::tr("实际文件名");
        return userTag(m_lists[size_t(section - TViewUVUSERForm::ColFirstList)]);
    }

    QVariant data(const QModelIndex& index, int role) const override
    {
        const int row = index.row();
        const int column = index.column();
        if (column < TViewUVUSERForm::ColFirstList) {
            if (role != Qt::DisplayRole)
                return {};
            if (column == TViewUVUSERForm::ColNumber)
                return row + 1;
            const RenameList& list = m_session.renameList();
            return row < list.size() ? list.at(row).name + list.at(row).ext : QString();
        }
        const QStringList& lines = m_session.userList(m_lists[size_t(column - TViewUVUSERForm::ColFirstList)]);
        const bool missing = row >= lines.size();
        if (role == Qt::DisplayRole)
            return missing ? QStringLiteral("<NULL>") : lines.at(row);
        if (role == Qt::ForegroundRole && missing)
            return QPalette().brush(QPalette::Disabled, QPalette::Text);
        return {};
    }

private:
    const Session& m_session;
    std::vector<int> m_lists;
    int m_rows = 0;
};

// Both forms only show; their one button closes them.
QHBoxLayout* closeButtonRow(QDialog& form)
{
    auto* close = new QPushButton(QObject::tr("关闭(&C)"), &form);
    close->setObjectName(QStringLiteral("ButtonClose"));
    close->setDefault(true);
    QObject::connect(close, &QPushButton::clicked, &form, &QDialog::accept);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(close);
    return buttons;
}

}  // namespace

bool userListDefined(const Session& session, int n) { return !session.userList(n).isEmpty(); }

TUVUSERSelectForm::TUVUSERSelectForm(Session& session, std::function<void()> refreshPreview, QWidget* parent)
    : QDialog(parent)
    , m_session(session)
    , m_refreshPreview(std::move(refreshPreview))
{
    setObjectName(QStringLiteral("TUVUSERSelectForm"));
    setWindowTitle(tr("定义用户自定义元变量"));

    auto* note = new QLabel(tr("定义时，更名文件列表中“新文件名”一列的当前内容按行存入所选的元变量；"
                               "之后在表达式中使用它，每个对象取与自己行号相同的一行。"
                               "这些内容保留到程序关闭为止。"),
                            this);
    note->setWordWrap(true);

    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(18);
    for (int n = 0; n < Session::kUserListCount; ++n) {
        auto* tag = new QLabel(userTag(n), this);
        QFont bold = tag->font();
        bold.setBold(true);
        tag->setFont(bold);
        m_states[size_t(n)] = new QLabel(this);
        m_states[size_t(n)]->setObjectName(QStringLiteral("LabelState%1").arg(n));
        m_counts[size_t(n)] = new QLabel(this);
        m_counts[size_t(n)]->setObjectName(QStringLiteral("LabelCount%1").arg(n));
        auto* button = new QPushButton(tr("定义%1").arg(userTag(n)), this);
        button->setObjectName(QStringLiteral("ButtonDefineUSER%1").arg(n));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, n] { define(n); });
        grid->addWidget(tag, n, 0);
        grid->addWidget(m_states[size_t(n)], n, 1);
        grid->addWidget(m_counts[size_t(n)], n, 2);
        grid->addWidget(button, n, 3);
        showList(n);
    }
    grid->setColumnStretch(2, 1);

    QHBoxLayout* buttons = closeButtonRow(*this);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(note);
    layout->addSpacing(6);
    layout->addLayout(grid);
    layout->addSpacing(6);
    layout->addLayout(buttons);
    setMinimumWidth(480);
}

void TUVUSERSelectForm::define(int n)
{
    defineUserList(m_session, n, m_refreshPreview);
    showList(n);
}

void TUVUSERSelectForm::showList(int n)
{
    const bool defined = userListDefined(m_session, n);
    QLabel* state = m_states[size_t(n)];
    state->setText(defined ? tr("已定义") : tr("未定义"));
    state->setStyleSheet(defined ? QStringLiteral("color: #006400;") : QStringLiteral("color: #808080;"));
    m_counts[size_t(n)]->setText(tr("字符串列表数量：") + QString::number(m_session.userList(n).size()));
}

TViewUVUSERForm::TViewUVUSERForm(const Session& session, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("TViewUVUSERForm"));
    setWindowTitle(tr("查看用户自定义元变量"));

    int defined = 0;
    for (int n = 0; n < Session::kUserListCount; ++n)
        defined += userListDefined(session, n) ? 1 : 0;
    m_summary = new QLabel(tr("更名文件列表内对象：%1个；已被定义的用户自定义元变量：%2个")
                               .arg(session.renameList().size())
                               .arg(defined),
                           this);
    m_summary->setObjectName(QStringLiteral("LabelSummary"));

    m_grid = new QTableView(this);
    m_grid->setObjectName(QStringLiteral("NextGridUVUSER"));
    m_grid->setModel(new UserListModel(session, m_grid));
    m_grid->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_grid->setAlternatingRowColors(true);
    m_grid->setWordWrap(false);
    m_grid->verticalHeader()->hide();
    m_grid->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_grid->verticalHeader()->setDefaultSectionSize(m_grid->fontMetrics().height() + 6);
    m_grid->horizontalHeader()->setHighlightSections(false);
    m_grid->horizontalHeader()->setStretchLastSection(true);
    m_grid->setColumnWidth(ColNumber, m_grid->fontMetrics().horizontalAdvance(QStringLiteral("000000")) + 12);
    m_grid->setColumnWidth(ColName, 220);
    for (int column = ColFirstList; column < m_grid->model()->columnCount(); ++column)
        m_grid->setColumnWidth(column, 160);

    QHBoxLayout* buttons = closeButtonRow(*this);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_summary);
    layout->addWidget(m_grid, 1);
    layout->addLayout(buttons);
    resize(760, 460);
}

}  // namespace qp::ui
