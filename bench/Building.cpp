#include "Building.h"

#include <memory>

#include "model/Keys.h"

namespace {

std::string addDevice(Document& document, const std::string& name) {
    const auto device = std::make_shared<clsPLC>();
    device->SetByEts(name, document.settings());
    document.add(device);
    return name;
}

std::string addBranch(Document& document, const std::string& parentKey, const std::string& name) {
    const auto branch = std::make_shared<clsBranch>();
    branch->sName = name;
    branch->sKey = parentKey + "." + name;
    document.add(branch, document.tree().nodeAt(parentKey));
    return branch->sKey.string();
}

void addItem(Document& document, const std::string& parentKey, int number,
             const std::string& name = "Light_Ceiling_") {
    const auto item = std::make_shared<clsItem>();
    item->sName = name + std::to_string(number);
    item->sKey = joinKey(parentKey, item->sName);
    item->sComment = "Deckenlicht Büro, Schaltgruppe " + std::to_string(number % 8);
    item->sAddress = std::to_string(number / 2048 % 32) + "/" + std::to_string(number / 256 % 8) +
                     "/" + std::to_string(number % 256);
    item->sDataType = number % 16 == 0 ? "EIS15" : "EIS1";
    item->nElements = 14;
    item->sAccessRight = "READWRITE";
    document.add(item, document.tree().nodeAt(parentKey));
}

}  // namespace

void fillBuilding(Document& document, int items) {
    document.startAt("/bench.xml");
    std::string device;
    std::string floor;
    std::string room;
    for (int i = 0; i < items; ++i) {
        if (i % 4096 == 0) {
            device = addDevice(document, "Building_" + std::to_string(i / 4096 + 1));
        }
        if (i % 1024 == 0) {
            floor = addBranch(document, device, "FLOOR_" + std::to_string(i / 1024 % 4));
        }
        if (i % 32 == 0) {
            room = addBranch(document, floor, "ROOM_" + std::to_string(i / 32 % 32 + 1));
        }
        addItem(document, room, i);
    }
}

void fillOneBranch(Document& document, int items) {
    document.startAt("/bench.xml");
    const std::string branch = addBranch(document, addDevice(document, "Building"), "ALL");
    for (int i = 0; i < items; ++i)
        addItem(document, branch, i);
}

void addBranchOf(Document& document, const std::string& device, int items) {
    const std::string branch = addBranch(document, addDevice(document, device), "MORE");
    for (int i = 0; i < items; ++i)
        addItem(document, branch, i, "More_");
}
