#include "dialogs/CommonProperties.h"

#include <algorithm>

#include "base/Numbers.h"
#include "base/Reporting.h"

namespace {

void clearUnless(bool agree, std::string& text) {
    if (!agree) text.clear();
}

}  // namespace

CommonProperties::CommonProperties(Document& document, Desktop& desktop,
                                   const std::vector<Node*>& items)
    : fields(document, desktop, *items.front(), true), document_(document), desktop_(desktop) {
    for (Node* item : items)
        items_.emplace_back(document.tree(), item);
}

std::vector<Node*> CommonProperties::items() const {
    std::vector<Node*> items;
    for (const auto& item : items_)
        items.push_back(&item.node());
    return items;
}

void CommonProperties::Form_Load() {
    reportErrors(desktop_, "Form_Load", [&] {
        lblCount.caption = withThousandsSeparators(items_.size()) +
                           " items. An empty field leaves each item as it is.";
        fields.Form_Load();
        cmbFlag.list.assign(fields.optLetturaCaptions.begin(), fields.optLetturaCaptions.end());
        cmbFlag.text = cmbFlag.list[fields.optLettura];
        const auto first = document_.itemAt(items_.front().node());
        for (const Node* node : items()) {
            const auto item = document_.itemAt(*node);
            clearUnless(item->sDataType == first->sDataType, fields.cmbDataType.text);
            clearUnless(item->sAccessRight == first->sAccessRight, fields.cmbAccessRight.text);
            clearUnless(item->nElements == first->nElements, fields.txtElements.text);
            clearUnless(item->bFlag == first->bFlag, cmbFlag.text);
        }
        fields.cmbDataType_Click();
        loaded_ = shown();
    });
}

CommonProperties::Shown CommonProperties::shown() const {
    return {fields.cmbDataType.text, fields.cmbAccessRight.text, fields.txtElements.text,
            cmbFlag.text};
}

/// True when the changed fields are valid for the item; otherwise shows a message.
bool CommonProperties::isAccepted(Node& item) {
    const Shown now = shown();
    frmItems form(document_, desktop_, item, true);
    form.Form_Load();
    if (now.dataType != loaded_.dataType) {
        form.cmbDataType.text = now.dataType;
        form.cmbDataType_Click();
    }
    if (now.elements != loaded_.elements) form.txtElements.text = now.elements;
    const bool accepted = form.CheckFields();
    fields.txtElements.getsFocus = form.txtElements.getsFocus;
    return accepted;
}

void CommonProperties::cmdOk_Click() {
    reportErrors(desktop_, "cmdOk_Click", [&] {
        if (!std::ranges::all_of(items(), [&](Node* item) { return isAccepted(*item); })) return;
        const Shown now = shown();
        ItemProperties changed;
        if (now.dataType != loaded_.dataType) changed.dataType = now.dataType;
        if (now.accessRight != loaded_.accessRight) changed.accessRight = now.accessRight;
        if (now.flag != loaded_.flag) changed.isRead = now.flag == cmbFlag.list.front();
        if (fields.txtElements.enabled && now.elements != loaded_.elements) {
            // Of use only when the number is too large, as the dialog then stays open.
            fields.txtElements.getsFocus = true;
            changed.elements = readInt16(now.elements);
        }
        closed_ = true;
        if (changed == ItemProperties()) return;
        const BusyPointer busy(desktop_);
        const Document::Step step(document_, "Change");
        for (Node* item : items())
            document_.change(*item, changed);
        applied_ = true;
    });
}
