// Any bytes, imported as an export of the ETS.
#include "Fuzzing.h"
#include "support/EditorWorld.h"

FUZZ_TARGET(input) {
    EditorWorld world;
    world.disk.files["/house.esf"] = input;
    world.desktop.willChoose("/house.esf");
    world.editor.mnuImpCfg_Click();
    expectTreeAndRegistriesAgree(world.document);
}
