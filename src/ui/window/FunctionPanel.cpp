#include "ui/window/FunctionPanel.h"

#include <QLabel>
#include <QListWidget>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "core/CommandList.h"

namespace qp::ui {

FunctionPanel::FunctionPanel(QWidget* parent)
    : QWidget(parent)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_titles = new QListWidget(this);
    m_titles->setObjectName(QStringLiteral("FunctionPageList"));
    m_titles->setMaximumHeight(120);
    m_titles->setVisible(false);
    m_stack = new QStackedWidget(this);
    m_empty = new QLabel(tr("没有可用的功能页。"), m_stack);
    m_empty->setAlignment(Qt::AlignCenter);
    m_empty->setEnabled(false);
    m_stack->addWidget(m_empty);
    layout->addWidget(m_titles);
    layout->addWidget(m_stack, 1);
    connect(m_titles, &QListWidget::currentRowChanged, this, [this](int row) {
        if (row >= 0)
            m_stack->setCurrentIndex(row + 1);
    });
}

void FunctionPanel::addPage(const QString& title, const QStringList& groups, QWidget* page, PageHooks hooks)
{
    const int index = int(m_pages.size());
    for (const QString& group : groups)
        m_pageOfGroup.insert(group, index);
    m_pages.push_back(Page{title, page, std::move(hooks)});
    m_stack->addWidget(page);
    m_titles->addItem(title);
    m_titles->setVisible(true);
    if (index == 0)
        m_titles->setCurrentRow(0);
}

QWidget* FunctionPanel::currentPage() const
{
    const int row = m_titles->currentRow();
    return row >= 0 && row < pageCount() ? m_pages[size_t(row)].widget : nullptr;
}

void FunctionPanel::setCurrentPage(int i)
{
    if (i >= 0 && i < pageCount())
        m_titles->setCurrentRow(i);
}

bool FunctionPanel::showPageFor(const QString& functionCode)
{
    // A page that claims a whole family ("E") wins over the family's page group: the
    // extension functions share a group with the numbering of the normal page, but have a
    // page of their own.
    auto it = m_pageOfGroup.constFind(functionCode.left(1).toUpper());
    if (it == m_pageOfGroup.constEnd())
        it = m_pageOfGroup.constFind(pageGroupOf(functionCode));
    if (it == m_pageOfGroup.constEnd())
        return false;
    setCurrentPage(*it);
    const Page& page = m_pages[size_t(*it)];
    if (page.hooks.showSection)
        page.hooks.showSection(functionCode);
    return true;
}

void FunctionPanel::resetAll()
{
    for (const Page& page : m_pages) {
        if (page.hooks.resetToUnchanged)
            page.hooks.resetToUnchanged();
    }
}

void FunctionPanel::clearHistories()
{
    for (const Page& page : m_pages) {
        if (page.hooks.clearHistory)
            page.hooks.clearHistory();
    }
}

bool FunctionPanel::hasHistories() const
{
    for (const Page& page : m_pages) {
        if (page.hooks.clearHistory)
            return true;
    }
    return false;
}

}  // namespace qp::ui
