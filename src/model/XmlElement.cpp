#include "model/XmlElement.h"

#include "model/RunTimeError.h"

namespace {

std::string_view pieceOf(const std::string& text, XmlElements::Piece piece) {
    return std::string_view(text).substr(piece.start, piece.length);
}

}  // namespace

std::string_view XmlElement::name() const { return pieceOf(elements_->names, entry().name); }

std::string_view XmlElement::text() const { return pieceOf(elements_->text, entry().text); }

std::string XmlElement::attribute(std::string_view name) const {
    const auto first = entry().firstAttribute;
    for (auto i = first; i < first + entry().attributeCount; ++i) {
        const auto& attribute = elements_->attributes[i];
        if (pieceOf(elements_->labels, attribute.name) == name) {
            return std::string(pieceOf(elements_->labels, attribute.value));
        }
    }
    throw RunTimeError(ErrorNumber::invalidUseOfNull);
}

XmlElement XmlElement::parent() const {
    return place_ == 0 ? XmlElement() : XmlElement(*elements_, entry().parent);
}

XmlElement XmlElement::firstChild() const {
    const std::uint32_t next = place_ + 1;
    const bool isChild =
        next < elements_->entries.size() && elements_->entries[next].parent == place_;
    return isChild ? XmlElement(*elements_, next) : XmlElement();
}

XmlElement XmlElement::nextSibling() const {
    return entry().nextSibling == 0 ? XmlElement() : XmlElement(*elements_, entry().nextSibling);
}

std::string GetXmlParentPath(XmlElement element) {
    std::size_t length = 0;
    for (auto each = element; each && each.name() != "TAGS"; each = each.parent())
        length += each.name().size() + 1;
    std::string path(length, '.');
    for (auto each = element; each && each.name() != "TAGS"; each = each.parent()) {
        length -= each.name().size() + 1;
        each.name().copy(path.data() + length, each.name().size());
    }
    return path;
}
