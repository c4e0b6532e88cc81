#include "editor/Commands.h"

#include <gtest/gtest.h>

#include <string>

#include "support/EditorWorld.h"

namespace {

TEST(Commands, AreEnabledByTheStates) {
    const std::string file =
        "mnuFile mnuNewCfg mnuOpenCfg mnuSaveCfg mnuSaveAs mnuImpCfg mnuCloseCfg mnuExit ";
    const std::string viewAndTools =
        " mnuView mnuIcon mnuSmallIcon mnuList mnuReport mnuTools mnuFind mnuAbout";
    const std::string container = file +
                                  "mnuObjects mnuSetts mnuAddBranch mnuAddItem "
                                  "mnuEdit mnuPaste mnuDelete";
    const std::string item = file +
                             "mnuObjects mnuSetts mnuEdit mnuCopy mnuCut mnuDelete mnuPasteName "
                             "mnuPasteComment" +
                             viewAndTools;
    using namespace commandStates;
    const struct {
        const CommandState& state;
        std::string enabled;
    } cases[] = {
        {noConfiguration, "mnuFile mnuNewCfg mnuOpenCfg mnuImpCfg mnuExit mnuAbout"},
        {loading, "mnuExit mnuAbout"},
        {configurationOpen, file + "mnuObjects mnuSetts mnuAddPlc mnuTools mnuFind mnuAbout"},
        {rootSelected, file + "mnuObjects mnuSetts mnuAddPlc mnuEdit mnuPaste" + viewAndTools},
        {containerSelected, container + viewAndTools},
        {containerSelectedItemsListed, container + " mnuPasteName mnuPasteComment" + viewAndTools},
        {itemSelected, item},
        {deviceRowSelected,
         file + "mnuObjects mnuSetts mnuAddBranch mnuAddItem mnuEdit mnuPaste" + viewAndTools},
        {branchRowSelected, container + viewAndTools},
        {itemRowSelected, item},
    };
    for (const auto& [state, enabled] : cases)
        EXPECT_EQ(enabledIn(state), enabled);
}

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

TEST(Commands, AreRunByTheToolbarsKeys) {
    EditorWorld world;
    world.editor.Toolbar1_ButtonClick("new");
    EXPECT_TRUE(world.document.open);
    world.editor.Toolbar1_ButtonClick("save");
    EXPECT_EQ(world.disk.files.size(), 1U);
    for (const auto& [key, view] :
         {std::pair("icon", ListView::View::icon),
          std::pair("smallicon", ListView::View::smallIcon),
          std::pair("list", ListView::View::list), std::pair("report", ListView::View::report)}) {
        world.editor.Toolbar1_ButtonClick(key);
        EXPECT_EQ(world.editor.ListView1.view(), view);
    }
    for (const char* unknown : {"", "NEW", "group", "mnuExit"})
        world.editor.Toolbar1_ButtonClick(unknown);
    EXPECT_TRUE(world.document.open && world.document.saved);
    world.desktop.lastChooser.clear();
    world.editor.Toolbar1_ButtonClick("open");
    EXPECT_NE(world.desktop.lastChooser, "");
    world.editor.Toolbar1_ButtonClick("close");
    EXPECT_FALSE(world.document.open);
    world.editor.Toolbar1_ButtonClick("exit");
    EXPECT_TRUE(world.applicationEnded);
}

}  // namespace
