#include "model/ListColumns.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "base/Text.h"
#include "model/Addresses.h"
#include "model/clsItem.h"
#include "model/clsPLC.h"

namespace {

/// Compares hexadecimal numbers that are padded to one width; a longer one is larger.
bool isLowerHex(std::string_view a, std::string_view b) {
    return std::pair(a.size(), a) < std::pair(b.size(), b);
}

// Widths are fractions of the width of the list. Deliberate: those of the items add up to more than
// 1, so that their list scrolls horizontally.
const ListColumns<clsItem> columnsOfItems{
    {{"Item Name", 0.2}, [](const clsItem& item) { return item.sName; }},
    {{"Comment", 0.3}, [](const clsItem& item) { return item.sComment; }},
    {{"Datatype", 0.2}, [](const clsItem& item) { return item.sDataType; }},
    {{"Address (Hex)", 0.3}, [](const clsItem& item) { return item.sAddress; }},
    {{"Access Rights", 0.2}, [](const clsItem& item) { return item.sAccessRight; }},
    {{"Index", 0.3, &isLowerHex},
     [](const clsItem& item) { return SharedText(AddressToHex(item.sAddress, 4)); },
     false}};

}  // namespace

const ListColumns<clsPLC>& deviceColumns() {
    static const ListColumns<clsPLC> columns{
        {{"Plc Name", 0.5}, [](const clsPLC& device) { return SharedText(device.getName()); }},
        {{"Port", 0.2},
         [](const clsPLC& device) { return SharedText(trimBlanks(device.getPort())); }},
        {{"EDI Type", 0.3},
         [](const clsPLC& device) { return SharedText(trimBlanks(device.getEdiType())); }}};
    return columns;
}

const ListColumns<clsItem>& itemColumns(bool withIndex) {
    static const ListColumns<clsItem> ofSingleItem = [] {
        ListColumns<clsItem> columns;
        std::ranges::copy_if(columnsOfItems, std::back_inserter(columns),
                             &ListColumn<clsItem>::ofSingleItem);
        return columns;
    }();
    return withIndex ? columnsOfItems : ofSingleItem;
}
