#include "file/CreateXML.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/Reporting.h"
#include "base/RunTimeError.h"
#include "base/Text.h"
#include "model/FileFitness.h"
#include "model/Keys.h"

namespace {

/// The lines of a file in its own encoding, on their way there. They end with CR LF.
class Lines {
 public:
    void add(std::size_t level, std::initializer_list<std::string_view> pieces) {
        bytes_.append(Indent(level));
        for (const auto piece : pieces)
            appendLatin1(bytes_, piece);
        bytes_.append("\r\n");
    }

    void add(std::int16_t level, const clsItem& item) {
        item.GetXmlTag(level, bytes_);
        bytes_.append("\r\n");
    }

    /// So many that they are to be written before there are more: the memory that they take is
    /// used again.
    bool areMany() const { return bytes_.size() > std::size_t{256} * 1024; }

    void writeTo(const Write& write) {
        write(bytes_);
        bytes_.clear();
    }

 private:
    std::string bytes_;
};

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
    for (const Node* child : root.GetChildren())
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
            standsBesideBranch_ = !std::ranges::all_of(
                parent_->GetChildren(),
                [](const Node* child) { return child->kind() == NodeKind::item; });
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
        if (next_ == items_.end() || (*next_).key != node.key()) {
            return items_.at(node.key());
        }
        const clsItem* record = (*next_).record;
        ++next_;
        return *record;
    }

 private:
    const Registry<clsItem>& items_;
    Registry<clsItem>::Iterator next_;
};

/// What is made of a configuration on the way to its file.
struct Output {
    explicit Output(const Document& document) : records(document.items()) {}

    Lines lines;
    KeysWhenRead keys;
    ItemRecords records;
    std::size_t branches = 0;
    std::size_t items = 0;
};

/// The contents of one device, first child to last. No recursion, though a reader would not take
/// what lies too deep for that.
class Contents {
 public:
    Contents(Output& output, const Document& document, const Node& device)
        : output_(output), document_(document), device_(device), open_(&device), walk_(device) {}

    /// Goes on until there are many lines; false at the end.
    bool PrintBranch() {
        while (!output_.lines.areMany()) {
            const Node* node = walk_.next();
            if (node == nullptr) {
                closeUpTo(device_);
                return false;
            }
            isSaved(*node) ? print(*node) : walk_.skipChildren();
        }
        return true;
    }

 private:
    void print(const Node& node) {
        if (node.key().size() > mostKeyBytes) refuse(node, "has a path longer than 64 KB");
        output_.keys.add(node);
        closeUpTo(*node.parent());
        if (node.kind() == NodeKind::item) {
            const clsItem& item = output_.records.at(node);
            output_.lines.add(level_, item.sName == node.text() ? item : *document_.itemAt(node));
            ++output_.items;
        } else {
            if (walk_.depth() > mostBranchLevels) refuse(node, "lies more than 1,000 deep");
            output_.lines.add(static_cast<std::size_t>(level_++), {"<", node.text(), ">"});
            open_ = &node;
            if (node.kind() == NodeKind::branch) ++output_.branches;
        }
    }

    void closeUpTo(const Node& node) {
        for (; open_ != &node; open_ = open_->parent())
            output_.lines.add(static_cast<std::size_t>(--level_), {"</", open_->text(), ">"});
    }

    Output& output_;
    const Document& document_;
    const Node& device_;
    const Node* open_;  // the node whose contents are being written
    std::int16_t level_ = 4;
    TreeWalk walk_;
};

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

/// Ends the writing of a file. The user is told why once nothing of it is left.
struct GivenUp {
    void showMessage(const std::string& text) { message = text; }
    std::string message;
};

/// Writes the whole file. Raises GivenUp when a part of it could not be written, and an error that
/// names what could not be read back.
void writeConfiguration(const Document& document, const std::vector<const Node*>& devices,
                        const Write& write) {
    GivenUp failure;
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
        lines.add(0, {document.deviceAt(*device).GetXmlTag()});
        lines.add(3, {"<tags>"});
        Contents contents(output, document, *device);
        for (bool more = true; more;) {
            if (!reportErrors(failure, "PrintBranch", [&] { more = contents.PrintBranch(); })) {
                throw failure;
            }
            if (more) lines.writeTo(write);
        }
        lines.add(3, {"</tags>"});
        lines.add(2, {"</DEVICE>"});
    }
    lines.add(1, {"</OPC_DA>"});
    lines.add(0, {"</QUONEibCfg>"});
    output.keys.requireDistinct();
    requireAllWritten(document, output);
    lines.writeTo(write);
}

}  // namespace

bool CreateXML(const std::string& path, const Document& document, Disk& disk, Desktop& desktop) {
    const BusyPointer busy(desktop);
    bool written = false;
    reportErrors(desktop, "CreateXML", [&] {
        if (const Node* root = document.tree().root(); root != nullptr) requireDevicesOnly(*root);
        const std::vector<const Node*> devices = devicesOf(document);
        try {
            disk.replace(path,
                         [&](const Write& write) { writeConfiguration(document, devices, write); });
            written = true;
        } catch (const GivenUp& failure) {
            desktop.showMessage(failure.message);
        }
    });
    return written;
}
