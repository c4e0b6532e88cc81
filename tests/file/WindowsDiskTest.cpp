// The disk and the registry record of Windows, in a temporary folder.
#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include <gtest/gtest.h>
#include <process.h>
#include <sddl.h>

#include <filesystem>

#include "base/RunTimeError.h"
#include "file/Disk.h"
#include "file/FLRegistry.h"

namespace {

namespace fs = std::filesystem;

/// Each call of a function below is a step, counted from 1. The chosen one fails with the error, or
/// ends the process if the error is 0.
struct {
    int chosen = 0, made = 0;
    DWORD error = 0;
    bool cannotFlush = false;     ///< as on some file systems
    bool renamesAsPosix = false;  ///< as Windows does and Wine does not
    bool losesAnswers = false;    ///< of a rename, as a network may
    bool changeOnly = false;      ///< as a share that grants only the right to change files
} fake;

constexpr int killed = 99, past = 100;  // exit codes

template <typename Function, typename Result, typename... Arguments>
Result step(const char* name, Result failure, Arguments... arguments) {
    if (fake.chosen != 0 && ++fake.made == fake.chosen) {
        if (fake.error == 0) ::TerminateProcess(::GetCurrentProcess(), killed);
        ::SetLastError(fake.error);
        return failure;
    }
    const auto real = ::GetProcAddress(::GetModuleHandleW(L"kernelbase"), name);
    return reinterpret_cast<Function>(reinterpret_cast<void*>(real))(arguments...);
}

HANDLE WINAPI createFile(LPCWSTR path, DWORD access, DWORD sharing, SECURITY_ATTRIBUTES* security,
                         DWORD creation, DWORD flags, HANDLE pattern) {
    if (fake.changeOnly && (access & (WRITE_DAC | WRITE_OWNER)) != 0) {
        ::SetLastError(ERROR_ACCESS_DENIED);
        return INVALID_HANDLE_VALUE;
    }
    return step<decltype(&createFile)>("CreateFileW", INVALID_HANDLE_VALUE, path, access, sharing,
                                       security, creation, flags, pattern);
}
DWORD WINAPI getFileAttributes(LPCWSTR path) {
    return step<decltype(&getFileAttributes)>("GetFileAttributesW", INVALID_FILE_ATTRIBUTES, path);
}
BOOL WINAPI getSecurity(HANDLE file, SECURITY_INFORMATION part, void* to, DWORD n, DWORD* size) {
    return step<decltype(&getSecurity)>("GetKernelObjectSecurity", 0, file, part, to, n, size);
}
BOOL WINAPI setSecurity(HANDLE file, SECURITY_INFORMATION part, void* from) {
    return step<decltype(&setSecurity)>("SetKernelObjectSecurity", 0, file, part, from);
}
BOOL WINAPI writeFile(HANDLE file, const void* from, DWORD n, DWORD* done, OVERLAPPED* how) {
    return step<decltype(&writeFile)>("WriteFile", 0, file, from, n, done, how);
}
BOOL WINAPI flush(HANDLE file) {
    ::SetLastError(ERROR_INVALID_FUNCTION);
    return fake.cannotFlush ? 0 : step<decltype(&flush)>("FlushFileBuffers", 0, file);
}
BOOL WINAPI setInformation(HANDLE file, FILE_INFO_BY_HANDLE_CLASS kind, void* from, DWORD n) {
    constexpr auto fileRenameInfoEx = static_cast<FILE_INFO_BY_HANDLE_CLASS>(22);
    if (fake.renamesAsPosix && kind == fileRenameInfoEx) kind = FileRenameInfo;
    return step<decltype(&setInformation)>("SetFileInformationByHandle", 0, file, kind, from, n);
}
BOOL WINAPI moveFile(LPCWSTR from, LPCWSTR to, DWORD how) {
    const BOOL moved = step<decltype(&moveFile)>("MoveFileExW", 0, from, to, how);
    if (!fake.losesAnswers) return moved;
    ::SetLastError(ERROR_NETNAME_DELETED);
    return 0;
}

}  // namespace

// The import table entries through which the program calls them.
extern "C" {
auto* __imp_CreateFileW = &createFile;
auto* __imp_GetFileAttributesW = &getFileAttributes;
auto* __imp_GetKernelObjectSecurity = &getSecurity;
auto* __imp_SetKernelObjectSecurity = &setSecurity;
auto* __imp_WriteFile = &writeFile;
auto* __imp_FlushFileBuffers = &flush;
auto* __imp_SetFileInformationByHandle = &setInformation;
auto* __imp_MoveFileExW = &moveFile;
}

namespace {

/// The child process that is killed while it saves: this program with these settings.
const struct KilledProcess {
    KilledProcess() {
        const char* const chosen = std::getenv("KILLED_AT");
        if (chosen == nullptr) return;
        const int step = std::atoi(chosen);
        fake = {.chosen = std::abs(step), .renamesAsPosix = step < 0};
        systemDisk()->replace(std::getenv("SAVED_FILE"), "new");
        std::_Exit(past);
    }
} killedProcess;

class WindowsDiskTest : public ::testing::Test {
 protected:
    WindowsDiskTest() { fs::create_directories(folder); }
    ~WindowsDiskTest() override { fs::remove_all(folder); }

    const std::unique_ptr<Disk> disk = systemDisk();
    const fs::path folder =
        fs::temp_directory_path() / ("disk-test-" + std::to_string(::GetTickCount64()));
    const fs::path house = folder / "house.xml";

    static std::string utf8(const fs::path& path) {
        const std::u8string text = path.u8string();
        return {text.begin(), text.end()};
    }
    std::string read(const fs::path& path) {
        try {
            return disk->read(utf8(path));
        } catch (const RunTimeError& error) {
            return "error " + std::to_string(static_cast<int>(error.number()));
        }
    }
    /// Returns the number of the error that is raised, 0 for none.
    int replace(const fs::path& path, std::string_view bytes) {
        try {
            disk->replace(utf8(path), bytes);
        } catch (const RunTimeError& error) {
            return static_cast<int>(error.number());
        }
        return 0;
    }
    static std::wstring describe(const fs::path& path, SECURITY_INFORMATION part) {
        std::byte security[1000];
        DWORD size = 0;
        wchar_t* text = nullptr;
        EXPECT_TRUE(::GetFileSecurityW(path.c_str(), part, security, sizeof security, &size));
        ::ConvertSecurityDescriptorToStringSecurityDescriptorW(security, SDDL_REVISION_1, part,
                                                               &text, nullptr);
        const std::wstring description = text;
        ::LocalFree(text);
        return description;
    }
    static std::wstring accessOf(const fs::path& path) {
        return describe(path, DACL_SECURITY_INFORMATION);
    }
    /// Restricts the file to its owner. Returns the new access list as text.
    static std::wstring makeSecret(const fs::path& path) {
        const std::wstring owner = describe(path, OWNER_SECURITY_INFORMATION).substr(2);
        void* security = nullptr;
        ::ConvertStringSecurityDescriptorToSecurityDescriptorW(
            (L"D:P(A;;FA;;;" + owner + L")").c_str(), SDDL_REVISION_1, &security, nullptr);
        EXPECT_TRUE(::SetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, security));
        ::LocalFree(security);
        return accessOf(path);
    }
    /// Saves with a fault at a step, in a child process if it is to be killed. Returns the number
    /// of the error, 0 for none, or an exit code.
    int outcome(int chosen, DWORD error, bool posix) {
        if (error == 0) {
            wchar_t program[MAX_PATH];
            ::GetModuleFileNameW(nullptr, program, MAX_PATH);
            ::_wputenv_s(L"KILLED_AT", std::to_wstring(posix ? -chosen : chosen).c_str());
            ::_wputenv_s(L"SAVED_FILE", house.c_str());
            return static_cast<int>(::_wspawnl(_P_WAIT, program, program, nullptr));
        }
        fake = {.chosen = chosen, .error = error, .renamesAsPosix = posix};
        const int number = replace(house, "new");
        return std::exchange(fake, {}).made < chosen ? past : number;
    }
    auto files() const { return std::distance(fs::directory_iterator(folder), {}); }
};

TEST_F(WindowsDiskTest, CreatesAndReplacesFilesWithAnyName) {
    const std::wstring branch = folder / std::wstring(150, L'd');
    const std::wstring deep = LR"(\\?\)" + branch + LR"(\)" + std::wstring(150, L'e');
    ASSERT_TRUE(::CreateDirectoryW(branch.c_str(), nullptr) != 0 &&
                ::CreateDirectoryW(deep.c_str(), nullptr) != 0);
    const std::wstring longPath = deep + LR"(\house.xml)";
    for (const fs::path& path : {house, folder / L"Bürohaus €.xml", fs::path(longPath.substr(4))}) {
        const std::wstring full = LR"(\\?\)" + path.native();
        EXPECT_EQ(replace(path, std::string_view("any\0byte\xFF\r\n", 11)), 0);
        EXPECT_EQ(read(path), std::string_view("any\0byte\xFF\r\n", 11));
        ::SetFileAttributesW(full.c_str(), FILE_ATTRIBUTE_HIDDEN);
        EXPECT_EQ(replace(path, "shorter"), 0);
        EXPECT_EQ(read(path), "shorter");
        EXPECT_NE(::GetFileAttributesW(full.c_str()) & FILE_ATTRIBUTE_HIDDEN, 0U);
    }
    EXPECT_EQ(files(), 3) << "two files and a folder";
    ::DeleteFileW(longPath.c_str());
    ::RemoveDirectoryW(deep.c_str());
}

TEST_F(WindowsDiskTest, ReportsWhyAFileCannotBeReadOrReplaced) {
    EXPECT_EQ(replace(house, "old"), 0);
    const std::function<void(const Write&)> aborts;  // raises an error when called
    EXPECT_THROW(disk->replace(utf8(house), aborts), std::bad_function_call);
    ::SetFileAttributesW(house.c_str(), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(replace(house, "new"), 70);
    EXPECT_EQ(replace(folder, "new"), 75);
    EXPECT_EQ(replace(folder / "missing/house.xml", "new"), 76);
    EXPECT_EQ(read(folder), "error 75");
    EXPECT_EQ(read(folder / "missing.xml"), "error 53");
    EXPECT_EQ(read(house), "old");
    EXPECT_EQ(files(), 1);
    ::SetFileAttributesW(house.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(WindowsDiskTest, ReplacesAnOpenFileOnlyIfTheReaderAllowsIt) {
    for (const DWORD sharing : {DWORD{FILE_SHARE_DELETE}, DWORD{0}}) {
        replace(house, "old");
        const HANDLE reader = ::CreateFileW(house.c_str(), GENERIC_READ, FILE_SHARE_READ | sharing,
                                            nullptr, OPEN_EXISTING, 0, nullptr);
        const int error = replace(house, "new");
        EXPECT_TRUE(error == 70 || (error == 0 && sharing != 0)) << error;
        EXPECT_EQ(read(house), error == 0 ? "new" : "old");
        ::CloseHandle(reader);
        EXPECT_EQ(files(), 1);
    }
}

TEST_F(WindowsDiskTest, LeavesTheOldOrTheNewFileAfterAnyFault) {
    const std::pair<DWORD, int> faults[] = {
        {ERROR_CRC, 75}, {1295, 61}, {ERROR_ACCESS_DENIED, 70}, {0, killed}};
    for (const bool posix : {false, true}) {
        for (const auto& [error, number] : faults) {
            constexpr int most = 50;
            int refused = 0, got = 0;
            for (int chosen = 1; got != past && chosen < most; ++chosen) {
                SCOPED_TRACE("step " + std::to_string(chosen) + ", " + std::to_string(error));
                fs::remove(house);
                EXPECT_EQ(replace(house, "old"), 0);
                const std::wstring secret = makeSecret(house);
                got = outcome(chosen, error, posix);
                const std::string now = read(house);
                EXPECT_TRUE(now == "old" || now == "new") << now;
                EXPECT_TRUE(now == "old" ? got == number || got == 70
                                         : got == 0 || got == killed || got == past)
                    << got;
                EXPECT_EQ(accessOf(house), secret);
                refused += now == "old" ? 1 : 0;
                if (got == killed) replace(house, "next");
                EXPECT_EQ(files(), 1) << "the next save removes the temporary file";
            }
            EXPECT_TRUE(got == past && refused >= 10) << "too many or too few steps";
        }
    }
}

TEST_F(WindowsDiskTest, RemovesOnlyTheTemporaryFilesOfDeadProcesses) {
    const fs::path stale = folder / "~new-1-2", ofUsers = folder / "~new-1-2.xml";
    replace(stale, "half");
    replace(ofUsers, "plan");
    disk->replace(utf8(house), [&](const Write& write) {
        EXPECT_EQ(replace(folder / "other.xml", "other"), 0);
        write("whole");
    });
    EXPECT_EQ(read(house), "whole");
    EXPECT_FALSE(fs::exists(stale));
    EXPECT_EQ(files(), 3);
}

TEST_F(WindowsDiskTest, KeepsTheAccessListOnRestrictedFileSystems) {
    replace(house, "old");
    const std::wstring shared = accessOf(house);
    fake.changeOnly = true;
    EXPECT_EQ(replace(house, "new"), 0) << "the folder grants the same rights";
    const std::wstring secret = makeSecret(house);
    EXPECT_NE(secret, shared);
    EXPECT_EQ(replace(house, "newer"), 70);
    EXPECT_EQ(read(house), "new");
    fake = {.cannotFlush = true, .losesAnswers = true};
    EXPECT_EQ(replace(house, "newer"), 0);
    fake = {};
    EXPECT_EQ(read(house), "newer");
    EXPECT_EQ(accessOf(house), secret);
    EXPECT_EQ(files(), 1);
}

TEST_F(WindowsDiskTest, RecordsTheFullPathInBothRegistryViews) {
    const std::string subKey = R"(Software\QUONAutomation\Test)";
    const std::string path = "C:\\Büro €\\Étage\\дом.xml";
    systemRegistry(*disk, "")->SetRegValue(RegistryRoot::localMachine, subKey, "ConfigFile", path);
    for (const DWORD view : {DWORD{KEY_WOW64_64KEY}, DWORD{KEY_WOW64_32KEY}}) {
        HKEY key = nullptr;
        wchar_t text[100] = L"";
        DWORD bytes = sizeof(text);
        ::RegOpenKeyExA(HKEY_LOCAL_MACHINE, subKey.c_str(), 0, KEY_READ | view, &key);
        ::RegGetValueW(key, nullptr, L"ConfigFile", RRF_RT_REG_SZ, nullptr, text, &bytes);
        EXPECT_EQ(utf8(text), path);
        ::RegCloseKey(key);
        ::RegDeleteKeyExA(HKEY_LOCAL_MACHINE, subKey.c_str(), view, 0);
    }
}

}  // namespace
