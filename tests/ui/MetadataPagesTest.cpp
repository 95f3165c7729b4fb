// The metadata pages driven through their real widgets over generated sample files.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QLineEdit>
#include <QSpinBox>
#include <QTreeWidget>

#include "commands/CommandFamilies.h"
#include "core/Session.h"
#include "ui/pages/FrameFileRenameMetadata.h"
#include "ui/window/FunctionPanel.h"
#include "ui/window/MainWindow.h"
#include "PageDriver.h"
#include "../support/CommandRows.h"
#include "../support/MetadataSamples.h"
#include "../support/QStringPrinter.h"

namespace qp::ui {
namespace {

class MetadataPages : public ::testing::Test, protected test::PageDriver {
protected:
    MetadataPages() : session(SettingsStore(), interaction, QStringLiteral("[20240305140709123]"))
    {
        registerCommandFamilies(session.pipeline().registry());
        for (const char* sample : {"id3v1.mp3", "id3v24.mp3", "none.jpg"})
            qp::test::appendRow(session.renameList(), qp::test::metadataSample(sample));
    }

    void open(QChar family)
    {
        page = std::make_unique<TFrameFileRenameMetadata>(session, family);
        page->resize(360, 640);
        page->show();
    }
    QWidget& driven() const override { return *page; }
    const Session& pageSession() const override { return session; }

    QStringList newNames() const { return qp::test::newNames(session.renameList()); }
    void setTemplate(const QString& text)
    {
        control<QComboBox>("ComboBoxM1Template")->lineEdit()->clear();
        type("ComboBoxM1Template", text);
    }

    ScriptedInteraction interaction;
    Session session;
    std::unique_ptr<TFrameFileRenameMetadata> page;
};

TEST_F(MetadataPages, TheTemplateNamesTheFilesAsTheUserTypes)
{
    open(u'M');
    click("RadioButtonM1Whole");
    EXPECT_EQ(stored("CMDid"), "M101");
    EXPECT_EQ(stored("M1_Template"), "<M.TRACK> <M.ARTIST> - <M.TITLE>");
    EXPECT_EQ(newNames(), (QStringList{"07 周杰伦 - 七里香", "12 Artist A - Intro", "none"}));

    setTemplate("<M.TITLE>");
    control<QComboBox>("ComboBoxM1Missing")->setCurrentIndex(2);
    EXPECT_EQ(stored("M1_Missing"), "2");
    EXPECT_EQ(newNames(), (QStringList{"七里香", "Intro", "未知"}));

    click("RadioButtonM1Insert");
    control<QSpinBox>("SpinBoxM1InsertPos")->setValue(2);
    EXPECT_EQ(stored("CMDid"), "M104");
    EXPECT_EQ(newNames(), (QStringList{"id七里香3v1", "idIntro3v24", "no未知ne"}));
    EXPECT_EQ(session.commandList().size(), 1);  // one command, updated in place
}

TEST_F(MetadataPages, ThePickerListsTheCurrentFilesFieldsAndInsertsThem)
{
    open(u'M');
    page->showFieldsOf(0);
    QTreeWidget* picker = page->fieldPicker();
    const QList<QTreeWidgetItem*> title = picker->findItems("<M.TITLE>", Qt::MatchExactly);
    ASSERT_EQ(title.size(), 1);
    EXPECT_EQ(title[0]->text(1), "七里香");
    EXPECT_TRUE(picker->findItems("<D.MODEL>", Qt::MatchExactly).isEmpty());  // only this page's family

    setTemplate("x ");
    emit picker->itemDoubleClicked(title[0], 0);
    EXPECT_EQ(control<QComboBox>("ComboBoxM1Template")->currentText(), "x <M.TITLE>");

    page->showFieldsOf(2);  // a photo has no music fields
    EXPECT_EQ(picker->topLevelItemCount(), 0);
}

TEST_F(MetadataPages, ThePhotoPageChoosesWhereTheDateTakenComesFrom)
{
    open(u'D');
    click("RadioButtonD1Whole");
    expectStoresExactly("CheckBoxD1DateFileTime",
                        {{"D1_Whole", "1"}, {"D1_Before", "0"}, {"D1_After", "0"}, {"D1_Insert", "0"},
                         {"D1_InsertPos", "0"}, {"D1_InsertPosFromRight", "0"}, {"D1_Template", "<D.DATETAKEN> <D.MODEL>"},
                         {"D1_Missing", "0"}, {"D1_MissingText", "未知"}, {"D1_DateDigitized", "1"}, {"D1_DateXmp", "1"},
                         {"D1_DateFileTime", "1"}});
}

TEST(MetadataPageInWindow, EachFamilyHasItsPageInThePanel)
{
    MainWindow window(SettingsStore(), QStringLiteral("[20240305140709123]"));
    QStringList titles;
    for (int i = 0; i < window.functionPanel()->pageCount(); ++i)
        titles.append(window.functionPanel()->pageTitle(i));
    for (const char* title : {"1.M.音乐标签更名", "1.D.照片信息更名", "1.C.媒体信息更名"})
        EXPECT_TRUE(titles.contains(QString::fromUtf8(title))) << title;
    EXPECT_TRUE(window.functionPanel()->showPageFor("D1"));
    EXPECT_EQ(qobject_cast<TFrameFileRenameMetadata*>(window.functionPanel()->currentPage())->family(), u'D');
}

}  // namespace
}  // namespace qp::ui
