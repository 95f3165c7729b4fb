#include "commands/RenameFromList.h"

#include <QCoreApplication>
#include <QHash>
#include <QStringDecoder>

#include "core/CommandRegistry.h"
#include "core/FileEntry.h"
#include "core/MessageLog.h"
#include "core/PathText.h"
#include "core/Session.h"
#include "core/SettingsStore.h"
#include "core/TextFiles.h"

namespace qp::renamelist {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("RenameFromList", text); }

// A list of names is text a person made; anything larger is not one.
constexpr std::uint64_t kLargestListFile = std::uint64_t(64) << 20;

QString unescaped(QStringView part)
{
    QString text = text::trimBlanks(part).toString();
    text.replace(QStringLiteral("<61>"), QStringLiteral("="));
    return text;
}

class RenameFromList : public CompiledCommand {
public:
    explicit RenameFromList(const CommandSection& s)
    {
        const QStringList lines = readLines(s.store, s.name);
        for (const QString& line : lines) {
            bool skipped = false;
            const std::optional<Pair> pair = parseLine(line, &skipped);
            if (!pair) {
                m_unusable += skipped ? 0 : 1;
                continue;
            }
            QHash<QString, QString>& table = pair->byPath ? m_byPath : m_byName;
            const QString key = pathKey(pair->oldText);
            if (table.contains(key)) {
                ++m_repeated;  // the first line for an old name wins
                continue;
            }
            table.insert(key, pair->newName);
        }
    }

    void apply(const CommandContext& context, QString& name, QString& ext) override
    {
        const FileEntry& row = context.row;
        auto found = m_byPath.isEmpty() ? m_byPath.constEnd() : m_byPath.constFind(pathKey(row.fullPath()));
        if (found == m_byPath.constEnd()) {
            found = m_byName.constFind(pathKey(row.fileName()));
            if (found == m_byName.constEnd()) {
                ++m_unmatched;
                return;
            }
        }
        ++m_matched;
        // A folder's whole name is its name; a file's new name is split at its last dot.
        const NameParts parts = splitFileName(*found, row.isFolder);
        name = parts.name;
        ext = parts.ext;
    }

    void finish(Session& session) override
    {
        QString text = tr("文件名对照列表更名：%1 个对象按列表更名，%2 个对象在列表中没有对应项，保持不变。")
                           .arg(m_matched)
                           .arg(m_unmatched);
        if (m_repeated > 0)
            text += tr("列表中有 %1 行的原名与前面的行重复，只用前面的行。").arg(m_repeated);
        if (m_unusable > 0)
            text += tr("列表中有 %1 行无法识别，已忽略。").arg(m_unusable);
        const bool notable = m_unmatched > 0 || m_repeated > 0 || m_unusable > 0;
        session.messages().add(text, notable ? MessageColour::Blue : MessageColour::Normal);
        m_matched = m_unmatched = 0;
    }

private:
    QHash<QString, QString> m_byPath;  // path key of a full path → new name
    QHash<QString, QString> m_byName;  // path key of a name → new name
    qsizetype m_repeated = 0;
    qsizetype m_unusable = 0;
    qsizetype m_matched = 0;
    qsizetype m_unmatched = 0;
};

QString decode(const std::string& bytes, bool& ok)
{
    const QByteArrayView view(bytes.data(), qsizetype(bytes.size()));
    QStringDecoder::Encoding encoding = QStringDecoder::Utf8;
    if (view.startsWith("\xFF\xFE"))
        encoding = QStringDecoder::Utf16LE;
    else if (view.startsWith("\xFE\xFF"))
        encoding = QStringDecoder::Utf16BE;
    // The decoder drops the byte-order mark it finds at the start.
    QStringDecoder decoder(encoding);
    QString text = decoder(view);
    ok = !decoder.hasError();
    return text;
}

}  // namespace

std::optional<Pair> parseLine(QStringView line, bool* skipped)
{
    const QStringView trimmed = text::trimBlanks(line);
    const bool ignorable = trimmed.isEmpty() || trimmed.startsWith(u';');
    if (skipped)
        *skipped = ignorable;
    if (ignorable)
        return std::nullopt;
    qsizetype split = trimmed.indexOf(u'\t');
    if (split < 0)
        split = trimmed.indexOf(u'=');
    if (split < 0)
        return std::nullopt;
    Pair pair;
    pair.oldText = internalSeparators(unescaped(trimmed.first(split)));
    const QString newText = internalSeparators(unescaped(trimmed.sliced(split + 1)));
    pair.byPath = pair.oldText.contains(u'/');
    if (pair.oldText.isEmpty() || (pair.byPath && !isAbsolutePath(pair.oldText)))
        return std::nullopt;
    if (pair.byPath) {
        // A folder may be written with a trailing separator; rows hold it without one.
        const PathParts parts = splitPath(pair.oldText);
        pair.oldText = parts.folder + parts.fileName;
    }
    pair.newName = splitPath(newText).fileName;
    if (pair.newName.isEmpty())
        return std::nullopt;
    return pair;
}

QStringList readLines(const SettingsStore& store, const QString& section)
{
    return store.readNumberedLines(section, kLinesCountKey, kLineKeyPrefix);
}

void writeLines(SettingsStore& store, const QString& section, const QStringList& lines)
{
    store.writeNumberedLines(section, kLinesCountKey, kLineKeyPrefix, lines);
}

FileText readFile(const QString& fileName)
{
    const QString shown = nativeSeparators(fileName);
    const platform::ReadResult read = platform::readFile(toPlatformPath(fileName), kLargestListFile);
    switch (read.status) {
    case platform::ReadStatus::Ok:
        break;
    case platform::ReadStatus::Missing:
        return {{}, tr("文件名对照列表文件不存在：%1").arg(shown)};
    case platform::ReadStatus::TooLarge:
        return {{}, tr("文件超过 64 MB，不是文件名对照列表：%1").arg(shown)};
    case platform::ReadStatus::Unreadable:
        return {{}, tr("无法读取文件名对照列表文件：%1（%2）").arg(shown, QString::fromStdString(read.systemMessage))};
    }
    bool ok = false;
    const QString text = decode(read.bytes, ok);
    if (!ok)
        return {{}, tr("文件名对照列表文件的编码格式错误，应为 UTF-8 或带字节顺序标记的 UTF-16：%1").arg(shown)};
    FileText result;
    text::forEachLine(text, [&result](QStringView line) { result.lines.append(line.toString()); });
    return result;
}

std::unique_ptr<CompiledCommand> compile(const CommandSection& section)
{
    return std::make_unique<RenameFromList>(section);
}

}  // namespace qp::renamelist
