#include "model/Changes.h"

#include <type_traits>

namespace {

/// The memory of a text, including its header.
std::size_t bytesOf(const SharedText& text) { return text.size() + 32; }

/// The memory of a removed node and its record, without the longest texts. An estimate: an exact
/// number would need a look at each text.
constexpr std::size_t bytesOfNode = 350;

/// Calls the function for each entry: in reverse order when a change is undone (`back`).
template <typename Entries, typename Function>
void forEach(Entries& entries, bool back, const Function& function) {
    if (back) {
        for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry)
            function(*entry);
    } else {
        for (auto& entry : entries)
            function(entry);
    }
}

}  // namespace

void ReservedPlaces::compact(Contents& contents) {
    contents.tree.compact(tree);
    contents.detached.compact(detached);
    contents.devices.compact(std::move(devices));
    contents.branches.compact(std::move(branches));
    contents.items.compact(std::move(items));
}

PresenceChange::PresenceChange(Contents& contents, std::vector<Node*> nodes)
    : tops_(std::move(nodes)), removes_(true) {
    takeOut(contents);
}

bool PresenceChange::addOneMore(Node& added) {
    if (!removes_) tops_.push_back(&added);
    return !removes_;
}

void PresenceChange::toggle(Contents& contents, bool back) {
    if (back != removes_) return takeOut(contents);
    contents.tree.putBack(std::move(removed_));
    const auto putBack = [](auto& registry, auto& entries) {
        for (auto& entry : entries)
            registry.putBack(std::move(entry));
        entries = {};
    };
    putBack(contents.devices, devices_);
    putBack(contents.branches, branches_);
    putBack(contents.items, items_);
    textBytes_ = 0;
}

void PresenceChange::takeOut(Contents& contents) {
    for (const Node* top : tops_) {
        takeRecord(contents, *top);
        for (TreeWalk walk(*top); const Node* below = walk.next();)
            takeRecord(contents, *below);
    }
    removed_ = contents.tree.takeOut(tops_);
}

void PresenceChange::takeRecord(Contents& contents, const Node& node) {
    textBytes_ += node.key().size();
    switch (node.kind()) {
        case NodeKind::plc:
            if (node.isDevice()) devices_.push_back(contents.devices.take(node.key()));
            return;
        case NodeKind::branch: return branches_.push_back(contents.branches.take(node.key()));
        case NodeKind::item:
            items_.push_back(contents.items.take(node.key()));
            textBytes_ += items_.back().element.record->sComment.size();
            return;
        case NodeKind::config: return;
    }
}

std::size_t PresenceChange::bytes() const {
    const auto records = devices_.size() + branches_.size() + items_.size();
    return sizeof *this + tops_.size() * sizeof(void*) + records * bytesOfNode + textBytes_;
}

void PresenceChange::collect(ReservedPlaces& places) {
    places.tree.push_back(&removed_);
    const auto add = [](auto& entries, std::vector<std::uint32_t*>& to) {
        for (auto& entry : entries)
            to.push_back(&entry.place);
    };
    add(devices_, places.devices);
    add(branches_, places.branches);
    add(items_, places.items);
}

namespace {

template <typename Record>
constexpr bool hasKeyAndName = !std::is_same_v<Record, clsPLC>;

}  // namespace

/// Replaces the entry of the node's record by one with the new key, and sets the key of the node.
/// `other` replaces the record; null keeps it. Returns the record.
template <typename Record>
Record& RenameChange::replaceEntry(Contents& contents, Node& node, const SharedText& key,
                                   std::shared_ptr<Record> other) {
    auto& registry = contents.registry<Record>();
    auto taken = registry.take(node.key());
    Entry& entry = entries_.emplace_back();
    entry.node = &node;
    entry.key = node.key();
    entry.text = node.text();
    entry.place = taken.place;
    std::shared_ptr<Record> record = other == nullptr ? taken.element.record : std::move(other);
    entry.record = std::move(taken.element.record);
    Record& current = *record;
    if constexpr (hasKeyAndName<Record>) {
        entry.recordKey = std::exchange(current.sKey, key);
        entry.recordName = current.sName;
    }
    registry.add(std::move(record), key);
    contents.tree.setKey(node, key);
    return current;
}

void RenameChange::make(Contents& contents, Node& node, const SharedText& key) {
    if (node.kind() == NodeKind::item) {
        replaceEntry<clsItem>(contents, node, key);
    } else if (node.kind() == NodeKind::branch) {
        replaceEntry<clsBranch>(contents, node, key);
    } else {  // a dropped device has no record
        Entry& entry = entries_.emplace_back();
        entry.node = &node;
        entry.key = node.key();
        entry.text = node.text();
        contents.tree.setKey(node, key);
    }
}

void RenameChange::make(Contents& contents, Node& item, const SharedText& key,
                        const SharedText& name) {
    replaceEntry<clsItem>(contents, item, key).sName = name;
    setText(contents, item, name);
}

void RenameChange::make(Contents& contents, Node& node, std::shared_ptr<clsPLC> record) {
    const SharedText name = record->getName();
    replaceEntry(contents, node, name, std::move(record));
    setText(contents, node, name);
}

void RenameChange::make(Contents& contents, Node& node, std::shared_ptr<clsBranch> record) {
    const SharedText key = record->sKey;
    const SharedText name = replaceEntry(contents, node, key, std::move(record)).sName;
    setText(contents, node, name);
}

void RenameChange::setText(Contents& contents, Node& node, const SharedText& name) {
    contents.tree.setText(node, name);
    ++texts_;
}

void RenameChange::toggle(Contents& contents, bool back) {
    forEach(entries_, back, [&](Entry& entry) { toggleEntry(contents, entry); });
}

void RenameChange::toggleEntry(Contents& contents, Entry& entry) {
    if (entry.record == nullptr) {
        const SharedText key = entry.node->key();
        contents.tree.setKey(*entry.node, std::exchange(entry.key, key));
    } else if (entry.node->kind() == NodeKind::item) {
        toggleEntry<clsItem>(contents, entry);
    } else if (entry.node->kind() == NodeKind::branch) {
        toggleEntry<clsBranch>(contents, entry);
    } else {
        toggleEntry<clsPLC>(contents, entry);
    }
    // A device may have got another record with the same name.
    if (entry.node->kind() != NodeKind::plc && entry.text == entry.node->text()) return;
    const SharedText text = entry.node->text();
    contents.tree.setText(*entry.node, std::exchange(entry.text, text));
}

template <typename Record>
void RenameChange::toggleEntry(Contents& contents, Entry& entry) {
    auto& registry = contents.registry<Record>();
    auto now = registry.take(entry.node->key());
    if constexpr (hasKeyAndName<Record>) {
        Record& record = *now.element.record;
        if (&record == entry.record.get()) {
            std::swap(record.sKey, entry.recordKey);
            std::swap(record.sName, entry.recordName);
        }
    }
    contents.tree.setKey(*entry.node, entry.key);
    registry.putBack(
        {{std::move(entry.key), std::static_pointer_cast<Record>(entry.record)}, entry.place});
    entry.key = std::move(now.element.key);
    entry.record = std::move(now.element.record);
    entry.place = now.place;
}

std::size_t RenameChange::bytes() const {
    std::size_t bytes = sizeof *this;
    for (const Entry& entry : entries_)
        bytes += sizeof entry + bytesOf(entry.key);
    return bytes;
}

void RenameChange::collect(ReservedPlaces& places) {
    for (Entry& entry : entries_) {
        if (entry.record == nullptr) continue;
        switch (entry.node->kind()) {
            case NodeKind::plc: places.devices.push_back(&entry.place); break;
            case NodeKind::branch: places.branches.push_back(&entry.place); break;
            case NodeKind::item: places.items.push_back(&entry.place); break;
            case NodeKind::config: break;
        }
    }
}

void RecordTextChange::make(SharedText& text, SharedText now) {
    others_.emplace_back(&text, std::exchange(text, std::move(now)));
}

void RecordTextChange::toggle(Contents& contents, bool back) {
    contents.tree.recordsChanged();
    forEach(others_, back, [](auto& other) { std::swap(*other.first, other.second); });
}

std::size_t RecordTextChange::bytes() const {
    std::size_t bytes = sizeof *this;
    for (const auto& [text, other] : others_)
        bytes += sizeof(void*) + bytesOf(other);
    return bytes;
}

ItemChange::ItemChange(clsItem& item, const clsItem& now)
    : item_(&item), other_(std::make_unique<clsItem>(now)) {
    std::swap(*item_, *other_);
}

void ItemChange::toggle(Contents& contents, bool /*back*/) {
    std::swap(*item_, *other_);
    contents.tree.recordsChanged();
}

std::size_t ItemChange::bytes() const { return sizeof *this + bytesOfNode; }

void OrderChange::toggle(Contents& contents, bool /*back*/) {
    contents.tree.swapChildren(*node_, other_);
}

std::size_t OrderChange::bytes() const { return sizeof *this + other_.size() * sizeof(void*); }

DetachChange::DetachChange(Contents& contents, Node& device) : device_(&device) {
    toggle(contents, false);
}

void DetachChange::toggle(Contents& contents, bool /*back*/) {
    ConfigTree& from = isDetached_ ? contents.detached : contents.tree;
    ConfigTree& to = isDetached_ ? contents.tree : contents.detached;
    from.moveTo(to, *device_, formerPlaces_);
    isDetached_ = !isDetached_;
}

std::size_t DetachChange::bytes() const { return sizeof *this + formerPlaces_.nodeCount() * 16; }

void DetachChange::collect(ReservedPlaces& places) {
    (isDetached_ ? places.tree : places.detached).push_back(&formerPlaces_);
}

void RedirectChange::make(Contents& contents, Node& from, Node& to) {
    nodes_.emplace_back(&from, &to);
    contents.tree.redirect(from, to);
}

void RedirectChange::toggle(Contents& contents, bool back) {
    for (const auto& [from, to] : nodes_)
        back ? contents.tree.redirect(*to, *from) : contents.tree.redirect(*from, *to);
}

std::size_t RedirectChange::bytes() const {
    return sizeof *this + nodes_.size() * sizeof(nodes_.front());
}

void SettingsChange::toggle(Contents& contents, bool /*back*/) {
    std::swap(contents.settings, other_);
    contents.tree.recordsChanged();  // the root shows the warnings about the settings
}

std::size_t SettingsChange::bytes() const { return sizeof *this; }
