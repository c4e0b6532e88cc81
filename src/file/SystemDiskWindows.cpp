// The disk of Windows.

#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <system_error>
#include <vector>

#include "base/RunTimeError.h"
#include "file/Disk.h"

namespace {

namespace fs = std::filesystem;

bool isFolder(const fs::path& path) {
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

/// The error for GetLastError() when opening or changing `path`.
RunTimeError errorFor(DWORD code, const fs::path& path) {
    switch (code) {
        case ERROR_FILE_NOT_FOUND: return RunTimeError(ErrorNumber::fileNotFound);
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_DRIVE:
        case ERROR_NOT_READY:
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_NET_NAME: return RunTimeError(ErrorNumber::pathNotFound);
        case ERROR_ACCESS_DENIED:
            // The answer to opening a folder too.
            if (isFolder(path)) return RunTimeError(ErrorNumber::pathFileAccessError);
            return RunTimeError(ErrorNumber::permissionDenied);
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
        case ERROR_WRITE_PROTECT:
        case ERROR_UNABLE_TO_REMOVE_REPLACED: return RunTimeError(ErrorNumber::permissionDenied);
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL: return RunTimeError(ErrorNumber::diskFull);
        default: return RunTimeError(ErrorNumber::pathFileAccessError);
    }
}

/// The full path in the form that may be longer than 260 characters on every Windows.
fs::path pathOf(const std::string& utf8) {
    const fs::path path(std::u8string(utf8.begin(), utf8.end()));
    std::error_code failure;
    const fs::path absolute = fs::absolute(path, failure);
    if (failure) return path;
    std::wstring full = absolute.native();
    std::ranges::replace(full, L'/', L'\\');
    if (full.starts_with(LR"(\\?\)") || full.starts_with(LR"(\\.\)")) return full;
    if (full.starts_with(LR"(\\)")) return LR"(\\?\UNC\)" + full.substr(2);
    return LR"(\\?\)" + full;
}

/// A handle that is closed with it.
class File {
 public:
    /// `sharing` is what others may do with the file meanwhile.
    File(const fs::path& path, DWORD access, DWORD sharing, DWORD creation, DWORD flags = 0)
        : handle_(::CreateFileW(path.c_str(), access, sharing, nullptr, creation, flags, nullptr)) {
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() {
        if (isOpen()) ::CloseHandle(handle_);
    }

    bool isOpen() const { return handle_ != INVALID_HANDLE_VALUE; }
    HANDLE handle() const { return handle_; }

 private:
    HANDLE handle_;
};

constexpr DWORD everything = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// Only a file on a disk can be read whole: a pipe or a port may never end.
void requireFile(const File& file, const fs::path& path) {
    if (!file.isOpen()) throw errorFor(::GetLastError(), path);
    if (::GetFileType(file.handle()) != FILE_TYPE_DISK) {
        throw RunTimeError(ErrorNumber::pathFileAccessError);
    }
}

constexpr DWORD mostBytesAtOnce = 1U << 30U;

/// A new file, on the disk when the function ends.
void write(const fs::path& path, const std::function<void(const Write&)>& contents) {
    const File file(path, GENERIC_WRITE, 0, CREATE_NEW);
    if (!file.isOpen()) throw errorFor(::GetLastError(), path);
    contents([&](std::string_view bytes) {
        while (!bytes.empty()) {
            DWORD written = 0;
            const auto piece =
                static_cast<DWORD>(std::min<std::size_t>(bytes.size(), mostBytesAtOnce));
            if (::WriteFile(file.handle(), bytes.data(), piece, &written, nullptr) == 0) {
                throw errorFor(::GetLastError(), path);
            }
            bytes.remove_prefix(written);
        }
    });
    if (::FlushFileBuffers(file.handle()) == 0) throw errorFor(::GetLastError(), path);
}

bool isThere(const fs::path& path) {
    return ::GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

/// Where symbolic links end; a path without any, or with an end that is not there, is given back.
fs::path followLinks(const fs::path& path) {
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
        return path;
    }
    const File file(path, 0, everything, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
    if (!file.isOpen()) return path;
    std::wstring target(::GetFinalPathNameByHandleW(file.handle(), nullptr, 0, 0), L'\0');
    const auto length = ::GetFinalPathNameByHandleW(file.handle(), target.data(),
                                                    static_cast<DWORD>(target.size()), 0);
    if (length == 0 || length >= target.size()) return path;
    target.resize(length);
    return target;
}

/// By its attribute or its access list. ReplaceFile does not ask: it needs no right to write into
/// a file to put another in its place.
void requireWritable(const fs::path& path) {
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    if ((attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0) {
        throw errorFor(ERROR_ACCESS_DENIED, path);
    }
    const File file(path, GENERIC_WRITE, everything, OPEN_EXISTING);
    if (file.isOpen()) return;
    const DWORD code = ::GetLastError();
    // Another program may have it open and let nobody write into it; it may be replaced still.
    if (code != ERROR_SHARING_VIOLATION) throw errorFor(code, path);
}

/// Puts the new file in the place of the old one; with no old one, under its name. Gives the
/// error code of a failure, 0 otherwise. The old file keeps its place then, or is found under its
/// backup's name.
DWORD takePlace(const fs::path& fresh, const fs::path& old, const fs::path& backup) {
    const DWORD attributes = ::GetFileAttributesW(old.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        const BOOL moved = ::MoveFileExW(fresh.c_str(), old.c_str(), MOVEFILE_WRITE_THROUGH);
        return moved != 0 ? 0 : ::GetLastError();
    }
    ::SetFileAttributesW(fresh.c_str(), attributes);
    // Gives the new file the old one's access list and streams. Without a backup's name it may
    // fail with ERROR_UNABLE_TO_MOVE_REPLACEMENT when the old file is gone already.
    if (::ReplaceFileW(old.c_str(), fresh.c_str(), backup.c_str(), 0, nullptr, nullptr) != 0) {
        return 0;
    }
    const DWORD code = ::GetLastError();
    if (!isThere(old)) ::MoveFileExW(backup.c_str(), old.c_str(), MOVEFILE_WRITE_THROUGH);
    return code;
}

/// The same, tried again for half a second: the server that reads the old file, and a scanner
/// that looks at the new one, hold it for a moment only.
DWORD takePlacePatiently(const fs::path& fresh, const fs::path& old, const fs::path& backup) {
    constexpr int mostTries = 10;
    constexpr DWORD pause = 50;  // milliseconds
    DWORD code = takePlace(fresh, old, backup);
    for (int tries = 1; code != 0 && tries < mostTries; ++tries) {
        ::Sleep(pause);
        code = takePlace(fresh, old, backup);
    }
    return code;
}

class WindowsDisk : public Disk {
 public:
    bool exists(const std::string& path) override { return isThere(pathOf(path)); }

    std::optional<FileStamp> stampOf(const std::string& path) override {
        WIN32_FILE_ATTRIBUTE_DATA data{};
        if (::GetFileAttributesExW(followLinks(pathOf(path)).c_str(), GetFileExInfoStandard,
                                   &data) == 0) {
            return std::nullopt;
        }
        const auto joined = [](std::uint64_t high, std::uint64_t low) { return high << 32U | low; };
        const FILETIME time = data.ftLastWriteTime;
        return FileStamp{
            joined(data.nFileSizeHigh, data.nFileSizeLow),
            static_cast<std::int64_t>(joined(time.dwHighDateTime, time.dwLowDateTime))};
    }

    InputFile openToRead(const std::string& path) override {
        const fs::path source = pathOf(path);
        const auto file =
            std::make_shared<const File>(source, GENERIC_READ, everything, OPEN_EXISTING);
        requireFile(*file, source);
        LARGE_INTEGER size{};
        if (::GetFileSizeEx(file->handle(), &size) == 0) throw errorFor(::GetLastError(), source);
        const auto bytes = static_cast<std::uint64_t>(size.QuadPart);
        if (bytes > mostBytesRead) throw RunTimeError(ErrorNumber::outOfMemory);
        return {bytes, [file, source](char* to, std::size_t most) {
                    std::size_t done = 0;
                    while (done < most) {
                        const auto piece =
                            static_cast<DWORD>(std::min<std::size_t>(most - done, mostBytesAtOnce));
                        DWORD got = 0;
                        if (::ReadFile(file->handle(), to + done, piece, &got, nullptr) == 0) {
                            throw errorFor(::GetLastError(), source);
                        }
                        if (got == 0) break;
                        done += got;
                    }
                    return done;
                }};
    }

    void replace(const std::string& path,
                 const std::function<void(const Write&)>& contents) override {
        const fs::path target = followLinks(pathOf(path));
        const bool present = isThere(target);
        if (present) requireWritable(target);

        // Names that no other file has. Not made from the target's: that may be as long as names
        // can be.
        const std::wstring suffix = std::to_wstring(::GetCurrentProcessId()) + L"-" +
                                    std::to_wstring(std::random_device()());
        const fs::path fresh = target.parent_path() / (L"~new-" + suffix);
        const fs::path backup = target.parent_path() / (L"~old-" + suffix);
        try {
            write(fresh, contents);
        } catch (...) {
            ::DeleteFileW(fresh.c_str());
            throw;
        }
        const DWORD code = takePlacePatiently(fresh, target, backup);
        if (code == 0) {
            ::DeleteFileW(backup.c_str());
            return;
        }
        // Where the old file could not be moved back, both are kept under the names they have.
        if (!present || isThere(target)) ::DeleteFileW(fresh.c_str());
        throw errorFor(code, target);
    }

    void createFolders(const std::string& path) override {
        const fs::path folder(std::u8string(path.begin(), path.end()));
        std::error_code failure;
        fs::create_directories(folder, failure);
        if (failure) throw RunTimeError(ErrorNumber::pathFileAccessError);
    }
};

}  // namespace

std::unique_ptr<Disk> systemDisk() { return std::make_unique<WindowsDisk>(); }
