// The three kinds of records: devices, branches and items.
#include <gmock/gmock.h>

#include <string>
#include <vector>

#include "file/XmlParser.h"
#include "model/ConfigTree.h"
#include "model/RunTimeError.h"
#include "model/clsBranch.h"
#include "model/clsItem.h"
#include "model/clsPLC.h"
#include "support/FakeDesktop.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

auto raises(ErrorNumber number) {
    return testing::Throws<RunTimeError>(testing::Property(&RunTimeError::number, number));
}

clsPLC readDevice(const std::string& attributes) {
    const XmlDocument document("<DEVICE " + attributes + "/>");
    clsPLC device;
    device.SetByXml(document.root());
    return device;
}

TEST(DeviceRecord, IsReadFromTheAttributesOfItsElement) {
    EXPECT_EQ(readDevice("timeout='1501.5' editype=' PEI ' port='COM2' name='Plant'").GetXmlTag(),
              "\t\t<DEVICE name=\"Plant\" port=\"COM2\" editype=\" PEI \" timeout=\"1502\">");
    const std::string rest = "name='P' port='' editype='' ";
    EXPECT_EQ(readDevice(rest + "timeout='1500.5'").getTimeout(), 1500);
    EXPECT_EQ(readDevice(rest + "timeout='soon'").getTimeout(), 0);
    EXPECT_THAT([&] { readDevice(rest + "timeout='3e9'"); }, raises(ErrorNumber::overflow));
    for (const char* lacking : {"port='' editype='' timeout=''", "name='' editype='' timeout=''",
                                "name='' port='' timeout=''", "name='' port='' editype=''"})
        EXPECT_THAT([&] { readDevice(lacking); }, raises(ErrorNumber::invalidUseOfNull));
}

TEST(DeviceRecord, IsSetByItsDialogAndByAnImport) {
    clsPLC device;
    device.SetByForm({" Plant", " USB ", " PEI 1 ", "1500.5"});
    EXPECT_THAT(
        [&] {
            device.SetByForm({"Other", "COM1", "PEI", "2147483648"});
        },
        raises(ErrorNumber::overflow));
    EXPECT_EQ(device.GetXmlTag(),
              "\t\t<DEVICE name=\" Plant\" port=\" USB \" editype=\" PEI 1 \" timeout=\"1500\">");

    ListView list;
    device.AddToListView(list);
    EXPECT_EQ(list.findRow(" Plant"), 0U);
    EXPECT_EQ(list.rows()[0].text, " Plant");
    EXPECT_THAT(list.rows()[0].subItems, ElementsAre("USB", "PEI 1", "", "", ""));

    device.SetByEts("Light", GlobalSets());
    EXPECT_EQ(device.sKey(), "Light");
    EXPECT_EQ(device.GetXmlTag(),
              "\t\t<DEVICE name=\"Light\" port=\"COM1\" editype=\"PEI16x9600\" timeout=\"1000\">");
}

TEST(BranchRecord, IsNamedAndKeyedByItsElementsPath) {
    const XmlDocument document("<tags><Floor1><Hall/></Floor1></tags>");
    clsBranch branch;
    branch.build(document.root().firstChild().firstChild(), "Plant");
    EXPECT_EQ(branch.sName, "HALL");
    EXPECT_EQ(branch.sKey, "Plant.FLOOR1.HALL");
    EXPECT_EQ(branch.getParentKey(), "Plant.FLOOR1");
}

const std::vector<std::string> itemFields = {
    "<name>Light</name>",       "<comment>Hall</comment>", "<address>1/2/3</address>",
    "<eistype>EIS12</eistype>", "<flag>READ</flag>",       "<accessrights>WRITE</accessrights>"};

std::string allBut(const std::string& leftOut) {
    std::string text;
    for (const std::string& field : itemFields)
        if (field != leftOut) text += field;
    return text;
}

const std::string all = allBut("");

/// Reads an item that stands in the branch FLOOR1 of the device Plant.
void read(clsItem& item, const std::string& fields) {
    const XmlDocument document("<tags><Floor1><tag>" + fields + "</tag></Floor1></tags>");
    item.SetByXml(document.root().firstChild().firstChild(), "Plant");
}

TEST(ItemRecord, IsReadFromTheChildrenOfItsElement) {
    clsItem item;
    read(item, all + "<elements>2.5</elements>");
    EXPECT_EQ(item.sKey + " " + item.sPlcname, "Plant.FLOOR1.Light Plant");
    const char* tag =
        "\t<tag>\r\n\t\t<name>Light</name>\r\n\t\t<comment>Hall</comment>\r\n"
        "\t\t<address>1/2/3</address>\r\n\t\t<eistype>EIS12</eistype>\r\n"
        "\t\t<flag>READ</flag>\r\n\t\t<accessrights>WRITE</accessrights>\r\n"
        "\t\t<elements>2</elements>\r\n\t</tag>";
    EXPECT_EQ(item.GetXmlTag(1), tag);
    // Of doubled fields the first counts; without `elements` their number stays.
    read(item, all + "<name>Lamp</name><comment>Attic</comment><flag/><eistype>E</eistype>");
    EXPECT_EQ(item.GetXmlTag(1), tag);

    EXPECT_THAT([&] { read(item, all + "<elements>32768</elements>"); },
                raises(ErrorNumber::overflow));
    for (const std::string& field : itemFields)
        EXPECT_THAT([&] { read(item, allBut(field)); }, raises(ErrorNumber::invalidUseOfNull))
            << "without " << field;
    for (const std::string flag : {"read", " READ", "READWRITE", "TRANSMIT", ""}) {
        read(item, "<flag>" + flag + "</flag>" + all);
        EXPECT_THAT(item.GetXmlTag(0), HasSubstr("<flag>TRANSMIT</flag>")) << flag;
    }
}

TEST(ItemRecord, IsSetByItsDialog) {
    ConfigTree tree;
    const Node& plant = tree.AddNode("", "Plant", "Plant", NodeKind::plc);
    const Node& light = tree.AddNode("Plant", "Plant.Light", "Light", NodeKind::item);
    ItemFields dialog{"Lamp", "Hall", "EIS15", "14", {" 1", "2 ", "  3  "}, "READ", true};
    clsItem item;
    item.SetByForm(dialog, &plant, false);
    dialog.txtItemName = "Other";
    dialog.txtElements = "32767.5";
    EXPECT_THAT([&] { item.SetByForm(dialog, &plant, false); }, raises(ErrorNumber::overflow));
    EXPECT_THAT([&] { item.SetByForm(dialog, nullptr, true); }, raises(ErrorNumber::objectNotSet));
    EXPECT_EQ(item.sKey, "Plant.Lamp");
    EXPECT_EQ(item.GetXmlTag(0),
              "<tag>\r\n\t<name>Lamp</name>\r\n\t<comment>Hall</comment>\r\n"
              "\t<address>1/2/3</address>\r\n\t<eistype>EIS15</eistype>\r\n\t<flag>READ</flag>\r\n"
              "\t<accessrights>READ</accessrights>\r\n\t<elements>14</elements>\r\n</tag>");
    dialog.txtElements = "7";
    item.SetByForm(dialog, &light, true);
    EXPECT_EQ(item.sKey, "Plant.Other");

    // Three types have a number of elements: it is taken and written for these only.
    for (const std::string type : {"NOEIS", "EIS12", "EIS15", "EIS1", "EIS14_S", "noeis", ""}) {
        const bool counts = type == "NOEIS" || type == "EIS12" || type == "EIS15";
        item.nElements = 3;
        item.SetByForm({"L", "", type, "2.5", {}, "", false}, &plant, false);
        EXPECT_EQ(item.nElements, counts ? 2 : 3) << type;
        EXPECT_EQ(item.GetXmlTag(0).find("<elements>") != std::string::npos, counts) << type;
    }
}

TEST(ItemRecord, IsCopiedUnderItsNameUnlessItLandsBesideItsSource) {
    clsItem source;
    read(source, all + "<elements>5</elements>");
    const auto copied = [&](const std::string& target) {
        clsItem copy;
        copy.SetByCopy(source, target, 2);
        EXPECT_EQ(copy.sPlcname, "");
        const std::string tag = source.GetXmlTag(0);
        EXPECT_THAT(copy.GetXmlTag(0), HasSubstr(tag.substr(tag.find("<comment>"))));
        return copy.sName + " " + copy.sKey;
    };
    EXPECT_EQ(copied("Plant.FLOOR1"), "Light_2 Plant.FLOOR1.Light_2");
    EXPECT_EQ(copied("Plant.Floor1"), "Light Plant.Floor1.Light");
}

TEST(ItemRecord, IsSetByARecordOfAnExport) {
    clsItem item;
    EXPECT_EQ(
        item.SetByEts({"House.Central.Light 1.1/1/0", "Lamp k\u00FCche 1/2", "EIS 1 (1 Bit)", "x"}),
        "Light_1");
    EXPECT_EQ(item.sKey + " " + item.sName, "Light_1.Lamp_k_che_1_2 Lamp_k_che_1_2");
    EXPECT_EQ(item.sAddress + " " + item.sAccessRight, "1/1/0 READWRITE");
    EXPECT_EQ(item.sComment + item.sPlcname, "");
    EXPECT_EQ(clsItem().SetByEts({"Light.1/1/0", "L", "EIS 1"}), "Light") << "no main group";
    const std::vector<std::vector<std::string>> tooShort = {
        {}, {"A.B.1/1/1", "L"}, {"1/1/1", "L", "EIS 1"}};
    for (const auto& fields : tooShort)
        EXPECT_THAT([&] { item.SetByEts(fields); }, raises(ErrorNumber::subscriptOutOfRange));
}

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
        EXPECT_THAT([&] { import(noBytes); }, raises(ErrorNumber::invalidCall)) << noBytes;
    EXPECT_THAT([&] { import("(32768 Byte)"); }, raises(ErrorNumber::overflow));
}

TEST(ItemRecord, IsListedWithItsIndexOnlyWhenAsked) {
    clsItem item;
    read(item, all);
    ListView list;
    FakeDesktop desktop;
    item.AddToListView(list, true, desktop);
    item.AddToListView(list, true, desktop);
    item.sKey = "Plant.Other";
    item.AddToListView(list, false, desktop);
    item.sKey = "Plant.Far";
    item.sAddress = "1e9/0/0";
    item.AddToListView(list, true, desktop);

    ASSERT_EQ(list.rows().size(), 3U);
    const auto& row = list.rows()[0];
    EXPECT_EQ(row.key + " " + row.text, "Plant.FLOOR1.Light Light");
    EXPECT_EQ(row.icon + " " + row.smallIcon, "EIS12 item");
    EXPECT_THAT(row.subItems, ElementsAre("Hall", "EIS12", "1/2/3", "WRITE", "0A03"));
    EXPECT_EQ(list.rows()[1].subItems[4], "");
    EXPECT_THAT(list.rows()[2].subItems, ElementsAre("Hall", "EIS12", "1e9/0/0", "WRITE", ""));
    EXPECT_THAT(desktop.messages(),
                ElementsAre(" Error n. 35602  Key is not unique in collection in clsItem.AddToList",
                            " Error n. 6  Overflow in clsItem.AddToList"));
}

}  // namespace
