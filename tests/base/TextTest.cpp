// Parsing of numbers, comparison and conversion of texts.
#include "base/Text.h"

#include "base/Numbers.h"
#include "model/Addresses.h"
#include "support/ScriptedUser.h"

namespace {

/// Checks each text of a table with lines such as "expected: one|other".
void forEachIn(const std::string& table,
               const std::function<std::string(const std::string&)>& act) {
    for (const std::string& line : split(table, "\n")) {
        const auto [expected, texts] = cut(line, ": ");
        for (const std::string& text : split(texts, "|"))
            try {
                EXPECT_EQ(act(text), expected) << text;
            } catch (const RunTimeError& error) {
                EXPECT_EQ("overflow", error.number() == ErrorNumber::overflow ? expected : "")
                    << text;
            }
    }
}

TEST(Numbers, EndAtTheFirstInvalidCharacter) {
    const std::string zeros(309, '0');
    forEachIn("0: |   |abc|-|+-1|- 7|.|-.|.e1|inf|-infinity|nan|0x10|0e999|1e-400|-1e-400|0." +
                  zeros + "1|1" + zeros +
                  "e-800|0.01e-2147483647|0.01e-9223372036854775807|"
                  "1e-99999999999999999999\n"
                  "1: 1,5|01.|1e|1e+|1ex|1.0.5|1 2|10e-1|1" +
                  zeros +
                  "e-309\n"
                  "250: 250ms| \t 250|\r\t250\r|+250|2.5e2|2.5E+02|25.e1\n"
                  "overflow: 2147483647.5|-2147483648.6|1e400|-1e400|1" +
                  zeros + "|0." + zeros +
                  "1e2000|1e99999999999999999999|10e2147483647|10e9223372036854775807\n"
                  // Halves to even.
                  "0: 0.5|-0.5\n2: 1.5|2.5|2.49\n-2: -1.5|-2.5\n3: 2.51\n"
                  "2147483647: 2147483647.4\n-2147483648: -2147483648.5",
              [](const auto& text) { return std::to_string(readInt32(text)); });
    forEachIn("32767: 32767.4\n-32768: -32768.5\noverflow: 32767.5|40000|-32768.6|1e400",
              [](const auto& text) { return std::to_string(readInt16(text)); });
    forEachIn("yes: 1e3| 10\t|-2.5|+.5\nno: |10ms|1 2|x|1e|-",
              [](const auto& text) { return isNumber(text) ? "yes" : "no"; });
}

TEST(Addresses, HaveAnIndexInFourDigitsOrMore) {
    forEachIn(
        "0A03: 1/2/3| 1 / 2 / 3 |1/2/3/4|0/10/3|1/2/2.7\nFFFF: 31/7/255\n0001: //1\n"
        "0A00: 1/2|1/2/|1/2/x\n0000: |/|a/b/c\n10000: 32/0/0\n7FFFFFFF: 1048575/7/255\n"
        "FFFFFFFF: 0/0/-1\nFFFFFE00: -.25/\noverflow: 1048576/0/0|1e400/0/0|1e400/-1e400/0",
        [](const auto& address) { return AddressToHex(address, 4); });
}

TEST(Letters, AreComparedWithoutCaseAndSortedAlphabetically) {
    forEachIn(
        "equal: azAZ.12@[`{zÄ AZaz.12@[`{Zä|lampazAZ LAMPAZaz|àþœšžßÿµ1a ÀÞŒŠŽßÿµ1A\n"
        "different: Plant Plan|Plan Plant|\xEF\xBF\xBD \x80\x80\x80|@[ `{|× ÷|Ä ae|ÿ Ÿ|µ Μ|ß ẞ",
        [](const auto& pair) {
            const auto [one, other] = cut(pair, " ");
            const bool areEqual = equalIgnoringCase(one, other);
            EXPECT_EQ(areEqual, hashIgnoringCase(one) == hashIgnoringCase(other)) << pair;
            EXPECT_EQ(areEqual, upperCase(one) == upperCase(other)) << pair;
            return areEqual ? "equal" : "different";
        });
    const auto sorted = split(
        "0|00|1|1a|01b|2|4/0/1|4/10/1|10|10/1/1|9007199254740993|18446744073709551616|A1B2|A1B10|"
        "A01B11|A2|aa|Àb|Apfel|apfel|Äpfel|äpfel|Apfelbaum|Birne|Çb|Ce|Ðb|Èb|Etage|étage 2|"
        "Etui|Ìb|Ñb|Øb|Œc|Šb|ßb2|Þa|Úb|Ýb|Ÿc|ÿd|Z|Žena|zz|×|б",
        "|");
    for (std::size_t i = 0; i < sorted.size(); ++i)
        for (std::size_t j = 0; j < sorted.size(); ++j)
            EXPECT_EQ(alphabeticallyBefore(sorted[i], sorted[j]), i < j)
                << sorted[i] + " " + sorted[j];
}

TEST(Names, AreShortenedInTheMiddleByCharacters) {
    for (const std::string letter : {"x", "é", "\U0001F4A1"}) {
        std::string name;
        for (int i = 0; i < 30; ++i)
            name += letter;
        EXPECT_EQ(shortened(name + name), name + name);
        EXPECT_EQ(shortened(name + "y" + name), name + "…" + name.substr(letter.size()));
    }
    EXPECT_EQ(shortened("a" + std::string(99, '\x80')).substr(0, 2), "a\x80");
}

TEST(Letters, InInvalidUtf8AreOneCharacterPerByte) {
    forEachIn(
        "1: \xE2|\x80|É|€|\u0080|\u0800|\uD7FF|\uE000|\uFFFF|\U00010000|\U0010FFFF\n"
        "2: \xC0\xBC|\xC1\xBF|\xE0\xBC|\xF0\xBC\n3: \xED\xA0\x80|\xED\xBF\xBF\n4: "
        "\xF4\x90\x80\x80\n"
        "5: \xF8\x88\x80\x80\x80",
        [](const auto& text) {
            int count = 0;
            for (std::size_t at = 0; at < text.size(); ++count)
                nextCharacter(text, at);
            EXPECT_EQ(upperCase(text), text);
            return std::to_string(count);
        });
    std::string latin1;
    appendLatin1(latin1, "5 €, üÿ.\x80");
    EXPECT_EQ(latin1, "5 ?, \xFC\xFF.?");
    EXPECT_EQ(fromWindows1252("\xE8\x80\x81\x9F\xA0"), "è€\u0081Ÿ\u00A0");
}

}  // namespace
