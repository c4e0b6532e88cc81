#include "file/CreateXML.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#ifndef _WIN32
#include <pthread.h>
#endif

#include <functional>
#include <string>
#include <string_view>

#include "file/ImportXML.h"
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

/// Runs the work where it cannot call itself once for every level of a deep configuration.
void onASmallStack(std::function<void()> work) {
#ifdef _WIN32
    work();
#else
    pthread_attr_t attributes{};
    ASSERT_EQ(::pthread_attr_init(&attributes), 0);
    ASSERT_EQ(::pthread_attr_setstacksize(&attributes, std::size_t{256} * 1024), 0);
    const auto run = [](void* it) -> void* {
        (*static_cast<std::function<void()>*>(it))();
        return nullptr;
    };
    pthread_t thread{};
    ASSERT_EQ(::pthread_create(&thread, &attributes, run, &work), 0);
    ::pthread_join(thread, nullptr);
    ::pthread_attr_destroy(&attributes);
#endif
}

TEST_F(CreateXMLTest, GivesBackTheSampleUnchanged) {
    const std::string sample = systemDisk()->read(SAMPLES_DIR "/house.xml");
    read(sample);
    EXPECT_EQ(document.items().count(), 150U);
    EXPECT_TRUE(written() == sample);
    EXPECT_THAT(desktop.messages(), IsEmpty());
}

TEST_F(CreateXMLTest, WritesTheSameBytesAgainHoweverDeepTheBranchesAre) {
    constexpr int depth = 2000;
    std::string contents = tag("x");
    for (int i = 0; i < depth; ++i)
        contents = branch("A", contents);
    onASmallStack([&] {
        read(configuration(plc("P", contents)));
        const std::string once = written();
        read(once);
        EXPECT_TRUE(written() == once);
    });
    EXPECT_EQ(document.branches().count(), static_cast<std::size_t>(depth));
    EXPECT_THAT(desktop.messages(), IsEmpty());
}

TEST_F(CreateXMLTest, WritesADeviceWithoutANodeFromItsRecords) {
    const std::string contents = tag("x") + branch("F", tag("y") + branch("G", tag("z")));
    read(configuration(plc("Plant", contents) + plc("Annex")));
    document.tree().remove(document.tree().nodeAt("Plant"));
    document.items().rekey("Plant.x", "Plant.x", [](const clsItem&) {});  // after those of branches
    const std::string once = written();
    read(once);
    EXPECT_EQ(outline(document), "Plant[F[G[z] y] x] Annex[]");
    EXPECT_THAT(desktop.messages(), IsEmpty());
}

TEST_F(CreateXMLTest, WritesNothingWhenAPartCannotBeWritten) {
    const std::string old = configuration(plc("Plant", branch("F", tag("x") + tag("y"))));
    read(old);
    document.items().remove("Plant.F.y");
    EXPECT_FALSE(CreateXML(path, document, disk, desktop));
    EXPECT_THAT(desktop.messages(),
                ElementsAre(" Error n. 5  Invalid procedure call or argument in PrintBranch"));

    desktop.forgetMessages();
    document.tree().AddNode("config", "config.F", "F", NodeKind::branch);
    EXPECT_FALSE(CreateXML(path, document, disk, desktop));
    EXPECT_THAT(
        desktop.messages(),
        ElementsAre(" Error n. 5  \"F\" stands below no device and cannot be saved in CreateXML"));

    desktop.forgetMessages();
    document.startAt(path);
    disk.writeFault = ErrorNumber::diskFull;
    EXPECT_FALSE(CreateXML(path, document, disk, desktop));
    EXPECT_THAT(desktop.messages(), ElementsAre(" Error n. 61  Disk full in CreateXML"));
    EXPECT_EQ(disk.files[path], old);
    EXPECT_EQ(desktop.pointer, Pointer::normal);
}

}  // namespace
