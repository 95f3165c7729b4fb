#include "ui/widgets/HistoryComboBox.h"

#include <QLineEdit>
#include <QSignalBlocker>

#include "core/ComboHistory.h"
#include "core/SettingsKeys.h"
#include "core/SettingsStore.h"

namespace qp::ui {

namespace {
const QString kHistoryPrefix = QStringLiteral("DATAStore_");
}

HistoryComboBox::HistoryComboBox(SettingsStore& settings, const QString& name, QWidget* parent)
    : QComboBox(parent)
    , m_settings(settings)
{
    setObjectName(name);
    setEditable(true);
    // Enter must not add the text as an entry of its own, and inline completion would put
    // text the user did not type into a command that is recorded as the user types.
    setInsertPolicy(QComboBox::NoInsert);
    setCompleter(nullptr);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(12);
    reloadItems();
    // A box also loses the focus while the window is disabled for a long operation (each
    // keystroke re-runs the commands); that is not the end of the user's typing.
    connect(lineEdit(), &QLineEdit::editingFinished, this, [this] {
        if (isEnabled())
            remember();
    });
}

QString HistoryComboBox::historyKey() const { return kHistoryPrefix + objectName(); }

void HistoryComboBox::setFixedItems(const QStringList& items)
{
    m_fixedItems = items;
    reloadItems();
}

void HistoryComboBox::setTextQuietly(const QString& text)
{
    const QSignalBlocker blocker(this);
    setEditText(text);
}

void HistoryComboBox::remember()
{
    pushHistory(m_settings, keys::kOperation, historyKey(), currentText());
    reloadItems();
}

void HistoryComboBox::forgetHistory()
{
    m_settings.eraseKey(keys::kOperation, historyKey());
    reloadItems();
}

void HistoryComboBox::reloadItems()
{
    // Refilling the list would otherwise replace the text being edited by the first entry.
    const QString text = currentText();
    const int cursor = lineEdit()->cursorPosition();
    const QSignalBlocker blocker(this);
    QStringList items = readHistory(m_settings, keys::kOperation, historyKey());
    for (const QString& fixed : m_fixedItems) {
        if (!items.contains(fixed))
            items.append(fixed);
    }
    clear();
    addItems(items);
    setCurrentIndex(-1);
    setEditText(text);
    lineEdit()->setCursorPosition(cursor);
}

}  // namespace qp::ui
