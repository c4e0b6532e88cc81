#include "file/XmlParser.h"

#include <expat.h>

#include <cstring>
#include <deque>
#include <exception>
#include <memory>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "base/RunTimeError.h"
#include "base/Text.h"

namespace {

/// Builds elements from Expat's events and passes them to the listener. Expat delivers character
/// data only inside wanted children: most character data of a file is indentation.
class Builder {
 public:
    explicit Builder(XmlListener& listener)
        : listener_(listener), parser_(XML_ParserCreate(nullptr)) {
        if (parser_ == nullptr) throw std::bad_alloc();
        XML_SetUserData(parser_.get(), this);
        XML_SetElementHandler(parser_.get(), startElement, endElement);
        XML_SetCommentHandler(parser_.get(), comment);
        XML_SetProcessingInstructionHandler(parser_.get(), processingInstruction);
        XML_SetEntityDeclHandler(parser_.get(), entityDeclared);
        XML_SetAttlistDeclHandler(parser_.get(), attributeDeclared);
        XML_SetNotStandaloneHandler(parser_.get(), notStandalone);
        XML_SetUnknownEncodingHandler(parser_.get(), unknownEncoding, this);
    }

    /// Returns a buffer for the next piece of the text.
    char* room(std::size_t bytes) {
        void* const room = XML_GetBuffer(parser_.get(), static_cast<int>(bytes));
        if (room == nullptr) throw std::bad_alloc();
        room_ = static_cast<char*>(room);
        return room_;
    }

    /// Parses that many bytes of the buffer. Few large pieces are faster than many small ones:
    /// Expat counts the lines of each piece but the last in advance.
    void parse(std::size_t bytes, bool isLast) {
        // The byte order mark overrides the declared encoding.
        if (!std::exchange(hasBegun_, true) &&
            std::string_view(room_, bytes).starts_with("\xEF\xBB\xBF")) {
            XML_SetEncoding(parser_.get(), "UTF-8");
        }
        const auto status =
            XML_ParseBuffer(parser_.get(), static_cast<int>(bytes), isLast ? XML_TRUE : XML_FALSE);
        if (failure_ != nullptr) std::rethrow_exception(failure_);
        if (status == XML_STATUS_OK) return;
        const auto code = XML_GetErrorCode(parser_.get());
        if (code == XML_ERROR_NO_MEMORY) throw std::bad_alloc();
        refuse(XML_ErrorString(code));
    }

 private:
    /// Expat is written in C, so no exception may pass through it. The exception is stored, Expat
    /// stops, and parse() throws the exception again.
    template <typename Event>
    void guard(const Event& event) {
        if (failure_ != nullptr) return;  // Expat may still report the event that it was working on
        try {
            event(*this);
        } catch (...) {
            failure_ = std::current_exception();
            XML_StopParser(parser_.get(), XML_FALSE);
        }
    }

    [[noreturn]] void refuse(const char* reason) {
        listener_.line = XML_GetCurrentLineNumber(parser_.get());
        throw RunTimeError(ErrorNumber::invalidFileFormat,
                           "Line " + std::to_string(listener_.line) + ": " + reason);
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
            builder.text().append(data, static_cast<std::size_t>(length));
        });
    }

    /// Windows-1252 is not built into Expat.
    static int XMLCALL unknownEncoding(void* userData, const XML_Char* name,
                                       XML_Encoding* encoding) {
        if (!equalIgnoringCase(name, "windows-1252")) return XML_STATUS_ERROR;
        of(userData).guard([&](Builder& /*builder*/) {
            char byte = 0;
            for (int& code : encoding->map) {
                const std::string character = fromWindows1252({&byte, 1});
                std::size_t position = 0;
                code = static_cast<int>(nextCharacter(character, position));
                ++byte;
            }
        });
        return XML_STATUS_OK;
    }

    static void XMLCALL comment(void* userData, const XML_Char* /*text*/) {
        of(userData).guard([](Builder& builder) { builder.listener_.pieceRead(); });
    }

    static void XMLCALL processingInstruction(void* userData, const XML_Char* /*target*/,
                                              const XML_Char* /*data*/) {
        comment(userData, nullptr);
    }

    static void XMLCALL entityDeclared(void* userData, const XML_Char* /*name*/, int /*parameter*/,
                                       const XML_Char* /*value*/, int /*length*/,
                                       const XML_Char* /*base*/, const XML_Char* /*system*/,
                                       const XML_Char* /*publicId*/, const XML_Char* /*notation*/) {
        of(userData).guard(
            [](Builder& builder) { builder.refuse("entity declarations are not accepted"); });
    }

    static void XMLCALL attributeDeclared(void* userData, const XML_Char* /*element*/,
                                          const XML_Char* /*attribute*/, const XML_Char* /*type*/,
                                          const XML_Char* /*value*/, int /*isRequired*/) {
        of(userData).guard(
            [](Builder& builder) { builder.refuse("attribute declarations are not accepted"); });
    }

    /// Refuses a text that depends on declarations in another file. Entities that are declared
    /// there would be dropped without a message.
    static int XMLCALL notStandalone(void* /*userData*/) { return XML_STATUS_ERROR; }

    void start(const XML_Char* name, const XML_Char** attributes) {
        listener_.pieceRead();
        if (open_ + levelsInside_ == maxElementDepth) {
            refuse("elements lie within one another too deep");
        }
        if (wantsChildren_) {
            if (levelsInside_++ == 0) {
                beginChild(name);
            } else {
                dropIndentation();
            }
            noteTag(true);
            return;
        }
        if (open_ == elements_.size()) elements_.emplace_back();
        XmlElement& element = elements_[open_];
        element.parent = open_ == 0 ? nullptr : &elements_[open_ - 1];
        ++open_;
        element.name.clear();
        appendUpperCase(element.name, name);
        element.attributes.clear();
        for (; *attributes != nullptr; attributes += 2)
            element.attributes.emplace_back(attributes[0], attributes[1]);
        element.children = {};
        if (listener_.wantsLines()) listener_.line = XML_GetCurrentLineNumber(parser_.get());
        wantsChildren_ = listener_.began(element);
        childCount_ = 0;
    }

    void end() {
        if (levelsInside_ > 0) {
            if (!lastTagBegan_) dropIndentation();
            if (--levelsInside_ == 0) endChild();
            noteTag(false);
            return;
        }
        XmlElement& element = elements_[open_ - 1];
        if (std::exchange(wantsChildren_, false)) {
            element.children = std::span(children_).first(childCount_);
        }
        listener_.ended(element);
        --open_;
    }

    void beginChild(const XML_Char* name) {
        if (childCount_ == children_.size()) {
            children_.emplace_back();
            namesAsWritten_.emplace_back();
        }
        // Most often all such elements of a file have the same children, in the same order.
        std::string& asWritten = namesAsWritten_[childCount_];
        XmlElement::Child& child = children_[childCount_++];
        if (std::strcmp(asWritten.c_str(), name) != 0) {
            asWritten = name;
            child.name = upperCase(name);
        }
        child.text.clear();
        XML_SetCharacterDataHandler(parser_.get(), characterData);
    }

    void endChild() { XML_SetCharacterDataHandler(parser_.get(), nullptr); }

    /// The text of the child that began last.
    std::string& text() { return children_[childCount_ - 1].text; }

    /// Removes the character data since the last tag if it is only white space. White space
    /// between tags is indentation.
    void dropIndentation() {
        if (text().find_first_not_of(" \t\n\r", lastTag_) == std::string::npos) {
            text().resize(lastTag_);
        }
    }

    /// Remembers that a tag follows the character data read so far.
    void noteTag(bool begins) {
        lastTag_ = text().size();
        lastTagBegan_ = begins;
    }

    struct ParserDeleter {
        void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
    };

    XmlListener& listener_;
    std::unique_ptr<std::remove_pointer_t<XML_Parser>, ParserDeleter> parser_;
    std::deque<XmlElement> elements_;  // the open ones first; the others are reused
    std::size_t open_ = 0;
    std::exception_ptr failure_;
    char* room_ = nullptr;  // the buffer for the next piece
    bool hasBegun_ = false;

    // About the innermost open element, if its children are wanted.
    bool wantsChildren_ = false;
    std::size_t levelsInside_ = 0;             // open elements inside it
    std::vector<XmlElement::Child> children_;  // those after the first childCount_ are reused
    std::vector<std::string> namesAsWritten_;  // of the children
    std::size_t childCount_ = 0;
    std::size_t lastTag_ = 0;  // length of the text at the last tag
    bool lastTagBegan_ = false;
};

}  // namespace

void readXml(Disk& disk, const std::string& path, XmlListener& listener) {
    Builder builder(listener);
    disk.readPieces(
        path, [&](std::size_t bytes) { return builder.room(bytes); },
        [&](std::size_t bytes, bool isLast) { builder.parse(bytes, isLast); },
        [&] { listener.pieceRead(); });
}
