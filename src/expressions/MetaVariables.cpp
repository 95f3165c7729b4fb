// The expander: scanning, passes and the tags that need only the row and the session.
#include "expressions/MetaVariables.h"

#include <QRandomGenerator>
#include <algorithm>
#include <array>
#include <limits>
#include <random>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "core/PathText.h"
#include "core/Session.h"
#include "core/SettingsKeys.h"
#include "expressions/TagParts.h"
#include "platform/FileSystem.h"

namespace qp {
namespace expr {
namespace {

struct TagInfo {
    const char* name;
    const char* defaultValue;  // UTF-8; empty: no parameter
};

constexpr TagInfo kTags[TagCount] = {
    {"FILENAME", ""}, {"CFILENAME", ""}, {"NAME", ""}, {"CNAME", ""},
    {".EXT", ""}, {".CEXT", ""}, {"EXT", ""}, {"CEXT", ""},
    {"USER0", ""}, {"USER1", ""}, {"USER2", ""}, {"USER3", ""}, {"USER4", ""},
    {"USER5", ""}, {"USER6", ""}, {"USER7", ""}, {"USER8", ""}, {"USER9", ""},
    {"NCRC32", "(FN)"}, {"NMD5", "(FN)"}, {"NSHA1", "(FN)"}, {"CRC32", ""}, {"MD5", ""}, {"SHA1", ""},
    {"SIZE", "AUTO( )"}, {"SPSIZE", "AUTO( )"}, {"DISIZE", "0/AUTO( )"}, {"SAMPLENO", "1/1/1"},
    {"ATTRIB", "a()"}, {"DIR", "1"}, {"R", "8(N)(UC)(LC)(UL)"}, {"SUBSTR", "1/1(L)"}, {"CSUBSTR", "1/1(L)"},
    {"SPALLNUM", ""}, {"SPFILENUM", ""}, {"SPDIRNUM", ""},
    {"DIALLNUM", "0"}, {"DIFILENUM", "0"}, {"DIDIRNUM", "0"}, {"LISTNUM", ""},
    {"DIFNSUBSTR", "0/DIR(Example Str)"},
    {"Y", "yyyy"}, {"M", "mm"}, {"D", "dd"}, {"W", "ddd"}, {"DATE", "<Y>-<M>-<D>"},
    {"H", "hh"}, {"N", "nn"}, {"S", "ss"}, {"TIME", "<H>.<N>.<S>"},
    {"FY", "yyyy"}, {"FM", "mm"}, {"FD", "dd"}, {"FW", "ddd"}, {"FDATE", "<FY>-<FM>-<FD>"},
    {"FH", "hh"}, {"FN", "nn"}, {"FS", "ss"}, {"FTIME", "<FH>.<FN>.<FS>"},
    {"FCY", "yyyy"}, {"FCM", "mm"}, {"FCD", "dd"}, {"FCW", "ddd"}, {"FCDATE", "<FCY>-<FCM>-<FCD>"},
    {"FCH", "hh"}, {"FCN", "nn"}, {"FCS", "ss"}, {"FCTIME", "<FCH>.<FCN>.<FCS>"},
    {"FAY", "yyyy"}, {"FAM", "mm"}, {"FAD", "dd"}, {"FAW", "ddd"}, {"FADATE", "<FAY>-<FAM>-<FAD>"},
    {"FAH", "hh"}, {"FAN", "nn"}, {"FAS", "ss"}, {"FATIME", "<FAH>.<FAN>.<FAS>"},
};

constexpr int kLongestName = 10;  // "DIFNSUBSTR"

// Date groups: a date group has five members (Y M D W DATE), a time group four (H N S TIME).
int groupOf(int tag)
{
    const int offset = tag - kFirstDateTag;
    return (offset / 9) * 2 + (offset % 9 >= 5 ? 1 : 0);
}
int groupStart(int group) { return kFirstDateTag + (group / 2) * 9 + (group % 2 ? 5 : 0); }
int groupSize(int group) { return group % 2 ? 4 : 5; }

const std::unordered_map<std::string_view, int>& tagIndex()
{
    static const auto index = [] {
        std::unordered_map<std::string_view, int> map;
        for (int t = 0; t < TagCount; ++t)
            map.emplace(kTags[t].name, t);
        return map;
    }();
    return index;
}

constexpr std::int64_t kMaxPadding = 255;  // no name is longer; keeps a typo from eating memory

}  // namespace

const char* tagName(int tag) { return kTags[tag].name; }
QString tagDefault(int tag) { return QString::fromUtf8(kTags[tag].defaultValue); }
int tagRank(int tag) { return tag < kFirstDateTag ? tag : kFirstDateTag + groupOf(tag); }

int findTag(const char* name, int length)
{
    const auto& index = tagIndex();
    const auto it = index.find(std::string_view(name, size_t(length)));
    return it == index.end() ? -1 : it->second;
}

std::int64_t firstNumber(QStringView text, std::int64_t fallback)
{
    qsizetype i = 0;
    while (i < text.size() && !(text[i] >= u'0' && text[i] <= u'9'))
        ++i;
    if (i == text.size())
        return fallback;
    std::int64_t value = 0;
    for (; i < text.size() && text[i] >= u'0' && text[i] <= u'9'; ++i)
        value = std::min(kNumberCeiling, value * 10 + (text[i].unicode() - u'0'));
    return value;
}

QString decodeSpaces(QString value)
{
    if (value.contains(u'<'))
        value = replaceAsciiCaseless(value, u"<20>", QStringLiteral(" "));
    return value;
}

QString replaceAsciiCaseless(const QString& text, QStringView needle, const QString& value)
{
    // Qt's case-insensitive search folds beyond ASCII; tags and codes are ASCII only.
    auto lower = [](char16_t c) { return (c >= u'A' && c <= u'Z') ? char16_t(c + 32) : c; };
    if (needle.isEmpty() || text.size() < needle.size())
        return text;
    QString out;
    qsizetype copied = 0;
    for (qsizetype i = 0; i + needle.size() <= text.size();) {
        qsizetype k = 0;
        while (k < needle.size() && lower(text[i + k].unicode()) == lower(needle[k].unicode()))
            ++k;
        if (k == needle.size()) {
            out += QStringView(text).mid(copied, i - copied);
            out += value;
            i += needle.size();
            copied = i;
        } else {
            ++i;
        }
    }
    if (copied == 0)
        return text;
    out += QStringView(text).mid(copied);
    return out;
}

}  // namespace expr

using namespace expr;

namespace {

// The settings section that holds every tag's parameter, keyed by the tag with its brackets.

struct Token {
    qsizetype pos;
    int length;  // brackets included
    int tag;
    int slot = -1;  // index of its noted value once a pass has replaced it
};

bool isNameChar(char16_t c)
{
    return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9') || c == u'.';
}

// Field tags may have longer names than the others ("D.GPSLONGITUDEDMS", a reader's own).
constexpr int kLongestFieldName = 48;

// Every known tag in `text`, left to right. `fieldTag` gives the tag number of a field
// tag's upper-case name ("M.TITLE"), or -1.
template <typename FieldTagOf>
void scanTokens(QStringView text, std::vector<Token>& out, const FieldTagOf& fieldTag)
{
    out.clear();
    const qsizetype n = text.size();
    const char16_t* data = reinterpret_cast<const char16_t*>(text.data());
    char name[kLongestFieldName];
    for (qsizetype i = 0; i < n; ++i) {
        if (data[i] != u'<')
            continue;
        qsizetype j = i + 1;
        int length = 0;
        while (j < n && isNameChar(data[j]) && length <= kLongestFieldName) {
            if (length < kLongestFieldName) {
                const char16_t c = data[j];
                name[length] = char((c >= u'a' && c <= u'z') ? c - 32 : c);
            }
            ++length;
            ++j;
        }
        if (j >= n || data[j] != u'>' || length == 0 || length > kLongestFieldName)
            continue;
        int tag = length <= kLongestName ? findTag(name, length) : -1;
        if (tag < 0 && length >= 3 && name[1] == '.')
            tag = fieldTag(QLatin1StringView(name, length));
        if (tag >= 0)
            out.push_back({i, int(j - i + 1), tag, -1});
        i = j;  // the '>' cannot open a tag
    }
}

QString withoutBrackets(QString text)
{
    text.remove(u'<');
    text.remove(u'>');
    return text;
}

QString extensionWithoutDot(const QString& ext) { return ext.startsWith(u'.') ? ext.mid(1) : ext; }

struct SubstrRule {
    std::int64_t start = 1;
    std::int64_t length = 1;
    bool fromRight = false;
};

SubstrRule parseSubstr(const QString& p)
{
    SubstrRule rule;
    rule.start = firstNumber(p, 1);
    const qsizetype slash = p.indexOf(u'/');
    rule.length = firstNumber(slash < 0 ? QStringView(p) : QStringView(p).mid(slash + 1), 1);
    rule.fromRight = p.contains(u'R', Qt::CaseInsensitive);
    if (rule.start <= 0)
        rule.start = 1;
    return rule;
}

QString applySubstr(const QString& source, const SubstrRule& rule)
{
    const std::int64_t size = source.size();
    if (rule.length <= 0)
        return {};
    if (!rule.fromRight) {
        if (rule.start > size)
            return {};
        return source.mid(qsizetype(rule.start - 1), qsizetype(std::min(rule.length, size)));
    }
    // The run of `length` characters whose last one is the start-th from the right; a run
    // reaching past the first character is cut short there.
    const std::int64_t last = size - rule.start + 1;
    if (last < 1)
        return {};
    const std::int64_t first = std::max<std::int64_t>(1, last - rule.length + 1);
    return source.mid(qsizetype(first - 1), qsizetype(last - first + 1));
}

struct SampleRule {
    std::int64_t start = 1, step = 1, digits = 1;
};

SampleRule parseSample(const QString& p)
{
    std::int64_t v[3] = {1, 1, 1};
    const QList<QStringView> fields = QStringView(p).split(u'/');
    for (int i = 0; i < 3 && i < fields.size(); ++i)
        v[i] = firstNumber(fields[i], 1);
    return {v[0], v[1], std::min(v[2], kMaxPadding)};
}

QString sampleNumber(const SampleRule& rule, qsizetype row)
{
    const std::int64_t r = std::max<std::int64_t>(row, 0);
    constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
    std::int64_t value = kMax;
    if (rule.step == 0 || r <= (kMax - rule.start) / rule.step)
        value = rule.start + r * rule.step;
    return QString::number(value).rightJustified(qsizetype(rule.digits), u'0');
}

struct RandomRule {
    int length = 8;
    QString alphabet;
};

RandomRule parseR(const QString& p)
{
    RandomRule rule;
    rule.length = int(std::min(firstNumber(p, 8), kMaxPadding));
    const QString upper = p.toUpper();
    if (upper.contains(u'N'))
        rule.alphabet += QStringLiteral("0123456789");
    if (upper.contains(QLatin1String("LC")))
        rule.alphabet += QStringLiteral("abcdefghijklmnopqrstuvwxyz");
    if (upper.contains(QLatin1String("UC")))
        rule.alphabet += QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZ");
    if (upper.contains(QLatin1String("UL")))
        rule.alphabet += u'_';
    return rule;
}

// The text between the first "(" and the last ")"; empty when either is missing or out of order.
QString bracketed(const QString& p)
{
    const qsizetype open = p.indexOf(u'(');
    const qsizetype close = p.lastIndexOf(u')');
    if (open < 0 || close < open)
        return {};
    return p.mid(open + 1, close - open - 1);
}

struct AttribRule {
    int style = 0;  // 0 letters, 1 English words, 2 Chinese words
    QString separator;
};

AttribRule parseAttrib(const QString& p)
{
    const QString upper = p.toUpper();
    // A parameter naming no style at all gets letters, like the default.
    return {upper.contains(QLatin1String("AAA")) ? 2 : upper.contains(QLatin1String("AA")) ? 1 : 0, bracketed(p)};
}

QString attributeText(std::uint32_t attributes, const AttribRule& rule)
{
    static const char* const kWords[3][5] = {
        {"A", "R", "H", "S", "N"},
        {"Archive", "ReadOnly", "Hidden", "System", "Normal"},
        {"存档", "只读", "隐藏", "系统", "正常"},
    };
    static const std::uint32_t kBits[4] = {platform::AttrArchive, platform::AttrReadOnly, platform::AttrHidden,
                                           platform::AttrSystem};
    QStringList parts;
    for (int i = 0; i < 4; ++i) {
        if (attributes & kBits[i])
            parts.append(QString::fromUtf8(kWords[rule.style][i]));
    }
    if (parts.isEmpty())
        return QString::fromUtf8(kWords[rule.style][4]);
    return parts.join(rule.separator);
}

struct DirRule {
    bool downward = false;  // "->": level 1 is the top-most folder
    bool range = false;
    std::int64_t first = 1, second = 1;
    QString separator;
};

DirRule parseDir(QString p)
{
    DirRule rule;
    if (p.contains(QLatin1String("->"))) {
        rule.downward = true;
        p.remove(QLatin1String("->"));
    }
    const qsizetype open = p.indexOf(u'(');
    if (open < 0) {
        rule.first = rule.second = firstNumber(p, 1);
        return rule;
    }
    const qsizetype close = p.lastIndexOf(u')');
    rule.first = firstNumber(QStringView(p).left(open), 1);
    if (close > open) {
        rule.separator = p.mid(open + 1, close - open - 1);
        rule.second = firstNumber(QStringView(p).mid(close + 1), 1);
    } else {
        rule.separator = p.mid(open + 1);
        rule.second = 1;
    }
    rule.range = rule.first != rule.second;
    return rule;
}

QString dirValue(const QString& folderPath, const DirRule& rule)
{
    // Part 0 is the drive ("C:" on Windows, nothing on Linux); then the folders from the
    // top-most one down to the entry's parent.
    const QList<QStringView> parts = QStringView(folderPath).split(u'/');
    QString drive = parts.isEmpty() ? QString() : parts.first().toString();
    if (drive.endsWith(u':'))
        drive.chop(1);
    std::vector<QStringView> folders;
    for (qsizetype i = 1; i < parts.size(); ++i) {
        if (!parts[i].isEmpty())
            folders.push_back(parts[i]);
    }
    const std::int64_t n = std::int64_t(folders.size());
    auto level = [&](std::int64_t k) -> QString {
        k = std::min(k, n);  // beyond the farthest folder: the farthest one; in a root, the drive
        if (k <= 0)
            return drive;
        return (rule.downward ? folders[size_t(k - 1)] : folders[size_t(n - k)]).toString();
    };
    if (!rule.range)
        return level(rule.first);
    const std::int64_t from = std::min(rule.first, n);
    const std::int64_t to = std::min(rule.second, n);
    if (from == to)
        return level(from);
    QStringList names;
    const std::int64_t step = from < to ? 1 : -1;
    for (std::int64_t k = from;; k += step) {
        names.append(level(k));
        if (k == to)
            break;
    }
    return names.join(rule.separator);
}

struct FolderSearchRule {
    int depth = 0;
    bool folders = false;
    QString needle;
};

FolderSearchRule parseFolderSearch(const QString& p)
{
    FolderSearchRule rule;
    rule.needle = bracketed(p);
    QString rest = p;
    const qsizetype open = p.indexOf(u'(');
    const qsizetype close = p.lastIndexOf(u')');
    if (open >= 0 && close > open)
        rest.remove(open, close - open + 1);  // digits of the search string are no depth
    rule.depth = int(std::min<std::int64_t>(firstNumber(rest, 0), 1 << 20));
    rule.folders = rest.contains(QLatin1String("/DIR"), Qt::CaseInsensitive);
    return rule;
}

QDateTime localTime(platform::FileTime nanoseconds)
{
    std::int64_t ms = nanoseconds / 1'000'000;
    if (nanoseconds % 1'000'000 < 0)
        --ms;
    return QDateTime::fromMSecsSinceEpoch(ms);
}

}  // namespace

struct MetaExpression::Impl {
    QString text;
    ExpressionOptions options;
    bool constant = false;
    QString constantValue;
    int passes = 0;
    std::vector<Token> firstScan;

    // Read once per compiled expression, at first use.
    mutable std::array<std::optional<QString>, TagCount> parameters;
    mutable std::optional<SubstrRule> substr[2];
    mutable std::optional<SampleRule> sample;
    mutable std::optional<RandomRule> random;
    mutable std::optional<AttribRule> attrib;
    mutable std::optional<DirRule> dir;
    mutable std::optional<SizeFormat> sizes[3];
    mutable std::optional<FolderSearchRule> folderSearch;
    mutable std::mt19937_64 generator;
    // The current date and time groups, kept for the second they were made in: the pictures
    // show nothing finer, and turning the clock into local time costs more than the rest.
    mutable std::int64_t clockSecond[2] = {-1, -1};
    mutable QString clockValues[2][5];
    bool clean = false;  // every bracket of the text belongs to a known tag
    mutable std::vector<Token> scratch;
    mutable std::vector<QString> noted;
    mutable const SettingsStore* store = nullptr;

    // The field tags met in the text, numbered from TagCount on in the order met.
    struct Field {
        FieldTag tag;
        int rank = 0;
        std::optional<QString> parameter;
    };
    mutable std::vector<Field> fields;
    mutable std::optional<metadata::LegacyEncoding> legacy;

    int fieldTagOf(QLatin1StringView name) const
    {
        const QString text = name.toString();
        if (!isFieldTagName(text))
            return -1;
        for (std::size_t i = 0; i < fields.size(); ++i) {
            if (fields[i].tag.family == text[0] && fields[i].tag.name == QStringView(text).mid(2))
                return TagCount + int(i);
        }
        Field field;
        field.tag.family = text[0];
        field.tag.name = text.mid(2);
        field.tag.info = metadata::listedField(field.tag.family, field.tag.name);
        field.rank = fieldRank(field.tag, int(fields.size()));
        fields.push_back(std::move(field));
        return TagCount + int(fields.size()) - 1;
    }
    // After every other tag: the listed fields by family and catalogue order, then the
    // others in the order met.
    static int fieldRank(const FieldTag& tag, int met)
    {
        const int base = kFirstDateTag + kDateGroupCount;
        if (!tag.info)
            return base + 1'000'000 + met;
        const auto& families = metadata::fieldFamilies();
        int familyIndex = 0;
        while (families[size_t(familyIndex)].letter != tag.family)
            ++familyIndex;
        const auto& listed = families[size_t(familyIndex)].fields;
        return base + familyIndex * 10'000 + int(tag.info - listed.data());
    }
    int rankOf(int tag) const { return tag < TagCount ? tagRank(tag) : fields[size_t(tag - TagCount)].rank; }
    void scan(QStringView text, std::vector<Token>& out) const
    {
        scanTokens(text, out, [this](QLatin1StringView name) { return fieldTagOf(name); });
    }
    QString fieldValue(int tag, const FileEntry& entry, const Session& session, ExpansionReport* report) const;

    const QString& parameter(int tag) const
    {
        std::optional<QString>& slot = parameters[size_t(tag)];
        if (!slot) {
            const QString key = u'<' + QLatin1String(tagName(tag)) + u'>';
            slot = decodeSpaces(store->readString(keys::kUnitVariable, key, tagDefault(tag)));
        }
        return *slot;
    }

    template <typename T, typename Parse>
    const T& cached(std::optional<T>& slot, Parse parse) const
    {
        if (!slot)
            slot = parse();
        return *slot;
    }

    struct Row {
        const Session& session;
        qsizetype index;
        const FileEntry& entry;
        ExpansionReport* report;
        mutable std::optional<std::optional<platform::FileInfo>> info;

        QString fullPath() const { return entry.path + entry.name + entry.ext; }
        const std::optional<platform::FileInfo>& stat() const
        {
            if (!info)
                info = platform::stat(toPlatformPath(fullPath()));
            return *info;
        }
        bool isFolderOnDisk() const { return stat() && stat()->isFolder; }
    };

    QString value(int tag, const Row& row) const;
    void dateGroup(int group, const Row& row, QString* values) const;
    void dateGroupAt(int group, const QDateTime& moment, QString* values) const;
};

QString MetaExpression::Impl::value(int tag, const Row& row) const
{
    const FileEntry& e = row.entry;
    switch (tag) {
    case TFileName: return e.name + e.ext;
    case TCFileName: return e.newName + e.newExt;
    case TName: return e.name;
    case TCName: return e.newName;
    case TDotExt: return e.ext;
    case TDotCExt: return e.newExt;
    case TExt: return extensionWithoutDot(e.ext);
    case TCExt: return extensionWithoutDot(e.newExt);
    case TNCrc32:
    case TNMd5:
    case TNSha1: {
        const QString upper = parameter(tag).toUpper();
        // The first of the four codes from the left; none: the name with extension.
        static const char* const kCodes[] = {"FN", "EE", "PN", "OE"};
        int code = 0;
        qsizetype best = -1;
        for (int c = 0; c < 4; ++c) {
            const qsizetype at = upper.indexOf(QLatin1String(kCodes[c]));
            if (at >= 0 && (best < 0 || at < best)) {
                best = at;
                code = c;
            }
        }
        const QString source = code == 0   ? e.name + e.ext
                               : code == 1 ? e.name
                               : code == 2 ? nativeSeparators(row.fullPath())
                                           : extensionWithoutDot(e.ext);
        const HashKind kind = tag == TNCrc32 ? HashKind::Crc32 : tag == TNMd5 ? HashKind::Md5 : HashKind::Sha1;
        return hashBytes(kind, source.toUtf8());
    }
    case TCrc32: return hashFile(HashKind::Crc32, row.fullPath());
    case TMd5: return hashFile(HashKind::Md5, row.fullPath());
    case TSha1: return hashFile(HashKind::Sha1, row.fullPath());
    case TSize: {
        const auto& info = row.stat();
        if (!info || info->isFolder)
            return {};
        return formatSize(info->size, cached(sizes[0], [&] { return parseSizeFormat(parameter(tag), false); }));
    }
    case TSpSize:
        return formatSize(countTree(e.path, 1).bytes,
                          cached(sizes[1], [&] { return parseSizeFormat(parameter(tag), false); }));
    case TDiSize: {
        const SizeFormat& format = cached(sizes[2], [&] { return parseSizeFormat(parameter(tag), true); });
        if (!row.isFolderOnDisk())
            return {};
        return formatSize(countTree(row.fullPath(), format.depth).bytes, format);
    }
    case TSampleNo:
        return sampleNumber(cached(sample, [&] { return parseSample(parameter(tag)); }), row.index);
    case TAttrib: {
        const AttribRule& rule = cached(attrib, [&] { return parseAttrib(parameter(tag)); });
        const auto& info = row.stat();
        return info ? attributeText(info->attributes, rule) : QString();
    }
    case TDir: return dirValue(e.path, cached(dir, [&] { return parseDir(parameter(tag)); }));
    case TR: {
        const RandomRule& rule = cached(random, [&] { return parseR(parameter(tag)); });
        if (rule.alphabet.isEmpty())
            return {};
        std::uniform_int_distribution<qsizetype> pick(0, rule.alphabet.size() - 1);
        QString out(rule.length, Qt::Uninitialized);
        for (QChar& c : out)
            c = rule.alphabet[pick(generator)];
        return out;
    }
    case TSubStr: return applySubstr(e.name, cached(substr[0], [&] { return parseSubstr(parameter(tag)); }));
    case TCSubStr: return applySubstr(e.newName, cached(substr[1], [&] { return parseSubstr(parameter(tag)); }));
    case TSpAllNum:
    case TSpFileNum:
    case TSpDirNum: {
        const TreeCount count = countTree(e.path, 1);
        return QString::number(tag == TSpAllNum ? count.files + count.folders
                               : tag == TSpFileNum ? count.files
                                                   : count.folders);
    }
    case TDiAllNum:
    case TDiFileNum:
    case TDiDirNum: {
        const int depth = int(std::min<std::int64_t>(firstNumber(parameter(tag), 0), 1 << 20));
        if (!row.isFolderOnDisk())
            return {};
        const TreeCount count = countTree(row.fullPath(), depth);
        return QString::number(tag == TDiAllNum ? count.files + count.folders
                               : tag == TDiFileNum ? count.files
                                                   : count.folders);
    }
    case TListNum: return QString::number(row.session.renameList().size());
    case TDifnSubStr: {
        const FolderSearchRule& rule = cached(folderSearch, [&] { return parseFolderSearch(parameter(tag)); });
        if (rule.needle.isEmpty() || !row.isFolderOnDisk())
            return {};
        return treeHasName(row.fullPath(), rule.depth, rule.folders, rule.needle) ? rule.needle : QString();
    }
    default:
        if (tag >= TUser0 && tag <= TUser9) {
            const QStringList& list = row.session.userList(tag - TUser0);
            return row.index >= 0 && row.index < list.size() ? list.at(row.index) : QString();
        }
        if (tag >= TagCount)
            return fieldValue(tag, e, row.session, row.report);
        return {};
    }
}

QString MetaExpression::Impl::fieldValue(int tag, const FileEntry& entry, const Session& session,
                                         ExpansionReport* report) const
{
    Field& field = fields[size_t(tag - TagCount)];
    if (!field.parameter) {
        const QString key = metadata::fieldTag(field.tag.family, field.tag.name);
        field.parameter = decodeSpaces(store->readString(keys::kUnitVariable, key,
                                                         field.tag.info ? field.tag.info->defaultParameter : QString()));
    }
    if (!legacy)
        legacy = legacyEncodingOf(*store);
    const FieldReading reading{options.fields, options.locale, *legacy};
    if (std::optional<QString> value = fieldTagValue(session, entry, field.tag, *field.parameter, reading, report))
        return std::move(*value);
    if (report)
        ++report->missingFields;
    return options.fields.missingText.value_or(QString());
}

void MetaExpression::Impl::dateGroup(int group, const Row& row, QString* values) const
{
    const int size = groupSize(group);
    QDateTime moment;
    const int source = group / 2;  // current, modified, created, accessed
    if (source == 0 && options.clock) {
        moment = options.clock();
    } else if (source == 0) {
        const std::int64_t second = QDateTime::currentSecsSinceEpoch();
        QString* kept = clockValues[group];
        if (second != clockSecond[group]) {
            dateGroupAt(group, QDateTime::fromSecsSinceEpoch(second), kept);
            clockSecond[group] = second;
        }
        std::copy(kept, kept + size, values);
        return;
    } else {
        const auto& info = row.stat();
        if (!info) {
            for (int i = 0; i < size; ++i)
                values[i].clear();
            return;
        }
        moment = localTime(source == 1 ? info->modified : source == 2 ? info->created : info->accessed);
    }
    dateGroupAt(group, moment, values);
}

void MetaExpression::Impl::dateGroupAt(int group, const QDateTime& moment, QString* values) const
{
    const int start = groupStart(group);
    const int size = groupSize(group);
    for (int i = 0; i < size - 1; ++i)
        values[i] = formatPicture(moment, parameter(start + i), options.locale);
    // The composed tag: its parameter with the single tags of the group put in.
    QString composed = parameter(start + size - 1);
    for (int i = 0; i < size - 1; ++i) {
        const QString single = u'<' + QLatin1String(tagName(start + i)) + u'>';
        composed = replaceAsciiCaseless(composed, single, values[i]);
    }
    values[size - 1] = composed;
}

MetaExpression::MetaExpression(const QString& text, ExpressionOptions options) : m_impl(std::make_unique<Impl>())
{
    Impl& d = *m_impl;
    d.text = text;
    d.options = std::move(options);
    d.generator.seed(d.options.seed ? *d.options.seed : QRandomGenerator::system()->generate64());
    const qsizetype opens = text.count(u'<');
    const qsizetype closes = text.count(u'>');
    // Each pass stands for one bracket pair: as many as the rarer of the two brackets.
    d.passes = int(std::min(opens, closes));
    if (d.passes > 0)
        d.scan(text, d.firstScan);
    d.clean = opens == qsizetype(d.firstScan.size()) && closes == opens;
    if (d.firstScan.empty()) {
        d.constant = true;
        d.constantValue = withoutBrackets(text);
    }
}

MetaExpression::~MetaExpression() = default;
MetaExpression::MetaExpression(MetaExpression&&) noexcept = default;
MetaExpression& MetaExpression::operator=(MetaExpression&&) noexcept = default;

bool MetaExpression::isConstant() const { return m_impl->constant; }
const QString& MetaExpression::text() const { return m_impl->text; }

QString MetaExpression::expand(const Session& session, qsizetype row) const { return expandRow(session, row, nullptr); }

QString MetaExpression::expand(const Session& session, qsizetype row, ExpansionReport& report) const
{
    return expandRow(session, row, &report);
}

QString MetaExpression::fieldFamilies() const
{
    QString families;
    for (const Impl::Field& field : m_impl->fields) {
        if (!families.contains(field.tag.family))
            families += field.tag.family;
    }
    return families;
}

QString MetaExpression::expandRow(const Session& session, qsizetype row, ExpansionReport* report) const
{
    const Impl& d = *m_impl;
    if (d.constant)
        return d.constantValue;
    if (!d.store)
        d.store = &session.settings();

    static const FileEntry kNoRow;
    const RenameList& list = session.renameList();
    const Impl::Row context{session, row, row >= 0 && row < list.size() ? list.at(row) : kNoRow, report, {}};

    // The working text and its known tags. While every bracket of the text belongs to a
    // known tag ("clean") and the values put in hold no bracket, a pass cannot create or
    // break a tag: its replacements are then only noted, and the text is rebuilt once at
    // the end instead of once per pass. Any other pass rebuilds and rescans the text, as
    // the pass-by-pass description has it.
    QString work = d.text;
    std::vector<Token>& tokens = d.scratch;
    tokens = d.firstScan;
    bool clean = d.clean && !d.options.stepByStep;
    std::vector<QString>& noted = d.noted;
    noted.clear();
    QString values[5];

    auto rebuild = [&](int rank, int groupFirst) {
        QString next;
        next.reserve(work.size() + 32);
        qsizetype copied = 0;
        for (const Token& t : tokens) {
            const bool now = t.slot < 0 && d.rankOf(t.tag) == rank;
            if (t.slot < 0 && !now)
                continue;
            next += QStringView(work).mid(copied, t.pos - copied);
            next += now ? values[groupFirst >= 0 ? t.tag - groupFirst : 0] : noted[size_t(t.slot)];
            copied = t.pos + t.length;
        }
        next += QStringView(work).mid(copied);
        work = std::move(next);
    };

    for (int pass = 0; pass < d.passes; ++pass) {
        int rank = std::numeric_limits<int>::max();
        int first = -1;
        for (const Token& t : tokens) {
            const int r = d.rankOf(t.tag);
            if (t.slot < 0 && r < rank) {
                rank = r;
                first = t.tag;
            }
        }
        if (first < 0)
            break;  // nothing known is left: every later pass would find the same
        int groupFirst = -1;
        int count = 1;
        if (first >= kFirstDateTag && first < TagCount) {
            const int group = groupOf(first);
            groupFirst = groupStart(group);
            count = groupSize(group);
            d.dateGroup(group, context, values);
        } else {
            values[0] = d.value(first, context);
        }
        bool bracketFree = clean;
        for (int i = 0; i < count && bracketFree; ++i)
            bracketFree = !values[i].contains(u'<') && !values[i].contains(u'>');
        if (bracketFree) {
            for (Token& t : tokens) {
                if (t.slot < 0 && d.rankOf(t.tag) == rank) {
                    t.slot = int(noted.size());
                    noted.push_back(values[groupFirst >= 0 ? t.tag - groupFirst : 0]);
                }
            }
            continue;
        }
        rebuild(rank, groupFirst);
        noted.clear();
        d.scan(work, tokens);
        clean = !d.options.stepByStep && work.count(u'<') == qsizetype(tokens.size()) &&
                work.count(u'>') == qsizetype(tokens.size());
    }
    if (noted.empty())
        return withoutBrackets(std::move(work));
    rebuild(-1, -1);
    // Clean and every tag replaced: no bracket is left to remove.
    if (std::all_of(tokens.begin(), tokens.end(), [](const Token& t) { return t.slot >= 0; }))
        return work;
    return withoutBrackets(std::move(work));
}

QString expandMetaVariables(const Session& session, const QString& text, qsizetype row, const ExpressionOptions& options)
{
    return MetaExpression(text, options).expand(session, row);
}

void defineUserList(Session& session, int n, const std::function<void()>& refreshPreview)
{
    if (n < 0 || n >= Session::kUserListCount)
        return;
    if (refreshPreview && session.settings().readBool(keys::kOperation, keys::kAutoPreview, true))
        refreshPreview();
    QStringList& list = session.userList(n);
    list.clear();
    const RenameList& rows = session.renameList();
    list.reserve(rows.size());
    for (const FileEntry& row : rows.rows())
        list.append(row.newName);
}

}  // namespace qp
