// The OS-independent part of the platform layer: UTF-8 <-> UTF-16 and attribute letters.
#include "platform/FileSystem.h"

namespace qp::platform {
namespace {

constexpr char16_t kReplacement = 0xFFFD;

void appendCodePoint(char32_t cp, Path& out)
{
    if (cp < 0x10000) {
        out.push_back(static_cast<char16_t>(cp));
    } else {
        cp -= 0x10000;
        out.push_back(static_cast<char16_t>(0xD800 + (cp >> 10)));
        out.push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
    }
}

// Decodes well-formed UTF-8 only: the allowed second-byte ranges after E0, ED, F0 and F4
// exclude overlong forms, encoded surrogates and code points above U+10FFFF. In lossy mode
// every maximal ill-formed subsequence becomes one U+FFFD, so a truncated sequence does not
// swallow the valid byte that follows it.
bool decode(std::string_view in, Path& out, bool lossy)
{
    const std::size_t n = in.size();
    std::size_t i = 0;
    while (i < n) {
        const auto lead = static_cast<unsigned char>(in[i]);
        if (lead < 0x80) {
            out.push_back(lead);
            ++i;
            continue;
        }
        int follow = 0;
        char32_t cp = 0;
        unsigned char lo = 0x80;
        unsigned char hi = 0xBF;
        if (lead >= 0xC2 && lead <= 0xDF) {
            follow = 1;
            cp = lead & 0x1F;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            follow = 2;
            cp = lead & 0x0F;
            if (lead == 0xE0) lo = 0xA0;       // below: overlong
            else if (lead == 0xED) hi = 0x9F;  // above: surrogates
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            follow = 3;
            cp = lead & 0x07;
            if (lead == 0xF0) lo = 0x90;       // below: overlong
            else if (lead == 0xF4) hi = 0x8F;  // above: beyond U+10FFFF
        } else {
            if (!lossy) return false;
            out.push_back(kReplacement);
            ++i;
            continue;
        }
        std::size_t j = i + 1;
        bool complete = true;
        for (int k = 0; k < follow; ++k, ++j) {
            if (j >= n) {
                complete = false;
                break;
            }
            const auto c = static_cast<unsigned char>(in[j]);
            if (c < lo || c > hi) {
                complete = false;
                break;
            }
            cp = (cp << 6) | (c & 0x3F);
            lo = 0x80;
            hi = 0xBF;
        }
        if (!complete) {
            if (!lossy) return false;
            out.push_back(kReplacement);
            i = j;  // the offending byte starts the next attempt
            continue;
        }
        appendCodePoint(cp, out);
        i = j;
    }
    return true;
}

}  // namespace

bool appendUtf16(std::string_view utf8, Path& out)
{
    const std::size_t before = out.size();
    if (decode(utf8, out, false)) return true;
    out.resize(before);
    return false;
}

std::optional<Path> toUtf16(std::string_view utf8)
{
    Path out;
    out.reserve(utf8.size());
    if (!decode(utf8, out, false)) return std::nullopt;
    return out;
}

Path toUtf16Lossy(std::string_view utf8)
{
    Path out;
    out.reserve(utf8.size());
    decode(utf8, out, true);
    return out;
}

bool toUtf8Path(PathView utf16, std::string& out)
{
    // Most names are ASCII: copied straight, the rest checked and encoded below.
    const std::size_t n = utf16.size();
    out.resize(n);
    std::size_t ascii = 0;
    for (; ascii < n && utf16[ascii] < 0x80; ++ascii) {
        if (utf16[ascii] == 0)
            return false;
        out[ascii] = static_cast<char>(utf16[ascii]);
    }
    if (ascii == n)
        return true;
    for (std::size_t i = 0; i < n; ++i) {
        const char16_t c = utf16[i];
        if (c == 0 || (c >= 0xDC00 && c <= 0xDFFF))
            return false;
        if (c >= 0xD800 && c <= 0xDBFF) {
            if (i + 1 >= n || utf16[i + 1] < 0xDC00 || utf16[i + 1] > 0xDFFF)
                return false;
            ++i;
        }
    }
    out.clear();
    appendUtf8(utf16, out);
    return true;
}

std::optional<std::string> toUtf8Path(PathView utf16)
{
    std::string out;
    if (!toUtf8Path(utf16, out))
        return std::nullopt;
    return out;
}

std::string toUtf8(PathView utf16)
{
    std::string out;
    out.reserve(utf16.size());
    appendUtf8(utf16, out);
    return out;
}

void appendUtf8(PathView utf16, std::string& out)
{
    const std::size_t n = utf16.size();
    for (std::size_t i = 0; i < n; ++i) {
        char32_t cp = utf16[i];
        if (cp < 0x80) {
            out.push_back(static_cast<char>(cp));
            continue;
        }
        if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < n && utf16[i + 1] >= 0xDC00 && utf16[i + 1] <= 0xDFFF) {
            cp = 0x10000 + ((cp - 0xD800) << 10) + (utf16[i + 1] - 0xDC00);
            ++i;
        } else if (cp >= 0xD800 && cp <= 0xDFFF) {
            cp = kReplacement;  // an unpaired surrogate has no UTF-8 form
        }
        if (cp < 0x800) {
            out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
        } else if (cp < 0x10000) {
            out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
            out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        } else {
            out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
            out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        }
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
}

std::u16string attributeLetters(std::uint32_t attributes)
{
    std::u16string out;
    if (attributes & AttrDirectory) out += u"<DIR>";
    if (attributes & AttrArchive) out += u'A';
    if (attributes & AttrReadOnly) out += u'R';
    if (attributes & AttrHidden) out += u'H';
    if (attributes & AttrSystem) out += u'S';
    return out;
}

}  // namespace qp::platform
