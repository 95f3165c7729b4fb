#include "metadata/LegacyText.h"

#include "platform/CodePage.h"
#include "platform/FileSystem.h"

namespace qp::metadata {

namespace {

QString fromUtf16(const std::u16string& text)
{
    return QString(reinterpret_cast<const QChar*>(text.data()), qsizetype(text.size()));
}

bool isAscii(QByteArrayView bytes)
{
    for (const char c : bytes) {
        if (static_cast<unsigned char>(c) >= 0x80)
            return false;
    }
    return true;
}

int codePageOf(LegacyEncoding encoding)
{
    switch (encoding) {
    case LegacyEncoding::Gbk: return platform::CpGbk;
    case LegacyEncoding::Big5: return platform::CpBig5;
    case LegacyEncoding::ShiftJis: return platform::CpShiftJis;
    case LegacyEncoding::Latin1: return platform::CpWestern;
    case LegacyEncoding::Automatic: break;
    }
    return 0;
}

}  // namespace

LegacyEncoding legacyEncodingFromSetting(qint64 stored)
{
    return stored > 0 && stored < kLegacyEncodingCount ? LegacyEncoding(stored) : LegacyEncoding::Automatic;
}

QString decodeLegacy(QByteArrayView bytes, LegacyEncoding encoding)
{
    const std::string_view view(bytes.data(), size_t(bytes.size()));
    if (isAscii(bytes))
        return QString::fromLatin1(bytes.data(), bytes.size());
    if (encoding != LegacyEncoding::Automatic)
        return fromUtf16(platform::decodeCodePage(view, codePageOf(encoding)).text);
    if (auto utf8 = platform::toUtf16(view))
        return fromUtf16(*utf8);
    if (auto guess = platform::guessCjkCodePage(view))
        return fromUtf16(guess->text);
    return fromUtf16(platform::decodeCodePage(view, platform::CpWestern).text);
}

QString repairLatin1(const QString& text, LegacyEncoding encoding)
{
    bool high = false;
    for (const QChar c : text) {
        if (c.unicode() > 0xFF)
            return text;
        high = high || c.unicode() >= 0x80;
    }
    if (!high || encoding == LegacyEncoding::Latin1)
        return text;
    const QByteArray bytes = text.toLatin1();
    if (encoding != LegacyEncoding::Automatic)
        return decodeLegacy(bytes, encoding);
    const std::string_view view(bytes.constData(), size_t(bytes.size()));
    if (auto utf8 = platform::toUtf16(view))
        return fromUtf16(*utf8);
    if (auto guess = platform::guessCjkCodePage(view))
        return fromUtf16(guess->text);
    return text;
}

}  // namespace qp::metadata
