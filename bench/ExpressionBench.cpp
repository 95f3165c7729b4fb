#include <benchmark/benchmark.h>

#include "core/Session.h"
#include "expressions/MetaVariables.h"

namespace {

void fillRows(qp::Session& session, int rows)
{
    qp::RenameList& list = session.renameList();
    list.reserve(rows);
    for (int i = 0; i < rows; ++i) {
        qp::FileEntry row;
        row.path = QStringLiteral("/data/photos/album%1/").arg(i / 100);
        row.name = row.newName = QStringLiteral("IMG_%1").arg(i, 7, 10, QLatin1Char('0'));
        row.ext = row.newExt = QStringLiteral(".jpg");
        list.append(std::move(row));
    }
}

// One command run: the expression is compiled once and expanded for 100,000 rows.
void expandAll(benchmark::State& state, const QString& text)
{
    qp::ScriptedInteraction ui;
    qp::Session session(qp::SettingsStore(), ui, QStringLiteral("[20240305140709123]"));
    fillRows(session, 100000);
    session.settings().writeString("UnitVariable", "<SUBSTR>", "2/3");
    session.settings().writeString("UnitVariable", "<SAMPLENO>", "1/1/6");
    for (auto _ : state) {
        const qp::MetaExpression expression(text);
        for (qsizetype row = 0; row < 100000; ++row) {
            QString out = expression.expand(session, row);
            benchmark::DoNotOptimize(out);
        }
    }
    state.SetItemsProcessed(state.iterations() * 100000);
}

void BM_ExpandNameSubstrSampleNo(benchmark::State& state)
{
    expandAll(state, QStringLiteral("<NAME>_<SUBSTR>_<SAMPLENO>"));
}
BENCHMARK(BM_ExpandNameSubstrSampleNo)->Unit(benchmark::kMillisecond);

// A text without tags: only its brackets are removed, once.
void BM_ExpandConstantText(benchmark::State& state) { expandAll(state, QStringLiteral("photo <2024> album")); }
BENCHMARK(BM_ExpandConstantText)->Unit(benchmark::kMillisecond);

// Five tags, two of them a composed date group.
void BM_ExpandMixed(benchmark::State& state)
{
    expandAll(state, QStringLiteral("<DATE>_<CNAME>-<DIR>-<R><.EXT>"));
}
BENCHMARK(BM_ExpandMixed)->Unit(benchmark::kMillisecond);

}  // namespace
