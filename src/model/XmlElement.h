// An element of an XML file as a reader delivers it.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// An element in which a reader stands. Names are in upper case, whatever their case in the file.
struct XmlElement {
    const XmlElement* parent = nullptr;  ///< null for the root
    std::string name;
    std::vector<std::pair<std::string, std::string>> attributes;  ///< name (exact case) and value

    /// An element in it: the character data of it and of everything in it, in document order,
    /// less white space that stands between elements.
    struct Child {
        std::string name;
        std::string text;
    };
    std::span<const Child> children;  ///< where the reader was asked for them

    /// The value of the attribute of that name.
    /// Raises ErrorNumber::invalidUseOfNull when there is none.
    const std::string& attribute(std::string_view attributeName) const;

    /// The text of the first child of that name; none where there is no such child.
    std::optional<std::string_view> childText(std::string_view childName) const {
        for (const Child& child : children)
            if (child.name == childName) return child.text;
        return std::nullopt;
    }
};

/// The dotted path of the branch elements from a device's contents (its TAGS element, not part of
/// the path; a branch may have that name too) down to `element`: "A.B." for B within A.
std::string GetXmlParentPath(const XmlElement& element);

/// That many tab characters: the beginning of a line of a configuration file.
std::string Indent(std::size_t level);
