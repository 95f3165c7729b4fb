#include <gtest/gtest.h>

#include "core/CommandFile.h"
#include "core/CommandList.h"
#include "core/Session.h"

namespace qp {
namespace {

class CommandListTest : public ::testing::Test {
protected:
    CommandListTest() : session(SettingsStore(), ui, QStringLiteral("[x]"))
    {
        list().setClock([] { return QDateTime(QDate(2024, 5, 1), QTime(9, 30, 15, 123)); });
        session.setCommandRunner([this] { ++runs; });
        session.setPageResetter([this] {
            ++resets;
            if (onReset)
                onReset();
        });
        for (int i = 0; i < 3; ++i) {
            FileEntry row;
            row.path = QStringLiteral("/data/");
            row.name = QStringLiteral("file%1").arg(i);
            row.ext = QStringLiteral(".txt");
            row.newName = QStringLiteral("changed");
            session.renameList().append(row);
        }
    }

    CommandList& list() { return session.commandList(); }
    SettingsStore& store() { return session.settings(); }

    // What a function page does: ask, and write its command when told to.
    RecordAnswer page(const QString& code, bool keepUnchanged = false)
    {
        const RecordAnswer answer = recordCommand(session, code, keepUnchanged);
        if (answer.write)
            list().describe(answer.section, code + QStringLiteral("01"), QStringLiteral("说明 ") + code);
        return answer;
    }

    // The rows as "code status" texts ("N1 Ok", "E3 open"), after checking that the
    // store's "CommandList" says exactly what the grid shows.
    QStringList rowTexts()
    {
        QStringList texts;
        QStringList lines;
        for (const CommandRow& row : list().rows()) {
            texts.append(row.functionCode + (row.ended ? QStringLiteral(" Ok") : QStringLiteral(" open")));
            lines.append(QStringLiteral("%1=%2").arg(lines.size() + 1).arg(row.section));
        }
        if (!lines.isEmpty())
            lines.prepend(QStringLiteral("CommandListCount=%1").arg(list().size()));
        EXPECT_EQ(store().sectionLines(QStringLiteral("CommandList")), lines);
        return texts;
    }

    ScriptedInteraction ui;
    Session session;
    int runs = 0;
    int resets = 0;
    std::function<void()> onReset;
};

// Ops: "N1" records with an option selected, "N1-" chooses its "保持不变", "|" ends the
// current command.
TEST_F(CommandListTest, RecordingFollowsTheOpenCommand)
{
    struct Case {
        const char* name;
        QStringList ops;
        QStringList rows;
        bool write, created, removed;
    };
    const Case cases[] = {
        {"same function twice updates one command", {"N1", "N1"}, {"N1 open"}, true, false, false},
        {"keep-unchanged removes the open command", {"N1", "N1", "N1-"}, {}, false, false, true},
        {"after ending, the same function starts anew", {"N1", "|", "N1"}, {"N1 Ok", "N1 open"}, true, true, false},
        {"a different function ends the previous one", {"N1", "E3"}, {"N1 Ok", "E3 open"}, true, true, false},
        {"keep-unchanged of another function ends the open one", {"N1", "E3-"}, {"N1 Ok"}, false, false, false},
        {"an ended command is not removed", {"N1", "|", "N1-"}, {"N1 Ok"}, false, false, false},
        {"only the last command can be reopened", {"N1", "E3", "N1"}, {"N1 Ok", "E3 Ok", "N1 open"}, true, true, false},
        {"removal takes only the open command", {"N1", "E3", "E3-"}, {"N1 Ok"}, false, false, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        list().clearAll();
        runs = 0;
        RecordAnswer last;
        QStringList created;
        for (const QString& op : c.ops) {
            const bool keep = op.endsWith(u'-');
            if (op == u"|")
                endCurrentCommand(session);
            else
                last = page(keep ? op.chopped(1) : op, keep);
            if (last.created)
                created.append(last.section);
        }
        EXPECT_EQ(rowTexts(), c.rows);
        EXPECT_EQ(std::tie(last.write, last.created, last.removed), std::tie(c.write, c.created, c.removed));
        EXPECT_EQ(runs, c.removed ? 1 : 0);  // what is left is run again without the removed one
        for (const QString& section : created)
            EXPECT_EQ(store().hasSection(section), list().sectionNames().contains(section));
    }
}

TEST_F(CommandListTest, SectionNamesStayDistinctWithinOneMillisecond)
{
    page(QStringLiteral("N1"));
    endCurrentCommand(session);
    page(QStringLiteral("N1"));
    store().writeInt(QStringLiteral("CMD_N120240501093015125"), QStringLiteral("N1_Old"), 1);  // left over
    endCurrentCommand(session);
    page(QStringLiteral("N1"));
    EXPECT_EQ(list().sectionNames(), (QStringList{"CMD_N120240501093015123", "CMD_N120240501093015124",
                                                  "CMD_N120240501093015126"}));
    // An update in place rewrites the sub-code and the description shown.
    list().describe(list().sectionNames().last(), QStringLiteral("N105"), QStringLiteral("换了选项"));
    EXPECT_EQ(store().readString(list().sectionNames().last(), QStringLiteral("CMDid"), {}), QStringLiteral("N105"));
    EXPECT_EQ(list().rows().back().comment, QStringLiteral("换了选项"));
}

TEST_F(CommandListTest, NothingIsRecordedWithoutRowsOrWhilePagesAreReset)
{
    page(QStringLiteral("N1"));
    RecordAnswer duringReset{true, {}, false, false};
    onReset = [&] { duringReset = recordCommand(session, QStringLiteral("N1"), true); };
    ASSERT_TRUE(endCurrentCommand(session));
    EXPECT_FALSE(duringReset.write);
    EXPECT_FALSE(session.resettingPages());
    EXPECT_FALSE(endCurrentCommand(session));  // already ended
    EXPECT_EQ(resets, 1);

    session.renameList().clear();
    session.setPendingImport(true);
    EXPECT_FALSE(page(QStringLiteral("E3")).write);
    EXPECT_TRUE(ui.asked.isEmpty());
    EXPECT_EQ(rowTexts(), QStringList{"N1 Ok"});
}

TEST_F(CommandListTest, PendingImportAsksFirstAndIsClearedOnOk)
{
    for (Button answer : {Button::Cancel, Button::Ok}) {
        const bool ok = answer == Button::Ok;
        ui.asked.clear();
        session.setPendingImport(true);
        int refreshes = 0;
        session.setPendingListRefresh([&] {
            ++refreshes;
            EXPECT_TRUE(list().isEmpty());  // before the command is recorded
        });
        ui.answer(QStringLiteral("commands.pendingImport"), {answer});
        EXPECT_EQ(page(QStringLiteral("N2")).write, ok);
        ASSERT_EQ(ui.asked.size(), 1);
        EXPECT_EQ(ui.asked[0].title, QStringLiteral("温馨提示"));
        EXPECT_EQ(ui.asked[0].buttons, Button::Ok | Button::Cancel);
        EXPECT_EQ(ui.asked[0].text,
                  QStringLiteral("更名文件列表中内容为导入的更名方案文件或快照文件，还未进行处理，继续操作更名方案或快照可能被忽略。继续吗？"));
        EXPECT_EQ(session.pendingImport(), !ok);
        EXPECT_EQ(refreshes, ok ? 1 : 0);
        EXPECT_EQ(list().size(), ok ? 1 : 0);
    }
}

TEST_F(CommandListTest, DeletingTheLastAndTheCommandsAfterTheSelection)
{
    for (const char* code : {"N1", "E3", "N2", "N4"})
        page(QString::fromLatin1(code));
    const QStringList sections = list().sectionNames();

    ASSERT_TRUE(deleteLastCommand(session));
    EXPECT_EQ(rowTexts(), (QStringList{"N1 Ok", "E3 Ok", "N2 Ok"}));
    EXPECT_FALSE(store().hasSection(sections[3]));

    session.setOnFileRenamePage(false);  // works on any page; the selected command stays
    ASSERT_TRUE(deleteCommandsAfter(session, 0));
    EXPECT_EQ(rowTexts(), QStringList{"N1 Ok"});
    EXPECT_EQ(QList<bool>({store().hasSection(sections[0]), store().hasSection(sections[1]),
                           store().hasSection(sections[2])}),
              QList<bool>({true, false, false}));
    for (qsizetype row : {qsizetype(0), qsizetype(-1), qsizetype(5)})
        EXPECT_FALSE(deleteCommandsAfter(session, row)) << row;
    EXPECT_TRUE(ui.notices.isEmpty());

    session.setOnFileRenamePage(true);
    ASSERT_TRUE(deleteLastCommand(session));
    EXPECT_EQ(rowTexts(), QStringList{});
    EXPECT_FALSE(deleteLastCommand(session));
    EXPECT_EQ(runs, 3);
}

TEST_F(CommandListTest, ClearingAsksThenRestoresTheNewNames)
{
    store().writeString(QStringLiteral("Operation Config"), QStringLiteral("Kept"), QStringLiteral("1"));
    for (Button answer : {Button::No, Button::Yes}) {
        const bool yes = answer == Button::Yes;
        list().clearAll();
        page(QStringLiteral("N1"));
        page(QStringLiteral("E3"));
        const QStringList sections = list().sectionNames();
        ui.asked.clear();
        ui.answer(QStringLiteral("commands.clear"), {answer});

        EXPECT_EQ(clearCommandList(session), yes);
        ASSERT_EQ(ui.asked.size(), 1);
        EXPECT_EQ(ui.asked[0].buttons, Button::Yes | Button::No);
        EXPECT_EQ(ui.asked[0].text, QStringLiteral("即将清空命令列表中的所有命令，新文件名和新扩展名列将还原为原始状态。此操作不可逆，是否继续？"));
        EXPECT_EQ(list().size(), yes ? 0 : 2);
        EXPECT_EQ(store().hasSection(sections[1]), !yes);
        EXPECT_TRUE(store().hasSection(QStringLiteral("Operation Config")));
        EXPECT_EQ(resets, yes ? 1 : 0);
        for (const FileEntry& row : session.renameList().rows())
            EXPECT_EQ(row.newFileName(), yes ? row.fileName() : QStringLiteral("changed"));
    }
    ASSERT_EQ(ui.notices.size(), 1);
    EXPECT_EQ(ui.notices[0].text, QStringLiteral("清空命令列表完毕。"));
    EXPECT_TRUE(ui.captions.contains(QStringLiteral("正在还原文件名")));
    EXPECT_FALSE(ui.busy);
}

TEST_F(CommandListTest, MenuOperationsOffTheFilePageOnlyTellTheUser)
{
    page(QStringLiteral("N1"));
    session.setOnFileRenamePage(false);
    ui.answer(QStringLiteral("commands.clear"), {Button::Yes});
    const QString before = store().toText();
    const std::function<bool(Session&)> operations[] = {
        endCurrentCommand, deleteLastCommand, clearCommandList, refreshCommandList, clearRecentCommandFiles,
        [](Session& s) { return saveCommandFile(s, QStringLiteral("/tmp/x.frc")).commands > 0; },
        [](Session& s) { return loadCommandFile(s, QStringLiteral("/tmp/x.frc")).commands > 0; },
    };
    for (const auto& operation : operations) {
        ui.notices.clear();
        EXPECT_FALSE(operation(session));
        ASSERT_EQ(ui.notices.size(), 1);
        EXPECT_EQ(ui.notices[0].title, QStringLiteral("温馨提示"));
        EXPECT_EQ(ui.notices[0].text, QStringLiteral("请返回【1.文件名处理】版块使用此项功能。"));
    }
    EXPECT_TRUE(ui.asked.isEmpty());
    EXPECT_EQ(store().toText(), before);
    EXPECT_EQ(rowTexts(), QStringList{"N1 open"});
    EXPECT_EQ(runs + resets, 0);
}

TEST_F(CommandListTest, RebuildEndsEveryCommandAndReadsOnlyKeysThatExist)
{
    const QString cl = QStringLiteral("CommandList");
    const QString n1 = QStringLiteral("CMD_N120240501093015123");
    const QString a10 = QStringLiteral("CMD_A1020240501093015123");
    store().writeString(n1, QStringLiteral("CMDid"), QStringLiteral("N102"));
    store().writeString(n1, QStringLiteral("CMDComment"), QStringLiteral("添加"));
    store().writeString(a10, QStringLiteral("A10_X"), QStringLiteral("1"));  // no CMDid: code from the name
    store().writeString(QStringLiteral("Operation Config"), QStringLiteral("AutoPreview"), QStringLiteral("1"));
    const std::pair<const char*, QString> keys[] = {
        {"1", n1}, {"2", ""}, {"3", "CMD_gone"}, {"4", "Operation Config"}, {"06", n1}, {"6", a10},
        {"7", n1.toLower()},  // repeated
        {"8", a10},           // past the count
    };
    struct Case {
        const char* count;
        QStringList rows;
    };
    const Case cases[] = {{"7", {"N1 Ok", "A10 Ok"}}, {"999999999", {"N1 Ok", "A10 Ok"}},
                          {"9223372036854775807", {"N1 Ok", "A10 Ok"}}, {"-5", {}}, {"x", {}}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.count);
        store().eraseSection(cl);
        store().writeString(cl, QStringLiteral("CommandListCount"), QString::fromLatin1(c.count));
        for (const auto& [key, value] : keys)
            store().writeString(cl, QString::fromLatin1(key), value);
        ASSERT_TRUE(refreshCommandList(session));
        EXPECT_EQ(rowTexts(), c.rows);  // and the list was rewritten to match
    }
    store().eraseSection(cl);
    store().writeString(cl, QStringLiteral("CommandListCount"), QStringLiteral("1"));
    store().writeString(cl, QStringLiteral("1"), n1);
    list().rebuildFromStore();
    EXPECT_EQ(list().rows()[0].comment, QStringLiteral("添加"));
    // Deleting every row never reaches a section the list does not own.
    ASSERT_TRUE(deleteLastCommand(session));
    EXPECT_TRUE(store().hasSection(QStringLiteral("Operation Config")));
}

TEST(PageGroups, EveryFamilyHasAPage)
{
    const std::pair<const char*, const char*> cases[] = {
        {"N1", "N1"}, {"N2", "N2"}, {"N3", "N2"}, {"N4", "N4"}, {"N6", "N4"}, {"E1", "N4"}, {"E7", "N4"},
        {"A1", "A1"}, {"A7", "A1"}, {"A8", "A1_1"}, {"A10", "A1_1"}, {"A13", "A1_1"},
        {"M1", "M1"}, {"M4", "M1"}, {"D1", "D1"}, {"D2", "D2"}, {"D3", "D3"}, {"D5", "D3"},
        {"C1", "C1"}, {"O2", "O1"}, {"P1", "P1"}, {"T1", "T2"}, {"T2", "T2"}, {"F1", "F1"},
        {"K1", "K1"}, {"K2", "K2"}, {"K3", "K2"},
        {"", ""}, {"N", ""}, {"N0", ""}, {"n1", ""}, {"X1", ""}, {"N1a", ""}, {"A100", ""}, {"E-1", ""},
    };
    for (const auto& [code, group] : cases)
        EXPECT_EQ(pageGroupOf(QString::fromLatin1(code)), QString::fromLatin1(group)) << code;
}

}  // namespace
}  // namespace qp
