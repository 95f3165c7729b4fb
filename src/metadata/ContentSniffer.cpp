#include "metadata/ContentSniffer.h"

#include <magic.h>

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

}  // namespace

struct ContentSniffer::Impl {
    magic_t cookie = nullptr;
};

ContentSniffer::ContentSniffer() : m_impl(std::make_unique<Impl>())
{
    m_impl->cookie = magic_open(kFlags);
    if (m_impl->cookie && magic_load(m_impl->cookie, nullptr) != 0) {
        magic_close(m_impl->cookie);
        m_impl->cookie = nullptr;
    }
}

ContentSniffer::~ContentSniffer()
{
    if (m_impl->cookie)
        magic_close(m_impl->cookie);
}

ContentType ContentSniffer::sniff(const ByteSource& source)
{
    const QByteArray head = source.bytesAt(0, kHeadBytes);
    if (head.isEmpty() || !m_impl->cookie)
        return {};
    const char* mime = magic_buffer(m_impl->cookie, head.constData(), size_t(head.size()));
    return {mime ? QString::fromLatin1(mime) : QString()};
}

}  // namespace qp::metadata
