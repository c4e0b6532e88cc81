#include "file/CreateXML.h"

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/Generale.h"
#include "model/Reporting.h"
#include "model/RunTimeError.h"
#include "model/Text.h"

namespace {

/// The text of a file, line by line, in the file's own encoding. Lines end with CR LF.
class Lines {
 public:
    /// Most files of so many items need no more; memory that is not written to costs nothing.
    explicit Lines(std::size_t items) { bytes_.reserve(1024 + items * 512); }

    void add(std::size_t level, std::initializer_list<std::string_view> pieces) {
        bytes_.append(Indent(level));
        for (const auto piece : pieces)
            appendLatin1(bytes_, piece);
        bytes_.append("\r\n");
    }

    const std::string& bytes() const { return bytes_; }

 private:
    std::string bytes_;
};

constexpr std::int16_t deviceContentsLevel = 4;

/// The contents of one device, first child to last. No recursion: a branch may lie as deep as
/// the file that it was read from made it. False after telling the user.
bool PrintBranch(Lines& lines, const Document& document, const Node& device, const Tell& tell) {
    return reportErrors(tell, "PrintBranch", [&] {
        const Node* open = &device;  // the node whose contents are being written
        std::size_t level = deviceContentsLevel;
        const auto closeUpTo = [&](const Node* node) {
            for (; open != node; open = open->parent())
                lines.add(--level, {"</", open->text(), ">"});
        };
        for (TreeWalk walk(device); const Node* node = walk.next();) {
            closeUpTo(node->parent());
            if (node->kind() == NodeKind::item) {
                if (level > std::numeric_limits<std::int16_t>::max()) {
                    throw RunTimeError(ErrorNumber::overflow);
                }
                const auto tagLevel = static_cast<std::int16_t>(level);
                const clsItem& item = *document.items().at(node->key());
                lines.add(
                    0, {item.sName == node->text() ? item.GetXmlTag(tagLevel)
                                                   : document.itemAt(*node)->GetXmlTag(tagLevel)});
            } else {
                lines.add(level++, {"<", node->text(), ">"});
                open = node;
            }
        }
        closeUpTo(&device);
    });
}

/// The contents of a device that has no node of its own any more, as a tree: it was dragged below
/// another node, which takes its node and all below it out of the tree, while the records stay.
/// They are saved where they were, so that what was dragged by mistake is not lost.
void buildFromRecords(ConfigTree& tree, const Document& document, const clsPLC& device) {
    struct Left {
        std::string_view key;
        NodeKind kind;
    };
    std::vector<Left> left;
    const std::string prefix = device.sKey() + ".";
    const auto collect = [&](const auto& registry, NodeKind kind) {
        for (const auto& [key, record] : registry)
            if (key.starts_with(prefix) && document.tree().FindNode(key) == nullptr) {
                left.push_back({key, kind});
            }
    };
    collect(document.branches(), NodeKind::branch);
    collect(document.items(), NodeKind::item);
    std::ranges::stable_sort(left, {}, [](const Left& each) {  // parents before their children
        return std::ranges::count(each.key, '.');
    });

    const auto add = [&](std::string_view parentKey, std::string_view key, NodeKind kind) {
        tree.AddNode(parentKey, std::string(key), std::string(key.substr(parentKey.size() + 1)),
                     kind);
    };
    // A node that had no record of its own, as another device was dropped there, may have held
    // some that do.
    const auto addMissing = [&](std::string_view key) {
        std::vector<std::string_view> missing;
        for (; tree.FindNode(key) == nullptr; key = parentKeyOf(key))
            missing.push_back(key);
        for (auto each = missing.rbegin(); each != missing.rend(); ++each)
            add(parentKeyOf(*each), *each, NodeKind::branch);
    };
    tree.AddNode("", device.sKey(), device.getName(), NodeKind::plc);
    for (const auto& [key, kind] : left) {
        std::string_view parentKey = parentKeyOf(key);
        for (auto above = parentKey; !above.empty(); above = parentKeyOf(above)) {
            const Node* node = tree.FindNode(above);
            // Below an item there is nothing: what follows is a name with a ".".
            if (node != nullptr && node->kind() == NodeKind::item) parentKey = parentKeyOf(above);
        }
        addMissing(parentKey);
        add(parentKey, key, kind);
    }
}

/// The file has a place for what stands below a device only. What was dragged to the root must
/// not be left out without a word.
void requireDevicesOnly(const Document& document, const Node& root) {
    for (const Node* child : root.children()) {
        if (document.devices().find(child->key()) != nullptr) continue;
        // The node of a device that was dragged away and back holds nothing to be lost.
        if (child->kind() == NodeKind::plc && child->children().empty()) continue;
        throw RunTimeError(ErrorNumber::invalidCall,
                           "\"" + child->text() + "\" stands below no device and cannot be saved");
    }
}

/// The whole file; nothing when a part of it could not be written.
std::optional<Lines> configurationText(const Document& document, const Tell& tell) {
    if (const Node* root = document.tree().root(); root != nullptr)
        requireDevicesOnly(document, *root);
    Lines lines(document.items().count());
    lines.add(0, {R"(<?xml version="1.0" encoding="ISO-8859-1"?>)"});
    lines.add(0, {"<QUONEibCfg>"});
    const GlobalSets& settings = document.settings();
    lines.add(1, {"<SETTINGS port=\"", settings.port, "\" editype=\"", settings.ediType,
                  "\" timeout=\"", std::to_string(settings.timeout), "\"/>"});
    lines.add(1, {"<OPC_DA>"});
    for (const auto& [key, device] : document.devices()) {
        lines.add(0, {device->GetXmlTag()});
        lines.add(3, {"<tags>"});
        ConfigTree records;
        const Node* node = document.tree().FindNode(device->getName());
        if (node == nullptr) {
            buildFromRecords(records, document, *device);
            node = records.root();
        }
        if (!PrintBranch(lines, document, *node, tell)) return std::nullopt;
        lines.add(3, {"</tags>"});
        lines.add(2, {"</DEVICE>"});
    }
    lines.add(1, {"</OPC_DA>"});
    lines.add(0, {"</QUONEibCfg>"});
    return lines;
}

}  // namespace

bool CreateXML(const std::string& path, const Document& document, Disk& disk, Desktop& desktop) {
    const BusyPointer busy(desktop);
    bool written = false;
    reportErrors(desktop, "CreateXML", [&] {
        const auto lines = configurationText(document, desktop);
        if (!lines) return;
        disk.replace(path, lines->bytes());
        written = true;
    });
    return written;
}
