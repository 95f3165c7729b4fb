#include "core/RowOrder.h"

#include <QHash>
#include <algorithm>
#include <cstdint>
#include <numeric>

#include "core/RenameList.h"

namespace qp {

namespace {

// A sort over a million rows is paid for in cache misses, not in comparisons: each row and
// each text lives somewhere else in memory. So every sort first copies what it compares into
// one contiguous array in row order, and sorts that:
//  - columns with few distinct values (tick, state, extensions, folders, attributes) are
//    ranked once per distinct value and then placed by a counting sort, which is stable;
//  - numbers are sorted as (number, row) pairs;
//  - names get a key whose plain code-unit order is the natural order (numbers by value,
//    letters folded), held in one buffer, with its first 8 units inline in the element, so
//    that most comparisons never leave the array.
// Ties are broken by the row's present position, which keeps equal rows in their order.

bool isDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

char16_t folded(char16_t c)
{
    if (c < 0x80)
        return c >= u'A' && c <= u'Z' ? char16_t(c + (u'a' - u'A')) : c;
    return QChar::toCaseFolded(c);
}

// Compares two runs of digits starting at i and j by value; moves i and j past them.
// `tie` takes the first difference in leading zeros.
int compareNumbers(QStringView a, qsizetype& i, QStringView b, qsizetype& j, int& tie)
{
    const qsizetype startA = i, startB = j;
    while (i < a.size() && a[i] == u'0')
        ++i;
    while (j < b.size() && b[j] == u'0')
        ++j;
    qsizetype endA = i, endB = j;
    while (endA < a.size() && isDigit(a[endA].unicode()))
        ++endA;
    while (endB < b.size() && isDigit(b[endB].unicode()))
        ++endB;
    if (endA - i != endB - j)
        return endA - i < endB - j ? -1 : 1;
    for (; i < endA; ++i, ++j) {
        if (a[i] != b[j])
            return a[i] < b[j] ? -1 : 1;
    }
    if (tie == 0 && endA - startA != endB - startB)
        tie = endA - startA < endB - startB ? -1 : 1;
    i = endA;
    j = endB;
    return 0;
}

std::vector<qsizetype> identity(size_t rows)
{
    std::vector<qsizetype> order;
    order.reserve(rows);
    for (size_t i = 0; i < rows; ++i)
        order.push_back(qsizetype(i));
    return order;
}

// Places rows by their rank (0 .. ranks-1) keeping the present order within a rank.
std::vector<qsizetype> countingOrder(const std::vector<std::uint32_t>& rank, std::uint32_t ranks, bool ascending)
{
    std::vector<qsizetype> start(size_t(ranks) + 1, 0);
    for (std::uint32_t r : rank)
        ++start[size_t(ascending ? r : ranks - 1 - r) + 1];
    std::partial_sum(start.begin(), start.end(), start.begin());
    std::vector<qsizetype> order(rank.size());
    for (size_t row = 0; row < rank.size(); ++row)
        order[size_t(start[size_t(ascending ? rank[row] : ranks - 1 - rank[row])]++)] = qsizetype(row);
    return order;
}

// Ranks the rows by a value with few distinct values: `valueOf(row)` is hashed, the distinct
// values are sorted by `less`, and the rows are placed by a counting sort.
template <typename Value, typename ValueOf, typename Less>
std::vector<qsizetype> rankedOrder(qsizetype rows, bool ascending, ValueOf valueOf, Less less)
{
    QHash<Value, std::uint32_t> idOf;
    std::vector<Value> distinct;
    std::vector<std::uint32_t> id(static_cast<size_t>(rows));
    for (qsizetype r = 0; r < rows; ++r) {
        const Value value = valueOf(r);
        auto it = idOf.constFind(value);
        if (it == idOf.constEnd()) {
            it = idOf.insert(value, std::uint32_t(distinct.size()));
            distinct.push_back(value);
        }
        id[size_t(r)] = *it;
    }
    std::vector<std::uint32_t> byValue(distinct.size());
    std::iota(byValue.begin(), byValue.end(), 0u);
    std::stable_sort(byValue.begin(), byValue.end(),
                     [&](std::uint32_t a, std::uint32_t b) { return less(distinct[a], distinct[b]); });
    // Equal values under `less` (texts that differ only where the order ignores them) share
    // a rank, so that they keep their order.
    std::vector<std::uint32_t> rankOfId(distinct.size());
    std::uint32_t rank = 0;
    for (size_t k = 0; k < byValue.size(); ++k) {
        if (k > 0 && less(distinct[byValue[k - 1]], distinct[byValue[k]]))
            ++rank;
        rankOfId[byValue[k]] = rank;
    }
    for (std::uint32_t& value : id)
        value = rankOfId[value];
    return countingOrder(id, distinct.empty() ? 0 : rank + 1, ascending);
}

template <typename Number>
std::vector<qsizetype> numberOrder(qsizetype rows, bool ascending, const std::vector<Number>& key)
{
    std::vector<std::pair<Number, std::uint32_t>> items(static_cast<size_t>(rows));
    for (qsizetype r = 0; r < rows; ++r)
        items[size_t(r)] = {key[size_t(r)], std::uint32_t(r)};
    if (ascending) {
        std::sort(items.begin(), items.end());
    } else {
        std::sort(items.begin(), items.end(), [](const auto& a, const auto& b) {
            return a.first != b.first ? b.first < a.first : a.second < b.second;
        });
    }
    std::vector<qsizetype> order(items.size());
    for (size_t i = 0; i < items.size(); ++i)
        order[i] = items[i].second;
    return order;
}

// The sort key of a text, whose plain code-unit order is naturalCompare's order:
//  - the natural part: letters folded; each run of digits as u'0', its length without
//    leading zeros (one unit) and its digits without leading zeros;
//  - a zero unit, which ends the natural part before any character could (so a text that
//    is a prefix of another sorts first);
//  - the tie part, read only when the natural parts are equal: every character that is no
//    digit as it is, every run of digits as its whole length. Its first difference is
//    naturalCompare's last tie-break (letter case, then leading zeros, in text order).
void appendSortKey(QStringView text, std::vector<char16_t>& out)
{
    auto runEnd = [&](qsizetype i) {
        while (i < text.size() && isDigit(text[i].unicode()))
            ++i;
        return i;
    };
    for (qsizetype i = 0; i < text.size();) {
        const char16_t c = text[i].unicode();
        if (!isDigit(c)) {
            out.push_back(folded(c));
            ++i;
            continue;
        }
        while (i < text.size() && text[i] == u'0')
            ++i;
        const qsizetype end = runEnd(i);
        out.push_back(u'0');
        out.push_back(char16_t(std::min<qsizetype>(end - i + 1, 0xFFFF)));
        for (; i < end; ++i)
            out.push_back(text[i].unicode());
    }
    out.push_back(0);
    for (qsizetype i = 0; i < text.size();) {
        const char16_t c = text[i].unicode();
        if (!isDigit(c)) {
            out.push_back(c);
            ++i;
            continue;
        }
        const qsizetype end = runEnd(i);
        out.push_back(char16_t(std::min<qsizetype>(end - i + 1, 0xFFFF)));
        i = end;
    }
}

// How many units of the key live in the element itself.
constexpr size_t kHeadUnits = 16;

struct TextItem {
    std::uint64_t head[kHeadUnits / 4];  // the key's first units, zero-padded, most significant first
    std::uint32_t offset;                // the whole key in the buffer
    std::uint32_t length;
    std::uint32_t row;
};

std::vector<qsizetype> naturalOrder(const std::vector<FileEntry>& rows, QString FileEntry::*member, bool ascending)
{
    std::vector<char16_t> keys;
    keys.reserve(rows.size() * 24);
    std::vector<TextItem> items(rows.size());
    for (size_t r = 0; r < rows.size(); ++r) {
        const size_t begin = keys.size();
        appendSortKey(rows[r].*member, keys);
        TextItem& item = items[r];
        const size_t length = keys.size() - begin;
        for (size_t k = 0; k < kHeadUnits; ++k) {
            const std::uint64_t unit = k < length ? keys[begin + k] : 0;
            if (k % 4 == 0)
                item.head[k / 4] = 0;
            item.head[k / 4] |= unit << (16 * (3 - k % 4));
        }
        item.offset = std::uint32_t(begin);
        item.length = std::uint32_t(length);
        item.row = std::uint32_t(r);
    }
    auto compareKeys = [&](const TextItem& a, const TextItem& b) -> int {
        for (size_t h = 0; h < kHeadUnits / 4; ++h) {
            if (a.head[h] != b.head[h])
                return a.head[h] < b.head[h] ? -1 : 1;
        }
        if (a.length <= kHeadUnits && b.length <= kHeadUnits)
            return 0;
        const char16_t* x = keys.data() + a.offset;
        const char16_t* y = keys.data() + b.offset;
        const std::uint32_t common = std::min(a.length, b.length);
        for (std::uint32_t k = kHeadUnits; k < common; ++k) {
            if (x[k] != y[k])
                return x[k] < y[k] ? -1 : 1;
        }
        return a.length == b.length ? 0 : (a.length < b.length ? -1 : 1);
    };
    std::sort(items.begin(), items.end(), [&](const TextItem& a, const TextItem& b) {
        const int c = ascending ? compareKeys(a, b) : compareKeys(b, a);
        return c != 0 ? c < 0 : a.row < b.row;
    });
    std::vector<qsizetype> order(items.size());
    for (size_t i = 0; i < items.size(); ++i)
        order[i] = items[i].row;
    return order;
}

}  // namespace

int naturalCompare(QStringView a, QStringView b)
{
    // Rows of one folder share their folder text: nothing to read.
    if (a.data() == b.data() && a.size() == b.size())
        return 0;
    int tie = 0;
    qsizetype i = 0, j = 0;
    while (i < a.size() && j < b.size()) {
        const char16_t ca = a[i].unicode();
        const char16_t cb = b[j].unicode();
        if (isDigit(ca) && isDigit(cb)) {
            if (const int c = compareNumbers(a, i, b, j, tie))
                return c;
            continue;
        }
        if (ca != cb) {
            const char16_t fa = folded(ca);
            const char16_t fb = folded(cb);
            if (fa != fb)
                return fa < fb ? -1 : 1;
            if (tie == 0)
                tie = ca < cb ? -1 : 1;
        }
        ++i;
        ++j;
    }
    if (i < a.size())
        return 1;
    if (j < b.size())
        return -1;
    return tie;
}

std::vector<qsizetype> sortedOrder(const RenameList& list, RowKey key, bool ascending)
{
    const std::vector<FileEntry>& rows = list.rows();
    const qsizetype n = list.size();
    auto byText = [](const QString& a, const QString& b) { return naturalCompare(a, b) < 0; };
    // Texts shared by many rows (extensions, folders): one hash look-up per row, the
    // distinct texts sorted once. Consecutive rows of one folder share the very same text.
    auto byDistinctText = [&](QString FileEntry::*member) {
        return rankedOrder<QString>(
            n, ascending, [&](qsizetype r) { return rows[size_t(r)].*member; }, byText);
    };
    auto numbers = [&](auto valueOf) {
        using Number = decltype(valueOf(rows.front()));
        std::vector<Number> values(rows.size());
        for (size_t r = 0; r < rows.size(); ++r)
            values[r] = valueOf(rows[r]);
        return numberOrder(n, ascending, values);
    };
    if (n < 2)
        return identity(rows.size());
    switch (key) {
    case RowKey::Selected:
        return rankedOrder<int>(
            n, ascending, [&](qsizetype r) { return int(rows[size_t(r)].selected); }, std::less<int>());
    case RowKey::State:
        return rankedOrder<int>(n, ascending, [&](qsizetype r) { return rows[size_t(r)].state; }, std::less<int>());
    case RowKey::Name:
        return naturalOrder(rows, &FileEntry::name, ascending);
    case RowKey::NewName:
        return naturalOrder(rows, &FileEntry::newName, ascending);
    case RowKey::Extension:
        return byDistinctText(&FileEntry::ext);
    case RowKey::NewExtension:
        return byDistinctText(&FileEntry::newExt);
    case RowKey::Folder:
        return byDistinctText(&FileEntry::path);
    case RowKey::Modified:
        return numbers([](const FileEntry& row) { return row.modified; });
    case RowKey::Size:
        // A folder has no size of its own to show; it sorts as empty.
        return numbers([](const FileEntry& row) { return row.isFolder ? std::uint64_t(0) : row.size; });
    case RowKey::Attributes:
        // The letters as shown ("<DIR>RH"), made once per distinct attribute word.
        return rankedOrder<std::uint32_t>(
            n, ascending, [&](qsizetype r) { return rows[size_t(r)].attributes; },
            [](std::uint32_t a, std::uint32_t b) {
                FileEntry x, y;
                x.attributes = a;
                y.attributes = b;
                return x.attributeLetters() < y.attributeLetters();
            });
    }
    return identity(rows.size());
}

}  // namespace qp
