#include "execution/FileOperations.h"

#include "core/PathText.h"

namespace qp {

struct DiskOperations::AppendFile {
    platform::AppendFile file;
};

DiskOperations::DiskOperations() = default;
DiskOperations::~DiskOperations() { closeAppend(); }

platform::RenameResult DiskOperations::renameInFolder(const QString& folder, const QString& fromName,
                                                      const QString& toName, bool isFolder)
{
    const platform::RenameResult result =
        m_renamer.rename(platformView(folder), platformView(fromName), platformView(toName));
    if (isFolder)
        m_renamer.release();  // the kept handle may be this folder or one below it
    return result;
}

std::optional<platform::FileInfo> DiskOperations::stat(const QString& path)
{
    return platform::stat(toPlatformPath(path));
}

bool DiskOperations::setAttributes(const QString& path, std::uint32_t attributes)
{
    return platform::setAttributes(toPlatformPath(path), attributes);
}

bool DiskOperations::createFolders(const QString& path) { return platform::createFolders(toPlatformPath(path)); }

bool DiskOperations::writeFileAtomically(const QString& path, const QByteArray& bytes, QString* error)
{
    std::string message;
    const bool ok = platform::writeFileAtomically(toPlatformPath(path),
                                                  std::string_view(bytes.constData(), size_t(bytes.size())), &message);
    if (!ok && error)
        *error = QString::fromStdString(message);
    return ok;
}

namespace {

bool reported(bool ok, const std::string& message, QString* error)
{
    if (!ok && error)
        *error = QString::fromStdString(message);
    return ok;
}

}  // namespace

bool DiskOperations::beginPieces(const QString& path, QString* error)
{
    std::string message;
    return reported(m_pieces.open(toPlatformPath(path), &message), message, error);
}

bool DiskOperations::writePiece(const QByteArray& bytes, QString* error)
{
    std::string message;
    return reported(m_pieces.append(std::string_view(bytes.constData(), size_t(bytes.size())), &message), message,
                    error);
}

bool DiskOperations::endPieces(QString* error)
{
    std::string message;
    return reported(m_pieces.commit(&message), message, error);
}

std::optional<QByteArray> DiskOperations::readFile(const QString& path)
{
    // A snapshot of a very large list is still far below this.
    const platform::ReadResult result = platform::readFile(toPlatformPath(path), std::uint64_t(1) << 32);
    if (result.status != platform::ReadStatus::Ok)
        return std::nullopt;
    return QByteArray(result.bytes.data(), qsizetype(result.bytes.size()));
}

bool DiskOperations::removeFile(const QString& path) { return platform::removeFile(toPlatformPath(path)); }

bool DiskOperations::openAppend(const QString& path)
{
    closeAppend();
    m_append = std::make_unique<AppendFile>();
    if (m_append->file.open(toPlatformPath(path)))
        return true;
    m_append.reset();
    return false;
}

bool DiskOperations::append(const QByteArray& bytes)
{
    return m_append && m_append->file.append(std::string_view(bytes.constData(), size_t(bytes.size())));
}

bool DiskOperations::syncAppend() { return m_append && m_append->file.sync(); }

void DiskOperations::closeAppend()
{
    if (m_append)
        m_append->file.close();
    m_append.reset();
}

bool DiskOperations::renameIsExact() const
{
#ifdef _WIN32
    return false;  // the attribute word is read back and restored, as the program always did
#else
    return true;
#endif
}

platform::RenameResult FaultyOperations::renameInFolder(const QString& folder, const QString& fromName,
                                                       const QString& toName, bool isFolder)
{
    ++renames;
    const bool toTemporary = toName.startsWith(QStringLiteral(",FRP,"));
    if (toTemporary)
        ++temporaryRenames;
    if (renames == crashAtRename)
        throw SimulatedCrash{};
    if (renames == failRename || (toTemporary && temporaryRenames == failTemporaryRename))
        return platform::RenameResult{platform::RenameStatus::Other, 5, "injected failure"};
    if (renames == pretendRename)
        return platform::RenameResult{platform::RenameStatus::Ok, 0, {}};
    return m_inner.renameInFolder(folder, fromName, toName, isFolder);
}

}  // namespace qp
