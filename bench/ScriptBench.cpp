// The script commands over 100,000 rows through the real pipeline: a Pascal script of about
// twenty lines, and a one-line Python script including the interpreter's start-up.
#include <benchmark/benchmark.h>

#include <QStandardPaths>

#include "commands/ScriptCommands.h"
#include "core/CommandRegistry.h"
#include "core/Session.h"
#include "core/SettingsKeys.h"

namespace {

using qp::scriptcommands::Language;

constexpr int kRows = 100000;

const char kPascal[] = R"(var
  n, i: Integer;
  base, ext, digits: String;
begin
  Inc(n);
  base := WideExtractBaseName(FileName);
  ext := LowerCase(ExtractFileExt(FileName));
  digits := '';
  for i := 1 to Length(base) do
    if base[i] in ['0'..'9'] then
      digits := digits + base[i];
  if digits = '' then
    digits := IntToStr(n);
  base := StringReplace(base, ' ', '_', [rfReplaceAll]);
  if Length(base) > 20 then
    base := Copy(base, 1, 20);
  FileName := Format('%.5d_', [n]) + UpperCase(base) + '_' + digits + ext;
end.)";

const char kPython[] = "def rename(rows): [row.update(name=row['name'].upper()) for row in rows]";

struct Bench {
    qp::ScriptedInteraction ui;
    qp::Session session{qp::SettingsStore(), ui, QStringLiteral("[20240305140709123]")};

    Bench(Language language, const char* script)
    {
        qp::scriptcommands::registerScriptCommands(session.pipeline().registry());
        qp::SettingsStore& store = session.settings();
        const QString section = QStringLiteral("CMD_BENCH");
        store.writeString(section, qp::keys::kCommandId, qp::scriptcommands::subCode(language));
        qp::scriptcommands::writeScript(store, section, language, QString::fromUtf8(script));
        store.writeInt(qp::keys::kCommandList, qp::keys::kCommandListCount, 1);
        store.writeString(qp::keys::kCommandList, QStringLiteral("1"), section);
        session.renameList().reserve(kRows);
        for (int i = 0; i < kRows; ++i) {
            qp::FileEntry row;
            row.path = QStringLiteral("/home/user/Pictures/2024 holiday/");
            row.name = row.newName = QStringLiteral("Holiday photo %1").arg(i);
            row.ext = row.newExt = QStringLiteral(".JPG");
            row.size = 1234567;
            row.modified = 1714555815000000000;
            session.renameList().append(row);
        }
    }
};

void BM_PascalScript100kRows(benchmark::State& state)
{
    Bench bench(Language::Pascal, kPascal);
    for (auto _ : state)
        bench.session.pipeline().runAll(true);
    if (bench.session.renameList()[kRows - 1].newName != QStringLiteral("100000_HOLIDAY_PHOTO_99999_99999"))
        state.SkipWithError("the script did not rename the rows");
}
BENCHMARK(BM_PascalScript100kRows)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_PythonScript100kRows(benchmark::State& state)
{
    if (QStandardPaths::findExecutable(QStringLiteral("python3")).isEmpty()) {
        state.SkipWithError("python3 is not installed");
        return;
    }
    Bench bench(Language::Python, kPython);
    for (auto _ : state)
        bench.session.pipeline().runAll(true);
    if (bench.session.renameList()[kRows - 1].newName != QStringLiteral("HOLIDAY PHOTO 99999"))
        state.SkipWithError("the script did not rename the rows");
}
BENCHMARK(BM_PythonScript100kRows)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
