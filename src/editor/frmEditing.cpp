#include "editor/frmEditing.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "base/Reporting.h"
#include "base/RunTimeError.h"
#include "base/Text.h"
#include "dialogs/frmBranch.h"
#include "dialogs/frmItems.h"
#include "dialogs/frmPLC.h"
#include "dialogs/frmSetts.h"
#include "model/Generale.h"
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
      desktop_(desktop),
      forms_(forms),
      lifecycle_(document, desktop, disk, registry, *this),
      import_(document, desktop, disk, lifecycle_, *this),
      enabled_(commandTable().size()) {}

void frmEditing::Form_Initialize() {
    reportErrors(desktop_, "Form_Initialize", [&] {
        caption = std::string(companyName) + " - " + std::string(productName);
        document_.settings().SetDefaults();
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
    if (!lifecycle_.Form_Unload()) return false;
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
    const BusyPointer busy(desktop_);
    reportErrors(desktop_, "TreeView1_NodeClick", [&] {
        document_.tree().sortChildren(node);
        const ListView::Update update(ListView1);
        switch (node.kind()) {
            case NodeKind::config:
                EnMenuButt(commandStates::rootSelected);
                listDevices();
                break;
            case NodeKind::plc:
            case NodeKind::branch: listContents(node); break;
            case NodeKind::item: listItem(node); break;
        }
    });
}

void frmEditing::listContents(const Node& container) {
    EnMenuButt(commandStates::containerSelected);
    ListView1.clearRows();
    ListView1.setColumns(itemColumns);
    ListView1.setView(ListView::View::report);
    for (const Node* child : container.GetChildren()) {
        if (child->kind() != NodeKind::item) continue;
        document_.itemAt(*child)->AddToListView(ListView1, true, desktop_);
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
    reportErrors(desktop_, "TreeView1_DblClick", [&] {
        const Node& node = selectedNode(document_);
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
    if (!acceptsFile(path)) return;
    if (isExport(path)) {
        import_.mnuImpCfg_Click(path);
    } else {
        lifecycle_.mnuOpenCfg_Click(path);
    }
}

/// Shows in the list, in place, what a dialog has made of the selected node, which had that key.
void frmEditing::showChange(std::string_view oldKey) {
    const Node& node = selectedNode(document_);
    ListView1.rekeyRows(oldKey, node.key());
    if (node.kind() != NodeKind::item || !ListView1.findRow(node.key())) return;
    ListView shown;
    const bool withIndex = ListView1.columns().size() == itemColumns.size();
    document_.itemAt(node)->AddToListView(shown, withIndex, desktop_);
    ListView1.replaceRow(shown.rows().front());
}

void frmEditing::changeBranch(const Node& node) {
    // Not a reference: the dialog changes it. NOLINTNEXTLINE(performance-unnecessary-copy*)
    const SharedText oldKey = node.key();
    document_.branchDialog.modify = true;
    frmBranch form(document_, desktop_, document_.branches().at(node.key()));
    form.Form_Load();
    forms_.showModal(form);
    showChange(oldKey);
}

void frmEditing::changeDevice(const Node& node) {
    document_.deviceDialog.modify = true;
    frmPLC form(document_, desktop_, document_.deviceAt(node));
    form.Form_Load();
    forms_.showModal(form);
    TreeView1_NodeClick(selectedNode(document_));
}

void frmEditing::changeItem(const Node& node) {
    // Not a reference: the dialog changes it. NOLINTNEXTLINE(performance-unnecessary-copy*)
    const SharedText oldKey = node.key();
    document_.itemDialog.modify = true;
    frmItems form(document_, desktop_, document_.itemAt(node));
    form.Form_Load();
    forms_.showModal(form);
    showChange(oldKey);
}

void frmEditing::ListView1_Click() {
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
    reportErrors(desktop_, "ListView1_DblClick", [&] {
        const auto* row = ListView1.selectedRow();
        if (row == nullptr) return;
        document_.tree().select(&document_.tree().nodeAt(row->key));
        TreeView1_DblClick();
    });
}

void frmEditing::ListView1_ColumnClick(std::size_t column) {
    reportErrors(desktop_, "ListView1_ColumnClick", [&] { ListView1.sortBy(column); });
}

void frmEditing::mnuSetts_Click() {
    reportErrors(desktop_, "mnuSetts_Click", [&] {
        frmSetts form(document_.settings());
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
        document_.deviceDialog = {};
        frmPLC form(document_, desktop_);
        form.Form_Load();
        forms_.showModal(form);
        if (document_.deviceDialog.confirmed) showNewDevice();
    });
}

void frmEditing::showNewDevice() {
    const clsPLC& device = *document_.devices().last();
    ConfigTree& tree = document_.tree();
    Node& node = tree.AddNode(Document::rootKey, device.sKey(), device.getName(), NodeKind::plc);
    tree.ensureVisible(node);
    tree.select(&node);
    ++document_.deviceCounter;
    TreeView1_NodeClick(node);
}

void frmEditing::mnuAddBranch_Click() {
    reportErrors(desktop_, "EH_mnuAddbranch_Click", [&] {
        selectContainer();
        document_.branchDialog = {};
        frmBranch form(document_, desktop_);
        form.Form_Load();
        forms_.showModal(form);
        if (document_.branchDialog.confirmed) showNewBranch();
    });
}

void frmEditing::showNewBranch() {
    const clsBranch& branch = *document_.branches().last();
    ConfigTree& tree = document_.tree();
    // Below the node that was selected for it: with a "." in the name, the key names another one.
    Node& node =
        tree.AddNode(&selectedNode(document_), branch.sKey, branch.sName, NodeKind::branch);
    tree.ensureVisible(node);
    tree.select(&node);
    ++document_.branchCounter;
}

void frmEditing::mnuAddItem_Click() {
    reportErrors(desktop_, "mnuAddItem_Click", [&] {
        selectContainer();
        document_.itemDialog = {};
        frmItems form(document_, desktop_);
        form.Form_Load();
        const bool wasEmpty = selectedNode(document_).GetChildren().empty();
        forms_.showModal(form);
        Node& container = selectedNode(document_);
        // A node opens for the first that it holds.
        if (wasEmpty && !container.GetChildren().empty()) {
            document_.tree().ensureVisible(*container.GetChildren().front());
        }
        TreeView1_NodeClick(container);
    });
}

/// Selects the node below which something is to be added. What stands directly below the root has
/// no place in the file: there the device whose row the user chose is meant, as its row is what
/// enabled the command. Below an item nothing can stand: after a deletion or a search has selected
/// one, the node that holds it is meant. Raises ErrorNumber::objectNotSet when there is none.
void frmEditing::selectContainer() {
    ConfigTree& tree = document_.tree();
    Node* container = &selectedNode(document_);
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
}

/// Whatever Copy says: what could not be copied may still be deleted. Meant.
void frmEditing::mnuCut_Click() {
    reportErrors(desktop_, "mnuCut_Click", [&] {
        mnuCopy_Click();
        mnuDelete_Click();
    });
}

void frmEditing::mnuFind_Click() {
    reportErrors(desktop_, "mnuFind_Click", [&] {
        if (!find_.loaded()) find_.Form_Load();
        forms_.show(find_);
    });
}

void frmEditing::run(const Command& command) {
    if (command.handler != nullptr) (this->*command.handler)();
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
        document_.tree().clear();
        clearList();
        copyPaste_.reset();
    });
}

void frmEditing::loadingStarted() {
    pnlImpStat.visible = true;
    pnlImpStat.progress = 0;
    EnMenuButt(commandStates::loading);
    desktop_.processPendingEvents();  // the panel is to be seen before the work begins
}

void frmEditing::itemLoaded() { pnlImpStat.progress = (pnlImpStat.progress + 1) % 100; }

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

void frmEditing::focusTree() {
    activeControl = ActiveControl::tree;
    if (window_ != nullptr) window_->focusTree();
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
