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

/// The fields of the item dialog, as the user left them.
struct ItemFields {
    std::string txtItemName;
    std::string txtComment;
    std::string cmbDataType;
    std::string txtElements;
    std::array<std::string, 3> txtAddress;
    std::string cmbAccessRight;
    bool optRead = false;  ///< "Read" is chosen, not "Transmit"
};

/// What several items are given at once; what is not set stays as it is.
struct ItemProperties {
    std::optional<std::string> dataType;
    std::optional<std::string> accessRight;
    std::optional<bool> isRead;  ///< as `optRead` above
    std::optional<std::int16_t> elements;

    bool operator==(const ItemProperties&) const = default;
};

/// An item: one group-address object of the bus that the OPC server publishes as a tag.
class clsItem {
 public:
    SharedText sKey;             ///< node key: the parent's key, ".", and the name
    std::int16_t nElements = 0;  ///< counts for the types of hasElements() only
    bool bFlag = false;          ///< true: the server reads the value; false: it transmits it
    SharedText sDataType;        ///< EIS type, e.g. "EIS5"; any text is kept
    SharedText sAccessRight;     ///< "READ", "WRITE" or "READWRITE"
    SharedText sComment;
    SharedText sAddress;  ///< main/middle/sub group in decimal, e.g. "1/2/3"
    SharedText sPlcname;  ///< name of the device that the item was read for
    SharedText sName;     ///< item name, the node's text

    /// From a file's tag element that stands in the contents of the device of that name, below
    /// what has that key.
    /// Without an `elements` child nElements stays as it is. Raises
    /// ErrorNumber::invalidUseOfNull for any other missing child and ErrorNumber::overflow for
    /// an element count that does not fit 16 bits.
    void SetByXml(const XmlElement& element, const SharedText& deviceName,
                  std::string_view parentKey);

    /// From the item dialog (which has checked its fields). `selected` is the tree's selected
    /// node; `keyFromParent` is set while it is the item itself that is changed. Raises
    /// ErrorNumber::overflow for an element count that does not fit 16 bits and
    /// ErrorNumber::objectNotSet without a selected node; the record is unchanged then.
    void SetByForm(const ItemFields& dialog, const Node* selected, bool keyFromParent);

    /// From one record of an ETS export: its tab-separated fields. Gives the name of the device
    /// (the middle group) that the item belongs to. Raises ErrorNumber::subscriptOutOfRange for
    /// a record of too few fields or without a middle group, and ErrorNumber::invalidCall for a
    /// size in bits.
    SharedText SetByEts(const std::vector<std::string>& fields);

    /// A copy of `source` below the node with the key `targetParentKey`; beside its source it is
    /// named after it, "_" and the paste counter. sPlcname is not set.
    void SetByCopy(const clsItem& source, const SharedText& targetParentKey,
                   std::int16_t pasteCounter);

    /// The key cut before its last "."; empty when it holds none.
    std::string getParentKey() const;

    /// Adds the item's row, with the hexadecimal group address as "Index" when `withIndex`.
    /// Reports its errors itself.
    void AddToListView(ListView& list, bool withIndex, const Tell& tell) const;

    /// Appends the item's element to `out`, in UTF-8: lines joined by CR LF, without a line end
    /// after the last; the tag is indented by `level` tabs. Nothing is escaped.
    void GetXmlTag(std::int16_t level, std::string& out) const;

    /// True for the types that have a number of elements.
    static bool hasElements(std::string_view dataType);

 private:
    static std::string CleanEtsName(std::string_view name);
};
