#include "ui/models/RenameListModel.h"

#include <QApplication>
#include <QFileIconProvider>
#include <QMimeDatabase>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include "core/PathText.h"
#include "core/RenameList.h"
#include "core/RowOrder.h"

namespace qp::ui {

namespace {

const char* const kCaptions[RenameListModel::ColumnCount] = {
    QT_TRANSLATE_NOOP("qp::ui::RenameListModel", "选择"),
    QT_TRANSLATE_NOOP("qp::ui::RenameListModel", "图标"),
    QT_TRANSLATE_NOOP("qp::ui::RenameListModel", "实际文件名"),
    QT_TRANSLATE_NOOP("qp::ui::RenameListModel", "实际扩展名"),
    QT_TRANSLATE_NOOP("qp::ui::RenameListModel", "状态"),
    QT_TRANSLATE_NOOP("qp::ui::RenameListModel", "新文件名"),
    QT_TRANSLATE_NOOP("qp::ui::RenameListModel", "新扩展名"),
    QT_TRANSLATE_NOOP("qp::ui::RenameListModel", "修改日期"),
    QT_TRANSLATE_NOOP("qp::ui::RenameListModel", "属性"),
    QT_TRANSLATE_NOOP("qp::ui::RenameListModel", "大小(Bytes)"),
    QT_TRANSLATE_NOOP("qp::ui::RenameListModel", "路径"),
    QT_TRANSLATE_NOOP("qp::ui::RenameListModel", "PDF密码"),
    QT_TRANSLATE_NOOP("qp::ui::RenameListModel", "大小(Bytes)"),
    QT_TRANSLATE_NOOP("qp::ui::RenameListModel", "大小(友好)"),
};

// A proposed name that differs from the current one is shown in this colour.
const QColor kChangedColour(0, 0, 192);

// "#,##0": digits grouped by three with commas, whatever the desktop's language.
QString groupedNumber(std::uint64_t n)
{
    QString digits = QString::number(n);
    for (qsizetype at = digits.size() - 3; at > 0; at -= 3)
        digits.insert(at, QLatin1Char(','));
    return digits;
}

QPixmap paintStateIcon(int state)
{
    const int size = 16;
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter p(&pixmap);
    p.setRenderHint(QPainter::Antialiasing);
    const QColor fill = state == 0 ? QColor(46, 160, 67) : state == 2 ? QColor(208, 48, 48) : QColor(150, 160, 175);
    p.setPen(Qt::NoPen);
    p.setBrush(fill);
    p.drawEllipse(QRectF(1.5, 1.5, 13, 13));
    QPen mark(Qt::white, 2.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    p.setPen(mark);
    p.setBrush(Qt::NoBrush);
    if (state == 0) {
        QPainterPath tick;
        tick.moveTo(4.8, 8.3);
        tick.lineTo(7.0, 10.5);
        tick.lineTo(11.2, 5.6);
        p.drawPath(tick);
    } else if (state == 2) {
        p.drawLine(QPointF(5.5, 5.5), QPointF(10.5, 10.5));
        p.drawLine(QPointF(10.5, 5.5), QPointF(5.5, 10.5));
    } else {
        p.drawLine(QPointF(5.0, 8.0), QPointF(11.0, 8.0));
    }
    return pixmap;
}

std::optional<RowKey> keyOf(int column)
{
    switch (column) {
    case RenameListModel::ColSelected:
        return RowKey::Selected;
    case RenameListModel::ColName:
        return RowKey::Name;
    case RenameListModel::ColExt:
        return RowKey::Extension;
    case RenameListModel::ColState:
        return RowKey::State;
    case RenameListModel::ColNewName:
        return RowKey::NewName;
    case RenameListModel::ColNewExt:
        return RowKey::NewExtension;
    case RenameListModel::ColModified:
        return RowKey::Modified;
    case RenameListModel::ColAttributes:
        return RowKey::Attributes;
    case RenameListModel::ColSize:
        return RowKey::Size;
    case RenameListModel::ColFolder:
        return RowKey::Folder;
    default:
        return std::nullopt;
    }
}

}  // namespace

RenameListModel::RenameListModel(RenameList& list, QObject* parent)
    : QAbstractTableModel(parent)
    , m_list(list)
    , m_rows(int(list.size()))
{
    QFileIconProvider provider;
    m_fileIcon = provider.icon(QAbstractFileIconProvider::File);
    m_folderIcon = provider.icon(QAbstractFileIconProvider::Folder);
}

bool RenameListModel::isHiddenColumn(int column)
{
    return column == ColPdfPassword || column == ColBytes || column == ColFriendlySize;
}

bool RenameListModel::isSortable(int column) { return keyOf(column).has_value(); }

int RenameListModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : m_rows; }

int RenameListModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : ColumnCount; }

QIcon RenameListModel::stateIcon(int state)
{
    static const QIcon icons[3] = {QIcon(paintStateIcon(0)), QIcon(paintStateIcon(1)), QIcon(paintStateIcon(2))};
    return icons[state == 0 ? 0 : state == 2 ? 2 : 1];
}

QIcon RenameListModel::typeIcon(int row) const
{
    const FileEntry& entry = m_list.at(row);
    if (!m_trueIcons)
        return entry.isFolder ? m_folderIcon : m_fileIcon;
    if (entry.isFolder)
        return QIcon::fromTheme(QStringLiteral("folder"), m_folderIcon);
    // One look-up per extension: the type comes from the name alone, never from the disk.
    auto it = m_iconByExtension.constFind(entry.ext);
    if (it == m_iconByExtension.constEnd()) {
        static const QMimeDatabase mimes;
        const QMimeType type = mimes.mimeTypeForFile(QStringLiteral("x") + entry.ext, QMimeDatabase::MatchExtension);
        const QIcon icon = QIcon::fromTheme(type.iconName(), QIcon::fromTheme(type.genericIconName(), m_fileIcon));
        it = m_iconByExtension.insert(entry.ext, icon);
    }
    return *it;
}

QVariant RenameListModel::displayText(int row, int column) const
{
    const FileEntry& entry = m_list.at(row);
    switch (column) {
    case ColName:
        return entry.name;
    case ColExt:
        return entry.ext;
    case ColNewName:
        return entry.newName;
    case ColNewExt:
        return entry.newExt;
    case ColModified:
        return entry.modifiedText();
    case ColAttributes:
        return entry.attributeLetters();
    case ColSize:
        return entry.isFolder ? QString() : entry.sizeText(m_friendly);
    case ColFolder:
        return nativeSeparators(entry.path);
    case ColPdfPassword:
        return entry.pdfPassword;
    case ColBytes:
        return entry.isFolder ? QString() : groupedNumber(entry.size);
    case ColFriendlySize:
        return entry.isFolder ? QString() : friendlySize(entry.size);
    default:
        return {};
    }
}

QVariant RenameListModel::data(const QModelIndex& index, int role) const
{
    const int row = index.row();
    const int column = index.column();
    // The list may be shorter than the view believes while an operation is running.
    if (!index.isValid() || row >= m_list.size())
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return displayText(row, column);
    case Qt::CheckStateRole:
        if (column == ColSelected)
            return m_list.at(row).selected ? Qt::Checked : Qt::Unchecked;
        return {};
    case Qt::DecorationRole:
        if (column == ColIcon)
            return typeIcon(row);
        if (column == ColState)
            return stateIcon(m_list.at(row).state);
        return {};
    case Qt::ToolTipRole:
        if (column == ColState) {
            const int state = m_list.at(row).state;
            return state == 0 ? tr("已更名") : state == 2 ? tr("更名失败或新文件名存在冲突") : tr("未更名");
        }
        if (column == ColName || column == ColNewName)
            return nativeSeparators(m_list.at(row).fullPath());
        return {};
    case Qt::ForegroundRole: {
        const FileEntry& entry = m_list.at(row);
        if ((column == ColNewName && entry.newName != entry.name) || (column == ColNewExt && entry.newExt != entry.ext))
            return kChangedColour;
        return {};
    }
    case Qt::TextAlignmentRole:
        if (column == ColSize || column == ColBytes || column == ColFriendlySize)
            return int(Qt::AlignRight | Qt::AlignVCenter);
        return {};
    default:
        return {};
    }
}

QVariant RenameListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= ColumnCount)
        return QAbstractTableModel::headerData(section, orientation, role);
    if (role == Qt::DisplayRole)
        return section == ColIcon || section == ColState ? QVariant() : QVariant(tr(kCaptions[section]));
    if (role == Qt::ToolTipRole)
        return tr(kCaptions[section]);
    return {};
}

Qt::ItemFlags RenameListModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (index.column() == ColSelected)
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}

bool RenameListModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || index.column() != ColSelected || role != Qt::CheckStateRole
        || index.row() >= m_list.size())
        return false;
    const bool ticked = value.value<Qt::CheckState>() == Qt::Checked;
    FileEntry& entry = m_list[index.row()];
    if (entry.selected == ticked)
        return true;
    entry.selected = ticked;
    emit dataChanged(index, index, {Qt::CheckStateRole});
    emit ticksChanged();
    return true;
}

void RenameListModel::sort(int column, Qt::SortOrder order)
{
    const auto key = keyOf(column);
    if (!key || m_list.size() < 2)
        return;
    const std::vector<qsizetype> sorted = sortedOrder(m_list, *key, order == Qt::AscendingOrder);
    beginResetModel();
    m_list.reorder(sorted);
    endResetModel();
    emit rowsReordered();
}

void RenameListModel::refresh()
{
    if (m_rows != m_list.size()) {
        beginResetModel();
        m_rows = int(m_list.size());
        endResetModel();
        return;
    }
    if (m_rows > 0)
        emit dataChanged(index(0, 0), index(m_rows - 1, ColumnCount - 1));
}

void RenameListModel::setFriendlySizes(bool friendly)
{
    if (m_friendly == friendly)
        return;
    m_friendly = friendly;
    if (m_rows > 0)
        emit dataChanged(index(0, ColSize), index(m_rows - 1, ColSize), {Qt::DisplayRole});
}

void RenameListModel::setTrueIcons(bool trueIcons)
{
    if (m_trueIcons == trueIcons)
        return;
    m_trueIcons = trueIcons;
    if (m_rows > 0)
        emit dataChanged(index(0, ColIcon), index(m_rows - 1, ColIcon), {Qt::DecorationRole});
}

}  // namespace qp::ui
