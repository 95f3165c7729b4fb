#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>

#include "commands/ExtensionCommands.h"
#include "core/Session.h"

namespace {

constexpr int kRows = 100000;

// Real files in one folder, so that every row passes the folder test as a file and the
// pattern does its work on each. Making 100,000 files costs far more than the runs being
// measured (and leaves the folder's directory blocks cold), so the folder is kept in the
// temporary folder and reused by later benchmark processes; a marker file written last
// tells a complete folder from one cut short.
class Folder {
public:
    explicit Folder(int files)
    {
        root = std::filesystem::temp_directory_path() / ("quillet-bench-files-" + std::to_string(files));
        const auto marker = root / ".complete";
        if (std::filesystem::exists(marker))
            return;
        std::filesystem::create_directories(root);
        char name[64];
        for (int i = 0; i < files; ++i) {
            std::snprintf(name, sizeof name, "IMG_%07d.raw%d", i, i);
            std::ofstream(root / name);
        }
        std::ofstream(root / ".complete");
    }
    std::filesystem::path root;
};

// E501 with group references over every row of the list through the pipeline: the pattern
// is compiled once per run, each row costs a folder test and one substitution.
// Argument 0: 100,000 distinct files on disk, one per row. Argument 1: their folder is gone,
// so every row's folder test fails at once and the rows count as folders; what remains is
// the pattern's own work.
void BM_E501GroupReferences(benchmark::State& state)
{
    static Folder folder(kRows);
    const bool gone = state.range(0) == 1;
    qp::ScriptedInteraction ui;
    qp::Session session(qp::SettingsStore(), ui, QStringLiteral("[20240305140709123]"));
    qp::registerExtensionCommands(session.pipeline().registry());
    qp::RenameList& list = session.renameList();
    list.reserve(kRows);
    const QString path = QString::fromStdU16String(folder.root.generic_u16string()) + (gone ? "-gone/" : "/");
    for (int i = 0; i < kRows; ++i) {
        qp::FileEntry row;
        row.path = path;
        row.name = row.newName = QStringLiteral("IMG_%1").arg(i, 7, 10, QLatin1Char('0'));
        row.ext = row.newExt = QStringLiteral(".raw%1").arg(i);
        list.append(std::move(row));
    }
    qp::SettingsStore& store = session.settings();
    store.writeString("CMD_E501", "CMDid", "E501");
    store.writeString("CMD_E501", "E5_RegexText", "([a-z]+)(\\d+)");
    store.writeString("CMD_E501", "E5_RegexReplaceText", "$2_${1}");
    store.writeString("CommandList", "1", "CMD_E501");
    store.writeInt("CommandList", "CommandListCount", 1);

    for (auto _ : state)
        benchmark::DoNotOptimize(session.pipeline().runAll(true));
    if (list.at(kRows - 1).newExt != (gone ? QStringLiteral(".raw99999") : QStringLiteral(".99999_raw")))
        state.SkipWithError("E501 did not rename the rows");
    state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(BM_E501GroupReferences)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
