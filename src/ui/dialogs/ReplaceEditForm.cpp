#include "ui/dialogs/ReplaceEditForm.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace qp::ui {

namespace {
const QChar kSeparator = QLatin1Char('|');

QStringList items(const QString& text) { return text.isEmpty() ? QStringList() : text.split(kSeparator); }
}  // namespace

QList<ReplacePair> splitReplacePairs(const QString& searchText, const QString& replaceText)
{
    const QStringList finds = items(searchText);
    const QStringList replaces = items(replaceText);
    QList<ReplacePair> pairs;
    const qsizetype rows = std::max(finds.size(), replaces.size());
    for (qsizetype i = 0; i < rows; ++i)
        pairs.append({finds.value(i), replaces.value(i)});
    return pairs;
}

QPair<QString, QString> joinReplacePairs(const QList<ReplacePair>& pairs)
{
    QStringList finds;
    QStringList replaces;
    for (const ReplacePair& pair : pairs) {
        if (pair.find.isEmpty() && pair.replace.isEmpty())
            continue;
        finds.append(pair.find);
        replaces.append(pair.replace);
    }
    while (!replaces.isEmpty() && replaces.back().isEmpty())
        replaces.removeLast();
    return {finds.join(kSeparator), replaces.join(kSeparator)};
}

TReplaceEditForm::TReplaceEditForm(const QString& searchText, const QString& replaceText, QWidget* parent)
    : QDialog(parent)
    , m_searchText(searchText)
    , m_replaceText(replaceText)
{
    setObjectName(QStringLiteral("TReplaceEditForm"));
    setWindowTitle(tr("查找替换编辑器"));
    auto* layout = new QVBoxLayout(this);
    auto* hint = new QLabel(tr("每行一组：左列为查找的内容，右列为替换成的内容。两列都为空的行不保存；"
                               "内容中的“|”是分隔符，会被去掉。"),
                            this);
    hint->setWordWrap(true);
    layout->addWidget(hint);

    m_table = new QTableWidget(0, 2, this);
    m_table->setObjectName(QStringLiteral("TableWidgetPairs"));
    m_table->setHorizontalHeaderLabels({tr("查找"), tr("替换为")});
    m_table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_table->verticalHeader()->setDefaultSectionSize(m_table->fontMetrics().height() + 8);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::SingleSelection);

    auto* body = new QHBoxLayout;
    body->addWidget(m_table, 1);
    auto* side = new QVBoxLayout;
    auto button = [&](const QString& name, const QString& caption, auto slot) {
        auto* b = new QPushButton(caption, this);
        b->setObjectName(name);
        b->setAutoDefault(false);
        connect(b, &QPushButton::clicked, this, slot);
        side->addWidget(b);
        return b;
    };
    button(QStringLiteral("ButtonAdd"), tr("添加(&A)"), [this] {
        addRow(m_table->rowCount(), {});
        m_table->setCurrentCell(m_table->rowCount() - 1, 0);
        m_table->editItem(m_table->item(m_table->rowCount() - 1, 0));
    });
    button(QStringLiteral("ButtonInsert"), tr("插入(&I)"), [this] {
        addRow(std::max(m_table->currentRow(), 0), {});
        m_table->setCurrentCell(std::max(m_table->currentRow(), 0), 0);
    });
    button(QStringLiteral("ButtonDelete"), tr("删除(&D)"), [this] {
        if (m_table->currentRow() >= 0) {
            m_table->removeRow(m_table->currentRow());
            m_touched = true;
        }
    });
    button(QStringLiteral("ButtonUp"), tr("上移(&U)"), [this] { moveCurrentRow(-1); });
    button(QStringLiteral("ButtonDown"), tr("下移(&N)"), [this] { moveCurrentRow(1); });
    button(QStringLiteral("ButtonSwap"), tr("互换两列(&S)"), [this] { swapColumns(); });
    button(QStringLiteral("ButtonClear"), tr("清空(&L)"), [this] {
        m_table->setRowCount(0);
        m_touched = true;
    });
    side->addStretch(1);
    body->addLayout(side);
    layout->addLayout(body, 1);

    m_count = new QLabel(this);
    layout->addWidget(m_count);
    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(tr("确定(&O)"), QDialogButtonBox::AcceptRole)->setObjectName(QStringLiteral("ButtonOk"));
    buttons->addButton(tr("取消(&C)"), QDialogButtonBox::RejectRole)->setObjectName(QStringLiteral("ButtonCancel"));
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);

    setPairs(splitReplacePairs(searchText, replaceText));
    m_touched = false;
    connect(m_table, &QTableWidget::itemChanged, this, &TReplaceEditForm::cellChanged);
    connect(m_table->model(), &QAbstractItemModel::rowsInserted, this, [this] { m_count->setText(tr("共 %1 组").arg(m_table->rowCount())); });
    connect(m_table->model(), &QAbstractItemModel::rowsRemoved, this, [this] { m_count->setText(tr("共 %1 组").arg(m_table->rowCount())); });
    resize(560, 420);
}

void TReplaceEditForm::addRow(int at, const ReplacePair& pair)
{
    const QSignalBlocker blocker(m_table);
    m_table->insertRow(at);
    m_table->setItem(at, 0, new QTableWidgetItem(pair.find));
    m_table->setItem(at, 1, new QTableWidgetItem(pair.replace));
    m_touched = true;
}

QList<ReplacePair> TReplaceEditForm::pairs() const
{
    QList<ReplacePair> result;
    for (int row = 0; row < m_table->rowCount(); ++row) {
        const QTableWidgetItem* find = m_table->item(row, 0);
        const QTableWidgetItem* replace = m_table->item(row, 1);
        result.append({find ? find->text() : QString(), replace ? replace->text() : QString()});
    }
    return result;
}

void TReplaceEditForm::setPairs(const QList<ReplacePair>& pairs)
{
    m_table->setRowCount(0);
    for (const ReplacePair& pair : pairs)
        addRow(m_table->rowCount(), pair);
    m_count->setText(tr("共 %1 组").arg(m_table->rowCount()));
}

QString TReplaceEditForm::searchText() const { return m_touched ? joinReplacePairs(pairs()).first : m_searchText; }

QString TReplaceEditForm::replaceText() const { return m_touched ? joinReplacePairs(pairs()).second : m_replaceText; }

void TReplaceEditForm::moveCurrentRow(int by)
{
    const int from = m_table->currentRow();
    const int to = from + by;
    if (from < 0 || to < 0 || to >= m_table->rowCount())
        return;
    QList<ReplacePair> all = pairs();
    all.swapItemsAt(from, to);
    setPairs(all);
    m_table->setCurrentCell(to, m_table->currentColumn() < 0 ? 0 : m_table->currentColumn());
}

void TReplaceEditForm::swapColumns()
{
    QList<ReplacePair> all = pairs();
    for (ReplacePair& pair : all)
        std::swap(pair.find, pair.replace);
    setPairs(all);
}

void TReplaceEditForm::cellChanged(QTableWidgetItem* item)
{
    m_touched = true;
    // "|" separates the items of the stored texts: kept in a cell it would split the pair.
    if (item->text().contains(kSeparator)) {
        const QSignalBlocker blocker(m_table);
        item->setText(item->text().remove(kSeparator));
    }
}

}  // namespace qp::ui
