// The item record.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Reporting.h"
#include "base/SharedText.h"
#include "model/ConfigTree.h"
#include "model/ListView.h"
#include "model/XmlElement.h"

/// The fields of the item dialog.
struct ItemFields {
    std::string txtItemName;
    std::string txtComment;
    std::string cmbDataType;
    std::string txtElements;
    std::array<std::string, 3> txtAddress;
    std::string cmbAccessRight;
    bool optRead = false;  ///< true: "Read" is chosen; false: "Transmit"
};

/// New values for several items. A field without a value is not changed.
struct ItemProperties {
    std::optional<std::string> dataType;
    std::optional<std::string> accessRight;
    std::optional<bool> isRead;  ///< as `optRead` above
    std::optional<std::int16_t> elements;

    bool operator==(const ItemProperties&) const = default;
};

/// An item: one group address object of the bus, which the OPC server publishes as a tag.
///
///     const auto item = std::make_shared<clsItem>();
///     item->SetByForm(fields, &branch, false);
///     document.add(item, branch);
class clsItem {
 public:
    SharedText sKey;             ///< node key: the parent's key, ".", and the name
    std::int16_t nElements = 0;  ///< used only for the types of hasElements()
    bool bFlag = false;          ///< true: the server reads the value; false: it transmits it
    SharedText sDataType;        ///< EIS type, e.g. "EIS5"; may be any text
    SharedText sAccessRight;     ///< "READ", "WRITE" or "READWRITE"
    SharedText sComment;
    SharedText sAddress;  ///< main/middle/sub group in decimal, e.g. "1/2/3"
    SharedText sPlcname;  ///< name of the device that the item was read for
    SharedText sName;     ///< item name, the node's text

    /// Sets all fields from a tag element of a file, in the device `deviceName` and below the node
    /// `parentKey`. Without an ELEMENTS child, nElements is not changed. Raises
    /// ErrorNumber::invalidUseOfNull for any other missing child, and ErrorNumber::overflow for an
    /// element count that does not fit 16 bits.
    void SetByXml(const XmlElement& element, const SharedText& deviceName,
                  std::string_view parentKey);

    /// Sets the fields from the item dialog, which has checked them. `selected` is the selected
    /// node of the tree. `keyFromParent` is true when that node is the item itself, which is
    /// changed; false when the item is added below it. Raises ErrorNumber::overflow for an element
    /// count that does not fit 16 bits, and ErrorNumber::objectNotSet without a selected node; then
    /// the record is unchanged.
    void SetByForm(const ItemFields& dialog, const Node* selected, bool keyFromParent);

    /// Sets the fields from the tab-separated fields of a record of an ETS export. Returns the name
    /// of the device (the middle group) of the item. Raises ErrorNumber::subscriptOutOfRange for a
    /// record with too few fields or without a middle group, and ErrorNumber::invalidCall for a
    /// size in bits.
    SharedText SetByEts(const std::vector<std::string>& fields);

    /// Copies `source` to below the node with the key `targetParentKey`. When that is the parent of
    /// `source`, the name becomes the name of `source`, "_" and the paste counter. sPlcname is not
    /// set.
    void SetByCopy(const clsItem& source, const SharedText& targetParentKey,
                   std::int16_t pasteCounter);

    /// The part of the key before its last "."; empty when the key has no ".".
    std::string getParentKey() const;

    /// Adds the row of the item to the list; with `withIndex`, the row has the hexadecimal group
    /// address in the column "Index". Shows its errors as messages.
    void AddToListView(ListView& list, bool withIndex, const ShowMessage& showMessage) const;

    /// Appends the XML element of the item to `out`, in UTF-8. Lines are joined by CR LF, without a
    /// line end after the last, and indented by `level` tabs. Nothing is escaped.
    void GetXmlTag(std::int16_t level, std::string& out) const;

    /// True for the data types with a number of elements.
    static bool hasElements(std::string_view dataType);

 private:
    static std::string CleanEtsName(std::string_view name);
};
