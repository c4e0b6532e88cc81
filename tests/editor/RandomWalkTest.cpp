#include <algorithm>
#include <cstdlib>
#include <regex>

#include "support/RandomUser.h"
#include "support/ReadBack.h"

namespace {

/// All that the user may be told on the way.
const std::regex expected(
    "Are you sure you want to delete .*|Do you want to save .*|File [^]*Overwrite.|.* saved|"
    "Name already .*|Please .*|Unable to drag nodes here|Empty clipboard !|Invalid selection|"
    "Character .* not acceptable in string .*|(Item name|Group Address) field .*|"
    "Copied object can not be added here |No items to paste.|Object Name field is empty.|"
    // The new key is that of a node of another kind, or of one in other letter case.
    " Error n. 35602 .* in (AddItemToColl|cmd(Ok|Apply)_Click|mnuPaste_Click|Paste_Name_Click)|"
    " Error n. (457|35602) .* in (AddItemToColl|cmd(Ok|Apply)_Click|Paste_Name_Click|CopySubTree)|"
    // A row's node is a device or gone; a dropped device has no record, and the root no parent.
    " Error n. 35601 .* in (ListView1_(Dbl)?Click|mnuDelete_Click|Paste_Name_Click)|"
    " Error n. 5 .* in (mnu(Copy|Delete)_Click|Paste_(Name|Comment)_Click|TreeView1_DblClick)|"
    " Error n. 91 .* in (mnuDelete|EH_mnuAddbranch|mnuAddItem)_Click");
/// What keeps a configuration from being saved.
const std::regex refusal(
    R"( Error n. 5  "[^]*" (stands below no device|lies more than 1,000 deep|)"
    R"(has the name of "[^]*" once it is read back) and cannot be saved in CreateXML|)"
    R"([0-9]+ texts cannot be read back [^]*Save all the same\?)");

/// Other walks than the usual one: with WALK_SEED set.
unsigned seed() {
    const char* value = std::getenv("WALK_SEED");
    return value == nullptr ? 7 : static_cast<unsigned>(std::stoul(value));
}

class RandomWalk : public ::testing::Test, protected RandomUser {
 protected:
    RandomWalk() : RandomUser(seed()) {}

    std::set<std::string> addresses() const {
        std::set<std::string> all;
        for (const auto& [key, item] : document.items())
            all.insert(item->sAddress.string());
        return all;
    }
    /// Nothing but a deletion, or another configuration, takes an item away.
    void expectAllStillThere(const std::set<std::string>& before, const std::string& done) const {
        for (const char* taking :
             {"mnuDelete", "mnuCut", "mnuNew", "mnuOpen", "mnuClose", "mnuImp"})
            if (done.starts_with(taking)) return;
        EXPECT_TRUE(std::ranges::includes(addresses(), before));
    }

    void check() {
        expectTreeAndRegistriesAgree(document);
        for (const std::string& message : desktop.messages())
            EXPECT_TRUE(!told.insert(message).second || std::regex_match(message, expected) ||
                        std::regex_match(message, refusal))
                << message;
        desktop.forgetMessages();
    }

    WatchingViews views{document.tree(), editor.ListView1, desktop};
    std::set<std::string> told;
    readBack::Check saveAndRead;
};

TEST_F(RandomWalk, LosesNothingAndSavesWhatIsReadBack) {
    for (int i = 1; i <= 100000 && !HasFailure(); ++i) {
        const auto before = addresses();
        const std::string done = step();
        check();
        expectAllStillThere(before, done);
        if (i % 10 == 0 && document.open) saveAndRead(*this);
        EXPECT_FALSE(HasFailure()) << "step " << i << ": " << done << "\n" << outline(document);
    }
    const auto [readBack, changed, asked, refused] = saveAndRead.outcomes;
    EXPECT_TRUE(readBack > 1000 && asked > 10 && refused > 10 && told.size() > 100)
        << readBack << " " << asked << " " << refused << " " << told.size();
}

}  // namespace
