#include "file/FileRules.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <unordered_set>
#include <utility>
#include <vector>

#include "base/KeyedSet.h"
#include "base/Text.h"
#include "model/Keys.h"

namespace {

const std::string unreadable = "the OPC server cannot read a file that holds this";

/// What is to be seen of a text at a glance.
struct Glance {
    bool mayBeGrave;  ///< it holds a control character or one of < > & "
    bool isAscii;
    bool hasPoint;

    bool isReadAsItStands() const { return !mayBeGrave && isAscii; }
};

Glance glanceAt(std::string_view text) {
    const auto every = [](std::uint64_t byte) { return byte * 0x0101010101010101U; };
    const auto zeroBytes = [&](std::uint64_t word) { return (word - every(1)) & ~word; };
    std::uint64_t grave = 0;
    std::uint64_t all = 0;
    std::uint64_t point = 0;
    const auto look = [&](std::uint64_t word) {
        all |= word;
        grave |= (word - every(0x20)) & ~word;               // below the blank
        grave |= zeroBytes((word | every(2)) ^ every('>'));  // < and >
        grave |= zeroBytes((word | every(4)) ^ every('&'));  // " and &
        point |= zeroBytes(word ^ every('.'));
    };
    const auto take = [&]<typename Word>(std::size_t at, Word word) {
        std::memcpy(&word, text.data() + at, sizeof word);
        return word;
    };
    // Eight bytes at a time. The last bytes are taken twice where fewer are left.
    const std::size_t size = text.size();
    if (size >= 8) {
        for (std::size_t i = 0; i + 8 < size; i += 8)
            look(take(i, std::uint64_t{}));
        look(take(size - 8, std::uint64_t{}));
    } else if (size >= 4) {
        look(std::uint64_t{take(0, std::uint32_t{})} << 32U | take(size - 4, std::uint32_t{}));
    } else {
        std::uint64_t word = every(' ');
        for (const char c : text)
            word = word << 8U | static_cast<unsigned char>(c);
        look(word);
    }
    const auto isAny = [&](std::uint64_t bytes) { return (bytes & every(0x80)) != 0; };
    return {isAny(grave), !isAny(all), isAny(point)};
}

bool isOneOf(char32_t c, std::u32string_view characters) {
    return characters.find(c) != std::u32string_view::npos;
}

bool isBetween(char32_t c, char32_t first, char32_t last) { return c >= first && c <= last; }

/// Of the characters that ISO-8859-1 has: any other becomes "?", which no name can hold. A colon
/// is not among them: before it stands a prefix that the file would have to declare.
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

Fault faultOfElementName(std::string_view name) {
    if (name.empty()) {
        return {FaultKind::unreadable, "A branch without a name: " + unreadable};
    }
    std::string colon;
    for (std::size_t end = 0; end < name.size();) {
        const std::size_t start = end;
        const char32_t c = nextCharacter(name, end);
        if (start == 0 ? canBeginName(c) : canStandInName(c)) continue;
        const std::string what = shown(c, name.substr(start, end - start)) +
                                 (canStandInName(c) ? " at the start of" : " in") +
                                 " a branch name: ";
        if (c != ':') return {FaultKind::unreadable, what + unreadable};
        if (colon.empty()) colon = what;
    }
    if (!colon.empty()) {
        return {FaultKind::unreadable,
                colon + "readers that know namespaces cannot read a file that holds this"};
    }
    // The file's own elements: an item, and the contents of a device.
    const std::string asBranch = "'" + std::string(name) + "' as a branch name: ";
    if (equalIgnoringCase(name, "tag")) {
        return {FaultKind::unreadable, asBranch + "read back as an item, without what it holds"};
    }
    if (equalIgnoringCase(name, "tags")) {
        return {FaultKind::changed,
                asBranch + "read back here, but another reader may take it for something else"};
    }
    return {};
}

/// What comes of a character of a text that is no name.
std::pair<FaultKind, std::string_view> consequence(char32_t c, FilePlace place) {
    const bool isLineEndOrTab = isOneOf(c, U"\t\n\r");
    const bool isInAttribute = place == FilePlace::attribute;
    if ((c < 0x20 && !isLineEndOrTab) || c == '<' || c == '&' || (isInAttribute && c == '"')) {
        return {FaultKind::unreadable, unreadable};
    }
    if (c > 0xFF) return {FaultKind::changed, "saved as \"?\""};
    if (isInAttribute && isLineEndOrTab) return {FaultKind::changed, "read back as a blank"};
    if (c == '\r') return {FaultKind::changed, "read back as a line feed"};
    return {};
}

Fault faultOfText(std::string_view text, FilePlace place) {
    if (glanceAt(text).isReadAsItStands()) return {};
    if (place == FilePlace::content && text.find("]]>") != std::string_view::npos) {
        return {FaultKind::unreadable, "']]>': " + unreadable};
    }
    Fault gravest;
    for (std::size_t end = 0; end < text.size();) {
        const std::size_t start = end;
        const char32_t c = nextCharacter(text, end);
        const auto [kind, what] = consequence(c, place);
        if (kind <= gravest.kind) continue;
        gravest = {kind, shown(c, text.substr(start, end - start)) + ": " + std::string(what)};
        if (kind == FaultKind::unreadable) break;
    }
    return gravest;
}

bool isUnreadable(std::string_view text, FilePlace place) {
    if (place != FilePlace::elementName && !glanceAt(text).mayBeGrave) return false;
    return faultOf(text, place).kind == FaultKind::unreadable;
}

/// Calls `use` with each text that the file holds of an item but the name: what it is, the text and
/// its place.
template <typename Use>
void forEachText(const clsItem& item, const Use& use) {
    use("Comment", item.sComment, FilePlace::content);
    use("Address", item.sAddress, FilePlace::content);
    use("Datatype", item.sDataType, FilePlace::content);
    use("Access right", item.sAccessRight, FilePlace::content);
}

/// Calls `use` with each record. Records and texts lie all over the memory: they are loaded a batch
/// at a time, which takes a third less time than to wait for each.
template <typename Use>
void forEachRecord(const Registry<clsItem>& items, const Use& use) {
    std::array<const clsItem*, 16> batch{};
    std::size_t size = 0;
    const auto useBatch = [&] {
        for (std::size_t i = 0; i < size; ++i)
            forEachText(*batch[i], [](auto, const SharedText& text, auto) { text.prefetch(); });
        for (std::size_t i = 0; i < size; ++i)
            use(*batch[i]);
        size = 0;
    };
    for (const auto& [key, item] : items) {
        __builtin_prefetch(item);
        batch[size++] = item;
        if (size == batch.size()) useBatch();
    }
    useBatch();
}

/// The same for any node, with the name, which is called "".
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

/// Where the file holds what is shown of a node of that kind.
FilePlace filePlaceOf(NodeKind kind) {
    switch (kind) {
        case NodeKind::config: return FilePlace::nowhere;
        case NodeKind::plc: return FilePlace::attribute;
        case NodeKind::branch: return FilePlace::elementName;
        case NodeKind::item: return FilePlace::content;
    }
    return FilePlace::nowhere;
}

FilePlace placeOfName(const Node& node) {
    if (node.isDroppedDevice()) return FilePlace::elementName;
    return filePlaceOf(node.kind());
}

/// Where a node is, for a person to read.
std::string pathOf(const Node& node) {
    if (node.parent() == nullptr) return "Global Settings";
    const bool isBelowRoot = node.parent()->parent() == nullptr;
    return shortened(isBelowRoot ? node.text() : node.key());
}

/// The key that a node has when it is read back.
SharedText keyAsRead(const Node& node) {
    std::vector<const Node*> path;
    for (const Node* each = &node; each->parent() != nullptr; each = each->parent())
        path.push_back(each);
    SharedText key = asRead(path.back()->text(), placeOfName(*path.back()));
    for (auto each = path.rbegin() + 1; each != path.rend(); ++each)
        key = joinKey(key, asRead((*each)->text(), placeOfName(**each)));
    return key;
}

/// What keeps a node from being saved: "stands below no device".
std::string textOf(const char* reason, const Node* namesake) {
    if (namesake == nullptr) return reason;
    return "has the name of \"" + pathOf(*namesake) + "\" once it is read back";
}

const Node* deviceAbove(const Node& node) {
    const Node* above = &node;
    while (above->parent() != nullptr && above->parent()->parent() != nullptr)
        above = above->parent();
    return above;
}

/// Nodes that have been read, by their keys then, whatever the case.
struct Met {
    static bool isEmpty(const Met& met) { return met.node == nullptr; }
    static const SharedText& keyOf(const Met& met) { return met.key; }
    static bool equal(std::string_view a, std::string_view b) { return equalIgnoringCase(a, b); }

    SharedText key;
    const Node* node = nullptr;
};

}  // namespace

Fault faultOf(std::string_view text, FilePlace place) {
    if (place == FilePlace::nowhere) return {};
    return place == FilePlace::elementName ? faultOfElementName(text) : faultOfText(text, place);
}

std::string asRead(std::string_view text, FilePlace place) {
    std::string read;
    read.reserve(text.size());
    for (std::size_t end = 0; end < text.size();) {
        const std::size_t start = end;
        const char32_t c = nextCharacter(text, end);
        const bool isLineEnd = c == '\r' || c == '\n';
        if (c == '\r' && end < text.size() && text[end] == '\n') ++end;
        if (c > 0xFF) {
            read += '?';
        } else if (place == FilePlace::attribute && (isLineEnd || c == '\t')) {
            read += ' ';
        } else if (isLineEnd) {
            read += '\n';
        } else {
            read.append(text.substr(start, end - start));
        }
    }
    return place == FilePlace::elementName ? upperCase(read) : read;
}

bool isSaved(const Node& node) {
    if (!node.isDroppedDevice()) return node.kind() != NodeKind::config;
    for (TreeWalk walk(node); const Node* below = walk.next();)
        if (below->kind() != NodeKind::plc) return true;
    return false;
}

/// Walks what will be saved as a reader will, with the keys that the nodes will have then. A reader
/// takes no device, branch or item whose key another of its kind has, whatever the case, nor one
/// whose very key any node has.
class FileRules::Surveyor {
 public:
    explicit Surveyor(const FileRules& rules) : rules_(rules), document_(rules.document_) {}

    Survey survey() {
        if (const Node* root = document_.tree().root(); root != nullptr) {
            for (const Node* child : root->GetChildren())
                if (isSaved(*child) && !child->isDevice()) refuse(*child, "stands below no device");
        }
        std::vector<const Node*> devices;
        for (const auto& [key, device] : document_.devices()) {
            const Node* node = document_.deviceNode(device->getName());
            node == nullptr ? leaveOut(key) : devices.push_back(node);
        }
        for (const Node* device : devices)
            walk(*device);
        meetItems(devices);
        if (found_.unsaved.empty()) requireAll();
        for (const Node* device : devices)
            if (document_.tree().FindNode(device->key()) != device) lookInto(*device);
        return std::move(found_);
    }

 private:
    using Set = KeyedSet<Met, Met>;

    /// A device or a branch that is being walked.
    struct Place {
        SharedText key;             ///< when read back
        bool isAsItStands = false;  ///< but for letter case, that is the key of the node
        std::size_t keyLength = 0;  ///< of the node
    };

    void walk(const Node& device) {
        std::vector<Place> path;
        const auto enter = [&](const Node& node, SharedText key, FilePlace place, Set& ofItsKind) {
            meet(node, key, ofItsKind);
            if (::faultOf(node.text(), place).kind == FaultKind::unreadable) {
                found_.isAnyNameUnreadable = true;
            }
            hasPoint_ |= glanceAt(node.text()).hasPoint;
            const bool isAsItStands = equalIgnoringCase(key, node.key());
            path.push_back({std::move(key), isAsItStands, node.key().size()});
            return meetItemsIn(node, path.back());
        };
        enter(device, asRead(device.text(), FilePlace::attribute), FilePlace::attribute, devices_);
        for (TreeWalk walk(device); const Node* node = walk.next();) {
            if (node->kind() == NodeKind::item) continue;
            if (!isSaved(*node)) {
                walk.skipChildren();
                continue;
            }
            path.resize(walk.depth());
            if (node->kind() == NodeKind::branch) ++branchCount_;
            if (walk.depth() > mostBranchLevels) refuse(*node, "lies more than 1,000 deep");
            const std::string name = asRead(node->text(), FilePlace::elementName);
            SharedText key = joinKey(path.back().key, name);
            if (enter(*node, std::move(key), FilePlace::elementName, branches_)) {
                walk.skipChildren();
            }
        }
    }

    /// True when the node holds nothing else.
    bool meetItemsIn(const Node& node, const Place& place) {
        const auto isItem = [](const Node* child) { return child->kind() == NodeKind::item; };
        const auto& children = node.GetChildren();
        const bool areAllItems = std::ranges::all_of(children, isItem);
        for (const Node* child : children)
            if (isItem(child)) meetItem(*child, place, areAllItems);
        return areAllItems;
    }

    void meetItem(const Node& item, const Place& place, bool hasNoBranchBeside) {
        ++itemCount_;
        // Of most items this is all that is looked at.
        const std::string_view name = item.text();
        const Glance glance = glanceAt(name);
        if (place.isAsItStands && (glance.isReadAsItStands() ||
                                   ::faultOf(name, FilePlace::content).kind == FaultKind::none)) {
            // Of such items no two have one key, as their records do not.
            countKey(item, place.keyLength + 1 + name.size());
            if (glance.hasPoint || !hasNoBranchBeside) toMeet_.push_back(&item);
            return;
        }
        if (isUnreadable(name, FilePlace::content)) found_.isAnyNameUnreadable = true;
        changedItems_.insert(&item);
        meet(item, joinKey(place.key, asRead(name, FilePlace::content)), items_);
    }

    /// The items that are read as they stand, with what has been met. Without a "." in the name of
    /// any device or branch, only what stands beside a branch can have its key.
    void meetItems(const std::vector<const Node*>& devices) {
        if (hasPoint_ || !changedItems_.empty()) {
            toMeet_.clear();
            for (const Node* device : devices)
                for (TreeWalk walk(*device); const Node* node = walk.next();)
                    if (node->kind() == NodeKind::item && !changedItems_.contains(node)) {
                        toMeet_.push_back(node);
                    }
        }
        for (const Node* item : toMeet_)
            meetOthers(*item, item->key(), items_);
    }

    void countKey(const Node& node, std::size_t length) {
        if (length > mostKeyBytes) refuse(node, "has a path longer than 64 KB");
        const bool wasWithin = keyBytes_ <= mostBytesOfAllKeys;
        keyBytes_ += length;
        if (wasWithin && keyBytes_ > mostBytesOfAllKeys) {
            refuse(node, "and all before it have paths longer than 128 MB together");
        }
    }

    /// The key may differ in case from the one that is read. It is as long.
    void meet(const Node& node, const SharedText& key, Set& ofItsKind) {
        countKey(node, key.size());
        meetOthers(node, key, ofItsKind);
        ofItsKind.add({key, &node});
    }

    void meetOthers(const Node& node, const SharedText& key, const Set& ofItsKind) {
        for (const Set* others : {&devices_, &branches_, &items_}) {
            const Met* met = others->find(key);
            if (met == nullptr || met->node == &node) continue;
            if (others != &ofItsKind && keyAsRead(*met->node) != keyAsRead(node)) continue;
            refuse(node, nullptr, met->node);
            refuse(*met->node, nullptr, &node);
        }
    }

    void refuse(const Node& node, const char* reason, const Node* namesake = nullptr) {
        if (found_.first == nullptr) found_.first = &node;
        found_.unsaved.try_emplace(&node, Reason{reason, namesake});
    }

    /// The net below all rules: every record is in the file, or there is none.
    void requireAll() {
        if (document_.items().count() != itemCount_) leaveOutOne(document_.items());
        if (document_.branches().count() != branchCount_) leaveOutOne(document_.branches());
    }

    template <typename Records>
    void leaveOutOne(const Records& records) {
        for (const auto& [key, record] : records)
            if (!document_.hasNode(key)) return leaveOut(key);
        leaveOut("A record");
    }

    void leaveOut(const std::string_view key) {
        found_.leftOut.emplace(ErrorNumber::internalError,
                               "\"" + std::string(key) + "\" would be left out of the file");
    }

    /// A device that is out of sight.
    void lookInto(const Node& device) {
        Fault gravest;
        const auto take = [&](const Node& node) {
            Fault fault = rules_.faultOf(node, found_);
            if (fault.kind <= gravest.kind) return;
            gravest = {fault.kind, "Out of sight, in \"" + pathOf(node) + "\": " + fault.text};
        };
        take(device);
        for (TreeWalk walk(device); const Node* node = walk.next();)
            take(*node);
        if (gravest.kind != FaultKind::none) {
            found_.outOfSight.emplace(device.text(), std::move(gravest));
        }
    }

    const FileRules& rules_;
    const Document& document_;
    Survey found_;

    Set devices_, branches_, items_;
    bool hasPoint_ = false;                         // in the name of a device or a branch
    std::unordered_set<const Node*> changedItems_;  // that reading changes, or their path
    std::vector<const Node*> toMeet_;               // of the other items
    std::size_t branchCount_ = 0;
    std::size_t keyBytes_ = 0;  // of all keys so far
    std::size_t itemCount_ = 0;
};

const FileRules::Survey& FileRules::survey() const {
    const ConfigTree& tree = document_.tree();
    const ConfigTree& detached = document_.detached();
    // Records matter only where they are out of sight.
    const bool isAnyDetached = detached.nodes().size() > 0;
    const std::array now{tree.changes(), detached.changes(),
                         isAnyDetached ? tree.recordChanges() : 0};
    if (surveyed_ != now) {
        survey_ = Surveyor(*this).survey();
        surveyed_ = now;
    }
    return survey_;
}

Fault FileRules::faultOf(const Node& node, const Survey& survey) const {
    Fault gravest = faultOfName(node, survey);
    const auto take = [&](const Fault& fault) {
        if (fault.kind > gravest.kind) gravest = fault;
    };
    if (node.kind() == NodeKind::config) {
        for (const auto& [device, fault] : survey.outOfSight)
            take(fault);
    } else if (node.isDroppedDevice()) {
        const auto found = survey.outOfSight.find(node.text());
        if (found != survey.outOfSight.end()) take(found->second);
    }
    forEachText(document_, node, [&](const char* what, std::string_view text, FilePlace place) {
        if (*what == '\0') return;  // the name
        Fault fault = ::faultOf(text, place);
        fault.text.insert(0, std::string(what) + ": ");
        take(fault);
    });
    return gravest;
}

Fault FileRules::faultOfName(const Node& node, const Survey& survey) {
    const auto found = survey.unsaved.find(&node);
    if (found != survey.unsaved.end()) {
        const auto& [predicate, namesake] = found->second;
        return {FaultKind::unsaved,
                "It " + textOf(predicate, namesake) + ": the configuration cannot be saved"};
    }
    if (!isSaved(node)) return {};
    return ::faultOf(node.text(), placeOfName(node));
}

Fault FileRules::faultOf(const Node& node) const { return faultOf(node, survey()); }

Fault FileRules::faultOf(const ListView::Row& row, std::size_t column) const {
    const bool isName = column == ListView::nameColumn;
    const Node* node = isName ? document_.tree().FindNode(row.key) : nullptr;
    // The list may be out of date.
    const bool isOfRow = node != nullptr && node->kind() == row.kind && node->text() == row.text();
    if (isOfRow) return faultOfName(*node, survey());
    return ::faultOf(row.cell(column), filePlaceOf(row.kind));
}

/// Of what is out of sight, the bare node that stands for it, else the root.
const Node* FileRules::shownFor(const Node& node) const {
    const ConfigTree& tree = document_.tree();
    if (tree.FindNode(node.key()) == &node) return &node;
    const SharedText& device = deviceAbove(node)->text();
    for (const auto& each : tree.nodes())
        if (each->isDroppedDevice() && each->text() == device) return each.get();
    return tree.root();
}

std::optional<FileRules::Refusal> FileRules::refusal() const {
    const Survey& survey = this->survey();
    if (survey.first != nullptr) {
        const auto& [predicate, namesake] = survey.unsaved.at(survey.first);
        return Refusal{RunTimeError(ErrorNumber::invalidCall, "\"" + pathOf(*survey.first) + "\" " +
                                                                  textOf(predicate, namesake) +
                                                                  " and cannot be saved"),
                       shownFor(*survey.first)};
    }
    if (survey.leftOut) return Refusal{*survey.leftOut, document_.tree().root()};
    return std::nullopt;
}

bool FileRules::isAnyUnreadable() const {
    if (survey().isAnyNameUnreadable) return true;
    bool isAny = false;
    const auto look = [&](const char* what, std::string_view text, FilePlace place) {
        isAny |= *what != '\0' && isUnreadable(text, place);  // the names are known
    };
    if (const Node* root = document_.tree().root(); root != nullptr) {
        forEachText(document_, *root, look);
    }
    for (const auto& [key, device] : document_.devices())
        if (const Node* node = document_.deviceNode(device->getName()); node != nullptr) {
            forEachText(document_, *node, look);
        }
    // In the order of their registry, which takes less time than a walk of the tree does.
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
    found.firstPath = pathOf(*first);
    found.shown = shownFor(*first);
    return found;
}
