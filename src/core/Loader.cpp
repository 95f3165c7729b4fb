#include "core/Loader.h"

#include <QCoreApplication>
#include <QSet>
#include <QStringDecoder>

#include "core/ComboHistory.h"
#include "core/NameFilter.h"
#include "core/PathText.h"
#include "core/Session.h"
#include "core/SettingsKeys.h"

namespace qp {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("Loader", text); }

QString titleHint() { return tr("温馨提示"); }
QString captionExpand() { return tr("分析文件结构"); }
QString captionDedupe() { return tr("剔除重复对象"); }
QString captionFilter() { return tr("对象过滤"); }
QString captionAppend() { return tr("载入对象至列表"); }
QString captionTraverse() { return tr("正在遍历各文件夹并剔除重复对象"); }

constexpr qsizetype kLargeList = 10000;
constexpr qsizetype kPollEvery = 1024;
constexpr int kMaxSkipLines = 100;
// No file system accepts a longer path; longer list lines cannot name anything.
constexpr qsizetype kLongestPath = 32767;
constexpr std::uint64_t kLargestListFile = std::uint64_t(1) << 30;

QString pendingImportText()
{
    return tr("更名文件列表中内容为导入的更名方案文件或快照文件，还未进行处理，继续操作更名方案或快照可能被忽略。继续吗？");
}

QString largeListText()
{
    return QStringList{
        tr("文件列表中的对象以及新载入的对象数量均过于庞大，将导致在接下来剔除重复对象操作时间太长。请做出以下选择："),
        tr("自动剔除重复对象，按“是”；"),
        tr("新载入的对象与文件列表不会有重复，直接载入文件列表，按“否”；"),
        tr("取消载入新对象，按“取消”。"),
    }.join(QLatin1Char('\r'));
}

bool folderExists(const QString& path) { return platform::isFolder(toPlatformPath(path)); }

// Decodes one line of a list file; nullopt when its bytes are not UTF-8.
std::optional<QString> decodeLine(QByteArrayView bytes)
{
    const auto utf16 = platform::toUtf16(std::string_view(bytes.data(), size_t(bytes.size())));
    if (!utf16)
        return std::nullopt;
    return fromPlatformPath(*utf16);
}

QStringList splitUtf16Lines(const QByteArray& bytes, QStringDecoder::Encoding encoding, qsizetype& undecodable)
{
    QStringDecoder decoder(encoding, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(bytes.mid(2));
    if (decoder.hasError())
        ++undecodable;
    return text.split(QLatin1Char('\n'));
}

QStringList decodeListLines(const QByteArray& bytes, qsizetype& undecodable)
{
    if (bytes.startsWith("\xFF\xFE"))
        return splitUtf16Lines(bytes, QStringDecoder::Utf16LE, undecodable);
    if (bytes.startsWith("\xFE\xFF"))
        return splitUtf16Lines(bytes, QStringDecoder::Utf16BE, undecodable);
    QByteArrayView view(bytes);
    if (view.startsWith("\xEF\xBB\xBF"))
        view = view.sliced(3);
    QStringList lines;
    qsizetype start = 0;
    while (start <= view.size()) {
        qsizetype end = view.indexOf('\n', start);
        if (end < 0)
            end = view.size();
        const QByteArrayView raw = view.sliced(start, end - start);
        if (raw.size() > kLongestPath * 3)
            lines.append(QString());  // too long to name anything; not worth decoding
        else if (auto line = decodeLine(raw))
            lines.append(*line);
        else
            ++undecodable;
        start = end + 1;
    }
    return lines;
}

}  // namespace

qsizetype dropKnownAndRepeated(LoadCandidates& candidates, const RenameList& list, bool mayRepeat)
{
    QSet<QString> seen;
    if (mayRepeat)
        seen.reserve(candidates.size());
    std::vector<FileEntry>& rows = candidates.rows;
    std::vector<QString>& keys = candidates.keys;
    keys.clear();
    keys.reserve(rows.size());
    size_t kept = 0;
    for (size_t i = 0; i < rows.size(); ++i) {
        QString key = pathKey(rows[i].fullPath());
        if (list.isKnown(key))
            continue;
        if (mayRepeat) {
            if (seen.contains(key))
                continue;
            seen.insert(key);
        }
        if (kept != i)
            rows[kept] = std::move(rows[i]);
        keys.push_back(std::move(key));
        ++kept;
    }
    const qsizetype dropped = qsizetype(rows.size() - kept);
    rows.resize(kept);
    return dropped;
}

QString RowMaker::sharedExtension(QStringView ext)
{
    if (ext.isEmpty())
        return QString();
    const QString text = ext.toString();
    auto it = m_extensions.constFind(text);
    if (it == m_extensions.constEnd())
        it = m_extensions.insert(text, text);
    return *it;
}

FileEntry RowMaker::make(const QString& folder, QStringView fileName, const platform::FileInfo& info)
{
    FileEntry row;
    row.isFolder = info.isFolder;
    const qsizetype dot = row.isFolder ? -1 : fileName.lastIndexOf(QLatin1Char('.'));
    row.name = (dot < 0 ? fileName : fileName.left(dot)).toString();
    // Extensions repeat across thousands of rows; one shared copy each saves memory.
    row.ext = dot < 0 ? QString() : sharedExtension(fileName.mid(dot));
    row.newName = row.name;
    row.newExt = row.ext;
    row.path = folder;
    row.size = info.size;
    row.modified = info.modified;
    row.attributes = info.attributes;
    row.icon = row.isFolder ? IconFolder : IconFile;
    row.state = StateLoaded;
    return row;
}

ListFileContent readListFile(const QString& listFile)
{
    ListFileContent content;
    const platform::ReadResult file = platform::readFile(toPlatformPath(listFile), kLargestListFile);
    if (file.status != platform::ReadStatus::Ok) {
        content.unreadable = true;
        content.message = QString::fromStdString(file.systemMessage);
        return content;
    }
    const QByteArray bytes = QByteArray::fromRawData(file.bytes.data(), qsizetype(file.bytes.size()));
    for (QString line : decodeListLines(bytes, content.undecodableLines)) {
        if (line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        if (line.trimmed().isEmpty() || line.size() > kLongestPath || line.contains(QChar(0)))
            continue;
        if (line.size() >= 2 && line.startsWith(QLatin1Char('"')) && line.endsWith(QLatin1Char('"'))
            && !platform::exists(toPlatformPath(line)))
            line = line.mid(1, line.size() - 2);
        line = internalSeparators(line);
        if (!isAbsolutePath(line)) {
            ++content.relativeLines;
            continue;
        }
        if (platform::exists(toPlatformPath(line)))
            content.paths.append(line);
    }
    return content;
}

LoadResult Loader::addPaths(const QStringList& paths)
{
    rememberPathText();
    return run(paths);
}

LoadResult Loader::addListFile(const QString& listFile)
{
    rememberPathText();
    const ListFileContent content = readListFile(listFile);
    if (content.unreadable) {
        m_session.messages().add(tr("无法读取列表文件：") + nativeSeparators(listFile) + QStringLiteral("（")
                                     + content.message + QStringLiteral("）"),
                                 MessageColour::Red);
    }
    if (content.relativeLines > 0) {
        m_session.messages().add(tr("列表文件中有 %1 行不是完整路径，已忽略。").arg(content.relativeLines),
                                 MessageColour::Red);
    }
    if (content.undecodableLines > 0) {
        m_session.messages().add(
            tr("列表文件中有 %1 行不是有效的 UTF-8 文本，已忽略。").arg(content.undecodableLines),
            MessageColour::Red);
    }
    return run(content.paths);
}

LoadResult Loader::loadTypedPath()
{
    rememberPathText();
    const QString typed = internalSeparators(m_session.pathText.trimmed());
    return run(typed.isEmpty() ? QStringList() : QStringList{typed});
}

void Loader::rememberPathText()
{
    pushHistory(m_session.settings(), keys::kOperation, keys::kPathHistory, m_session.pathText.trimmed());
    m_session.saveSettings();
}

bool Loader::confirmPendingImport()
{
    if (!m_session.pendingImport())
        return true;
    const Question question{QStringLiteral("load.pendingImport"), titleHint(), pendingImportText(),
                            Button::Ok | Button::Cancel, Button::Cancel, Icon::Question};
    return m_session.interaction().ask(question) == Button::Ok;
}

bool Loader::tick(qsizetype done, qsizetype total, const QString& caption)
{
    if (done % kPollEvery != 0)
        return true;
    const int percent = total > 0 ? int(done * 100 / total) : 0;
    m_session.interaction().progress(caption, percent);
    return !m_session.interaction().stopRequested();
}

void Loader::reportSkipped(const QString& text, LoadResult& result)
{
    if (result.skipped < kMaxSkipLines)
        m_session.messages().add(text, MessageColour::Red);
    ++result.skipped;
}

LoadResult Loader::run(const QStringList& paths)
{
    LoadResult result;
    if (!confirmPendingImport()) {
        result.outcome = LoadResult::Outcome::Cancelled;
        return result;
    }
    const SettingsStore& settings = m_session.settings();
    m_recursive = settings.readBool(keys::kOperation, keys::kFlagFindDeepin, false);
    m_folderRows = settings.readBool(keys::kOperation, keys::kFlagAddFolder, true);

    BusyScope busy(m_session.interaction());
    Candidates candidates;
    m_severalSources = paths.size() > 1;
    if (!gather(paths, candidates, result)) {
        result.outcome = LoadResult::Outcome::Cancelled;
        return result;
    }
    return finish(std::move(candidates), result);
}

LoadResult Loader::finish(Candidates candidates, LoadResult result)
{
    if (result.skipped > kMaxSkipLines) {
        m_session.messages().add(
            tr("另有 %1 个对象因同样的原因被跳过。").arg(result.skipped - kMaxSkipLines),
            MessageColour::Red);
    }
    if (!removeDuplicates(candidates, result)) {
        result.outcome = LoadResult::Outcome::Cancelled;
        return result;
    }
    filter(candidates, result);
    if (candidates.empty()) {
        m_session.interaction().status(tr("未发现新对象！"));
        result.outcome = LoadResult::Outcome::NothingNew;
        return result;
    }
    appendRows(candidates, result);
    result.outcome = LoadResult::Outcome::Loaded;
    const QString done = tr("对象载入完毕。");
    m_session.interaction().status(done);
    m_session.messages().add(done);
    if (!m_session.settings().readBool(keys::kOperation, keys::kAddNewFilesIgnoreCmd, false))
        m_session.runAllCommands();
    return result;
}

bool Loader::gather(const QStringList& paths, Candidates& out, LoadResult& result)
{
    for (qsizetype i = 0; i < paths.size(); ++i) {
        if (!tick(i, paths.size(), captionExpand()))
            return false;
        const QString& path = paths[i];
        const auto info = path.contains(QChar(0)) ? std::nullopt : platform::stat(toPlatformPath(path));
        if (!info) {
            reportSkipped(tr("对象不存在：") + nativeSeparators(path), result);
            continue;
        }
        if (!info->isFolder || (m_folderRows && !isRootPath(path))) {
            const PathParts parts = splitPath(path);
            out.rows.push_back(m_rowMaker.make(parts.folder, parts.fileName, *info));
        }
        if (info->isFolder && m_recursive && !expandFolder(path, out, result, captionExpand()))
            return false;
    }
    return true;
}

bool Loader::expandFolder(const QString& folder, Candidates& out, LoadResult& result, const QString& caption)
{
    platform::Path lastFolder;
    QString sharedFolder;
    qsizetype seen = 0;
    m_session.interaction().progress(caption, 0);
    platform::WalkEvents events;
    events.entry = [&](const platform::DirEntry& entry) {
        if (++seen % kPollEvery == 0) {
            m_session.interaction().progress(caption, 0);
            if (m_session.interaction().stopRequested())
                return false;
        }
        if (entry.info.isFolder && !m_folderRows)
            return true;
        if (entry.folder != lastFolder) {
            lastFolder.assign(entry.folder);
            sharedFolder = fromPlatformPath(entry.folder);
        }
        const QStringView name(reinterpret_cast<const QChar*>(entry.name.data()), qsizetype(entry.name.size()));
        out.rows.push_back(m_rowMaker.make(sharedFolder, name, entry.info));
        return true;
    };
    // Room for a whole folder at once: a large folder does not copy the rows again and again.
    events.folderRead = [&](std::size_t entries) {
        if (out.rows.size() + entries > out.rows.capacity())
            out.rows.reserve(std::max(out.rows.size() + entries, out.rows.capacity() * 2));
    };
    events.problem = [&](platform::WalkProblem problem, platform::PathView what) {
        const QString shown = nativeSeparators(fromPlatformPath(what));
        reportSkipped(problem == platform::WalkProblem::Unreadable ? tr("无法读取文件夹：") + shown
                                                                   : tr("文件名编码无法识别，已跳过：") + shown,
                      result);
    };
    return platform::walk(toPlatformPath(folder), true, events);
}

bool Loader::removeDuplicates(Candidates& candidates, LoadResult& result)
{
    Interaction& ui = m_session.interaction();
    RenameList& list = m_session.renameList();
    ui.progress(captionDedupe(), 0);
    result.vanishedRows = list.removeIf([](FileEntry& row) {
        row.state = StateLoaded;
        return !platform::exists(toPlatformPath(row.fullPath()));
    });

    bool dedupe = true;
    if (list.knownCount() > kLargeList && qsizetype(candidates.size()) > kLargeList) {
        const Question first{QStringLiteral("load.largeListDedupe"), titleHint(), largeListText(),
                             Button::Yes | Button::No | Button::Cancel, Button::Yes, Icon::Question};
        const Question confirm{QStringLiteral("load.largeListNoDedupe"), tr("警告"),
                               tr("您选择了新载入的对象不剔除重复而直接载入文件列表。如文件列表中存在重复对象将导致更名时出现错误，继续吗？"),
                               Button::Ok | Button::Cancel, Button::Cancel, Icon::Warning};
        for (;;) {
            const Button answer = ui.ask(first);
            if (answer == Button::Cancel || answer == Button::None)
                return false;
            if (answer == Button::Yes)
                break;
            if (ui.ask(confirm) == Button::Ok) {
                dedupe = false;
                break;
            }
        }
    }
    if (dedupe && (m_severalSources || !list.isEmpty()))
        result.duplicates = dropKnownAndRepeated(candidates, list, m_severalSources);
    m_session.setPendingImport(false);
    return true;
}

void Loader::filter(Candidates& candidates, LoadResult& result)
{
    const NameFilter nameFilter(m_session.keepText, m_session.excludeText);
    if (nameFilter.keepsEverything())
        return;
    m_session.interaction().progress(captionFilter(), 0);
    const qsizetype before = candidates.size();
    std::vector<FileEntry> kept;
    std::vector<QString> keptKeys;
    const bool haveKeys = !candidates.keys.empty();
    for (size_t i = 0; i < candidates.rows.size(); ++i) {
        FileEntry& row = candidates.rows[i];
        if (!nameFilter.passes(row.path, row.fileName(), row.isFolder))
            continue;
        kept.push_back(std::move(row));
        if (haveKeys)
            keptKeys.push_back(std::move(candidates.keys[i]));
    }
    candidates.rows = std::move(kept);
    candidates.keys = std::move(keptKeys);
    result.filteredOut = before - candidates.size();
}

void Loader::appendRows(Candidates& candidates, LoadResult& result)
{
    result.added = candidates.size();
    m_session.interaction().progress(captionAppend(), 0);
    m_session.renameList().appendAll(std::move(candidates.rows), std::move(candidates.keys));
    m_session.interaction().progress(captionAppend(), 100);
}

LoadResult Loader::traverseList()
{
    rememberPathText();
    LoadResult result;
    RenameList& list = m_session.renameList();
    if (list.isEmpty())
        return result;
    QStringList folders;
    for (const FileEntry& row : list.rows()) {
        if (row.isFolder && folderExists(row.fullPath()))
            folders.append(row.fullPath());
    }
    Interaction& ui = m_session.interaction();
    if (folders.isEmpty()) {
        ui.notify(Notice{QStringLiteral("load.noFolderToTraverse"), titleHint(),
                         tr("更名文件列表中未发现文件夹，无需遍历。"), Icon::Information});
        return result;
    }
    if (folders.size() >= 2) {
        const Question question{
            QStringLiteral("load.traverseManyFolders"), titleHint(),
            tr("更名文件列表中发现 2 个或以上的文件夹，分别遍历这些文件夹时须剔除重复对象，视实际情况而定可能会比直接遍历载入方式花更长的处理时间。是否继续？"),
            Button::Yes | Button::No, Button::Yes, Icon::Question};
        if (ui.ask(question) != Button::Yes) {
            result.outcome = LoadResult::Outcome::Cancelled;
            return result;
        }
    }
    if (!confirmPendingImport()) {
        result.outcome = LoadResult::Outcome::Cancelled;
        return result;
    }
    // Traversing brings in everything below the folders, folders included, whatever the
    // load options say.
    m_folderRows = true;
    BusyScope busy(ui);
    Candidates candidates;
    m_severalSources = folders.size() > 1;
    for (const QString& folder : folders) {
        if (!expandFolder(folder, candidates, result, captionTraverse())) {
            result.outcome = LoadResult::Outcome::Cancelled;
            return result;
        }
    }
    return finish(std::move(candidates), result);
}

qsizetype Loader::filterList()
{
    const NameFilter nameFilter(m_session.keepText, m_session.excludeText);
    if (nameFilter.keepsEverything())
        return 0;
    BusyScope busy(m_session.interaction());
    m_session.interaction().progress(captionFilter(), 0);
    return m_session.renameList().removeIf(
        [&](const FileEntry& row) { return !nameFilter.passes(row.path, row.fileName(), row.isFolder); });
}

}  // namespace qp
