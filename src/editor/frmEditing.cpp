#include "editor/frmEditing.h"

#include <algorithm>
#include <cmath>

#include "model/Product.h"
#include "model/Reporting.h"

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

int fractionOf(double fraction, int whole) {
    return static_cast<int>(std::lround(fraction * whole));
}

}  // namespace

frmEditing::frmEditing(Document& document, Desktop& desktop, Disk& disk, FLRegistry& registry)
    : document_(document),
      desktop_(desktop),
      lifecycle_(document, desktop, disk, registry, *this),
      enabled_(commandTable().size(), false) {}

void frmEditing::Form_Initialize() {
    reportErrors(desktop_, "Form_Initialize", [&] {
        caption = std::string(companyName) + " - " + std::string(productName);
        document_.settings().SetDefaults();
    });
}

void frmEditing::Form_Load(Size screen) {
    reportErrors(desktop_, "Form_Load", [&] {
        referenceSize = {fractionOf(0.8, screen.width), fractionOf(0.8, screen.height)};
        showViews({.visible = false, .enabled = false});
        EnMenuButt(commandStates::noConfiguration);
    });
}

EditingLayout frmEditing::layoutFor(Size client) {
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
    for (const Node* child : container.children()) {
        if (child->kind() != NodeKind::item) continue;
        document_.items().at(child->key())->AddToListView(ListView1, true, desktop_);
        // Only a first child counts: items after a branch do not enable pasting names. Meant.
        if (child == container.children().front()) {
            EnMenuButt(commandStates::containerSelectedItemsListed);
        }
    }
}

void frmEditing::listItem(const Node& node) {
    EnMenuButt(commandStates::itemSelected);
    ListView1.clearRows();
    ListView1.setColumns(singleItemColumns);
    ListView1.setView(ListView::View::report);
    document_.items().at(node.key())->AddToListView(ListView1, false, desktop_);
}

void frmEditing::listDevices() {
    const ListView::Update update(ListView1);
    ListView1.clearRows();
    ListView1.setColumns(deviceColumns);
    ListView1.setView(ListView::View::report);
    for (const auto& [key, device] : document_.devices())
        device->AddToListView(ListView1);
}

void frmEditing::TreeView1_DblClick() {}

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
        ListView1.clearRows();
    });
}

void frmEditing::loadingStarted() {
    pnlImpStat.visible = true;
    pnlImpStat.progress = 0;
    EnMenuButt(commandStates::loading);
    desktop_.processPendingEvents();  // the panel is to be seen before the work begins
}

void frmEditing::itemLoaded() { pnlImpStat.progress = (pnlImpStat.progress + 1) % 100; }

void frmEditing::loadingEnded() {
    pnlImpStat.visible = false;
    formChanged();
}

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

void frmEditing::endApplication() {
    if (window_ != nullptr) window_->endApplication();
}

void frmEditing::showViews(ViewState state) {
    TreeView1 = state;
    ListView1State = state;
    formChanged();
}

void frmEditing::formChanged() {
    if (window_ != nullptr) window_->formChanged();
}
