#include "editor/PastedTexts.h"

#include "support/EditorWorld.h"

namespace {

constexpr auto names = &frmEditing::mnuPasteName_Click;
constexpr auto comments = &frmEditing::mnuPasteComment_Click;
constexpr auto accept = &frmReplace::Command2_Click;
constexpr auto reject = &frmReplace::Command1_Click;

TEST(PastedLines, AreThoseThatHaveAnEnd) {
    const std::pair<std::string, std::vector<std::string>> cases[] = {
        {"A\r\nB\r\n", {"A", "B"}}, {"A\r\nB", {"A"}},       {" A \r\n\t\r\n", {"A", "\t"}},
        {"A\nB\n", {"A", "B"}},     {"A\nB", {"A"}},         {" A b ", {" A b "}},
        {"\r\n\r\n", {"", ""}},     {"A\nB\r\nC", {"A\nB"}}, {"A\rB", {"A\rB"}}};
    for (const auto& [text, lines] : cases)
        EXPECT_EQ(pastedLines(text), lines) << text;
}

TEST(PastedTexts, GoToTheSelectedRowsInTheirOrderOnceAccepted) {
    const std::string name = "Item name||New Item name\n";
    const std::string comment = "Item comment||New Item comment\n";
    const std::string keyTaken = errorIn("Paste_Name_Click", ErrorNumber::keyTaken);
    const std::string keyNotUnique = errorIn("Paste_Name_Click", ErrorNumber::keyNotUnique);
    const std::string before = "a: b: c: P[a b c D[e]] P: P.a P.b P.c";
    const struct {
        void (frmEditing::*command)();
        std::string clipboard, preview;
        void (frmReplace::*button)();
        std::string told, clipboardThen, after;
    } cases[] = {
        {names, "", "", accept, "Empty clipboard !\n", "", before},
        {comments, "", "", accept, "Empty clipboard !\n", "", before},
        {names, "x\r\ny", "", accept, "Invalid selection\n", "x\r\ny", before},
        {comments, "x\ny\nz\n", "", accept, "Invalid selection\n", "x\ny\nz\n", before},
        {names, "c", "", accept, "Name already existing\n", "", before},
        {names, "b\nc\n", "", accept, "Name already existing\n", "", before},
        {names, "x\ny\n", name + "a|<---|x\nb|<---|y\n", reject, "", "x\ny\n", before},
        {comments, "c\ne\n", comment + "|<---|c\n|<---|e\n", reject, "", "c\ne\n", before},
        {comments, " 1. \r\n2\r\n", comment + "|<---|1.\n|<---|2\n", accept, "", "",
         "a:1. b:2 c: P[a b c D[e]] P: P.a P.b P.c*"},
        {names, "y\nx\n", name + "a|<---|y\nb|<---|x\n", accept, "", "",
         "y: x: c: P[y x c D[e]] P: P.y P.x P.c*"},
        {names, "n.1\nn2\n", name + "a|<---|n.1\nb|<---|n2\n", accept,
         "Character (.) not acceptable in string n.1\n", "",
         "a: n2: c: P[a n2 c D[e]] P: P.a P.n2 P.c*"},
        // Each other's; one that differs from another's in letter case; that of a branch.
        {names, "b\na\n", name + "a|<---|b\nb|<---|a\n", accept, keyTaken, "b\na\n", before + "*"},
        {names, "x\nC\n", name + "a|<---|x\nb|<---|C\n", accept, keyTaken, "x\nC\n",
         "x: b: c: P[x b c D[e]] P: P.x P.b P.c*"},
        {names, "A\nD\n", name + "a|<---|A\nb|<---|D\n", accept, keyNotUnique, "A\nD\n",
         "A: b: c: P[A b c D[e]] P: P.A P.b P.c*"}};
    for (const auto& [command, clipboard, preview, button, told, clipboardThen, after] : cases) {
        EditorWorld world;
        const std::string plant = tag("a") + tag("b") + tag("c") + branch("D", tag("e"));
        world.open("/house.xml", configuration(plc("P", plant)));
        world.click("P");
        world.selectRows({"a", "b"});
        world.desktop.clipboard = clipboard;
        std::string shown;
        world.forms.whenShown<frmReplace>([&, pressed = button](frmReplace& form) {
            for (const auto& [present, arrow, next] : form.Grid1.rows)
                shown.append(present).append("|" + arrow + "|").append(next + "\n");
            (form.*pressed)();
        });
        (world.editor.*command)();
        EXPECT_EQ(shown, preview) << clipboard;
        EXPECT_EQ(world.told(), told) << clipboard;
        EXPECT_EQ(world.desktop.clipboard, clipboardThen);
        std::string listed;
        for (const auto& row : world.editor.ListView1.rows()) {
            listed += row.text + ":" + row.subItems[0] + " ";
            const auto item = world.document.items().at(row.key);
            EXPECT_EQ(item->sName + item->sComment, row.text + row.subItems[0]);
        }
        EXPECT_EQ(listed + world.state(), after) << clipboard;
    }
}

}  // namespace
