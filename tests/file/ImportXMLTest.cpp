#include "file/ImportXML.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/EditorWorld.h"

namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

constexpr const char* path = "/home/ann/house.xml";

class ImportXMLTest : public ::testing::Test {
 protected:
    FakeDisk disk;
    FakeDesktop desktop;
    Document document;

    bool read(const std::string& text) {
        disk.files[path] = text;
        desktop.forgetMessages();
        document.startAt(path);
        const bool success = ImportXML(path, document, disk, desktop, [] {});
        EXPECT_EQ(desktop.pointer, Pointer::normal);
        expectTreeAndRegistriesAgree(document);
        return success;
    }
};

std::string replaced(std::string text, const std::string& piece, const std::string& by) {
    const auto place = text.find(piece);
    EXPECT_NE(place, std::string::npos) << piece;
    return text.replace(place, piece.size(), by);
}

TEST_F(ImportXMLTest, ReadsAConfigurationIntoTreeRecordsAndSettings) {
    ASSERT_TRUE(read(std::string(exampleText)));
    EXPECT_THAT(desktop.messages(), IsEmpty());
    EXPECT_EQ(outline(document), "Plant[Light1 FLOOR1[Text1]]");
    EXPECT_EQ(document.settings().port + document.settings().ediType, "COM3USBEMI1");
    EXPECT_EQ(document.settings().timeout, 2500);

    const auto& device = *document.devices().at("Plant");
    EXPECT_EQ(device.getPort() + device.getEdiType(), "COM2PEI10x19200");
    EXPECT_EQ(device.getTimeout(), 1500);
    const auto& light = *document.items().at("Plant.Light1");
    EXPECT_EQ(light.sComment + light.sAddress + light.sDataType + light.sAccessRight,
              "Hall light1/2/3EIS1READWRITE");
    EXPECT_TRUE(light.bFlag);
    const auto& text = *document.items().at("Plant.FLOOR1.Text1");
    EXPECT_EQ(text.sPlcname, "Plant");
    EXPECT_EQ(text.nElements, 14);
    EXPECT_FALSE(text.bFlag);

    for (const char* shown : {"config", "Plant", "Plant.FLOOR1"})
        EXPECT_TRUE(document.tree().nodeAt(shown).expanded()) << shown;
}

TEST_F(ImportXMLTest, MatchesElementNamesInAnyCaseAndReadsBranchNamesInCapitals) {
    ASSERT_TRUE(read(
        "<?xml version='1.0' encoding='ISO-8859-1'?><quoneibcfg><Ignored/><opc_da>"
        "<Device name='Plant' port='' editype='' timeout='1501.5'>"
        "<TAGS>text<\xE9tage_\xFC\xDF>" +
        branch("Room", replaced(replaced(tag("a"), "<tag>", "<Tag>"), "</tag>", "</Tag>")) +
        "</\xE9tage_\xFC\xDF></TAGS>" + branch("nothing", tag("c")) + "<tags>" +
        replaced(tag("b"), ">READ<", ">Read<") +
        "</tags></Device><Other name='N' port='' editype='' timeout='1'/></opc_da></quoneibcfg>"));
    EXPECT_THAT(desktop.messages(), IsEmpty());
    EXPECT_EQ(outline(document), "Plant[ÉTAGE_Üß[ROOM[a]] b]");
    EXPECT_TRUE(document.items().at("Plant.ÉTAGE_Üß.ROOM.a")->bFlag);
    EXPECT_FALSE(document.items().at("Plant.b")->bFlag) << "a value's case counts";
    EXPECT_EQ(document.devices().at("Plant")->getTimeout(), 1502);
}

TEST_F(ImportXMLTest, TakesTheWholeTextOfAField) {
    const std::string text = "<!-- the --><![CDATA[Fish]]>_<?now?>&amp;&#95;<b>Chips</b>";
    ASSERT_TRUE(
        read(configuration(plc("Plant", replaced(tag(text), "<comment>", "<comment> \t")))));
    EXPECT_EQ(outline(document), "Plant[Fish_&_Chips]");
    EXPECT_EQ(document.items().at("Plant.Fish_&_Chips")->sComment, " \t");
}

TEST_F(ImportXMLTest, LeavesTheSettingsWhenTheFileHasNoneThatCanBeRead) {
    const std::string attributes = "port='COM5' editype='USBEMI2' timeout='99999999999'";
    const struct {
        std::string settings;
        std::vector<std::string> messages;
    } cases[] = {
        {"", {}},
        {"<SETTINGS " + attributes + "/>", {" Error n. 6  Overflow in ImportXML"}},
        {"<SETTINGS " + replaced(attributes, "editype", "other") + "/>",
         {" Error n. 94  Invalid use of Null in ImportXML"}},
    };
    for (const auto& [settings, messages] : cases) {
        EXPECT_TRUE(read(configuration(plc("Plant"), settings)));
        EXPECT_THAT(desktop.messages(), ElementsAreArray(messages)) << settings;
        EXPECT_TRUE(document.settings() == GlobalSets{}) << settings;
        EXPECT_EQ(outline(document), "Plant[]");
    }
}

TEST_F(ImportXMLTest, PassesOverAFaultyElementWithItsContentsAndReadsTheRest) {
    const std::string null = " Error n. 94  Invalid use of Null in ";
    const std::string overflow = " Error n. 6  Overflow in ";
    const std::string keyTaken =
        " Error n. 457  This key is already associated with an element of this collection in ";
    const std::string notUnique = " Error n. 35602  Key is not unique in collection in ";
    const std::string noCall = " Error n. 5  Invalid procedure call or argument in ";
    const std::string late = replaced(plc("A", tag("x")), "1500", "99999999999");
    const std::string many = replaced(tag("x"), "</tag>", "<elements>40000</elements></tag>");

    struct Case {
        std::string devices;  // before B, which is sound
        std::string message;  // ends with the routine's name
        std::string outline;
    };
    std::vector<Case> cases = {
        {late, overflow + "BrowsePlc", "B[]"},
        {plc("", tag("x")), noCall + "BrowsePlc", "B[]"},
        {plc("config", tag("x")), notUnique + "BrowsePlc", "B[]"},
        {plc("A", tag("x")) + plc("A", tag("y")), keyTaken + "BrowsePlc", "A[x] B[]"},
        {plc("é") + plc("É", tag("y")), keyTaken + "BrowsePlc", "é[] B[]"},
        {plc("A", branch("F", many + tag("y"))), overflow + "BrowseBranch", "A[F[y]] B[]"},
        {plc("A", tag("x") + branch("F", tag("x") + tag("x")) + tag("y")),
         keyTaken + "BrowseBranch", "A[x F[x] y] B[]"},
        {plc("A", tag("x") + tag("X") + tag("y")), keyTaken + "BrowseBranch", "A[x y] B[]"},
        {plc("A", branch("F", tag("x")) + branch("f", tag("y")) + tag("z")),
         keyTaken + "BrowseBranch", "A[F[x] z] B[]"},
        {plc("A", branch("F", tag("x")) + tag("F") + tag("y")), notUnique + "BrowseBranch",
         "A[F[x] y] B[]"},
        {plc("A", tag("F") + branch("F", branch("G", tag("x"))) + tag("y")),
         notUnique + "BrowseBranch", "A[F y] B[]"},
        {plc("A", branch("F", tag("x")) + tag("F.x") + tag("y")), keyTaken + "BrowseBranch",
         "A[F[x] y] B[]"},
    };
    for (const char* attribute : {" name", " port", " editype", " timeout"})
        cases.push_back({replaced(plc("A", tag("x")), attribute, " a"), null + "BrowsePlc", "B[]"});
    for (const std::string field :
         {"name", "comment", "address", "eistype", "flag", "accessrights"}) {
        const std::string renamed = replaced(tag("x"), "<" + field, "<no");
        cases.push_back({plc("A", replaced(renamed, "</" + field, "</no") + tag("y")),
                         null + "BrowseBranch", "A[y] B[]"});
    }

    for (const auto& [devices, message, outlineRead] : cases) {
        SCOPED_TRACE(devices);
        EXPECT_TRUE(read(configuration(devices + plc("B"))));
        EXPECT_THAT(desktop.messages(), ElementsAre(message));
        EXPECT_EQ(outline(document), outlineRead);
    }
}

TEST_F(ImportXMLTest, TakesTheParentOfAThingFromTheFileNotFromItsKey) {
    ASSERT_TRUE(read(configuration(
        plc("p.b", tag("OG.Lamp")) +
        plc("p", branch("OG.1", tag("1.x") + branch("TAGS", tag("y"))) + branch("OG", "")))));
    EXPECT_THAT(desktop.messages(), IsEmpty());
    EXPECT_EQ(outline(document), "p.b[OG.Lamp] p[OG.1[1.x TAGS[y]] OG[]]");
}

TEST_F(ImportXMLTest, TellsOfTheFirstFaultsAndCountsTheOthers) {
    std::string items;
    for (int i = 0; i < 1209; ++i)
        items += "<tag/>";
    EXPECT_TRUE(read(configuration(plc("A", items + tag("x")))));
    const std::string fault = " Error n. 94  Invalid use of Null in BrowseBranch";
    EXPECT_THAT(desktop.messages(),
                ElementsAre(fault, fault, fault, fault, fault, "\u2026 and 1,204 more"));
    EXPECT_EQ(outline(document), "A[x]");
}

TEST_F(ImportXMLTest, RefusesWhatLiesTooDeepBeforeAnythingIsMadeOfIt) {
    const auto nested = [](int levels, const std::string& name, const std::string& innermost) {
        std::string contents;
        for (int i = 0; i < levels; ++i)
            contents += "<" + name + ">";
        contents += innermost;
        for (int i = 0; i < levels; ++i)
            contents += "</" + name + ">";
        return configuration(plc("A") + plc("B", contents));
    };
    const std::string tooLong(600, 'n');
    const std::string deep = " Error n. 321  Branches lie within one another more than 1,000 deep";
    const std::string lengthy =
        " Error n. 321  The path to a branch or an item is longer than 64 KB";
    for (const auto& [text, message] : std::vector<std::pair<std::string, std::string>>{
             {nested(1001, "F", ""), deep},
             {nested(60000, "F", tag("x")), deep},
             {nested(200, tooLong, ""), lengthy},
             {nested(1, "F", tag(std::string(65533, 'n'))), lengthy}}) {
        EXPECT_FALSE(read(text));
        EXPECT_THAT(desktop.messages(), ElementsAre(message + " in ImportXML"));
        EXPECT_TRUE(outline(document).empty());
    }
    EXPECT_TRUE(read(nested(1, "F", tag(std::string(65532, 'n')))));
}

TEST_F(ImportXMLTest, ReadsNothingFromAFileThatIsNoConfiguration) {
    const struct {
        std::string text;
        std::string message;
    } cases[] = {
        {"<project/>", "The configuration file is not valid."},
        {"", " Error n. 321  Line 1: no element found in ImportXML"},
        {configuration(plc("A") + "\n<DEVICE>"),
         " Error n. 321  Line 2: mismatched tag in ImportXML"},
        {configuration(plc("A")).substr(0, 120),
         " Error n. 321  Line 1: unclosed token in ImportXML"},
    };
    for (const auto& [text, message] : cases) {
        EXPECT_FALSE(read(text));
        EXPECT_THAT(desktop.messages(), ElementsAre(message));
        EXPECT_EQ(outline(document), "");
    }
    disk.readFault = ErrorNumber::permissionDenied;
    EXPECT_FALSE(read(configuration(plc("A"))));
    EXPECT_THAT(desktop.messages(), ElementsAre(" Error n. 70  Permission denied in ImportXML"));
}

}  // namespace
