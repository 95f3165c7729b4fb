#include "core/RowOrder.h"

#include <algorithm>
#include <numeric>

#include "core/RenameList.h"

namespace qp {

namespace {

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

template <typename Compare>
std::vector<qsizetype> stableOrder(qsizetype rows, bool ascending, Compare compare)
{
    std::vector<qsizetype> order(static_cast<size_t>(rows));
    std::iota(order.begin(), order.end(), qsizetype(0));
    if (ascending)
        std::stable_sort(order.begin(), order.end(), [&](qsizetype a, qsizetype b) { return compare(a, b) < 0; });
    else
        std::stable_sort(order.begin(), order.end(), [&](qsizetype a, qsizetype b) { return compare(b, a) < 0; });
    return order;
}

template <typename T>
int threeWay(const T& a, const T& b)
{
    return a < b ? -1 : (b < a ? 1 : 0);
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
    auto byText = [&](auto member) {
        return stableOrder(n, ascending, [&rows, member](qsizetype a, qsizetype b) {
            return naturalCompare(rows[size_t(a)].*member, rows[size_t(b)].*member);
        });
    };
    auto byValue = [&](auto member) {
        return stableOrder(n, ascending, [&rows, member](qsizetype a, qsizetype b) {
            return threeWay(rows[size_t(a)].*member, rows[size_t(b)].*member);
        });
    };
    switch (key) {
    case RowKey::Selected:
        return byValue(&FileEntry::selected);
    case RowKey::Name:
        return byText(&FileEntry::name);
    case RowKey::Extension:
        return byText(&FileEntry::ext);
    case RowKey::State:
        return byValue(&FileEntry::state);
    case RowKey::NewName:
        return byText(&FileEntry::newName);
    case RowKey::NewExtension:
        return byText(&FileEntry::newExt);
    case RowKey::Modified:
        return byValue(&FileEntry::modified);
    case RowKey::Size:
        // A folder has no size of its own to show; it sorts as empty.
        return stableOrder(n, ascending, [&rows](qsizetype a, qsizetype b) {
            const FileEntry& x = rows[size_t(a)];
            const FileEntry& y = rows[size_t(b)];
            return threeWay(x.isFolder ? 0 : x.size, y.isFolder ? 0 : y.size);
        });
    case RowKey::Folder:
        return byText(&FileEntry::path);
    case RowKey::Attributes: {
        // The letters as shown ("<DIR>RH"), made once per row rather than per comparison.
        std::vector<QString> letters(static_cast<size_t>(n));
        for (qsizetype r = 0; r < n; ++r)
            letters[size_t(r)] = rows[size_t(r)].attributeLetters();
        return stableOrder(n, ascending, [&letters](qsizetype a, qsizetype b) {
            return letters[size_t(a)].compare(letters[size_t(b)]);
        });
    }
    }
    return stableOrder(n, true, [](qsizetype, qsizetype) { return 0; });
}

}  // namespace qp
