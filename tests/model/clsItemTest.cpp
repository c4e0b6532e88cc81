#include "model/clsItem.h"

#include <gtest/gtest.h>

#include <string>

#include "model/RunTimeError.h"

namespace {

TEST(ItemRecord, GetsTypeAndSizeFromTheExportedSizeText) {
    const auto import = [](const std::string& text) {
        clsItem item;
        item.SetByEts({"A.B.1/1/1", "L", text});
        return item.sDataType + " " + std::to_string(item.nElements);
    };
    EXPECT_EQ(import("EIS 1 'Switching' (1 Bit)"), "EIS1 0");
    EXPECT_EQ(import("EIS 14 'Access Control' (14 Byte)"), "EIS1 0");
    EXPECT_EQ(import("Uncertain (14 Byte)"), "NOEIS 14");
    EXPECT_EQ(import("eis 1 (2.5 Byte)"), "NOEIS 2");
    EXPECT_EQ(import("( Byte)"), "NOEIS 0");
    EXPECT_EQ(import("(4Byte)"), "NOEIS 0") << "the 4 is cut off in place of a blank";
    EXPECT_EQ(import("14 Byte)"), "NOEIS 14") << "without ( the text begins the number";
    EXPECT_EQ(import("(1) (2 Byte)"), "NOEIS 1");
    for (const char* noBytes : {"EIS 2 'Dimming' (4 Bit)", "", "(Byte)", "Byte) (4"})
        EXPECT_THROW(import(noBytes), RunTimeError) << noBytes;
}

TEST(ItemRecord, HasAnExportedNameOfLettersAndDigitsOnly) {
    clsItem item;
    EXPECT_EQ(item.SetByEts({"A.B Z.1/1/1", "azAZ09 /:@[`{-\u00E9\x80", "EIS 1"}), "B_Z");
    EXPECT_EQ(item.sKey, "B_Z.azAZ09__________");
}

}  // namespace
