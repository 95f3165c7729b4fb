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

std::int64_t MemorySource::readAt(std::uint64_t offset, void* buffer, std::size_t count) const
{
    if (offset >= size())
        return 0;
    const std::size_t n = std::size_t(std::min<std::uint64_t>(count, size() - offset));
    std::memcpy(buffer, m_bytes.constData() + offset, n);
    return std::int64_t(n);
}

}  // namespace qp::metadata
