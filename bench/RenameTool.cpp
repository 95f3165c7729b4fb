// Times apply and undo of many plain renames in one folder against a bare loop of
// no-replace renames over the same files. The files are created once and renamed back and
// forth, since a file system is slow to create files for a while after a large delete.
//
//   bench_rename <empty or earlier folder> [count=100000] [rounds=3]
//
// Prints one line per measurement, in milliseconds, then the medians and the ratios of
// apply and undo to the bare loop.
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/syscall.h>
#include <linux/fs.h>
#endif

#include "core/Interaction.h"
#include "core/PathText.h"
#include "core/Session.h"
#include "core/SettingsKeys.h"
#include "execution/FileOperations.h"
#include "execution/Preview.h"
#include "execution/RenameRunner.h"
#include "execution/Undo.h"

namespace {

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

QString nameOf(char side, int i) { return QStringLiteral("%1%2.dat").arg(QChar(side)).arg(i, 6, 10, QLatin1Char('0')); }

// The bare loop: renameat2(RENAME_NOREPLACE) from one name set to the other, by full path
// and from the last file to the first, as apply does its renames.
double bareLoop(const QString& folder, int count, char from, char to)
{
    const int fd = AT_FDCWD;
    std::vector<QByteArray> a, b;
    for (int i = 0; i < count; ++i) {
        a.push_back(QFile::encodeName(folder + u'/' + nameOf(from, i)));
        b.push_back(QFile::encodeName(folder + u'/' + nameOf(to, i)));
    }
    QElapsedTimer timer;
    timer.start();
    for (int i = count - 1; i >= 0; --i) {
#ifdef __linux__
        if (syscall(SYS_renameat2, fd, a[size_t(i)].constData(), fd, b[size_t(i)].constData(), RENAME_NOREPLACE) != 0)
#else
        if (::renameat(fd, a[size_t(i)].constData(), fd, b[size_t(i)].constData()) != 0)
#endif
            std::perror("rename");
    }
    const double ms = double(timer.nsecsElapsed()) / 1e6;
    return ms;
}

}  // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "usage: bench_rename <folder> [count] [rounds]\n");
        return 2;
    }
    const QString root = QDir(QString::fromLocal8Bit(argv[1])).absolutePath();
    const int count = argc > 2 ? std::atoi(argv[2]) : 100000;
    const int rounds = argc > 3 ? std::atoi(argv[3]) : 3;
    const QString folder = root + QStringLiteral("/files/");
    QDir().mkpath(folder);
    QDir().mkpath(root + QStringLiteral("/cfg"));
    // Create the "a" names once; a previous run may have left them as "b".
    for (int i = 0; i < count; ++i) {
        const QString a = folder + nameOf('a', i);
        if (!QFile::exists(a) && !QFile::rename(folder + nameOf('b', i), a)) {
            QFile file(a);
            file.open(QIODevice::WriteOnly);
        }
    }

    qp::DiskOperations disk;
    std::vector<double> bare, applyAll, applyRunner, undoAll;
    for (int round = 0; round < rounds; ++round) {
        for (const auto& [from, to] : {std::pair{'a', 'b'}, std::pair{'b', 'a'}}) {
            bare.push_back(bareLoop(folder, count, from, to));
            std::printf("bare renameat2 %c->%c   %9.1f ms\n", from, to, bare.back());
        }

        qp::ScriptedInteraction ui;
        ui.answer(QStringLiteral("apply.mode"), {qp::Button::No});  // smart rename
        qp::SettingsStore store;
        store.setFileName(root + QStringLiteral("/cfg/QuilletPro.ini"));
        qp::Session session(std::move(store), ui, QStringLiteral("[bench%1]").arg(round));
        std::vector<qp::FileEntry> rows(static_cast<size_t>(count));
        for (int i = 0; i < count; ++i) {
            qp::FileEntry& row = rows[size_t(i)];
            row.path = folder;
            row.name = nameOf('a', i).chopped(4);
            row.ext = row.newExt = QStringLiteral(".dat");
            row.newName = nameOf('b', i).chopped(4);
        }
        session.renameList().appendAll(std::move(rows), {});

        double previewMs = 0;
        qp::RenameRunner runner(session, disk, [&](bool simple) {
            QElapsedTimer t;
            t.start();
            qp::PreviewResult r = qp::Preview(session).run(simple);
            previewMs = double(t.nsecsElapsed()) / 1e6;
            return r;
        });
        QElapsedTimer timer;
        timer.start();
        const qp::ApplyResult result = runner.apply();
        const double applyMs = double(timer.nsecsElapsed()) / 1e6;
        applyAll.push_back(applyMs);
        applyRunner.push_back(applyMs - previewMs);
        std::printf("apply (with preview)  %9.1f ms  preview %.1f ms  renames+journal %.1f ms  renamed %lld\n", applyMs,
                    previewMs, applyMs - previewMs, static_cast<long long>(result.succeeded));
        timer.restart();
        const qp::UndoResult undone = qp::Undo(session, disk).undoLast();
        undoAll.push_back(double(timer.nsecsElapsed()) / 1e6);
        std::printf("undo                  %9.1f ms  restored %lld\n", undoAll.back(),
                    static_cast<long long>(undone.succeeded));
    }
    const double base = median(bare);
    std::printf("median: bare %.1f ms, apply %.1f ms (%.2fx), apply without preview %.1f ms (%.2fx), undo %.1f ms "
                "(%.2fx)\n",
                base, median(applyAll), median(applyAll) / base, median(applyRunner), median(applyRunner) / base,
                median(undoAll), median(undoAll) / base);
    return 0;
}
