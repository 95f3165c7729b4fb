#include <gtest/gtest.h>

#include "core/RenameList.h"
#include "core/RowOrder.h"

namespace qp {
namespace {

int sign(int n) { return (n > 0) - (n < 0); }

TEST(RowOrder, NaturalCompareCountsNumbersAndIgnoresCaseUntilTheEnd)
{
    struct Case {
        const char* a;
        const char* b;
        int expected;
    };
    const Case cases[] = {
        {"file2", "file10", -1},     // numbers by value
        {"file10", "file2", 1},
        {"img_0009", "img_010", -1}, // leading zeros do not count against the value
        {"a", "B", -1},              // letter case ignored ...
        {"A", "a", -1},              // ... until nothing else tells them apart
        {"7", "007", -1},            // fewer leading zeros first when equal otherwise
        {"x1y", "x1y", 0},
        {"abc", "abcd", -1},         // a prefix first
        {"2", "a", -1},              // digits before letters
        {"v1.10", "v1.9", 1},
        {"", "", 0},
        {"", "a", -1},
        {"照片2", "照片10", -1},
        {"99999999999999999999", "100000000000000000000", -1},  // longer than any integer
    };
    for (const Case& c : cases) {
        const QString a = QString::fromUtf8(c.a), b = QString::fromUtf8(c.b);
        EXPECT_EQ(sign(naturalCompare(a, b)), c.expected) << c.a << " vs " << c.b;
        EXPECT_EQ(sign(naturalCompare(b, a)), -c.expected) << c.b << " vs " << c.a;
    }
}

FileEntry row(const char* name, const char* ext, std::uint64_t size = 0, bool folder = false)
{
    FileEntry entry;
    entry.path = QStringLiteral("/d/");
    entry.name = entry.newName = QString::fromUtf8(name);
    entry.ext = entry.newExt = QString::fromUtf8(ext);
    entry.size = size;
    entry.isFolder = folder;
    return entry;
}

QStringList names(const RenameList& list)
{
    QStringList out;
    for (const FileEntry& entry : list.rows())
        out.append(entry.name + entry.ext);
    return out;
}

TEST(RowOrder, SortingReordersTheRowsThemselvesAndKeepsTiesInPlace)
{
    RenameList list;
    list.append(row("b10", ".txt", 5));
    list.append(row("b2", ".doc", 1));
    list.append(row("a", ".txt", 5));
    list.append(row("dir", "", 4096, true));

    list.reorder(sortedOrder(list, RowKey::Name, true));
    EXPECT_EQ(names(list), (QStringList{"a.txt", "b2.doc", "b10.txt", "dir"}));
    list.reorder(sortedOrder(list, RowKey::Name, false));
    EXPECT_EQ(names(list), (QStringList{"dir", "b10.txt", "b2.doc", "a.txt"}));

    // Equal extensions keep the order they had (b10 before a, as just sorted), also
    // descending.
    list.reorder(sortedOrder(list, RowKey::Extension, true));
    EXPECT_EQ(names(list), (QStringList{"dir", "b2.doc", "b10.txt", "a.txt"}));
    list.reorder(sortedOrder(list, RowKey::Extension, false));
    EXPECT_EQ(names(list), (QStringList{"b10.txt", "a.txt", "b2.doc", "dir"}));

    // A folder shows no size and sorts as empty, not by its 4096 bytes.
    list.reorder(sortedOrder(list, RowKey::Size, true));
    EXPECT_EQ(names(list), (QStringList{"dir", "b2.doc", "b10.txt", "a.txt"}));

    // The known paths move with the rows: nothing is added or lost.
    EXPECT_EQ(list.knownCount(), 4);
    EXPECT_TRUE(list.isKnown(pathKey(QStringLiteral("/d/b2.doc"))));
}

TEST(RowOrder, RemoveRowsDropsTheFlaggedRowsAndTheirKnownPaths)
{
    RenameList list;
    for (const char* name : {"a", "b", "c", "d"})
        list.append(row(name, ".txt"));
    EXPECT_EQ(list.removeRows({true, false, true}), 2);  // a short flag list leaves the rest
    EXPECT_EQ(names(list), (QStringList{"b.txt", "d.txt"}));
    EXPECT_FALSE(list.isKnown(pathKey(QStringLiteral("/d/a.txt"))));
    EXPECT_TRUE(list.isKnown(pathKey(QStringLiteral("/d/d.txt"))));
}

}  // namespace
}  // namespace qp

namespace qp {
namespace {

// The name sort compares prepared keys instead of calling naturalCompare; over many short
// texts of digits, letters in both cases and separators both must give the same order.
TEST(RowOrder, NameSortAgreesWithNaturalCompare)
{
    const QString alphabet = QStringLiteral("aAbB0019. _照");
    std::uint32_t seed = 12345;
    auto next = [&seed] {
        seed = seed * 1664525u + 1013904223u;
        return seed >> 16;
    };
    RenameList list;
    for (int i = 0; i < 3000; ++i) {
        QString name;
        for (std::uint32_t k = 0, n = next() % 7; k < n; ++k)
            name += alphabet[qsizetype(next() % std::uint32_t(alphabet.size()))];
        FileEntry entry;
        entry.path = QStringLiteral("/d/");
        entry.name = name;
        entry.ext = QStringLiteral(".%1").arg(i);  // distinct paths
        list.append(entry);
    }
    for (bool ascending : {true, false}) {
        const std::vector<qsizetype> order = sortedOrder(list, RowKey::Name, ascending);
        for (size_t i = 1; i < order.size(); ++i) {
            const QString& a = list.at(order[i - 1]).name;
            const QString& b = list.at(order[i]).name;
            const int c = naturalCompare(a, b) * (ascending ? 1 : -1);
            ASSERT_LE(c, 0) << a.toStdString() << " before " << b.toStdString();
            if (c == 0) {
                ASSERT_LT(order[i - 1], order[i]) << "equal names keep their order";
            }
        }
    }
}

}  // namespace
}  // namespace qp
