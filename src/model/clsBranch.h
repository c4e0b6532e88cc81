// The branch record.
#pragma once

#include <string>

#include "base/SharedText.h"
#include "model/XmlElement.h"

/// A branch: a named folder below a device or another branch.
class clsBranch {
 public:
    SharedText sName;
    /// The node key: the parent's key, ".", and the name.
    SharedText sKey;

    /// From a file's element that stands in the contents of the device of that name: the
    /// branch's name is the element's, in upper case as readers report it.
    void build(const XmlElement& element, const SharedText& deviceName);

    /// The key cut before its last "."; empty when it holds none.
    std::string getParentKey() const;
};
