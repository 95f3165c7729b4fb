// The few disk operations that renaming, snapshots and undo need, behind an interface so
// that tests can make them fail on purpose. The default implementation goes through
// src/platform; the faulty one wraps it and breaks chosen calls.
#pragma once

#include <QByteArray>
#include <QString>
#include <memory>
#include <optional>

#include "platform/FileSystem.h"

namespace qp {

class FileOperations {
public:
    virtual ~FileOperations() = default;

    // Renames an object inside its folder (ending with '/'); never replaces an existing
    // object and refuses a name with a separator. `isFolder`: the object is a folder.
    virtual platform::RenameResult renameInFolder(const QString& folder, const QString& fromName, const QString& toName,
                                                  bool isFolder) = 0;
    virtual std::optional<platform::FileInfo> stat(const QString& path) = 0;
    virtual bool setAttributes(const QString& path, std::uint32_t attributes) = 0;
    virtual bool createFolders(const QString& path) = 0;
    // The whole file through a temporary beside it, so that a reader sees old or new whole.
    virtual bool writeFileAtomically(const QString& path, const QByteArray& bytes, QString* error) = 0;
    // The same in pieces, for files too large to hold whole: one such file at a time.
    virtual bool beginPieces(const QString& path, QString* error) = 0;
    virtual bool writePiece(const QByteArray& bytes, QString* error) = 0;
    virtual bool endPieces(QString* error) = 0;
    virtual std::optional<QByteArray> readFile(const QString& path) = 0;
    virtual bool removeFile(const QString& path) = 0;
    // Appends to a file that stays open until closeAppend(); each call reaches the
    // operating system before it returns, so a killed process leaves every line written.
    virtual bool openAppend(const QString& path) = 0;
    virtual bool append(const QByteArray& bytes) = 0;
    // What was appended reaches the disk itself (survives a power cut).
    virtual bool syncAppend() = 0;
    virtual void closeAppend() = 0;

    // True when a rename that reports success has certainly happened and has kept the
    // attribute word, so that neither needs looking at afterwards (Linux: renameat2 and
    // the mode bits). False where the system's rename is known to claim more than it did.
    virtual bool renameIsExact() const = 0;

    bool exists(const QString& path) { return stat(path).has_value(); }
    bool isFolder(const QString& path)
    {
        const auto info = stat(path);
        return info && info->isFolder;
    }
};

// The real disk.
class DiskOperations : public FileOperations {
public:
    DiskOperations();
    ~DiskOperations() override;

    platform::RenameResult renameInFolder(const QString& folder, const QString& fromName, const QString& toName,
                                          bool isFolder) override;
    std::optional<platform::FileInfo> stat(const QString& path) override;
    bool setAttributes(const QString& path, std::uint32_t attributes) override;
    bool createFolders(const QString& path) override;
    bool writeFileAtomically(const QString& path, const QByteArray& bytes, QString* error) override;
    bool beginPieces(const QString& path, QString* error) override;
    bool writePiece(const QByteArray& bytes, QString* error) override;
    bool endPieces(QString* error) override;
    std::optional<QByteArray> readFile(const QString& path) override;
    bool removeFile(const QString& path) override;
    bool openAppend(const QString& path) override;
    bool append(const QByteArray& bytes) override;
    bool syncAppend() override;
    void closeAppend() override;
    bool renameIsExact() const override;

private:
    struct AppendFile;
    std::unique_ptr<AppendFile> m_append;
    platform::FolderRenamer m_renamer;
    platform::AtomicFile m_pieces;
};

// Thrown by FaultyOperations to stand for the process being killed at that instant.
struct SimulatedCrash {};

// Passes everything to another implementation, except the renames it is told to break.
// Counting starts at 1 and covers every rename asked for.
class FaultyOperations : public FileOperations {
public:
    explicit FaultyOperations(FileOperations& inner) : m_inner(inner) {}

    int failRename = 0;          // the k-th rename fails and changes nothing
    int failTemporaryRename = 0; // the k-th rename to a ",FRP," name fails
    int pretendRename = 0;       // the k-th rename reports success and changes nothing
    int crashAtRename = 0;       // before the k-th rename, SimulatedCrash is thrown
    int renames = 0;             // renames asked for so far
    int temporaryRenames = 0;

    platform::RenameResult renameInFolder(const QString& folder, const QString& fromName, const QString& toName,
                                          bool isFolder) override;
    std::optional<platform::FileInfo> stat(const QString& path) override { return m_inner.stat(path); }
    bool setAttributes(const QString& path, std::uint32_t attributes) override
    {
        return m_inner.setAttributes(path, attributes);
    }
    bool createFolders(const QString& path) override { return m_inner.createFolders(path); }
    bool writeFileAtomically(const QString& path, const QByteArray& bytes, QString* error) override
    {
        return m_inner.writeFileAtomically(path, bytes, error);
    }
    bool beginPieces(const QString& path, QString* error) override { return m_inner.beginPieces(path, error); }
    bool writePiece(const QByteArray& bytes, QString* error) override { return m_inner.writePiece(bytes, error); }
    bool endPieces(QString* error) override { return m_inner.endPieces(error); }
    std::optional<QByteArray> readFile(const QString& path) override { return m_inner.readFile(path); }
    bool removeFile(const QString& path) override { return m_inner.removeFile(path); }
    bool openAppend(const QString& path) override { return m_inner.openAppend(path); }
    bool append(const QByteArray& bytes) override { return m_inner.append(bytes); }
    bool syncAppend() override { return m_inner.syncAppend(); }
    void closeAppend() override { m_inner.closeAppend(); }
    // It may claim a rename it did not make.
    bool renameIsExact() const override { return false; }

private:
    FileOperations& m_inner;
};

}  // namespace qp
