#include <fcntl.h>
#include <io.h>
#include <windows.h>
// Must come after windows.h.
#include <shellapi.h>

#include <cstdio>
#include <memory>

#include "tool/Terminal.h"

namespace {

std::string toUtf8(const wchar_t* text) {
    const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
    if (size <= 0) return {};
    std::string utf8(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, text, -1, utf8.data(), size, nullptr, nullptr);
    utf8.pop_back();  // the terminating zero
    return utf8;
}

}  // namespace

/// The arguments of main() are in the user's code page, so they are not used.
std::vector<std::string> utf8Arguments(int /*count*/, char** /*arguments*/) {
    int count = 0;
    const std::unique_ptr<wchar_t*, decltype(&LocalFree)> arguments(
        CommandLineToArgvW(GetCommandLineW(), &count), LocalFree);
    std::vector<std::string> texts;
    for (int i = 1; i < count; ++i)
        texts.push_back(toUtf8(arguments.get()[i]));
    return texts;
}

void showUtf8() {
    SetConsoleOutputCP(CP_UTF8);
    for (std::FILE* stream : {stdout, stderr})
        _setmode(_fileno(stream), _O_BINARY);
}
