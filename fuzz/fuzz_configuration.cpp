// Opens any bytes as a configuration, then saves it.
#include "Fuzzing.h"
#include "support/EditorWorld.h"

FUZZ_TARGET(input) {
    EditorWorld world;
    world.disk.writesSpoiledFiles = true;
    world.open("/house.xml", std::string(input));
    expectTreeAndRegistriesAgree(world.document);
    world.desktop.willAnswer({Answer::yes, Answer::yes});  // also save what cannot be read back
    world.editor.mnuSaveCfg_Click();
    world.editor.mnuCloseCfg_Click();
}
