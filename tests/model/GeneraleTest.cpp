#include "model/Generale.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "model/Document.h"
#include "model/RunTimeError.h"

namespace {

TEST(Keys, FollowARenameAndGoWithAllThatIsBelow) {
    Document document;
    document.startAt("/house.xml");
    ConfigTree& tree = document.tree();
    Node& device = tree.AddNode(Document::rootKey, "P", "P", NodeKind::plc);
    const auto branch = std::make_shared<clsBranch>();
    branch->sKey = "P." + (branch->sName = "b");
    tree.AddNode(&document.enter(branch, device), "P.b.Q", "Q", NodeKind::plc);  // dropped there
    tree.setText(device, "C");
    tree.setKey(device, "C");
    UpdateChildKeys(document, device);
    EXPECT_EQ(document.branches().last()->sKey, "C.b");
    EXPECT_NE(tree.FindNode("C.b.Q"), nullptr);
    document.devices().add(std::make_shared<clsPLC>(), "C");
    RemoveSubtree(document, device);
    EXPECT_EQ(tree.count() + document.branches().count() + document.devices().count(), 1U);
}

TEST(GroupAddress, HasAHexadecimalIndex) {
    const std::vector<std::pair<const char*, std::vector<const char*>>> cases = {
        {"0A03", {"1/2/3", " 1 / 2 / 3 ", "1/2/3/4", "0/10/3", "1/2/2.7"}},
        {"FFFF", {"31/7/255"}},
        {"0001", {"0/0/1", "//1"}},
        {"0A00", {"1/2", "1/2/", "1/2/x"}},
        {"0000", {"", "/", "a/b/c", "0/0/0.5"}},
        {"10000", {"32/0/0"}},
        {"7FFFFFFF", {"1048575/7/255"}},
        {"FFFFFFFF", {"0/0/-1"}}};
    for (const auto& [index, addresses] : cases)
        for (const char* address : addresses)
            EXPECT_EQ(AddressToHex(address, 4), index) << address;
    for (const char* huge : {"1048576/0/0", "1e400/0/0", "1e400/-1e400/0"})
        EXPECT_THROW(AddressToHex(huge, 4), RunTimeError) << huge;
}

}  // namespace
