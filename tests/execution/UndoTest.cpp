#include "ExecutionFixture.h"

namespace qp::test {
namespace {

class UndoTest : public ExecutionFixture {
protected:
    void renameRow(qsizetype r, const QString& newFileName)
    {
        const NameParts parts = splitFileName(newFileName, session.renameList().at(r).isFolder);
        session.renameList()[r].newName = parts.name;
        session.renameList()[r].newExt = parts.ext;
    }
};

TEST_F(UndoTest, TwoAppliesThenTwoUndosWalkBackTheStack)
{
    makeFiles({"a.txt"});
    addRow("w/a.txt", "b.txt");
    ASSERT_EQ(apply().succeeded, 1);
    renameRow(0, "c.txt");
    ASSERT_EQ(apply().succeeded, 1);
    EXPECT_EQ(session.applyCounter(), 2);
    EXPECT_TRUE(disk.exists(snapshot(2)));

    Undo undo(session, disk);
    EXPECT_EQ(undo.undoLast().succeeded, 1);
    EXPECT_EQ(listing(), (QMap<QString, QString>{{"b.txt", "a.txt"}}));
    EXPECT_EQ(session.renameList().at(0).fileName(), "b.txt");
    EXPECT_FALSE(disk.exists(snapshot(2)));
    EXPECT_EQ(undo.undoLast().succeeded, 1);
    EXPECT_EQ(listing(), (QMap<QString, QString>{{"a.txt", "a.txt"}}));
    EXPECT_EQ(session.applyCounter(), 0);
    EXPECT_EQ(undo.undoLast().end, UndoResult::End::NothingToUndo);
    EXPECT_EQ(logged(QStringLiteral("撤销上一次的批量更名完成！更名文件列表对象1个，操作成功1个，失败0个，跳过0个")), 2);

    // A new apply after the undos writes snapshot 1 again.
    renameRow(0, "d.txt");
    ASSERT_EQ(apply().succeeded, 1);
    EXPECT_TRUE(disk.exists(snapshot(1)));
}

TEST_F(UndoTest, VanishedObjectIsReportedAndTheOthersComeBack)
{
    makeFiles({"a.txt", "b.txt"});
    addRow("w/a.txt", "a2.txt");
    addRow("w/b.txt", "b2.txt");
    ASSERT_EQ(apply().succeeded, 2);
    ASSERT_TRUE(QFile::remove(tree.path("w/a2.txt")));
    const UndoResult result = Undo(session, disk).undoLast();
    EXPECT_EQ(result.end, UndoResult::End::Done);
    EXPECT_EQ(result.missing, 1);
    EXPECT_EQ(result.succeeded, 1);
    EXPECT_EQ(logged(QStringLiteral("对象不存在：") + tree.path("w/a2.txt")), 1);
    EXPECT_EQ(listing(), (QMap<QString, QString>{{"b.txt", "b.txt"}}));
}

TEST_F(UndoTest, MissingOrEmptySnapshotLeavesTheCounter)
{
    makeFiles({"a.txt"});
    addRow("w/a.txt", "b.txt");
    ASSERT_EQ(apply().succeeded, 1);
    ASSERT_TRUE(QFile::remove(snapshot(1)));
    EXPECT_EQ(Undo(session, disk).undoLast().end, UndoResult::End::SnapshotUnusable);
    EXPECT_EQ(session.applyCounter(), 1);
    ASSERT_EQ(ui.notices.size(), 1);
    EXPECT_EQ(ui.notices[0].text, QStringLiteral("撤销上一次的批量更名出现错误！"));

    QString error;
    ASSERT_TRUE(disk.writeFileAtomically(snapshot(1), "\xEF\xBB\xBF[Rename Config]\r\nFoundExist=0\r\n", &error));
    EXPECT_EQ(Undo(session, disk).undoLast().end, UndoResult::End::SnapshotUnusable);
    EXPECT_EQ(session.applyCounter(), 1);
}

TEST_F(UndoTest, AnySnapshotByPathInALaterRun)
{
    makeFiles({"a", "b", "d/x"});
    addRow("w/a", "b");
    addRow("w/b", "a");
    addRow("w/d", "e");
    ASSERT_EQ(apply().succeeded, 3);
    // A later run: another session, another stamp, its own empty list.
    ScriptedInteraction otherUi;
    SettingsStore store;
    store.setFileName(tree.path("cfg/QuilletPro.ini"));
    Session later(std::move(store), otherUi, QStringLiteral("[20250101000000000]"));
    const UndoResult result = Undo(later, disk).undoFile(snapshot(1));
    EXPECT_EQ(result.succeeded, 3);
    EXPECT_EQ(listing(), (QMap<QString, QString>{{"a", "a"}, {"b", "b"}, {"d", "<dir>"}, {"d/x", "d/x"}}));
    EXPECT_EQ(later.applyCounter(), 0);
}

// ---------------------------------------------------------------------------------------

TEST(SnapshotFormat, JournalRoundTripAndResolution)
{
    SnapshotData data;
    data.foundExist = true;
    data.lines = {{"/w/a=1", "a=1"}, {"/w/d", "d"}, {"/w/d/f", "f"}};
    data.unfinished = true;
    data.moves = {{"/w/a=1", "/w/,FRP,a=1", true, false}, {"/w/d", "/w/e", true, true}};
    const auto parsed = parseSnapshot(QString::fromUtf8(snapshotBytes(data)));
    ASSERT_TRUE(parsed);
    EXPECT_TRUE(parsed->unfinished);
    EXPECT_TRUE(parsed->foundExist);
    EXPECT_FALSE(parsed->foundExistAndExchange);
    ASSERT_EQ(parsed->lines.size(), 3u);
    EXPECT_EQ(parsed->lines[0].path, "/w/a=1");
    EXPECT_EQ(parsed->lines[0].name, "a=1");
    ASSERT_EQ(parsed->moves.size(), 2u);
    EXPECT_TRUE(parsed->moves[1].folder);

    DiskOperations disk;
    const std::vector<SnapshotLine> now = resolveJournal(*parsed, disk);
    EXPECT_EQ(now[0].path, "/w/,FRP,a=1");
    EXPECT_EQ(now[1].path, "/w/e");
    EXPECT_EQ(now[2].path, "/w/e/f");  // carried along by its folder
}

TEST(SnapshotFormat, TheLastUnmarkedMoveIsDecidedOnDisk)
{
    TempTree tree;
    const QString moved = tree.file("moved-to");
    const QString stayed = tree.file("stayed");
    for (const bool happened : {true, false}) {
        SnapshotData data;
        data.lines = {{happened ? tree.path("moved-from") : stayed, "x"}};
        data.unfinished = true;
        data.moves = {{data.lines[0].path, happened ? moved : tree.path("never"), false, false}};
        DiskOperations disk;
        EXPECT_EQ(resolveJournal(data, disk)[0].path, happened ? moved : stayed);
    }
}

}  // namespace
}  // namespace qp::test
