#include <gtest/gtest.h>

#include <QSet>

#include "expressions/ChineseText.h"

// Readable failure output for the texts.
void PrintTo(const QString& text, std::ostream* os) { *os << '"' << text.toStdString() << '"'; }

namespace qp::chinese {
namespace {

QString fromUtf8(const char* text) { return QString::fromUtf8(text); }

QStringList readingsText(char32_t c)
{
    QStringList readings;
    for (const std::uint16_t entry : readingsOf(c))
        readings.append(pinyinEntry(entry).reading.toString());
    return readings;
}

// What the generator promises of the committed table, whatever Unihan release it came from.
TEST(PinyinDictionary, EverySyllableHasFiveTonesInSortedOrder)
{
    ASSERT_GT(pinyinEntryCount(), 1000);
    ASSERT_EQ(pinyinEntryCount() % 5, 0);
    for (int i = 0; i < pinyinEntryCount(); ++i) {
        const QStringView reading = pinyinEntry(i).reading;
        ASSERT_GE(reading.size(), 2) << i;
        for (const QChar c : reading.chopped(1))
            ASSERT_TRUE(c >= u'a' && c <= u'z') << reading.toString().toStdString();
        // Entries 5k … 5k+4 are one syllable with tones 1 … 5.
        EXPECT_EQ(reading.back(), QChar(u'1' + i % 5)) << reading.toString().toStdString();
        EXPECT_EQ(reading.chopped(1), pinyinEntry(i - i % 5).reading.chopped(1));
        if (i > 0) {
            EXPECT_LT(pinyinEntry(i - 1).reading.compare(reading), 0) << reading.toString().toStdString();
        }
    }
}

TEST(PinyinDictionary, HoldsOnlyChineseCharactersEachOncePerEntry)
{
    for (int i = 0; i < pinyinEntryCount(); ++i) {
        const QString characters = pinyinEntry(i).characters.toString();
        QSet<char32_t> seen;
        for (const char32_t c : characters.toUcs4()) {
            EXPECT_TRUE(isChineseCharacter(c)) << std::hex << unsigned(c);
            EXPECT_FALSE(seen.contains(c)) << std::hex << unsigned(c);
            seen.insert(c);
        }
    }
}

TEST(PinyinDictionary, ReadingsComeInTableOrderSoTheFirstIsAlphabeticallyFirst)
{
    EXPECT_EQ(readingsText(U'重'), (QStringList{"chong2", "zhong4"}));
    EXPECT_EQ(readingsText(U'行').first(), "hang2");
    EXPECT_TRUE(readingsText(U'行').contains("xing2"));
    EXPECT_EQ(readingsText(U'长'), (QStringList{"chang2", "zhang3"}));
    EXPECT_EQ(readingsText(U'阿').first(), "a1");
    EXPECT_EQ(readingsText(U'儿'), QStringList{"er2"});
    EXPECT_EQ(readingsText(U'\U00020000'), QStringList{"he1"});  // beyond the BMP
    EXPECT_TRUE(readingsOf(U'兙').empty());
    EXPECT_TRUE(readingsOf(U'a').empty());
    EXPECT_TRUE(readingsOf(0x10FFFF).empty());
}

TEST(ChineseCharacters, BlocksOfHanIdeographsOnly)
{
    for (const char32_t c : {U'一', U'龥', U'㐀', U'\U00020000', U'\U0002B740', U'\U00030000', U'\U000323AF', U'豈'})
        EXPECT_TRUE(isChineseCharacter(c)) << std::hex << unsigned(c);
    for (const char32_t c : {U'a', U'，', U'①', U'㈠', U'〇', U'\uE000', U'\U0001F600', U'ā'})
        EXPECT_FALSE(isChineseCharacter(c)) << std::hex << unsigned(c);
}

TEST(ToneMarks, TwoLetterFinalsWinAndTheTwoOldFormsAreKept)
{
    const struct {
        const char* numbered;
        const char* marked;
    } cases[] = {
        {"hao3", "hǎo"},  {"chong2", "chóng"}, {"qing4", "qìng"}, {"gui4", "guì"},  {"jiu3", "jiǔ"},
        {"xiong1", "xiōng"}, {"lve4", "lüè"},  {"nv3", "nǚ"},    {"lv5", "lü"},    {"zhuang1", "zhuāng"},
        {"ne5", "ne"},    {"er2", "ēr"},       {"lve2", "lüē"},  {"er4", "èr"},    {"m2", "m"},
        {"ng4", "ng"},    {"hm5", "hm"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(withToneMarks(fromUtf8(c.numbered)), fromUtf8(c.marked)) << c.numbered;
}

TEST(ToneMarks, TableHasEveryFinalWithTonesOneToFive)
{
    const auto table = toneMarkTable();
    ASSERT_EQ(table.size(), 115u);
    for (size_t i = 0; i < table.size(); ++i) {
        const QStringView numbered(table[i].from);
        EXPECT_EQ(numbered.back(), QChar(u'1' + int(i % 5)));
        EXPECT_EQ(numbered.chopped(1), QStringView(table[i - i % 5].from).chopped(1));
    }
}

// Each table's keys are single characters and no replacement holds a key of its table; so
// one pass equals replacing entry by entry in table order, and a key cannot appear twice.
TEST(CharacterTables, OnePassEqualsReplacingEntryByEntry)
{
    const struct {
        std::span<const TextPair> table;
        QString (*convert)(QStringView);
    } tables[] = {
        {numberSymbolTable(), replaceNumberSymbols},
        {accentedLetterTable(), accentedToAscii},
        {smallNumeralTable(), [](QStringView t) { return digitsToNumerals(t, false); }},
        {capitalNumeralTable(), [](QStringView t) { return digitsToNumerals(t, true); }},
    };
    for (const auto& t : tables) {
        QString text = QStringLiteral("x");
        QSet<QString> keys;
        for (const TextPair& pair : t.table) {
            const QString key = QString::fromUtf16(pair.from);
            EXPECT_EQ(key.size(), 1);
            EXPECT_FALSE(keys.contains(key)) << key.toStdString();
            keys.insert(key);
            text += key + QStringLiteral("-q") + key;
        }
        QString expected = text;
        for (const TextPair& pair : t.table)
            expected.replace(QString::fromUtf16(pair.from), QString::fromUtf16(pair.to));
        EXPECT_EQ(t.convert(text), expected);
    }
}

TEST(CharacterTables, SymbolsDigitsAndLetters)
{
    EXPECT_EQ(replaceNumberSymbols(u"①⑳⑴⒇⒈⒛ⅠⅫⅰⅹ❶❿㈠㈩"), "(1)(20)(1)(20)1.20.112110(1)(10)(1)(10)");
    EXPECT_EQ(replaceNumberSymbols(u"第③章"), fromUtf8("第(3)章"));
    EXPECT_EQ(digitsToNumerals(u"2024年01月", false), fromUtf8("二〇二四年〇一月"));
    EXPECT_EQ(digitsToNumerals(u"2024年01月", true), fromUtf8("贰零贰肆年零壹月"));
    EXPECT_EQ(numeralsToDigits(u"二〇二四年零壹月十日"), fromUtf8("2024年01月十日"));
    EXPECT_EQ(accentedToAscii(u"Łódź ł Ά Ħ ǚ ü qx Ŋ"), "Lodz I A H u u qx N");
    EXPECT_EQ(accentedToAscii(u"Crème Brûlée"), "Creme Brulee");
    EXPECT_EQ(accentedLetterTable().size(), 195u);
    EXPECT_EQ(numberSymbolTable().size(), 102u);
}

struct PinyinCase {
    const char* text;
    PinyinOptions options;
    const char* expected;
};

PinyinOptions with(std::function<void(PinyinOptions&)> change)
{
    PinyinOptions options;
    change(options);
    return options;
}

TEST(PinyinConversion, WalksTheTextCharacterByCharacter)
{
    const PinyinCase cases[] = {
        {"重庆", with([](auto& o) { o.mode = PinyinMode::ToneMarks; }), "chóng_qìng"},
        {"重庆", {}, "chong_qing"},
        {"长行阿", {}, "chang_hang_a"},
        {"女儿", with([](auto& o) { o.mode = PinyinMode::ToneMarks; }), "nǚ_ēr"},
        // The link stands only between two Chinese characters that follow each other.
        {"A重.B庆 ", {}, "Achong.Bqing "},
        {"plain name-1 (2).txt", {}, "plain name-1 (2).txt"},
        {"重庆", with([](auto& o) { o.link.clear(); }), "chongqing"},
        {"重庆大学", with([](auto& o) { o.firstLetterOnly = true; }), "c_q_d_x"},
        {"重庆", with([](auto& o) { o.upperFirst = true; }), "Chong_Qing"},
        // Only a–z is raised: a marked first letter stays as it is.
        {"阿重", with([](auto& o) { o.upperFirst = true; o.mode = PinyinMode::ToneMarks; }), "ā_Chóng"},
        {"重庆", with([](auto& o) { o.leftAffix = "["; o.rightAffix = "]"; }), "[chong]_[qing]"},
        {"重庆x", with([](auto& o) { o.keepChinese = true; }), "重chong_庆qingx"},
        // Several readings: joined by ",", those that come out alike once, affixes around all.
        {"重庆", with([](auto& o) { o.allReadings = true; }), "chong,zhong_qing"},
        {"阿", with([](auto& o) { o.allReadings = true; o.firstLetterOnly = true; }), "a,e"},
        {"重", with([](auto& o) { o.allReadings = true; o.leftAffix = "("; o.rightAffix = ")"; }), "(chong,zhong)"},
        // Unknown characters: "~", or the character itself.
        {"重兙庆", {}, "chong_~_qing"},
        {"重兙", with([](auto& o) { o.unknownAsTilde = false; }), "chong_兙"},
        {"兙", with([](auto& o) { o.unknownAsTilde = false; o.keepChinese = true; }), "兙"},
        {"兙", with([](auto& o) { o.keepChinese = true; }), "兙~"},
        // A character beyond the BMP is one character; a lone surrogate is copied.
        {"\xF0\xA0\x80\x80重", {}, "he_chong"},
        {"\xF0\xA0\x80\x80", with([](auto& o) { o.keepChinese = true; }), "\xF0\xA0\x80\x80he"},
        // The first-initial mode puts one letter in front and keeps the text.
        {"张三.jpg", with([](auto& o) { o.mode = PinyinMode::FirstInitial; o.upperFirst = true; }), "Z张三.jpg"},
        {"IMG 重庆", with([](auto& o) { o.mode = PinyinMode::FirstInitial; o.rightAffix = "_"; }), "c_IMG 重庆"},
        {"阿", with([](auto& o) { o.mode = PinyinMode::FirstInitial; o.initialAsLetter = false; }), "ā阿"},
        {"兙重", with([](auto& o) { o.mode = PinyinMode::FirstInitial; }), "~兙重"},
        {"abc", with([](auto& o) { o.mode = PinyinMode::FirstInitial; }), "abc"},
    };
    for (const PinyinCase& c : cases) {
        const PinyinConverter converter(c.options);
        EXPECT_EQ(converter.convert(fromUtf8(c.text)), fromUtf8(c.expected)) << c.text;
    }
}

TEST(PinyinConversion, LoneSurrogatesAreCopied)
{
    const PinyinConverter converter({});
    const QString text = QString(QChar(0xD840)) + QStringLiteral("重") + QChar(0xDC00);
    EXPECT_EQ(converter.convert(text), QString(QChar(0xD840)) + QStringLiteral("chong") + QChar(0xDC00));
}

}  // namespace
}  // namespace qp::chinese
