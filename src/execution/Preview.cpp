#include "execution/Preview.h"

#include <limits>
#include <memory>

#include <QCoreApplication>
#include <QSet>
#include <QStringBuilder>
#include <algorithm>

#include "core/CommandList.h"
#include "core/FolderListing.h"
#include "core/PathText.h"
#include "core/Session.h"
#include "core/SettingsKeys.h"

namespace qp {

namespace {

const QString& kNullSet = keys::kFileNameNullSet;
const QString& kSameCharKind = keys::kFileNameSameCharKind;
const QString& kSameStart = keys::kFileNameSameStart;
const QString& kSameIncrease = keys::kFileNameSameIncrease;
const QString& kSameDigitCapacity = keys::kFileNameSameDigitCapacity;
const QString& kSameLeftStr = keys::kFileNameSameLeftStr;
const QString& kSameRightStr = keys::kFileNameSameRightStr;
const QString kDefaultNullName = QStringLiteral("(null)");

// Polling the interaction lets the GUI pump its events, which costs far more than a row.
constexpr qsizetype kPollEvery = 1024;
// Keeps start + k × increase inside 64 bits for any list size the program can hold.
constexpr qint64 kNumberLimit = qint64(1) << 31;

QString tr(const char* text) { return QCoreApplication::translate("Preview", text); }

int percentOf(qint64 done, qint64 total) { return total > 0 ? int(done * 100 / total) : 0; }

bool isForbiddenOnWindows(QChar c) { return platform::isForbiddenInName(c.unicode(), true); }
bool isForbiddenHere(QChar c) { return platform::isForbiddenInName(c.unicode(), false); }
// What no name may hold in any mode: it would take the object out of its folder.
bool isSeparator(QChar c) { return c == u'/' || c == QChar(0) || (platform::windowsNamesAlways() && c == u'\\'); }

template <typename Pred>
void removeAll(QString& text, Pred forbidden)
{
    if (std::any_of(text.cbegin(), text.cend(), forbidden))
        text.removeIf(forbidden);
}

void trimSpaces(QString& text)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && text[begin] == QLatin1Char(' '))
        ++begin;
    while (end > begin && text[end - 1] == QLatin1Char(' '))
        --end;
    text = text.mid(begin, end - begin);
}

// Names compare as the file system compares them: exactly on Linux, case-folded where
// the file system ignores case.
bool sameName(const QString& a, const QString& b) { return a == b || pathKey(a) == pathKey(b); }

}  // namespace

DuplicateNumbering DuplicateNumbering::fromSettings(const SettingsStore& settings)
{
    DuplicateNumbering n;
    n.kind = int(settings.readInt(keys::kOperation, kSameCharKind, Digits));
    n.start = std::clamp<qint64>(settings.readInt(keys::kOperation, kSameStart, 2), -kNumberLimit, kNumberLimit);
    n.increase = std::clamp<qint64>(settings.readInt(keys::kOperation, kSameIncrease, 1), -kNumberLimit, kNumberLimit);
    n.width = int(std::clamp<qint64>(settings.readInt(keys::kOperation, kSameDigitCapacity, 1), 0, 255));
    n.left = settings.readString(keys::kOperation, kSameLeftStr, QStringLiteral("("));
    n.right = settings.readString(keys::kOperation, kSameRightStr, QStringLiteral(")"));
    return n;
}

QString DuplicateNumbering::numberText(qint64 number) const
{
    if (kind != LowerLetters && kind != UpperLetters)
        return QString::number(number).rightJustified(width, QLatin1Char('0'));
    const char16_t zero = kind == LowerLetters ? u'a' : u'A';
    const bool negative = number < 0;
    quint64 rest = negative ? quint64(0) - quint64(number) : quint64(number);
    QString text;
    do {
        text.prepend(QChar(char16_t(zero + rest % 26)));
        rest /= 26;
    } while (rest > 0);
    if (negative)
        text.prepend(QLatin1Char('-'));
    return text.rightJustified(width, QChar(zero));
}

bool windowsNameRules(const SettingsStore& settings)
{
    return platform::windowsNamesAlways() || settings.readBool(keys::kOperation, keys::kWindowsSafeNames, false);
}

namespace {

NameParts nullName(const QString& emptyName) { return {emptyName.isEmpty() ? kDefaultNullName : emptyName, QString()}; }

// Only what the file system itself refuses goes; nothing else is touched.
NameParts cleanByOwnRules(const QString& newName, const QString& newExt, bool isFolder, const QString& emptyName)
{
    const bool clean = std::none_of(newName.cbegin(), newName.cend(), isForbiddenHere)
                       && std::none_of(newExt.cbegin(), newExt.cend(), isForbiddenHere);
    QString name = newName;
    QString ext = newExt;
    if (!clean) {
        removeAll(name, isForbiddenHere);
        removeAll(ext, isForbiddenHere);
    }
    const QString text = name + ext;
    if (text.isEmpty() || text == QLatin1String(".") || text == QLatin1String(".."))
        return nullName(emptyName);
    if (clean || isFolder)
        return isFolder ? NameParts{text, QString()} : NameParts{name, ext};
    return splitFileName(text, false);
}

}  // namespace

NameParts cleanNewName(const QString& newName, const QString& newExt, bool isFolder, const QString& emptyName,
                       bool windowsRules)
{
    if (!windowsRules)
        return cleanByOwnRules(newName, newExt, isFolder, emptyName);
    QString name = newName;
    QString ext = newExt == QLatin1String(".") ? QString() : newExt;
    removeAll(name, isForbiddenOnWindows);
    removeAll(ext, isForbiddenOnWindows);
    QString text = name + ext;
    auto untidy = [&text] {
        return text.endsWith(QLatin1Char('.')) || text.endsWith(QLatin1Char(' '))
            || text.startsWith(QLatin1Char(' '));
    };
    while (untidy()) {
        if (text.endsWith(QLatin1Char('.')))
            text.chop(1);
        if (text.startsWith(QLatin1Char(' ')) || text.endsWith(QLatin1Char(' ')))
            trimSpaces(text);
    }
    if (text.isEmpty())
        return nullName(emptyName);
    if (isFolder)
        return {text, QString()};
    // Unchanged names (the common case) keep sharing the row's own texts.
    // Nothing removed (only removal shortens the text) and the extension holds the last dot.
    if (text.size() == newName.size() + newExt.size() && newExt.startsWith(QLatin1Char('.'))
        && newExt.lastIndexOf(QLatin1Char('.')) == 0)
        return {newName, newExt};
    return splitFileName(text, false);
}

bool hasRenameCycle(const std::vector<qsizetype>& successor)
{
    // Each row has at most one successor, so a walk from any row either ends or runs into
    // a row already on the same walk (a cycle) or one finished earlier (no cycle there).
    enum : unsigned char { Unseen, OnWalk, Done };
    const size_t n = successor.size();
    std::vector<unsigned char> mark(n, Unseen);
    auto next = [&](size_t row) -> qsizetype {
        const qsizetype s = successor[row];
        return s >= 0 && size_t(s) < n && size_t(s) != row ? s : -1;
    };
    for (size_t first = 0; first < n; ++first) {
        if (mark[first] != Unseen)
            continue;
        qsizetype row = qsizetype(first);
        while (row >= 0 && mark[size_t(row)] == Unseen) {
            mark[size_t(row)] = OnWalk;
            row = next(size_t(row));
        }
        if (row >= 0 && mark[size_t(row)] == OnWalk)
            return true;
        for (qsizetype r = qsizetype(first); r >= 0 && mark[size_t(r)] == OnWalk; r = next(size_t(r)))
            mark[size_t(r)] = Done;
    }
    return false;
}

struct Preview::RunState {
    PreviewResult& result;
    DuplicateNumbering numbering;
    QString emptyName;
    bool windowsRules = false;
    qsizetype rows = 0;
    // Keys of the targets given so far in this preview.
    QSet<QString> targets;
    // For each numbered base: the first k whose candidate is not yet known to be taken.
    // Targets are only ever added, so every earlier candidate stays taken.
    QHash<QString, qint64> nextCandidate;
    // Each row's successor: the other row whose current path is its target, or -1.
    std::vector<qsizetype> successor;
};

namespace {

}  // namespace

Preview::Preview(Session& session) : m_session(session) {}

QString Preview::numbered(RunState& state, const QString& folder, const QString& name, const QString& ext)
{
    const DuplicateNumbering& n = state.numbering;
    // With a step of 0 every candidate is the same, so one try says it all.
    const qint64 lastK = n.increase == 0 ? 0 : qint64(state.rows);
    const QString base = pathKey(folder % name) % QChar(u'\0') % pathKey(ext);
    qint64& k = state.nextCandidate[base];
    auto candidate = [&](qint64 at) -> QString {
        return name % n.left % n.numberText(n.start + at * n.increase) % n.right;
    };
    for (; k <= lastK; ++k) {
        QString newName = candidate(k);
        if (!state.targets.contains(pathKey(folder % newName % ext))) {
            ++k;
            return newName;
        }
    }
    return candidate(lastK);  // every candidate is taken: the last one tried stands
}

// A device name takes its number right after the device word ("con.tar.gz" becomes
// "con(2).tar.gz"), since whatever follows the first dot does not stop it naming the device.
void Preview::numberTaken(RunState& state, const QString& folder, NameParts& clean, bool reserved)
{
    const qsizetype dot = reserved ? clean.name.indexOf(u'.') : -1;
    if (dot < 0) {
        clean.name = numbered(state, folder, clean.name, clean.ext);
        return;
    }
    const QString stem = clean.name.left(dot);
    const QString rest = clean.name.mid(dot);
    clean.name = numbered(state, folder, stem, rest % clean.ext) % rest;
}

qsizetype Preview::validateRow(RunState& state, qsizetype rowIndex)
{
    RenameList& list = m_session.renameList();
    FileEntry& row = list[rowIndex];
    NameParts clean = cleanNewName(row.newName, row.newExt, row.isFolder, state.emptyName, state.windowsRules);
    QString target = row.path % clean.name % clean.ext;
    QString key = pathKey(target);
    qsizetype found = state.result.rowByKey.value(key, -1);

    // A device name is no name for a file under the Windows rules: it is numbered as if taken.
    const bool reserved = state.windowsRules && platform::isReservedDeviceName(toPlatformPath(clean.name % clean.ext));
    bool taken = false;
    if (reserved || state.targets.contains(key)) {
        taken = true;  // a device name, or an earlier row of this preview already goes there
    } else if (found < 0) {
        taken = m_exists(target);  // an object outside the list holds it
    } else if (found != rowIndex) {
        // The row holding it keeps its name when it is not checked or not renamed.
        const FileEntry& holder = list.at(found);
        taken = !holder.selected || (sameName(holder.newName, holder.name) && sameName(holder.newExt, holder.ext));
    }
    if (taken) {
        numberTaken(state, row.path, clean, reserved);
        target = row.path % clean.name % clean.ext;
        key = pathKey(target);
        // Numbered names are checked against this preview's targets only; one may still be
        // the current path of a row, which the cycle search has to know about.
        const qsizetype holder = state.result.rowByKey.value(key, -1);
        state.successor[size_t(rowIndex)] = holder == rowIndex ? -1 : holder;
        found = -1;
    } else {
        if (found == rowIndex)
            found = -1;  // found as itself (unchanged, or a change of letter case only)
        state.successor[size_t(rowIndex)] = found;
    }
    row.newName = std::move(clean.name);
    row.newExt = std::move(clean.ext);
    state.targets.insert(std::move(key));
    return found;
}

PreviewResult Preview::run(bool simpleRename)
{
    // Listings are good for one run only: the disk may change between previews.
    if (!m_diskCheckReplaced)
        m_exists = [listing = std::make_shared<FolderListing>()](const QString& path) {
            const PathParts parts = splitPath(path);
            return listing->exists(parts.folder, parts.fileName);
        };
    PreviewResult result;
    result.simple = simpleRename;
    if (!requireFileRenamePage(m_session))
        return result;
    RenameList& list = m_session.renameList();
    if (list.isEmpty())
        return result;
    result.ran = true;

    Interaction& ui = m_session.interaction();
    const SettingsStore& settings = m_session.settings();
    const bool namesCurrent = m_session.newNamesCurrent();
    const bool autoPreview = settings.readBool(keys::kOperation, keys::kAutoPreview, true);
    const bool autoPreviewBefore = settings.readBool(keys::kOperation, keys::kAutoPreviewBefore, false);
    if (!namesCurrent && (!autoPreview || autoPreviewBefore)) {
        if (!m_session.pipeline().runAll(true))
            result.stopped = true;
    }

    BusyScope busy(ui);
    const QString caption = tr("正在查找和修正问题");
    ui.status(caption);
    ui.progress(caption, 0);

    const qsizetype rows = list.size();
    result.rowPaths.reserve(size_t(rows));
    result.rowByKey.reserve(rows);
    for (qsizetype i = 0; i < rows; ++i) {
        const FileEntry& row = list.at(i);
        result.rowPaths.push_back(row.path % row.name % row.ext);
        (row.isFolder ? result.folderWork : result.fileWork).push_back(i);
    }
    // Backwards, so that of two rows with the same path the first one is found.
    for (qsizetype i = rows - 1; i >= 0; --i)
        result.rowByKey.insert(pathKey(result.rowPaths[size_t(i)]), i);

    if (simpleRename && !result.stopped) {
        // Simple rename checks nothing else, but no name may take its object out of its folder.
        for (qsizetype i = 0; i < rows; ++i) {
            FileEntry& row = list[i];
            removeAll(row.newName, isSeparator);
            removeAll(row.newExt, isSeparator);
        }
    }
    if (!simpleRename && !result.stopped) {
        QString emptyName = settings.readString(keys::kOperation, kNullSet, kDefaultNullName);
        RunState state{result, DuplicateNumbering::fromSettings(settings), std::move(emptyName),
                       windowsNameRules(settings), rows, {}, {}, {}};
        state.targets.reserve(rows);
        state.successor.assign(size_t(rows), -1);
        const QString conflictText = tr("文件已存在，新文件名存在更名冲突：");
        for (qsizetype i = 0; i < rows; ++i) {
            if (i % kPollEvery == 0) {
                ui.progress(caption, percentOf(i, rows));
                if (ui.stopRequested()) {
                    result.stopped = true;
                    break;
                }
            }
            const qsizetype holder = validateRow(state, i);
            FileEntry& row = list[i];
            row.state = StateLoaded;
            if (holder >= 0 && row.selected && (!sameName(row.newName, row.name) || !sameName(row.newExt, row.ext))) {
                result.foundExist = true;
                row.state = StateFailed;
                result.conflictRows.push_back(i);
                QString message = conflictText % nativeSeparators(row.path % row.newName % row.newExt);
                m_session.messages().add(message, MessageColour::Red, int(i));
                result.conflictMessages.append(std::move(message));
            }
        }
        if (!result.stopped)
            ui.progress(caption, 100);

        if (result.foundExist && !result.stopped) {
            const QString cycleCaption = tr("判断是否存在更名死循环");
            ui.status(cycleCaption);
            ui.progress(cycleCaption, 0);
            if (ui.stopRequested()) {
                result.stopped = true;
            } else {
                result.foundExistAndExchange = hasRenameCycle(state.successor);
                ui.progress(cycleCaption, 100);
            }
        }
    }

    // What apply renames is what this preview shows, until the rows or the commands change.
    m_session.setNewNamesCurrent(!result.stopped);
    if (result.stopped) {
        const QString text = tr("预览全部对象已被强制终止。");
        ui.status(text);
        m_session.messages().add(text);
    }
    const QString done = tr("预览全部对象执行完毕。");
    if (!result.stopped)
        ui.status(done);
    m_session.messages().add(done);
    if (result.foundExist) {
        const QString count = QString::number(result.conflictRows.size());
        const char* withCycle =
            QT_TRANSLATE_NOOP("Preview", "即将更名的新文件名中有 %1 个现实中已经存在，更名出现冲突，且已经发现更名死循环问题。");
        const char* noCycle =
            QT_TRANSLATE_NOOP("Preview", "即将更名的新文件名中有 %1 个现实中已经存在，更名出现冲突，但未发现更名死循环问题。");
        const QString text = tr(result.foundExistAndExchange ? withCycle : noCycle).arg(count);
        m_session.messages().add(text, MessageColour::Red);
    }
    return result;
}

}  // namespace qp
