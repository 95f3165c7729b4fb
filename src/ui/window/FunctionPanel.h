// The function panel beside the rename list: the function pages (add and pad, replace,
// numbering, the extension functions, …), one shown at a time, chosen from a list of their
// titles. Each page serves one or more page groups of pageGroupOf() ("N1", "N2", "A1_1", …)
// or a whole family by its letter ("E"), so choosing a command in the command grid shows the
// page that made it.
//
// A page is added with one call:
//
//     panel->addPage(tr("1.N.普通更名"), {"N1", "N2", "N4"}, new TFrameFileRenameNormal(session));
//
// A page widget offers `void resetToUnchanged()` (every group back to "保持不变",
// recording nothing) and `void showSection(const QString& functionCode)` (bring that
// function's section into view); `void clearHistory()` and the signal
// `void commandChanged()` are taken when the page has them.
#pragma once

#include <QHash>
#include <QStringList>
#include <QWidget>
#include <functional>
#include <type_traits>
#include <vector>

class QListWidget;
class QStackedWidget;
class QLabel;

namespace qp::ui {

class FunctionPanel : public QWidget {
    Q_OBJECT
public:
    // What the panel calls on a page.
    struct PageHooks {
        std::function<void()> resetToUnchanged;
        std::function<void(const QString& functionCode)> showSection;
        std::function<void()> clearHistory;
    };

    explicit FunctionPanel(QWidget* parent = nullptr);

    // Adds `page` (the panel takes it) under `title`, serving `groups`.
    void addPage(const QString& title, const QStringList& groups, QWidget* page, PageHooks hooks);

    template <typename Page>
    void addPage(const QString& title, const QStringList& groups, Page* page)
    {
        static_assert(std::is_base_of_v<QWidget, Page>, "a function page is a widget");
        PageHooks hooks;
        hooks.resetToUnchanged = [page] { page->resetToUnchanged(); };
        hooks.showSection = [page](const QString& code) { page->showSection(code); };
        if constexpr (requires(Page& p) { p.clearHistory(); })
            hooks.clearHistory = [page] { page->clearHistory(); };
        addPage(title, groups, page, std::move(hooks));
        if constexpr (requires { &Page::commandChanged; })
            connect(page, &Page::commandChanged, this, &FunctionPanel::commandChanged);
    }

    int pageCount() const { return int(m_pages.size()); }
    QWidget* page(int i) const { return m_pages[size_t(i)].widget; }
    QString pageTitle(int i) const { return m_pages[size_t(i)].title; }
    QWidget* currentPage() const;
    void setCurrentPage(int i);

    // Shows the page of a function code's group and that function's section; false when
    // no page serves it.
    bool showPageFor(const QString& functionCode);
    // Sets every page back to "保持不变".
    void resetAll();
    // Empties the drop-down histories of every page that keeps some.
    void clearHistories();
    bool hasHistories() const;

signals:
    // A page recorded, changed or removed a command.
    void commandChanged();

private:
    struct Page {
        QString title;
        QWidget* widget = nullptr;
        PageHooks hooks;
    };

    QListWidget* m_titles = nullptr;
    QStackedWidget* m_stack = nullptr;
    QLabel* m_empty = nullptr;
    std::vector<Page> m_pages;
    QHash<QString, int> m_pageOfGroup;
};

}  // namespace qp::ui
