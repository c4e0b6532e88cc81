#include "editor/Commands.h"

#include "support/EditorWorld.h"

namespace {

TEST(Commands, OpenTheMenusThatHoldSeveralGroupsByRulesOfTheirOwn) {
    const auto enabledBy = [](CommandGroup group) {
        CommandState state{};
        state.at(static_cast<std::size_t>(group)) = true;
        return enabledIn(state);
    };
    EXPECT_EQ(enabledBy(CommandGroup::fileSave),
              "mnuFile mnuSaveCfg mnuSaveAs mnuCloseCfg mnuExit mnuAbout");
    EXPECT_EQ(enabledBy(CommandGroup::remove), "mnuExit mnuObjects mnuDelete mnuAbout");
    EXPECT_EQ(enabledBy(CommandGroup::cut), "mnuExit mnuEdit mnuCut mnuAbout");
    EXPECT_EQ(enabledBy(CommandGroup::pasteNames), "mnuExit mnuPasteName mnuAbout");
}

}  // namespace
