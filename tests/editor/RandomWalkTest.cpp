#include <random>
#include <regex>

#include "support/EditorWorld.h"

namespace {

/// All that the user may be told on the way.
const std::regex expected(
    "Are you sure you want to delete .*|Do you want to save .*|File /.*Overwrite.|/.* saved|"
    "Name already .*|Please .*|Unable to drag nodes here|Empty clipboard !|Invalid selection|"
    "Character .* not acceptable in string .*| Error n. 53 .* in ImportXML|"
    " Error n. 5  \".*\" stands below no device and cannot be saved in CreateXML|"
    // The new key is that of a node of another kind, or of one in other letter case.
    " Error n. 35602 .* in (AddItemToColl|cmdOk_Click|mnuPaste_Click|Paste_Name_Click)|"
    " Error n. 457 .* in (AddItemToColl|cmd(Ok|Apply)_Click|Paste_Name_Click|CopySubTree)|"
    // A row's node is a device or gone; a dropped device has no record, and the root no parent.
    " Error n. 35601 .* in (ListView1_(Dbl)?Click|mnuDelete_Click|Paste_Name_Click)|"
    " Error n. 5 .* in (mnu(Copy|Delete)_Click|Paste_(Name|Comment)_Click|TreeView1_DblClick)|"
    " Error n. 91 .* in (mnuDelete|EH_mnuAddbranch|mnuAddItem)_Click");

using Names = std::vector<const char*>;
const Names itemNames{"x", "X", "y", "z", "a", "A", "A.x", "A.x", "New_Item", "Copied_Item"};
const Names actions{
    "click",      "click",        "click",      "click",        "rows",         "rows",
    "drag",       "drag",         "changeNode", "changeRow",    "search",       "focusTree",
    "focusList",  "sort",         "mnuFind",    "mnuIcon",      "mnuSetts",     "mnuDelete",
    "mnuCut",     "mnuCopy",      "mnuPaste",   "mnuPaste",     "mnuAddPlc",    "mnuAddItem",
    "mnuAddItem", "mnuAddBranch", "mnuAddItem", "mnuPasteName", "mnuAddBranch", "mnuPasteComment"};
const Names fileActions{"mnuNewCfg", "mnuCloseCfg", "mnuSaveCfg", "mnuSaveAs"};

/// A user who does anything whatever, the same every time, with names so few that they collide.
class RandomWalk : public ::testing::Test, protected EditorWorld {
 protected:
    RandomWalk() {
        disk.writesSpoiledFiles = true;  // with a "." in names
        always<frmPLC>([this](frmPLC& form) {
            form.txtName.text = oneOf({"A", "D", "E", "F"});
            holdsDevice() ? form.cmdExit_Click() : form.cmdApply_Click();
        });
        always<frmBranch>([this](frmBranch& form) {
            form.txtBranchName.text = oneOf({"A", "B", "C"});  // they are read back in capitals
            holdsDevice() ? form.cmdCancel_Click() : form.cmdOk_Click();
        });
        always<frmItems>([this](frmItems& form) {
            form.txtItemName.text = oneOf(itemNames);
            form.txtAddress.fill({.text = "1"});
            document.itemDialog.modify || !oneIn(4) ? form.cmdOk_Click() : form.cmdAdd_Click();
        });
        always<frmReplace>(&frmReplace::Command2_Click);
        always<frmSetts>(&frmSetts::cmdApply_Click);
    }
    template <typename Form>
    void always(const std::function<void(Form&)>& user) {
        forms.whenShown<Form>([=, this](Form& form) {
            always<Form>(user);
            user(form);
        });
    }

    std::size_t below(std::size_t n) { return random() % n; }
    bool oneIn(std::size_t n) { return below(n) == 0; }
    const char* oneOf(const Names& all) { return all[below(all.size())]; }
    /// One that was dropped keeps its key as others are renamed; left out, as it meets theirs.
    bool holdsDevice() {
        for (TreeWalk walk(*document.tree().selected()); const Node* node = walk.next();)
            if (node->kind() == NodeKind::plc && node->key() != node->text()) return true;
        return false;
    }
    std::string anyKey() {
        const Node* node = document.tree().firstAdded();
        for (auto skipped = below(document.tree().count()); skipped > 0; --skipped)
            node = ConfigTree::addedAfter(*node);
        return node->key();
    }

    std::string step() {
        while (desktop.answersLeft() < 3)
            desktop.willAnswer({std::array{Answer::yes, Answer::no, Answer::cancel}[below(5) / 2]});
        disk.files = {{"/a", configuration(plc("A") + plc("F", branch("A", tag("x"))))}};
        desktop.willChoose(oneOf({"/a", "/b"}));
        desktop.clipboard = oneOf({"", "A\r\n", "A.x\n", "x\ny\n", "X\nA\n", "z\nNew_Item\n"});
        const auto nodes = document.tree().count();  // few when all devices are dragged away
        if (document.open && nodes < 60 && (document.devices().count() < 3 || nodes > 5))
            return perform(oneOf(oneIn(400) ? fileActions : actions));
        document.saved = true;
        return perform(oneOf({"mnuNewCfg", "mnuOpenCfg"}));
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
            forms.find->txtFind.text = oneOf(itemNames);
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

    void check() {
        expectTreeAndRegistriesAgree(document, shared);
        for (const std::string& message : desktop.messages())
            EXPECT_TRUE(!told.insert(message).second || std::regex_match(message, expected))
                << message;
        desktop.forgetMessages();
    }

    /// Less what has a "." in its name, which readers take for a part of the key.
    static std::string plain(const Document& of, const std::string& device) {
        const std::regex dotted(R"([^ \[]*\.[^ \]]*| )");
        return std::regex_replace(contentsOf(of.tree().nodeAt(device)), dotted, "");
    }
    void saveAndRead() {
        disk.files["/saved"] = "old";
        desktop.willChoose("/saved");
        editor.mnuSaveAs_Click();
        bool isRefused = false;
        for (const Node* node : document.tree().root()->children())
            if (document.devices().find(node->key()) == nullptr)
                isRefused |= node->kind() != NodeKind::plc || !node->children().empty();
        const bool isKept = disk.files["/saved"] == "old";
        EXPECT_TRUE(isRefused == isKept && isRefused != desktop.messages().empty());
        if (isRefused) return;
        EditorWorld reader;
        reader.open("/saved", disk.files["/saved"]);
        for (const auto& [key, device] : document.devices()) {
            if (document.tree().FindNode(key) == nullptr) continue;
            EXPECT_EQ(plain(reader.document, key), plain(document, key));
            ++devicesRead;
        }
        for (const auto& [key, item] : document.items()) {  // those that a dragged device left
            const bool isInBranch = document.branches().find(parentKeyOf(key)) != nullptr;
            if (document.tree().FindNode(key) != nullptr || !isInBranch) continue;
            EXPECT_NE(reader.document.items().find(key), nullptr) << key;
        }
    }

    std::mt19937 random{7};  // NOLINT(cert-msc51-cpp)
    SharedRecords shared;
    std::set<std::string> told;
    int devicesRead = 0;
};

TEST_F(RandomWalk, KeepsTreeRecordsAndFileInAgreement) {
    for (int i = 1; i <= 200000 && !HasFailure(); ++i) {
        const std::string done = step();
        check();
        if (i % 500 == 0 && document.open) saveAndRead();
        EXPECT_FALSE(HasFailure()) << "step " << i << ": " << done << "\n" << outline(document);
    }
    EXPECT_TRUE(devicesRead > 500 && told.size() > 100);
}

}  // namespace
