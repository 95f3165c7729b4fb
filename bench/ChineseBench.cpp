#include <benchmark/benchmark.h>

#include <random>

#include "commands/AdvancedCommands.h"
#include "core/Session.h"
#include "expressions/ChineseText.h"

namespace {

constexpr int kRows = 100000;

// 100,000 names of four Chinese characters each, drawn with a fixed seed from the characters
// of the main CJK block that the dictionary knows, some of them polyphonic.
const std::vector<QString>& chineseNames()
{
    static const std::vector<QString> names = [] {
        std::vector<char16_t> known;
        for (char32_t c = 0x4E00; c <= 0x9FFF; ++c) {
            if (!qp::chinese::readingsOf(c).empty())
                known.push_back(char16_t(c));
        }
        std::mt19937 random(20240305);
        std::uniform_int_distribution<size_t> pick(0, known.size() - 1);
        std::vector<QString> result;
        result.reserve(kRows);
        for (int i = 0; i < kRows; ++i) {
            QString name(4, Qt::Uninitialized);
            for (QChar& c : name)
                c = QChar(known[pick(random)]);
            result.push_back(std::move(name));
        }
        return result;
    }();
    return names;
}

// The conversion alone: pinyin with tone marks and "_" between the characters.
void BM_PinyinOfFourCharacterNames(benchmark::State& state)
{
    const std::vector<QString>& names = chineseNames();
    qp::chinese::PinyinOptions options;
    options.mode = state.range(0) == 1 ? qp::chinese::PinyinMode::ToneMarks : qp::chinese::PinyinMode::Letters;
    const qp::chinese::PinyinConverter converter(options);
    for (auto _ : state) {
        for (const QString& name : names)
            benchmark::DoNotOptimize(converter.convert(name));
    }
    state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(BM_PinyinOfFourCharacterNames)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// A session with `rows` rows named by `name(i)` and one command in its list.
struct Bench {
    qp::ScriptedInteraction ui;
    qp::Session session{qp::SettingsStore(), ui, QStringLiteral("[20240305140709123]")};

    Bench(const std::function<QString(int)>& name, const char* code,
          const std::vector<std::pair<const char*, const char*>>& params)
    {
        qp::registerAdvancedCommands(session.pipeline().registry());
        qp::RenameList& list = session.renameList();
        list.reserve(kRows);
        for (int i = 0; i < kRows; ++i) {
            qp::FileEntry row;
            row.path = QStringLiteral("/data/photos/");
            row.name = row.newName = name(i);
            row.ext = row.newExt = QStringLiteral(".jpg");
            list.append(std::move(row));
        }
        qp::SettingsStore& store = session.settings();
        store.writeString("CMD_A", "CMDid", code);
        for (const auto& [key, value] : params)
            store.writeString("CMD_A", key, QString::fromUtf8(value));
        store.writeString("CommandList", "1", "CMD_A");
        store.writeInt("CommandList", "CommandListCount", 1);
    }
};

// A302 through the pipeline: each run resets and rewrites every row's new name.
void BM_A302OverFourCharacterNames(benchmark::State& state)
{
    const std::vector<QString>& names = chineseNames();
    Bench bench([&names](int i) { return names[size_t(i)]; }, "A302", {});
    for (auto _ : state)
        benchmark::DoNotOptimize(bench.session.pipeline().runAll(true));
    if (bench.session.renameList().at(0).newName == names[0])
        state.SkipWithError("A302 did not convert the rows");
    state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(BM_A302OverFourCharacterNames)->Unit(benchmark::kMillisecond);

// A101 with group references over name and extension, then the split at the last dot: the
// pattern is compiled (and JIT-compiled) once per run.
void BM_A101GroupReferences(benchmark::State& state)
{
    Bench bench([](int i) { return QStringLiteral("IMG_%1 holiday").arg(i, 7, 10, QLatin1Char('0')); }, "A101",
                {{"A1_RegexText", "^IMG_(\\d+) (\\w+)\\.(\\w+)$"}, {"A1_RegexReplaceText", "$2-$1.$3"}});
    for (auto _ : state)
        benchmark::DoNotOptimize(bench.session.pipeline().runAll(true));
    const qp::FileEntry& last = bench.session.renameList().at(kRows - 1);
    if (last.newName != QStringLiteral("holiday-0099999") || last.newExt != QStringLiteral(".jpg"))
        state.SkipWithError("A101 did not rename the rows");
    state.SetItemsProcessed(state.iterations() * kRows);
}
BENCHMARK(BM_A101GroupReferences)->Unit(benchmark::kMillisecond);

}  // namespace
