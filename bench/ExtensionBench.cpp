#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "commands/ExtensionCommands.h"
#include "core/Session.h"

namespace {

constexpr int kRows = 100000;
constexpr int kFiles = 1000;

// Real files in one folder, each named by a hundred rows, so that every row passes the
// folder test as a file and the pattern does its work on each. (Creating 100,000 files
// takes far longer than the runs being measured.)
class Folder {
public:
    Folder()
    {
        root = std::filesystem::temp_directory_path() / ("quillet-bench-" + std::to_string(std::random_device()()));
        std::filesystem::create_directories(root);
        char name[64];
        for (int i = 0; i < kFiles; ++i) {
            std::snprintf(name, sizeof name, "IMG_%07d.raw%d", i, i);
            std::ofstream(root / name);
        }
    }
    ~Folder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(root, ignored);
    }
    std::filesystem::path root;
};

// E501 with group references over every row of the list through the pipeline: the pattern
// is compiled once per run, each row costs an attribute read and one substitution.
// Argument 0: the rows are files on disk and are renamed. Argument 1: their folder is gone,
// so every row's attribute read fails at once and the rows count as folders; what remains
// is the pattern's own work.
void BM_E501GroupReferences(benchmark::State& state)
{
    static Folder folder;
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
        row.name = row.newName = QStringLiteral("IMG_%1").arg(i % kFiles, 7, 10, QLatin1Char('0'));
        row.ext = row.newExt = QStringLiteral(".raw%1").arg(i % kFiles);
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
    if (list.at(kRows - 1).newExt != (gone ? QStringLiteral(".raw999") : QStringLiteral(".999_raw")))
        state.SkipWithError("E501 did not rename the rows");
    state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(BM_E501GroupReferences)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
