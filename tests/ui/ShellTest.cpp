// The application shell around the rename page: the filter tool, list exports, welcome page,
// about box, update check (against a loopback server) and one running window.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QListView>
#include <QProcess>
#include <QPushButton>
#include <QTableWidget>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTest>

#include "DialogScript.h"
#include "WindowTest.h"
#include "core/UpdateInfo.h"
#include "ui/dialogs/AboutForm.h"
#include "ui/dialogs/FilterForm.h"
#include "ui/dialogs/WelcomeForm.h"
#include "ui/shell/SingleInstance.h"
#include "ui/shell/UpdateChecker.h"
#include "../support/QStringPrinter.h"
#include "../support/Spreadsheet.h"

namespace qp::ui {
namespace {

using test::click;
using test::WindowTest;

class ShellTest : public WindowTest {
protected:
    void loadFiles(std::initializer_list<const char*> names)
    {
        for (const char* name : names)
            tree.file(std::string("w/") + name, "x");
        loadFolder(tree.path("w"));
    }
    QStringList messages()
    {
        QStringList texts;
        for (const MessageLine& line : session().messages().lines())
            texts.append(line.text);
        return texts;
    }
    bool anyMessage(const QString& part)
    {
        const QStringList texts = messages();
        return std::any_of(texts.begin(), texts.end(), [&](const QString& text) { return text.contains(part); });
    }
};

TEST_F(ShellTest, TheFilterToolKeepsWhatMatchesAndStoresNamedSets)
{
    loadFiles({"a.txt", "b.txt", "c.jpg"});
    script.on("TFilterForm", [](QDialog& dialog) {
        auto& form = static_cast<TFilterForm&>(dialog);
        form.patternBox()->setText("*.TXT");
        form.countNow();
        EXPECT_EQ(form.matchCount()->text(), "符合条件的对象：2 个（共 3 个）");
        form.setsBox()->setEditText("文本");
        EXPECT_TRUE(form.saveSet());
        click("筛选")(dialog);
    });
    window.action("MMenuFileFilter")->trigger();
    QStringList kept = column(RenameListModel::ColName);
    kept.sort();
    EXPECT_EQ(kept, (QStringList{"a", "b"}));
    EXPECT_EQ(filtersets::read(session().settings(), "文本")->pattern, "*.TXT");

    // A pattern the filter cannot use keeps the form open and says why.
    TFilterForm form(session());
    form.patternBox()->setText("[");
    form.findChild<QComboBox*>("ComboBoxSyntax")->setCurrentIndex(1);
    form.show();
    form.accept();
    EXPECT_TRUE(form.isVisible());
    EXPECT_TRUE(form.matchCount()->text().contains("正则表达式有误")) << form.matchCount()->text().toStdString();
    form.setsBox()->setCurrentText("文本");
    emit form.setsBox()->textActivated("文本");
    EXPECT_EQ(form.patternBox()->text(), "*.TXT");
}

TEST_F(ShellTest, TheListAndTheMessagesExportAsSpreadsheetsAndText)
{
    loadFiles({"报告.txt", "b.txt"});
    window.renameGrid()->selectRow(int(column(RenameListModel::ColName).indexOf("b")));
    const QString sheet = tree.path("out/list.xlsx");
    QDir().mkpath(tree.path("out"));
    script.on("FileDialog", [&](QDialog& dialog) {
        static_cast<QFileDialog&>(dialog).selectFile(sheet);
        dialog.accept();
    });
    window.action("PMenuNGFileRenameExportChosen")->trigger();
    const auto read = qp::test::readSpreadsheet(sheet);
    ASSERT_TRUE(read);
    const std::vector<QStringList>& rows = read->front().rows;
    ASSERT_EQ(rows.size(), 2u);  // the header and the one chosen row
    EXPECT_EQ(rows[0].mid(0, 3), (QStringList{"实际文件名", "实际扩展名", "状态"}));
    EXPECT_EQ(rows[1].mid(0, 3), (QStringList{"b", ".txt", "未更名"}));

    const QString text = tree.path("out/messages.txt");
    script.on("FileDialog", [&](QDialog& dialog) {
        static_cast<QFileDialog&>(dialog).selectFile(text);
        dialog.accept();
    });
    window.action("PMenuMsgExport")->trigger();
    QFile file(text);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    EXPECT_TRUE(bytes.startsWith("\xEF\xBB\xBF["));
    EXPECT_TRUE(bytes.contains("已导出 1 行到："));
    EXPECT_TRUE(bytes.endsWith("\r\n"));
}

TEST_F(ShellTest, TheWelcomePageAsksOnceAboutUpdatesAndCanStayAway)
{
    EXPECT_TRUE(TWelcomeForm::showsAtStart(session().settings()));
    script.on("TWelcomeForm", [](QDialog& dialog) {
        auto& form = static_cast<TWelcomeForm&>(dialog);
        ASSERT_NE(form.updateBox(), nullptr);
        form.updateBox()->setChecked(true);
        form.dontShowBox()->setChecked(true);
        dialog.reject();
    });
    window.startShell();
    EXPECT_EQ(script.seen, QStringList{"TWelcomeForm"});
    EXPECT_FALSE(TWelcomeForm::showsAtStart(session().settings()));
    const UpdateSettings update = UpdateSettings::read(session().settings());
    EXPECT_TRUE(update.asked);
    EXPECT_TRUE(update.enabled);
    TWelcomeForm again(session().settings());
    EXPECT_EQ(again.updateBox(), nullptr);  // asked once only
}

TEST(AboutForm, ListsEveryLibraryOfTheNoticeFileWithItsLicence)
{
    TAboutForm form(QStringLiteral(QP_NOTICE_FILE));
    QTableWidget* grid = form.libraryGrid();
    ASSERT_GE(grid->rowCount(), 5);
    QStringList names;
    for (int row = 0; row < grid->rowCount(); ++row) {
        names.append(grid->item(row, 0)->text());
        EXPECT_FALSE(grid->item(row, 2)->text().isEmpty()) << names.last().toStdString();
    }
    const qsizetype qt = names.indexOf("Qt");
    ASSERT_GE(qt, 0);
    EXPECT_EQ(grid->item(int(qt), 1)->text(), QString::fromLatin1(qVersion()));
    grid->selectRow(int(qt));
    EXPECT_TRUE(form.details()->toPlainText().contains("relinking")) << form.details()->toPlainText().toStdString();
    TAboutForm missing(QString{});
    EXPECT_EQ(missing.libraryGrid()->rowCount(), 0);
}

// Answers every request with what `reply` gives for it: a status line and body, or nothing
// at all (the slow server).
class LoopbackServer {
public:
    explicit LoopbackServer(std::function<QByteArray()> reply) : m_reply(std::move(reply))
    {
        m_server.listen(QHostAddress::LocalHost);
        QObject::connect(&m_server, &QTcpServer::newConnection, [this] {
            QTcpSocket* socket = m_server.nextPendingConnection();
            QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                if (!socket->readAll().contains("\r\n\r\n"))
                    return;
                const QByteArray answer = m_reply();
                if (!answer.isEmpty()) {
                    socket->write(answer);
                    socket->disconnectFromHost();
                }
            });
        });
    }
    QString url() const { return QStringLiteral("http://127.0.0.1:%1/update.json").arg(m_server.serverPort()); }

private:
    QTcpServer m_server;
    std::function<QByteArray()> m_reply;
};

QByteArray http(const QByteArray& body, const char* status = "200 OK")
{
    return QByteArray("HTTP/1.1 ") + status + "\r\nContent-Type: application/json\r\nContent-Length: "
        + QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body;
}

TEST_F(ShellTest, UpdateCheckAnswersGoodBadAndSlow)
{
    QCoreApplication::setApplicationVersion("1.0.0");
    window.updateChecker()->setTimeout(300);
    const struct {
        QByteArray answer;  // empty: the server never answers
        const char* message;  // a part of the message line; empty when the form opens instead
    } cases[] = {
        {http(R"({"version": "1.2.0", "url": "https://example.org/get"})"), ""},
        {http(R"({"version": "0.9", "url": "https://example.org/get"})"), "低于当前版本"},
        {http(R"({"version": "1.0", "url": "https://example.org/get"})"), "已是最新版本"},
        {http("<html>busy</html>"), "不是有效的 JSON"},
        {http("{}", "404 Not Found"), "检查更新失败"},
        {{}, "秒内没有应答"},
        {http(R"({"version": "1.2.0", "url": "https://example.org/get"})"), "已设为跳过"},
    };
    bool formSeen = false;
    script.on("TUpdateForm", [&](QDialog& dialog) {
        formSeen = true;
        click("跳过此版本")(dialog);
    });
    for (const auto& c : cases) {
        LoopbackServer server([&] { return c.answer; });
        UpdateSettings settings = UpdateSettings::read(session().settings());
        settings.url = server.url();
        settings.write(session().settings());
        const qsizetype before = session().messages().lines().size();
        formSeen = false;
        // The first case is a check from the menu; the later ones run as the automatic check.
        if (*c.message)
            window.startShell();
        else
            window.action("MMenuHelpCheckUpdate")->trigger();
        ASSERT_TRUE(QTest::qWaitFor([&] { return !window.updateChecker()->running(); }, 5000)) << c.message;
        QTest::qWait(20);
        if (*c.message) {
            ASSERT_GT(session().messages().lines().size(), before) << c.message;
            EXPECT_TRUE(session().messages().lines().constLast().text.contains(QString::fromUtf8(c.message)))
                << session().messages().lines().constLast().text.toStdString();
        } else {
            EXPECT_TRUE(formSeen);
        }
        // Make the next automatic check due again.
        settings = UpdateSettings::read(session().settings());
        settings.lastCheck = {};
        settings.write(session().settings());
        session().settings().writeBool(keys::kInterface, "ShowWelcome", false);
        if (!settings.enabled) {
            settings.enabled = true;
            settings.write(session().settings());
        }
    }
    EXPECT_EQ(UpdateSettings::read(session().settings()).skippedVersion, "1.2.0");
}

// The program started three times with different paths: the first start's window holds
// them all (the later starts are the real binary, which hands its paths over and ends).
TEST_F(ShellTest, LaterStartsHandTheirPathsToTheRunningWindow)
{
    const QString settingsFile = session().settings().fileName();
    SingleInstance instance(SingleInstance::channelName(settingsFile));
    ASSERT_EQ(instance.claim({tree.file("w/first.txt")}), SingleInstance::Role::Primary);
    instance.serve(&window);
    window.loadPaths({tree.path("w/first.txt")});

    // The first of them arrives while the window is busy: it waits.
    window.interaction().setBusy(true);
    std::vector<std::unique_ptr<QProcess>> starts;
    for (const char* name : {"second.txt", "third.txt"}) {
        auto process = std::make_unique<QProcess>();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        process->setProcessEnvironment(environment);
        process->start(QStringLiteral(QUILLETPRO_BINARY), {"--settings", settingsFile, tree.file(std::string("w/") + name)});
        starts.push_back(std::move(process));
    }
    for (auto& process : starts) {
        ASSERT_TRUE(QTest::qWaitFor([&] { return process->state() == QProcess::NotRunning; }, 20000));
        EXPECT_EQ(process->exitCode(), 0) << process->readAllStandardError().toStdString();
    }
    QTest::qWait(SingleInstance::kGatherMs * 2);
    EXPECT_EQ(grid().rowCount(), 1);
    EXPECT_EQ(instance.pending().size(), 2);
    window.interaction().setBusy(false);
    ASSERT_TRUE(QTest::qWaitFor([&] { return grid().rowCount() == 3; }, 5000));
    QStringList names = column(RenameListModel::ColName);
    names.sort();
    EXPECT_EQ(names, (QStringList{"first", "second", "third"}));
}

}  // namespace
}  // namespace qp::ui
