#include "metadata/ByteSource.h"

#include <algorithm>
#include <cstring>


namespace qp::metadata {

QByteArray ByteSource::bytesAt(std::uint64_t offset, std::size_t count) const
{
    QByteArray bytes(qsizetype(std::min<std::uint64_t>(count, size() > offset ? size() - offset : 0)), Qt::Uninitialized);
    const std::int64_t got = bytes.isEmpty() ? 0 : readAt(offset, bytes.data(), std::size_t(bytes.size()));
    bytes.truncate(got < 0 ? 0 : qsizetype(got));
    return bytes;
}

FileSource::FileSource(const QString& path) : m_name(path) { m_file.open(path.toStdU16String()); }

namespace {
constexpr std::size_t kWindow = 64 * 1024;
}

std::int64_t FileSource::readAt(std::uint64_t offset, void* buffer, std::size_t count) const
{
    if (count >= kWindow / 4)
        return m_file.readAt(offset, buffer, count);
    const std::uint64_t windowEnd = m_windowStart + std::uint64_t(m_window.size());
    if (offset < m_windowStart || offset + count > windowEnd) {
        m_window.resize(qsizetype(kWindow));
        const std::int64_t got = m_file.readAt(offset, m_window.data(), kWindow);
        if (got < 0)
            return -1;
        m_window.resize(qsizetype(got));
        m_windowStart = offset;
    }
    // What the window has of the request: all of it, or what the file has left.
    const std::uint64_t end = m_windowStart + std::uint64_t(m_window.size());
    const std::size_t n = offset < end ? std::size_t(std::min<std::uint64_t>(count, end - offset)) : 0;
    std::memcpy(buffer, m_window.constData() + (offset - m_windowStart), n);
    return std::int64_t(n);
}

std::int64_t MemorySource::readAt(std::uint64_t offset, void* buffer, std::size_t count) const
{
    if (offset >= size())
        return 0;
    const std::size_t n = std::size_t(std::min<std::uint64_t>(count, size() - offset));
    std::memcpy(buffer, m_bytes.constData() + offset, n);
    return std::int64_t(n);
}

}  // namespace qp::metadata
