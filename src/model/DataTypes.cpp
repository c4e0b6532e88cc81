#include "model/DataTypes.h"

#include <algorithm>
#include <array>

namespace {

// Sizes, ranges and datapoint types are those of the KNX system specifications, volume 3/7/2,
// "Datapoint Types". The largest value of 2 bytes that could be written there, 670,760.96, means
// "invalid".
// clang-format off
constexpr std::array table{
    DataType{"EIS1",    false, "Switching",                       "1 bit",   "0 or 1",                            "1.x"},
    DataType{"EIS2_P",  false, "Dimming, on and off",             "1 bit",   "0 or 1",                            "1.001"},
    DataType{"EIS2_C",  false, "Dimming, brighter and darker",    "4 bits",  "direction, and 1 to 7 or stop",     "3.007"},
    DataType{"EIS5",    false, "Floating point",                  "2 bytes", "-671,088.64 to 670,433.28",         "9.x"},
    DataType{"EIS6_P",  false, "Scaling in percent",              "1 byte",  "0 to 100 %",                        "5.001"},
    DataType{"EIS6_D",  false, "Scaling in degrees",              "1 byte",  "0 to 360°",                         "5.003"},
    DataType{"EIS7_M",  false, "Drive control, move",             "1 bit",   "0 up, 1 down",                      "1.008"},
    DataType{"EIS7_S",  false, "Drive control, step or stop",     "1 bit",   "0 or 1",                            "1.007"},
    DataType{"EIS8_P",  false, "Priority, position",              "2 bits",  "0 to 3",                            "2.x"},
    DataType{"EIS8_C",  false, "Priority, control",               "2 bits",  "0 to 3",                            "2.x"},
    DataType{"EIS9",    false, "Floating point",                  "4 bytes", "-3.4 × 10³⁸ to 3.4 × 10³⁸", "14.x"},
    DataType{"EIS10_S", false, "Counter with sign",               "2 bytes", "-32,768 to 32,767",                 "8.x"},
    DataType{"EIS10_U", false, "Counter without sign",            "2 bytes", "0 to 65,535",                       "7.x"},
    DataType{"EIS11_S", false, "Counter with sign",               "4 bytes", "-2,147,483,648 to 2,147,483,647",   "13.x"},
    DataType{"EIS11_U", false, "Counter without sign",            "4 bytes", "0 to 4,294,967,295",                "12.x"},
    DataType{"EIS12",   true,  "Access",                          "4 bytes", "6 digits, and how they were read",  "15.000"},
    DataType{"EIS13",   false, "Character",                       "1 byte",  "ASCII or ISO-8859-1",               "4.x"},
    DataType{"EIS14_S", false, "Counter with sign",               "1 byte",  "-128 to 127",                       "6.010"},
    DataType{"EIS14_U", false, "Counter without sign",            "1 byte",  "0 to 255",                          "5.010"},
    DataType{"EIS15",   true,  "Text",                            "14 bytes", "up to 14 characters",              "16.x"},
    DataType{"NOEIS",   true,  "Of no EIS type",                  "as many bytes as elements", "any value",      ""}};
// clang-format on

}  // namespace

std::span<const DataType> dataTypes() { return table; }

const DataType* findDataType(std::string_view name) {
    const auto* const type = std::ranges::find(table, name, &DataType::name);
    return type == table.end() ? nullptr : type;
}

std::string descriptionOf(const DataType& type) {
    std::string text(type.meaning);
    text.append(", ").append(type.size).append(", ").append(type.range);
    if (!type.datapointType.empty()) text.append(" (DPT ").append(type.datapointType).append(")");
    return text;
}

const std::vector<std::string>& dataTypeNames() {
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all;
        all.reserve(table.size());
        for (const DataType& type : table)
            all.emplace_back(type.name);
        return all;
    }();
    return names;
}

const std::vector<std::string>& accessRightNames() {
    static const std::vector<std::string> names{"READ", "WRITE", "READWRITE"};
    return names;
}
