#include "core/DesktopIntegration.h"

#include <QCoreApplication>
#include <QRegularExpression>
#include <QXmlStreamReader>

#include "core/PathText.h"
#include "platform/ShellMenu.h"

namespace qp {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("DesktopIntegration", text); }

// The entries' names do not follow the language setting: removing them must find the same
// files whatever language was chosen in between.
const QString kCaption = QStringLiteral("用 Quillet Pro 批量更名");
const QString kCaptionEnglish = QStringLiteral("Rename with Quillet Pro");
const QString kIconName = QStringLiteral("quilletpro");
const QString kThunarId = QStringLiteral("quilletpro-batch-rename");
constexpr std::uint64_t kMostUcaBytes = 16 * 1024 * 1024;

// Desktop-entry quoting of one argument (the Exec key): inside double quotes, '"', '`', '$'
// and '\' take a backslash; then the value's own escaping doubles every backslash, and a
// literal '%' is written "%%".
QString desktopExecArgument(const QString& argument)
{
    QString quoted;
    for (QChar c : argument) {
        if (c == u'"' || c == u'`' || c == u'$' || c == u'\\')
            quoted += u'\\';
        quoted += c;
    }
    quoted.replace(QLatin1String("\\"), QLatin1String("\\\\"));
    quoted.replace(QLatin1String("%"), QLatin1String("%%"));
    return u'"' + quoted + u'"';
}

// POSIX shell quoting: single quotes, with each "'" written as '\''.
QString shellArgument(const QString& argument)
{
    QString quoted = argument;
    quoted.replace(QLatin1String("'"), QLatin1String("'\\''"));
    return u'\'' + quoted + u'\'';
}

QString xmlEscaped(const QString& text) { return text.toHtmlEscaped(); }

struct DesktopFile {
    QString path;  // below the data home
    QString text;
    bool executable = false;
};

QString openWithEntry(const QString& program)
{
    return QStringLiteral(
               "[Desktop Entry]\n"
               "Type=Application\n"
               "Name=Quillet Pro\n"
               "GenericName=批量文件更名\n"
               "GenericName[en]=Batch file renamer\n"
               "Comment=%1\n"
               "Comment[en]=%2\n"
               "Icon=%3\n"
               "Exec=%4 %F\n"
               "MimeType=application/octet-stream;inode/directory;\n"
               "Categories=Utility;FileTools;Qt;\n"
               "NoDisplay=true\n")
        .arg(kCaption, kCaptionEnglish, kIconName, desktopExecArgument(program));
}

QString dolphinServiceMenu(const QString& program)
{
    return QStringLiteral(
               "[Desktop Entry]\n"
               "Type=Service\n"
               "MimeType=all/all;\n"
               "Actions=QuilletProRename;\n"
               "X-KDE-ServiceTypes=KonqPopupMenu/Plugin\n"
               "\n"
               "[Desktop Action QuilletProRename]\n"
               "Name=%1\n"
               "Name[en]=%2\n"
               "Icon=%3\n"
               "Exec=%4 %F\n")
        .arg(kCaption, kCaptionEnglish, kIconName, desktopExecArgument(program));
}

QString nautilusScript(const QString& program)
{
    // Nautilus hands the chosen paths over one per line; names with a line break in them
    // cannot come through that way, and globbing is off so that "*" in a name stays itself.
    return QStringLiteral(
               "#!/bin/sh\n"
               "# Quillet Pro: \"QuilletPro -u\" removes this script.\n"
               "if [ -n \"$NAUTILUS_SCRIPT_SELECTED_FILE_PATHS\" ]; then\n"
               "    set -f\n"
               "    IFS='\n"
               "'\n"
               "    exec %1 $NAUTILUS_SCRIPT_SELECTED_FILE_PATHS\n"
               "fi\n"
               "exec %1 \"$@\"\n")
        .arg(shellArgument(program));
}

QString nemoAction(const QString& program)
{
    return QStringLiteral(
               "[Nemo Action]\n"
               "Name=%1\n"
               "Name[en]=%2\n"
               "Comment=Quillet Pro\n"
               "Exec=%3 %F\n"
               "Icon-Name=%4\n"
               "Selection=notnone\n"
               "Extensions=any;\n"
               "Quote=double\n")
        .arg(kCaption, kCaptionEnglish, shellArgument(program), kIconName);
}

QString thunarAction(const QString& program)
{
    return QStringLiteral(
               "<action>\n"
               "\t<icon>%1</icon>\n"
               "\t<name>%2</name>\n"
               "\t<submenu></submenu>\n"
               "\t<unique-id>%3</unique-id>\n"
               "\t<command>%4 %F</command>\n"
               "\t<description>Quillet Pro</description>\n"
               "\t<range></range>\n"
               "\t<patterns>*</patterns>\n"
               "\t<directories/>\n"
               "\t<audio-files/>\n"
               "\t<image-files/>\n"
               "\t<other-files/>\n"
               "\t<text-files/>\n"
               "\t<video-files/>\n"
               "</action>\n")
        .arg(kIconName, xmlEscaped(kCaption), kThunarId, xmlEscaped(shellArgument(program)));
}

const QString kOpenWith = QStringLiteral("applications/quilletpro.desktop");
const QString kDolphin = QStringLiteral("kio/servicemenus/quilletpro.desktop");
const QString kNautilus = QStringLiteral("nautilus/scripts/") + kCaption;
const QString kNemo = QStringLiteral("nemo/actions/quilletpro.nemo_action");
const QString kIcon = QStringLiteral("icons/hicolor/256x256/apps/quilletpro.png");
const QString kUca = QStringLiteral("Thunar/uca.xml");

std::vector<DesktopFile> desktopFiles(const QString& program)
{
    return {
        {kOpenWith, openWithEntry(program), false},
        // Dolphin runs service menus of a user's own folder only when they are executable.
        {kDolphin, dolphinServiceMenu(program), true},
        {kNautilus, nautilusScript(program), true},
        {kNemo, nemoAction(program), false},
    };
}

// What a Thunar document holds: whether it is a well-formed list of actions, and how many of
// them are ours.
struct UcaContent {
    bool wellFormed = false;
    int ours = 0;
};

UcaContent readUca(const QString& document)
{
    QXmlStreamReader reader(document);
    UcaContent content;
    bool root = false;
    bool inId = false;
    QString id;
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement()) {
            if (!root && reader.name() != QLatin1String("actions"))
                return {};
            root = true;
            inId = reader.name() == QLatin1String("unique-id");
            id.clear();
        } else if (reader.isCharacters() && inId) {
            id += reader.text();
        } else if (reader.isEndElement()) {
            if (inId && id.trimmed() == kThunarId)
                ++content.ours;
            inId = false;
        }
    }
    content.wellFormed = root && !reader.hasError();
    return content;
}

// Our action's elements taken out as text, each with the blanks before it on its line and
// the line end after it; actions do not nest, so an element runs to the next "</action>".
QString withoutOurActions(const QString& document)
{
    static const QRegularExpression action(QStringLiteral("[ \\t]*<action>.*?</action>[ \\t\\r]*\\n?"),
                                           QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression ours(QStringLiteral("<unique-id>\\s*%1\\s*</unique-id>").arg(kThunarId));
    QString result;
    qsizetype kept = 0;
    for (auto it = action.globalMatch(document); it.hasNext();) {
        const QRegularExpressionMatch match = it.next();
        if (!ours.match(match.captured()).hasMatch())
            continue;
        result += QStringView(document).sliced(kept, match.capturedStart() - kept);
        kept = match.capturedEnd();
    }
    result += QStringView(document).sliced(kept);
    return result;
}

QString cannotWrite(const QString& path, const std::string& reason)
{
    return tr("无法写入：%1（%2）").arg(nativeSeparators(path), QString::fromStdString(reason));
}

bool writeText(const QString& path, const QByteArray& bytes, bool executable, IntegrationReport& report)
{
    platform::createFolders(toPlatformPath(splitPath(path).folder));
    std::string error;
    if (!platform::writeFileAtomically(toPlatformPath(path), std::string_view(bytes.constData(), size_t(bytes.size())),
                                       &error)) {
        report.problems.append(cannotWrite(path, error));
        return false;
    }
    if (executable && !platform::setExecutable(toPlatformPath(path))) {
        report.problems.append(tr("无法设为可执行：%1").arg(nativeSeparators(path)));
        return false;
    }
    report.done.append(nativeSeparators(path));
    return true;
}

// The current uca.xml: empty when there is none; nothing when it cannot be read.
std::optional<QString> readUcaFile(const QString& path, IntegrationReport& report)
{
    const platform::ReadResult read = platform::readFile(toPlatformPath(path), kMostUcaBytes);
    if (read.status == platform::ReadStatus::Missing)
        return QString();
    if (read.status != platform::ReadStatus::Ok) {
        report.problems.append(tr("无法读取 Thunar 的自定义动作文件：%1（%2）")
                                   .arg(nativeSeparators(path), QString::fromStdString(read.systemMessage)));
        return std::nullopt;
    }
    return QString::fromUtf8(read.bytes.data(), qsizetype(read.bytes.size()));
}

void reportMalformedUca(const QString& path, IntegrationReport& report)
{
    report.problems.append(tr("Thunar 的自定义动作文件不是有效的 XML，未做改动：%1").arg(nativeSeparators(path)));
}

void installThunarAction(const QString& path, const QString& program, IntegrationReport& report)
{
    const std::optional<QString> current = readUcaFile(path, report);
    if (!current)
        return;
    const std::optional<QString> merged =
        current->isEmpty()
            ? std::optional<QString>(QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<actions>\n%1</actions>\n")
                                         .arg(thunarAction(program)))
            : ucaWithAction(*current, program);
    if (!merged)
        return reportMalformedUca(path, report);
    if (merged != current)
        writeText(path, merged->toUtf8(), false, report);
}

void removeThunarAction(const QString& path, IntegrationReport& report)
{
    const std::optional<QString> current = readUcaFile(path, report);
    if (!current || current->isEmpty())
        return;
    const std::optional<QString> without = ucaWithoutAction(*current);
    if (!without)
        return reportMalformedUca(path, report);
    if (*without != *current)
        writeText(path, without->toUtf8(), false, report);
}

void removeFile(const QString& path, IntegrationReport& report)
{
    if (!platform::exists(toPlatformPath(path)))
        return;
    if (platform::removeFile(toPlatformPath(path)))
        report.done.append(nativeSeparators(path));
    else
        report.problems.append(tr("无法删除：%1").arg(nativeSeparators(path)));
}

platform::ShellVerb shellVerb(const QString& program)
{
    return {u"QuilletPro", kCaption.toStdU16String(), toPlatformPath(program), u"Quillet Pro"};
}

// The registry's answer as a report; nothing where the desktop uses files instead.
std::optional<IntegrationReport> registryReport(const platform::ShellResult& result)
{
    if (result.status == platform::ShellStatus::Unsupported)
        return std::nullopt;
    IntegrationReport report;
    for (const std::u16string& done : result.done)
        report.done.append(nativeSeparators(fromPlatformPath(done)));
    if (result.status == platform::ShellStatus::Failed)
        report.problems = QString::fromStdString(result.message).split(u'\n');
    return report;
}

}  // namespace

DesktopPlaces desktopPlacesFromEnvironment()
{
    const QString home = qEnvironmentVariable("HOME");
    auto place = [&home](const char* variable, const char* fallback) {
        const QString given = qEnvironmentVariable(variable);
        return isAbsolutePath(given) ? internalSeparators(given) : home + QLatin1String(fallback);
    };
    return {place("XDG_DATA_HOME", "/.local/share"), place("XDG_CONFIG_HOME", "/.config")};
}

QString contextMenuCaption() { return kCaption; }

IntegrationReport installDesktopIntegration(const DesktopPlaces& places, const QString& program,
                                            const QByteArray& iconPng)
{
    if (auto registry = registryReport(platform::registerShellVerbs(shellVerb(program))))
        return *registry;
    IntegrationReport report;
    for (const DesktopFile& file : desktopFiles(program))
        writeText(places.dataHome + u'/' + file.path, file.text.toUtf8(), file.executable, report);
    if (!iconPng.isEmpty())
        writeText(places.dataHome + u'/' + kIcon, iconPng, false, report);
    installThunarAction(places.configHome + u'/' + kUca, program, report);
    return report;
}

IntegrationReport removeDesktopIntegration(const DesktopPlaces& places)
{
    if (auto registry = registryReport(platform::unregisterShellVerbs(shellVerb(QString()))))
        return *registry;
    IntegrationReport report;
    for (const QString& file : {kOpenWith, kDolphin, kNautilus, kNemo, kIcon})
        removeFile(places.dataHome + u'/' + file, report);
    removeThunarAction(places.configHome + u'/' + kUca, report);
    return report;
}

std::optional<QString> ucaWithAction(const QString& document, const QString& program)
{
    std::optional<QString> merged = ucaWithoutAction(document);
    if (!merged)
        return std::nullopt;
    static const QRegularExpression emptyList(QStringLiteral("<actions\\s*/>"));
    const qsizetype close = merged->lastIndexOf(QLatin1String("</actions>"));
    if (close >= 0) {
        merged->insert(close, thunarAction(program));
    } else {
        const QRegularExpressionMatch empty = emptyList.match(*merged);
        if (!empty.hasMatch())
            return std::nullopt;
        merged->replace(empty.capturedStart(), empty.capturedLength(),
                        QStringLiteral("<actions>\n") + thunarAction(program) + QStringLiteral("</actions>"));
    }
    // Whatever the text edit did, only a document that reads back as ours is written.
    const UcaContent check = readUca(*merged);
    return check.wellFormed && check.ours == 1 ? merged : std::nullopt;
}

std::optional<QString> ucaWithoutAction(const QString& document)
{
    if (!readUca(document).wellFormed)
        return std::nullopt;
    const QString without = withoutOurActions(document);
    const UcaContent check = readUca(without);
    return check.wellFormed && check.ours == 0 ? std::optional<QString>(without) : std::nullopt;
}

}  // namespace qp
