#include <benchmark/benchmark.h>

#include "core/Loader.h"
#include "core/RenameList.h"

namespace {

QString folderOf(int i) { return QStringLiteral("/data/photos/album%1/").arg(i / 100, 4, 10, QLatin1Char('0')); }

qp::LoadCandidates makeCandidates(int count, int offset)
{
    qp::LoadCandidates candidates;
    candidates.rows.reserve(size_t(count));
    qp::RowMaker maker;
    for (int i = 0; i < count; ++i) {
        const int n = i + offset;
        candidates.rows.push_back(
            maker.make(folderOf(n), QStringLiteral("IMG_%1.jpg").arg(n, 7, 10, QLatin1Char('0')), {}));
    }
    return candidates;
}

// 100,000 new candidates against 100,000 listed rows, half of them already listed.
void BM_DropKnownAndRepeated(benchmark::State& state)
{
    qp::RenameList list;
    qp::LoadCandidates listed = makeCandidates(100000, 0);
    list.appendAll(std::move(listed.rows), {});
    const qp::LoadCandidates fresh = makeCandidates(100000, 50000);
    for (auto _ : state) {
        state.PauseTiming();
        qp::LoadCandidates candidates = fresh;
        state.ResumeTiming();
        benchmark::DoNotOptimize(qp::dropKnownAndRepeated(candidates, list, state.range(0) != 0));
    }
    state.SetItemsProcessed(state.iterations() * 100000);
}
// Argument 1: the candidates came from several chosen paths and may repeat each other.
BENCHMARK(BM_DropKnownAndRepeated)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
