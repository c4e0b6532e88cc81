#include "tool/Columns.h"

#include <algorithm>
#include <charconv>
#include <vector>

#include "base/Text.h"

namespace {

constexpr std::array connectionColumns{Column::port, Column::ediType, Column::timeout};
constexpr std::array itemColumns{Column::comment,  Column::address,     Column::dataType,
                                 Column::elements, Column::accessRight, Column::flag};

constexpr std::array kinds{NodeKind::config, NodeKind::plc, NodeKind::branch, NodeKind::item};

/// The escapes in a path: the character after "\", and the character in the name.
constexpr std::array<std::pair<char, char>, 5> escapes{
    {{'.', '.'}, {'\\', '\\'}, {'n', '\n'}, {'r', '\r'}, {'t', '\t'}}};

bool isEscaped(char c) { return c == '.' || c == '\\' || c == '\n' || c == '\r' || c == '\t'; }

}  // namespace

std::span<const Column> columnsOf(NodeKind kind) {
    switch (kind) {
        case NodeKind::config:
        case NodeKind::plc: return connectionColumns;
        case NodeKind::branch: return {};
        case NodeKind::item: return itemColumns;
    }
    return {};
}

std::string_view kindName(NodeKind kind) {
    if (kind == NodeKind::config) return "settings";
    return kind == NodeKind::plc ? "device" : tagOf(kind);
}

std::optional<NodeKind> kindNamed(std::string_view name) {
    for (const NodeKind kind : kinds)
        if (equalIgnoringCase(name, kindName(kind))) return kind;
    return std::nullopt;
}

std::string pathOf(const Node& node) {
    std::vector<const Node*> nodes;
    for (const Node* each = &node; each->parent() != nullptr; each = each->parent())
        nodes.push_back(each);
    std::string path;
    for (auto each = nodes.rbegin(); each != nodes.rend(); ++each)
        appendToPath(path, (*each)->text());
    return path;
}

void appendToPath(std::string& path, std::string_view name) {
    if (!path.empty()) path += '.';
    if (std::ranges::none_of(name, isEscaped)) {
        path += name;
        return;
    }
    for (const char c : name) {
        if (isEscaped(c)) path += '\\';
        path +=
            isEscaped(c) ? std::ranges::find(escapes, c, &std::pair<char, char>::second)->first : c;
    }
}

std::optional<std::string> takeName(std::optional<std::string_view>& path) {
    std::string name;
    for (std::size_t i = 0; i < path->size(); ++i) {
        char c = (*path)[i];
        if (c == '.') {
            path->remove_prefix(i + 1);
            return name;
        }
        if (c == '\\') {
            if (++i == path->size()) return std::nullopt;
            const auto* const escape =
                std::ranges::find(escapes, (*path)[i], &std::pair<char, char>::first);
            if (escape == escapes.end()) return std::nullopt;
            c = escape->second;
        }
        name += c;
    }
    path.reset();
    return name;
}

std::optional<PathEnd> cutPath(std::string_view path) {
    if (path.starts_with('.')) return std::nullopt;
    std::optional rest = path;
    while (true) {
        const std::size_t start = path.size() - rest->size();
        auto name = takeName(rest);
        if (!name) return std::nullopt;
        if (rest) continue;
        return PathEnd{path.substr(0, start == 0 ? 0 : start - 1), std::move(*name)};
    }
}

Values::Values(const Document& document, const Node& node) {
    const auto setConnection = [&](const std::string& port, const std::string& ediType,
                                   std::int32_t timeout) {
        at(Column::port) = port;
        at(Column::ediType) = ediType;
        setNumber(Column::timeout, timeout);
    };
    at(Column::kind) = kindName(node.kind());
    switch (node.kind()) {
        case NodeKind::config: {
            const GlobalSets& settings = document.settings();
            setConnection(settings.port, settings.ediType, settings.timeout);
            return;
        }
        case NodeKind::plc: {
            const clsPLC& device = document.deviceAt(node);
            setConnection(device.getPort(), device.getEdiType(), device.getTimeout());
            break;
        }
        case NodeKind::branch: break;
        case NodeKind::item: {
            const clsItem& item = document.items().at(node.key());
            at(Column::comment) = item.sComment;
            at(Column::address) = item.sAddress;
            at(Column::dataType) = item.sDataType;
            if (clsItem::hasElements(item.sDataType)) setNumber(Column::elements, item.nElements);
            at(Column::accessRight) = item.sAccessRight;
            at(Column::flag) = item.bFlag ? "READ" : "TRANSMIT";
            break;
        }
    }
    at(Column::name) = node.text();
}

void Values::setNumber(Column column, std::int32_t number) {
    auto* const end = std::to_chars(number_.data(), number_.data() + number_.size(), number).ptr;
    at(column) = {number_.data(), static_cast<std::size_t>(end - number_.data())};
}
