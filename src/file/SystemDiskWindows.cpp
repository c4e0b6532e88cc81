// The disk of Windows.

#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <random>
#include <regex>
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

constexpr DWORD errorDiskQuotaExceeded = 1295;  // from winerror.h of the Windows SDK

/// The error to raise for a value of GetLastError(), after opening or changing `path` failed.
RunTimeError errorFor(DWORD code, const fs::path& path) {
    switch (code) {
        case ERROR_FILE_NOT_FOUND: return RunTimeError(ErrorNumber::fileNotFound);
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_DRIVE:
        case ERROR_NOT_READY:
        case ERROR_BAD_NETPATH:
        case ERROR_BAD_NET_NAME: return RunTimeError(ErrorNumber::pathNotFound);
        case ERROR_ACCESS_DENIED:
            // Windows reports this for an attempt to open a folder, too.
            if (isFolder(path)) return RunTimeError(ErrorNumber::pathFileAccessError);
            return RunTimeError(ErrorNumber::permissionDenied);
        case ERROR_SHARING_VIOLATION:
        case ERROR_LOCK_VIOLATION:
        case ERROR_WRITE_PROTECT: return RunTimeError(ErrorNumber::permissionDenied);
        case ERROR_DISK_FULL:
        case ERROR_HANDLE_DISK_FULL:
        case ERROR_FILE_TOO_LARGE:
        case errorDiskQuotaExceeded:
        case ERROR_NOT_ENOUGH_QUOTA: return RunTimeError(ErrorNumber::diskFull);
        default: return RunTimeError(ErrorNumber::pathFileAccessError);
    }
}

/// The full path in the form that may be longer than 260 characters in every version of Windows.
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

/// Owns a file handle and closes it.
class File {
 public:
    /// `sharing` is what others may do with the file while it is open.
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

constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

/// Raises an error unless the file is open and on a disk. A pipe or a port may have no end.
void requireFile(const File& file, const fs::path& path) {
    if (!file.isOpen()) throw errorFor(::GetLastError(), path);
    if (::GetFileType(file.handle()) != FILE_TYPE_DISK) {
        throw RunTimeError(ErrorNumber::pathFileAccessError);
    }
}

constexpr DWORD maxBytesAtOnce = 1U << 30U;

void writeAll(const File& file, std::string_view bytes, const fs::path& path) {
    while (!bytes.empty()) {
        DWORD written = 0;
        const auto piece = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), maxBytesAtOnce));
        if (::WriteFile(file.handle(), bytes.data(), piece, &written, nullptr) == 0) {
            throw errorFor(::GetLastError(), path);
        }
        bytes.remove_prefix(written);
    }
}

std::uint64_t joined(std::uint64_t high, std::uint64_t low) { return high << 32U | low; }

/// True for the errors of a file system that lacks the requested function.
bool isNotSupported(DWORD code) {
    return code == ERROR_NOT_SUPPORTED || code == ERROR_INVALID_FUNCTION ||
           code == ERROR_CALL_NOT_IMPLEMENTED;
}

/// The attributes of a file, or nothing if there is none.
std::optional<DWORD> attributesOf(const fs::path& path) {
    const DWORD attributes = ::GetFileAttributesW(path.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES) return attributes;
    const DWORD code = ::GetLastError();
    if (code != ERROR_FILE_NOT_FOUND) throw errorFor(code, path);
    return std::nullopt;
}

/// Follows symbolic links to their end. Returns a path without links unchanged.
fs::path followLinks(const fs::path& path) {
    if ((attributesOf(path).value_or(0) & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return path;
    const File file(path, 0, shareAll, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
    if (!file.isOpen()) throw errorFor(::GetLastError(), path);
    std::wstring end(::GetFinalPathNameByHandleW(file.handle(), nullptr, 0, 0), L'\0');
    const auto length =
        ::GetFinalPathNameByHandleW(file.handle(), end.data(), static_cast<DWORD>(end.size()), 0);
    if (length == 0 || length >= end.size()) throw errorFor(::GetLastError(), path);
    end.resize(length);
    return end;
}

/// The number of the file on its disk, or nothing if it is not open or the disk has no numbers.
std::optional<std::uint64_t> numberOf(const File& file) {
    BY_HANDLE_FILE_INFORMATION data{};
    if (!file.isOpen() || ::GetFileInformationByHandle(file.handle(), &data) == 0) {
        return std::nullopt;
    }
    return joined(data.nFileIndexHigh, data.nFileIndexLow);
}

/// Owner or access list of a file, as a security descriptor. Empty if the file system has neither.
using Security = std::vector<std::byte>;

Security securityOf(const File& file, SECURITY_INFORMATION part, const fs::path& path) {
    Security security;
    DWORD size = 0;
    while (::GetKernelObjectSecurity(file.handle(), part, security.data(),
                                     static_cast<DWORD>(security.size()), &size) == 0) {
        const DWORD code = ::GetLastError();
        if (isNotSupported(code)) return {};
        if (code != ERROR_INSUFFICIENT_BUFFER) throw errorFor(code, path);
        security.resize(size);
    }
    return security;
}

/// The entries of an access list, without the flag that an entry was inherited from the folder.
/// Nothing for a file without a list, to which everyone has full access.
std::optional<std::string> entriesOf(Security security) {
    BOOL hasList = FALSE;
    BOOL isDefault = FALSE;
    ACL* list = nullptr;
    if (security.empty() ||
        ::GetSecurityDescriptorDacl(security.data(), &hasList, &list, &isDefault) == 0 ||
        hasList == 0 || list == nullptr) {
        return std::nullopt;
    }
    std::string entries;
    void* at = nullptr;
    for (DWORD i = 0; i < list->AceCount && ::GetAce(list, i, &at) != 0; ++i) {
        auto* const entry = static_cast<ACE_HEADER*>(at);
        entry->AceFlags &= static_cast<BYTE>(~INHERITED_ACE);
        entries.append(static_cast<const char*>(at), entry->AceSize);
    }
    return entries;
}

/// The properties of the old file that the new file gets.
struct OldFile {
    DWORD attributes;
    Security list;
    Security owner;
};

/// The file to be replaced, or nothing if there is none. Raises an error for a file that must not
/// be written, by its attribute or its access list: Windows itself would allow to replace it, as
/// that needs no right to write into it.
std::optional<OldFile> statusOf(const fs::path& path) {
    const auto attributes = attributesOf(path);
    if (!attributes) return std::nullopt;
    if ((*attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0) {
        throw errorFor(ERROR_ACCESS_DENIED, path);
    }
    if (const File file(path, GENERIC_WRITE, shareAll, OPEN_EXISTING); !file.isOpen()) {
        const DWORD code = ::GetLastError();
        // Another program may have the file open and allow no writing. It can still be replaced.
        if (code != ERROR_SHARING_VIOLATION) throw errorFor(code, path);
    }
    const File file(path, READ_CONTROL, shareAll, OPEN_EXISTING);
    if (!file.isOpen()) throw errorFor(::GetLastError(), path);
    return OldFile{*attributes, securityOf(file, DACL_SECURITY_INFORMATION, path),
                   securityOf(file, OWNER_SECURITY_INFORMATION, path)};
}

void setSecurity(const fs::path& path, DWORD access, SECURITY_INFORMATION part, Security value) {
    const File file(path, access, shareAll, OPEN_EXISTING);
    if (file.isOpen()) ::SetKernelObjectSecurity(file.handle(), part, value.data());
}

/// Copies access list and owner of the old file. A user who may only change files, as on many
/// shares, cannot set an access list; then the list inherited from the folder must have the same
/// entries, or permissionDenied is raised. The owner is kept if the system allows it: for an
/// administrator's own file it does, for a file of another user it does not.
void copyRights(const OldFile& old, const File& file, const fs::path& path) {
    const auto list = [&] { return securityOf(file, DACL_SECURITY_INFORMATION, path); };
    if (list() != old.list) setSecurity(path, WRITE_DAC, DACL_SECURITY_INFORMATION, old.list);
    if (entriesOf(list()) != entriesOf(old.list)) {
        throw RunTimeError(ErrorNumber::permissionDenied);
    }
    if (securityOf(file, OWNER_SECURITY_INFORMATION, path) != old.owner) {
        setSecurity(path, WRITE_OWNER, OWNER_SECURITY_INFORMATION, old.owner);
    }
}

/// The beginning of the names of temporary files.
constexpr std::wstring_view temporaryPrefix = L"~new-";

/// A unique file name. It does not contain the name of the target, which may already have the
/// maximum length.
std::wstring temporaryName() {
    return std::wstring(temporaryPrefix) + std::to_wstring(::GetCurrentProcessId()) + L"-" +
           std::to_wstring(std::random_device()());
}

bool isTemporaryName(const wchar_t* name) {
    return std::regex_match(name, std::wregex(std::wstring(temporaryPrefix) + L"[0-9]+-[0-9]+"));
}

/// Removes stale temporary files: those of editors that were killed while they saved, on this
/// machine or on another that shares the folder. Each file is opened without sharing. That fails
/// while a process still writes it; the system closes the files of a process that ended. Errors are
/// ignored, so that they do not fail a save.
void removeStaleTemporaries(const fs::path& folder) {
    WIN32_FIND_DATAW found{};
    const std::wstring pattern = folder / (std::wstring(temporaryPrefix) + L"*");
    const HANDLE search = ::FindFirstFileW(pattern.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return;
    do {
        if (!isTemporaryName(found.cFileName)) continue;
        const File deletedWhenClosed(folder / found.cFileName, DELETE, 0, OPEN_EXISTING,
                                     FILE_FLAG_DELETE_ON_CLOSE | FILE_FLAG_OPEN_REPARSE_POINT);
    } while (::FindNextFileW(search, &found) != 0);
    ::FindClose(search);
}

/// Removes a file in the destructor unless keep() was called.
class TemporaryFile {
 public:
    explicit TemporaryFile(fs::path path) : path_(std::move(path)) {}
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (!path_.empty()) ::DeleteFileW(path_.c_str());
    }

    const fs::path& path() const { return path_; }
    void keep() { path_.clear(); }

 private:
    fs::path path_;
};

/// Renames a file over another one in one step, even while programs read the other with
/// FILE_SHARE_DELETE. The new name is on the disk afterwards. Returns false if the file system does
/// not support that: NTFS does, since Windows 10, version 1709.
bool renamePosix(const fs::path& from, const fs::path& to) {
    // From winbase.h and ntifs.h of the Windows SDK.
    constexpr auto fileRenameInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);
    constexpr DWORD replaceIfExists = 1;
    constexpr DWORD posixSemantics = 2;
    struct Renaming {
        DWORD flags;
        HANDLE folder;
        DWORD bytes;  ///< of the name, without the terminating zero
        wchar_t name[1];
    };
    const File file(from, DELETE, shareAll, OPEN_EXISTING, FILE_FLAG_WRITE_THROUGH);
    if (!file.isOpen()) return false;
    const auto bytes = to.native().size() * sizeof(wchar_t);
    std::vector<std::byte> buffer(sizeof(Renaming) + bytes);
    auto* const renaming = new (buffer.data())
        Renaming{replaceIfExists | posixSemantics, nullptr, static_cast<DWORD>(bytes), {}};
    std::memcpy(renaming->name, to.c_str(), bytes);
    return ::SetFileInformationByHandle(file.handle(), fileRenameInfoEx, renaming,
                                        static_cast<DWORD>(buffer.size())) != 0;
}

/// Renames the file to the target in one step, so that at any time the name belongs to the complete
/// old file or to the complete new one. Tries again for half a second, as the server or a virus
/// scanner may have the old file open for a moment. A network file system may report a failure
/// although it renamed the file, so after a failure this checks whether the target is our file.
void renameToTarget(const File& file, const fs::path& path, const fs::path& target) {
    constexpr int maxTries = 10;
    constexpr DWORD pause = 50;  // milliseconds
    for (int tries = 1; !renamePosix(path, target); ++tries) {
        constexpr DWORD how = MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH;
        if (::MoveFileExW(path.c_str(), target.c_str(), how) != 0) return;
        const DWORD code = ::GetLastError();
        const auto number = numberOf(file);
        if (number && number == numberOf(File(target, 0, shareAll, OPEN_EXISTING))) return;
        const bool isInUse = code == ERROR_ACCESS_DENIED || code == ERROR_SHARING_VIOLATION ||
                             code == ERROR_USER_MAPPED_FILE;
        if (!isInUse || tries == maxTries) throw errorFor(code, target);
        ::Sleep(pause);
    }
}

class WindowsDisk : public Disk {
 public:
    bool exists(const std::string& path) override {
        return ::GetFileAttributesW(pathOf(path).c_str()) != INVALID_FILE_ATTRIBUTES;
    }

    std::optional<FileStamp> stampOf(const std::string& path) override {
        const File file(pathOf(path), FILE_READ_ATTRIBUTES, shareAll, OPEN_EXISTING,
                        FILE_FLAG_BACKUP_SEMANTICS);
        BY_HANDLE_FILE_INFORMATION data{};
        if (!file.isOpen() || ::GetFileInformationByHandle(file.handle(), &data) == 0) {
            return std::nullopt;
        }
        const FILETIME time = data.ftLastWriteTime;
        FILE_BASIC_INFO times{};
        ::GetFileInformationByHandleEx(file.handle(), FileBasicInfo, &times, sizeof times);
        return FileStamp{joined(data.nFileSizeHigh, data.nFileSizeLow),
                         static_cast<std::int64_t>(joined(time.dwHighDateTime, time.dwLowDateTime)),
                         joined(data.nFileIndexHigh, data.nFileIndexLow),
                         times.ChangeTime.QuadPart};
    }

    InputFile openToRead(const std::string& path) override {
        const fs::path source = pathOf(path);
        const auto file =
            std::make_shared<const File>(source, GENERIC_READ, shareAll, OPEN_EXISTING);
        requireFile(*file, source);
        LARGE_INTEGER size{};
        if (::GetFileSizeEx(file->handle(), &size) == 0) throw errorFor(::GetLastError(), source);
        const auto bytes = static_cast<std::uint64_t>(size.QuadPart);
        if (bytes > maxBytesRead) throw RunTimeError(ErrorNumber::outOfMemory);
        return {bytes, [file, source](char* to, std::size_t most) {
                    std::size_t done = 0;
                    while (done < most) {
                        const auto piece =
                            static_cast<DWORD>(std::min<std::size_t>(most - done, maxBytesAtOnce));
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
        const auto old = statusOf(target);
        removeStaleTemporaries(target.parent_path());

        TemporaryFile temporary(target.parent_path() / temporaryName());
        const DWORD copied = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                             FILE_ATTRIBUTE_NOT_CONTENT_INDEXED | FILE_ATTRIBUTE_ENCRYPTED;
        // Others may only rename or delete it. Nobody can read it before it has its final rights.
        const File file(temporary.path(), GENERIC_WRITE | READ_CONTROL, FILE_SHARE_DELETE,
                        CREATE_NEW, old ? old->attributes & copied : FILE_ATTRIBUTE_NORMAL);
        if (!file.isOpen()) {
            const auto error = errorFor(::GetLastError(), target);
            temporary.keep();  // it belongs to another process
            throw error;
        }
        if (old) copyRights(*old, file, temporary.path());
        contents([&](std::string_view bytes) { writeAll(file, bytes, target); });
        if (::FlushFileBuffers(file.handle()) == 0 && !isNotSupported(::GetLastError())) {
            throw errorFor(::GetLastError(), target);
        }
        renameToTarget(file, temporary.path(), target);
        temporary.keep();
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
