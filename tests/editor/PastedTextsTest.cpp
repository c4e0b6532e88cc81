#include "editor/PastedTexts.h"

#include <gtest/gtest.h>

#include "support/EditorWorld.h"

namespace {

using Command = void (frmEditing::*)();
constexpr Command names = &frmEditing::mnuPasteName_Click;
constexpr Command comments = &frmEditing::mnuPasteComment_Click;

const std::string nameHeadings = "Item name||New Item name\n";
const std::string commentHeadings = "Item comment||New Item comment\n";

class PastedTextsTest : public ::testing::Test, protected EditorWorld {
 protected:
    PastedTextsTest() {
        const std::string plant = tag("a") + tag("b") + tag("c") + branch("D", tag("e"));
        open("/house.xml", configuration(plc("P", plant)));
        click("P");
        selectRows({"a", "b"});
    }
    /// What the user is told; with a preview, it is shown, and accepted or rejected.
    std::string paste(Command command, const std::string& text, const std::string& preview = "",
                      void (frmReplace::*button)() = &frmReplace::Command2_Click) {
        const auto user = [preview, button](frmReplace& form) {
            std::string grid;
            for (const auto& [present, arrow, next] : form.Grid1.rows)
                grid += present + "|" + arrow + "|" + next + "\n";
            EXPECT_EQ(grid, preview);
            (form.*button)();
        };
        if (!preview.empty()) forms.whenShown<frmReplace>(user);
        desktop.clipboard = text;
        (editor.*command)();
        expectTreeAndRegistriesAgree(document);
        return told();
    }
    /// The list's names and comments, the tree, and whether it needs no saving.
    std::string state() const {
        std::string line;
        for (const auto& row : editor.ListView1.rows())
            line += row.text + ":" + row.subItems[0] + " ";
        return line + outline(document) + (document.saved ? "" : "*");
    }
};

TEST_F(PastedTextsTest, AreTheLinesThatHaveAnEnd) {
    const std::pair<std::string, std::vector<std::string>> cases[] = {
        {"A\r\nB\r\n", {"A", "B"}},
        {"A\r\nB", {"A"}},
        {"A\nB\n", {"A", "B"}},
        {"A\nB", {"A"}},
        {" A \r\n\t\r\n", {"A", "\t"}},
        {" A b ", {" A b "}},
        {"\r\n\r\n", {"", ""}},
        {"A\nB\r\nC", {"A\nB"}},
        {"A\rB", {"A\rB"}}};
    for (const auto& [text, lines] : cases)
        EXPECT_EQ(pastedLines(text), lines) << text;
}

TEST_F(PastedTextsTest, GiveTheSelectedRowsNamesInTheirOrder) {
    EXPECT_EQ(paste(names, "y\r\nx\r\n", nameHeadings + "a|<---|y\nb|<---|x\n"), "");
    EXPECT_EQ(state() + shown(), "y: x: c: P[y x c D[e]]*P: P.y P.x P.c");
    EXPECT_EQ(document.items().at("P.y")->sName + document.items().at("P.y")->sKey, "yP.y");
    EXPECT_EQ(desktop.clipboard, "");
    EXPECT_EQ(paste(names, "n.1\nn2\n", nameHeadings + "y|<---|n.1\nx|<---|n2\n"),
              "Character (.) not acceptable in string n.1\n");
    EXPECT_EQ(state(), "y: n2: c: P[y n2 c D[e]]*");
}

TEST_F(PastedTextsTest, GiveTheSelectedRowsComments) {
    EXPECT_EQ(paste(comments, " 1. \r\n2\r\n", commentHeadings + "|<---|1.\n|<---|2\n"), "");
    EXPECT_EQ(state() + desktop.clipboard, "a:1. b:2 c: P[a b c D[e]]*");
    selectRows({"b"});
    EXPECT_EQ(paste(comments, " 3 \t", commentHeadings + "2|<---| 3 \t\n"), "");
    EXPECT_EQ(document.items().at("P.a")->sComment + document.items().at("P.b")->sComment,
              "1. 3 \t");
}

TEST_F(PastedTextsTest, ChangeNothingWhenRefusedOrRejected) {
    const std::string taken = "Name already existing\n";
    const std::string mismatch = "Invalid selection\n";
    const std::tuple<Command, std::string, std::string, std::string> cases[] = {
        {names, "", "Empty clipboard !\n", ""},
        {comments, "", "Empty clipboard !\n", ""},
        {names, "x\r\ny", mismatch, ""},
        {comments, "x\ny\nz\n", mismatch, ""},
        {names, "c", taken, ""},
        {names, "b\r\nc\r\n", taken, ""},
        {names, "x\r\ny\r\n", "", nameHeadings + "a|<---|x\nb|<---|y\n"},
        {comments, "c\ne\n", "", commentHeadings + "|<---|c\n|<---|e\n"}};
    for (const auto& [command, text, message, preview] : cases) {
        EXPECT_EQ(paste(command, text, preview, &frmReplace::Command1_Click), message) << text;
        EXPECT_EQ(desktop.clipboard, message == taken ? "" : text);
        EXPECT_EQ(state(), "a: b: c: P[a b c D[e]]");
    }
}

TEST_F(PastedTextsTest, StopAtANameInUseAndKeepTheRowsBefore) {
    const std::tuple<std::string, std::string, ErrorNumber, std::string> cases[] = {
        {"b\na\n", "a|<---|b\nb|<---|a\n", ErrorNumber::keyTaken, "a: b: c: P[a b c D[e]]*"},
        {"x\nC\n", "a|<---|x\nb|<---|C\n", ErrorNumber::keyTaken, "x: b: c: P[x b c D[e]]*"},
        {"X\nD\n", "x|<---|X\nb|<---|D\n", ErrorNumber::keyNotUnique, "X: b: c: P[X b c D[e]]*"}};
    for (const auto& [text, preview, number, left] : cases) {
        EXPECT_EQ(paste(names, text, nameHeadings + preview), errorIn("Paste_Name_Click", number));
        EXPECT_EQ(state(), left);
    }
}

}  // namespace
