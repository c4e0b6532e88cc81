#include "file/ImportXML.h"

#include <memory>

#include "desktop/EventTurns.h"
#include "file/XmlParser.h"
#include "model/Numbers.h"
#include "model/Reporting.h"

namespace {

/// Turns the elements of one file into records and nodes.
class Importer {
 public:
    Importer(Document& document, Desktop& desktop, const std::function<void()>& itemRead)
        : document_(document), tell_(desktop), turns_(desktop), itemRead_(itemRead) {}

    void readRoot(XmlElement root) {
        for (auto child = root.firstChild(); child; child = child.nextSibling()) {
            if (child.name() == "SETTINGS") {
                reportErrors(tell_, "ImportXML", [&] { readSettings(child); });
            } else if (child.name() == "OPC_DA") {
                for (auto device = child.firstChild(); device; device = device.nextSibling())
                    if (device.name() == "DEVICE") BrowsePlc(device);
            }
        }
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
        reportErrors(tell_, "BrowsePlc", [&] {
            const auto device = std::make_shared<clsPLC>();
            device->SetByXml(element);
            makeVisible(document_.enter(device));
            for (auto tags = element.firstChild(); tags; tags = tags.nextSibling()) {
                if (tags.name() != "TAGS") continue;
                for (auto child = tags.firstChild(); child; child = child.nextSibling())
                    BrowseBranch(child, device->getName());
            }
        });
    }

    /// Reads one branch with its contents, or one item. No recursion: a file may nest its
    /// branches as deep as it likes.
    void BrowseBranch(XmlElement top, const std::string& deviceName) {
        XmlElement element = top;
        while (element) {
            const bool isBranch = element.name() != "TAG";
            const bool read = reportErrors(tell_, "BrowseBranch", [&] {
                if (isBranch) {
                    readBranch(element, deviceName);
                } else {
                    readItem(element, deviceName);
                }
            });
            const XmlElement child = read && isBranch ? element.firstChild() : XmlElement();
            element = child ? child : nextAfter(element, top);
        }
    }

    /// The element that follows the whole of `element`, within `top`.
    static XmlElement nextAfter(XmlElement element, XmlElement top) {
        while (element != top && !element.nextSibling())
            element = element.parent();
        return element == top ? XmlElement() : element.nextSibling();
    }

    /// The parent's own parents are expanded since it was read itself.
    void makeVisible(const Node& node) { document_.tree().setExpanded(*node.parent(), true); }

    void readBranch(XmlElement element, const std::string& deviceName) {
        const auto branch = std::make_shared<clsBranch>();
        branch->build(element, deviceName);
        makeVisible(document_.enter(branch, branch->getParentKey()));
    }

    void readItem(XmlElement element, const std::string& deviceName) {
        const auto item = std::make_shared<clsItem>();
        item->SetByXml(element, deviceName);
        makeVisible(document_.enter(item, item->getParentKey()));
        itemRead_();
        turns_.pieceDone();
    }

    Document& document_;
    Tell tell_;
    EventTurns turns_;
    const std::function<void()>& itemRead_;
};

}  // namespace

bool ImportXML(const std::string& path, Document& document, Disk& disk, Desktop& desktop,
               const std::function<void()>& itemRead) {
    bool isConfiguration = false;
    const BusyPointer busy(desktop);
    const bool finished = reportErrors(desktop, "ImportXML", [&] {
        const XmlDocument file(disk.read(path));
        isConfiguration = file.root().name() == "QUONEIBCFG";
        if (!isConfiguration) return desktop.showMessage("The configuration file is not valid.");
        // An item is an element of at least six more.
        document.items().reserve(file.count() / 7);
        document.tree().reserve(file.count() / 7);
        const ConfigTree::BulkChange bulk(document.tree());
        Importer(document, desktop, itemRead).readRoot(file.root());
    });
    return finished && isConfiguration;
}
