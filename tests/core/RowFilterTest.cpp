#include <gtest/gtest.h>

#include <QDateTime>
#include <functional>

#include "core/RowFilter.h"
#include "core/Session.h"
#include "platform/FileSystem.h"

namespace qp {
namespace {

FileEntry row(const char* folder, const char* name, const char* ext, std::uint64_t size = 100,
              std::uint32_t attributes = 0, QDate day = QDate(2024, 3, 5))
{
    FileEntry entry;
    entry.path = QString::fromUtf8(folder);
    entry.name = QString::fromUtf8(name);
    entry.ext = QString::fromUtf8(ext);
    entry.isFolder = entry.ext.isEmpty() && size == 0;
    entry.size = size;
    entry.attributes = attributes;
    entry.modified = QDateTime(day, QTime(12, 0)).toMSecsSinceEpoch() * 1000000;
    return entry;
}

using Spec = RowFilterSpec;

struct MatchCase {
    const char* what;
    std::function<void(Spec&)> set;
    FileEntry entry;
    bool matches;
};

TEST(RowFilter, EachCriterionDecidesWhetherARowMatches)
{
    const MatchCase cases[] = {
        {"empty pattern", [](Spec&) {}, row("/m/", "a", ".mp3"), true},
        {"wildcard on name+ext", [](Spec& s) { s.pattern = "*.MP3|*.ogg"; }, row("/m/", "a", ".mp3"), true},
        {"wildcard must match whole", [](Spec& s) { s.pattern = "a"; }, row("/m/", "ab", ".mp3"), false},
        {"case-sensitive wildcard",
         [](Spec& s) {
             s.pattern = "*.MP3";
             s.caseSensitive = true;
         },
         row("/m/", "a", ".mp3"), false},
        {"name excludes extension",
         [](Spec& s) {
             s.pattern = "*.mp3";
             s.subject = Spec::Subject::Name;
         },
         row("/m/", "a", ".mp3"), false},
        {"full path",
         [](Spec& s) {
             s.pattern = "*/相册/*";
             s.subject = Spec::Subject::FullPath;
         },
         row("/home/相册/", "照片", ".jpg"), true},
        {"regex found anywhere",
         [](Spec& s) {
             s.syntax = Spec::Syntax::Regex;
             s.pattern = "\\d{4}";
         },
         row("/m/", "IMG_2024_x", ".jpg"), true},
        {"regex ignores case unless told",
         [](Spec& s) {
             s.syntax = Spec::Syntax::Regex;
             s.pattern = "^img";
         },
         row("/m/", "IMG_1", ".jpg"), true},
        {"regex case-sensitive",
         [](Spec& s) {
             s.syntax = Spec::Syntax::Regex;
             s.pattern = "^img";
             s.caseSensitive = true;
         },
         row("/m/", "IMG_1", ".jpg"), false},
        {"folders excluded", [](Spec& s) { s.folders = false; }, row("/m/", "sub", "", 0), false},
        {"files excluded", [](Spec& s) { s.files = false; }, row("/m/", "a", ".txt"), false},
        {"hidden excluded", [](Spec& s) { s.hidden = false; }, row("/m/", "", ".bashrc", 5, platform::AttrHidden),
         false},
        {"system excluded", [](Spec& s) { s.system = false; }, row("/m/", "x", ".sys", 5, platform::AttrSystem),
         false},
        {"size below range", [](Spec& s) { s.minSize = 101; }, row("/m/", "a", ".txt", 100), false},
        {"size at both ends", [](Spec& s) { s.minSize = s.maxSize = 100; }, row("/m/", "a", ".txt", 100), true},
        {"folders have no size", [](Spec& s) { s.minSize = 1; }, row("/m/", "sub", "", 0), true},
        {"date on the last day", [](Spec& s) { s.to = QDate(2024, 3, 5); }, row("/m/", "a", ".txt"), true},
        {"date before the range", [](Spec& s) { s.from = QDate(2024, 3, 6); }, row("/m/", "a", ".txt"), false},
        {"read-only required", [](Spec& s) { s.readOnly = Spec::Flag::Set; }, row("/m/", "a", ".txt"), false},
        {"archive forbidden", [](Spec& s) { s.archive = Spec::Flag::NotSet; },
         row("/m/", "a", ".txt", 1, platform::AttrArchive), false},
    };
    for (const MatchCase& c : cases) {
        Spec spec;
        c.set(spec);
        auto compiled = RowFilter::compile(spec);
        ASSERT_TRUE(std::holds_alternative<RowFilter>(compiled)) << c.what;
        EXPECT_EQ(std::get<RowFilter>(compiled).matches(c.entry), c.matches) << c.what;
    }
}

TEST(RowFilter, UnusableSpecsAreRefusedWithAReason)
{
    Spec regex;
    regex.syntax = Spec::Syntax::Regex;
    regex.pattern = "(unclosed";
    Spec sizes;
    sizes.minSize = 10;
    sizes.maxSize = 5;
    Spec dates;
    dates.from = QDate(2024, 2, 1);
    dates.to = QDate(2024, 1, 1);
    for (const Spec& spec : {regex, sizes, dates}) {
        auto compiled = RowFilter::compile(spec);
        ASSERT_TRUE(std::holds_alternative<QString>(compiled));
        EXPECT_FALSE(std::get<QString>(compiled).isEmpty());
    }
}

class FilterRowsTest : public ::testing::Test {
protected:
    FilterRowsTest() : session(SettingsStore(), ui, QStringLiteral("[1]"))
    {
        session.setCommandRunner([this] { ++commandRuns; });
        for (const char* name : {"a", "b", "c"})
            session.renameList().append(row("/m/", name, ".txt"));
        session.renameList().append(row("/m/", "d", ".jpg"));
    }
    ScriptedInteraction ui;
    Session session;
    int commandRuns = 0;
};

TEST_F(FilterRowsTest, KeepAndRemoveLeaveTheRightRowsAndRunTheCommands)
{
    Spec spec;
    spec.pattern = "*.txt";
    spec.action = Spec::Action::Remove;
    const RowFilterResult removed = filterRows(session, spec);
    EXPECT_TRUE(removed.ok);
    EXPECT_EQ(removed.removed, 3);
    ASSERT_EQ(session.renameList().size(), 1);
    EXPECT_EQ(session.renameList().at(0).name, "d");
    EXPECT_FALSE(session.renameList().isKnown(pathKey(QStringLiteral("/m/a.txt"))));
    EXPECT_EQ(commandRuns, 1);

    spec.action = Spec::Action::Keep;
    spec.pattern = "*.jpg";
    EXPECT_EQ(filterRows(session, spec).removed, 0);
    EXPECT_EQ(commandRuns, 1);  // nothing left the list: nothing to number again
}

TEST_F(FilterRowsTest, ABadPatternRemovesNothingAndSaysWhy)
{
    Spec spec;
    spec.syntax = Spec::Syntax::Regex;
    spec.pattern = "[";
    const RowFilterResult result = filterRows(session, spec);
    EXPECT_FALSE(result.ok);
    EXPECT_EQ(session.renameList().size(), 4);
    EXPECT_TRUE(session.messages().lines().constLast().text.contains(QStringLiteral("正则表达式有误")));
}

TEST(FilterSets, RoundTripThroughTheSettingsAndRefuseBadNames)
{
    Spec spec;
    spec.pattern = " *.jpg|*.png ";
    spec.syntax = Spec::Syntax::Regex;
    spec.subject = Spec::Subject::FullPath;
    spec.caseSensitive = true;
    spec.folders = spec.hidden = false;
    spec.minSize = 0;
    spec.maxSize = 5000000000ULL;
    spec.from = QDate(2020, 1, 31);
    spec.readOnly = Spec::Flag::NotSet;
    spec.archive = Spec::Flag::Set;
    spec.action = Spec::Action::Remove;

    SettingsStore settings;
    EXPECT_TRUE(filtersets::write(settings, QStringLiteral("照片 2024"), spec).isEmpty());
    SettingsStore reread;
    reread.parse(settings.toText());
    EXPECT_EQ(filtersets::names(reread), QStringList{QStringLiteral("照片 2024")});
    EXPECT_EQ(filtersets::read(reread, QStringLiteral("照片 2024")), spec);

    for (const char* bad : {"", "  ", "a]b", "x\ty"})
        EXPECT_FALSE(filtersets::write(settings, QString::fromUtf8(bad), spec).isEmpty()) << bad;
    filtersets::remove(settings, QStringLiteral("照片 2024"));
    EXPECT_TRUE(filtersets::names(settings).isEmpty());
}

}  // namespace
}  // namespace qp
