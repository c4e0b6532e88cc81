#include "editor/frmEditing.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "base/Numbers.h"
#include "base/Reporting.h"
#include "base/RunTimeError.h"
#include "base/Text.h"
#include "dialogs/frmSetts.h"
#include "model/Product.h"

namespace {

bool endsWith(std::string_view path, std::string_view ending) {
    return path.size() >= ending.size() &&
           equalIgnoringCase(path.substr(path.size() - ending.size()), ending);
}

bool isConfiguration(std::string_view path) { return endsWith(path, ".xml"); }

bool isExport(std::string_view path) { return endsWith(path, ".esf"); }

/// A caption followed by the name of a step, in which each "&" is doubled so that it marks no
/// accelerator.
std::optional<std::string> withStep(std::string caption, const std::string& step) {
    if (step.empty()) return std::nullopt;
    caption += ' ';
    for (const char c : step)
        caption.append(c == '&' ? 2 : 1, c);
    return caption;
}

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
    reportErrors(desktop_, "Form_Initialize",
                 [&] { caption = std::string(companyName) + " - " + std::string(productName); });
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

CommandState frmEditing::stateFor(const Node& node) const {
    using namespace commandStates;
    if (node.kind() == NodeKind::config) return rootSelected;
    if (node.kind() == NodeKind::item) return itemSelected;
    // Deliberate: only the first child counts. Items after a branch do not enable pasting names.
    const auto& children = node.GetChildren();
    const bool itemsListed = !children.empty() && children.front()->kind() == NodeKind::item;
    return itemsListed ? containerSelectedItemsListed : containerSelected;
}

/// The messages are shown when the list is complete.
void frmEditing::showNode(const Node& node) {
    EnMenuButt(stateFor(node));
    withFirstMessages(desktop_, [&](FirstMessages& messages) { contents_.show(node, messages); });
}

void frmEditing::clearList() { contents_.clear(); }

void frmEditing::listDevices() { contents_.showDevices(); }

void frmEditing::TreeView1_DblClick() {
    if (!isFree()) return;
    reportErrors(desktop_, "TreeView1_DblClick",
                 [&] { properties_.open(document_.selectedNode()); });
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
        // Deliberate: an error in the settings dialog ends the application without asking whether
        // to save.
        reportErrors(desktop_, "cmdApply_Click", [&] { throw *form.unhandledError(); });
        document_.open = false;
        end(EXIT_FAILURE);
    });
}

/// Deliberate: also deletes what could not be copied.
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

std::optional<std::string> frmEditing::undoCaption() const {
    return withStep("&Undo", document_.undoName());
}

std::optional<std::string> frmEditing::redoCaption() const {
    return withStep("R&edo", document_.redoName());
}

void frmEditing::mnuProperties_Click() {
    activeControl == ActiveControl::list ? ListView1_DblClick() : TreeView1_DblClick();
}

std::optional<std::string> frmEditing::propertiesCaption() const {
    if (!hasProperties(activeControl)) return std::nullopt;
    return "P&roperties";
}

void frmEditing::mnuItemProperties_Click() {
    reportErrors(desktop_, "mnuItemProperties_Click", [&] { properties_.openForItems(); });
}

std::optional<std::string> frmEditing::itemPropertiesCaption() const {
    const std::size_t count = contents_.selectedItemCount();
    if (count < 2) return std::nullopt;
    return "Properties o&f " + withThousandsSeparators(count) + " Items...";
}

void frmEditing::mnuCopyTable_Click() {
    reportErrors(desktop_, "mnuCopyTable_Click",
                 [&] { desktop_.setClipboardText(contents_.selectedAsTable()); });
}

std::optional<std::string> frmEditing::copyTableCaption() const {
    if (ListView1.selectedRow() == nullptr) return std::nullopt;
    return "Copy &as Table";
}

/// Shows a node as a click on it does, but without sorting its children: undo and redo have
/// restored their order.
void frmEditing::showAfter(Node* node) {
    if (node == nullptr) return;
    const BusyPointer busy(desktop_);
    document_.tree().show(*node);
    showNode(*node);
}

void frmEditing::mnuFind_Click() {
    reportErrors(desktop_, "mnuFind_Click", [&] {
        if (!find_.loaded()) find_.Form_Load();
        forms_.show(find_);
    });
}

void frmEditing::run(const Command& command) {
    if (!isFree() || command.handler == nullptr) return;
    if (command.captionNow != nullptr && !(this->*command.captionNow)()) return;
    (this->*command.handler)();
}

void frmEditing::Toolbar1_ButtonClick(std::string_view key) {
    reportErrors(desktop_, "Toolbar1_ButtonClick", [&] {
        const auto buttons = toolbarCommands();
        const auto pressed = std::ranges::find(
            buttons, key, [](const Command* command) { return command->button.key; });
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
    desktop_.processPendingEvents();  // so that the panel is drawn before the work begins
}

void frmEditing::itemLoaded() { pnlImpStat.progress = (pnlImpStat.progress + 1) % 100; }

void frmEditing::loadingTakesLong() {
    if (std::exchange(pnlImpStat.offersCancel, true)) return;
    formChanged();
}

/// Does not call formChanged(): configurationOpened() or configurationClosed() follows.
void frmEditing::loadingEnded() { pnlImpStat.visible = false; }

void frmEditing::configurationOpened() {
    showViews({.visible = true, .enabled = true});
    EnMenuButt(commandStates::configurationOpen);
}

void frmEditing::configurationClosed() {
    // Opening a file may fail after the root was made. Then the root is visible, but disabled, as
    // no configuration is open.
    const bool hasRoot = document_.tree().root() != nullptr;
    showViews({.visible = hasRoot, .enabled = false});
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
    document_.tree().show(shown);
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
