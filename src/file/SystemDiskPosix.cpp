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

/// The error to raise for a value of errno, after opening or changing `path` failed.
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

/// Owns a file descriptor and closes it.
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

/// The beginning of the names of this machine's temporary files. It contains the host name, because
/// machines may share a folder, and not every file system shows one machine the locks of another.
std::string temporaryPrefix() {
    std::array<char, HOST_NAME_MAX + 1> host{};
    ::gethostname(host.data(), HOST_NAME_MAX);
    return ".new-" + std::string(host.data()) + "-";
}

/// Locks an open file until it is closed; the end of the process closes it in any case (fcntl(2),
/// "Open file description locks"). Returns false and sets errno if another process has the lock, or
/// the file system has no locks.
bool lock(int file) {
    struct flock whole {};
    whole.l_type = F_WRLCK;
    return ::fcntl(file, F_OFD_SETLK, &whole) == 0;
}

/// Removes stale temporary files: those of processes that were killed while they saved. Nobody has
/// them locked. Errors are ignored, so that they do not fail a save.
void removeStaleTemporaries(const fs::path& folder) {
    const std::string prefix = temporaryPrefix();
    std::error_code failure;
    for (fs::directory_iterator each(folder, failure), end; !failure && each != end;
         each.increment(failure)) {
        if (!each->path().filename().native().starts_with(prefix)) continue;
        const File file(::open(each->path().c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
        if (lock(file.descriptor())) ::unlink(each->path().c_str());
    }
}

struct stat statusOf(int file, const fs::path& path) {
    struct stat status {};
    if (::fstat(file, &status) != 0) throw errorFor(errno, path);
    return status;
}

/// A new file with a unique name, locked if the file system has locks. The destructor removes it
/// unless keep() was called. The name does not contain that of the target, which may already have
/// the maximum length.
class TemporaryFile {
 public:
    TemporaryFile(const fs::path& folder, mode_t mode) {
        std::random_device random;
        // Until the file is locked, another process may take it for stale and remove it.
        constexpr int maxTries = 16;
        for (int tries = 0; tries < maxTries; ++tries) {
            path_ = folder / (temporaryPrefix() + std::to_string(random()));
            file_ = File(::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
            if (file_.descriptor() < 0) throw errorFor(errno, path_);
            struct stat status {};
            const bool isLocked = lock(file_.descriptor());
            const bool isRemoved =
                isLocked ? ::fstat(file_.descriptor(), &status) == 0 && status.st_nlink == 0
                         : errno == EAGAIN;
            if (!isRemoved) return;
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

/// Follows a chain of symbolic links to its end. The file there need not exist.
fs::path followLinks(fs::path path) {
    constexpr int maxLinks = 40;  // the limit of Linux
    for (int links = 0; links <= maxLinks; ++links) {
        std::error_code notALink;
        const fs::path next = fs::read_symlink(path, notALink);
        if (notALink) return path;
        path = path.parent_path() / next;
    }
    throw RunTimeError(ErrorNumber::pathFileAccessError);
}

/// The status of the file to be replaced, or nothing if there is none. Raises an error for a target
/// that is not a regular file or must not be written.
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

/// Returns what `call` writes into a buffer: the value of an extended attribute, or the names of
/// all. Returns nothing and sets errno if the call fails.
template <typename Call>
std::optional<std::string> attribute(const Call& call) {
    std::string value(XATTR_SIZE_MAX, '\0');
    const ssize_t length = call(value.data(), value.size());
    if (length < 0) return std::nullopt;
    value.resize(static_cast<std::size_t>(length));
    return value;
}

/// Copies the access list of the old file. Without one, removes the list that the file may have
/// inherited from its folder: it could grant rights that the old file did not grant.
void copyAccessList(const fs::path& old, int file) {
    constexpr const char* accessList = "system.posix_acl_access";
    const auto list = attribute([&](char* value, std::size_t size) {
        return ::getxattr(old.c_str(), accessList, value, size);
    });
    if (!list && errno != ENODATA && errno != ENOTSUP) throw errorFor(errno, old);
    const int result = list ? ::fsetxattr(file, accessList, list->data(), list->size(), 0)
                            : ::fremovexattr(file, accessList);
    if (result != 0 && (list || (errno != ENODATA && errno != ENOTSUP))) throw errorFor(errno, old);
}

/// Copies the attributes that users attached to the old file. Errors are ignored: no program needs
/// them to read the file.
void copyUserAttributes(const fs::path& old, int file) {
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

/// Copies owner, group and rights of the old file. Only root can set another owner. Where that
/// fails, at least the group is set, as its members could lose their access. Raises an error if
/// that fails too, unless the group has the same rights as all others. Properties that are already
/// equal are not set, because not every file system can set them.
void copyRights(const fs::path& old, const struct stat& before, int file) {
    struct stat status = statusOf(file, old);
    const bool groupHasOwnRights = ((before.st_mode ^ (before.st_mode >> 3U)) & 7U) != 0;
    if ((status.st_uid != before.st_uid || status.st_gid != before.st_gid) &&
        ::fchown(file, before.st_uid, before.st_gid) != 0 && status.st_gid != before.st_gid &&
        ::fchown(file, static_cast<uid_t>(-1), before.st_gid) != 0 && groupHasOwnRights) {
        throw errorFor(errno, old);
    }
    copyAccessList(old, file);
    copyUserAttributes(old, file);
    status = statusOf(file, old);
    mode_t mode = before.st_mode & 07777U;
    // The set-user-ID and set-group-ID bits are valid only for the old owner and group.
    if (status.st_uid != before.st_uid || status.st_gid != before.st_gid) mode &= 0777U;
    if ((status.st_mode & 07777U) != mode && ::fchmod(file, mode) != 0) throw errorFor(errno, old);
}

/// Flushes the folder, so that the new name is on the disk too. Errors are ignored: not every file
/// system can flush a folder, and the bytes of the file are already on the disk.
void flushFolder(const fs::path& folder) {
    const File file(::open(folder.c_str(), O_RDONLY | O_CLOEXEC | O_DIRECTORY));
    if (file.descriptor() >= 0) static_cast<void>(::fsync(file.descriptor()));
}

/// Renames the file to the target. A network file system may report a failure although it renamed
/// the file: the answer was lost, and when asked again the server did not find the old name. So
/// after a failure this checks whether the target is our file.
void renameToTarget(const TemporaryFile& file, const fs::path& target) {
    if (::rename(file.path().c_str(), target.c_str()) == 0) return;
    const auto error = errorFor(errno, target);
    struct stat present {};
    const struct stat ours = statusOf(file.descriptor(), target);
    if (::lstat(target.c_str(), &present) != 0 || present.st_dev != ours.st_dev ||
        present.st_ino != ours.st_ino) {
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
        // Only a regular file has an end for sure; a pipe or a device may have none.
        if (!S_ISREG(status.st_mode)) throw RunTimeError(ErrorNumber::pathFileAccessError);
        const auto size = static_cast<std::uint64_t>(status.st_size);
        if (size > maxBytesRead) throw RunTimeError(ErrorNumber::outOfMemory);
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
        removeStaleTemporaries(folder);

        // No other user may read it before it has the rights of the old file.
        TemporaryFile temporary(folder, old ? 0600U : 0666U);
        const int file = temporary.descriptor();
        contents([&](std::string_view bytes) { writeAll(file, bytes, target); });
        if (old) copyRights(target, *old, file);
        if (::fsync(file) != 0) throw errorFor(errno, target);
        renameToTarget(temporary, target);
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
    // Without this, exceeding a limit on file sizes would end the program. Now it is reported like
    // a full disk.
    ::signal(SIGXFSZ, SIG_IGN);
    return std::make_unique<PosixDisk>();
}
