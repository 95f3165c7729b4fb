#include <benchmark/benchmark.h>

#include <QDir>

#include "core/Session.h"
#include "execution/Preview.h"

namespace {

// 100,000 rows in one folder that does not exist: 10,000 rows all proposing the same name
// (numbered 2 … 10,000), a chain of 10,000 renames each onto the next row's current name,
// 5,000 pairs that swap names and 70,000 plain renames to free names. Every link of the
// chain but the last and every swap is a conflict (19,999), so the cycle search runs too.
struct BenchList {
    qp::ScriptedInteraction ui;
    qp::Session session{qp::SettingsStore(), ui, QStringLiteral("[20240305140709123]")};
    std::vector<QString> proposed;

    BenchList()
    {
        const QString folder = QDir::tempPath() + QStringLiteral("/qp-preview-bench-absent/");
        qp::RenameList& list = session.renameList();
        list.reserve(100000);
        auto add = [&](const QString& name, const QString& target) {
            qp::FileEntry row;
            row.path = folder;
            row.name = name;
            row.ext = QStringLiteral(".jpg");
            row.newName = target;
            row.newExt = row.ext;
            proposed.push_back(target);
            list.append(std::move(row));
        };
        for (int i = 0; i < 10000; ++i)
            add(QStringLiteral("dup%1").arg(i), QStringLiteral("holiday"));
        for (int i = 0; i < 10000; ++i)
            add(QStringLiteral("chain%1").arg(i), QStringLiteral("chain%1").arg(i + 1));
        for (int i = 0; i < 5000; ++i) {
            add(QStringLiteral("swapA%1").arg(i), QStringLiteral("swapB%1").arg(i));
            add(QStringLiteral("swapB%1").arg(i), QStringLiteral("swapA%1").arg(i));
        }
        for (int i = 0; i < 70000; ++i)
            add(QStringLiteral("IMG_%1").arg(i), QStringLiteral("photo_%1").arg(i));
    }

    void restore()
    {
        qp::RenameList& list = session.renameList();
        for (qsizetype i = 0; i < list.size(); ++i)
            list[i].newName = proposed[size_t(i)];
        session.messages().clear();
    }
};

void runPreview(benchmark::State& state, bool realDiskCheck)
{
    BenchList bench;
    qp::Preview preview(bench.session);
    if (!realDiskCheck)
        preview.setDiskCheck([](const QString&) { return false; });
    for (auto _ : state) {
        state.PauseTiming();
        bench.restore();
        state.ResumeTiming();
        const qp::PreviewResult result = preview.run(false);
        if (!result.foundExistAndExchange || result.conflictRows.size() != 19999)
            state.SkipWithError("unexpected preview result");
        benchmark::DoNotOptimize(result);
    }
}

// Every free target is looked up on disk (a failing stat per row, 80,000 of them).
void BM_Preview100kWithDiskCheck(benchmark::State& state) { runPreview(state, true); }
// The same with the disk look-up answered in memory: the preview's own work.
void BM_Preview100kNoDiskCheck(benchmark::State& state) { runPreview(state, false); }

BENCHMARK(BM_Preview100kWithDiskCheck)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Preview100kNoDiskCheck)->Unit(benchmark::kMillisecond);

}  // namespace
