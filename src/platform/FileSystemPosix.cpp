// The platform layer over Linux system calls. Paths arrive as UTF-16 and go to the kernel
// as UTF-8 bytes; names read from the disk that are not valid UTF-8 are never guessed at.
#ifndef _WIN32

#include "platform/FileSystem.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <cwctype>
#include <condition_variable>
#include <deque>
#include <limits>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <unordered_map>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/types.h>
#include <unistd.h>

#ifndef RENAME_NOREPLACE
#define RENAME_NOREPLACE (1 << 0)
#endif

namespace qp::platform {
namespace {

constexpr unsigned kStatMask = STATX_BASIC_STATS | STATX_BTIME;

// GNU and XSI strerror_r differ in their return type; both end up here.
[[maybe_unused]] const char* pickMessage(int rc, const char* buffer) { return rc == 0 ? buffer : "Unknown error"; }
[[maybe_unused]] const char* pickMessage(const char* text, const char*) { return text; }

std::string errorText(int error)
{
    char buffer[256] = {};
    return pickMessage(strerror_r(error, buffer, sizeof buffer), buffer);
}

FileTime toFileTime(const struct statx_timestamp& t)
{
    return static_cast<FileTime>(t.tv_sec) * 1'000'000'000 + static_cast<FileTime>(t.tv_nsec);
}

bool isHiddenName(std::string_view name)
{
    return !name.empty() && name.front() == '.' && name != "." && name != "..";
}

std::string_view lastComponent(std::string_view path)
{
    while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
    const auto slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

// `sx` describes the entry itself (not followed). A link is followed only to learn whether
// it leads to a folder and how large its target is; a broken link stays a file described
// by the link's own data.
void fillInfo(int dirFd, const char* name, const struct statx& sx, bool hidden, FileInfo& info)
{
    info = FileInfo{};
    bool folder = S_ISDIR(sx.stx_mode);
    std::uint64_t size = sx.stx_size;
    if (S_ISLNK(sx.stx_mode)) {
        info.isSymlink = true;
        struct statx target;
        if (statx(dirFd, name, AT_NO_AUTOMOUNT, STATX_TYPE | STATX_SIZE, &target) == 0) {
            folder = S_ISDIR(target.stx_mode);
            size = target.stx_size;
        }
    }
    info.isFolder = folder;
    info.size = folder ? 0 : size;
    info.modified = toFileTime(sx.stx_mtime);
    info.accessed = toFileTime(sx.stx_atime);
    info.created = (sx.stx_mask & STATX_BTIME) ? toFileTime(sx.stx_btime) : toFileTime(sx.stx_ctime);
    std::uint32_t attributes = 0;
    if (folder) attributes |= AttrDirectory;
    if ((sx.stx_mode & S_IWUSR) == 0) attributes |= AttrReadOnly;
    if (hidden) attributes |= AttrHidden;
    info.attributes = attributes;
}

int renameNoReplaceRaw(const char* from, const char* to)
{
#if defined(__GLIBC__) && (__GLIBC__ > 2 || (__GLIBC__ == 2 && __GLIBC_MINOR__ >= 28))
    return ::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE);
#else
    return static_cast<int>(::syscall(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE));
#endif
}

bool lexists(const std::string& path)
{
    struct stat st;
    return ::lstat(path.c_str(), &st) == 0;
}

// Only for file systems that do not know RENAME_NOREPLACE: the existence check and the
// rename are two steps, so another process could slip a target in between. Nothing better
// exists there for folders, which cannot be hard-linked.
int checkedRename(const std::string& from, const std::string& to)
{
    struct stat st;
    if (::lstat(to.c_str(), &st) == 0) {
        errno = EEXIST;
        return -1;
    }
    if (errno != ENOENT) return -1;
    return ::rename(from.c_str(), to.c_str());
}

// Fallback when the file system rejects RENAME_NOREPLACE. For a file, link() refuses an
// existing target atomically and unlink() then removes the old name; file systems without
// hard links get the checked rename instead.
int renameWithoutFlag(const std::string& from, const std::string& to)
{
    struct stat st;
    if (::lstat(from.c_str(), &st) != 0) return -1;
    if (S_ISDIR(st.st_mode)) return checkedRename(from, to);
    if (::linkat(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), 0) != 0) {
        const int err = errno;
        if (err == EPERM || err == EOPNOTSUPP || err == EMLINK || err == ENOSYS) return checkedRename(from, to);
        errno = err;
        return -1;
    }
    if (::unlink(from.c_str()) != 0) {
        const int err = errno;
        ::unlink(to.c_str());  // leave things as they were
        errno = err;
        return -1;
    }
    return 0;
}

std::string parentOf(const std::string& path)
{
    const auto slash = path.rfind('/');
    if (slash == std::string::npos) return ".";
    if (slash == 0) return "/";
    return path.substr(0, slash);
}

bool folderHasExactName(const std::string& folder, std::string_view name);

// On a case-insensitive file system (vfat, ext4 with casefold) the target of a case-only
// rename is found as the source itself, and the kernel reports EEXIST. That is the case when
// both names are the same object in the same folder and no entry of exactly the target name
// exists (a hard link named like the target would be a real, different name). Such a
// rename goes through a temporary name.
bool isCaseOnlyRename(const std::string& from, const std::string& to)
{
    if (parentOf(from) != parentOf(to)) return false;
    const std::string_view fromName = lastComponent(from);
    const std::string_view toName = lastComponent(to);
    if (fromName == toName || fromName.size() != toName.size()) return false;
    struct stat a, b;
    if (::lstat(from.c_str(), &a) != 0 || ::lstat(to.c_str(), &b) != 0) return false;
    if (a.st_dev != b.st_dev || a.st_ino != b.st_ino) return false;
    return !folderHasExactName(parentOf(to), toName);
}

std::atomic<unsigned> gTempCounter{0};

std::string tempSuffix()
{
    return "-" + std::to_string(::getpid()) + "-" + std::to_string(gTempCounter.fetch_add(1));
}

int caseOnlyRename(const std::string& from, const std::string& to)
{
    const std::string parent = parentOf(from);
    const std::string temp = (parent == "/" ? std::string("/") : parent + "/") + ".qp-case" + tempSuffix();
    if (renameNoReplaceRaw(from.c_str(), temp.c_str()) != 0) return -1;
    if (renameNoReplaceRaw(temp.c_str(), to.c_str()) != 0) {
        const int err = errno;
        ::rename(temp.c_str(), from.c_str());
        errno = err;
        return -1;
    }
    return 0;
}

RenameStatus statusFor(int error, const std::string& from)
{
    switch (error) {
    case EEXIST:
    case ENOTEMPTY:
        return RenameStatus::TargetExists;
    case ENOENT:
    case ENOTDIR:
        // Either the source is gone or a folder on the target's path is missing.
        return lexists(from) ? RenameStatus::Other : RenameStatus::SourceMissing;
    case EACCES:
    case EPERM:
    case EROFS:
    case EBUSY:
    case ETXTBSY:
        return RenameStatus::AccessDenied;
    case ENAMETOOLONG:
        return RenameStatus::NameTooLong;
    case EXDEV:
        return RenameStatus::NotSameDevice;
    case EINVAL:
    case EILSEQ:
        return RenameStatus::InvalidName;
    default:
        return RenameStatus::Other;
    }
}

// ---- folder walk ---------------------------------------------------------------------

// The kernel's record for getdents64; only its layout is used.
struct LinuxDirent64 {
    std::uint64_t d_ino;
    std::int64_t d_off;
    unsigned short d_reclen;
    unsigned char d_type;
    char d_name[1];
};

struct Item {
    std::uint32_t nameOffset = 0;  // raw bytes in Folder::names
    std::uint32_t nameLength = 0;
    std::uint32_t textOffset = 0;  // UTF-16 in Folder::texts
    std::uint32_t textLength = 0;
    bool badName = false;
    FileInfo info;
};

// One folder as read from the disk: every entry with its metadata.
struct Folder {
    std::string bytes;  // the folder's path as the kernel takes it, with trailing '/'
    Path path;          // UTF-16, with trailing '/'
    bool noFollow = false;  // below the root a folder must not have turned into a link
    bool opened = false;
    bool complete = false;
    std::string names;  // the entries' names as read
    Path texts;         // the same names decoded
    std::vector<Item> items;

    void release()
    {
        std::string().swap(names);
        Path().swap(texts);
        std::vector<Item>().swap(items);
    }
};

// Calls `each(name, d_type)` for every entry of an open folder but "." and ".."; false when
// reading failed.
template <typename Each>
bool forEachName(int fd, std::vector<char>& buffer, Each each)
{
    for (;;) {
        const long got = ::syscall(SYS_getdents64, fd, buffer.data(), buffer.size());
        if (got == 0) return true;
        if (got < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        for (long pos = 0; pos < got;) {
            const char* record = buffer.data() + pos;
            unsigned short length = 0;
            std::memcpy(&length, record + offsetof(LinuxDirent64, d_reclen), sizeof length);
            pos += length;
            const char* name = record + offsetof(LinuxDirent64, d_name);
            const auto type = static_cast<unsigned char>(record[offsetof(LinuxDirent64, d_type)]);
            if (std::strcmp(name, ".") != 0 && std::strcmp(name, "..") != 0) each(name, type);
        }
    }
}

// Reads every entry of one folder, with its metadata, while the folder is open. The
// descriptor is closed before the folder is handed on, so deep trees use one at a time.
void readFolder(Folder& folder, std::vector<char>& buffer)
{
    const int fd = ::open(folder.bytes.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC | (folder.noFollow ? O_NOFOLLOW : 0));
    if (fd < 0) return;
    folder.opened = true;
    bool statFailed = false;
    const bool listed = forEachName(fd, buffer, [&](const char* name, unsigned char) {
        const std::string_view nameView(name);
        Item item;
        item.nameOffset = static_cast<std::uint32_t>(folder.names.size());
        item.nameLength = static_cast<std::uint32_t>(nameView.size());
        item.textOffset = static_cast<std::uint32_t>(folder.texts.size());
        if (!appendUtf16(nameView, folder.texts)) {
            item.badName = true;
        } else {
            struct statx sx;
            if (statx(fd, name, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, kStatMask, &sx) != 0) {
                folder.texts.resize(item.textOffset);
                if (errno != ENOENT) statFailed = true;  // vanished entries are simply gone
                return;
            }
            fillInfo(fd, name, sx, isHiddenName(nameView), item.info);
        }
        item.textLength = static_cast<std::uint32_t>(folder.texts.size() - item.textOffset);
        folder.names.append(nameView);
        folder.items.push_back(item);
    });
    const bool failed = !listed || statFailed;
    ::close(fd);
    folder.complete = !failed;
}

// Reads folders on other threads ahead of the walk, in the order the walk will want
// them, so that the kernel's work on the next folders overlaps the caller's work on this
// one. The walk itself, and every callback, stays on the calling thread.
class ReadAhead {
public:
    ReadAhead()
    {
        // Two readers keep two cores busy in the kernel; more only queue on the same locks.
        const unsigned count = std::clamp(std::thread::hardware_concurrency(), 2u, 4u);
        try {
            for (unsigned i = 0; i < count; ++i) workers_.emplace_back([this] { work(); });
        } catch (const std::system_error&) {
            // Fewer threads, or none: a folder nobody has read is read when the walk reaches it.
        }
    }
    ~ReadAhead()
    {
        {
            std::lock_guard lock(mutex_);
            stopping_ = true;
        }
        wake_.notify_all();
        for (std::thread& worker : workers_) worker.join();
    }
    ReadAhead(const ReadAhead&) = delete;
    ReadAhead& operator=(const ReadAhead&) = delete;

    bool enabled() const { return !workers_.empty(); }

    void submit(Folder* folder)
    {
        {
            std::lock_guard lock(mutex_);
            state_[folder] = State::Queued;
            queue_.push_back(folder);
        }
        wake_.notify_one();
    }

    // The folder's contents, read by the worker or, when it has not started on it, here.
    void obtain(Folder& folder, std::vector<char>& buffer)
    {
        std::unique_lock lock(mutex_);
        const auto it = state_.find(&folder);
        if (it == state_.end() || it->second == State::Queued) {
            if (it != state_.end()) it->second = State::Taken;  // the worker skips it
            lock.unlock();
            readFolder(folder, buffer);
            lock.lock();
            state_.erase(&folder);
            return;
        }
        done_.wait(lock, [&] { return state_[&folder] == State::Done; });
        state_.erase(&folder);
    }

private:
    enum class State { Queued, Reading, Taken, Done };

    void work()
    {
        std::vector<char> buffer(64 * 1024);
        std::unique_lock lock(mutex_);
        for (;;) {
            wake_.wait(lock, [&] { return stopping_ || !queue_.empty(); });
            if (stopping_) return;
            Folder* folder = queue_.front();
            queue_.pop_front();
            auto it = state_.find(folder);
            if (it == state_.end() || it->second != State::Queued) continue;
            it->second = State::Reading;
            lock.unlock();
            readFolder(*folder, buffer);
            lock.lock();
            state_[folder] = State::Done;
            done_.notify_all();
        }
    }

    std::mutex mutex_;
    std::condition_variable wake_;
    std::condition_variable done_;
    std::deque<Folder*> queue_;
    std::unordered_map<Folder*, State> state_;
    bool stopping_ = false;
    std::vector<std::thread> workers_;
};

class Walker {
public:
    Walker(bool recursive, const WalkEvents& events) : recursive_(recursive), events_(events), buffer_(64 * 1024) {}

    bool run(PathView root)
    {
        if (root.empty()) {  // not the file system's root
            report(WalkProblem::Unreadable, root);
            return true;
        }
        Folder top;
        top.path.assign(root);
        if (top.path.back() != u'/') top.path.push_back(u'/');
        auto bytes = toUtf8Path(top.path);
        if (!bytes) {
            report(WalkProblem::Unreadable, top.path);
            return true;
        }
        top.bytes = std::move(*bytes);
        if (recursive_) readAhead_.emplace();
        return walkFolder(top);
    }

private:
    // The sub-folders of the folders on the current path, waiting to be walked.
    struct Pending {
        std::vector<std::unique_ptr<Folder>> children;
        std::size_t submitted = 0;
    };
    static constexpr std::size_t kReadAheadWindow = 64;

    void report(WalkProblem problem, PathView what)
    {
        if (events_.problem) events_.problem(problem, what);
    }

    // Hands the worker the folders the walk will want next: the deepest waiting ones first.
    void topUp()
    {
        if (!readAhead_ || !readAhead_->enabled()) return;
        for (auto level = pending_.rbegin(); level != pending_.rend() && inFlight_ < kReadAheadWindow; ++level) {
            while ((*level)->submitted < (*level)->children.size() && inFlight_ < kReadAheadWindow) {
                readAhead_->submit((*level)->children[(*level)->submitted++].get());
                ++inFlight_;
            }
        }
    }

    void load(Folder& folder, bool submitted)
    {
        if (submitted) {
            readAhead_->obtain(folder, buffer_);
            --inFlight_;
        } else {
            readFolder(folder, buffer_);
        }
        if (!folder.opened || !folder.complete) report(WalkProblem::Unreadable, folder.path);
    }

    std::unique_ptr<Folder> childOf(const Folder& parent, const Item& item, PathView name) const
    {
        auto child = std::make_unique<Folder>();
        child->path.assign(parent.path).append(name).push_back(u'/');
        child->bytes.assign(parent.bytes).append(parent.names, item.nameOffset, item.nameLength).push_back('/');
        child->noFollow = true;
        return child;
    }

    bool walkFolder(Folder& folder, bool submitted = false)
    {
        load(folder, submitted);
        Pending pending;
        if (recursive_) {
            for (const Item& item : folder.items) {
                if (!item.badName && item.info.isFolder && !item.info.isSymlink)
                    pending.children.push_back(childOf(folder, item, PathView(folder.texts.data() + item.textOffset, item.textLength)));
            }
        }
        pending_.push_back(&pending);
        topUp();
        const bool go = emit(folder, pending);
        pending_.pop_back();
        // Folders handed to the worker but never walked must be finished before they go.
        for (std::size_t i = 0; i < pending.submitted; ++i) {
            if (pending.children[i]) {
                readAhead_->obtain(*pending.children[i], buffer_);
                --inFlight_;
            }
        }
        return go;
    }

    bool emit(Folder& folder, Pending& pending)
    {
        if (events_.folderRead) events_.folderRead(folder.items.size());
        std::size_t next = 0;
        for (const Item& item : folder.items) {
            const std::string_view rawName(folder.names.data() + item.nameOffset, item.nameLength);
            if (item.badName) {
                Path what = folder.path;
                what += toUtf16Lossy(rawName);
                report(WalkProblem::BadNameEncoding, what);
                continue;
            }
            const PathView name(folder.texts.data() + item.textOffset, item.textLength);
            if (events_.entry && !events_.entry(DirEntry{folder.path, name, item.info})) return false;
            if (!recursive_ || !item.info.isFolder || item.info.isSymlink) continue;

            std::unique_ptr<Folder> child = std::move(pending.children[next]);
            const bool submitted = next < pending.submitted;
            ++next;
            pending.submitted = std::max(pending.submitted, next);  // never hand over a folder taken here
            topUp();
            if (!walkFolder(*child, submitted)) return false;
        }
        return true;
    }

    bool recursive_;
    const WalkEvents& events_;
    std::vector<char> buffer_;
    std::optional<ReadAhead> readAhead_;
    std::vector<Pending*> pending_;
    std::size_t inFlight_ = 0;
};

bool folderHasExactName(const std::string& folder, std::string_view name)
{
    bool found = false;
    WalkEvents events;
    const std::optional<Path> wanted = toUtf16(name);
    if (!wanted) return false;
    events.entry = [&](const DirEntry& e) {
        found = e.name == *wanted;
        return !found;
    };
    walk(toUtf16Lossy(folder), false, events);
    return found;
}

}  // namespace

std::optional<FileInfo> stat(PathView path)
{
    const auto converted = toUtf8Path(path);
    if (!converted) return std::nullopt;
    const std::string& bytes = *converted;
    struct statx sx;
    if (statx(AT_FDCWD, bytes.c_str(), AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT, kStatMask, &sx) != 0) return std::nullopt;
    FileInfo info;
    fillInfo(AT_FDCWD, bytes.c_str(), sx, isHiddenName(lastComponent(bytes)), info);
    return info;
}

bool exists(PathView path) { return stat(path).has_value(); }

bool isFile(PathView path)
{
    const auto info = stat(path);
    return info && !info->isFolder;
}

bool isFolder(PathView path)
{
    const auto info = stat(path);
    return info && info->isFolder;
}

bool setAttributes(PathView path, std::uint32_t attributes)
{
    const auto info = stat(path);
    if (!info) return false;
    // Hidden comes from the name; archive and system do not exist here.
    constexpr std::uint32_t fixed = AttrHidden | AttrSystem | AttrArchive;
    if ((attributes & fixed) != (info->attributes & fixed)) return false;

    const auto converted = toUtf8Path(path);
    if (!converted) return false;
    const std::string& bytes = *converted;
    struct stat st;
    if (::stat(bytes.c_str(), &st) != 0) return false;
    const mode_t mode = st.st_mode & 07777;
    mode_t wanted = mode;
    if (attributes & AttrReadOnly) wanted &= ~static_cast<mode_t>(S_IWUSR | S_IWGRP | S_IWOTH);
    else if ((mode & S_IWUSR) == 0) wanted |= S_IWUSR;
    if (wanted == mode) return true;
    return ::chmod(bytes.c_str(), wanted) == 0;
}

RenameResult renameNoReplace(PathView from, PathView to)
{
    RenameResult result;
    const auto sourcePath = toUtf8Path(from);
    const auto targetPath = toUtf8Path(to);
    if (!sourcePath || !targetPath) {
        result.status = RenameStatus::InvalidName;
        result.systemError = EINVAL;
        result.systemMessage = errorText(EINVAL);
        return result;
    }
    const std::string& source = *sourcePath;
    const std::string& target = *targetPath;
    int rc = renameNoReplaceRaw(source.c_str(), target.c_str());
    if (rc != 0 && (errno == EINVAL || errno == ENOSYS)) {
        // EINVAL is also what moving a folder into itself gives; the fallback reaches
        // rename(), which reports that case again.
        rc = renameWithoutFlag(source, target);
    }
    if (rc != 0 && errno == EEXIST && isCaseOnlyRename(source, target)) rc = caseOnlyRename(source, target);
    if (rc == 0) {
        result.status = RenameStatus::Ok;
        return result;
    }
    const int err = errno;
    result.status = statusFor(err, source);
    result.systemError = err;
    result.systemMessage = errorText(err);
    return result;
}

RenameResult FolderRenamer::rename(PathView folder, PathView fromName, PathView toName)
{
    RenameResult result;
    if (!isPlainName(fromName) || !isPlainName(toName) || !toUtf8Path(fromName, m_from) || !toUtf8Path(toName, m_to)) {
        result.status = RenameStatus::InvalidName;
        result.systemError = EINVAL;
        result.systemMessage = errorText(EINVAL);
        return result;
    }
    if (m_handle == kClosed || folder != m_folder) {
        release();
        if (const auto bytes = toUtf8Path(folder)) {
            const int fd = ::open(bytes->c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
            if (fd >= 0) {
                m_handle = fd;
                m_folder.assign(folder);
            }
        }
    }
    if (m_handle != kClosed) {
        const int fd = static_cast<int>(m_handle);
#if defined(__GLIBC__) && (__GLIBC__ > 2 || (__GLIBC__ == 2 && __GLIBC_MINOR__ >= 28))
        const int rc = ::renameat2(fd, m_from.c_str(), fd, m_to.c_str(), RENAME_NOREPLACE);
#else
        const int rc = static_cast<int>(::syscall(SYS_renameat2, fd, m_from.c_str(), fd, m_to.c_str(), RENAME_NOREPLACE));
#endif
        if (rc == 0) {
            result.status = RenameStatus::Ok;
            return result;
        }
        // The uncommon answers (no RENAME_NOREPLACE here, a taken name that may be a change
        // of letter case only) go the whole way, which knows what to do with them.
        if (errno != EINVAL && errno != ENOSYS && errno != EEXIST) {
            const int err = errno;
            result.status = statusFor(err, toUtf8(Path(folder) + Path(fromName)));
            result.systemError = err;
            result.systemMessage = errorText(err);
            return result;
        }
    }
    return renameNoReplace(Path(folder) + Path(fromName), Path(folder) + Path(toName));
}

void FolderRenamer::release()
{
    if (m_handle != kClosed) ::close(static_cast<int>(m_handle));
    m_handle = kClosed;
    m_folder.clear();
}

bool createFolders(PathView path)
{
    const auto converted = toUtf8Path(path);
    if (!converted) return false;
    std::string bytes = *converted;
    while (bytes.size() > 1 && bytes.back() == '/') bytes.pop_back();
    if (bytes.empty()) return false;
    struct stat st;
    if (::stat(bytes.c_str(), &st) == 0) return S_ISDIR(st.st_mode);
    // Each level in turn; a level that exists already (or cannot be created because it
    // is a mount point one may not write to) is not an error until the end decides.
    for (std::size_t slash = bytes.find('/', 1); slash != std::string::npos; slash = bytes.find('/', slash + 1)) {
        bytes[slash] = '\0';
        ::mkdir(bytes.c_str(), 0777);
        bytes[slash] = '/';
    }
    ::mkdir(bytes.c_str(), 0777);
    return ::stat(bytes.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

Path systemDrive() { return u"/"; }

#ifdef __APPLE__
// APFS and HFS+ ignore letter case by default: fold each code unit as the key.
Path pathKey(PathView path)
{
    Path key(path);
    for (char16_t& c : key) {
        if (c < 0xD800 || c > 0xDFFF) c = static_cast<char16_t>(std::towlower(static_cast<wint_t>(c)));
    }
    return key;
}

bool pathKeysIgnoreCase() { return true; }
#else
Path pathKey(PathView path) { return Path(path); }

bool pathKeysIgnoreCase() { return false; }
#endif

bool walk(PathView root, bool recursive, const WalkEvents& events)
{
    Walker walker(recursive, events);
    return walker.run(root);
}

ReadResult readFile(PathView path, std::uint64_t maxBytes)
{
    ReadResult result;
    const auto converted = toUtf8Path(path);
    if (!converted) {
        result.status = ReadStatus::Missing;
        result.systemMessage = errorText(EINVAL);
        return result;
    }
    const int fd = ::open(converted->c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        const int err = errno;
        result.status = (err == ENOENT || err == ENOTDIR) ? ReadStatus::Missing : ReadStatus::Unreadable;
        result.systemMessage = errorText(err);
        return result;
    }
    struct stat st;
    if (::fstat(fd, &st) != 0) {
        result.systemMessage = errorText(errno);
        ::close(fd);
        return result;
    }
    if (S_ISDIR(st.st_mode)) {
        result.systemMessage = errorText(EISDIR);
        ::close(fd);
        return result;
    }
    if (static_cast<std::uint64_t>(st.st_size) > maxBytes) {
        result.status = ReadStatus::TooLarge;
        result.systemMessage = errorText(EFBIG);
        ::close(fd);
        return result;
    }
    // The size is only a hint: files under /proc say 0, and a file may grow meanwhile.
    std::string data;
    data.resize(static_cast<std::size_t>(st.st_size) + 1);
    std::size_t used = 0;
    for (;;) {
        if (used == data.size()) data.resize(data.size() * 2 + 4096);
        const ssize_t got = ::read(fd, data.data() + used, data.size() - used);
        if (got == 0) break;
        if (got < 0) {
            if (errno == EINTR) continue;
            result.systemMessage = errorText(errno);
            ::close(fd);
            return result;
        }
        used += static_cast<std::size_t>(got);
        if (used > maxBytes) {
            result.status = ReadStatus::TooLarge;
            result.systemMessage = errorText(EFBIG);
            ::close(fd);
            return result;
        }
    }
    ::close(fd);
    data.resize(used);
    result.status = ReadStatus::Ok;
    result.bytes = std::move(data);
    return result;
}

bool readChunks(PathView path, std::size_t chunkBytes, const std::function<bool(std::string_view)>& each)
{
    const auto converted = toUtf8Path(path);
    if (!converted)
        return false;
    // Non-blocking, so that opening a named pipe cannot wait for a writer; anything but a
    // regular file is refused before a byte is read.
    const int fd = ::open(converted->c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0)
        return false;
    struct stat st;
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        ::close(fd);
        return false;
    }
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
#ifdef POSIX_FADV_SEQUENTIAL
    ::posix_fadvise(fd, 0, 0, POSIX_FADV_SEQUENTIAL);
#endif
    const std::size_t size = std::max<std::size_t>(chunkBytes, 1);
    std::unique_ptr<char[]> buffer(new char[size]);
    bool ok = true;
    for (;;) {
        // Fill the whole piece when the file has that much, so that callers see pieces of
        // exactly chunkBytes except the last one.
        std::size_t used = 0;
        while (used < size) {
            const ssize_t got = ::read(fd, buffer.get() + used, size - used);
            if (got == 0)
                break;
            if (got < 0) {
                if (errno == EINTR)
                    continue;
                ok = false;
                break;
            }
            used += static_cast<std::size_t>(got);
        }
        if (!ok || used == 0)
            break;
        if (!each(std::string_view(buffer.get(), used)) || used < size)
            break;
    }
    ::close(fd);
    return ok;
}

bool AtomicFile::open(PathView path, std::string* error)
{
    abandon();
    auto fail = [&](const std::string& what, int err) {
        if (error) *error = what + ": " + errorText(err);
        return false;
    };
    const auto converted = toUtf8Path(path);
    if (!converted) return fail(toUtf8(path), EINVAL);
    const std::string& target = *converted;
    const std::string parent = parentOf(target);
    if (!createFolders(toUtf16Lossy(parent))) return fail(parent, errno ? errno : ENOTDIR);
    const std::string temp = target + ".tmp" + tempSuffix();
    const int fd = ::open(temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (fd < 0) return fail(temp, errno);
    struct stat old;
    if (::stat(target.c_str(), &old) == 0) ::fchmod(fd, old.st_mode & 07777);  // keep the file's permissions
    m_handle = fd;
    m_target = Path(path);
    m_temp = toUtf16Lossy(temp);
    return true;
}

bool AtomicFile::append(std::string_view bytes, std::string* error)
{
    if (m_handle == kClosed) return false;
    const int fd = static_cast<int>(m_handle);
    while (!bytes.empty()) {
        const ssize_t put = ::write(fd, bytes.data(), bytes.size());
        if (put < 0) {
            if (errno == EINTR) continue;
            if (error) *error = toUtf8(m_temp) + ": " + errorText(errno);
            abandon();
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(put));
    }
    return true;
}

bool AtomicFile::commit(std::string* error)
{
    if (m_handle == kClosed) return false;
    const std::string temp = toUtf8(m_temp);
    const std::string target = toUtf8(m_target);
    auto fail = [&](const std::string& what, int err) {
        if (error) *error = what + ": " + errorText(err);
        ::unlink(temp.c_str());
        m_handle = kClosed;
        return false;
    };
    const int fd = static_cast<int>(m_handle);
    if (::fsync(fd) != 0) {
        const int err = errno;
        ::close(fd);
        return fail(temp, err);
    }
    if (::close(fd) != 0) return fail(temp, errno);
    if (::rename(temp.c_str(), target.c_str()) != 0) return fail(target, errno);
    m_handle = kClosed;
    // Make the new name itself durable; failing here loses nothing already written.
    const int dirFd = ::open(parentOf(target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dirFd >= 0) {
        ::fsync(dirFd);
        ::close(dirFd);
    }
    if (error) error->clear();
    return true;
}

void AtomicFile::abandon()
{
    if (m_handle == kClosed) return;
    ::close(static_cast<int>(m_handle));
    ::unlink(toUtf8(m_temp).c_str());
    m_handle = kClosed;
}

bool writeFileAtomically(PathView path, std::string_view bytes, std::string* error)
{
    AtomicFile file;
    return file.open(path, error) && file.append(bytes, error) && file.commit(error);
}

bool removeFile(PathView path)
{
    const auto bytes = toUtf8Path(path);
    if (!bytes) return false;
    struct stat st;
    if (::lstat(bytes->c_str(), &st) != 0) return errno == ENOENT;
    if (S_ISDIR(st.st_mode)) return false;
    return ::unlink(bytes->c_str()) == 0;
}

bool setExecutable(PathView path)
{
    const auto bytes = toUtf8Path(path);
    struct stat st;
    if (!bytes || ::stat(bytes->c_str(), &st) != 0) return false;
    // Execute where read is allowed: u+x for r--, and so on for group and others.
    const mode_t readable = st.st_mode & (S_IRUSR | S_IRGRP | S_IROTH);
    return ::chmod(bytes->c_str(), (st.st_mode & 07777) | (readable >> 2)) == 0;
}

bool AppendFile::open(PathView path)
{
    close();
    const auto bytes = toUtf8Path(path);
    if (!bytes) return false;
    const int fd = ::open(bytes->c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
    if (fd < 0) return false;
    m_handle = fd;
    return true;
}

bool AppendFile::append(std::string_view bytes)
{
    if (!isOpen()) return false;
    while (!bytes.empty()) {
        const ssize_t put = ::write(static_cast<int>(m_handle), bytes.data(), bytes.size());
        if (put < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(put));
    }
    return true;
}

bool AppendFile::sync() { return isOpen() && ::fdatasync(static_cast<int>(m_handle)) == 0; }

void AppendFile::close()
{
    if (isOpen()) ::close(static_cast<int>(m_handle));
    m_handle = kClosed;
}

bool ReadOnlyFile::open(PathView path)
{
    close();
    const auto bytes = toUtf8Path(path);
    if (!bytes) return false;
    // Non-blocking, so that a named pipe cannot hold the open up; it is refused below.
    const int fd = ::open(bytes->c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) return false;
    struct stat st;
    if (::fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        ::close(fd);
        return false;
    }
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    m_handle = fd;
    m_size = static_cast<std::uint64_t>(st.st_size);
    return true;
}

void ReadOnlyFile::close()
{
    if (isOpen()) ::close(static_cast<int>(m_handle));
    m_handle = kClosed;
    m_size = 0;
}

std::int64_t ReadOnlyFile::readAt(std::uint64_t offset, void* buffer, std::size_t count) const
{
    if (!isOpen() || offset > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max())) return -1;
    std::size_t used = 0;
    while (used < count) {
        const ssize_t got = ::pread(static_cast<int>(m_handle), static_cast<char*>(buffer) + used, count - used,
                                    static_cast<off_t>(offset + used));
        if (got == 0) break;
        if (got < 0) {
            if (errno == EINTR) continue;
            return -1;
        }
        used += static_cast<std::size_t>(got);
    }
    return static_cast<std::int64_t>(used);
}

bool listNames(PathView folder, const std::function<void(PathView name, EntryKind kind)>& each)
{
    const auto bytes = toUtf8Path(folder);
    if (!bytes) return false;
    const int fd = ::open(bytes->c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return false;
    std::vector<char> buffer(64 * 1024);
    Path name;
    const bool ok = forEachName(fd, buffer, [&](const char* raw, unsigned char type) {
        name.clear();
        if (!appendUtf16(raw, name)) return;
        each(name, type == DT_DIR ? EntryKind::Folder : type == DT_REG ? EntryKind::File : EntryKind::Unknown);
    });
    ::close(fd);
    return ok;
}

Path executablePath()
{
    std::string buffer(256, '\0');
    for (;;) {
        const ssize_t got = ::readlink("/proc/self/exe", buffer.data(), buffer.size());
        if (got < 0) return {};
        if (static_cast<std::size_t>(got) < buffer.size()) {
            buffer.resize(static_cast<std::size_t>(got));
            return toUtf16Lossy(buffer);
        }
        buffer.resize(buffer.size() * 2);
    }
}

}  // namespace qp::platform

#endif  // _WIN32
