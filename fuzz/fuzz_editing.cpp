// Plays a sequence of user actions; one or a few bytes of the input choose each step. The naive
// model must have the same state after each.
#include "Fuzzing.h"
#include "support/RandomSteps.h"
#include "support/TwoEditors.h"

/// Uses only the start of the input: a few hundred steps find the same faults as more steps, and
/// short runs allow more runs.
FUZZ_TARGET(input) {
    std::string_view bytes = input.substr(0, 300);
    TwoEditors editors;
    RandomSteps generator(
        [&](std::size_t below) {
            if (bytes.empty()) return std::size_t{0};
            const auto byte = static_cast<unsigned char>(bytes.front());
            bytes.remove_prefix(1);
            return byte % below;
        },
        editors);
    while (!bytes.empty()) {
        EXPECT_EQ(editors.differenceAfter(generator.nextStep()), "");
        expectTreeAndRegistriesAgree(editors.document);
    }
}
