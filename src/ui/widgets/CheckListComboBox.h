// A drop-down of check boxes: the closed box shows the checked entries joined by "; ", or
// a prompt while none is checked. Clicking an entry ticks or unticks it and leaves the list
// open, so that several entries can be chosen in one go.
#pragma once

#include <QComboBox>
#include <QStringList>

class QStandardItemModel;

namespace qp::ui {

class CheckListComboBox : public QComboBox {
    Q_OBJECT
public:
    explicit CheckListComboBox(QWidget* parent = nullptr);

    // `items` are the entries as stored; `shown`, when given, what the list shows for each.
    void setItems(const QStringList& items, const QStringList& shown = {});
    void setPrompt(const QString& prompt);
    QString prompt() const { return m_prompt; }

    // The checked entries in list order, as stored.
    QStringList checkedItems() const;
    // Checks exactly these entries (unknown names are ignored), without announcing it.
    void setCheckedItems(const QStringList& items);
    // What the closed box shows.
    QString displayText() const;

    // Ticks or unticks entry `row` as a click would.
    void toggleItem(int row);
    void hidePopup() override;

signals:
    // At once for a change made while the list is closed, else when it closes.
    void checkedItemsChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QStandardItemModel* m_model = nullptr;
    QString m_prompt;
    bool m_changedWhileOpen = false;
};

}  // namespace qp::ui
