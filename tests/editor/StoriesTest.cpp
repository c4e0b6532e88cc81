// Stories: text files that tell what a person does in the editor, and what is to be seen then.
//
// A line that begins with ">" is what is done: a verb of `act` or a command of the table; after
// ": " step by step what is done in the dialog that it shows; after " ? " the answer to the
// question that is asked. The lines below it are all that has changed on the screen by that. The
// test is that they come out the same again. Run with APPROVE set, it writes them anew: then
// it is for you to read what has changed.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "base/Text.h"
#include "support/EditorWorld.h"

namespace {

/// A thing in a dialog: what it shows, and what typing into it, choosing in it or pressing it does.
struct Part {
    std::string name;
    std::function<std::string()> shown;
    std::function<void(const std::string&)> use;
};
using Parts = std::vector<Part>;
using Seen = std::vector<std::pair<std::string, std::string>>;

Part field(const Label& label, TextBox& box) {
    return {label.caption,
            [&] { return box.text + (box.enabled && label.enabled ? "" : " (off)"); },
            [&](const std::string& text) { box.text = text; }};
}
Part field(const Label& label, ComboBox& box) {
    const auto shown = [&] {
        std::string choices;
        for (const std::string& choice : box.list)
            choices += " " + choice;
        return box.text + " {" + choices + " }";
    };
    return {label.caption, shown, [&](const std::string& text) { box.text = text; }};
}
template <typename Form>
Part button(const Button& button, Form& form, void (Form::*click)()) {
    return {button.caption, [&] { return std::string(button.enabled ? "" : "(off)"); },
            [&form, click](const auto& /*text*/) { (form.*click)(); }};
}

Parts partsOf(frmItems& form) {
    auto& [main, middle, sub] = form.txtAddress;
    const Part address{form.lbladdress.caption,
                       [&] { return main.text + "/" + middle.text + "/" + sub.text; },
                       [&](const std::string& text) {
                           std::istringstream parts(text);
                           for (TextBox& part : form.txtAddress)
                               std::getline(parts, part.text, '/');
                       }};
    Part type = field(form.Label5, form.cmbDataType);
    type.use = [&](const std::string& text) {
        form.cmbDataType.text = text;
        form.cmbDataType_Click();
    };
    const auto& flags = form.optLetturaCaptions;
    const Part flag{form.Label4.caption, [&] { return std::string(flags.at(form.optLettura)); },
                    [&](const std::string& text) { form.optLettura = text == flags[0] ? 0 : 1; }};
    Part count = field(form.Label7, form.txtNumbItems);
    count.shown = [&] { return form.frmInserimento.visible ? form.txtNumbItems.text : "hidden"; };
    const auto frame = [&] { return std::string(form.frmMain.enabled ? "" : "(off)"); };
    return {field(form.lblName, form.txtItemName),
            field(form.Label1, form.txtComment),
            address,
            type,
            field(form.Label6, form.cmbAccessRight),
            field(form.lblElements, form.txtElements),
            flag,
            {"all these", frame, {}},
            count,
            button(form.cmdOkNumber, form, &frmItems::cmdOkNumber_Click),
            button(form.cmdOk, form, &frmItems::cmdOk_Click),
            button(form.cmdAdd, form, &frmItems::cmdAdd_Click),
            button(form.cmdGroup, form, &frmItems::cmdGroup_Click),
            button(form.cmdCancel, form, &frmItems::cmdCancel_Click)};
}

Parts partsOf(frmPLC& form) {
    return {field(form.Label6, form.txtName),
            field(form.lblIP, form.cmbPort),
            field(form.lblId, form.cmbEdiType),
            field(form.lblPassword, form.txtTimeout),
            button(form.cmdApply, form, &frmPLC::cmdApply_Click),
            button(form.cmdExit, form, &frmPLC::cmdExit_Click)};
}

Parts partsOf(frmBranch& form) {
    return {field(form.Label1, form.txtBranchName),
            button(form.cmdOk, form, &frmBranch::cmdOk_Click),
            button(form.cmdCancel, form, &frmBranch::cmdCancel_Click)};
}

Parts partsOf(frmSetts& form) {
    return {field(form.lblPortName, form.cmbPort), field(form.lblBaud, form.cmbEdiType),
            field(form.lblTimeout, form.txtTimeout),
            button(form.cmdApply, form, &frmSetts::cmdApply_Click),
            button(form.cmdExit, form, &frmSetts::cmdExit_Click)};
}

Parts partsOf(frmReplace& form) {
    std::string lines;
    for (const auto& [present, arrow, next] : form.Grid1.rows)
        lines.append(present).append("|" + arrow + "|").append(next + "; ");
    return {{"grid", [lines] { return lines; }, {}},
            button(form.Command1, form, &frmReplace::Command1_Click),
            button(form.Command2, form, &frmReplace::Command2_Click)};
}

Parts partsOf(frmFind& form) {
    return {field(form.lblName, form.txtFind), button(form.cmdFind, form, &frmFind::cmdFind_Click),
            button(form.cmdNext, form, &frmFind::cmdNext_Click),
            button(form.cmdCancel, form, &frmFind::cmdCancel_Click)};
}

/// The text before and after the first place where it is divided so.
std::pair<std::string, std::string> cut(const std::string& text, const std::string& by) {
    const auto place = text.find(by);
    if (place == std::string::npos) return {text, ""};
    return {text.substr(0, place), text.substr(place + by.size())};
}

/// In stories "~" and "^" stand for a carriage return and a line feed: changed either way.
std::string withLineEnds(std::string text) {
    for (char& c : text)
        if (const auto place = std::string_view("~\r^\n").find(c); place != std::string::npos)
            c = "\r~\n^"[place];
    return text;
}

/// Each character is one byte in the files of stories.
std::string latin1(const std::string& text) {
    std::string bytes;
    appendLatin1(bytes, text);
    return bytes;
}

/// The contents of a file with this outline, which is read up to the "]" that ends them.
std::string contentsFrom(std::string_view& outline, bool areDevices) {
    std::string xml;
    while (!outline.empty() && outline.front() != ']') {
        const auto end = std::min(outline.find_first_of("[] "), outline.size());
        const std::string name(outline.substr(0, end));
        outline.remove_prefix(end);
        if (outline.starts_with('[')) {
            outline.remove_prefix(1);
            const std::string inner = contentsFrom(outline, false);
            outline.remove_prefix(1);
            xml += areDevices ? plc(name, inner) : branch(name, inner);
        } else {
            xml += tag(name);
        }
        if (outline.starts_with(' ')) outline.remove_prefix(1);
    }
    return xml;
}

class Stories : public ::testing::TestWithParam<std::string>, protected EditorWorld {
 protected:
    Stories() { playEach<frmItems, frmPLC, frmBranch, frmSetts, frmReplace>(); }
    template <typename... Form>
    void playEach() {
        (forms.whenShown<Form>([this](Form& form) { play(form); }), ...);
    }

    void write(std::string line) {
        std::ranges::replace(line, '\r', '~');
        transcript += line + "\n";
    }

    /// Writes what the editor has said, and what has changed.
    void look(const Seen& now, Seen& before, const std::string& indent) {
        for (std::size_t i = 0; i < desktop.messages().size(); ++i)
            write(indent + "\"" + desktop.messages()[i] + "\"" + desktop.manners()[i]);
        desktop.forgetMessages();
        before.resize(now.size());
        for (std::size_t i = 0; i < now.size(); ++i)
            if (now[i].second != before[i].second)
                write(indent + now[i].first + " = " + now[i].second);
        before = now;
    }

    template <typename Form>
    void play(Form& form) {
        const Parts parts = partsOf(form);
        const auto now = [&] {
            Seen all;
            for (const Part& part : parts)
                all.emplace_back(part.name, part.shown());
            return all;
        };
        Seen before;
        write(std::string("  [") + Form::caption + "]");
        look(now(), before, "    ");
        for (auto [step, later] = cut(steps, "; "); !step.empty();
             std::tie(step, later) = cut(later, "; ")) {
            const auto [name, text] = cut(step, " = ");
            const auto place = std::ranges::find(parts, name, &Part::name) - parts.begin();
            const auto part = static_cast<std::size_t>(place);
            parts.at(part).use(text);
            write("  - " + step);
            before[part].second = parts[part].shown();
            look(now(), before, "    ");
            if constexpr (requires { form.closed(); })
                if (form.closed()) write("    closed");
        }
    }

    void act(const std::string& verb, const std::string& what) {
        if (verb == "open") {
            const auto [contents, fault] = cut(what, " but ");
            const auto [piece, other] = cut(fault, " is ");
            std::string_view outline = contents;
            std::string text = configuration(contentsFrom(outline, true));
            open("/house.xml", text.replace(text.find(piece), piece.size(), other));
            return desktop.lastChooser.clear();
        }
        if (verb == "load") return open("/house.xml", latin1(withLineEnds(what)));
        if (verb == "import") {
            disk.files["/house.esf"] = latin1(withLineEnds(what));
            desktop.willChoose("/house.esf");
            return editor.mnuImpCfg_Click();
        }
        if (verb == "choose") return desktop.willChoose(what);
        if (verb == "click") return click(what);
        if (verb == "doubleclick") return editor.TreeView1_DblClick();
        if (verb == "row" || verb == "doublerow") {
            const auto& rows = editor.ListView1.rows();
            const auto place = std::ranges::find(rows, what, &ListView::Row::text) - rows.begin();
            ASSERT_NE(place, std::ssize(rows)) << "no such row: " << what;
            selectRows({});
            selectRow(static_cast<std::size_t>(place));
            return verb == "row" ? editor.ListView1_Click() : editor.ListView1_DblClick();
        }
        if (verb == "sort") return editor.ListView1_ColumnClick(std::stoul(what));
        if (verb == "fold") {
            return document.tree().setExpanded(document.tree().nodeAt(what), false);
        }
        if (verb == "drop") return editor.dropFile(what);
        if (verb == "loading") return editor.loadingStarted();
        if (verb == "search") return play(*forms.find);
        if (verb == "toolbar") return editor.Toolbar1_ButtonClick(what);
        if (verb == "menus") return writeMenus();
        std::istringstream words(what);
        if (verb == "rows") {
            std::set<std::string> texts;
            for (std::string text; std::getline(words, text, ' ');)
                texts.insert(text);
            return selectRows(texts);
        }
        if (verb == "drag") {
            std::string from, to, target, with;
            int shift = 0;
            words >> from >> to >> target >> with >> shift;
            return drag(from, target, shift);
        }
        if (verb == "read") {
            std::istringstream file(disk.files.at(what));
            for (std::string line; std::getline(file, line);)
                write("    " + fromWindows1252(line));
            return;
        }
        if (verb == "leave") {
            editor.activeControl = frmEditing::ActiveControl::none;
        } else if (verb == "fail") {
            desktop.fails = true;
        } else if (verb == "clipboard") {
            desktop.clipboard = withLineEnds(what);
        } else if (verb == "file") {
            const auto [path, text] = cut(what, " ");
            disk.files[path] = withLineEnds(text);
            ++disk.time;
        } else {
            editor.run(commandNamed(verb));
        }
    }
    void writeMenus() {
        for (const Command& it : commandTable()) {
            std::string line = "    " + std::to_string(it.toolbarPlace);
            for (const auto cell : {it.name, it.caption, it.shortcut, it.tooltip, it.picture})
                line.append("|").append(cell);
            write(line);
        }
    }

    /// "verb what: steps ? answer"
    void doAsTold(const std::string& line) {
        const auto [action, answer] = cut(line, " ? ");
        std::istringstream answers(answer);
        for (std::string each; answers >> each;)
            desktop.willAnswer({each == "yes"  ? Answer::yes
                                : each == "no" ? Answer::no
                                               : Answer::cancel});
        std::string deed;
        std::tie(deed, steps) = cut(action, ": ");
        const auto [verb, what] = cut(deed, " ");
        act(verb, what);
        EXPECT_EQ(desktop.answersLeft(), 0U) << line;
        expectTreeAndRegistriesAgree(document);
    }

    Seen window() {
        std::string expanded;
        const ConfigTree& tree = document.tree();
        for (const auto& node : tree.nodes())
            if (node->expanded()) expanded += node->key().string() + " ";
        std::string list, rows;
        for (const auto& row : editor.ListView1.rows()) {
            if (row.selected) rows += row.text + " ";
            list += "\n    " + row.key + " " + row.icon + " " + row.smallIcon + " ";
            for (std::size_t i = 0; i < editor.ListView1.columns().size(); ++i) {
                const bool hasFault = editor.fileRules().faultOf(row, i).kind != FaultKind::none;
                list += "|" + row.cell(i) + (hasFault ? " !" : "");
            }
        }
        const auto nameOf = [](auto value, const std::vector<const char*>& names) {
            return names.at(static_cast<std::size_t>(value));
        };
        const auto number = [](int value) { return std::to_string(value); };
        std::string signs;
        for (const auto& node : tree.nodes())
            if (const Fault sign = editor.fileRules().faultOf(*node); !sign.text.empty())
                signs += "\n    " + node->key() + ": " + sign.text;
        std::string parts;
        const auto [toolbar, left, right] = frmEditing::layoutFor(editor.referenceSize);
        for (const auto& part : {toolbar, left, right})
            for (const int pixels : {part.left, part.top, part.width, part.height})
                parts += number(pixels) + " ";
        const GlobalSets& settings = document.settings();
        const auto keyOf = [](const Node* node) {
            return node == nullptr ? "" : node->key().string();
        };
        const auto opens = [&](frmEditing::ActiveControl view, const char* name) {
            return std::string(editor.hasProperties(view) ? name : "");
        };
        return {
            {"caption", editor.caption},
            {"layout", parts},
            {"views", nameOf(editor.TreeView1.visible + 2 * editor.TreeView1.enabled,
                             {"hidden", "visible (off)", "hidden (on)", "visible"})},
            {"tree", outline(document)},
            {"expanded", expanded},
            {"signs", signs},
            {"selected", keyOf(tree.selected())},
            {"columns", columns()},
            {"view", nameOf(editor.ListView1.view(), {"icon", "small icon", "list", "report"})},
            {"list", list},
            {"rows", rows},
            {"saved", document.saved ? "yes" : "no"},
            {"enabled", enabledNow()},
            {"focus", nameOf(editor.activeControl, {"none", "tree", "list"})},
            {"settings", settings.port + " " + settings.ediType + " " + number(settings.timeout)},
            {"next device", number(document.deviceCounter())},
            {"next branch", number(document.branchCounter())},
            {"next item", number(document.itemCounter())},
            {"clipboard", withLineEnds(desktop.clipboard)},
            {"search", forms.find == nullptr ? "" : "shown"},
            {"chooser", desktop.lastChooser},
            {"recorded", registry.calls.empty() ? "" : registry.calls.back()},
            {"pointer", desktop.pointer == Pointer::normal ? "" : "other"},
            {"opens", opens(frmEditing::ActiveControl::tree, "node ") +
                          opens(frmEditing::ActiveControl::list, "row")},
            {"dragged", keyOf(editor.treeDrag().source())},
            {"drop here", keyOf(editor.treeDrag().dropHighlight())},
            {"ended", applicationEnded ? number(exitStatus) : ""}};
    }

    std::string transcript;
    std::string steps;
};

TEST_P(Stories, ComeOutAsTold) {
    std::ifstream file(GetParam());
    const std::string told(std::istreambuf_iterator<char>(file), {});
    Seen seen;
    std::istringstream lines(told);
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("# ") || line.starts_with("> ")) write(line);
        if (!line.starts_with("> ")) continue;
        doAsTold(line.substr(2));
        look(window(), seen, "  ");
    }
    if (std::getenv("APPROVE") != nullptr) std::ofstream(GetParam()) << transcript;
    EXPECT_EQ(transcript, told) << GetParam();
}

std::vector<std::string> storyFiles() {
    const std::filesystem::directory_iterator folder(TESTS_DIR "/editor/stories");
    std::vector<std::string> paths;
    for (const auto& entry : folder)
        paths.push_back(entry.path().string());
    return paths;
}

INSTANTIATE_TEST_SUITE_P(, Stories, testing::ValuesIn(storyFiles()), [](const auto& story) {
    std::string name = std::filesystem::path(story.param).stem().string();
    std::ranges::replace(name, '-', '_');
    return name;
});

}  // namespace
