#include "execution/RenameRunner.h"

#include <QCoreApplication>
#include <QHash>
#include <QSet>
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

MoveSet::Outcome MoveSet::rename(size_t i, const QString& newName, platform::RenameResult* why)
{
    MoveItem& item = items[i];
    const platform::RenameResult result = m_ops.renameInFolder(item.folder, item.name, newName, item.isFolder);
    if (why)
        *why = result;
    if (!result.ok())
        return Outcome::Failed;
    if (!m_ops.renameIsExact()) {
        const auto after = m_ops.stat(item.folder + newName);
        if (!after)
            return Outcome::NotThere;
        const std::uint32_t kept = item.attributes & ~platform::AttrDirectory;
        if ((after->attributes & ~platform::AttrDirectory) != kept)
            m_ops.setAttributes(item.folder + newName, item.attributes);
    }
    moved(i, newName);
    return Outcome::Renamed;
}

void MoveSet::moved(size_t i, const QString& newName)
{
    MoveItem& item = items[i];
    const QString from = item.path();
    item.name = newName;
    if (item.isFolder)
        carryBelow(i, from);
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

void MoveSet::appendPlanLines(QByteArray& out, const std::vector<MoveStep>& steps,
                              const std::function<void()>& spill) const
{
    const bool foldersMove =
        std::any_of(steps.begin(), steps.end(), [&](const MoveStep& step) { return items[step.item].isFolder; });
    if (foldersMove) {
        // Renamed folders carry what is below them: follow that on a copy.
        MoveSet dry(*this);
        dry.onFolderMoved = nullptr;
        for (const MoveStep& step : steps) {
            const MoveItem& item = dry.items[step.item];
            appendMoveLine(out, item.folder, item.name, step.newName, item.isFolder);
            dry.moved(step.item, step.newName);
            if (spill)
                spill();
        }
        return;
    }
    std::vector<const QString*> nameNow(items.size(), nullptr);
    for (const MoveStep& step : steps) {
        const MoveItem& item = items[step.item];
        const QString*& name = nameNow[step.item];
        appendMoveLine(out, item.folder, name ? *name : item.name, step.newName, false);
        name = &step.newName;
        if (spill)
            spill();
    }
}

QByteArray MoveSet::planLines(const std::vector<MoveStep>& steps) const
{
    QByteArray lines;
    appendPlanLines(lines, steps);
    return lines;
}

void MoveSet::appendProgrammeLines(QByteArray& out, const std::function<void()>& spill) const
{
    for (const MoveItem& item : items) {
        appendProgrammeLine(out, item.folder, item.name, item.originalName);
        if (spill)
            spill();
    }
}

bool MoveSet::planTemporaries(const std::vector<size_t>& files, const std::vector<size_t>& folders,
                              const LengthRule& rule, std::vector<MoveStep>& steps) const
{
    // Files first, then folders from the deepest: nothing above an object has moved yet when
    // its turn comes, so each path is its path now. A name already taken (a temporary left
    // by an earlier, broken batch) gets the prefix once more.
    QSet<QString> planned;
    auto one = [&](size_t i) {
        const MoveItem& item = items[i];
        QString temporary = kTemporaryPrefix + item.name;
        auto taken = [&] {
            return planned.contains(pathKey(item.folder + temporary)) || m_ops.exists(item.folder + temporary);
        };
        while (taken() && !isTooLong(item.folder, temporary, rule))
            temporary.prepend(kTemporaryPrefix);
        if (isTooLong(item.folder, temporary, rule))
            return false;
        planned.insert(pathKey(item.folder + temporary));
        steps.push_back(MoveStep{i, temporary});
        return true;
    };
    for (size_t i : files)
        if (!one(i))
            return false;
    for (size_t k = folders.size(); k-- > 0;)
        if (!one(folders[k]))
            return false;
    return true;
}

bool MoveSet::rollBack(const std::vector<size_t>& order, Journal& journal)
{
    bool all = true;
    for (size_t i : order) {
        MoveItem& item = items[i];
        if (!item.inTemporary)
            continue;
        const qsizetype k = journal.extraMove(item.path(), item.folder + item.originalName, item.isFolder);
        const bool made = k >= 0 && rename(i, item.originalName) == Outcome::Renamed;
        if (k >= 0)
            journal.mark(k, made);
        if (made)
            item.inTemporary = false;
        else
            all = false;
    }
    return all;
}

size_t runSteps(MoveSet& moves, Journal& journal, const std::vector<MoveStep>& steps, size_t first, size_t last,
                const std::function<bool(size_t step, MoveSet::Outcome, const platform::RenameResult&)>& after)
{
    for (size_t k = first; k < last; ++k) {
        platform::RenameResult why;
        const MoveSet::Outcome outcome = moves.rename(steps[k].item, steps[k].newName, &why);
        journal.mark(qsizetype(k), outcome == MoveSet::Outcome::Renamed);
        if (!after(k, outcome, why))
            return k + 1;
    }
    return last;
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

void afterRenameCommands(Session& session, bool keepStates)
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
        session.pipeline().runAll(false, keepStates);
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

// One apply from the questions to the snapshot: plan every rename (asking what the settings
// leave open), put the plan on disk, then make it.
struct RenameRunner::Run {
    Run(RenameRunner& runner, const PreviewResult& preview, ApplyResult& result)
        : r(runner), s(runner.m_session), ui(s.interaction()), settings(s.settings()), list(s.renameList()),
          preview(preview), result(result), moves(runner.m_ops), journal(runner.m_ops)
    {
    }

    void setStatus(const QString& text)
    {
        caption = text;
        lastPercent = -1;
        ui.status(text);
    }
    void progress(int percent)
    {
        if (percent != lastPercent) {
            lastPercent = percent;
            ui.progress(caption, percent);
        }
    }
    QString targetName(qsizetype row) const
    {
        const FileEntry& entry = list.at(row);
        return entry.selected ? entry.newName + entry.newExt : entry.name + entry.ext;
    }

    void setUpItems();
    void orderWorkLists();
    void planMainPass();
    std::optional<QString> decideTarget(qsizetype row, const QString& source);
    int decideAttribute(bool system, const QString& source);
    void skip(qsizetype row, const QString& message, const QString& source);
    bool writeJournal(const QString& file);
    bool runFirstPass(int number, const QString& file);
    void runMainPass();
    void finishRow(qsizetype row, MoveSet::Outcome outcome);
    void complete(int number, const QString& file);

    RenameRunner& r;
    Session& s;
    Interaction& ui;
    SettingsStore& settings;
    RenameList& list;
    const PreviewResult& preview;
    ApplyResult& result;
    MoveSet moves;
    Journal journal;
    std::vector<size_t> files, folders;
    std::vector<MoveStep> steps;
    size_t firstPass = 0;  // steps [0, firstPass) put everything under temporary names
    QString caption;
    int lastPercent = -1;
};

void RenameRunner::Run::setUpItems()
{
    const qsizetype rows = list.size();
    moves.items.resize(size_t(rows));
    for (qsizetype row = 0; row < rows; ++row) {
        const FileEntry& entry = list.at(row);
        MoveItem& item = moves.items[size_t(row)];
        item.folder = entry.path;
        item.name = item.originalName = entry.fileName();
        item.isFolder = entry.isFolder;
        item.attributes = entry.attributes;
    }
    // Rows below a renamed folder follow it (also while it has a temporary name).
    // (Their known paths are recorded anew when the batch ends.)
    moves.onFolderMoved = [this](size_t i, const QString&) { list[qsizetype(i)].path = moves.items[i].folder; };
    // Folders sorted ascending (case-insensitive) so that walking from the end handles a
    // folder before the folders that hold it.
    files.assign(preview.fileWork.begin(), preview.fileWork.end());
    folders.assign(preview.folderWork.begin(), preview.folderWork.end());
    std::stable_sort(folders.begin(), folders.end(), [&](size_t a, size_t b) {
        return preview.rowPaths[a].compare(preview.rowPaths[b], Qt::CaseInsensitive) < 0;
    });
}

void RenameRunner::Run::orderWorkLists()
{
    setStatus(tr("正在智能处理"));
    for (std::vector<size_t>* work : {&files, &folders}) {
        std::vector<QString> sources, targets;
        std::vector<bool> changed;
        for (size_t row : *work) {
            const QString target = list.at(qsizetype(row)).path + targetName(qsizetype(row));
            sources.push_back(pathKey(preview.rowPaths[row]));
            targets.push_back(pathKey(target));
            changed.push_back(target != preview.rowPaths[row]);
        }
        const std::vector<size_t> order = orderByHolders(sources, targets, changed);
        std::vector<size_t> reordered;
        reordered.reserve(order.size());
        for (size_t k : order)
            reordered.push_back((*work)[k]);
        *work = std::move(reordered);
    }
}

void RenameRunner::Run::skip(qsizetype row, const QString& message, const QString& source)
{
    FileEntry& entry = list[row];
    entry.newName = entry.name;
    entry.newExt = entry.ext;
    entry.state = StateLoaded;
    ++result.skipped;
    if (!message.isEmpty())
        s.messages().add(message + nativeSeparators(source), MessageColour::Normal, int(row));
}

int RenameRunner::Run::decideAttribute(bool system, const QString& source)
{
    const QString op = keys::kOperation;
    const QString notAskKey = system ? keys::kAttribSNotAsk : keys::kAttribRNotAsk;
    const QString renameKey = system ? keys::kAttribSRename : keys::kAttribRRename;
    const int stored = int(settings.readInt(op, renameKey, 1));
    if (settings.readBool(op, notAskKey, false) && !(preview.foundExist && stored == 0))
        return stored;
    const ChoiceAnswer answer = r.m_dialogs->attributeQuestion(system, source, stored);
    settings.writeInt(op, renameKey, answer.choice);
    settings.writeBool(op, notAskKey, answer.dontAskAgain);
    return answer.choice;
}

// The name the row's object gets, after the questions about read-only, system and over-long
// objects (asked from what the listing said, before anything is renamed); nullopt: skipped.
std::optional<QString> RenameRunner::Run::decideTarget(qsizetype row, const QString& source)
{
    const FileEntry& entry = list.at(row);
    const QString op = keys::kOperation;
    if ((entry.attributes & platform::AttrReadOnly) && decideAttribute(false, source) == 0) {
        skip(row, tr("只读属性，跳过："), source);
        return std::nullopt;
    }
    if ((entry.attributes & platform::AttrSystem) && decideAttribute(true, source) == 0) {
        skip(row, tr("系统属性，跳过："), source);
        return std::nullopt;
    }
    const QString target = targetName(row);
    if (!isTooLong(entry.path, target, r.m_rule))
        return target;
    const NameParts proposed = splitFileName(target, entry.isFolder);
    int choice = int(settings.readInt(op, keys::kTooLongCut, 1));
    if (!settings.readBool(op, keys::kTooLongNotAsk, false)) {
        const auto preselected = shortenName(entry.path, proposed.name, proposed.ext, entry.isFolder,
                                             Shortening(choice ? choice : 1), r.m_rule);
        const ChoiceAnswer answer = r.m_dialogs->tooLongQuestion(
            source, target, preselected ? preselected->name + preselected->ext : QString(), choice);
        choice = answer.choice;
        settings.writeInt(op, keys::kTooLongCut, choice);
        settings.writeBool(op, keys::kTooLongNotAsk, answer.dontAskAgain);
    }
    const auto shortened = choice >= 1 && choice <= 3 ? shortenName(entry.path, proposed.name, proposed.ext,
                                                                     entry.isFolder, Shortening(choice), r.m_rule)
                                                      : std::nullopt;
    if (!shortened) {
        skip(row, tr("超出系统规定长度，跳过："), source);
        return std::nullopt;
    }
    return shortened->name + shortened->ext;
}

// Files from the end of their list, then folders from the end: each renamed after the
// objects that hold its target (see orderByHolders) and folders before the folders above.
void RenameRunner::Run::planMainPass()
{
    steps.reserve(steps.size() + moves.items.size());
    std::vector<QString> temporary(moves.items.size());
    for (size_t k = 0; k < firstPass; ++k)
        temporary[steps[k].item] = steps[k].newName;
    const bool uacWatch = settings.readBool(keys::kGeneral, QStringLiteral("UAC"), true);
    const QString systemDrive = pathKey(fromPlatformPath(platform::systemDrive()));
    for (const std::vector<size_t>* work : {&files, &folders}) {
        for (size_t k = work->size(); k-- > 0;) {
            const size_t i = (*work)[k];
            const qsizetype row = qsizetype(i);
            const MoveItem& item = moves.items[i];
            const QString source = item.folder + (firstPass ? temporary[i] : item.name);
            if (!firstPass && targetName(row) == item.name) {
                skip(row, {}, source);
                continue;
            }
            const std::optional<QString> target = decideTarget(row, source);
            if (!target)
                continue;  // an object skipped after the first pass stays under its temporary name
            if (uacWatch && !result.systemDriveMet && pathKey(driveOf(source)) == systemDrive)
                result.systemDriveMet = true;
            steps.push_back(MoveStep{i, *target});
        }
    }
}

bool RenameRunner::Run::writeJournal(const QString& file)
{
    const auto produce = [&](QByteArray& out, const std::function<void()>& spill) {
        out += snapshotHeader(preview.foundExist, preview.foundExistAndExchange, true);
        moves.appendProgrammeLines(out, spill);
        appendPlanHeading(out);
        moves.appendPlanLines(out, steps, spill);
    };
    QString error;
    if (journal.begin(file, produce, qsizetype(steps.size()), qsizetype(firstPass), &error))
        return true;
    ui.notify(Notice{QStringLiteral("apply.snapshotFailed"), kErrorTitle,
                     tr("无法写入文件：%1（%2）").arg(nativeSeparators(file), error), Icon::Error});
    return false;
}

// Everything to its temporary name; on the first failure everything goes back.
bool RenameRunner::Run::runFirstPass(int number, const QString& file)
{
    setStatus(tr("正在准备更名数据"));
    std::vector<size_t> created;
    const size_t made = runSteps(moves, journal, steps, 0, firstPass,
                                 [&](size_t k, MoveSet::Outcome outcome, const platform::RenameResult&) {
                                     if (outcome != MoveSet::Outcome::Renamed)
                                         return false;
                                     MoveItem& item = moves.items[steps[k].item];
                                     item.inTemporary = true;
                                     created.push_back(steps[k].item);
                                     progress(int((k + 1) * 100 / firstPass));
                                     return true;
                                 });
    // The main pass may only start with every temporary on record.
    if (made == firstPass && created.size() == firstPass && journal.flush())
        return true;
    journal.giveUpAt(qsizetype(made));
    const bool allBack = moves.rollBack(created, journal);
    list.rebuildKnownPaths();
    if (allBack) {
        journal.discard();
    } else {
        // Some object stays under its temporary name: the journal leads it back, from undo.
        s.messages().add(tr("智能更名失败！用户可以自行手动更名两次来达到目的。"), MessageColour::Red);
        s.pushSnapshot(number);
        result.snapshotPath = file;
    }
    ui.notify(Notice{QStringLiteral("apply.firstPassFailed"), kErrorTitle,
                     tr("智能更名失败！用户可以自行手动更名两次来达到目的。"), Icon::Error});
    return false;
}

void RenameRunner::Run::finishRow(qsizetype row, MoveSet::Outcome outcome)
{
    FileEntry& entry = list[row];
    MoveItem& item = moves.items[size_t(row)];
    if (outcome == MoveSet::Outcome::Renamed) {
        // The known paths are recorded anew once the batch is done.
        item.inTemporary = false;
        NameParts parts = splitFileName(item.name, entry.isFolder);
        entry.path = item.folder;
        entry.name = entry.newName = std::move(parts.name);
        entry.ext = entry.newExt = std::move(parts.ext);
        entry.state = StateRenamed;
        ++result.succeeded;
        return;
    }
    const QString source = item.path();
    s.messages().add((entry.isFolder ? tr("文件夹更名失败：") : tr("文件更名失败：")) + nativeSeparators(source),
                     MessageColour::Red, int(row));
    if (item.inTemporary && r.m_ops.exists(source)) {
        const NameParts parts = splitFileName(item.name, entry.isFolder);
        entry.name = parts.name;
        entry.ext = parts.ext;
    }
    entry.newName = entry.name;
    entry.newExt = entry.ext;
    entry.state = StateFailed;
    ++result.failed;
}

void RenameRunner::Run::runMainPass()
{
    setStatus(tr("正在批量更名"));
    const size_t total = steps.size() - firstPass;
    runSteps(moves, journal, steps, firstPass, steps.size(),
             [&](size_t k, MoveSet::Outcome outcome, const platform::RenameResult&) {
                 const size_t done = k - firstPass;
                 if ((done & 63) == 0)
                     ui.stopRequested();  // lets a window repaint; apply itself is not stopped
                 progress(int(done * 100 / total));
                 // NotThere: said to be renamed, yet not there: neither counted nor updated.
                 if (outcome != MoveSet::Outcome::NotThere)
                     finishRow(qsizetype(steps[k].item), outcome);
                 return true;
             });
    list.rebuildKnownPaths();
    progress(100);
}

void RenameRunner::Run::complete(int number, const QString& file)
{
    result.rows = list.size();
    s.messages().add(tr("对象批量更名完成。"));
    const QString counts = tr("更名文件列表对象%1个，操作成功%2个，失败%3个，跳过%4个")
                               .arg(result.rows)
                               .arg(result.succeeded)
                               .arg(result.failed)
                               .arg(result.skipped);
    s.messages().add(tr("对象批量更名完成！") + counts);
    result.summary = counts + tr("。");
    s.pushSnapshot(number);
    QString error;
    const bool written = journal.finish(
        [&](QByteArray& out, const std::function<void()>& spill) {
            out += snapshotHeader(preview.foundExist, preview.foundExistAndExchange, false);
            moves.appendProgrammeLines(out, spill);
        },
        &error);
    if (!written)
        s.messages().add(tr("无法写入文件：%1（%2）").arg(nativeSeparators(file), error), MessageColour::Red);
    result.snapshotPath = file;
    s.setPendingImport(false);
    afterRenameCommands(s, true);
    result.showCompletionDialog = settings.readBool(keys::kOperation, keys::kApplyConfirmDlgShow, true);
    s.saveSettings();
    result.end = ApplyResult::End::Done;
}

// The questions before anything is planned; false: the user stopped, or there is nothing.
bool RenameRunner::askBeforeStarting(ApplyResult& result, bool& simple)
{
    Session& s = m_session;
    Interaction& ui = s.interaction();
    const SettingsStore& settings = s.settings();
    if (!requireFileRenamePage(s)) {
        result.end = ApplyResult::End::WrongPage;
        return false;
    }
    if (s.renameList().isEmpty()) {
        result.end = ApplyResult::End::EmptyList;
        return false;
    }
    if (settings.readBool(keys::kOperation, keys::kApplyConfirm, true)
        && ui.ask(Question{QStringLiteral("apply.confirm"), tr("更名确认"), tr("开始进行批量更名，确认吗？"),
                           Button::Ok | Button::Cancel, Button::Ok, Icon::Question})
               != Button::Ok)
        return false;
    if (hasExtensionCommand(settings)
        && ui.ask(Question{QStringLiteral("apply.extensionWarning"), kHintTitle,
                           tr("命令列表中含有修改文件扩展名的命令。如果改变文件扩展名，可能会导致文件不可用。")
                               + QStringLiteral("\r\n\r\n") + tr("确实要更改吗？"),
                           Button::Ok | Button::Cancel, Button::Ok, Icon::Warning})
               != Button::Ok)
        return false;
    if (s.renameList().size() >= settings.readInt(keys::kOperation, keys::kRenameSelectCount, 10000)) {
        const ApplyMode mode = m_dialogs->chooseMode(s.renameList().size());
        if (mode == ApplyMode::Stop)
            return false;
        simple = mode == ApplyMode::Simple;
    }
    return true;
}

ApplyResult RenameRunner::apply()
{
    ApplyResult result;
    bool simple = false;
    if (!askBeforeStarting(result, simple))
        return result;
    PreviewResult preview = m_preview(simple);
    if (!preview.ran || preview.stopped) {
        result.end = preview.ran ? ApplyResult::End::PreviewStopped : ApplyResult::End::EmptyList;
        return result;
    }
    Session& s = m_session;
    Interaction& ui = s.interaction();
    BusyScope busy(ui);
    Run run(*this, preview, result);
    run.setStatus(tr("准备批量更名"));
    run.progress(0);
    if ((preview.foundExist || preview.foundExistAndExchange)
        && !s.settings().readBool(keys::kInterface, keys::kIgnoreSmartRenameWarning, false)) {
        const ConflictAnswer answer = m_dialogs->conflictWarning(preview);
        if (answer.proceed && answer.dontShowAgain)
            s.settings().writeBool(keys::kInterface, keys::kIgnoreSmartRenameWarning, true);
        if (!answer.proceed)
            return result;
    }
    const QString folder = settingsFolderOf(s);
    if (folder.isEmpty() || !m_ops.createFolders(snapshotFolder(folder, s.runStamp()))) {
        ui.notify(Notice{QStringLiteral("apply.snapshotFolderFailed"), kErrorTitle, tr("创建存放自动快照的文件夹失败！"),
                         Icon::Error});
        result.end = ApplyResult::End::SnapshotFailed;
        return result;
    }
    // A number no file of this run has: a journal kept after a failed batch stays whole.
    int number = s.newestSnapshot() + 1;
    while (m_ops.exists(snapshotPath(folder, s.runStamp(), number)))
        ++number;
    const QString file = snapshotPath(folder, s.runStamp(), number);

    run.setUpItems();
    if (preview.foundExistAndExchange) {
        if (!run.moves.planTemporaries(run.files, run.folders, m_rule, run.steps)) {
            ui.notify(Notice{QStringLiteral("apply.firstPassFailed"), kErrorTitle,
                             tr("智能更名失败！用户可以自行手动更名两次来达到目的。"), Icon::Error});
            result.end = ApplyResult::End::FirstPassFailed;
            return result;
        }
        run.firstPass = run.steps.size();
        result.usedTemporaries = true;
    } else if (preview.foundExist) {
        run.orderWorkLists();
    }
    run.planMainPass();
    // The plan holds all that is needed from here on; the paths preview kept can go.
    preview.rowPaths = {};
    preview.rowByKey = {};
    if (!run.writeJournal(file)) {
        result.end = ApplyResult::End::SnapshotFailed;
        return result;
    }
    if (run.firstPass && !run.runFirstPass(number, file)) {
        result.end = ApplyResult::End::FirstPassFailed;
        return result;
    }
    run.runMainPass();
    run.complete(number, file);
    return result;
}

}  // namespace qp
