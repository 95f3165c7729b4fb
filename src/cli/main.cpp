// quillet: the rename engine on the command line.
#include <QCoreApplication>
#include <QTextStream>
#include <cstdio>

#include "cli/CliApp.h"

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("quillet"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QP_VERSION));
    QTextStream out(stdout);
    QTextStream err(stderr);
    return qp::cli::CliApp(out, err).run(QCoreApplication::arguments());
}
