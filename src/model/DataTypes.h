// What the fields of an item may be chosen from.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// An EIS type. Its large picture is the one of its name; its place in the XML schema follows from
/// `hasElements`.
struct DataType {
    std::string_view name;
    bool hasElements;  ///< an item of it has a number of elements, in the dialog and in the file
    std::string_view meaning;
    std::string_view size;           ///< of a value on the bus
    std::string_view range;          ///< of a value
    std::string_view datapointType;  ///< its number in KNX, e.g. "5.003"; empty for none
};

/// The EIS types, in the order of the item dialog's list. An item holds any text.
std::span<const DataType> dataTypes();

/// Null for a text that is none.
const DataType* findDataType(std::string_view name);

/// "Scaling in degrees, 1 byte, 0 to 360° (DPT 5.003)".
std::string descriptionOf(const DataType& type);

/// The names of the EIS types.
const std::vector<std::string>& dataTypeNames();

/// "READ", "WRITE" and "READWRITE".
const std::vector<std::string>& accessRightNames();
