// bench_fields DIR TEMPLATE: loads the files of DIR, runs one M101 command with TEMPLATE over
// them cold (every file read) and then again from the field cache, and prints both times.
#include <QCoreApplication>
#include <QElapsedTimer>
#include <cstdio>
#include <cstdlib>

#include "commands/CommandFamilies.h"
#include "core/CommandList.h"
#include "core/Loader.h"
#include "core/Session.h"
#include "core/SettingsKeys.h"
#include "expressions/FieldTags.h"

namespace {

double runMs(qp::Session& session)
{
    QElapsedTimer timer;
    timer.start();
    session.pipeline().runAll(true);
    return double(timer.nsecsElapsed()) / 1e6;
}

}  // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    if (argc != 3) {
        std::fputs("usage: bench_fields DIR TEMPLATE\n", stderr);
        return 2;
    }
    qp::ScriptedInteraction ui;
    qp::Session session(qp::SettingsStore(), ui, QString());
    qp::registerCommandFamilies(session.pipeline().registry());
    session.setCommandRunner({});
    session.settings().writeBool(qp::keys::kOperation, qp::keys::kFlagFindDeepin, true);
    session.settings().writeBool(qp::keys::kOperation, qp::keys::kFlagAddFolder, false);
    qp::Loader(session).addPaths({QString::fromLocal8Bit(argv[1])});

    qp::SettingsStore& store = session.settings();
    const QString section = qp::CommandList::sectionName(QStringLiteral("M1"), QDateTime::currentDateTime());
    store.writeString(section, qp::keys::kCommandId, QStringLiteral("M101"));
    store.writeString(section, QStringLiteral("M1_Template"), QString::fromLocal8Bit(argv[2]));
    store.writeInt(section, QStringLiteral("M1_Missing"), 1);
    store.writeInt(qp::keys::kCommandList, qp::keys::kCommandListCount, 1);
    store.writeString(qp::keys::kCommandList, QStringLiteral("1"), section);

    const double cold = runMs(session);
    const qint64 reads = qp::fieldCacheOf(session).readCount();
    double warm = 1e9;
    for (int i = 0; i < 5; ++i)
        warm = std::min(warm, runMs(session));
    std::printf("%lld rows, %lld reads: cold %.1f ms, from the cache %.2f ms\n",
                static_cast<long long>(session.renameList().size()), static_cast<long long>(reads), cold, warm);
    const qp::FileEntry& first = session.renameList().at(0);
    std::printf("first row: %s -> %s\n", qPrintable(first.fileName()), qPrintable(first.newName));
    std::fflush(stdout);
    std::_Exit(0);
}
