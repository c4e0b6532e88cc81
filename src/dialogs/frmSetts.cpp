#include "dialogs/frmSetts.h"

#include <string>

#include "base/Numbers.h"
#include "dialogs/Connections.h"

void frmSetts::Form_Load() {
    cmbPort.list = portNames();
    cmbEdiType.list = ediTypes();
    const GlobalSets& settings = document_.settings();
    cmbPort.text = settings.port;
    cmbEdiType.text = settings.ediType;
    txtTimeout.text = std::to_string(settings.timeout);
}

void frmSetts::cmdApply_Click() {
    GlobalSets settings = document_.settings();
    settings.port = cmbPort.text;
    settings.ediType = cmbEdiType.text;
    try {
        settings.timeout = readInt32(txtTimeout.text);
    } catch (const RunTimeError& error) {
        unhandledError_ = error;
    }
    const Document::Step step(document_, "Change", "global settings");
    document_.setSettings(settings);
    closed_ = true;
}
