#include "model/DataTypes.h"

const std::vector<std::string>& dataTypeNames() {
    static const std::vector<std::string> names{
        "EIS1",    "EIS2_P", "EIS2_C", "EIS5",    "EIS6_P",  "EIS6_D",  "EIS7_M",
        "EIS7_S",  "EIS8_P", "EIS8_C", "EIS9",    "EIS10_S", "EIS10_U", "EIS11_S",
        "EIS11_U", "EIS12",  "EIS13",  "EIS14_S", "EIS14_U", "EIS15",   "NOEIS"};
    return names;
}

const std::vector<std::string>& accessRightNames() {
    static const std::vector<std::string> names{"READ", "WRITE", "READWRITE"};
    return names;
}
