#include "metadata/ContentSniffer.h"

#include <magic.h>

#include <cstring>

#include "metadata/ByteSource.h"

namespace qp::metadata {

namespace {

// What libmagic needs to tell the media and image formats apart; MP3s with large ID3 tags
// and ISO media files say what they are within it.
constexpr std::size_t kHeadBytes = 16 * 1024;

// The checks that only ever find text, archives or programs: skipped, they cost the most.
constexpr int kFlags = MAGIC_MIME_TYPE | MAGIC_NO_CHECK_COMPRESS | MAGIC_NO_CHECK_TAR | MAGIC_NO_CHECK_ELF
                       | MAGIC_NO_CHECK_TEXT | MAGIC_NO_CHECK_CDF | MAGIC_NO_CHECK_ENCODING | MAGIC_NO_CHECK_TOKENS
#ifdef MAGIC_NO_CHECK_CSV
                       | MAGIC_NO_CHECK_CSV
#endif
#ifdef MAGIC_NO_CHECK_JSON
                       | MAGIC_NO_CHECK_JSON
#endif
    ;

bool at(const QByteArray& head, int offset, const char* bytes, int length)
{
    return head.size() >= offset + length && std::memcmp(head.constData() + offset, bytes, size_t(length)) == 0;
}

// The brands of ISO media files that are not video.
const char* isoMediaType(const QByteArray& head)
{
    static const std::pair<const char*, const char*> brands[] = {
        {"M4A ", "audio/mp4"}, {"M4B ", "audio/mp4"},   {"heic", "image/heic"}, {"heix", "image/heic"},
        {"mif1", "image/heif"}, {"msf1", "image/heif"}, {"avif", "image/avif"}, {"crx ", "image/x-canon-cr3"},
    };
    for (const auto& [brand, mime] : brands) {
        if (at(head, 8, brand, 4))
            return mime;
    }
    return "video/mp4";
}

// The formats photo and music folders are full of, told from their first bytes without
// asking libmagic, which costs a tenth of a millisecond a file; null for every other
// content, which libmagic decides.
const char* commonType(const QByteArray& head)
{
    if (at(head, 0, "\xFF\xD8\xFF", 3))
        return "image/jpeg";
    if (at(head, 0, "\x89PNG\r\n\x1A\n", 8))
        return "image/png";
    if (at(head, 0, "II*\0", 4) || at(head, 0, "MM\0*", 4))
        return "image/tiff";  // and the raw formats built on TIFF
    if (at(head, 0, "RIFF", 4)) {
        if (at(head, 8, "WAVE", 4))
            return "audio/x-wav";
        if (at(head, 8, "WEBP", 4))
            return "image/webp";
        if (at(head, 8, "AVI ", 4))
            return "video/x-msvideo";
    }
    if (at(head, 0, "FORM", 4) && (at(head, 8, "AIFF", 4) || at(head, 8, "AIFC", 4)))
        return "audio/x-aiff";
    if (at(head, 0, "fLaC", 4))
        return "audio/flac";
    if (at(head, 0, "OggS", 4))
        return "audio/ogg";
    if (at(head, 4, "ftyp", 4))
        return isoMediaType(head);
    if (at(head, 0, "\x30\x26\xB2\x75\x8E\x66\xCF\x11", 8))
        return "video/x-ms-asf";
    if (at(head, 0, "\x1A\x45\xDF\xA3", 4))
        return "video/x-matroska";
    if (at(head, 0, "MAC ", 4))
        return "audio/x-ape";
    if (at(head, 0, "wvpk", 4))
        return "audio/x-wavpack";
    return nullptr;
}

// An MPEG audio frame header: the sync bits, a layer and a bitrate index that exist.
bool isMpegFrame(const QByteArray& head)
{
    if (head.size() < 3)
        return false;
    const auto b1 = static_cast<unsigned char>(head[0]);
    const auto b2 = static_cast<unsigned char>(head[1]);
    const auto b3 = static_cast<unsigned char>(head[2]);
    return b1 == 0xFF && (b2 & 0xE0) == 0xE0 && (b2 & 0x06) != 0 && (b3 & 0xF0) != 0xF0;
}

// Where the content starts after an ID3v2 tag, which can be megabytes long (a cover) and
// tells libmagic nothing about what follows; 0 when the bytes start with no such tag.
std::uint64_t afterId3v2(const QByteArray& head)
{
    if (head.size() < 10 || !head.startsWith("ID3"))
        return 0;
    std::uint64_t size = 0;
    for (int i = 6; i < 10; ++i) {
        const auto b = static_cast<unsigned char>(head[i]);
        if (b & 0x80)
            return 0;  // not synchsafe: no tag after all
        size = (size << 7) | b;
    }
    const bool footer = static_cast<unsigned char>(head[5]) & 0x10;
    return 10 + size + (footer ? 10 : 0);
}

}  // namespace

struct ContentSniffer::Impl {
    magic_t cookie = nullptr;
    bool loaded = false;
};

ContentSniffer::ContentSniffer() : m_impl(std::make_unique<Impl>()) {}

ContentSniffer::~ContentSniffer()
{
    if (m_impl->cookie)
        magic_close(m_impl->cookie);
}

ContentType ContentSniffer::sniff(const ByteSource& source)
{
    QByteArray head = source.bytesAt(0, kHeadBytes);
    if (head.isEmpty())
        return {};
    const std::uint64_t start = afterId3v2(head);
    if (start > 0 && start < source.size()) {
        head = source.bytesAt(start, kHeadBytes);
        if (isMpegFrame(head))
            return {QStringLiteral("audio/mpeg")};
    }
    if (const char* mime = commonType(head))
        return {QLatin1String(mime)};
    // Loaded at the first file that needs it: loading the database takes a while.
    if (!m_impl->loaded) {
        m_impl->loaded = true;
        m_impl->cookie = magic_open(kFlags);
        if (m_impl->cookie && magic_load(m_impl->cookie, nullptr) != 0) {
            magic_close(m_impl->cookie);
            m_impl->cookie = nullptr;
        }
    }
    const char* mime = m_impl->cookie ? magic_buffer(m_impl->cookie, head.constData(), size_t(head.size())) : nullptr;
    return {mime ? QString::fromLatin1(mime) : QString()};
}

}  // namespace qp::metadata
