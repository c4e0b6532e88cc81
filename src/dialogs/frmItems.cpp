#include "dialogs/frmItems.h"

#include <algorithm>
#include <string_view>

#include "base/Numbers.h"
#include "base/Reporting.h"
#include "base/RunTimeError.h"
#include "base/Text.h"
#include "model/Addresses.h"
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

/// Enables the number of elements and sets its text when the data type has elements; else disables
/// and empties the field.
void frmItems::setElements(const std::string& text) {
    const bool applies = clsItem::hasElements(cmbDataType.text);
    lblElements.enabled = txtElements.enabled = applies;
    txtElements.text = applies ? text : std::string();
}

void frmItems::cmbDataType_Click() { setElements(txtElements.text); }

bool frmItems::enterAddress(std::size_t part, std::string_view text) {
    const auto slashes = static_cast<std::size_t>(std::ranges::count(text, '/'));
    if (slashes + 1 == txtAddress.size()) part = 0;
    if (part + slashes >= txtAddress.size()) return false;
    for (;; ++part) {
        const auto slash = std::min(text.find('/'), text.size());
        const std::string number = trimBlanks(text.substr(0, slash));
        if (!number.empty()) txtAddress[part].text = number;
        if (slash == text.size()) break;
        text.remove_prefix(slash + 1);
    }
    txtAddress[part].getsFocus = true;
    return true;
}

std::string frmItems::address() const {
    return trimBlanks(txtAddress[0].text) + '/' + trimBlanks(txtAddress[1].text) + '/' +
           trimBlanks(txtAddress[2].text);
}

std::string frmItems::addressHint() const {
    const auto isPlain = [](const TextBox& part) {
        const std::string_view text = withoutBlanks(part.text);
        return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
    };
    if (!std::ranges::all_of(txtAddress, isPlain)) return {};
    const auto index = busAddress(address());
    if (!index) return "Beyond the bus, which ends at " + std::string(lastBusAddress);
    for (const auto& [key, item] : document_.items()) {
        const bool isThis = modify_ && key == node_.node().key();
        if (!isThis && busAddress(item->sAddress) == index) return "Also used by " + key.string();
    }
    return {};
}

bool frmItems::CheckFields() {
    bool correct = false;
    reportErrors(desktop_, "CheckFields", [&] {
        TextBox* field = &txtItemName;
        std::string_view fault = faultOfItemName(txtItemName.text);
        const auto check = [&](TextBox& next, auto faultOf) {
            if (!fault.empty()) return;
            field = &next;
            fault = faultOf(next.text);
        };
        for (TextBox& part : txtAddress)
            check(part, faultOfAddressPart);
        if (txtElements.enabled) check(txtElements, faultOfElements);
        correct = fault.empty();
        if (correct) return;
        field->getsFocus = true;
        desktop_.showMessage(std::string(fault));
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
    if (!CheckFields()) return false;
    bool stored = false;
    TextBox* field = &txtItemName;  // the field that the next error is about
    reportErrors(desktop_, "AddItemToColl", [&] {
        if (!CheckDuplNames(NodeKind::item, txtItemName.text, node_.node(), modify_, desktop_))
            return;
        try {
            store();
        } catch (const RunTimeError& error) {
            if (error.number() == ErrorNumber::overflow) field = &txtElements;
            throw;
        }
        stored = true;
    });
    if (!stored) field->getsFocus = true;
    return stored;
}

void frmItems::store() {
    Node& node = node_.node();
    if (modify_) return document_.change(node, fields());
    const auto item = std::make_shared<clsItem>();
    item->SetByForm(fields(), &node, false);
    const Document::Step step(document_, "Add");
    document_.addByHand(item, node);
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
        // Deliberate: no carry. 255 becomes 256, which the next check refuses.
        txtAddress[2].text = plainDecimal(leadingNumber(txtAddress[2].text) + 1);
        txtItemName.getsFocus = true;
        added = true;
    });
    return added;
}

void frmItems::cmdGroup_Click() {
    frmMain.enabled = false;
    frmInserimento.visible = true;
    txtNumbItems.text = "1";
    txtNumbItems.getsFocus = true;
}

void frmItems::closeCountPanel() {
    frmInserimento.visible = false;
    frmMain.enabled = true;
    txtItemName.getsFocus = true;
}

void frmItems::cmdOkNumber_Click() {
    reportErrors(desktop_, "cmdOkNumber_Click", [&] {
        if (!isNumber(txtNumbItems.text)) {
            txtNumbItems.getsFocus = true;
            return desktop_.showMessage("Number of items is not valid.");
        }
        // Closed first: an error must not leave the fields disabled, and nothing can be typed until
        // the end.
        closeCountPanel();
        const std::int16_t count = readInt16(txtNumbItems.text);
        const BusyPointer busy(desktop_);
        const Document::Step step(document_, "Add");
        for (std::int16_t i = 0; i < count && addAndIncrement(); ++i) {
        }
    });
}
