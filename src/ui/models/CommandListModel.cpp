#include "ui/models/CommandListModel.h"

#include "core/CommandList.h"

namespace qp::ui {

CommandListModel::CommandListModel(const CommandList& commands, QObject* parent)
    : QAbstractTableModel(parent)
    , m_commands(commands)
{
}

int CommandListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : int(m_commands.size());
}

int CommandListModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : ColumnCount; }

QVariant CommandListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= m_commands.size())
        return {};
    const CommandRow& row = m_commands.rows()[size_t(index.row())];
    if (role == Qt::TextAlignmentRole && (index.column() == ColNumber || index.column() == ColStatus))
        return int(Qt::AlignCenter);
    if (role != Qt::DisplayRole && role != Qt::ToolTipRole)
        return {};
    switch (index.column()) {
    case ColNumber:
        return index.row() + 1;
    case ColCode:
        return row.functionCode;
    case ColComment:
        return row.comment;
    case ColSection:
        return row.section;
    case ColStatus:
        return row.statusText();
    default:
        return {};
    }
}

QVariant CommandListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (section) {
    case ColNumber:
        return tr("序号");
    case ColCode:
        return tr("代号");
    case ColComment:
        return tr("命令描述");
    case ColSection:
        return tr("命令编号");
    case ColStatus:
        return tr("状态");
    default:
        return {};
    }
}

void CommandListModel::refresh()
{
    beginResetModel();
    endResetModel();
}

}  // namespace qp::ui
