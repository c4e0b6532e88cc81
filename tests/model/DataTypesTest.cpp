#include "model/DataTypes.h"

#include "support/ScriptedUser.h"

namespace {

/// The tables of data types in the documents and in the schema.
TEST(DataTypes, AgreeWithTheDocuments) {
    const auto textOf = [](const std::string& name) {
        std::string text = systemDisk()->read(SAMPLES_DIR "/../docs/" + name);
        std::erase(text, '\r');
        return text;
    };
    std::string rows, without, with;
    for (const DataType& type : dataTypes()) {
        std::string name(type.name);
        rows += "| `" + name + "` | " + std::string(type.meaning) + " | " + std::string(type.size) +
                " | " + std::string(type.range) + " | " + std::string(type.datapointType) + " |\n";
        (type.hasElements ? with : without) +=
            "              <value type=\"string\">" + name + "</value>\n";
    }
    EXPECT_NE(textOf("file-format.md").find(rows + "\n"), std::string::npos) << rows;
    const auto [first, second] = cut(textOf("configuration.rng"), "<element name=\"elements\">");
    for (const std::string& values : {without, with})
        EXPECT_NE(first.find("<choice>\n" + values + "            </choice>"), std::string::npos)
            << values;
    EXPECT_EQ(descriptionOf(*findDataType("EIS6_D")),
              "Scaling in degrees, 1 byte, 0 to 360° (DPT 5.003)");
    EXPECT_EQ(findDataType("eis1"), nullptr);
}

}  // namespace
