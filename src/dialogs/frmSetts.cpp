#include "dialogs/frmSetts.h"

#include <string>

#include "base/Numbers.h"
#include "dialogs/Connections.h"

void frmSetts::Form_Load() {
    cmbPort.list = portNames();
    cmbEdiType.list = ediTypes();
    cmbPort.text = settings_.port;
    cmbEdiType.text = settings_.ediType;
    txtTimeout.text = std::to_string(settings_.timeout);
}

void frmSetts::cmdApply_Click() {
    settings_.port = cmbPort.text;
    settings_.ediType = cmbEdiType.text;
    try {
        settings_.timeout = readInt32(txtTimeout.text);
    } catch (const RunTimeError& error) {
        unhandledError_ = error;
    }
    closed_ = true;
}
