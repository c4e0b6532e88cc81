#include "file/XmlParser.h"

#include <gtest/gtest.h>

#include <string>

#include "model/RunTimeError.h"

namespace {

/// Why the text is refused; "" when it is not.
std::string refusalOf(std::string_view text) {
    try {
        const XmlDocument document(text);
        return {};
    } catch (const RunTimeError& error) {
        EXPECT_EQ(error.number(), ErrorNumber::invalidFileFormat);
        return error.description();
    }
}

std::string utf16(std::string_view ascii) {
    std::string bytes = "\xFF\xFE";
    for (const char c : ascii)
        bytes.append(1, c).append(1, '\0');
    return bytes;
}

TEST(XmlParser, TellsLineAndReasonOfWhatIsNotXml) {
    const struct {
        std::string text;
        std::string refusal;
    } cases[] = {
        {"", "Line 1: no element found"},
        {"<a>\n<b></b>\n", "Line 3: no element found"},
        {"<a>\n<b>\n</a>", "Line 3: mismatched tag"},
        {"<a/>\n<b/>", "Line 2: junk after document element"},
        {std::string("<a>\0</a>", 8), "Line 1: not well-formed (invalid token)"},
        {"<a>\r\n<c>1 < 2</c></a>", "Line 2: not well-formed (invalid token)"},
        {"<a>Fish & Chips</a>", "Line 1: not well-formed (invalid token)"},
        {"<a><1st_floor/></a>", "Line 1: not well-formed (invalid token)"},
        {"<a>\xFC</a>", "Line 1: not well-formed (invalid token)"},
        {"<a n='1' n='2'/>", "Line 1: duplicate attribute"},
        {"<a>&nbsp;</a>", "Line 1: undefined entity"},
        {"<?xml version='1.0' encoding='windows-1251'?><a/>", "Line 1: unknown encoding"},
    };
    for (const auto& [text, refusal] : cases)
        EXPECT_EQ(refusalOf(text), refusal) << text;
}

TEST(XmlParser, RefusesEntitiesWhateverTheyWouldDo) {
    std::string laughs = "<!DOCTYPE a [<!ENTITY l0 'ha'>";
    for (int i = 1; i < 30; ++i)
        laughs += "<!ENTITY l" + std::to_string(i) + " '&l" + std::to_string(i - 1) + ";&l" +
                  std::to_string(i - 1) + ";'>";
    std::string chain = "<!DOCTYPE a [<!ENTITY e0 'x'>";
    for (int i = 1; i < 20'000; ++i)
        chain += "<!ENTITY e" + std::to_string(i) + " '&e" + std::to_string(i - 1) + ";'>";
    const std::string texts[] = {
        "<!DOCTYPE a [<!ENTITY file SYSTEM 'file:///etc/passwd'>]><a>&file;</a>",
        "<!DOCTYPE a [<!ENTITY % p '<!ENTITY q \"x\">'> %p;]><a>&q;</a>",
        laughs + "]><a>&l29;</a>",
        chain + "]><a n='&e19999;'/>",
    };
    for (const auto& text : texts)
        EXPECT_EQ(refusalOf(text), "Line 1: entity declarations are not accepted");
}

TEST(XmlParser, RefusesEntitiesThatAreDeclaredElsewhere) {
    for (const char* content : {"<a>&x;</a>", "<a n='&x;'/>", "<a n='Plant_&x;1'/>"}) {
        EXPECT_NE(refusalOf(std::string("<!DOCTYPE a SYSTEM 'a.dtd'>") + content), "") << content;
        EXPECT_NE(refusalOf(std::string("<!DOCTYPE a [%p; <!ENTITY x 'y'>]>") + content), "")
            << content;
    }
}

TEST(XmlParser, AcceptsDocumentTypesWithoutEntities) {
    EXPECT_EQ(refusalOf("<!DOCTYPE a><a/>"), "");
    const XmlDocument document(
        "<!DOCTYPE a [<!ELEMENT a EMPTY><!ATTLIST a port CDATA 'COM9'>]><a name='x'/>");
    EXPECT_EQ(document.root().attribute("name"), "x");
    EXPECT_THROW(document.root().attribute("port"), RunTimeError) << "the element has none";
}

TEST(XmlParser, ReadsEveryEncodingThatItKnows) {
    const std::string declared = "<?xml version='1.0' encoding='";
    const std::string texts[] = {
        "<a n='\xC3\xA4'>\xC3\xA9</a>",
        "\xEF\xBB\xBF<a n='\xC3\xA4'>\xC3\xA9</a>",
        declared + "utf-8'?><a n='\xC3\xA4'>\xC3\xA9</a>",
        declared + "ISO-8859-1'?><a n='\xE4'>\xE9</a>",
        declared + "Windows-1252'?><a n='\xE4'>\xE9</a>",
        declared + "us-ascii'?><a n='&#228;'>&#xE9;</a>",
        utf16(declared + "UTF-16'?><a n='&#228;'>&#xE9;</a>"),
    };
    for (const auto& text : texts) {
        const XmlDocument document(text);
        EXPECT_EQ(document.root().attribute("n"), "ä") << text;
        EXPECT_EQ(document.root().text(), "é") << text;
    }
    EXPECT_EQ(XmlDocument(declared + "windows-1252'?><a>\x80\x81</a>").root().text(), "€\xC2\x81");
}

TEST(XmlParser, TakesNoIndentationForText) {
    const XmlDocument document("<a>\n\t<b> x </b>\r\n\t<b>&#9;</b>\n</a>");
    EXPECT_EQ(document.root().text(), " x \t");
}

}  // namespace
