#include "file/CreateXML.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "file/ImportXML.h"
#include "model/FileFitness.h"
#include "support/EditorWorld.h"

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr const char* path = "/home/ann/house.xml";

class CreateXMLTest : public ::testing::Test {
 protected:
    FakeDisk disk;
    FakeDesktop desktop;
    Document document;

    void read(const std::string& text) {
        disk.files[path] = text;
        document.startAt(path);
        ASSERT_TRUE(ImportXML(path, document, disk, desktop, [] {}));
    }

    std::string written() {
        EXPECT_TRUE(CreateXML(path, document, disk, desktop));
        EXPECT_EQ(desktop.pointer, Pointer::normal);
        return disk.files[path];
    }
};

std::string withCrLf(std::string_view text) {
    std::string lines;
    for (const char c : text) {
        if (c == '\n') lines += '\r';
        lines += c;
    }
    return lines;
}

TEST_F(CreateXMLTest, WritesTheFileByteForByte) {
    read(std::string(exampleText));
    EXPECT_EQ(written(), withCrLf(exampleText));

    read(configuration(plc("Empty"), "<SETTINGS port='' editype='' timeout='-5'/>"));
    EXPECT_THAT(written(), HasSubstr("\r\n\t\t\t<tags>\r\n\t\t\t</tags>\r\n\t\t</DEVICE>\r\n"));
    EXPECT_THAT(written(), HasSubstr("\t<SETTINGS port=\"\" editype=\"\" timeout=\"-5\"/>\r\n"));
}

TEST_F(CreateXMLTest, WritesOneByteForEachCharacterAndEscapesNothing) {
    read(configuration(plc("Plant", branch("Étage", tag("x")))));
    const auto item = document.items().at("Plant.ÉTAGE.x");
    item->sComment = "Büro für 100 €";
    EXPECT_THAT(written(), HasSubstr("\r\n\t\t\t\t<\xC9TAGE>\r\n"));
    EXPECT_THAT(written(), HasSubstr("<comment>B\xFCro f\xFCr 100 ?</comment>"));

    disk.writesSpoiledFiles = true;
    item->sComment = "<&\"";
    EXPECT_THAT(written(), HasSubstr("<comment><&\"</comment>"));
}

TEST_F(CreateXMLTest, GivesBackTheSampleUnchanged) {
    const std::string sample = systemDisk()->read(SAMPLES_DIR "/house.xml");
    read(sample);
    EXPECT_EQ(document.items().count(), 150U);
    EXPECT_TRUE(written() == sample);
    EXPECT_THAT(desktop.messages(), IsEmpty());
}

TEST_F(CreateXMLTest, ReadsAndWritesBranchesAThousandDeep) {
    std::string contents = tag("x");
    for (int i = 0; i < 1000; ++i)
        contents = branch("A", contents);
    read(configuration(plc("P", contents)));
    const std::string once = written();
    read(once);
    EXPECT_TRUE(written() == once);
    EXPECT_THAT(desktop.messages(), IsEmpty());

    const Node* deepest = document.tree().root();
    while (!deepest->children().empty())
        deepest = deepest->children().front();
    const auto branch = std::make_shared<clsBranch>();
    branch->sKey = deepest->parent()->key() + ".B";
    branch->sName = "B";
    document.enter(branch, *deepest->parent());
    EXPECT_FALSE(CreateXML(path, document, disk, desktop));
    EXPECT_THAT(desktop.messages(), ElementsAre(HasSubstr("lies more than 1,000 deep")));
}

TEST_F(CreateXMLTest, WritesNothingWhenAPartCannotBeWritten) {
    const std::string old = configuration(plc("Plant", branch("F", tag("x") + tag("y"))));
    read(old);
    document.items().remove("Plant.F.y");
    EXPECT_FALSE(CreateXML(path, document, disk, desktop));
    EXPECT_THAT(desktop.messages(),
                ElementsAre(" Error n. 5  Invalid procedure call or argument in PrintBranch"));
    EXPECT_EQ(disk.files[path], old);
    EXPECT_EQ(desktop.pointer, Pointer::normal);
}

}  // namespace
