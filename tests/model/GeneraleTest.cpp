#include "model/Generale.h"

#include <gmock/gmock.h>
#include <pthread.h>

#include <ctime>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "model/Document.h"
#include "model/RunTimeError.h"
#include "support/FakeDesktop.h"

namespace {

using testing::ElementsAre;

auto raises(ErrorNumber number) {
    return testing::Throws<RunTimeError>(testing::Property(&RunTimeError::number, number));
}

/// A document that is filled by naming the keys of its devices, branches and items.
class Names : public testing::Test {
 protected:
    Names() { document.startAt("C:\\house.xml"); }

    void device(const std::string& name) {
        const auto record = std::make_shared<clsPLC>();
        record->setName(name);
        document.enter(record);
    }
    template <typename Record>
    void enter(const std::string& key) {
        const auto record = std::make_shared<Record>();
        record->sKey = key;
        record->sName = key.substr(key.rfind('.') + 1);
        document.enter(record, at(parentKeyOf(key)));
    }
    void branch(const std::string& key) { enter<clsBranch>(key); }
    void item(const std::string& key) { enter<clsItem>(key); }
    Node& at(std::string_view key) { return document.tree().nodeAt(key); }

    /// Gives a branch another name, as its dialog does.
    void rename(Node& node, const std::string& name) {
        const std::string key = BuildNodeKey(name, &node, true);
        document.branches().rekey(node.key(), key, [&](clsBranch& record) { record.sKey = key; });
        document.tree().setText(node, name);
        document.tree().setKey(node, key);
        UpdateChildKeys(document, node);
    }

    template <typename Record>
    static std::string keys(const Registry<Record>& registry) {
        std::string result;
        for (const auto& [key, record] : registry) {
            EXPECT_EQ(record->sKey, key);
            result += key + " ";
        }
        return result;
    }
    std::string treeKeys() {
        std::string result;
        for (TreeWalk walk(*document.tree().root()); const Node* node = walk.next();) {
            EXPECT_EQ(document.tree().FindNode(node->key()), node);
            result += node->key() + " ";
        }
        return result;
    }

    Document document;
    FakeDesktop desktop;
};

using Keys = Names;
using DuplicateNames = Names;

TEST_F(Keys, ArePathsOfNamesJoinedByDots) {
    EXPECT_EQ(parentKeyOf("Plant.Floor1.Light3"), "Plant.Floor1");
    for (const char* top : {"Plant", ".Plant", ""})
        EXPECT_EQ(parentKeyOf(top), "") << top;

    device("Plant");
    branch("Plant.Floor1");
    EXPECT_EQ(BuildNodeKey("Light3", &at("Plant.Floor1"), false), "Plant.Floor1.Light3");
    EXPECT_EQ(BuildNodeKey("Floor2", &at("Plant.Floor1"), true), "Plant.Floor2");
    for (const bool useParent : {false, true})
        EXPECT_THAT([&] { BuildNodeKey("A", nullptr, useParent); },
                    raises(ErrorNumber::objectNotSet));
    EXPECT_THAT([&] { BuildNodeKey("A", &at("config"), true); }, raises(ErrorNumber::objectNotSet));
}

TEST_F(Keys, OfAllBelowARenamedBranchFollowInTreeRegistriesAndRecords) {
    device("Plant");
    branch("Plant.A");
    branch("Plant.A.B");
    item("Plant.A.Z");
    item("Plant.A.B.L");
    branch("Plant.A.C");
    branch("Plant.D");
    item("Plant.AZ");
    // Where a device was dropped, too.
    document.tree().AddNode("Plant.A.B", "Plant.A.B.Pump", "Pump", NodeKind::plc);
    item("Plant.A.B.Pump.X");

    rename(at("Plant.A"), "New");
    EXPECT_EQ(treeKeys(),
              "Plant Plant.New Plant.New.B Plant.New.B.L Plant.New.B.Pump Plant.New.B.Pump.X "
              "Plant.New.Z Plant.New.C "
              "Plant.D Plant.AZ ");
    EXPECT_EQ(document.tree().FindNode("Plant.A.B.L"), nullptr);
    EXPECT_EQ(keys(document.items()), "Plant.AZ Plant.New.B.L Plant.New.B.Pump.X Plant.New.Z ");
    EXPECT_EQ(keys(document.branches()), "Plant.D Plant.New Plant.New.B Plant.New.C ");

    rename(at("Plant.New"), "new");  // the same to the registries, another to the tree
    EXPECT_EQ(keys(document.items()), "Plant.AZ Plant.new.B.L Plant.new.B.Pump.X Plant.new.Z ");
    EXPECT_EQ(at("Plant.new.B.L").parent(), &at("Plant.new.B"));
}

TEST_F(Keys, OfAllGroupAddressesInOneBranchFollowAtOnce) {
    device("Plant");
    branch("Plant.A");
    for (int i = 0; i < 65536; ++i)
        item("Plant.A.Item_" + std::to_string(i));
    const std::clock_t start = std::clock();  // processor time: the machine may be busy
    rename(at("Plant.A"), "B");
    EXPECT_LT(std::clock() - start, CLOCKS_PER_SEC);
    EXPECT_EQ(document.items().last()->sKey, "Plant.B.Item_65535");
}

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

TEST_F(Keys, FollowInATreeOfAnyDepthWithoutRecursion) {
    onSmallStack([this] {
        device("P");
        std::string key = "P";
        for (int i = 0; i < 3000; ++i)
            branch(key += ".b");
        rename(at("P.b"), "c");
        key[2] = 'c';
        EXPECT_EQ(document.branches().last()->sKey, key);
        RemoveSubtree(document, at("P.c"));
        EXPECT_EQ(treeKeys() + keys(document.branches()), "P ");

        ConfigTree chain;  // goes with its nodes
        const Node* last = &chain.AddNode("", "0", "", NodeKind::config);
        for (int i = 1; i < 20000; ++i)
            last = &chain.AddNode(last->key(), std::to_string(i), "", NodeKind::branch);
    });
}

TEST_F(Names, OfARemovedSubtreeAreFreeInTreeAndRegistries) {
    device("Plant");
    branch("Plant.A");
    branch("Plant.A.B");
    item("Plant.A.B.L");
    item("Plant.M");
    device("Pump");
    item("Pump.M");
    RemoveSubtree(document, at("Plant.A"));
    EXPECT_EQ(treeKeys(), "Plant Plant.M Pump Pump.M ");
    EXPECT_EQ(keys(document.branches()) + keys(document.items()), "Plant.M Pump.M ");
    RemoveSubtree(document, at("Plant"));
    EXPECT_EQ(document.devices().find("Plant"), nullptr);
    EXPECT_EQ(keys(document.items()), "Pump.M ");
}

TEST_F(Names, ThatCannotBeEnteredLeaveNeitherNodeNorRecord) {
    device("Plant");
    branch("Plant.Same");
    item("Plant.light");
    EXPECT_THAT([&] { item("Plant.Same"); }, raises(ErrorNumber::keyNotUnique));
    EXPECT_THAT([&] { item("Plant.Light"); }, raises(ErrorNumber::keyTaken));
    EXPECT_THAT([&] { item("Nowhere.Light"); }, raises(ErrorNumber::elementNotFound));
    EXPECT_THAT([&] { device("config"); }, raises(ErrorNumber::keyNotUnique));
    EXPECT_EQ(treeKeys(), "Plant Plant.Same Plant.light ");
    EXPECT_EQ(keys(document.items()), "Plant.light ");
    EXPECT_EQ(document.devices().count(), 1U);
}

TEST_F(DuplicateNames, AreThoseOfSiblingsOfTheSameKindInTheSameCase) {
    device("Plant");
    branch("Plant.A");
    branch("Plant.B");
    item("Plant.Light");
    item("Plant.A.Lamp");
    const struct {
        const char* selected;
        bool useParent;
        NodeKind kind;
        const char* name;
        bool free;
    } cases[] = {{"Plant", false, NodeKind::branch, "B", false},
                 {"Plant", false, NodeKind::branch, "b", true},
                 {"Plant", false, NodeKind::item, "B", true},
                 {"Plant", false, NodeKind::item, "Lamp", true},  // stands a level deeper
                 {"Plant.A", false, NodeKind::item, "Lamp", false},
                 {"Plant.A", false, NodeKind::item, "Light", true},  // stands a level higher
                 {"Plant.A", true, NodeKind::branch, "A", true},     // its own name
                 {"Plant.A", true, NodeKind::branch, "B", false},
                 {"config", false, NodeKind::plc, "Plant", false}};
    for (const auto& [selected, useParent, kind, name, free] : cases) {
        desktop.forgetMessages();
        document.tree().select(&at(selected));
        EXPECT_EQ(CheckDuplNames(kind, name, document.tree(), useParent, desktop), free)
            << name << " at " << selected;
        EXPECT_EQ(desktop.messages().size(), free ? 0U : 1U);
    }
    document.tree().select(nullptr);
    EXPECT_FALSE(CheckDuplNames(NodeKind::plc, "A", document.tree(), true, desktop));
    EXPECT_THAT(desktop.messages(),
                ElementsAre("Name already existing. Please use a different name",
                            " Error n. 91  Object variable or With block variable not set in "
                            "CheckDuplNames"));
}

TEST_F(Names, HoldNoneOfTheForbiddenCharacters) {
    EXPECT_TRUE(CheckChars("Light_3-\u00E4<>&\"'\t", desktop));
    // Each text holds, backwards, the character and all that come after it in the order.
    for (std::string rest = " .,:;\\/|"; !rest.empty(); rest.erase(0, 1)) {
        desktop.forgetMessages();
        const std::string text = "x" + std::string(rest.rbegin(), rest.rend());
        EXPECT_FALSE(CheckChars(text, desktop));
        EXPECT_THAT(desktop.messages(), ElementsAre("Character (" + rest.substr(0, 1) +
                                                    ") not acceptable in string " + text));
    }
}

TEST(NumericFields, LetOnlyNumbersAndControlKeysPass) {
    std::string passing;
    for (int code = 0; code < 300; ++code)
        if (const int passed = FilterNumericKey(code); passed != 0)
            passing += passed == code ? static_cast<char>(code) : '!';
    EXPECT_EQ(passing, "\b\t\n\r -.0123456789");
}

TEST(GroupAddress, HasAHexadecimalIndex) {
    const struct {
        const char* index;
        std::vector<const char*> addresses;
    } cases[] = {{"0A03", {"1/2/3", " 1 / 2 / 3 ", "1/2/3/4", "0/10/3", "1/2/2.7"}},
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
    EXPECT_EQ(AddressToHex("1/2/3", 6), "000A03");
    for (const char* huge : {"1048576/0/0", "1e400/0/0", "1e400/-1e400/0"})
        EXPECT_THAT([&] { AddressToHex(huge, 4); }, raises(ErrorNumber::overflow)) << huge;
}

}  // namespace
