// The branch record.
#pragma once

#include <string>

#include "base/SharedText.h"
#include "model/XmlElement.h"

/// A branch: a named folder below a device or another branch.
///
///     const auto branch = std::make_shared<clsBranch>();
///     branch->build(element, "Plant");
///     document.add(branch, document.tree().nodeAt(branch->getParentKey()));
class clsBranch {
 public:
    SharedText sName;
    /// The node key: the parent's key, ".", and the name.
    SharedText sKey;

    /// Sets name and key from an element in the TAGS element of that device. The name of the branch
    /// is the name of the element, in upper case.
    void build(const XmlElement& element, const SharedText& deviceName);

    /// The part of the key before its last "."; empty when the key has no ".".
    std::string getParentKey() const;
};
