#include <gtest/gtest.h>

#include <QIcon>
#include <QImage>
#include <QSignalSpy>

#include "core/MessageLog.h"
#include "core/RenameList.h"
#include "ui/models/MessageModel.h"
#include "ui/models/RenameListModel.h"

namespace qp::ui {
namespace {

FileEntry entry(const char* name, const char* ext, std::uint64_t size, bool folder = false)
{
    FileEntry row;
    row.path = QStringLiteral("/data/");
    row.name = row.newName = QString::fromUtf8(name);
    row.ext = row.newExt = QString::fromUtf8(ext);
    row.size = size;
    row.isFolder = folder;
    row.attributes = folder ? std::uint32_t(platform::AttrDirectory) : 0u;
    row.pdfPassword = QStringLiteral("pw");
    return row;
}

class ModelTest : public ::testing::Test {
protected:
    ModelTest()
    {
        list.append(entry("report", ".pdf", 1536));
        list.append(entry("photos", "", 4096, true));
        model.refresh();
    }
    QVariant at(int row, int column, int role = Qt::DisplayRole) { return model.index(row, column).data(role); }

    RenameList list;
    RenameListModel model{list};
};

TEST_F(ModelTest, CaptionsAndHiddenColumns)
{
    const QStringList captions{"选择", "", "实际文件名", "实际扩展名", "", "新文件名", "新扩展名", "修改日期",
                               "属性", "大小(Bytes)", "路径", "PDF密码", "大小(Bytes)", "大小(友好)"};
    ASSERT_EQ(model.columnCount(), captions.size());
    for (int c = 0; c < captions.size(); ++c)
        EXPECT_EQ(model.headerData(c, Qt::Horizontal).toString(), captions[c]) << c;
    // The icon and state columns show their caption as a tool tip only.
    EXPECT_EQ(model.headerData(RenameListModel::ColState, Qt::Horizontal, Qt::ToolTipRole).toString(), "状态");
    for (int c = 0; c < model.columnCount(); ++c) {
        EXPECT_EQ(RenameListModel::isHiddenColumn(c), c >= RenameListModel::ColPdfPassword) << c;
        EXPECT_EQ(RenameListModel::isSortable(c), c != RenameListModel::ColIcon && c < RenameListModel::ColPdfPassword)
            << c;
    }
}

TEST_F(ModelTest, CellsReadTheRowsAsTheyAreNow)
{
    EXPECT_EQ(at(0, RenameListModel::ColName).toString(), "report");
    EXPECT_EQ(at(0, RenameListModel::ColExt).toString(), ".pdf");
    EXPECT_EQ(at(0, RenameListModel::ColSize).toString(), "1536");
    EXPECT_EQ(at(0, RenameListModel::ColBytes).toString(), "1,536");
    EXPECT_EQ(at(0, RenameListModel::ColFriendlySize).toString(), "1.50 KB");
    EXPECT_EQ(at(0, RenameListModel::ColPdfPassword).toString(), "pw");
    EXPECT_EQ(at(0, RenameListModel::ColFolder).toString(), "/data/");
    EXPECT_EQ(at(0, RenameListModel::ColSelected, Qt::CheckStateRole).value<Qt::CheckState>(), Qt::Checked);
    // A folder has no size to show, whatever its directory entry says.
    EXPECT_EQ(at(1, RenameListModel::ColSize).toString(), "");
    EXPECT_EQ(at(1, RenameListModel::ColAttributes).toString(), "<DIR>");

    model.setFriendlySizes(true);
    EXPECT_EQ(at(0, RenameListModel::ColSize).toString(), "1.50 KB");

    // No copy: a change to the row shows at once, and a changed new name is marked.
    list[0].newName = QStringLiteral("report-2024");
    EXPECT_EQ(at(0, RenameListModel::ColNewName).toString(), "report-2024");
    EXPECT_TRUE(at(0, RenameListModel::ColNewName, Qt::ForegroundRole).isValid());
    EXPECT_FALSE(at(0, RenameListModel::ColNewExt, Qt::ForegroundRole).isValid());
}

TEST_F(ModelTest, ATickThroughTheGridChangesTheRowAndAsksForNewNames)
{
    QSignalSpy ticks(&model, &RenameListModel::ticksChanged);
    EXPECT_TRUE(model.setData(model.index(1, RenameListModel::ColSelected), Qt::Unchecked, Qt::CheckStateRole));
    EXPECT_FALSE(list.at(1).selected);
    EXPECT_EQ(ticks.count(), 1);
    // Only the tick column takes a value.
    EXPECT_FALSE(model.setData(model.index(1, RenameListModel::ColName), "x", Qt::EditRole));
    EXPECT_TRUE(model.flags(model.index(0, RenameListModel::ColSelected)).testFlag(Qt::ItemIsUserCheckable));
    EXPECT_FALSE(model.flags(model.index(0, RenameListModel::ColName)).testFlag(Qt::ItemIsEditable));
}

TEST_F(ModelTest, StateIconsDifferPerStateAndStaleRowsReadAsEmpty)
{
    const QImage renamed = RenameListModel::stateIcon(0).pixmap(16).toImage();
    const QImage loaded = RenameListModel::stateIcon(1).pixmap(16).toImage();
    const QImage failed = RenameListModel::stateIcon(2).pixmap(16).toImage();
    EXPECT_NE(renamed, loaded);
    EXPECT_NE(loaded, failed);
    EXPECT_NE(renamed, failed);
    list[1].state = 2;
    EXPECT_EQ(at(1, RenameListModel::ColState, Qt::ToolTipRole).toString(), "更名失败或新文件名存在冲突");

    // The engine shortened the list while the view still counts two rows.
    list.removeAt(1);
    EXPECT_EQ(model.rowCount(), 2);
    EXPECT_FALSE(at(1, RenameListModel::ColName).isValid());
    QSignalSpy reset(&model, &QAbstractItemModel::modelReset);
    model.refresh();
    EXPECT_EQ(model.rowCount(), 1);
    EXPECT_EQ(reset.count(), 1);
}

TEST_F(ModelTest, SortReordersTheListAndLeavesUnsortableColumnsAlone)
{
    list.append(entry("Report10", ".pdf", 10));
    list.append(entry("report9", ".pdf", 5));
    model.refresh();
    QSignalSpy reordered(&model, &RenameListModel::rowsReordered);
    model.sort(RenameListModel::ColName, Qt::AscendingOrder);
    QStringList names;
    for (const FileEntry& row : list.rows())
        names.append(row.name);
    EXPECT_EQ(names, (QStringList{"photos", "report", "report9", "Report10"}));
    EXPECT_EQ(reordered.count(), 1);
    model.sort(RenameListModel::ColIcon, Qt::AscendingOrder);
    EXPECT_EQ(reordered.count(), 1);
}

TEST(MessageModel, NewLinesReachTheViewInOneBatch)
{
    MessageLog log([] { return QTime(9, 5, 7); });
    MessageModel model(log);
    QSignalSpy inserted(&model, &QAbstractItemModel::rowsInserted);
    for (int i = 0; i < 1000; ++i) {
        log.add(QStringLiteral("line %1").arg(i), i % 2 ? MessageColour::Red : MessageColour::Normal, i);
        model.lineAdded();
    }
    EXPECT_EQ(model.rowCount(), 0);
    model.flush();
    EXPECT_EQ(model.rowCount(), 1000);
    EXPECT_EQ(inserted.count(), 1);
    EXPECT_EQ(model.index(1, 0).data().toString(), "[09:05:07] line 1");
    EXPECT_EQ(model.index(1, 0).data(Qt::ForegroundRole).value<QColor>(), QColor(Qt::red));
    EXPECT_FALSE(model.index(0, 0).data(Qt::ForegroundRole).isValid());
    EXPECT_EQ(model.linkedRow(model.index(7, 0)), 7);
    log.clear();
    model.flush();
    EXPECT_EQ(model.rowCount(), 0);
}

}  // namespace
}  // namespace qp::ui
