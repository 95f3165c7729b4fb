#include <gtest/gtest.h>

#include "core/Pipeline.h"
#include "core/Session.h"
#include "core/SettingsKeys.h"

namespace qp {
namespace {

// A command made of a lambda; each call is recorded as "code:row" or "code:skip<row>".
struct LambdaCommand : CompiledCommand {
    using Fn = std::function<void(const CommandContext&, QString&, QString&)>;
    Fn fn;
    QString code;
    QStringList* calls = nullptr;
    void apply(const CommandContext& c, QString& name, QString& ext) override
    {
        calls->append(code + ':' + QString::number(c.rowIndex));
        fn(c, name, ext);
    }
    void skip(const CommandContext& c) override { calls->append(code + ":skip" + QString::number(c.rowIndex)); }
};

class PipelineTest : public ::testing::Test {
protected:
    PipelineTest() : session(SettingsStore(), ui, QStringLiteral("[20240305140709123]"))
    {
        // "T101" appends its "T1_Text" (read once, when compiled); "T201" upper-cases the name.
        add({"T101"}, [](const CommandSection& s) -> LambdaCommand::Fn {
            return [text = s.readString("T1_Text", "X")](const CommandContext&, QString& name, QString&) { name += text; };
        });
        add({"T201"}, [](const CommandSection&) -> LambdaCommand::Fn {
            return [](const CommandContext&, QString& name, QString&) { name = name.toUpper(); };
        });
    }

    void add(const QStringList& codes, std::function<LambdaCommand::Fn(const CommandSection&)> make)
    {
        session.pipeline().registry().registerFamily(codes, [this, make](const CommandSection& s) {
            ++compiled;
            auto command = std::make_unique<LambdaCommand>();
            command->fn = make(s);
            command->code = s.code;
            command->calls = &calls;
            return command;
        });
    }

    void addRows(int count)
    {
        for (int i = 0; i < count; ++i) {
            FileEntry row;
            row.name = row.newName = QStringLiteral("f%1").arg(i, 2, 10, QLatin1Char('0'));
            row.ext = row.newExt = ".txt";
            session.renameList().append(row, QString::number(i));
        }
    }

    QString addCommand(const QString& code, const QString& text = {})
    {
        SettingsStore& store = session.settings();
        const qint64 n = store.readInt("CommandList", "CommandListCount", 0) + 1;
        const QString section = "CMD_" + code + QString::number(n);
        store.writeString(section, "CMDid", code);
        if (!text.isEmpty())
            store.writeString(section, "T1_Text", text);
        store.writeInt("CommandList", "CommandListCount", n);
        store.writeString("CommandList", QString::number(n), section);
        return section;
    }

    QStringList newNames() const
    {
        QStringList names;
        for (const FileEntry& row : session.renameList().rows())
            names.append(row.newFileName());
        return names;
    }

    int logged(const QString& text) const
    {
        return int(std::count_if(session.messages().lines().begin(), session.messages().lines().end(),
                                 [&](const MessageLine& line) { return line.text.contains(text); }));
    }

    ScriptedInteraction ui;
    Session session;
    Pipeline& pipeline = session.pipeline();
    QStringList calls;
    int compiled = 0;
};

TEST(ExecutorDispatch, ExtensionCodesAreExactlyTheListedOnes)
{
    for (const char* code : {"E101", "E705", "A801", "A101", "A1101", "A1201"})
        EXPECT_EQ(executorFor(QString::fromLatin1(code)), ExecutorSide::Extension) << code;
    for (const char* code : {"E801", "E001", "A102", "A1001", "A1301", "N101", "e101", "E", ""})
        EXPECT_EQ(executorFor(QString::fromLatin1(code)), ExecutorSide::Main) << code;
}

TEST_F(PipelineTest, RowLimitFollowsThePreviewSettings)
{
    addRows(25);
    const QString section = addCommand("T101");
    const struct {
        bool allRows;
        const char *autoPreview, *before, *num;  // "": key absent
        int processed;
    } cases[] = {
        {false, "", "", "", 25},     {false, "1", "1", "10", 10}, {false, "1", "0", "10", 25},
        {false, "0", "1", "10", 0},  {false, "0", "0", "10", 0},  {true, "0", "1", "10", 25},
        {false, "1", "1", "", 10},   {false, "1", "1", "40", 25}, {false, "1", "1", "-3", 0},
    };
    const auto expected = [](int processed, const QString& added) {
        QStringList names;
        for (int i = 0; i < 25; ++i)
            names.append(QStringLiteral("f%1").arg(i, 2, 10, QLatin1Char('0')) + (i < processed ? added : "") + ".txt");
        return names;
    };
    for (const auto& c : cases) {
        session.settings().eraseSection(keys::kOperation);
        for (const auto& [key, value] : {std::pair{"AutoPreview", c.autoPreview}, {"AutoPreviewBefore", c.before},
                                         {"AutoPreviewNum", c.num}}) {
            if (*value)
                session.settings().writeRaw(keys::kOperation, key, value);
        }
        session.renameList()[24].newName = "stale";
        EXPECT_TRUE(pipeline.runAll(c.allRows));
        EXPECT_EQ(newNames(), expected(c.processed, "X")) << c.allRows << c.autoPreview << c.before << c.num;
        if (!c.allRows) {  // a single command obeys the same limit, on top of the present names
            pipeline.runOne(section);
            EXPECT_EQ(newNames(), expected(c.processed, "XX")) << c.autoPreview << c.before << c.num;
        }
    }
}

TEST_F(PipelineTest, CommandsRunInListOrderEachOverAllRows)
{
    addRows(3);
    addCommand("T101", "x");
    addCommand("T201");
    EXPECT_TRUE(pipeline.runAll(false));
    EXPECT_EQ(newNames(), (QStringList{"F00X.txt", "F01X.txt", "F02X.txt"}));
    EXPECT_EQ(calls, (QStringList{"T101:0", "T101:1", "T101:2", "T201:0", "T201:1", "T201:2"}));
    EXPECT_EQ(compiled, 2);  // once per run, not per row

    // The numbered keys decide the order, not the order the sections were written in.
    session.settings().writeString("CommandList", "1", "CMD_T2012");
    session.settings().writeString("CommandList", "2", "CMD_T1011");
    pipeline.runAll(false);
    EXPECT_EQ(newNames(), (QStringList{"F00x.txt", "F01x.txt", "F02x.txt"}));
    EXPECT_TRUE(ui.captions.contains("正在执行命令序列"));
    EXPECT_EQ(ui.lastPercent, 100);
    EXPECT_FALSE(ui.busy);
    EXPECT_EQ(logged("命令序列执行完毕。"), 2);
}

TEST_F(PipelineTest, OnlyTheExtensionSideChangesTheExtensionAndUntickedRowsAreSkipped)
{
    add({"E101", "N101"}, [](const CommandSection&) -> LambdaCommand::Fn {
        return [](const CommandContext& c, QString& name, QString& ext) {
            name = c.row.newName + '!' + QString::number(c.rowIndex);
            ext = ".bak";
        };
    });
    addRows(2);
    session.renameList()[1].selected = false;
    addCommand("E101");
    addCommand("N101");
    pipeline.runAll(true);
    // N101 sees E101's result in the row's columns; its own ".bak" is discarded.
    EXPECT_EQ(newNames(), (QStringList{"f00!0!0.bak", "f01.txt"}));
    EXPECT_EQ(calls, (QStringList{"E101:0", "E101:skip1", "N101:0", "N101:skip1"}));
}

TEST_F(PipelineTest, EveryRowIsResetEvenWithNoCommandsOrNoRowsToProcess)
{
    addRows(3);
    session.settings().writeBool(keys::kOperation, "AutoPreview", false);
    for (qsizetype i = 0; i < 3; ++i) {
        FileEntry& row = session.renameList()[i];
        row.newName = "old";
        row.newExt = ".old";
        row.state = StateFailed;
    }
    session.runAllCommands();  // what loading calls
    EXPECT_EQ(newNames(), (QStringList{"f00.txt", "f01.txt", "f02.txt"}));
    EXPECT_EQ(session.renameList().at(2).state, StateLoaded);
}

TEST_F(PipelineTest, UnknownCodeChangesNothingAndIsLoggedOncePerRun)
{
    addRows(30);
    addCommand("T101");
    const QString unknown = addCommand("Z999");
    for (int run = 1; run <= 2; ++run) {
        pipeline.runAll(true);
        EXPECT_EQ(newNames()[29], "f29X.txt");
        EXPECT_EQ(logged(unknown + "（CMDid=Z999）"), run);
    }
}

TEST_F(PipelineTest, SingleCommand)
{
    addRows(2);
    // With an empty list the names are restored, unless an import waits to be applied.
    for (const bool pending : {false, true}) {
        session.renameList()[0].newName = "imported";
        session.setPendingImport(pending);
        EXPECT_TRUE(pipeline.runOne("CMD_gone"));
        EXPECT_EQ(newNames()[0], pending ? "imported.txt" : "f00.txt") << pending;
    }
    EXPECT_TRUE(ui.captions.contains("正在还原新文件名和新扩展名"));

    const QString section = addCommand("T101");
    session.setPageResetter([&] { pipeline.runOne(section); });
    session.resetPages();  // pages going back to "leave unchanged" run nothing
    EXPECT_TRUE(calls.isEmpty());
    session.renameList()[1].state = StateFailed;
    pipeline.runOne(section);
    EXPECT_EQ(newNames(), (QStringList{"importedX.txt", "f01X.txt"}));
    EXPECT_EQ(session.renameList().at(1).state, StateLoaded);
    EXPECT_TRUE(ui.statuses.contains("命令执行完毕。"));
    EXPECT_EQ(logged("命令执行完毕。"), 1);
}

TEST_F(PipelineTest, StopEndsTheRunEarly)
{
    addRows(3000);
    addCommand("T101");
    ui.requestStopAfter(1);
    EXPECT_FALSE(pipeline.runAll(false));
    EXPECT_EQ(newNames()[0], "f00X.txt");
    EXPECT_EQ(newNames()[2999], "f2999.txt");
    EXPECT_EQ(logged("命令序列执行完毕。"), 0);
}

}  // namespace
}  // namespace qp
