// The registry record on Windows.

#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include <filesystem>

#include "file/FLRegistry.h"

namespace {

/// Stores the text with the "A" function, which matches how every server reads it, where the code
/// page is UTF-8. The program's manifest sets that since Windows 10, version 1903. Any other code
/// page may lack characters of the text.
void setText(HKEY key, const std::string& name, const std::string& text) {
    if (::GetACP() == CP_UTF8) {
        ::RegSetValueExA(key, name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                         static_cast<DWORD>(text.size() + 1));
        return;
    }
    const auto wide = [](const std::string& utf8) {
        return std::filesystem::path(std::u8string(utf8.begin(), utf8.end())).native();
    };
    const std::wstring value = wide(text);
    ::RegSetValueExW(key, wide(name).c_str(), 0, REG_SZ,
                     reinterpret_cast<const BYTE*>(value.c_str()),
                     static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t)));
}

class WindowsRegistry : public FLRegistry {
 public:
    void SetRegValue(RegistryRoot /*root*/, const std::string& subKey, const std::string& valueName,
                     const std::string& text) override {
        // A 32-bit server reads another HKEY_LOCAL_MACHINE\Software than a 64-bit server.
        for (const REGSAM view : {REGSAM{KEY_WOW64_64KEY}, REGSAM{KEY_WOW64_32KEY}}) {
            HKEY key = nullptr;
            if (::RegCreateKeyExA(HKEY_LOCAL_MACHINE, subKey.c_str(), 0, nullptr,
                                  REG_OPTION_NON_VOLATILE, KEY_SET_VALUE | view, nullptr, &key,
                                  nullptr) != ERROR_SUCCESS) {
                continue;
            }
            setText(key, valueName, text);
            ::RegCloseKey(key);
        }
    }
};

}  // namespace

std::unique_ptr<FLRegistry> systemRegistry(Disk& /*disk*/, const std::string& /*settingsFolder*/) {
    return std::make_unique<WindowsRegistry>();
}
