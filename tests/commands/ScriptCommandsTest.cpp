#include <gtest/gtest.h>

#include <QStandardPaths>
#include <algorithm>
#include <fstream>

#include "commands/ScriptCommands.h"
#include "core/CommandFile.h"
#include "core/CommandRegistry.h"
#include "core/Session.h"
#include "core/SettingsKeys.h"
#include "script/ScriptTrust.h"
#include "../support/QStringPrinter.h"
#include "../support/TempTree.h"

namespace qp {
namespace {

using scriptcommands::Language;

class ScriptCommandsTest : public ::testing::Test {
protected:
    ScriptCommandsTest() : session(SettingsStore(), ui, QStringLiteral("[20240305140709123]"))
    {
        scriptcommands::registerScriptCommands(session.pipeline().registry());
        for (const char* name : {"a.txt", "b.txt", "c.txt"})
            addRow(name);
    }

    void addRow(const char* fileName, bool folder = false)
    {
        const NameParts parts = splitFileName(QString::fromUtf8(fileName), folder);
        FileEntry row;
        row.path = tree.path("d") + '/';
        row.name = row.newName = parts.name;
        row.ext = row.newExt = parts.ext;
        row.isFolder = folder;
        session.renameList().append(row);
    }

    QString addScript(Language language, const char* script, bool fromFile = false)
    {
        SettingsStore& store = session.settings();
        const QString section = QStringLiteral("CMD_%1%2").arg(scriptcommands::functionCode(language)).arg(++sections);
        store.writeString(section, keys::kCommandId, scriptcommands::subCode(language));
        scriptcommands::writeScript(store, section, language, QString::fromUtf8(script));
        if (fromFile)
            store.writeBool(section, keys::kCommandFromFile, true);
        store.writeInt(keys::kCommandList, keys::kCommandListCount, sections);
        store.writeString(keys::kCommandList, QString::number(sections), section);
        return section;
    }

    QString run()
    {
        EXPECT_TRUE(session.pipeline().runAll(true));
        QStringList names;
        for (const FileEntry& row : session.renameList().rows())
            names.append(row.newName + '|' + row.newExt);
        return names.join(u' ');
    }

    struct Failure {
        const char* script;
        const char* fragment;  // of the red lines
        int timeLimit = 30;
    };
    // Each script alone in the command list leaves every name as it was and says why in red.
    void expectFailures(Language language, std::initializer_list<Failure> cases)
    {
        for (const Failure& c : cases) {
            session.settings().eraseSection(keys::kCommandList);
            session.settings().writeInt(keys::kScriptConfig, keys::kScriptTimeLimit, c.timeLimit);
            session.messages().clear();
            sections = 0;
            addScript(language, c.script);
            EXPECT_EQ(run(), "a|.txt b|.txt c|.txt") << c.script;
            EXPECT_TRUE(red().join(u'\n').contains(QString::fromUtf8(c.fragment))) << red().join(u'\n').toStdString();
        }
    }

    QStringList red() const
    {
        QStringList lines;
        for (const MessageLine& line : session.messages().lines()) {
            if (line.colour == MessageColour::Red)
                lines.append(line.text);
        }
        return lines;
    }

    test::TempTree tree;
    ScriptedInteraction ui;
    Session session;
    int sections = 0;
};

TEST_F(ScriptCommandsTest, PascalRenamesWholeNamesAndCountsTickedRows)
{
    addRow("folder.d", true);
    session.renameList()[1].selected = false;
    addScript(Language::Pascal, "var n: Integer;\nbegin\n  Inc(n);\n  FileName := Format('%.2d_', [n]) + UpperCase(FileName);\nend.");
    EXPECT_EQ(run(), "01_A|.TXT b|.txt 02_C|.TXT 03_FOLDER.D|");
    // The counter starts again with every run.
    EXPECT_EQ(run(), "01_A|.TXT b|.txt 02_C|.TXT 03_FOLDER.D|");
}

TEST_F(ScriptCommandsTest, PascalReachesMetaVariablesAndRegularExpressions)
{
    session.renameList()[0].name = QStringLiteral("IMG_0042");
    session.renameList()[0].newName = QStringLiteral("IMG_0042");
    addScript(Language::Pascal,
              "var g: array of String;\n"
              "begin\n"
              "  g := SubMatchesRegExpr(FileName, '([a-z]+)_(\\d+)', False);\n"
              "  if Length(g) = 2 then FileName := g[1] + '-' + LowerCase(g[0]) + ExtractFileExt(FileName)\n"
              "  else FileName := ReplaceRegExpr(ExpandMeta('<NAME>'), '^(.)', '[$1]') + '+' + GetField('M.NOPE');\n"
              "end.");
    EXPECT_EQ(run(), "0042-img|.txt [b]+| [c]+|");  // a field the file lacks is empty
}

TEST_F(ScriptCommandsTest, PascalErrorsLeaveEveryRowAsItWas)
{
    expectFailures(Language::Pascal,
                   {{"if FileName = 'b.txt' then FileName := FileName[99] else FileName := 'x' + FileName;",
                     "（第 1 行第 48 列）：字符串下标 99 超出范围（长度 5）。出错的文件：b.txt。"},
                    {"FileName := 'x' +;", "Pascal 脚本有错误（第 1 行第 18 列）"},
                    {"FileName := ReplaceRegExpr(FileName, '(', 'x');", "正则表达式有误"}});
    EXPECT_EQ(red().size(), 1);
}

TEST_F(ScriptCommandsTest, ScriptsFromFilesRunOnlyOnceAllowed)
{
    const QString script = "FileName := 'x' + FileName;";
    addScript(Language::Pascal, script.toUtf8().constData(), true);
    // The question's default is No; the answer is remembered by the script's digest.
    EXPECT_EQ(run(), "a|.txt b|.txt c|.txt");
    EXPECT_EQ(run(), "a|.txt b|.txt c|.txt");
    EXPECT_EQ(ui.asked.size(), 1);
    EXPECT_EQ(ui.asked[0].id, "script.allowFromFile");
    const QString digest = scripts::scriptDigest(script);
    EXPECT_EQ(session.settings().readRaw(keys::kScriptApprovals, digest, "?"), "0");
    EXPECT_EQ(red().size(), 2);

    session.settings().writeBool(keys::kScriptApprovals, digest, true);
    EXPECT_EQ(run(), "xa|.txt xb|.txt xc|.txt");
    EXPECT_EQ(ui.asked.size(), 1);

    // The command line runs all scripts or none, and never asks.
    session.settings().eraseSection(keys::kScriptApprovals);
    session.scriptPermission = Session::ScriptPermission::DenyAll;
    EXPECT_EQ(run(), "a|.txt b|.txt c|.txt");
    EXPECT_TRUE(red().constLast().contains("--allow-scripts"));
    session.scriptPermission = Session::ScriptPermission::AllowAll;
    EXPECT_EQ(run(), "xa|.txt xb|.txt xc|.txt");
    EXPECT_EQ(ui.asked.size(), 1);
}

TEST_F(ScriptCommandsTest, CommandFilesMarkTheirScriptsAndCannotApproveThem)
{
    const QString script = "FileName := 'x';";
    const QString file = tree.path("scripted.frc");
    std::ofstream(file.toStdString())
        << "[CommandList]\nCommandListCount=1\n1=CMD_A12X\n\n[CMD_A12X]\nCMDid=A1201\nCMDFromFile=0\n"
           "A12_PascalScriptLinesCount=1\nA12_PSLine1=" << script.toStdString() << "\n\n[Script Approvals]\n"
        << scripts::scriptDigest(script).toStdString() << "=1\n\n[Script Config]\nPythonExe=/tmp/evil\n";
    ASSERT_EQ(loadCommandFile(session, file).outcome, CommandFileResult::Outcome::Done);
    EXPECT_TRUE(session.settings().readBool("CMD_A12X", keys::kCommandFromFile, false));
    EXPECT_FALSE(session.settings().hasSection(keys::kScriptConfig));
    // Loading ran the list, so the script asked first; the file's own "yes" was not taken.
    EXPECT_EQ(ui.asked.size(), 1);
    EXPECT_EQ(session.settings().readRaw(keys::kScriptApprovals, scripts::scriptDigest(script), "?"), "0");
    EXPECT_EQ(run(), "a|.txt b|.txt c|.txt");
}

// ---------------------------------------------------------------------------------------
// Python: one worker process per run

class PythonCommandTest : public ScriptCommandsTest {
protected:
    void SetUp() override
    {
        if (QStandardPaths::findExecutable("python3").isEmpty())
            GTEST_SKIP() << "python3 is not installed";
    }
};

TEST_F(PythonCommandTest, RenamesTickedRowsFromTheWholeList)
{
    addRow("folder.d", true);
    session.renameList()[1].selected = false;
    addScript(Language::Python,
              "def rename(rows):\n"
              "    print('rows:', len(rows))\n"
              "    for row in rows:\n"
              "        row['name'] = '%d_%s' % (row['index'], row['name'].upper())\n"
              "        row['extension'] = '.md'\n");
    EXPECT_EQ(run(), "0_A|.md b|.txt 2_C|.md 3_FOLDER.D.md|");
    EXPECT_TRUE(std::any_of(session.messages().lines().begin(), session.messages().lines().end(),
                            [](const MessageLine& line) { return line.text.endsWith("Python: rows: 4"); }));
    EXPECT_TRUE(red().isEmpty());
}

TEST_F(PythonCommandTest, RenameOneServesEachSelectedRow)
{
    addScript(Language::Python,
              "import os\n"
              "def rename_one(row):\n"
              "    assert os.path.basename(row['path']) == row['name'] + row['extension']\n"
              "    return row['name'] + '_' + str(row['size'])\n");
    EXPECT_EQ(run(), "a_0|.txt b_0|.txt c_0|.txt");
}

TEST_F(PythonCommandTest, BadAnswersChangeNothing)
{
    expectFailures(Language::Python,
                   {{"def rename(rows:\n", "Python 脚本出错"},
                    {"def rename(rows):\n    raise ValueError('nope')\n", "Python: ValueError: nope"},
                    {"x = 1\n", "没有定义 rename(rows)"},
                    {"def rename(rows):\n    rows.pop()\n", "返回了 2 个结果，应为 3 个"},
                    {"def rename(rows):\n    rows[1]['name'] = 5\n", "第 2 个文件的文件名不是字符串"},
                    {"import sys\ndef rename(rows):\n    sys.exit(0)\n", "没有给出结果"},
                    {"def rename(rows):\n    while True: pass\n", "超过时间上限（1 秒）", 1}});
}

TEST_F(PythonCommandTest, MissingInterpreterIsOneClearMessage)
{
    session.settings().writeString(keys::kScriptConfig, keys::kPythonExe, tree.path("no-such-python"));
    addScript(Language::Python, "def rename(rows):\n    pass\n");
    EXPECT_EQ(run(), "a|.txt b|.txt c|.txt");
    ASSERT_EQ(red().size(), 1);
    EXPECT_TRUE(red()[0].contains("找不到 Python 解释器"));
}

}  // namespace
}  // namespace qp
