#include "ui/dialogs/MetaVariableWarningForms.h"

#include <QCheckBox>
#include <QCryptographicHash>
#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <zlib.h>

namespace qp::ui {

namespace {

constexpr qint64 kMiB = 1024 * 1024;

// Hashes a block over and over for a few milliseconds; bytes per second.
template <typename Hash>
double speedOf(const QByteArray& block, Hash hash)
{
    QElapsedTimer timer;
    timer.start();
    qint64 bytes = 0;
    do {
        hash(block);
        bytes += block.size();
    } while (timer.nsecsElapsed() < 15'000'000);
    return double(bytes) * 1e9 / double(std::max<qint64>(timer.nsecsElapsed(), 1));
}

}  // namespace

HashSpeeds measuredHashSpeeds()
{
    static const HashSpeeds speeds = [] {
        const QByteArray block(int(kMiB), 'q');
        volatile uLong sink = 0;  // keeps the CRC loop from being optimised away
        HashSpeeds s;
        s.crc32 = speedOf(block, [&](const QByteArray& b) {
            sink = sink + crc32(0L, reinterpret_cast<const Bytef*>(b.constData()), uInt(b.size()));
        });
        s.md5 = speedOf(block, [](const QByteArray& b) { QCryptographicHash::hash(b, QCryptographicHash::Md5); });
        s.sha1 = speedOf(block, [](const QByteArray& b) { QCryptographicHash::hash(b, QCryptographicHash::Sha1); });
        return s;
    }();
    return speeds;
}

QString durationText(double seconds)
{
    if (seconds < 1.0)
        return QObject::tr("%1 毫秒").arg(std::max(1, int(std::lround(seconds * 1000))));
    if (seconds < 60.0)
        return QObject::tr("%1 秒").arg(seconds, 0, 'f', 1);
    const qint64 whole = std::llround(seconds);
    return QObject::tr("%1 分 %2 秒").arg(whole / 60).arg(whole % 60);
}

TUnitVariableWarningForm::TUnitVariableWarningForm(const QString& text, QWidget* details, QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(tr("温馨提示"));
    auto* layout = new QVBoxLayout(this);
    auto* label = new QLabel(text, this);
    label->setObjectName(QStringLiteral("LabelWarning"));
    label->setWordWrap(true);
    layout->addWidget(label);
    if (details != nullptr)
        layout->addWidget(details);
    m_ignore = new QCheckBox(tr("忽略此提示对话框"), this);
    m_ignore->setObjectName(QStringLiteral("CheckBoxIgnore"));
    layout->addWidget(m_ignore);

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* go = buttons->addButton(tr("继续(&O)"), QDialogButtonBox::AcceptRole);
    go->setObjectName(QStringLiteral("ButtonContinue"));
    QPushButton* cancel = buttons->addButton(tr("取消(&C)"), QDialogButtonBox::RejectRole);
    cancel->setObjectName(QStringLiteral("ButtonCancel"));
    go->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    setMinimumWidth(460);
}

bool TUnitVariableWarningForm::ignoreFromNowOn() const { return m_ignore->isChecked(); }

void TUnitVariableWarningForm::setIgnoreFromNowOn(bool ignore) { m_ignore->setChecked(ignore); }

namespace {

QTableWidget* hashTimeTable(QWidget* parent)
{
    const HashSpeeds speeds = measuredHashSpeeds();
    const struct {
        const char* size;
        double bytes;
    } rows[] = {{"10 MB", 10.0 * kMiB}, {"100 MB", 100.0 * kMiB}, {"1 GB", 1024.0 * kMiB}, {"4 GB", 4096.0 * kMiB}};

    auto* table = new QTableWidget(int(std::size(rows)), 4, parent);
    table->setObjectName(QStringLiteral("TableHashTimes"));
    table->setHorizontalHeaderLabels({QObject::tr("文件大小"), QStringLiteral("<CRC32>"), QStringLiteral("<MD5>"),
                                      QStringLiteral("<SHA1>")});
    table->verticalHeader()->hide();
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionMode(QAbstractItemView::NoSelection);
    table->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    for (int r = 0; r < int(std::size(rows)); ++r) {
        const double bytes = rows[r].bytes;
        const QString cells[] = {QString::fromLatin1(rows[r].size), durationText(bytes / speeds.crc32),
                                 durationText(bytes / speeds.md5), durationText(bytes / speeds.sha1)};
        for (int c = 0; c < 4; ++c)
            table->setItem(r, c, new QTableWidgetItem(cells[c]));
    }
    table->setFixedHeight(table->horizontalHeader()->sizeHint().height()
                          + table->verticalHeader()->defaultSectionSize() * int(std::size(rows)) + 4);
    return table;
}

}  // namespace

TUseHashUnitVariableWarningForm::TUseHashUnitVariableWarningForm(QWidget* parent)
    : TUnitVariableWarningForm(
          tr("文件校验系列元变量（<CRC32>、<MD5>、<SHA1>）要读取每个文件的全部内容，所需时间随文件大小增长；"
             "文件较大或较多时，每次预览和更名都可能要等很久。\n\n"
             "下表是本机计算校验值所需的时间（在内存中测得，读取磁盘的时间另计）："),
          hashTimeTable(nullptr), parent)
{
    setObjectName(QStringLiteral("TUseHashUnitVariableWarningForm"));
}

TUseFindFolderUnitVariableWarningForm::TUseFindFolderUnitVariableWarningForm(const QString& tag, qint64 depth,
                                                                             QWidget* parent)
    : TUnitVariableWarningForm(
          tr("元变量 %1 要遍历文件夹，当前设置的遍历深度为 %2。所需时间随遍历深度和文件夹内对象的数量增长，"
             "每次预览和更名都可能要等很久。\n\n"
             "只需统计文件夹本身的内容时，可在设置的“元变量”页中把它的深度设为 1。")
              .arg(tag, depth == 0 ? tr("0（全部层级）") : QString::number(depth)),
          nullptr, parent)
{
    setObjectName(QStringLiteral("TUseFindFolderUnitVariableWarningForm"));
}

}  // namespace qp::ui
