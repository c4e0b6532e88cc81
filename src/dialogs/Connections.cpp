#include "dialogs/Connections.h"

const std::vector<std::string>& portNames() {
    static const std::vector<std::string> names{"COM1", "COM2", "COM3", "COM4", "COM5",
                                                "COM6", "COM7", "COM8", "USB"};
    return names;
}

const std::vector<std::string>& ediTypes() {
    static const std::vector<std::string> types{"PEI16x9600", "PEI10x19200", "USBCOMMON", "USBEMI1",
                                                "USBEMI2"};
    return types;
}
