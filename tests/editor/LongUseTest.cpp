// The editor in use for days: what each round leaves behind would add up.
#ifndef _WIN32

#include <malloc.h>

#include "support/EditorWorld.h"

namespace {

TEST(LongUse, MemoryDoesNotGrowInAThousandRounds) {
    EditorWorld world;
    std::size_t before = 0;
    for (int round = 1; round <= 1000; ++round) {
        world.open("/house.xml", configuration(plc("Plant", branch("F", tag("x")))));
        world.click("Plant");
        world.forms.whenShown<frmPLC>([](frmPLC& form) {
            form.txtName.text = "Annex";
            form.cmdApply_Click();
        });
        world.editor.TreeView1_DblClick();
        world.desktop.willAnswer({Answer::yes});
        world.editor.mnuSaveCfg_Click();
        world.editor.mnuCloseCfg_Click();
        world.desktop.forgetMessages();
        world.registry.calls.clear();
        if (round == 100) before = ::mallinfo2().uordblks;
    }
    EXPECT_LT(::mallinfo2().uordblks, before + 10'000) << "12 bytes a round";
}

}  // namespace

#endif
