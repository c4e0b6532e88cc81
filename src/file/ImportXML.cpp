#include "file/ImportXML.h"

#include <cstdint>
#include <memory>
#include <vector>

#include "base/Numbers.h"
#include "base/Reporting.h"
#include "base/RunTimeError.h"
#include "desktop/EventPoller.h"
#include "desktop/FirstMessages.h"
#include "file/FileSurvey.h"
#include "file/XmlParser.h"

namespace {

/// 0 for a device without a name, which is not read.
std::size_t lengthOfName(const XmlElement& device) {
    try {
        return device.attribute("name").size();
    } catch (const RunTimeError&) {
        return 0;
    }
}

/// Passes messages about faults to the listener, with the current line, or to the user if there
/// is no listener.
class Faults {
 public:
    explicit Faults(ReadingListener* listener) : listener_(listener) {}

    void setPlace(const Node* parent, std::size_t line) {
        parent_ = parent;
        line_ = line;
    }

    void showMessage(const std::string& text) {
        if (listener_ == nullptr) return messages_.showMessage(text);
        listener_->fault(text, parent_, line_);
    }

    void noteRead(const Node& node) {
        if (listener_ != nullptr) listener_->read(node, line_);
    }

    bool hasListener() const { return listener_ != nullptr; }
    const FirstMessages& messages() const { return messages_; }

 private:
    ReadingListener* listener_;
    FirstMessages messages_;
    const Node* parent_ = nullptr;
    std::size_t line_ = 0;
};

/// Turns the elements of one file into records and nodes. Parents are found by the nesting of
/// elements, not by keys: names may contain the "." that separates the names in a key.
class Importer : public XmlListener {
 public:
    Importer(Document& document, Desktop& desktop, const std::function<void()>& itemRead,
             const std::function<bool()>& goesOn, Faults& faults)
        : document_(document), faults_(faults), poller_(desktop, goesOn), itemRead_(itemRead) {}

    bool wantsLines() const override { return faults_.hasListener(); }

    bool began(const XmlElement& element) override {
        faults_.setPlace(path_.empty() ? nullptr : path_.back().node, line);
        path_.push_back(placeOf(element));
        path_.back().line = line;
        return path_.back().role == Role::item;
    }

    void ended(const XmlElement& element) override {
        const Place place = path_.back();
        path_.pop_back();
        if (place.role != Role::item) return;
        faults_.setPlace(path_.back().node, place.line);
        readItem(element, path_.back());
    }

    void pieceRead() override { poller_.poll(); }

    /// False if the root element is not that of a configuration.
    bool isConfiguration() const { return isConfiguration_; }

 private:
    /// What an element means, by its name and its parent.
    enum class Role { other, configuration, devices, device, contents, item };

    struct Place {
        Role role = Role::other;
        Node* node = nullptr;      ///< the device or branch; null if it could not be read
        std::size_t length = 0;    ///< of the node's key, in bytes
        std::size_t branches = 0;  ///< number of nested branches, with this one
        std::size_t line = 0;      ///< where the element begins
    };

    Place placeOf(const XmlElement& element) {
        if (path_.empty()) {
            isConfiguration_ = element.name == "QUONEIBCFG";
            return {isConfiguration_ ? Role::configuration : Role::other};
        }
        const Place& parent = path_.back();
        switch (parent.role) {
            case Role::configuration:
                if (element.name == "SETTINGS") readSettings(element);
                return {element.name == "OPC_DA" ? Role::devices : Role::other};
            case Role::devices:
                if (element.name != "DEVICE") return {};
                return {Role::device, BrowsePlc(element), lengthOfName(element)};
            case Role::device:
                if (element.name != "TAGS") return {};
                return {Role::contents, parent.node, parent.length};
            case Role::contents:
                if (element.name == "TAG") return {Role::item};
                return placeOfBranch(element, parent);
            case Role::other:
            case Role::item: return {};
        }
        return {};
    }

    Place placeOfBranch(const XmlElement& element, const Place& parent) {
        Place place{Role::contents, nullptr, parent.length + 1 + element.name.size(),
                    parent.branches + 1};
        if (place.branches > maxBranchDepth) {
            refuse("Branches lie within one another more than 1,000 deep");
        }
        countKey(place.length);
        if (parent.node != nullptr) place.node = BrowseBranch(element, *parent.node);
        return place;
    }

    [[noreturn]] static void refuse(const char* reason) {
        throw RunTimeError(ErrorNumber::invalidFileFormat, reason);
    }

    /// Called before the key is built, so that a malicious file cannot use up the memory.
    void countKey(std::size_t length) {
        if (length > maxKeyBytes) refuse("The path to a branch or an item is longer than 64 KB");
        keyBytes_ += length;
        if (keyBytes_ > maxBytesOfAllKeys) {
            refuse("The paths to all branches and items are longer than 128 MB together");
        }
    }

    void readSettings(const XmlElement& element) {
        reportErrors(faults_, "ImportXML", [&] {
            GlobalSets settings;
            settings.port = element.attribute("port");
            settings.ediType = element.attribute("editype");
            settings.timeout = readInt32(element.attribute("timeout"));
            document_.setSettings(settings);
        });
    }

    /// Reads one device without its contents. Returns null if it has a fault.
    Node* BrowsePlc(const XmlElement& element) {
        Node* node = nullptr;
        reportErrors(faults_, "BrowsePlc", [&] {
            const auto device = std::make_shared<clsPLC>();
            device->SetByXml(element);
            deviceName_ = device->getName();
            node = &document_.add(device);
            makeVisible(*node);
            faults_.noteRead(*node);
        });
        return node;
    }

    /// Reads one item, or one branch without its contents. Returns null if it has a fault.
    Node* BrowseBranch(const XmlElement& element, Node& parent) {
        Node* node = nullptr;
        reportErrors(faults_, "BrowseBranch", [&] {
            if (element.name == "TAG") {
                const auto item = std::make_shared<clsItem>();
                item->SetByXml(element, deviceName_, parent.key());
                node = &document_.add(item, parent);
                makeVisible(*node);
                itemRead_();
            } else {
                const auto branch = std::make_shared<clsBranch>();
                branch->build(element, deviceName_);
                node = &document_.add(branch, parent);
                makeVisible(*node);
            }
            faults_.noteRead(*node);
        });
        return node;
    }

    void readItem(const XmlElement& element, const Place& parent) {
        std::size_t length = parent.length + 1;
        for (const auto& child : element.children)
            if (child.name == "NAME") length += child.text.size();
        countKey(length);
        if (parent.node != nullptr) BrowseBranch(element, *parent.node);
    }

    /// All nodes above the parent were expanded when the parent was read.
    void makeVisible(const Node& node) { ConfigTree::setExpanded(*node.parent(), true); }

    Document& document_;
    Faults& faults_;
    EventPoller poller_;
    const std::function<void()>& itemRead_;
    std::vector<Place> path_;  // the open elements, outermost first
    SharedText deviceName_;
    std::uint64_t keyBytes_ = 0;  // length of all keys so far
    bool isConfiguration_ = false;
};

}  // namespace

bool ImportXML(const std::string& path, Document& document, Disk& disk, Desktop& desktop,
               const std::function<void()>& itemRead, const std::function<bool()>& goesOn,
               ReadingListener* listener) {
    const BusyPointer busy(desktop);
    Faults faults(listener);
    Importer importer(document, desktop, itemRead, goesOn, faults);
    const bool isRead = reportErrors(
        listener == nullptr ? ShowMessage(desktop) : ShowMessage(faults), "ImportXML", [&] {
            const ConfigTree::BulkChange bulk(document.tree());
            const GlobalSets settings = document.settings();
            try {
                readXml(disk, path, importer);
                if (!goesOn()) throw RunTimeError(ErrorNumber::cancelled);
            } catch (...) {
                // A file that cannot be read to its end leaves the document empty.
                faults.setPlace(nullptr, importer.line);
                document.setSettings(settings);
                document.startAt(path);
                if (goesOn()) throw;  // a cancelled reading needs no message
            }
        });
    if (!isRead || !goesOn()) return false;
    reportErrors(desktop, "ImportXML", [&] {
        faults.messages().showOn(desktop);
        if (!importer.isConfiguration()) {
            desktop.showMessage("The configuration file is not valid.");
        }
    });
    return importer.isConfiguration();
}
