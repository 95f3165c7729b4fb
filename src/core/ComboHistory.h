// Drop-down histories kept in the settings file: one key per box, the entries joined by
// TAB (a character no file name or mask on Windows can hold), newest first.
#pragma once

#include <QString>
#include <QStringList>

namespace qp {

class SettingsStore;

QStringList readHistory(const SettingsStore& store, const QString& section, const QString& key);
// Moves an existing equal entry to the top or inserts the text there, then keeps at most
// "ComboBoxSavedNum" entries. Empty texts are not remembered.
void pushHistory(SettingsStore& store, const QString& section, const QString& key, const QString& text);
int historySize(const SettingsStore& store);

}  // namespace qp
