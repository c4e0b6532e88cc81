#include "model/Reporting.h"

#include <gmock/gmock.h>

#include <new>
#include <stdexcept>

#include "model/RunTimeError.h"
#include "support/FakeDesktop.h"

namespace {

TEST(Reporting, ShowsEveryErrorOfAHandlerAndLetsNoneEscape) {
    FakeDesktop desktop;
    EXPECT_TRUE(reportErrors(desktop, "a", [] {}));
    EXPECT_FALSE(reportErrors(desktop, "b", [] {
        throw RunTimeError(ErrorNumber::invalidFileFormat, "Line 12: mismatched tag");
    }));
    reportErrors(desktop, "c", [] { throw std::bad_alloc(); });
    reportErrors(desktop, "d", [] { throw std::length_error("too long"); });
    reportErrors(desktop, "e", [] { throw 1; });
    reportChooserErrors(desktop, "f", [] { throw RunTimeError(ErrorNumber::diskFull); });
    EXPECT_THAT(
        desktop.messages(),
        testing::ElementsAre(" Error n. 321  Line 12: mismatched tag in b",
                             " Error n. 7  Out of memory in c", " Error n. 51  too long in d",
                             " Error n. 51  Internal error in e", "f Error n. 61  Disk full"));
}

}  // namespace
