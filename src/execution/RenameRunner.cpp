#include "execution/RenameRunner.h"

#include <QCoreApplication>
#include <QHash>
#include <algorithm>

#include "core/CommandList.h"
#include "core/PathText.h"
#include "core/Session.h"
#include "core/SettingsKeys.h"
#include "execution/FileOperations.h"
#include "execution/Snapshot.h"

namespace qp {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("RenameRunner", text); }

const QString kHintTitle = QStringLiteral("温馨提示");
const QString kErrorTitle = QStringLiteral("错误");

qsizetype measure(const QString& text, bool utf8Bytes)
{
    if (!utf8Bytes)
        return text.size();
    qsizetype bytes = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t c = text[i].unicode();
        if (c < 0x80)
            bytes += 1;
        else if (c < 0x800)
            bytes += 2;
        else if (QChar::isHighSurrogate(c) && i + 1 < text.size() && QChar::isLowSurrogate(text[i + 1].unicode())) {
            bytes += 4;
            ++i;
        } else
            bytes += 3;
    }
    return bytes;
}

// Removes one whole character from the end or the start of `text`.
void dropOne(QString& text, bool fromEnd)
{
    if (text.isEmpty())
        return;
    if (fromEnd) {
        const bool pair = text.size() >= 2 && text.back().isLowSurrogate() && text[text.size() - 2].isHighSurrogate();
        text.chop(pair ? 2 : 1);
    } else {
        const bool pair = text.size() >= 2 && text.front().isHighSurrogate() && text[1].isLowSurrogate();
        text.remove(0, pair ? 2 : 1);
    }
}

QString driveOf(const QString& path)
{
    if (path.size() >= 2 && path[1] == u':')
        return path.left(2).toUpper() + u'/';
    if (path.startsWith(QStringLiteral("//"))) {
        const qsizetype server = path.indexOf(u'/', 2);
        const qsizetype share = server < 0 ? -1 : path.indexOf(u'/', server + 1);
        return share < 0 ? path + u'/' : path.left(share + 1);
    }
    return QStringLiteral("/");
}

}  // namespace

// ---------------------------------------------------------------------------------------

LengthRule windowsLengthRule() { return LengthRule{false, 0, 258}; }
LengthRule linuxLengthRule() { return LengthRule{true, 255, 4095}; }
LengthRule platformLengthRule()
{
#ifdef _WIN32
    return windowsLengthRule();
#else
    return linuxLengthRule();
#endif
}

bool isTooLong(const QString& folder, const QString& fileName, const LengthRule& rule)
{
    if (rule.maxName > 0 && measure(fileName, rule.countUtf8Bytes) > rule.maxName)
        return true;
    return rule.maxPath > 0 && measure(folder, rule.countUtf8Bytes) + measure(fileName, rule.countUtf8Bytes) > rule.maxPath;
}

std::optional<NameParts> shortenName(const QString& folder, const QString& name, const QString& ext, bool isFolder,
                                     Shortening how, const LengthRule& rule)
{
    if (how == Shortening::Skip)
        return std::nullopt;
    if (how == Shortening::SystemWay) {
        QString whole = name + ext;
        while (!whole.isEmpty() && isTooLong(folder, whole, rule))
            dropOne(whole, true);
        if (whole.isEmpty())
            return std::nullopt;
        return splitFileName(whole, isFolder);
    }
    QString kept = name;
    while (!kept.isEmpty() && isTooLong(folder, kept + ext, rule))
        dropOne(kept, how == Shortening::FromEnd);
    if (kept.isEmpty())
        return std::nullopt;
    return NameParts{kept, ext};
}

std::vector<size_t> orderByHolders(const std::vector<QString>& sourceKeys, const std::vector<QString>& targetKeys,
                                   const std::vector<bool>& changed)
{
    const size_t n = sourceKeys.size();
    QHash<QString, size_t> holder;
    holder.reserve(qsizetype(n));
    for (size_t i = 0; i < n; ++i)
        holder.insert(sourceKeys[i], i);
    std::vector<bool> placed(n, false);
    std::vector<size_t> order(n);
    std::vector<size_t> chain;
    size_t fill = n;
    size_t top = n;
    while (fill > 0) {
        do
            --top;
        while (placed[top]);
        // The entry at the end of what is left, then the holder of its target, the holder
        // of that one's target, … : each is moved to the end in turn and so ends up after
        // the one before it.
        chain.clear();
        size_t current = top;
        placed[current] = true;
        chain.push_back(current);
        while (changed[current]) {
            const auto found = holder.constFind(targetKeys[current]);
            if (found == holder.cend() || placed[*found])
                break;
            current = *found;
            placed[current] = true;
            chain.push_back(current);
        }
        for (size_t k = chain.size(); k-- > 0;)
            order[--fill] = chain[k];
    }
    return order;
}

// ---------------------------------------------------------------------------------------

MoveSet::Outcome MoveSet::rename(size_t i, const QString& newName, const std::optional<platform::FileInfo>* known,
                                 platform::RenameResult* why)
{
    MoveItem& item = items[i];
    const QString from = item.path();
    const QString to = item.folder + newName;
    const auto before = known ? *known : m_ops.stat(from);
    if (!m_journal.move(from, to)) {
        if (why)
            *why = platform::RenameResult{platform::RenameStatus::Other, 0, "journal not writable"};
        return Outcome::Failed;
    }
    const platform::RenameResult result = m_ops.renameNoReplace(from, to);
    if (why)
        *why = result;
    if (!result.ok())
        return Outcome::Failed;
    if (!m_ops.renameIsExact()) {
        const auto after = m_ops.stat(to);
        if (!after)
            return Outcome::NotThere;
        if (before && (after->attributes & ~platform::AttrDirectory) != (before->attributes & ~platform::AttrDirectory))
            m_ops.setAttributes(to, before->attributes);
    }
    m_journal.confirm(item.isFolder);
    item.name = newName;
    if (item.isFolder)
        carryBelow(i, from);
    return Outcome::Renamed;
}

void MoveSet::carryBelow(size_t folderItem, const QString& oldPath)
{
    if (m_byFolder.empty() && !items.empty()) {
        m_byFolder.reserve(items.size());
        m_originalKey.reserve(items.size());
        for (size_t k = 0; k < items.size(); ++k) {
            m_byFolder.emplace_back(pathKey(items[k].folder), k);
            m_originalKey.push_back(pathKey(items[k].folder + items[k].originalName));
        }
        std::sort(m_byFolder.begin(), m_byFolder.end());
    }
    // Everything whose original folder lies below this folder's original path forms one
    // run of the sorted keys.
    const QString prefix = m_originalKey[folderItem] + u'/';
    const QString newPath = items[folderItem].path();
    auto it = std::lower_bound(m_byFolder.begin(), m_byFolder.end(), std::make_pair(prefix, size_t(0)));
    for (; it != m_byFolder.end() && it->first.startsWith(prefix); ++it) {
        MoveItem& below = items[it->second];
        if (below.folder.size() <= oldPath.size() || !below.folder.startsWith(oldPath + u'/'))
            continue;  // not below it any more
        const QString oldFolder = below.folder;
        below.folder = newPath + below.folder.mid(oldPath.size());
        if (onFolderMoved)
            onFolderMoved(it->second, oldFolder);
    }
}

bool MoveSet::toTemporaries(const std::vector<size_t>& files, const std::vector<size_t>& folders,
                            const LengthRule& rule, std::vector<size_t>& created,
                            const std::function<void(int)>& progress)
{
    auto one = [&](size_t i) {
        // A name already taken (a temporary left by an earlier, broken batch) gets the
        // prefix once more.
        QString temporary = kTemporaryPrefix + items[i].name;
        while (m_ops.exists(items[i].folder + temporary) && !isTooLong(items[i].folder, temporary, rule))
            temporary.prepend(kTemporaryPrefix);
        if (isTooLong(items[i].folder, temporary, rule))
            return false;
        const QString before = items[i].name;
        if (rename(i, temporary) != Outcome::Renamed)
            return false;
        items[i].inTemporary = true;
        items[i].nameBeforeTemporary = before;
        created.push_back(i);
        return true;
    };
    for (size_t k = 0; k < files.size(); ++k) {
        if (!one(files[k]))
            return false;
        if (progress)
            progress(int((k + 1) * 100 / files.size()));
    }
    for (size_t k = folders.size(); k-- > 0;) {
        if (!one(folders[k]))
            return false;
        if (progress)
            progress(int((folders.size() - k) * 100 / folders.size()));
    }
    return true;
}

bool MoveSet::rollBack(const std::vector<size_t>& created)
{
    bool all = true;
    for (size_t i : created) {
        if (!items[i].inTemporary)
            continue;
        if (rename(i, items[i].nameBeforeTemporary) == Outcome::Renamed)
            items[i].inTemporary = false;
        else
            all = false;
    }
    return all;
}

// ---------------------------------------------------------------------------------------

bool InteractionDialogs::ticked(const QString& id, const QString& text)
{
    return m_session.interaction().ask(Question{id, kHintTitle, text, Button::Yes | Button::No, Button::No,
                                                Icon::Question}) == Button::Yes;
}

ApplyMode InteractionDialogs::chooseMode(qsizetype rows)
{
    const QString text =
        tr("更名列表中共有 %1 个对象。简单更名不过滤非法字符、不处理空文件名、不为同一文件夹中的重名编号、"
           "不删除末尾的空格和点、不调整新文件名是其它对象旧文件名时的更名顺序，也不处理更名死循环。\r\n\r\n"
           "是：选择简单更名继续；否：选择智能更名继续；取消：先不更名了，我再考虑一下。")
            .arg(rows);
    const Button answer = m_session.interaction().ask(Question{QStringLiteral("apply.mode"), tr("批量更名方式选择"), text,
                                                               Button::Yes | Button::No | Button::Cancel, Button::No,
                                                               Icon::Question});
    return answer == Button::Yes ? ApplyMode::Simple : answer == Button::No ? ApplyMode::Smart : ApplyMode::Stop;
}

ConflictAnswer InteractionDialogs::conflictWarning(const PreviewResult& preview)
{
    QString text = tr("即将更名的新文件名中有 %1 个现实中已经存在，更名出现冲突。").arg(preview.conflictRows.size());
    const Button answer = m_session.interaction().ask(Question{QStringLiteral("apply.conflictWarning"), tr("更名冲突警告"),
                                                               text, Button::Yes | Button::Cancel, Button::Yes,
                                                               Icon::Warning});
    ConflictAnswer result;
    result.proceed = answer == Button::Yes;
    if (result.proceed)
        result.dontShowAgain = ticked(QStringLiteral("apply.conflictWarning.dontShowAgain"),
                                      tr("不再提示本对话框并直接启用智能更名继续操作"));
    return result;
}

ChoiceAnswer InteractionDialogs::attributeQuestion(bool system, const QString& path, int preselected)
{
    const QString id = system ? QStringLiteral("apply.system") : QStringLiteral("apply.readOnly");
    const QString text = (system ? tr("以下对象为系统属性：") : tr("以下对象为只读属性：")) + QStringLiteral("\r\n")
                         + nativeSeparators(path);
    const Button answer = m_session.interaction().ask(
        Question{id, kHintTitle, text, Button::Yes | Button::No, preselected ? Button::Yes : Button::No, Icon::Question});
    ChoiceAnswer result;
    result.choice = answer == Button::Yes ? 1 : 0;
    result.dontAskAgain = ticked(id + QStringLiteral(".dontAskAgain"), tr("按以上设置进行更名操作而不再询问"));
    return result;
}

ChoiceAnswer InteractionDialogs::tooLongQuestion(const QString& path, const QString& proposed,
                                                 const QString& corrected, int preselected)
{
    const QString text = tr("以下文件名（含路径）的总长度大于系统规定：（系统规定含“:”“\\”字符最长为258字符）")
                         + QStringLiteral("\r\n") + nativeSeparators(path) + QStringLiteral("\r\n") + proposed
                         + QStringLiteral("\r\n") + corrected;
    const Button answer = m_session.interaction().ask(
        Question{QStringLiteral("apply.tooLong"), kHintTitle, text, Button::Yes | Button::No, Button::Yes, Icon::Warning});
    ChoiceAnswer result;
    result.choice = answer == Button::Yes ? (preselected ? preselected : int(Shortening::FromEnd)) : 0;
    result.dontAskAgain = ticked(QStringLiteral("apply.tooLong.dontAskAgain"), tr("按以上设置进行更名操作而不再询问"));
    return result;
}

// ---------------------------------------------------------------------------------------

QString settingsFolderOf(const Session& session)
{
    const QString file = session.settings().fileName();
    if (file.isEmpty())
        return {};
    return splitPath(internalSeparators(file)).folder;
}

void afterRenameCommands(Session& session)
{
    if (session.settings().readBool(keys::kOperation, keys::kAfterApplyClearCmd, true)) {
        session.commandList().clearAll();
        RenameList& list = session.renameList();
        for (qsizetype r = 0; r < list.size(); ++r) {
            list[r].newName = list[r].name;
            list[r].newExt = list[r].ext;
        }
        session.resetPages();
    } else {
        session.runAllCommands();
    }
}

RenameRunner::RenameRunner(Session& session, FileOperations& ops, PreviewFn preview, ApplyDialogs* dialogs)
    : m_session(session)
    , m_ops(ops)
    , m_preview(std::move(preview))
    , m_dialogs(dialogs)
    , m_rule(platformLengthRule())
{
    if (!m_preview)
        m_preview = [&session](bool simpleRename) { return Preview(session).run(simpleRename); };
    if (!m_dialogs) {
        m_ownDialogs = std::make_unique<InteractionDialogs>(session);
        m_dialogs = m_ownDialogs.get();
    }
}

RenameRunner::~RenameRunner() = default;

namespace {

bool hasExtensionCommand(const SettingsStore& store)
{
    const ListedSections listed = CommandList::listedSections(store);
    for (const QString& section : listed.sections) {
        const QString code = store.readRaw(section, keys::kCommandId, {});
        if (code.size() >= 2 && code[0] == u'E' && code[1] >= u'1' && code[1] <= u'7')
            return true;
    }
    return false;
}

}  // namespace

ApplyResult RenameRunner::apply()
{
    ApplyResult result;
    Session& s = m_session;
    Interaction& ui = s.interaction();
    SettingsStore& settings = s.settings();
    const QString op = keys::kOperation;

    if (!requireFileRenamePage(s)) {
        result.end = ApplyResult::End::WrongPage;
        return result;
    }
    RenameList& list = s.renameList();
    if (list.isEmpty()) {
        result.end = ApplyResult::End::EmptyList;
        return result;
    }
    if (settings.readBool(op, keys::kApplyConfirm, true)
        && ui.ask(Question{QStringLiteral("apply.confirm"), tr("更名确认"), tr("开始进行批量更名，确认吗？"),
                           Button::Ok | Button::Cancel, Button::Ok, Icon::Question})
               != Button::Ok)
        return result;
    if (hasExtensionCommand(settings)
        && ui.ask(Question{QStringLiteral("apply.extensionWarning"), kHintTitle,
                           tr("命令列表中含有修改文件扩展名的命令。如果改变文件扩展名，可能会导致文件不可用。")
                               + QStringLiteral("\r\n\r\n") + tr("确实要更改吗？"),
                           Button::Ok | Button::Cancel, Button::Ok, Icon::Warning})
               != Button::Ok)
        return result;
    bool simple = false;
    if (list.size() >= settings.readInt(op, keys::kRenameSelectCount, 10000)) {
        const ApplyMode mode = m_dialogs->chooseMode(list.size());
        if (mode == ApplyMode::Stop)
            return result;
        simple = mode == ApplyMode::Simple;
    }

    const PreviewResult preview = m_preview(simple);
    if (!preview.ran) {
        result.end = ApplyResult::End::EmptyList;
        return result;
    }
    if (preview.stopped) {
        result.end = ApplyResult::End::PreviewStopped;
        return result;
    }

    BusyScope busy(ui);
    QString caption = tr("准备批量更名");
    int lastPercent = -1;
    auto progress = [&](int percent) {
        if (percent != lastPercent) {
            lastPercent = percent;
            ui.progress(caption, percent);
        }
    };
    auto setStatus = [&](const QString& text) {
        caption = text;
        lastPercent = -1;
        ui.status(text);
    };
    setStatus(tr("准备批量更名"));
    progress(0);

    if ((preview.foundExist || preview.foundExistAndExchange)
        && !settings.readBool(keys::kInterface, keys::kIgnoreSmartRenameWarning, false)) {
        const ConflictAnswer answer = m_dialogs->conflictWarning(preview);
        if (answer.proceed && answer.dontShowAgain)
            settings.writeBool(keys::kInterface, keys::kIgnoreSmartRenameWarning, true);
        if (!answer.proceed)
            return result;
    }

    // The journal is on disk before anything is renamed.
    const QString folder = settingsFolderOf(s);
    const int number = s.applyCounter() + 1;
    const QString snapshotFile = snapshotPath(folder, s.runStamp(), number);
    if (folder.isEmpty() || !m_ops.createFolders(snapshotFolder(folder, s.runStamp()))) {
        ui.notify(Notice{QStringLiteral("apply.snapshotFolderFailed"), kErrorTitle, tr("创建存放自动快照的文件夹失败！"),
                         Icon::Error});
        result.end = ApplyResult::End::SnapshotFailed;
        return result;
    }
    const qsizetype rowCount = list.size();
    Journal journal(m_ops);
    MoveSet moves(m_ops, journal);
    moves.items.resize(size_t(rowCount));
    SnapshotData snapshot;
    snapshot.foundExist = preview.foundExist;
    snapshot.foundExistAndExchange = preview.foundExistAndExchange;
    snapshot.lines.resize(size_t(rowCount));
    for (qsizetype r = 0; r < rowCount; ++r) {
        const FileEntry& row = list.at(r);
        MoveItem& item = moves.items[size_t(r)];
        item.folder = row.path;
        item.name = item.originalName = row.fileName();
        item.isFolder = row.isFolder;
        snapshot.lines[size_t(r)] = SnapshotLine{row.fullPath(), item.originalName};
    }
    {
        QString error;
        if (!journal.begin(snapshotFile, snapshot, &error)) {
            ui.notify(Notice{QStringLiteral("apply.snapshotFailed"), kErrorTitle,
                             tr("无法写入文件：%1（%2）").arg(nativeSeparators(snapshotFile), error), Icon::Error});
            result.end = ApplyResult::End::SnapshotFailed;
            return result;
        }
    }
    // Rows below a renamed folder follow it (also while it has a temporary name).
    moves.onFolderMoved = [&](size_t i, const QString& oldFolder) {
        FileEntry& row = list[qsizetype(i)];
        const QString oldFull = oldFolder + row.name + row.ext;
        row.path = moves.items[i].folder;
        list.updateKnownPath(oldFull, row.fullPath());
    };

    auto targetName = [&](qsizetype r) {
        const FileEntry& row = list.at(r);
        return row.selected ? row.newName + row.newExt : row.name + row.ext;
    };

    // Folders sorted ascending (case-insensitive) so that walking from the end handles a
    // folder before the folders that hold it.
    std::vector<size_t> files(preview.fileWork.begin(), preview.fileWork.end());
    std::vector<size_t> folders(preview.folderWork.begin(), preview.folderWork.end());
    std::stable_sort(folders.begin(), folders.end(), [&](size_t a, size_t b) {
        return preview.rowPaths[a].compare(preview.rowPaths[b], Qt::CaseInsensitive) < 0;
    });

    // First pass through temporaries when the renames form a cycle.
    const bool twoPass = preview.foundExistAndExchange;
    if (twoPass) {
        setStatus(tr("正在准备更名数据"));
        std::vector<size_t> created;
        if (!moves.toTemporaries(files, folders, m_rule, created, progress)) {
            if (moves.rollBack(created))
                journal.discard();
            else
                s.messages().add(tr("智能更名失败！用户可以自行手动更名两次来达到目的。"), MessageColour::Red);
            ui.notify(Notice{QStringLiteral("apply.firstPassFailed"), kErrorTitle,
                             tr("智能更名失败！用户可以自行手动更名两次来达到目的。"), Icon::Error});
            result.end = ApplyResult::End::FirstPassFailed;
            return result;
        }
        result.usedTemporaries = true;
    } else if (preview.foundExist) {
        setStatus(tr("正在智能处理"));
        for (std::vector<size_t>* work : {&files, &folders}) {
            std::vector<QString> sources, targets;
            std::vector<bool> changed;
            for (size_t r : *work) {
                const QString target = list.at(qsizetype(r)).path + targetName(qsizetype(r));
                sources.push_back(pathKey(preview.rowPaths[r]));
                targets.push_back(pathKey(target));
                changed.push_back(target != preview.rowPaths[r]);
            }
            const std::vector<size_t> order = orderByHolders(sources, targets, changed);
            std::vector<size_t> reordered;
            reordered.reserve(order.size());
            for (size_t k : order)
                reordered.push_back((*work)[k]);
            *work = std::move(reordered);
        }
    }

    // Main pass.
    setStatus(tr("正在批量更名"));
    const bool uacWatch = settings.readBool(keys::kGeneral, QStringLiteral("UAC"), true);
    const QString systemDrive = pathKey(fromPlatformPath(platform::systemDrive()));
    const qsizetype total = qsizetype(files.size() + folders.size());
    qsizetype done = 0;
    auto skip = [&](qsizetype r, const QString& message, const QString& source) {
        FileEntry& row = list[r];
        row.newName = row.name;
        row.newExt = row.ext;
        row.state = StateLoaded;
        ++result.skipped;
        if (!message.isEmpty())
            s.messages().add(message + nativeSeparators(source), MessageColour::Normal, int(r));
    };
    auto decide = [&](bool system, const QString& source) {
        const QString notAskKey = system ? keys::kAttribSNotAsk : keys::kAttribRNotAsk;
        const QString renameKey = system ? keys::kAttribSRename : keys::kAttribRRename;
        const int stored = int(settings.readInt(op, renameKey, 1));
        if (settings.readBool(op, notAskKey, false) && !(preview.foundExist && stored == 0))
            return stored;
        const ChoiceAnswer answer = m_dialogs->attributeQuestion(system, source, stored);
        settings.writeInt(op, renameKey, answer.choice);
        settings.writeBool(op, notAskKey, answer.dontAskAgain);
        return answer.choice;
    };

    for (const std::vector<size_t>* work : {&files, &folders}) {
        for (size_t k = work->size(); k-- > 0;) {
            if ((done & 63) == 0)
                ui.stopRequested();  // lets a window repaint; apply itself is not stopped
            progress(int(done * 100 / total));
            ++done;
            const qsizetype r = qsizetype((*work)[k]);
            FileEntry& row = list[r];
            MoveItem& item = moves.items[size_t(r)];
            const QString source = item.path();
            QString target = targetName(r);
            if (!item.inTemporary && item.folder + target == source) {
                skip(r, {}, source);
                continue;
            }
            const auto info = m_ops.stat(source);
            const std::uint32_t attributes = info ? info->attributes : 0;
            if ((attributes & platform::AttrReadOnly) && decide(false, source) == 0) {
                skip(r, tr("只读属性，跳过："), source);
                continue;
            }
            if ((attributes & platform::AttrSystem) && decide(true, source) == 0) {
                skip(r, tr("系统属性，跳过："), source);
                continue;
            }
            if (isTooLong(item.folder, target, m_rule)) {
                const NameParts proposed = splitFileName(target, row.isFolder);
                int choice = int(settings.readInt(op, keys::kTooLongCut, 1));
                if (!settings.readBool(op, keys::kTooLongNotAsk, false)) {
                    const auto preselected =
                        shortenName(item.folder, proposed.name, proposed.ext, row.isFolder,
                                    Shortening(choice ? choice : 1), m_rule);
                    const ChoiceAnswer answer = m_dialogs->tooLongQuestion(
                        source, target, preselected ? preselected->name + preselected->ext : QString(), choice);
                    choice = answer.choice;
                    settings.writeInt(op, keys::kTooLongCut, choice);
                    settings.writeBool(op, keys::kTooLongNotAsk, answer.dontAskAgain);
                }
                const auto shortened = choice >= 1 && choice <= 3
                                           ? shortenName(item.folder, proposed.name, proposed.ext, row.isFolder,
                                                         Shortening(choice), m_rule)
                                           : std::nullopt;
                if (!shortened) {
                    skip(r, tr("超出系统规定长度，跳过："), source);
                    continue;
                }
                target = shortened->name + shortened->ext;
            }
            if (uacWatch && !result.systemDriveMet && pathKey(driveOf(source)) == systemDrive)
                result.systemDriveMet = true;

            const QString oldFull = row.fullPath();
            const MoveSet::Outcome outcome = moves.rename(size_t(r), target, &info);
            if (outcome == MoveSet::Outcome::NotThere)
                continue;  // said to be renamed, yet not there: neither counted nor updated
            if (outcome == MoveSet::Outcome::Renamed) {
                item.inTemporary = false;
                const NameParts parts = splitFileName(target, row.isFolder);
                row.path = item.folder;
                row.name = row.newName = parts.name;
                row.ext = row.newExt = parts.ext;
                row.state = StateRenamed;
                ++result.succeeded;
                list.updateKnownPath(oldFull, row.fullPath());
                continue;
            }
            s.messages().add((row.isFolder ? tr("文件夹更名失败：") : tr("文件更名失败：")) + nativeSeparators(source),
                             MessageColour::Red, int(r));
            if (m_ops.exists(source)) {
                const NameParts parts = splitFileName(item.name, row.isFolder);
                row.name = parts.name;
                row.ext = parts.ext;
                list.updateKnownPath(oldFull, row.fullPath());
            }
            row.newName = row.name;
            row.newExt = row.ext;
            row.state = StateFailed;
            ++result.failed;
        }
    }
    progress(100);

    // Completion.
    result.rows = rowCount;
    s.messages().add(tr("对象批量更名完成。"));
    const QString counts = tr("更名文件列表对象%1个，操作成功%2个，失败%3个，跳过%4个")
                               .arg(rowCount)
                               .arg(result.succeeded)
                               .arg(result.failed)
                               .arg(result.skipped);
    s.messages().add(tr("对象批量更名完成！") + counts);
    result.summary = counts + tr("。");
    s.nextApplyNumber();
    for (size_t i = 0; i < moves.items.size(); ++i)
        snapshot.lines[i].path = moves.items[i].path();
    {
        QString error;
        if (!journal.finish(snapshot, &error))
            s.messages().add(tr("无法写入文件：%1（%2）").arg(nativeSeparators(snapshotFile), error), MessageColour::Red);
    }
    result.snapshotPath = snapshotFile;
    afterRenameCommands(s);
    result.showCompletionDialog = settings.readBool(op, keys::kApplyConfirmDlgShow, true);
    s.saveSettings();
    result.end = ApplyResult::End::Done;
    return result;
}

}  // namespace qp
