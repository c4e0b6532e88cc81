// Saves random configurations and reads them back.
#include "file/FileRules.h"

#include "support/RandomDocuments.h"
#include "support/ReadBack.h"

namespace {

TEST(FileRules, ReportExactlyWhatCannotBeReadBack) {
    RandomDocuments world;
    readBack::Check check;
    const unsigned documents = walkSetting("RULES_DOCUMENTS", 10'000);
    for (unsigned i = 0; i < documents && !::testing::Test::HasFailure(); ++i) {
        i == 0 || world.below(2) == 0 ? world.make() : world.change();
        check(world);
        EXPECT_FALSE(::testing::Test::HasFailure())
            << "document " << i << ": " << outline(world.document);
    }
    if (::testing::Test::HasFailure()) return;
    const auto [readBack, changed, asked, refused] = check.outcomes;
    EXPECT_GT(std::min({readBack, changed, asked, refused}), static_cast<int>(documents / 100));
}

}  // namespace
