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

TEST_F(UndoTest, NamesWithBlanksLineBreaksAndEqualsComeBack)
{
    const QStringList names{"b ", " lead", "c\nd", "e\r.txt", "f=g<61>", "h<13>"};
    for (int i = 0; i < names.size(); ++i) {
        makeFiles({"f" + std::to_string(i)});
        addRow("w/f" + std::to_string(i), names[i]);
    }
    const QMap<QString, QString> before = listing();
    ASSERT_EQ(apply().succeeded, names.size());
    const auto data = readSnapshot(snapshot(1), disk);
    ASSERT_TRUE(data);
    for (int i = 0; i < names.size(); ++i)
        EXPECT_EQ(data->lines[size_t(i)].path, tree.path("w/") + names[i]);  // read back exactly as written
    const UndoResult result = Undo(session, disk).undoLast();
    EXPECT_EQ(result.succeeded, names.size());
    EXPECT_EQ(listing(), before);
    EXPECT_FALSE(disk.exists(snapshot(1)));
}

TEST_F(UndoTest, SnapshotKeepsTheLinesNotUndone)
{
    makeFiles({"a.txt", "b.txt"});
    addRow("w/a.txt", "a2.txt");
    addRow("w/b.txt", "b2.txt");
    ASSERT_EQ(apply().succeeded, 2);
    ASSERT_TRUE(QFile::rename(tree.path("w/a2.txt"), tree.path("w/gone.txt")));
    const UndoResult result = Undo(session, disk).undoLast();
    EXPECT_EQ(result.end, UndoResult::End::Done);
    EXPECT_EQ(result.missing, 1);
    EXPECT_TRUE(result.kept);
    EXPECT_EQ(result.remaining, 1);
    EXPECT_EQ(session.applyCounter(), 1);  // still on the stack
    const auto left = readSnapshot(snapshot(1), disk);
    ASSERT_TRUE(left && left->lines.size() == 1);
    EXPECT_EQ(left->lines[0].path, tree.path("w/a2.txt"));
    EXPECT_EQ(logged(QStringLiteral("快照中还有 1 个对象未能恢复，快照文件已保留：")), 1);

    // Once the object is back where the snapshot says, undo finishes the job.
    ASSERT_TRUE(QFile::rename(tree.path("w/gone.txt"), tree.path("w/a2.txt")));
    EXPECT_FALSE(Undo(session, disk).undoLast().kept);
    EXPECT_EQ(session.applyCounter(), 0);
    EXPECT_EQ(listing(), (QMap<QString, QString>{{"a.txt", "a.txt"}, {"b.txt", "b.txt"}}));
}

TEST_F(UndoTest, AJournalKeptAfterAFailedRollBackIsNeverOverwritten)
{
    makeFiles({"a", "b", "c"});
    addRow("w/a", "b");
    addRow("w/b", "a");
    FaultyOperations faulty(disk);
    faulty.failTemporaryRename = 2;  // b cannot move away, and a cannot come back
    faulty.failRename = 3;
    ASSERT_EQ(apply(faulty).end, ApplyResult::End::FirstPassFailed);
    const QByteArray kept = *disk.readFile(snapshot(1));
    EXPECT_EQ(session.applyCounter(), 1);  // undo can lead the temporary back

    session.renameList().clear();
    addRow("w/c", "d");
    ASSERT_EQ(apply().succeeded, 1);
    EXPECT_TRUE(disk.exists(snapshot(2)));
    EXPECT_EQ(*disk.readFile(snapshot(1)), kept);
    Undo undo(session, disk);
    EXPECT_EQ(undo.undoLast().succeeded, 1);
    EXPECT_EQ(undo.undoLast().failed, 0);
    EXPECT_EQ(listing(), (QMap<QString, QString>{{"a", "a"}, {"b", "b"}, {"c", "c"}}));
}

// ---------------------------------------------------------------------------------------

TEST(SnapshotFormat, RoundTripKeepsNamesPlanAndMarks)
{
    SnapshotData data;
    data.foundExist = true;
    data.unfinished = true;
    data.lines = {{"/w/a=1 ", "a=1\n"}, {"/w/d", "d"}};
    data.moves = {{"/w/a=1 ", "/w/,FRP,a=1 ", false}, {"/w/d", "/w/e\r", true}, {"/w/x", "/w/y", false}};
    data.planMoves = 2;
    data.made = {0};
    data.failed = {1};
    data.givenUp = {1};
    const auto parsed = parseSnapshot(QString::fromUtf8(snapshotBytes(data)));
    ASSERT_TRUE(parsed);
    EXPECT_TRUE(parsed->unfinished && parsed->foundExist && !parsed->foundExistAndExchange);
    EXPECT_EQ(parsed->lines[0].path + '|' + parsed->lines[0].name, "/w/a=1 |a=1\n");
    ASSERT_EQ(parsed->moves.size(), 3u);
    EXPECT_EQ(parsed->planMoves, 2);
    EXPECT_TRUE(parsed->moves[1].folder);
    EXPECT_EQ(parsed->moves[1].to, "/w/e\r");
    EXPECT_EQ(parsed->made, std::vector<qsizetype>{0});
    EXPECT_EQ(parsed->failed, std::vector<qsizetype>{1});
    EXPECT_EQ(parsed->givenUp, std::vector<qsizetype>{1});
}

// Where each object is after a batch that ended anyhow: marks are believed, unmarked
// renames are judged on the disk as it was right after each of them.
TEST(SnapshotFormat, JournalSaysWhereEverythingIsHoweverTheBatchEnded)
{
    struct Case {
        const char* label;
        QStringList onDisk;                 // files, or folders ending with '/'
        QStringList lines;                  // object paths before the batch
        std::vector<PlannedMove> moves;
        qsizetype planMoves;
        std::vector<qsizetype> made, failed, givenUp;
        QStringList want;
    };
    const Case cases[] = {
        {"chain, both made, unmarked", {"B", "C"}, {"A", "B"}, {{"B", "C"}, {"A", "B"}}, 2, {}, {}, {}, {"B", "C"}},
        {"chain, killed after the first", {"A", "C"}, {"A", "B"}, {{"B", "C"}, {"A", "B"}}, 2, {}, {}, {}, {"A", "C"}},
        {"a mark is believed", {"X"}, {"X"}, {{"X", "Y"}}, 1, {0}, {}, {}, {"Y"}},
        {"given up, then put back",
         {"A", "B"}, {"A", "B"},
         {{"A", ",FRP,A"}, {"B", ",FRP,B"}, {",FRP,A", "B"}, {",FRP,B", "A"}, {",FRP,A", "A"}}, 4,
         {0}, {1}, {2}, {"A", "B"}},
        {"folder carries its contents", {"D2/", "D2/x"}, {"D", "D/x"}, {{"D", "D2", true}}, 1, {}, {}, {}, {"D2", "D2/x"}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        TempTree tree;
        auto at = [&](const QString& relative) { return tree.path("t/" + relative.toStdString()); };
        for (const QString& path : c.onDisk)
            path.endsWith('/') ? (void)tree.folder("t/" + path.chopped(1).toStdString())
                               : (void)tree.file("t/" + path.toStdString());
        SnapshotData data;
        data.unfinished = true;
        for (const QString& line : c.lines)
            data.lines.push_back({at(line), "n"});
        for (const PlannedMove& move : c.moves)
            data.moves.push_back({at(move.from), at(move.to), move.folder});
        data.planMoves = c.planMoves;
        data.made = c.made;
        data.failed = c.failed;
        data.givenUp = c.givenUp;
        DiskOperations disk;
        QStringList got;
        for (const SnapshotLine& line : resolveJournal(data, disk))
            got << line.path.mid(tree.path("t/").size());
        EXPECT_EQ(got, c.want);
    }
}

}  // namespace
}  // namespace qp::test
