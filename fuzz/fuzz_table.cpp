// Imports any bytes as a table, alone and into a configuration. If that succeeds, the result is
// exported and imported again, and must be the same.
#include "Fuzzing.h"
#include "support/EditorWorld.h"
#include "tool/ToolWorld.h"

FUZZ_TARGET(input) {
    for (const std::string into : {"", " --into base.xml"}) {
        ToolWorld world;
        world.disk.files["base.xml"] =
            configuration(plc("P", tag("a") + branch("F", tag("b") + tag("c.d"))));
        world.disk.files["t.csv"] = input;
        const bool isImported = world.run("import t.csv -o a.xml" + into) < 2;
        EXPECT_EQ(world.disk.exists("a.xml"), isImported);
        EXPECT_TRUE(isImported || !world.err.empty());
        if (!isImported) continue;
        EXPECT_EQ(world.run("export a.xml -o b.csv"), 0) << world.err;
        EXPECT_LT(world.run("import b.csv -o b.xml"), 2) << world.err;
        EXPECT_EQ(world.run("diff a.xml b.xml"), 0) << world.out;
    }
}
