#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>

#include "../support/TempTree.h"
#include "core/CommandFile.h"
#include "core/CommandList.h"
#include "core/Session.h"

namespace qp {
namespace {

using test::TempTree;

const QString kList = QStringLiteral("CommandList");
const QString kOperation = QStringLiteral("Operation Config");

QByteArray readBytes(const QString& file)
{
    std::ifstream in(std::filesystem::path(file.toStdU16String()), std::ios::binary);
    return QByteArray::fromStdString(std::string(std::istreambuf_iterator<char>(in), {}));
}

class CommandFileTest : public ::testing::Test {
protected:
    CommandFileTest()
        : settingsFile(tree.folder("cfg") + QStringLiteral("/QuilletPro.ini"))
        , session(makeStore(settingsFile), ui, QStringLiteral("[20240501093015123]"))
    {
        session.commandList().setClock([] { return QDateTime(QDate(2024, 5, 1), QTime(9, 30, 15, 123)); });
        session.setCommandRunner([this] { ++runs; });
        FileEntry row;
        row.path = QStringLiteral("/data/");
        row.name = QStringLiteral("a");
        session.renameList().append(row);
    }

    static SettingsStore makeStore(const QString& file)
    {
        SettingsStore store;
        store.setFileName(file);
        store.writeBool(kOperation, QStringLiteral("AutoPreview"), true);
        store.writeString(QStringLiteral("General Config"), QStringLiteral("PathName"), QStringLiteral("/opt/qp"));
        return store;
    }

    // Records a command the way a function page does.
    QString command(const QString& code, int option, const QList<QPair<QString, QString>>& parameters)
    {
        endCurrentCommand(session);
        const RecordAnswer answer = recordCommand(session, code, false);
        EXPECT_TRUE(answer.created);
        session.commandList().describe(answer.section, code + QStringLiteral("%1").arg(option, 2, 10, QLatin1Char('0')),
                                       QStringLiteral("命令 ") + code);
        for (const auto& [key, value] : parameters)
            session.settings().writeString(answer.section, key, value);
        return answer.section;
    }

    QString frc(const std::string& name, const std::string& content) { return tree.file(name, content); }

    TempTree tree;
    QString settingsFile;
    ScriptedInteraction ui;
    Session session;
    int runs = 0;
};

TEST_F(CommandFileTest, SavedFileHasTheExactLayout)
{
    command(QStringLiteral("N1"), 1, {{"N1_AddStr", "  前缀 "}, {"N1_Pos", "3"}});
    command(QStringLiteral("E3"), 2, {{"E3_Start", "1"}, {"E3_Text", "a=b"}});
    const QString file = tree.path("out/命令.frc");
    tree.folder("out");

    int chosen = 0;
    const CommandFileResult result = saveCommandFile(session, FileChooser([&] {
        ++chosen;
        return file;
    }));
    ASSERT_EQ(result.outcome, CommandFileResult::Outcome::Done);
    EXPECT_EQ(chosen, 1);

    const char* golden =
        "\xEF\xBB\xBF"
        ";===========================================================\r\n"
        ";批处理命令文件\r\n"
        ";Quillet Pro 批量文件更名工具\r\n"
        ";可用“载入批处理命令”重新载入本文件中的更名命令\r\n"
        ";\r\n"
        ";说明：本文件为系统生成，除非明白各参数之意义，否则请不要随\r\n"
        ";      意改动，以免影响原有的更名结果！\r\n"
        ";===========================================================\r\n"
        "[CommandList]\r\n"
        "CommandListCount=2\r\n"
        "1=CMD_N120240501093015123\r\n"
        "2=CMD_E320240501093015123\r\n"
        "\r\n"
        "[CMD_N120240501093015123]\r\n"
        "CMDid=N101\r\n"
        "CMDComment=命令 N1\r\n"
        "N1_AddStr=|  前缀 |\r\n"
        "N1_Pos=3\r\n"
        "\r\n"
        "[CMD_E320240501093015123]\r\n"
        "CMDid=E302\r\n"
        "CMDComment=命令 E3\r\n"
        "E3_Start=1\r\n"
        "E3_Text=a=b\r\n";
    EXPECT_EQ(readBytes(file), QByteArray(golden));

    ASSERT_EQ(ui.notices.size(), 1);
    EXPECT_EQ(ui.notices[0].title, QStringLiteral("温馨提示"));
    EXPECT_EQ(ui.notices[0].text, QStringLiteral("批处理命令文件保存成功。"));
    EXPECT_EQ(recentCommandFiles(session.settings()), QStringList{file});
    EXPECT_EQ(session.settings().readString(QStringLiteral("Interface Config"),
                                            QStringLiteral("OpenDialogInitialDirMMenuCMDLoadFromFile"), {}),
              tree.path("out") + "/");
    // The settings were written with it.
    EXPECT_EQ(readBytes(settingsFile), session.settings().toBytes());
}

TEST_F(CommandFileTest, EmptyListsAreNotSavedAndFailedWritesAreReported)
{
    bool chosen = false;
    const FileChooser chooser([&] {
        chosen = true;
        return tree.file("blocker") + QStringLiteral("/x.frc");  // a file where a folder should be
    });
    EXPECT_EQ(saveCommandFile(session, chooser).outcome, CommandFileResult::Outcome::Cancelled);
    EXPECT_FALSE(chosen);
    EXPECT_TRUE(ui.notices.isEmpty());

    command(QStringLiteral("N1"), 1, {});
    EXPECT_EQ(saveCommandFile(session, chooser).outcome, CommandFileResult::Outcome::Failed);
    ASSERT_EQ(ui.notices.size(), 1);
    EXPECT_EQ(ui.notices[0].icon, Icon::Warning);
    EXPECT_TRUE(ui.notices[0].text.startsWith(QStringLiteral("批处理命令文件保存失败："))) << ui.notices[0].text.toStdString();
    EXPECT_TRUE(recentCommandFiles(session.settings()).isEmpty());
}

TEST_F(CommandFileTest, TwoHundredCommandsRoundTrip)
{
    const char* codes[] = {"N1", "N2", "N3", "N4", "N5", "N6", "E1", "E3", "E7", "A10"};
    for (int i = 0; i < 200; ++i) {
        const QString code = QString::fromLatin1(codes[i % 10]);
        command(code, i % 7 + 1,
                {{code + "_Text", QStringLiteral("第%1条=<61> ").arg(i)},
                 {code + "_Flag", i % 2 ? "1" : "0"},
                 {code + "_Pipes", "|kept|"},
                 {code + "_Empty", ""}});
    }
    const QString file = tree.path("list.frc");
    ASSERT_EQ(saveCommandFile(session, file).outcome, CommandFileResult::Outcome::Done);

    ScriptedInteraction otherUi;
    SettingsStore otherStore = makeStore(tree.folder("other") + "/QuilletPro.ini");
    otherStore.writeString(QStringLiteral("UnitVariable"), QStringLiteral("Unit"), QStringLiteral("kg"));
    Session other(otherStore, otherUi, QStringLiteral("[x]"));
    int otherRuns = 0;
    other.setCommandRunner([&] { ++otherRuns; });
    const CommandFileResult loaded = loadCommandFile(other, file);
    ASSERT_EQ(loaded.outcome, CommandFileResult::Outcome::Done);
    EXPECT_EQ(loaded.commands, 200);
    EXPECT_EQ(otherRuns, 1);

    const auto& want = session.commandList().rows();
    const auto& got = other.commandList().rows();
    ASSERT_EQ(got.size(), want.size());
    for (size_t i = 0; i < want.size(); ++i) {
        EXPECT_EQ(got[i].functionCode, want[i].functionCode) << i;
        EXPECT_EQ(got[i].comment, want[i].comment) << i;
        EXPECT_EQ(got[i].section, want[i].section) << i;
        EXPECT_TRUE(got[i].ended) << i;
        EXPECT_EQ(other.settings().sectionLines(got[i].section), session.settings().sectionLines(want[i].section)) << i;
    }
    EXPECT_EQ(other.settings().sectionLines(kList), session.settings().sectionLines(kList));
    EXPECT_EQ(other.settings().readString(QStringLiteral("UnitVariable"), QStringLiteral("Unit"), {}), QStringLiteral("kg"));
    // Written to the settings file, which reads back the same.
    SettingsStore reread;
    reread.load(other.settings().fileName());
    EXPECT_EQ(reread.toText(), other.settings().toText());
    // Saving the loaded list gives the same file again.
    EXPECT_EQ(commandFileBytes(other.settings()), readBytes(file));
}

// Asking comes before the file dialog; the file's sections replace same-named ones whole.
TEST_F(CommandFileTest, LoadingIntoAListAsksFirstAndReplacesItWhole)
{
    const QString mine = command(QStringLiteral("N1"), 1, {{"N1_Old", "1"}, {"N1_AddStr", "old"}});
    const QString other = command(QStringLiteral("N2"), 1, {});
    const QStringList before = session.settings().sectionLines(mine);
    const QString file = frc("in.frc", "[CommandList]\r\nCommandListCount=1\r\n1=" + mine.toStdString() + "\r\n\r\n["
                                           + mine.toStdString() + "]\r\nCMDid=N102\r\nN1_AddStr=new\r\n");
    for (Button answer : {Button::No, Button::Yes}) {
        const bool yes = answer == Button::Yes;
        ui.asked.clear();
        ui.answer(QStringLiteral("commands.loadReplace"), {answer});
        bool chosen = false;
        const CommandFileResult result = loadCommandFile(session, FileChooser([&] {
            chosen = true;
            return file;
        }));
        ASSERT_EQ(ui.asked.size(), 1);
        EXPECT_EQ(ui.asked[0].title, QStringLiteral("提示"));
        EXPECT_EQ(ui.asked[0].buttons, Button::Yes | Button::No);
        EXPECT_EQ(ui.asked[0].text, QStringLiteral("命令列表不为空，载入命令批处理文件将清除现有更名命令，确认吗？"));
        EXPECT_EQ(chosen, yes);
        EXPECT_EQ(result.outcome, yes ? CommandFileResult::Outcome::Done : CommandFileResult::Outcome::Cancelled);
        EXPECT_EQ(session.commandList().sectionNames(), (yes ? QStringList{mine} : QStringList{mine, other}));
        EXPECT_EQ(session.settings().hasSection(other), !yes);
        EXPECT_EQ(session.settings().sectionLines(mine), (yes ? QStringList{"CMDid=N102", "N1_AddStr=new"} : before));
    }
    EXPECT_TRUE(session.commandList().rows()[0].ended);
    EXPECT_EQ(recentCommandFiles(session.settings()), QStringList{file});

    session.commandList().clearAll();  // an empty list is loaded without a question
    ui.asked.clear();
    EXPECT_EQ(loadCommandFile(session, file).outcome, CommandFileResult::Outcome::Done);
    EXPECT_TRUE(ui.asked.isEmpty());
}

// Every file that cannot be used is refused with a message, and leaves the command list,
// the settings in memory and the settings file exactly as they were.
TEST_F(CommandFileTest, UnusableFilesChangeNothing)
{
    const std::string valid = "\xEF\xBB\xBF[CommandList]\r\nCommandListCount=1\r\n1=CMD_N120200101000000000\r\n\r\n"
                              "[CMD_N120200101000000000]\r\nCMDid=N101\r\nCMDComment=添加\r\n";
    std::mt19937 random(7);
    std::string noise(1 << 20, '\0');
    for (char& c : noise)
        c = char(random());

    struct Case {
        const char* name;
        QString file;
        const char* message;
    };
    const QString huge = tree.path("huge.frc");
    {
        std::ofstream(std::filesystem::path(huge.toStdU16String()), std::ios::binary) << "x";
        std::filesystem::resize_file(std::filesystem::path(huge.toStdU16String()), 100ull << 20);
    }
    const Case cases[] = {
        {"missing file", tree.path("nothing.frc"), "载入失败！批处理命令文件不存在："},
        {"a folder", tree.folder("folder.frc"), "载入失败！无法读取批处理命令文件："},
        {"100 MB", huge, "载入失败！文件超过 64 MB，不是批处理命令文件："},
        {"random bytes", frc("noise.frc", noise), "载入失败！"},
        {"NUL byte", frc("nul.frc", valid + std::string("\0", 1)), "载入失败！文件中含有空字符（NUL），不是批处理命令文件："},
        {"not UTF-8", frc("latin1.frc", valid + "CMDComment=caf\xE9\r\n"), "载入失败！批处理命令文件的编码格式错误，正确的为 UTF-8 编码格式："},
        {"cut inside a character", frc("cut.frc", valid.substr(0, valid.size() - 4)), "载入失败！批处理命令文件的编码格式错误"},
        {"cut before the list", frc("header.frc", ";====\r\n;批处理命令文件\r\n[Comm"), "载入失败！文件中没有 [CommandList] 字段"},
        {"no list", frc("nolist.frc", "[CMD_N120200101000000000]\r\nCMDid=N101\r\n"), "载入失败！文件中没有 [CommandList] 字段"},
        {"empty file", frc("empty.frc", ""), "载入失败！文件中没有 [CommandList] 字段"},
        {"text noise", frc("text.frc", std::string(3 << 20, 'a')), "载入失败！文件中没有 [CommandList] 字段"},
        {"count zero", frc("zero.frc", "[CommandList]\r\nCommandListCount=0\r\n1=CMD_N120200101000000000\r\n[CMD_N120200101000000000]\r\nCMDid=N101\r\n"), "载入失败！批处理命令文件中没有可用的命令："},
        {"negative count", frc("negative.frc", "[CommandList]\r\nCommandListCount=-3\r\n1=CMD_N120200101000000000\r\n[CMD_N120200101000000000]\r\nCMDid=N101\r\n"), "载入失败！批处理命令文件中没有可用的命令："},
        {"only missing sections", frc("dangling.frc", "[CommandList]\r\nCommandListCount=2\r\n1=CMD_A\r\n2=Operation Config\r\n[Operation Config]\r\nAutoPreview=0\r\n"), "载入失败！批处理命令文件中没有可用的命令："},
    };

    const QString mine = command(QStringLiteral("N2"), 1, {{"N2_Find", "x"}});
    ASSERT_TRUE(session.saveSettings());
    const QString memoryBefore = session.settings().toText();
    const QByteArray fileBefore = readBytes(settingsFile);
    ui.answer(QStringLiteral("commands.loadReplace"), {Button::Yes});
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        ui.notices.clear();
        const CommandFileResult result = loadCommandFile(session, c.file);
        EXPECT_EQ(result.outcome, CommandFileResult::Outcome::Failed);
        EXPECT_TRUE(result.message.startsWith(QString::fromUtf8(c.message))) << result.message.toStdString();
        ASSERT_EQ(ui.notices.size(), 1);
        EXPECT_EQ(ui.notices[0].icon, Icon::Warning);
        EXPECT_EQ(session.settings().toText(), memoryBefore);
        EXPECT_EQ(readBytes(settingsFile), fileBefore);
        EXPECT_EQ(session.commandList().sectionNames(), QStringList{mine});
        EXPECT_FALSE(session.commandList().rows()[0].ended);  // still the open command
    }

    // A good file whose merge cannot be written to the settings file.
    session.settings().setFileName(tree.file("blocker") + QStringLiteral("/QuilletPro.ini"));
    EXPECT_EQ(loadCommandFile(session, frc("good.frc", valid)).outcome, CommandFileResult::Outcome::Failed);
    EXPECT_EQ(session.settings().toText(), memoryBefore);
    EXPECT_EQ(session.commandList().sectionNames(), QStringList{mine});
    EXPECT_EQ(runs, 0);
}

TEST_F(CommandFileTest, PartialFilesLoadWhatTheyListAndMergeTheRest)
{
    // A count far beyond its keys, a key naming no section, a section that is no command,
    // a command section the list does not name, lines before the first section.
    const QString file = frc("partial.frc",
                             "stray=1\r\n"
                             "[CommandList]\r\nCommandListCount=999999999\r\n1=CMD_N120200101000000000\r\n"
                             "2=CMD_gone\r\n3=CMD_E320200101000000000\r\n\r\n"
                             "[CMD_N120200101000000000]\r\nCMDid=N101\r\nCMDComment=添加\r\n\r\n"
                             "[CMD_E320200101000000000]\r\nCMDid=E301\r\n\r\n"
                             "[CMD_X20200101000000000]\r\nCMDid=X101\r\n\r\n"
                             "[Operation Config]\r\nAutoPreview=0\r\nEvil=1\r\n");
    const CommandFileResult result = loadCommandFile(session, file);
    ASSERT_EQ(result.outcome, CommandFileResult::Outcome::Done);
    EXPECT_EQ(result.commands, 2);
    EXPECT_EQ(result.skipped, 1);
    EXPECT_EQ(result.otherSections, (QStringList{"CMD_X20200101000000000", "Operation Config"}));
    EXPECT_EQ(session.commandList().sectionNames(),
              (QStringList{"CMD_N120200101000000000", "CMD_E320200101000000000"}));

    SettingsStore& s = session.settings();
    EXPECT_EQ(s.sectionLines(kList), (QStringList{"CommandListCount=2", "1=CMD_N120200101000000000",
                                                  "2=CMD_E320200101000000000"}));
    // Other sections land in the settings as an appended text would: the file's values win.
    EXPECT_EQ(s.sectionLines(kOperation), (QStringList{"AutoPreview=0", "Evil=1"}));
    EXPECT_EQ(s.sectionLines(QStringLiteral("CMD_X20200101000000000")), QStringList{"CMDid=X101"});
    EXPECT_FALSE(s.hasKey(QStringLiteral("General Config"), QStringLiteral("stray")));
    EXPECT_EQ(session.messages().lines().size(), 3);  // skipped, count, sections merged
    EXPECT_EQ(runs, 1);
}

TEST_F(CommandFileTest, MillionsOfEmptySectionsAreDroppedWhileScanning)
{
    std::string text = "[CommandList]\r\nCommandListCount=1\r\n1=CMD_N120200101000000000\r\n"
                       "[CMD_N120200101000000000]\r\nCMDid=N101\r\n";
    constexpr int stray = 2'000'000;
    text.reserve(text.size() + stray * 12);
    char line[32];
    for (int i = 0; i < stray; ++i) {
        std::snprintf(line, sizeof line, "[s%07d]\r\n", i);
        text += line;
    }
    const QString file = frc("stray.frc", text);
    const CommandFileResult result = loadCommandFile(session, file);
    ASSERT_EQ(result.outcome, CommandFileResult::Outcome::Done);
    EXPECT_EQ(result.commands, 1);
    EXPECT_TRUE(result.otherSections.isEmpty());
    EXPECT_EQ(session.settings().sectionNames().size(), 5);  // two of the settings', the list, one command, recent
}

TEST_F(CommandFileTest, RecentFilesAreNewestFirstAtMostTwentyAndHideMissingOnes)
{
    QStringList files;
    for (int i = 0; i < 22; ++i)
        files.append(tree.file("dir/f" + std::to_string(i) + ".frc"));
    SettingsStore& s = session.settings();
    for (const QString& file : files)
        rememberCommandFile(s, file);
    rememberCommandFile(s, files[10]);  // used again: to the top, once

    QStringList expected{files[10]};
    for (int i = 21; i >= 2; --i)
        expected.append(i == 10 ? QStringList() : QStringList{files[i]});
    EXPECT_EQ(recentCommandFiles(s), expected);
    EXPECT_EQ(s.readInt(QStringLiteral("RecentItemMenuCMDFile"), QStringLiteral("Count"), 0), 20);
    EXPECT_EQ(s.readString(QStringLiteral("RecentItemMenuCMDFile"), QStringLiteral("1"), {}), files[10]);

    std::filesystem::remove(std::filesystem::path(files[21].toStdU16String()));
    const QList<RecentCommandFile> menu = recentCommandFileMenu(s);
    ASSERT_EQ(menu.size(), 19);
    EXPECT_EQ(menu[0].path, files[10]);
    EXPECT_EQ(menu[0].caption, QStringLiteral("01. f10.frc | ") + tree.path("dir"));
    EXPECT_EQ(menu[1].caption, QStringLiteral("02. f20.frc | ") + tree.path("dir"));
    EXPECT_TRUE(menu[18].caption.startsWith(QStringLiteral("19. ")));

    // A hand-edited count never reads past twenty keys.
    s.writeString(QStringLiteral("RecentItemMenuCMDFile"), QStringLiteral("Count"), QStringLiteral("999999999"));
    EXPECT_EQ(recentCommandFiles(s).size(), 20);

    for (Button answer : {Button::Cancel, Button::Ok}) {
        ui.answer(QStringLiteral("commands.clearRecent"), {answer});
        EXPECT_EQ(clearRecentCommandFiles(session), answer == Button::Ok);
        EXPECT_EQ(s.hasSection(QStringLiteral("RecentItemMenuCMDFile")), answer == Button::Cancel);
    }
    EXPECT_EQ(ui.asked.last().buttons, Button::Ok | Button::Cancel);
}

}  // namespace
}  // namespace qp
