// An element of an XML file, as a reader reports it.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// An element that is being read. Element names are in upper case, whatever their case in the file.
///
///     device.SetByXml(element);                     // reads element.attribute("port")
///     const auto comment = element.childText("COMMENT");
///     if (!comment) throw RunTimeError(ErrorNumber::invalidUseOfNull);
struct XmlElement {
    const XmlElement* parent = nullptr;  ///< null for the root
    std::string name;
    std::vector<std::pair<std::string, std::string>> attributes;  ///< name (exact case) and value

    /// A child element. `text` is its character data, including that of its descendants, in
    /// document order, without white space between elements.
    struct Child {
        std::string name;
        std::string text;
    };
    std::span<const Child> children;  ///< empty unless the reader was asked for children

    /// The value of the attribute with that name.
    /// Raises ErrorNumber::invalidUseOfNull when there is none.
    const std::string& attribute(std::string_view attributeName) const;

    /// The text of the first child with that name; std::nullopt when there is no such child.
    std::optional<std::string_view> childText(std::string_view childName) const {
        for (const Child& child : children)
            if (child.name == childName) return child.text;
        return std::nullopt;
    }
};

/// Returns the dotted path of the branch elements from the TAGS element of a device down to
/// `element`: "A.B." for B in A. That TAGS element is the outermost one, as a branch may have the
/// same name; it is not part of the path.
std::string GetXmlParentPath(const XmlElement& element);

/// Returns `level` tab characters, the indentation of a line in a configuration file.
std::string Indent(std::size_t level);
