// An editable drop-down whose entries are the texts the user typed before, kept in the
// settings under "DATAStore_" + the control's name, newest first. A few fixed entries (an
// expression list, say) may follow the history.
#pragma once

#include <QComboBox>
#include <QStringList>

namespace qp {
class SettingsStore;
}

namespace qp::ui {

class HistoryComboBox : public QComboBox {
    Q_OBJECT
public:
    // `name` becomes the object name; the history key follows from it.
    HistoryComboBox(SettingsStore& settings, const QString& name, QWidget* parent = nullptr);

    QString historyKey() const;
    // Offered below the history, without repeating an entry the history already holds.
    void setFixedItems(const QStringList& items);

    // Sets the text without announcing it (the caller records the change itself).
    void setTextQuietly(const QString& text);

    // Puts the present text at the top of the history (blank texts are not kept).
    void remember();
    // Empties the history; the present text stays.
    void forgetHistory();

private:
    void reloadItems();

    SettingsStore& m_settings;
    QStringList m_fixedItems;
};

}  // namespace qp::ui
