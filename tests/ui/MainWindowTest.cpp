#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QStatusBar>

#include "ui/MainWindow.h"

namespace qp::ui {
namespace {

TEST(MainWindow, ShowsEngineMessagesAndStatus)
{
    MainWindow window(SettingsStore(), QStringLiteral("[20240305140709123]"));
    window.show();
    EXPECT_EQ(window.session().runStamp(), QStringLiteral("[20240305140709123]"));

    window.session().messages().add(QStringLiteral("对象载入完毕。"));
    window.session().messages().add(QStringLiteral("无法读取文件夹：/x"), MessageColour::Red);
    auto* pane = window.findChild<QListWidget*>();
    ASSERT_NE(pane, nullptr);
    ASSERT_EQ(pane->count(), 2);
    EXPECT_TRUE(pane->item(0)->text().endsWith(QStringLiteral("] 对象载入完毕。")));
    EXPECT_EQ(pane->item(1)->foreground().color(), QColor(Qt::red));

    window.session().interaction().status(QStringLiteral("未发现新对象！"));
    bool found = false;
    for (QLabel* label : window.statusBar()->findChildren<QLabel*>())
        found = found || label->text() == QStringLiteral("未发现新对象！");
    EXPECT_TRUE(found);

    window.session().interaction().setBusy(true);
    EXPECT_FALSE(window.isEnabled());
    window.session().interaction().setBusy(false);
    EXPECT_TRUE(window.isEnabled());
}

}  // namespace
}  // namespace qp::ui

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
