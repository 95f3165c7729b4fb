#include "core/SettingsStore.h"

#include <algorithm>

#include "platform/FileSystem.h"

#include <QCoreApplication>
#include "core/PathText.h"
#include "core/TextFiles.h"
#include <QStringDecoder>

#include <limits>
#include <string>
#include <string_view>

namespace qp {

namespace {

// Settings files are small; anything this big is not ours and is not read.
constexpr std::uint64_t kMaxSettingsBytes = 256ull * 1024 * 1024;

constexpr char16_t kBom = u'\uFEFF';


// The hash key of a section or key name. Case folding covers ASCII the way Windows INI
// files do and also folds other letters, which no name of ours relies on either way.
QString fold(const QString& name)
{
    return name.toCaseFolded();
}

// A line break inside a name or value would split the written line and could even start
// a new section when the file is read back, so it is written as a space.
void appendOneLine(QString& out, const QString& text)
{
    if (!text.contains(u'\r') && !text.contains(u'\n')) {
        out += text;
        return;
    }
    for (QChar c : text)
        out += (c == u'\r' || c == u'\n') ? QChar(u' ') : c;
}

QString translate(const char* text)
{
    return QCoreApplication::translate("SettingsStore", text);
}

}  // namespace

// ---------------------------------------------------------------------------------------
// Parsing

SettingsStore::LoadReport SettingsStore::parse(QStringView text)
{
    clear();
    LoadReport report;

    if (!text.isEmpty() && text.front() == QChar(kBom))
        text = text.sliced(1);

    // An index, not a pointer: adding a section may move the others.
    std::ptrdiff_t current = -1;
    // A CR always ends a line, so values never end with one.
    text::forEachLine(text, [&](QStringView line) {
        const QStringView trimmed = text::trimBlanks(line);
        if (trimmed.isEmpty() || trimmed.front() == u';' || trimmed.front() == u'#')
            return;

        if (const QStringView header = text::sectionHeader(line); !header.isNull()) {
            const QString name = header.toString();
            sectionForWrite(name);
            current = *m_sectionIndex.constFind(fold(name));
            return;
        }

        // Split at the first "=": keys never contain one, values may. The value is kept
        // exactly as written (blanks included) so that a hand-edited or older file reads
        // back unchanged; "|…|" is how a value says where its blanks begin and end.
        const qsizetype eq = line.indexOf(u'=');
        const QStringView key = eq < 0 ? QStringView() : text::trimBlanks(line.first(eq));
        // Lines the document cannot place: before any section, without "=", or with an
        // empty key. They are dropped and counted.
        if (current < 0 || eq < 0 || key.isEmpty()) {
            ++report.ignoredLines;
            return;
        }
        const QStringView value = line.sliced(eq + 1);

        Section& target = m_sections[std::size_t(current)];
        const QString keyText = key.toString();
        const QString folded = fold(keyText);
        const auto found = target.index.constFind(folded);
        if (found != target.index.cend()) {
            target.entries[std::size_t(*found)].value = value.toString();
        } else {
            target.index.insert(folded, int(target.entries.size()));
            target.entries.push_back(Entry{keyText, value.toString()});
        }
    });
    return report;
}

SettingsStore::LoadReport SettingsStore::parseBytes(const QByteArray& bytes)
{
    // The decoder is told to keep a BOM so that exactly one is skipped (by parse), and
    // it works on the whole array with its length, so NUL bytes are ordinary characters.
    QStringDecoder decoder(QStringConverter::Utf8,
                           QStringConverter::Flag::Stateless | QStringConverter::Flag::ConvertInitialBom);
    const QString text = decoder.decode(QByteArrayView(bytes));
    const bool invalid = decoder.hasError();
    LoadReport report = parse(text);
    report.invalidUtf8 = invalid;
    return report;
}

// ---------------------------------------------------------------------------------------
// Files

SettingsStore::LoadReport SettingsStore::load(const QString& fileName)
{
    clear();
    m_fileName = fileName;

    const platform::ReadResult read = platform::readFile(fileName.toStdU16String(), kMaxSettingsBytes);
    switch (read.status) {
    case platform::ReadStatus::Ok:
        return parseBytes(QByteArray(read.bytes.data(), qsizetype(read.bytes.size())));
    case platform::ReadStatus::Missing: {
        LoadReport report;
        report.fileMissing = true;
        return report;
    }
    case platform::ReadStatus::TooLarge: {
        LoadReport report;
        report.unreadable = true;
        report.message = translate("设置文件超过 256 MB，未读取：%1")
                             .arg(nativeSeparators(fileName));
        return report;
    }
    case platform::ReadStatus::Unreadable:
        break;
    }
    LoadReport report;
    report.unreadable = true;
    report.message = QString::fromUtf8(read.systemMessage.data(), qsizetype(read.systemMessage.size()));
    return report;
}

bool SettingsStore::save(const QString& fileName, QString* error) const
{
    const QByteArray bytes = toBytes();
    std::string systemMessage;
    if (platform::writeFileAtomically(fileName.toStdU16String(),
                                      std::string_view(bytes.constData(), std::size_t(bytes.size())),
                                      &systemMessage))
        return true;
    if (error != nullptr) {
        *error = translate("无法保存设置文件：%1 (%2)")
                     .arg(nativeSeparators(fileName),
                          QString::fromUtf8(systemMessage.data(), qsizetype(systemMessage.size())));
    }
    return false;
}

// ---------------------------------------------------------------------------------------
// Text form

QString SettingsStore::toText() const
{
    static const QString crlf = QStringLiteral("\r\n");

    qsizetype total = 0;
    for (const Section& section : m_sections) {
        total += section.name.size() + 6;
        for (const Entry& entry : section.entries)
            total += entry.key.size() + entry.value.size() + 3;
    }

    QString out;
    out.reserve(total);
    bool first = true;
    for (const Section& section : m_sections) {
        if (!first)
            out += crlf;
        first = false;
        out += u'[';
        appendOneLine(out, section.name);
        out += u']';
        out += crlf;
        for (const Entry& entry : section.entries) {
            appendOneLine(out, entry.key);
            out += u'=';
            appendOneLine(out, entry.value);
            out += crlf;
        }
    }
    return out;
}

QByteArray SettingsStore::toBytes() const
{
    QByteArray bytes("\xEF\xBB\xBF");
    bytes += toText().toUtf8();
    return bytes;
}

// ---------------------------------------------------------------------------------------
// Typed reads and writes

bool SettingsStore::readBool(const QString& section, const QString& key, bool defaultValue) const
{
    const Entry* entry = findEntry(section, key);
    if (entry == nullptr)
        return defaultValue;
    const QStringView v = text::trimBlanks(entry->value);
    if (v == u"1" || v.compare(u"true", Qt::CaseInsensitive) == 0)
        return true;
    if (v == u"0" || v.compare(u"false", Qt::CaseInsensitive) == 0)
        return false;
    return defaultValue;
}

qint64 SettingsStore::readInt(const QString& section, const QString& key, qint64 defaultValue) const
{
    const Entry* entry = findEntry(section, key);
    if (entry == nullptr)
        return defaultValue;
    QStringView v = text::trimBlanks(entry->value);
    bool negative = false;
    if (!v.isEmpty() && (v.front() == u'+' || v.front() == u'-')) {
        negative = v.front() == u'-';
        v = v.sliced(1);
    }
    if (v.isEmpty())
        return defaultValue;

    // Accumulate as a negative number so that the most negative value fits too.
    constexpr qint64 minimum = std::numeric_limits<qint64>::min();
    qint64 result = 0;
    for (QChar c : v) {
        if (c < u'0' || c > u'9')
            return defaultValue;
        const int digit = c.unicode() - u'0';
        if (result < (minimum + digit) / 10)
            return defaultValue;
        result = result * 10 - digit;
    }
    if (!negative) {
        if (result == minimum)
            return defaultValue;
        result = -result;
    }
    return result;
}

QString SettingsStore::readString(const QString& section, const QString& key, const QString& defaultValue) const
{
    const Entry* entry = findEntry(section, key);
    if (entry == nullptr)
        return defaultValue;
    const QString& v = entry->value;
    if (v.size() >= 2 && v.front() == u'|' && v.back() == u'|')
        return v.sliced(1, v.size() - 2);
    return v;
}

QString SettingsStore::readRaw(const QString& section, const QString& key, const QString& defaultValue) const
{
    const Entry* entry = findEntry(section, key);
    return entry == nullptr ? defaultValue : entry->value;
}

void SettingsStore::writeBool(const QString& section, const QString& key, bool value)
{
    writeRaw(section, key, value ? QStringLiteral("1") : QStringLiteral("0"));
}

void SettingsStore::writeInt(const QString& section, const QString& key, qint64 value)
{
    writeRaw(section, key, QString::number(value));
}

void SettingsStore::writeString(const QString& section, const QString& key, const QString& value)
{
    const bool needsWrap = !value.isEmpty()
        && (value.front().isSpace() || value.back().isSpace()
            || (value.size() >= 2 && value.front() == u'|' && value.back() == u'|'));
    writeRaw(section, key, needsWrap ? u'|' + value + u'|' : value);
}

void SettingsStore::writeRaw(const QString& section, const QString& key, const QString& value)
{
    Section& target = sectionForWrite(section);
    const QString folded = fold(key);
    const auto found = target.index.constFind(folded);
    if (found != target.index.cend()) {
        target.entries[std::size_t(*found)].value = value;
        return;
    }
    target.index.insert(folded, int(target.entries.size()));
    target.entries.push_back(Entry{key, value});
}

// ---------------------------------------------------------------------------------------
// Sections

bool SettingsStore::hasSection(const QString& section) const
{
    return findSection(section) != nullptr;
}

bool SettingsStore::hasKey(const QString& section, const QString& key) const
{
    return findEntry(section, key) != nullptr;
}

void SettingsStore::eraseSection(const QString& section)
{
    const auto found = m_sectionIndex.constFind(fold(section));
    if (found == m_sectionIndex.cend())
        return;
    m_sections.erase(m_sections.begin() + *found);
    rebuildSectionIndex();
}

void SettingsStore::eraseKey(const QString& section, const QString& key)
{
    const auto foundSection = m_sectionIndex.constFind(fold(section));
    if (foundSection == m_sectionIndex.cend())
        return;
    Section& target = m_sections[std::size_t(*foundSection)];
    const QString folded = fold(key);
    const auto found = target.index.constFind(folded);
    if (found == target.index.cend())
        return;
    const int position = *found;
    target.entries.erase(target.entries.begin() + position);
    target.index.remove(folded);
    for (auto it = target.index.begin(); it != target.index.end(); ++it) {
        if (it.value() > position)
            --it.value();
    }
}

QStringList SettingsStore::sectionNames() const
{
    QStringList names;
    names.reserve(qsizetype(m_sections.size()));
    for (const Section& section : m_sections)
        names.append(section.name);
    return names;
}

QStringList SettingsStore::sectionLines(const QString& section) const
{
    QStringList lines;
    const Section* found = findSection(section);
    if (found == nullptr)
        return lines;
    lines.reserve(qsizetype(found->entries.size()));
    for (const Entry& entry : found->entries)
        lines.append(entry.key + u'=' + entry.value);
    return lines;
}

QList<QPair<QString, QString>> SettingsStore::sectionEntries(const QString& section) const
{
    QList<QPair<QString, QString>> entries;
    const Section* found = findSection(section);
    if (found == nullptr)
        return entries;
    entries.reserve(qsizetype(found->entries.size()));
    for (const Entry& entry : found->entries)
        entries.append({entry.key, entry.value});
    return entries;
}

QStringList SettingsStore::readNumberedLines(const QString& section, const QString& countKey,
                                             const QString& linePrefix) const
{
    const Section* found = findSection(section);
    const qint64 keys = found ? qint64(found->entries.size()) : 0;
    const qint64 count = std::clamp<qint64>(readInt(section, countKey, 0), 0, keys);
    QStringList lines;
    lines.reserve(qsizetype(count));
    for (qint64 i = 1; i <= count; ++i)
        lines.append(readString(section, linePrefix + QString::number(i), QString()));
    return lines;
}

void SettingsStore::writeNumberedLines(const QString& section, const QString& countKey, const QString& linePrefix,
                                       const QStringList& lines)
{
    const qint64 before = readNumberedLines(section, countKey, linePrefix).size();
    for (qint64 i = lines.size() + 1; i <= before; ++i)
        eraseKey(section, linePrefix + QString::number(i));
    writeInt(section, countKey, lines.size());
    for (qsizetype i = 0; i < lines.size(); ++i)
        writeString(section, linePrefix + QString::number(i + 1), lines[i]);
}

void SettingsStore::clear()
{
    m_sections.clear();
    m_sectionIndex.clear();
}

// ---------------------------------------------------------------------------------------
// Look-ups

const SettingsStore::Section* SettingsStore::findSection(const QString& name) const
{
    const auto found = m_sectionIndex.constFind(fold(name));
    return found == m_sectionIndex.cend() ? nullptr : &m_sections[std::size_t(*found)];
}

SettingsStore::Section& SettingsStore::sectionForWrite(const QString& name)
{
    const QString folded = fold(name);
    const auto found = m_sectionIndex.constFind(folded);
    if (found != m_sectionIndex.cend())
        return m_sections[std::size_t(*found)];
    m_sectionIndex.insert(folded, int(m_sections.size()));
    m_sections.push_back(Section{name, {}, {}});
    return m_sections.back();
}

const SettingsStore::Entry* SettingsStore::findEntry(const QString& section, const QString& key) const
{
    const Section* found = findSection(section);
    if (found == nullptr)
        return nullptr;
    const auto entry = found->index.constFind(fold(key));
    return entry == found->index.cend() ? nullptr : &found->entries[std::size_t(*entry)];
}

void SettingsStore::rebuildSectionIndex()
{
    m_sectionIndex.clear();
    m_sectionIndex.reserve(qsizetype(m_sections.size()));
    for (std::size_t i = 0; i < m_sections.size(); ++i)
        m_sectionIndex.insert(fold(m_sections[i].name), int(i));
}

}  // namespace qp
