#include <benchmark/benchmark.h>

#include "core/Session.h"

namespace {

// Commands that cost next to nothing, so that what is measured is the pipeline's own work:
// the reset of every row, the dispatch to each command and the write-back of the pair.
class KeepName : public qp::CompiledCommand {
public:
    void apply(const qp::CommandContext&, QString& name, QString&) override { benchmark::DoNotOptimize(name); }
};

class KeepBoth : public qp::CompiledCommand {
public:
    void apply(const qp::CommandContext&, QString& name, QString& ext) override
    {
        benchmark::DoNotOptimize(name);
        benchmark::DoNotOptimize(ext);
    }
};

// 100,000 rows, five commands (three on the main side, two on the extension side), all rows.
void BM_PipelineRunAll(benchmark::State& state)
{
    qp::ScriptedInteraction ui;
    qp::Session session(qp::SettingsStore(), ui, QStringLiteral("[20240305140709123]"));
    qp::RenameList& list = session.renameList();
    list.reserve(100000);
    for (int i = 0; i < 100000; ++i) {
        qp::FileEntry row;
        row.path = QStringLiteral("/data/photos/album%1/").arg(i / 100);
        row.name = row.newName = QStringLiteral("IMG_%1").arg(i, 7, 10, QLatin1Char('0'));
        row.ext = row.newExt = QStringLiteral(".jpg");
        list.append(std::move(row));
    }
    qp::CommandRegistry& registry = session.pipeline().registry();
    registry.registerCommand("N101", [](const qp::CommandSection&) { return std::make_unique<KeepName>(); });
    registry.registerCommand("E101", [](const qp::CommandSection&) { return std::make_unique<KeepBoth>(); });
    qp::SettingsStore& store = session.settings();
    const char* codes[] = {"N101", "E101", "N101", "E101", "N101"};
    for (int i = 1; i <= 5; ++i) {
        const QString section = QStringLiteral("CMD_X%1").arg(i);
        store.writeString(section, "CMDid", codes[i - 1]);
        store.writeString("CommandList", QString::number(i), section);
    }
    store.writeInt("CommandList", "CommandListCount", 5);

    for (auto _ : state)
        benchmark::DoNotOptimize(session.pipeline().runAll(true));
    state.SetItemsProcessed(state.iterations() * 100000 * 5);
}
BENCHMARK(BM_PipelineRunAll)->Unit(benchmark::kMillisecond);

}  // namespace
