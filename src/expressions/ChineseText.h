// Chinese text conversions: pinyin from the compiled-in dictionary, tone marks, and the
// tables that turn number symbols, digits and accented letters into other text. The tables
// are constant data; nothing here reads a file or the settings.
//
// Texts are UTF-16. A character outside the Basic Multilingual Plane (most of the rarer Han
// characters) is a surrogate pair and is always handled as one character, never split.
#pragma once

#include <QString>
#include <QStringView>
#include <cstdint>
#include <span>
#include <vector>

namespace qp::chinese {

// A Han ideograph: the CJK Unified Ideographs block and its extensions A to H, and the CJK
// Compatibility Ideographs. Full-width punctuation, number symbols ("①", "㈠") and private-use
// characters are not Chinese characters here.
bool isChineseCharacter(char32_t c);

// ---- The pinyin dictionary -------------------------------------------------------------

struct PinyinEntry {
    QStringView reading;     // "chong2"
    QStringView characters;  // every character with that reading, possibly none
};
int pinyinEntryCount();
PinyinEntry pinyinEntry(int index);

// The entries that hold `c`, as indexes in table order (so the first is the character's
// alphabetically first reading); empty for a character the dictionary does not know. The
// index behind this is built once, at the first call.
std::span<const std::uint16_t> readingsOf(char32_t c);

// ---- Tone marks ------------------------------------------------------------------------

struct TextPair {
    const char16_t* from;
    const char16_t* to;
};

// 115 pairs: each final ("ai" … "ong", then the single vowels "a", "o", "e", "i", "u", "v")
// with the tones 1 to 5, and its marked form. Tone 5 has no mark and "v" is written "ü".
// Two entries keep the first-tone form on purpose: "ve2" → "üē" and "er2" → "ēr".
std::span<const TextPair> toneMarkTable();

// A numbered reading with its tone as a mark: the pairs of the tone-mark table are tried in
// order and every numbered form found is replaced, so the two-letter finals win over the
// single vowels ("hao3" → "hǎo", not "haǒ"). A syllable without a vowel ("m2", "ng4") keeps
// no mark and loses its digit.
QString withToneMarks(QStringView numbered);

// ---- Symbols, digits and accented letters ----------------------------------------------

// 102 pairs: "①" … "⑳" → "(1)" … "(20)", "⑴" … "⒇" → "(1)" … "(20)", "⒈" … "⒛" → "1." …
// "20.", "Ⅰ" … "Ⅻ" → "1" … "12", "ⅰ" … "ⅹ" → "1" … "10", "❶" … "❿" → "(1)" … "(10)",
// "㈠" … "㈩" → "(1)" … "(10)".
std::span<const TextPair> numberSymbolTable();
// "0" … "9" and the small numerals "〇一二三四五六七八九", or the capital ones
// "零壹贰叁肆伍陆柒捌玖".
std::span<const TextPair> smallNumeralTable();
std::span<const TextPair> capitalNumeralTable();
// 195 pairs, accented letter → plain ASCII letter, grouped by base letter with the capitals
// first. A few are kept as they have always been: the Greek capitals with tonos map to
// their Latin look-alikes, and the small "ľ", "ĺ", "ł" map to the capital "I".
std::span<const TextPair> accentedLetterTable();

// Each replaces every occurrence of every entry of its table. The entries are single
// characters and no replacement holds a key of the same table, so one pass over the text
// gives what replacing entry by entry in table order gives.
QString replaceNumberSymbols(QStringView text);
QString digitsToNumerals(QStringView text, bool capital);
// Both the small and the capital numerals become digits.
QString numeralsToDigits(QStringView text);
QString accentedToAscii(QStringView text);

// ---- Pinyin conversion ------------------------------------------------------------------

enum class PinyinMode {
    Letters,       // "汉字转英文字母串拼音": plain letters, no tone
    ToneMarks,     // "汉字转带声调的汉语拼音"
    FirstInitial,  // "只插入第一个汉字声母": the first letter of the first Chinese character, put in front
};

struct PinyinOptions {
    PinyinMode mode = PinyinMode::Letters;
    bool firstLetterOnly = false;   // "只取首字母"
    bool allReadings = false;       // "显示多音字的多个拼音": every reading, joined by ","
    bool keepChinese = false;       // "包含汉字": each character stays, its reading after it
    bool initialAsLetter = true;    // "英文字母串方式": the first-initial mode writes a plain letter
    bool unknownAsTilde = true;     // "未知字符显示“~”"
    bool upperFirst = false;        // "首字母大写"
    QString leftAffix;              // "左附加"
    QString rightAffix;             // "右附加"
    QString link = QStringLiteral("_");  // "字符：连接", between two adjacent Chinese characters
};

// Converts texts with one set of options. Every reading's final form (marks, first letter,
// case, affixes) is worked out once when the converter is made, so a conversion costs one
// index look-up and one append per character.
class PinyinConverter {
public:
    explicit PinyinConverter(PinyinOptions options);
    QString convert(QStringView text) const;
    const PinyinOptions& options() const { return m_options; }

private:
    void appendReadings(QString& out, std::span<const std::uint16_t> entries) const;
    QString convertInitial(QStringView text) const;

    PinyinOptions m_options;
    std::vector<QString> m_bare;     // per dictionary entry: the reading as written, no affixes
    std::vector<QString> m_wrapped;  // the same between the affixes
};

}  // namespace qp::chinese
