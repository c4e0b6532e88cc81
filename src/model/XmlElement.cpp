#include "model/XmlElement.h"

#include <algorithm>

#include "base/RunTimeError.h"

const std::string& XmlElement::attribute(std::string_view attributeName) const {
    const auto found =
        std::ranges::find(attributes, attributeName, &std::pair<std::string, std::string>::first);
    if (found == attributes.end()) throw RunTimeError(ErrorNumber::invalidUseOfNull);
    return found->second;
}

std::string GetXmlParentPath(const XmlElement& element) {
    const XmlElement* contents = nullptr;
    for (const auto* each = &element; each != nullptr; each = each->parent)
        if (each->name == "TAGS") contents = each;
    std::size_t length = 0;
    for (const auto* each = &element; each != contents; each = each->parent)
        length += each->name.size() + 1;
    std::string path(length, '.');
    for (const auto* each = &element; each != contents; each = each->parent) {
        length -= each->name.size() + 1;
        each->name.copy(path.data() + length, each->name.size());
    }
    return path;
}

std::string Indent(std::size_t level) { return std::string(level, '\t'); }
