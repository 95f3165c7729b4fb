// The user meta-variables "<USER0>" … "<USER9>": ten lists of texts held by the session, line
// i belonging to row i of the rename list. They live until the program ends.
//
// TUVUSERSelectForm ("定义用户自定义元变量") shows each list's state and line count and fills
// a list with the new-name column of the rename list; TViewUVUSERForm shows the defined lists
// beside the rows.
#pragma once

#include <QDialog>
#include <array>
#include <functional>

#include "core/Session.h"

class QLabel;
class QPushButton;
class QTableView;

namespace qp::ui {

// A list counts as defined once it holds a line.
bool userListDefined(const Session& session, int n);

class TUVUSERSelectForm : public QDialog {
    Q_OBJECT
public:
    // `refreshPreview` brings the new-name column up to date before a list takes it (it is
    // called only when automatic preview is on).
    TUVUSERSelectForm(Session& session, std::function<void()> refreshPreview, QWidget* parent = nullptr);

    QLabel* stateLabel(int n) const { return m_states[size_t(n)]; }
    QLabel* countLabel(int n) const { return m_counts[size_t(n)]; }

private:
    void define(int n);
    void showList(int n);

    Session& m_session;
    std::function<void()> m_refreshPreview;
    std::array<QLabel*, Session::kUserListCount> m_states{};
    std::array<QLabel*, Session::kUserListCount> m_counts{};
};

class TViewUVUSERForm : public QDialog {
    Q_OBJECT
public:
    // The grid's first columns; the defined lists follow, "<USERn>" in order of n.
    enum Column { ColNumber, ColName, ColFirstList };

    explicit TViewUVUSERForm(const Session& session, QWidget* parent = nullptr);

    QLabel* summary() const { return m_summary; }
    QTableView* grid() const { return m_grid; }

private:
    QLabel* m_summary = nullptr;
    QTableView* m_grid = nullptr;
};

}  // namespace qp::ui
