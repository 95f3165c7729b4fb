// The bytes a metadata reader sees: a file opened read-only through the platform layer, or
// bytes in memory. Readers never get a path, so that every path the system can hold works
// the same and no reader can open a file for writing.
#pragma once

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <memory>

#include "platform/FileSystem.h"

namespace qp::metadata {

class ByteSource {
public:
    virtual ~ByteSource() = default;
    virtual std::uint64_t size() const = 0;
    // Reads up to `count` bytes from `offset`: the number read (fewer only at the end), or
    // -1 when the read failed.
    virtual std::int64_t readAt(std::uint64_t offset, void* buffer, std::size_t count) const = 0;
    // A name for the libraries' messages; never opened.
    virtual QString name() const { return {}; }

    // Up to `count` bytes from `offset` (fewer at the end, none on a failed read).
    QByteArray bytesAt(std::uint64_t offset, std::size_t count) const;
};

class FileSource : public ByteSource {
public:
    // Opens the file for reading; isOpen() tells whether that worked.
    explicit FileSource(const QString& path);
    bool isOpen() const { return m_file.isOpen(); }
    std::uint64_t size() const override { return m_file.size(); }
    // Small reads are served from a window of the file read ahead, as the libraries read
    // headers a few bytes at a time.
    std::int64_t readAt(std::uint64_t offset, void* buffer, std::size_t count) const override;
    QString name() const override { return m_name; }

private:
    platform::ReadOnlyFile m_file;
    QString m_name;
    mutable QByteArray m_window;
    mutable std::uint64_t m_windowStart = 0;
};

class MemorySource : public ByteSource {
public:
    explicit MemorySource(QByteArray bytes, QString name = {}) : m_bytes(std::move(bytes)), m_name(std::move(name)) {}
    std::uint64_t size() const override { return std::uint64_t(m_bytes.size()); }
    std::int64_t readAt(std::uint64_t offset, void* buffer, std::size_t count) const override;
    QString name() const override { return m_name; }

private:
    QByteArray m_bytes;
    QString m_name;
};

}  // namespace qp::metadata
