// The command grid: one row per command of the session's CommandList, read from the list
// itself ("序号", "代号", "命令描述", "命令编号", "状态").
#pragma once

#include <QAbstractTableModel>

namespace qp {
class CommandList;
}

namespace qp::ui {

class CommandListModel : public QAbstractTableModel {
    Q_OBJECT
public:
    enum Column { ColNumber, ColCode, ColComment, ColSection, ColStatus, ColumnCount };

    explicit CommandListModel(const CommandList& commands, QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    // After the list changed (recorded, ended, deleted, loaded).
    void refresh();

private:
    const CommandList& m_commands;
};

}  // namespace qp::ui
