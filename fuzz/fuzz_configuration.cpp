// Any bytes, opened as a configuration, and what was read saved and read again.
#include "Fuzzing.h"
#include "support/EditorWorld.h"

FUZZ_TARGET(input) {
    EditorWorld world;
    world.disk.writesSpoiledFiles = true;
    world.open("/house.xml", std::string(input));
    expectTreeAndRegistriesAgree(world.document);
    world.desktop.willAnswer({Answer::yes, Answer::yes});  // also to save what is unreadable
    world.editor.mnuSaveCfg_Click();
    world.editor.mnuCloseCfg_Click();
}
