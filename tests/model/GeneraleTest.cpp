#include "model/Generale.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <functional>
#include <string>
#include <vector>

#include "model/Document.h"
#include "model/RunTimeError.h"

namespace {

/// Runs the body on a stack of 128 KB, which any recursion from node to node would overflow.
void onSmallStack(std::function<void()> body) {
    pthread_attr_t attributes;
    pthread_t thread{};
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 128UL * 1024), 0);
    const auto run = [](void* what) -> void* {
        (*static_cast<std::function<void()>*>(what))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &body), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

TEST(Keys, FollowARenameInATreeOfAnyDepthWithoutRecursion) {
    onSmallStack([] {
        Document document;
        document.startAt("/house.xml");
        std::string key = "P";
        ConfigTree& tree = document.tree();
        tree.AddNode(Document::rootKey, key, key, NodeKind::plc);
        for (int i = 0; i < 3000; ++i) {
            const auto record = std::make_shared<clsBranch>();
            record->sName = "b";
            record->sKey = key + ".b";
            document.enter(record, tree.nodeAt(std::exchange(key, record->sKey)));
        }
        tree.AddNode(key, key + ".Q", "Q", NodeKind::plc);  // where a device was dropped
        Node& device = tree.nodeAt("P");
        tree.setText(device, "C");
        tree.setKey(device, "C");
        UpdateChildKeys(document, device);
        key[0] = 'C';
        EXPECT_EQ(document.branches().last()->sKey, key);
        EXPECT_EQ(tree.nodeAt(key + ".Q").parent(), tree.FindNode(key));
        document.devices().add(std::make_shared<clsPLC>(), "C");
        RemoveSubtree(document, device);
        EXPECT_EQ(tree.count() + document.branches().count() + document.devices().count(), 1U);
    });
}

TEST(GroupAddress, HasAHexadecimalIndex) {
    const std::vector<std::pair<const char*, std::vector<const char*>>> cases = {
        {"0A03", {"1/2/3", " 1 / 2 / 3 ", "1/2/3/4", "0/10/3", "1/2/2.7"}},
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
