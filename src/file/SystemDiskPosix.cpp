// The disk of Linux.

#include <fcntl.h>
#include <linux/limits.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <memory>
#include <optional>
#include <random>
#include <system_error>
#include <utility>
#include <vector>

#include "base/RunTimeError.h"
#include "file/Disk.h"

namespace {

namespace fs = std::filesystem;

/// The error for `errno` when opening or changing `path`.
RunTimeError errorFor(int code, const fs::path& path) {
    switch (code) {
        case ENOENT: {
            std::error_code ignored;
            const bool folderThere =
                !path.has_parent_path() || fs::is_directory(path.parent_path(), ignored);
            return RunTimeError(folderThere ? ErrorNumber::fileNotFound
                                            : ErrorNumber::pathNotFound);
        }
        case ENOTDIR: return RunTimeError(ErrorNumber::pathNotFound);
        case EACCES:
        case EPERM:
        case EROFS: return RunTimeError(ErrorNumber::permissionDenied);
        case ENOSPC:
        case EDQUOT:
        case EFBIG: return RunTimeError(ErrorNumber::diskFull);
        default: return RunTimeError(ErrorNumber::pathFileAccessError);
    }
}

/// A file descriptor that is closed with it.
class File {
 public:
    explicit File(int descriptor) : descriptor_(descriptor) {}
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    File(File&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    File& operator=(File&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~File() {
        if (descriptor_ >= 0) ::close(descriptor_);
    }

    int descriptor() const { return descriptor_; }

 private:
    int descriptor_;
};

/// How the names begin of the files that this machine writes before they take another's place.
/// Machines that share a folder have names of their own: not all file systems show one machine the
/// locks of another.
std::string temporaryPrefix() {
    std::array<char, HOST_NAME_MAX + 1> host{};
    ::gethostname(host.data(), HOST_NAME_MAX);
    return ".new-" + std::string(host.data()) + "-";
}

/// Locks an open file until it is closed, at the latest when its process ends, whatever kills it
/// (fcntl(2), "Open file description locks"). False, and `errno`, where another has the lock, or
/// the file system has none.
bool lock(int file) {
    struct flock whole {};
    whole.l_type = F_WRLCK;
    return ::fcntl(file, F_OFD_SETLK, &whole) == 0;
}

/// Removes what was left by processes that were killed while they saved: what nobody has locked.
/// Nothing here is worth failing a save.
void removeWhatTheDeadLeft(const fs::path& folder) {
    const std::string prefix = temporaryPrefix();
    std::error_code failure;
    for (fs::directory_iterator each(folder, failure), end; !failure && each != end;
         each.increment(failure)) {
        if (!each->path().filename().native().starts_with(prefix)) continue;
        const File file(::open(each->path().c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
        if (file.descriptor() >= 0 && lock(file.descriptor())) ::unlink(each->path().c_str());
    }
}

struct stat statusOf(int file, const fs::path& path) {
    struct stat status {};
    if (::fstat(file, &status) != 0) throw errorFor(errno, path);
    return status;
}

/// A new file of a name that no other has, removed unless it has been kept. Not named after the
/// target: its name may be as long as names can be.
class TemporaryFile {
 public:
    TemporaryFile(const fs::path& folder, mode_t mode) {
        std::random_device random;
        // Before it is locked it may pass for one that the dead left, and be gone.
        constexpr int mostTries = 16;
        for (int tries = 0; tries < mostTries; ++tries) {
            path_ = folder / (temporaryPrefix() + std::to_string(random()));
            file_ = File(::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
            if (file_.descriptor() < 0) throw errorFor(errno, path_);
            struct stat status {};
            const bool isLocked = lock(file_.descriptor());
            const bool isGone =
                isLocked ? ::fstat(file_.descriptor(), &status) == 0 && status.st_nlink == 0
                         : errno == EAGAIN;
            if (!isGone) return;
        }
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (!path_.empty()) ::unlink(path_.c_str());
    }

    const fs::path& path() const { return path_; }
    int descriptor() const { return file_.descriptor(); }
    void keep() { path_.clear(); }

 private:
    fs::path path_;
    File file_{-1};
};

/// Where a chain of symbolic links ends; the file there need not exist.
fs::path followLinks(fs::path path) {
    constexpr int mostLinks = 40;  // as many as Linux itself follows
    for (int links = 0; links < mostLinks; ++links) {
        std::error_code notALink;
        const fs::path next = fs::read_symlink(path, notALink);
        if (notALink) return path;
        path = path.parent_path() / next;
    }
    throw RunTimeError(ErrorNumber::pathFileAccessError);
}

/// The status of the file to be replaced, if there is one; refuses what must not be replaced.
std::optional<struct stat> statusOfTarget(const fs::path& target) {
    struct stat status {};
    if (::stat(target.c_str(), &status) != 0) {
        if (errno == ENOENT) return std::nullopt;
        throw errorFor(errno, target);
    }
    if (!S_ISREG(status.st_mode)) throw RunTimeError(ErrorNumber::pathFileAccessError);
    if (::access(target.c_str(), W_OK) != 0) throw errorFor(errno, target);
    return status;
}

void writeAll(int descriptor, std::string_view bytes, const fs::path& path) {
    while (!bytes.empty()) {
        const auto written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) throw errorFor(errno, path);
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

/// The answer of a call that fills a buffer with an extended attribute, or with their names;
/// nothing, and `errno`, where there is none.
template <typename Call>
std::optional<std::string> attribute(const Call& call) {
    std::string value(XATTR_SIZE_MAX, '\0');
    const ssize_t length = call(value.data(), value.size());
    if (length < 0) return std::nullopt;
    value.resize(static_cast<std::size_t>(length));
    return value;
}

/// Gives the file the access list of the old one. A list that the folder gives to its new files
/// goes: it would let others in.
void carryAccessList(const fs::path& old, int file) {
    constexpr const char* accessList = "system.posix_acl_access";
    const auto list = attribute([&](char* value, std::size_t size) {
        return ::getxattr(old.c_str(), accessList, value, size);
    });
    if (!list && errno != ENODATA && errno != ENOTSUP) throw errorFor(errno, old);
    const int result = list ? ::fsetxattr(file, accessList, list->data(), list->size(), 0)
                            : ::fremovexattr(file, accessList);
    if (result != 0 && (list || (errno != ENODATA && errno != ENOTSUP))) throw errorFor(errno, old);
}

/// Best effort: what users attach to a file decides nothing.
void carryUserAttributes(const fs::path& old, int file) {
    const auto names = attribute(
        [&](char* value, std::size_t size) { return ::listxattr(old.c_str(), value, size); });
    for (std::size_t i = 0; names && i < names->size(); i = names->find('\0', i) + 1) {
        const char* const name = names->data() + i;
        if (!std::string_view(name).starts_with("user.")) continue;
        const auto value = attribute([&](char* buffer, std::size_t size) {
            return ::getxattr(old.c_str(), name, buffer, size);
        });
        if (value) static_cast<void>(::fsetxattr(file, name, value->data(), value->size(), 0));
    }
}

/// Gives the file owner, group and rights of the old one. Only root may give a file away; where
/// the owner cannot be kept, the group is, or it would be locked out, unless it may just what
/// others may. What is right already is not set: not every file system can.
void carryRights(const fs::path& old, const struct stat& before, int file) {
    struct stat status = statusOf(file, old);
    const bool theGroupMatters = ((before.st_mode ^ (before.st_mode >> 3U)) & 7U) != 0;
    if ((status.st_uid != before.st_uid || status.st_gid != before.st_gid) &&
        ::fchown(file, before.st_uid, before.st_gid) != 0 && status.st_gid != before.st_gid &&
        ::fchown(file, static_cast<uid_t>(-1), before.st_gid) != 0 && theGroupMatters) {
        throw errorFor(errno, old);
    }
    carryAccessList(old, file);
    carryUserAttributes(old, file);
    status = statusOf(file, old);
    mode_t mode = before.st_mode & 07777U;
    // To act as its owner, or its group, was granted by the old owner.
    if (status.st_uid != before.st_uid || status.st_gid != before.st_gid) mode &= 0777U;
    if ((status.st_mode & 07777U) != mode && ::fchmod(file, mode) != 0) throw errorFor(errno, old);
}

/// So that the new name is on the disk too. Not every file system lets a folder be flushed; the
/// file itself is safe by then.
void flushFolder(const fs::path& folder) {
    const File file(::open(folder.c_str(), O_RDONLY | O_CLOEXEC | O_DIRECTORY));
    if (file.descriptor() >= 0) static_cast<void>(::fsync(file.descriptor()));
}

/// A file system of a network may have renamed the file and tell of a failure all the same: the
/// answer was lost, and asked again the server found no such file any more.
void takePlace(const TemporaryFile& file, const fs::path& target) {
    if (::rename(file.path().c_str(), target.c_str()) == 0) return;
    const auto error = errorFor(errno, target);
    struct stat there {};
    const struct stat ours = statusOf(file.descriptor(), target);
    if (::lstat(target.c_str(), &there) != 0 || there.st_dev != ours.st_dev ||
        there.st_ino != ours.st_ino) {
        throw error;
    }
}

class PosixDisk : public Disk {
 public:
    bool exists(const std::string& path) override {
        struct stat status {};
        return ::stat(path.c_str(), &status) == 0;
    }

    std::optional<FileStamp> stampOf(const std::string& path) override {
        struct stat status {};
        if (::stat(path.c_str(), &status) != 0) return std::nullopt;
        const auto nanoseconds = [](const timespec& time) {
            return time.tv_sec * std::int64_t{1'000'000'000} + time.tv_nsec;
        };
        return FileStamp{static_cast<std::uint64_t>(status.st_size), nanoseconds(status.st_mtim),
                         status.st_ino, nanoseconds(status.st_ctim)};
    }

    InputFile openToRead(const std::string& path) override {
        const auto file =
            std::make_shared<File>(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
        struct stat status {};
        if (file->descriptor() < 0 || ::fstat(file->descriptor(), &status) != 0) {
            throw errorFor(errno, path);
        }
        // A pipe or a device may never end.
        if (!S_ISREG(status.st_mode)) throw RunTimeError(ErrorNumber::pathFileAccessError);
        const auto size = static_cast<std::uint64_t>(status.st_size);
        if (size > mostBytesRead) throw RunTimeError(ErrorNumber::outOfMemory);
        return {size, [file, path](char* to, std::size_t bytes) {
                    std::size_t done = 0;
                    while (done < bytes) {
                        const auto got = ::read(file->descriptor(), to + done, bytes - done);
                        if (got < 0 && errno == EINTR) continue;
                        if (got < 0) throw errorFor(errno, path);
                        if (got == 0) break;
                        done += static_cast<std::size_t>(got);
                    }
                    return done;
                }};
    }

    void replace(const std::string& path,
                 const std::function<void(const Write&)>& contents) override {
        const fs::path target = followLinks(path);
        const auto old = statusOfTarget(target);
        const fs::path folder = target.has_parent_path() ? target.parent_path() : ".";
        removeWhatTheDeadLeft(folder);

        // Nobody else's until it has the old one's rights.
        TemporaryFile temporary(folder, old ? 0600U : 0666U);
        const int file = temporary.descriptor();
        contents([&](std::string_view bytes) { writeAll(file, bytes, target); });
        if (old) carryRights(target, *old, file);
        if (::fsync(file) != 0) throw errorFor(errno, target);
        takePlace(temporary, target);
        temporary.keep();
        flushFolder(folder);
    }

    void createFolders(const std::string& path) override {
        std::error_code failure;
        fs::create_directories(path, failure);
        if (failure) throw errorFor(failure.value(), path);
    }
};

}  // namespace

std::unique_ptr<Disk> systemDisk() {
    // A limit on the size of files is then reported like a full disk, and does not end the
    // program.
    ::signal(SIGXFSZ, SIG_IGN);
    return std::make_unique<PosixDisk>();
}
