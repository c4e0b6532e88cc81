#include "dialogs/frmItems.h"

#include <algorithm>
#include <string_view>

#include "base/Numbers.h"
#include "base/Reporting.h"
#include "model/Checks.h"
#include "model/DataTypes.h"
#include "model/ProposedNames.h"

void frmItems::Form_Load() {
    reportErrors(desktop_, "Form_Load", [&] {
        cmbDataType.list = dataTypeNames();
        cmbAccessRight.list = accessRightNames();
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
    txtItemName.text = std::string(proposedItemName) + std::to_string(document_.itemCounter());
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

bool frmItems::CheckFields() {
    bool correct = false;
    reportErrors(desktop_, "CheckFields", [&] {
        std::string_view fault = faultOfItemName(txtItemName.text);
        for (const TextBox& part : txtAddress)
            if (fault.empty()) fault = faultOfAddressPart(part.text);
        if (fault.empty() && txtElements.enabled) fault = faultOfElements(txtElements.text);
        if (!fault.empty()) desktop_.showMessage(std::string(fault));
        correct = fault.empty();
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
        txtItemName.text =
            std::string(proposedNextItemName) + std::to_string(document_.itemCounter());
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
