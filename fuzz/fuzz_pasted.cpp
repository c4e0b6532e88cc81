// Pastes any bytes from the clipboard as names or as comments of selected items. A toolkit never
// delivers bytes that are not UTF-8, but they must do no harm.
#include "Fuzzing.h"
#include "support/EditorWorld.h"

FUZZ_TARGET(input) {
    for (const char* command : {"mnuPasteName", "mnuPasteComment"}) {
        EditorWorld world;
        world.disk.writesSpoiledFiles = true;
        world.open("/house.xml",
                   configuration(plc("Plant", tag("x") + tag("y") + branch("F", tag("z")))));
        world.forms.whenShown<frmReplace>(&frmReplace::Command2_Click);
        world.click("Plant");
        world.selectRows({"x", "y"});
        world.desktop.clipboard = input;
        world.editor.run(commandNamed(command));
        expectTreeAndRegistriesAgree(world.document);
        world.desktop.willAnswer({Answer::yes, Answer::yes});  // also save what cannot be read back
        world.editor.mnuSaveCfg_Click();
    }
}
