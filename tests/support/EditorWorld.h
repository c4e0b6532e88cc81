// Short notations for configuration files, and an editor with a fake desktop and a fake disk.
#pragma once

#include <set>
#include <unordered_set>

#include "editor/frmEditing.h"
#include "support/FakeDesktop.h"
#include "support/FakeDisk.h"
#include "support/FakeForms.h"

inline std::string tag(const std::string& name) {
    return "<tag><name>" + name +
           "</name><comment></comment><address>1/2/3</address><eistype>EIS1</eistype>"
           "<flag>READ</flag><accessrights>READ</accessrights></tag>";
}

inline std::string branch(const std::string& name, const std::string& contents) {
    return "<" + name + ">" + contents + "</" + name + ">";
}

inline std::string plc(const std::string& name, const std::string& contents = "") {
    return "<DEVICE name=\"" + name +
           "\" port=\"COM2\" editype=\"PEI10x19200\" timeout=\"1500\"><tags>" + contents +
           "</tags></DEVICE>";
}

inline std::string configuration(const std::string& devices, const std::string& settings = "") {
    return "<QUONEibCfg>" + settings + "<OPC_DA>" + devices + "</OPC_DA></QUONEibCfg>";
}

inline std::string contentsOf(const Node& node) {
    std::string line;
    for (const Node* child : node.GetChildren()) {
        line += (line.empty() ? "" : " ") + child->text().string();
        if (child->kind() != NodeKind::item) line += "[" + contentsOf(*child) + "]";
    }
    return line;
}

/// The tree as one line: "Plant[Light1 FLOOR1[Text1]]"; "nothing" if there is no root.
inline std::string outline(const Document& document) {
    const Node* root = document.tree().root();
    return root == nullptr ? "nothing" : contentsOf(*root);
}

/// Checks the keys of all nodes, and that nodes and records correspond, in the tree and among the
/// detached devices. Only the node of a dropped device has no record.
inline void expectTreeAndRegistriesAgree(const Document& document) {
    std::unordered_set<SharedText> all;
    std::map<NodeKind, std::unordered_set<SharedText>> ofRecords;
    for (const ConfigTree* tree : {&document.tree(), &document.detached()}) {
        if (tree->root() == nullptr) continue;
        std::size_t nodes = 1;
        for (TreeWalk walk(*tree->root()); const Node* node = walk.next(); ++nodes) {
            const Node* parent = node->parent();
            EXPECT_EQ(node->key(),
                      (node->isDevice() ? "" : parent->key().string() + ".") + node->text());
            EXPECT_TRUE(!node->isDevice() || parent == tree->root()) << node->key().string();
            EXPECT_EQ(tree->FindNode(node->key()), node);
            const auto row = static_cast<std::size_t>(ConfigTree::rowOf(*node));
            EXPECT_EQ(parent->GetChildren().at(row), node);
            EXPECT_TRUE(all.insert(node->key()).second) << node->key().string();
            if (!node->isDroppedDevice()) ofRecords[node->kind()].insert(node->key());
        }
        EXPECT_EQ(nodes, tree->nodes().size());
    }
    const auto expectRecords = [](const auto& registry, const auto& keys) {
        EXPECT_EQ(registry.count(), keys.size());
        for (const auto& [key, record] : registry)
            EXPECT_TRUE(keys.contains(key)) << std::string(key);
    };
    expectRecords(document.devices(), ofRecords[NodeKind::plc]);
    expectRecords(document.branches(), ofRecords[NodeKind::branch]);
    expectRecords(document.items(), ofRecords[NodeKind::item]);
    const Node* selected = document.tree().selected();
    EXPECT_TRUE(selected == nullptr || document.tree().FindNode(selected->key()) == selected);
}

/// Names of the menus and entries for which `isOn` returns true, in the order of the menus.
template <typename IsOn>
std::string namesOfCommands(const IsOn& isOn) {
    std::string names;
    for (const Command& command : commandTable()) {
        if (command.kind != Command::Kind::menu && command.kind != Command::Kind::entry) continue;
        if (isOn(command)) names.append(names.empty() ? "" : " ").append(command.name);
    }
    return names;
}

/// The first command state in which exactly these commands are enabled.
inline std::string stateNameOf(const std::string& enabled) {
    using namespace commandStates;
    const std::pair<const char*, const CommandState&> states[] = {
        {"no configuration", noConfiguration},
        {"loading", loading},
        {"configuration open", configurationOpen},
        {"root", rootSelected},
        {"container", containerSelected},  // also the row of a branch
        {"container, items listed", containerSelectedItemsListed},
        {"item", itemSelected},  // also its row
        {"device row", deviceRowSelected}};
    for (const auto& [name, state] : states)
        if (namesOfCommands([&on = state](auto& each) { return isEnabledIn(on, each); }) == enabled)
            return name;
    return enabled;
}

/// Tracks the tree and the selection through notifications only, as the windows do. Fails the test
/// if a message box is shown during a change.
class TrackingViews : private ConfigTree::Listener, private ListView::Listener {
 public:
    TrackingViews(const Document& document, ListView& list, FakeDesktop& desktop)
        : document_(document), list_(list), desktop_(desktop) {
        tree_.setListener(this);
        list_.setListener(this);
        desktop_.onMessage = [this] {
            EXPECT_EQ(changes_, 0) << "a message box is shown during a change";
        };
    }
    TrackingViews(TrackingViews&&) = delete;
    ~TrackingViews() override {
        tree_.setListener(nullptr);
        list_.setListener(nullptr);
        desktop_.onMessage = [] {};
    }

    void expectUpToDate() {
        EXPECT_EQ(selected_, tree_.selected()) << "a view was not notified of the selection";
        EXPECT_EQ(view_, list_.view()) << "the window was not notified of the view mode";
        const auto same = [&](auto member) {
            return std::ranges::equal(rows_, list_.rows(), {}, member, member);
        };
        EXPECT_TRUE(same(&ListView::Row::key) && same(&ListView::Row::cells)) << "of the rows";
        EXPECT_LE(counted_, tree_.changes()) << "changes are counted up";
        counted_ = tree_.changes();
        if (tree_.root() == nullptr) return;
        for (TreeWalk walk(*tree_.root()); const Node* node = walk.next();)
            EXPECT_TRUE(shown_[node] == lookOf(*node))
                << "a view was not notified of a change of " << node->key().string();
        const auto refusal = rules_.refusal();
        const auto expected = FileRules(document_).refusal();
        EXPECT_EQ(refusal ? refusal->error.description() : "",
                  expected ? expected->error.description() : "")
            << "signs that were asked for during a change are kept";
    }

 private:
    using Look = std::pair<SharedText, std::vector<Node*>>;
    static Look lookOf(const Node& node) { return {node.text(), node.GetChildren()}; }
    void look(const Node& top) {
        shown_[&top] = lookOf(top);
        for (TreeWalk walk(top); const Node* node = walk.next();)
            shown_[node] = lookOf(*node);
    }

    /// Views ask for signs whenever they like, also in the middle of a change.
    void paint() const {
        if (tree_.root() != nullptr) rules_.faultOf(*tree_.root());
    }

    void aboutToAdd(const Node* parent, int row) override {
        paint();
        ++changes_;
        parent_ = parent;
        row_ = row;
    }
    void added() override {
        paint();
        --changes_;
        if (parent_ == nullptr) return look(*tree_.root());
        Node* node = parent_->GetChildren().at(static_cast<std::size_t>(row_));
        auto& siblings = shown_[parent_].second;
        siblings.insert(siblings.begin() + row_, node);
        look(*node);
    }
    void aboutToRemove(const Node& node) override {
        paint();
        ++changes_;
        auto& siblings = shown_[node.parent()].second;
        siblings.erase(siblings.begin() + ConfigTree::rowOf(node));
    }
    void removed() override {
        paint();
        --changes_;
    }
    void changed(const Node& node) override { shown_[&node].first = node.text(); }
    void recordsChanged() override {}
    void aboutToReorder(const Node& /*parent*/) override { ++changes_; }
    void reordered(const Node& parent) override {
        --changes_;
        shown_[&parent].second = parent.GetChildren();
    }
    void aboutToReset() override { ++changes_; }
    void reset() override {
        --changes_;
        rowsChanged();
        if (tree_.root() != nullptr) look(*tree_.root());
        selected_ = tree_.selected();
    }
    void selectionChanged() override {
        paint();
        selected_ = tree_.selected();
    }
    void madeVisible(const Node& /*node*/) override {}
    void rowsChanged() override { rows_ = list_.rows(); }
    void columnsBuilt() override { EXPECT_GT(changes_, 0) << "outside of a reset"; }
    void viewChanged() override { view_ = list_.view(); }
    void madeVisible(std::size_t /*row*/) override {}

    const Document& document_;
    const ConfigTree& tree_ = document_.tree();
    const FileRules rules_{document_};
    ListView& list_;
    FakeDesktop& desktop_;
    ListView::View view_ = list_.view();
    std::deque<ListView::Row> rows_;
    std::uint64_t counted_ = 0;
    int changes_ = 0, row_ = 0;
    const Node* parent_ = nullptr;
    const Node* selected_ = nullptr;
    std::map<const Node*, Look> shown_;
};

/// The editor after the start of the program.
class EditorWorld : private frmEditing::Window {
 public:
    EditorWorld() {
        editor.setWindow(this);
        editor.Form_Initialize();
        editor.Form_Load({1000, 800});
    }

    FakeDesktop desktop;
    FakeForms forms;
    FakeDisk disk;
    FakeRegistry registry;
    Document document;
    frmEditing editor{document, desktop, forms, disk, registry};
    bool applicationEnded = false;
    int exitStatus = 0;
    bool dialogIsOpen = false;

    /// Opens a file of this text as the user does.
    void open(const std::string& path, const std::string& text) {
        disk.files[path] = text;
        desktop.willChoose(path);
        editor.mnuOpenCfg_Click();
    }

    /// Marks the configuration as changed, as a dialog does.
    void change() { document.saved = false; }

    void click(const std::string& key) {
        Node& node = document.tree().nodeAt(key);
        editor.activeControl = frmEditing::ActiveControl::tree;
        document.tree().select(&node);
        editor.TreeView1_NodeClick(node);
    }

    void selectRow(std::size_t row) {
        editor.activeControl = frmEditing::ActiveControl::list;
        editor.ListView1.setSelected(row, true);
        editor.ListView1.setCurrentRow(row);
    }

    /// Selects exactly the rows that show one of these texts. The last one becomes the current row.
    void selectRows(const std::set<std::string>& texts) {
        editor.activeControl = frmEditing::ActiveControl::list;
        for (std::size_t row = 0; row < editor.ListView1.rows().size(); ++row) {
            const bool isOne = texts.contains(editor.ListView1.rows()[row].text().string());
            editor.ListView1.setSelected(row, isOne);
            if (isOne) editor.ListView1.setCurrentRow(row);
        }
    }

    /// A drag with the right button to another node, to empty space ("space"), or cancelled ("").
    /// `shift` is the state of the keyboard.
    void drag(const std::string& from, const std::string& to, int shift = 0) {
        TreeDrag& drag = editor.treeDrag();
        Node& node = document.tree().nodeAt(from);
        EXPECT_FALSE(drag.TreeView1_MouseDown(TreeDrag::rightButton, shift, nullptr));
        EXPECT_TRUE(drag.TreeView1_MouseDown(TreeDrag::rightButton, shift, &node));
        EXPECT_FALSE(drag.TreeView1_MouseDown(1, ~shift, nullptr));
        const DropEffect effect = drag.TreeView1_OLEStartDrag();
        drag.TreeView1_OLEDragOver(document.tree().FindNode(to));
        drag.TreeView1_OLEGiveFeedback();
        EXPECT_EQ(desktop.pointer, Pointer::icon);
        desktop.whileOpen();  // a drag counts as an open box
        to.empty() ? drag.cancelled() : drag.TreeView1_OLEDragDrop(effect);
    }

    /// Returns and clears all messages and questions, one per line.
    std::string takeMessages() {
        std::string lines;
        for (const std::string& text : desktop.messages())
            lines += text + "\n";
        desktop.forgetMessages();
        return lines;
    }

    /// The commands that were enabled at the last notification of the window.
    const std::string& enabledNow() const { return enabled_; }

 private:
    void formChanged() override {
        enabled_ = namesOfCommands([&](const Command& each) { return editor.isEnabled(each); });
    }
    void focusTree() override {}
    bool isBehindDialog() const override { return dialogIsOpen; }
    void endApplication(int status) override {
        applicationEnded = true;
        exitStatus = status;
    }

    std::string enabled_;
};
