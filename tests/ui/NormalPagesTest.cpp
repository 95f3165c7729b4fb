// The normal family's pages driven through their real widgets over a session whose rename
// list holds a few rows: what a user types and clicks must end up as commands in the
// command list and as new names in the rows.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTableWidget>
#include <QTest>
#include <QToolButton>

#include "commands/CommandFamilies.h"
#include "commands/NormalCommands.h"
#include "core/ComboHistory.h"
#include "core/Session.h"
#include "core/SettingsKeys.h"
#include "ui/dialogs/MetaVariableWarningForms.h"
#include "ui/dialogs/N3EditorForms.h"
#include "ui/dialogs/ReplaceEditForm.h"
#include "PageDriver.h"
#include "../support/CommandRows.h"
#include "../support/QStringPrinter.h"
#include "ui/pages/FrameFileRenameAdvanced.h"
#include "ui/pages/FrameFileRenameExt.h"
#include "ui/pages/FrameFileRenameNormal.h"
#include "ui/widgets/CheckListComboBox.h"
#include "ui/widgets/MetaVariableMenu.h"

namespace qp::ui {
namespace {

// Disables the page while the engine works, as the main window does.
class BusyInteraction : public ScriptedInteraction {
public:
    void setBusy(bool on) override
    {
        ScriptedInteraction::setBusy(on);
        if (window)
            window->setEnabled(!on);
    }
    QWidget* window = nullptr;
};

class NormalPages : public ::testing::Test, protected test::PageDriver {
protected:
    explicit NormalPages(QStringList names = {QStringLiteral("banana"), QStringLiteral("apple"), QStringLiteral("照片 a")})
        : session(SettingsStore(), interaction, QStringLiteral("[20240305140709123]"))
    {
        registerCommandFamilies(session.pipeline().registry());
        for (const QString& name : names) {
            FileEntry row;
            row.path = QStringLiteral("/nowhere/");
            row.name = row.newName = name;
            row.ext = row.newExt = QStringLiteral(".txt");
            session.renameList().append(row);
        }
        makeFrame();
    }

    void makeFrame()
    {
        interaction.window = nullptr;
        frame = std::make_unique<TFrameFileRenameNormal>(session);
        interaction.window = frame.get();
        frame->setDialogRunner([this](QDialog& dialog) {
            ++dialogs;
            return answer ? answer(dialog) : int(QDialog::Rejected);
        });
        frame->resize(760, 420);
        frame->show();
        frame->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(frame.get()));
    }

    QWidget& driven() const override { return *frame; }
    const Session& pageSession() const override { return session; }


    QStringList newNames() const { return qp::test::newNames(session.renameList()); }


    BusyInteraction interaction;
    Session session;
    std::unique_ptr<TFrameFileRenameNormal> frame;
    std::function<int(QDialog&)> answer;
    int dialogs = 0;
};

TEST_F(NormalPages, FindAndReplaceFollowsTheTypingAndKeepUnchangedTakesItBack)
{
    QSignalSpy changed(frame.get(), &TFrameFileRenameNormal::commandChanged);
    click("RadioButtonN2Search");
    ASSERT_EQ(session.commandList().size(), 1);
    type("ComboBoxN2Search", "a");
    type("ComboBoxN2Replace", "aa");
    // The open command is updated in place and the list re-run: applying each new version
    // on top of the last would have doubled the "a"s again and again.
    EXPECT_EQ(newNames(), (QStringList{"baanaanaa", "aapple", "照片 aa"}));
    ASSERT_EQ(session.commandList().size(), 1);
    EXPECT_FALSE(session.commandList().rows().back().ended);
    EXPECT_EQ(session.commandList().rows().back().functionCode, "N2");
    EXPECT_EQ(stored("CMDid"), "N201");
    EXPECT_EQ(stored("CMDComment"), normalCommandComment("N201"));
    EXPECT_EQ(stored("N2_SearchText"), "a");
    EXPECT_EQ(stored("N2_ReplaceText"), "aa");
    EXPECT_GE(changed.count(), 4);
    EXPECT_GT(interaction.busyChanges, 0);
    // Each keystroke ran the list with the page disabled; the box kept the focus, and the
    // half-typed texts did not go into the history.
    EXPECT_TRUE(control<QComboBox>("ComboBoxN2Replace")->lineEdit()->hasFocus());
    EXPECT_TRUE(readHistory(session.settings(), keys::kOperation, "DATAStore_ComboBoxN2Replace").isEmpty());

    type("ComboBoxN2Search", "照");  // now "a照" is looked for
    EXPECT_EQ(newNames(), (QStringList{"banana", "apple", "照片 a"}));
    control<QComboBox>("ComboBoxN2Search")->setEditText(QStringLiteral("照片"));
    EXPECT_EQ(newNames(), (QStringList{"banana", "apple", "aa a"}));

    click("RadioButtonN2Keep");
    EXPECT_TRUE(session.commandList().isEmpty());
    EXPECT_EQ(newNames(), (QStringList{"banana", "apple", "照片 a"}));
}

TEST_F(NormalPages, EveryOptionRecordsItsSubCodeInPlace)
{
    const struct {
        const char* option;
        const char* code;
    } cases[] = {
        {"RadioButtonN1AddDirect", "N101"}, {"RadioButtonN1AddFill", "N102"},
        {"RadioButtonN2Search", "N201"},    {"RadioButtonN2SearchLR", "N202"},
        {"RadioButtonN3DelWhole", "N301"},  {"RadioButtonN3DelTrim", "N302"},
        {"RadioButtonN3DelFromTo", "N303"}, {"RadioButtonN3DelCut", "N304"},
        {"RadioButtonN3DelCutLR", "N305"},  {"RadioButtonN3DelPart", "N306"},
        {"RadioButtonN4AutoNumPos", "N401"}, {"RadioButtonN4AutoNumPosByStr", "N402"},
        {"RadioButtonN4AutoNumExpression", "N403"},
        {"RadioButtonN5Move", "N501"},      {"RadioButtonN5MoveLR", "N502"}, {"RadioButtonN5MoveStr", "N503"},
        {"RadioButtonN6Change", "N601"},
    };
    QString lastFunction;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.option);
        const qsizetype before = session.commandList().size();
        click(c.option);
        const QString function = QString::fromLatin1(c.code).left(2);
        // A second option of the same section changes the open command; a new section appends.
        EXPECT_EQ(session.commandList().size(), before + (function == lastFunction ? 0 : 1));
        EXPECT_EQ(stored("CMDid"), c.code);
        EXPECT_EQ(stored("CMDComment"), normalCommandComment(c.code));
        EXPECT_EQ(session.commandList().rows().back().comment, normalCommandComment(c.code));
        lastFunction = function;
    }
    auto* function = control<QComboBox>("ComboBoxN6Function");
    for (int i = 1; i < 8; ++i) {
        function->setCurrentIndex(i);
        EXPECT_EQ(stored("CMDid"), QStringLiteral("N60%1").arg(i + 1));
    }
    // Only the last command is open; every earlier one was ended by the next section.
    const auto& rows = session.commandList().rows();
    EXPECT_EQ(std::count_if(rows.begin(), rows.end(), [](const CommandRow& r) { return !r.ended; }), 1);
}

TEST_F(NormalPages, ASectionStoresEveryKeyWithThePageDefaults)
{
    const struct {
        const char* option;
        test::StoredKeys keys;
    } cases[] = {
        {"RadioButtonN1AddFill",
         {{"N1_AddDirect", "0"}, {"N1_AddFill", "1"}, {"N1_AddStr", ""}, {"N1_FillLength", "8"}, {"N1_AddLeft", "1"},
          {"N1_AddRight", "0"}, {"N1_AddInsert", "0"}, {"N1_InsertPos", "1"}, {"N1_InsertPosFormRight", "0"},
          {"N1_AddInsertByStr", "0"}, {"N1_AddInsertByStrText", ""}, {"N1_AddInsertByStrPos", "0"},
          {"N1_AddInsertByStrWhich", "1"}, {"N1_AddInsertByLR", "0"}, {"N1_AddInsertByLeft", ""},
          {"N1_AddInsertByRight", ""}, {"N1_AddInsertByLRPos", "0"}, {"N1_AddInsertByLRPosIncludeLR", "0"}}},
        {"RadioButtonN2Search",
         {{"N2_SearchAndReplace", "1"}, {"N2_SearchText", ""}, {"N2_ReplaceText", ""}, {"N2_CaseFlag", "0"},
          {"N2_SameTimeFlag", "1"}, {"N2_FromLToRFlag", "0"}, {"N2_ReplaceTextSet", "1~-1"},
          {"N2_SearchAndReplaceLR", "0"}, {"N2_SearchLeft", ""}, {"N2_SearchRight", ""},
          {"N2_SearchIncludeLRFlag", "0"}, {"N2_ReplaceTextLR", ""}}},
        {"RadioButtonN3DelPart",
         {{"N3_DelWhole", "0"}, {"N3_DelTrim", "0"}, {"N3_DelFromTo", "0"}, {"N3_DelFrom", "1"}, {"N3_DelOrKeep", "0"},
          {"N3_DelTo", "1"}, {"N3_DelFromToFromRight", "0"}, {"N3_DelCut", "0"}, {"N3_CutWord", ""},
          {"N3_DelCutDirection", "0"}, {"N3_DelCutIncludeSelf", "1"}, {"N3_DelCutWhichWord", "1"},
          {"N3_DelCutLR", "0"}, {"N3_DelOrKeepLR", "0"}, {"N3_CutWordLeft", ""}, {"N3_CutWordRight", ""},
          {"N3_DelCutIncludeSelfLR", "0"}, {"N3_DelPart", "1"}, {"N3_DelPartDeleteOrHold", "0"},
          {"N3_DelPartTheString", "0"}, {"N3_TheString", ""}, {"N3_DelPartUserCharset", "0"},
          {"N3_TheUserCharset", ""}, {"N3_FixedCharsetString", "请选择预设字符集"}}},
        {"RadioButtonN4AutoNumExpression",
         {{"N4_AutoNumPos", "0"}, {"N4_InsertPos", "1"}, {"N4_InsertPosFromRight", "0"}, {"N4_AutoNumPosByStr", "0"},
          {"N4_InsertPosByStr", ""}, {"N4_InsertPosByStrLorR", "0"}, {"N4_InsertPosByStrWhich", "1"},
          {"N4_AutoNumExpression", "1"}, {"N4_InsertExpression", "<#>"}, {"N4_Start", "1"}, {"N4_Increment", "1"},
          {"N4_DigitUnits", "1"}, {"N4_GroupCount", "1"}, {"N4_AutoNumType", "0"}, {"N4_Reset", "0"},
          {"N4_ResetValue", "8"}, {"N4_SkipNoCheckRow", "1"}, {"N4_ByPath", "0"}, {"N4_Except", "0"},
          {"N4_ExceptText", ""}, {"N4_ExceptTextHaveSingleStar", "0"}, {"N4_AutoSupplement", "1"},
          {"N4_ManualSupplement", "0"}, {"N4_SupplementText", "0"}}},
        {"RadioButtonN5MoveStr",
         {{"N5_Move", "0"}, {"N5_Position", "1"}, {"N5_Length", "1"}, {"N5_FromRight", "0"}, {"N5_MoveLR", "0"},
          {"N5_MoveByStrLeft", ""}, {"N5_MoveByStrRight", ""}, {"N5_MoveByStrIncludeLR", "0"}, {"N5_MoveStr", "1"},
          {"N5_MoveStrText", ""}, {"N5_MoveDirection", "1"}, {"N5_MoveMum", "1"}}},
        {"RadioButtonN6Change",
         {{"N6_Function", "0"}, {"N6_ExceptWord", ""}, {"N6_UseSeparator", "1"}, {"N6_Separator", "| |"},
          {"N6_NotNumOrLetter", "0"}, {"N6_NotLetter", "0"}}},
    };
    for (const auto& c : cases)
        expectStoresExactly(c.option, c.keys);
}

TEST_F(NormalPages, TextsKeepTheirBlanksAndOptionsSwitchTheCodeInPlace)
{
    click("RadioButtonN1AddDirect");
    type("ComboBoxN1AddStr", " x ");
    EXPECT_EQ(stored("N1_AddStr"), "| x |");
    EXPECT_EQ(newNames().front(), " x banana");

    click("RadioButtonN1AddFill");  // pad " x " up to 8 characters in front
    ASSERT_EQ(session.commandList().size(), 1);
    EXPECT_EQ(stored("CMDid"), "N102");
    EXPECT_EQ(newNames(), (QStringList{" xbanana", " x apple", " x  照片 a"}));
}

TEST_F(NormalPages, KeepUnchangedOnAnotherSectionEndsTheOpenCommand)
{
    click("RadioButtonN2Search");
    type("ComboBoxN2Search", "a");
    type("ComboBoxN2Replace", "o");
    EXPECT_EQ(newNames().front(), "bonono");
    click("RadioButtonN1Keep");  // already checked: the click still counts
    ASSERT_EQ(session.commandList().size(), 1);
    EXPECT_TRUE(session.commandList().rows().back().ended);
    const QString first = lastSection();

    type("ComboBoxN2Replace", "o");  // a second replace command, run on top of the first
    ASSERT_EQ(session.commandList().size(), 2);
    EXPECT_EQ(session.settings().readString(first, "N2_ReplaceText", {}), "o");
    EXPECT_EQ(stored("N2_ReplaceText"), "oo");
    EXPECT_EQ(newNames().front(), "bonono");
}

TEST_F(NormalPages, OkEndsTheCommandAndPutsItsSectionBackToKeepUnchanged)
{
    auto* ok = control<QAbstractButton>("PushButtonN1Ok");
    EXPECT_FALSE(ok->isEnabled());
    click("RadioButtonN1AddDirect");
    EXPECT_TRUE(ok->isEnabled());
    type("ComboBoxN1AddStr", "x");
    click("PushButtonN1Ok");
    ASSERT_EQ(session.commandList().size(), 1);
    EXPECT_TRUE(session.commandList().rows().back().ended);
    EXPECT_TRUE(control<QAbstractButton>("RadioButtonN1Keep")->isChecked());
    EXPECT_FALSE(ok->isEnabled());
    EXPECT_EQ(readHistory(session.settings(), keys::kOperation, "DATAStore_ComboBoxN1AddStr"), QStringList{"x"});

    type("ComboBoxN1AddStr", "y");  // the section is off: nothing new
    EXPECT_EQ(session.commandList().size(), 1);
    click("RadioButtonN1AddDirect");
    EXPECT_EQ(session.commandList().size(), 2);
    EXPECT_EQ(newNames().front(), "xyxbanana");
}

TEST_F(NormalPages, ResetToUnchangedRecordsNothing)
{
    click("RadioButtonN3DelTrim");
    click("RadioButtonN5MoveStr");
    ASSERT_EQ(session.commandList().size(), 2);
    QSignalSpy changed(frame.get(), &TFrameFileRenameNormal::commandChanged);
    frame->resetToUnchanged();
    for (const char* keep : {"RadioButtonN1Keep", "RadioButtonN2Keep", "RadioButtonN3Keep", "RadioButtonN4Keep",
                             "RadioButtonN5Keep", "RadioButtonN6Keep"})
        EXPECT_TRUE(control<QAbstractButton>(keep)->isChecked()) << keep;
    EXPECT_EQ(session.commandList().size(), 2);
    EXPECT_FALSE(session.commandList().rows().back().ended);
    EXPECT_EQ(changed.count(), 0);
}

TEST_F(NormalPages, APendingImportIsConfirmedBeforeTheFirstCommand)
{
    session.setPendingImport(true);
    interaction.answer("commands.pendingImport", {Button::Cancel, Button::Ok});
    click("RadioButtonN3DelWhole");
    EXPECT_TRUE(session.commandList().isEmpty());
    EXPECT_TRUE(session.pendingImport());
    click("RadioButtonN3DelWhole");
    EXPECT_EQ(session.commandList().size(), 1);
    EXPECT_FALSE(session.pendingImport());
    EXPECT_EQ(newNames(), (QStringList{"", "", ""}));
}

TEST_F(NormalPages, HistoriesAreStoredRestoredAndCleared)
{
    type("ComboBoxN5MoveStr", "ab");
    QTest::keyClick(control<QComboBox>("ComboBoxN5MoveStr")->lineEdit(), Qt::Key_Return);
    type("ComboBoxN5MoveStr", "c");
    control<QComboBox>("ComboBoxN5MoveByStrLeft")->setFocus();  // leaving the box remembers too
    EXPECT_EQ(readHistory(session.settings(), keys::kOperation, "DATAStore_ComboBoxN5MoveStr"), (QStringList{"abc", "ab"}));

    makeFrame();
    auto* moveText = control<QComboBox>("ComboBoxN5MoveStr");
    EXPECT_EQ(moveText->currentText(), "");
    ASSERT_EQ(moveText->count(), 2);
    EXPECT_EQ(moveText->itemText(0), "abc");
    // The expression list follows its history.
    EXPECT_EQ(control<QComboBox>("ComboBoxN4Expression")->count(), 10);

    frame->clearHistory();
    EXPECT_EQ(moveText->count(), 0);
    EXPECT_FALSE(session.settings().hasKey(keys::kOperation, "DATAStore_ComboBoxN5MoveStr"));
}

TEST_F(NormalPages, LongestNameSetsThePadLength)
{
    click("PushButtonN1GetLongest");
    EXPECT_EQ(control<QSpinBox>("SpinBoxN1FillLength")->value(), longestNameLength(session.renameList()));
    EXPECT_EQ(control<QSpinBox>("SpinBoxN1FillLength")->value(), 6);
}

TEST_F(NormalPages, NumberButtonAndAssignToAUserList)
{
    auto* assign = control<QAbstractButton>("PushButtonN4AssignTo");
    auto* userList = control<QComboBox>("ComboBoxN4AssignTo");
    EXPECT_FALSE(assign->isEnabled());
    EXPECT_FALSE(userList->isEnabled());

    click("RadioButtonN4AutoNumExpression");
    auto* expression = control<QComboBox>("ComboBoxN4Expression")->lineEdit();
    expression->setCursorPosition(0);
    type("ComboBoxN4Expression", "n");
    click("PushButtonN4Number");  // at the cursor, after the "n"
    EXPECT_EQ(expression->text(), "n<#><#>");
    EXPECT_EQ(newNames(), (QStringList{"n11", "n22", "n33"}));

    ASSERT_TRUE(assign->isEnabled());
    userList->setCurrentIndex(3);
    click("PushButtonN4AssignTo");
    EXPECT_EQ(session.userList(3), (QStringList{"1", "2", "3"}));
}

TEST_F(NormalPages, PresetCharsetsShowThePromptUntilOneIsChosen)
{
    auto* presets = control<CheckListComboBox>("ComboBoxN3FixedCharset");
    ASSERT_GE(presets->count(), 2);
    EXPECT_EQ(presets->displayText(), "请选择预设字符集");
    click("RadioButtonN3DelPart");
    presets->toggleItem(1);
    presets->toggleItem(0);
    const QStringList chosen{presets->itemText(0), presets->itemText(1)};
    EXPECT_EQ(presets->checkedItems(), chosen);
    EXPECT_EQ(session.settings().readString(lastSection(), "N3_FixedCharsetString", {}), joinPresetCharsets(chosen));
    presets->toggleItem(0);
    presets->toggleItem(1);
    EXPECT_EQ(stored("N3_FixedCharsetString"), "请选择预设字符集");

    // A click in the open list ticks the entry and leaves the list open for the next one;
    // the command follows when the list closes.
    presets->showPopup();
    QAbstractItemView* view = presets->view();
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(view->model()->index(2, 0)).center());
    EXPECT_TRUE(view->isVisible());
    EXPECT_EQ(presets->checkedItems(), QStringList{presets->itemText(2)});
    EXPECT_EQ(presets->displayText(), presets->itemText(2));
    EXPECT_EQ(stored("N3_FixedCharsetString"), "请选择预设字符集");
    presets->hidePopup();
    EXPECT_EQ(stored("N3_FixedCharsetString"), joinPresetCharsets({presets->itemText(2)}));
}

TEST_F(NormalPages, ShowSectionScrollsItToTheTop)
{
    frame->resize(500, 200);
    QCoreApplication::processEvents();
    auto* bar = frame->findChild<QScrollArea*>("ScrollBoxNormal")->verticalScrollBar();
    frame->showSection("N4");
    EXPECT_GT(bar->value(), 0);
    EXPECT_NEAR(frame->section("N4")->mapTo(frame.get(), QPoint(0, 0)).y(), 0, 8);
    frame->showSection("N1");
    EXPECT_EQ(bar->value(), 0);
    EXPECT_EQ(frame->section("E1"), nullptr);
}

// The function panel beside the rename list is about 340 px wide: a section wider than 330
// would give the panel a horizontal scroll bar and cut its rows off.
TEST_F(NormalPages, EverySectionOfEveryPageFitsTheFunctionPanel)
{
    TFrameFileRenameExt ext(session);
    TFrameFileRenameAdvanced advanced(session);
    const struct {
        const FunctionPage* page;
        QStringList codes;
    } pages[] = {
        {frame.get(), {"N1", "N2", "N3", "N4", "N5", "N6"}},
        {&ext, {"E1", "E2", "E3", "E4", "E5", "E6", "E7"}},
        {&advanced, {"A1", "A3", "A4", "A11"}},
    };
    for (const auto& [page, codes] : pages) {
        for (const QString& code : codes) {
            SCOPED_TRACE(code.toStdString());
            ASSERT_NE(page->section(code), nullptr);
            EXPECT_LE(page->section(code)->minimumSizeHint().width(), 330);
        }
    }
}

// ---- meta-variables -------------------------------------------------------------------

TEST(TagWarning, FollowsTheTagItsDepthAndTheIgnoreSettings)
{
    const struct {
        const char* tag;
        const char* parameter;  // stored under [UnitVariable], or null
        bool ignoreHash;
        bool ignoreFolder;
        TagWarning expected;
    } cases[] = {
        {"<NAME>", nullptr, false, false, TagWarning::None},
        {"<md5>", nullptr, false, false, TagWarning::Hash},
        {"<CRC32>", nullptr, true, false, TagWarning::None},
        {"<NCRC32>", nullptr, false, false, TagWarning::None},  // a name, not the contents
        {"<DIALLNUM>", nullptr, false, false, TagWarning::FolderTraversal},  // default depth 0: all levels
        {"<DIFILENUM>", "1", false, false, TagWarning::None},
        {"<DIDIRNUM>", "2", false, false, TagWarning::FolderTraversal},
        {"<DIDIRNUM>", "x", false, false, TagWarning::FolderTraversal},  // no number: 0
        {"<DIFNSUBSTR>", "(a)/DIR 1", false, false, TagWarning::None},
        {"<DIFNSUBSTR>", nullptr, false, true, TagWarning::None},
        {"<SPALLNUM>", nullptr, false, false, TagWarning::None},
    };
    for (const auto& c : cases) {
        SettingsStore settings;
        if (c.parameter)
            settings.writeString(keys::kUnitVariable, QString::fromLatin1(c.tag).toUpper(), QString::fromLatin1(c.parameter));
        settings.writeBool(keys::kInterface, "IgnoreUseHashUnitVariableWarning", c.ignoreHash);
        settings.writeBool(keys::kInterface, "IgnoreUseFindFolderUnitVariableWarning", c.ignoreFolder);
        EXPECT_EQ(tagWarning(settings, QString::fromLatin1(c.tag)), c.expected) << c.tag;
    }
}

TEST_F(NormalPages, QuickInsertMenuWarnsBeforeCostlyTags)
{
    QMenu* menu = control<QToolButton>("ToolButtonN1AddStrMeta")->menu();
    ASSERT_NE(menu, nullptr);
    auto choose = [&](const QString& tag) {
        for (QAction* action : menu->findChildren<QAction*>()) {
            if (action->data().toString() == tag)
                return action->trigger();
        }
        ADD_FAILURE() << "no menu entry " << tag.toStdString();
    };
    click("RadioButtonN1AddDirect");
    QLineEdit* content = control<QComboBox>("ComboBoxN1AddStr")->lineEdit();

    choose("<NAME>");
    EXPECT_EQ(dialogs, 0);
    EXPECT_EQ(content->text(), "<NAME>");
    EXPECT_EQ(newNames().front(), "bananabanana");

    QString shown;
    answer = [&](QDialog& dialog) {
        shown = dialog.objectName();
        return int(QDialog::Rejected);
    };
    choose("<MD5>");
    EXPECT_EQ(shown, "TUseHashUnitVariableWarningForm");
    EXPECT_EQ(content->text(), "<NAME>");

    answer = [&](QDialog& dialog) {
        shown = dialog.objectName();
        static_cast<TUnitVariableWarningForm&>(dialog).setIgnoreFromNowOn(true);
        return int(QDialog::Accepted);
    };
    choose("<DIFILENUM>");
    EXPECT_EQ(shown, "TUseFindFolderUnitVariableWarningForm");
    EXPECT_EQ(content->text(), "<NAME><DIFILENUM>");
    EXPECT_TRUE(session.settings().readBool(keys::kInterface, "IgnoreUseFindFolderUnitVariableWarning", false));
    EXPECT_FALSE(session.settings().readBool(keys::kInterface, "IgnoreUseHashUnitVariableWarning", false));

    const int before = dialogs;
    choose("<DIDIRNUM>");  // switched off for good
    EXPECT_EQ(dialogs, before);
    EXPECT_TRUE(content->text().endsWith("<DIDIRNUM>"));
}

TEST(HashWarning, ShowsMeasuredTimesThatGrowWithTheSize)
{
    const HashSpeeds speeds = measuredHashSpeeds();
    EXPECT_GT(speeds.crc32, 0);
    EXPECT_GT(speeds.md5, 0);
    EXPECT_GT(speeds.sha1, 0);
    TUseHashUnitVariableWarningForm form;
    auto* table = form.findChild<QTableWidget*>("TableHashTimes");
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->rowCount(), 4);
    EXPECT_EQ(durationText(0.25), "250 毫秒");
    EXPECT_EQ(durationText(12.34), "12.3 秒");
    EXPECT_EQ(durationText(200), "3 分 20 秒");
}

// ---- editors ---------------------------------------------------------------------------

TEST(ReplaceEditForm, SplitsAndJoinsThePairs)
{
    using Pairs = QList<ReplacePair>;
    const struct {
        const char* search;
        const char* replace;
        Pairs pairs;
        const char* joinedSearch;
        const char* joinedReplace;
    } cases[] = {
        {"", "", {}, "", ""},
        {"a|b", "x|y", {{"a", "x"}, {"b", "y"}}, "a|b", "x|y"},
        {"a|b", "x", {{"a", "x"}, {"b", ""}}, "a|b", "x"},
        {"a", "x|y", {{"a", "x"}, {"", "y"}}, "a|", "x|y"},
        {"a||b", "", {{"a", ""}, {"", ""}, {"b", ""}}, "a|b", ""},  // an empty row is dropped
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.search);
        const Pairs pairs = splitReplacePairs(c.search, c.replace);
        EXPECT_EQ(pairs, c.pairs);
        const auto joined = joinReplacePairs(pairs);
        EXPECT_EQ(joined.first, c.joinedSearch);
        EXPECT_EQ(joined.second, c.joinedReplace);
    }
}

TEST_F(NormalPages, ReplaceEditorRoundTripsThroughThePage)
{
    click("RadioButtonN2Search");
    control<QComboBox>("ComboBoxN2Search")->setEditText("a|b");
    control<QComboBox>("ComboBoxN2Replace")->setEditText("x|");

    answer = [](QDialog& dialog) {  // looked at, not changed: the texts stay exactly
        auto& form = static_cast<TReplaceEditForm&>(dialog);
        EXPECT_EQ(form.table()->rowCount(), 2);
        return int(QDialog::Accepted);
    };
    click("PushButtonN2Editor");
    EXPECT_EQ(stored("N2_ReplaceText"), "x|");

    answer = [](QDialog& dialog) {
        auto& form = static_cast<TReplaceEditForm&>(dialog);
        form.findChild<QAbstractButton*>("ButtonAdd")->click();
        form.table()->item(2, 0)->setText("p|p");  // the separator cannot enter a cell
        form.table()->item(2, 1)->setText("P");
        form.findChild<QAbstractButton*>("ButtonSwap")->click();
        return int(QDialog::Accepted);
    };
    click("PushButtonN2Editor");
    EXPECT_EQ(control<QComboBox>("ComboBoxN2Search")->currentText(), "x||P");
    EXPECT_EQ(stored("N2_SearchText"), "x||P");
    EXPECT_EQ(stored("N2_ReplaceText"), "a|b|pp");
    EXPECT_EQ(session.commandList().size(), 1);

    answer = [](QDialog&) { return int(QDialog::Rejected); };
    click("PushButtonN2Editor");
    EXPECT_EQ(stored("N2_SearchText"), "x||P");
}

TEST(N3Editors, WordsAndCharacters)
{
    EXPECT_EQ(joinWordLines("ab\r\n\n  \ncd|e\n"), "ab|  |cd|e");
    EXPECT_EQ(wordLines("ab|  |cd"), "ab\n  \ncd");
    EXPECT_EQ(uniqueCharacters("aba\nc\U0001F600b\U0001F600"), "abc\U0001F600");
}

TEST_F(NormalPages, N3EditorsWriteBackIntoTheCommand)
{
    click("RadioButtonN3DelPart");
    click("CheckBoxN3DelPartTheString");
    answer = [](QDialog& dialog) {
        dialog.findChild<QPlainTextEdit*>()->setPlainText("an\n\nle");
        return int(QDialog::Accepted);
    };
    click("PushButtonN3TheStringEditor");
    EXPECT_EQ(stored("N3_TheString"), "an|le");
    EXPECT_EQ(newNames().mid(0, 2), (QStringList{"ba", "app"}));

    click("CheckBoxN3DelPartUserCharset");
    answer = [](QDialog& dialog) {
        dialog.findChild<QAbstractButton*>("ButtonDigits")->click();
        dialog.findChild<QPlainTextEdit*>()->insertPlainText("照照");
        return int(QDialog::Accepted);
    };
    click("PushButtonN3UserCharsetEditor");
    EXPECT_EQ(stored("N3_TheUserCharset"), "照0123456789");
    EXPECT_EQ(newNames().at(2), "片 a");
}

}  // namespace
}  // namespace qp::ui

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
