#include "dialogs/KeyFilters.h"

#include <gtest/gtest.h>

namespace {

TEST(KeyFilters, AcceptOnlyTheCharactersOfTheField) {
    const auto passing = [](int (*filter)(int)) {
        std::string all;
        for (int code = 0; code < 300; ++code)
            if (const int passed = filter(code); passed != 0)
                all += passed == code ? static_cast<char>(code) : '!';
        return all;
    };
    EXPECT_EQ(passing(FilterNumericKey), "\b\t\n\r -.0123456789");
    EXPECT_EQ(passing(filterNameKey),
              "\b-0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz");
}

}  // namespace
