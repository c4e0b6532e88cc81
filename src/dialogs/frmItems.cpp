#include "dialogs/frmItems.h"

#include <algorithm>
#include <string_view>

#include "base/Numbers.h"
#include "base/Reporting.h"
#include "model/Checks.h"

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
        if (modify_) {
            loadItem();
        } else {
            loadDefaults();
        }
    });
}

void frmItems::loadItem() {
    cmdOk.caption = "Confirm Modify";
    cmdAdd.enabled = cmdGroup.enabled = false;
    const auto item = document_.itemAt(node_.node());
    txtItemName.text = item->sName;
    txtComment.text = item->sComment;
    cmbDataType.text = item->sDataType;
    std::string_view address = item->sAddress;
    for (TextBox& part : txtAddress) {
        const auto slash = std::min(address.find('/'), address.size());
        part.text = address.substr(0, slash);
        if (slash == address.size()) break;
        address.remove_prefix(slash + 1);
    }
    setElements(std::to_string(item->nElements));
    optLettura = item->bFlag ? 0 : 1;
    cmbAccessRight.text = item->sAccessRight;
}

void frmItems::loadDefaults() {
    cmdOk.caption = "Add and Exit";
    txtItemName.text = "New Item " + std::to_string(document_.itemCounter());
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
        Node& node = node_.node();
        if (!CheckDuplNames(NodeKind::item, txtItemName.text, node, modify_, desktop_)) return;
        if (modify_) {
            const Document::Step step(document_, "Change");
            document_.change(node, fields());
        } else {
            const auto item = std::make_shared<clsItem>();
            item->SetByForm(fields(), &node, false);
            const Document::Step step(document_, "Add");
            document_.addByHand(item, node);
        }
        stored = true;
    });
    return stored;
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
        txtItemName.text = "New_Item_" + std::to_string(document_.itemCounter());
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
        const Document::Step step(document_, "Add");
        for (std::int16_t i = 0; i < count && addAndIncrement(); ++i) {
        }
    });
}
