// Imports any bytes as an ETS export.
#include "Fuzzing.h"
#include "support/EditorWorld.h"

FUZZ_TARGET(input) {
    EditorWorld world;
    world.disk.files["/house.esf"] = input;
    world.desktop.willChoose("/house.esf");
    world.editor.mnuImpCfg_Click();
    expectTreeAndRegistriesAgree(world.document);
}
