#include "dialogs/frmPLC.h"

#include <string>

#include "base/Reporting.h"
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
    txtName.getsFocus = true;  // if the dialog stays open, a message refused this name
    reportErrors(desktop_, "cmdApply_Click", [&] {
        if (!CheckPlcFields()) {
            closed_ = true;
            return;
        }
        Node& node = node_.node();
        if (!CheckDuplNames(NodeKind::plc, txtName.text, node, modify_, desktop_)) return;
        const DeviceFields fields{txtName.text, cmbPort.text, cmbEdiType.text, txtTimeout.text};
        if (modify_) {
            const Document::Step step(document_, "Change");
            document_.change(node, fields);
        } else {
            const auto device = std::make_shared<clsPLC>();
            device->SetByForm(fields);
            const Document::Step step(document_, "Add");
            added_ = &document_.addByHand(device);
        }
        closed_ = true;
    });
}
