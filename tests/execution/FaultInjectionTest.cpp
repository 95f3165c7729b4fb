// Every rename of a batch, in turn, is made to fail, to fail only when it is a temporary,
// to report success without happening, or to be the instant the process dies. Whatever
// happens: no file is lost, an object under a temporary name has a snapshot line leading
// back, and undo from the snapshot (or the journal) restores the tree exactly.
#include "ExecutionFixture.h"

namespace qp::test {
namespace {

enum class Fault { Fail, FailTemporary, Pretend, Crash };

struct Scenario {
    const char* label;
    std::vector<std::string> files;
    std::vector<std::pair<std::string, QString>> renames;
};

const std::vector<Scenario>& scenarios()
{
    static const std::vector<Scenario> list{
        {"swaps, chain and folder tree",
         {"s1", "s2", "s3", "s4", "c1", "c2", "t/f1", "t/u/f2"},
         {{"s1", "s2"}, {"s2", "s1"}, {"s3", "s4"}, {"s4", "s3"}, {"c1", "c2"}, {"c2", "c3"},
          {"t", "T2"}, {"t/u", "U2"}, {"t/f1", "g1"}, {"t/u/f2", "g2"}}},
        {"chain and folder tree without cycle",
         {"c1", "c2", "c3", "t/f1", "t/u/f2"},
         {{"c1", "c2"}, {"c2", "c3"}, {"c3", "c4"}, {"t", "T2"}, {"t/u", "U2"}, {"t/f1", "g1"}, {"t/u/f2", "g2"}}},
    };
    return list;
}

QStringList contents(const QMap<QString, QString>& listing)
{
    QStringList out;
    for (auto it = listing.begin(); it != listing.end(); ++it)
        if (it.value() != QStringLiteral("<dir>"))
            out.append(it.value());
    out.sort();
    return out;
}

TEST(FaultInjection, NothingIsLostAndUndoRestoresEverything)
{
    for (const Scenario& scenario : scenarios()) {
        for (const Fault fault : {Fault::Fail, Fault::FailTemporary, Fault::Pretend, Fault::Crash}) {
            for (int k = 1; k <= 30; ++k) {
                SCOPED_TRACE(std::string(scenario.label) + " fault " + std::to_string(int(fault)) + " k=" + std::to_string(k));
                World w;
                w.makeFiles(scenario.files);
                for (const auto& [from, to] : scenario.renames)
                    w.addRow("w/" + from, to);
                const QMap<QString, QString> before = w.listing();

                FaultyOperations faulty(w.disk);
                (fault == Fault::Fail            ? faulty.failRename
                 : fault == Fault::FailTemporary ? faulty.failTemporaryRename
                 : fault == Fault::Pretend       ? faulty.pretendRename
                                                 : faulty.crashAtRename) = k;
                bool crashed = false;
                ApplyResult result;
                try {
                    result = w.apply(faulty);
                } catch (const SimulatedCrash&) {
                    crashed = true;
                }
                const QMap<QString, QString> after = w.listing();
                ASSERT_EQ(contents(after), contents(before));  // no file lost or duplicated

                // The snapshot (finished or not) names every temporary left on disk.
                const QString cfg = w.tree.path("cfg");
                const QStringList journals = findUnfinishedJournals(cfg, w.disk);
                QString file = crashed ? (journals.isEmpty() ? QString() : journals.first()) : w.snapshot(1);
                std::vector<SnapshotLine> where;
                if (w.disk.exists(file)) {
                    const auto data = parseSnapshot(QString::fromUtf8(*w.disk.readFile(file)));
                    ASSERT_TRUE(data);
                    where = data->unfinished ? resolveJournal(*data, w.disk) : data->lines;
                }
                QSet<QString> listed;
                for (const SnapshotLine& line : where)
                    listed.insert(line.path.mid(w.tree.path("w").size() + 1));
                for (auto it = after.begin(); it != after.end(); ++it) {
                    if (it.key().contains(kTemporaryPrefix))
                        EXPECT_TRUE(listed.contains(it.key())) << it.key().toStdString();
                    else
                        EXPECT_TRUE(before.contains(it.key()) || listed.contains(it.key())) << it.key().toStdString();
                }
                if (!crashed && result.end == ApplyResult::End::FirstPassFailed) {
                    EXPECT_EQ(after, before);  // rolled back
                    continue;
                }
                if (crashed) {
                    ASSERT_EQ(journals.size(), 1);
                } else {
                    ASSERT_EQ(result.end, ApplyResult::End::Done);
                    EXPECT_TRUE(journals.isEmpty());
                }
                if (file.isEmpty())
                    continue;
                const UndoResult undone = Undo(w.session, w.disk).undoFile(file);
                EXPECT_EQ(undone.end, UndoResult::End::Done);
                EXPECT_EQ(undone.failed, 0);
                EXPECT_EQ(w.listing(), before);
                EXPECT_FALSE(w.disk.exists(file));
            }
        }
    }
}

// A crash while undoing leaves the snapshot as a journal of the undo; undoing it again
// finishes the job.
TEST(FaultInjection, UndoStoppedHalfWayCanBeUndoneAgain)
{
    for (int k = 1; k <= 12; ++k) {
        SCOPED_TRACE(k);
        World w;
        w.makeFiles({"a", "b", "d/x"});
        w.addRow("w/a", "b");
        w.addRow("w/b", "a");
        w.addRow("w/d", "e");
        const QMap<QString, QString> before = w.listing();
        ASSERT_EQ(w.apply().end, ApplyResult::End::Done);
        FaultyOperations faulty(w.disk);
        faulty.crashAtRename = k;
        try {
            Undo(w.session, faulty).undoLast();
        } catch (const SimulatedCrash&) {
        }
        if (w.disk.exists(w.snapshot(1))) {
            EXPECT_EQ(findUnfinishedJournals(w.tree.path("cfg"), w.disk).size(), 1);
            EXPECT_EQ(Undo(w.session, w.disk).undoFile(w.snapshot(1)).failed, 0);
        }
        EXPECT_EQ(w.listing(), before);
    }
}

}  // namespace
}  // namespace qp::test
