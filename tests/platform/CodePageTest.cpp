#include "platform/CodePage.h"

#include <gtest/gtest.h>

#include "platform/FileSystem.h"

using namespace qp::platform;

namespace {

std::u16string u16(const char* utf8) { return toUtf16Lossy(utf8); }
std::string u8(const std::u16string& text) { return toUtf8(text); }

}  // namespace

TEST(CodePage, NamesAndNumbers)
{
    const struct {
        const char* name;
        int codePage;
    } cases[] = {{"GBK", 936},          {"cp936", 936},      {"936", 936},          {"Big5", 950},
                 {"Shift_JIS", 932},    {"SJIS", 932},       {"Latin-1", 28591},    {"windows-1252", 1252},
                 {"UTF-8", 65001},      {"gb 18030", 54936}, {"windows-1251", 1251}, {"klingon", 0},
                 {"cp", 0},             {"cp1234567", 0}};
    for (const auto& c : cases)
        EXPECT_EQ(codePageByName(c.name), c.codePage) << c.name;
    for (const int codePage : {932, 936, 950, 1252, 28591, 65001})
        EXPECT_TRUE(codePageSupported(codePage)) << codePage;
    EXPECT_FALSE(codePageSupported(0));
}

TEST(CodePage, DecodesAndTellsWhetherEveryByteWasValid)
{
    const struct {
        const char* bytes;
        int codePage;
        const char* text;
        bool lossless;
    } cases[] = {
        {"\xD6\xD0\xCE\xC4", 936, "中文", true},
        {"\xA4\xA4\xA4\xE5", 950, "中文", true},
        {"\x93\xFA\x96\x7B\x83\x65", 932, "日本テ", true},
        {"Caf\xE9 \x80", 1252, "Café €", true},
        {"Caf\xE9 \x80", 28591, "Café \xC2\x80", true},
        {"\xE4\xB8\xAD", 65001, "中", true},
        {"a\xD6", 936, "a\xEF\xBF\xBD", false},          // cut in the middle of a character
        {"\xE4\xB8", 65001, "\xEF\xBF\xBD", false},
        {"\x81\x7F", 950, "\xEF\xBF\xBD\x7F", false},     // no Big5 lead byte
        {"", 936, "", true},
    };
    for (const auto& c : cases) {
        const Decoded decoded = decodeCodePage(c.bytes, c.codePage);
        if (c.lossless) {  // how a system fills in for invalid bytes is its own affair
            EXPECT_EQ(u8(decoded.text), c.text) << c.bytes;
        }
        EXPECT_EQ(decoded.lossless, c.lossless) << c.bytes;
    }
}

TEST(CodePage, EncodesAndMarksWhatTheCodePageCannotHold)
{
    const struct {
        const char* text;
        int codePage;
        const char* bytes;
        bool lossless;
    } cases[] = {
        {"中文", 936, "\xD6\xD0\xCE\xC4", true},
        {"中文", 950, "\xA4\xA4\xA4\xE5", true},
        {"中文", 1252, "??", false},
        {"€é", 1252, "\x80\xE9", true},
        {"€é", 28591, "?\xE9", false},
        {"a\xF0\xA0\x80\x80" "b", 936, "a?b", false},  // U+20000, outside GBK: one "?" for the pair
        {"\xF0\xA0\x80\x80", 54936, "\x95\x32\x82\x36", true},  // where the system has GB18030 (Wine has not)
        {"中", 65001, "\xE4\xB8\xAD", true},
    };
    for (const auto& c : cases) {
        if (!codePageSupported(c.codePage))
            continue;
        const Encoded encoded = encodeCodePage(u16(c.text), c.codePage);
        EXPECT_EQ(encoded.bytes, c.bytes) << c.text << " " << c.codePage;
        EXPECT_EQ(encoded.lossless, c.lossless) << c.text << " " << c.codePage;
    }
    const std::u16string lone{u'a', char16_t(0xD800)};
    EXPECT_FALSE(encodeCodePage(lone, 65001).lossless);
    EXPECT_FALSE(encodeCodePage(lone, 936).lossless);
}

TEST(CodePage, GuessesShortNamesByTheirCommonCharacters)
{
    const struct {
        const char* text;   // UTF-8
        int codePage;       // written in
        int expected;       // guessed; 0: no guess
    } cases[] = {
        {"周杰伦", 936, 936},       {"王菲", 936, 936},         {"青花瓷", 936, 936},
        {"宇多田ヒカル", 936, 936}, // a Chinese tag quoting a Japanese name
        {"周杰倫", 950, 950},       {"鄧麗君", 950, 950},       {"簡單愛", 950, 950},
        {"中島みゆき", 932, 932},   {"米津玄師", 932, 932},     {"テスト", 932, 932},
    };
    for (const auto& c : cases) {
        const Encoded written = encodeCodePage(u16(c.text), c.codePage);
        ASSERT_TRUE(written.lossless) << c.text;
        const auto guess = guessCjkCodePage(written.bytes);
        ASSERT_TRUE(guess.has_value()) << c.text;
        EXPECT_EQ(guess->codePage, c.expected) << c.text;
        EXPECT_EQ(u8(guess->text), c.text);
    }
    // Western text: nothing that decodes to common characters, so no guess.
    for (const char* bytes : {"Caf\xE9", "Beyonc\xE9 Knowles", "\xC9" "dith Piaf", "plain", ""})
        EXPECT_FALSE(guessCjkCodePage(bytes).has_value()) << bytes;
    EXPECT_EQ(commonCjkScore(u"中\uFFFD", CpGbk), 0);
    EXPECT_EQ(commonCjkScore(u"ﾃｽﾄ", CpShiftJis), -3);
}
