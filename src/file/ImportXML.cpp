#include "file/ImportXML.h"

#include <exception>
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

/// Keeps the first messages about faults in one file, and counts the others: a file may have a
/// fault in each of 65,536 items.
class FirstMessages {
 public:
    void showMessage(const std::string& text) {
        constexpr std::size_t most = 5;
        if (first_.size() == most) {
            ++more_;
        } else {
            first_.push_back(text);
        }
    }

    void tellTo(Desktop& desktop) const {
        for (const auto& text : first_)
            desktop.showMessage(text);
        if (more_ == 0) return;
        std::string number = std::to_string(more_);
        for (auto place = number.size(); place > 3; number.insert(place, ","))
            place -= 3;
        desktop.showMessage("\u2026 and " + number + " more");
    }

 private:
    std::vector<std::string> first_;
    std::size_t more_ = 0;
};

/// Turns the elements of one file into records and nodes. The parent of each is that of its
/// element: a key cannot tell, as names may hold the "." that keys are joined with.
class Importer {
 public:
    Importer(Document& document, Desktop& desktop, const std::function<void()>& itemRead)
        : document_(document), turns_(desktop), itemRead_(itemRead) {}

    /// How deep the elements of devices lie.
    static constexpr std::size_t deviceDepth = 3;

    /// A device is made of its element as soon as that ends.
    void ended(XmlElement element, std::size_t depth) {
        XmlElement root = element;
        while (root.parent())
            root = root.parent();
        isConfiguration_ = root.name() == "QUONEIBCFG";
        if (!isConfiguration_ || refusal_ != nullptr) return;
        if (depth == 2 && element.name() == "SETTINGS") {
            reportErrors(messages_, "ImportXML", [&] { readSettings(element); });
        } else if (depth == deviceDepth && element.name() == "DEVICE" &&
                   element.parent().name() == "OPC_DA") {
            try {
                const std::size_t length = lengthOfName(element);
                forEachChild(element, "TAGS",
                             [&](XmlElement tags) { requireWithinLimits(tags, length); });
                BrowsePlc(element);
            } catch (const RunTimeError&) {
                // Told once it is sure that the rest of the file is XML.
                refusal_ = std::current_exception();
            }
        }
    }

    /// After the whole file: false when it is another one's. Raises what reading it was refused
    /// for.
    bool finish(Desktop& desktop) const {
        if (refusal_ != nullptr) std::rethrow_exception(refusal_);
        messages_.tellTo(desktop);
        if (!isConfiguration_) desktop.showMessage("The configuration file is not valid.");
        return isConfiguration_;
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
        Node& node = document_.enter(branch, parent);
        makeVisible(node);
        return node;
    }

    void readItem(XmlElement element, Node& parent, const std::string& deviceName) {
        const auto item = std::make_shared<clsItem>();
        item->SetByXml(element, deviceName, parent.key());
        makeVisible(document_.enter(item, parent));
        itemRead_();
        turns_.pieceDone();
    }

    Document& document_;
    FirstMessages messages_;
    EventTurns turns_;
    const std::function<void()>& itemRead_;
    std::exception_ptr refusal_;
    bool isConfiguration_ = false;
};

}  // namespace

bool ImportXML(const std::string& path, Document& document, Disk& disk, Desktop& desktop,
               const std::function<void()>& itemRead) {
    bool isRead = false;
    const BusyPointer busy(desktop);
    reportErrors(desktop, "ImportXML", [&] {
        const ConfigTree::BulkChange bulk(document.tree());
        const GlobalSets settings = document.settings();
        try {
            Importer importer(document, desktop, itemRead);
            readXml(disk, path, Importer::deviceDepth,
                    [&](XmlElement element, std::size_t depth) { importer.ended(element, depth); });
            isRead = importer.finish(desktop);
        } catch (...) {
            // Nothing is made of a part of a file.
            document.settings() = settings;
            document.startAt(path);
            throw;
        }
    });
    return isRead;
}
