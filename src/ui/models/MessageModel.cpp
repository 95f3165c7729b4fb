#include "ui/models/MessageModel.h"

#include <QColor>
#include <QTimer>

#include "core/MessageLog.h"

namespace qp::ui {

namespace {

QColor colourOf(MessageColour colour)
{
    switch (colour) {
    case MessageColour::Red:
        return Qt::red;
    case MessageColour::Blue:
        return QColor(0, 0, 192);
    case MessageColour::Green:
        return QColor(0, 128, 0);
    case MessageColour::Normal:
        break;
    }
    return {};
}

}  // namespace

MessageModel::MessageModel(const MessageLog& log, QObject* parent)
    : QAbstractListModel(parent)
    , m_log(log)
    , m_shown(int(log.lines().size()))
{
}

int MessageModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : m_shown; }

QVariant MessageModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_log.lines().size())
        return {};
    const MessageLine& line = m_log.lines()[index.row()];
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return line.text;
    case Qt::ForegroundRole: {
        const QColor colour = colourOf(line.colour);
        return colour.isValid() ? QVariant(colour) : QVariant();
    }
    default:
        return {};
    }
}

int MessageModel::linkedRow(const QModelIndex& index) const
{
    if (!index.isValid() || index.row() >= m_log.lines().size())
        return -1;
    return m_log.lines()[index.row()].row;
}

void MessageModel::lineAdded()
{
    if (m_flushPending)
        return;
    m_flushPending = true;
    QTimer::singleShot(0, this, &MessageModel::flush);
}

void MessageModel::flush()
{
    m_flushPending = false;
    const int lines = int(m_log.lines().size());
    if (lines < m_shown) {
        reset();
        return;
    }
    if (lines == m_shown)
        return;
    beginInsertRows({}, m_shown, lines - 1);
    m_shown = lines;
    endInsertRows();
    emit linesShown();
}

void MessageModel::reset()
{
    beginResetModel();
    m_shown = int(m_log.lines().size());
    endResetModel();
}

}  // namespace qp::ui
