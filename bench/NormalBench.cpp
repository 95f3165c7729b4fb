#include <benchmark/benchmark.h>

#include "commands/NormalCommands.h"
#include "core/Session.h"

namespace {

constexpr int kRows = 100000;

struct Command {
    const char* code;
    std::vector<std::pair<const char*, const char*>> params;
};

// A typical stack of everyday commands over 100,000 rows through the real pipeline: two
// find/replace pairs, text with a meta-variable put in front, a three-digit number, word
// capitals and a run deleted from the end. Each run compiles the five commands once.
void BM_FiveTypicalCommands(benchmark::State& state)
{
    qp::ScriptedInteraction ui;
    qp::Session session(qp::SettingsStore(), ui, QStringLiteral("[20240305140709123]"));
    qp::registerNormalCommands(session.pipeline().registry());
    qp::RenameList& list = session.renameList();
    list.reserve(kRows);
    for (int i = 0; i < kRows; ++i) {
        qp::FileEntry row;
        row.path = QStringLiteral("/data/music/album %1/").arg(i / 100);
        row.name = row.newName = QStringLiteral("artist_name - song title %1 (live)").arg(i);
        row.ext = row.newExt = QStringLiteral(".mp3");
        list.append(std::move(row));
    }
    const Command commands[] = {
        {"N201", {{"N2_SearchText", "_|(live)"}, {"N2_ReplaceText", " |[Live]"}}},
        {"N101", {{"N1_AddStr", "<NAME>-"}, {"N1_AddLeft", "1"}}},
        {"N401", {{"N4_InsertPos", "0"}, {"N4_DigitUnits", "3"}}},
        {"N607", {{"N6_Separator", " "}}},
        {"N303", {{"N3_DelFrom", "1"}, {"N3_DelTo", "2"}, {"N3_DelFromToFromRight", "1"}}},
    };
    qp::SettingsStore& store = session.settings();
    int n = 0;
    for (const Command& command : commands) {
        const QString section = QStringLiteral("CMD_%1").arg(++n);
        store.writeString(section, "CMDid", command.code);
        for (const auto& [key, value] : command.params)
            store.writeRaw(section, key, QString::fromUtf8(value));
        store.writeString("CommandList", QString::number(n), section);
    }
    store.writeInt("CommandList", "CommandListCount", n);

    for (auto _ : state)
        benchmark::DoNotOptimize(session.pipeline().runAll(true));
    state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(BM_FiveTypicalCommands)->Unit(benchmark::kMillisecond);

}  // namespace
