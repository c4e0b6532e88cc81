#include "editor/CopyPaste.h"

#include <string>
#include <string_view>

#include "base/Numbers.h"
#include "base/Reporting.h"
#include "base/RunTimeError.h"

namespace {

constexpr std::string_view newItem = "New_Item";
constexpr std::string_view copiedItem = "Copied_Item";

void refuseDefaultName(Desktop& desktop) {
    desktop.showMessage("Please change Item name (do not use default name) before copying");
}

}  // namespace

void CopyPaste::reset() {
    clipboard_.emplace();
    pasteCounter_ = 1;
}

void CopyPaste::mnuCopy_Click() {
    reportErrors(desktop_, "mnuCopy_Click", [&] {
        pasteCounter_ = 0;
        switch (active_) {
            case ActiveControl::list: return copyRows();
            case ActiveControl::tree: return copyNode();
            case ActiveControl::none: return;
        }
    });
}

void CopyPaste::copyRows() {
    bool first = true;
    for (const auto& row : list_.rows()) {
        if (!row.selected) continue;
        const std::string_view text = row.text();
        if (text.starts_with(newItem) || text.starts_with(copiedItem)) {
            return refuseDefaultName(desktop_);
        }
        Node& node = document_.itemNodeAt(row.key);
        // Not earlier: if there is nothing to copy, the clipboard does not change.
        if (first) clipboard_.emplace();
        first = false;
        take(node);
    }
}

void CopyPaste::copyNode() {
    Node& node = document_.selectedNode();
    if (node.kind() == NodeKind::branch) {
        desktop_.showMessage("Please use Drag&Drop to copy and paste branches");
    } else if (node.kind() == NodeKind::item) {
        // Deliberate: unlike in the list, a name that begins with "Copied_Item" is accepted.
        if (std::string_view(node.text()).starts_with(newItem)) return refuseDefaultName(desktop_);
        clipboard_.emplace();
        take(node);
    }
}

void CopyPaste::take(Node& node) {
    clipboard_->emplace_back(document_.items().share(node.key()), document_.tree(), node);
}

void CopyPaste::mnuPaste_Click() {
    reportErrors(desktop_, "mnuPaste_Click", [&] {
        try {
            paste();
        } catch (const RunTimeError& error) {
            if (error.number() != ErrorNumber::objectNotSet) throw;
            desktop_.showMessage("Copied object can not be added here ");
        }
    });
}

void CopyPaste::paste() {
    if (!clipboard_) return desktop_.showMessage("No items to paste.");
    Node& target = document_.selectedNode();
    if (target.kind() != NodeKind::branch && target.kind() != NodeKind::plc) return;
    pasteInto(target);
    countUp(pasteCounter_);
}

void CopyPaste::pasteInto(Node& target) {
    const BusyPointer busy(desktop_);
    const Document::Step step(document_, "Paste");
    bool anyPasted = false;
    const auto showPasted = [&] {  // called once for all items
        if (anyPasted) click_(target);
    };
    try {
        const ConfigTree::BulkChange bulk(document_.tree());
        for (const auto& [record, node] : *clipboard_) {
            // The name is that of the node: a copy made by dragging shares its record with the
            // original, but may have another name.
            clsItem source = *record;
            source.sName = node.text();
            if (source.sName.empty()) continue;
            const auto item = std::make_shared<clsItem>();
            item->SetByCopy(source, target.key(), pasteCounter_);
            while (document_.items().find(item->sKey) != nullptr) {
                countUp(pasteCounter_);
                const std::string suffix = "_" + std::to_string(pasteCounter_);
                item->sName = SharedText(item->sName, suffix, {});
                item->sKey = SharedText(item->sKey, suffix, {});
            }
            document_.add(item, target);
            anyPasted = true;
        }
    } catch (...) {
        showPasted();
        throw;
    }
    showPasted();
}
