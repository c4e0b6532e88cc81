#include "dialogs/frmPLC.h"

#include <string>

#include "base/Numbers.h"
#include "base/Reporting.h"
#include "dialogs/Connections.h"
#include "model/Checks.h"
#include "model/Generale.h"

void frmPLC::Form_Load() {
    reportErrors(desktop_, "Form_Load", [&] {
        cmbPort.list = portNames();
        cmbEdiType.list = ediTypes();
        if (document_.deviceDialog.modify) {
            txtName.text = device_->getName();
            cmbPort.text = device_->getPort();
            cmbEdiType.text = device_->getEdiType();
            txtTimeout.text = std::to_string(device_->getTimeout());
        } else {
            const GlobalSets& settings = document_.settings();
            txtName.text = "New Device " + std::to_string(document_.deviceCounter);
            cmbPort.text = settings.port;
            cmbEdiType.text = settings.ediType;
            txtTimeout.text = std::to_string(settings.timeout);
        }
    });
}

bool frmPLC::CheckPlcFields() {
    try {
        const char* fault = nullptr;
        if (txtName.text.empty()) {
            fault = "Object Name field is empty.";
        } else if (txtTimeout.text.empty()) {
            fault = "Receive Timeout field is empty.";
        } else if (!isNumber(txtTimeout.text)) {
            fault = "Receive Timeout field is not correct.";
        }
        if (fault != nullptr) desktop_.showMessage(fault);
        return fault == nullptr;
    } catch (...) {
        desktop_.showMessage("Error. Check fields.");
        return false;
    }
}

void frmPLC::cmdApply_Click() {
    reportErrors(desktop_, "cmdApply_Click", [&] {
        if (!CheckPlcFields()) {
            closed_ = true;
            return;
        }
        const bool modify = document_.deviceDialog.modify;
        if (!CheckDuplNames(NodeKind::plc, txtName.text, document_.tree(), modify, desktop_)) {
            return;
        }
        const auto device = std::make_shared<clsPLC>();
        device->SetByForm({txtName.text, cmbPort.text, cmbEdiType.text, txtTimeout.text});
        if (modify) {
            storeChanged(device);
        } else {
            requireFreeKey(document_, NodeKind::plc, device->sKey());
            document_.devices().add(device, device->sKey());
            document_.deviceDialog.confirmed = true;
        }
        document_.saved = false;
        closed_ = true;
    });
}

void frmPLC::storeChanged(const std::shared_ptr<clsPLC>& device) {
    Node& node = selectedNode(document_);
    requireFreeKeys(document_, node, device->sKey());
    document_.devices().remove(device_->sKey());
    document_.devices().add(device, device->sKey());
    document_.tree().setText(node, device->getName());
    document_.tree().setKey(node, device->sKey());
    UpdateChildKeys(document_, node);
}
