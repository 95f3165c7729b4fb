// The advanced page driven through its real widgets over a session with a few rows: the
// options and boxes a user touches must end up as commands in the command list, with the
// keys the executors read, and as new names in the rows.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QStringEncoder>
#include <QTemporaryDir>
#include <QTest>

#include "commands/AdvancedCommands.h"
#include "commands/CommandFamilies.h"
#include "core/Session.h"
#include "core/SettingsKeys.h"
#include "PageDriver.h"
#include "../support/QStringPrinter.h"
#include "ui/pages/FrameFileRenameAdvanced.h"

namespace qp::ui {
namespace {

struct Row {
    const char* folder;
    const char* name;  // with its extension
};

class AdvancedPage : public ::testing::Test, protected test::PageDriver {
protected:
    AdvancedPage() : session(SettingsStore(), interaction, QStringLiteral("[20240305140709123]"))
    {
        registerCommandFamilies(session.pipeline().registry());
        setRows({{"/nowhere/", "重庆.txt"}, {"/nowhere/", "Report_2024.txt"}, {"/nowhere/", "第二章①.txt"}});
        frame = std::make_unique<TFrameFileRenameAdvanced>(session);
        frame->setDialogRunner([this](QDialog& dialog) { return answer ? answer(dialog) : int(QDialog::Rejected); });
        frame->resize(560, 700);
        frame->show();
    }

    void setRows(std::initializer_list<Row> rows)
    {
        session.renameList().clear();
        for (const Row& r : rows) {
            FileEntry row;
            row.path = QString::fromUtf8(r.folder);
            const QString name = QString::fromUtf8(r.name);
            const qsizetype dot = name.lastIndexOf(u'.');
            row.name = row.newName = name.left(dot);
            row.ext = row.newExt = name.mid(dot);
            session.renameList().append(row);
        }
    }

    QWidget& driven() const override { return *frame; }
    const Session& pageSession() const override { return session; }

    void setText(const QString& combo, const QString& text) { control<QComboBox>(combo)->setEditText(text); }

    // Types into the list as a user does, one key at a time, Enter and TAB included.
    void typeList(const QString& text)
    {
        QPlainTextEdit* editor = nameList();
        editor->setFocus();
        for (QChar c : text) {
            if (c == u'\n')
                QTest::keyClick(editor, Qt::Key_Return);
            else if (c == u'\t')
                QTest::keyClick(editor, Qt::Key_Tab);
            else
                QTest::sendKeyEvent(QTest::Click, editor, Qt::Key_unknown, QString(c), Qt::NoModifier);
        }
    }
    QPlainTextEdit* nameList() const { return control<QPlainTextEdit>("PlainTextEditA11NameList"); }

    QStringList newNames() const
    {
        QStringList names;
        for (const FileEntry& row : session.renameList().rows())
            names.append(row.newName + row.newExt);
        return names;
    }


    ScriptedInteraction interaction;
    Session session;
    std::unique_ptr<TFrameFileRenameAdvanced> frame;
    std::function<int(QDialog&)> answer;
};

TEST_F(AdvancedPage, EachOptionRecordsItsSubCodeAndKeepUnchangedTakesItBack)
{
    const QStringList before = newNames();
    const struct {
        const char* option;
        const char* code;
        int row;
        const char* expected;
    } cases[] = {
        {"RadioButtonA1Regex", "A102", 0, "重庆.txt"},  // no pattern yet: nothing changes
        {"RadioButtonA1IncludeExt", "A101", 0, "重庆.txt"},
        {"RadioButtonA3HZToPYStr", "A301", 0, "chong_qing.txt"},
        {"RadioButtonA3HZToPYTone", "A302", 0, "chóng_qìng.txt"},
        {"RadioButtonA3HZToPYInitial", "A303", 0, "c重庆.txt"},
        {"RadioButtonA4DigitToSmallHZ", "A401", 1, "Report_二〇二四.txt"},
        {"RadioButtonA4DigitToCapitalHZ", "A402", 1, "Report_贰零贰肆.txt"},
        {"RadioButtonA4HZToDigit", "A403", 2, "第2章①.txt"},
        {"RadioButtonA4SymbolToDigit", "A404", 2, "第二章(1).txt"},
        {"RadioButtonA11NameList", "A1101", 0, "重庆.txt"},  // an empty list names no row
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.option);
        click(c.option);
        ASSERT_EQ(session.commandList().size(), 1);
        EXPECT_EQ(stored("CMDid"), c.code);
        EXPECT_EQ(stored("CMDComment"), advancedCommandComment(c.code));
        EXPECT_EQ(newNames()[c.row], c.expected);
        click(QStringLiteral("RadioButton%1Keep").arg(session.commandList().rows().back().functionCode));
        EXPECT_TRUE(session.commandList().isEmpty());
        EXPECT_EQ(newNames(), before);
    }
}

TEST_F(AdvancedPage, PinyinBoxesAndOptionsChangeTheOpenCommandInPlace)
{
    click("RadioButtonA3HZToPYTone");
    setText("ComboBoxA3HZToPYLinkStr", "-");
    click("CheckBoxA3HZToPY1stUpperCase");
    EXPECT_EQ(newNames()[0], "Chóng-Qìng.txt");
    click("RadioButtonA3HZToPYStr");
    EXPECT_EQ(newNames()[0], "Chong-Qing.txt");
    ASSERT_EQ(session.commandList().size(), 1);
    EXPECT_EQ(stored("CMDid"), "A301");
    EXPECT_EQ(session.commandList().rows().back().comment, advancedCommandComment("A301"));
    EXPECT_EQ(stored("A3_HZToPYLinkStr"), "-");
    // Names without Chinese characters are never touched.
    EXPECT_EQ(newNames()[1], "Report_2024.txt");
}

TEST_F(AdvancedPage, EachSectionStoresItsKeysWithThePageDefaults)
{
    const struct {
        const char* option;
        test::StoredKeys keys;
    } cases[] = {
        {"RadioButtonA1IncludeExt",
         {{"A1_Regex", "0"}, {"A1_IncludeExt", "1"}, {"A1_RegexText", ""}, {"A1_RegexReplaceText", ""}, {"A1_CaseFlag", "0"}}},
        {"RadioButtonA3HZToPYInitial",
         {{"A3_HZToPYStr", "0"}, {"A3_HZToPYTone", "0"}, {"A3_HZToPYInitial", "1"}, {"A3_HZToPY1stLetter", "0"},
          {"A3_HZToPYPolyphone", "0"}, {"A3_HZToPYKeepHZ", "0"}, {"A3_HZToPYLetterStr", "1"}, {"A3_HZToPYLeftStr", ""},
          {"A3_HZToPYRightStr", ""}, {"A3_HZToPYLinkStr", "_"}, {"A3_HZToPYUnkown", "1"}, {"A3_HZToPY1stUpperCase", "0"}}},
        {"RadioButtonA4HZToDigit",
         {{"A4_DigitToSmallHZ", "0"}, {"A4_DigitToCapitalHZ", "0"}, {"A4_HZToDigit", "1"}, {"A4_SymbolToDigit", "0"}}},
        {"RadioButtonA11NameList", {{"A11_NameList", "1"}, {"A11_NameListLinesCount", "0"}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.option);
        click(c.option);
        for (const auto& [key, value] : c.keys)
            EXPECT_EQ(stored(key), value) << key;
    }
}

TEST_F(AdvancedPage, RegularExpressionsWithAndWithoutTheExtension)
{
    const struct {
        const char* option;
        const char* pattern;
        const char* replacement;
        bool caseCounts;
        const char* expected;
    } cases[] = {
        {"RadioButtonA1Regex", R"((\w+)_(\d+))", "$2-$1", false, "2024-Report.txt"},
        // With the extension the result is split again at its last dot.
        {"RadioButtonA1IncludeExt", R"(\.txt$)", "_$0.md", false, "Report_2024_.txt.md"},
        {"RadioButtonA1Regex", "report", "R", false, "R_2024.txt"},
        {"RadioButtonA1Regex", "report", "R", true, "Report_2024.txt"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.pattern);
        click(c.option);
        setText("ComboBoxA1Regex", QString::fromUtf8(c.pattern));
        setText("ComboBoxA1RegexReplace", QString::fromUtf8(c.replacement));
        if (control<QAbstractButton>("CheckBoxA1Case")->isChecked() != c.caseCounts)
            click("CheckBoxA1Case");
        EXPECT_EQ(newNames()[1], c.expected);
        EXPECT_EQ(session.commandList().size(), 1);
    }
}

TEST_F(AdvancedPage, ATypedListRenamesTheRowsItNamesAndIsStoredLineByLine)
{
    click("RadioButtonA11NameList");
    typeList(QStringLiteral("重庆.txt=山城.txt\nReport_2024.txt\tR.md\n; note\nno separator\n"));
    EXPECT_EQ(newNames(), (QStringList{"山城.txt", "R.md", "第二章①.txt"}));
    EXPECT_EQ(control<QLabel>("LabelA11PairCount")->text(), "列表中有 2 对，1 行无法识别");
    ASSERT_EQ(session.commandList().size(), 1);
    EXPECT_EQ(stored("A11_NameListLinesCount"), "4");
    EXPECT_EQ(stored("A11_NLLine2"), "Report_2024.txt\tR.md");

    // A shorter list leaves no line of the longer one behind.
    nameList()->setPlainText(QStringLiteral("第二章①.txt=三.txt"));
    EXPECT_EQ(newNames(), (QStringList{"重庆.txt", "Report_2024.txt", "三.txt"}));
    EXPECT_EQ(stored("A11_NameListLinesCount"), "1");
    EXPECT_EQ(stored("A11_NLLine2"), "<none>");
    EXPECT_EQ(session.commandList().size(), 1);
}

TEST_F(AdvancedPage, FillingFromTheRowsGivesEveryRowItsOwnLine)
{
    setRows({{"/a/", "x=1.txt"}, {"/b/", "x=1.txt"}, {"/a/", "重庆.txt"}});
    click("PushButtonA11FillFromList");
    // A shared name is written as the full path, an "=" inside a name as "<61>".
    EXPECT_EQ(frame->nameListLines(),
              (QStringList{"/a/x<61>1.txt=x<61>1.txt", "/b/x<61>1.txt=x<61>1.txt", "重庆.txt=重庆.txt"}));
    EXPECT_TRUE(control<QAbstractButton>("RadioButtonA11NameList")->isChecked());
    ASSERT_EQ(session.commandList().size(), 1);
    EXPECT_EQ(newNames(), (QStringList{"x=1.txt", "x=1.txt", "重庆.txt"}));
    EXPECT_EQ(control<QLabel>("LabelA11PairCount")->text(), "列表中有 3 对");

    QStringList lines = frame->nameListLines();
    lines[1] = "/b/x<61>1.txt=y.txt";
    nameList()->setPlainText(lines.join('\n'));
    EXPECT_EQ(newNames(), (QStringList{"x=1.txt", "y.txt", "重庆.txt"}));

    // Filling again is one edit that Ctrl+Z takes back.
    click("PushButtonA11FillFromList");
    EXPECT_EQ(newNames()[1], "x=1.txt");
    nameList()->undo();
    EXPECT_EQ(newNames()[1], "y.txt");
    EXPECT_EQ(session.commandList().size(), 1);
}

TEST_F(AdvancedPage, LoadingAListFile)
{
    QTemporaryDir dir;
    const QString utf16 = dir.filePath(QStringLiteral("名单.txt"));
    QFile file(utf16);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    QStringEncoder encoder(QStringEncoder::Utf16LE, QStringEncoder::Flag::WriteBom);
    const QByteArray bytes = encoder(QStringLiteral("重庆.txt\t山城.txt\r\nReport_2024.txt=报告.txt\r\n"));
    file.write(bytes);
    file.close();
    const QString broken = dir.filePath(QStringLiteral("broken.txt"));
    QFile bad(broken);
    ASSERT_TRUE(bad.open(QIODevice::WriteOnly));
    bad.write("a\xff.txt=b.txt");  // neither UTF-8 nor marked UTF-16
    bad.close();

    QString chosen = utf16;
    answer = [&](QDialog& dialog) {
        static_cast<QFileDialog&>(dialog).selectFile(chosen);
        dialog.accept();
        return int(QDialog::Accepted);
    };
    click("PushButtonA11LoadList");
    EXPECT_EQ(frame->nameListLines(), (QStringList{"重庆.txt\t山城.txt", "Report_2024.txt=报告.txt"}));
    EXPECT_EQ(newNames(), (QStringList{"山城.txt", "报告.txt", "第二章①.txt"}));
    EXPECT_EQ(session.commandList().size(), 1);
    EXPECT_EQ(session.settings().readString(keys::kInterface, QStringLiteral("OpenDialogInitialDirPushButtonA11LoadList"), {}),
              dir.path() + '/');

    // A file that cannot be read says so and leaves the list as it was.
    chosen = broken;
    click("PushButtonA11LoadList");
    ASSERT_EQ(interaction.notices.size(), 1);
    EXPECT_TRUE(interaction.notices[0].text.contains("broken.txt"));
    EXPECT_EQ(frame->nameListLines().size(), 2);
    EXPECT_EQ(newNames()[0], "山城.txt");
}

}  // namespace
}  // namespace qp::ui
