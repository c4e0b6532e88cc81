#include "model/clsBranch.h"

#include "model/Keys.h"

void clsBranch::build(const XmlElement& element, const SharedText& deviceName) {
    sName = element.name;
    sKey = joinKey(deviceName, GetXmlParentPath(*element.parent).append(element.name));
}

std::string clsBranch::getParentKey() const { return std::string(parentKeyOf(sKey)); }
