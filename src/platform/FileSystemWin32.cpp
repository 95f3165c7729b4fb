// The platform layer over the Win32 wide-character API. Paths are held with '/' and
// handed to Windows with '\', with the "\\?\" prefix once they reach the classic length
// limit so that long paths keep working.
#ifdef _WIN32

#include "platform/Win32.h"

#include "platform/FileSystem.h"
#include "platform/Win32Errors.h"

#include <algorithm>
#include <atomic>
#include <cwchar>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#ifndef IO_REPARSE_TAG_MOUNT_POINT
#define IO_REPARSE_TAG_MOUNT_POINT 0xA0000003L
#endif
#ifndef IO_REPARSE_TAG_SYMLINK
#define IO_REPARSE_TAG_SYMLINK 0xA000000CL
#endif

namespace qp::platform {
namespace {

// CreateDirectoryW stops at MAX_PATH - 12 characters, every other call at MAX_PATH - 1;
// prefixing from the lower bound on suits both.
constexpr std::size_t kPrefixFrom = MAX_PATH - 12;

const wchar_t* wide(const std::wstring& s) { return s.c_str(); }

bool isSeparator(wchar_t c) { return c == L'\\' || c == L'/'; }

// Win32's path rules strip dots and spaces from the end of every name ("x." opens "x"),
// but only on the way in: a name that has them (made through the prefix by another
// program) is listed with them. Such a name is reached only through the prefix.
bool hasNameWindowsWouldTrim(const std::wstring& path)
{
    std::size_t start = 0;
    for (std::size_t i = 0; i <= path.size(); ++i) {
        if (i < path.size() && !isSeparator(path[i])) continue;
        const std::wstring_view name(path.data() + start, i - start);
        if (!name.empty() && name != L"." && name != L".." && (name.back() == L'.' || name.back() == L' ')) return true;
        start = i + 1;
    }
    return false;
}

// Win32 spelling of a path: '\' separators and, when long or when a name would otherwise be
// trimmed, the extended-length prefix, so that the path names exactly the object spelled.
std::wstring toWin32(PathView path)
{
    // A NUL would cut the path short at the API and name a different object; "|" is a
    // name no Windows call accepts, so such a path fails as invalid everywhere.
    if (path.find(u'\0') != PathView::npos) return L"|";
    std::wstring out(path.begin(), path.end());
    for (wchar_t& c : out) {
        if (c == L'/') c = L'\\';
    }
    if (out.rfind(L"\\\\?\\", 0) == 0) return out;
    if (out.size() < kPrefixFrom && !hasNameWindowsWouldTrim(out)) return out;
    if (out.rfind(L"\\\\", 0) == 0) return L"\\\\?\\UNC\\" + out.substr(2);
    if (out.size() >= 3 && out[1] == L':' && out[2] == L'\\') return L"\\\\?\\" + out;
    return out;  // a relative path cannot take the prefix
}

Path fromWin32(const wchar_t* text, std::size_t length)
{
    Path out(text, text + length);
    if (out.rfind(u"\\\\?\\UNC\\", 0) == 0) out = u"\\\\" + out.substr(8);
    else if (out.rfind(u"\\\\?\\", 0) == 0) out.erase(0, 4);
    for (char16_t& c : out) {
        if (c == u'\\') c = u'/';
    }
    return out;
}

}  // namespace

std::string errorText(DWORD error)
{
    wchar_t* buffer = nullptr;
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM |
                                            FORMAT_MESSAGE_IGNORE_INSERTS,
                                        nullptr, error, 0, reinterpret_cast<wchar_t*>(&buffer), 0, nullptr);
    std::string text;
    if (length > 0 && buffer) {
        Path message(buffer, buffer + length);
        while (!message.empty() && (message.back() == u'\r' || message.back() == u'\n' || message.back() == u' '))
            message.pop_back();
        text = toUtf8(message);
    } else {
        text = "Error " + std::to_string(error);
    }
    if (buffer) LocalFree(buffer);
    return text;
}

namespace {

FileTime toFileTime(const FILETIME& t)
{
    // FILETIME counts 100 ns steps since 1601-01-01.
    constexpr std::int64_t kEpochDifference = 116444736000000000LL;
    const std::int64_t ticks = (static_cast<std::int64_t>(t.dwHighDateTime) << 32) | t.dwLowDateTime;
    return (ticks - kEpochDifference) * 100;
}

bool isLinkTag(DWORD attributes, DWORD tag)
{
    return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) &&
           (tag == IO_REPARSE_TAG_SYMLINK || tag == IO_REPARSE_TAG_MOUNT_POINT);
}

// The size of what a file link points at; the link's own size when the target is gone.
std::uint64_t targetSize(const std::wstring& path, std::uint64_t fallback)
{
    HANDLE h = CreateFileW(wide(path), FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                           nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (h == INVALID_HANDLE_VALUE) return fallback;
    LARGE_INTEGER size;
    const bool ok = GetFileSizeEx(h, &size) != 0;
    CloseHandle(h);
    return ok ? static_cast<std::uint64_t>(size.QuadPart) : fallback;
}

FileInfo makeInfo(DWORD attributes, const FILETIME& created, const FILETIME& accessed, const FILETIME& modified,
                  DWORD sizeHigh, DWORD sizeLow)
{
    FileInfo info;
    info.isFolder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    info.size = info.isFolder ? 0 : (static_cast<std::uint64_t>(sizeHigh) << 32) | sizeLow;
    info.created = toFileTime(created);
    info.accessed = toFileTime(accessed);
    info.modified = toFileTime(modified);
    info.attributes = attributes;  // the word as Windows keeps it
    return info;
}

DWORD reparseTag(const std::wstring& path)
{
    WIN32_FIND_DATAW data;
    HANDLE h = FindFirstFileExW(wide(path), FindExInfoBasic, &data, FindExSearchNameMatch, nullptr, 0);
    if (h == INVALID_HANDLE_VALUE) return 0;
    FindClose(h);
    return data.dwReserved0;
}

RenameStatus statusFor(DWORD error, PathView from)
{
    switch (error) {
    case ERROR_ALREADY_EXISTS:
    case ERROR_FILE_EXISTS:
        return RenameStatus::TargetExists;
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
        // Either the source is gone or a folder on the target's path is missing.
        return exists(from) ? RenameStatus::Other : RenameStatus::SourceMissing;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_WRITE_PROTECT:
        return RenameStatus::AccessDenied;
    case ERROR_FILENAME_EXCED_RANGE:
        return RenameStatus::NameTooLong;
    case ERROR_NOT_SAME_DEVICE:
        return RenameStatus::NotSameDevice;
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_DIRECTORY:
    case ERROR_INVALID_PARAMETER:
        return RenameStatus::InvalidName;
    default:
        return RenameStatus::Other;
    }
}

std::atomic<unsigned> gTempCounter{0};

// A path's folder (with its separator) and last name; separators at the end belong to neither.
std::pair<PathView, PathView> splitLast(PathView path)
{
    while (path.size() > 1 && (path.back() == u'/' || path.back() == u'\\')) path.remove_suffix(1);
    const std::size_t slash = path.find_last_of(u"/\\");
    if (slash == PathView::npos) return {PathView(), path};
    return {path.substr(0, slash + 1), path.substr(slash + 1)};
}

// The name as the folder holds it, letter case included.
Path storedName(const std::wstring& path)
{
    WIN32_FIND_DATAW data;
    HANDLE h = FindFirstFileExW(wide(path), FindExInfoBasic, &data, FindExSearchNameMatch, nullptr, 0);
    if (h == INVALID_HANDLE_VALUE) return {};
    FindClose(h);
    return Path(data.cFileName, data.cFileName + std::wcslen(data.cFileName));
}

// Whether Windows stores a new name exactly as given. It refuses control characters and
// < > " | ? * (ERROR_INVALID_NAME); it reads "name:stream" as a stream of another file on
// NTFS (Wine has no streams and would make a plain file of it); and outside the prefix it
// silently strips dots and spaces from the end ("x." becomes "x", which may be a different,
// existing object), while through the prefix it keeps them, making a name most programs
// cannot open. A rename to any of these is refused here, the same way on every path length
// and every file system, so that what preview showed is what lands on disk or nothing does.
// Preview's name validation must therefore treat these names as invalid on Windows rather
// than strip them.
bool isNameWindowsKeeps(PathView name)
{
    if (name.empty() || name == u"." || name == u"..") return false;
    if (name.back() == u'.' || name.back() == u' ') return false;
    for (char16_t c : name) {
        if (c < 0x20) return false;
        switch (c) {
        case u'<': case u'>': case u':': case u'"': case u'|': case u'?': case u'*':
            return false;
        default:
            break;
        }
    }
    return true;
}

// ---- folder walk ---------------------------------------------------------------------

struct Item {
    std::uint32_t textOffset = 0;
    std::uint32_t textLength = 0;
    bool descend = false;
    FileInfo info;
};

// One per depth, reused for every folder met at that depth.
struct Level {
    Path folder;  // with trailing '/'
    Path texts;   // the entries' names
    std::vector<Item> items;
};

class Walker {
public:
    Walker(bool recursive, const WalkEvents& events) : recursive_(recursive), events_(events) {}

    bool run(PathView root)
    {
        if (root.empty()) {  // not the file system's root
            report(WalkProblem::Unreadable, root);
            return true;
        }
        levels_.emplace_back();
        Path& folder = levels_.front().folder;
        folder.assign(root);
        for (char16_t& c : folder) {
            if (c == u'\\') c = u'/';
        }
        if (folder.empty() || folder.back() != u'/') folder.push_back(u'/');
        return walkFolder(0);
    }

private:
    void report(WalkProblem problem, PathView what)
    {
        if (events_.problem) events_.problem(problem, what);
    }

    // Reads the whole folder before any child is visited, so one search handle is open at a time.
    bool readFolder(Level& level)
    {
        level.texts.clear();
        level.items.clear();
        std::wstring pattern = toWin32(level.folder + u"*");
        WIN32_FIND_DATAW data;
        HANDLE h = FindFirstFileExW(wide(pattern), FindExInfoBasic, &data, FindExSearchNameMatch, nullptr,
                                    FIND_FIRST_EX_LARGE_FETCH);
        if (h == INVALID_HANDLE_VALUE) return GetLastError() == ERROR_FILE_NOT_FOUND;  // an empty drive root
        do {
            const wchar_t* name = data.cFileName;
            const std::size_t nameLength = std::wcslen(name);
            if (name[0] == L'.' && (name[1] == L'\0' || (name[1] == L'.' && name[2] == L'\0'))) continue;
            Item item;
            item.info = makeInfo(data.dwFileAttributes, data.ftCreationTime, data.ftLastAccessTime,
                                 data.ftLastWriteTime, data.nFileSizeHigh, data.nFileSizeLow);
            item.info.isSymlink = isLinkTag(data.dwFileAttributes, data.dwReserved0);
            item.textOffset = static_cast<std::uint32_t>(level.texts.size());
            item.textLength = static_cast<std::uint32_t>(nameLength);
            level.texts.append(name, name + nameLength);
            if (item.info.isSymlink && !item.info.isFolder) {
                item.info.size = targetSize(toWin32(level.folder + Path(name, name + nameLength)), item.info.size);
            }
            // Any other reparse point on a folder (cloud placeholders, app links) is listed
            // but not entered either: only plain folders are descended.
            item.descend = item.info.isFolder && !(data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT);
            level.items.push_back(item);
        } while (FindNextFileW(h, &data));
        const DWORD last = GetLastError();
        FindClose(h);
        return last == ERROR_NO_MORE_FILES;
    }

    bool walkFolder(std::size_t depth)
    {
        Level& level = levels_[depth];
        if (!readFolder(level)) report(WalkProblem::Unreadable, level.folder);
        if (events_.folderRead) events_.folderRead(level.items.size());
        for (const Item& item : level.items) {
            const PathView name(level.texts.data() + item.textOffset, item.textLength);
            if (events_.entry && !events_.entry(DirEntry{level.folder, name, item.info})) return false;
            if (!recursive_ || !item.descend) continue;
            if (levels_.size() <= depth + 1) levels_.emplace_back();  // a deque keeps `level` valid
            Level& child = levels_[depth + 1];
            child.folder.assign(level.folder).append(name).push_back(u'/');
            if (!walkFolder(depth + 1)) return false;
        }
        return true;
    }

    bool recursive_;
    const WalkEvents& events_;
    std::deque<Level> levels_;
};

}  // namespace

std::optional<FileInfo> stat(PathView path)
{
    const std::wstring native = toWin32(path);
    WIN32_FILE_ATTRIBUTE_DATA data;
    if (!GetFileAttributesExW(wide(native), GetFileExInfoStandard, &data)) return std::nullopt;
    FileInfo info = makeInfo(data.dwFileAttributes, data.ftCreationTime, data.ftLastAccessTime, data.ftLastWriteTime,
                             data.nFileSizeHigh, data.nFileSizeLow);
    if (data.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) {
        info.isSymlink = isLinkTag(data.dwFileAttributes, reparseTag(native));
        if (info.isSymlink && !info.isFolder) info.size = targetSize(native, info.size);
    }
    return info;
}

bool exists(PathView path)
{
    return GetFileAttributesW(wide(toWin32(path))) != INVALID_FILE_ATTRIBUTES;
}

bool isFile(PathView path)
{
    const DWORD a = GetFileAttributesW(wide(toWin32(path)));
    return a != INVALID_FILE_ATTRIBUTES && !(a & FILE_ATTRIBUTE_DIRECTORY);
}

bool isFolder(PathView path)
{
    const DWORD a = GetFileAttributesW(wide(toWin32(path)));
    return a != INVALID_FILE_ATTRIBUTES && (a & FILE_ATTRIBUTE_DIRECTORY);
}

bool setAttributes(PathView path, std::uint32_t attributes)
{
    const std::wstring native = toWin32(path);
    const DWORD current = GetFileAttributesW(wide(native));
    if (current == INVALID_FILE_ATTRIBUTES) return false;
    constexpr DWORD ours = AttrReadOnly | AttrHidden | AttrSystem | AttrArchive;
    // The other bits SetFileAttributesW accepts are kept as they are.
    constexpr DWORD keepable = FILE_ATTRIBUTE_NOT_CONTENT_INDEXED | FILE_ATTRIBUTE_OFFLINE | FILE_ATTRIBUTE_TEMPORARY;
    DWORD wanted = (current & keepable) | (attributes & ours);
    if (wanted == 0) wanted = FILE_ATTRIBUTE_NORMAL;
    return SetFileAttributesW(wide(native), wanted) != 0;
}

RenameResult renameNoReplace(PathView from, PathView to)
{
    // MoveFileExW without MOVEFILE_REPLACE_EXISTING, for files and folders alike: it is a
    // single atomic rename that fails with ERROR_ALREADY_EXISTS when the target is taken and
    // never merges one folder into another, as the shell's folder move would; the shell
    // operation would also bring its own dialogs and undo list into a batch that keeps its
    // own. Without MOVEFILE_COPY_ALLOWED a move to another volume fails instead of copying.
    const auto fail = [](DWORD error, PathView source) {
        RenameResult result;
        result.status = statusFor(error, source);
        result.systemError = static_cast<int>(error);
        result.systemMessage = errorText(error);
        return result;
    };
    const auto [targetFolder, targetName] = splitLast(to);
    if (!isNameWindowsKeeps(targetName)) return fail(ERROR_INVALID_NAME, from);

    const std::wstring source = toWin32(from);
    const std::wstring target = toWin32(to);
    if (!MoveFileExW(wide(source), wide(target), 0)) return fail(GetLastError(), from);

    // A change of letter case only is the same object to Windows, and MoveFileExW applies the
    // new spelling. Wine reports success without applying it; there, and on any file system
    // that behaves the same, the new spelling goes on through a temporary name.
    const PathView sourceName = splitLast(from).second;
    if (sourceName != targetName && pathKey(sourceName) == pathKey(targetName) &&
        storedName(target) != targetName) {
        const Path temp = Path(targetFolder) + u".qp-case-" +
                          toUtf16Lossy(std::to_string(GetCurrentProcessId())) + u"-" +
                          toUtf16Lossy(std::to_string(gTempCounter.fetch_add(1)));
        const std::wstring nativeTemp = toWin32(temp);
        if (!MoveFileExW(wide(source), wide(nativeTemp), 0)) return fail(GetLastError(), from);
        if (!MoveFileExW(wide(nativeTemp), wide(target), 0)) {
            const DWORD error = GetLastError();
            MoveFileExW(wide(nativeTemp), wide(source), 0);  // leave things as they were
            return fail(error, from);
        }
    }
    RenameResult result;
    result.status = RenameStatus::Ok;
    return result;
}

RenameResult FolderRenamer::rename(PathView folder, PathView fromName, PathView toName)
{
    if (!isPlainName(fromName) || !isPlainName(toName)) {
        RenameResult result;
        result.status = RenameStatus::InvalidName;
        result.systemError = static_cast<int>(ERROR_INVALID_NAME);
        result.systemMessage = errorText(ERROR_INVALID_NAME);
        return result;
    }
    // Win32 renames by full path only; the folder is not kept open.
    return renameNoReplace(Path(folder) + Path(fromName), Path(folder) + Path(toName));
}

void FolderRenamer::release() { m_handle = kClosed; }

bool createFolders(PathView path)
{
    Path text(path);
    for (char16_t& c : text) {
        if (c == u'\\') c = u'/';
    }
    while (text.size() > 1 && text.back() == u'/') text.pop_back();
    if (text.empty()) return false;
    if (isFolder(text)) return true;
    // Skip what cannot be created: "C:/" or "//server/share/".
    std::size_t start = 0;
    if (text.size() >= 2 && text[1] == u':') {
        start = 3;
    } else if (text.rfind(u"//", 0) == 0) {
        const std::size_t server = text.find(u'/', 2);
        start = server == Path::npos ? text.size() : text.find(u'/', server + 1);
        if (start == Path::npos) start = text.size();
    }
    for (std::size_t slash = text.find(u'/', start); slash != Path::npos; slash = text.find(u'/', slash + 1)) {
        if (slash == 0) continue;
        CreateDirectoryW(wide(toWin32(PathView(text).substr(0, slash))), nullptr);
    }
    CreateDirectoryW(wide(toWin32(text)), nullptr);
    return isFolder(text);
}

Path systemDrive()
{
    wchar_t buffer[MAX_PATH + 1];
    const UINT length = GetSystemDirectoryW(buffer, MAX_PATH + 1);
    if (length < 3 || length > MAX_PATH) return u"C:/";
    return Path{static_cast<char16_t>(buffer[0]), u':', u'/'};
}

Path pathKey(PathView path)
{
    Path key(path);
    for (char16_t& c : key) {
        if (c == u'\\') c = u'/';
    }
    if (key.empty()) return key;
    // Simple upper-casing per code unit, as NTFS compares names, independent of the user's locale.
    const std::wstring source(key.begin(), key.end());
    std::wstring folded(source.size(), L'\0');
    const int length = LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, source.data(),
                                     static_cast<int>(source.size()), folded.data(), static_cast<int>(folded.size()),
                                     nullptr, nullptr, 0);
    if (length <= 0) return key;
    return Path(folded.begin(), folded.begin() + length);
}

bool pathKeysIgnoreCase() { return true; }

bool walk(PathView root, bool recursive, const WalkEvents& events)
{
    Walker walker(recursive, events);
    return walker.run(root);
}

ReadResult readFile(PathView path, std::uint64_t maxBytes)
{
    ReadResult result;
    HANDLE h = CreateFileW(wide(toWin32(path)), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                           nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h == INVALID_HANDLE_VALUE) {
        const DWORD error = GetLastError();
        // A path Windows cannot even parse names nothing, as on Linux.
        const bool missing = error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ||
                             error == ERROR_INVALID_NAME || error == ERROR_BAD_PATHNAME;
        result.status = missing ? ReadStatus::Missing : ReadStatus::Unreadable;
        result.systemMessage = errorText(error);
        return result;
    }
    LARGE_INTEGER size;
    if (!GetFileSizeEx(h, &size)) {
        result.systemMessage = errorText(GetLastError());
        CloseHandle(h);
        return result;
    }
    if (static_cast<std::uint64_t>(size.QuadPart) > maxBytes) {
        result.status = ReadStatus::TooLarge;
        result.systemMessage = errorText(ERROR_FILE_TOO_LARGE);
        CloseHandle(h);
        return result;
    }
    std::string data(static_cast<std::size_t>(size.QuadPart) + 1, '\0');
    std::size_t used = 0;
    for (;;) {
        if (used == data.size()) data.resize(data.size() * 2 + 4096);
        const std::size_t room = std::min<std::size_t>(data.size() - used, 1u << 30);
        DWORD got = 0;
        if (!ReadFile(h, data.data() + used, static_cast<DWORD>(room), &got, nullptr)) {
            result.systemMessage = errorText(GetLastError());
            CloseHandle(h);
            return result;
        }
        if (got == 0) break;
        used += got;
        if (used > maxBytes) {
            result.status = ReadStatus::TooLarge;
            result.systemMessage = errorText(ERROR_FILE_TOO_LARGE);
            CloseHandle(h);
            return result;
        }
    }
    CloseHandle(h);
    data.resize(used);
    result.status = ReadStatus::Ok;
    result.bytes = std::move(data);
    return result;
}

bool readChunks(PathView path, std::size_t chunkBytes, const std::function<bool(std::string_view)>& each)
{
    HANDLE h = CreateFileW(wide(toWin32(path)), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                           nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    if (h == INVALID_HANDLE_VALUE)
        return false;
    if (GetFileType(h) != FILE_TYPE_DISK) {  // a pipe or device: nothing to read as a file
        CloseHandle(h);
        return false;
    }
    const DWORD size = static_cast<DWORD>(std::clamp<std::size_t>(chunkBytes, 1, 1u << 30));
    std::vector<char> buffer(size);
    bool ok = true;
    for (;;) {
        // Fill the whole piece when the file has that much (see the POSIX side).
        DWORD used = 0;
        while (used < size) {
            DWORD got = 0;
            if (!ReadFile(h, buffer.data() + used, size - used, &got, nullptr)) {
                ok = false;
                break;
            }
            if (got == 0)
                break;
            used += got;
        }
        if (!ok || used == 0)
            break;
        if (!each(std::string_view(buffer.data(), used)) || used < size)
            break;
    }
    CloseHandle(h);
    return ok;
}

bool AtomicFile::open(PathView path, std::string* error)
{
    abandon();
    auto fail = [&](PathView what, DWORD code) {
        if (error) *error = toUtf8(what) + ": " + errorText(code);
        return false;
    };
    Path target(path);
    for (char16_t& c : target) {
        if (c == u'\\') c = u'/';
    }
    const std::size_t slash = target.rfind(u'/');
    if (slash != Path::npos && slash > 0 && !createFolders(target.substr(0, slash)))
        return fail(target.substr(0, slash), GetLastError());
    const Path temp = target + u".tmp-" + toUtf16Lossy(std::to_string(GetCurrentProcessId())) + u"-" +
                      toUtf16Lossy(std::to_string(gTempCounter.fetch_add(1)));
    HANDLE h = CreateFileW(wide(toWin32(temp)), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h == INVALID_HANDLE_VALUE) return fail(temp, GetLastError());
    m_handle = reinterpret_cast<std::intptr_t>(h);
    m_target = target;
    m_temp = temp;
    return true;
}

bool AtomicFile::append(std::string_view bytes, std::string* error)
{
    if (m_handle == kClosed) return false;
    HANDLE h = reinterpret_cast<HANDLE>(m_handle);
    while (!bytes.empty()) {
        const DWORD chunk = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1u << 30));
        DWORD put = 0;
        if (!WriteFile(h, bytes.data(), chunk, &put, nullptr)) {
            if (error) *error = toUtf8(m_temp) + ": " + errorText(GetLastError());
            abandon();
            return false;
        }
        bytes.remove_prefix(put);
    }
    return true;
}

bool AtomicFile::commit(std::string* error)
{
    if (m_handle == kClosed) return false;
    HANDLE h = reinterpret_cast<HANDLE>(m_handle);
    const std::wstring nativeTemp = toWin32(m_temp);
    auto fail = [&](PathView what, DWORD code) {
        if (error) *error = toUtf8(what) + ": " + errorText(code);
        DeleteFileW(wide(nativeTemp));
        m_handle = kClosed;
        return false;
    };
    if (!FlushFileBuffers(h)) {
        const DWORD code = GetLastError();
        CloseHandle(h);
        return fail(m_temp, code);
    }
    CloseHandle(h);
    // Replacing is right here and only here: the target is the program's own state file.
    if (!MoveFileExW(wide(nativeTemp), wide(toWin32(m_target)), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return fail(m_target, GetLastError());
    m_handle = kClosed;
    if (error) error->clear();
    return true;
}

void AtomicFile::abandon()
{
    if (m_handle == kClosed) return;
    CloseHandle(reinterpret_cast<HANDLE>(m_handle));
    DeleteFileW(wide(toWin32(m_temp)));
    m_handle = kClosed;
}

bool writeFileAtomically(PathView path, std::string_view bytes, std::string* error)
{
    AtomicFile file;
    return file.open(path, error) && file.append(bytes, error) && file.commit(error);
}

bool removeFile(PathView path)
{
    const std::wstring target = toWin32(path);
    const DWORD attributes = GetFileAttributesW(wide(target));
    if (attributes == INVALID_FILE_ATTRIBUTES) return GetLastError() == ERROR_FILE_NOT_FOUND;
    if (attributes & FILE_ATTRIBUTE_DIRECTORY) return false;
    return DeleteFileW(wide(target)) != 0;
}

bool setExecutable(PathView path) { return isFile(path); }

bool AppendFile::open(PathView path)
{
    close();
    const HANDLE h = CreateFileW(wide(toWin32(path)), FILE_APPEND_DATA, FILE_SHARE_READ, nullptr, OPEN_ALWAYS,
                                 FILE_ATTRIBUTE_NORMAL, nullptr);
    if (h == INVALID_HANDLE_VALUE) return false;
    m_handle = reinterpret_cast<std::intptr_t>(h);
    return true;
}

bool AppendFile::append(std::string_view bytes)
{
    if (!isOpen()) return false;
    while (!bytes.empty()) {
        const DWORD chunk = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1u << 30));
        DWORD put = 0;
        if (!WriteFile(reinterpret_cast<HANDLE>(m_handle), bytes.data(), chunk, &put, nullptr)) return false;
        bytes.remove_prefix(put);
    }
    return true;
}

bool AppendFile::sync() { return isOpen() && FlushFileBuffers(reinterpret_cast<HANDLE>(m_handle)) != 0; }

void AppendFile::close()
{
    if (isOpen()) CloseHandle(reinterpret_cast<HANDLE>(m_handle));
    m_handle = kClosed;
}

bool ReadOnlyFile::open(PathView path)
{
    close();
    // Without FILE_FLAG_BACKUP_SEMANTICS a folder cannot be opened; a pipe or device is
    // refused by its type.
    const HANDLE h = CreateFileW(wide(toWin32(path)), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                 nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_RANDOM_ACCESS, nullptr);
    if (h == INVALID_HANDLE_VALUE) return false;
    LARGE_INTEGER size;
    if (GetFileType(h) != FILE_TYPE_DISK || !GetFileSizeEx(h, &size)) {
        CloseHandle(h);
        return false;
    }
    m_handle = reinterpret_cast<std::intptr_t>(h);
    m_size = static_cast<std::uint64_t>(size.QuadPart);
    return true;
}

void ReadOnlyFile::close()
{
    if (isOpen()) CloseHandle(reinterpret_cast<HANDLE>(m_handle));
    m_handle = kClosed;
    m_size = 0;
}

std::int64_t ReadOnlyFile::readAt(std::uint64_t offset, void* buffer, std::size_t count) const
{
    if (!isOpen()) return -1;
    std::size_t used = 0;
    while (used < count) {
        // The OVERLAPPED offset makes a synchronous handle read from there.
        OVERLAPPED at{};
        const std::uint64_t where = offset + used;
        at.Offset = static_cast<DWORD>(where);
        at.OffsetHigh = static_cast<DWORD>(where >> 32);
        const DWORD chunk = static_cast<DWORD>(std::min<std::size_t>(count - used, 1u << 30));
        DWORD got = 0;
        if (!ReadFile(reinterpret_cast<HANDLE>(m_handle), static_cast<char*>(buffer) + used, chunk, &got, &at)) {
            if (GetLastError() == ERROR_HANDLE_EOF) break;
            return -1;
        }
        if (got == 0) break;
        used += got;
    }
    return static_cast<std::int64_t>(used);
}

bool listNames(PathView folder, const std::function<void(PathView name, EntryKind kind)>& each)
{
    Path pattern(folder);
    if (pattern.empty() || (pattern.back() != u'/' && pattern.back() != u'\\')) pattern.push_back(u'/');
    pattern.push_back(u'*');
    WIN32_FIND_DATAW data;
    const HANDLE h = FindFirstFileExW(wide(toWin32(pattern)), FindExInfoBasic, &data, FindExSearchNameMatch, nullptr,
                                      FIND_FIRST_EX_LARGE_FETCH);
    if (h == INVALID_HANDLE_VALUE) return GetLastError() == ERROR_FILE_NOT_FOUND;
    do {
        const wchar_t* name = data.cFileName;
        if (name[0] == L'.' && (name[1] == L'\0' || (name[1] == L'.' && name[2] == L'\0'))) continue;
        const DWORD attributes = data.dwFileAttributes;
        const EntryKind kind = (attributes & FILE_ATTRIBUTE_REPARSE_POINT) ? EntryKind::Unknown
                             : (attributes & FILE_ATTRIBUTE_DIRECTORY)     ? EntryKind::Folder
                                                                            : EntryKind::File;
        each(fromWin32(name, std::wcslen(name)), kind);
    } while (FindNextFileW(h, &data));
    const DWORD last = GetLastError();
    FindClose(h);
    return last == ERROR_NO_MORE_FILES;
}

Path executablePath()
{
    std::wstring buffer(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
        if (length == 0) return {};
        if (length < buffer.size()) return fromWin32(buffer.data(), length);
        buffer.resize(buffer.size() * 2);
    }
}

}  // namespace qp::platform

#endif  // _WIN32
