#include "platform/CodePage.h"

#include <cctype>
#include <cstdint>
#include <string>

#include "platform/CommonCjk.h"
#include "platform/FileSystem.h"

#include "platform/Win32.h"
#ifndef _WIN32
#include <cerrno>
#include <iconv.h>
#endif

namespace qp::platform {
namespace {

constexpr char16_t kReplacement = 0xFFFD;

// Windows-1252 at 0x80..0x9F; the five bytes it leaves undefined stand for the C1 controls
// of the same value, as Windows itself decodes them.
constexpr char16_t kWestern80[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

bool isSingleByteTable(int codePage) { return codePage == CpLatin1 || codePage == CpWestern; }

Decoded decodeSingleByte(std::string_view bytes, int codePage)
{
    Decoded out;
    out.text.reserve(bytes.size());
    for (const char b : bytes) {
        const auto c = static_cast<unsigned char>(b);
        out.text.push_back(codePage == CpWestern && c >= 0x80 && c < 0xA0 ? kWestern80[c - 0x80] : char16_t(c));
    }
    return out;
}

Encoded encodeSingleByte(std::u16string_view text, int codePage)
{
    Encoded out;
    out.bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t c = text[i];
        int byte = c < 0x100 && (codePage == CpLatin1 || c < 0x80 || c >= 0xA0) ? int(c) : -1;
        for (int k = 0; byte < 0 && codePage == CpWestern && k < 32; ++k) {
            if (kWestern80[k] == c)
                byte = 0x80 + k;
        }
        if (byte < 0) {
            out.lossless = false;
            out.bytes.push_back('?');
            if (c >= 0xD800 && c < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000)
                ++i;  // one "?" for the whole character
            continue;
        }
        out.bytes.push_back(static_cast<char>(byte));
    }
    return out;
}

Decoded decodeUtf8(std::string_view bytes)
{
    if (auto strict = toUtf16(bytes))
        return {std::move(*strict), true};
    return {toUtf16Lossy(bytes), false};
}

Encoded encodeUtf8(std::u16string_view text)
{
    Encoded out{toUtf8(text), true};
    for (std::size_t i = 0; i < text.size() && out.lossless; ++i) {
        const char16_t c = text[i];
        if (c >= 0xD800 && c < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000)
            ++i;
        else if (c >= 0xD800 && c < 0xE000)
            out.lossless = false;
    }
    return out;
}

#ifdef _WIN32

bool systemSupports(int codePage) { return IsValidCodePage(static_cast<UINT>(codePage)) != 0; }

Decoded systemDecode(std::string_view bytes, int codePage)
{
    Decoded out;
    if (bytes.empty())
        return out;
    const int size = static_cast<int>(bytes.size());
    DWORD flags = MB_ERR_INVALID_CHARS;
    int length = MultiByteToWideChar(static_cast<UINT>(codePage), flags, bytes.data(), size, nullptr, 0);
    if (length == 0) {
        // Invalid bytes: decode again letting Windows put its replacement in.
        out.lossless = false;
        flags = 0;
        length = MultiByteToWideChar(static_cast<UINT>(codePage), flags, bytes.data(), size, nullptr, 0);
    }
    out.text.resize(static_cast<std::size_t>(length));
    if (length > 0)
        MultiByteToWideChar(static_cast<UINT>(codePage), flags, bytes.data(), size,
                            reinterpret_cast<wchar_t*>(out.text.data()), length);
    return out;
}

// Character by character, so that a character the code page lacks is one "?" even when it
// is a surrogate pair (Windows writes one for each half).
std::string encodeEachCharacter(std::u16string_view text, int codePage)
{
    std::string bytes;
    char piece[8];
    for (std::size_t i = 0; i < text.size();) {
        const bool pair = text[i] >= 0xD800 && text[i] < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00
                          && text[i + 1] < 0xE000;
        const int units = pair ? 2 : 1;
        BOOL usedDefault = FALSE;
        const int length = WideCharToMultiByte(static_cast<UINT>(codePage), WC_NO_BEST_FIT_CHARS,
                                               reinterpret_cast<const wchar_t*>(text.data() + i), units, piece,
                                               sizeof piece, nullptr, &usedDefault);
        if (usedDefault || length <= 0)
            bytes.push_back('?');
        else
            bytes.append(piece, static_cast<std::size_t>(length));
        i += static_cast<std::size_t>(units);
    }
    return bytes;
}

Encoded systemEncode(std::u16string_view text, int codePage)
{
    Encoded out;
    if (text.empty())
        return out;
    const auto* wide = reinterpret_cast<const wchar_t*>(text.data());
    const int size = static_cast<int>(text.size());
    // GB18030 holds every character; Windows accepts no best-fit flag or default
    // character for it, only the check for unpaired surrogates.
    const bool everything = codePage == CpGb18030;
    const DWORD flags = everything ? WC_ERR_INVALID_CHARS : WC_NO_BEST_FIT_CHARS;
    BOOL usedDefault = FALSE;
    BOOL* used = everything ? nullptr : &usedDefault;
    int length = WideCharToMultiByte(static_cast<UINT>(codePage), flags, wide, size, nullptr, 0, nullptr, used);
    if (length == 0 && everything) {
        out.lossless = false;
        length = WideCharToMultiByte(static_cast<UINT>(codePage), 0, wide, size, nullptr, 0, nullptr, nullptr);
        out.bytes.resize(static_cast<std::size_t>(length));
        WideCharToMultiByte(static_cast<UINT>(codePage), 0, wide, size, out.bytes.data(), length, nullptr, nullptr);
        return out;
    }
    out.bytes.resize(static_cast<std::size_t>(length));
    if (length > 0)
        WideCharToMultiByte(static_cast<UINT>(codePage), flags, wide, size, out.bytes.data(), length, nullptr, used);
    out.lossless = !usedDefault;
    if (!out.lossless)
        out.bytes = encodeEachCharacter(text, codePage);
    return out;
}

#else

// iconv's name for a Windows code page.
std::string iconvName(int codePage)
{
    return codePage == CpGb18030 ? std::string("GB18030") : "CP" + std::to_string(codePage);
}

class Converter {
public:
    Converter(const std::string& to, const std::string& from) : m_cd(iconv_open(to.c_str(), from.c_str())) {}
    ~Converter()
    {
        if (ok())
            iconv_close(m_cd);
    }
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    bool ok() const { return m_cd != reinterpret_cast<iconv_t>(-1); }

    // Converts all of `in`, handing the output to `put` piece by piece; `onError` is called
    // with the input left where a sequence cannot be converted and returns how many input
    // bytes to skip.
    template <typename OnError, typename Put>
    void run(std::string_view in, OnError onError, Put put)
    {
        char* src = const_cast<char*>(in.data());
        std::size_t left = in.size();
        char buffer[4096];
        while (left > 0) {
            char* dst = buffer;
            std::size_t room = sizeof buffer;
            const std::size_t rc = iconv(m_cd, &src, &left, &dst, &room);
            put(std::string_view(buffer, static_cast<std::size_t>(dst - buffer)));
            if (rc != static_cast<std::size_t>(-1))
                continue;
            if (errno == E2BIG)
                continue;
            const std::size_t skip = std::min(left, onError(std::string_view(src, left)));
            src += skip;
            left -= skip;
            iconv(m_cd, nullptr, nullptr, nullptr, nullptr);
        }
        char* dst = buffer;
        std::size_t room = sizeof buffer;
        iconv(m_cd, nullptr, nullptr, &dst, &room);
        put(std::string_view(buffer, static_cast<std::size_t>(dst - buffer)));
    }

private:
    iconv_t m_cd;
};

bool systemSupports(int codePage) { return Converter("UTF-16LE", iconvName(codePage)).ok(); }

Decoded systemDecode(std::string_view bytes, int codePage)
{
    Decoded out;
    Converter converter("UTF-16LE", iconvName(codePage));
    if (!converter.ok()) {
        out.text.assign(bytes.size(), kReplacement);
        out.lossless = bytes.empty();
        return out;
    }
    std::string utf16;
    converter.run(
        bytes,
        [&](std::string_view) {
            out.lossless = false;
            utf16.append("\xFD\xFF", 2);  // U+FFFD, little-endian
            return std::size_t(1);
        },
        [&](std::string_view piece) { utf16.append(piece); });
    out.text.reserve(utf16.size() / 2);
    for (std::size_t i = 0; i + 1 < utf16.size(); i += 2)
        out.text.push_back(char16_t(static_cast<unsigned char>(utf16[i]) | static_cast<unsigned char>(utf16[i + 1]) << 8));
    return out;
}

Encoded systemEncode(std::u16string_view text, int codePage)
{
    Encoded out;
    Converter converter(iconvName(codePage), "UTF-16LE");
    if (!converter.ok()) {
        out.bytes.assign(text.size(), '?');
        out.lossless = text.empty();
        return out;
    }
    std::string utf16;
    utf16.reserve(text.size() * 2);
    for (const char16_t c : text) {
        utf16.push_back(static_cast<char>(c & 0xFF));
        utf16.push_back(static_cast<char>(c >> 8));
    }
    converter.run(
        utf16,
        [&](std::string_view rest) {
            out.lossless = false;
            out.bytes.push_back('?');
            // A whole surrogate pair is one character.
            const auto unit = [&](std::size_t at) {
                return char16_t(static_cast<unsigned char>(rest[at]) | static_cast<unsigned char>(rest[at + 1]) << 8);
            };
            if (rest.size() >= 4 && unit(0) >= 0xD800 && unit(0) < 0xDC00 && unit(2) >= 0xDC00 && unit(2) < 0xE000)
                return std::size_t(4);
            return std::size_t(2);
        },
        [&](std::string_view piece) { out.bytes.append(piece); });
    return out;
}

#endif

std::string normalisedName(std::string_view name)
{
    std::string out;
    for (const char c : name) {
        if (c == '-' || c == '_' || c == ' ')
            continue;
        out.push_back(static_cast<char>(std::tolower(static_cast<unsigned char>(c))));
    }
    return out;
}

int numberAfter(std::string_view text, std::string_view prefix)
{
    if (text.substr(0, prefix.size()) != prefix || text.size() == prefix.size() || text.size() > prefix.size() + 5)
        return 0;
    int number = 0;
    for (const char c : text.substr(prefix.size())) {
        if (c < '0' || c > '9')
            return 0;
        number = number * 10 + (c - '0');
    }
    return number;
}

}  // namespace

int codePageByName(std::string_view name)
{
    static const struct {
        const char* name;
        int codePage;
    } kNames[] = {
        {"gbk", CpGbk},          {"gb2312", CpGbk},           {"big5", CpBig5},         {"shiftjis", CpShiftJis},
        {"sjis", CpShiftJis},    {"windows31j", CpShiftJis},  {"latin1", CpLatin1},     {"iso88591", CpLatin1},
        {"utf8", CpUtf8},        {"gb18030", CpGb18030},      {"euckr", CpKorean},      {"uhc", CpKorean},
    };
    const std::string key = normalisedName(name);
    for (const auto& entry : kNames) {
        if (key == entry.name)
            return entry.codePage;
    }
    for (const std::string_view prefix : {"", "cp", "windows", "ms"}) {
        if (const int number = numberAfter(key, prefix))
            return number;
    }
    return 0;
}

bool codePageSupported(int codePage)
{
    if (codePage == CpUtf8 || isSingleByteTable(codePage))
        return true;
    return codePage > 0 && systemSupports(codePage);
}

Decoded decodeCodePage(std::string_view bytes, int codePage)
{
    if (codePage == CpUtf8)
        return decodeUtf8(bytes);
    if (isSingleByteTable(codePage))
        return decodeSingleByte(bytes, codePage);
    if (codePage <= 0)
        return {std::u16string(bytes.size(), kReplacement), bytes.empty()};
    return systemDecode(bytes, codePage);
}

Encoded encodeCodePage(std::u16string_view text, int codePage)
{
    if (codePage == CpUtf8)
        return encodeUtf8(text);
    if (isSingleByteTable(codePage))
        return encodeSingleByte(text, codePage);
    if (codePage <= 0)
        return {std::string(text.size(), '?'), text.empty()};
    return systemEncode(text, codePage);
}

int commonCjkScore(std::u16string_view text, int codePage)
{
    const bool japanese = codePage == CpShiftJis;
    auto common = [&](char16_t c) {
        switch (codePage) {
        case CpGbk:
        case CpGb18030: return inCjkSet(kCommonSimplifiedBits, c);
        case CpBig5: return inCjkSet(kCommonTraditionalBits, c);
        case CpShiftJis: return inCjkSet(kCommonJapaneseBits, c);
        default:
            return inCjkSet(kCommonSimplifiedBits, c) || inCjkSet(kCommonTraditionalBits, c)
                   || inCjkSet(kCommonJapaneseBits, c);
        }
    };
    int score = 0;
    for (const char16_t c : text) {
        if (common(c))
            score += 2;
        else if (c >= 0x3041 && c <= 0x30FF)
            score += japanese ? 1 : 0;  // Chinese text quotes Japanese names too
        else if (c >= 0xFF61 && c <= 0xFF9F)
            score -= 1;
        else if (c == kReplacement || (c >= 0xE000 && c <= 0xF8FF) || (c < 0x20 && c != u'\t' && c != u'\n' && c != u'\r')
                 || (c >= 0x7F && c < 0xA0))
            score -= 2;
    }
    return score;
}

std::optional<CodePageGuess> guessCjkCodePage(std::string_view bytes, std::initializer_list<int> candidates)
{
    std::optional<CodePageGuess> best;
    for (const int codePage : candidates) {
        Decoded decoded = decodeCodePage(bytes, codePage);
        if (!decoded.lossless)
            continue;
        const int score = commonCjkScore(decoded.text, codePage);
        if (score > 0 && (!best || score > best->score))
            best = CodePageGuess{codePage, std::move(decoded.text), score};
    }
    return best;
}

}  // namespace qp::platform
