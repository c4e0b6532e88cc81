// The disk and the registry record of Windows, in a temporary folder.
#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "base/RunTimeError.h"
#include "file/Disk.h"
#include "file/FLRegistry.h"

namespace {

namespace fs = std::filesystem;

/// Stands for ReplaceFile while it is set.
std::function<BOOL(const wchar_t* old, const wchar_t* backup)> played;

BOOL WINAPI replaceFile(const wchar_t* old, const wchar_t* fresh, const wchar_t* backup,
                        DWORD flags, void* exclude, void* reserved) {
    if (played) return played(old, backup);
    const auto real = ::GetProcAddress(::GetModuleHandleW(L"kernel32"), "ReplaceFileW");
    return reinterpret_cast<decltype(&replaceFile)>(reinterpret_cast<void*>(real))(
        old, fresh, backup, flags, exclude, reserved);
}

}  // namespace

extern "C" {
/// The place through which the program calls it, as an import library would define it.
decltype(&ReplaceFileW) __imp_ReplaceFileW = &replaceFile;
}

namespace {

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
    /// The number of the error that is raised; 0 for none.
    int replace(const fs::path& path, std::string_view bytes) {
        try {
            disk->replace(utf8(path), bytes);
        } catch (const RunTimeError& error) {
            return static_cast<int>(error.number());
        }
        return 0;
    }
    auto files() const { return std::distance(fs::directory_iterator(folder), {}); }
};

TEST_F(WindowsDiskTest, MakesAndReplacesFilesUnderAnyName) {
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
    EXPECT_EQ(files(), 3) << "two files and the first of the folders";
    ::DeleteFileW(longPath.c_str());
    ::RemoveDirectoryW(deep.c_str());
}

TEST_F(WindowsDiskTest, TellsWhyAFileCannotBeReadOrReplaced) {
    EXPECT_EQ(replace(house, "old"), 0);
    const std::function<void(const Write&)> givesUp;  // raises an error when it is called
    EXPECT_THROW(disk->replace(utf8(house), givesUp), std::bad_function_call);
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

TEST_F(WindowsDiskTest, ReplacesAFileThatIsBeingReadUnlessItsReaderForbidsIt) {
    for (const DWORD leave : {DWORD{FILE_SHARE_DELETE}, DWORD{0}}) {
        replace(house, "old");
        const HANDLE reader = ::CreateFileW(house.c_str(), GENERIC_READ, FILE_SHARE_READ | leave,
                                            nullptr, OPEN_EXISTING, 0, nullptr);
        EXPECT_EQ(replace(house, "new"), leave != 0 ? 0 : 70);
        EXPECT_EQ(read(house), leave != 0 ? "new" : "old");
        ::CloseHandle(reader);
        EXPECT_EQ(files(), 1);
    }
}

TEST_F(WindowsDiskTest, LosesNothingWhateverReplaceFileAnswers) {
    const struct {
        DWORD answer;
        std::function<void(const wchar_t* old, const wchar_t* backup)> leaves;
        int error;
        const char* bytes;
    } cases[] = {
        {ERROR_UNABLE_TO_REMOVE_REPLACED, [](auto, auto) {}, 70, "old"},
        {ERROR_UNABLE_TO_MOVE_REPLACEMENT_2, &::MoveFileW, 75, "old"},
        {ERROR_UNABLE_TO_MOVE_REPLACEMENT, [](auto old, auto) { ::DeleteFileW(old); }, 0, "new"},
    };
    for (const auto& [answer, leaves, error, bytes] : cases) {
        replace(house, "old");
        played = [&](auto old, auto backup) {
            leaves(old, backup);
            ::SetLastError(answer);
            return FALSE;
        };
        EXPECT_EQ(replace(house, "new"), error) << answer;
        played = nullptr;
        EXPECT_EQ(read(house), bytes) << answer;
        EXPECT_EQ(files(), 1) << answer;
    }
}

TEST_F(WindowsDiskTest, RecordsAPathWholeInBothViewsOfTheRegistry) {
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
