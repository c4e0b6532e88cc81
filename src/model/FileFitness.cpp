#include "model/FileFitness.h"

#include <algorithm>

#include "base/Text.h"
#include "model/Keys.h"

namespace {

const std::string unreadable = "the OPC server cannot read a file that holds this";

bool isOneOf(char32_t c, std::u32string_view characters) {
    return characters.find(c) != std::u32string_view::npos;
}

bool isBetween(char32_t c, char32_t first, char32_t last) { return c >= first && c <= last; }

/// Of the characters that ISO-8859-1 has: any other becomes "?", which no name can hold. A colon
/// is not among them: before it stands a prefix that the file would have to declare, and a reader
/// that knows namespaces refuses it (https://www.w3.org/TR/xml-names/, "Prefix Declared").
bool canBeginName(char32_t c) {
    return isBetween(c, 'A', 'Z') || isBetween(c, 'a', 'z') || c == '_' ||
           (isBetween(c, 0xC0, 0xFF) && c != 0xD7 && c != 0xF7);
}

bool canStandInName(char32_t c) {
    return canBeginName(c) || isBetween(c, '0', '9') || isOneOf(c, U"-.\u00B7");
}

/// A character, given with its bytes, for a person to read.
std::string shown(char32_t c, std::string_view bytes) {
    if (c < 0x20 || isBetween(c, 0x7F, 0xA0)) {
        static constexpr std::string_view digits = "0123456789ABCDEF";
        return std::string("U+00") + digits[c >> 4U] + digits[c & 0xFU];
    }
    return "'" + std::string(c == 0xFFFD ? "\uFFFD" : bytes) + "'";  // a broken byte is no text
}

std::string spoilsName(std::string_view name) {
    if (name.empty()) return "A branch without a name: " + unreadable;
    if (equalIgnoringCase(name, "tag") || equalIgnoringCase(name, "tags")) {
        // The file's own elements: an item, and the contents of a device.
        return "'" + std::string(name) + "' as a branch name: read back as something else";
    }
    for (std::size_t end = 0; end < name.size();) {
        const std::size_t start = end;
        const char32_t c = nextCharacter(name, end);
        if (start == 0 ? canBeginName(c) : canStandInName(c)) continue;
        return shown(c, name.substr(start, end - start)) +
               (canStandInName(c) ? " at the start of" : " in") + " a branch name: " + unreadable;
    }
    return {};
}

/// What comes of a character of a text that is no name; nothing when it is read as it was.
std::string_view consequence(char32_t c, FilePlace place) {
    const bool isLineEndOrTab = isOneOf(c, U"\t\n\r");
    if ((c < 0x20 && !isLineEndOrTab) || c == '<' || c == '&') return unreadable;
    if (c > 0xFF) return "saved as \"?\"";
    if (place == FilePlace::attribute) {
        if (c == '"') return unreadable;
        if (isLineEndOrTab) return "read back as a blank";
    }
    if (c == '\r') return "read back as a line feed";
    return {};
}

std::string spoilsText(std::string_view text, FilePlace place) {
    if (place != FilePlace::attribute && text.find("]]>") != std::string_view::npos) {
        return "']]>': " + unreadable;
    }
    std::string slight;
    for (std::size_t end = 0; end < text.size();) {
        const std::size_t start = end;
        const char32_t c = nextCharacter(text, end);
        const std::string_view result = consequence(c, place);
        const bool isGrave = result == unreadable;
        if (!isGrave && (result.empty() || !slight.empty())) continue;
        std::string fault = shown(c, text.substr(start, end - start)) + ": " + std::string(result);
        if (isGrave) return fault;
        slight = std::move(fault);
    }
    return slight;
}

}  // namespace

std::string spoilsFile(std::string_view text, FilePlace place) {
    if (place == FilePlace::nowhere) return {};
    return place == FilePlace::elementName ? spoilsName(text) : spoilsText(text, place);
}

FilePlace filePlaceOf(std::string_view tag) {
    if (tag == "config") return FilePlace::nowhere;
    if (tag == "branch") return FilePlace::elementName;
    return tag == "plc" ? FilePlace::attribute : FilePlace::content;
}

bool isSaved(const Node& node) {
    if (!node.isDroppedDevice()) return node.kind() != NodeKind::config;
    for (TreeWalk walk(node); const Node* below = walk.next();)
        if (below->kind() != NodeKind::plc) return true;
    return false;
}

namespace {

/// The node beside a branch, or beside what is saved as one, that has its name when read back.
const Node* namesakeOf(const Node& node, const ConfigTree& tree) {
    const auto isAnother = [&](const Node* other) {
        return other != nullptr && other != &node && other->parent() == node.parent() &&
               isSaved(*other);
    };
    const Node* inCapitals = tree.FindNode(joinKey(node.parent()->key(), upperCase(node.text())));
    if (isAnother(inCapitals)) return inCapitals;
    if (!node.isDroppedDevice()) return nullptr;  // of two branches, no two differ in case only
    const auto& siblings = node.parent()->GetChildren();
    const auto found = std::ranges::find_if(siblings, [&](const Node* sibling) {
        return sibling->kind() != NodeKind::item && isAnother(sibling) &&
               equalIgnoringCase(sibling->text(), node.text());
    });
    return found == siblings.end() ? nullptr : *found;
}

}  // namespace

std::string spoilsFile(const Node& node, const ConfigTree& tree) {
    if (!isSaved(node)) return {};
    if (node.isDevice()) return spoilsFile(node.text(), FilePlace::attribute);
    if (node.parent() == tree.root()) return "Below no device: the configuration cannot be saved";
    if (node.kind() == NodeKind::item) return spoilsFile(node.text(), FilePlace::content);
    std::string fault = spoilsFile(node.text(), FilePlace::elementName);
    if (!fault.empty()) return fault;
    const Node* namesake = namesakeOf(node, tree);
    if (namesake == nullptr) return {};
    return "Read back in capitals, it has the name of \"" + namesake->text() +
           "\" beside it: the configuration cannot be saved";
}
