#include <gtest/gtest.h>

#include "core/NameFilter.h"

namespace qp {
namespace {

TEST(Wildcard, MatchesStarAndQuestionMark)
{
    const std::tuple<const char*, const char*, bool> cases[] = {
        {"*", "", true},
        {"*.mp3", "song.mp3", true},
        {"*.mp3", "song.mp3.bak", false},
        {"a?c", "abc", true},
        {"a?c", "ac", false},
        {"a*b*c", "axxbyyc", true},
        {"a*b*c", "axxbyy", false},
        {"*a*a*a*a*b", "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa", false},  // must not blow up
        {"??", "😀x", true},  // a surrogate pair is one character
        {"?", "😀", true},
    };
    for (const auto& [pattern, text, expected] : cases)
        EXPECT_EQ(wildcardMatch(QString::fromUtf8(pattern), QString::fromUtf8(text)), expected) << pattern << " " << text;
}

struct FilterCase {
    const char* keep;
    const char* exclude;
    const char* folder;
    const char* name;
    bool isFolder;
    bool passes;
};

TEST(NameFilter, KeepAndExcludeMasks)
{
    const FilterCase cases[] = {
        {"*.*", "", "/m/", "song.mp3", false, true},
        {"*.*", "", "/m/", "README", false, true},
        {".", "", "/m/", "x", true, true},
        {"*.mp3|*.wma", "", "/m/", "a.WMA", false, true},  // letter case is ignored
        {"*.mp3|*.wma", "", "/m/", "a.ogg", false, false},
        {"*.mp3|*.wma", "", "/m/", "albums", true, false},
        {"<FILE>", "", "/m/", "a.ogg", false, true},
        {"<FILE>", "", "/m/", "albums", true, false},
        {"<DIR>", "", "/m/", "albums", true, true},
        {"<DIR>|*.txt", "", "/m/", "a.txt", false, true},
        {"*.*", "*.tmp", "/m/", "x.tmp", false, false},
        {"*.*", "*.tmp", "/m/", "x.txt", false, true},
        {"*.*", "<DIR>", "/m/", "sub", true, false},
        {"", "", "/m/", "any", false, true},
        {"report.*", "", "/m/", "report", false, true},  // "x.*" also takes a name without a dot
        {"report.*", "", "/m/", "report.pdf", false, true},
        {" *.txt | *.md ", "", "/m/", "a.md", false, true},  // blanks around masks are ignored
        {"<F>*/photos/*", "", "/home/u/photos/", "a.jpg", false, true},  // full-path mode
        {"<F>*/photos/*", "", "/home/u/music/", "a.jpg", false, false},
        {"*/photos/*", "", "/home/u/photos/", "a.jpg", false, false},  // names hold no '/'
    };
    for (const FilterCase& c : cases) {
        const NameFilter filter(QString::fromUtf8(c.keep), QString::fromUtf8(c.exclude));
        EXPECT_EQ(filter.passes(QString::fromUtf8(c.folder), QString::fromUtf8(c.name), c.isFolder), c.passes)
            << "keep=" << c.keep << " exclude=" << c.exclude << " name=" << c.name;
    }
}

TEST(NameFilter, SkipsFilteringOnlyWhenNothingCanBeDropped)
{
    EXPECT_TRUE(NameFilter(QStringLiteral("*.*"), QString()).keepsEverything());
    EXPECT_TRUE(NameFilter(QStringLiteral("*.txt|."), QStringLiteral(" | ")).keepsEverything());
    EXPECT_TRUE(NameFilter(QStringLiteral("<F>*.*"), QString()).keepsEverything());
    EXPECT_FALSE(NameFilter(QStringLiteral("*.*"), QStringLiteral("*.tmp")).keepsEverything());
    EXPECT_FALSE(NameFilter(QStringLiteral("*.txt"), QString()).keepsEverything());
}

TEST(NameFilter, KeepTextGetsOneLeadingMarker)
{
    const std::pair<const char*, const char*> cases[] = {
        {"*.*|<f>", "<F>*.*"},
        {"<f>|*.txt||*.md", "<F>*.txt|*.md"},
        {"*.*", "*.*"},
        {"<F>*.txt", "<F>*.txt"},
        {"a<f>b<F>c", "<F>abc"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(normalizeKeepText(QString::fromUtf8(text)), QString::fromUtf8(expected)) << text;
}

}  // namespace
}  // namespace qp
