#include "commands/ScriptCommands.h"

#include <QCoreApplication>
#include <unordered_map>

#include "commands/RegexSubstitution.h"
#include "core/CommandRegistry.h"
#include "core/FileEntry.h"
#include "core/MessageLog.h"
#include "core/PathText.h"
#include "core/Session.h"
#include "core/SettingsKeys.h"
#include "expressions/MetaVariables.h"
#include "script/PascalScript.h"
#include "script/ScriptTrust.h"

namespace qp::scriptcommands {

namespace {

using namespace pascal;

QString tr(const char* text) { return QCoreApplication::translate("ScriptCommands", text); }

// A script is a few hundred lines; one of a million characters is no script.
constexpr qsizetype kMaxScriptChars = 1 << 20;
// Compiled patterns and expressions a script builds as it goes are kept up to this many.
constexpr qsizetype kMaxCached = 64;

struct Keys {
    QString count;
    QString prefix;
};

Keys keysOf(Language language)
{
    if (language == Language::Pascal)
        return {QStringLiteral("A12_PascalScriptLinesCount"), QStringLiteral("A12_PSLine")};
    return {QStringLiteral("A13_PythonScriptLinesCount"), QStringLiteral("A13_PYLine")};
}

// The host variables, in their slot order.
enum HostVariable { kFileName, kFilePath, kFileFolder, kFileIndex, kFileCount, kFileSize, kFileModified, kIsFolder, kInitialized };

template <typename T>
using Cache = std::unordered_map<QString, std::unique_ptr<T>>;

template <typename T>
T& cached(Cache<T>& cache, const QString& key, const std::function<std::unique_ptr<T>()>& make)
{
    auto it = cache.find(key);
    if (it == cache.end()) {
        if (qsizetype(cache.size()) >= kMaxCached)
            cache.clear();
        it = cache.emplace(key, make()).first;
    }
    return *it->second;
}

}  // namespace

// ---------------------------------------------------------------------------------------
// Names and storage

QString functionCode(Language language) { return language == Language::Pascal ? QStringLiteral("A12") : QStringLiteral("A13"); }
QString subCode(Language language) { return functionCode(language) + QStringLiteral("01"); }
QString languageName(Language language) { return language == Language::Pascal ? QStringLiteral("Pascal") : QStringLiteral("Python"); }

QString comment(const QString& code)
{
    if (code == u"A1201")
        return tr("Pascal 脚本更名");
    if (code == u"A1301")
        return tr("Python 脚本更名");
    return {};
}

QString readScript(const SettingsStore& store, const QString& section, Language language)
{
    const Keys keys = keysOf(language);
    return store.readNumberedLines(section, keys.count, keys.prefix).join(QLatin1Char('\n'));
}

void writeScript(SettingsStore& store, const QString& section, Language language, const QString& text)
{
    const Keys keys = keysOf(language);
    QStringList lines = text.split(QLatin1Char('\n'));
    for (QString& line : lines) {
        if (line.endsWith(u'\r'))
            line.chop(1);
    }
    while (!lines.isEmpty() && lines.back().isEmpty())
        lines.removeLast();
    store.writeNumberedLines(section, keys.count, keys.prefix, lines);
}

qint64 timeLimitMs(const SettingsStore& settings)
{
    return std::clamp<qint64>(settings.readInt(keys::kScriptConfig, keys::kScriptTimeLimit, keys::kDefaultScriptTimeLimit), 1, 3600)
        * 1000;
}

Limits pascalLimits(const SettingsStore& settings)
{
    Limits limits;
    limits.timeLimitMs = timeLimitMs(settings);
    return limits;
}

python::Options pythonOptions(Session& session)
{
    python::Options o;
    o.configuredInterpreter = session.settings().readString(keys::kScriptConfig, keys::kPythonExe, QString());
    o.timeLimitMs = timeLimitMs(session.settings());
    o.stopRequested = [&session] { return session.interaction().stopRequested(); };
    return o;
}

QDateTime LocalTimes::at(std::int64_t nanosecondsSinceEpoch)
{
    if (nanosecondsSinceEpoch == 0)
        return {};
    const qint64 ms = nanosecondsSinceEpoch / 1'000'000;
    constexpr qint64 kQuarterHour = 15 * 60 * 1000;
    const qint64 bucket = ms >= 0 ? ms / kQuarterHour : (ms - kQuarterHour + 1) / kQuarterHour;
    auto it = m_offsets.constFind(bucket);
    if (it == m_offsets.constEnd())
        it = m_offsets.insert(bucket, QDateTime::fromMSecsSinceEpoch(ms).offsetFromUtc());
    return QDateTime::fromMSecsSinceEpoch(ms + qint64(*it) * 1000, Qt::UTC);
}

python::Row pythonRow(const FileEntry& row, qsizetype index, const QString& name, const QString& ext, LocalTimes& times)
{
    python::Row r;
    r.index = index;
    r.name = name;
    r.extension = ext;
    r.folder = nativeSeparators(row.path);
    r.diskName = row.fileName();
    r.selected = row.selected;
    r.size = row.isFolder ? 0 : qint64(row.size);
    if (const QDateTime t = times.at(row.modified); t.isValid()) {
        // By hand: the formatting functions cost more than the rest of the row.
        const QDate d = t.date();
        const QTime c = t.time();
        const int fields[] = {d.year(), d.month(), d.day(), c.hour(), c.minute(), c.second()};
        const char* separators = "--T::";
        r.modified.reserve(19);
        for (int i = 0; i < 6; ++i) {
            for (int place = i == 0 ? 1000 : 10; place > 0; place /= 10)
                r.modified += QChar(u'0' + fields[i] / place % 10);
            if (i < 5)
                r.modified += QLatin1Char(separators[i]);
        }
    }
    return r;
}

// ---------------------------------------------------------------------------------------
// The Pascal host: the row's variables and the built-ins that need the program

struct PascalRenamer::Impl {
    Session* session = nullptr;
    qsizetype row = -1;
    Cache<MetaExpression> expressions;
    Cache<RegexSubstitution> patterns;
    std::shared_ptr<const Script> script;
    std::unique_ptr<ScriptRun> run;
    ScriptError error;
    bool compileFailed = false;
    bool runFailed = false;
    bool first = true;
    QString failedRow;
    LocalTimes times;

    Host host();
    QString expand(const QString& text);
    RegexSubstitution& pattern(const QString& pattern, const QString& replacement, bool caseSensitive, qsizetype limit);
};

QString PascalRenamer::Impl::expand(const QString& text)
{
    MetaExpression& e = cached<MetaExpression>(expressions, text, [&] { return std::make_unique<MetaExpression>(text); });
    return session ? e.expand(*session, row) : QString();
}

RegexSubstitution& PascalRenamer::Impl::pattern(const QString& p, const QString& replacement, bool caseSensitive,
                                                 qsizetype limit)
{
    const QString key = p + QChar(0) + replacement + (caseSensitive ? u'1' : u'0');
    RegexSubstitution& regex = cached<RegexSubstitution>(patterns, key, [&] {
        auto made = std::make_unique<RegexSubstitution>(p, replacement, caseSensitive);
        made->setLengthLimit(limit);
        return made;
    });
    if (!regex.compiled())
        throw NativeError{tr("正则表达式有误：%1（位置 %2）").arg(regex.compileError()).arg(regex.compileErrorOffset())};
    return regex;
}

Host PascalRenamer::Impl::host()
{
    Host h;
    h.variables = {
        {QStringLiteral("FileName"), kString, true},      {QStringLiteral("FilePath"), kString, false},
        {QStringLiteral("FileFolder"), kString, false},   {QStringLiteral("FileIndex"), kInteger, false},
        {QStringLiteral("FileCount"), kInteger, false},   {QStringLiteral("FileSize"), kInteger, false},
        {QStringLiteral("FileModified"), kDouble, false}, {QStringLiteral("IsFolder"), kBoolean, false},
        {QStringLiteral("Initialized"), kBoolean, false},
    };
    // GetField('M.TITLE') is the field tag "<M.TITLE>" of the row, through the same expander
    // as every expression text, so each field the expander knows can be read here.
    h.functions.push_back({QStringLiteral("GetField"), QStringLiteral("S:S"), [this](Machine&, Value* a, int) {
                               return Value::string(expand(u'<' + a[0].s + u'>'));
                           }});
    h.functions.push_back({QStringLiteral("ExpandMeta"), QStringLiteral("S:S"), [this](Machine& m, Value* a, int) {
                               QString text = expand(a[0].s);
                               m.checkLength(text.size());
                               return Value::string(std::move(text));
                           }});
    h.functions.push_back({QStringLiteral("ReplaceRegExpr"), QStringLiteral("S:SSS|B"), [this](Machine& m, Value* a, int n) {
                               RegexSubstitution& regex = pattern(a[1].s, a[2].s, n < 4 || a[3].i, m.limits.maxStringLength);
                               QString result;
                               if (regex.replaceAll(a[0].s, result) != RegexSubstitution::Outcome::Done)
                                   throw NativeError{tr("正则表达式替换失败：%1").arg(regex.lastError())};
                               m.produced(result.size());
                               return Value::string(std::move(result));
                           }});
    h.functions.push_back({QStringLiteral("SubMatchesRegExpr"), QStringLiteral("T:SS|B"), [this](Machine& m, Value* a, int n) {
                               RegexSubstitution& regex = pattern(a[1].s, QString(), n < 3 || a[2].i, m.limits.maxStringLength);
                               QStringList groups;
                               if (!regex.firstMatchGroups(a[0].s, groups) && !regex.lastError().isEmpty())
                                   throw NativeError{tr("正则表达式匹配失败：%1").arg(regex.lastError())};
                               auto array = std::make_shared<Array>();
                               for (const QString& g : std::as_const(groups))
                                   array->push_back(Value::string(g));
                               m.produced(a[0].s.size());
                               return Value::array(std::move(array));
                           }});
    return h;
}

PascalRenamer::PascalRenamer(const QString& source, Limits limits) : m_impl(std::make_unique<Impl>())
{
    if (source.size() > kMaxScriptChars) {
        m_impl->compileFailed = true;
        m_impl->error = {Position{1, 1}, tr("脚本超过 %1 个字符").arg(kMaxScriptChars)};
        return;
    }
    m_impl->script = Script::compile(source, m_impl->host(), &m_impl->error);
    m_impl->compileFailed = !m_impl->script;
    if (m_impl->script)
        m_impl->run = std::make_unique<ScriptRun>(m_impl->script, limits);
}

PascalRenamer::~PascalRenamer() = default;

bool PascalRenamer::compiled() const { return !m_impl->compileFailed; }

bool PascalRenamer::rename(Session& session, qsizetype row, QString& fileName)
{
    Impl& d = *m_impl;
    if (!d.run || d.runFailed)
        return false;
    const FileEntry& e = session.renameList()[row];
    d.session = &session;
    d.row = row;
    ScriptRun& run = *d.run;
    auto set = [&](HostVariable v, const auto& value) {
        if (d.script->usesVariable(v))
            run.variable(v) = value();
    };
    run.variable(kFileName) = Value::string(fileName);
    set(kFilePath, [&] { return Value::string(nativeSeparators(e.fullPath())); });
    set(kFileFolder, [&] { return Value::string(nativeSeparators(e.path)); });
    set(kFileIndex, [&] { return Value::integer(row); });
    set(kFileCount, [&] { return Value::integer(session.renameList().size()); });
    set(kFileSize, [&] { return Value::integer(e.isFolder ? 0 : qint64(e.size)); });
    set(kFileModified, [&] {
        const QDateTime t = d.times.at(e.modified);
        return Value::real(t.isValid() ? toDateTime(t) : 0);
    });
    set(kIsFolder, [&] { return Value::boolean(e.isFolder); });
    set(kInitialized, [&] { return Value::boolean(!d.first); });
    d.first = false;
    if (!run.runOnce(&d.error)) {
        d.runFailed = true;
        d.failedRow = e.fileName();
        return false;
    }
    fileName = run.variable(kFileName).s;
    return true;
}

QString PascalRenamer::errorMessage() const
{
    const Impl& d = *m_impl;
    if (d.compileFailed) {
        return tr("Pascal 脚本有错误（第 %1 行第 %2 列）：%3。所有文件名保持不变。")
            .arg(d.error.at.line)
            .arg(d.error.at.column)
            .arg(d.error.message);
    }
    if (!d.runFailed)
        return {};
    return tr("Pascal 脚本运行出错（第 %1 行第 %2 列）：%3。出错的文件：%4。所有文件名保持不变。")
        .arg(d.error.at.line)
        .arg(d.error.at.column)
        .arg(d.error.message, d.failedRow);
}

// ---------------------------------------------------------------------------------------
// The commands

namespace {

struct ScriptSource {
    QString text;
    bool fromFile = false;

    ScriptSource(const CommandSection& s, Language language)
        : text(readScript(s.store, s.name, language)), fromFile(s.readBool(keys::kCommandFromFile, false))
    {
    }
    bool empty() const { return text.trimmed().isEmpty(); }
};

// A1201: run row by row on the whole name; on any failure every row it changed goes back.
class PascalCommand : public CompiledCommand {
public:
    explicit PascalCommand(const CommandSection& s)
        : m_source(s, Language::Pascal), m_renamer(m_source.text, pascalLimits(s.store))
    {
    }

    void apply(const CommandContext& context, QString& name, QString& ext) override
    {
        if (m_stopped || m_source.empty())
            return;
        if (!m_permitted && !permit(context.session))
            return;
        QString fileName = name + ext;
        if (!m_renamer.rename(context.session, context.rowIndex, fileName)) {
            m_stopped = true;
            m_problem = m_renamer.errorMessage();
            return;
        }
        m_before.push_back({context.rowIndex, name, ext});
        NameParts parts = splitFileName(fileName, context.row.isFolder);
        name = std::move(parts.name);
        ext = std::move(parts.ext);
    }

    void finish(Session& session) override
    {
        if (!m_source.empty() && !m_renamer.compiled())
            m_problem = m_renamer.errorMessage();
        if (m_problem.isEmpty())
            return;
        RenameList& list = session.renameList();
        for (const Before& b : m_before) {
            list[b.row].newName = b.name;
            list[b.row].newExt = b.ext;
        }
        session.messages().add(m_problem, MessageColour::Red);
    }

private:
    struct Before {
        qsizetype row;
        QString name;
        QString ext;
    };

    bool permit(Session& session)
    {
        if (!m_renamer.compiled()) {
            m_stopped = true;
            return false;
        }
        const scripts::Permission p = scripts::permitScript(session, languageName(Language::Pascal), m_source.text, m_source.fromFile);
        m_permitted = p.granted;
        m_stopped = !p.granted;
        m_problem = p.refusal;
        return p.granted;
    }

    ScriptSource m_source;
    PascalRenamer m_renamer;
    std::vector<Before> m_before;
    QString m_problem;
    bool m_permitted = false;
    bool m_stopped = false;
};

// A1301: the rows are gathered as the pipeline passes them, then the script runs once over
// all of them; only a complete, valid answer changes the ticked rows.
class PythonCommand : public CompiledCommand {
public:
    explicit PythonCommand(const CommandSection& s) : m_source(s, Language::Python) {}

    void apply(const CommandContext& context, QString& name, QString& ext) override
    {
        m_rows.push_back(pythonRow(context.row, context.rowIndex, name, ext, m_times));
    }
    void skip(const CommandContext& context) override
    {
        m_rows.push_back(pythonRow(context.row, context.rowIndex, context.row.newName, context.row.newExt, m_times));
    }

    void finish(Session& session) override
    {
        if (m_source.empty() || m_rows.empty())
            return;
        MessageLog& log = session.messages();
        const scripts::Permission p = scripts::permitScript(session, languageName(Language::Python), m_source.text, m_source.fromFile);
        if (!p.granted) {
            log.add(p.refusal, MessageColour::Red);
            return;
        }
        const python::Result result = python::run(m_source.text, m_rows, pythonOptions(session));
        if (!result.ok)
            log.add(result.error, MessageColour::Red);
        for (const QString& line : result.errorOutput)
            log.add(QStringLiteral("Python: ") + line, result.ok ? MessageColour::Normal : MessageColour::Red);
        if (!result.ok)
            return;
        RenameList& list = session.renameList();
        for (size_t i = 0; i < m_rows.size(); ++i) {
            if (!m_rows[i].selected)
                continue;
            FileEntry& row = list[m_rows[i].index];
            const python::NewName& n = result.names[i];
            // A folder has no extension: whatever the script gave as one is part of its name.
            row.newName = row.isFolder ? n.name + n.extension : n.name;
            row.newExt = row.isFolder ? QString() : n.extension;
        }
    }

private:
    ScriptSource m_source;
    std::vector<python::Row> m_rows;
    LocalTimes m_times;
};

std::unique_ptr<CompiledCommand> compileScriptCommand(const CommandSection& s)
{
    if (s.code == u"A1201")
        return std::make_unique<PascalCommand>(s);
    if (s.code == u"A1301")
        return std::make_unique<PythonCommand>(s);
    return nullptr;
}

}  // namespace

void registerScriptCommands(CommandRegistry& registry)
{
    registry.registerFamily({subCode(Language::Pascal), subCode(Language::Python)}, compileScriptCommand);
}

}  // namespace qp::scriptcommands
