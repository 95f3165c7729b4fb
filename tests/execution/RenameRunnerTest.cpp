#include <QRandomGenerator>

#include "ExecutionFixture.h"

namespace qp::test {
namespace {

class RenameRunnerTest : public ExecutionFixture {};

QMap<QString, QString> contentsOf(const std::vector<std::string>& files)
{
    QMap<QString, QString> out;
    for (const std::string& f : files)
        out.insert(QString::fromStdString(f), QString::fromStdString(f));
    return out;
}

// Each case: files under w/, renames (relative path -> new file name), the expected
// listing (path -> original content), the snapshot's flags.
struct RenameCase {
    const char* label;
    std::vector<std::string> files;
    std::vector<std::pair<std::string, QString>> renames;
    QMap<QString, QString> after;
    bool foundExist;
    bool exchange;
};

TEST(RenameRunnerCases, RenamesOnDiskAndUndoRestores)
{
    const std::vector<RenameCase> cases{
        {"swap", {"a.txt", "b.txt"}, {{"a.txt", "b.txt"}, {"b.txt", "a.txt"}},
         {{"a.txt", "b.txt"}, {"b.txt", "a.txt"}}, true, true},
        {"chain", {"a.txt", "b.txt"}, {{"a.txt", "b.txt"}, {"b.txt", "c.txt"}},
         {{"b.txt", "a.txt"}, {"c.txt", "b.txt"}}, true, false},
        {"chain listed backwards", {"a.txt", "b.txt", "c.txt"},
         {{"c.txt", "d.txt"}, {"b.txt", "c.txt"}, {"a.txt", "b.txt"}},
         {{"b.txt", "a.txt"}, {"c.txt", "b.txt"}, {"d.txt", "c.txt"}}, true, false},
        {"three-way cycle", {"a", "b", "c"}, {{"a", "b"}, {"b", "c"}, {"c", "a"}},
         {{"b", "a"}, {"c", "b"}, {"a", "c"}}, true, true},
        {"case only", {"photo.jpg"}, {{"photo.jpg", "PHOTO.JPG"}}, {{"PHOTO.JPG", "photo.jpg"}}, false, false},
        {"equals signs", {"x=1.txt"}, {{"x=1.txt", "y=2=.txt"}}, {{"y=2=.txt", "x=1.txt"}}, false, false},
        {"a slash never leaves the folder", {"a.txt"}, {{"a.txt", "sub/b.txt"}}, {{"subb.txt", "a.txt"}}, false, false},
        {"a blank at the end stays", {"a.txt"}, {{"a.txt", "b "}}, {{"b ", "a.txt"}}, false, false},
    };
    for (const RenameCase& c : cases) {
        SCOPED_TRACE(c.label);
        World w;
        w.makeFiles(c.files);
        for (const auto& [from, to] : c.renames)
            w.addRow("w/" + from, to);
        const ApplyResult result = w.apply();
        ASSERT_EQ(result.end, ApplyResult::End::Done);
        EXPECT_EQ(result.succeeded, qsizetype(c.renames.size()));
        EXPECT_EQ(result.failed, 0);
        EXPECT_EQ(result.usedTemporaries, c.exchange);
        EXPECT_EQ(w.listing(), c.after);
        for (const FileEntry& row : w.session.renameList().rows())
            EXPECT_EQ(row.state, StateRenamed) << row.fileName().toStdString();

        const auto bytes = w.disk.readFile(w.snapshot(1));
        ASSERT_TRUE(bytes);
        const auto data = parseSnapshot(QString::fromUtf8(*bytes));
        ASSERT_TRUE(data);
        EXPECT_EQ(data->foundExist, c.foundExist);
        EXPECT_EQ(data->foundExistAndExchange, c.exchange);
        EXPECT_FALSE(data->unfinished);

        const UndoResult undone = Undo(w.session, w.disk).undoLast();
        EXPECT_EQ(undone.end, UndoResult::End::Done);
        EXPECT_EQ(undone.succeeded, qsizetype(c.renames.size()));
        EXPECT_EQ(w.listing(), contentsOf(c.files));
        EXPECT_FALSE(w.disk.exists(w.snapshot(1)));
        EXPECT_EQ(w.session.applyCounter(), 0);
        // The rows show the names on disk again.
        for (size_t i = 0; i < c.renames.size(); ++i)
            EXPECT_EQ(w.session.renameList().at(qsizetype(i)).fullPath(), w.tree.path("w/" + c.renames[i].first));
    }
}

// A command that gives another name on every run, as a random one would.
void registerCountingCommand(Session& session, int& runs)
{
    session.pipeline().registry().registerFamily({"T101"}, [&runs](const CommandSection&) {
        struct Count : CompiledCommand {
            explicit Count(int n) : n(n) {}
            void apply(const CommandContext&, QString& name, QString&) override { name += QString::number(n); }
            int n;
        };
        return std::make_unique<Count>(++runs);
    });
    session.settings().writeString("CMD_T1011", "CMDid", "T101");
    session.settings().writeInt("CommandList", "CommandListCount", 1);
    session.settings().writeString("CommandList", "1", "CMD_T1011");
}

TEST_F(RenameRunnerTest, ApplyRenamesWhatThePreviewShowed)
{
    int runs = 0;
    registerCountingCommand(session, runs);
    session.settings().writeBool(keys::kOperation, keys::kAutoPreview, false);
    session.settings().writeBool(keys::kOperation, keys::kAfterApplyClearCmd, false);
    makeFiles({"a.txt"});
    addRow("w/a.txt", "a.txt");
    Preview(session).run(false);
    const QString shown = session.renameList().at(0).newFileName();
    EXPECT_EQ(shown, "a1.txt");
    session.setPendingImport(true);
    ASSERT_EQ(apply().succeeded, 1);
    EXPECT_EQ(listing(), (QMap<QString, QString>{{shown, "a.txt"}}));
    EXPECT_FALSE(session.pendingImport());  // apply has dealt with what was imported

    // A change of the rows after the preview: the names are worked out again.
    session.setPendingImport(true);
    makeFiles({"b.txt"});
    addRow("w/b.txt", "b.txt");
    ASSERT_EQ(apply().succeeded, 2);
    EXPECT_EQ(listing(), (QMap<QString, QString>{{"a13.txt", "a.txt"}, {"b3.txt", "b.txt"}}));
    Undo(session, disk).undoLast();
    EXPECT_FALSE(session.pendingImport());
}

TEST_F(RenameRunnerTest, FolderRenamedTogetherWithFilesInside)
{
    makeFiles({"d/a.txt", "d/sub/b.txt"});
    addRow("w/d", "e");
    addRow("w/d/sub", "s2");
    addRow("w/d/a.txt", "a2.txt");
    addRow("w/d/sub/b.txt", "b2.txt");
    const ApplyResult result = apply();
    ASSERT_EQ(result.end, ApplyResult::End::Done);
    EXPECT_EQ(result.succeeded, 4);
    EXPECT_EQ(listing(), (QMap<QString, QString>{{"e", "<dir>"},
                                                 {"e/s2", "<dir>"},
                                                 {"e/a2.txt", "d/a.txt"},
                                                 {"e/s2/b2.txt", "d/sub/b.txt"}}));
    const RenameList& list = session.renameList();
    EXPECT_EQ(list.at(0).fullPath(), tree.path("w/e"));
    EXPECT_EQ(list.at(1).fullPath(), tree.path("w/e/s2"));
    EXPECT_EQ(list.at(2).fullPath(), tree.path("w/e/a2.txt"));
    EXPECT_EQ(list.at(3).fullPath(), tree.path("w/e/s2/b2.txt"));
    EXPECT_TRUE(list.isKnown(pathKey(tree.path("w/e/s2/b2.txt"))));
    EXPECT_FALSE(list.isKnown(pathKey(tree.path("w/d/sub/b.txt"))));

    EXPECT_EQ(Undo(session, disk).undoLast().succeeded, 4);
    EXPECT_EQ(listing(), (QMap<QString, QString>{{"d", "<dir>"},
                                                 {"d/sub", "<dir>"},
                                                 {"d/a.txt", "d/a.txt"},
                                                 {"d/sub/b.txt", "d/sub/b.txt"}}));
    EXPECT_EQ(list.at(3).fullPath(), tree.path("w/d/sub/b.txt"));
}

TEST_F(RenameRunnerTest, SnapshotLayoutLineByLine)
{
    makeFiles({"a=b.txt", "keep.txt"});
    addRow("w/a=b.txt", "c=d.txt");
    addRow("w/keep.txt", "keep.txt");
    ASSERT_EQ(apply().end, ApplyResult::End::Done);
    const QByteArray bytes = *disk.readFile(snapshot(1));
    ASSERT_TRUE(bytes.startsWith("\xEF\xBB\xBF"));
    const QStringList lines = QString::fromUtf8(bytes.mid(3)).split(QStringLiteral("\r\n"));
    ASSERT_GE(lines.size(), 21);
    EXPECT_EQ(lines[0], ";" + QString(59, '='));
    EXPECT_EQ(lines[1], QStringLiteral(";更名方案文件 或 快照文件（用于撤销更名）"));
    EXPECT_TRUE(lines[2].startsWith(';'));
    EXPECT_TRUE(lines[3].startsWith(';'));
    EXPECT_EQ(lines[4], ";");
    EXPECT_EQ(lines[9], QStringLiteral(";3. 所有文件名中的“=”必须改为“<61>”；"));
    EXPECT_EQ(lines[11], lines[0]);
    EXPECT_EQ(lines.mid(12, 9), (QStringList{"", "[Rename Config]", "FoundExist=0", "FoundExistAndExchange=0", "",
                                             "[Rename Programme]", tree.path("w/c<61>d.txt") + "=a<61>b.txt",
                                             tree.path("w/keep.txt") + "=keep.txt", ""}));
    EXPECT_EQ(lines.size(), 21);
    EXPECT_FALSE(bytes.contains("\n\n"));  // CR LF everywhere
}

TEST_F(RenameRunnerTest, CountsAndSummaryLines)
{
    makeFiles({"a.txt", "same.txt", "unticked.txt"});
    addRow("w/a.txt", "b.txt");
    addRow("w/same.txt", "same.txt");
    addRow("w/unticked.txt", "other.txt", false);
    const ApplyResult result = apply();
    EXPECT_EQ(result.succeeded, 1);
    EXPECT_EQ(result.skipped, 2);
    EXPECT_EQ(result.summary, QStringLiteral("更名文件列表对象3个，操作成功1个，失败0个，跳过2个。"));
    EXPECT_EQ(logged(QStringLiteral("对象批量更名完成。")), 1);
    EXPECT_EQ(logged(QStringLiteral("对象批量更名完成！更名文件列表对象3个，操作成功1个，失败0个，跳过2个")), 1);
    EXPECT_EQ(result.snapshotPath, snapshot(1));
    EXPECT_TRUE(result.showCompletionDialog);
    EXPECT_TRUE(result.systemDriveMet);  // "/" is the system drive on Linux
    EXPECT_TRUE(disk.exists(tree.path("w/unticked.txt")));
}

TEST_F(RenameRunnerTest, ATargetThatAppearedMeanwhileFailsOnlyThatRename)
{
    makeFiles({"a.txt", "b.txt"});
    addRow("w/a.txt", "x.txt");
    addRow("w/b.txt", "y.txt");
    // Preview saw "x.txt" free; it appears before the rename.
    RenameRunner runner(session, disk, [this](bool simple) {
        PreviewResult r = Preview(session).run(simple);
        tree.file("w/x.txt", "intruder");
        return r;
    });
    const ApplyResult result = runner.apply();
    EXPECT_EQ(result.succeeded, 1);
    EXPECT_EQ(result.failed, 1);
    EXPECT_EQ(listing().value("x.txt"), "intruder");
    EXPECT_EQ(listing().value("a.txt"), "a.txt");
    EXPECT_EQ(session.renameList().at(0).state, StateFailed);
    EXPECT_EQ(session.renameList().at(0).newFileName(), "a.txt");
    EXPECT_EQ(logged(QStringLiteral("文件更名失败：") + tree.path("w/a.txt")), 1);
}

TEST_F(RenameRunnerTest, ReadOnlyFileKeepsItsAttributeOrIsSkippedBySettings)
{
    makeFiles({"ro.txt", "ro2.txt"});
    ASSERT_TRUE(platform::setAttributes(tree.path("w/ro.txt").toStdU16String(), platform::AttrReadOnly));
    ASSERT_TRUE(platform::setAttributes(tree.path("w/ro2.txt").toStdU16String(), platform::AttrReadOnly));
    addRow("w/ro.txt", "rw.txt");
    addRow("w/ro2.txt", "rw2.txt");
    // First question: rename anyway, and do not ask again; the second object is not asked.
    ui.answer("apply.readOnly", {Button::Yes});
    ui.answer("apply.readOnly.dontAskAgain", {Button::Yes});
    EXPECT_EQ(apply().succeeded, 2);
    EXPECT_EQ(ui.asked.size(), 3);  // confirm, read-only, its check box
    const auto info = platform::stat(tree.path("w/rw.txt").toStdU16String());
    ASSERT_TRUE(info);
    EXPECT_TRUE(info->attributes & platform::AttrReadOnly);
    EXPECT_TRUE(session.settings().readBool(keys::kOperation, "FileNameAttribRNotAsk", false));

    // Stored choice: skip, without asking.
    session.settings().writeInt(keys::kOperation, "FileNameAttribRRename", 0);
    session.renameList()[0].newName = "again";
    const ApplyResult skipped = apply();
    EXPECT_EQ(skipped.skipped, 2);
    EXPECT_EQ(logged(QStringLiteral("只读属性，跳过：") + tree.path("w/rw.txt")), 1);
    EXPECT_EQ(session.renameList().at(0).newFileName(), "rw.txt");
}

TEST_F(RenameRunnerTest, LengthLimitIsInclusiveAndOverLongNamesFollowTheChoice)
{
    const QString exact = QString(251, 'n') + ".txt";    // 255 bytes: allowed
    const QString over = QString(252, 'o') + ".txt";     // 256 bytes
    makeFiles({"a.txt", "b.txt", "c.txt"});
    addRow("w/a.txt", exact);
    addRow("w/b.txt", over);
    session.settings().writeBool(keys::kOperation, "FileNameTooLongNotAsk", true);
    session.settings().writeInt(keys::kOperation, "FileNameTooLongCut", 0);
    ApplyResult result = apply();
    EXPECT_EQ(result.succeeded, 1);
    EXPECT_EQ(result.skipped, 1);
    EXPECT_TRUE(disk.exists(tree.path("w/" + exact.toStdString())));
    EXPECT_EQ(logged(QStringLiteral("超出系统规定长度，跳过：") + tree.path("w/b.txt")), 1);

    // Asked now: Yes takes the preselected way (from the end).
    session.settings().writeBool(keys::kOperation, "FileNameTooLongNotAsk", false);
    session.settings().writeInt(keys::kOperation, "FileNameTooLongCut", 1);
    session.renameList().clear();
    addRow("w/c.txt", over);
    ui.answer("apply.tooLong", {Button::Yes});
    result = apply();
    EXPECT_EQ(result.succeeded, 1);
    EXPECT_TRUE(disk.exists(tree.path("w/" + (QString(251, 'o') + ".txt").toStdString())));
}

TEST_F(RenameRunnerTest, QuestionsBeforeStartingStopWithoutTouchingTheDisk)
{
    makeFiles({"a.txt"});
    addRow("w/a.txt", "b.txt");
    ui.answer("apply.confirm", {Button::Cancel});
    EXPECT_EQ(apply().end, ApplyResult::End::Declined);
    EXPECT_TRUE(disk.exists(tree.path("w/a.txt")));
    EXPECT_FALSE(disk.exists(snapshot(1)));

    // The extension warning is asked once even with two extension commands; the mode
    // question from "RenameSelectCount" rows on.
    ui.answer("apply.confirm", {Button::Ok});
    for (const char* code : {"E101", "E301"}) {
        const qint64 n = session.settings().readInt("CommandList", "CommandListCount", 0) + 1;
        const QString section = QStringLiteral("CMD_%1%2").arg(code).arg(n);
        session.settings().writeString(section, "CMDid", code);
        session.settings().writeInt("CommandList", "CommandListCount", n);
        session.settings().writeString("CommandList", QString::number(n), section);
    }
    session.settings().writeInt(keys::kOperation, "RenameSelectCount", 1);
    ui.answer("apply.extensionWarning", {Button::Ok});
    ui.answer("apply.mode", {Button::Cancel});
    EXPECT_EQ(apply().end, ApplyResult::End::Declined);
    QStringList ids;
    for (const Question& q : ui.asked)
        ids.append(q.id);
    EXPECT_EQ(ids, (QStringList{"apply.confirm", "apply.confirm", "apply.extensionWarning", "apply.mode"}));

    ui.answer("apply.mode", {Button::Yes});  // simple rename
    EXPECT_EQ(apply().succeeded, 1);
    EXPECT_TRUE(disk.exists(tree.path("w/b.txt")));
}

TEST_F(RenameRunnerTest, ConflictWarningCanCancelOrBeSilencedForGood)
{
    makeFiles({"a", "b"});
    addRow("w/a", "b");
    addRow("w/b", "a");
    ui.answer("apply.conflictWarning", {Button::Cancel, Button::Yes});
    ui.answer("apply.conflictWarning.dontShowAgain", {Button::Yes});
    EXPECT_EQ(apply().end, ApplyResult::End::Declined);
    EXPECT_EQ(listing(), contentsOf({"a", "b"}));
    EXPECT_EQ(apply().succeeded, 2);
    EXPECT_TRUE(session.settings().readBool(keys::kInterface, "IgnoreUseSmartRenameDlgWarning", false));
    const qsizetype asked = ui.asked.size();
    session.renameList()[0].newName = "a";
    session.renameList()[1].newName = "b";
    EXPECT_EQ(apply().succeeded, 2);  // swapped back, not asked again (only the confirmation)
    EXPECT_EQ(ui.asked.size(), asked + 1);
}

TEST_F(RenameRunnerTest, AfterApplyTheCommandListIsClearedOrRunAgain)
{
    makeFiles({"a.txt"});
    addRow("w/a.txt", "b.txt");
    session.settings().writeString("CMD_N1011", "CMDid", "N101");
    session.settings().writeInt("CommandList", "CommandListCount", 1);
    session.settings().writeString("CommandList", "1", "CMD_N1011");
    session.commandList().rebuildFromStore();
    ASSERT_EQ(session.commandList().size(), 1);
    EXPECT_EQ(apply().succeeded, 1);
    EXPECT_EQ(session.commandList().size(), 0);
    EXPECT_EQ(session.renameList().at(0).newFileName(), "b.txt");

    // Run again instead, the commands leave each row the state the apply gave it.
    session.settings().writeBool(keys::kOperation, "AfterApplyClearCmd", false);
    session.commandList().rebuildFromStore();
    makeFiles({"x.txt"});
    session.renameList()[0].newName = "c";
    addRow("w/x.txt", "y.txt");
    FaultyOperations faulty(disk);
    faulty.failRename = 2;  // b.txt, the second one walked
    const ApplyResult result = apply(faulty);
    EXPECT_EQ(result.succeeded, 1);
    EXPECT_EQ(result.failed, 1);
    EXPECT_EQ(session.renameList().at(0).state, StateFailed);
    EXPECT_EQ(session.renameList().at(1).state, StateRenamed);
    EXPECT_EQ(session.renameList().at(1).newFileName(), "y.txt");
}

// ---------------------------------------------------------------------------------------

struct ShortenCase {
    const char* label;
    LengthRule rule;
    QString folder, name, ext;
    Shortening how;
    std::optional<QString> expected;  // name + ext
};

TEST(ShortenName, EachChoiceCutsWhereItSays)
{
    const LengthRule win = windowsLengthRule();
    const LengthRule tiny{true, 8, 0};
    const QString folder250 = "C:/" + QString(246, 'f') + "/";  // 250 characters
    const std::vector<ShortenCase> cases{
        {"windows from end", win, folder250, "abcdefghij", ".txt", Shortening::FromEnd, QString("abcd.txt")},
        {"windows from start", win, folder250, "abcdefghij", ".txt", Shortening::FromStart, QString("ghij.txt")},
        {"windows system way", win, folder250, "abcdefghij", ".txt", Shortening::SystemWay, QString("abcdefgh")},
        {"fits already", win, "C:/", "a", ".txt", Shortening::FromEnd, QString("a.txt")},
        {"skip", win, folder250, "abcdefghij", ".txt", Shortening::Skip, std::nullopt},
        {"extension alone too long", win, folder250, "ab", ".abcdefghij", Shortening::FromEnd, std::nullopt},
        {"bytes: a CJK character is 3", tiny, "/", QStringLiteral("汉字名"), ".t", Shortening::FromEnd,
         QStringLiteral("汉字.t")},
        {"never half a pair", tiny, "/", QStringLiteral("ab\U0001F600\U0001F600"), "", Shortening::FromEnd,
         QStringLiteral("ab\U0001F600")},
        {"system way splits again", tiny, "/", "abc", ".defgh", Shortening::SystemWay, QString("abc.defg")},
    };
    for (const ShortenCase& c : cases) {
        SCOPED_TRACE(c.label);
        const auto got = shortenName(c.folder, c.name, c.ext, false, c.how, c.rule);
        ASSERT_EQ(got.has_value(), c.expected.has_value());
        if (got) {
            EXPECT_EQ(got->name + got->ext, *c.expected);
            EXPECT_FALSE(isTooLong(c.folder, got->name + got->ext, c.rule));
        }
    }
}

TEST(ShortenName, LimitsAreInclusive)
{
    const LengthRule win = windowsLengthRule();
    const QString folder = "C:/" + QString(200, 'f') + "/";  // 204
    EXPECT_FALSE(isTooLong(folder, QString(54, 'x'), win));   // 258
    EXPECT_TRUE(isTooLong(folder, QString(55, 'x'), win));    // 259
    const LengthRule lin = linuxLengthRule();
    EXPECT_FALSE(isTooLong("/", QString(255, 'x'), lin));
    EXPECT_TRUE(isTooLong("/", QString(256, 'x'), lin));
    EXPECT_TRUE(isTooLong("/", QString(86, QChar(0x6C49)), lin));  // 258 bytes
    EXPECT_FALSE(isTooLong(QString(3839, QLatin1Char('d')) + "/", QString(255, QLatin1Char('x')), lin));  // 4096 - 1
    EXPECT_TRUE(isTooLong(QString(3840, QLatin1Char('d')) + "/", QString(255, QLatin1Char('x')), lin));
}

// The reorder as it is described, step by step (quadratic), to compare against.
std::vector<size_t> literalReorder(const std::vector<QString>& sources, const std::vector<QString>& targets,
                                   const std::vector<bool>& changed)
{
    std::vector<size_t> list(sources.size());
    for (size_t i = 0; i < list.size(); ++i)
        list[i] = i;
    for (size_t i = list.size(); i-- > 0;) {
        while (true) {
            const size_t e = list[i];
            if (!changed[e])
                break;
            size_t j = 0;
            while (j < i && sources[list[j]] != targets[e])
                ++j;
            if (j >= i)
                break;
            const size_t moved = list[j];
            list.erase(list.begin() + qsizetype(j));
            list.insert(list.begin() + qsizetype(i), moved);
        }
    }
    return list;
}

TEST(OrderByHolders, SameOrderAsTheStepByStepReorderOnRandomLists)
{
    QRandomGenerator random(20240305);
    for (int round = 0; round < 400; ++round) {
        const int n = 1 + int(random.bounded(30));
        // Targets form chains without cycles: entry i may point at a distinct later-rank
        // entry's source, or at a free name.
        const size_t count = static_cast<size_t>(n);
        std::vector<int> rank(count);
        for (int i = 0; i < n; ++i)
            rank[size_t(i)] = i;
        std::shuffle(rank.begin(), rank.end(), std::mt19937(round));
        std::vector<QString> sources(count), targets(count);
        std::vector<bool> changed(count);
        std::vector<bool> taken(count, false);
        for (int i = 0; i < n; ++i)
            sources[size_t(i)] = QStringLiteral("s%1").arg(i);
        for (int i = 0; i < n; ++i) {
            const int kind = int(random.bounded(4));
            changed[size_t(i)] = kind != 0;
            targets[size_t(i)] = kind == 0 ? sources[size_t(i)] : QStringLiteral("free%1").arg(i);
            if (kind >= 2) {
                // point at an entry of higher rank whose source nobody points at yet
                for (int t = 0; t < n; ++t) {
                    if (rank[size_t(t)] > rank[size_t(i)] && !taken[size_t(t)] && random.bounded(3) == 0) {
                        taken[size_t(t)] = true;
                        targets[size_t(i)] = sources[size_t(t)];
                        break;
                    }
                }
            }
        }
        ASSERT_EQ(orderByHolders(sources, targets, changed), literalReorder(sources, targets, changed))
            << "round " << round;
    }
}

}  // namespace
}  // namespace qp::test
