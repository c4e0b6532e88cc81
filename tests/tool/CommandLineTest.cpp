#include "support/ScriptedUser.h"
#include "tool/ToolWorld.h"

namespace {

std::string sample(const std::string& name) { return systemDisk()->read(SAMPLES_DIR "/" + name); }

const std::string smallTable =
    "path,kind,name,comment,address,data type,elements,flag,port,time-out\n"
    ",settings,,,,,,,COM1,1000\n"
    "Plant,device,Plant,,,,,,COM2,1500\n"
    "Plant.F,branch,F,,,,,,,\n"
    "Plant.F.Text,item,Text,,1/2/3,EIS15,14,READ,,\n"
    "Plant.F.Lamp,item,Lamp,\"two\nlines\",1/2/4,EIS1,,TRANSMIT,,\n";

/// Imports the table with `to` instead of `from`. Returns the errors. Nothing may be written.
std::string faultsWith(const std::string& from, const std::string& to) {
    ToolWorld world;
    std::string table = smallTable;
    const auto place = table.find(from);
    EXPECT_NE(place, std::string::npos) << from;
    table.replace(place, from.size(), to);
    world.disk.files = {{"t.csv", table}, {"old.xml", "old"}};
    EXPECT_EQ(world.run("import t.csv -o old.xml --force"), 2) << to;
    EXPECT_EQ(world.disk.files["old.xml"], "old") << to;
    return world.err;
}

// "PIECE is OTHER -> message". "^" is a line feed.
constexpr auto faultyTables =
    R"(COM1,1000 is COM1, -> 2: error: time-out: Receive Timeout field is empty.
,settings is x,settings -> 2: error: path: the settings have no path
COM2,1500 is COM2,10ms -> 3: error: time-out: Receive Timeout field is not correct.
device,Plant is device, -> 3: error: name: Object Name field is empty.
Plant,device is Plant,branch -> 3: error: kind: below no device
branch,F, is branch,F,hall -> 4: error: comment: the branch has none: to be left empty
branch,F is branch,1F -> 4: error: name: '1' at the start of a branch name: the OPC server cannot read a file that holds this
Plant.F,branch is Plant.F,device -> 4: error: kind: a device stands below nothing
Plant.F,branch,F,,,,,,,^ is  -> 4: error: path: no device or branch "Plant.F"
item,Text is item,Lamp -> 6: error: name: Name already existing. Please use a different name
Plant.F.Text is ".P^x" -> 5: error: path: no path: ".P x"
Plant.F.Text is P\x -> 5: error: path: no path: "P\x"
Plant.F.Text is P\ -> 5: error: path: no path: "P\"
Plant.F.Text is plant.f.lamp -> 6: error: path: also in line 5
1/2/3 is 1/2/256 -> 5: error: address: Group Address field is not valid. It must be between 0 and 255.
EIS15,14 is EIS15, -> 5: error: elements: Number of elements field is empty.
EIS15,14 is EIS15,32768 -> 5: error: elements: Overflow
EIS15,14 is EIS5,14 -> 5: error: elements: the data type has none: to be left empty
14,READ is 14,YES -> 5: error: flag: neither READ nor TRANSMIT
two^lines is a & b -> 6: error: comment: '&': the OPC server cannot read a file that holds this
TRANSMIT,, is TRANSMIT,,, -> 6: error: 11 fields, but 10 headings
1/2/4 is 1/2/"4 -> 6: error: a quotation mark is missing, or stands within a field
lines" is lines -> 6: error: a quotation mark is missing, or stands within a field
Lamp is Lämp -> 6: error: not UTF-8; save the table in that encoding
path is Pfad -> 1: error: Pfad: no column of that name is known
flag is kind -> 1: error: kind: this column is there twice)";

TEST(CommandLine, ImportReportsTableFaultsWithLineAndColumnAndWritesNothing) {
    for (const std::string& line : split(faultyTables, "\n")) {
        const auto [change, message] = cut(line, " -> ");
        const auto [from, to] = cut(withLineEnds(change), " is ");
        const std::string faults = faultsWith(from, readBack::latin1(to));
        EXPECT_NE(faults.find("t.csv:" + message + "\n"), std::string::npos) << line << "\n"
                                                                             << faults;
    }
    EXPECT_EQ(faultsWith("Plant.F.Text,item", "X.Text,thing"),
              "t.csv:5: error: kind: not settings, device, branch or item\n");
    // All faults are reported, not only the first.
    EXPECT_EQ(faultsWith("Plant.F.Text,item,Text,,1/2/3,EIS15,14,READ,,\nPlant.F.Lamp,item,Lamp",
                         "x.y,,,,,,,,,\nPlant.F.Text,item,,,1/2,EIS15,x,,,\nPlant.F.Lamp,item,"),
              "t.csv:5: error: path: no device or branch \"x\"\n"
              "t.csv:6: error: name: Item name field is empty.\n"
              "t.csv:6: error: address: Group Address field is empty.\n"
              "t.csv:6: error: elements: Number of elements field is not valid.\n"
              "t.csv:6: error: flag: neither READ nor TRANSMIT\n"
              "t.csv:7: error: name: Item name field is empty.\n");
}

TEST(CommandLine, ImportIntoAConfigurationChecksOnlyWhatTheTableNames) {
    ToolWorld world;
    world.disk.writesSpoiledFiles = true;
    std::string odd = tag("a");
    odd.replace(odd.find("1/2/3"), 5, "1/2");
    world.disk.files = {
        {"a.xml", configuration(plc("P", branch("F", "")) + plc("Q", odd + tag("b")))},
        {"clash.csv", "path,name\nP,\nQ.a,b\n"}};
    for (const auto& [table, change] : {std::pair("address\nQ.b,1/1/1", "<address>1/1/1</address>"),
                                        {"comment\nQ.a,x", "<comment>x</comment>"}}) {
        world.disk.files["t.csv"] = "path," + std::string(table);
        world.must("import t.csv --into a.xml -o b.xml --force");
        for (const char* written : {change, "<address>1/2</address>"})
            EXPECT_NE(world.disk.files["b.xml"].find(written), std::string::npos) << written;
    }
    EXPECT_EQ(world.run("import clash.csv --into a.xml -o c.xml"), 2);
    EXPECT_EQ(world.err,
              "clash.csv:2: error: name: Object Name field is empty.\n"
              "clash.csv:3: error: name: Name already existing. Please use a different name\n");
}

/// A file of these devices, as ScriptedUser opens it. The item "x:15" has the address 1/1/1 and the
/// data type EIS5.
std::string fileOf(std::string_view outline) {
    const std::regex item(":(.)(.)</name>(.*?)1/2/3(.*?)EIS1");
    return std::regex_replace(configuration(contentsFrom(outline, true)), item,
                              "</name>$031/1/$01$04EIS$02");
}

// "OLD => NEW => differences". "^" is a line feed.
constexpr auto differences = R"(P[F[a:11 b:21]] => Q[F[a:11 b:21]] => renamed device P -> Q
P[F[a:11 b:11]] => P[G[b:11 a:11]] => renamed branch P.F -> P.G
P[F[a:11 b:21]] => P[G[F[a:11 b:21]]] => added branch P.G^moved branch P.F -> P.G.F
P[F[a:11 b:21 c:31]] => P[G[a:11 b:21 d:41]] => renamed branch P.F -> P.G^added item P.G.d: comment "", address "1/1/4", data type "EIS1", elements "", access right "READ", flag "READ"^removed item P.F.c
P[a:11 b:21] => P[b:11 a:21] => changed item P.b: address "1/1/2" -> "1/1/1"^changed item P.a: address "1/1/1" -> "1/1/2"
P[F[a:11] G[b:21]] => P[F[w:15 x:21] G[]] => added item P.F.w: comment "", address "1/1/1", data type "EIS5", elements "", access right "READ", flag "READ"^moved item P.G.b -> P.F.x^removed item P.F.a)";

TEST(CommandLine, DiffRecognisesRenamedAndMovedNodes) {
    for (const std::string& line : split(differences, "\n")) {
        const auto cells = split(line, " => ");
        ToolWorld world;
        world.disk.files = {{"a.xml", fileOf(cells[0])}, {"b.xml", fileOf(cells[1])}};
        EXPECT_EQ(world.run("diff a.xml b.xml"), 1);
        EXPECT_EQ(world.out, withLineEnds(cells.at(2)) + "\n");
    }
}

const std::string withFaults =
    "<QUONEibCfg>\n"
    "<SETTINGS port='COM1' editype='\u20AC' timeout='1'/><OPC_DA>\n"
    "<DEVICE name='New Device 9' port='\u20AC' editype='&amp;' timeout='1'><tags></tags></DEVICE>\n"
    "<DEVICE port='COM1'/>\n"
    "<DEVICE name='P' port='COM1' editype='x' timeout='1'><tags>\n" +
    tag("a") + "\n" + tag("a") + "\n" + tag("b.c") +
    "\n<newbranch2>\n"
    "<tag><name>New_Item_1</name><comment>&amp;</comment><address>0/0/0</address>"
    "<eistype>EIS15</eistype><flag>READ</flag><accessrights>&amp;</accessrights></tag>\n"
    "<tag><name>d</name><comment/><address>&amp;</address><eistype>EIS&lt;</eistype><flag/>"
    "<accessrights>READ</accessrights><elements>3</elements></tag>\n"
    "<tag><name>e</name><comment/><address>1/2/3/4</address><eistype>EIS1</eistype></tag>\n"
    "<e/><e/></newbranch2></tags></DEVICE></OPC_DA></QUONEibCfg>";

constexpr auto faultsFound =
    R"(a.xml: warning: EDI type: '€': saved as "?"
a.xml:3: note: New Device 9: the name was proposed, and never changed
a.xml:3: warning: New Device 9: port: '€': saved as "?"
a.xml:3: error: New Device 9: EDI type: '&': the OPC server cannot read a file that holds this
a.xml:3: note: New Device 9: the device holds nothing
a.xml:4: error: Error n. 94  Invalid use of Null in BrowsePlc
a.xml:7: error: P: Error n. 457  This key is already associated with an element of this collection in BrowseBranch
a.xml:8: warning: P.b\.c: address 1/2/3 is also that of P.a
a.xml:9: note: P.NEWBRANCH2: the name was proposed, and never changed
a.xml:10: note: P.NEWBRANCH2.New_Item_1: the name was proposed, and never changed
a.xml:10: error: P.NEWBRANCH2.New_Item_1: comment: '&': the OPC server cannot read a file that holds this
a.xml:10: error: P.NEWBRANCH2.New_Item_1: address "0/0/0" is none of 0/0/1 to 31/7/255
a.xml:10: warning: P.NEWBRANCH2.New_Item_1: no number of elements, which EIS15 needs
a.xml:10: error: P.NEWBRANCH2.New_Item_1: access right: '&': the OPC server cannot read a file that holds this
a.xml:10: warning: P.NEWBRANCH2.New_Item_1: unknown access right "&"
a.xml:11: error: P.NEWBRANCH2.d: address: '&': the OPC server cannot read a file that holds this
a.xml:11: error: P.NEWBRANCH2.d: address "&" is none of 0/0/1 to 31/7/255
a.xml:11: error: P.NEWBRANCH2.d: data type: '<': the OPC server cannot read a file that holds this
a.xml:11: warning: P.NEWBRANCH2.d: unknown data type "EIS<"
a.xml:11: note: P.NEWBRANCH2.d: a number of elements, which has no meaning for EIS<
a.xml:12: error: P.NEWBRANCH2: Error n. 94  Invalid use of Null in BrowseBranch
a.xml:13: error: P.NEWBRANCH2: Error n. 457  This key is already associated with an element of this collection in BrowseBranch
)";

TEST(CommandLine, CheckReportsErrorsWarningsAndNotes) {
    ToolWorld world;
    world.disk.files["a.xml"] = withFaults;
    EXPECT_EQ(world.run("check a.xml"), 2);
    EXPECT_EQ(world.out, faultsFound);
    EXPECT_EQ(world.run("check --json a.xml"), 2);
    auto json = nlohmann::ordered_json::parse(world.out);
    EXPECT_EQ(world.out, json.dump(2) + "\n");
    std::string lines;
    for (auto& finding : json) {
        const std::string line = finding.contains("line") ? ":" + finding["line"].dump() : "";
        const std::string path = finding["path"];
        lines += finding["file"].get<std::string>() + line + ": ";
        lines += finding["severity"].get<std::string>() + ": " + path + (path.empty() ? "" : ": ");
        lines.append(trimBlanks(finding["text"].get<std::string>())) += "\n";
    }
    EXPECT_EQ(lines, faultsFound);
    world.disk.files["warnings.xml"] = configuration(plc("P", tag("a") + tag("b")));
    world.disk.files["notes.xml"] = configuration(plc("P"));
    world.disk.files["/broken.xml"] = "<QUONEibCfg>\n</OPC_DA>";
    EXPECT_EQ(world.run("check --quiet notes.xml"), 0);
    EXPECT_EQ(world.run("check --quiet notes.xml warnings.xml"), 1);
    EXPECT_EQ(world.run("check --quiet warnings.xml none.xml notes.xml"), 2);
    EXPECT_EQ(world.out + world.err, "");
    EXPECT_EQ(world.run("check /broken.xml none.xml"), 2);
    EXPECT_EQ(world.out,
              "/broken.xml:2: error: Error n. 321  Line 2: mismatched tag in ImportXML\n"
              "none.xml: error: Error n. 53  File not found in ImportXML\n");
    // Other commands refuse such a file, as parts of it would be lost.
    for (const char* command : {"export a.xml -o x", "diff a.xml notes.xml", "diff notes.xml a.xml",
                                "import notes.csv --into a.xml -o x"}) {
        EXPECT_EQ(world.run(command), 2) << command;
        EXPECT_FALSE(world.disk.exists("x"));
    }
    EXPECT_EQ(world.run("import none.csv -o x"), 2);
    EXPECT_EQ(world.err, "none.csv: error: File not found\n");
}

TEST(CommandLine, ConvertWritesTheSameFileAsTheEditor) {
    EditorWorld editor;
    editor.disk.files["/house.esf"] = sample("house.esf");
    editor.document.setSettings({.port = "USB", .ediType = "USBEMI1", .timeout = 500});
    editor.desktop.willChoose("/house.esf");
    editor.editor.mnuImpCfg_Click();
    editor.editor.mnuSaveCfg_Click();
    ToolWorld world;
    world.disk.files["house.esf"] = sample("house.esf");
    world.disk.files["dimmer.esf"] = sample("house-dimmer.esf");
    world.must("convert house.esf -o house.xml --port USB --edi USBEMI1 --timeout 5e2");
    expectSameFile(world.disk.files["house.xml"], editor.disk.files["/house.xml"]);
    EXPECT_EQ(world.run("convert dimmer.esf -o dimmer.xml"), 2);
    EXPECT_EQ(world.err,
              "dimmer.esf:12: error: This file is not in ETS2 or ETS3 Esf format. (a "
              "size that is not in bytes, of a type other than EIS 1)\n");
    EXPECT_FALSE(world.disk.exists("dimmer.xml"));
    for (const auto& [line, reason] : {std::pair("C.L.1/1/1\tx", "fewer than three fields"),
                                       {"C\tx\tEIS 1", "an address without a middle group"}}) {
        world.disk.files["bad.esf"] = line;
        EXPECT_EQ(world.run("convert bad.esf -o x"), 2);
        EXPECT_NE(world.err.find("(" + std::string(reason) + ")\n"), std::string::npos)
            << world.err;
    }
}

TEST(CommandLine, AFileIsReplacedOnlyWithForceAndOnlyCompletely) {
    ToolWorld world;
    world.disk.files = {{"a.xml", configuration(plc("P", tag("a")))}, {"old", "old"}};
    world.must("export a.xml -o a.csv");
    world.disk.files["a.esf"] = "t\r\nC.L.1/1/1\tx\tEIS 1\r\n";
    for (const std::string command :
         {"export a.xml -o old", "import a.csv -o old", "convert a.esf -o old"}) {
        EXPECT_EQ(world.run(command), 2);
        EXPECT_EQ(world.err, "old: error: is there already; --force replaces it\n");
        world.disk.writeFault = ErrorNumber::diskFull;
        EXPECT_EQ(world.run(command + " --force"), 2);
        EXPECT_NE(world.err.find("Disk full"), std::string::npos) << world.err;
        EXPECT_EQ(world.disk.files["old"], "old");
        world.disk.writeFault.reset();
        world.must(command + " --force");
        EXPECT_NE(std::exchange(world.disk.files["old"], "old"), "old");
    }
    std::string many;  // the table is written in pieces
    for (int i = 0; i < 10'000; ++i)
        many += tag(std::to_string(i));
    world.disk.files["many.xml"] = configuration(plc("P", many));
    world.must("export many.xml -o many.csv");
    EXPECT_EQ(rowsOf(world.disk.files["many.csv"]).size(), 10'002U);
    // A text that is saved differently is only a warning.
    world.disk.files["a.csv"] = "path,port\nP\u20AC,COM1\n";
    EXPECT_EQ(world.run("import a.csv -o b.xml"), 1);
    EXPECT_EQ(world.err, "a.csv:2: warning: name: '\u20AC': saved as \"?\"\n");
    EXPECT_TRUE(world.disk.exists("b.xml"));
}

TEST(CommandLine, HelpIsPrintedAndWrongArgumentsAreRefused) {
    ToolWorld world;
    const auto expectRefused = [&](const std::string& command) {
        EXPECT_EQ(world.run(command), 2) << command;
        EXPECT_NE(world.err.find("Run with --help"), std::string::npos) << world.err;
    };
    for (const std::string command : {"", "check ", "diff ", "export ", "import ", "convert "}) {
        EXPECT_EQ(world.run(command + "--version"), 0);
        EXPECT_TRUE(world.out.starts_with("opcolvan-cli 1.")) << world.out;
        expectRefused(command);
    }
    // The page of the program lists all commands and arguments, in the same words.
    const auto squeezed = [](const std::string& text) {
        return std::regex_replace(text, std::regex("REQUIRED|\\s"), "");
    };
    const std::string page = sample("../docs/command-line.md");
    const std::regex row(R"(\| (?:\[`(\w+) .*|(?:`(\w+)` )?\| `([-A-Z][^`]*)`) \| (.+) \|)");
    const std::sregex_iterator first(page.begin(), page.end(), row), end;
    EXPECT_EQ(std::distance(first, end), 27);
    for (auto each = first; each != end; ++each) {
        const auto& cells = *each;
        world.must(cells.str(1) + cells.str(2) + " --help");
        EXPECT_NE(squeezed(world.out).find(squeezed(cells.str(3) + cells.str(4))),
                  std::string::npos)
            << cells.str();
    }
    world.must("--help");
    EXPECT_TRUE(
        std::regex_search(world.out, std::regex("the command line\\s+Usage: opcolvan-cli ")));
    for (const char* wrong :
         {"foo", "diff a", "diff a b c", "import a", "convert a", "check a --yaml",
          "export a --separator x", "convert a -o b --timeout 10ms"})
        expectRefused(wrong);
    EXPECT_EQ(world.run("convert a -o b --timeout 1e10"), 2);
    EXPECT_EQ(world.err, "opcolvan-cli: error: Overflow\n");
}

}  // namespace
