// Any text as a Pascal script: compiling must end in a tree or a positioned error, and a
// script that compiles runs within small budgets over a row, never past them.
#include <cstdint>
#include <memory>

#include "commands/ScriptCommands.h"
#include "core/Session.h"

namespace {

qp::Session& session()
{
    static qp::ScriptedInteraction ui;
    static const std::unique_ptr<qp::Session> made = [] {
        auto s = std::make_unique<qp::Session>(qp::SettingsStore(), ui, QStringLiteral("[20240101000000000]"));
        qp::FileEntry row;
        row.path = QStringLiteral("/fuzz/");
        row.name = row.newName = QStringLiteral("IMG_0042 照片");
        row.ext = row.newExt = QStringLiteral(".jpg");
        s->renameList().append(row);
        return s;
    }();
    return *made;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    qp::pascal::Limits limits;
    limits.operationsPerRow = 20'000;
    limits.timeLimitMs = 200;
    limits.maxStringLength = 1 << 16;
    limits.maxArrayLength = 1 << 12;
    const QString source = QString::fromUtf8(reinterpret_cast<const char*>(data), qsizetype(size));
    qp::scriptcommands::PascalRenamer renamer(source, limits);
    if (!renamer.compiled()) {
        if (renamer.errorMessage().isEmpty())
            __builtin_trap();  // every failure says where and why
        return 0;
    }
    QString name = QStringLiteral("IMG_0042 照片.jpg");
    for (int row = 0; row < 2 && renamer.rename(session(), 0, name); ++row) {
    }
    return 0;
}
