#include "ui/MainWindow.h"

#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QStatusBar>

namespace qp::ui {

MainWindow::MainWindow(SettingsStore settings, QString runStamp, QWidget* parent)
    : QMainWindow(parent)
    , m_session(std::move(settings), m_interaction, std::move(runStamp))
{
    setWindowTitle(QStringLiteral("Quillet Pro 批量文件更名"));
    resize(1100, 700);
    m_messages = new QListWidget(this);
    setCentralWidget(m_messages);
    m_statusText = new QLabel(this);
    m_progress = new QProgressBar(this);
    m_progress->setRange(0, 100);
    m_progress->setVisible(false);
    statusBar()->addWidget(m_statusText, 1);
    statusBar()->addPermanentWidget(m_progress);
    m_interaction.attach(this, m_statusText, m_progress);
    m_session.messages().setListener([this](const MessageLine& line) { showMessage(line); });
}

void MainWindow::showMessage(const MessageLine& line)
{
    auto* item = new QListWidgetItem(line.text, m_messages);
    if (line.colour == MessageColour::Red)
        item->setForeground(Qt::red);
    m_messages->scrollToItem(item);
}

}  // namespace qp::ui
