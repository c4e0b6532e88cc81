#include "dialogs/KeyFilters.h"

int filterNameKey(int code) {
    const bool passes = code == '-' || code == '_' || (code >= '0' && code <= '9') ||
                        (code >= 'A' && code <= 'Z') || (code >= 'a' && code <= 'z') ||
                        code == '\b';
    return passes ? code : 0;
}
