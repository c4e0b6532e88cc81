// The disk of Windows.

#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <system_error>
#include <vector>

#include "file/Disk.h"
#include "model/RunTimeError.h"

namespace {

namespace fs = std::filesystem;

fs::path pathOf(const std::string& utf8) {
    return fs::path(std::u8string(utf8.begin(), utf8.end()));
}

RunTimeError errorFor(DWORD code) {
    switch (code) {
        case ERROR_FILE_NOT_FOUND: return RunTimeError(ErrorNumber::fileNotFound);
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_DRIVE:
        case ERROR_NOT_READY:
        case ERROR_BAD_NETPATH: return RunTimeError(ErrorNumber::pathNotFound);
        case ERROR_ACCESS_DENIED:
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
        case ERROR_WRITE_PROTECT: return RunTimeError(ErrorNumber::permissionDenied);
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL: return RunTimeError(ErrorNumber::diskFull);
        default: return RunTimeError(ErrorNumber::pathFileAccessError);
    }
}

/// A handle that is closed with it.
class File {
 public:
    File(const fs::path& path, DWORD access, DWORD creation)
        : handle_(::CreateFileW(path.c_str(), access, FILE_SHARE_READ, nullptr, creation,
                                FILE_ATTRIBUTE_NORMAL, nullptr)) {
        if (handle_ == INVALID_HANDLE_VALUE) throw errorFor(::GetLastError());
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    File(File&&) = delete;
    File& operator=(File&&) = delete;
    ~File() { close(); }

    HANDLE handle() const { return handle_; }
    void close() {
        if (handle_ != INVALID_HANDLE_VALUE) ::CloseHandle(handle_);
        handle_ = INVALID_HANDLE_VALUE;
    }

 private:
    HANDLE handle_;
};

constexpr DWORD mostBytesAtOnce = 1U << 30U;

void writeAll(HANDLE handle, std::string_view bytes) {
    while (!bytes.empty()) {
        DWORD written = 0;
        const auto piece = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), mostBytesAtOnce));
        if (::WriteFile(handle, bytes.data(), piece, &written, nullptr) == 0) {
            throw errorFor(::GetLastError());
        }
        bytes.remove_prefix(written);
    }
}

/// Where symbolic links end; the file there need not exist.
fs::path followLinks(const fs::path& path) {
    std::error_code failure;
    const fs::path target = fs::weakly_canonical(path, failure);
    return failure ? path : target;
}

class WindowsDisk : public Disk {
 public:
    bool exists(const std::string& path) override {
        return ::GetFileAttributesW(pathOf(path).c_str()) != INVALID_FILE_ATTRIBUTES;
    }

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

    void requireReadable(const std::string& path) override {
        const File file(pathOf(path), GENERIC_READ, OPEN_EXISTING);
    }

    void readPieces(const std::string& path,
                    const std::function<void(std::string_view)>& take) override {
        const File file(pathOf(path), GENERIC_READ, OPEN_EXISTING);
        LARGE_INTEGER size{};
        if (::GetFileSizeEx(file.handle(), &size) == 0) throw errorFor(::GetLastError());
        if (static_cast<std::uint64_t>(size.QuadPart) > mostBytesRead) {
            throw RunTimeError(ErrorNumber::outOfMemory);
        }
        std::vector<char> piece(std::size_t{256} * 1024);
        for (;;) {
            DWORD got = 0;
            if (::ReadFile(file.handle(), piece.data(), static_cast<DWORD>(piece.size()), &got,
                           nullptr) == 0) {
                throw errorFor(::GetLastError());
            }
            if (got == 0) return;
            take({piece.data(), got});
        }
    }

    void replace(const std::string& path, std::string_view bytes) override {
        const fs::path target = followLinks(pathOf(path));
        const DWORD attributes = ::GetFileAttributesW(target.c_str());
        const bool present = attributes != INVALID_FILE_ATTRIBUTES;
        if (present && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
            throw RunTimeError(ErrorNumber::pathFileAccessError);
        }
        if (present && (attributes & FILE_ATTRIBUTE_READONLY) != 0) {
            throw RunTimeError(ErrorNumber::permissionDenied);
        }

        const fs::path temporary =
            target.parent_path() / (L"~new-" + std::to_wstring(::GetCurrentProcessId()) + L"-" +
                                    std::to_wstring(std::random_device()()));
        try {
            File file(temporary, GENERIC_WRITE, CREATE_NEW);
            writeAll(file.handle(), bytes);
            if (::FlushFileBuffers(file.handle()) == 0) throw errorFor(::GetLastError());
            file.close();
            // Of the two, ReplaceFile keeps the old file's permissions, but wants one to be there.
            const BOOL replaced =
                present ? ::ReplaceFileW(target.c_str(), temporary.c_str(), nullptr,
                                         REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr, nullptr)
                        : ::MoveFileExW(temporary.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH);
            if (replaced == 0) throw errorFor(::GetLastError());
        } catch (const RunTimeError&) {
            ::DeleteFileW(temporary.c_str());
            throw;
        }
    }

    void createFolders(const std::string& path) override {
        std::error_code failure;
        fs::create_directories(pathOf(path), failure);
        if (failure) throw errorFor(static_cast<DWORD>(failure.value()));
    }
};

}  // namespace

std::unique_ptr<Disk> systemDisk() { return std::make_unique<WindowsDisk>(); }
