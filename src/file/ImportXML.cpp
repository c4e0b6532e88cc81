#include "file/ImportXML.h"

#include <memory>
#include <string_view>
#include <vector>

#include "desktop/EventTurns.h"
#include "file/XmlParser.h"
#include "model/FileFitness.h"
#include "model/Generale.h"
#include "model/Numbers.h"
#include "model/Reporting.h"
#include "model/RunTimeError.h"

namespace {

/// Walks everything below an element, each before its children, in the order of the file. No
/// recursion: a file may nest its elements as deep as it likes.
class ElementWalk {
 public:
    explicit ElementWalk(XmlElement top) : top_(top), current_(top) {}

    /// The next element; none at the end.
    XmlElement next() {
        XmlElement next = entered_ ? current_.firstChild() : XmlElement();
        if (next) {
            ++depth_;
        } else {
            for (; current_ != top_ && !current_.nextSibling(); --depth_)
                current_ = current_.parent();
            if (current_ != top_) next = current_.nextSibling();
        }
        entered_ = true;
        return current_ = next;
    }
    /// Passes over what is in the element that next() gave last.
    void skipChildren() { entered_ = false; }
    /// How deep that element lies below the top: 1 for a child of the top.
    std::size_t depth() const { return depth_; }

 private:
    XmlElement top_;
    XmlElement current_;
    std::size_t depth_ = 0;
    bool entered_ = true;
};

bool isItem(XmlElement element) { return element.name() == "TAG"; }

template <typename Visit>
void forEachChild(XmlElement parent, std::string_view name, const Visit& visit) {
    for (auto child = parent.firstChild(); child; child = child.nextSibling())
        if (child.name() == name) visit(child);
}

std::size_t lengthOfName(XmlElement device) {
    try {
        return device.attribute("name").size();
    } catch (const RunTimeError&) {
        return 0;  // such a device is not read
    }
}

/// Refuses a device's contents beyond what is read at most.
void requireWithinLimits(XmlElement tags, std::size_t deviceLength) {
    const auto refuse = [](const char* reason) {
        throw RunTimeError(ErrorNumber::invalidFileFormat, reason);
    };
    std::vector<std::size_t> lengths{deviceLength};  // of the keys, from the device down
    for (ElementWalk walk(tags); auto element = walk.next();) {
        lengths.resize(walk.depth());
        std::size_t length = lengths.back() + 1;
        if (isItem(element)) {
            walk.skipChildren();
            forEachChild(element, "NAME", [&](XmlElement name) { length += name.text().size(); });
        } else {
            if (walk.depth() > mostBranchLevels) {
                refuse("Branches lie within one another more than 1,000 deep");
            }
            length += element.name().size();
            lengths.push_back(length);
        }
        if (length > mostKeyBytes) refuse("The path to a branch or an item is longer than 64 KB");
    }
}

/// Shows the first messages about faults in one file, and counts the others: a file may have a
/// fault in each of 65,536 items.
class FirstMessages {
 public:
    explicit FirstMessages(Desktop& desktop) : desktop_(desktop) {}

    void showMessage(const std::string& text) {
        constexpr std::size_t most = 5;
        if (shown_ == most) {
            ++more_;
        } else {
            ++shown_;
            desktop_.showMessage(text);
        }
    }

    void showRest() {
        if (more_ == 0) return;
        std::string number = std::to_string(more_);
        for (auto place = number.size(); place > 3; number.insert(place, ","))
            place -= 3;
        desktop_.showMessage("\u2026 and " + number + " more");
    }

 private:
    Desktop& desktop_;
    std::size_t shown_ = 0;
    std::size_t more_ = 0;
};

/// Turns the elements of one file into records and nodes. The parent of each is that of its
/// element: a key cannot tell, as names may hold the "." that keys are joined with.
class Importer {
 public:
    Importer(Document& document, Desktop& desktop, const std::function<void()>& itemRead)
        : document_(document), messages_(desktop), turns_(desktop), itemRead_(itemRead) {}

    void readRoot(XmlElement root) {
        for (auto child = root.firstChild(); child; child = child.nextSibling()) {
            if (child.name() == "SETTINGS") {
                reportErrors(messages_, "ImportXML", [&] { readSettings(child); });
            } else if (child.name() == "OPC_DA") {
                forEachChild(child, "DEVICE", [&](XmlElement device) { BrowsePlc(device); });
            }
        }
        messages_.showRest();
    }

 private:
    void readSettings(XmlElement element) {
        GlobalSets settings;
        settings.port = element.attribute("port");
        settings.ediType = element.attribute("editype");
        settings.timeout = readInt32(element.attribute("timeout"));
        document_.settings() = settings;
    }

    /// Reads one device with its contents.
    void BrowsePlc(XmlElement element) {
        reportErrors(messages_, "BrowsePlc", [&] {
            const auto device = std::make_shared<clsPLC>();
            device->SetByXml(element);
            Node& node = document_.enter(device);
            makeVisible(node);
            forEachChild(element, "TAGS", [&](XmlElement tags) {
                std::vector<Node*> path{&node};  // from the device down to the present parent
                for (ElementWalk walk(tags); auto child = walk.next();) {
                    path.resize(walk.depth());
                    Node* branch = BrowseBranch(child, *path.back(), device->getName());
                    branch == nullptr ? walk.skipChildren() : path.push_back(branch);
                }
            });
        });
    }

    /// Reads one branch, without its contents, or one item. The branch's node; null for an item
    /// and for what could not be read.
    Node* BrowseBranch(XmlElement element, Node& parent, const std::string& deviceName) {
        Node* branch = nullptr;
        reportErrors(messages_, "BrowseBranch", [&] {
            if (isItem(element)) {
                readItem(element, parent, deviceName);
            } else {
                branch = &readBranch(element, parent, deviceName);
            }
        });
        return branch;
    }

    /// The parent's own parents are expanded since it was read itself.
    void makeVisible(const Node& node) { document_.tree().setExpanded(*node.parent(), true); }

    Node& readBranch(XmlElement element, Node& parent, const std::string& deviceName) {
        const auto branch = std::make_shared<clsBranch>();
        branch->build(element, deviceName);
        branch->sKey = joinKey(parent.key(), branch->sName);
        Node& node = document_.enter(branch, parent);
        makeVisible(node);
        return node;
    }

    void readItem(XmlElement element, Node& parent, const std::string& deviceName) {
        const auto item = std::make_shared<clsItem>();
        item->SetByXml(element, deviceName);
        item->sKey = joinKey(parent.key(), item->sName);
        makeVisible(document_.enter(item, parent));
        itemRead_();
        turns_.pieceDone();
    }

    Document& document_;
    FirstMessages messages_;
    EventTurns turns_;
    const std::function<void()>& itemRead_;
};

}  // namespace

bool ImportXML(const std::string& path, Document& document, Disk& disk, Desktop& desktop,
               const std::function<void()>& itemRead) {
    bool isConfiguration = false;
    const BusyPointer busy(desktop);
    const bool finished = reportErrors(desktop, "ImportXML", [&] {
        const XmlDocument file(disk, path);
        isConfiguration = file.root().name() == "QUONEIBCFG";
        if (!isConfiguration) return desktop.showMessage("The configuration file is not valid.");
        // Before anything is made of the file.
        forEachChild(file.root(), "OPC_DA", [](XmlElement devices) {
            forEachChild(devices, "DEVICE", [](XmlElement device) {
                const std::size_t length = lengthOfName(device);
                forEachChild(device, "TAGS",
                             [&](XmlElement tags) { requireWithinLimits(tags, length); });
            });
        });
        // An item is an element of at least six more.
        document.items().reserve(file.count() / 7);
        document.tree().reserve(file.count() / 7);
        const ConfigTree::BulkChange bulk(document.tree());
        Importer(document, desktop, itemRead).readRoot(file.root());
    });
    return finished && isConfiguration;
}
