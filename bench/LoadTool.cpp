// bench_load DIR: loads DIR with "遍历文件夹" on and prints rows and milliseconds.
#include <QCoreApplication>
#include <QElapsedTimer>
#include <cstdio>
#include <cstdlib>

#include "core/Loader.h"
#include "core/Session.h"
#include "core/SettingsKeys.h"

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    if (argc != 2) {
        std::fputs("usage: bench_load DIR\n", stderr);
        return 2;
    }
    qp::ScriptedInteraction ui;
    qp::Session session(qp::SettingsStore(), ui, QString());
    session.settings().writeBool(qp::keys::kOperation, qp::keys::kFlagFindDeepin, true);
    qp::Loader loader(session);
    QElapsedTimer timer;
    timer.start();
    const qp::LoadResult result = loader.addPaths({QString::fromLocal8Bit(argv[1])});
    const double ms = double(timer.nsecsElapsed()) / 1e6;
    std::printf("%lld rows in %.1f ms\n", static_cast<long long>(result.added), ms);
    std::fflush(stdout);
    // The rows would stay loaded in the program; freeing them is not part of loading.
    std::_Exit(0);
}
