// What is saved is read back, of configurations that hold anything whatever.
#include "file/FileRules.h"

#include <cstdlib>
#include <random>

#include "model/Keys.h"
#include "support/ReadBack.h"

namespace {

/// With RULES_SEED and RULES_DOCUMENTS set, other configurations than the usual, and more.
unsigned setting(const char* name, unsigned usual) {
    const char* value = std::getenv(name);
    return value == nullptr ? usual : static_cast<unsigned>(std::stoul(value));
}

class RandomDocuments : public EditorWorld {
 public:
    RandomDocuments() {
        disk.writesSpoiledFiles = true;
        document.open = true;
    }

    void make() {
        oddity_ = std::array{0U, 0U, 3U, 12U}[below(4)];
        document.startAt("/random.xml");
        document.setSettings({oneIn(40) ? text() : "COM1", oneIn(40) ? text() : "USB", 1000});
        for (std::size_t devices = 1 + below(3); devices > 0; --devices)
            attempt([&] {
                const auto device = std::make_shared<clsPLC>();
                const bool isOdd = oneIn(20);
                device->SetByForm({text(), isOdd ? text() : "COM1", "USB", "1500"});
                addContents(document.add(device), 0);
            });
        for (std::size_t drags = below(4) / 2; drags > 0; --drags)
            dragAny();
        document.saved = false;
        told();
    }

    std::mt19937 random{setting("RULES_SEED", 5)};

 private:
    std::size_t below(std::size_t n) { return random() % n; }
    bool oneIn(std::size_t n) { return below(n) == 0; }

    /// Few letters, that texts collide.
    std::string text() {
        static constexpr std::array usual{"a", "b", "A", "B", "a.b", "tag1", "\u00E4", "\u00C4"};
        static constexpr std::array odd{
            "\u20AC", "\u0178", "\u0416", "\U0001F600", "?",       "\t",
            "\n",     "\r",     "\r\n",   " ",          ".",       ":",
            "&",      "<",      ">",      "\"",         "]]>",     "&amp;",
            "\x01",   "\x7F",   "\u0085", "\u00AA",     "\u00B7",  "\u00DF",
            "\u00FF", "\u0153", "\u0152", "\u00D7",     "tag",     "TAGS",
            "-",      "1",      "\uFFFD", "\" x=\"",    "<b></b>", "</name><name>"};
        std::string text;
        for (std::size_t pieces = 1 + below(2); pieces > 0; --pieces) {
            const bool isOdd = oddity_ > 0 && oneIn(oddity_);
            text += isOdd ? odd[below(odd.size())] : usual[below(usual.size())];
        }
        return text;
    }
    template <typename Add>
    static void attempt(const Add& add) {
        try {
            add();
        } catch (const RunTimeError&) {
            // The name is taken.
        }
    }
    void addContents(Node& parent, int level) {
        for (std::size_t things = below(4); things > 0; --things) {
            const std::string name = text();
            const SharedText key = joinKey(parent.key(), name);
            attempt([&] {
                if (oneIn(2) && level < 3) {
                    const auto branch = std::make_shared<clsBranch>();
                    branch->sName = name;
                    branch->sKey = key;
                    return addContents(document.add(branch, parent), level + 1);
                }
                addItem(parent, name);
            });
        }
    }
    void addItem(Node& parent, const std::string& name) {
        const auto item = std::make_shared<clsItem>();
        item->sName = name;
        item->sKey = joinKey(parent.key(), name);
        item->sComment = oneIn(4) ? text() : "";
        item->sAddress = oneIn(60) ? text() : "1/2/3";
        item->sDataType = oneIn(60) ? text() : oneIn(2) ? "EIS15" : "EIS1";
        item->sAccessRight = oneIn(60) ? text() : "READ";
        item->nElements = static_cast<std::int16_t>(random());
        item->bFlag = oneIn(2);
        document.add(item, parent);
    }
    Node& anyNode() {
        auto node = document.tree().nodes().begin();
        for (auto skipped = below(document.tree().nodes().size()); skipped > 0; --skipped)
            ++node;
        return **node;
    }
    /// Most often a device, below whose bare node something is added then.
    void dragAny() {
        Node* source = &anyNode();
        while (source->parent() != nullptr && !source->isDevice() && !oneIn(3))
            source = source->parent();
        const SharedText target = anyNode().key();
        if (target != Document::rootKey || oneIn(8))
            drag(source->key().string(), target.string(), oneIn(4) ? TreeDrag::ctrlMask : 0);
        Node& any = anyNode();
        if (any.isDroppedDevice()) attempt([&] { addItem(any, text()); });
    }

    std::size_t oddity_ = 0;  // one piece of so many is odd
};

TEST(FileRules, TellWhatCannotBeReadBackAndNothingElse) {
    RandomDocuments world;
    readBack::Check check;
    const unsigned documents = setting("RULES_DOCUMENTS", 10'000);
    for (unsigned i = 0; i < documents && !::testing::Test::HasFailure(); ++i) {
        world.make();
        check(world);
        EXPECT_FALSE(::testing::Test::HasFailure())
            << "document " << i << ": " << outline(world.document);
    }
    const auto [readBack, changed, asked, refused] = check.outcomes;
    EXPECT_GT(std::min({readBack, changed, asked, refused}), static_cast<int>(documents / 100));
    if (documents > 100'000)
        std::printf("%d read back, %d of them changed; %d asked, %d refused\n", readBack, changed,
                    asked, refused);
}

/// A branch of that name, which need not be one that a file can hold.
Node& addBranch(EditorWorld& world, const std::string& parentKey, const std::string& name) {
    const auto branch = std::make_shared<clsBranch>();
    branch->sName = name;
    branch->sKey = joinKey(parentKey, name);
    world.document.saved = false;
    return world.document.add(branch, world.document.tree().nodeAt(parentKey));
}

const std::string ampersand = configuration(plc("P", tag("x") + tag("a&amp;b")) + plc("Q&lt;"));

/// What saving such a configuration to another file says, and which node is shown then.
TEST(FileRules, TellTheFirstThingInTheWay) {
    const auto none = [](EditorWorld& /*world*/) {};
    const auto lost = [](const std::string& one, const std::string& other) {
        return " Error n. 5  \"" + one + "\" has the name of \"" + other +
               "\" once it is read back and cannot be saved in CreateXML\n";
    };
    const auto asked = [](const std::string& number, const std::string& path) {
        return number + " texts cannot be read back by the OPC server, the first in " + path +
               ". Save all the same?\n";
    };
    const struct {
        std::string file;
        void (*change)(EditorWorld&);
        std::string told, shown;
    } cases[] = {
        {configuration(plc("P", tag("&#1050;&#1091;&#1093;") + tag("&#1042;&#1072;&#1085;"))), none,
         lost("P.\u0412\u0430\u043D", "P.\u041A\u0443\u0445"), "P.\u0412\u0430\u043D"},
        {configuration(plc("&#8364;") + plc("&#376;")), none, lost("\u0178", "\u20AC"), "\u0178"},
        {configuration(plc("a b") + plc("a&#9;B")), none, lost("a\tB", "a b"), "a\tB"},
        {configuration(plc("P", tag("a&#13;b") + tag("a&#10;b"))), none, lost("P.a\nb", "P.a\rb"),
         "P.a\nb"},
        {configuration(plc("P", tag("A.B"))),
         [](EditorWorld& world) {
             addBranch(world, "P", "a");
             addBranch(world, "P.a", "b");
         },
         lost("P.A.B", "P.a.b"), "P.A.B"},
        {configuration(plc("Plant") + plc("Q")),
         [](EditorWorld& world) {
             addBranch(world, "Plant", "Ground floor");
             world.drag("Plant", "Q");
         },
         asked("1", "Plant.Ground floor"), "Q.Plant"},
        {configuration(plc("Plant") + plc("Q")),
         [](EditorWorld& world) {
             addBranch(world, "Plant", "1");
             world.drag("Plant", "Q");
             world.document.RemoveSubtree(world.document.tree().nodeAt("Q.Plant"));
         },
         asked("1", "Plant.1"), "config"},
        {configuration(plc("P")), [](EditorWorld& world) { addBranch(world, "P", "a:B"); },
         asked("1", "P.a:B"), "P.a:B"},
        {configuration(plc("P")), [](EditorWorld& world) { addBranch(world, "P", "TAG"); },
         asked("1", "P.TAG"), "P.TAG"},
        {ampersand, none, asked("2", "P.a&b"), "P.a&b"},
        {configuration(plc("P", tag("x"))),
         [](EditorWorld& world) {
             world.document.setSettings({"a\"b", "USB", 1000});
         },
         asked("1", "Global Settings"), "config"},
        {configuration(plc("P", "<tags><Tags>" + tag("x") + "</Tags></tags>")), none, "", "config"},
    };
    for (const auto& [file, change, told, shown] : cases) {
        EditorWorld world;
        world.disk.writesSpoiledFiles = true;
        world.open("/house.xml", file);
        change(world);
        world.desktop.willChoose("/other.xml");
        if (told.ends_with("?\n")) world.desktop.willAnswer({Answer::no});
        world.editor.mnuSaveAs_Click();
        EXPECT_EQ(world.told(), told);
        EXPECT_EQ(world.document.tree().selected()->key(), shown);
        EXPECT_EQ(world.disk.files.contains("/other.xml"), told.empty());
        EXPECT_EQ(world.document.currentPath(), told.empty() ? "/other.xml" : "/house.xml");
    }
}

/// Each way to a save asks, proposing No; after No all is as it was, and the node is shown.
TEST(FileRules, KeepTheFileUnlessTheUserSaysSo) {
    using enum Answer;
    for (const char* way : {"mnuSaveCfg", "mnuSaveAs", "mnuNewCfg", "mnuOpenCfg", "mnuImpCfg",
                            "mnuCloseCfg", "mnuExit", "Form_Unload", "mayEnd", "nobody", "dialog"})
        for (const Answer answer : {no, yes}) {
            EditorWorld world;
            world.disk.writesSpoiledFiles = true;
            const std::string name = way;
            world.open("/house.xml", ampersand);
            world.change();
            world.dialogIsOpen = name == "dialog";
            world.desktop.willChoose("/house.xml");
            if (name == "mnuSaveCfg") world.desktop.willAnswer({yes, answer});
            if (name == "mnuSaveAs") world.desktop.willAnswer({answer});
            if (!name.starts_with("mnuSave")) world.desktop.willAnswer({yes, yes, answer});
            bool mayEnd = false;
            if (name == "Form_Unload") mayEnd = world.editor.Form_Unload();
            if (name == "mayEnd" || name == "dialog")
                mayEnd = world.editor.mayEnd([] { return true; });
            if (name == "nobody") mayEnd = world.editor.mayEnd([] { return false; });
            if (name.starts_with("mnu")) world.editor.run(commandNamed(way));
            if (name == "nobody") {
                EXPECT_TRUE(mayEnd && world.disk.files["/house.xml"] == ampersand) << world.told();
                continue;
            }
            EXPECT_EQ(world.desktop.answersLeft(), 0U) << way;
            const auto& messages = world.desktop.messages();
            const auto question =
                std::ranges::find(messages,
                                  "2 texts cannot be read back by the OPC server, the first in "
                                  "P.a&b. Save all the same?");
            ASSERT_NE(question, messages.end()) << way;
            EXPECT_EQ(
                world.desktop.manners()[static_cast<std::size_t>(question - messages.begin())],
                " [No]");
            EXPECT_EQ(world.disk.files["/house.xml"] == ampersand, answer == no) << way;
            if (answer == yes) continue;
            EXPECT_TRUE(!mayEnd && !world.applicationEnded && !world.document.saved) << way;
            EXPECT_EQ(world.document.tree().selected()->key(),
                      name == "dialog" ? "config" : "P.a&b");
        }
}

/// Of equal messages five are shown, and how many there are besides, with the views whole behind.
TEST(FileRules, ManyEqualMessagesAreFew) {
    EditorWorld world;
    const WatchingViews views(world.document.tree(), world.editor.ListView1, world.desktop);
    std::string items, names;
    for (int i = 0; i < 300; ++i) {
        items += tag("x" + std::to_string(i));
        names += "a " + std::to_string(i) + "\n";
    }
    items.replace(items.find("1/2/3"), 5, "1e400/2/3");
    world.open("/house.xml", configuration(plc("P", items)));
    world.click("P");
    for (std::size_t row = 0; row < 300; ++row)
        world.selectRow(row);
    world.desktop.clipboard = names;
    world.forms.whenShown<frmReplace>(&frmReplace::Command2_Click);
    world.told();
    world.editor.mnuPasteName_Click();
    std::string told;
    for (int i = 0; i < 5; ++i)
        told += "Character ( ) not acceptable in string a " + std::to_string(i) + "\n";
    EXPECT_EQ(world.told(), told + "\u2026 and 295 more\n");
    world.editor.mnuCopy_Click();
    world.editor.mnuPaste_Click();
    EXPECT_EQ(world.told(),
              " Error n. 6  Overflow in clsItem.AddToList\n"
              " Error n. 6  Overflow in clsItem.AddToList\n");
}

/// The mark of UTF-8 counts for more than the encoding that is declared.
TEST(FileRules, AMarkedFileIsReadAsItIsMarked) {
    EditorWorld world;
    for (const char* declared : {"ISO-8859-1", "UTF-8", "windows-1252"}) {
        world.open("/house.xml", std::string("\xEF\xBB\xBF<?xml version='1.0' encoding='") +
                                     declared + "'?>" + configuration(plc("P", tag("K\u00FCche"))));
        EXPECT_EQ(world.told() + outline(world.document), "P[K\u00FCche]");
    }
}

}  // namespace
