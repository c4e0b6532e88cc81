// A sequence of what a user can do, a byte or a few for each step. The naive editor must agree.
#include "Fuzzing.h"
#include "support/NaiveEditor.h"
#include "support/RandomUser.h"

/// What many steps break, a few hundred do; and shorter runs are more runs.
FUZZ_TARGET(input) {
    std::string_view bytes = input.substr(0, 300);
    TwoEditors editors;
    RandomUser user(
        [&](std::size_t below) {
            if (bytes.empty()) return std::size_t{0};
            const auto byte = static_cast<unsigned char>(bytes.front());
            bytes.remove_prefix(1);
            return byte % below;
        },
        editors);
    while (!bytes.empty()) {
        EXPECT_EQ(editors.differenceAfter(user.nextStep()), "");
        expectTreeAndRegistriesAgree(editors.document);
    }
}
