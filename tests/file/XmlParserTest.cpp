#include "file/XmlParser.h"

#include <gtest/gtest.h>

#include <string>

#include "model/RunTimeError.h"

namespace {

std::string utf16(std::string_view ascii) {
    std::string bytes = "\xFF\xFE";
    for (const char c : ascii)
        bytes.append(1, c).append(1, '\0');
    return bytes;
}

/// The root's attribute "n", and its text.
std::string read(std::string_view text) {
    std::string read;
    readXml(text, 1, [&](XmlElement root, std::size_t /*depth*/) {
        read = root.attribute("n").append(" ").append(root.text());
    });
    return read;
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
    for (const auto& text : texts)
        EXPECT_EQ(read(text), "ä é") << text;
    EXPECT_EQ(read(declared + "windows-1252'?><a n=''>\x80\x81</a>"), " €\xC2\x81");
}

TEST(XmlParser, TakesNoIndentationForText) {
    EXPECT_EQ(read("<a n=''>\n\t<b> x </b>\r\n\t<b>&#9;</b>\n</a>"), "  x \t");
}

TEST(XmlParser, RefusesBytesThatAreNoText) {
    EXPECT_THROW(read(std::string_view("<a>\0</a>", 8)), RunTimeError);
}

}  // namespace
