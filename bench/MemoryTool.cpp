// bench_memory [ROWS]: builds ROWS rows (default 1,000,000) as a recursive load would,
// 1,000 per folder, and prints the peak resident memory per row beyond the UTF-16
// characters the rows hold.
#include <QCoreApplication>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "core/Loader.h"
#include "core/RenameList.h"

namespace {

long peakKiB()
{
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind("VmHWM:", 0) == 0)
            return std::atol(line.c_str() + 6);
    }
    return 0;
}

}  // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    const long rows = argc > 1 ? std::atol(argv[1]) : 1000000;
    const long before = peakKiB();
    qp::RenameList list;
    qp::RowMaker maker;
    qp::LoadCandidates candidates;
    long long characters = 4;  // the shared ".jpg"
    QString folder;
    for (long i = 0; i < rows; ++i) {
        if (i % 1000 == 0) {
            folder = QStringLiteral("/home/user/Pictures/2024/album%1/").arg(i / 1000, 4, 10, QLatin1Char('0'));
            characters += folder.size();
        }
        const QString fileName = QStringLiteral("IMG_%1.jpg").arg(i, 7, 10, QLatin1Char('0'));
        candidates.rows.push_back(maker.make(folder, fileName, {}));
        // The row's own name, and its full path kept as the known-path key.
        characters += fileName.size() - 4 + folder.size() + fileName.size();
    }
    list.appendAll(std::move(candidates.rows), {});
    const double bytes = double(peakKiB() - before) * 1024.0;
    const double perRow = (bytes - double(characters) * 2.0) / double(rows);
    std::printf("%ld rows: peak %.1f MiB, %.0f bytes per row beyond %.1f MiB of characters\n", rows,
                bytes / 1048576.0, perRow, double(characters) * 2.0 / 1048576.0);
    return 0;
}
