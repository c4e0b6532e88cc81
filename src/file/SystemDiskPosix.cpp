// The disk of Linux.

#include <fcntl.h>
#include <linux/limits.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
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
    File(File&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() {
        if (descriptor_ >= 0) ::close(descriptor_);
    }

    int descriptor() const { return descriptor_; }

 private:
    int descriptor_;
};

/// How the names begin of the files that this machine's processes write before they take another's
/// place; the number of the process follows. Machines that share a folder have names of their own.
std::string temporaryPrefix() {
    std::array<char, HOST_NAME_MAX + 1> host{};
    ::gethostname(host.data(), HOST_NAME_MAX);
    return ".new-" + std::string(host.data()) + "-";
}

/// A name that no other file has. Not made from the target's: that may be as long as names can be.
std::string temporaryName() {
    return temporaryPrefix() + std::to_string(::getpid()) + "-" +
           std::to_string(std::random_device()());
}

/// True for what a process of this machine left that was killed while it saved.
bool isLeftByTheDead(std::string_view name) {
    const std::string prefix = temporaryPrefix();
    if (!name.starts_with(prefix)) return false;
    pid_t process = 0;
    unsigned number = 0;
    const char* const end = name.data() + name.size();
    const auto dash = std::from_chars(name.data() + prefix.size(), end, process);
    if (dash.ec != std::errc() || dash.ptr == end || *dash.ptr != '-' || process <= 0) return false;
    const auto rest = std::from_chars(dash.ptr + 1, end, number);
    return rest.ec == std::errc() && rest.ptr == end && ::kill(process, 0) != 0 && errno == ESRCH;
}

/// Nothing here is worth failing a save.
void removeWhatTheDeadLeft(const fs::path& folder) {
    std::error_code failure;
    for (fs::directory_iterator each(folder, failure), end; !failure && each != end;
         each.increment(failure)) {
        if (isLeftByTheDead(each->path().filename().native())) ::unlink(each->path().c_str());
    }
}

/// Removes a file unless it has been kept.
class TemporaryFile {
 public:
    explicit TemporaryFile(fs::path path) : path_(std::move(path)) {}
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (!path_.empty()) ::unlink(path_.c_str());
    }

    const fs::path& path() const { return path_; }
    void keep() { path_.clear(); }

 private:
    fs::path path_;
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

struct stat statusOf(int file, const fs::path& path) {
    struct stat status {};
    if (::fstat(file, &status) != 0) throw errorFor(errno, path);
    return status;
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

class PosixDisk : public Disk {
 public:
    bool exists(const std::string& path) override {
        struct stat status {};
        return ::stat(path.c_str(), &status) == 0;
    }

    std::optional<FileStamp> stampOf(const std::string& path) override {
        struct stat status {};
        if (::stat(path.c_str(), &status) != 0) return std::nullopt;
        return FileStamp{
            static_cast<std::uint64_t>(status.st_size),
            status.st_mtim.tv_sec * std::int64_t{1'000'000'000} + status.st_mtim.tv_nsec};
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

        TemporaryFile temporary(folder / temporaryName());
        const mode_t mode = old ? 0600U : 0666U;  // nobody else's until it has the old one's rights
        const File file(
            ::open(temporary.path().c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
        if (file.descriptor() < 0) {
            const auto error = errorFor(errno, temporary.path());
            temporary.keep();  // it is not ours
            throw error;
        }
        contents([&](std::string_view bytes) { writeAll(file.descriptor(), bytes, target); });
        if (old) carryRights(target, *old, file.descriptor());
        if (::fsync(file.descriptor()) != 0) throw errorFor(errno, target);
        if (::rename(temporary.path().c_str(), target.c_str()) != 0) {
            throw errorFor(errno, target);
        }
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
