#include "execution/Undo.h"

#include <QCoreApplication>
#include <QHash>
#include <algorithm>

#include "core/CommandList.h"
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
    result = undoFile(snapshotPath(settingsFolderOf(m_session), m_session.runStamp(), m_session.applyCounter()));
    if (result.end == UndoResult::End::Done && !result.kept)
        m_session.forgetLastApply();
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
    const std::vector<SnapshotLine> lines = data->unfinished ? resolveJournal(*data, m_ops) : data->lines;
    const bool twoPass = data->unfinished || data->foundExistAndExchange;
    const bool reorder = !twoPass && data->foundExist;

    Journal journal(m_ops);
    MoveSet moves(m_ops, journal);
    std::vector<size_t> files, folders;
    std::vector<QString> targets;  // each item's name to give back
    std::vector<std::optional<platform::FileInfo>> infos;  // as read now (attributes)
    for (const SnapshotLine& line : lines) {
        const auto info = m_ops.stat(line.path);
        if (!info) {
            s.messages().add(tr("对象不存在：") + nativeSeparators(line.path));
            ++result.missing;
            continue;
        }
        const PathParts parts = splitPath(line.path);
        MoveItem item;
        item.folder = parts.folder;
        item.name = item.originalName = parts.fileName;
        item.isFolder = info->isFolder;
        (item.isFolder ? folders : files).push_back(moves.items.size());
        moves.items.push_back(std::move(item));
        targets.push_back(line.name);
        infos.push_back(info);
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
    const bool otherRows = qsizetype(std::count_if(rowOf.begin(), rowOf.end(), [](qsizetype r) { return r >= 0; }))
                           < list.size();
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
    auto carryOtherRows = [&](const QString& oldPath, const QString& newPath) {
        if (!otherRows)
            return;
        const QString prefix = pathKey(oldPath) + u'/';
        for (qsizetype r = 0; r < list.size(); ++r) {
            FileEntry& row = list[r];
            if (!pathKey(row.path).startsWith(prefix))
                continue;
            const QString oldFull = row.fullPath();
            row.path = newPath + row.path.mid(oldPath.size());
            list.updateKnownPath(oldFull, row.fullPath());
        }
    };

    // The snapshot becomes the journal of this undo.
    SnapshotData original = *data;
    original.lines = lines;
    original.unfinished = false;
    original.moves.clear();
    {
        QString error;
        if (!(data->unfinished ? journal.begin(snapshotFile, original, &error) : journal.beginOnFinished(snapshotFile)))
            return unusable();
    }

    std::stable_sort(folders.begin(), folders.end(), [&](size_t a, size_t b) {
        return moves.items[a].path().compare(moves.items[b].path(), Qt::CaseInsensitive) < 0;
    });
    ui.status(tr("正在准备撤销更名数据"));
    if (twoPass) {
        std::vector<size_t> created;
        if (!moves.toTemporaries(files, folders, platformLengthRule(), created, nullptr)) {
            if (moves.rollBack(created)) {
                QString ignored;
                journal.finish(original, &ignored);
            }
            ui.notify(Notice{QStringLiteral("undo.firstPassFailed"), kErrorTitle, tr("智能撤销更名失败！"), Icon::Error});
            result.end = UndoResult::End::FirstPassFailed;
            return result;
        }
    } else if (reorder) {
        for (std::vector<size_t>* work : {&files, &folders}) {
            std::vector<QString> sources, keys;
            std::vector<bool> changed;
            for (size_t i : *work) {
                const QString target = moves.items[i].folder + targets[i];
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

    ui.status(tr("正在撤销批量更名"));
    const size_t total = files.size() + folders.size();
    size_t done = 0;
    int lastPercent = -1;
    for (const std::vector<size_t>* work : {&files, &folders}) {
        for (size_t k = work->size(); k-- > 0;) {
            const int percent = int(done * 100 / total);
            if (percent != lastPercent) {
                lastPercent = percent;
                ui.progress(tr("正在撤销批量更名"), percent);
            }
            if ((done & 63) == 0)
                ui.stopRequested();
            ++done;
            const size_t i = (*work)[k];
            MoveItem& item = moves.items[i];
            const QString source = item.path();
            if (!item.inTemporary && item.name == targets[i]) {
                ++result.skipped;
                continue;
            }
            const MoveSet::Outcome outcome = moves.rename(i, targets[i], item.inTemporary ? nullptr : &infos[i]);
            if (outcome == MoveSet::Outcome::Renamed) {
                item.inTemporary = false;
                ++result.succeeded;
                refreshRow(i);
                if (item.isFolder)
                    carryOtherRows(source, item.path());
            } else if (outcome == MoveSet::Outcome::Failed) {
                s.messages().add((item.isFolder ? tr("文件夹恢复更名失败：") : tr("文件恢复更名失败："))
                                     + nativeSeparators(source),
                                 MessageColour::Red);
                ++result.failed;
            }
        }
    }

    // An object that could not leave its temporary name keeps a line that leads it back:
    // the file then records where everything is now and stays on the stack.
    const bool left = std::any_of(moves.items.begin(), moves.items.end(), [](const MoveItem& item) {
        return item.inTemporary;
    });
    if (left) {
        SnapshotData rest = original;
        rest.lines.clear();
        for (size_t i = 0; i < moves.items.size(); ++i)
            rest.lines.push_back(SnapshotLine{moves.items[i].path(), targets[i]});
        QString ignored;
        journal.finish(rest, &ignored);
        result.kept = true;
    } else {
        journal.discard();
    }
    afterRenameCommands(s);
    s.messages().add(tr("撤销上一次的批量更名完成。"));
    s.messages().add(tr("撤销上一次的批量更名完成！更名文件列表对象%1个，操作成功%2个，失败%3个，跳过%4个")
                         .arg(list.size())
                         .arg(result.succeeded)
                         .arg(result.failed)
                         .arg(result.skipped));
    result.end = UndoResult::End::Done;
    return result;
}

}  // namespace qp
