#include "editor/Properties.h"

#include "base/Reporting.h"
#include "base/RunTimeError.h"
#include "dialogs/CommonProperties.h"
#include "dialogs/frmBranch.h"
#include "dialogs/frmItems.h"
#include "dialogs/frmPLC.h"

void Properties::open(Node& node) {
    switch (node.kind()) {
        case NodeKind::branch: return changeBranch(node);
        case NodeKind::plc: return changeDevice(node);
        case NodeKind::item: return changeItem(node);
        case NodeKind::config: return;
    }
}

void Properties::changeBranch(Node& node) {
    const SharedText oldKey = node.key();
    const ConfigTree::Reference branch(document_.tree(), &node);
    frmBranch form(document_, desktop_, node, true);
    form.Form_Load();
    forms_.showModal(form);
    contents_.showChange(branch.node(), oldKey, desktop_);
}

void Properties::changeDevice(Node& node) {
    document_.deviceAt(node);
    const ConfigTree::Reference device(document_.tree(), &node);
    frmPLC form(document_, desktop_, node, true);
    form.Form_Load();
    forms_.showModal(form);
    click_(device.node());
}

void Properties::changeItem(Node& node) {
    const SharedText oldKey = node.key();
    const ConfigTree::Reference item(document_.tree(), &node);
    frmItems form(document_, desktop_, node, true);
    form.Form_Load();
    forms_.showModal(form);
    contents_.showChange(item.node(), oldKey, desktop_);
}

void Properties::openForItems() {
    const std::vector<Node*> selected = contents_.selectedItems();
    if (selected.empty()) return;
    CommonProperties form(document_, desktop_, selected);
    form.Form_Load();
    forms_.showModal(form);
    if (form.applied()) contents_.refresh(form.items());
}

void Properties::mnuAddPlc_Click() {
    reportErrors(desktop_, "EH_mnuAddplc_Click", [&] {
        frmPLC form(document_, desktop_, document_.selectedNode(), false);
        form.Form_Load();
        forms_.showModal(form);
        if (!form.confirmed()) return;
        document_.tree().show(*form.added());
        click_(*form.added());
    });
}

void Properties::mnuAddBranch_Click() {
    reportErrors(desktop_, "EH_mnuAddbranch_Click", [&] {
        frmBranch form(document_, desktop_, selectContainer(), false);
        form.Form_Load();
        forms_.showModal(form);
        if (form.confirmed()) document_.tree().show(*form.added());
    });
}

void Properties::mnuAddItem_Click() {
    reportErrors(desktop_, "mnuAddItem_Click", [&] {
        const ConfigTree::Reference container(document_.tree(), &selectContainer());
        const auto before = container.node().GetChildren().size();
        frmItems form(document_, desktop_, container.node(), false);
        form.Form_Load();
        forms_.showModal(form);
        Node& node = container.node();
        Node* added = node.GetChildren().size() > before ? node.GetChildren().back() : nullptr;
        click_(node);  // puts it into its place
        if (added == nullptr) return;
        document_.tree().ensureVisible(*added);
        contents_.ensureVisible(*added);
    });
}

/// Selects and returns the node that gets a new child. At the root this is the device whose row the
/// user chose, as that row enabled the command; the file has no place for branches and items
/// directly below the root. At an item, which a deletion or a search may have selected, this is the
/// parent of the item. Raises ErrorNumber::objectNotSet when there is no such node.
Node& Properties::selectContainer() {
    const ConfigTree& tree = document_.tree();
    Node* container = &document_.selectedNode();
    if (container->kind() == NodeKind::item) container = container->parent();
    if (container->kind() == NodeKind::config) {
        const auto* row = contents_.list().selectedRow();
        container = row == nullptr ? nullptr : tree.FindNode(row->key);
    }
    if (container == nullptr ||
        (container->kind() != NodeKind::plc && container->kind() != NodeKind::branch)) {
        throw RunTimeError(ErrorNumber::objectNotSet);
    }
    tree.select(container);
    return *container;
}
