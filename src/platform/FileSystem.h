// The one layer that touches the disk. Plain C++20 over POSIX and Win32, no Qt:
// it cross-builds with MinGW so that its Windows behaviour can be tested under Wine.
// Paths are UTF-16 with '/' as separator (Win32 accepts '/' as well; the Windows side
// converts where an API insists on '\').
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace qp::platform {

using Path = std::u16string;
using PathView = std::u16string_view;

// The Windows attribute bits; on Linux the same word is synthesised (see attributesOf).
enum Attribute : std::uint32_t {
    AttrReadOnly = 0x01,
    AttrHidden = 0x02,
    AttrSystem = 0x04,
    AttrDirectory = 0x10,
    AttrArchive = 0x20,
};

// Nanoseconds since 1970-01-01 UTC.
using FileTime = std::int64_t;

struct FileInfo {
    bool isFolder = false;
    bool isSymlink = false;   // the entry itself is a link (its target decides isFolder)
    std::uint64_t size = 0;   // bytes; 0 for folders
    FileTime modified = 0;
    FileTime created = 0;     // birth time where the file system keeps one, else status-change time
    FileTime accessed = 0;
    std::uint32_t attributes = 0;  // Attribute bits
};

// Stat one path; nullopt when nothing is there (or it cannot be read).
std::optional<FileInfo> stat(PathView path);
bool exists(PathView path);
bool isFile(PathView path);
bool isFolder(PathView path);

// "<DIR>" for a folder, then A, R, H, S in that order for the bits that are set.
std::u16string attributeLetters(std::uint32_t attributes);

// Sets read-only, hidden, system and archive as far as the platform has them.
// Linux: read-only clears every write bit (and clearing it gives the owner write
// permission back); hidden, system and archive cannot be set and make the call fail
// when they differ from what the file already has.
bool setAttributes(PathView path, std::uint32_t attributes);

enum class RenameStatus {
    Ok,
    TargetExists,   // something already has the target name; nothing was changed
    SourceMissing,
    AccessDenied,
    NameTooLong,
    InvalidName,
    NotSameDevice,
    Other,
};

struct RenameResult {
    RenameStatus status = RenameStatus::Other;
    int systemError = 0;        // errno or GetLastError()
    std::string systemMessage;  // the OS's own text, UTF-8
    bool ok() const { return status == RenameStatus::Ok; }
};

// Renames a file or folder and never replaces an existing object. A rename that only
// changes letter case of the same object succeeds on case-insensitive file systems.
RenameResult renameNoReplace(PathView from, PathView to);

// What a name may hold. Windows rules: no control characters and none of * / : < > ? \ |;
// elsewhere only '/' and NUL are refused by the file system. Windows always applies its
// rules; elsewhere a setting may ask for them, so that names also work on Windows.
bool windowsNamesAlways();
bool isForbiddenInName(char16_t c, bool windowsRules);
// A name whose part before its first dot, trailing blanks ignored, is a Windows device
// name (CON, PRN, AUX, NUL, COM1 to COM9, LPT1 to LPT9) in any letter case: "con.txt" and
// "Lpt3.tar.gz" name the device, not a file.
bool isReservedDeviceName(PathView name);
// Whether a name can stand for an object inside a folder: not empty, not "." or "..", and
// without a path separator ('/' everywhere, '\' on Windows too).
bool isPlainName(PathView name);

// Renames objects inside their folder, so that nothing ever leaves it: names that are not
// plain are refused. Linux renames through a descriptor of the folder, kept open while the
// renames stay in it, so the kernel does not resolve the whole path for every object.
// Never replaces an existing object (as renameNoReplace).
class FolderRenamer {
public:
    FolderRenamer() = default;
    ~FolderRenamer() { release(); }
    FolderRenamer(const FolderRenamer&) = delete;
    FolderRenamer& operator=(const FolderRenamer&) = delete;

    // `folder` ends with '/'.
    RenameResult rename(PathView folder, PathView fromName, PathView toName);
    // Closes the kept folder. Call it after renaming a folder: a descriptor follows its
    // folder to the new name, while the old path may name something else from now on.
    void release();

private:
    static constexpr std::intptr_t kClosed = -1;
    Path m_folder;
    std::intptr_t m_handle = kClosed;
    std::string m_from, m_to;  // the names as the kernel takes them, kept for their capacity
};

// Creates the folder and every missing parent. True when the folder exists afterwards.
bool createFolders(PathView path);

// The drive that holds the operating system: "C:/" on Windows, "/" elsewhere.
Path systemDrive();

// The key under which paths are compared: case-folded where the file system ignores
// case (Windows, macOS), the path itself on Linux.
Path pathKey(PathView path);
bool pathKeysIgnoreCase();

struct DirEntry {
    PathView folder;  // with trailing '/'
    PathView name;    // the entry's own name
    FileInfo info;
};

enum class WalkProblem {
    Unreadable,      // a folder could not be opened or read (vanished, no permission)
    BadNameEncoding, // a name that is not valid UTF-8 (Linux); it is skipped, never guessed
};

struct WalkEvents {
    // Called for every entry below the root (never "." or ".."), hidden ones included.
    // Return false to stop the walk.
    std::function<bool(const DirEntry&)> entry;
    // Called for a folder or name the walk had to skip; `what` is the folder path or,
    // for a bad name, the folder plus the name with undecodable bytes shown as U+FFFD.
    std::function<void(WalkProblem, PathView what)> problem;
    // Optional: called before the entries of each folder, with their number, so that the
    // receiver can make room for them at once.
    std::function<void(std::size_t entries)> folderRead;
};

// Lists `root` (a folder, with or without trailing '/'): only its children, or with
// `recursive` everything below it, depth first, a folder's entry before its contents.
// Symbolic links to folders are listed but never descended into, so a loop cannot hang.
// Returns false when the walk was stopped by the callback.
bool walk(PathView root, bool recursive, const WalkEvents& events);

enum class ReadStatus { Ok, Missing, Unreadable, TooLarge };
struct ReadResult {
    ReadStatus status = ReadStatus::Unreadable;
    std::string bytes;
    std::string systemMessage;  // UTF-8, empty when status is Ok
};
// Reads a whole file; files larger than maxBytes are not read (TooLarge).
ReadResult readFile(PathView path, std::uint64_t maxBytes);

// Reads a file from start to end in pieces of at most `chunkBytes` and hands each piece to
// `each` (which may return false to stop early), without holding the whole file in memory:
// the way to hash files of any size. The OS is told the file is read sequentially. False
// when the file cannot be opened (missing, no permission) or a read fails;
// stopping early through `each` is not a failure. Only regular files are read: a folder,
// device or named pipe gives false at once (never waits for a writer).
bool readChunks(PathView path, std::size_t chunkBytes, const std::function<bool(std::string_view)>& each);

// A file opened for reading only, the way the readers of file metadata see a file: through
// offsets into its bytes, never by its path (several of their libraries cannot open every
// path Windows can hold). Other programs may read, write, rename or delete it meanwhile.
class ReadOnlyFile {
public:
    ReadOnlyFile() = default;
    ~ReadOnlyFile() { close(); }
    ReadOnlyFile(const ReadOnlyFile&) = delete;
    ReadOnlyFile& operator=(const ReadOnlyFile&) = delete;

    // Regular files only: a folder, device or named pipe, like a missing or unreadable
    // file, gives false and leaves nothing open (opening a pipe never waits for a writer).
    bool open(PathView path);
    void close();
    bool isOpen() const { return m_handle != kClosed; }
    // The size when it was opened.
    std::uint64_t size() const { return m_size; }
    // Reads up to `count` bytes from `offset`: the number read, which is less than `count`
    // only at the end of the file (0 at or past it), or -1 when the read failed.
    std::int64_t readAt(std::uint64_t offset, void* buffer, std::size_t count) const;

private:
    static constexpr std::intptr_t kClosed = -1;
    std::intptr_t m_handle = kClosed;  // a descriptor or a HANDLE
    std::uint64_t m_size = 0;
};

// Writes `bytes` to a temporary file beside `path`, flushes it to disk and moves it over
// `path`, so that readers see either the old or the new file whole. This is for the
// program's own state files (settings, snapshots, command files), never for a rename.
bool writeFileAtomically(PathView path, std::string_view bytes, std::string* error);

// The same in pieces, for a file too large to hold whole: open() makes the temporary file,
// append() adds to it, commit() flushes it to disk and moves it over the target. Destroyed
// or abandoned before commit(), it leaves the target as it was and no temporary behind.
class AtomicFile {
public:
    AtomicFile() = default;
    ~AtomicFile() { abandon(); }
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    bool open(PathView path, std::string* error);
    bool append(std::string_view bytes, std::string* error);
    bool commit(std::string* error);
    void abandon();

private:
    static constexpr std::intptr_t kClosed = -1;
    std::intptr_t m_handle = kClosed;
    Path m_target, m_temp;
};

// Deletes a file (never a folder). True when it is gone afterwards.
bool removeFile(PathView path);

// Lets whoever may read a file also run it (desktop menus on Linux run only files marked
// so); true where files need no such mark.
bool setExecutable(PathView path);

// A file opened for appending, as a journal is written: every append is handed to the OS
// at once, so what was appended survives the program being killed.
class AppendFile {
public:
    AppendFile() = default;
    ~AppendFile() { close(); }
    AppendFile(const AppendFile&) = delete;
    AppendFile& operator=(const AppendFile&) = delete;

    bool open(PathView path);  // creates the file when missing
    bool append(std::string_view bytes);
    // Forces what was appended onto the disk (it survives a power cut, not only a kill).
    bool sync();
    void close();
    bool isOpen() const { return m_handle != kClosed; }

private:
    static constexpr std::intptr_t kClosed = -1;
    std::intptr_t m_handle = kClosed;  // a descriptor or a HANDLE
};

// What a folder listing says of an entry without reading its metadata. Unknown: a link, or
// a file system that does not say; stat() tells.
enum class EntryKind { File, Folder, Unknown };

// Calls `each` with the name and kind of every entry of a folder (never "." or ".."),
// reading no metadata: the quick way to learn which names a large folder holds. False when
// the folder cannot be read; names that are not valid UTF-8 are passed over.
bool listNames(PathView folder, const std::function<void(PathView name, EntryKind kind)>& each);

// The running executable's full path.
Path executablePath();

// UTF-8 <-> UTF-16 helpers for the platform's own byte paths. toUtf16 returns nullopt for
// bytes that are not valid UTF-8; toUtf16Lossy replaces them with U+FFFD.
std::optional<Path> toUtf16(std::string_view utf8);
Path toUtf16Lossy(std::string_view utf8);
std::string toUtf8(PathView utf16);
void appendUtf8(PathView utf16, std::string& out);
// For paths handed to the OS: nullopt when the text holds a NUL or an unpaired surrogate.
// Such a path names nothing; a lossy form could name a different, existing object.
std::optional<std::string> toUtf8Path(PathView utf16);
// The same into a buffer the caller keeps (no allocation once it is large enough); false
// where toUtf8Path gives nullopt.
bool toUtf8Path(PathView utf16, std::string& out);
// Appends the strict decoding of `utf8` to `out` (for loops that reuse one buffer). On
// invalid input `out` is left as it was and the result is false.
bool appendUtf16(std::string_view utf8, Path& out);

}  // namespace qp::platform
