#include "model/Generale.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <vector>

#include "model/Document.h"
#include "model/Numbers.h"
#include "model/RunTimeError.h"

SharedText joinKey(std::string_view parentKey, std::string_view name) {
    return SharedText(parentKey, ".", name);
}

std::string_view parentKeyOf(std::string_view key) {
    const auto dot = key.rfind('.');
    return dot == std::string_view::npos ? std::string_view() : key.substr(0, dot);
}

SharedText BuildNodeKey(std::string_view name, const Node* node, bool useParent) {
    if (node != nullptr && useParent) node = node->parent();
    if (node == nullptr) throw RunTimeError(ErrorNumber::objectNotSet);
    return joinKey(node->key(), name);
}

std::string Indent(std::size_t level) { return std::string(level, '\t'); }

Node& selectedNode(Document& document) {
    Node* node = document.tree().selected();
    if (node == nullptr) throw RunTimeError(ErrorNumber::objectNotSet);
    return *node;
}

namespace {

bool hasRecord(const Document& document, NodeKind kind, const SharedText& key) {
    switch (kind) {
        case NodeKind::plc: return document.devices().find(key) != nullptr;
        case NodeKind::branch: return document.branches().find(key) != nullptr;
        case NodeKind::item: return document.items().find(key) != nullptr;
        case NodeKind::config: return false;
    }
    return false;
}

}  // namespace

void requireFreeKey(const Document& document, NodeKind kind, const SharedText& key) {
    if (hasRecord(document, kind, key)) throw RunTimeError(ErrorNumber::keyTaken);
    if (document.hasNode(key)) throw RunTimeError(ErrorNumber::keyNotUnique);
}

void requireFreeKey(const Document& document, const Node& node, const SharedText& key) {
    const bool hasRecord = !node.isDroppedDevice();
    requireFreeKey(document, hasRecord ? node.kind() : NodeKind::config, key);
}

void requireFreeKeys(const Document& document, const Node& node, const SharedText& newKey) {
    const auto require = [&](const Node& each, const SharedText& key) {
        if (key == each.key()) return;
        // A record's own entry is in nobody's way when only its key's case changes.
        if (!equalIgnoringCase(key, each.key())) return requireFreeKey(document, each, key);
        if (document.hasNode(key)) throw RunTimeError(ErrorNumber::keyNotUnique);
    };
    require(node, newKey);
    std::vector<SharedText> path{newKey};  // the new keys from the node down to the present one
    for (TreeWalk walk(node); const Node* below = walk.next();) {
        path.resize(walk.depth());
        path.push_back(joinKey(path.back(), below->text()));
        require(*below, path.back());
    }
}

void UpdateChildKeys(Document& document, const Node& node) {
    for (TreeWalk walk(node); Node* child = walk.next();) {
        const SharedText newKey = joinKey(child->parent()->key(), child->text());
        const auto setKey = [&](auto& record) { record.sKey = newKey; };
        if (child->kind() == NodeKind::item) {
            document.items().rekey(child->key(), newKey, setKey);
        } else if (child->kind() == NodeKind::branch) {
            document.branches().rekey(child->key(), newKey, setKey);
        }
        document.tree().setKey(*child, newKey);
    }
}

void RemoveSubtree(Document& document, Node& node) {
    const auto removeRecord = [&](const Node& each) {
        switch (each.kind()) {
            case NodeKind::plc:
                if (each.isDevice()) document.devices().remove(each.key());
                return;
            case NodeKind::branch: return document.branches().remove(each.key());
            case NodeKind::item: return document.items().remove(each.key());
            case NodeKind::config: return;
        }
    };
    removeRecord(node);
    for (TreeWalk walk(node); const Node* below = walk.next();)
        removeRecord(*below);
    document.tree().remove(node);
}

bool CheckDuplNames(NodeKind kind, std::string_view name, const ConfigTree& tree, bool useParent,
                    const Tell& tell) {
    bool free = false;
    reportErrors(tell, "CheckDuplNames", [&] {
        const Node* selected = tree.selected();
        const Node* parent = selected != nullptr && useParent ? selected->parent() : selected;
        if (parent == nullptr) throw RunTimeError(ErrorNumber::objectNotSet);
        free = std::ranges::none_of(parent->GetChildren(), [&](const Node* child) {
            return child->kind() == kind && child->text() == name && child != selected;
        });
        if (!free) tell("Name already existing. Please use a different name");
    });
    return free;
}

bool CheckChars(std::string_view text, const Tell& tell) {
    for (const char c : std::string_view(" .,:;\\/|")) {
        if (text.find(c) == std::string_view::npos) continue;
        tell(std::string("Character (") + c + ") not acceptable in string " + std::string(text));
        return false;
    }
    return true;
}

int FilterNumericKey(int code) {
    static constexpr std::array passing = {'-', '.', '\b', '\t', '\n', '\r', ' '};
    const bool passes =
        (code >= '0' && code <= '9') || std::ranges::find(passing, code) != passing.end();
    return passes ? code : 0;
}

std::string AddressToHex(std::string_view address, std::size_t width) {
    double index = 0;
    for (const double weight : {2048.0, 256.0, 1.0}) {
        const auto slash = std::min(address.find('/'), address.size());
        index += leadingNumber(address.substr(0, slash)) * weight;
        address.remove_prefix(std::min(slash + 1, address.size()));
    }
    std::array<char, 8> digits{};
    const auto value = static_cast<std::uint32_t>(roundToInt32(index));
    auto* const end = std::to_chars(digits.data(), digits.data() + digits.size(), value, 16).ptr;
    std::string hex(digits.data(), end);
    std::ranges::transform(hex, hex.begin(),
                           [](char c) { return c >= 'a' ? static_cast<char>(c - 'a' + 'A') : c; });
    if (hex.size() < width) hex.insert(0, width - hex.size(), '0');
    return hex;
}
