// The extension page driven through its real widgets over rows that are real files on disk
// (the extension commands treat a row whose object is missing as a folder).
#include <gtest/gtest.h>

#include <algorithm>

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QSpinBox>
#include <QTableView>
#include <QTest>

#include "commands/CommandFamilies.h"
#include "commands/ExtensionCommands.h"
#include "core/ComboHistory.h"
#include "core/MessageLog.h"
#include "core/Session.h"
#include "core/SettingsKeys.h"
#include "ui/models/RenameListModel.h"
#include "PageDriver.h"
#include "../support/QStringPrinter.h"
#include "ui/pages/FrameFileRenameExt.h"
#include "ui/window/FunctionPanel.h"
#include "ui/window/MainWindow.h"
#include "../support/TempTree.h"

namespace qp::ui {
namespace {

class ExtPages : public ::testing::Test, protected test::PageDriver {
protected:
    ExtPages()
        : session(SettingsStore(), interaction, QStringLiteral("[20240305140709123]"))
    {
        registerCommandFamilies(session.pipeline().registry());
        for (const char* file : {"photo.JPG", "archive.tar.gz", "name.abcd", "readme"}) {
            tree.file(std::string("w/") + file, "x");
            const NameParts parts = splitFileName(QString::fromUtf8(file), false);
            FileEntry row;
            row.path = tree.path("w") + QLatin1Char('/');
            row.name = row.newName = parts.name;
            row.ext = row.newExt = parts.ext;
            session.renameList().append(row);
        }
        frame = std::make_unique<TFrameFileRenameExt>(session);
        frame->resize(640, 420);
        frame->show();
    }

    QWidget& driven() const override { return *frame; }
    const Session& pageSession() const override { return session; }


    // "name|ext" per row, so that a text moving between the two shows.
    QStringList newNames() const
    {
        QStringList names;
        for (const FileEntry& row : session.renameList().rows())
            names.append(row.newName + QLatin1Char('|') + row.newExt);
        return names;
    }


    qp::test::TempTree tree;
    ScriptedInteraction interaction;
    Session session;
    std::unique_ptr<TFrameFileRenameExt> frame;
};

const QStringList kUnchanged{"photo|.JPG", "archive.tar|.gz", "name|.abcd", "readme|"};

TEST_F(ExtPages, AddingFollowsTheTypingSwitchesInPlaceAndKeepUnchangedTakesItBack)
{
    click("RadioButtonE1AddLeft");
    type("ComboBoxE1Content", "x.");
    EXPECT_EQ(newNames(), (QStringList{"photo|.x.JPG", "archive.tar|.x.gz", "name|.x.abcd", "readme|.x."}));

    click("RadioButtonE1AddRight");  // the same command, now adding after
    ASSERT_EQ(session.commandList().size(), 1);
    EXPECT_EQ(stored("CMDid"), "E102");
    EXPECT_EQ(stored("E1_AddLeft"), "0");
    EXPECT_EQ(stored("E1_AddRight"), "1");
    EXPECT_EQ(newNames(), (QStringList{"photo|.JPGx.", "archive.tar|.gzx.", "name|.abcdx.", "readme|.x."}));

    click("RadioButtonE1Search");
    type("ComboBoxE1Search", "g");
    EXPECT_EQ(stored("CMDid"), "E103");
    // Letter case is ignored until asked for; the replacement's dot becomes the separator.
    EXPECT_EQ(newNames(), (QStringList{"photo.JPx|.", "archive.tar.x|.z", "name|.abcd", "readme|"}));
    click("CheckBoxE1CaseFlag");
    EXPECT_EQ(stored("E1_CaseFlag"), "1");
    EXPECT_EQ(newNames().first(), "photo|.JPG");

    click("RadioButtonE1Keep");
    EXPECT_TRUE(session.commandList().isEmpty());
    EXPECT_EQ(newNames(), kUnchanged);
}

TEST_F(ExtPages, EveryOptionRecordsItsSubCodeAndComment)
{
    const struct {
        const char* option;
        const char* code;
    } cases[] = {
        {"RadioButtonE1AddLeft", "E101"},      {"RadioButtonE1AddRight", "E102"},   {"RadioButtonE1Search", "E103"},
        {"RadioButtonE2ClearExt", "E201"},     {"RadioButtonE2DelExt", "E202"},     {"RadioButtonE2DelExtChar", "E203"},
        {"RadioButtonE3AutoNumPos", "E301"},   {"RadioButtonE4AllCaseUpper", "E401"}, {"RadioButtonE4AllCaseLower", "E402"},
        {"RadioButtonE5Regex", "E501"},        {"RadioButtonE6FixExt", "E601"},     {"RadioButtonE7AddNewExt", "E701"},
        {"RadioButtonE7ReplaceDot", "E702"},   {"RadioButtonE7ReplaceStr", "E703"}, {"RadioButtonE7MoveDot", "E704"},
        {"RadioButtonE7SmartIDExt", "E705"},
    };
    QString lastFunction;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.option);
        const qsizetype before = session.commandList().size();
        click(c.option);
        const QString function = QString::fromLatin1(c.code).left(2);
        EXPECT_EQ(session.commandList().size(), before + (function == lastFunction ? 0 : 1));
        EXPECT_EQ(session.commandList().rows().back().functionCode, function);
        EXPECT_EQ(stored("CMDid"), c.code);
        EXPECT_EQ(stored("CMDComment"), extensionCommandComment(c.code));
        lastFunction = function;
    }
    EXPECT_EQ(session.commandList().size(), 7);
}

TEST_F(ExtPages, ASectionStoresExactlyItsKeysWithTheirDefaults)
{
    const struct {
        const char* option;
        test::StoredKeys keys;
    } cases[] = {
        {"RadioButtonE1Search",
         {{"E1_AddLeft", "0"}, {"E1_AddRight", "0"}, {"E1_Search", "1"}, {"E1_Content", ""}, {"E1_SearchStr", ""},
          {"E1_CaseFlag", "0"}}},
        {"RadioButtonE2ClearExt",
         {{"E2_DelExt", "1"}, {"E2_DelExtChar", "0"}, {"E2_DelExtCharFrom", "1"}, {"E2_DelOrKeep", "0"},
          {"E2_DelExtCharTo", "1"}, {"E2_DelExtCharFromRight", "0"}}},
        {"RadioButtonE3AutoNumPos",
         {{"E3_AutoNumPos", "1"}, {"E3_InsertPos", "0"}, {"E3_Start", "1"}, {"E3_Increment", "1"}, {"E3_DigitUnits", "1"},
          {"E3_Digit", "1"}, {"E3_LowerCase", "0"}, {"E3_UpperCase", "0"}, {"E3_AutoSupplement", "1"},
          {"E3_ManualSupplement", "0"}, {"E3_SupplementText", "0"}}},
        {"RadioButtonE4AllCaseLower", {{"E4_AllCaseUpper", "0"}, {"E4_AllCaseLower", "1"}}},
        {"RadioButtonE5Regex", {{"E5_Regex", "1"}, {"E5_RegexText", ""}, {"E5_RegexReplaceText", ""}}},
        {"RadioButtonE6FixExt", {{"E6_FixExt", "1"}, {"E6_FixExtName", ""}}},
        {"RadioButtonE7SmartIDExt",
         {{"E7_AddNewExt", "0"}, {"E7_AddNewExtStr", ""}, {"E7_ReplaceDot", "0"}, {"E7_ReplaceDotStr", ""},
          {"E7_ReplaceStr", "0"}, {"E7_ReplaceStrStr", ""}, {"E7_MoveDot", "0"}, {"E7_MoveDotLeftRight", "0"},
          {"E7_MoveDotNum", "1"}, {"E7_SmartIDExt", "1"}, {"E7_SmartIDExtIndex", "0"}}},
    };
    for (const auto& c : cases)
        expectStoresExactly(c.option, c.keys);
}

TEST_F(ExtPages, NumberingControlsWriteTheirKeysAndTheNumbersFollow)
{
    click("RadioButtonE3AutoNumPos");
    control<QSpinBox>("SpinBoxE3DigitUnits")->setValue(3);
    EXPECT_EQ(newNames(), (QStringList{"photo|.001JPG", "archive.tar|.002gz", "name|.003abcd", "readme|.004"}));

    control<QSpinBox>("SpinBoxE3InsertPos")->setValue(2);
    control<QSpinBox>("SpinBoxE3Start")->setValue(25);
    control<QSpinBox>("SpinBoxE3Increment")->setValue(-1);
    click("RadioButtonE3UpperCase");
    click("RadioButtonE3ManualSupplement");
    control<QLineEdit>("EditE3SupplementText")->setText("-");
    ASSERT_EQ(session.commandList().size(), 1);
    for (const auto& [key, value] : std::initializer_list<std::pair<const char*, const char*>>{
             {"E3_InsertPos", "2"}, {"E3_Start", "25"}, {"E3_Increment", "-1"}, {"E3_DigitUnits", "3"}, {"E3_Digit", "0"},
             {"E3_UpperCase", "1"}, {"E3_AutoSupplement", "0"}, {"E3_ManualSupplement", "1"}, {"E3_SupplementText", "-"}})
        EXPECT_EQ(stored(key), value) << key;
    // 25 … 22 in letters ("A" is zero), padded to three with the fill text.
    EXPECT_EQ(newNames(), (QStringList{"photo|.JP--ZG", "archive.tar|.gz--Y", "name|.ab--Xcd", "readme|.--W"}));
}

TEST_F(ExtPages, MovingTheDotLeftOrRight)
{
    click("RadioButtonE7MoveDot");
    EXPECT_EQ(newNames().at(2), "nam|.eabcd");
    control<QComboBox>("ComboBoxE7MoveDotLeftRight")->setCurrentIndex(1);
    EXPECT_EQ(stored("E7_MoveDotLeftRight"), "1");
    EXPECT_EQ(newNames().at(2), "namea|.bcd");
    control<QSpinBox>("SpinBoxE7MoveDotNum")->setValue(3);
    EXPECT_EQ(newNames().at(2), "nameabc|.d");
}

TEST_F(ExtPages, EmptyOrBadTextsLeaveTheNamesWithoutADialog)
{
    click("RadioButtonE6FixExt");
    EXPECT_EQ(newNames(), kUnchanged);  // chosen, nothing typed yet
    click("RadioButtonE6Keep");

    click("RadioButtonE5Regex");
    type("ComboBoxE5Regex", "(");
    EXPECT_EQ(newNames(), kUnchanged);
    EXPECT_TRUE(interaction.asked.isEmpty());
    EXPECT_TRUE(interaction.notices.isEmpty());
    const auto& lines = session.messages().lines();
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(), [](const MessageLine& line) { return line.colour == MessageColour::Red; }), 1);
}

TEST_F(ExtPages, HistoriesAreKeptUnderTheirOwnKeysOnly)
{
    const char* boxes[] = {"ComboBoxE1Search",         "ComboBoxE1Content", "ComboBoxE5Regex",
                           "ComboBoxE5RegexReplace",   "ComboBoxE6FixExt",  "ComboBoxE7NewExt",
                           "ComboBoxE7ReplaceDotStr",  "ComboBoxE7ReplaceStr"};
    for (const char* box : boxes) {
        type(box, "t");
        QTest::keyClick(control<QComboBox>(box)->lineEdit(), Qt::Key_Return);
    }
    // The fill text of the numbering is a plain box: it keeps no history.
    click("RadioButtonE3AutoNumPos");
    click("PushButtonE3Ok");
    QStringList kept;
    for (const auto& [key, value] : session.settings().sectionEntries(keys::kOperation)) {
        if (key.startsWith(QStringLiteral("DATAStore_")))
            kept.append(key);
    }
    kept.sort();
    QStringList expected;
    for (const char* box : boxes)
        expected.append(QStringLiteral("DATAStore_") + QLatin1String(box));
    expected.sort();
    EXPECT_EQ(kept, expected);
    EXPECT_EQ(readHistory(session.settings(), keys::kOperation, "DATAStore_ComboBoxE7ReplaceStr"), QStringList{"t"});

    frame->clearHistory();
    for (const char* box : boxes)
        EXPECT_EQ(control<QComboBox>(box)->count(), 0) << box;
}

TEST(ExtPageInWindow, ChoosingAnExtensionCommandShowsTheExtensionPage)
{
    qp::test::TempTree tree;
    tree.file("w/a.txt");
    SettingsStore store;
    store.setFileName(tree.path("cfg/QuilletPro.ini"));
    store.writeBool(keys::kOperation, keys::kFlagAddFolder, false);
    store.writeBool(keys::kOperation, keys::kFlagFindDeepin, true);
    MainWindow window(std::move(store), QStringLiteral("[20240305140709123]"));
    registerCommandFamilies(window.session().pipeline().registry());
    window.show();
    window.loadPaths({tree.path("w")});

    ASSERT_EQ(window.session().renameList().size(), 1);
    FunctionPanel* panel = window.functionPanel();
    TFrameFileRenameExt* ext = nullptr;
    for (int i = 0; i < panel->pageCount(); ++i) {
        if (panel->pageTitle(i) == "1.E.扩展名更名")
            ext = qobject_cast<TFrameFileRenameExt*>(panel->page(i));
    }
    ASSERT_NE(ext, nullptr);
    panel->setCurrentPage(0);
    ext->findChild<QAbstractButton*>("RadioButtonE4AllCaseUpper")->click();  // recorded into the window's list
    ASSERT_EQ(window.commandGrid()->model()->rowCount(), 1);
    EXPECT_EQ(window.renameModel()->index(0, RenameListModel::ColNewExt).data().toString(), ".TXT");

    QTableView* commands = window.commandGrid();
    QTest::mouseClick(commands->viewport(), Qt::LeftButton, {}, commands->visualRect(commands->model()->index(0, 1)).center());
    EXPECT_EQ(panel->currentPage(), ext);
}

}  // namespace
}  // namespace qp::ui

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
