// Expands "<CRC32>", "<MD5>" or "<SHA1>" for one file the way a command does and prints the
// value and the wall time; bench/hash-vs-tools.sh compares it with the usual tools.
#include <QElapsedTimer>
#include <QFileInfo>
#include <QTextStream>

#include "core/Session.h"
#include "expressions/MetaVariables.h"

int main(int argc, char** argv)
{
    QTextStream out(stdout);
    if (argc != 3) {
        QTextStream(stderr) << "usage: bench_hash <CRC32>|<MD5>|<SHA1> FILE\n";
        return 2;
    }
    qp::ScriptedInteraction ui;
    qp::Session session(qp::SettingsStore(), ui, QStringLiteral("[20240305140709123]"));
    const QFileInfo file(QString::fromLocal8Bit(argv[2]));
    qp::FileEntry row;
    row.path = file.absolutePath() + u'/';
    row.name = file.completeBaseName();
    row.ext = file.suffix().isEmpty() ? QString() : u'.' + file.suffix();
    session.renameList().append(row);
    QElapsedTimer timer;
    timer.start();
    const QString value = qp::expandMetaVariables(session, QString::fromLocal8Bit(argv[1]), 0);
    const qint64 ms = timer.elapsed();
    out << value << ' ' << ms << " ms\n";
    return value.isEmpty() ? 1 : 0;
}
