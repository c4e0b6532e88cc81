#include "import/EtsImport.h"

#include <gtest/gtest.h>

#include <string>

#include "support/EditorWorld.h"

namespace {

constexpr const char* formatMessage = "This file is not in ETS2 or ETS3 Esf format.\n";

class EtsImportTest : public testing::Test, public EditorWorld {
 protected:
    /// What comes of it: messages, and how many devices and items.
    std::string imported(const std::string& text) {
        disk.files["/plans/house.esf"] = text;
        desktop.willChoose("/plans/house.esf");
        editor.mnuImpCfg_Click();
        expectTreeAndRegistriesAgree(document);
        return told() + std::to_string(document.devices().count()) + " " +
               std::to_string(document.items().count());
    }
};

TEST_F(EtsImportTest, ImportsTheSampleAndStopsAtADimmer) {
    const auto machine = systemDisk();
    EXPECT_EQ(imported(machine->read(SAMPLES_DIR "/house.esf")), "15 150");
    EXPECT_EQ(imported(machine->read(SAMPLES_DIR "/house-dimmer.esf")),
              formatMessage + std::string("2 10"));
    EXPECT_EQ(imported(machine->read(SAMPLES_DIR "/house.esf")), "15 150") << "the editor goes on";
}

TEST_F(EtsImportTest, SurvivesFilesThatAreNoExports) {
    EXPECT_EQ(imported(std::string(100'000'000, 'x')), "0 0");
    EXPECT_EQ(imported(std::string("A.L.1/1/0\tNa\0me\tEIS 1\r\n", 23)), "1 1");
    EXPECT_EQ(outline(document), "L[Na_me]");
    disk.readFault = ErrorNumber::permissionDenied;
    EXPECT_EQ(imported(""), formatMessage + std::string("0 0"));
    EXPECT_EQ(outline(document), "");
    EXPECT_EQ(document.currentPath(), "/plans/house.xml");
}

}  // namespace
