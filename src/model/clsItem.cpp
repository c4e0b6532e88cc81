#include "model/clsItem.h"

#include <unordered_map>
#include <utility>

#include "base/Numbers.h"
#include "base/RunTimeError.h"
#include "base/Text.h"
#include "model/DataTypes.h"
#include "model/Keys.h"
#include "model/ListColumns.h"

namespace {

/// Returns the text of a data type or an access right. Items share the texts that the item dialog
/// proposes.
SharedText choice(std::string_view text) {
    static const auto known = [] {
        std::unordered_map<std::string_view, SharedText> texts;
        for (const auto* names : {&dataTypeNames(), &accessRightNames()}) {
            for (const SharedText name : *names)
                texts.emplace(name, name);
        }
        return texts;
    }();
    const auto found = known.find(text);
    return found != known.end() ? found->second : SharedText(text);
}

/// Returns the number between "(" and "Byte)" in the size text of an ETS export, without the last
/// character, which is a blank. Raises ErrorNumber::invalidCall for a size in bits: such a type
/// cannot be imported.
std::int16_t byteCount(std::string_view text) {
    const auto position = [&](std::string_view part) {  // from 1; 0 when there is none
        const auto found = text.find(part);
        return found == std::string_view::npos ? 0 : static_cast<std::ptrdiff_t>(found) + 1;
    };
    const auto start = position("(") + 1;
    const auto stop = position("Byte)") - 1;
    if (stop < start) {
        throw RunTimeError(ErrorNumber::invalidCall,
                           "a size that is not in bytes, of a type other "
                           "than EIS 1");
    }
    return readInt16(
        text.substr(static_cast<std::size_t>(start - 1), static_cast<std::size_t>(stop - start)));
}

/// The text before each value, and after the last value, in the element of an item that is indented
/// by `level` tabs.
struct Markup {
    explicit Markup(std::size_t itsLevel) : level(itsLevel) {
        const std::string line = "\r\n" + Indent(level) + "\t";
        name = Indent(level) + "<tag>" + line + "<name>";
        comment = "</name>" + line + "<comment>";
        address = "</comment>" + line + "<address>";
        dataType = "</address>" + line + "<eistype>";
        flag = "</eistype>" + line + "<flag>";
        accessRight = "</flag>" + line + "<accessrights>";
        elements = line + "<elements>";
        end = "\r\n" + Indent(level) + "</tag>";
    }

    std::size_t level;
    std::string name, comment, address, dataType, flag, accessRight, elements, end;
};

/// The markup of a level, until the next call. Neighbours mostly have the same level: making the
/// markup for each item would take longer than the rest of writing.
const Markup& markupOf(std::size_t level) {
    static Markup last(level);
    if (last.level != level) last = Markup(level);
    return last;
}

}  // namespace

bool clsItem::hasElements(std::string_view dataType) {
    const DataType* type = findDataType(dataType);
    return type != nullptr && type->hasElements;
}

void clsItem::SetByXml(const XmlElement& element, const SharedText& deviceName,
                       std::string_view parentKey) {
    const auto required = [&](std::string_view child) {
        const auto text = element.childText(child);
        if (!text) throw RunTimeError(ErrorNumber::invalidUseOfNull);
        return *text;
    };
    sName = required("NAME");
    sComment = required("COMMENT");
    sDataType = choice(required("EISTYPE"));
    if (const auto elements = element.childText("ELEMENTS")) nElements = readInt16(*elements);
    sAddress = required("ADDRESS");
    bFlag = required("FLAG") == "READ";
    sAccessRight = choice(required("ACCESSRIGHTS"));
    sPlcname = deviceName;
    sKey = joinKey(parentKey, sName);
}

void clsItem::SetByForm(const ItemFields& dialog, const Node* selected, bool keyFromParent) {
    SharedText key = BuildNodeKey(dialog.txtItemName, selected, keyFromParent);
    if (hasElements(dialog.cmbDataType)) nElements = readInt16(dialog.txtElements);
    sName = dialog.txtItemName;
    sComment = dialog.txtComment;
    sDataType = dialog.cmbDataType;
    sAddress = trimBlanks(dialog.txtAddress[0]) + "/" + trimBlanks(dialog.txtAddress[1]) + "/" +
               trimBlanks(dialog.txtAddress[2]);
    sAccessRight = dialog.cmbAccessRight;
    bFlag = dialog.optRead;
    sKey = std::move(key);
}

SharedText clsItem::SetByEts(const std::vector<std::string>& fields) {
    if (fields.size() < 3) {
        throw RunTimeError(ErrorNumber::subscriptOutOfRange, "fewer than three fields");
    }
    const std::string_view path = fields[0];
    const auto addressDot = path.rfind('.');
    if (addressDot == std::string_view::npos) {
        throw RunTimeError(ErrorNumber::subscriptOutOfRange, "an address without a middle group");
    }
    const std::string_view groups = path.substr(0, addressDot);
    const auto middleDot = groups.rfind('.');  // npos + 1 is 0: a path without a main group
    SharedText device = CleanEtsName(groups.substr(middleDot + 1));

    sName = CleanEtsName(fields[1]);
    sAddress = path.substr(addressDot + 1);
    // Deliberate: "EIS 10" to "EIS 15" contain "EIS 1" too, and are imported as EIS1.
    if (fields[2].find("EIS 1") != std::string::npos) {
        sDataType = choice("EIS1");
    } else {
        sDataType = choice("NOEIS");
        nElements = byteCount(fields[2]);
    }
    sAccessRight = choice("READWRITE");
    bFlag = false;
    sKey = joinKey(device, sName);
    return device;
}

void clsItem::SetByCopy(const clsItem& source, const SharedText& targetParentKey,
                        std::int16_t pasteCounter) {
    const bool isBeside = parentKeyOf(source.sKey) == targetParentKey;
    const SharedText device = sPlcname;
    *this = source;
    sPlcname = device;
    if (isBeside) sName = SharedText(source.sName, "_", std::to_string(pasteCounter));
    sKey = joinKey(targetParentKey, sName);
}

std::string clsItem::getParentKey() const { return std::string(parentKeyOf(sKey)); }

void clsItem::AddToListView(ListView& list, bool withIndex, const ShowMessage& showMessage) const {
    reportErrors(showMessage, "clsItem.AddToList", [&] {
        ListView::Row row{.key = sKey, .cells = {}, .icon = sDataType};
        // When the address is not a valid number, the row is added without the index.
        const auto fault = fillCells(row, *this, itemColumns(withIndex));
        list.addRow(std::move(row));
        if (fault) throw RunTimeError(*fault);
    });
}

void clsItem::GetXmlTag(std::int16_t level, std::string& out) const {
    const Markup& markup = markupOf(static_cast<std::size_t>(level));
    out.append(markup.name).append(sName);
    out.append(markup.comment).append(sComment);
    out.append(markup.address).append(sAddress);
    out.append(markup.dataType).append(sDataType);
    out.append(markup.flag).append(bFlag ? "READ" : "TRANSMIT");
    out.append(markup.accessRight).append(sAccessRight).append("</accessrights>");
    if (hasElements(sDataType)) {
        out.append(markup.elements).append(std::to_string(nElements)).append("</elements>");
    }
    out.append(markup.end);
}

std::string clsItem::CleanEtsName(std::string_view name) {
    std::string clean;
    clean.reserve(name.size());
    for (std::size_t i = 0; i < name.size();) {
        const char32_t c = nextCharacter(name, i);
        const bool kept =
            (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
        clean += kept ? static_cast<char>(c) : '_';
    }
    return clean;
}
