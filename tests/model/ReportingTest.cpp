#include "model/Reporting.h"

#include <stdexcept>

#include "support/FakeDesktop.h"

namespace {

TEST(Reporting, LetsNoErrorEscapeThatIsNotOneOfTheEditorsOwn) {
    FakeDesktop desktop;
    EXPECT_FALSE(reportErrors(desktop, "a", [] { throw std::length_error("too long"); }));
    EXPECT_FALSE(reportErrors(desktop, "b", [] { throw 1; }));
    EXPECT_EQ(desktop.messages(), (std::vector<std::string>{" Error n. 51  too long in a",
                                                            " Error n. 51  Internal error in b"}));
}

}  // namespace
