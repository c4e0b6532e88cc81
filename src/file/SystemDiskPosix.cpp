// The disk of Linux and other POSIX systems.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <optional>
#include <random>
#include <system_error>
#include <utility>

#include "file/Disk.h"
#include "model/RunTimeError.h"

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
    File& operator=(File&&) = delete;
    ~File() {
        if (descriptor_ >= 0) ::close(descriptor_);
    }

    int descriptor() const { return descriptor_; }

 private:
    int descriptor_;
};

/// Removes a file unless it has been kept.
class TemporaryFile {
 public:
    explicit TemporaryFile(fs::path path) : path_(std::move(path)) {}
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    TemporaryFile(TemporaryFile&&) = delete;
    TemporaryFile& operator=(TemporaryFile&&) = delete;
    ~TemporaryFile() {
        if (!path_.empty()) ::unlink(path_.c_str());
    }

    const fs::path& path() const { return path_; }
    void keep() { path_.clear(); }

 private:
    fs::path path_;
};

/// Only a regular file can be read whole: a pipe or a device may never end.
File openToRead(const std::string& path, struct stat& status) {
    File file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (file.descriptor() < 0 || ::fstat(file.descriptor(), &status) != 0) {
        throw errorFor(errno, path);
    }
    if (!S_ISREG(status.st_mode)) throw RunTimeError(ErrorNumber::pathFileAccessError);
    return file;
}

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

    void requireReadable(const std::string& path) override {
        struct stat status {};
        openToRead(path, status);
    }

    std::string read(const std::string& path) override {
        struct stat status {};
        const File file = openToRead(path, status);
        std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
        std::size_t length = 0;
        while (length < bytes.size()) {
            const auto got =
                ::read(file.descriptor(), bytes.data() + length, bytes.size() - length);
            if (got < 0 && errno == EINTR) continue;
            if (got < 0) throw errorFor(errno, path);
            if (got == 0) break;
            length += static_cast<std::size_t>(got);
        }
        bytes.resize(length);
        return bytes;
    }

    void replace(const std::string& path, std::string_view bytes) override {
        const fs::path target = followLinks(path);
        const auto old = statusOfTarget(target);
        const fs::path folder = target.has_parent_path() ? target.parent_path() : ".";

        TemporaryFile temporary(folder / temporaryName());
        const mode_t mode = old ? old->st_mode & 0777U : 0666U;  // never wider than the old file's
        const File file(
            ::open(temporary.path().c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
        if (file.descriptor() < 0) {
            const auto error = errorFor(errno, temporary.path());
            temporary.keep();  // it is not ours
            throw error;
        }
        writeAll(file.descriptor(), bytes, target);
        if (old) {
            // Best effort: only the owner or root may give a file away.
            static_cast<void>(::fchown(file.descriptor(), old->st_uid, old->st_gid) == 0);
            if (::fchmod(file.descriptor(), old->st_mode & 07777) != 0) {
                throw errorFor(errno, target);
            }
        }
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

 private:
    /// A name that no other file has. Not made from the target's: that may be as long as names
    /// can be.
    static std::string temporaryName() {
        return ".new-" + std::to_string(::getpid()) + "-" + std::to_string(std::random_device()());
    }
};

}  // namespace

std::unique_ptr<Disk> systemDisk() {
    // A limit on the size of files is then reported like a full disk, and does not end the
    // program.
    ::signal(SIGXFSZ, SIG_IGN);
    return std::make_unique<PosixDisk>();
}
