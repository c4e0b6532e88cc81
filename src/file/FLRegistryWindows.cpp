// The registry record on Windows.

#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

#include "file/FLRegistry.h"

namespace {

/// The text in the system's code page, which the calls below and the server use.
std::string inCodePage(const std::string& utf8) {
    const int wideLength = ::MultiByteToWideChar(CP_UTF8, 0, utf8.c_str(), -1, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(wideLength), L'\0');
    ::MultiByteToWideChar(CP_UTF8, 0, utf8.c_str(), -1, wide.data(), wideLength);
    const int length =
        ::WideCharToMultiByte(CP_ACP, 0, wide.c_str(), -1, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(length), '\0');
    ::WideCharToMultiByte(CP_ACP, 0, wide.c_str(), -1, text.data(), length, nullptr, nullptr);
    if (!text.empty()) text.pop_back();  // the closing NUL
    return text;
}

class WindowsRegistry : public FLRegistry {
 public:
    void SetRegValue(RegistryRoot /*root*/, const std::string& subKey, const std::string& valueName,
                     const std::string& text) override {
        HKEY key = nullptr;
        if (::RegCreateKeyExA(HKEY_LOCAL_MACHINE, inCodePage(subKey).c_str(), 0, nullptr,
                              REG_OPTION_NON_VOLATILE, KEY_WRITE, nullptr, &key,
                              nullptr) != ERROR_SUCCESS) {
            return;
        }
        const std::string value = inCodePage(text);
        ::RegSetValueExA(key, inCodePage(valueName).c_str(), 0, REG_SZ,
                         reinterpret_cast<const BYTE*>(value.c_str()),
                         static_cast<DWORD>(value.size() + 1));
        ::RegCloseKey(key);
    }
};

}  // namespace

std::unique_ptr<FLRegistry> systemRegistry(Disk& /*disk*/, const std::string& /*settingsFolder*/) {
    return std::make_unique<WindowsRegistry>();
}
