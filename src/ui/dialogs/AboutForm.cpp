#include "ui/dialogs/AboutForm.h"

#include <QDialogButtonBox>
#include <QFile>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QVBoxLayout>

// The libraries' own version calls; libmagic and libxlsxwriter come into the link with the
// engine libraries that use them.
#include <magic.h>
#include <xlsxwriter.h>
#include <zlib.h>
#define PCRE2_CODE_UNIT_WIDTH 16
#include <pcre2.h>

#include "core/PathText.h"
#include "core/ThirdPartyNotices.h"

namespace qp::ui {

namespace {

// The notice file is read whole; a larger file is not ours.
constexpr qint64 kMostNoticeBytes = 1024 * 1024;

QString readNotices(const QString& file)
{
    QFile notices(file);
    if (file.isEmpty() || !notices.open(QIODevice::ReadOnly) || notices.size() > kMostNoticeBytes)
        return {};
    return QString::fromUtf8(notices.readAll());
}

QString pcre2Version()
{
    char16_t buffer[64] = {};
    const int length = pcre2_config(PCRE2_CONFIG_VERSION, buffer);
    return length > 1 ? QString::fromUtf16(buffer, length - 1) : QString();
}

}  // namespace

QString runningLibraryVersion(const QString& name)
{
    if (name == QLatin1String("Qt"))
        return QString::fromLatin1(qVersion());
    if (name == QLatin1String("PCRE2"))
        return pcre2Version();
    if (name == QLatin1String("zlib"))
        return QString::fromLatin1(zlibVersion());
    if (name.startsWith(QLatin1String("libmagic")))
        return QStringLiteral("%1.%2").arg(magic_version() / 100).arg(magic_version() % 100, 2, 10, QLatin1Char('0'));
    if (name == QLatin1String("libxlsxwriter"))
        return QStringLiteral(LXW_VERSION);
    return {};
}

TAboutForm::TAboutForm(const QString& noticeFile, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("TAboutForm"));
    setWindowTitle(tr("关于 Quillet Pro"));

    auto* title = new QLabel(QStringLiteral("<h2>Quillet Pro</h2>"), this);
    auto* facts = new QLabel(tr("批量文件更名\n版本：%1\n构建日期：%2\nQt：%3（编译时 %4）\n许可证：GNU GPL 3.0 或更高版本")
                                 .arg(QStringLiteral(QP_VERSION), QStringLiteral(QP_BUILD_DATE),
                                      QString::fromLatin1(qVersion()), QStringLiteral(QT_VERSION_STR)),
                             this);
    facts->setObjectName(QStringLiteral("LabelFacts"));
    facts->setTextInteractionFlags(Qt::TextSelectableByMouse);

    const QString noticeText = readNotices(noticeFile);
    auto* tabs = new QTabWidget(this);
    tabs->addTab(buildLibraryTab(noticeText), tr("第三方软件"));
    auto* whole = new QPlainTextEdit(this);
    whole->setObjectName(QStringLiteral("MemoNotices"));
    whole->setReadOnly(true);
    whole->setPlainText(noticeText.isEmpty() ? tr("找不到第三方软件声明文件 %1。它应与程序放在一起。").arg(kNoticeFileName)
                                             : noticeText);
    tabs->addTab(whole, tr("声明全文"));

    auto* close = new QDialogButtonBox(QDialogButtonBox::Close, this);
    close->button(QDialogButtonBox::Close)->setText(tr("关闭"));
    connect(close, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(title);
    layout->addWidget(facts);
    layout->addWidget(tabs, 1);
    layout->addWidget(close);
    resize(720, 560);
}

QWidget* TAboutForm::buildLibraryTab(const QString& noticeText)
{
    const std::vector<NoticeEntry> entries = parseNotices(noticeText);
    auto* page = new QWidget(this);
    m_libraries = new QTableWidget(int(entries.size()), 3, page);
    m_libraries->setObjectName(QStringLiteral("GridLibraries"));
    m_libraries->setHorizontalHeaderLabels({tr("名称"), tr("版本"), tr("许可证")});
    m_libraries->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_libraries->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_libraries->setSelectionMode(QAbstractItemView::SingleSelection);
    m_libraries->verticalHeader()->hide();
    m_libraries->horizontalHeader()->setSectionResizeMode(2, QHeaderView::Stretch);
    for (int row = 0; row < int(entries.size()); ++row) {
        const NoticeEntry& entry = entries[size_t(row)];
        const QString running = runningLibraryVersion(entry.name);
        const QStringList cells{entry.name, running.isEmpty() ? entry.version : running, entry.licence};
        for (int column = 0; column < cells.size(); ++column)
            m_libraries->setItem(row, column, new QTableWidgetItem(cells[column]));
        QString details = tr("来源：%1\n用途：%2").arg(entry.source, entry.use);
        if (!entry.note.isEmpty())
            details += tr("\n说明：%1").arg(entry.note);
        m_detailTexts.append(details);
    }
    m_libraries->resizeColumnsToContents();
    m_details = new QPlainTextEdit(page);
    m_details->setObjectName(QStringLiteral("MemoDetails"));
    m_details->setReadOnly(true);
    m_details->setMaximumHeight(110);
    connect(m_libraries, &QTableWidget::currentCellChanged, this, [this](int row) { showDetails(row); });
    auto* layout = new QVBoxLayout(page);
    layout->addWidget(m_libraries, 1);
    layout->addWidget(m_details);
    if (!entries.empty())
        m_libraries->selectRow(0);
    return page;
}

void TAboutForm::showDetails(int row)
{
    m_details->setPlainText(m_detailTexts.value(row));
}

}  // namespace qp::ui
