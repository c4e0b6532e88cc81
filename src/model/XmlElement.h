// An element of an XML file as a reader delivers it: plain data.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// The elements of one file in document order, as a reader fills them in. An element takes 32
/// bytes: a file of half a million items has four million elements.
struct XmlElements {
    struct Piece {
        std::uint32_t start;
        std::uint32_t length;
    };
    struct Attribute {
        Piece name;
        Piece value;
    };
    struct Entry {
        Piece name;
        Piece text;
        std::uint32_t parent;       ///< its own place for the root
        std::uint32_t nextSibling;  ///< 0 where there is none
        std::uint32_t firstAttribute;
        std::uint32_t attributeCount;
    };

    std::vector<Entry> entries;  ///< a first child comes right after its parent
    std::vector<Attribute> attributes;
    std::string names;   ///< of elements
    std::string labels;  ///< attributes' names and values
    std::string text;    ///< character data
};

/// One element, or none. Names are in upper case, whatever their case in the file; comments and
/// processing instructions are not kept. Good as long as the reader's elements live.
///
///     for (auto child = element.firstChild(); child; child = child.nextSibling()) ...
class XmlElement {
 public:
    XmlElement() = default;
    XmlElement(const XmlElements& elements, std::uint32_t place)
        : elements_(&elements), place_(place) {}

    /// False for none.
    explicit operator bool() const { return elements_ != nullptr; }
    bool operator==(const XmlElement&) const = default;

    std::string_view name() const;
    /// The character data of the element and of everything in it, in document order, less white
    /// space that stands between elements.
    std::string_view text() const;
    /// The value of the attribute of that name (exact case).
    /// Raises ErrorNumber::invalidUseOfNull when there is none.
    std::string attribute(std::string_view name) const;

    XmlElement parent() const;
    XmlElement firstChild() const;
    XmlElement nextSibling() const;

 private:
    const XmlElements::Entry& entry() const { return elements_->entries[place_]; }

    const XmlElements* elements_ = nullptr;
    std::uint32_t place_ = 0;
};

/// The dotted path of the branch elements from a device's contents (its TAGS element, not part
/// of the path) down to `element`: "A.B." for B within A, "" for TAGS itself.
std::string GetXmlParentPath(XmlElement element);
