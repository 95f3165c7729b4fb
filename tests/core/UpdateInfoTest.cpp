#include <gtest/gtest.h>

#include "core/SettingsStore.h"
#include "core/UpdateInfo.h"
#include "../support/QStringPrinter.h"

namespace qp {
namespace {

TEST(UpdateInfo, AGoodAnnouncementIsReadWhole)
{
    const auto parsed = parseUpdateInfo(R"({"version": "1.10.0", "date": "2024-05-01",
        "url": "https://example.org/quillet/1.10", "sha256": ")" + QByteArray(64, 'A') + R"(", "notes": "快了"})");
    ASSERT_TRUE(std::holds_alternative<UpdateInfo>(parsed)) << std::get<QString>(parsed).toStdString();
    const UpdateInfo& info = std::get<UpdateInfo>(parsed);
    EXPECT_EQ(info.version, "1.10.0");
    EXPECT_EQ(info.date, QDate(2024, 5, 1));
    EXPECT_EQ(info.url.host(), "example.org");
    EXPECT_EQ(info.sha256, QString(64, u'a'));
    EXPECT_EQ(info.notes, "快了");
}

TEST(UpdateInfo, BadAnnouncementsAreRefusedWithAReason)
{
    const char* const bad[] = {
        "<html>not json</html>",
        "[1, 2]",
        R"({"url": "https://example.org/"})",
        R"({"version": "1.x", "url": "https://example.org/"})",
        R"({"version": "2.0", "url": "file:///etc/passwd"})",
        R"({"version": "2.0", "url": "https://example.org/", "sha256": "abc"})",
    };
    for (const char* json : bad) {
        const auto parsed = parseUpdateInfo(json);
        ASSERT_TRUE(std::holds_alternative<QString>(parsed)) << json;
        EXPECT_FALSE(std::get<QString>(parsed).isEmpty());
    }
    EXPECT_TRUE(std::holds_alternative<QString>(parseUpdateInfo(QByteArray(kMostUpdateBytes + 1, ' '))));
}

TEST(UpdateInfo, VersionsCompareNumberByNumber)
{
    const std::tuple<const char*, const char*, std::optional<int>> cases[] = {
        {"1.10", "1.9", 1}, {"1.2", "1.2.0", 0}, {"0.9.9", "1.0", -1}, {"1.2-beta", "1.0", std::nullopt}, {"", "1", std::nullopt},
    };
    for (const auto& [a, b, order] : cases) {
        const auto got = compareVersions(a, b);
        EXPECT_EQ(got.has_value(), order.has_value()) << a << " " << b;
        if (got && order) {
            EXPECT_EQ((*got > 0) - (*got < 0), *order) << a << " " << b;
        }
    }
    UpdateInfo info{"1.3", {}, {}, {}, {}};
    EXPECT_EQ(judgeUpdate(info, "1.2", ""), UpdateVerdict::Newer);
    EXPECT_EQ(judgeUpdate(info, "1.2", "1.3.0"), UpdateVerdict::Skipped);
    EXPECT_EQ(judgeUpdate(info, "1.3", ""), UpdateVerdict::Current);
    EXPECT_EQ(judgeUpdate(info, "2.0", ""), UpdateVerdict::Older);
}

TEST(UpdateInfo, AChecksIsDueOnlyWhenOnAndTheIntervalHasPassed)
{
    const QDateTime now(QDate(2024, 5, 10), QTime(12, 0));
    UpdateSettings settings;
    settings.url = "https://example.org/update.json";
    EXPECT_FALSE(updateCheckDue(settings, now));  // off by default
    settings.enabled = true;
    EXPECT_TRUE(updateCheckDue(settings, now));  // never checked
    settings.lastCheck = now.addDays(-6);
    EXPECT_FALSE(updateCheckDue(settings, now));
    settings.lastCheck = now.addDays(-7);
    EXPECT_TRUE(updateCheckDue(settings, now));
    settings.lastCheck = now.addDays(3);  // a clock set back
    EXPECT_TRUE(updateCheckDue(settings, now));

    SettingsStore store;
    settings.skippedVersion = "1.4";
    settings.write(store);
    const UpdateSettings reread = UpdateSettings::read(store);
    EXPECT_EQ(reread.lastCheck, settings.lastCheck);
    EXPECT_EQ(reread.skippedVersion, "1.4");
    EXPECT_TRUE(reread.enabled);
}

}  // namespace
}  // namespace qp
