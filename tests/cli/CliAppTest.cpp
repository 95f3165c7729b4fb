#include <gtest/gtest.h>

#include "cli/CliApp.h"

namespace qp::cli {
namespace {

TEST(CliOverride, SplitsAtTheFirstSlashAndTheFirstEqualsSign)
{
    struct Case {
        const char* text;
        bool valid;
        const char* section;
        const char* key;
        const char* value;
    };
    const Case cases[] = {
        {"Operation Config/FlagFindDeepin=1", true, "Operation Config", "FlagFindDeepin", "1"},
        {"UnitVariable/X=a=b", true, "UnitVariable", "X", "a=b"},
        {"General Config/Path=/usr/bin", true, "General Config", "Path", "/usr/bin"},
        {"S/K=", true, "S", "K", ""},
        {"NoSlash=1", false, "", "", ""},
        {"/K=1", false, "", "", ""},
        {"S/=1", false, "", "", ""},
        {"S/K", false, "", "", ""},
    };
    for (const Case& c : cases) {
        const auto parsed = parseOverride(QString::fromUtf8(c.text));
        ASSERT_EQ(parsed.has_value(), c.valid) << c.text;
        if (!parsed)
            continue;
        EXPECT_EQ(parsed->section, QString::fromUtf8(c.section));
        EXPECT_EQ(parsed->key, QString::fromUtf8(c.key));
        EXPECT_EQ(parsed->value, QString::fromUtf8(c.value));
    }
}

TEST(CliApp, ExitCodesOfTheGeneralOptions)
{
    const std::pair<QStringList, int> cases[] = {
        {{"quillet", "--help"}, ExitDone},
        {{"quillet", "--version"}, ExitDone},
        {{"quillet"}, ExitBadUsage},
        {{"quillet", "--no-such-option"}, ExitBadUsage},
        {{"quillet", "--set", "broken", "preview"}, ExitBadUsage},
        {{"quillet", "frobnicate"}, ExitBadUsage},
    };
    for (const auto& [arguments, expected] : cases) {
        QString out, err;
        QTextStream outStream(&out), errStream(&err);
        EXPECT_EQ(CliApp(outStream, errStream).run(arguments), expected) << arguments.join(' ').toStdString();
        if (expected == ExitBadUsage) {
            errStream.flush();
            EXPECT_TRUE(err.startsWith(QStringLiteral("quillet: "))) << err.toStdString();
            EXPECT_EQ(err.count(QLatin1Char('\n')), 1) << "one line: " << err.toStdString();
        }
    }
}

}  // namespace
}  // namespace qp::cli
