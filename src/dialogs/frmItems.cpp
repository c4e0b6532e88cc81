#include "dialogs/frmItems.h"

#include <algorithm>
#include <string_view>

#include "base/Numbers.h"
#include "base/Reporting.h"
#include "model/Checks.h"
#include "model/Generale.h"

namespace {

const std::vector<std::string> dataTypes{
    "EIS1",    "EIS2_P", "EIS2_C", "EIS5",    "EIS6_P",  "EIS6_D",  "EIS7_M",
    "EIS7_S",  "EIS8_P", "EIS8_C", "EIS9",    "EIS10_S", "EIS10_U", "EIS11_S",
    "EIS11_U", "EIS12",  "EIS13",  "EIS14_S", "EIS14_U", "EIS15",   "NOEIS"};
const std::vector<std::string> accessRights{"READ", "WRITE", "READWRITE"};

}  // namespace

void frmItems::Form_Load() {
    reportErrors(desktop_, "Form_Load", [&] {
        cmbDataType.list = dataTypes;
        cmbAccessRight.list = accessRights;
        if (document_.itemDialog.modify) {
            loadItem();
        } else {
            loadDefaults();
        }
    });
}

void frmItems::loadItem() {
    cmdOk.caption = "Confirm Modify";
    cmdAdd.enabled = cmdGroup.enabled = false;
    txtItemName.text = item_->sName;
    txtComment.text = item_->sComment;
    cmbDataType.text = item_->sDataType;
    std::string_view address = item_->sAddress;
    for (TextBox& part : txtAddress) {
        const auto slash = std::min(address.find('/'), address.size());
        part.text = address.substr(0, slash);
        if (slash == address.size()) break;
        address.remove_prefix(slash + 1);
    }
    setElements(std::to_string(item_->nElements));
    optLettura = item_->bFlag ? 0 : 1;
    cmbAccessRight.text = item_->sAccessRight;
}

void frmItems::loadDefaults() {
    cmdOk.caption = "Add and Exit";
    txtItemName.text = "New Item " + std::to_string(document_.itemCounter);
    cmbDataType.text = "EIS1";
    setElements("");
    cmbAccessRight.text = "READWRITE";
}

/// Enables the number of elements with this text, or disables and empties it, as the data type
/// asks for.
void frmItems::setElements(const std::string& text) {
    const bool applies = clsItem::hasElements(cmbDataType.text);
    lblElements.enabled = txtElements.enabled = applies;
    txtElements.text = applies ? text : std::string();
}

void frmItems::cmbDataType_Click() { setElements(txtElements.text); }

bool frmItems::complain(const std::string& text) {
    desktop_.showMessage(text);
    return false;
}

bool frmItems::CheckFields() {
    bool correct = false;
    reportErrors(desktop_, "CheckFields", [&] {
        correct = [&] {
            if (txtItemName.text.empty()) return complain("Item name field is empty.");
            for (const TextBox& part : txtAddress) {
                if (part.text.empty()) return complain("Group Address field is empty.");
                // All three parts share one range, wider than the bus has for the first two.
                const double value = leadingNumber(part.text);
                if (value < 0 || value > 255) {
                    return complain(
                        "Group Address field is not valid. It must be between 0 and 255.");
                }
            }
            if (!txtElements.enabled) return true;
            if (txtElements.text.empty()) return complain("Number of elements field is empty.");
            if (leadingNumber(txtElements.text) < 0) {
                return complain("Number of elements field is not valid.");
            }
            return true;
        }();
    });
    return correct;
}

ItemFields frmItems::fields() const {
    return {.txtItemName = txtItemName.text,
            .txtComment = txtComment.text,
            .cmbDataType = cmbDataType.text,
            .txtElements = txtElements.text,
            .txtAddress = {txtAddress[0].text, txtAddress[1].text, txtAddress[2].text},
            .cmbAccessRight = cmbAccessRight.text,
            .optRead = optLettura == 0};
}

bool frmItems::AddItemToColl() {
    bool stored = false;
    reportErrors(desktop_, "AddItemToColl", [&] {
        if (!CheckFields()) return;
        const bool modify = document_.itemDialog.modify;
        if (!CheckDuplNames(NodeKind::item, txtItemName.text, document_.tree(), modify, desktop_)) {
            return;
        }
        if (modify) {
            storeChanged();
        } else {
            storeNew();
        }
        document_.saved = false;
        stored = true;
    });
    return stored;
}

/// The item keeps its record: the editor clipboard and dragged copies refer to it.
void frmItems::storeChanged() {
    Node& node = selectedNode(document_);
    const SharedText key = BuildNodeKey(txtItemName.text, &node, true);
    requireFreeKeys(document_, node, key);
    const auto item = document_.items().at(node.key());
    item->SetByForm(fields(), &node, true);
    document_.items().rekey(node.key(), key, [](const clsItem&) {});
    document_.tree().setText(node, item->sName);
    document_.tree().setKey(node, key);
}

void frmItems::storeNew() {
    const auto item = std::make_shared<clsItem>();
    Node& parent = selectedNode(document_);
    item->SetByForm(fields(), &parent, false);
    document_.enter(item, parent);
    ++document_.itemCounter;
}

void frmItems::cmdOk_Click() {
    reportErrors(desktop_, "cmdOk_Click", [&] {
        if (AddItemToColl()) closed_ = true;
    });
}

void frmItems::cmdAdd_Click() { addAndIncrement(); }

bool frmItems::addAndIncrement() {
    bool added = false;
    reportErrors(desktop_, "cmdAdd_Click", [&] {
        if (!AddItemToColl()) return;
        txtItemName.text = "New_Item_" + std::to_string(document_.itemCounter);
        txtComment.text.clear();
        // No carry and no wrap: 255 becomes 256, which the next check refuses.
        txtAddress[2].text = plainDecimal(leadingNumber(txtAddress[2].text) + 1);
        added = true;
    });
    return added;
}

void frmItems::cmdGroup_Click() {
    frmMain.enabled = false;
    frmInserimento.visible = true;
    txtNumbItems.text = "1";
}

void frmItems::cmdOkNumber_Click() {
    reportErrors(desktop_, "cmdOkNumber_Click", [&] {
        if (!isNumber(txtNumbItems.text)) {
            return desktop_.showMessage("Number of items is not valid.");
        }
        frmInserimento.visible = false;
        frmMain.enabled = true;  // nothing is typed meanwhile, and no error leaves it disabled
        const std::int16_t count = readInt16(txtNumbItems.text);
        const BusyPointer busy(desktop_);
        for (std::int16_t i = 0; i < count && addAndIncrement(); ++i) {
        }
    });
}
