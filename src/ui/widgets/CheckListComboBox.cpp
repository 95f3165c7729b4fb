#include "ui/widgets/CheckListComboBox.h"

#include <QAbstractItemView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStandardItemModel>
#include <QStylePainter>
#include <QStyledItemDelegate>

#include <algorithm>

namespace qp::ui {

CheckListComboBox::CheckListComboBox(QWidget* parent)
    : QComboBox(parent)
    , m_model(new QStandardItemModel(this))
{
    setModel(m_model);
    // The combo's own delegate paints entries as menu items, which shows no check box in
    // some styles and cuts long names; a plain item delegate draws real check boxes.
    view()->setItemDelegate(new QStyledItemDelegate(view()));
    view()->setTextElideMode(Qt::ElideNone);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(14);
    // The list's own click handling would close it and change the current entry; a click
    // here means a tick instead.
    view()->viewport()->installEventFilter(this);
    view()->installEventFilter(this);
}

void CheckListComboBox::setItems(const QStringList& items, const QStringList& shown)
{
    m_model->clear();
    int widest = 0;
    for (qsizetype i = 0; i < items.size(); ++i) {
        const QString text = i < shown.size() ? shown[i] : items[i];
        widest = std::max(widest, view()->fontMetrics().horizontalAdvance(text));
        auto* item = new QStandardItem(text);
        item->setData(items[i], Qt::UserRole);
        item->setFlags(Qt::ItemIsEnabled | Qt::ItemIsUserCheckable);
        item->setData(Qt::Unchecked, Qt::CheckStateRole);
        m_model->appendRow(item);
    }
    // The list may be wider than the closed box; a cut name is hard to tick with confidence.
    view()->setMinimumWidth(widest + style()->pixelMetric(QStyle::PM_IndicatorWidth) + 32);
    update();
}

void CheckListComboBox::setPrompt(const QString& prompt)
{
    m_prompt = prompt;
    update();
}

QStringList CheckListComboBox::checkedItems() const
{
    QStringList checked;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        const QStandardItem* item = m_model->item(row);
        if (item->checkState() == Qt::Checked)
            checked.append(item->data(Qt::UserRole).toString());
    }
    return checked;
}

void CheckListComboBox::setCheckedItems(const QStringList& items)
{
    for (int row = 0; row < m_model->rowCount(); ++row) {
        QStandardItem* item = m_model->item(row);
        item->setCheckState(items.contains(item->data(Qt::UserRole).toString()) ? Qt::Checked : Qt::Unchecked);
    }
    update();
}

QString CheckListComboBox::displayText() const
{
    QStringList checked;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        if (m_model->item(row)->checkState() == Qt::Checked)
            checked.append(m_model->item(row)->text());
    }
    return checked.isEmpty() ? m_prompt : checked.join(QStringLiteral("; "));
}

void CheckListComboBox::toggleItem(int row)
{
    QStandardItem* item = m_model->item(row);
    if (item == nullptr)
        return;
    item->setCheckState(item->checkState() == Qt::Checked ? Qt::Unchecked : Qt::Checked);
    update();
    // Ticks in the open list are announced once, when it closes: whoever listens may do
    // slow work (re-run every command), and several sets are often ticked in one go.
    if (view()->isVisible())
        m_changedWhileOpen = true;
    else
        emit checkedItemsChanged();
}

void CheckListComboBox::hidePopup()
{
    QComboBox::hidePopup();
    if (m_changedWhileOpen) {
        m_changedWhileOpen = false;
        emit checkedItemsChanged();
    }
}

bool CheckListComboBox::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == view()->viewport() && event->type() == QEvent::MouseButtonRelease) {
        const auto* mouse = static_cast<QMouseEvent*>(event);
        const QModelIndex index = view()->indexAt(mouse->position().toPoint());
        if (index.isValid())
            toggleItem(index.row());
        return true;
    }
    if (watched == view() && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter) {
            toggleItem(view()->currentIndex().row());
            return true;
        }
    }
    return QComboBox::eventFilter(watched, event);
}

void CheckListComboBox::paintEvent(QPaintEvent* event)
{
    (void)event;
    QStylePainter painter(this);
    QStyleOptionComboBox option;
    initStyleOption(&option);
    option.currentText = displayText();
    option.currentIcon = QIcon();
    painter.drawComplexControl(QStyle::CC_ComboBox, option);
    painter.drawControl(QStyle::CE_ComboBoxLabel, option);
}

}  // namespace qp::ui
