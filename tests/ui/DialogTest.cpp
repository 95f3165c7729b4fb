#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>

#include "DialogScript.h"
#include "core/RenameList.h"
#include "ui/GuiInteraction.h"
#include "ui/dialogs/ApplyForms.h"
#include "ui/dialogs/GoRenameOKForm.h"

namespace qp::ui {
namespace {

using test::click;

// Shows a form, lets `act` use it, and gives back what the form answered.
template <typename Form, typename Act>
void run(Form& form, Act act)
{
    form.show();
    act(form);
}

TEST(ApplyForms, ModeChoiceByItsThreeButtons)
{
    const struct {
        const char* button;
        ApplyMode mode;
    } cases[] = {{"选择简单更名继续(&C)", ApplyMode::Simple},
                 {"选择智能更名继续(&S)", ApplyMode::Smart},
                 {"先不更名了，我再考虑一下(&C)", ApplyMode::Stop}};
    for (const auto& c : cases) {
        TSimpleRenameSelectForm form(12000);
        EXPECT_EQ(form.windowTitle(), "批量更名方式选择");
        run(form, click(QString::fromUtf8(c.button)));
        EXPECT_EQ(form.mode(), c.mode) << c.button;
        EXPECT_FALSE(form.isVisible());
    }
    TSimpleRenameSelectForm closed(12000);
    closed.show();
    closed.close();
    EXPECT_EQ(closed.mode(), ApplyMode::Stop);
}

TEST(ApplyForms, ConflictWarningListsTheRowsAndRemembersOnlyAYes)
{
    RenameList list;
    for (const char* name : {"a", "b", "c"}) {
        FileEntry row;
        row.path = QStringLiteral("/w/");
        row.name = QString::fromUtf8(name);
        row.ext = QStringLiteral(".txt");
        row.newName = row.name == "a" ? QStringLiteral("b") : QStringLiteral("a");
        row.newExt = row.ext;
        list.append(row);
    }
    PreviewResult preview;
    preview.foundExist = preview.foundExistAndExchange = true;
    preview.conflictRows = {0, 1};

    TRenameWarningForm form(list, preview);
    EXPECT_EQ(form.windowTitle(), "更名冲突警告");
    const QAbstractItemModel* rows = form.findChild<QTableView*>("conflicts")->model();
    ASSERT_EQ(rows->rowCount(), 2);
    EXPECT_EQ(rows->headerData(3, Qt::Horizontal).toString(), "新文件名");
    EXPECT_EQ(rows->index(1, 0).data().toString(), "2");
    EXPECT_EQ(rows->index(1, 2).data().toString(), "b.txt");
    EXPECT_EQ(rows->index(1, 3).data().toString(), "a.txt");
    bool headlineFound = false;
    for (QLabel* label : form.findChildren<QLabel*>())
        headlineFound = headlineFound || label->text().contains("且已经发现更名死循环问题");
    EXPECT_TRUE(headlineFound);

    run(form, [](QDialog& f) {
        click("不再提示本对话框并直接启用智能更名继续操作")(f);
        click("取消更名操作")(f);
    });
    EXPECT_FALSE(form.answer().proceed);
    EXPECT_FALSE(form.answer().dontShowAgain);  // a cancel is no "never ask again"

    TRenameWarningForm again(list, preview);
    run(again, click("启用智能更名操作继续"));
    EXPECT_TRUE(again.answer().proceed);
    EXPECT_FALSE(again.answer().dontShowAgain);
}

TEST(ApplyForms, AttributeQuestionsStartFromTheStoredChoice)
{
    for (bool system : {false, true}) {
        for (int stored : {0, 1}) {
            TFileNameAttribWarningForm form(system, QStringLiteral("/w/a.txt"), stored);
            EXPECT_EQ(form.objectName(),
                      system ? "TFileNameAttribSWarningForm" : "TFileNameAttribRWarningForm");
            EXPECT_EQ(form.windowTitle(), "温馨提示");
            run(form, click("继续(&C)"));
            EXPECT_EQ(form.answer().choice, stored);
            EXPECT_FALSE(form.answer().dontAskAgain);
        }
    }
    TFileNameAttribWarningForm form(false, QStringLiteral("/w/a.txt"), 1);
    run(form, [](QDialog& f) {
        click("跳过")(f);
        click("按以上设置进行更名操作而不再询问")(f);
        click("继续(&C)")(f);
    });
    EXPECT_EQ(form.answer().choice, 0);
    EXPECT_TRUE(form.answer().dontAskAgain);
}

TEST(ApplyForms, TooLongQuestionShowsWhatEachChoiceMakes)
{
    const auto made = [](int choice) { return choice == 2 ? QString() : QStringLiteral("cut%1.txt").arg(choice); };
    TFileNameTooLongWarningForm form(QStringLiteral("/w/long.txt"), QStringLiteral("longer.txt"), made, 1);
    auto* corrected = form.findChild<QLineEdit*>("corrected");
    EXPECT_EQ(corrected->text(), "cut1.txt");
    run(form, [&](QDialog& f) {
        click("操作系统处理方式（含扩展名直接从尾部删除多余字符）")(f);
        EXPECT_EQ(corrected->text(), "cut3.txt");
        click("从前向后删除文件名至符合系统规定长度后更名")(f);
        EXPECT_EQ(corrected->text(), "（无法缩短到规定长度，将跳过）");
        click("跳过")(f);
        EXPECT_EQ(corrected->text(), "（跳过，不更名）");
        click("继续(&C)")(f);
    });
    EXPECT_EQ(form.answer().choice, 0);
}

TEST(ApplyForms, CompletionFormClosesOnlyWhenTheCopyWasSaved)
{
    TGoRenameOKForm form(QStringLiteral("更名文件列表对象2个，操作成功2个，失败0个，跳过0个。"),
                         QStringLiteral("/cfg/AutoSnapshot/[1]/1.txt"), true, true);
    EXPECT_EQ(form.windowTitle(), "批量更名完成");
    EXPECT_NE(form.findChild<QLabel*>("uac"), nullptr);
    bool saved = false;
    form.setSaveSnapshot([&] { return saved; });
    form.show();
    click("保存本次更名快照(&S)")(form);
    EXPECT_TRUE(form.isVisible());  // the save dialog was cancelled
    saved = true;
    click("保存本次更名快照(&S)")(form);
    EXPECT_FALSE(form.isVisible());
    EXPECT_TRUE(form.alwaysShow());

    TGoRenameOKForm plain(QString(), QString(), false, false);
    EXPECT_EQ(plain.findChild<QLabel*>("uac"), nullptr);
    EXPECT_FALSE(plain.alwaysShow());
}

TEST(GuiInteraction, QuestionsUseTheProgramsButtonsAndLineBreaks)
{
    GuiInteraction ui;
    test::DialogScript script;
    ui.setModalRunner(script.runner());
    QStringList buttons;
    script.on("load.largeListDedupe", [&](QDialog& dialog) {
        for (QAbstractButton* button : static_cast<QMessageBox&>(dialog).buttons())
            buttons.append(button->text());
        click("否(&N)")(dialog);
    });
    const Question question{QStringLiteral("load.largeListDedupe"), QStringLiteral("温馨提示"),
                            QStringLiteral("第一行\r自动剔除重复对象，按“是”；\r\n取消"),
                            Button::Yes | Button::No | Button::Cancel, Button::Yes, Icon::Question};
    EXPECT_EQ(ui.ask(question), Button::No);
    buttons.sort();
    EXPECT_EQ(buttons, (QStringList{"取消", "否(&N)", "是(&Y)"}));
    EXPECT_EQ(script.texts.value(0), "第一行\n自动剔除重复对象，按“是”；\n取消");

    // Closing the box is the question's "no".
    script.on("undo.confirm", [](QDialog& dialog) { dialog.close(); });
    EXPECT_EQ(ui.ask(Question{"undo.confirm", "撤销更名确认", "?", Button::Ok | Button::Cancel, Button::Ok,
                              Icon::Question}),
              Button::Cancel);
}

// Counts how often the event loop ran: every delivery posts the next event.
class PumpCounter : public QObject {
public:
    int deliveries = 0;
    bool event(QEvent* event) override
    {
        if (event->type() != QEvent::User)
            return QObject::event(event);
        ++deliveries;
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
        return true;
    }
};

TEST(GuiInteraction, PumpsAtMostAboutThirtyTimesASecondAndStopsOnRequest)
{
    GuiInteraction ui;
    PumpCounter counter;
    QCoreApplication::postEvent(&counter, new QEvent(QEvent::User));
    ui.setBusy(true);
    EXPECT_TRUE(ui.busy());
    QElapsedTimer clock;
    clock.start();
    long polls = 0;
    while (clock.elapsed() < 300) {
        EXPECT_FALSE(ui.stopRequested());
        ++polls;
    }
    EXPECT_GT(polls, 1000);
    EXPECT_GE(counter.deliveries, 1);
    EXPECT_LE(counter.deliveries, 300 / GuiInteraction::kPumpInterval + 2);
    ui.requestStop();
    EXPECT_TRUE(ui.stopRequested());
    ui.setBusy(false);
    EXPECT_FALSE(ui.busy());
    // A new operation starts without the old request.
    ui.setBusy(true);
    EXPECT_FALSE(ui.stopRequested());
    ui.setBusy(false);
    QCoreApplication::removePostedEvents(&counter);
}

}  // namespace
}  // namespace qp::ui
