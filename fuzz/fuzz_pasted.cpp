// Any bytes on the clipboard, pasted as names or as comments over items that are selected. Bytes
// that are not UTF-8 do not come from a toolkit, but must do no harm.
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
        world.desktop.willAnswer({Answer::yes, Answer::yes});  // also to save what is unreadable
        world.editor.mnuSaveCfg_Click();
    }
}
