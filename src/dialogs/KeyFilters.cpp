#include "dialogs/KeyFilters.h"

#include <algorithm>
#include <array>

int filterNameKey(int code) {
    const bool passes = code == '-' || code == '_' || (code >= '0' && code <= '9') ||
                        (code >= 'A' && code <= 'Z') || (code >= 'a' && code <= 'z') ||
                        code == '\b';
    return passes ? code : 0;
}

int FilterNumericKey(int code) {
    static constexpr std::array passing = {'-', '.', '\b', '\t', '\n', '\r', ' '};
    const bool passes =
        (code >= '0' && code <= '9') || std::ranges::find(passing, code) != passing.end();
    return passes ? code : 0;
}
