#include "OtherReaders.h"

#include <expat.h>

#include <QFile>
#include <QStandardItemModel>
#include <QXmlStreamReader>
#include <cstdlib>
#include <pugixml.hpp>
#include <string_view>
#include <unordered_map>

namespace {

void require(bool met) {
    if (!met) std::abort();
}

/// The records of a configuration in hash maps by key. Each record has a pointer to its parent.
class Maps {
 public:
    explicit Maps(const pugi::xml_document& file) {
        const auto devices = file.child("QUONEibCfg").child("OPC_DA").children("DEVICE");
        for (const pugi::xml_node element : devices) {
            Folder device;
            device.name = element.attribute("name").value();
            device.port = element.attribute("port").value();
            device.ediType = element.attribute("editype").value();
            device.timeout = element.attribute("timeout").as_int();
            const auto& [key, added] = *folders_.emplace(device.name, std::move(device)).first;
            readContents(element.child("tags"), key, added);
        }
    }

    std::size_t items() const { return items_.size(); }

 private:
    /// A device or a branch.
    struct Folder {
        const Folder* parent = nullptr;
        std::string name, port, ediType;
        int timeout = 0;
    };
    struct Item {
        const Folder* parent = nullptr;
        std::string name, comment, address, dataType, access;
        int elements = 0;
        bool isRead = false;
    };

    void readContents(pugi::xml_node element, const std::string& parentKey, const Folder& parent) {
        for (const pugi::xml_node child : element) {
            if (std::string_view(child.name()) == "tag") {
                Item item;
                item.parent = &parent;
                item.name = child.child_value("name");
                item.comment = child.child_value("comment");
                item.address = child.child_value("address");
                item.dataType = child.child_value("eistype");
                item.access = child.child_value("accessrights");
                item.elements = child.child("elements").text().as_int();
                item.isRead = std::string_view(child.child_value("flag")) == "READ";
                items_.emplace(parentKey + "." + item.name, std::move(item));
            } else {
                Folder branch;
                branch.parent = &parent;
                branch.name = child.name();
                const auto& [key, added] =
                    *folders_.emplace(parentKey + "." + branch.name, std::move(branch)).first;
                readContents(child, key, added);
            }
        }
    }

    std::unordered_map<std::string, Folder> folders_;
    std::unordered_map<std::string, Item> items_;
};

/// Adds a row for each element below the row of its parent; the row of an item has a cell for each
/// element of the item. Returns the number of items.
std::size_t readRows(QXmlStreamReader& xml, QStandardItem& parent) {
    std::size_t items = 0;
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1String("tag")) {
            QList<QStandardItem*> cells;
            while (xml.readNextStartElement())
                cells.append(new QStandardItem(xml.readElementText()));
            parent.appendRow(cells);
            ++items;
        } else {
            const auto deviceName = xml.attributes().value("name");
            auto* const row =
                new QStandardItem((deviceName.isEmpty() ? xml.name() : deviceName).toString());
            items += readRows(xml, *row);
            parent.appendRow(row);
        }
    }
    return items;
}

}  // namespace

void parseOnly(const std::string& bytes) {
    const XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetElementHandler(
        parser, [](void*, const XML_Char*, const XML_Char**) {}, [](void*, const XML_Char*) {});
    XML_SetCharacterDataHandler(parser, [](void*, const XML_Char*, int) {});
    require(XML_Parse(parser, bytes.data(), static_cast<int>(bytes.size()), XML_TRUE) ==
            XML_STATUS_OK);
    XML_ParserFree(parser);
}

Reading readIntoMaps(const std::string& path, std::size_t items) {
    pugi::xml_document file;
    require(file.load_file(path.c_str()));
    auto maps = std::make_shared<const Maps>(file);
    require(maps->items() == items);
    return maps;
}

Reading readIntoQtModel(const std::string& path, std::size_t items) {
    QFile file(QString::fromStdString(path));
    require(file.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&file);
    auto model = std::make_shared<QStandardItemModel>();
    require(xml.readNextStartElement());
    require(readRows(xml, *model->invisibleRootItem()) == items && !xml.hasError());
    return model;
}
