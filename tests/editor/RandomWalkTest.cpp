#include <algorithm>
#include <cstdlib>
#include <random>
#include <regex>

#include "model/FileFitness.h"
#include "model/Text.h"
#include "support/EditorWorld.h"

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
    R"(has the name of "[^]*" once it is read back, in capitals,) and cannot be saved in )"
    "(CreateXML|PrintBranch)");

using Names = std::vector<const char*>;
const Names names{"x",   "X",    "y",      "A",   "a",       "A.x",      "a.X",         "A.A",
                  "B",   "b",    "D",      "D.x", "1OG",     "config.A", "Büro",        "BÜRO",
                  "tag", "1.OG", "\u20AC", "",    "OG.Lamp", "New_Item", "Copied_Item", "A B"};
const Names plainNames{"x", "X", "y", "A", "a", "b", "B", "D", "A.x", "OG.A", "Büro"};
const Names actions{
    "click",      "click",        "click",      "click",        "rows",         "rows",
    "drag",       "drag",         "changeNode", "changeRow",    "search",       "focusTree",
    "focusList",  "sort",         "mnuFind",    "mnuIcon",      "mnuSetts",     "mnuDelete",
    "mnuCut",     "mnuCopy",      "mnuPaste",   "mnuPaste",     "mnuAddPlc",    "mnuAddItem",
    "mnuAddItem", "mnuAddBranch", "mnuAddItem", "mnuPasteName", "mnuAddBranch", "mnuPasteComment"};
const Names fileActions{"mnuNewCfg", "mnuCloseCfg", "mnuSaveCfg", "mnuSaveAs", "mnuImpCfg"};

/// Other walks than the usual one: with WALK_SEED set.
unsigned seed() {
    const char* value = std::getenv("WALK_SEED");
    return value == nullptr ? 7 : static_cast<unsigned>(std::stoul(value));
}

/// A user who does anything whatever, the same every time, with names so few that they collide.
class RandomWalk : public ::testing::Test, protected EditorWorld {
 protected:
    RandomWalk() {
        disk.writesSpoiledFiles = true;
        forms.whenShown<frmPLC>([this](frmPLC& form) {
            if (!oneIn(3)) form.txtName.text = anyName();
            oneIn(6) ? form.cmdExit_Click() : form.cmdApply_Click();
        });
        forms.whenShown<frmBranch>([this](frmBranch& form) {
            if (!oneIn(9)) form.txtBranchName.text = anyName();
            oneIn(6) ? form.cmdCancel_Click() : form.cmdOk_Click();
        });
        forms.whenShown<frmItems>([this](frmItems& form) {
            if (!oneIn(9)) form.txtItemName.text = anyName();
            if (oneIn(9)) form.cmdCancel_Click();
            if (document.itemDialog.modify) return form.cmdOk_Click();
            ++items;  // each has an address of its own
            for (std::size_t part = 0; part < 3; ++part)
                form.txtAddress[part].text = std::to_string((items >> (8 * part)) & 255);
            if (!oneIn(9)) return oneIn(2) ? form.cmdOk_Click() : form.cmdAdd_Click();
            form.cmdGroup_Click();
            form.txtNumbItems.text = "3";
            form.cmdOkNumber_Click();
        });
        forms.whenShown<frmReplace>(
            [this](frmReplace& form) { oneIn(6) ? form.Command1_Click() : form.Command2_Click(); });
        forms.whenShown<frmSetts>(&frmSetts::cmdApply_Click);
    }
    std::size_t below(std::size_t n) { return random() % n; }
    bool oneIn(std::size_t n) { return below(n) == 0; }
    const char* oneOf(const Names& all) { return all[below(all.size())]; }
    const char* anyName() { return oneOf(oneIn(40) ? names : plainNames); }
    std::string anyKey() {
        auto node = document.tree().nodes().begin();
        for (auto skipped = below(document.tree().nodes().size()); skipped > 0; --skipped)
            ++node;
        return (*node)->key().string();
    }

    std::string step() {
        while (desktop.answersLeft() < 3)
            desktop.willAnswer({std::array{Answer::yes, Answer::no, Answer::cancel}[below(5) / 2]});
        disk.files["/b.esf"] = "t\r\nC.L.1/1/1\tx\tEIS 1\r\nC.A.1/1/2\tx\tEIS 1\r\n";
        disk.files["/a.xml"] = configuration(plc("A") + plc("F", branch("A", tag("x"))));
        desktop.clipboard = oneOf({"", "A\r\n", "A.x\n", "x\ny\n", "X\nA\n", "z\nNew_Item\n"});
        const auto records = document.items().count() + document.branches().count();
        const bool isStuck = document.tree().nodes().size() < 5 && document.devices().count() > 2;
        const bool begin = !document.open || records > 40 || isStuck;
        document.saved |= begin;
        const std::string action = begin        ? oneOf({"mnuNewCfg", "mnuOpenCfg", "mnuImpCfg"})
                                   : oneIn(400) ? oneOf(fileActions)
                                                : oneOf(actions);
        desktop.willChoose(action == "mnuImpCfg" ? "/b.esf" : "/a.xml");
        return perform(action);
    }
    std::string perform(const std::string& action) {
        const std::string key = action == "click" || action == "drag" ? anyKey() : "";
        if (action == "click") click(key);
        if (action == "changeNode") editor.TreeView1_DblClick();
        if (action == "changeRow") editor.ListView1_DblClick();
        if (action == "sort") editor.ListView1_ColumnClick(below(6));
        if (action == "focusTree") editor.activeControl = frmEditing::ActiveControl::tree;
        if (action == "focusList") editor.activeControl = frmEditing::ActiveControl::list;
        if (action == "rows") {
            for (std::size_t row = 0; row < editor.ListView1.rows().size(); ++row)
                oneIn(2) ? selectRow(row) : editor.ListView1.setSelected(row, false);
            editor.ListView1_Click();
        }
        if (action == "search" && forms.find != nullptr) {
            forms.find->txtFind.text = oneOf(names);
            forms.find->cmdNext_Click();
        }
        for (const Command& command : commandTable())
            if (command.name == action) editor.run(command);
        if (action != "drag") return action + " " + key;
        const std::string target = anyKey();
        const int shift = oneIn(2) ? TreeDrag::ctrlMask : 0;
        // Rarely to the root: what stands there cannot be saved.
        if (target != Document::rootKey || oneIn(20)) drag(key, target, shift);
        return (shift == 0 ? "move " : "copy ") + key + " to " + target;
    }

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

    bool bearsASign() const {
        for (const ConfigTree* tree : {&document.tree(), &document.left()})
            for (TreeWalk walk(*tree->root()); const Node* node = walk.next();)
                if (!spoilsFile(*node, *tree).empty()) return true;
        return false;
    }
    /// All of a configuration, with names of branches as they are read.
    static std::string contents(const Document& of, const Node& node) {
        std::string text;
        for (const Node* child : node.GetChildren())
            if (child->kind() == NodeKind::item) {
                of.itemAt(*child)->GetXmlTag(0, text);
            } else if (isSaved(*child)) {
                text += upperCase(child->text()) + "[" + contents(of, *child) + "]";
            }
        return text;
    }
    static std::string contents(const Document& of) {
        std::string text;
        for (const auto& [key, device] : of.devices())
            text += device->GetXmlTag() + contents(of, *of.deviceNode(key));
        return text;
    }
    /// All is written and read back without a word; or one message says what is in the way, and the
    /// old file stays; or a sign has said what will come of it.
    void saveAndRead() {
        disk.files["/saved"] = "old";
        desktop.willChoose("/saved");
        editor.mnuSaveAs_Click();
        if (disk.files["/saved"] == "old") {
            ++refused;
            ASSERT_EQ(desktop.messages().size(), 1U);
            EXPECT_TRUE(std::regex_match(desktop.messages()[0], refusal)) << desktop.messages()[0];
            return;
        }
        EXPECT_TRUE(desktop.messages().empty());
        if (bearsASign()) return;
        EditorWorld reader;
        reader.open("/saved", disk.files["/saved"]);
        EXPECT_EQ(reader.told(), "");
        EXPECT_EQ(contents(reader.document), contents(document));
        ++readBack;
    }

    std::mt19937 random{seed()};
    int items = 0;
    std::set<std::string> told;
    int readBack = 0;
    int refused = 0;
};

TEST_F(RandomWalk, LosesNothingAndSavesWhatIsReadBack) {
    for (int i = 1; i <= 100000 && !HasFailure(); ++i) {
        const auto before = addresses();
        const std::string done = step();
        check();
        expectAllStillThere(before, done);
        if (i % 10 == 0 && document.open) saveAndRead();
        EXPECT_FALSE(HasFailure()) << "step " << i << ": " << done << "\n" << outline(document);
    }
    EXPECT_TRUE(readBack > 1000 && refused > 10 && told.size() > 100)
        << readBack << " " << refused << " " << told.size();
}

}  // namespace
