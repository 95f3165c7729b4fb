#include "cli/CliApp.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QRegularExpression>
#include <algorithm>
#include <array>
#include <memory>

#include "commands/CommandFamilies.h"
#include "core/CommandFile.h"
#include "core/Interaction.h"
#include "core/Loader.h"
#include "core/PathText.h"
#include "core/ProgrammeFile.h"
#include "core/Session.h"
#include "core/SettingsKeys.h"
#include "core/Startup.h"
#include "core/Translation.h"
#include "execution/ContrastList.h"
#include "execution/FileOperations.h"
#include "execution/ListExport.h"
#include "execution/Preview.h"
#include "execution/RenameRunner.h"
#include "execution/Snapshot.h"
#include "execution/Undo.h"
#include "expressions/FieldTags.h"

namespace qp::cli {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("quillet", text); }

// The help speaks the language the settings choose; the settings file is found before the
// arguments are parsed, since the option texts are made first.
std::unique_ptr<QTranslator> installLanguageOf(const QStringList& arguments)
{
    QString file;
    for (qsizetype i = 1; i < arguments.size(); ++i) {
        if (arguments[i] == QLatin1String("--settings") && i + 1 < arguments.size())
            file = arguments[i + 1];
        else if (arguments[i].startsWith(QLatin1String("--settings=")))
            file = arguments[i].mid(11);
    }
    SettingsStore store;
    store.load(chooseSettingsFile(file));
    return installLanguage(chooseLanguage(languageSetting(store), QLocale::system().uiLanguages()).language);
}

}  // namespace

std::optional<SettingOverride> parseOverride(const QString& text)
{
    const qsizetype slash = text.indexOf(QLatin1Char('/'));
    if (slash <= 0)
        return std::nullopt;
    const qsizetype equals = text.indexOf(QLatin1Char('='), slash + 1);
    if (equals < 0 || equals == slash + 1)
        return std::nullopt;
    return SettingOverride{text.left(slash), text.mid(slash + 1, equals - slash - 1), text.mid(equals + 1)};
}

void writeRowsAsTsv(const RenameList& list, QTextStream& out)
{
    for (qsizetype r = 0; r < list.size(); ++r) {
        const FileEntry& row = list.at(r);
        out << row.state << u'\t' << nativeSeparators(row.path) << row.name << row.ext << u'\t' << row.newName
            << row.newExt << u'\n';
    }
}


QByteArray rowsAsJson(const RenameList& list)
{
    QJsonArray rows;
    for (qsizetype r = 0; r < list.size(); ++r) {
        const FileEntry& row = list.at(r);
        rows.append(QJsonObject{
            {QStringLiteral("state"), row.state},
            {QStringLiteral("path"), nativeSeparators(row.fullPath())},
            {QStringLiteral("name"), row.name},
            {QStringLiteral("ext"), row.ext},
            {QStringLiteral("newName"), row.newName},
            {QStringLiteral("newExt"), row.newExt},
        });
    }
    return QJsonDocument(rows).toJson(QJsonDocument::Indented);
}

QString rowsAsCsv(const RenameList& list)
{
    TextTable table{{QStringLiteral("state"), QStringLiteral("path"), QStringLiteral("name"), QStringLiteral("ext"),
                     QStringLiteral("newName"), QStringLiteral("newExt")},
                    {}};
    table.rows.reserve(size_t(list.size()));
    for (const FileEntry& row : list.rows()) {
        table.rows.push_back({QString::number(row.state), nativeSeparators(row.fullPath()), row.name, row.ext,
                              row.newName, row.newExt});
    }
    return tableAsCsv(table);
}

namespace {

// The run stamp folder and the apply number of a snapshot path; a name that is not a
// number sorts before every numbered one.
std::pair<QString, qint64> snapshotOrder(const QString& path)
{
    const PathParts file = splitPath(internalSeparators(path));
    const PathParts folder = splitPath(file.folder);
    QString base = file.fileName;
    const qsizetype dot = base.lastIndexOf(u'.');
    if (dot >= 0)
        base.truncate(dot);
    bool ok = false;
    const qint64 number = base.toLongLong(&ok);
    return {folder.fileName, ok ? number : -1};
}

}  // namespace

bool isNewerSnapshot(const QString& a, const QString& b)
{
    return snapshotOrder(b) < snapshotOrder(a);
}

QString snapshotToUndo(const QString& settingsFolder, FileOperations& ops)
{
    auto newest = [](const QStringList& files) {
        QString best;
        for (const QString& file : files) {
            if (best.isEmpty() || isNewerSnapshot(file, best))
                best = file;
        }
        return best;
    };
    const QStringList journals = findUnfinishedJournals(settingsFolder, ops);
    if (!journals.isEmpty())
        return newest(journals);

    QStringList snapshots;
    platform::WalkEvents events;
    events.entry = [&](const platform::DirEntry& entry) {
        if (!entry.info.isFolder) {
            const QString name = fromPlatformPath(entry.name);
            if (name.endsWith(QStringLiteral(".txt"), Qt::CaseInsensitive))
                snapshots.append(fromPlatformPath(entry.folder) + name);
        }
        return true;
    };
    platform::walk(toPlatformPath(settingsFolder + QStringLiteral("AutoSnapshot")), true, events);
    return newest(snapshots);
}

namespace {

// Answers every question at once: confirmations with yes/OK, the conflict warning with
// "continue with smart rename", the simple/smart choice by --simple, and the read-only,
// system and too-long questions with what their settings keys preselect, never ticking
// "do not ask again" (the settings are not saved anyway).
class CliDialogs : public ApplyDialogs {
public:
    explicit CliDialogs(bool simple) : m_simple(simple) {}
    ApplyMode chooseMode(qsizetype) override { return m_simple ? ApplyMode::Simple : ApplyMode::Smart; }
    ConflictAnswer conflictWarning(const PreviewResult&) override { return ConflictAnswer{true, false}; }
    ChoiceAnswer attributeQuestion(bool, const QString&, int preselected) override
    {
        return ChoiceAnswer{preselected, false};
    }
    ChoiceAnswer tooLongQuestion(const QString&, const QString&, const QString&, int preselected) override
    {
        return ChoiceAnswer{preselected, false};
    }

private:
    bool m_simple;
};

enum class Format { Tsv, Json, Csv };

// Message-log lines go to standard error as they come, except while held: a run that then
// stops on bad input prints only its one-line reason.
class LogSink {
public:
    explicit LogSink(QTextStream& err) : m_err(err) {}
    void line(const MessageLine& line)
    {
        if (m_holding)
            m_held.append(line.text);
        else
            m_err << line.text << u'\n';
    }
    void hold() { m_holding = true; }
    void release()
    {
        m_holding = false;
        for (const QString& text : std::as_const(m_held))
            m_err << text << u'\n';
        m_held.clear();
        m_err.flush();
    }

private:
    QTextStream& m_err;
    bool m_holding = false;
    QStringList m_held;
};

QString absolutePath(const QString& given)
{
    const QString path = internalSeparators(given);
    if (isAbsolutePath(path))
        return path;
    return internalSeparators(QDir::cleanPath(QDir::current().absoluteFilePath(path)));
}


struct Options {
    QString command;
    QStringList paths;
    QString listFile;
    QString commandFile;
    QString programme;
    QString contrast;
    ContrastOptions contrastOptions;
    QString snapshot;
    bool recursive = false;
    bool noFolderRows = false;
    std::optional<QString> keep;
    std::optional<QString> exclude;
    bool simple = false;
    bool applyImport = false;
    Format format = Format::Tsv;
};

}  // namespace

namespace {

// The contrast list's options from the command line. Its kind follows the output's name:
// ".xls" and ".xlsx" give a spreadsheet, anything else a text file at exactly that path.
// Returns the problem with the options, empty when there is none.
QString readContrastOptions(const QCommandLineParser& parser, const std::array<QCommandLineOption, 6>& options,
                            const QString& output, ContrastOptions& contrast)
{
    const auto& [encoding, separator, withExt, sheet, oldColumn, newColumn] = options;
    const bool xlsx = output.endsWith(QLatin1String(".xlsx"), Qt::CaseInsensitive);
    contrast.spreadsheet = xlsx || output.endsWith(QLatin1String(".xls"), Qt::CaseInsensitive);
    contrast.text = !contrast.spreadsheet;
    contrast.format = xlsx ? SpreadsheetFormat::Xlsx : SpreadsheetFormat::Xls;
    contrast.withExtension = parser.isSet(withExt);
    if (parser.isSet(separator)) {
        contrast.aligned = false;
        contrast.separator = parser.value(separator);
    }
    contrast.sheetName = parser.value(sheet);
    const QHash<QString, ContrastEncoding> encodings = {
        {QStringLiteral("ansi"), ContrastEncoding::Ansi},
        {QStringLiteral("unicode"), ContrastEncoding::Unicode},
        {QStringLiteral("unicode-be"), ContrastEncoding::UnicodeBigEndian},
        {QStringLiteral("utf8"), ContrastEncoding::Utf8},
    };
    if (parser.isSet(encoding)) {
        const auto found = encodings.constFind(parser.value(encoding).toLower());
        if (found == encodings.constEnd())
            return QStringLiteral("未知的编码：%1（应为 ansi、unicode、unicode-be 或 utf8）").arg(parser.value(encoding));
        contrast.encoding = *found;
    }
    for (const auto& [option, column] : {std::pair{&oldColumn, &contrast.oldColumn}, std::pair{&newColumn, &contrast.newColumn}}) {
        if (!parser.isSet(*option))
            continue;
        bool ok = false;
        *column = parser.value(*option).toInt(&ok);
        if (!ok || *column < 1 || *column > 16384)
            return QStringLiteral("列号应为 1 到 16384 之间的整数：--%1 %2").arg(option->names().constFirst(), parser.value(*option));
    }
    return {};
}

}  // namespace

namespace {

QString oneLine(QString text)
{
    for (QChar& c : text) {
        if (c == u'\t' || c == u'\r' || c == u'\n')
            c = u' ';
    }
    return text;
}

}  // namespace

int CliApp::printFields(const Session& session, const QStringList& paths, bool json)
{
    if (paths.isEmpty())
        return fail(QStringLiteral("fields 需要至少一个文件路径 (fields needs a PATH)"));
    const metadata::LegacyEncoding legacy = legacyEncodingOf(session.settings());
    metadata::FieldCache& cache = fieldCacheOf(session);
    QJsonArray files;
    bool allRead = true;
    for (const QString& path : paths) {
        if (!platform::isFile(toPlatformPath(path))) {
            m_err << QStringLiteral("quillet: 不是可读取的文件：") << nativeSeparators(path) << Qt::endl;
            allRead = false;
            continue;
        }
        QJsonArray lines;
        for (const auto& [family, fields] : cache.readEverything(path, legacy)) {
            for (const FieldLine& line : fieldLines(family, fields)) {
                if (json)
                    lines.append(QJsonObject{{QStringLiteral("tag"), line.tag}, {QStringLiteral("value"), line.value}});
                else  // a value of several lines (lyrics, comments) stays on one
                    m_out << nativeSeparators(path) << u'\t' << line.tag << u'\t' << oneLine(line.value) << u'\n';
            }
        }
        files.append(QJsonObject{{QStringLiteral("path"), nativeSeparators(path)}, {QStringLiteral("fields"), lines}});
    }
    if (json)
        m_out << QString::fromUtf8(QJsonDocument(files).toJson(QJsonDocument::Indented));
    m_out.flush();
    return allRead ? ExitDone : ExitRowsFailed;
}

int CliApp::fail(const QString& message)
{
    m_err << QStringLiteral("quillet: ") << message << Qt::endl;
    return ExitBadUsage;
}

int CliApp::run(const QStringList& arguments)
{
    const std::unique_ptr<QTranslator> language = installLanguageOf(arguments);
    QCommandLineParser parser;
    parser.setApplicationDescription(tr(
        "Quillet Pro 批量文件更名的命令行工具 (batch renamer, command line)\n"
        "\n"
        "命令 (commands):\n"
        "  preview   载入对象，运行命令列表并预览，输出各行 (load, run the command list, preview, print the rows)\n"
        "  apply     同 preview，然后应用更名 (as preview, then apply the renames)\n"
        "  undo      撤销一次批量更名 (undo a rename batch)\n"
        "  import    导入更名方案或快照文件 (import a rename programme or snapshot)\n"
        "  export    导出更名方案或更名对照列表 (export the rename programme or the contrast list)\n"
        "  fields    列出文件中可读取的全部元数据字段 (list every metadata field of the files)\n"
        "\n"
        "退出码 (exit codes): 0 完成 (done)；1 有对象更名失败或仍有冲突 (rows failed or in conflict)；"
        "2 用法或输入错误 (bad usage or input)"));
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsOptions);
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  tr("显示帮助 (show this help)"));
    const QCommandLineOption version(QStringLiteral("version"), tr("显示版本 (show the version)"));
    const QCommandLineOption settings(QStringLiteral("settings"),
                                      tr("使用指定的设置文件 (settings file to use)"), QStringLiteral("FILE"));
    const QCommandLineOption set(QStringLiteral("set"),
                                 tr("仅本次运行覆盖一个设置项，不保存 (override one setting for this run)"),
                                 QStringLiteral("Section/Key=Value"));
    const QCommandLineOption list(QStringLiteral("list"),
                                  tr("再载入列表文件中的每个完整路径 (also load every path of a list file)"),
                                  QStringLiteral("FILE"));
    const QCommandLineOption commands(QStringLiteral("commands"),
                                      tr("运行该批处理命令文件的命令列表 (run this command file's list)"),
                                      QStringLiteral("FILE.frc"));
    const QCommandLineOption recursive(QStringLiteral("recursive"),
                                       tr("遍历文件夹 (load everything below the folders)"));
    const QCommandLineOption noFolderRows(QStringLiteral("no-folder-rows"),
                                          tr("不含文件夹名 (no rows for the folders themselves)"));
    const QCommandLineOption keep(QStringLiteral("keep"), tr("只保留符合的对象 (keep masks)"),
                                  QStringLiteral("MASKS"));
    const QCommandLineOption exclude(QStringLiteral("exclude"), tr("剔除符合的对象 (exclude masks)"),
                                     QStringLiteral("MASKS"));
    const QCommandLineOption simple(QStringLiteral("simple"), tr("使用简单更名 (simple rename)"));
    const QCommandLineOption format(QStringLiteral("format"),
                                    tr("输出格式：tsv（默认）、json 或 csv (output format: tsv, json or csv)"),
                                    QStringLiteral("tsv|json|csv"));
    const QCommandLineOption snapshot(QStringLiteral("snapshot"),
                                      tr("从该快照文件撤销 (undo from this snapshot file)"),
                                      QStringLiteral("FILE"));
    const QCommandLineOption programme(QStringLiteral("programme"),
                                       tr("更名方案文件：导入时读取，导出时写入 (rename programme to import or export)"),
                                       QStringLiteral("FILE"));
    const QCommandLineOption apply(QStringLiteral("apply"),
                                   tr("导入后应用更名 (apply the imported names)"));
    const QCommandLineOption contrast(QStringLiteral("contrast"),
                                      tr("导出对比列表 (export the contrast list)"), QStringLiteral("OUT"));
    const QCommandLineOption encoding(QStringLiteral("encoding"),
                                      tr("对比列表文本的编码：ansi（默认）、unicode、unicode-be 或 utf8 "
                                                     "(text encoding of the contrast list)"),
                                      QStringLiteral("ansi|unicode|unicode-be|utf8"));
    const QCommandLineOption separator(QStringLiteral("separator"),
                                       tr("新旧文件名之间使用分隔字符，而不是对齐 (separate the names instead of aligning them)"),
                                       QStringLiteral("TEXT"));
    const QCommandLineOption withExt(QStringLiteral("with-ext"),
                                     tr("含扩展名一起处理 (names with their extensions)"));
    const QCommandLineOption sheet(QStringLiteral("sheet"), tr("工作表名称 (sheet name)"),
                                   QStringLiteral("NAME"));
    const QCommandLineOption oldColumn(QStringLiteral("old-column"),
                                       tr("原文件名列，默认 1 (column of the old names)"), QStringLiteral("N"));
    const QCommandLineOption newColumn(QStringLiteral("new-column"),
                                       tr("新文件名列，默认 2 (column of the new names)"), QStringLiteral("N"));
    const QCommandLineOption allowScripts(QStringLiteral("allow-scripts"),
                                          tr("运行命令列表中的 Pascal 和 Python 脚本 (run the scripts of the command list)"));
    parser.addOptions({help, version, settings, set, list, commands, recursive, noFolderRows, keep, exclude, simple,
                       format, snapshot, programme, apply, contrast, encoding, separator, withExt, sheet, oldColumn,
                       newColumn, allowScripts});
    parser.addPositionalArgument(QStringLiteral("COMMAND"),
                                 QStringLiteral("preview | apply | undo | import | export | fields"));
    parser.addPositionalArgument(QStringLiteral("PATH"), tr("要载入的文件或文件夹 (files or folders)"),
                                 QStringLiteral("[PATH...]"));
    if (!parser.parse(arguments))
        return fail(parser.errorText());
    if (parser.isSet(help)) {
        // The usage line as this tool is called, and the headings in Chinese as well.
        QString text = parser.helpText();
        text.replace(QRegularExpression(QStringLiteral("^Usage: [^\n]*")),
                     tr("用法 (usage): quillet [--settings FILE] [--set \"Section/Key=Value\"]... "
                                    "COMMAND [options] [PATH...]"));
        text.replace(QStringLiteral("\nOptions:\n"), tr("\n选项 (options):\n"));
        text.replace(QStringLiteral("\nArguments:\n"), tr("\n参数 (arguments):\n"));
        m_out << text;
        return ExitDone;
    }
    if (parser.isSet(version)) {
        m_out << QStringLiteral("quillet ") << QCoreApplication::applicationVersion() << Qt::endl;
        return ExitDone;
    }
    QList<SettingOverride> overrides;
    for (const QString& text : parser.values(set)) {
        const auto parsed = parseOverride(text);
        if (!parsed)
            return fail(QStringLiteral("设置项格式错误，应为 Section/Key=Value：") + text);
        overrides.append(*parsed);
    }
    QStringList positional = parser.positionalArguments();
    if (positional.isEmpty())
        return fail(QStringLiteral("缺少命令，请用 --help 查看用法 (missing command)"));

    Options o;
    o.command = positional.takeFirst();
    // Which options and whether PATHs belong to which command.
    struct Allowed {
        const char* command;
        bool paths;
        QList<const QCommandLineOption*> options;
    };
    const QList<const QCommandLineOption*> loading{&list, &commands, &recursive, &noFolderRows, &keep, &exclude, &allowScripts};
    const Allowed table[] = {
        {"preview", true, loading + QList<const QCommandLineOption*>{&simple, &format}},
        {"apply", true, loading + QList<const QCommandLineOption*>{&simple, &format}},
        {"undo", false, {&snapshot}},
        {"import", false, {&programme, &apply, &simple, &format}},
        {"export", true,
         loading + QList<const QCommandLineOption*>{&programme, &contrast, &encoding, &separator, &withExt, &sheet,
                                                    &oldColumn, &newColumn}},
        {"fields", true, {&format}},
    };
    const Allowed* allowed = nullptr;
    for (const Allowed& entry : table) {
        if (o.command == QLatin1String(entry.command))
            allowed = &entry;
    }
    if (!allowed)
        return fail(QStringLiteral("未知的命令：") + o.command);
    for (const QCommandLineOption* option :
         {&list, &commands, &recursive, &noFolderRows, &keep, &exclude, &simple, &format, &snapshot, &programme, &apply,
          &contrast, &encoding, &separator, &withExt, &sheet, &oldColumn, &newColumn, &allowScripts}) {
        if (parser.isSet(*option) && !allowed->options.contains(option))
            return fail(QStringLiteral("命令 %1 不接受选项 --%2").arg(o.command, option->names().constLast()));
    }
    if (!allowed->paths && !positional.isEmpty())
        return fail(QStringLiteral("命令 %1 不接受路径参数：%2").arg(o.command, positional.first()));

    for (const QString& path : std::as_const(positional))
        o.paths.append(absolutePath(path));
    auto fileOption = [&](const QCommandLineOption& option) {
        return parser.isSet(option) ? absolutePath(parser.value(option)) : QString();
    };
    o.listFile = fileOption(list);
    o.commandFile = fileOption(commands);
    o.programme = fileOption(programme);
    o.contrast = fileOption(contrast);
    o.snapshot = fileOption(snapshot);
    o.recursive = parser.isSet(recursive);
    o.noFolderRows = parser.isSet(noFolderRows);
    if (parser.isSet(keep))
        o.keep = parser.value(keep);
    if (parser.isSet(exclude))
        o.exclude = parser.value(exclude);
    o.simple = parser.isSet(simple);
    o.applyImport = parser.isSet(apply);
    if (parser.isSet(format)) {
        const QString value = parser.value(format);
        if (value == QLatin1String("json"))
            o.format = Format::Json;
        else if (value == QLatin1String("csv"))
            o.format = Format::Csv;
        else if (value != QLatin1String("tsv"))
            return fail(QStringLiteral("未知的输出格式：%1（应为 tsv、json 或 csv）").arg(value));
    }
    if (o.command == QLatin1String("import") && o.programme.isEmpty())
        return fail(QStringLiteral("import 需要 --programme FILE (import needs --programme FILE)"));
    if (o.command == QLatin1String("export")) {
        if (o.programme.isEmpty() && o.contrast.isEmpty())
            return fail(QStringLiteral("export 需要 --programme OUT 或 --contrast OUT (export needs --programme OUT or --contrast OUT)"));
        const QString problem = readContrastOptions(parser, {encoding, separator, withExt, sheet, oldColumn, newColumn},
                                                    o.contrast, o.contrastOptions);
        if (!problem.isEmpty())
            return fail(problem);
    }

    // The settings as the desktop program reads them, held in memory only. A file that
    // does not exist is not created: the run starts from empty settings, and its snapshots
    // still go beside where the file would be.
    SettingsStore store;
    const QString settingsFile = chooseSettingsFile(parser.value(settings));
    const SettingsStore::LoadReport report = store.load(settingsFile);
    if (report.unreadable)
        return fail(QStringLiteral("无法读取设置文件：%1（%2）").arg(nativeSeparators(settingsFile), report.message));
    for (const SettingOverride& override : std::as_const(overrides))
        store.writeRaw(override.section, override.key, override.value);
    if (o.recursive)
        store.writeBool(keys::kOperation, keys::kFlagFindDeepin, true);
    if (o.noFolderRows)
        store.writeBool(keys::kOperation, keys::kFlagAddFolder, false);
    // The simple/smart question is asked only for long lists; --simple asks for it always.
    if (o.simple)
        store.writeInt(keys::kOperation, QStringLiteral("RenameSelectCount"), 0);

    ScriptedInteraction interaction(ScriptedInteraction::Policy::Affirmative);
    Session session(std::move(store), interaction, makeRunStamp(QDateTime::currentDateTime()));
    session.setSettingsReadOnly(true);
    // Nobody is there to ask whether a script may run: it runs when the caller said so.
    session.scriptPermission = parser.isSet(allowScripts) ? Session::ScriptPermission::AllowAll
                                                          : Session::ScriptPermission::DenyAll;
    // Tests hand in the families they want; a run without a registrar gets the built-in ones.
    if (m_registrar)
        m_registrar(session.pipeline().registry());
    else
        registerCommandFamilies(session.pipeline().registry());
    LogSink log(m_err);
    session.messages().setListener([&log](const MessageLine& line) { log.line(line); });
    if (o.keep)
        session.keepText = *o.keep;
    if (o.exclude)
        session.excludeText = *o.exclude;

    DiskOperations disk;
    auto printRows = [&] {
        if (o.format == Format::Json) {
            m_out.flush();
            m_out << QString::fromUtf8(rowsAsJson(session.renameList()));
        } else if (o.format == Format::Csv) {
            m_out << rowsAsCsv(session.renameList());
        } else {
            writeRowsAsTsv(session.renameList(), m_out);
        }
        m_out.flush();
    };
    auto applyRows = [&]() -> int {
        CliDialogs dialogs(o.simple);
        RenameRunner runner(session, disk, {}, &dialogs);
        const ApplyResult result = runner.apply();
        m_err.flush();
        printRows();
        switch (result.end) {
        case ApplyResult::End::Done:
            return result.failed > 0 ? ExitRowsFailed : ExitDone;
        case ApplyResult::End::EmptyList:
            return ExitDone;
        case ApplyResult::End::FirstPassFailed:
            m_err << QStringLiteral("quillet: 智能更名失败，所有对象已恢复原名。") << Qt::endl;
            return ExitRowsFailed;
        case ApplyResult::End::SnapshotFailed:
            m_err << QStringLiteral("quillet: 无法写入快照文件，未进行更名。") << Qt::endl;
            return ExitRowsFailed;
        default:
            return ExitRowsFailed;
        }
    };

    if (o.command == QLatin1String("fields"))
        return printFields(session, o.paths, o.format == Format::Json);

    if (o.command == QLatin1String("undo")) {
        QString file = o.snapshot;
        if (file.isEmpty()) {
            file = snapshotToUndo(settingsFolderOf(session), disk);
            if (file.isEmpty())
                return fail(QStringLiteral("没有可撤销的批量更名记录 (nothing to undo)"));
        } else if (!disk.readFile(file)) {
            return fail(QStringLiteral("无法读取快照文件：") + nativeSeparators(file));
        }
        log.hold();
        const UndoResult result = Undo(session, disk).undoFile(file);
        if (result.end == UndoResult::End::SnapshotUnusable)
            return fail(QStringLiteral("撤销上一次的批量更名出现错误！无法使用快照文件：") + nativeSeparators(file));
        log.release();
        if (result.end == UndoResult::End::FirstPassFailed) {
            m_err << QStringLiteral("quillet: 智能撤销更名失败！") << Qt::endl;
            return ExitRowsFailed;
        }
        return result.failed > 0 || result.missing > 0 || result.kept ? ExitRowsFailed : ExitDone;
    }

    if (o.command == QLatin1String("import")) {
        log.hold();
        const ProgrammeImport imported = ProgrammeFile(session).importFrom(o.programme);
        switch (imported.outcome) {
        case ProgrammeImport::Outcome::Imported:
            break;
        case ProgrammeImport::Outcome::NothingFound:
            log.release();
            m_err << QStringLiteral("quillet: 更名方案中所列的对象都不存在：") << nativeSeparators(o.programme)
                  << Qt::endl;
            return ExitRowsFailed;
        default:
            return fail(interaction.notices.isEmpty()
                            ? QStringLiteral("导入失败：") + nativeSeparators(o.programme)
                            : interaction.notices.constLast().text);
        }
        log.release();
        // The imported names are the new names: nothing may compute them again.
        session.setNewNamesCurrent(true);
        if (o.applyImport)
            return applyRows();
        printRows();
        return ExitDone;
    }

    // preview, apply, export: the command list first (a file that cannot be used stops the
    // run before anything is loaded), then the paths and the list file.
    log.hold();
    if (!o.commandFile.isEmpty()) {
        const CommandFileResult loaded = loadCommandFile(session, o.commandFile);
        if (loaded.outcome != CommandFileResult::Outcome::Done) {
            return fail(loaded.message.isEmpty() ? QStringLiteral("无法载入批处理命令文件：") + nativeSeparators(o.commandFile)
                                                 : loaded.message);
        }
    }
    if (!o.listFile.isEmpty()) {
        const ListFileContent content = readListFile(o.listFile);
        if (content.unreadable) {
            return fail(QStringLiteral("无法读取列表文件：%1（%2）").arg(nativeSeparators(o.listFile), content.message));
        }
    }
    log.release();

    // Loading re-runs the commands after each step; here they run once, over all rows,
    // when everything is loaded.
    session.setCommandRunner({});
    Loader loader(session);
    if (!o.paths.isEmpty())
        loader.addPaths(o.paths);
    if (!o.listFile.isEmpty())
        loader.addListFile(o.listFile);
    session.setCommandRunner([&session] { session.pipeline().runAll(false); });
    if (!session.renameList().isEmpty()) {
        session.pipeline().runAll(true);
        session.setNewNamesCurrent(true);
    }

    if (o.command == QLatin1String("apply"))
        return applyRows();
    Preview(session).run(o.simple);
    if (o.command == QLatin1String("export")) {
        if (session.renameList().isEmpty())
            return fail(QStringLiteral("更名文件列表为空，没有可导出的内容 (nothing to export)"));
        log.hold();
        if (!o.programme.isEmpty() && !ProgrammeFile(session).exportTo(o.programme))
            return fail(QStringLiteral("无法写入文件：") + nativeSeparators(o.programme));
        if (!o.contrast.isEmpty()) {
            const ContrastExportResult written =
                exportContrastList(session.renameList(), o.contrastOptions, o.contrast, o.contrast, disk);
            if (!written.error.isEmpty())
                return fail(written.error);
            if (written.lossy)
                m_err << QStringLiteral("quillet: 有些字符无法用所选编码保存，已写为“?” (some characters do not exist in the chosen encoding)")
                      << Qt::endl;
        }
        log.release();
        return ExitDone;
    }
    printRows();
    return ExitDone;
}

}  // namespace qp::cli
