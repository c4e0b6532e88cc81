#include "file/CreateXML.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "model/FileFitness.h"
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

[[noreturn]] void refuse(const Node& node, const std::string& reason) {
    const bool isBelowRoot = node.parent()->parent() == nullptr;
    constexpr std::size_t longestShown = 100;  // a key may be as long as it likes
    const std::string name = (isBelowRoot ? node.text() : node.key()).substr(0, longestShown);
    throw RunTimeError(ErrorNumber::invalidCall,
                       "\"" + name + "\" " + reason + " and cannot be saved");
}

/// What the file holds of one kind each.
struct Counts {
    std::size_t branches = 0;
    std::size_t items = 0;
};

/// The contents of one device, first child to last. No recursion, though a reader would not take
/// what lies too deep for that. False after telling the user.
bool PrintBranch(Lines& lines, Counts& written, const Document& document, const Node& device,
                 const Tell& tell) {
    return reportErrors(tell, "PrintBranch", [&] {
        const Node* open = &device;  // the node whose contents are being written
        std::size_t level = deviceContentsLevel;
        const auto closeUpTo = [&](const Node* node) {
            for (; open != node; open = open->parent())
                lines.add(--level, {"</", open->text(), ">"});
        };
        for (TreeWalk walk(device); const Node* node = walk.next();) {
            if (!isSaved(*node)) {
                walk.skipChildren();
                continue;
            }
            if (node->key().size() > mostKeyBytes) refuse(*node, "has a path longer than 64 KB");
            closeUpTo(node->parent());
            if (node->kind() == NodeKind::item) {
                const auto tagLevel = static_cast<std::int16_t>(level);
                const clsItem& item = *document.items().at(node->key());
                lines.add(
                    0, {item.sName == node->text() ? item.GetXmlTag(tagLevel)
                                                   : document.itemAt(*node)->GetXmlTag(tagLevel)});
                ++written.items;
            } else {
                if (walk.depth() > mostBranchLevels) refuse(*node, "lies more than 1,000 deep");
                lines.add(level++, {"<", node->text(), ">"});
                open = node;
                if (node->kind() == NodeKind::branch) ++written.branches;
            }
        }
        closeUpTo(&device);
    });
}

/// The file has a place for what stands below a device only. What was dragged to the root must
/// not be left out without a word.
void requireDevicesOnly(const Node& root) {
    for (const Node* child : root.children())
        if (isSaved(*child) && !child->isDevice()) refuse(*child, "stands below no device");
}

/// Names of branches are read back in capitals, and where a device was dropped, a branch. What
/// then has the key of another thing would be lost to the reader.
class KeysWhenRead {
 public:
    void addDevice(const Node& device) {
        add(device, device.key(), exact_);
        anyPoint_ |= hasPoint(device);
    }

    /// All below a device, once all devices have been added.
    void addContents(const Node& device) {
        std::vector<std::string> keys{device.key()};  // of the present node's parents
        for (TreeWalk walk(device); const Node* node = walk.next();) {
            if (node->kind() == NodeKind::item) continue;
            if (!isSaved(*node)) {
                walk.skipChildren();
                continue;
            }
            keys.resize(walk.depth());
            keys.push_back(joinKey(keys.back(), upperCase(node->text())));
            add(*node, keys.back(), exact_);
            add(*node, upperCase(keys.back()), branches_);
            keyOf_.emplace(node, keys.back());
            anyPoint_ |= hasPoint(*node);
        }
        keyOf_.emplace(&device, device.key());
    }

    /// Items differ from one another as their records do; here, from all else that was added.
    void checkItems(const Node& device) const {
        const Node* parent = nullptr;
        bool mayMeetBranch = false;
        for (TreeWalk walk(device); const Node* node = walk.next();) {
            if (node->kind() != NodeKind::item) continue;
            if (parent != node->parent()) {
                parent = node->parent();
                mayMeetBranch = !std::ranges::all_of(parent->children(), [](const Node* child) {
                    return child->kind() == NodeKind::item;
                });
            }
            // Only with a "." in some name it may meet what does not stand beside it.
            if (!mayMeetBranch && !anyPoint_ && !hasPoint(*node)) continue;
            const auto met = exact_.find(joinKey(keyOf_.at(parent), node->text()));
            if (met != exact_.end()) refuseBoth(*met->second, *node);
        }
    }

 private:
    using Nodes = std::unordered_map<std::string, const Node*>;

    static bool hasPoint(const Node& node) { return node.text().find('.') != std::string::npos; }

    static void add(const Node& node, const std::string& key, Nodes& nodes) {
        const auto [place, added] = nodes.emplace(key, &node);
        if (!added) refuseBoth(*place->second, node);
    }

    [[noreturn]] static void refuseBoth(const Node& one, const Node& other) {
        refuse(one, "has the name of \"" + other.key() + "\" once it is read back, in capitals,");
    }

    Nodes exact_;     // of all but items
    Nodes branches_;  // of branches, whatever their case
    std::unordered_map<const Node*, std::string> keyOf_;
    bool anyPoint_ = false;  // in a name
};

/// Raises an error that names what could not be read back.
void requireDistinctWhenRead(const std::vector<const Node*>& devices) {
    KeysWhenRead keys;
    for (const Node* device : devices)
        keys.addDevice(*device);
    for (const Node* device : devices)
        keys.addContents(*device);
    for (const Node* device : devices)
        keys.checkItems(*device);
}

/// The net below all rules: every record stands in the file, or there is none.
void requireAllWritten(const Document& document, const Counts& written) {
    const auto require = [&](const auto& registry, std::size_t count) {
        if (registry.count() == count) return;
        for (const auto& [key, record] : registry) {
            if (document.hasNode(key)) continue;
            throw RunTimeError(ErrorNumber::internalError,
                               "\"" + key + "\" would be left out of the file");
        }
        throw RunTimeError(ErrorNumber::internalError,
                           std::to_string(registry.count()) + " records, but " +
                               std::to_string(count) + " of them in the file");
    };
    require(document.branches(), written.branches);
    require(document.items(), written.items);
}

/// The nodes of all devices, in the order of their registry.
std::vector<const Node*> devicesOf(const Document& document) {
    std::vector<const Node*> nodes;
    for (const auto& [key, device] : document.devices()) {
        nodes.push_back(document.deviceNode(device->getName()));
        if (nodes.back() == nullptr) {
            throw RunTimeError(ErrorNumber::internalError,
                               "\"" + key + "\" would be left out of the file");
        }
    }
    return nodes;
}

/// The whole file; nothing when a part of it could not be written.
std::optional<Lines> configurationText(const Document& document, const Tell& tell) {
    if (const Node* root = document.tree().root(); root != nullptr) requireDevicesOnly(*root);
    const std::vector<const Node*> devices = devicesOf(document);
    requireDistinctWhenRead(devices);
    Lines lines(document.items().count());
    Counts written;
    lines.add(0, {R"(<?xml version="1.0" encoding="ISO-8859-1"?>)"});
    lines.add(0, {"<QUONEibCfg>"});
    const GlobalSets& settings = document.settings();
    lines.add(1, {"<SETTINGS port=\"", settings.port, "\" editype=\"", settings.ediType,
                  "\" timeout=\"", std::to_string(settings.timeout), "\"/>"});
    lines.add(1, {"<OPC_DA>"});
    for (const Node* device : devices) {
        lines.add(0, {document.deviceAt(*device)->GetXmlTag()});
        lines.add(3, {"<tags>"});
        if (!PrintBranch(lines, written, document, *device, tell)) return std::nullopt;
        lines.add(3, {"</tags>"});
        lines.add(2, {"</DEVICE>"});
    }
    lines.add(1, {"</OPC_DA>"});
    lines.add(0, {"</QUONEibCfg>"});
    requireAllWritten(document, written);
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
