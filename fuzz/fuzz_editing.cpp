// Plays a sequence of user actions; one or a few bytes of the input choose each step. The naive
// editor must have the same result after each.
#include "Fuzzing.h"
#include "support/NaiveEditor.h"
#include "support/RandomUser.h"

/// Uses only the start of the input: a few hundred steps find the same faults as more steps, and
/// short runs allow more runs.
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
