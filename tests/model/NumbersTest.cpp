#include "model/Numbers.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "model/RunTimeError.h"

namespace {

TEST(LeadingNumber, StopsAtTheFirstCharacterThatCannotContinueIt) {
    const double infinity = std::numeric_limits<double>::infinity();
    const std::string zeros(400, '0');
    const struct {
        double number;
        std::vector<std::string> texts;
    } cases[] = {
        {0, {"", "   ", "abc", "-", "+-1", "- 7", ".", "-.", ".e1", "inf", "-infinity", "nan"}},
        {0, {"0x10", "0e999", "1e-400", "-1e-400", "0." + zeros + "1", "1" + zeros + "e-800"}},
        {1, {"1,5", "01.", "1e", "1e+", "1ex", "1.0.5", "1 2", "10e-1", "1" + zeros + "e-400"}},
        {250, {"250ms", " \t 250", "\r\n\t250\r\n", "+250", "2.5e2", "2.5E+02", "25.e1"}},
        {-0.25, {"-.25", "-25e-2"}},
        {infinity, {"1e400", "1" + zeros, "0." + zeros + "1e2000", "1e99999999999999999999"}},
        {-infinity, {"-1e400"}},
        // Exponents at the ends of 32 and 64 bits: adding the digits to them must not wrap.
        {infinity, {"10e2147483647", "10e9223372036854775807"}},
        {0, {"0.01e-2147483647", "0.01e-9223372036854775807", "1e-99999999999999999999"}}};
    for (const auto& [number, texts] : cases)
        for (const std::string& text : texts)
            EXPECT_EQ(leadingNumber(text), number) << text.substr(0, 40);
}

TEST(ReadInteger, RoundsHalvesToEvenAndRefusesWhatDoesNotFit) {
    const auto read = [](auto reader, const char* text) -> std::string {
        try {
            return std::to_string(reader(text));
        } catch (const RunTimeError& error) {
            return error.description();
        }
    };
    const struct {
        const char* number;
        std::vector<const char*> of16Bits, of32Bits;
    } cases[] = {{"0", {"0.5", "-0.5", "abc"}, {"0.5", "-0.5", "abc"}},
                 {"2", {"1.5", "2.5", "2.49"}, {"1.5", "2.5", "2.49"}},
                 {"-2", {"-1.5", "-2.5"}, {"-1.5", "-2.5"}},
                 {"3", {"2.51"}, {"2.51"}},
                 {"32767", {"32767.4"}, {"32767.4"}},
                 {"-32768", {"-32768.5"}, {"-32768.5"}},
                 {"2147483647", {}, {"2147483647.4"}},
                 {"-2147483648", {}, {"-2147483648.5"}},
                 {"Overflow", {"32767.5", "-32768.51", "1e400", "-1e400"}, {"2147483647.5"}},
                 {"Overflow", {"2147483647"}, {"-2147483648.6", "1e400", "-1e400"}}};
    for (const auto& [number, of16Bits, of32Bits] : cases) {
        for (const char* text : of16Bits)
            EXPECT_EQ(read(readInt16, text), number) << text;
        for (const char* text : of32Bits)
            EXPECT_EQ(read(readInt32, text), number) << text;
    }
}

}  // namespace
