#include "execution/Snapshot.h"

#include <QHash>
#include <QStringDecoder>

#include "core/PathText.h"
#include "core/ProgrammeFile.h"
#include "core/TextFiles.h"
#include "execution/FileOperations.h"

namespace qp {

namespace {

const QByteArray kCrLf = QByteArrayLiteral("\r\n");
const QByteArray kPlanHeading = QByteArrayLiteral("\r\n[Rename Plan]\r\n");
const QByteArray kJournalHeading = QByteArrayLiteral("\r\n[Rename Journal]\r\n");

}  // namespace

QByteArray snapshotHeader(bool foundExist, bool foundExistAndExchange, bool unfinished)
{
    QStringList header = text::programmeHeader(QStringLiteral(";更名方案文件 或 快照文件（用于撤销更名）"),
                                               QStringLiteral(";由 Quillet Pro 自动生成"));
    header << QString() << QStringLiteral("[Rename Config]")
           << QStringLiteral("FoundExist=") + (foundExist ? u'1' : u'0')
           << QStringLiteral("FoundExistAndExchange=") + (foundExistAndExchange ? u'1' : u'0');
    if (unfinished)
        header << QStringLiteral("Unfinished=1");
    header << QString() << QStringLiteral("[Rename Programme]");
    return text::withBomAndCrlf(header);
}

void appendProgrammeLine(QByteArray& out, const QString& folder, const QString& name, const QString& giveBack)
{
    text::appendNameFieldUtf8(out, nativeSeparators(folder));
    text::appendNameFieldUtf8(out, name);
    out += '=';
    text::appendNameFieldUtf8(out, giveBack);
    out += kCrLf;
}

QByteArray snapshotHead(const SnapshotData& data)
{
    QByteArray bytes = snapshotHeader(data.foundExist, data.foundExistAndExchange, data.unfinished);
    qsizetype size = bytes.size();
    for (const SnapshotLine& line : data.lines)
        size += (line.path.size() + line.name.size()) * 3 / 2 + 3;
    bytes.reserve(size);
    for (const SnapshotLine& line : data.lines)
        appendProgrammeLine(bytes, line.path, QString(), line.name);
    return bytes;
}

namespace {

void appendMark(QByteArray& out, char kind, qsizetype number)
{
    char digits[24];
    int n = 0;
    do {
        digits[n++] = char('0' + number % 10);
        number /= 10;
    } while (number > 0);
    out += kind;
    while (n > 0)
        out += digits[--n];
    out += kCrLf;
}

QByteArray markLine(char kind, qsizetype k)
{
    QByteArray line;
    appendMark(line, kind, k + 1);
    return line;
}

PlannedMove moveFrom(QStringView key, QStringView value)
{
    const bool folder = key.startsWith(u'*');
    return PlannedMove{internalSeparators(text::fromNameField(folder ? key.sliced(1) : key)),
                       internalSeparators(text::fromNameField(value)), folder};
}

// A mark "+k", "-k" or "!k" of the journal; false for any other line.
bool readMark(QStringView line, SnapshotData& data)
{
    line = text::trimBlanks(line);
    if (line.size() < 2 || (line[0] != u'+' && line[0] != u'-' && line[0] != u'!' && line[0] != u'^'))
        return false;
    bool ok = false;
    const qsizetype number = line.sliced(1).toLongLong(&ok);
    if (!ok || number < 1)
        return true;  // a damaged mark says nothing
    if (line[0] == u'^')
        data.firstPass = number;
    else
        (line[0] == u'+' ? data.made : line[0] == u'-' ? data.failed : data.givenUp).push_back(number - 1);
    return true;
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

void appendMoveLine(QByteArray& out, const QString& from, const QString& to, bool folder)
{
    if (folder)
        out += '*';
    text::appendNameFieldUtf8(out, nativeSeparators(from));
    out += '=';
    text::appendNameFieldUtf8(out, nativeSeparators(to));
    out += kCrLf;
}

void appendMoveLine(QByteArray& out, const QString& folder, const QString& fromName, const QString& toName,
                    bool isFolder)
{
    const QString shown = nativeSeparators(folder);
    if (isFolder)
        out += '*';
    text::appendNameFieldUtf8(out, shown);
    text::appendNameFieldUtf8(out, fromName);
    out += '=';
    text::appendNameFieldUtf8(out, shown);
    text::appendNameFieldUtf8(out, toName);
    out += kCrLf;
}

QByteArray snapshotBytes(const SnapshotData& data)
{
    QByteArray bytes = snapshotHead(data);
    if (!data.unfinished)
        return bytes;
    bytes += kPlanHeading;
    for (qsizetype k = 0; k < data.planMoves; ++k)
        appendMoveLine(bytes, data.moves[size_t(k)].from, data.moves[size_t(k)].to, data.moves[size_t(k)].folder);
    bytes += kJournalHeading;
    if (data.firstPass > 0)
        appendMark(bytes, '^', data.firstPass);
    for (qsizetype k : data.made)
        bytes += markLine('+', k);
    for (qsizetype k : data.failed)
        bytes += markLine('-', k);
    for (qsizetype k : data.givenUp)
        bytes += markLine('!', k);
    for (size_t k = size_t(data.planMoves); k < data.moves.size(); ++k)
        appendMoveLine(bytes, data.moves[k].from, data.moves[k].to, data.moves[k].folder);
    return bytes;
}

std::optional<SnapshotData> parseSnapshot(QStringView text)
{
    SnapshotData data;
    bool programme = false;
    bool journal = false;
    std::vector<PlannedMove> extra;  // renames outside the plan, after it whatever the file order
    forEachRenameFileLine(text, [&](RenameSection section, QStringView key, QStringView value) {
        switch (section) {
        case RenameSection::Config: {
            key = text::trimBlanks(key);
            const bool on = text::trimBlanks(value) == u"1";
            if (key.compare(u"FoundExist", Qt::CaseInsensitive) == 0)
                data.foundExist = on;
            else if (key.compare(u"FoundExistAndExchange", Qt::CaseInsensitive) == 0)
                data.foundExistAndExchange = on;
            else if (key.compare(u"Unfinished", Qt::CaseInsensitive) == 0)
                data.unfinished = on;
            break;
        }
        case RenameSection::Programme:
            programme = true;
            data.lines.push_back(SnapshotLine{internalSeparators(text::fromNameField(key)), text::fromNameField(value)});
            break;
        case RenameSection::Plan:
            data.moves.push_back(moveFrom(key, value));
            break;
        case RenameSection::Journal: {
            journal = true;
            if (value.isNull() || readMark(value, data))
                break;
            const qsizetype eq = value.indexOf(u'=');
            QStringView from = value.first(qMax<qsizetype>(eq, 0));
            while (!from.isEmpty() && (from.front() == u' ' || from.front() == u'\t'))
                from = from.sliced(1);
            if (eq > 0 && !from.isEmpty())
                extra.push_back(moveFrom(from, value.sliced(eq + 1)));
            break;
        }
        }
    });
    if (!programme)
        return std::nullopt;
    data.planMoves = qsizetype(data.moves.size());
    data.moves.insert(data.moves.end(), std::make_move_iterator(extra.begin()), std::make_move_iterator(extra.end()));
    data.unfinished = data.unfinished || journal || data.planMoves > 0;
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

// ---------------------------------------------------------------------------------------
// Where everything is after an unfinished batch.

namespace {

enum class MoveState : unsigned char { Unknown, Made, Failed, Never };

// The renames known to have been made after the one being decided, in time order, and
// what they say about a path at that earlier time.
class LaterMoves {
public:
    explicit LaterMoves(FileOperations& ops) : m_ops(ops) {}

    void addEarlier(const PlannedMove& move) { m_reversed.push_back(&move); }

    // Whether an object was at `path` before the later renames: follow it through them to
    // where it is now. A later rename onto `path` means nothing was there (none replaces).
    bool existedAt(QString path)
    {
        QString key = pathKey(path);
        for (auto it = m_reversed.rbegin(); it != m_reversed.rend(); ++it) {
            const PlannedMove& move = **it;
            const QString from = pathKey(move.from);
            if (key == from) {
                path = move.to;
            } else if (move.folder && key.startsWith(from + u'/')) {
                path = move.to + path.mid(move.from.size());
            } else if (key == pathKey(move.to)) {
                return false;
            } else {
                continue;
            }
            key = pathKey(path);
        }
        return m_ops.exists(path);
    }

private:
    FileOperations& m_ops;
    std::vector<const PlannedMove*> m_reversed;
};

std::vector<MoveState> decideMoves(const SnapshotData& data, FileOperations& ops)
{
    const qsizetype n = qsizetype(data.moves.size());
    std::vector<MoveState> state(size_t(n), MoveState::Unknown);
    auto set = [&](qsizetype k, MoveState s) {
        if (k >= 0 && k < n)
            state[size_t(k)] = s;
    };
    for (qsizetype k : data.givenUp)
        for (qsizetype j = k; j < data.planMoves; ++j)
            set(j, MoveState::Never);
    for (qsizetype k : data.failed)
        set(k, MoveState::Failed);
    for (qsizetype k : data.made)
        set(k, MoveState::Made);
    // The renames after the first pass start only once every temporary is made and marked.
    const qsizetype firstPass = std::min(data.firstPass, data.planMoves);
    for (qsizetype k = 0; k < firstPass; ++k) {
        if (state[size_t(k)] != MoveState::Made) {
            for (qsizetype j = firstPass; j < data.planMoves; ++j)
                set(j, MoveState::Never);
            break;
        }
    }
    // Backwards, so that each unmarked rename is judged by the disk as it was right after it:
    // the later made renames are followed to where their objects are now.
    LaterMoves later(ops);
    for (qsizetype k = n - 1; k >= 0; --k) {
        const PlannedMove& move = data.moves[size_t(k)];
        if (state[size_t(k)] == MoveState::Unknown)
            state[size_t(k)] = later.existedAt(move.to) && !later.existedAt(move.from) ? MoveState::Made
                                                                                      : MoveState::Failed;
        if (state[size_t(k)] == MoveState::Made)
            later.addEarlier(move);
    }
    return state;
}

}  // namespace

std::vector<SnapshotLine> resolveJournal(const SnapshotData& data, FileOperations& ops)
{
    std::vector<SnapshotLine> lines = data.lines;
    QHash<QString, size_t> byKey;
    byKey.reserve(qsizetype(lines.size()));
    for (size_t i = 0; i < lines.size(); ++i)
        byKey.insert(pathKey(lines[i].path), i);

    auto applyMove = [&](const PlannedMove& move) {
        const auto found = byKey.constFind(pathKey(move.from));
        if (found != byKey.cend()) {
            const size_t i = *found;
            byKey.erase(found);
            lines[i].path = move.to;
            byKey.insert(pathKey(move.to), i);
        }
        if (!move.folder)
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
    const std::vector<MoveState> state = decideMoves(data, ops);
    for (size_t k = 0; k < data.moves.size(); ++k)
        if (state[k] == MoveState::Made)
            applyMove(data.moves[k]);
    return lines;
}

// ---------------------------------------------------------------------------------------

Journal::~Journal()
{
    if (m_active)
        m_ops.closeAppend();
}

bool Journal::openForMarks(const QString& path, qsizetype moves)
{
    m_path = path;
    m_moves = moves;
    m_pending.clear();
    m_pendingCount = 0;
    m_lastWrite = std::chrono::steady_clock::now();
    m_active = true;
    return true;
}

namespace {

void appendJournalHeading(QByteArray& out, qsizetype firstPass)
{
    out += kJournalHeading;
    if (firstPass > 0)
        appendMark(out, '^', firstPass);
}

}  // namespace

void appendPlanHeading(QByteArray& out) { out += kPlanHeading; }

bool Journal::writeInPieces(const QString& path, const Producer& produce, qsizetype firstPass, bool journalHeading,
                            QString* error)
{
    constexpr qsizetype kPiece = qsizetype(1) << 20;
    if (!m_ops.beginPieces(path, error))
        return false;
    QByteArray out;
    out.reserve(kPiece + 4096);
    bool ok = true;
    const std::function<void()> spill = [&] {
        if (out.size() < kPiece)
            return;
        ok = ok && m_ops.writePiece(out, error);
        out.truncate(0);
    };
    produce(out, spill);
    if (journalHeading)
        appendJournalHeading(out, firstPass);
    ok = ok && m_ops.writePiece(out, error);
    return ok && m_ops.endPieces(error);
}

bool Journal::begin(const QString& path, const Producer& produce, qsizetype planMoves, qsizetype firstPass,
                    QString* error)
{
    if (!writeInPieces(path, produce, firstPass, true, error))
        return false;
    if (!m_ops.openAppend(path)) {
        if (error)
            *error = QStringLiteral("cannot append to ") + path;
        return false;
    }
    m_path = path;
    return openForMarks(path, planMoves);
}

bool Journal::beginOnFinished(const QString& path, const QByteArray& planLines, qsizetype firstPass)
{
    if (!m_ops.openAppend(path))
        return false;
    QByteArray bytes = kPlanHeading + planLines;
    appendJournalHeading(bytes, firstPass);
    if (!m_ops.append(bytes) || !m_ops.syncAppend()) {
        m_ops.closeAppend();
        return false;
    }
    return openForMarks(path, planLines.count('\n'));
}

void Journal::mark(qsizetype k, bool made)
{
    if (!m_active)
        return;
    appendMark(m_pending, made ? '+' : '-', k + 1);
    const auto now = std::chrono::steady_clock::now();
    if (++m_pendingCount >= kMarksPerWrite || now - m_lastWrite >= kMarkInterval)
        flush();
}

bool Journal::flush()
{
    m_lastWrite = std::chrono::steady_clock::now();
    if (m_pending.isEmpty())
        return true;
    const bool ok = m_ops.append(m_pending);
    m_pending.clear();
    m_pendingCount = 0;
    return ok;
}

bool Journal::giveUpAt(qsizetype k)
{
    if (!m_active)
        return true;
    m_pending += markLine('!', k);
    return flush();
}

qsizetype Journal::extraMove(const QString& from, const QString& to, bool folder)
{
    if (!m_active)
        return -1;
    appendMoveLine(m_pending, from, to, folder);
    if (!flush())
        return -1;
    return m_moves++;
}

bool Journal::finish(const SnapshotData& finished, QString* error)
{
    SnapshotData data = finished;
    data.unfinished = false;
    return finish([&](QByteArray& out, const std::function<void()>&) { out += snapshotHead(data); }, error);
}

bool Journal::finish(const Producer& produce, QString* error)
{
    if (m_active)
        m_ops.closeAppend();
    m_active = false;
    return writeInPieces(m_path, produce, 0, false, error);
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
