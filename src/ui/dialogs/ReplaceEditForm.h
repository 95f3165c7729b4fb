// The editor for long find/replace lists: the find text and the replacement are lists
// joined by "|", shown here side by side, one pair per row.
#pragma once

#include <QDialog>
#include <QList>
#include <QString>

class QLabel;
class QTableWidget;
class QTableWidgetItem;

namespace qp::ui {

struct ReplacePair {
    QString find;
    QString replace;
    bool operator==(const ReplacePair&) const = default;
};

// Pairs the i-th find item with the i-th replacement item; the shorter list is filled with
// empty items. Two empty texts give no pairs.
QList<ReplacePair> splitReplacePairs(const QString& searchText, const QString& replaceText);
// Joins the pairs back, dropping rows that are empty on both sides. Empty replacement items
// at the end are left out, so that "a|b" with "x" comes back as it went in.
QPair<QString, QString> joinReplacePairs(const QList<ReplacePair>& pairs);

class TReplaceEditForm : public QDialog {
    Q_OBJECT
public:
    TReplaceEditForm(const QString& searchText, const QString& replaceText, QWidget* parent = nullptr);

    QList<ReplacePair> pairs() const;
    void setPairs(const QList<ReplacePair>& pairs);
    // The texts to store; exactly the texts given when no row was touched.
    QString searchText() const;
    QString replaceText() const;

    QTableWidget* table() const { return m_table; }

private:
    void addRow(int at, const ReplacePair& pair);
    void moveCurrentRow(int by);
    void swapColumns();
    void cellChanged(QTableWidgetItem* item);

    QTableWidget* m_table = nullptr;
    QLabel* m_count = nullptr;
    QString m_searchText;
    QString m_replaceText;
    bool m_touched = false;
};

}  // namespace qp::ui
