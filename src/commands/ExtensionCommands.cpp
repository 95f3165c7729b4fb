#include "commands/ExtensionCommands.h"

#include <magic.h>

#include <QCoreApplication>
#include <QHash>
#include <algorithm>
#include <limits>
#include <memory>

#include "commands/NameText.h"
#include "commands/RegexSubstitution.h"
#include "core/CommandRegistry.h"
#include "core/FolderListing.h"
#include "core/FileEntry.h"
#include "core/MessageLog.h"
#include "core/PathText.h"
#include "core/Session.h"

namespace qp {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("ExtensionCommands", text); }

const QString kDot = QStringLiteral(".");

// A stored number held to 32 bits, so that start + row × step cannot overflow.
qint64 readInt32(const CommandSection& s, const QString& key, qint64 byDefault)
{
    return std::clamp<qint64>(s.readInt(key, byDefault), std::numeric_limits<qint32>::min(),
                              std::numeric_limits<qint32>::max());
}

// Splits a rebuilt whole name at its last dot, as a loaded file's name is split, so that a
// dot a command put in becomes the separator when it is the last one.
void resplit(const QString& whole, QString& name, QString& ext)
{
    NameParts parts = splitFileName(whole, false);
    name = std::move(parts.name);
    ext = std::move(parts.ext);
}

QString withoutDots(QString text)
{
    text.remove(QLatin1Char('.'));
    return text;
}

qsizetype clampPosition(qint64 position, qsizetype length)
{
    return qsizetype(std::clamp<qint64>(position, 0, length));
}

// The disk's answer to "is this row a folder?", from the row's path as loaded. An object
// whose attributes cannot be read (it has gone, or access is denied) counts as a folder.
// Each compiled command keeps its own listing, so the answers hold for one run.
bool countsAsFolder(FolderListing& disk, const FileEntry& row)
{
    return disk.isFolder(row.path, row.fileName()).value_or(true);
}

// Most commands have one rule for files and another for folders. Both are cheap, so both
// are worked out and the disk is asked only when they disagree: a command that changes
// nothing for a row costs no attribute read.
class FileOrFolderCommand : public CompiledCommand {
public:
    void apply(const CommandContext& context, QString& name, QString& ext) final
    {
        QString fileName = name, fileExt = ext;
        onFile(context, fileName, fileExt);
        QString folderName = name, folderExt = ext;
        onFolder(context, folderName, folderExt);
        if (fileName == folderName && fileExt == folderExt) {
            name = std::move(fileName);
            ext = std::move(fileExt);
        } else if (countsAsFolder(m_disk, context.row)) {
            name = std::move(folderName);
            ext = std::move(folderExt);
        } else {
            name = std::move(fileName);
            ext = std::move(fileExt);
        }
    }

protected:
    virtual void onFile(const CommandContext& context, QString& name, QString& ext) = 0;
    // Folders are left alone unless a command says otherwise.
    virtual void onFolder(const CommandContext& context, QString& name, QString& ext)
    {
        (void)context, (void)name, (void)ext;
    }

private:
    FolderListing m_disk;
};

// A command whose rules are plain functions of the working pair and a few parameters.
class PairCommand : public FileOrFolderCommand {
public:
    using Rule = std::function<void(QString& name, QString& ext)>;
    PairCommand(Rule file, Rule folder) : m_file(std::move(file)), m_folder(std::move(folder)) {}

protected:
    void onFile(const CommandContext&, QString& name, QString& ext) override { m_file(name, ext); }
    void onFolder(const CommandContext&, QString& name, QString& ext) override
    {
        if (m_folder)
            m_folder(name, ext);
    }

private:
    Rule m_file;
    Rule m_folder;
};

std::unique_ptr<CompiledCommand> pair(PairCommand::Rule file, PairCommand::Rule folder = {})
{
    return std::make_unique<PairCommand>(std::move(file), std::move(folder));
}

// Folders: the text joins the name after a dot, when there is any.
PairCommand::Rule appendToFolder(const QString& text)
{
    return [text](QString& name, QString&) {
        if (!text.isEmpty())
            name += kDot + text;
    };
}

// E203: keeps or deletes a run of the dot-free extension, counted from either end.
class PartOfExtension {
public:
    explicit PartOfExtension(const CommandSection& s)
        : m_keep(s.readInt(QStringLiteral("E2_DelOrKeep"), 0) == 1),
          m_fromRight(s.readBool(QStringLiteral("E2_DelExtCharFromRight"), false)),
          m_start(s.readInt(QStringLiteral("E2_DelExtCharFrom"), 1)),
          m_count(std::max<qint64>(0, s.readInt(QStringLiteral("E2_DelExtCharTo"), 1)))
    {
    }

    QString operator()(const QString& ext) const
    {
        const QString text = withoutDots(ext);
        const qint64 length = text.size();
        qint64 first = 0;  // 0-based start of the run, and its length
        qint64 count = 0;
        if (!m_fromRight) {
            // A start before the first character counts from the first character.
            first = std::max<qint64>(m_start, 1) - 1;
            count = m_count;
        } else {
            // The run ends at the start-th character from the right and reaches leftwards
            // at most `count` characters, clipped at the beginning.
            const qint64 untouchedLeft = m_start + m_count - 1 <= length ? length - (m_start + m_count) + 1 : 0;
            const qint64 end = length - m_start + 1;  // 1-based last character of the run
            count = end - untouchedLeft;
            first = end - count;
        }
        first = std::clamp<qint64>(first, 0, length);
        count = std::clamp<qint64>(count, 0, length - first);
        if (m_keep)
            return text.mid(qsizetype(first), qsizetype(count));
        QString rest = text;
        rest.remove(qsizetype(first), qsizetype(count));
        return rest;
    }

private:
    bool m_keep;
    bool m_fromRight;
    qint64 m_start;
    qint64 m_count;
};

// E301: the number start + row × step, as digits or letters, padded to a width, put into
// the extension. The number comes from the row's position in the list, so unticked rows
// leave gaps and a run always numbers the same rows the same way.
class NumberIntoExtension : public FileOrFolderCommand {
public:
    explicit NumberIntoExtension(const CommandSection& s)
        : m_start(readInt32(s, QStringLiteral("E3_Start"), 1)),
          m_step(readInt32(s, QStringLiteral("E3_Increment"), 1)),
          m_width(std::clamp<qint64>(s.readInt(QStringLiteral("E3_DigitUnits"), 1), 0, 255)),
          m_insertAt(s.readInt(QStringLiteral("E3_InsertPos"), 0))
    {
        const bool digits = s.readBool(QStringLiteral("E3_Digit"), true);
        if (digits)
            m_form = Form::Digits;
        else if (s.readBool(QStringLiteral("E3_LowerCase"), false))
            m_form = Form::Lower;
        else if (s.readBool(QStringLiteral("E3_UpperCase"), false))
            m_form = Form::Upper;
        if (s.readBool(QStringLiteral("E3_AutoSupplement"), true)) {
            m_fill = m_form == Form::Lower ? QStringLiteral("a") : m_form == Form::Upper ? QStringLiteral("A")
                                                                                         : QStringLiteral("0");
        } else if (s.readBool(QStringLiteral("E3_ManualSupplement"), false)) {
            m_fill = s.readString(QStringLiteral("E3_SupplementText"), QStringLiteral("0"));
        }
    }

    QString numberFor(qsizetype row) const
    {
        const qint64 value = m_start + qint64(row) * m_step;
        QString text;
        switch (m_form) {
        case Form::None:
            return text;
        case Form::Digits:
            text = QString::number(value);
            break;
        case Form::Lower:
        case Form::Upper: {
            // Base 26 with "A" as zero: 0 is "A", 25 "Z", 26 "BA". A negative number has no
            // letter form and is written as zero.
            text = nametext::lettersOf(std::max<qint64>(value, 0), m_form == Form::Lower ? u'a' : u'A');
            break;
        }
        }
        // The fill text is repeated whole once per missing character.
        const qint64 missing = m_width - text.size();
        if (missing > 0 && !m_fill.isEmpty())
            text.prepend(m_fill.repeated(qsizetype(missing)));
        return text;
    }

protected:
    void onFile(const CommandContext& context, QString& name, QString& ext) override
    {
        QString digits = withoutDots(ext);
        digits.insert(clampPosition(m_insertAt, digits.size()), numberFor(context.rowIndex));
        resplit(name + kDot + digits, name, ext);
    }
    void onFolder(const CommandContext& context, QString& name, QString& ext) override
    {
        name += kDot + numberFor(context.rowIndex);
        ext.clear();
    }

private:
    enum class Form { None, Digits, Lower, Upper };
    qint64 m_start;
    qint64 m_step;
    qint64 m_width;
    qint64 m_insertAt;
    Form m_form = Form::None;
    QString m_fill;  // empty: no padding
};

// E501: a Perl-compatible pattern over the dot-free extension, every match replaced.
// Compiled (and JIT-compiled where the library can) once per run; a pattern or replacement
// the engine rejects leaves every row as it was and says so once in the message log.
class RegexOnExtension : public FileOrFolderCommand {
public:
    explicit RegexOnExtension(const CommandSection& s)
        : m_pattern(s.readString(QStringLiteral("E5_RegexText"), QString())),
          m_replacement(s.readString(QStringLiteral("E5_RegexReplaceText"), QString())),
          m_regex(m_pattern, m_replacement)
    {
        if (!m_pattern.isEmpty() && !m_regex.compiled()) {
            m_problem = tr("扩展名正则表达式有误，所有名称保持不变：%1（位置 %2）：%3")
                            .arg(m_regex.compileError(), QString::number(m_regex.compileErrorOffset()), m_pattern);
        }
    }

protected:
    void onFile(const CommandContext& context, QString& name, QString& ext) override
    {
        if (m_pattern.isEmpty())
            return;
        if (!m_regex.compiled() || m_failed) {
            report(context);
            return;
        }
        const QString subject = withoutDots(ext);
        QString replaced;
        switch (m_regex.replaceAll(subject, replaced)) {
        case RegexSubstitution::Outcome::Done:
            resplit(name + kDot + replaced, name, ext);
            return;
        case RegexSubstitution::Outcome::BadReplacement:
            // A replacement text the engine rejects fails for every row alike, so the run
            // stops using it.
            m_failed = true;
            if (m_problem.isEmpty()) {
                m_problem = tr("扩展名正则表达式的替换文本有误，所有名称保持不变：%1：%2")
                                .arg(m_regex.lastError(), m_replacement);
            }
            break;
        case RegexSubstitution::Outcome::FailedForSubject:
            // A limit reached on one subject, a name that is not valid UTF-16: just this row
            // stays as it was.
            if (m_problem.isEmpty())
                m_problem = tr("扩展名正则表达式无法用于“%1”，该名称保持不变：%2").arg(subject, m_regex.lastError());
            break;
        }
        report(context);
    }

private:
    void report(const CommandContext& context)
    {
        if (m_reported || m_problem.isEmpty())
            return;
        m_reported = true;
        context.session.messages().add(m_problem, MessageColour::Red);
    }

    QString m_pattern;
    QString m_replacement;
    RegexSubstitution m_regex;
    QString m_problem;
    bool m_failed = false;
    bool m_reported = false;
};

// E704, folders: the moved dot may only leave a name that still reads as one name.
void tidyFolderName(QString& name)
{
    while (name.endsWith(QLatin1Char('.')))
        name.chop(1);
    if (name.startsWith(QLatin1Char('.')) && name.indexOf(QLatin1Char('.'), 1) < 0)
        name.remove(0, 1);
}

// E705: the file's type from its content, and the usual extension for that type.
//
// Each row is identified while the command runs over it, from the object on disk, so the
// result does not depend on where E705 stands in the command list and a run needs no extra
// step after its last command.
//
// The first megabyte of the file is read through the platform layer and handed to libmagic
// as a buffer: that is what libmagic itself looks at for the types we name, and it keeps
// every file access in one layer.
class ExtensionFromContent : public CompiledCommand {
public:
    ExtensionFromContent() : m_magic(magic_open(MAGIC_SYMLINK | MAGIC_ERROR))
    {
        if (m_magic && magic_load(m_magic.get(), nullptr) != 0)
            m_magic.reset();
    }

    void apply(const CommandContext& context, QString& name, QString& ext) override
    {
        if (!m_magic || countsAsFolder(m_disk, context.row))
            return;
        std::string head;
        const bool read = platform::readChunks(toPlatformPath(context.row.fullPath()), kChunk, [&](std::string_view chunk) {
            head.append(chunk.substr(0, kHeadBytes - head.size()));
            return head.size() < kHeadBytes;
        });
        if (!read && head.empty())
            return;
        const QString found = identify(head, withoutDots(ext));
        if (!found.isEmpty())
            resplit(name + kDot + found, name, ext);
    }

private:
    FolderListing m_disk;
    static constexpr std::size_t kChunk = 64 * 1024;
    static constexpr std::size_t kHeadBytes = 1024 * 1024;

    struct MagicClose {
        void operator()(magic_t cookie) const { magic_close(cookie); }
    };

    // The extension (without dot) for the file, or empty when its type is unknown or says
    // nothing about an extension (plain text, unstructured bytes, an empty file). An
    // extension that already fits the type is kept as it is written.
    QString identify(const std::string& head, const QString& current)
    {
        magic_setflags(m_magic.get(), MAGIC_SYMLINK | MAGIC_ERROR | MAGIC_EXTENSION);
        const char* extensions = magic_buffer(m_magic.get(), head.data(), head.size());
        QStringList fitting;
        if (extensions && std::string_view(extensions) != "???")
            fitting = QString::fromUtf8(extensions).split(QLatin1Char('/'), Qt::SkipEmptyParts);
        magic_setflags(m_magic.get(), MAGIC_SYMLINK | MAGIC_ERROR | MAGIC_MIME_TYPE);
        const char* mime = magic_buffer(m_magic.get(), head.data(), head.size());
        const QString type = mime ? QString::fromLatin1(mime) : QString();
        const QString usual = usualExtensions().value(type);
        // Text is told apart only by guessing at its words, and unstructured bytes say nothing:
        // such files keep the extension they have.
        if (usual.isEmpty()
            && (type.startsWith(u"text/") || type.startsWith(u"inode/") || type == u"application/octet-stream"))
            return {};
        if (!usual.isEmpty())
            fitting.prepend(usual);
        if (fitting.isEmpty())
            return {};
        for (const QString& candidate : std::as_const(fitting)) {
            if (candidate.compare(current, Qt::CaseInsensitive) == 0)
                return current;
        }
        return fitting.first();
    }

    // Types whose usual extension is not the first one libmagic lists, or for which it lists
    // none (ZIP archives, for one).
    static const QHash<QString, QString>& usualExtensions()
    {
        static const QHash<QString, QString> table = {
            {"image/jpeg", "jpg"},
            {"image/png", "png"},
            {"image/gif", "gif"},
            {"image/bmp", "bmp"},
            {"image/x-ms-bmp", "bmp"},
            {"image/webp", "webp"},
            {"image/tiff", "tif"},
            {"image/vnd.microsoft.icon", "ico"},
            {"image/svg+xml", "svg"},
            {"application/pdf", "pdf"},
            {"application/zip", "zip"},
            {"application/x-7z-compressed", "7z"},
            {"application/x-rar", "rar"},
            {"application/vnd.rar", "rar"},
            {"application/gzip", "gz"},
            {"application/x-bzip2", "bz2"},
            {"application/x-xz", "xz"},
            {"application/x-tar", "tar"},
            {"audio/mpeg", "mp3"},
            {"audio/x-wav", "wav"},
            {"audio/flac", "flac"},
            {"audio/ogg", "ogg"},
            {"video/mp4", "mp4"},
            {"video/x-msvideo", "avi"},
            {"video/x-matroska", "mkv"},
            {"video/quicktime", "mov"},
            {"application/msword", "doc"},
            {"application/vnd.ms-excel", "xls"},
            {"application/vnd.ms-powerpoint", "ppt"},
            {"application/vnd.openxmlformats-officedocument.wordprocessingml.document", "docx"},
            {"application/vnd.openxmlformats-officedocument.spreadsheetml.sheet", "xlsx"},
            {"application/vnd.openxmlformats-officedocument.presentationml.presentation", "pptx"},
            {"application/x-dosexec", "exe"},
            {"application/vnd.microsoft.portable-executable", "exe"},
            {"font/sfnt", "ttf"},
            {"text/html", "html"},
            {"text/rtf", "rtf"},
        };
        return table;
    }

    std::unique_ptr<std::remove_pointer_t<magic_t>, MagicClose> m_magic;
};

std::unique_ptr<CompiledCommand> compileExtensionCommand(const CommandSection& s)
{
    const auto text = [&s](const char* key) { return s.readString(QString::fromLatin1(key), QString()); };
    const QString& code = s.code;

    if (code == u"E101" || code == u"E102") {
        const QString content = text("E1_Content");
        const bool before = code == u"E101";
        return pair(
            [content, before](QString&, QString& ext) {
                const QString rest = ext.mid(1);
                ext = kDot + (before ? content + rest : rest + content);
            },
            appendToFolder(content));
    }
    if (code == u"E103") {
        const QString search = text("E1_SearchStr");
        const QString content = text("E1_Content");
        const Qt::CaseSensitivity cs = s.readBool(QStringLiteral("E1_CaseFlag"), false) ? Qt::CaseSensitive
                                                                                          : Qt::CaseInsensitive;
        return pair([search, content, cs](QString& name, QString& ext) {
            QString replaced = ext;
            if (!search.isEmpty())
                replaced.replace(search, content, cs);
            resplit(name + replaced, name, ext);
        });
    }
    if (code == u"E201")
        return pair([](QString&, QString& ext) { ext.clear(); });
    if (code == u"E202")
        return pair([](QString& name, QString& ext) { resplit(name, name, ext); });
    if (code == u"E203") {
        return pair([part = PartOfExtension(s)](QString& name, QString& ext) {
            resplit(name + kDot + part(ext), name, ext);
        });
    }
    if (code == u"E301")
        return std::make_unique<NumberIntoExtension>(s);
    if (code == u"E401" || code == u"E402") {
        // Files and folders alike, so the disk is never asked.
        const bool upper = code == u"E401";
        return pair([upper](QString&, QString& ext) { ext = nametext::asciiCase(ext, upper); },
                    [upper](QString&, QString& ext) { ext = nametext::asciiCase(ext, upper); });
    }
    if (code == u"E501")
        return std::make_unique<RegexOnExtension>(s);
    if (code == u"E601") {
        const QString fixed = text("E6_FixExtName");
        return pair([fixed](QString& name, QString& ext) {
            if (!fixed.isEmpty())
                resplit(name + kDot + fixed, name, ext);
        });
    }
    if (code == u"E701") {
        const QString added = text("E7_AddNewExtStr");
        return pair(
            [added](QString& name, QString& ext) {
                if (!added.isEmpty())
                    resplit(name + ext + kDot + added, name, ext);
            },
            appendToFolder(added));
    }
    if (code == u"E702") {
        const QString replacement = text("E7_ReplaceDotStr");
        return pair(
            [replacement](QString& name, QString& ext) {
                QString replaced = ext;
                replaced.replace(kDot, replacement);
                resplit(name + replaced, name, ext);
            },
            [replacement](QString& name, QString&) { name += replacement; });
    }
    if (code == u"E703") {
        // The last occurrence in the whole name, compared case-sensitively, becomes the dot;
        // without one (or without a text) the row stays exactly as it is.
        const QString search = text("E7_ReplaceStrStr");
        const auto replaceLast = [search](QString& name, QString& ext, bool split) {
            const QString whole = name + ext;
            const qsizetype at = search.isEmpty() ? -1 : whole.lastIndexOf(search);
            if (at < 0)
                return;
            const QString replaced = QString(whole).replace(at, search.size(), kDot);
            if (split)
                resplit(replaced, name, ext);
            else
                name = replaced;
        };
        return pair([replaceLast](QString& name, QString& ext) { replaceLast(name, ext, true); },
                    [replaceLast](QString& name, QString& ext) { replaceLast(name, ext, false); });
    }
    if (code == u"E704") {
        const qint64 distance = s.readInt(QStringLiteral("E7_MoveDotNum"), 1);
        const bool right = s.readInt(QStringLiteral("E7_MoveDotLeftRight"), 0) == 1;
        // The dot moves `distance` characters into the old extension (right) or into the
        // name (left); the dots of the old extension are gone either way.
        const auto move = [distance, right](QString name, QString ext) {
            ext.remove(QLatin1Char('.'));
            if (right)
                ext.insert(clampPosition(distance, ext.size()), kDot);
            else
                name.insert(clampPosition(name.size() - distance, name.size()), kDot);
            return std::pair{name, ext};
        };
        return pair(
            [move](QString& name, QString& ext) {
                const auto [moved, rest] = move(name, ext);
                resplit(moved + rest, name, ext);
            },
            [move](QString& name, QString&) {
                name = move(name, QString()).first;
                tidyFolderName(name);
            });
    }
    if (code == u"E705")
        return std::make_unique<ExtensionFromContent>();
    return nullptr;
}

}  // namespace

QStringList extensionCommandCodes()
{
    return {"E101", "E102", "E103", "E201", "E202", "E203", "E301", "E401",
            "E402", "E501", "E601", "E701", "E702", "E703", "E704", "E705"};
}

QString extensionCommandComment(const QString& code)
{
    static const QHash<QString, const char*> comments = {
        {"E101", "扩展名之前添加"},
        {"E102", "扩展名之后添加"},
        {"E103", "扩展名查找替换"},
        {"E201", "清空整个扩展名"},
        {"E202", "删除整个扩展名"},
        {"E203", "删除/保留扩展名指定位置和数量字符"},
        {"E301", "自动编号插入扩展名"},
        {"E401", "全部大写"},
        {"E402", "全部小写"},
        {"E501", "扩展名正则表达式"},
        {"E601", "扩展名正则表达式"},
        {"E701", "添加新扩展名原扩展名并入"},
        {"E702", "替换扩展名分界符“.”"},
        {"E703", "查找字符串并用“.”替换"},
        {"E704", "移动扩展名分界符“.”"},
        {"E705", "智能分析文件获取扩展名"},
    };
    const char* text = comments.value(code, nullptr);
    return text ? tr(text) : QString();
}

void registerExtensionCommands(CommandRegistry& registry)
{
    registry.registerFamily(extensionCommandCodes(), compileExtensionCommand);
}

}  // namespace qp
