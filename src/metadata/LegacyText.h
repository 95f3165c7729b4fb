// Text that old tags keep in a code page nobody wrote down: ID3v1, ID3v2 frames marked as
// Latin-1, RIFF INFO chunks, EXIF text, IPTC without a character-set record. Chinese
// programs wrote GBK or Big5 there, Japanese ones Shift_JIS; the setting "非 Unicode 标签编码"
// says which, or asks for the automatic choice.
#pragma once

#include <QByteArrayView>
#include <QString>

namespace qp::metadata {

enum class LegacyEncoding {
    Automatic,  // UTF-8 when the bytes are valid UTF-8, else the decoding with the most common
                // CJK characters (GBK, Big5, Shift_JIS), else Windows-1252
    Gbk,
    Big5,
    ShiftJis,
    Latin1,     // Windows-1252, the superset of Latin-1 that Western programs wrote
};
inline constexpr int kLegacyEncodingCount = 5;

// From the stored setting (0 … 4); anything else is Automatic.
LegacyEncoding legacyEncodingFromSetting(qint64 stored);

QString decodeLegacy(QByteArrayView bytes, LegacyEncoding encoding);

// Text that a library already decoded as Latin-1 although its bytes were in a legacy code
// page (every character below U+0100, some above U+007F): decoded again from those bytes
// when that gives CJK text (automatic) or always (an explicit code page); otherwise as it was.
QString repairLatin1(const QString& text, LegacyEncoding encoding);

}  // namespace qp::metadata
