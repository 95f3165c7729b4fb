#include "script/PythonWorker.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <cstring>
#include <QHash>
#include <QProcess>

#include "platform/Programs.h"

namespace qp::python {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("PythonWorker", text); }

// Exit codes of the wrapper besides 0.
constexpr int kExitScriptFailed = 2;
constexpr int kExitNoFunction = 3;

constexpr int kPollMs = 20;
constexpr qint64 kMaxAnswerBytes = qint64(256) << 20;
constexpr qsizetype kMaxErrorBytes = 64 * 1024;
constexpr qsizetype kMaxErrorLines = 50;

// The worker: the script's own prints go to standard error, so that standard output carries
// the answer alone; the traceback of a failure starts at the script, not at the wrapper.
const char kWrapper[] = R"PY(import gc, json, os, sys, traceback
answer = os.fdopen(os.dup(1), 'w', encoding='ascii')
os.dup2(2, 1)
sys.stdout = sys.stderr
def fail():
    kind, value, tb = sys.exc_info()
    traceback.print_exception(kind, value, tb.tb_next)
    return 2
def main():
    gc.disable()
    request = json.loads(sys.stdin.buffer.read())
    folders = request['folders']
    rows = []
    for index, name, extension, f, disk, selected, size, modified in request['rows']:
        folder = folders[f]
        rows.append({'index': index, 'name': name, 'extension': extension, 'folder': folder,
                     'path': folder + (name + extension if disk is None else disk),
                     'selected': selected, 'size': size, 'modified': modified})
    gc.enable()
    space = {'__name__': '__main__'}
    try:
        exec(compile(request['script'], 'script.py', 'exec'), space)
        whole, one = space.get('rename'), space.get('rename_one')
        if callable(whole):
            whole(rows)
        elif callable(one):
            for row in rows:
                if row['selected']:
                    name = one(row)
                    if name is not None:
                        row['name'] = name
        else:
            return 3
        result = [[row['name'] for row in rows], [row['extension'] for row in rows]]
    except SystemExit:
        raise
    except BaseException:
        return fail()
    json.dump(result, answer)
    answer.close()
    return 0
sys.exit(main())
)PY";

void appendUtf8(QByteArray& out, char32_t c)
{
    if (c < 0x800) {
        out += char(0xC0 | (c >> 6));
    } else {
        if (c < 0x10000) {
            out += char(0xE0 | (c >> 12));
        } else {
            out += char(0xF0 | (c >> 18));
            out += char(0x80 | ((c >> 12) & 0x3F));
        }
        out += char(0x80 | ((c >> 6) & 0x3F));
    }
    out += char(0x80 | (c & 0x3F));
}

void appendEscape(QByteArray& out, char16_t c)
{
    static const char hex[] = "0123456789abcdef";
    out += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4)
        out += hex[(c >> shift) & 0xF];
}

// A JSON string. Text that is valid UTF-16 goes through the library's UTF-8 encoder and
// only the characters JSON needs escaped are looked at one by one; a surrogate without its
// partner (possible in Windows names) is escaped, which JSON allows and UTF-8 does not.
void appendString(QByteArray& out, QStringView s)
{
    out += '"';
    if (s.isValidUtf16()) {
        const QByteArray utf8 = s.toUtf8();
        const char* run = utf8.constData();
        const char* const end = run + utf8.size();
        for (const char* p = run; p != end; ++p) {
            const unsigned char c = static_cast<unsigned char>(*p);
            if (c >= 0x20 && c != '"' && c != '\\')
                continue;
            out.append(run, p - run);
            if (c < 0x20) {
                appendEscape(out, c);
            } else {
                out += '\\';
                out += char(c);
            }
            run = p + 1;
        }
        out.append(run, end - run);
        out += '"';
        return;
    }
    for (qsizetype i = 0; i < s.size(); ++i) {
        const char16_t c = s[i].unicode();
        if (c < 0x80) {
            if (c == u'"' || c == u'\\') {
                out += '\\';
                out += char(c);
            } else if (c < 0x20) {
                appendEscape(out, c);
            } else {
                out += char(c);
            }
        } else if (QChar::isHighSurrogate(c) && i + 1 < s.size() && s[i + 1].isLowSurrogate()) {
            appendUtf8(out, QChar::surrogateToUcs4(c, s[i + 1].unicode()));
            ++i;
        } else if (QChar::isSurrogate(c)) {
            appendEscape(out, c);
        } else {
            appendUtf8(out, c);
        }
    }
    out += '"';
}

// Reads the worker's answer, two lists of JSON strings. Written for this one shape, because a
// general JSON document of 200,000 strings costs several times as much to build and walk.
// Anything else in the answer is refused.
class AnswerReader {
public:
    explicit AnswerReader(const QByteArray& json) : m_p(json.constData()), m_end(m_p + json.size()) {}

    bool symbol(char c)
    {
        space();
        if (m_p == m_end || *m_p != c)
            return false;
        ++m_p;
        return true;
    }
    bool atEnd()
    {
        space();
        return m_p == m_end;
    }
    // "[" strings "]"; `badItem` is the position of an item that is no string.
    bool strings(std::vector<QString>& list, qsizetype& badItem)
    {
        if (!symbol('['))
            return false;
        if (symbol(']'))
            return true;
        do {
            space();
            if (m_p == m_end || *m_p != '"') {
                badItem = qsizetype(list.size());
                return false;
            }
            QString text;
            if (!string(text))
                return false;
            list.push_back(std::move(text));
        } while (symbol(','));
        return symbol(']');
    }

private:
    void space()
    {
        while (m_p != m_end && (*m_p == ' ' || *m_p == '\n' || *m_p == '\r' || *m_p == '\t'))
            ++m_p;
    }
    static int hexValue(char c)
    {
        if (c >= '0' && c <= '9')
            return c - '0';
        c = char(c | 0x20);
        return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
    }
    bool string(QString& out)
    {
        ++m_p;  // the opening quote
        const char* run = m_p;
        auto flush = [&] {
            if (m_p != run)
                out += QString::fromUtf8(run, m_p - run);
        };
        while (m_p != m_end) {
            const char c = *m_p;
            if (c == '"') {
                flush();
                ++m_p;
                return true;
            }
            if (static_cast<unsigned char>(c) < 0x20)
                return false;
            if (c != '\\') {
                ++m_p;
                continue;
            }
            flush();
            if (!escape(out))
                return false;
            run = m_p;
        }
        return false;
    }
    bool escape(QString& out)
    {
        if (m_end - m_p < 2)
            return false;
        const char c = m_p[1];
        m_p += 2;
        static const char from[] = "\"\\/bfnrt";
        static const char16_t to[] = {u'"', u'\\', u'/', u'\b', u'\f', u'\n', u'\r', u'\t'};
        if (const char* found = std::strchr(from, c); found && c) {
            out += QChar(to[found - from]);
            return true;
        }
        if (c != 'u' || m_end - m_p < 4)
            return false;
        int unit = 0;
        for (int i = 0; i < 4; ++i) {
            const int d = hexValue(m_p[i]);
            if (d < 0)
                return false;
            unit = unit << 4 | d;
        }
        m_p += 4;
        out += QChar(char16_t(unit));
        return true;
    }

    const char* m_p;
    const char* const m_end;
};

QStringList errorLines(const QByteArray& bytes)
{
    QStringList lines = QString::fromUtf8(bytes).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (QString& line : lines) {
        if (line.endsWith(u'\r'))
            line.chop(1);
    }
    if (lines.size() > kMaxErrorLines) {
        const qsizetype more = lines.size() - kMaxErrorLines;
        lines.resize(kMaxErrorLines);
        lines.append(tr("（另有 %1 行未显示）").arg(more));
    }
    return lines;
}

bool start(QProcess& process)
{
    if (process.waitForStarted(10'000))
        return true;
    process.kill();
    process.waitForFinished(1000);
    return false;
}

Result failure(const QString& error)
{
    Result r;
    r.error = error;
    return r;
}

}  // namespace

QList<QStringList> interpreterCandidates(const QString& configured)
{
    if (!configured.trimmed().isEmpty())
        return {{configured.trimmed()}};
    QList<QStringList> candidates;
    for (const std::vector<std::u16string>& command : platform::pythonCommands()) {
        QStringList words;
        for (const std::u16string& word : command)
            words.append(QString::fromStdU16String(word));
        candidates.append(words);
    }
    return candidates;
}

QByteArray requestJson(const QString& script, const std::vector<Row>& rows)
{
    QByteArray out;
    out.reserve(qsizetype(64 + script.size() * 2 + rows.size() * 80));
    out += "{\"script\":";
    appendString(out, script);
    // Rows share few folders: each is written once and named by its number.
    QHash<QString, int> folders;
    out += ",\"folders\":[";
    for (const Row& r : rows) {
        if (folders.contains(r.folder))
            continue;
        if (!folders.isEmpty())
            out += ',';
        appendString(out, r.folder);
        folders.insert(r.folder, int(folders.size()));
    }
    out += "],\"rows\":[";
    for (size_t i = 0; i < rows.size(); ++i) {
        const Row& r = rows[i];
        if (i)
            out += ',';
        out += '[';
        out += QByteArray::number(r.index);
        out += ',';
        appendString(out, r.name);
        out += ',';
        appendString(out, r.extension);
        out += ',';
        out += QByteArray::number(folders.value(r.folder));
        out += ',';
        const bool sameName = r.diskName.size() == r.name.size() + r.extension.size() && r.diskName.startsWith(r.name)
            && r.diskName.endsWith(r.extension);
        if (sameName)
            out += "null";
        else
            appendString(out, r.diskName);
        out += r.selected ? ",true," : ",false,";
        out += QByteArray::number(r.size);
        out += ',';
        if (r.modified.isEmpty())
            out += "null";
        else
            appendString(out, r.modified);
        out += ']';
    }
    out += "]}";
    return out;
}

Result parseAnswer(const QByteArray& json, size_t rowCount)
{
    AnswerReader reader(json);
    std::vector<QString> lists[2];
    qsizetype bad[2] = {-1, -1};
    bool read = reader.symbol('[') && reader.strings(lists[0], bad[0]);
    read = read && reader.symbol(',') && reader.strings(lists[1], bad[1]) && reader.symbol(']') && reader.atEnd();
    for (int which = 0; which < 2; ++which) {
        if (bad[which] >= 0) {
            return failure(tr("Python 脚本给第 %1 个文件的%2不是字符串，所有文件名保持不变。")
                               .arg(bad[which] + 1)
                               .arg(which == 0 ? tr("文件名") : tr("扩展名")));
        }
    }
    if (!read)
        return failure(tr("Python 脚本返回的结果无法识别，所有文件名保持不变。"));
    for (const std::vector<QString>& list : lists) {
        if (list.size() != rowCount) {
            return failure(tr("Python 脚本返回了 %1 个结果，应为 %2 个，所有文件名保持不变。").arg(list.size()).arg(rowCount));
        }
    }
    Result result;
    result.names.reserve(rowCount);
    for (size_t i = 0; i < rowCount; ++i)
        result.names.push_back({std::move(lists[0][i]), std::move(lists[1][i])});
    result.ok = true;
    return result;
}

Result run(const QString& script, const std::vector<Row>& rows, const Options& options)
{
    QProcess process;
    bool started = false;
    const QList<QStringList> candidates = interpreterCandidates(options.configuredInterpreter);
    QStringList tried;
    for (const QStringList& candidate : candidates) {
        process.setProgram(candidate.first());
        process.setArguments(candidate.mid(1)
                             + QStringList{QStringLiteral("-I"), QStringLiteral("-X"), QStringLiteral("utf8"),
                                           QStringLiteral("-c"), QString::fromUtf8(kWrapper)});
        process.start();
        tried.append(candidate.join(u' '));
        if ((started = start(process)))
            break;
    }
    if (!started) {
        Result r = failure(tr("找不到 Python 解释器（试过：%1）。请安装 Python 3，或在选项设置中指定 Python 程序；所有文件名保持不变。")
                               .arg(tried.join(QStringLiteral("、"))));
        r.interpreterMissing = true;
        return r;
    }

    process.write(requestJson(script, rows));
    process.closeWriteChannel();
    QElapsedTimer clock;
    clock.start();
    QByteArray errors;
    QString stopped;
    while (process.state() != QProcess::NotRunning) {
        process.waitForFinished(kPollMs);
        errors += process.readAllStandardError();
        if (errors.size() > kMaxErrorBytes)
            errors.truncate(kMaxErrorBytes);
        if (process.bytesAvailable() > kMaxAnswerBytes)
            stopped = tr("Python 脚本的输出过多，已停止，所有文件名保持不变。");
        else if (clock.elapsed() > options.timeLimitMs)
            stopped = tr("Python 脚本运行超过时间上限（%1 秒），已停止，所有文件名保持不变。").arg(options.timeLimitMs / 1000.0);
        else if (options.stopRequested && options.stopRequested())
            stopped = tr("Python 脚本已按要求停止，所有文件名保持不变。");
        if (!stopped.isEmpty()) {
            process.kill();
            process.waitForFinished(5000);
        }
    }
    errors += process.readAllStandardError();

    Result result;
    if (!stopped.isEmpty())
        result = failure(stopped);
    else if (process.exitStatus() != QProcess::NormalExit)
        result = failure(tr("Python 进程异常结束，所有文件名保持不变。"));
    else if (process.exitCode() == kExitNoFunction)
        result = failure(tr("Python 脚本中没有定义 rename(rows) 或 rename_one(row) 函数，所有文件名保持不变。"));
    else if (process.exitCode() == kExitScriptFailed)
        result = failure(tr("Python 脚本出错，所有文件名保持不变："));
    else if (process.exitCode() != 0)
        result = failure(tr("Python 脚本以退出码 %1 结束，所有文件名保持不变。").arg(process.exitCode()));
    else if (const QByteArray answer = process.readAllStandardOutput(); answer.isEmpty())
        result = failure(tr("Python 脚本没有给出结果就结束了，所有文件名保持不变。"));
    else
        result = parseAnswer(answer, rows.size());
    result.errorOutput = errorLines(errors.left(kMaxErrorBytes));
    return result;
}

}  // namespace qp::python
