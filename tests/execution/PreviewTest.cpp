#include <gtest/gtest.h>

#include <random>

#include "core/PathText.h"
#include "core/Session.h"
#include "core/SettingsKeys.h"
#include "execution/Preview.h"
#include "../support/TempTree.h"

namespace qp {
namespace {

const QString kFolder = QStringLiteral("/qp-preview-test-absent/dir/");

class PreviewTest : public ::testing::Test {
protected:
    PreviewTest() : session(SettingsStore(), ui, QStringLiteral("[20240305140709123]")) {}

    // Adds a row "current" proposing "proposed" (both with extension).
    void add(const QString& current, const QString& proposed, bool checked = true, const QString& folder = kFolder)
    {
        FileEntry row;
        const NameParts now = splitFileName(current, false);
        const NameParts next = splitFileName(proposed, false);
        row.name = now.name, row.ext = now.ext, row.newName = next.name, row.newExt = next.ext;
        row.path = folder;
        row.selected = checked;
        session.renameList().append(row);
    }
    QStringList newNames() const
    {
        QStringList names;
        for (const FileEntry& row : session.renameList().rows())
            names.append(row.newFileName());
        return names;
    }
    QStringList log() const
    {
        QStringList lines;
        for (const MessageLine& line : session.messages().lines())
            lines.append(line.text.mid(11) + (line.colour == MessageColour::Red ? "|red" : ""));
        return lines;
    }
    void set(const QString& key, const QString& value) { session.settings().writeString(keys::kOperation, key, value); }

    ScriptedInteraction ui;
    Session session;
};

TEST(CleanNewName, WindowsRulesCorrectEveryKindOfProblemOwnRulesOnlyWhatTheDiskRefuses)
{
    constexpr bool W = true, L = false;
    struct Case { bool windows; QString name, ext; bool folder; QString empty, wantName, wantExt; };
    const Case cases[] = {
        {W, "...", "", false, "(null)", "(null)", ""},                  // only dots
        {W, " . .", ". ", false, "(null)", "(null)", ""},               // dots and spaces
        {W, "", "", false, "", "(null)", ""},                           // empty setting
        {W, "", "", false, "未命名", "未命名", ""},
        {W, "photo", ".", false, "", "photo", ""},                      // lone dot dropped
        {W, "say \"hi\"", ".txt", false, "", "say \"hi\"", ".txt"},     // double quote kept
        {W, "a*b/c:d<e>f?g\\h|i", ".t|xt", false, "", "abcdefghi", ".txt"},
        {W, QString("a\tb") + QChar(1) + QChar(31), ".txt", false, "", "ab", ".txt"},
        {W, "name. . ", "", false, "", "name", ""},                     // the loop, several rounds
        {W, "  lead ", ".txt ", false, "", "lead ", ".txt"},           // trimmed, split again
        {W, "v1.2", "", false, "", "v1", ".2"},                         // file: last dot
        {W, "a", ".tar.gz", false, "", "a.tar", ".gz"},
        {W, "x", "txt", false, "", "xtxt", ""},
        {W, "my.folder..", "", true, "", "my.folder", ""},              // folder keeps its dots
        {W, "v1.2", "", true, "", "v1.2", ""},
        {L, "a*b:c?\"<>|\\ ", ".txt", false, "", "a*b:c?\"<>|\\ ", ".txt"},  // legal here
        {L, "name. ", ".", false, "", "name. ", "."},                   // nothing trimmed
        {L, QString("a\nb") + QChar(1), ".txt", false, "", QString("a\nb") + QChar(1), ".txt"},
        {L, "sub/dir", ".t/xt", false, "", "subdir", ".txt"},           // never out of the folder
        {L, QString("a") + QChar(0) + "b.c", ".d", false, "", "ab.c", ".d"},
        {L, "..", "", false, "", "(null)", ""},
        {L, ".", "", true, "", "(null)", ""},
        {L, "", "", false, "x", "x", ""},
    };
    for (const Case& c : cases) {
        const NameParts got = cleanNewName(c.name, c.ext, c.folder, c.empty, c.windows);
        EXPECT_EQ(got.name, c.wantName) << c.name.toStdString() << c.ext.toStdString();
        EXPECT_EQ(got.ext, c.wantExt) << c.name.toStdString() << c.ext.toStdString();
    }
}

TEST_F(PreviewTest, NumbersDuplicatesWithTheSixSettings)
{
    struct Case { QStringList settings; QStringList want; };
    const Case cases[] = {
        {{}, {"photo.jpg", "photo(2).jpg", "photo(3).jpg"}},
        {{"FileNameSameCharKind=1", "FileNameSameStart=0"}, {"photo.jpg", "photo(a).jpg", "photo(b).jpg"}},
        {{"FileNameSameCharKind=2", "FileNameSameStart=26", "FileNameSameIncrease=677"},
         {"photo.jpg", "photo(BA).jpg", "photo(BBB).jpg"}},  // base 26, most significant first
        {{"FileNameSameDigitCapacity=3"}, {"photo.jpg", "photo(002).jpg", "photo(003).jpg"}},
        {{"FileNameSameStart=5", "FileNameSameIncrease=10"}, {"photo.jpg", "photo(5).jpg", "photo(15).jpg"}},
        {{"FileNameSameLeftStr=_", "FileNameSameRightStr=]"}, {"photo.jpg", "photo_2].jpg", "photo_3].jpg"}},
    };
    for (const Case& c : cases) {
        session.settings().eraseSection(keys::kOperation);
        for (const QString& kv : c.settings)
            set(kv.section('=', 0, 0), kv.section('=', 1));
        session.renameList().clear();
        for (int i = 0; i < 3; ++i)
            add(QString("x%1.jpg").arg(i), "photo.jpg");
        const PreviewResult r = Preview(session).run(false);
        EXPECT_EQ(newNames(), c.want) << c.settings.join(' ').toStdString();
        EXPECT_FALSE(r.foundExist);
    }
}

TEST_F(PreviewTest, CandidateTakenByAnEarlierTargetIsSkipped)
{
    add("a.jpg", "photo(2).jpg");
    add("b.jpg", "photo.jpg");
    add("c.jpg", "photo.jpg");
    Preview(session).run(false);
    EXPECT_EQ(newNames(), QStringList({"photo(2).jpg", "photo.jpg", "photo(3).jpg"}));
}

TEST_F(PreviewTest, ConflictsAndCyclesSetFlagsStatesAndMessages)
{
    struct Case { QStringList moves; bool exist, exchange; std::vector<int> states; };
    const Case cases[] = {
        {{"A.txt>B.txt", "B.txt>A.txt"}, true, true, {2, 2}},                       // swap
        {{"A.txt>B.txt", "B.txt>C.txt"}, true, false, {2, 1}},                      // chain, C free
        {{"A.txt>B.txt", "B.txt>C.txt", "C.txt>A.txt"}, true, true, {2, 2, 2}},     // 3-cycle
        {{"a.txt>A.TXT"}, false, false, {1}},                                       // case only
    };
    for (const Case& c : cases) {
        session.renameList().clear();
        session.messages().clear();
        for (const QString& m : c.moves)
            add(m.section('>', 0, 0), m.section('>', 1));
        const PreviewResult r = Preview(session).run(false);
        EXPECT_EQ(r.foundExist, c.exist) << c.moves.join(' ').toStdString();
        EXPECT_EQ(r.foundExistAndExchange, c.exchange) << c.moves.join(' ').toStdString();
        std::vector<int> states;
        QStringList want;
        for (qsizetype i = 0; i < session.renameList().size(); ++i) {
            const FileEntry& row = session.renameList().at(i);
            states.push_back(row.state);
            EXPECT_EQ(row.newFileName(), c.moves[i].section('>', 1));  // never numbered
            if (row.state == StateFailed)
                want.append("文件已存在，新文件名存在更名冲突：" + nativeSeparators(kFolder + row.newFileName()) + "|red");
        }
        EXPECT_EQ(states, c.states);
        EXPECT_EQ(r.conflictRows.size(), qsizetype(want.size()));
        want.append("预览全部对象执行完毕。");
        if (c.exist)
            want.append(QString("即将更名的新文件名中有 %1 个现实中已经存在，更名出现冲突，").arg(r.conflictRows.size())
                        + (c.exchange ? "且已经发现更名死循环问题。|red" : "但未发现更名死循环问题。|red"));
        EXPECT_EQ(log(), want);
        if (!r.conflictRows.empty()) {
            EXPECT_EQ(session.messages().lines().first().row, r.conflictRows.front());
        }
    }
}

TEST_F(PreviewTest, TargetsKeptByOtherObjectsAreNumbered)
{
    set(keys::kWindowsSafeNames, "1");  // the trailing dot goes, as on Windows
    test::TempTree tree;
    tree.file("taken.txt");
    tree.folder("Taken dir");
    const QString dir = tree.path() + '/';
    add("x.txt", "taken.txt", true, dir);             // outside file on disk
    add("y.txt", "Taken dir.", true, dir);            // outside folder on disk, trailing dot
    add("keep.txt", "other.txt", false, dir);         // unchecked: keeps its name
    add("z.txt", "keep.txt", true, dir);
    add("same.txt", "same.txt", true, dir);           // checked but unchanged
    add("w.txt", "same.txt", true, dir);
    const PreviewResult r = Preview(session).run(false);
    EXPECT_EQ(newNames(), QStringList({"taken(2).txt", "Taken dir(2)", "other.txt", "keep(2).txt", "same.txt",
                                       "same(2).txt"}));
    EXPECT_FALSE(r.foundExist);

    // Many targets in one folder are checked against one listing of it instead of the disk
    // one by one; the answers must be the same, for the first targets and the later ones.
    session.renameList().clear();
    for (int i = 0; i < 200; ++i)
        add(QStringLiteral("in%1.txt").arg(i), QStringLiteral("taken%1.txt").arg(i % 3 == 0 ? 0 : i), true, dir);
    tree.file("taken0.txt");
    tree.file("taken152.txt");
    Preview(session).run(false);
    const QStringList many = newNames();
    EXPECT_EQ(many[0], QStringLiteral("taken0(2).txt"));
    EXPECT_EQ(many[3], QStringLiteral("taken0(3).txt"));
    EXPECT_EQ(many[150], QStringLiteral("taken0(52).txt"));
    EXPECT_EQ(many[151], QStringLiteral("taken151.txt"));
    EXPECT_EQ(many[152], QStringLiteral("taken152(2).txt"));
    if (!platform::pathKeysIgnoreCase()) {
        // Where case matters, A.TXT and a.txt are two objects: taking the name of a row that
        // stays is a duplicate, not a change of case.
        session.renameList().clear();
        add("A.TXT", "A.TXT");
        add("a.txt", "A.TXT");
        Preview(session).run(false);
        EXPECT_EQ(newNames(), QStringList({"A.TXT", "A(2).TXT"}));
    }
}

TEST_F(PreviewTest, GuardsSimpleRenameAndWorkLists)
{
    session.setOnFileRenamePage(false);
    add("a.txt", "b.txt");
    EXPECT_FALSE(Preview(session).run(false).ran);
    ASSERT_EQ(ui.notices.size(), 1);
    EXPECT_EQ(ui.notices[0].text, "请返回【1.文件名处理】版块使用此项功能。");
    session.setOnFileRenamePage(true);

    FileEntry folder;
    folder.name = folder.newName = "sub";
    folder.path = kFolder;
    folder.isFolder = true;
    session.renameList().append(folder);
    add("c.txt", "c*/.txt");
    const PreviewResult r = Preview(session).run(true);
    EXPECT_TRUE(r.ran && r.simple);
    EXPECT_EQ(r.rowPaths, std::vector<QString>({kFolder + "a.txt", kFolder + "sub", kFolder + "c.txt"}));
    EXPECT_EQ(r.fileWork, std::vector<qsizetype>({0, 2}));
    EXPECT_EQ(r.folderWork, std::vector<qsizetype>({1}));
    EXPECT_EQ(r.rowByKey.value(pathKey(kFolder + "c.txt")), 2);
    EXPECT_EQ(newNames()[2], "c*.txt");  // simple rename checks nothing but separators
    EXPECT_EQ(log(), QStringList({"预览全部对象执行完毕。"}));

    session.renameList().clear();
    EXPECT_FALSE(Preview(session).run(false).ran);
}

TEST_F(PreviewTest, StopLeavesLaterRowsAlone)
{
    for (int i = 0; i < 1500; ++i)
        add(QString("f%1.txt").arg(i), "same.txt");
    ui.requestStopAfter(1);  // the second poll, at row 1024
    const PreviewResult r = Preview(session).run(false);
    EXPECT_TRUE(r.stopped);
    EXPECT_EQ(newNames()[1023], "same(1024).txt");
    EXPECT_EQ(newNames()[1024], "same.txt");
    EXPECT_EQ(log(), QStringList({"预览全部对象已被强制终止。", "预览全部对象执行完毕。"}));
}

TEST_F(PreviewTest, RerunsTheCommandsWhenTheSettingsAskForIt)
{
    session.pipeline().registry().registerFamily({"T101"}, [](const CommandSection&) {
        struct Append : CompiledCommand {
            void apply(const CommandContext&, QString& name, QString&) override { name += "X"; }
        };
        return std::make_unique<Append>();
    });
    session.settings().writeString("CMD_T1011", "CMDid", "T101");
    session.settings().writeInt("CommandList", "CommandListCount", 1);
    session.settings().writeString("CommandList", "1", "CMD_T1011");
    struct Case { bool autoPreview, before, current, rerun; };
    for (const Case c : {Case{true, false, false, false}, Case{false, false, false, true},
                         Case{true, true, false, true}, Case{false, false, true, false}}) {
        session.renameList().clear();
        add("a.txt", "a.txt");
        session.settings().writeBool(keys::kOperation, "AutoPreview", c.autoPreview);
        session.settings().writeBool(keys::kOperation, "AutoPreviewBefore", c.before);
        session.setNewNamesCurrent(c.current);
        Preview(session).run(false);
        EXPECT_EQ(newNames()[0], c.rerun ? "aX.txt" : "a.txt") << c.autoPreview << c.before << c.current;
        EXPECT_TRUE(session.newNamesCurrent());  // what apply renames is what was previewed
    }
    // A change of the rows ends that, until the next preview.
    add("b.txt", "b.txt");
    EXPECT_FALSE(session.newNamesCurrent());
}

TEST_F(PreviewTest, DeviceNamesAreNumberedUnderTheWindowsRules)
{
    struct Case { bool windows; QString proposed, want; };
    const Case cases[] = {
        {true, "con.txt", "con(2).txt"}, {true, "Lpt3.tar.gz", "Lpt3(2).tar.gz"}, {true, "AUX", "AUX(2)"},
        {true, "nul .txt", "nul (2).txt"}, {true, "console.txt", "console.txt"}, {true, "COM10.txt", "COM10.txt"},
        {false, "con.txt", "con.txt"},
    };
    for (const Case& c : cases) {
        set(keys::kWindowsSafeNames, c.windows ? "1" : "0");
        session.renameList().clear();
        add("x.txt", c.proposed);
        Preview(session).run(false);
        EXPECT_EQ(newNames()[0], c.want) << c.proposed.toStdString();
    }
}

// The cycle search exactly as the step-by-step walk states it: positions in a scratch list
// of rows, moves of the entry holding a target up to the visited position, a step budget.
bool walkFindsCycle(const std::vector<QString>& current, const std::vector<QString>& target)
{
    const int n = int(current.size());
    std::vector<int> scratch(static_cast<size_t>(n));
    for (int i = 0; i < n; ++i)
        scratch[size_t(i)] = i;
    int steps = 0;
    for (int i = n - 1; i >= 0;) {
        if (++steps > 2 * n)
            return true;
        const int row = scratch[size_t(i)];
        if (current[size_t(row)] != target[size_t(row)]) {
            int j = -1;
            for (int p = 0; p < n && j < 0; ++p)
                if (pathKey(current[size_t(scratch[size_t(p)])]) == pathKey(target[size_t(row)]))
                    j = p;
            if (j >= 0 && j < i) {
                const int moved = scratch[size_t(j)];
                scratch.erase(scratch.begin() + j);
                scratch.insert(scratch.begin() + i, moved);
                continue;
            }
        }
        --i;
    }
    return false;
}

TEST(RenameCycle, GraphCheckAgreesWithTheWalkOnRandomMoves)
{
    std::mt19937 random(20240305);
    for (int round = 0; round < 3000; ++round) {
        const int n = 1 + int(random() % 9);
        std::vector<qsizetype> successor(static_cast<size_t>(n));
        std::vector<QString> current, target;
        for (int i = 0; i < n; ++i)
            current.push_back(QString("p%1").arg(i));
        for (int i = 0; i < n; ++i) {
            const int pick = int(random() % (n + 2));  // another row, itself, or a free name
            successor[size_t(i)] = pick < n ? pick : -1;
            target.push_back(pick < n ? current[size_t(pick)] : (pick == n ? current[size_t(i)] : QString("free")));
        }
        ASSERT_EQ(hasRenameCycle(successor), walkFindsCycle(current, target)) << "round " << round;
    }
}

TEST_F(PreviewTest, PreviewFlagsAgreeWithTheWalkOnRandomLists)
{
    std::mt19937 random(7);
    int cycles = 0;
    for (int round = 0; round < 400; ++round) {
        session.renameList().clear();
        const int n = 3 + int(random() % 12);
        // Some rows are named as a numbered duplicate would be, so numbering can lead
        // into a row that is itself renamed.
        std::vector<QString> current;
        for (int i = 0; i < n; ++i) {
            const QString numbered = QString("new%1(2).txt").arg(random() % 2);
            const bool used = std::find(current.begin(), current.end(), numbered) != current.end();
            current.push_back(random() % 4 == 0 && !used ? numbered : QString("f%1.txt").arg(i));
        }
        std::vector<int> order(static_cast<size_t>(n));
        for (int i = 0; i < n; ++i)
            order[size_t(i)] = i;
        std::shuffle(order.begin(), order.end(), random);
        std::vector<QString> proposed(static_cast<size_t>(n));
        for (int at = 0; at < n;) {  // swaps, 3-cycles, chains into a free name, plain renames
            const int kind = int(random() % 4);
            const int len = std::min(n - at, kind == 0 ? 2 : kind == 1 ? 3 : kind == 2 ? 4 : 1);
            for (int k = 0; k < len; ++k) {
                const int row = order[size_t(at + k)];
                const bool last = k + 1 == len;
                proposed[size_t(row)] = kind < 2 ? current[size_t(order[size_t(at + (k + 1) % len)])]
                                                 : last ? QString("new%1.txt").arg(random() % 2)
                                                        : current[size_t(order[size_t(at + k + 1)])];
            }
            at += len;
        }
        for (int i = 0; i < n; ++i)
            add(current[size_t(i)], proposed[size_t(i)], random() % 8 != 0);
        const PreviewResult r = Preview(session).run(false);
        std::vector<QString> target;
        for (const FileEntry& row : session.renameList().rows())
            target.push_back(row.path + row.newName + row.newExt);
        ASSERT_EQ(r.foundExistAndExchange, r.foundExist && walkFindsCycle(r.rowPaths, target)) << "round " << round;
        cycles += r.foundExistAndExchange;
    }
    EXPECT_GT(cycles, 50);  // the random lists do exercise both answers
    EXPECT_LT(cycles, 350);
}

}  // namespace
}  // namespace qp
