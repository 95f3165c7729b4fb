#include "core/CommandFile.h"

#include <QCoreApplication>
#include <QSet>

#include <algorithm>
#include <string_view>
#include <utility>

#include "core/CommandList.h"
#include "core/CommandRegistry.h"
#include "core/Interaction.h"
#include "core/PathText.h"
#include "core/TextFiles.h"
#include "core/Session.h"
#include "core/SettingsKeys.h"
#include "core/SettingsStore.h"
#include "platform/FileSystem.h"

namespace qp {

namespace {

const QString kRecentSection = QStringLiteral("RecentItemMenuCMDFile");
const QString kRecentCountKey = QStringLiteral("Count");
const QString kDialogFolderKey = QStringLiteral("OpenDialogInitialDirMMenuCMDLoadFromFile");


// A command file of 200 commands is a few hundred kilobytes; anything near this size is
// not one, and reading it whole would only cost memory.
constexpr std::uint64_t kMaxCommandFileBytes = 64ull * 1024 * 1024;
// How many names of ignored sections one message line lists.
constexpr qsizetype kNamedSections = 10;

QString tr(const char* text) { return QCoreApplication::translate("CommandFile", text); }

QString hintTitle() { return tr("温馨提示"); }

bool isScriptTrustSection(const QString& section)
{
    return section.compare(keys::kScriptConfig, Qt::CaseInsensitive) == 0
        || section.compare(keys::kScriptApprovals, Qt::CaseInsensitive) == 0;
}

QString fromUtf8(const std::string& text) { return QString::fromUtf8(text.data(), qsizetype(text.size())); }

// A line break inside a name or value would start a new line, or even a new section,
// when the file is read back; it is written as a space, as the settings file does.
QString oneLine(QString text)
{
    text.replace(QLatin1Char('\r'), QLatin1Char(' '));
    text.replace(QLatin1Char('\n'), QLatin1Char(' '));
    return text;
}

CommandFileResult failed(Session& session, const QString& message)
{
    session.interaction().notify(
        Notice{QStringLiteral("commands.fileFailed"), hintTitle(), message, Icon::Warning});
    CommandFileResult result;
    result.outcome = CommandFileResult::Outcome::Failed;
    result.message = message;
    return result;
}

// The file's text, or the reason it cannot be a command file.
struct DecodedFile {
    QString text;
    QString error;
};

DecodedFile readCommandFile(const QString& fileName)
{
    const QString shown = nativeSeparators(fileName);
    const platform::ReadResult read = platform::readFile(toPlatformPath(fileName), kMaxCommandFileBytes);
    switch (read.status) {
    case platform::ReadStatus::Ok:
        break;
    case platform::ReadStatus::Missing:
        return {{}, tr("载入失败！批处理命令文件不存在：%1").arg(shown)};
    case platform::ReadStatus::TooLarge:
        return {{}, tr("载入失败！文件超过 64 MB，不是批处理命令文件：%1").arg(shown)};
    case platform::ReadStatus::Unreadable:
        return {{}, tr("载入失败！无法读取批处理命令文件：%1（%2）").arg(shown, fromUtf8(read.systemMessage))};
    }

    std::string_view bytes(read.bytes);
    if (bytes.find('\0') != std::string_view::npos)
        return {{}, tr("载入失败！文件中含有空字符（NUL），不是批处理命令文件：%1").arg(shown)};
    if (bytes.starts_with("\xEF\xBB\xBF"))
        bytes.remove_prefix(3);
    const auto text = platform::toUtf16(bytes);
    if (!text)
        return {{}, tr("载入失败！批处理命令文件的编码格式错误，正确的为 UTF-8 编码格式：%1").arg(shown)};
    return {fromPlatformPath(*text), {}};
}

// The folder of a full path as shown in a menu: without its trailing separator unless it
// is the root itself.
QString shownFolder(const QString& folder)
{
    QString result = folder;
    if (result.size() > 1 && result.endsWith(QLatin1Char('/')) && !isRootPath(result))
        result.chop(1);
    return nativeSeparators(result);
}


// Calls `line(text, sectionName)` for each line of INI text, where sectionName is set for
// a section header and null otherwise. Lines end as the settings parser ends them (CR LF,
// LF or a lone CR).
template <typename LineFn>
void forEachLine(QStringView text, LineFn line)
{
    text::forEachLine(text, [&](QStringView current) { line(current, text::sectionHeader(current)); });
}

// The part of a command file that can matter, as text for the settings parser: every
// section that holds at least one key. Section headers with nothing under them (a file of
// millions of them is possible) are dropped while scanning, so they cost one pass over the
// text and no memory.
QString reduceCommandFile(QStringView text)
{
    QString kept;
    QStringView pendingHeader;
    bool inSection = false;
    forEachLine(text, [&](QStringView line, QStringView section) {
        if (!section.isNull()) {
            pendingHeader = line;
            inSection = true;
            return;
        }
        if (!inSection || line.indexOf(u'=') <= 0)
            return;  // keys before any section and lines without a key mean nothing
        if (!pendingHeader.isNull()) {
            kept += pendingHeader;
            kept += u'\n';
            pendingHeader = QStringView();
        }
        kept += line;
        kept += u'\n';
    });
    return kept;
}

void writeRecent(SettingsStore& store, const QStringList& files)
{
    store.eraseSection(kRecentSection);
    if (files.isEmpty())
        return;
    store.writeInt(kRecentSection, kRecentCountKey, files.size());
    for (qsizetype i = 0; i < files.size(); ++i)
        store.writeString(kRecentSection, QString::number(i + 1), files[i]);
}

}  // namespace

// ---------------------------------------------------------------------------------------
// Saving

QByteArray commandFileBytes(const SettingsStore& store)
{
    const ListedSections listed = CommandList::listedSections(store);
    if (listed.sections.isEmpty())
        return {};

    QStringList lines{
        text::ruleLine(),
        QStringLiteral(";批处理命令文件"),
        text::productLine(),
        QStringLiteral(";可用“载入批处理命令”重新载入本文件中的更名命令"),
        QStringLiteral(";"),
        QStringLiteral(";说明：本文件为系统生成，除非明白各参数之意义，否则请不要随"),
        QStringLiteral(";      意改动，以免影响原有的更名结果！"),
        text::ruleLine(),
        QStringLiteral("[CommandList]"),
    };
    for (const QString& line : store.sectionLines(keys::kCommandList))
        lines.append(oneLine(line));
    for (const QString& section : listed.sections) {
        lines.append(QString());
        lines.append(u'[' + oneLine(section) + u']');
        for (const QString& line : store.sectionLines(section))
            lines.append(oneLine(line));
    }

    return text::withBomAndCrlf(lines);
}

CommandFileResult saveCommandFile(Session& session, const FileChooser& chooseFile)
{
    CommandFileResult result;
    if (!requireFileRenamePage(session))
        return result;
    const QByteArray bytes = commandFileBytes(session.settings());
    if (bytes.isEmpty())
        return result;
    const QString fileName = chooseFile ? chooseFile() : QString();
    if (fileName.isEmpty())
        return result;

    std::string error;
    if (!platform::writeFileAtomically(toPlatformPath(fileName),
                                       std::string_view(bytes.constData(), size_t(bytes.size())), &error)) {
        return failed(session, tr("批处理命令文件保存失败：%1（%2）").arg(nativeSeparators(fileName), fromUtf8(error)));
    }

    SettingsStore& settings = session.settings();
    settings.writeString(keys::kInterface, kDialogFolderKey, splitPath(fileName).folder);
    rememberCommandFile(settings, fileName);
    session.saveSettings();
    session.interaction().notify(Notice{QStringLiteral("commands.saved"), hintTitle(),
                                        tr("批处理命令文件保存成功。"), Icon::Information});
    result.outcome = CommandFileResult::Outcome::Done;
    result.commands = int(CommandList::listedSections(settings).sections.size());
    return result;
}

CommandFileResult saveCommandFile(Session& session, const QString& fileName)
{
    return saveCommandFile(session, FileChooser([&] { return fileName; }));
}

// ---------------------------------------------------------------------------------------
// Loading
//
// A command file replaces the command list: the present "CMD_" sections and "CommandList"
// go, the file's "CommandList" and the sections it names come in whole. A command file is
// merged into the settings the way its text would be if appended to the settings file:
// every other section it holds lands there too, its keys taking the file's values (a
// shared command file can carry the options its commands were made with). Those sections
// are named in the message pane. Lines before the first section are dropped. The merged
// settings are written before anything is shown, so a file that cannot be used or a
// settings file that cannot be written leaves the list and the settings as they were.

CommandFileResult loadCommandFile(Session& session, const FileChooser& chooseFile)
{
    CommandFileResult result;
    if (!requireFileRenamePage(session))
        return result;
    if (!session.commandList().isEmpty()) {
        const Question question{QStringLiteral("commands.loadReplace"), tr("提示"),
                                tr("命令列表不为空，载入命令批处理文件将清除现有更名命令，确认吗？"),
                                Button::Yes | Button::No, Button::No, Icon::Question};
        if (session.interaction().ask(question) != Button::Yes)
            return result;
    }
    const QString fileName = chooseFile ? chooseFile() : QString();
    if (fileName.isEmpty())
        return result;
    const QString shown = nativeSeparators(fileName);

    const DecodedFile decoded = readCommandFile(fileName);
    if (!decoded.error.isEmpty())
        return failed(session, decoded.error);

    // Comment lines (";") are dropped by the parser, empty lines mean nothing to it.
    SettingsStore file;
    file.parse(reduceCommandFile(decoded.text));
    if (!file.hasSection(keys::kCommandList)) {
        return failed(session,
                      tr("载入失败！文件中没有 [CommandList] 字段，可能不是批处理命令文件或文件已损坏：%1").arg(shown));
    }
    const ListedSections listed = CommandList::listedSections(file);
    if (listed.sections.isEmpty())
        return failed(session, tr("载入失败！批处理命令文件中没有可用的命令：%1").arg(shown));

    // Build the new settings beside the present ones and swap them in only when written.
    SettingsStore merged = session.settings();
    CommandList::eraseCommands(merged);
    for (const QString& section : listed.sections) {
        for (const auto& [key, value] : file.sectionEntries(section))
            merged.writeRaw(section, key, value);
        // A script that came in a file runs only once the user has allowed it.
        if (carriesScript(merged.readString(section, keys::kCommandId, QString())))
            merged.writeBool(section, keys::kCommandFromFile, true);
    }
    merged.writeInt(keys::kCommandList, keys::kCommandListCount, listed.sections.size());
    for (qsizetype i = 0; i < listed.sections.size(); ++i)
        merged.writeRaw(keys::kCommandList, QString::number(i + 1), listed.sections[i]);
    rememberCommandFile(merged, fileName);

    // Everything else the file holds is merged key by key.
    QSet<QString> taken;
    for (const QString& section : listed.sections)
        taken.insert(section.toCaseFolded());
    taken.insert(keys::kCommandList.toCaseFolded());
    QStringList refused;
    for (const QString& section : file.sectionNames()) {
        if (taken.contains(section.toCaseFolded()))
            continue;
        // Which Python runs and which scripts are allowed are the user's own settings.
        if (isScriptTrustSection(section)) {
            refused.append(u'[' + section + u']');
            continue;
        }
        for (const auto& [key, value] : file.sectionEntries(section))
            merged.writeRaw(section, key, value);
        result.otherSections.append(section);
    }

    std::swap(session.settings(), merged);
    if (!session.saveSettings()) {
        std::swap(session.settings(), merged);
        return failed(session, tr("载入失败！无法写入设置文件，命令列表未改变。"));
    }
    session.commandList().rebuildFromStore();

    result.outcome = CommandFileResult::Outcome::Done;
    result.commands = int(listed.sections.size());
    result.skipped = listed.skipped;
    MessageLog& log = session.messages();
    const qint64 present = listed.sections.size() + listed.skipped;
    if (listed.skipped > 0)
        log.add(tr("批处理命令文件中有 %1 条命令缺少命令字段或无法使用，已跳过。").arg(listed.skipped),
                MessageColour::Red);
    if (listed.declared != present) {
        log.add(tr("批处理命令文件中的命令数（%1）与所列命令不符，已载入所列的 %2 条命令。")
                    .arg(listed.declared)
                    .arg(listed.sections.size()),
                MessageColour::Red);
    }
    if (!result.otherSections.isEmpty()) {
        QStringList names;
        for (qsizetype i = 0; i < result.otherSections.size() && i < kNamedSections; ++i)
            names.append(u'[' + result.otherSections[i] + u']');
        QString text = tr("批处理命令文件中的其它字段已合并到设置文件：%1").arg(names.join(QStringLiteral("、")));
        if (result.otherSections.size() > kNamedSections)
            text += tr(" 等 %1 个").arg(result.otherSections.size());
        log.add(text, MessageColour::Blue);
    }
    if (!refused.isEmpty())
        log.add(tr("批处理命令文件中的脚本设置未合并到设置文件：%1").arg(refused.join(QStringLiteral("、"))), MessageColour::Red);

    session.runAllCommands();
    return result;
}

CommandFileResult loadCommandFile(Session& session, const QString& fileName)
{
    return loadCommandFile(session, FileChooser([&] { return fileName; }));
}

// ---------------------------------------------------------------------------------------
// Recent files

QStringList recentCommandFiles(const SettingsStore& store)
{
    const qint64 count = std::clamp<qint64>(store.readInt(kRecentSection, kRecentCountKey, 0), 0, kMaxRecentCommandFiles);
    QStringList files;
    for (qint64 i = 1; i <= count; ++i) {
        const QString file = store.readString(kRecentSection, QString::number(i), QString());
        if (!file.isEmpty())
            files.append(file);
    }
    return files;
}

void rememberCommandFile(SettingsStore& store, const QString& fileName)
{
    if (fileName.isEmpty())
        return;
    const QString key = pathKey(fileName);
    QStringList files = recentCommandFiles(store);
    files.removeIf([&](const QString& file) { return pathKey(file) == key; });
    files.prepend(fileName);
    if (files.size() > kMaxRecentCommandFiles)
        files.resize(kMaxRecentCommandFiles);
    writeRecent(store, files);
}

QList<RecentCommandFile> recentCommandFileMenu(const SettingsStore& store)
{
    QList<RecentCommandFile> entries;
    for (const QString& file : recentCommandFiles(store)) {
        if (!platform::exists(toPlatformPath(file)))
            continue;
        const PathParts parts = splitPath(file);
        const QString caption = QString::asprintf("%.2d", int(entries.size() + 1)) + QStringLiteral(". ")
            + parts.fileName + QStringLiteral(" | ") + shownFolder(parts.folder);
        entries.append(RecentCommandFile{file, caption});
    }
    return entries;
}

bool clearRecentCommandFiles(Session& session)
{
    if (!requireFileRenamePage(session))
        return false;
    const Question question{QStringLiteral("commands.clearRecent"), hintTitle(),
                            tr("确定要清除最近打开的批处理命令文件列表吗？"), Button::Ok | Button::Cancel,
                            Button::Cancel, Icon::Question};
    if (session.interaction().ask(question) != Button::Ok)
        return false;
    session.settings().eraseSection(kRecentSection);
    session.saveSettings();
    return true;
}

}  // namespace qp
