// The disk of Linux.

#include <fcntl.h>
#include <linux/limits.h>
#include <sys/stat.h>
#include <sys/utsname.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <span>
#include <system_error>
#include <utility>
#include <vector>

#include "base/RunTimeError.h"
#include "file/Disk.h"

namespace {

namespace fs = std::filesystem;

fs::path folderOf(const fs::path& path) {
    return path.has_parent_path() ? path.parent_path() : ".";
}

/// The error to raise for a value of errno, after opening or changing `path` failed.
RunTimeError errorFor(int code, const fs::path& path) {
    switch (code) {
        case ENOENT: {
            std::error_code ignored;
            const bool isFolderThere = fs::is_directory(folderOf(path), ignored);
            return RunTimeError(isFolderThere ? ErrorNumber::fileNotFound
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

/// Returns the result of a call of the system for `path`. Raises an error if the call failed.
template <typename Result>
Result checked(Result result, const fs::path& path) {
    if (result < 0) throw errorFor(errno, path);
    return result;
}

/// Calls a function of the system that reads or writes, again if a signal interrupts it. Returns
/// the number of bytes.
template <typename Call>
std::size_t transferred(const Call& call, const fs::path& path) {
    ssize_t bytes = 0;
    do {
        bytes = call();
    } while (bytes < 0 && errno == EINTR);
    return static_cast<std::size_t>(checked(bytes, path));
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
    struct utsname machine {};
    ::uname(&machine);
    return ".new-" + std::string(machine.nodename) + "-";
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
    std::error_code ignored;  // it ends the loop
    for (fs::directory_iterator each(folder, ignored), end; each != end; each.increment(ignored)) {
        if (!each->path().filename().native().starts_with(prefix)) continue;
        const File file(::open(each->path().c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
        if (lock(file.descriptor())) ::unlink(each->path().c_str());
    }
}

struct stat statusOf(int file, const fs::path& path) {
    struct stat status {};
    checked(::fstat(file, &status), path);
    return status;
}

/// A new file with a unique name, locked if the file system has locks. The destructor removes it
/// unless it was renamed. The name does not contain that of the target, which may already have the
/// maximum length.
class TemporaryFile {
 public:
    TemporaryFile(const fs::path& folder, mode_t mode) {
        std::random_device random;
        // Until the file is locked, another process may take it for stale and remove it.
        constexpr int maxTries = 16;
        for (int tries = 0; tries < maxTries; ++tries) {
            path_ = folder / (temporaryPrefix() + std::to_string(random()));
            constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
            file_ = File(checked(::open(path_.c_str(), flags, mode), path_));
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
    ~TemporaryFile() { ::unlink(path_.c_str()); }

    const fs::path& path() const { return path_; }
    int descriptor() const { return file_.descriptor(); }

 private:
    fs::path path_;
    File file_{-1};
};

/// Follows a chain of symbolic links to its end. The file there need not exist.
fs::path followLinks(fs::path path) {
    for (std::set<fs::path> followed; followed.insert(path).second;) {
        std::error_code notALink;
        const fs::path next = fs::read_symlink(path, notALink);
        if (notALink) return path;
        path = path.parent_path() / next;
    }
    throw RunTimeError(ErrorNumber::pathFileAccessError);  // the links form a circle
}

/// The status of the file at the path, after links. Returns nothing and sets errno if it fails.
std::optional<struct stat> statusAt(const fs::path& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? std::optional(status) : std::nullopt;
}

/// Only a regular file has an end for sure; a pipe or a device may have none.
void requireRegular(const struct stat& status) {
    if (!S_ISREG(status.st_mode)) throw RunTimeError(ErrorNumber::pathFileAccessError);
}

/// The status of the file to be replaced, or nothing if there is none. Raises an error for a target
/// that is not a regular file or must not be written.
std::optional<struct stat> statusOfTarget(const fs::path& target) {
    const auto status = statusAt(target);
    if (!status && errno == ENOENT) return std::nullopt;
    if (!status) throw errorFor(errno, target);
    requireRegular(*status);
    checked(::access(target.c_str(), W_OK), target);
    return status;
}

void writeAll(int descriptor, std::string_view bytes, const fs::path& path) {
    while (!bytes.empty()) {
        bytes.remove_prefix(
            transferred([&] { return ::write(descriptor, bytes.data(), bytes.size()); }, path));
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

/// After a failed call: true if there is no such attribute, or the file system has none at all.
bool isAttributeMissing() { return errno == ENODATA || errno == ENOTSUP; }

/// Copies the access list of the old file. Without one, removes the list that the file may have
/// inherited from its folder: it could grant rights that the old file did not grant.
void copyAccessList(const fs::path& old, int file) {
    constexpr const char* accessList = "system.posix_acl_access";
    const auto list = attribute([&](char* value, std::size_t size) {
        return ::getxattr(old.c_str(), accessList, value, size);
    });
    if (!list && !isAttributeMissing()) throw errorFor(errno, old);
    const int result = list ? ::fsetxattr(file, accessList, list->data(), list->size(), 0)
                            : ::fremovexattr(file, accessList);
    if (list || !isAttributeMissing()) checked(result, old);
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
    constexpr auto owners = [](const struct stat& of) { return std::pair(of.st_uid, of.st_gid); };
    const bool groupHasOwnRights = ((before.st_mode ^ (before.st_mode >> 3U)) & 7U) != 0;
    const auto setOwner = [&](uid_t owner) { return ::fchown(file, owner, before.st_gid); };
    if (owners(statusOf(file, old)) != owners(before)) setOwner(before.st_uid);
    if (statusOf(file, old).st_gid != before.st_gid) {
        const int result = setOwner(static_cast<uid_t>(-1));
        if (groupHasOwnRights) checked(result, old);
    }
    copyAccessList(old, file);
    copyUserAttributes(old, file);
    const struct stat status = statusOf(file, old);
    mode_t mode = before.st_mode & 07777U;
    // The set-user-ID and set-group-ID bits are valid only for the old owner and group.
    if (owners(status) != owners(before)) mode &= 0777U;
    if ((status.st_mode & 07777U) != mode) checked(::fchmod(file, mode), old);
}

/// Flushes the folder, so that the new name is on the disk too. Errors are ignored: not every file
/// system can flush a folder, and the bytes of the file are already on the disk.
void flushFolder(const fs::path& folder) {
    const File file(::open(folder.c_str(), O_RDONLY | O_CLOEXEC | O_DIRECTORY));
    static_cast<void>(::fsync(file.descriptor()));
}

/// Renames the file to the target. A network file system may report a failure although it renamed
/// the file: the answer was lost, and when asked again the server did not find the old name. So
/// after a failure this checks whether the target is our file.
void renameToTarget(const TemporaryFile& file, const fs::path& target) {
    constexpr auto idOf = [](const struct stat& of) { return std::pair(of.st_dev, of.st_ino); };
    try {
        checked(::rename(file.path().c_str(), target.c_str()), target);
    } catch (const RunTimeError&) {
        const struct stat ours = statusOf(file.descriptor(), target);
        struct stat present {};  // stays so if there is no target
        ::lstat(target.c_str(), &present);
        if (idOf(present) != idOf(ours)) throw;
    }
}

class PosixDisk : public Disk {
 public:
    bool exists(const std::string& path) override { return statusAt(path).has_value(); }

    std::optional<FileStamp> stampOf(const std::string& path) override {
        const auto status = statusAt(path);
        if (!status) return std::nullopt;
        const auto nanoseconds = [](const timespec& time) {
            return (std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec))
                .count();
        };
        return FileStamp{static_cast<std::uint64_t>(status->st_size), nanoseconds(status->st_mtim),
                         status->st_ino, nanoseconds(status->st_ctim)};
    }

    InputFile openToRead(const std::string& path) override {
        const auto file = std::make_shared<File>(
            checked(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK), path));
        const struct stat status = statusOf(file->descriptor(), path);
        requireRegular(status);
        const auto size = static_cast<std::uint64_t>(status.st_size);
        if (size > maxBytesRead) throw RunTimeError(ErrorNumber::outOfMemory);
        return {size, [file, path](char* to, std::size_t bytes) {
                    std::span rest(to, bytes);
                    const auto readMore = [&] {
                        return ::read(file->descriptor(), rest.data(), rest.size());
                    };
                    while (const std::size_t got = transferred(readMore, path))
                        rest = rest.subspan(got);
                    return bytes - rest.size();
                }};
    }

    void replace(const std::string& path,
                 const std::function<void(const Write&)>& contents) override {
        const fs::path target = followLinks(path);
        const auto old = statusOfTarget(target);
        const fs::path folder = folderOf(target);
        removeStaleTemporaries(folder);

        // No other user may read it before it has the rights of the old file.
        TemporaryFile temporary(folder, old ? 0600U : 0666U);
        const int file = temporary.descriptor();
        contents([&](std::string_view bytes) { writeAll(file, bytes, target); });
        if (old) copyRights(target, *old, file);
        if (::fsync(file) != 0) throw errorFor(errno, target);
        renameToTarget(temporary, target);
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
