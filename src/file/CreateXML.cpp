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
    const std::string_view name = isBelowRoot ? node.text() : node.key();
    throw RunTimeError(ErrorNumber::invalidCall, "\"" + std::string(name.substr(0, longestShown)) +
                                                     "\" " + reason + " and cannot be saved");
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
    /// All devices come first.
    void addDevice(const Node& device) {
        devices_.push_back(&device);
        add(device, device.key(), exact_);
        keyOf_.emplace(&device, device.key());
        anyPoint_ |= hasPoint(device);
    }

    /// Then what is below them, each after its parent.
    void add(const Node& node) {
        if (node.kind() == NodeKind::item) {
            if (mayMeetBranch(node)) items_.push_back(&node);
            return;
        }
        const SharedText key = joinKey(keyOf_.at(node.parent()), upperCase(node.text()));
        add(node, key, exact_);
        add(node, upperCase(key), branches_);
        keyOf_.emplace(&node, key);
        anyPoint_ |= hasPoint(node);
    }

    /// Raises an error that names what could not be read back.
    void requireDistinct() {
        // Items differ from one another as their records do; here, from all else that was added.
        // Only with a "." in some name one may meet what does not stand beside it.
        if (anyPoint_) {
            for (const Node* device : devices_)
                for (TreeWalk walk(*device); const Node* node = walk.next();)
                    if (node->kind() == NodeKind::item) items_.push_back(node);
        }
        for (const Node* item : items_) {
            const auto met = exact_.find(joinKey(keyOf_.at(item->parent()), item->text()));
            if (met != exact_.end()) meet(*met->second, *item);
        }
        if (one_ == nullptr) return;
        refuse(*one_,
               "has the name of \"" + other_->key() + "\" once it is read back, in capitals,");
    }

 private:
    using Nodes = std::unordered_map<SharedText, const Node*>;

    static bool hasPoint(const Node& node) {
        return std::string_view(node.text()).find('.') != std::string_view::npos;
    }

    bool mayMeetBranch(const Node& item) {
        if (parent_ != item.parent()) {
            parent_ = item.parent();
            standsBesideBranch_ = !std::ranges::all_of(parent_->children(), [](const Node* child) {
                return child->kind() == NodeKind::item;
            });
        }
        return standsBesideBranch_ || hasPoint(item);
    }

    void add(const Node& node, const SharedText& key, Nodes& nodes) {
        const auto [place, added] = nodes.emplace(key, &node);
        if (!added) meet(*place->second, node);
    }

    void meet(const Node& one, const Node& other) {
        if (one_ != nullptr) return;
        one_ = &one;
        other_ = &other;
    }

    std::vector<const Node*> devices_;
    Nodes exact_;     // of all but items
    Nodes branches_;  // of branches, whatever their case
    std::unordered_map<const Node*, SharedText> keyOf_;
    bool anyPoint_ = false;           // in the name of one of these
    std::vector<const Node*> items_;  // that may have the key of one of these
    // Of the item that was added last.
    const Node* parent_ = nullptr;
    bool standsBesideBranch_ = false;
    // The first two that have the same key.
    const Node* one_ = nullptr;
    const Node* other_ = nullptr;
};

/// The records of items in the order of their registry, which most often is that of the file.
class ItemRecords {
 public:
    explicit ItemRecords(const Registry<clsItem>& items) : items_(items), next_(items.begin()) {}

    const clsItem& at(const Node& node) {
        if (next_ == items_.end() || (*next_).key.begin() != node.key().begin()) {
            return *items_.at(node.key());
        }
        const auto& record = (*next_).record;
        ++next_;
        return *record;
    }

 private:
    const Registry<clsItem>& items_;
    Registry<clsItem>::Iterator next_;
};

/// What is made of a configuration on the way to its file.
struct Output {
    explicit Output(const Document& document)
        : lines(document.items().count()), records(document.items()) {}

    Lines lines;
    KeysWhenRead keys;
    ItemRecords records;
    std::size_t branches = 0;
    std::size_t items = 0;
};

/// The contents of one device, first child to last. No recursion, though a reader would not take
/// what lies too deep for that. False after telling the user.
bool PrintBranch(Output& output, const Document& document, const Node& device, const Tell& tell) {
    return reportErrors(tell, "PrintBranch", [&] {
        Lines& lines = output.lines;
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
            output.keys.add(*node);
            closeUpTo(node->parent());
            if (node->kind() == NodeKind::item) {
                const auto tagLevel = static_cast<std::int16_t>(level);
                const clsItem& item = output.records.at(*node);
                lines.add(
                    0, {item.sName == node->text() ? item.GetXmlTag(tagLevel)
                                                   : document.itemAt(*node)->GetXmlTag(tagLevel)});
                ++output.items;
            } else {
                if (walk.depth() > mostBranchLevels) refuse(*node, "lies more than 1,000 deep");
                lines.add(level++, {"<", node->text(), ">"});
                open = node;
                if (node->kind() == NodeKind::branch) ++output.branches;
            }
        }
        closeUpTo(&device);
    });
}

/// The net below all rules: every record stands in the file, or there is none.
void requireAllWritten(const Document& document, const Output& written) {
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

/// The whole file; nothing when a part of it could not be written. Raises an error that names what
/// could not be read back.
std::optional<Lines> configurationText(const Document& document, const Tell& tell) {
    if (const Node* root = document.tree().root(); root != nullptr) requireDevicesOnly(*root);
    const std::vector<const Node*> devices = devicesOf(document);
    Output output(document);
    for (const Node* device : devices)
        output.keys.addDevice(*device);
    Lines& lines = output.lines;
    lines.add(0, {R"(<?xml version="1.0" encoding="ISO-8859-1"?>)"});
    lines.add(0, {"<QUONEibCfg>"});
    const GlobalSets& settings = document.settings();
    lines.add(1, {"<SETTINGS port=\"", settings.port, "\" editype=\"", settings.ediType,
                  "\" timeout=\"", std::to_string(settings.timeout), "\"/>"});
    lines.add(1, {"<OPC_DA>"});
    for (const Node* device : devices) {
        lines.add(0, {document.deviceAt(*device)->GetXmlTag()});
        lines.add(3, {"<tags>"});
        if (!PrintBranch(output, document, *device, tell)) return std::nullopt;
        lines.add(3, {"</tags>"});
        lines.add(2, {"</DEVICE>"});
    }
    lines.add(1, {"</OPC_DA>"});
    lines.add(0, {"</QUONEibCfg>"});
    output.keys.requireDistinct();
    requireAllWritten(document, output);
    return std::move(lines);
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
