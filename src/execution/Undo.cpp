#include "execution/Undo.h"

#include <QCoreApplication>
#include <QHash>
#include <algorithm>

#include "core/CommandList.h"
#include "core/FolderListing.h"
#include "core/PathText.h"
#include "core/Session.h"
#include "core/SettingsKeys.h"
#include "execution/FileOperations.h"
#include "execution/RenameRunner.h"
#include "execution/Snapshot.h"

namespace qp {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("Undo", text); }

const QString kErrorTitle = QStringLiteral("错误");

}  // namespace

UndoResult Undo::undoLast()
{
    UndoResult result;
    if (!requireFileRenamePage(m_session)) {
        result.end = UndoResult::End::WrongPage;
        return result;
    }
    if (m_session.applyCounter() <= 0) {
        result.end = UndoResult::End::NothingToUndo;
        return result;
    }
    result = undoFile(snapshotPath(settingsFolderOf(m_session), m_session.runStamp(), m_session.newestSnapshot()));
    if (result.end == UndoResult::End::Done && !result.kept)
        m_session.popSnapshot();
    return result;
}

UndoResult Undo::undoFile(const QString& snapshotFile)
{
    UndoResult result;
    if (!requireFileRenamePage(m_session)) {
        result.end = UndoResult::End::WrongPage;
        return result;
    }
    if (m_session.settings().readBool(keys::kOperation, keys::kApplyConfirm, true)
        && m_session.interaction().ask(Question{QStringLiteral("undo.confirm"), tr("撤销更名确认"),
                                                tr("终止当前所有操作，准备撤销上一次的批量更名，确认吗？"),
                                                Button::Ok | Button::Cancel, Button::Ok, Icon::Question})
               != Button::Ok)
        return result;
    return run(snapshotFile);
}

namespace {

// The objects of a snapshot's lines that exist now, as items to move back, with their
// kinds read from one listing per folder where the rename itself keeps the attributes.
struct UndoItems {
    std::vector<size_t> files, folders;
    std::vector<QString> targets;   // each item's name to give back
    std::vector<size_t> lineOf;     // each item's line
};

// Rows that are not in the snapshot but lie below a folder it moved back get the folder's
// new path (the deepest moved folder above each row decides).
void carryRowsBelowFolders(RenameList& list, const MoveSet& moves, const std::vector<qsizetype>& rowOf,
                           const std::vector<SnapshotLine>& lines, const std::vector<size_t>& lineOf)
{
    QHash<QString, QString> movedFolders;  // key of the path before -> the path now
    for (size_t i = 0; i < moves.items.size(); ++i) {
        const MoveItem& item = moves.items[i];
        if (item.isFolder && item.path() != lines[lineOf[i]].path)
            movedFolders.insert(pathKey(lines[lineOf[i]].path), item.path());
    }
    if (movedFolders.isEmpty())
        return;
    std::vector<bool> inSnapshot(size_t(list.size()), false);
    for (qsizetype r : rowOf)
        if (r >= 0)
            inSnapshot[size_t(r)] = true;
    for (qsizetype r = 0; r < list.size(); ++r) {
        if (inSnapshot[size_t(r)])
            continue;
        FileEntry& row = list[r];
        QString folder = row.path;
        while (folder.size() > 1 && folder.endsWith(u'/')) {
            folder.chop(1);
            const auto moved = movedFolders.constFind(pathKey(folder));
            if (moved != movedFolders.cend()) {
                const QString oldFull = row.fullPath();
                row.path = *moved + row.path.mid(folder.size());
                list.updateKnownPath(oldFull, row.fullPath());
                break;
            }
            folder.truncate(folder.lastIndexOf(u'/') + 1);
        }
    }
}

}  // namespace

UndoResult Undo::run(const QString& snapshotFile)
{
    UndoResult result;
    Session& s = m_session;
    Interaction& ui = s.interaction();
    auto unusable = [&] {
        ui.notify(Notice{QStringLiteral("undo.snapshotUnusable"), kErrorTitle, tr("撤销上一次的批量更名出现错误！"),
                         Icon::Error});
        result.end = UndoResult::End::SnapshotUnusable;
        return result;
    };
    BusyScope busy(ui);
    ui.status(tr("读取撤销批量更名数据"));
    const auto data = readSnapshot(snapshotFile, m_ops);
    if (!data || data->lines.empty())
        return unusable();
    result.entries = qsizetype(data->lines.size());
    // A journal first says where everything is now; it is then undone through temporaries,
    // since a half-done batch may hold names in any order.
    SnapshotData original = *data;
    if (data->unfinished)
        original.lines = resolveJournal(*data, m_ops);
    original.unfinished = false;
    original.moves.clear();
    const std::vector<SnapshotLine>& lines = original.lines;
    const bool twoPass = data->unfinished || data->foundExistAndExchange;
    const bool reorder = !twoPass && data->foundExist;

    MoveSet moves(m_ops);
    moves.items.reserve(lines.size());
    UndoItems found;
    found.targets.reserve(lines.size());
    found.lineOf.reserve(lines.size());
    FolderListing listing;
    PathParts parts;
    for (size_t l = 0; l < lines.size(); ++l) {
        const SnapshotLine& line = lines[l];
        // Lines of one folder share one folder text.
        PathParts next = splitPath(line.path);
        parts.fileName = std::move(next.fileName);
        if (next.folder != parts.folder)
            parts.folder = std::move(next.folder);
        MoveItem item;
        if (m_ops.renameIsExact()) {
            const std::optional<bool> folder = listing.isFolder(parts.folder, parts.fileName);
            if (!folder) {
                s.messages().add(tr("对象不存在：") + nativeSeparators(line.path));
                ++result.missing;
                continue;
            }
            item.isFolder = *folder;
        } else {
            const auto info = m_ops.stat(line.path);
            if (!info) {
                s.messages().add(tr("对象不存在：") + nativeSeparators(line.path));
                ++result.missing;
                continue;
            }
            item.isFolder = info->isFolder;
            item.attributes = info->attributes;
        }
        item.folder = parts.folder;
        item.name = item.originalName = parts.fileName;
        (item.isFolder ? found.folders : found.files).push_back(moves.items.size());
        moves.items.push_back(std::move(item));
        found.targets.push_back(line.name);
        found.lineOf.push_back(l);
    }

    // The rows that show these objects, refreshed as they move.
    RenameList& list = s.renameList();
    std::vector<qsizetype> rowOf(moves.items.size(), -1);
    {
        QHash<QString, qsizetype> rowByKey;
        rowByKey.reserve(list.size());
        for (qsizetype r = 0; r < list.size(); ++r)
            rowByKey.insert(pathKey(list.at(r).fullPath()), r);
        for (size_t i = 0; i < moves.items.size(); ++i)
            rowOf[i] = rowByKey.value(pathKey(moves.items[i].path()), -1);
    }
    auto refreshRow = [&](size_t i) {
        const qsizetype r = rowOf[i];
        if (r < 0)
            return;
        FileEntry& row = list[r];
        const QString oldFull = row.fullPath();
        const NameParts parts = splitFileName(moves.items[i].name, row.isFolder);
        row.path = moves.items[i].folder;
        row.name = parts.name;
        row.ext = parts.ext;
        list.updateKnownPath(oldFull, row.fullPath());
    };
    moves.onFolderMoved = [&](size_t i, const QString&) { refreshRow(i); };
    std::stable_sort(found.folders.begin(), found.folders.end(), [&](size_t a, size_t b) {
        return moves.items[a].path().compare(moves.items[b].path(), Qt::CaseInsensitive) < 0;
    });
    ui.status(tr("正在准备撤销更名数据"));
    std::vector<MoveStep> steps;
    steps.reserve(moves.items.size() * (twoPass ? 2 : 1));
    if (twoPass) {
        if (!moves.planTemporaries(found.files, found.folders, platformLengthRule(), steps)) {
            ui.notify(Notice{QStringLiteral("undo.firstPassFailed"), kErrorTitle, tr("智能撤销更名失败！"), Icon::Error});
            result.end = UndoResult::End::FirstPassFailed;
            return result;
        }
    } else if (reorder) {
        for (std::vector<size_t>* work : {&found.files, &found.folders}) {
            std::vector<QString> sources, keys;
            std::vector<bool> changed;
            for (size_t i : *work) {
                const QString target = moves.items[i].folder + found.targets[i];
                sources.push_back(pathKey(moves.items[i].path()));
                keys.push_back(pathKey(target));
                changed.push_back(target != moves.items[i].path());
            }
            const std::vector<size_t> order = orderByHolders(sources, keys, changed);
            std::vector<size_t> reordered;
            for (size_t k : order)
                reordered.push_back((*work)[k]);
            *work = std::move(reordered);
        }
    }
    const size_t firstPass = steps.size();
    for (const std::vector<size_t>* work : {&found.files, &found.folders}) {
        for (size_t k = work->size(); k-- > 0;) {
            const size_t i = (*work)[k];
            if (!twoPass && moves.items[i].name == found.targets[i])
                ++result.skipped;
            else
                steps.push_back(MoveStep{i, found.targets[i]});
        }
    }

    // The snapshot becomes the journal of this undo.
    Journal journal(m_ops);
    {
        const qsizetype temporaries = qsizetype(firstPass);
        bool begun = false;
        if (data->unfinished) {
            SnapshotData start = original;
            start.unfinished = true;
            const auto produce = [&](QByteArray& out, const std::function<void()>& spill) {
                out += snapshotHead(start);
                appendPlanHeading(out);
                moves.appendPlanLines(out, steps, spill);
            };
            QString error;
            begun = journal.begin(snapshotFile, produce, qsizetype(steps.size()), temporaries, &error);
        } else {
            begun = journal.beginOnFinished(snapshotFile, moves.planLines(steps), temporaries);
        }
        if (!begun)
            return unusable();
    }

    if (firstPass > 0) {
        std::vector<size_t> created;
        const size_t made = runSteps(moves, journal, steps, 0, firstPass,
                                     [&](size_t k, MoveSet::Outcome outcome, const platform::RenameResult&) {
                                         if (outcome != MoveSet::Outcome::Renamed)
                                             return false;
                                         MoveItem& item = moves.items[steps[k].item];
                                         item.inTemporary = true;
                                         created.push_back(steps[k].item);
                                         return true;
                                     });
        if (made == firstPass && created.size() == firstPass) {
            journal.flush();
        } else {
            journal.giveUpAt(qsizetype(made));
            if (moves.rollBack(created, journal)) {
                QString ignored;
                journal.finish(original, &ignored);
            }
            ui.notify(Notice{QStringLiteral("undo.firstPassFailed"), kErrorTitle, tr("智能撤销更名失败！"), Icon::Error});
            result.end = UndoResult::End::FirstPassFailed;
            return result;
        }
    }

    ui.status(tr("正在撤销批量更名"));
    const size_t total = std::max<size_t>(steps.size() - firstPass, 1);
    int lastPercent = -1;
    runSteps(moves, journal, steps, firstPass, steps.size(),
             [&](size_t k, MoveSet::Outcome outcome, const platform::RenameResult&) {
                 const size_t done = k - firstPass;
                 const int percent = int(done * 100 / total);
                 if (percent != lastPercent) {
                     lastPercent = percent;
                     ui.progress(tr("正在撤销批量更名"), percent);
                 }
                 if ((done & 63) == 0)
                     ui.stopRequested();
                 const size_t i = steps[k].item;
                 MoveItem& item = moves.items[i];
                 if (outcome == MoveSet::Outcome::Renamed) {
                     item.inTemporary = false;
                     ++result.succeeded;
                     refreshRow(i);
                 } else if (outcome == MoveSet::Outcome::Failed) {
                     s.messages().add((item.isFolder ? tr("文件夹恢复更名失败：") : tr("文件恢复更名失败："))
                                          + nativeSeparators(item.path()),
                                      MessageColour::Red);
                     ++result.failed;
                 }
                 return true;
             });

    // Lines not undone (their object missing, its rename failed, or left under a temporary
    // name) stay in the file with where their objects are now; the rest are done with.
    SnapshotData rest = original;
    rest.lines.clear();
    std::vector<bool> hasItem(lines.size(), false);
    for (size_t i = 0; i < moves.items.size(); ++i) {
        const MoveItem& item = moves.items[i];
        hasItem[found.lineOf[i]] = true;
        if (item.inTemporary || item.name != found.targets[i])
            rest.lines.push_back(SnapshotLine{item.path(), found.targets[i]});
    }
    for (size_t l = 0; l < lines.size(); ++l)
        if (!hasItem[l])
            rest.lines.push_back(lines[l]);
    carryRowsBelowFolders(list, moves, rowOf, lines, found.lineOf);
    if (rest.lines.empty()) {
        journal.discard();
    } else {
        QString ignored;
        journal.finish(rest, &ignored);
        result.kept = true;
        result.remaining = qsizetype(rest.lines.size());
    }
    s.setPendingImport(false);
    afterRenameCommands(s);
    s.messages().add(tr("撤销上一次的批量更名完成。"));
    s.messages().add(tr("撤销上一次的批量更名完成！更名文件列表对象%1个，操作成功%2个，失败%3个，跳过%4个")
                         .arg(list.size())
                         .arg(result.succeeded)
                         .arg(result.failed)
                         .arg(result.skipped));
    if (result.kept)
        s.messages().add(tr("快照中还有 %1 个对象未能恢复，快照文件已保留：%2")
                             .arg(result.remaining)
                             .arg(nativeSeparators(snapshotFile)),
                         MessageColour::Red);
    result.end = UndoResult::End::Done;
    return result;
}

}  // namespace qp
