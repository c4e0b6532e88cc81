#include "model/clsBranch.h"

#include "model/Generale.h"

void clsBranch::build(XmlElement element, const std::string& deviceName) {
    sName = element.name();
    sKey = joinKey(deviceName, GetXmlParentPath(element.parent()).append(sName));
}

std::string clsBranch::getParentKey() const { return std::string(parentKeyOf(sKey)); }
