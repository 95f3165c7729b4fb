// The script sections of the advanced page, driven through their widgets: a script becomes
// the command's keys and new names once the typing pauses; "测试" and the examples.
#include <gtest/gtest.h>

#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStandardPaths>
#include <QTest>

#include "commands/CommandFamilies.h"
#include "core/Session.h"
#include "PageDriver.h"
#include "../support/QStringPrinter.h"
#include "ui/pages/FrameFileRenameAdvanced.h"

namespace qp::ui {
namespace {

class ScriptSections : public ::testing::Test, protected test::PageDriver {
protected:
    ScriptSections() : session(SettingsStore(), interaction, QStringLiteral("[20240305140709123]"))
    {
        registerCommandFamilies(session.pipeline().registry());
        for (const char* name : {"a", "b"}) {
            FileEntry row;
            row.path = QStringLiteral("/nowhere/");
            row.name = row.newName = QString::fromUtf8(name);
            row.ext = row.newExt = QStringLiteral(".txt");
            session.renameList().append(row);
        }
        frame = std::make_unique<TFrameFileRenameAdvanced>(session);
        frame->resize(560, 900);
        frame->show();
    }

    QWidget& driven() const override { return *frame; }
    const Session& pageSession() const override { return session; }

    QPlainTextEdit* editor(const char* code) const { return control<QPlainTextEdit>(QStringLiteral("PlainTextEdit%1Script").arg(code)); }
    QString result(const char* code) const { return control<QLabel>(QStringLiteral("Label%1Result").arg(code))->text(); }
    QString newNames() const
    {
        QStringList names;
        for (const FileEntry& row : session.renameList().rows())
            names.append(row.newFileName());
        return names.join(u' ');
    }

    ScriptedInteraction interaction;
    Session session;
    std::unique_ptr<TFrameFileRenameAdvanced> frame;
};

TEST_F(ScriptSections, TheScriptIsRecordedOnceTheTypingPauses)
{
    editor("A12")->setPlainText("begin\n  FileName := UpperCase(FileName);\nend.");
    expectStoresExactly("RadioButtonA12Script", {{"A12_Script", "1"},
                                                  {"A12_PascalScriptLinesCount", "3"},
                                                  {"A12_PSLine1", "begin"},
                                                  {"A12_PSLine2", "|  FileName := UpperCase(FileName);|"},
                                                  {"A12_PSLine3", "end."}});
    EXPECT_EQ(stored("CMDid"), "A1201");
    EXPECT_EQ(stored("CMDComment"), "Pascal 脚本更名");
    EXPECT_EQ(newNames(), "A.TXT B.TXT");

    // Typing changes nothing until it pauses; then the open command follows.
    editor("A12")->setPlainText("FileName := 'x' + FileName;");
    EXPECT_EQ(newNames(), "A.TXT B.TXT");
    QTRY_COMPARE(newNames(), QStringLiteral("xa.txt xb.txt"));
    EXPECT_EQ(session.commandList().size(), 1);
    EXPECT_EQ(stored("A12_PascalScriptLinesCount"), "1");
    EXPECT_EQ(result("A12"), "语法正确。");
}

TEST_F(ScriptSections, TestRunsOnOneRowAndChangesNothing)
{
    editor("A12")->setPlainText("FileName := IntToStr(FileIndex) + '_' + FileName;");
    click("PushButtonA12Test");
    EXPECT_EQ(result("A12"), "测试：a.txt → 0_a.txt");
    editor("A12")->setPlainText("FileName := FileName[99];");
    click("PushButtonA12Test");
    EXPECT_TRUE(result("A12").contains("（第 1 行第 21 列）：字符串下标 99 超出范围")) << result("A12").toStdString();
    EXPECT_EQ(newNames(), "a.txt b.txt");
    EXPECT_TRUE(session.commandList().isEmpty());
}

TEST_F(ScriptSections, AnExampleReplacesTheScriptAsOneUndoableEdit)
{
    editor("A12")->setPlainText("// mine");
    auto* button = control<QPushButton>("PushButtonA12Examples");
    button->menu()->actions().constFirst()->trigger();
    EXPECT_TRUE(editor("A12")->toPlainText().contains("Format('%.3d_', [n])"));
    EXPECT_EQ(newNames(), "001_a.txt 002_b.txt");
    editor("A12")->undo();
    EXPECT_EQ(editor("A12")->toPlainText(), "// mine");
}

TEST_F(ScriptSections, PythonTestShowsTheAnswerOrTheError)
{
    if (QStandardPaths::findExecutable("python3").isEmpty())
        GTEST_SKIP() << "python3 is not installed";
    editor("A13")->setPlainText("def rename_one(row):\n    print('seen', row['index'])\n    return row['name'].upper()\n");
    click("PushButtonA13Test");
    EXPECT_EQ(result("A13"), "测试：a.txt → A.txt\nseen 0");
    editor("A13")->setPlainText("def rename_one(row):\n    return 1 / 0\n");
    click("PushButtonA13Test");
    EXPECT_TRUE(result("A13").contains("ZeroDivisionError")) << result("A13").toStdString();
    EXPECT_EQ(newNames(), "a.txt b.txt");
}

}  // namespace
}  // namespace qp::ui
