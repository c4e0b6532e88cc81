#include "model/Keys.h"

#include "base/RunTimeError.h"

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
