#include <benchmark/benchmark.h>

#include "core/Interaction.h"
#include "core/Loader.h"
#include "core/RowFilter.h"
#include "core/Session.h"

namespace {

// 100,000 rows in 1,000 folders; every row is tested and about half leave the list.
void BM_FilterRows(benchmark::State& state)
{
    qp::LoadCandidates rows;
    qp::RowMaker maker;
    for (int i = 0; i < 100000; ++i) {
        const QString folder = QStringLiteral("/data/photos/album%1/").arg(i / 100, 4, 10, QLatin1Char('0'));
        const QString name = QStringLiteral("IMG_%1.%2").arg(i, 7, 10, QLatin1Char('0')).arg(QLatin1String(i % 2 ? "jpg" : "png"));
        rows.rows.push_back(maker.make(folder, name, {}));
    }
    qp::RowFilterSpec spec;
    spec.syntax = state.range(0) ? qp::RowFilterSpec::Syntax::Regex : qp::RowFilterSpec::Syntax::Wildcard;
    spec.pattern = state.range(0) ? QStringLiteral("^img_\\d+\\.jpg$") : QStringLiteral("img_*.jpg");
    qp::ScriptedInteraction ui;
    qp::Session session(qp::SettingsStore(), ui, QStringLiteral("[1]"));
    for (auto _ : state) {
        state.PauseTiming();
        session.renameList().clear();
        session.renameList().appendAll(std::vector<qp::FileEntry>(rows.rows), {});
        state.ResumeTiming();
        benchmark::DoNotOptimize(qp::filterRows(session, spec));
    }
    state.SetItemsProcessed(state.iterations() * 100000);
}
// Argument 0: wildcard masks, ignoring case; 1: a regular expression, ignoring case.
BENCHMARK(BM_FilterRows)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
