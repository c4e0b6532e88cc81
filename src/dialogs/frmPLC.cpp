#include "dialogs/frmPLC.h"

#include <string>

#include "base/Reporting.h"
#include "base/RunTimeError.h"
#include "dialogs/Connections.h"
#include "model/Checks.h"
#include "model/ProposedNames.h"

void frmPLC::Form_Load() {
    reportErrors(desktop_, "Form_Load", [&] {
        cmbPort.list = portNames();
        cmbEdiType.list = ediTypes();
        if (modify_) {
            const clsPLC& device = document_.deviceAt(node_.node());
            txtName.text = device.getName();
            cmbPort.text = device.getPort();
            cmbEdiType.text = device.getEdiType();
            txtTimeout.text = std::to_string(device.getTimeout());
        } else {
            const GlobalSets& settings = document_.settings();
            txtName.text =
                std::string(proposedDeviceName) + std::to_string(document_.deviceCounter());
            cmbPort.text = settings.port;
            cmbEdiType.text = settings.ediType;
            txtTimeout.text = std::to_string(settings.timeout);
        }
    });
}

bool frmPLC::CheckPlcFields() {
    try {
        std::string_view fault = faultOfDeviceName(txtName.text);
        if (fault.empty()) fault = faultOfTimeout(txtTimeout.text);
        if (!fault.empty()) desktop_.showMessage(std::string(fault));
        return fault.empty();
    } catch (...) {
        desktop_.showMessage("Error. Check fields.");
        return false;
    }
}

void frmPLC::cmdApply_Click() {
    TextBox* field = &txtName;  // the field that a message is about
    reportErrors(desktop_, "cmdApply_Click", [&] {
        if (!CheckPlcFields()) {
            closed_ = true;
            return;
        }
        if (!CheckDuplNames(NodeKind::plc, txtName.text, node_.node(), modify_, desktop_)) return;
        try {
            store();
        } catch (const RunTimeError& error) {
            if (error.number() == ErrorNumber::overflow) field = &txtTimeout;
            throw;
        }
        closed_ = true;
    });
    if (!closed_) field->getsFocus = true;
}

void frmPLC::store() {
    const DeviceFields fields{txtName.text, cmbPort.text, cmbEdiType.text, txtTimeout.text};
    if (modify_) return document_.change(node_.node(), fields);
    const auto device = std::make_shared<clsPLC>();
    device->SetByForm(fields);
    const Document::Step step(document_, "Add");
    added_ = &document_.addByHand(device);
}
