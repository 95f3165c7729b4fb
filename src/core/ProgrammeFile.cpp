#include "core/ProgrammeFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QStringDecoder>
#include <optional>

#include "core/Loader.h"
#include "core/PathText.h"
#include "core/TextFiles.h"
#include "core/Session.h"
#include "core/SettingsKeys.h"
#include "platform/FileSystem.h"

namespace qp {

const QString kProgrammeFolderKey = QStringLiteral("OpenDialogInitialDirMMenuFileExportProgramme");

namespace {

const QString kSectionName = QStringLiteral("Rename Programme");
const QString kTitleHint = QStringLiteral("温馨提示");

// A programme lists one line per object; a file this large is not one and is not read.
constexpr std::uint64_t kLargestProgramme = std::uint64_t(256) << 20;
constexpr qsizetype kPollEvery = 1024;
// The missing objects listed one by one; the rest are counted.
constexpr qsizetype kMaxListedMissing = 500;
constexpr qsizetype kMaxLoggedMissing = 100;

#ifdef _WIN32
constexpr char16_t kNativeSeparator = u'\\';
#else
constexpr char16_t kNativeSeparator = u'/';
#endif

QString tr(const char* text) { return QCoreApplication::translate("ProgrammeFile", text); }


bool isForbidden(QChar c)
{
    switch (c.unicode()) {
    case u'*':
    case u'/':
    case u'<':
    case u'>':
    case u'?':
    case u'|':
        return true;
    default:
        return c.unicode() < 32;
    }
}

QString cleanText(QStringView raw, bool isPath)
{
    const QString text = text::fromNameField(raw);
    QString out;
    out.reserve(text.size());
    for (QChar c : text) {
        if (c == kNativeSeparator) {
            if (isPath)
                out += c;
            continue;
        }
        if (isPath && (c == u'\r' || c == u'\n'))
            out += c;
        else if (!isForbidden(c))
            out += c;
    }
    return out;
}

// The cleaned old path as the program holds it: '/'-separated, without repeated or trailing
// separators and "." or ".." steps, so that two spellings of one object give one row.
QString internalOldPath(const QString& cleaned)
{
    return cleaned.isEmpty() ? cleaned : QDir::cleanPath(internalSeparators(cleaned));
}

}  // namespace

QByteArray programmeFileBytes(const RenameList& list)
{
    QStringList lines = text::programmeHeader(QStringLiteral(";更名方案文件 或 快照文件"),
                                              QStringLiteral(";由 Quillet Pro 生成，可用 Quillet Pro 再次导入"));
    lines.append(QStringLiteral("[") + kSectionName + QStringLiteral("]"));
    lines.reserve(lines.size() + list.size());
    for (const FileEntry& row : list.rows())
        lines.append(text::nameField(nativeSeparators(row.fullPath())) + QLatin1Char('=') + text::nameField(row.newFileName()));
    return text::withBomAndCrlf(lines);
}

void forEachRenameFileLine(QStringView text,
                           const std::function<void(RenameSection, QStringView key, QStringView value)>& entry)
{
    if (!text.isEmpty() && text.front() == u'\uFEFF')
        text = text.sliced(1);
    std::optional<RenameSection> section;
    text::forEachLine(text, [&](QStringView line) {
        const QStringView trimmed = text::trimBlanks(line);
        if (trimmed.isEmpty() || trimmed.front() == u';' || trimmed.front() == u'#')
            return;
        if (const QStringView name = text::sectionHeader(line); !name.isNull()) {
            auto is = [&](const char16_t* known) { return name.compare(QStringView(known), Qt::CaseInsensitive) == 0; };
            section = is(u"Rename Programme") ? std::optional(RenameSection::Programme)
                      : is(u"Rename Config")  ? std::optional(RenameSection::Config)
                      : is(u"Rename Plan")    ? std::optional(RenameSection::Plan)
                      : is(u"Rename Journal") ? std::optional(RenameSection::Journal)
                                              : std::nullopt;
            if (section == RenameSection::Journal)
                entry(RenameSection::Journal, QStringView(), QStringView());  // the heading itself
            return;
        }
        if (section == RenameSection::Journal) {
            entry(RenameSection::Journal, QStringView(), line);
            return;
        }
        const qsizetype eq = line.indexOf(u'=');
        if (!section || eq < 0)
            return;
        QStringView key = line.first(eq);
        while (!key.isEmpty() && (key.front() == u' ' || key.front() == u'\t'))
            key = key.sliced(1);
        if (!key.isEmpty())
            entry(*section, key, line.sliced(eq + 1));
    });
}

RenameFileText readRenameFile(QStringView text)
{
    RenameFileText file;
    forEachRenameFileLine(text, [&](RenameSection section, QStringView key, QStringView value) {
        switch (section) {
        case RenameSection::Config: file.config.push_back({key.toString(), value.toString()}); break;
        case RenameSection::Programme: file.programme.push_back({key.toString(), value.toString()}); break;
        case RenameSection::Plan: file.plan.push_back({key.toString(), value.toString()}); break;
        case RenameSection::Journal:
            file.hasJournal = true;
            if (!value.isNull())
                file.journal.push_back(value.toString());
            break;
        }
    });
    return file;
}

QString cleanProgrammePath(QStringView raw) { return cleanText(raw, true); }

QString cleanProgrammeName(QStringView raw) { return cleanText(raw, false); }

void ProgrammeFile::rememberFolder(const QString& fileName)
{
    m_session.settings().writeString(keys::kInterface, kProgrammeFolderKey, splitPath(internalSeparators(fileName)).folder);
}

bool ProgrammeFile::exportTo(const QString& fileName)
{
    const RenameList& list = m_session.renameList();
    if (list.isEmpty())
        return false;
    const QByteArray bytes = programmeFileBytes(list);
    std::string error;
    if (!platform::writeFileAtomically(toPlatformPath(fileName), std::string_view(bytes.constData(), size_t(bytes.size())),
                                       &error)) {
        const QString text = tr("无法写入文件：%1（%2）").arg(nativeSeparators(fileName), QString::fromStdString(error));
        m_session.messages().add(text, MessageColour::Red);
        m_session.interaction().notify(Notice{QStringLiteral("programme.export.failed"), kTitleHint, text, Icon::Warning});
        return false;
    }
    rememberFolder(fileName);
    m_session.saveSettings();
    m_session.interaction().notify(
        Notice{QStringLiteral("programme.export.done"), kTitleHint, tr("更名方案导出成功。"), Icon::Information});
    return true;
}

ProgrammeImport ProgrammeFile::importFrom(const QString& fileName)
{
    ProgrammeImport result;
    Interaction& ui = m_session.interaction();
    if (!m_session.renameList().isEmpty()) {
        const Question question{QStringLiteral("programme.import.replaceList"), kTitleHint,
                                tr("导入更名方案文件或快照文件时将清空更名文件列表和所有更名操作，确认吗？"),
                                Button::Ok | Button::Cancel, Button::Cancel, Icon::Question};
        if (ui.ask(question) != Button::Ok)
            return result;
    }
    auto fail = [&](ProgrammeImport::Outcome outcome, const QString& id, const QString& text, Icon icon) {
        ui.notify(Notice{id, kTitleHint, text, icon});
        result.outcome = outcome;
        return result;
    };

    const platform::ReadResult file = platform::readFile(toPlatformPath(fileName), kLargestProgramme);
    if (file.status == platform::ReadStatus::Missing || file.status == platform::ReadStatus::Unreadable) {
        return fail(ProgrammeImport::Outcome::Unreadable, QStringLiteral("programme.import.unreadable"),
                    tr("无法读取文件：%1（%2）").arg(nativeSeparators(fileName), QString::fromStdString(file.systemMessage)),
                    Icon::Warning);
    }
    rememberFolder(fileName);
    m_session.saveSettings();
    const QString formatError =
        tr("导入失败！可能是更名方案文件或快照文件的格式错误，或是更名方案文件或快照文件内所列的对象不存在。");
    if (file.status == platform::ReadStatus::TooLarge)
        return fail(ProgrammeImport::Outcome::NoEntries, QStringLiteral("programme.import.badFormat"), formatError,
                    Icon::Warning);

    // UTF-8 is accepted with or without a byte-order mark; anything that does not decode
    // as UTF-8 (other code pages, UTF-16, noise) is refused as a whole.
    QStringDecoder decoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    const QString text = decoder.decode(QByteArrayView(file.bytes.data(), qsizetype(file.bytes.size())));
    if (decoder.hasError()) {
        return fail(ProgrammeImport::Outcome::NotUtf8, QStringLiteral("programme.import.notUtf8"),
                    tr("导入失败！更名方案文件或快照文件的编码格式错误，正确的为 UTF-8 编码格式。"), Icon::Warning);
    }
    const std::vector<ProgrammeLine> lines = readRenameFile(text).programme;
    if (lines.empty())
        return fail(ProgrammeImport::Outcome::NoEntries, QStringLiteral("programme.import.badFormat"), formatError,
                    Icon::Warning);

    // Each line that names an existing object becomes a row with the line's new name.
    BusyScope busy(ui);
    const QString caption = tr("载入对象至列表");
    LoadCandidates candidates;
    RowMaker maker;
    for (size_t i = 0; i < lines.size(); ++i) {
        if (i % kPollEvery == 0) {
            ui.progress(caption, int(i * 100 / lines.size()));
            if (ui.stopRequested())
                return result;  // Cancelled, nothing changed
        }
        const QString cleaned = cleanProgrammePath(lines[i].oldPath);
        const QString path = internalOldPath(cleaned);
        const auto info = isAbsolutePath(path) ? platform::stat(toPlatformPath(path)) : std::nullopt;
        if (!info || isRootPath(path)) {
            if (result.missing.size() < kMaxListedMissing)
                result.missing.append(tr("对象不存在：") + nativeSeparators(path));
            ++result.missingCount;
            continue;
        }
        const PathParts parts = splitPath(path);
        FileEntry row = maker.make(parts.folder, parts.fileName, *info);
        const NameParts newName = splitFileName(cleanProgrammeName(lines[i].newName), row.isFolder);
        row.newName = newName.name;
        row.newExt = newName.ext;
        candidates.rows.push_back(std::move(row));
    }

    MessageLog& log = m_session.messages();
    const qsizetype logged = qMin(kMaxLoggedMissing, result.missing.size());
    for (qsizetype i = 0; i < logged; ++i)
        log.add(result.missing[i], MessageColour::Red);
    if (result.missingCount > logged)
        log.add(tr("另有 %1 个对象因同样的原因被跳过。").arg(result.missingCount - logged), MessageColour::Red);

    if (candidates.empty()) {
        return fail(ProgrammeImport::Outcome::NothingFound, QStringLiteral("programme.import.nothingLoaded"),
                    tr("导入完成！未能载入内容，请检查后重试。"), Icon::Information);
    }

    m_session.commandList().clearAll();
    m_session.saveSettings();
    RenameList& list = m_session.renameList();
    list.clear();
    // A repeated line would give one object two rows; the first line wins.
    result.repeated = dropKnownAndRepeated(candidates, list, true);
    result.loaded = candidates.size();
    ui.progress(caption, 100);
    list.appendAll(std::move(candidates.rows), std::move(candidates.keys));
    m_session.setPendingImport(true);
    result.outcome = ProgrammeImport::Outcome::Imported;
    ui.notify(Notice{QStringLiteral("programme.import.done"), kTitleHint,
                     tr("导入成功！请进行应用更名操作，其它操作可能会改变新文件名和新扩展名两列内容。"),
                     Icon::Information});
    return result;
}

}  // namespace qp
