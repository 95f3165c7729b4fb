#include "expressions/ChineseText.h"

#include <QHash>
#include <algorithm>
#include <utility>

#include "expressions/PinyinTable.h"

namespace qp::chinese {

namespace {

// ---- Tables ----------------------------------------------------------------------------

constexpr TextPair kToneMarks[] = {
    {u"ai1", u"āi"}, {u"ai2", u"ái"}, {u"ai3", u"ǎi"}, {u"ai4", u"ài"}, {u"ai5", u"ai"},
    {u"ei1", u"ēi"}, {u"ei2", u"éi"}, {u"ei3", u"ěi"}, {u"ei4", u"èi"}, {u"ei5", u"ei"},
    {u"ui1", u"uī"}, {u"ui2", u"uí"}, {u"ui3", u"uǐ"}, {u"ui4", u"uì"}, {u"ui5", u"ui"},
    {u"ao1", u"āo"}, {u"ao2", u"áo"}, {u"ao3", u"ǎo"}, {u"ao4", u"ào"}, {u"ao5", u"ao"},
    {u"ou1", u"ōu"}, {u"ou2", u"óu"}, {u"ou3", u"ǒu"}, {u"ou4", u"òu"}, {u"ou5", u"ou"},
    {u"iu1", u"iū"}, {u"iu2", u"iú"}, {u"iu3", u"iǔ"}, {u"iu4", u"iù"}, {u"iu5", u"iu"},
    {u"ie1", u"iē"}, {u"ie2", u"ié"}, {u"ie3", u"iě"}, {u"ie4", u"iè"}, {u"ie5", u"ie"},
    // "ve2" keeps the first-tone form, as it always has.
    {u"ve1", u"üē"}, {u"ve2", u"üē"}, {u"ve3", u"üě"}, {u"ve4", u"üè"}, {u"ve5", u"üe"},
    // So does "er2" (儿, 而).
    {u"er1", u"ēr"}, {u"er2", u"ēr"}, {u"er3", u"ěr"}, {u"er4", u"èr"}, {u"er5", u"er"},
    {u"an1", u"ān"}, {u"an2", u"án"}, {u"an3", u"ǎn"}, {u"an4", u"àn"}, {u"an5", u"an"},
    {u"en1", u"ēn"}, {u"en2", u"én"}, {u"en3", u"ěn"}, {u"en4", u"èn"}, {u"en5", u"en"},
    {u"in1", u"īn"}, {u"in2", u"ín"}, {u"in3", u"ǐn"}, {u"in4", u"ìn"}, {u"in5", u"in"},
    {u"un1", u"ūn"}, {u"un2", u"ún"}, {u"un3", u"ǔn"}, {u"un4", u"ùn"}, {u"un5", u"un"},
    {u"ang1", u"āng"}, {u"ang2", u"áng"}, {u"ang3", u"ǎng"}, {u"ang4", u"àng"}, {u"ang5", u"ang"},
    {u"eng1", u"ēng"}, {u"eng2", u"éng"}, {u"eng3", u"ěng"}, {u"eng4", u"èng"}, {u"eng5", u"eng"},
    {u"ing1", u"īng"}, {u"ing2", u"íng"}, {u"ing3", u"ǐng"}, {u"ing4", u"ìng"}, {u"ing5", u"ing"},
    {u"ong1", u"ōng"}, {u"ong2", u"óng"}, {u"ong3", u"ǒng"}, {u"ong4", u"òng"}, {u"ong5", u"ong"},
    {u"a1", u"ā"}, {u"a2", u"á"}, {u"a3", u"ǎ"}, {u"a4", u"à"}, {u"a5", u"a"},
    {u"o1", u"ō"}, {u"o2", u"ó"}, {u"o3", u"ǒ"}, {u"o4", u"ò"}, {u"o5", u"o"},
    {u"e1", u"ē"}, {u"e2", u"é"}, {u"e3", u"ě"}, {u"e4", u"è"}, {u"e5", u"e"},
    {u"i1", u"ī"}, {u"i2", u"í"}, {u"i3", u"ǐ"}, {u"i4", u"ì"}, {u"i5", u"i"},
    {u"u1", u"ū"}, {u"u2", u"ú"}, {u"u3", u"ǔ"}, {u"u4", u"ù"}, {u"u5", u"u"},
    {u"v1", u"ǖ"}, {u"v2", u"ǘ"}, {u"v3", u"ǚ"}, {u"v4", u"ǜ"}, {u"v5", u"ü"},
};
static_assert(std::size(kToneMarks) == 115);

constexpr TextPair kNumberSymbols[] = {
    {u"①", u"(1)"}, {u"②", u"(2)"}, {u"③", u"(3)"}, {u"④", u"(4)"}, {u"⑤", u"(5)"},
    {u"⑥", u"(6)"}, {u"⑦", u"(7)"}, {u"⑧", u"(8)"}, {u"⑨", u"(9)"}, {u"⑩", u"(10)"},
    {u"⑪", u"(11)"}, {u"⑫", u"(12)"}, {u"⑬", u"(13)"}, {u"⑭", u"(14)"}, {u"⑮", u"(15)"},
    {u"⑯", u"(16)"}, {u"⑰", u"(17)"}, {u"⑱", u"(18)"}, {u"⑲", u"(19)"}, {u"⑳", u"(20)"},
    {u"⑴", u"(1)"}, {u"⑵", u"(2)"}, {u"⑶", u"(3)"}, {u"⑷", u"(4)"}, {u"⑸", u"(5)"},
    {u"⑹", u"(6)"}, {u"⑺", u"(7)"}, {u"⑻", u"(8)"}, {u"⑼", u"(9)"}, {u"⑽", u"(10)"},
    {u"⑾", u"(11)"}, {u"⑿", u"(12)"}, {u"⒀", u"(13)"}, {u"⒁", u"(14)"}, {u"⒂", u"(15)"},
    {u"⒃", u"(16)"}, {u"⒄", u"(17)"}, {u"⒅", u"(18)"}, {u"⒆", u"(19)"}, {u"⒇", u"(20)"},
    {u"⒈", u"1."}, {u"⒉", u"2."}, {u"⒊", u"3."}, {u"⒋", u"4."}, {u"⒌", u"5."},
    {u"⒍", u"6."}, {u"⒎", u"7."}, {u"⒏", u"8."}, {u"⒐", u"9."}, {u"⒑", u"10."},
    {u"⒒", u"11."}, {u"⒓", u"12."}, {u"⒔", u"13."}, {u"⒕", u"14."}, {u"⒖", u"15."},
    {u"⒗", u"16."}, {u"⒘", u"17."}, {u"⒙", u"18."}, {u"⒚", u"19."}, {u"⒛", u"20."},
    {u"Ⅰ", u"1"}, {u"Ⅱ", u"2"}, {u"Ⅲ", u"3"}, {u"Ⅳ", u"4"}, {u"Ⅴ", u"5"}, {u"Ⅵ", u"6"},
    {u"Ⅶ", u"7"}, {u"Ⅷ", u"8"}, {u"Ⅸ", u"9"}, {u"Ⅹ", u"10"}, {u"Ⅺ", u"11"}, {u"Ⅻ", u"12"},
    {u"ⅰ", u"1"}, {u"ⅱ", u"2"}, {u"ⅲ", u"3"}, {u"ⅳ", u"4"}, {u"ⅴ", u"5"},
    {u"ⅵ", u"6"}, {u"ⅶ", u"7"}, {u"ⅷ", u"8"}, {u"ⅸ", u"9"}, {u"ⅹ", u"10"},
    {u"❶", u"(1)"}, {u"❷", u"(2)"}, {u"❸", u"(3)"}, {u"❹", u"(4)"}, {u"❺", u"(5)"},
    {u"❻", u"(6)"}, {u"❼", u"(7)"}, {u"❽", u"(8)"}, {u"❾", u"(9)"}, {u"❿", u"(10)"},
    {u"㈠", u"(1)"}, {u"㈡", u"(2)"}, {u"㈢", u"(3)"}, {u"㈣", u"(4)"}, {u"㈤", u"(5)"},
    {u"㈥", u"(6)"}, {u"㈦", u"(7)"}, {u"㈧", u"(8)"}, {u"㈨", u"(9)"}, {u"㈩", u"(10)"},
};
static_assert(std::size(kNumberSymbols) == 102);

constexpr TextPair kSmallNumerals[] = {
    {u"0", u"〇"}, {u"1", u"一"}, {u"2", u"二"}, {u"3", u"三"}, {u"4", u"四"},
    {u"5", u"五"}, {u"6", u"六"}, {u"7", u"七"}, {u"8", u"八"}, {u"9", u"九"},
};
constexpr TextPair kCapitalNumerals[] = {
    {u"0", u"零"}, {u"1", u"壹"}, {u"2", u"贰"}, {u"3", u"叁"}, {u"4", u"肆"},
    {u"5", u"伍"}, {u"6", u"陆"}, {u"7", u"柒"}, {u"8", u"捌"}, {u"9", u"玖"},
};

// Grouped by base letter, capitals before small letters; a letter without an accented form
// here (q, x) is never touched.
constexpr TextPair kAccentedLetters[] = {
    {u"Ä", u"A"}, {u"Å", u"A"}, {u"À", u"A"}, {u"Á", u"A"}, {u"Â", u"A"}, {u"Ã", u"A"}, {u"Ă", u"A"}, {u"Ą", u"A"},
    {u"Ά", u"A"}, {u"Ā", u"A"},
    {u"ā", u"a"}, {u"á", u"a"}, {u"ǎ", u"a"}, {u"à", u"a"}, {u"ä", u"a"}, {u"å", u"a"}, {u"â", u"a"}, {u"ã", u"a"},
    {u"ą", u"a"}, {u"ă", u"a"},
    {u"Ç", u"C"}, {u"Ć", u"C"}, {u"Č", u"C"}, {u"Ĉ", u"C"}, {u"Ċ", u"C"},
    {u"ç", u"c"}, {u"ć", u"c"}, {u"č", u"c"}, {u"ĉ", u"c"}, {u"ċ", u"c"},
    {u"Ď", u"D"}, {u"Đ", u"D"}, {u"Ð", u"D"},
    {u"ď", u"d"}, {u"đ", u"d"},
    {u"Ë", u"E"}, {u"È", u"E"}, {u"É", u"E"}, {u"Ê", u"E"}, {u"Ę", u"E"}, {u"Ě", u"E"}, {u"Ė", u"E"}, {u"Ē", u"E"},
    {u"Ĕ", u"E"}, {u"Έ", u"E"},
    {u"ē", u"e"}, {u"é", u"e"}, {u"ě", u"e"}, {u"è", u"e"}, {u"ë", u"e"}, {u"ê", u"e"}, {u"ę", u"e"}, {u"ė", u"e"},
    {u"ĕ", u"e"},
    {u"Ĝ", u"G"}, {u"Ğ", u"G"}, {u"Ġ", u"G"}, {u"Ģ", u"G"},
    {u"ĝ", u"g"}, {u"ğ", u"g"}, {u"ġ", u"g"}, {u"ģ", u"g"},
    {u"Ĥ", u"H"}, {u"Ħ", u"H"}, {u"Ή", u"H"},
    {u"ĥ", u"h"}, {u"ħ", u"h"},
    // The small "ľ", "ĺ", "ł" stand with the I's and map to "I"; kept so on purpose.
    {u"Ï", u"I"}, {u"Ì", u"I"}, {u"Í", u"I"}, {u"Î", u"I"}, {u"Ī", u"I"}, {u"Ĩ", u"I"}, {u"Ĭ", u"I"}, {u"Į", u"I"},
    {u"İ", u"I"}, {u"Ǐ", u"I"}, {u"ľ", u"I"}, {u"ĺ", u"I"}, {u"ł", u"I"},
    {u"ī", u"i"}, {u"í", u"i"}, {u"ǐ", u"i"}, {u"ì", u"i"}, {u"ï", u"i"}, {u"î", u"i"}, {u"ĩ", u"i"}, {u"ĭ", u"i"},
    {u"į", u"i"}, {u"ı", u"i"},
    {u"Ĵ", u"J"},
    {u"ĵ", u"j"},
    {u"Ķ", u"K"},
    {u"ķ", u"k"},
    {u"Ĺ", u"L"}, {u"Ļ", u"L"}, {u"Ľ", u"L"}, {u"Ŀ", u"L"}, {u"Ł", u"L"},
    {u"ļ", u"l"}, {u"ŀ", u"l"},
    {u"Ñ", u"N"}, {u"Ń", u"N"}, {u"Ň", u"N"}, {u"Ņ", u"N"}, {u"Ŋ", u"N"},
    {u"ñ", u"n"}, {u"ń", u"n"}, {u"ň", u"n"}, {u"ņ", u"n"},
    {u"Ö", u"O"}, {u"Ò", u"O"}, {u"Ó", u"O"}, {u"Ô", u"O"}, {u"Õ", u"O"}, {u"Ø", u"O"}, {u"Ō", u"O"}, {u"Ŏ", u"O"},
    {u"Ő", u"O"}, {u"Ό", u"O"}, {u"Ǒ", u"O"},
    {u"ō", u"o"}, {u"ó", u"o"}, {u"ǒ", u"o"}, {u"ò", u"o"}, {u"ö", u"o"}, {u"ô", u"o"}, {u"õ", u"o"}, {u"ø", u"o"},
    {u"ŏ", u"o"}, {u"ő", u"o"},
    {u"Ŕ", u"R"}, {u"Ř", u"R"}, {u"Ŗ", u"R"},
    {u"ŕ", u"r"}, {u"ř", u"r"}, {u"ŗ", u"r"},
    {u"Ś", u"S"}, {u"Š", u"S"}, {u"Ş", u"S"}, {u"Ŝ", u"S"},
    {u"ś", u"s"}, {u"š", u"s"}, {u"ş", u"s"}, {u"ŝ", u"s"},
    {u"Ť", u"T"}, {u"Ţ", u"T"}, {u"Ŧ", u"T"},
    {u"ť", u"t"}, {u"ţ", u"t"}, {u"ŧ", u"t"},
    {u"Ü", u"U"}, {u"Ù", u"U"}, {u"Ú", u"U"}, {u"Û", u"U"}, {u"Ū", u"U"}, {u"Ů", u"U"}, {u"Ű", u"U"}, {u"Ŭ", u"U"},
    {u"Ũ", u"U"}, {u"Ų", u"U"}, {u"Ǔ", u"U"}, {u"Ǖ", u"U"}, {u"Ǘ", u"U"}, {u"Ǚ", u"U"}, {u"Ǜ", u"U"},
    {u"ū", u"u"}, {u"ú", u"u"}, {u"ǔ", u"u"}, {u"ù", u"u"}, {u"ü", u"u"}, {u"û", u"u"}, {u"ů", u"u"}, {u"ű", u"u"},
    {u"ŭ", u"u"}, {u"ũ", u"u"}, {u"ų", u"u"}, {u"ǖ", u"u"}, {u"ǘ", u"u"}, {u"ǚ", u"u"}, {u"ǜ", u"u"},
    {u"Ŵ", u"W"},
    {u"ŵ", u"w"},
    {u"Ý", u"Y"}, {u"Ÿ", u"Y"}, {u"Ŷ", u"Y"},
    {u"ý", u"y"}, {u"ÿ", u"y"}, {u"ŷ", u"y"},
    {u"Ż", u"Z"}, {u"Ź", u"Z"}, {u"Ž", u"Z"},
    {u"ź", u"z"}, {u"ż", u"z"}, {u"ž", u"z"},
};
static_assert(std::size(kAccentedLetters) == 195);

// ---- One-character replacement ---------------------------------------------------------

// A table whose keys are single UTF-16 units, as a hash from key to replacement.
class CharMap {
public:
    CharMap(std::initializer_list<std::span<const TextPair>> tables, bool reverse = false)
    {
        for (std::span<const TextPair> table : tables) {
            for (const TextPair& pair : table) {
                const char16_t* key = reverse ? pair.to : pair.from;
                const char16_t* value = reverse ? pair.from : pair.to;
                Q_ASSERT(key[0] != 0 && key[1] == 0);
                m_map.insert(key[0], QStringView(value));
            }
        }
    }

    QString apply(QStringView text) const
    {
        QString out;
        out.reserve(text.size());
        for (const QChar c : text) {
            const auto it = m_map.constFind(c.unicode());
            if (it == m_map.constEnd())
                out.append(c);
            else
                out.append(*it);
        }
        return out;
    }

private:
    QHash<char16_t, QStringView> m_map;
};

// ---- The dictionary's index ------------------------------------------------------------

// Character → the entries that hold it. Characters of the Basic Multilingual Plane are
// found by direct indexing, the rest through a hash; both point into one flat list in
// which a count is followed by that many entry indexes. Position 0 holds a zero count and
// stands for "not in the dictionary".
class PinyinIndex {
public:
    PinyinIndex()
    {
        std::vector<std::pair<char32_t, std::uint16_t>> pairs;
        pairs.reserve(60000);
        for (int i = 0; i < kPinyinEntryCount; ++i) {
            const QStringView characters = pinyinEntry(i).characters;
            for (qsizetype at = 0; at < characters.size();) {
                const auto [c, width] = codePointAt(characters, at);
                pairs.emplace_back(c, std::uint16_t(i));
                at += width;
            }
        }
        // Stable, so the entries of one character stay in table order.
        std::stable_sort(pairs.begin(), pairs.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
        m_bmp.assign(0x10000, 0);
        m_lists.reserve(pairs.size() + pairs.size() / 2 + 1);
        m_lists.push_back(0);
        for (size_t i = 0; i < pairs.size();) {
            size_t end = i;
            while (end < pairs.size() && pairs[end].first == pairs[i].first)
                ++end;
            const auto position = std::uint32_t(m_lists.size());
            m_lists.push_back(std::uint16_t(end - i));
            for (size_t k = i; k < end; ++k)
                m_lists.push_back(pairs[k].second);
            if (pairs[i].first < 0x10000)
                m_bmp[pairs[i].first] = position;
            else
                m_supplementary.insert(pairs[i].first, position);
            i = end;
        }
    }

    std::span<const std::uint16_t> find(char32_t c) const
    {
        const std::uint32_t position = c < 0x10000 ? m_bmp[c] : m_supplementary.value(c, 0);
        return {m_lists.data() + position + 1, m_lists[position]};
    }

    static std::pair<char32_t, int> codePointAt(QStringView text, qsizetype at)
    {
        const QChar c = text[at];
        if (c.isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate())
            return {QChar::surrogateToUcs4(c, text[at + 1]), 2};
        return {c.unicode(), 1};
    }

private:
    std::vector<std::uint32_t> m_bmp;
    QHash<char32_t, std::uint32_t> m_supplementary;
    std::vector<std::uint16_t> m_lists;
};

const PinyinIndex& pinyinIndex()
{
    static const PinyinIndex index;
    return index;
}

QString upperFirstAscii(QString text)
{
    if (!text.isEmpty() && text[0] >= u'a' && text[0] <= u'z')
        text[0] = QChar(char16_t(text[0].unicode() - 32));
    return text;
}

}  // namespace

bool isChineseCharacter(char32_t c)
{
    return (c >= 0x4E00 && c <= 0x9FFF)       // CJK Unified Ideographs
        || (c >= 0x3400 && c <= 0x4DBF)       // extension A
        || (c >= 0x20000 && c <= 0x2A6DF)     // extension B
        || (c >= 0x2A700 && c <= 0x2EBEF)     // extensions C, D, E, F
        || (c >= 0x30000 && c <= 0x323AF)     // extensions G, H
        || (c >= 0xF900 && c <= 0xFAFF)       // compatibility ideographs
        || (c >= 0x2F800 && c <= 0x2FA1F);    // compatibility ideographs supplement
}

int pinyinEntryCount() { return kPinyinEntryCount; }

PinyinEntry pinyinEntry(int index)
{
    const QStringView entry(kPinyinEntries[index]);
    const qsizetype space = entry.indexOf(u' ');
    return {entry.first(space), entry.sliced(space + 1)};
}

std::span<const std::uint16_t> readingsOf(char32_t c) { return pinyinIndex().find(c); }

std::span<const TextPair> toneMarkTable() { return kToneMarks; }
std::span<const TextPair> numberSymbolTable() { return kNumberSymbols; }
std::span<const TextPair> smallNumeralTable() { return kSmallNumerals; }
std::span<const TextPair> capitalNumeralTable() { return kCapitalNumerals; }

std::span<const TextPair> accentedLetterTable() { return kAccentedLetters; }

QString withToneMarks(QStringView numbered)
{
    QString reading = numbered.toString();
    for (const TextPair& pair : kToneMarks) {
        const QStringView from(pair.from);
        if (reading.contains(from))
            reading.replace(from.toString(), QStringView(pair.to).toString());
    }
    // Only a syllable with no vowel of the table ("m2", "ng4", "hm5") still has its digit.
    if (!reading.isEmpty() && reading.back().isDigit())
        reading.chop(1);
    return reading;
}

QString replaceNumberSymbols(QStringView text)
{
    static const CharMap map{kNumberSymbols};
    return map.apply(text);
}

QString digitsToNumerals(QStringView text, bool capital)
{
    static const CharMap small{kSmallNumerals};
    static const CharMap big{kCapitalNumerals};
    return (capital ? big : small).apply(text);
}

QString numeralsToDigits(QStringView text)
{
    static const CharMap map({kSmallNumerals, kCapitalNumerals}, true);
    return map.apply(text);
}

QString accentedToAscii(QStringView text)
{
    static const CharMap map{kAccentedLetters};
    return map.apply(text);
}

// ---- Pinyin conversion ------------------------------------------------------------------

PinyinConverter::PinyinConverter(PinyinOptions options) : m_options(std::move(options))
{
    const int count = pinyinEntryCount();
    m_bare.reserve(size_t(count));
    m_wrapped.reserve(size_t(count));
    const bool marks = m_options.mode == PinyinMode::ToneMarks
        || (m_options.mode == PinyinMode::FirstInitial && !m_options.initialAsLetter);
    const bool firstOnly = m_options.firstLetterOnly || m_options.mode == PinyinMode::FirstInitial;
    for (int i = 0; i < count; ++i) {
        const QStringView numbered = pinyinEntry(i).reading;
        QString reading = marks ? withToneMarks(numbered) : numbered.chopped(1).toString();
        if (firstOnly)
            reading.truncate(1);
        if (m_options.upperFirst)
            reading = upperFirstAscii(std::move(reading));
        m_wrapped.push_back(m_options.leftAffix + reading + m_options.rightAffix);
        m_bare.push_back(std::move(reading));
    }
}

void PinyinConverter::appendReadings(QString& out, std::span<const std::uint16_t> entries) const
{
    if (!m_options.allReadings || entries.size() == 1) {
        out += m_wrapped[entries.front()];
        return;
    }
    // Readings that come out alike (tones dropped, first letters only) are written once.
    out += m_options.leftAffix;
    QStringList seen;
    for (const std::uint16_t entry : entries) {
        const QString& reading = m_bare[entry];
        if (seen.contains(reading))
            continue;
        if (!seen.isEmpty())
            out += u',';
        out += reading;
        seen.append(reading);
    }
    out += m_options.rightAffix;
}

QString PinyinConverter::convert(QStringView text) const
{
    if (m_options.mode == PinyinMode::FirstInitial)
        return convertInitial(text);
    QString out;
    out.reserve(text.size() * 4);
    bool afterChinese = false;
    for (qsizetype at = 0; at < text.size();) {
        const auto [c, width] = PinyinIndex::codePointAt(text, at);
        const QStringView character = text.sliced(at, width);
        at += width;
        if (!isChineseCharacter(c)) {
            out += character;
            afterChinese = false;
            continue;
        }
        if (afterChinese)
            out += m_options.link;
        afterChinese = true;
        if (m_options.keepChinese)
            out += character;
        const std::span<const std::uint16_t> entries = readingsOf(c);
        if (!entries.empty())
            appendReadings(out, entries);
        else if (m_options.unknownAsTilde)
            out += u'~';
        else if (!m_options.keepChinese)
            out += character;
    }
    return out;
}

QString PinyinConverter::convertInitial(QStringView text) const
{
    for (qsizetype at = 0; at < text.size();) {
        const auto [c, width] = PinyinIndex::codePointAt(text, at);
        at += width;
        if (!isChineseCharacter(c))
            continue;
        const std::span<const std::uint16_t> entries = readingsOf(c);
        if (!entries.empty())
            return m_wrapped[entries.front()] + text.toString();
        return m_options.unknownAsTilde ? QStringLiteral("~") + text.toString() : text.toString();
    }
    return text.toString();
}

}  // namespace qp::chinese
