// The values that the user can choose for fields of an item.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// An EIS type. Its name is also the key of its large icon. `hasElements` decides its place in the
/// XML schema.
///
///     const DataType* type = findDataType("EIS6_D");
///     if (type != nullptr) show(descriptionOf(*type));
struct DataType {
    std::string_view name;
    /// Items of this type have a number of elements, in the dialog and in the file.
    bool hasElements;
    std::string_view meaning;
    std::string_view size;           ///< of a value on the bus
    std::string_view range;          ///< of a value
    std::string_view datapointType;  ///< the KNX datapoint type, e.g. "5.003"; may be empty
};

/// The EIS types, in the order of the list in the item dialog. An item may have any other text too.
std::span<const DataType> dataTypes();

/// The EIS type with that name; null when there is none.
const DataType* findDataType(std::string_view name);

/// Meaning, size, range and datapoint type: "Scaling in degrees, 1 byte, 0 to 360° (DPT 5.003)".
std::string descriptionOf(const DataType& type);

/// The names of the EIS types.
const std::vector<std::string>& dataTypeNames();

/// "READ", "WRITE" and "READWRITE".
const std::vector<std::string>& accessRightNames();
