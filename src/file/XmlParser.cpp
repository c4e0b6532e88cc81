#include "file/XmlParser.h"

#include <expat.h>

#include <algorithm>
#include <array>
#include <exception>
#include <iterator>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "model/RunTimeError.h"
#include "model/Text.h"

namespace {

/// Hears Expat's events and enters the elements. All character data stands in one text, in the
/// order of the file: so the text of an element and of all in it is one piece of it.
class Builder {
 public:
    Builder(std::size_t deepest, const ElementEnded& ended)
        : deepest_(deepest), ended_(ended), parser_(XML_ParserCreate(nullptr)) {
        if (parser_ == nullptr) throw std::bad_alloc();
        XML_SetUserData(parser_.get(), this);
        XML_SetElementHandler(parser_.get(), startElement, endElement);
        XML_SetCharacterDataHandler(parser_.get(), characterData);
        XML_SetEntityDeclHandler(parser_.get(), entityDeclared);
        XML_SetNotStandaloneHandler(parser_.get(), notStandalone);
        XML_SetUnknownEncodingHandler(parser_.get(), unknownEncoding, this);
    }

    /// Takes the next piece of the text.
    void parse(std::string_view piece) {
        // Expat counts in int.
        if (piece.size() > mostBytesRead) throw RunTimeError(ErrorNumber::outOfMemory);
        feed(piece, XML_FALSE);
        // Pieces of the text are named by 32 bits. A file is not so large, but a character of it
        // may become three bytes.
        constexpr std::size_t most = std::numeric_limits<std::uint32_t>::max();
        if (elements_.text.size() > most || elements_.names.size() > most ||
            elements_.labels.size() > most) {
            throw RunTimeError(ErrorNumber::outOfMemory);
        }
    }

    void finish() { feed({}, XML_TRUE); }

 private:
    void feed(std::string_view piece, int isLast) {
        const auto status =
            XML_Parse(parser_.get(), piece.data(), static_cast<int>(piece.size()), isLast);
        if (failure_ != nullptr) std::rethrow_exception(failure_);
        if (status == XML_STATUS_OK) return;
        const auto code = XML_GetErrorCode(parser_.get());
        if (code == XML_ERROR_NO_MEMORY) throw std::bad_alloc();
        const char* reason = refusal_ != nullptr ? refusal_ : XML_ErrorString(code);
        throw RunTimeError(
            ErrorNumber::invalidFileFormat,
            "Line " + std::to_string(XML_GetCurrentLineNumber(parser_.get())) + ": " + reason);
    }

    /// An element that has begun and not ended yet.
    struct Open {
        std::uint32_t place;
        std::uint32_t previousSibling;
        std::uint32_t lastChild = 0;
    };

    /// No exception may pass through Expat, which is C: it stops, and feed() lets it go on.
    template <typename Event>
    void guard(const Event& event) {
        if (failure_ != nullptr) return;  // Expat may tell what was under way
        try {
            event(*this);
        } catch (...) {
            failure_ = std::current_exception();
            XML_StopParser(parser_.get(), XML_FALSE);
        }
    }

    void refuse(const char* reason) {
        refusal_ = reason;
        XML_StopParser(parser_.get(), XML_FALSE);
    }

    static Builder& of(void* userData) { return *static_cast<Builder*>(userData); }

    static void XMLCALL startElement(void* userData, const XML_Char* name,
                                     const XML_Char** attributes) {
        of(userData).guard([&](Builder& builder) { builder.start(name, attributes); });
    }

    static void XMLCALL endElement(void* userData, const XML_Char* /*name*/) {
        of(userData).guard([](Builder& builder) { builder.end(); });
    }

    static void XMLCALL characterData(void* userData, const XML_Char* data, int length) {
        of(userData).guard([&](Builder& builder) {
            builder.add({data, static_cast<std::size_t>(length)});
        });
    }

    /// Expat itself does not know Windows-1252.
    static int XMLCALL unknownEncoding(void* userData, const XML_Char* name,
                                       XML_Encoding* encoding) {
        if (!equalIgnoringCase(name, "windows-1252")) return XML_STATUS_ERROR;
        of(userData).guard([&](Builder& /*builder*/) {
            for (std::size_t byte = 0; byte < std::size(encoding->map); ++byte) {
                const std::string character =
                    fromWindows1252(std::string(1, static_cast<char>(byte)));
                std::size_t position = 0;
                encoding->map[byte] = static_cast<int>(nextCharacter(character, position));
            }
        });
        return XML_STATUS_OK;
    }

    static void XMLCALL entityDeclared(void* userData, const XML_Char* /*name*/, int /*parameter*/,
                                       const XML_Char* /*value*/, int /*length*/,
                                       const XML_Char* /*base*/, const XML_Char* /*system*/,
                                       const XML_Char* /*publicId*/, const XML_Char* /*notation*/) {
        of(userData).refuse("entity declarations are not accepted");
    }

    /// A text that leans on declarations elsewhere is refused: entities whose declarations were
    /// never read would vanish from it without a word.
    static int XMLCALL notStandalone(void* /*userData*/) { return XML_STATUS_ERROR; }

    static std::uint32_t lengthOf(const std::string& text) {
        return static_cast<std::uint32_t>(text.size());
    }

    XmlElements::Piece keep(const XML_Char* label) {
        const std::uint32_t start = lengthOf(elements_.labels);
        elements_.labels.append(label);
        return {start, lengthOf(elements_.labels) - start};
    }

    /// The name in capitals. A file repeats a few names: those met last are at hand.
    XmlElements::Piece nameOf(std::string_view name) {
        Name& known = recentNames_[(name.size() * 8 + static_cast<unsigned char>(name.back())) %
                                   recentNames_.size()];
        if (known.asWritten != name) {
            known.asWritten = name;
            known.inCapitals.start = lengthOf(elements_.names);
            appendUpperCase(elements_.names, name);
            known.inCapitals.length = lengthOf(elements_.names) - known.inCapitals.start;
        }
        return known.inCapitals;
    }

    void add(std::string_view characters) {
        isIndentation_ = isIndentation_ && std::ranges::all_of(characters, [](char c) {
                             return c == ' ' || c == '\t' || c == '\n' || c == '\r';
                         });
        elements_.text.append(characters);
    }

    /// Drops the character data since the last tag where it is only white space between
    /// elements: the indentation of a file, most of its text, is nobody's content.
    void dropIndentation() {
        if (isIndentation_) elements_.text.resize(lastTag_);
    }

    void tagEnded() {
        lastTag_ = elements_.text.size();
        isIndentation_ = true;
    }

    void start(const XML_Char* name, const XML_Char** attributes) {
        dropIndentation();
        const auto place = static_cast<std::uint32_t>(elements_.entries.size());
        XmlElements::Entry& entry = elements_.entries.emplace_back();
        entry.name = nameOf(name);
        entry.text.start = lengthOf(elements_.text);
        entry.firstAttribute = static_cast<std::uint32_t>(elements_.attributes.size());
        if (*attributes != nullptr) {
            // Not those that a document type adds: they are not in the element.
            const int specified = XML_GetSpecifiedAttributeCount(parser_.get());
            for (int i = 0; i < specified; i += 2)
                elements_.attributes.push_back({keep(attributes[i]), keep(attributes[i + 1])});
            entry.attributeCount = static_cast<std::uint32_t>(specified / 2);
        }
        std::uint32_t previousSibling = 0;
        if (!open_.empty()) {
            Open& parent = open_.back();
            entry.parent = parent.place;
            previousSibling = std::exchange(parent.lastChild, place);
            if (previousSibling != 0) elements_.entries[previousSibling].nextSibling = place;
        }
        open_.push_back({place, previousSibling});
        tagEnded();
    }

    void end() {
        const Open ended = open_.back();
        if (ended.lastChild != 0) dropIndentation();
        XmlElements::Piece& text = elements_.entries[ended.place].text;
        text.length = lengthOf(elements_.text) - text.start;
        if (open_.size() <= deepest_) {
            ended_(XmlElement(elements_, ended.place), open_.size());
            drop(ended);
        }
        open_.pop_back();
        tagEnded();
    }

    /// Takes the element that stands last, with all in it, out of its parent.
    void drop(const Open& last) {
        const XmlElements::Entry& entry = elements_.entries[last.place];
        if (entry.firstAttribute < elements_.attributes.size()) {
            elements_.labels.resize(elements_.attributes[entry.firstAttribute].name.start);
            elements_.attributes.resize(entry.firstAttribute);
        }
        elements_.text.resize(entry.text.start);
        elements_.entries.resize(last.place);
        if (last.previousSibling != 0) elements_.entries[last.previousSibling].nextSibling = 0;
        if (open_.size() > 1) open_[open_.size() - 2].lastChild = last.previousSibling;
    }

    struct Name {
        std::string asWritten;
        XmlElements::Piece inCapitals{};
    };

    struct ParserDeleter {
        void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
    };

    XmlElements elements_;
    const std::size_t deepest_;
    const ElementEnded& ended_;
    std::unique_ptr<std::remove_pointer_t<XML_Parser>, ParserDeleter> parser_;
    std::vector<Open> open_;
    std::array<Name, 64> recentNames_;
    std::size_t lastTag_ = 0;    // length of the text at the last tag
    bool isIndentation_ = true;  // all character data since
    const char* refusal_ = nullptr;
    std::exception_ptr failure_;
};

}  // namespace

void readXml(Disk& disk, const std::string& path, std::size_t deepest, const ElementEnded& ended) {
    Builder builder(deepest, ended);
    disk.readPieces(path, [&](std::string_view piece) { builder.parse(piece); });
    builder.finish();
}
