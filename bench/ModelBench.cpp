// The rename grid over a list of 1,000,000 rows: sorting by each sortable column (the rows
// themselves are reordered), the cells of one screen, and painting the grid after a jump to
// a random place, which is what scrolling costs.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QHeaderView>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QTableView>
#include <numeric>
#include <random>

#include "core/RenameList.h"
#include "ui/models/RenameListModel.h"

namespace {

using qp::ui::RenameListModel;

constexpr qsizetype kRows = 1000000;

// Rows as a load of a photo and document archive would make them: 1,000 folders of 1,000
// objects, names with numbers in them, a few extensions shared between rows, in the order
// of a folder walk (not sorted by anything).
struct BigList {
    qp::RenameList list;
    std::vector<qsizetype> shuffled;  // a random order to start every sort from

    BigList()
    {
        QRandomGenerator random(20240305);
        const QString exts[] = {QStringLiteral(".jpg"), QStringLiteral(".JPG"), QStringLiteral(".png"),
                                QStringLiteral(".docx"), QStringLiteral(".mp3"), QString()};
        const QString stems[] = {QStringLiteral("IMG_"), QStringLiteral("照片"), QStringLiteral("Report "),
                                 QStringLiteral("scan-"), QStringLiteral("旅行笔记 ")};
        list.reserve(kRows);
        std::vector<qp::FileEntry> rows;
        rows.reserve(size_t(kRows));
        for (qsizetype folder = 0; folder < kRows / 1000; ++folder) {
            const QString path = QStringLiteral("/archive/%1/年份 %2/").arg(folder % 37).arg(folder);
            for (int i = 0; i < 1000; ++i) {
                qp::FileEntry row;
                row.path = path;
                row.isFolder = i == 0;
                row.name = stems[random.bounded(5)] + QString::number(random.bounded(100000));
                row.ext = row.isFolder ? QString() : exts[random.bounded(6)];
                row.newName = row.name;
                row.newExt = row.ext;
                row.size = random.generate64() % (std::uint64_t(1) << 32);
                row.modified = qint64(random.generate64() % (std::uint64_t(1) << 50));
                row.attributes = row.isFolder ? 0x10 : (random.bounded(4) == 0 ? 0x21 : 0x20);
                row.state = int(random.bounded(3));
                row.selected = random.bounded(10) != 0;
                rows.push_back(std::move(row));
            }
        }
        list.appendAll(std::move(rows), {});
        shuffled.resize(size_t(kRows));
        std::iota(shuffled.begin(), shuffled.end(), qsizetype(0));
        std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(7));
    }
};

BigList& bigList()
{
    static BigList list;
    return list;
}

void BM_SortByColumn(benchmark::State& state)
{
    BigList& big = bigList();
    RenameListModel model(big.list);
    const int column = int(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        big.list.reorder(big.shuffled);
        state.ResumeTiming();
        model.sort(column, Qt::AscendingOrder);
    }
    state.SetLabel(model.headerData(column, Qt::Horizontal, Qt::ToolTipRole).toString().toStdString());
}
BENCHMARK(BM_SortByColumn)
    ->DenseRange(RenameListModel::ColSelected, RenameListModel::ColFolder)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(2);

// Every cell of a screenful (40 rows) with the roles a view asks for.
void BM_ScreenOfCells(benchmark::State& state)
{
    RenameListModel model(bigList().list);
    QRandomGenerator random(1);
    for (auto _ : state) {
        const int top = int(random.bounded(quint32(kRows - 40)));
        for (int r = top; r < top + 40; ++r) {
            for (int c = 0; c < RenameListModel::ColPdfPassword; ++c) {
                const QModelIndex index = model.index(r, c);
                for (int role : {int(Qt::DisplayRole), int(Qt::DecorationRole), int(Qt::CheckStateRole),
                                 int(Qt::ForegroundRole), int(Qt::TextAlignmentRole)})
                    benchmark::DoNotOptimize(model.data(index, role));
            }
        }
    }
}
BENCHMARK(BM_ScreenOfCells)->Unit(benchmark::kMicrosecond);

// A jump of the scroll bar to a random place and the repaint of the grid that follows
// (1280 × 800 pixels, as the window opens).
void BM_ScrollAndPaint(benchmark::State& state)
{
    RenameListModel model(bigList().list);
    QTableView view;
    view.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    view.verticalHeader()->setDefaultSectionSize(22);
    view.verticalHeader()->hide();
    view.setModel(&model);
    for (int c = RenameListModel::ColPdfPassword; c < RenameListModel::ColumnCount; ++c)
        view.hideColumn(c);
    view.resize(1280, 800);
    view.show();
    QApplication::processEvents();
    QScrollBar* bar = view.verticalScrollBar();
    QRandomGenerator random(2);
    for (auto _ : state) {
        bar->setValue(int(random.bounded(quint32(bar->maximum()))));
        view.viewport()->repaint();
    }
}
BENCHMARK(BM_ScrollAndPaint)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char* argv[])
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
