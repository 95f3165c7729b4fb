#include <gtest/gtest.h>

#include <fstream>
#include <random>

#include "../support/TempTree.h"
#include "core/ProgrammeFile.h"
#include "core/Session.h"
#include "core/SettingsKeys.h"
#include "platform/FileSystem.h"

namespace qp {
namespace {

using test::TempTree;

class ProgrammeFileTest : public ::testing::Test {
protected:
    ProgrammeFileTest() : session(SettingsStore(), ui, QStringLiteral("[20240305140709123]")) {}

    // A row of the list with the given new file name.
    void addRow(const QString& fullPath, const QString& newFileName, bool isFolder = false)
    {
        const NameParts old = splitFileName(splitPath(fullPath).fileName, isFolder);
        const NameParts fresh = splitFileName(newFileName, isFolder);
        FileEntry row;
        row.name = old.name, row.ext = old.ext, row.newName = fresh.name, row.newExt = fresh.ext;
        row.path = splitPath(fullPath).folder, row.isFolder = isFolder;
        session.renameList().append(row);
    }

    ProgrammeImport import(const std::string& content)
    {
        return ProgrammeFile(session).importFrom(tree.file("in.txt", content));
    }

    QStringList rows() const  // "full path -> new file name"
    {
        QStringList out;
        for (const FileEntry& row : session.renameList().rows())
            out.append(row.fullPath() + " -> " + row.newName + "|" + row.newExt);
        return out;
    }

    QStringList logTexts() const
    {
        QStringList texts;
        for (const MessageLine& line : session.messages().lines())
            texts.append(line.text.mid(11));
        return texts;
    }

    TempTree tree;
    ScriptedInteraction ui;
    Session session;
};

TEST_F(ProgrammeFileTest, ExportWritesTheDocumentedText)
{
    addRow("/d/a=b.txt", "c=d.txt");
    addRow("/d/sub", "sub.2", true);
    const QString file = tree.path("out.txt");
    ASSERT_TRUE(ProgrammeFile(session).exportTo(file));
    const std::string golden =
        "\xEF\xBB\xBF"
        ";===========================================================\r\n"
        ";更名方案文件 或 快照文件\r\n"
        ";Quillet Pro 批量文件更名工具\r\n"
        ";由 Quillet Pro 生成，可用 Quillet Pro 再次导入\r\n"
        ";\r\n"
        ";说明：更名方案文件 或 快照文件 内容必须遵守的指定格式如下：\r\n"
        ";1. 必须包含字段：[Rename Programme]；\r\n"
        ";2. [Rename Programme]字段下面每行的格式为：\r\n"
        ";   原始文件名（含路径）=结果文件名（不含路径，含扩展名）\r\n"
        ";3. 所有文件名中的“=”必须改为“<61>”；\r\n"
        ";4. 本文件为系统生成，文件遵守ini文件格式。\r\n"
        ";===========================================================\r\n"
        "[Rename Programme]\r\n"
        "/d/a<61>b.txt=c<61>d.txt\r\n"
        "/d/sub=sub.2\r\n";
    EXPECT_EQ(platform::readFile(toPlatformPath(file), 1 << 20).bytes, golden);
    EXPECT_EQ(ui.notices.last().text, "更名方案导出成功。");
    EXPECT_EQ(session.settings().readString(keys::kInterface, kProgrammeFolderKey, {}), tree.path() + "/");

    session.renameList().clear();
    EXPECT_FALSE(ProgrammeFile(session).exportTo(tree.path("empty.txt")));
    EXPECT_FALSE(platform::exists(toPlatformPath(tree.path("empty.txt"))));
}

TEST_F(ProgrammeFileTest, RoundTripKeepsEqualsSignsAndSplitsNewNames)
{
    const QString file = tree.file("d/a=b.txt");
    const QString bare = tree.file("d/plain");
    const QString folder = tree.folder("d/x=y");
    addRow(file, "c=d.tar.gz");
    addRow(bare, "=e");
    addRow(folder, "v1.2=3", true);
    ASSERT_TRUE(ProgrammeFile(session).exportTo(tree.path("p.txt")));
    session.settings().writeString("CMD_N120240101000000000", "CMDid", "N101");
    session.settings().writeString("CommandList", "CommandListCount", "1");

    ui.answer("programme.import.replaceList", {Button::Cancel, Button::Ok});
    EXPECT_EQ(ProgrammeFile(session).importFrom(tree.path("p.txt")).outcome, ProgrammeImport::Outcome::Cancelled);
    EXPECT_EQ(ui.asked.last().text, "导入更名方案文件或快照文件时将清空更名文件列表和所有更名操作，确认吗？");
    EXPECT_TRUE(session.settings().hasSection("CommandList"));

    session.renameList()[0].newName = "changed";
    const ProgrammeImport result = ProgrammeFile(session).importFrom(tree.path("p.txt"));
    EXPECT_EQ(result.outcome, ProgrammeImport::Outcome::Imported);
    EXPECT_EQ(result.loaded, 3);
    EXPECT_EQ(rows(), (QStringList{file + " -> c=d.tar|.gz", bare + " -> =e|", folder + " -> v1.2=3|"}));
    EXPECT_TRUE(session.pendingImport());
    EXPECT_FALSE(session.settings().hasSection("CommandList"));
    EXPECT_FALSE(session.settings().hasSection("CMD_N120240101000000000"));
    EXPECT_EQ(ui.notices.last().text, "导入成功！请进行应用更名操作，其它操作可能会改变新文件名和新扩展名两列内容。");
}

TEST(ProgrammeText, ImportedTextsLoseControlAndForbiddenCharacters)
{
    const struct {
        const char16_t *raw, *path, *name;
    } cases[] = {
        {u"a<61>b", u"a=b", u"a=b"},
        {u"a\tb\x01\x1F c", u"ab c", u"ab c"},
        {u"*a?b<c>d|e", u"abcde", u"abcde"},
        {u"<<61>>", u"=", u"="},
        {u"a<13>b<10>c<99>", u"a\rb\nc99", u"abc99"},  // line breaks only ever come from escapes
        {u"C:\\x:y", u"C:\\x:y", u"C:\\x:y"},  // colon and backslash are ordinary on Linux
        {u"/t/../../etc/b.txt", u"/t/../../etc/b.txt", u"t....etcb.txt"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(cleanProgrammePath(QStringView(c.raw)), QStringView(c.path)) << QStringView(c.raw).toString().toStdString();
        EXPECT_EQ(cleanProgrammeName(QStringView(c.raw)), QStringView(c.name)) << QStringView(c.raw).toString().toStdString();
    }
}

TEST(ProgrammeText, OneReaderKeepsKeysAsWrittenAndSectionsApart)
{
    const RenameFileText file = readRenameFile(
        u"\uFEFF/z=0\r\n[rename programme]\r\n;c\r\n  /a =x=y \r\n/b\r\n=c\n[O]\n/q=q\r[Rename Programme]\r/a=2"
        u"\n[Rename Config]\nFoundExist=1\n[Rename Journal]\n+1\n /j = k ");
    auto joined = [](const std::vector<ProgrammeLine>& lines) {
        QStringList out;
        for (const ProgrammeLine& line : lines)
            out << line.oldPath + '>' + line.newName;
        return out.join('|');
    };
    EXPECT_EQ(joined(file.programme), "/a >x=y |/a>2");  // a blank ending a name is part of it
    EXPECT_EQ(joined(file.config), "FoundExist>1");
    EXPECT_EQ(file.journal, (std::vector<QString>{"+1", " /j = k "}));
    EXPECT_TRUE(file.hasJournal);
}

TEST_F(ProgrammeFileTest, ImportedLinesNeverMoveAnObjectAndTakeOneRowEach)
{
    const QString file = tree.file("t/a.txt");
    const QString folder = tree.folder("t/dir");
    tree.file("t/dir/inner.txt");
    // Options that would otherwise expand the folder, drop it, or filter the file away.
    session.settings().writeBool(keys::kOperation, keys::kFlagFindDeepin, true);
    session.settings().writeBool(keys::kOperation, keys::kFlagAddFolder, false);
    session.keepText = "*.jpg";
    const std::string p = tree.path("t").toStdString();
    const ProgrammeImport result = import("[Rename Programme]\n" + p + "/a.txt=../../etc/b.txt\n" + p + "/dir/=new\n"
                                          + p + "/a.txt=second\n" + p + "//a.\x01txt=third\n");
    EXPECT_EQ(result.repeated, 2);
    EXPECT_EQ(rows(), (QStringList{file + " -> ....etcb|.txt", folder + " -> new|"}));
    EXPECT_EQ(session.renameList().at(0).path, tree.path("t") + "/");
}

TEST_F(ProgrammeFileTest, MissingObjectsAreReportedAndNothingChanges)
{
    const QString kept = tree.file("k.txt");
    const std::string missing = tree.path("gone").toStdString();
    const ProgrammeImport none = import("[Rename Programme]\r\n" + missing + "1.txt=a\r\n" + missing + "2=b\r\nrel/x=c\r\n");
    EXPECT_EQ(none.outcome, ProgrammeImport::Outcome::NothingFound);
    EXPECT_EQ(none.missingCount, 3);
    EXPECT_TRUE(session.renameList().isEmpty());
    EXPECT_EQ(ui.notices.last().text, "导入完成！未能载入内容，请检查后重试。");
    EXPECT_TRUE(logTexts().contains("对象不存在：" + QString::fromStdString(missing) + "1.txt"));
    EXPECT_TRUE(logTexts().contains("对象不存在：rel/x"));
    EXPECT_FALSE(session.pendingImport());

    const ProgrammeImport some = import("[Rename Programme]\r\n" + missing + "=a\r\n" + kept.toStdString() + "=b\r\n");
    EXPECT_EQ(some.outcome, ProgrammeImport::Outcome::Imported);
    EXPECT_EQ(some.missing, QStringList{"对象不存在：" + QString::fromStdString(missing)});
    EXPECT_EQ(rows(), QStringList{kept + " -> b|"});
}

TEST_F(ProgrammeFileTest, BadFilesAreRefusedWithTheSystemsMessage)
{
    const QString present = tree.file("p.txt");
    const std::string line = present.toStdString() + "=new.txt\r\n";
    const QString notUtf8 = "导入失败！更名方案文件或快照文件的编码格式错误，正确的为 UTF-8 编码格式。";
    const QString format = "导入失败！可能是更名方案文件或快照文件的格式错误，或是更名方案文件或快照文件内所列的对象不存在。";
    std::string noise(100 << 20, '\0');
    std::mt19937 random(7);
    for (char& c : noise)
        c = char(random());
    std::string asciiNoise(100 << 20, 'a');
    for (size_t i = 0; i < asciiNoise.size(); i += 97)
        asciiNoise[i] = (i / 97) % 3 ? '=' : '\n';
    const struct {
        const char* what;
        std::string content;
        ProgrammeImport::Outcome outcome;
        QString notice;
    } cases[] = {
        {"GBK", "[Rename Programme]\r\n/\xB2\xE2\xCA\xD4=a\r\n", ProgrammeImport::Outcome::NotUtf8, notUtf8},
        {"UTF-16", std::string("\xFF\xFE[\0R\0", 6), ProgrammeImport::Outcome::NotUtf8, notUtf8},
        {"BOM, then bad bytes", "\xEF\xBB\xBF[Rename Programme]\r\n" + line + "\xC3", ProgrammeImport::Outcome::NotUtf8, notUtf8},
        {"empty", "", ProgrammeImport::Outcome::NoEntries, format},
        {"no section", line, ProgrammeImport::Outcome::NoEntries, format},
        {"truncated header", "[Rename Progr", ProgrammeImport::Outcome::NoEntries, format},
        {"truncated line", "[Rename Programme]\r\n/tmp/abc", ProgrammeImport::Outcome::NoEntries, format},
        {"random noise", noise, ProgrammeImport::Outcome::NotUtf8, notUtf8},
        {"text noise", asciiNoise, ProgrammeImport::Outcome::NoEntries, format},
        {"NUL bytes", std::string("[Rename Programme]\r\n\0", 21) + line.substr(0, 3) + std::string(1, '\0') + line.substr(3),
         ProgrammeImport::Outcome::Imported, "导入成功！请进行应用更名操作，其它操作可能会改变新文件名和新扩展名两列内容。"},
    };
    for (const auto& c : cases) {
        session.renameList().clear();
        EXPECT_EQ(import(c.content).outcome, c.outcome) << c.what;
        EXPECT_EQ(ui.notices.last().text, c.notice) << c.what;
        EXPECT_EQ(session.renameList().size(), c.outcome == ProgrammeImport::Outcome::Imported ? 1 : 0) << c.what;
    }
    EXPECT_EQ(ui.notices.first().icon, Icon::Warning);
    session.renameList().clear();
    EXPECT_EQ(ProgrammeFile(session).importFrom(tree.path("absent.txt")).outcome, ProgrammeImport::Outcome::Unreadable);
}

}  // namespace
}  // namespace qp
