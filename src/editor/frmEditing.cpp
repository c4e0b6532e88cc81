#include "editor/frmEditing.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "base/Reporting.h"
#include "base/RunTimeError.h"
#include "base/Text.h"
#include "dialogs/frmBranch.h"
#include "dialogs/frmItems.h"
#include "dialogs/frmPLC.h"
#include "dialogs/frmSetts.h"
#include "model/Product.h"

namespace {

// Column sets; widths are fractions of the list's own. That the item lists' add up to more than
// 1 is meant: they scroll sideways.
const std::vector<ListView::Column> deviceColumns{
    {"Plc Name", 0.5}, {"Port", 0.2}, {"EDI Type", 0.3}};
const std::vector<ListView::Column> singleItemColumns{{"Item Name", 0.2},
                                                      {"Comment", 0.3},
                                                      {"Datatype", 0.2},
                                                      {"Address (Hex)", 0.3},
                                                      {"Access Rights", 0.2}};
const std::vector<ListView::Column> itemColumns = [] {
    auto columns = singleItemColumns;
    columns.push_back({"Index", 0.3});
    return columns;
}();

bool endsWith(std::string_view path, std::string_view ending) {
    return path.size() >= ending.size() &&
           equalIgnoringCase(path.substr(path.size() - ending.size()), ending);
}

bool isConfiguration(std::string_view path) { return endsWith(path, ".xml"); }

bool isExport(std::string_view path) { return endsWith(path, ".esf"); }

int fractionOf(double fraction, int whole) {
    return static_cast<int>(std::lround(fraction * whole));
}

}  // namespace

frmEditing::frmEditing(Document& document, Desktop& desktop, Forms& forms, Disk& disk,
                       FLRegistry& registry)
    : document_(document),
      desktop_(desktop, boxes_),
      forms_(forms, boxes_),
      fileRules_(document),
      lifecycle_(document, fileRules_, desktop_, disk, registry, *this),
      import_(document, desktop_, disk, lifecycle_, *this),
      enabled_(commandTable().size()) {}

void frmEditing::Form_Initialize() {
    reportErrors(desktop_, "Form_Initialize", [&] {
        caption = std::string(companyName) + " - " + std::string(productName);
        document_.setSettings({});
    });
}

void frmEditing::Form_Load(FormSize screen) {
    reportErrors(desktop_, "Form_Load", [&] {
        referenceSize = {fractionOf(0.8, screen.width), fractionOf(0.8, screen.height)};
        showViews({.visible = false, .enabled = false});
        EnMenuButt(commandStates::noConfiguration);
    });
}

bool frmEditing::Form_Unload() {
    if (!isFree() || !lifecycle_.Form_Unload()) return false;
    unloadFind();
    return true;
}

void frmEditing::unloadFind() {
    if (!find_.loaded()) return;
    find_.Form_Unload();
    forms_.close(find_);
}

EditingLayout frmEditing::layoutFor(FormSize client) {
    const int top = fractionOf(0.05, client.height);
    const int height = fractionOf(0.95, client.height);
    return {.toolbar = {0, 0, client.width, fractionOf(0.04, client.height)},
            .tree = {0, top, fractionOf(0.4, client.width), height},
            .list = {fractionOf(0.41, client.width), top, fractionOf(0.59, client.width), height}};
}

void frmEditing::TreeView1_NodeClick(Node& node) {
    if (!isFree()) return;
    const BusyPointer busy(desktop_);
    reportErrors(desktop_, "TreeView1_NodeClick", [&] {
        document_.sortChildren(node);
        showNode(node);
    });
}

/// The messages are shown once the list is whole again.
void frmEditing::showNode(const Node& node) {
    withFirstMessages(desktop_, [&](FirstMessages& messages) {
        const ListView::Update update(ListView1);
        switch (node.kind()) {
            case NodeKind::config:
                EnMenuButt(commandStates::rootSelected);
                listDevices();
                break;
            case NodeKind::plc:
            case NodeKind::branch: listContents(node, messages); break;
            case NodeKind::item: listItem(node); break;
        }
    });
}

void frmEditing::listContents(const Node& container, FirstMessages& messages) {
    EnMenuButt(commandStates::containerSelected);
    ListView1.clearRows();
    ListView1.setColumns(itemColumns);
    ListView1.setView(ListView::View::report);
    for (const Node* child : container.GetChildren()) {
        if (child->kind() != NodeKind::item) continue;
        document_.itemAt(*child)->AddToListView(ListView1, true, messages);
        // Only a first child counts: items after a branch do not enable pasting names. Meant.
        if (child == container.GetChildren().front()) {
            EnMenuButt(commandStates::containerSelectedItemsListed);
        }
    }
}

void frmEditing::listItem(const Node& node) {
    EnMenuButt(commandStates::itemSelected);
    ListView1.clearRows();
    ListView1.setColumns(singleItemColumns);
    ListView1.setView(ListView::View::report);
    document_.itemAt(node)->AddToListView(ListView1, false, desktop_);
}

/// What comes is another configuration, whose lists nobody has sorted yet.
void frmEditing::clearList() {
    ListView1.clearRows();
    ListView1.stopSorting();
}

void frmEditing::listDevices() {
    const ListView::Update update(ListView1);
    ListView1.clearRows();
    ListView1.setColumns(deviceColumns);
    ListView1.setView(ListView::View::report);
    for (const auto& [key, device] : document_.devices())
        device->AddToListView(ListView1);
}

void frmEditing::TreeView1_DblClick() {
    if (!isFree()) return;
    reportErrors(desktop_, "TreeView1_DblClick", [&] {
        Node& node = document_.selectedNode();
        switch (node.kind()) {
            case NodeKind::branch: return changeBranch(node);
            case NodeKind::plc: return changeDevice(node);
            case NodeKind::item: return changeItem(node);
            case NodeKind::config: return;
        }
    });
}

bool frmEditing::hasProperties(ActiveControl view) const {
    if (view == ActiveControl::list) return ListView1.selectedRow() != nullptr;
    const Node* node = document_.tree().selected();
    return node != nullptr && node->kind() != NodeKind::config;
}

bool frmEditing::acceptsFile(std::string_view path) const {
    return isEnabled(commandNamed("mnuOpenCfg")) && (isConfiguration(path) || isExport(path));
}

void frmEditing::dropFile(const std::string& path) {
    if (!isFree() || !acceptsFile(path)) return;
    if (isExport(path)) {
        import_.mnuImpCfg_Click(path);
    } else {
        lifecycle_.mnuOpenCfg_Click(path);
    }
}

/// Shows in the list, in place, what a dialog has made of the node, which had that key.
void frmEditing::showChange(const Node& node, const SharedText& oldKey) {
    const auto ownRow = ListView1.findRow(oldKey);
    // A row that is out of date may have the new key already; it is the node's now too.
    const bool isListed = ownRow || ListView1.findRow(node.key());
    ListView shown;  // made before the list changes, as its errors are told in boxes
    if (isListed && node.kind() == NodeKind::item) {
        const bool withIndex = ListView1.columns().size() == itemColumns.size();
        document_.itemAt(node)->AddToListView(shown, withIndex, desktop_);
    }
    const ListView::Update update(ListView1);
    ListView1.rekeyRows(oldKey, node.key(), [&](const SharedText& newKey) {
        const Node* below = document_.tree().FindNode(newKey);
        while (below != nullptr && below != &node)
            below = below->parent();
        return below != nullptr;
    });
    if (shown.rows().empty()) return;
    ListView1.replaceRow(shown.rows().front());
    if (ownRow) ListView1.replaceRow(*ownRow, shown.rows().front());
}

void frmEditing::changeBranch(Node& node) {
    const SharedText oldKey = node.key();
    const ConfigTree::Reference branch(document_.tree(), &node);
    frmBranch form(document_, desktop_, node, true);
    form.Form_Load();
    forms_.showModal(form);
    showChange(branch.node(), oldKey);
}

void frmEditing::changeDevice(Node& node) {
    document_.deviceAt(node);
    const ConfigTree::Reference device(document_.tree(), &node);
    frmPLC form(document_, desktop_, node, true);
    form.Form_Load();
    forms_.showModal(form);
    TreeView1_NodeClick(device.node());
}

void frmEditing::changeItem(Node& node) {
    const SharedText oldKey = node.key();
    const ConfigTree::Reference item(document_.tree(), &node);
    frmItems form(document_, desktop_, node, true);
    form.Form_Load();
    forms_.showModal(form);
    showChange(item.node(), oldKey);
}

void frmEditing::ListView1_Click() {
    if (!isFree()) return;
    reportErrors(desktop_, "ListView1_Click", [&] {
        const auto* row = ListView1.selectedRow();
        if (row == nullptr) return;
        switch (document_.tree().nodeAt(row->key).kind()) {
            case NodeKind::plc: return EnMenuButt(commandStates::deviceRowSelected);
            case NodeKind::branch: return EnMenuButt(commandStates::branchRowSelected);
            case NodeKind::item: return EnMenuButt(commandStates::itemRowSelected);
            case NodeKind::config: return;
        }
    });
}

void frmEditing::ListView1_DblClick() {
    if (!isFree()) return;
    reportErrors(desktop_, "ListView1_DblClick", [&] {
        const auto* row = ListView1.selectedRow();
        if (row == nullptr) return;
        document_.tree().select(&document_.tree().nodeAt(row->key));
        TreeView1_DblClick();
    });
}

void frmEditing::ListView1_ColumnClick(std::size_t column) {
    if (!isFree()) return;
    reportErrors(desktop_, "ListView1_ColumnClick", [&] { ListView1.sortBy(column); });
}

void frmEditing::mnuSetts_Click() {
    reportErrors(desktop_, "mnuSetts_Click", [&] {
        frmSetts form(document_);
        form.Form_Load();
        forms_.showModal(form);
        if (!form.unhandledError()) return;
        // The settings dialog traps no errors: one ends the application, without a prompt.
        reportErrors(desktop_, "cmdApply_Click", [&] { throw *form.unhandledError(); });
        document_.open = false;
        end(EXIT_FAILURE);
    });
}

void frmEditing::mnuAddPlc_Click() {
    reportErrors(desktop_, "EH_mnuAddplc_Click", [&] {
        frmPLC form(document_, desktop_, document_.selectedNode(), false);
        form.Form_Load();
        forms_.showModal(form);
        if (!form.confirmed()) return;
        show(*form.added());
        TreeView1_NodeClick(*form.added());
    });
}

void frmEditing::mnuAddBranch_Click() {
    reportErrors(desktop_, "EH_mnuAddbranch_Click", [&] {
        frmBranch form(document_, desktop_, selectContainer(), false);
        form.Form_Load();
        forms_.showModal(form);
        if (form.confirmed()) show(*form.added());
    });
}

/// Selects the node and brings it into sight.
void frmEditing::show(Node& node) {
    document_.tree().ensureVisible(node);
    document_.tree().select(&node);
}

void frmEditing::mnuAddItem_Click() {
    reportErrors(desktop_, "mnuAddItem_Click", [&] {
        const ConfigTree::Reference container(document_.tree(), &selectContainer());
        frmItems form(document_, desktop_, container.node(), false);
        form.Form_Load();
        const bool wasEmpty = container.node().GetChildren().empty();
        forms_.showModal(form);
        Node& node = container.node();
        // A node opens for the first that it holds.
        if (wasEmpty && !node.GetChildren().empty()) {
            document_.tree().ensureVisible(*node.GetChildren().front());
        }
        TreeView1_NodeClick(node);
    });
}

/// Selects the node below which something is to be added. What stands directly below the root has
/// no place in the file: there the device whose row the user chose is meant, as its row is what
/// enabled the command. Below an item nothing can stand: after a deletion or a search has selected
/// one, the node that holds it is meant. Raises ErrorNumber::objectNotSet when there is none.
Node& frmEditing::selectContainer() {
    const ConfigTree& tree = document_.tree();
    Node* container = &document_.selectedNode();
    if (container->kind() == NodeKind::item) container = container->parent();
    if (container->kind() == NodeKind::config) {
        const auto* row = ListView1.selectedRow();
        container = row == nullptr ? nullptr : tree.FindNode(row->key);
    }
    if (container == nullptr ||
        (container->kind() != NodeKind::plc && container->kind() != NodeKind::branch)) {
        throw RunTimeError(ErrorNumber::objectNotSet);
    }
    tree.select(container);
    return *container;
}

/// Whatever Copy says: what could not be copied may still be deleted. Meant.
void frmEditing::mnuCut_Click() {
    reportErrors(desktop_, "mnuCut_Click", [&] {
        const Document::Step step(document_, "Cut");
        mnuCopy_Click();
        mnuDelete_Click();
    });
}

void frmEditing::mnuUndo_Click() {
    reportErrors(desktop_, "mnuUndo_Click", [&] { showAfter(document_.undo()); });
}

void frmEditing::mnuRedo_Click() {
    reportErrors(desktop_, "mnuRedo_Click", [&] { showAfter(document_.redo()); });
}

std::string frmEditing::nameOfStep(const Command& command) const {
    return command.name == "mnuUndo" ? document_.undoName() : document_.redoName();
}

/// As a click on the node would, but the order of its children is what was restored.
void frmEditing::showAfter(Node* node) {
    if (node == nullptr) return;
    const BusyPointer busy(desktop_);
    show(*node);
    showNode(*node);
}

void frmEditing::mnuFind_Click() {
    reportErrors(desktop_, "mnuFind_Click", [&] {
        if (!find_.loaded()) find_.Form_Load();
        forms_.show(find_);
    });
}

void frmEditing::run(const Command& command) {
    if (isFree() && command.handler != nullptr) (this->*command.handler)();
}

void frmEditing::Toolbar1_ButtonClick(std::string_view key) {
    reportErrors(desktop_, "Toolbar1_ButtonClick", [&] {
        const auto buttons = toolbarCommands();
        const auto pressed = std::ranges::find(buttons, key, &Command::toolbarKey);
        if (pressed != buttons.end()) run(**pressed);
    });
}

void frmEditing::EnMenuButt(const CommandState& state) {
    reportErrors(desktop_, "EnMenuButt", [&] {
        const auto commands = commandTable();
        for (std::size_t row = 0; row < commands.size(); ++row)
            enabled_[row] = isEnabledIn(state, commands[row]);
        formChanged();
    });
}

bool frmEditing::isEnabled(const Command& command) const {
    return enabled_.at(static_cast<std::size_t>(&command - commandTable().data()));
}

void frmEditing::InitObjects() {
    reportErrors(desktop_, "InitObjects", [&] {
        showViews({.visible = false, .enabled = false});
        document_.clear();
        clearList();
        copyPaste_.reset();
    });
}

void frmEditing::loadingStarted() {
    pnlImpStat.visible = true;
    pnlImpStat.progress = 0;
    pnlImpStat.offersCancel = false;
    EnMenuButt(commandStates::loading);
    desktop_.processPendingEvents();  // the panel is to be seen before the work begins
}

void frmEditing::itemLoaded() { pnlImpStat.progress = (pnlImpStat.progress + 1) % 100; }

void frmEditing::loadingTakesLong() {
    if (std::exchange(pnlImpStat.offersCancel, true)) return;
    formChanged();
}

/// What follows, the opened configuration or none, is shown with it.
void frmEditing::loadingEnded() { pnlImpStat.visible = false; }

void frmEditing::configurationOpened() {
    showViews({.visible = true, .enabled = true});
    EnMenuButt(commandStates::configurationOpen);
}

void frmEditing::configurationClosed() {
    // What is left of an opening that failed, the root, is shown, but cannot be clicked: there
    // is no configuration that a click could work on.
    const bool somethingLeft = document_.tree().root() != nullptr;
    showViews({.visible = somethingLeft, .enabled = false});
    EnMenuButt(commandStates::noConfiguration);
}

bool frmEditing::focusTree() {
    if (!isFree()) return false;
    activeControl = ActiveControl::tree;
    if (window_ != nullptr) window_->focusTree();
    return true;
}

void frmEditing::showFault(const Node& node) {
    if (window_ != nullptr && window_->isBehindDialog()) return;
    Node& shown = document_.tree().nodeAt(node.key());
    focusTree();
    show(shown);
    TreeView1_NodeClick(shown);
}

void frmEditing::endApplication() { end(EXIT_SUCCESS); }

void frmEditing::end(int exitStatus) {
    unloadFind();
    if (window_ != nullptr) window_->endApplication(exitStatus);
}

void frmEditing::showViews(ViewState state) {
    TreeView1 = state;
    ListView1State = state;
    formChanged();
}

void frmEditing::formChanged() {
    if (window_ != nullptr) window_->formChanged();
}
