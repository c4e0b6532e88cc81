// The samples, and files and configurations at the limits of the editor.
#ifndef _WIN32
#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

#include <ctime>
#include <thread>

#include "support/EditorWorld.h"

namespace {

std::string repeated(int count, const std::function<std::string(int)>& piece) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += piece(i);
    return text;
}

std::string repeated(int count, const std::string& text) {
    return repeated(count, [&](int /*i*/) { return text; });
}

std::string nested(int levels, const std::string& name, const std::string& contents) {
    return repeated(levels, "<" + name + ">") + contents + repeated(levels, "</" + name + ">");
}

std::string branchOf(int number) { return "<B" + std::to_string(number) + "/>"; }

std::string item(int number) { return tag("Item_" + std::to_string(number)); }

std::string device(const std::string& contents) { return configuration(plc("P", contents)); }

class Limits : public ::testing::Test, protected EditorWorld {
 protected:
    /// Opens a file of this text. Returns the messages and the outline of the configuration.
    std::string opened(const std::string& text) {
        open("/house.xml", text);
        expectTreeAndRegistriesAgree(document);
        return takeMessages() + outline(document);
    }
    /// Imports it. Returns the messages and the numbers of devices and items.
    std::string imported(const std::string& text) {
        disk.files["/plans/house.\u00E9\u00DFf"] = text;
        desktop.willChoose("/plans/house.\u00E9\u00DFf");
        editor.mnuImpCfg_Click();
        expectTreeAndRegistriesAgree(document);
        return takeMessages() + std::to_string(document.devices().count()) + " " +
               std::to_string(document.items().count());
    }
    /// Saves. Returns the messages after the question about overwriting.
    std::string saved() {
        desktop.willAnswer({Answer::yes});
        editor.mnuSaveCfg_Click();
        const std::string question = "File /house.xml already existing. Overwrite?\n";
        return takeMessages().substr(question.size());
    }
    /// Sets the name that is entered in the branch dialog.
    void willEnterBranchName(const std::string& name) {
        forms.whenShown<frmBranch>([name](frmBranch& form) {
            form.txtBranchName.text = name;
            form.cmdOk_Click();
        });
    }
};

TEST_F(Limits, SamplesAreReadAndSavedByteForByte) {
    const auto machine = systemDisk();
    const std::string house = machine->read(SAMPLES_DIR "/house.xml");
    open("/house.xml", house);
    EXPECT_EQ(document.items().count(), 150U);
    EXPECT_EQ(saved(), "/house.xml saved\n");
    expectSameFile(disk.files["/house.xml"], house);
    EXPECT_EQ(imported(machine->read(SAMPLES_DIR "/house.esf")), "15 150");
    EXPECT_EQ(imported(machine->read(SAMPLES_DIR "/house-dimmer.esf")),
              "This file is not in ETS2 or ETS3 Esf format.\n2 10");
}

TEST_F(Limits, BinaryFilesAreReadOrRefused) {
    EXPECT_EQ(imported(std::string(100'000'000, 'x')), "0 0");
    EXPECT_EQ(imported(std::string("A.L.1/1/0\tNa\0me\tEIS 1\r\n", 23)), "1 1");
    EXPECT_EQ(outline(document), "L[Na_me]");
    EXPECT_EQ(document.currentPath(), "/plans/house.xml");
    const std::string nul = opened(configuration(plc("A")) + '\0');
    EXPECT_EQ(nul, " Error n. 321  Line 1: not well-formed (invalid token) in ImportXML\n");
    std::string utf16 = "\xFF\xFE";
    for (const char c : "<?xml version='1.0' encoding='UTF-16'?>" + configuration(plc("&#228;")))
        utf16.append(1, c).append(1, '\0');
    EXPECT_EQ(opened(utf16), "\u00E4[]");
}

TEST_F(Limits, ForeignExceptionsAreShownAsInternalErrors) {
    EXPECT_FALSE(reportErrors(desktop, "a", [] { throw std::length_error("too long"); }));
    EXPECT_FALSE(reportErrors(desktop, "b", [] { throw 1; }));
    EXPECT_EQ(takeMessages(), " Error n. 51  too long in a\n Error n. 51  Internal error in b\n");
}

TEST_F(Limits, OnlyTheFirstOfManyFaultsAreShown) {
    const std::string shown = repeated(5, " Error n. 94  Invalid use of Null in BrowseBranch\n");
    for (const auto& [faults, more] : {std::pair(205, "200"), {1209, "1,204"}}) {
        const std::string items = repeated(faults, "<tag/>");
        EXPECT_EQ(opened(device(items + tag("x"))), shown + "\u2026 and " + more + " more\nP[x]");
    }
}

TEST_F(Limits, NestingThatIsTooDeepIsRefused) {
    const std::string deep =
        " Error n. 321  Branches lie within one another more than 1,000 deep in ImportXML\n";
    const std::string lengthy =
        " Error n. 321  The path to a branch or an item is longer than 64 KB in ImportXML\n";
    EXPECT_EQ(opened(device(nested(1001, "F", ""))), deep);
    EXPECT_EQ(opened(device(nested(60000, "F", tag("x")))), deep);
    EXPECT_EQ(opened(nested(2000, "F", "")),
              " Error n. 321  Line 1: elements lie within one another too deep in ImportXML\n");
    EXPECT_EQ(opened(device(nested(200, std::string(600, 'n'), ""))), lengthy);
    EXPECT_EQ(opened(device(branch("F", tag(std::string(65533, 'n'))))), lengthy);
    const auto wide = [](int i) { return branch(std::string(600, 'N') + std::to_string(i), ""); };
    EXPECT_EQ(opened(device(repeated(200, wide))).substr(0, 5), "P[NNN") << "siblings";
    const std::string longest(65532, 'n');
    EXPECT_EQ(opened(device(branch("F", tag(longest)))), "P[F[" + longest + "]]");
    click("P.F");
    willEnterBranchName(longest + "n");
    editor.mnuAddBranch_Click();
    EXPECT_EQ(saved(), " Error n. 5  \"P.F." + longest.substr(0, 26) + "\u2026" +
                           longest.substr(0, 29) +
                           "\" has a path longer than 64 KB and cannot be saved in CreateXML\n");

    document.saved = true;
    const std::string deepest = nested(1000, "F", tag("x"));
    opened(device(deepest));
    EXPECT_EQ(saved(), "/house.xml saved\n");
    std::string written = disk.files["/house.xml"];
    std::erase_if(written, [](char c) { return c < ' '; });
    EXPECT_NE(written.find(deepest), std::string::npos);
    click("P" + repeated(1000, ".F"));
    willEnterBranchName("G");
    editor.mnuAddBranch_Click();
    EXPECT_EQ(saved(),
              " Error n. 5  \"P.F.F.F.F.F.F.F.F.F.F.F.F.F.F.\u2026F.F.F.F.F.F.F.F.F.F.F.F.F.F.G\" "
              "lies more than 1,000 deep and cannot be saved in CreateXML\n");
}

TEST_F(Limits, AllGroupAddressesInOneBranchAreLoadedWithProgressAndEditedQuickly) {
    std::set<std::string> meanwhile;
    desktop.onPendingEvents = [&] {
        meanwhile.insert((editor.pnlImpStat.visible ? editor.pnlImpStat.lblLabel : "") + " " +
                         enabledNow());
    };
    open("/small.xml", configuration(plc("Plant", item(0))));
    EXPECT_EQ(meanwhile.size(), 1U) << "before the work begins";
    open("/full.xml", configuration(plc("Plant", branch("A", repeated(65280, item)))));
    EXPECT_EQ(meanwhile, std::set<std::string>{"Loading File .... mnuExit mnuAbout"});
    EXPECT_FALSE(editor.pnlImpStat.visible);
    EXPECT_EQ(editor.pnlImpStat.progress, 80) << "it restarts at 0 after 99";

    click("Plant.A");
    // Not wall-clock time: the machine may be busy.
    [[maybe_unused]] const std::clock_t start = std::clock();
    forms.whenShown<frmItems>([](frmItems& form) {
        form.txtAddress = {{{"1"}, {"1"}, {"0"}}};
        form.txtNumbItems.text = "256";
        form.cmdOkNumber_Click();
    });
    editor.mnuAddItem_Click();
    EXPECT_EQ(editor.ListView1.rows().size(), 65536U);
    EXPECT_EQ(document.itemCounter(), 65537) << "more than 16 bits hold";
    willEnterBranchName("B");
    editor.TreeView1_DblClick();
    EXPECT_EQ(document.items().at("Plant.B.New_Item_65536").sKey, "Plant.B.New_Item_65536");
    forms.whenShown<CommonProperties>([](CommonProperties& form) {
        form.cmbFlag.text = "Transmit";
        form.cmdOk_Click();
    });
    for (std::size_t row = 0; row < editor.ListView1.rows().size(); ++row)
        selectRow(row);
    editor.run(commandNamed("mnuItemProperties"));
    EXPECT_EQ(document.undoName(), "Change of 65536 items");
    EXPECT_FALSE(document.items().at("Plant.B.New_Item_65536").bFlag);
    editor.run(commandNamed("mnuCopyTable"));
    EXPECT_EQ(std::ranges::count(desktop.clipboard, '\n'), 65537);
#ifdef NDEBUG
    EXPECT_LT(std::clock() - start, CLOCKS_PER_SEC);
#endif
}

/// By an assistive tool or the desktop, at any time, and by the Cancel button.
TEST_F(Limits, CancelledReadingLeavesNoConfigurationOpen) {
    const std::string many = configuration(plc("P", repeated(300'000, branchOf)),
                                           "<SETTINGS port='COM7' editype='' timeout='1'/>");
    const std::pair<std::function<void()>, bool> ends[] = {
        {[&] { EXPECT_FALSE(editor.Form_Unload()); }, true},
        {[&] { editor.run(commandNamed("mnuExit")); }, true},
        {[&] { EXPECT_TRUE(editor.mayEnd([] { return true; })); }, false},
        {[&] { editor.pnlImpStat_Cancel(); }, false}};
    for (const auto& [end, endsApplication] : ends) {
        open("/small.xml", configuration(plc("Plant")));
        int turns = 0;
        desktop.onPendingEvents = [&, act = end] {
            EXPECT_FALSE(editor.pnlImpStat.offersCancel || applicationEnded);
            if (++turns == 2) act();
        };
        open("/many.xml", many);
        desktop.onPendingEvents = [] {};
        EXPECT_EQ(turns, 2);
        EXPECT_EQ(std::exchange(applicationEnded, false), endsApplication);
        EXPECT_EQ(takeMessages(), endsApplication ? "" : outline(document));
        EXPECT_EQ(document.branches().count(), 0U);
        EXPECT_EQ(document.settings().port, "COM1");
        EXPECT_TRUE(!document.open && !editor.pnlImpStat.visible && !editor.TreeView1.enabled);
    }
    EXPECT_EQ(document.currentPath(), "/many.xml");
    EXPECT_EQ(stateNameOf(enabledNow()), "no configuration");

    bool isOffered = false;
    desktop.onPendingEvents = [&] {
        isOffered |= editor.pnlImpStat.offersCancel;
        std::this_thread::sleep_for(std::chrono::milliseconds(isOffered ? 0 : 1100));
    };
    open("/many.xml", many);
    EXPECT_TRUE(isOffered && document.open) << "after a second";
}

TEST_F(Limits, UndoIsLimitedInBytesButAlwaysKeepsTheLastStep) {
    const std::string before =
        opened(configuration(plc("P", branch("A", repeated(30'000, item))) + plc("Q")));
    for (int i = 0; i < 10; ++i)  // about 15 MiB per step
        drag(i % 2 == 0 ? "P.A" : "Q.A", i % 2 == 0 ? "Q" : "P");
    EXPECT_LE(document.historyBytes(), History::maxBytes);
    int steps = 0;
    for (; !document.undoName().empty(); ++steps)
        editor.mnuUndo_Click();
    EXPECT_TRUE(steps >= 2 && steps < 10) << steps;
    for (; !document.redoName().empty(); --steps)
        editor.mnuRedo_Click();
    EXPECT_EQ(steps, 0);
    desktop.willAnswer({Answer::yes});
    click("P");
    editor.mnuDelete_Click();  // one step above the limit
    EXPECT_EQ(outline(document), "Q[]");
    editor.mnuUndo_Click();
    EXPECT_EQ(outline(document), before);
    expectTreeAndRegistriesAgree(document);

    const std::string text(1'000'000, 'n');
    Node& changed = document.tree().nodeAt("P.A.Item_1");
    document.setComment(changed, text);
    const auto bytes = document.historyBytes();
    const auto megabytes = [&] { return (document.historyBytes() - bytes) / text.size(); };
    document.renameItem(changed, text);
    document.RemoveSubtree(changed);
    EXPECT_EQ(megabytes(), 2U) << "key and comment of the removed item";
    for (int i = 0; i < 3; ++i)
        document.undo();
    EXPECT_EQ(megabytes(), 2U) << "comment and key to redo";
}

TEST_F(Limits, PastesAreCountedIn16Bits) {
    for (const char* path : {"/a.xml", "/b.xml"}) {
        open(path, configuration(plc("P")));  // pastes without copied items count too, from 1
        click("P");
        for (int i = 1; i < 32767; ++i)
            editor.mnuPaste_Click();
        EXPECT_EQ(takeMessages(), "");
    }
    editor.mnuPaste_Click();
    EXPECT_EQ(takeMessages(), " Error n. 6  Overflow in mnuPaste_Click\n");
}

#ifndef _WIN32
/// What processing an input in a child process costs.
struct Cost {
    double seconds = 0;  // of the processor
    double wait = 0;     // the longest time without event processing
    double megabytes = 0;
};

Cost costOf(const std::function<void(EditorWorld&)>& act) {
    int result[2] = {};
    EXPECT_EQ(::pipe(result), 0);
    const auto now = [] { return static_cast<double>(std::clock()) / CLOCKS_PER_SEC; };
    const auto peak = [] {
        rusage used{};
        ::getrusage(RUSAGE_SELF, &used);
        return static_cast<double>(used.ru_maxrss) / 1024;
    };
    ::malloc_trim(0);  // or the child would reuse memory of the last input
    const pid_t child = ::fork();
    if (child == 0) {
        EditorWorld world;
        world.disk.writesSpoiledFiles = true;
        Cost cost;
        const double memory = peak(), start = now();
        double last = start;
        world.desktop.onPendingEvents = [&] {
            cost.wait = std::max(cost.wait, now() - last);
            last = now();
        };
        act(world);
        world.desktop.onPendingEvents();
        cost.seconds = last - start;
        cost.megabytes = peak() - memory;
        const auto written = ::write(result[1], &cost, sizeof cost);
        ::_exit(written == sizeof cost ? 0 : 1);
    }
    Cost cost;
    EXPECT_EQ(::read(result[0], &cost, sizeof cost), static_cast<ssize_t>(sizeof cost));
    ::waitpid(child, nullptr, 0);
    ::close(result[0]);
    ::close(result[1]);
    return cost;
}

/// Each name has 20 parts of 16 letters in two forms. They collide in a hash that only multiplies
/// and shifts, whatever its start value.
std::string colliding(int number) {
    std::string name;
    for (unsigned part = 0; part < 20; ++part)
        name += (static_cast<unsigned>(number) >> part & 1U) != 0 ? "xxxxxxx{0000200{"
                                                                  : "xxxxxxx;0000000;";
    return tag(name);
}

/// Prints a table row for each. COSTS_SCALE=10 makes the inputs ten times as large.
TEST(Costs, GrowLinearlyWithTheInputAndNeverBlockTheWindows) {
    const auto opens = [](EditorWorld& world, const std::string& text) {
        world.open("/house.xml", text);
    };
    const auto pastes = [](EditorWorld& world, const std::string& text) {
        world.open("/house.xml", device(tag("x")));
        world.click("P");
        world.desktop.clipboard = text;
        world.editor.mnuPasteName_Click();
    };
    const struct {
        const char* name;
        int count;
        std::string (*made)(int count);
        void (*act)(EditorWorld& world, const std::string& text);
    } inputs[] = {
        {"branches below a path of 64 KB", 1500,
         [](int n) { return device(nested(999, std::string(64, 'n'), repeated(n, branchOf))); },
         opens},
        {"declared attributes", 20'000,
         [](int n) {
             const auto one = [](int i) { return "b" + std::to_string(i) + " CDATA #IMPLIED "; };
             return "<!DOCTYPE a [<!ATTLIST a " + repeated(n, one) + ">]><a/>";
         },
         opens},
        {"names that would collide in a weak hash", 2000,
         [](int n) { return device(repeated(n, colliding)); }, opens},
        {"branches", 20'000, [](int n) { return device(repeated(n, branchOf)); }, opens},
        {"branches with the same name", 10'000,
         [](int n) { return device(repeated(n, branchOf(1))); }, opens},
        {"comments", 50'000, [](int n) { return device(repeated(n, "<!---->")); }, opens},
        {"nested unknown elements", 50'000, [](int n) { return nested(n, "a", ""); }, opens},
        {"nested elements in an item", 50'000,
         [](int n) { return device("<tag>" + nested(n, "a", "") + "</tag>"); }, opens},
        {"elements in an item", 20'000,
         [](int n) { return device("<tag>" + repeated(n, branchOf) + "</tag>"); }, opens},
        {"line feeds pasted as names", 500'000,
         [](int n) { return std::string(static_cast<std::size_t>(n), '\n'); }, pastes}};
    const char* const asked = std::getenv("COSTS_SCALE");
    const int scale = asked == nullptr ? 1 : std::atoi(asked);
    for (const auto& input : inputs) {
        Cost before;
        for (const int times : {1, 3, 9}) {
            const std::string text = input.made(input.count * times * scale);
            const double size = static_cast<double>(text.size()) / 1e6;
            const Cost cost = costOf([&](EditorWorld& world) { input.act(world, text); });
            std::printf("| %s | %.1f MB | %.2f s | %.2f s | %.0f MB |\n", input.name, size,
                        cost.seconds, cost.wait, cost.megabytes);
#ifdef NDEBUG  // promised for release builds
            EXPECT_LT(cost.megabytes, 200 + 60 * size);
            EXPECT_LT(cost.seconds, 0.5 + 2 * size);
            EXPECT_LT(cost.wait, 0.5 * scale);
            EXPECT_TRUE(times == 1 || cost.seconds < 0.3 + 6 * before.seconds);
#endif
            before = cost;
        }
    }
}

TEST_F(Limits, MemoryDoesNotGrowInAThousandRounds) {
    std::size_t before = 0;
    for (int round = 1; round <= 1000; ++round) {
        open("/house.xml", configuration(plc("Plant", branch("F", tag("x")))));
        click("Plant");
        willEnterBranchName("G");
        editor.mnuAddBranch_Click();
        EXPECT_EQ(saved(), "/house.xml saved\n");
        editor.mnuCloseCfg_Click();
        registry.calls.clear();
        if (round == 100) before = ::mallinfo2().uordblks;
    }
    EXPECT_LT(::mallinfo2().uordblks, before + 10'000) << "12 bytes per round";
}
#endif

}  // namespace
