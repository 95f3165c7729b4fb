#include "execution/Snapshot.h"

#include <QHash>
#include <QStringDecoder>

#include "core/PathText.h"
#include "core/TextFiles.h"
#include "execution/FileOperations.h"

namespace qp {

namespace {

const QString kEncodedEquals = QStringLiteral("<61>");
const QString kConfig = QStringLiteral("Rename Config");
const QString kProgramme = QStringLiteral("Rename Programme");
const QString kJournal = QStringLiteral("Rename Journal");

void appendEncoded(QString& out, const QString& text)
{
    for (QChar c : text) {
        if (c == u'=')
            out += kEncodedEquals;
        else if (c != u'\r' && c != u'\n')
            out += c;
    }
}

QString decoded(QStringView text)
{
    QString out = text.toString();
    out.replace(kEncodedEquals, QStringLiteral("="));
    return out;
}

QStringView trimmed(QStringView s)
{
    while (!s.isEmpty() && (s.front() == u' ' || s.front() == u'\t'))
        s = s.sliced(1);
    while (!s.isEmpty() && (s.back() == u' ' || s.back() == u'\t'))
        s.chop(1);
    return s;
}

}  // namespace

QString snapshotFolder(const QString& settingsFolder, const QString& runStamp)
{
    QString folder = settingsFolder;
    if (!folder.isEmpty() && !folder.endsWith(u'/'))
        folder += u'/';
    return folder + QStringLiteral("AutoSnapshot/") + runStamp + u'/';
}

QString snapshotPath(const QString& settingsFolder, const QString& runStamp, int counter)
{
    return snapshotFolder(settingsFolder, runStamp) + QString::number(counter) + QStringLiteral(".txt");
}

QByteArray snapshotBytes(const SnapshotData& data)
{
    QStringList header = text::programmeHeader(QStringLiteral(";更名方案文件 或 快照文件（用于撤销更名）"),
                                               QStringLiteral(";由 Quillet Pro 自动生成"));
    header << QString() << QStringLiteral("[Rename Config]")
           << QStringLiteral("FoundExist=") + (data.foundExist ? u'1' : u'0')
           << QStringLiteral("FoundExistAndExchange=") + (data.foundExistAndExchange ? u'1' : u'0');
    QString text;
    qsizetype size = 1024;
    for (const SnapshotLine& line : data.lines)
        size += line.path.size() + line.name.size() + 4;
    text.reserve(size);
    for (const QString& line : header)
        text += line + QStringLiteral("\r\n");
    if (data.unfinished)
        text += QStringLiteral("Unfinished=1\r\n");
    text += QStringLiteral("\r\n[Rename Programme]\r\n");
    for (const SnapshotLine& line : data.lines) {
        appendEncoded(text, nativeSeparators(line.path));
        text += u'=';
        appendEncoded(text, line.name);
        text += QStringLiteral("\r\n");
    }
    if (data.unfinished) {
        text += QStringLiteral("\r\n[Rename Journal]\r\n");
        for (const JournalMove& move : data.moves) {
            text += QString::fromUtf8(journalMove(move.from, move.to));
            if (move.done)
                text += QString::fromUtf8(journalDone(move.folder));
        }
    }
    return QByteArray("\xEF\xBB\xBF") + text.toUtf8();
}

QByteArray journalMove(const QString& from, const QString& to)
{
    QString line;
    line.reserve(from.size() + to.size() + 4);
    appendEncoded(line, nativeSeparators(from));
    line += u'=';
    appendEncoded(line, nativeSeparators(to));
    line += QStringLiteral("\r\n");
    return line.toUtf8();
}

QByteArray journalDone(bool folder) { return folder ? QByteArray("+D\r\n") : QByteArray("+\r\n"); }

std::optional<SnapshotData> parseSnapshot(QStringView text)
{
    SnapshotData data;
    if (!text.isEmpty() && text.front() == u'\uFEFF')
        text = text.sliced(1);
    enum class In { Other, Config, Programme, Journal } in = In::Other;
    bool sawProgramme = false;
    qsizetype pos = 0;
    while (pos < text.size()) {
        qsizetype end = pos;
        while (end < text.size() && text[end] != u'\n' && text[end] != u'\r')
            ++end;
        const QStringView line = text.sliced(pos, end - pos);
        pos = (end + 1 < text.size() && text[end] == u'\r' && text[end + 1] == u'\n') ? end + 2 : end + 1;
        const QStringView bare = trimmed(line);
        if (bare.isEmpty() || bare.front() == u';' || bare.front() == u'#')
            continue;
        if (bare.front() == u'[' && bare.back() == u']') {
            const QStringView name = trimmed(bare.sliced(1, bare.size() - 2));
            in = name.compare(kConfig, Qt::CaseInsensitive) == 0      ? In::Config
                 : name.compare(kProgramme, Qt::CaseInsensitive) == 0 ? In::Programme
                 : name.compare(kJournal, Qt::CaseInsensitive) == 0   ? In::Journal
                                                                      : In::Other;
            if (in == In::Journal)
                data.unfinished = true;
            continue;
        }
        if (in == In::Journal && bare.front() == u'+') {
            if (!data.moves.empty()) {
                data.moves.back().done = true;
                data.moves.back().folder = bare == u"+D";
            }
            continue;
        }
        const qsizetype eq = line.indexOf(u'=');
        if (eq < 0)
            continue;
        const QStringView key = trimmed(line.first(eq));
        const QStringView value = line.sliced(eq + 1);
        switch (in) {
        case In::Config: {
            const bool on = trimmed(value) == u"1";
            if (key.compare(u"FoundExist", Qt::CaseInsensitive) == 0)
                data.foundExist = on;
            else if (key.compare(u"FoundExistAndExchange", Qt::CaseInsensitive) == 0)
                data.foundExistAndExchange = on;
            else if (key.compare(u"Unfinished", Qt::CaseInsensitive) == 0)
                data.unfinished = on;
            break;
        }
        case In::Programme:
            if (!key.isEmpty()) {
                sawProgramme = true;
                data.lines.push_back(SnapshotLine{internalSeparators(decoded(key)), decoded(value)});
            }
            break;
        case In::Journal:
            data.moves.push_back(JournalMove{internalSeparators(decoded(key)), internalSeparators(decoded(value))});
            break;
        case In::Other:
            break;
        }
    }
    if (!sawProgramme)
        return std::nullopt;
    return data;
}

std::optional<SnapshotData> readSnapshot(const QString& path, FileOperations& ops)
{
    const auto bytes = ops.readFile(path);
    if (!bytes)
        return std::nullopt;
    QStringDecoder decoder(QStringConverter::Utf8);
    const QString text = decoder.decode(*bytes);
    return parseSnapshot(text);
}

std::vector<SnapshotLine> resolveJournal(const SnapshotData& data, FileOperations& ops)
{
    std::vector<SnapshotLine> lines = data.lines;
    QHash<QString, size_t> byKey;
    byKey.reserve(qsizetype(lines.size()));
    for (size_t i = 0; i < lines.size(); ++i)
        byKey.insert(pathKey(lines[i].path), i);

    auto applyMove = [&](const JournalMove& move, bool folder) {
        const auto found = byKey.constFind(pathKey(move.from));
        if (found != byKey.cend()) {
            const size_t i = *found;
            byKey.erase(found);
            lines[i].path = move.to;
            byKey.insert(pathKey(move.to), i);
        }
        if (!folder)
            return;
        // Everything below the folder went with it (recovery only: a scan per folder).
        const QString oldKey = pathKey(move.from) + u'/';
        for (size_t i = 0; i < lines.size(); ++i) {
            if (!pathKey(lines[i].path).startsWith(oldKey))
                continue;
            byKey.remove(pathKey(lines[i].path));
            lines[i].path = move.to + lines[i].path.mid(move.from.size());
            byKey.insert(pathKey(lines[i].path), i);
        }
    };

    for (size_t m = 0; m < data.moves.size(); ++m) {
        const JournalMove& move = data.moves[m];
        if (move.done) {
            applyMove(move, move.folder);
        } else if (m + 1 == data.moves.size()) {
            // Written just before the run ended: done when its target is there and its
            // source is gone (a rename that never replaces cannot leave both or neither).
            const auto target = ops.stat(move.to);
            if (target && !ops.exists(move.from))
                applyMove(move, target->isFolder);
        }
    }
    return lines;
}

Journal::~Journal()
{
    if (m_active)
        m_ops.closeAppend();
}

bool Journal::begin(const QString& path, SnapshotData start, QString* error)
{
    m_path = path;
    start.unfinished = true;
    if (!m_ops.writeFileAtomically(path, snapshotBytes(start), error))
        return false;
    if (!m_ops.openAppend(path)) {
        if (error)
            *error = QStringLiteral("cannot append to ") + path;
        return false;
    }
    m_active = true;
    m_pendingDone = 0;
    return true;
}

bool Journal::beginOnFinished(const QString& path)
{
    m_path = path;
    if (!m_ops.openAppend(path))
        return false;
    m_active = true;
    m_pendingDone = 0;
    return m_ops.append(QByteArrayLiteral("\r\n[Rename Journal]\r\n"));
}

bool Journal::move(const QString& from, const QString& to)
{
    if (!m_active)
        return true;
    // The mark of the previous rename goes out with this line: one write per rename.
    QByteArray bytes = m_pendingDone ? journalDone(m_pendingDone == 2) : QByteArray();
    m_pendingDone = 0;
    bytes += journalMove(from, to);
    return m_ops.append(bytes);
}

bool Journal::finish(const SnapshotData& finished, QString* error)
{
    if (m_active)
        m_ops.closeAppend();
    m_active = false;
    SnapshotData data = finished;
    data.unfinished = false;
    data.moves.clear();
    return m_ops.writeFileAtomically(m_path, snapshotBytes(data), error);
}

void Journal::discard()
{
    if (m_active)
        m_ops.closeAppend();
    m_active = false;
    m_ops.removeFile(m_path);
}

QStringList findUnfinishedJournals(const QString& settingsFolder, FileOperations& ops)
{
    QStringList found;
    QString root = settingsFolder;
    if (!root.isEmpty() && !root.endsWith(u'/'))
        root += u'/';
    root += QStringLiteral("AutoSnapshot");
    QStringList candidates;
    platform::WalkEvents events;
    events.entry = [&](const platform::DirEntry& entry) {
        if (!entry.info.isFolder) {
            const QString name = fromPlatformPath(entry.name);
            if (name.endsWith(QStringLiteral(".txt"), Qt::CaseInsensitive))
                candidates.append(fromPlatformPath(entry.folder) + name);
        }
        return true;
    };
    platform::walk(toPlatformPath(root), true, events);
    candidates.sort();
    for (const QString& path : std::as_const(candidates)) {
        const auto bytes = ops.readFile(path);
        if (!bytes)
            continue;
        // Only the head up to the programme section is needed to see the mark.
        const qsizetype end = bytes->indexOf("[Rename Programme]");
        const QByteArray head = end < 0 ? *bytes : bytes->left(end);
        if (head.contains("\nUnfinished=1") || bytes->contains("\n[Rename Journal]"))
            found.append(path);
    }
    return found;
}

}  // namespace qp
