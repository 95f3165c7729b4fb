#include "core/ComboHistory.h"

#include "core/SettingsKeys.h"
#include "core/SettingsStore.h"

#include <algorithm>

namespace qp {

namespace {
constexpr QChar kSeparator = QLatin1Char('\t');
}

int historySize(const SettingsStore& store)
{
    const qint64 size = store.readInt(keys::kOperation, keys::kHistorySize, keys::kDefaultHistorySize);
    return int(std::clamp<qint64>(size, 1, 200));
}

QStringList readHistory(const SettingsStore& store, const QString& section, const QString& key)
{
    return store.readString(section, key, QString()).split(kSeparator, Qt::SkipEmptyParts);
}

void pushHistory(SettingsStore& store, const QString& section, const QString& key, const QString& text)
{
    if (text.trimmed().isEmpty() || text.contains(kSeparator))
        return;
    QStringList items = readHistory(store, section, key);
    items.removeAll(text);
    items.prepend(text);
    const int keep = historySize(store);
    if (items.size() > keep)
        items.resize(keep);
    store.writeString(section, key, items.join(kSeparator));
}

}  // namespace qp
