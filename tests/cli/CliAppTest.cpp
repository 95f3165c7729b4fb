#include <gtest/gtest.h>

#include <QFile>

#include "../support/TempTree.h"
#include "cli/CliApp.h"
#include "core/CommandRegistry.h"
#include "core/PathText.h"

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

TEST(CliSnapshots, NewestIsTheLatestRunThenTheHighestApplyNumber)
{
    struct Case {
        const char* a;
        const char* b;
        bool aNewer;
    };
    const Case cases[] = {
        {"/c/AutoSnapshot/[20260101000000001]/1.txt", "/c/AutoSnapshot/[20260101000000000]/9.txt", true},
        {"/c/AutoSnapshot/[20260101000000000]/10.txt", "/c/AutoSnapshot/[20260101000000000]/9.txt", true},
        {"/c/AutoSnapshot/[20260101000000000]/2.txt", "/c/AutoSnapshot/[20260101000000000]/2.txt", false},
        {"/c/AutoSnapshot/[20251231235959999]/3.txt", "/c/AutoSnapshot/[20260101000000000]/1.txt", false},
        {"/c/AutoSnapshot/[20260101000000000]/notes.txt", "/c/AutoSnapshot/[20260101000000000]/1.txt", false},
    };
    for (const Case& c : cases)
        EXPECT_EQ(isNewerSnapshot(QString::fromUtf8(c.a), QString::fromUtf8(c.b)), c.aNewer) << c.a << " vs " << c.b;
}

// A command that upper-cases the name, standing in for the real families.
class UpperCase : public CompiledCommand {
public:
    void apply(const CommandContext&, QString& name, QString&) override { name = name.toUpper(); }
};

// The command list of a command file runs over every row and is applied, while the
// settings file (whose own list is different) stays exactly as it was.
TEST(CliApp, RunsTheCommandFileOfThisRunOnly)
{
    test::TempTree tree;
    const std::string settings = "\xEF\xBB\xBF[CommandList]\r\nCommandListCount=0\r\n";
    const QString settingsFile = tree.file("conf/QuilletPro.ini", settings);
    const QString commands = tree.file("upper.frc",
                                       "[CommandList]\r\nCommandListCount=1\r\n1=CMD_T120200101000000000\r\n\r\n"
                                       "[CMD_T120200101000000000]\r\nCMDid=T101\r\n");
    tree.file("d/one.txt", "1");
    tree.file("d/two.txt", "2");
    auto registrar = [](CommandRegistry& registry) {
        registry.registerCommand(QStringLiteral("T101"),
                                 [](const CommandSection&) { return std::make_unique<UpperCase>(); });
    };

    QString out, err;
    QTextStream outStream(&out), errStream(&err);
    const int code = CliApp(outStream, errStream, registrar)
                         .run({"quillet", "--settings", settingsFile, "apply", "--commands", commands,
                               tree.path("d/one.txt"), tree.path("d/two.txt")});
    outStream.flush();
    errStream.flush();
    EXPECT_EQ(code, ExitDone) << err.toStdString();
    const QString expected = QStringLiteral("0\t%1\tONE.txt\n0\t%2\tTWO.txt\n")
                                 .arg(nativeSeparators(tree.path("d/ONE.txt")), nativeSeparators(tree.path("d/TWO.txt")));
    EXPECT_EQ(out.toStdString(), expected.toStdString()) << err.toStdString();
    EXPECT_TRUE(QFile::exists(tree.path("d/ONE.txt")));
    QFile stored(settingsFile);
    ASSERT_TRUE(stored.open(QIODevice::ReadOnly));
    EXPECT_EQ(stored.readAll().toStdString(), settings);
}

}  // namespace
}  // namespace qp::cli
