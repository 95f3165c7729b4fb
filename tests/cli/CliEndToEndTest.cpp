// The real `quillet` binary on temporary trees: what it prints, what it does on disk, what
// it leaves in the settings folder, and its exit codes.
#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>
#include <QThread>
#include <csignal>
#include <fstream>
#include <map>

#include "../support/MetadataSamples.h"
#include "../support/Spreadsheet.h"
#include "../support/TempTree.h"
#include "core/PathText.h"

namespace qp::cli {
namespace {

struct Outcome {
    int code = -1;
    QString out;
    QString err;
};

class CliBinary : public ::testing::Test {
protected:
    QString settingsFile() const { return tree.path("conf/QuilletPro.ini"); }

    Outcome run(QStringList arguments) const
    {
        arguments.prepend(settingsFile());
        arguments.prepend(QStringLiteral("--settings"));
        QProcess process;
        process.setWorkingDirectory(tree.path());
        process.start(QStringLiteral(QUILLET_BINARY), arguments);
        process.waitForFinished(-1);
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
        return Outcome{process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                       QString::fromUtf8(process.readAllStandardError())};
    }

    // Every file below `folder` by its path relative to the tree, with its content.
    std::map<QString, QByteArray> files(const QString& folder) const
    {
        std::map<QString, QByteArray> found;
        QDirIterator it(tree.path(folder.toStdString()), QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString path = it.next();
            QFile file(path);
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            found[path.mid(tree.path().size())] = file.readAll();
        }
        return found;
    }

    QString programme(const std::string& name, const QList<std::pair<std::string, std::string>>& lines) const
    {
        std::string text = "\xEF\xBB\xBF[Rename Programme]\r\n";
        for (const auto& [from, to] : lines)
            text += tree.path(from).toStdString() + "=" + to + "\r\n";
        return tree.file(name, text);
    }

    QString tsvLine(int state, const std::string& path, const char* newName) const
    {
        return QString::number(state) + u'\t' + nativeSeparators(tree.path(path)) + u'\t' + QString::fromUtf8(newName);
    }

    QStringList snapshots() const
    {
        QStringList found;
        QDirIterator it(tree.path("conf/AutoSnapshot"), {QStringLiteral("*.txt")}, QDir::Files,
                        QDirIterator::Subdirectories);
        while (it.hasNext())
            found.append(it.next());
        return found;
    }

    test::TempTree tree;
};

TEST_F(CliBinary, PreviewPrintsOneRowPerObjectInTsvAndJson)
{
    tree.file("d/a.txt", "a");
    tree.file("d/b.log", "b");
    tree.file("d/sub/c.txt", "c");

    struct Case {
        const char* name;
        QStringList options;
        QStringList rows;
    };
    const Case cases[] = {
        // A chosen folder is a row of its own; only traversing it lists what it holds.
        {"chosen folder", {}, {tsvLine(1, "d", "d")}},
        {"recursive",
         {"--recursive"},
         {tsvLine(1, "d", "d"), tsvLine(1, "d/a.txt", "a.txt"), tsvLine(1, "d/b.log", "b.log"),
          tsvLine(1, "d/sub", "sub"), tsvLine(1, "d/sub/c.txt", "c.txt")}},
        {"no folder rows", {"--recursive", "--no-folder-rows"},
         {tsvLine(1, "d/a.txt", "a.txt"), tsvLine(1, "d/b.log", "b.log"), tsvLine(1, "d/sub/c.txt", "c.txt")}},
        {"keep", {"--recursive", "--keep", "*.txt"}, {tsvLine(1, "d/a.txt", "a.txt"), tsvLine(1, "d/sub/c.txt", "c.txt")}},
        {"exclude", {"--recursive", "--exclude", "*.txt"},
         {tsvLine(1, "d", "d"), tsvLine(1, "d/b.log", "b.log"), tsvLine(1, "d/sub", "sub")}},
        {"traversal set for this run only",
         {"--set", "Operation Config/FlagFindDeepin=1", "--no-folder-rows"},
         {tsvLine(1, "d/a.txt", "a.txt"), tsvLine(1, "d/b.log", "b.log"), tsvLine(1, "d/sub/c.txt", "c.txt")}},
    };
    for (const Case& c : cases) {
        const Outcome result = run(QStringList{"preview"} + c.options + QStringList{"d"});
        EXPECT_EQ(result.code, 0) << c.name << result.err.toStdString();
        QStringList lines = result.out.split(u'\n', Qt::SkipEmptyParts);
        lines.sort();
        QStringList expected = c.rows;
        expected.sort();
        EXPECT_EQ(lines.join(u'\n').toStdString(), expected.join(u'\n').toStdString()) << c.name;
    }

    const Outcome json = run({"preview", "--format", "json", "--no-folder-rows", tree.path("d/a.txt")});
    ASSERT_EQ(json.code, 0) << json.err.toStdString();
    const QJsonArray rows = QJsonDocument::fromJson(json.out.toUtf8()).array();
    ASSERT_EQ(rows.size(), 1) << json.out.toStdString();
    const QJsonObject row = rows.first().toObject();
    EXPECT_EQ(row.value("state").toInt(-1), 1);
    EXPECT_EQ(row.value("path").toString(), nativeSeparators(tree.path("d/a.txt")));
    EXPECT_EQ(row.value("name").toString(), "a");
    EXPECT_EQ(row.value("ext").toString(), ".txt");
    EXPECT_EQ(row.value("newName").toString(), "a");
    EXPECT_EQ(row.value("newExt").toString(), ".txt");

    tree.file("d/x, \"y\".txt", "x");
    const Outcome csv = run({"preview", "--format", "csv", tree.path("d/x, \"y\".txt")});
    ASSERT_EQ(csv.code, 0) << csv.err.toStdString();
    EXPECT_EQ(csv.out, "state,path,name,ext,newName,newExt\r\n1,\"" + nativeSeparators(tree.path("d/x, \"\"y\"\".txt"))
                           + "\",\"x, \"\"y\"\"\",.txt,\"x, \"\"y\"\"\",.txt\r\n");
}

// Renames that block each other, applied from an imported programme and undone again,
// once from the newest snapshot and once from the snapshot named on the command line.
TEST_F(CliBinary, ImportApplyThenUndoRestoresEveryName)
{
    struct Case {
        const char* name;
        std::map<std::string, std::string> before;  // relative path -> content
        QList<std::pair<std::string, std::string>> lines;
        std::map<std::string, std::string> after;
    };
    const Case cases[] = {
        {"swap", {{"t/a.txt", "A"}, {"t/b.txt", "B"}}, {{"t/a.txt", "b.txt"}, {"t/b.txt", "a.txt"}},
         {{"t/a.txt", "B"}, {"t/b.txt", "A"}}},
        {"chain", {{"t/1.txt", "one"}, {"t/2.txt", "two"}, {"t/3.txt", "three"}},
         {{"t/1.txt", "2.txt"}, {"t/2.txt", "3.txt"}, {"t/3.txt", "4.txt"}},
         {{"t/2.txt", "one"}, {"t/3.txt", "two"}, {"t/4.txt", "three"}}},
        {"folder with files inside", {{"t/f/x.txt", "X"}, {"t/f/y.txt", "Y"}},
         {{"t/f", "g"}, {"t/f/x.txt", "x2.txt"}, {"t/f/y.txt", "a=b.txt"}},
         {{"t/g/x2.txt", "X"}, {"t/g/a=b.txt", "Y"}}},
    };
    for (const bool bySnapshotFile : {false, true}) {
        for (const Case& c : cases) {
            SCOPED_TRACE(std::string(c.name) + (bySnapshotFile ? " (--snapshot)" : " (newest)"));
            std::filesystem::remove_all(tree.root() / "t");
            std::filesystem::remove_all(tree.root() / "conf");
            std::map<QString, QByteArray> before, after;
            for (const auto& [path, content] : c.before) {
                tree.file(path, content);
                before['/' + QString::fromStdString(path)] = QByteArray::fromStdString(content);
            }
            for (const auto& [path, content] : c.after)
                after['/' + QString::fromStdString(path)] = QByteArray::fromStdString(content);
            QList<std::pair<std::string, std::string>> lines = c.lines;
            for (auto& line : lines)
                line.second = QString::fromStdString(line.second).replace("=", "<61>").toStdString();
            const QString file = programme("p.txt", lines);

            const Outcome applied = run({"import", "--programme", file, "--apply"});
            EXPECT_EQ(applied.code, 0) << applied.err.toStdString();
            EXPECT_EQ(files("t"), after);
            for (const QString& line : applied.out.split(u'\n', Qt::SkipEmptyParts))
                EXPECT_TRUE(line.startsWith("0\t")) << line.toStdString();
            EXPECT_TRUE(applied.err.contains(QStringLiteral("对象批量更名完成！"))) << applied.err.toStdString();
            // The settings file is not created, yet the snapshot goes beside where it would be.
            EXPECT_FALSE(QFile::exists(settingsFile()));
            const QStringList written = snapshots();
            ASSERT_EQ(written.size(), 1);

            const Outcome undone = bySnapshotFile ? run({"undo", "--snapshot", written.first()}) : run({"undo"});
            EXPECT_EQ(undone.code, 0) << undone.err.toStdString();
            EXPECT_TRUE(undone.err.contains(QStringLiteral("撤销上一次的批量更名完成"))) << undone.err.toStdString();
            EXPECT_EQ(files("t"), before);
            EXPECT_TRUE(snapshots().isEmpty()) << "an undone snapshot is used up";
        }
    }
}

TEST_F(CliBinary, ExportedProgrammeImportsAsTheSameRows)
{
    tree.file("d/plain.txt");
    tree.file("d/a=b.txt");
    tree.file("d/sub/deep.dat");
    const QString out = tree.path("out/programme.txt");
    const Outcome preview = run({"preview", "--recursive", "d"});
    ASSERT_EQ(preview.code, 0) << preview.err.toStdString();

    const Outcome exported = run({"export", "--recursive", "--programme", "out/programme.txt", "d"});
    ASSERT_EQ(exported.code, 0) << exported.err.toStdString();
    ASSERT_TRUE(QFile::exists(out));
    const Outcome imported = run({"import", "--programme", out});
    EXPECT_EQ(imported.code, 0) << imported.err.toStdString();
    EXPECT_EQ(imported.out, preview.out);
    EXPECT_EQ(preview.out.count(u'\n'), 5);  // d, sub and the three files
}

TEST_F(CliBinary, ContrastListAsTextAndSpreadsheets)
{
    tree.file("d/报告.txt");
    tree.file("d/b.txt");
    const QString commands = tree.file("upper.frc", "[CommandList]\r\nCommandListCount=1\r\n1=CMD_N6012024\r\n"
                                                    "[CMD_N6012024]\r\nCMDid=N601\r\n");
    const Outcome text = run({"export", "--recursive", "--no-folder-rows", "--commands", commands, "--contrast",
                              "out/list.txt", "--encoding", "utf8", "--separator", "|", "d"});
    ASSERT_EQ(text.code, 0) << text.err.toStdString();
    QFile file(tree.path("out/list.txt"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    EXPECT_TRUE(bytes.startsWith("\xEF\xBB\xBF"));
    const QString lines = QString::fromUtf8(bytes);
    EXPECT_TRUE(lines.contains("b|B\r\n"));
    EXPECT_TRUE(lines.contains("报告|报告\r\n"));

    for (const char* name : {"out/list.xls", "out/list.xlsx"}) {
        const Outcome sheet = run({"export", "--recursive", "--no-folder-rows", "--commands", commands, "--contrast",
                                   name, "--with-ext", "--sheet", "名单", "d"});
        ASSERT_EQ(sheet.code, 0) << sheet.err.toStdString();
        const auto read = test::readSpreadsheet(tree.path(name));
        ASSERT_TRUE(read) << name;
        EXPECT_EQ(read->front().name, "名单");
        ASSERT_EQ(read->front().rows.size(), 2u);
        for (const QStringList& row : read->front().rows)
            EXPECT_TRUE(row == (QStringList{"b.txt", "B.txt"}) || row == (QStringList{"报告.txt", "报告.txt"})) << name;
    }
}

TEST_F(CliBinary, SettingsFileIsNeverWritten)
{
    const QByteArray settings = "\xEF\xBB\xBF[Operation Config]\r\nFlagFindDeepin=0\r\nApplyConfirm=1\r\n";
    tree.file("conf/QuilletPro.ini", settings.toStdString());
    tree.file("t/a.txt", "A");
    tree.file("t/b.txt", "B");
    const QString file = programme("p.txt", {{"t/a.txt", "b.txt"}, {"t/b.txt", "a.txt"}});
    EXPECT_EQ(run({"--set", "Operation Config/FileNameAttribRNotAsk=1", "import", "--programme", file, "--apply"}).code, 0);
    EXPECT_EQ(run({"--set", "Operation Config/FlagFindDeepin=1", "preview", "t"}).code, 0);
    EXPECT_EQ(run({"undo"}).code, 0);
    QFile stored(settingsFile());
    ASSERT_TRUE(stored.open(QIODevice::ReadOnly));
    EXPECT_EQ(stored.readAll(), settings);
}

TEST_F(CliBinary, UndoThatCannotRestoreEverythingFailsAndKeepsTheSnapshot)
{
    tree.file("t/a.txt", "A");
    tree.file("t/b.txt", "B");
    const QString file = programme("p.txt", {{"t/a.txt", "a2.txt"}, {"t/b.txt", "b2.txt"}});
    ASSERT_EQ(run({"import", "--programme", file, "--apply"}).code, 0);
    ASSERT_TRUE(QFile::remove(tree.path("t/a2.txt")));
    const Outcome undone = run({"undo"});
    EXPECT_EQ(undone.code, 1) << undone.err.toStdString();
    EXPECT_TRUE(undone.err.contains(QStringLiteral("快照中还有 1 个对象未能恢复"))) << undone.err.toStdString();
    EXPECT_EQ(files("t"), (std::map<QString, QByteArray>{{"/t/b.txt", "B"}}));
    EXPECT_EQ(snapshots().size(), 1);
}

TEST_F(CliBinary, ExitCodes)
{
    tree.file("d/a.txt", "A");
    tree.file("d/b.txt", "B");
    tree.file("bad.txt", "no programme here\n");
    const QString swap = programme("swap.txt", {{"d/a.txt", "b.txt"}, {"d/b.txt", "a.txt"}});

    struct Case {
        QStringList arguments;
        int code;
    };
    const Case cases[] = {
        {{"--help"}, 0},
        {{"--version"}, 0},
        {{"preview", "d"}, 0},
        {{"import", "--programme", swap}, 0},
        {{}, 2},
        {{"frobnicate"}, 2},
        {{"fields"}, 2},
        {{"--set", "no-section", "preview", "d"}, 2},
        {{"preview", "--format", "xml", "d"}, 2},
        {{"preview", "--commands", "missing.frc", "d"}, 2},
        {{"preview", "--commands", "bad.txt", "d"}, 2},
        {{"preview", "--list", "missing.lst"}, 2},
        {{"preview", "--programme", swap, "d"}, 2},
        {{"import"}, 2},
        {{"import", "--programme", "missing.txt"}, 2},
        {{"import", "--programme", "bad.txt", "--apply"}, 2},
        {{"export", "d"}, 2},
        {{"export", "--contrast", "c.txt", "--encoding", "ebcdic", "d"}, 2},
        {{"export", "--contrast", "c.xls", "--old-column", "0", "d"}, 2},
        {{"preview", "--encoding", "utf8", "d"}, 2},
        {{"undo", "--snapshot", "missing.txt"}, 2},
        {{"undo"}, 2},
        // Simple rename does not order a swap: the first rename finds its target taken,
        // whatever happens to the rows afterwards.
        {{"import", "--programme", swap, "--apply", "--simple"}, 1},
        {{"--set", "Operation Config/AfterApplyClearCmd=0", "import", "--programme", swap, "--apply", "--simple"}, 1},
    };
    for (const Case& c : cases) {
        const Outcome result = run(c.arguments);
        EXPECT_EQ(result.code, c.code) << c.arguments.join(' ').toStdString() << "\n" << result.err.toStdString();
        if (c.code == 2) {
            EXPECT_EQ(result.err.count(u'\n'), 1) << c.arguments.join(' ').toStdString() << result.err.toStdString();
            EXPECT_TRUE(result.out.isEmpty());
        }
    }
    EXPECT_EQ(files("d"), (std::map<QString, QByteArray>{{"/d/a.txt", "A"}, {"/d/b.txt", "B"}}))
        << "a simple swap fails without touching either file";

    const Outcome help = run({"--help"});
    for (const char* word : {"--recursive", "遍历文件夹", "--no-folder-rows", "含文件夹名", "--simple", "简单更名"})
        EXPECT_TRUE(help.out.contains(QString::fromUtf8(word))) << word;
}

// "--help" speaks the language the settings file chooses.
TEST_F(CliBinary, HelpSpeaksTheLanguageOfTheSettings)
{
    tree.file("conf/QuilletPro.ini", "[Interface Config]\r\nLanguage=en\r\n");
    const Outcome help = run({"--help"});
    EXPECT_TRUE(help.out.startsWith("Usage: quillet")) << help.out.toStdString();
    EXPECT_TRUE(help.out.contains("load everything below the folders"));
    EXPECT_FALSE(help.out.contains(QRegularExpression(QStringLiteral("[\\x{4e00}-\\x{9fff}]")))) << help.out.toStdString();
}

TEST_F(CliBinary, FieldsListsEveryFieldOfEachFile)
{
    const QString mp3 = test::metadataSample("id3v1.mp3");
    const QString jpeg = test::metadataSample("exif.jpg");
    const Outcome tsv = run({"fields", mp3, jpeg});
    EXPECT_EQ(tsv.code, 0) << tsv.err.toStdString();
    EXPECT_TRUE(tsv.out.contains(nativeSeparators(mp3) + "\t<M.TITLE>\t七里香\n"));
    EXPECT_TRUE(tsv.out.contains(nativeSeparators(jpeg) + "\t<D.KEY>(Exif.Image.Model)\tCanon EOS R5\n"));
    EXPECT_FALSE(tsv.out.contains(nativeSeparators(jpeg) + "\t<M."));

    const Outcome json = run({"fields", "--format", "json", mp3});
    const QJsonArray files = QJsonDocument::fromJson(json.out.toUtf8()).array();
    ASSERT_EQ(files.size(), 1);
    EXPECT_EQ(files[0]["path"].toString(), nativeSeparators(mp3));
    EXPECT_TRUE(files[0]["fields"].toArray().contains(QJsonObject{{"tag", "<M.ARTIST>"}, {"value", "周杰伦"}}));

    const Outcome missing = run({"fields", tree.path("nope.mp3"), mp3});
    EXPECT_EQ(missing.code, 1);
    EXPECT_TRUE(missing.err.contains("不是可读取的文件")) << missing.err.toStdString();
    EXPECT_TRUE(missing.out.contains("七里香"));
}

// Killed at any instant, an apply leaves a journal from which `quillet undo` restores every
// name: a plain batch and a cycle through temporary names, each killed at several points.
TEST_F(CliBinary, KilledApplyIsUndoneCompletely)
{
    constexpr int kFiles = 20000;
    std::filesystem::create_directories(tree.root() / "k");
    std::string cycle = "\xEF\xBB\xBF[Rename Programme]\r\n";
    for (int i = 0; i < kFiles; ++i) {
        std::ofstream(tree.root() / "k" / ("f" + std::to_string(i))) << i;
        cycle += tree.path("k/f" + std::to_string(i)).toStdString() + "=f" + std::to_string((i + 1) % kFiles) + "\r\n";
    }
    const QString programmeFile = tree.file("cycle.txt", cycle);
    const QString commands = tree.file("add.frc", "[CommandList]\r\nCommandListCount=1\r\n1=CMD_N1012024\r\n"
                                                  "[CMD_N1012024]\r\nCMDid=N101\r\nN1_AddStr=_x\r\nN1_AddRight=1\r\n");
    const std::map<QString, QByteArray> before = files("k");
    ASSERT_EQ(before.size(), size_t(kFiles));
    for (const bool twoPass : {false, true}) {
        int killedMidway = 0;
        for (const int delayMs : {0, 30, 120}) {
            SCOPED_TRACE(std::string(twoPass ? "cycle" : "plain") + " killed after " + std::to_string(delayMs) + " ms");
            std::filesystem::remove_all(tree.root() / "conf");
            QProcess apply;
            apply.setStandardOutputFile(QProcess::nullDevice());
            apply.setStandardErrorFile(QProcess::nullDevice());
            const QStringList arguments =
                twoPass ? QStringList{"import", "--programme", programmeFile, "--apply"}
                        : QStringList{"apply", "--recursive", "--no-folder-rows", "--commands", commands, tree.path("k")};
            apply.start(QStringLiteral(QUILLET_BINARY), QStringList{"--settings", settingsFile()} + arguments);
            ASSERT_TRUE(apply.waitForStarted());
            // The renames start once the journal is there.
            while (snapshots().isEmpty() && !apply.waitForFinished(1)) {
            }
            QThread::msleep(delayMs);
            ::kill(pid_t(apply.processId()), SIGKILL);
            apply.waitForFinished(-1);
            const QStringList written = snapshots();
            ASSERT_EQ(written.size(), 1);
            QFile journal(written.first());
            ASSERT_TRUE(journal.open(QIODevice::ReadOnly));
            killedMidway += journal.readAll().contains("[Rename Journal]") ? 1 : 0;
            journal.close();
            const Outcome undone = run({"undo"});
            EXPECT_EQ(undone.code, 0) << undone.err.left(2000).toStdString();
            EXPECT_TRUE(files("k") == before);
        }
        EXPECT_GT(killedMidway, 0) << "no run was killed while renaming";
    }
}

}  // namespace
}  // namespace qp::cli
