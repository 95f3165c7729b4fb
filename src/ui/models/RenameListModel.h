// The rename list as the grid shows it: a thin table model over the session's RenameList.
// It holds no copy of the rows; every cell is read from the row when the view asks for it,
// so a million rows cost the view only the rows on screen.
//
// The engine changes the list without telling the model (loading, commands, preview,
// apply). Whoever ran the operation calls refresh() afterwards. In between, the view may
// repaint while the engine pumps events; the model then answers with the row count of the
// last refresh and reads only rows that still exist.
#pragma once

#include <QAbstractTableModel>
#include <QHash>
#include <QIcon>

namespace qp {
class RenameList;
}

namespace qp::ui {

class RenameListModel : public QAbstractTableModel {
    Q_OBJECT
public:
    // The columns of a row, in the grid's order.
    enum Column {
        ColSelected,
        ColIcon,
        ColName,
        ColExt,
        ColState,
        ColNewName,
        ColNewExt,
        ColModified,
        ColAttributes,
        ColSize,
        ColFolder,
        ColPdfPassword,
        ColBytes,
        ColFriendlySize,
        ColumnCount
    };

    explicit RenameListModel(RenameList& list, QObject* parent = nullptr);

    static bool isHiddenColumn(int column);
    static bool isSortable(int column);

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    // Reorders the rows of the list itself (the grid order is the numbering order).
    void sort(int column, Qt::SortOrder order = Qt::AscendingOrder) override;

    // After the engine changed the list: a new row count resets the view, otherwise every
    // visible cell is read again.
    void refresh();

    // "大小(Bytes)" shows friendly sizes ("FileSizeFriendly").
    void setFriendlySizes(bool friendly);
    // "显示实际图标": each file's own type icon instead of the plain file icon.
    void setTrueIcons(bool trueIcons);
    bool trueIcons() const { return m_trueIcons; }

    // The icons of the state column for 0 renamed, 1 loaded or unchanged, 2 failed or in
    // conflict.
    static QIcon stateIcon(int state);

signals:
    // Ticks changed through the grid: the commands skip unticked rows, so the new names
    // need computing again.
    void ticksChanged();
    // The rows were reordered by a sort: numbering depends on the order.
    void rowsReordered();

private:
    QVariant displayText(int row, int column) const;
    QIcon typeIcon(int row) const;

    RenameList& m_list;
    int m_rows = 0;
    bool m_friendly = false;
    bool m_trueIcons = false;
    QIcon m_fileIcon;
    QIcon m_folderIcon;
    mutable QHash<QString, QIcon> m_iconByExtension;
};

}  // namespace qp::ui
