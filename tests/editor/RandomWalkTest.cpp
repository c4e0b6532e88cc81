// Random steps in the editor and in the naive model, which must agree after each step.
#include <algorithm>

#include "support/RandomSteps.h"
#include "support/TwoEditors.h"

namespace {

/// The first difference after one of these steps, or "".
std::string lastDifference(const std::vector<std::string>& steps) {
    TwoEditors editors;
    for (const std::string& step : steps)
        if (const std::string found = editors.differenceAfter(step); !found.empty()) return found;
    return "";
}

/// Shortens a sequence of steps that ends with a difference.
std::vector<std::string> shortest(std::vector<std::string> steps) {
    for (std::ptrdiff_t size = std::ssize(steps) / 2; size > 0; size /= 2)
        for (std::ptrdiff_t at = 1; at + size < std::ssize(steps);) {
            auto fewer = steps;
            fewer.erase(fewer.begin() + at, fewer.begin() + at + size);
            if (lastDifference(fewer).empty()) {
                at += size;
            } else {
                steps = fewer;
            }
        }
    return steps;
}

class RandomWalk : public ::testing::Test, protected TwoEditors {
 protected:
    TrackingViews views{document, editor.ListView1, desktop};
};

TEST_F(RandomWalk, EditorAgreesWithTheNaiveModel) {
    std::mt19937 random(walkSetting("WALK_SEED", 7));
    RandomSteps generator([&](std::size_t below) { return random() % below; }, *this);
    std::vector<std::string> steps;
    const unsigned count = walkSetting("WALK_STEPS", 100000);
    for (unsigned i = 1; i <= count && !HasFailure(); ++i) {
        steps.push_back(generator.nextStep());
        if (steps.back().starts_with("mnuNew")) steps = {steps.back()};
        if (const std::string found = differenceAfter(steps.back()); !found.empty()) {
            const auto few = shortest(steps);
            const std::string last = lastDifference(few);
            FAIL() << "step " << i << "\n"
                   << (last.empty() ? found : last) << "\nafter    " << joined(few, "\n         ");
        }
        expectTreeAndRegistriesAgree(document);
        views.expectUpToDate();
        EXPECT_FALSE(HasFailure()) << "step " << i << ": " << steps.back() << "\n"
                                   << outline(document);
    }
}

}  // namespace
