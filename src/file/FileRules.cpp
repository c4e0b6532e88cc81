#include "file/FileRules.h"

#include <array>
#include <span>
#include <string_view>
#include <utility>

namespace {

/// Calls `use` for each text of an item except its name, with its description, the text and its
/// place in the file.
template <typename Use>
void forEachText(const clsItem& item, const Use& use) {
    use("Comment", item.sComment, FilePlace::content);
    use("Address", item.sAddress, FilePlace::content);
    use("Datatype", item.sDataType, FilePlace::content);
    use("Access right", item.sAccessRight, FilePlace::content);
}

/// Calls `use` for each record. Records and texts are spread over the memory, so they are
/// prefetched in batches, which takes a third less time.
template <typename Use>
void forEachRecord(const Registry<clsItem>& items, const Use& use) {
    std::array<const clsItem*, 16> batch{};
    std::size_t size = 0;
    const auto useBatch = [&] {
        const auto used = std::span(batch).first(std::exchange(size, 0));
        for (const clsItem* item : used)
            forEachText(*item, [](auto, const SharedText& text, auto) { text.prefetch(); });
        for (const clsItem* item : used)
            use(*item);
    };
    for (const auto& [key, item] : items) {
        __builtin_prefetch(item);
        batch[size++] = item;
        if (size == batch.size()) useBatch();
    }
    useBatch();
}

/// Calls `use` in the same way for each text of a node. The description of its name is "".
template <typename Use>
void forEachText(const Document& document, const Node& node, const Use& use) {
    if (node.kind() == NodeKind::config) {
        use("Global Settings, port", document.settings().port, FilePlace::attribute);
        use("Global Settings, EDI type", document.settings().ediType, FilePlace::attribute);
    } else if (node.isDevice()) {
        use("", node.text(), FilePlace::attribute);
        const auto device = document.devices().find(node.key());
        if (device == nullptr) return;
        use("Port", device->getPort(), FilePlace::attribute);
        use("EDI type", device->getEdiType(), FilePlace::attribute);
    } else if (node.kind() == NodeKind::item) {
        use("", node.text(), FilePlace::content);
        if (const auto item = document.items().find(node.key())) forEachText(*item, use);
    } else {
        use("", node.text(), FilePlace::elementName);
    }
}

Fault faultOfName(const Node& node, const FileSurvey& survey) {
    const auto found = survey.unsaved.find(&node);
    if (found != survey.unsaved.end()) {
        return {FaultKind::unsaved,
                "It " + found->second.text() + ": the configuration cannot be saved"};
    }
    return isSaved(node) ? faultOf(node.text(), filePlaceOfName(node)) : Fault{};
}

/// The device that contains a node, or the node itself if it is a device.
const Node* deviceAbove(const Node& node) {
    const Node* above = &node;
    while (above->parent() != nullptr && above->parent()->parent() != nullptr)
        above = above->parent();
    return above;
}

}  // namespace

const FileSurvey& FileRules::survey() const {
    const ConfigTree& tree = document_.tree();
    const ConfigTree& detached = document_.detached();
    // Of records, the survey uses only those in detached subtrees.
    const bool isAnyDetached = detached.nodes().size() > 1;  // the root is always there
    // A view may ask in the middle of a change, when a node has gone and its record has not.
    const State now{.tree = tree.changes(),
                    .detached = detached.changes(),
                    .records = isAnyDetached ? tree.recordChanges() : 0,
                    .devices = document_.devices().count(),
                    .branches = document_.branches().count(),
                    .items = document_.items().count()};
    if (surveyed_ == now) return survey_;
    survey_ = surveyOf(document_);
    detachedFaults_.clear();
    for (const auto& [key, device] : document_.devices()) {
        const Node* node = document_.deviceNode(device->getName());
        if (node != nullptr && tree.FindNode(node->key()) != node) findFaultsInDetached(*node);
    }
    surveyed_ = now;
    return survey_;
}

void FileRules::findFaultsInDetached(const Node& device) const {
    Fault worst;
    const auto take = [&](const Node& node) {
        Fault fault = faultByLastSurvey(node);
        if (fault.kind <= worst.kind) return;
        worst = {fault.kind, "Out of sight, in \"" + pathForMessage(node) + "\": " + fault.text};
    };
    take(device);
    for (TreeWalk walk(device); const Node* node = walk.next();)
        take(*node);
    if (worst.kind != FaultKind::none) detachedFaults_.emplace(device.text(), std::move(worst));
}

/// The same as faultOf(node), without a new survey.
Fault FileRules::faultByLastSurvey(const Node& node) const {
    Fault worst = faultOfName(node, survey_);
    const auto take = [&](const Fault& fault) {
        if (fault.kind > worst.kind) worst = fault;
    };
    if (node.kind() == NodeKind::config) {
        for (const auto& [device, fault] : detachedFaults_)
            take(fault);
    } else if (node.isDroppedDevice()) {
        const auto found = detachedFaults_.find(node.text());
        if (found != detachedFaults_.end()) take(found->second);
    }
    forEachText(document_, node, [&](const char* what, std::string_view text, FilePlace place) {
        if (*what == '\0') return;  // the name is done
        Fault fault = ::faultOf(text, place);
        fault.text.insert(0, std::string(what) + ": ");
        take(fault);
    });
    return worst;
}

Fault FileRules::faultOf(const Node& node) const {
    survey();
    return faultByLastSurvey(node);
}

Fault FileRules::faultOf(const ListView::Row& row, std::size_t column) const {
    const bool isName = column == ListView::nameColumn;
    const Node* node = isName ? document_.tree().FindNode(row.key) : nullptr;
    // The list may be out of date.
    const bool isOfRow = node != nullptr && node->kind() == row.kind && node->text() == row.text();
    if (isOfRow) return faultOfName(*node, survey());
    return ::faultOf(row.cell(column), filePlaceOf(row.kind));
}

/// The node that shows the sign of a node: for one in a detached subtree, the bare node of the
/// dropped device, or else the root.
const Node* FileRules::shownFor(const Node& node) const {
    const ConfigTree& tree = document_.tree();
    if (tree.FindNode(node.key()) == &node) return &node;
    const SharedText& device = deviceAbove(node)->text();
    for (const auto& each : tree.nodes())
        if (each->isDroppedDevice() && each->text() == device) return each.get();
    return tree.root();
}

std::optional<FileRules::Refusal> FileRules::refusal() const {
    const FileSurvey& survey = this->survey();
    if (survey.first != nullptr) {
        const Node& node = *survey.first;
        const std::string what = "\"" + pathForMessage(node) + "\" " +
                                 survey.unsaved.at(&node).text() + " and cannot be saved";
        return Refusal{RunTimeError(ErrorNumber::invalidCall, what), shownFor(node)};
    }
    if (survey.missingRecord) return Refusal{*survey.missingRecord, document_.tree().root()};
    return std::nullopt;
}

bool FileRules::isAnyUnreadable() const {
    if (survey().isAnyNameUnreadable) return true;
    bool isAny = false;
    const auto look = [&](const char* what, std::string_view text, FilePlace place) {
        isAny |= *what != '\0' && isUnreadable(text, place);  // the survey has looked at the names
    };
    if (const Node* root = document_.tree().root(); root != nullptr) {
        forEachText(document_, *root, look);
    }
    for (const auto& [key, device] : document_.devices())
        if (const Node* node = document_.deviceNode(device->getName()); node != nullptr) {
            forEachText(document_, *node, look);
        }
    // In the order of the registry, which is faster than a walk over the tree.
    forEachRecord(document_.items(), [&](const clsItem& item) { forEachText(item, look); });
    return isAny;
}

FileRules::Unreadable FileRules::unreadable() const {
    Unreadable found;
    if (!isAnyUnreadable()) return found;
    const Node* first = nullptr;
    const auto look = [&](const Node& node) {
        forEachText(document_, node,
                    [&](const char* /*what*/, std::string_view text, FilePlace place) {
                        if (!isUnreadable(text, place)) return;
                        if (found.count++ == 0) first = &node;
                    });
    };
    if (const Node* root = document_.tree().root(); root != nullptr) look(*root);
    for (const auto& [key, device] : document_.devices()) {
        const Node* node = document_.deviceNode(device->getName());
        if (node == nullptr) continue;
        look(*node);
        for (TreeWalk walk(*node); const Node* below = walk.next();)
            isSaved(*below) ? look(*below) : walk.skipChildren();
    }
    if (first == nullptr) return found;
    found.firstPath = pathForMessage(*first);
    found.shown = shownFor(*first);
    return found;
}
