// Legacy (non-Unicode) code pages: decoding the bytes that old tags, file formats and
// names hold, and encoding text back. Windows converts with its own tables; elsewhere iconv
// does, under the same Windows code page numbers. Latin-1, Windows-1252 and UTF-8 are
// converted here on both, so that they give the same result everywhere.
#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

namespace qp::platform {

// The Windows numbers of the code pages the program names.
enum CodePageNumber : int {
    CpShiftJis = 932,
    CpGbk = 936,
    CpKorean = 949,
    CpBig5 = 950,
    CpWestern = 1252,
    CpLatin1 = 28591,
    CpGb18030 = 54936,
    CpUtf8 = 65001,
};

// The number of a code page given by name or number: "GBK", "cp936", "936", "Big5",
// "Shift_JIS", "Latin-1", "windows-1252", "UTF-8", "GB18030" … Letter case, "-", "_" and
// blanks do not count. 0 when the name is not known.
int codePageByName(std::string_view name);

// Whether this system can convert the code page.
bool codePageSupported(int codePage);

struct Decoded {
    std::u16string text;
    // Every byte belonged to a valid character. Otherwise each byte that did not became
    // U+FFFD and the rest was decoded.
    bool lossless = true;
};
struct Encoded {
    std::string bytes;
    // Every character exists in the code page. Otherwise each one that does not (and each
    // unpaired surrogate) became "?".
    bool lossless = true;
};

// An unsupported code page decodes every byte to U+FFFD and encodes every character to "?",
// never losslessly.
Decoded decodeCodePage(std::string_view bytes, int codePage);
Encoded encodeCodePage(std::u16string_view text, int codePage);

// How much a text decoded from `codePage` looks like real writing of the language that code
// page serves, for choosing between the decodings of bytes whose code page nobody wrote
// down: 2 for each ideograph common in that writing (simplified Chinese for GBK and GB18030,
// traditional for Big5, Japanese for Shift_JIS, any of them otherwise; see CommonCjk.h), 1
// for each kana in Japanese, less 1 for each half-width katakana and 2 for each character
// real text does not hold (U+FFFD, private use, controls other than tab and line ends).
int commonCjkScore(std::u16string_view text, int codePage);

struct CodePageGuess {
    int codePage = 0;
    std::u16string text;
    int score = 0;
};
// Of `candidates`, the code page whose lossless decoding of `bytes` scores highest, the
// earlier one on a tie; nullopt when none decodes them losslessly to a score above 0.
// Names of two or three characters are decided correctly this way, where statistical
// detectors guess wrong.
std::optional<CodePageGuess> guessCjkCodePage(std::string_view bytes,
                                              std::initializer_list<int> candidates = {CpGbk, CpBig5, CpShiftJis});

}  // namespace qp::platform
