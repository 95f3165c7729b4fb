#include <gtest/gtest.h>

#include <fstream>

#include "../support/TempTree.h"
#include "core/ComboHistory.h"
#include "core/Interaction.h"
#include "core/MessageLog.h"
#include "core/SettingsKeys.h"
#include "core/Startup.h"

namespace qp {
namespace {

using test::TempTree;

TEST(Startup, FindsThePortableOrTheUserSettingsFile)
{
    TempTree tree;
    const QString exe = tree.folder("bin");
    const QString home = tree.folder("home/.config");
    EXPECT_EQ(locateSettings(exe, home).file, home + "/QuilletPro/QuilletPro.ini");
    EXPECT_FALSE(locateSettings(exe, home).portable);

    tree.folder("bin/QuilletPro");
    EXPECT_EQ(locateSettings(exe, home).file, exe + "/QuilletPro/QuilletPro.ini");
    EXPECT_TRUE(locateSettings(exe, home).portable);

    tree.file("bin/QuilletPro.ini", "[General Config]\r\n");
    EXPECT_EQ(locateSettings(exe, home).file, exe + "/QuilletPro.ini");  // the file wins over the folder
}

TEST(Startup, NewSettingsFileRecordsTheProgramPathOnce)
{
    TempTree tree;
    const QString file = tree.path("cfg/QuilletPro/QuilletPro.ini");
    OpenedSettings first = openSettings(file, QStringLiteral("/opt/quillet/QuilletPro"));
    EXPECT_TRUE(first.created);
    EXPECT_EQ(first.store.readString(keys::kGeneral, keys::kPathName, {}), QStringLiteral("/opt/quillet/QuilletPro"));

    first.store.writeString(keys::kGeneral, keys::kPathName, QStringLiteral("/elsewhere"));
    ASSERT_TRUE(first.store.save());
    OpenedSettings second = openSettings(file, QStringLiteral("/opt/quillet/QuilletPro"));
    EXPECT_FALSE(second.created);
    EXPECT_EQ(second.store.readString(keys::kGeneral, keys::kPathName, {}), QStringLiteral("/elsewhere"));
}

TEST(Startup, SettingsWithBytesThatAreNotUtf8AreBackedUpFirst)
{
    TempTree tree;
    const std::string original = "[General Config]\r\nPathName=/opt/q\r\n[UnitVariable]\r\nName=\xB2\xE2\xCA\xD4\r\n";
    const QString file = tree.file("QuilletPro.ini", original);
    OpenedSettings opened = openSettings(file, QStringLiteral("/opt/q"));
    EXPECT_TRUE(opened.report.invalidUtf8);
    EXPECT_EQ(opened.store.readString(keys::kGeneral, keys::kPathName, {}), QStringLiteral("/opt/q"));
    ASSERT_FALSE(opened.backupFile.isEmpty());
    std::ifstream backup(opened.backupFile.toStdString(), std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(backup), {}), original);
}

TEST(Startup, RunStampIsTheBracketedLocalTime)
{
    const QDateTime time(QDate(2024, 3, 5), QTime(14, 7, 9, 123));
    EXPECT_EQ(makeRunStamp(time), QStringLiteral("[20240305140709123]"));
}

TEST(ComboHistory, NewestFirstWithoutRepeatsAndCut)
{
    SettingsStore store;
    store.writeInt(keys::kOperation, keys::kHistorySize, 3);
    for (const char* text : {"/a", "/b", "/c", "/a", "", "/d"})
        pushHistory(store, keys::kOperation, keys::kPathHistory, QString::fromUtf8(text));
    EXPECT_EQ(readHistory(store, keys::kOperation, keys::kPathHistory), (QStringList{"/d", "/a", "/c"}));

    pushHistory(store, keys::kOperation, keys::kKeepHistory, QStringLiteral(" *.mp3|*.wma "));
    EXPECT_EQ(readHistory(store, keys::kOperation, keys::kKeepHistory), QStringList{" *.mp3|*.wma "});
}

TEST(MessageLog, LinesCarryTheTimePrefixColourAndRow)
{
    MessageLog log([] { return QTime(9, 5, 7); });
    QStringList heard;
    log.setListener([&](const MessageLine& line) { heard.append(line.text); });
    log.add(QStringLiteral("对象载入完毕。"));
    log.add(QStringLiteral("失败"), MessageColour::Red, 42);
    ASSERT_EQ(log.lines().size(), 2);
    EXPECT_EQ(log.lines()[0].text, QStringLiteral("[09:05:07] 对象载入完毕。"));
    EXPECT_EQ(log.lines()[1].colour, MessageColour::Red);
    EXPECT_EQ(log.lines()[1].row, 42);
    EXPECT_EQ(heard.size(), 2);
}

TEST(ScriptedInteraction, AnswersFromTheTableThenByPolicy)
{
    ScriptedInteraction byDefault;
    ScriptedInteraction affirmative(ScriptedInteraction::Policy::Affirmative);
    const Question question{QStringLiteral("q"), QStringLiteral("温馨提示"), QStringLiteral("?"),
                            Button::Ok | Button::Cancel, Button::Cancel, Icon::Question};
    EXPECT_EQ(byDefault.ask(question), Button::Cancel);
    EXPECT_EQ(affirmative.ask(question), Button::Ok);

    byDefault.answer(QStringLiteral("q"), {Button::Ok, Button::Cancel});
    EXPECT_EQ(byDefault.ask(question), Button::Ok);
    EXPECT_EQ(byDefault.ask(question), Button::Cancel);
    EXPECT_EQ(byDefault.ask(question), Button::Cancel);  // the last answer repeats
    EXPECT_EQ(byDefault.asked.size(), 4);
}

}  // namespace
}  // namespace qp
