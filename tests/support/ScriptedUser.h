// Performs the action of a user that a line of text describes.
//
//     drag P.A to Q with 2
//     mnuAddItem: Item Name = Lamp; Group Address = 1/2/3; Add and Exit
//     mnuDelete ? yes
//
// After ": " are the steps in the dialog that is shown: "FIELD = TEXT" types, a button's caption
// presses it, "FIELD is TEXT" is an expectation. After " ? " are the answers to questions and the
// paths that file choosers return. "~" is a carriage return, "^" a line feed.
#pragma once

#include "support/ReadBack.h"

/// The text before and after the first `by`.
inline std::pair<std::string, std::string> cut(const std::string& text, const std::string& by) {
    const auto place = text.find(by);
    if (place == std::string::npos) return {text, ""};
    return {text.substr(0, place), text.substr(place + by.size())};
}

inline std::vector<std::string> split(std::string text, const std::string& by) {
    std::vector<std::string> pieces;
    for (auto place = text.find(by); place != std::string::npos; place = text.find(by)) {
        pieces.push_back(text.substr(0, place));
        text.erase(0, place + by.size());
    }
    pieces.push_back(text);
    return pieces;
}

inline std::string joined(const std::vector<std::string>& texts, const std::string& by) {
    std::string all;
    for (std::size_t i = 0; i < texts.size(); ++i)
        all += (i == 0 ? "" : by) + texts[i];
    return all;
}

/// Exchanges "~" and "^" with a carriage return and a line feed.
inline std::string withLineEnds(std::string text) {
    for (char& c : text)
        if (const auto place = std::string_view("~\r^\n").find(c); place != std::string::npos)
            c = "\r~\n^"[place];
    return text;
}

/// The parts of a line.
struct Step {
    explicit Step(const std::string& text) : line(text) {
        const auto [action, answered] = cut(line, " ? ");
        for (const std::string& each : split(answered, " "))
            if (!each.empty()) answers.push_back(each);
        const auto [command, inDialog] = cut(action, ": ");
        if (!inDialog.empty()) entries = split(inDialog, "; ");
        std::tie(verb, what) = cut(command, " ");
    }

    std::string line, verb, what;
    std::vector<std::string> entries;  ///< in the dialog
    std::vector<std::string> answers;  ///< "yes", "no", "cancel" or a path
};

/// The XML of an outline such as "A[x y]". Removes it from the text, up to its closing "]".
inline std::string contentsFrom(std::string_view& outline, bool areDevices) {
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

namespace dialogParts {

/// A control of a dialog: what it shows, and a function that types into it, selects or presses.
struct Part {
    std::string name;
    std::function<std::string()> shown;
    std::function<void(const std::string&)> use;
};
using Parts = std::vector<Part>;

inline Part field(const Label& label, TextBox& box) {
    return {label.caption, [&] { return box.text + (box.enabled && label.enabled ? "" : "(off)"); },
            [&](const std::string& text) { box.text = text; }};
}
/// `chosen` is called when another text is chosen.
inline Part field(
    const Label& label, ComboBox& box, std::function<void()> chosen = [] {}) {
    return {label.caption, [&] { return box.text + " of " + joined(box.list, " "); },
            [&box, chosen](const std::string& text) {
                box.text = text;
                chosen();
            }};
}
template <typename Form>
Part button(const Button& button, Form& form, void (Form::*click)()) {
    return {button.caption, [&] { return std::string(button.enabled ? "on" : "off"); },
            [&form, click](const auto& /*text*/) { (form.*click)(); }};
}

inline Parts partsOf(frmItems& form) {
    const Part address{form.lbladdress.caption,
                       [&] {
                           const auto& [main, middle, sub] = form.txtAddress;
                           return main.text + "/" + middle.text + "/" + sub.text;
                       },
                       [&](const std::string& text) {
                           std::istringstream parts(text);
                           for (TextBox& part : form.txtAddress)
                               std::getline(parts, part.text, '/');
                       }};
    const auto& flags = form.optLetturaCaptions;
    const Part flag{form.Label4.caption, [&] { return std::string(flags.at(form.optLettura)); },
                    [&](const std::string& text) { form.optLettura = text == flags[0] ? 0 : 1; }};
    Part count = field(form.Label7, form.txtNumbItems);
    count.shown = [&] { return form.frmInserimento.visible ? form.txtNumbItems.text : "hidden"; };
    const auto frame = [&] { return std::string(form.frmMain.enabled ? "on" : "off"); };
    return {field(form.lblName, form.txtItemName),
            field(form.Label1, form.txtComment),
            address,
            field(form.Label5, form.cmbDataType, [&] { form.cmbDataType_Click(); }),
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

inline Parts partsOf(CommonProperties& form) {
    auto& fields = form.fields;
    return {field(fields.Label5, fields.cmbDataType, [&] { form.cmbDataType_Click(); }),
            field(fields.Label6, fields.cmbAccessRight),
            field(fields.lblElements, fields.txtElements),
            field(fields.Label4, form.cmbFlag),
            button(form.cmdOk, form, &CommonProperties::cmdOk_Click),
            button(form.cmdCancel, form, &CommonProperties::cmdCancel_Click)};
}

inline Parts partsOf(frmPLC& form) {
    return {field(form.Label6, form.txtName),
            field(form.lblIP, form.cmbPort),
            field(form.lblId, form.cmbEdiType),
            field(form.lblPassword, form.txtTimeout),
            button(form.cmdApply, form, &frmPLC::cmdApply_Click),
            button(form.cmdExit, form, &frmPLC::cmdExit_Click)};
}

inline Parts partsOf(frmBranch& form) {
    return {field(form.Label1, form.txtBranchName),
            button(form.cmdOk, form, &frmBranch::cmdOk_Click),
            button(form.cmdCancel, form, &frmBranch::cmdCancel_Click)};
}

inline Parts partsOf(frmSetts& form) {
    return {field(form.lblPortName, form.cmbPort), field(form.lblBaud, form.cmbEdiType),
            field(form.lblTimeout, form.txtTimeout),
            button(form.cmdApply, form, &frmSetts::cmdApply_Click),
            button(form.cmdExit, form, &frmSetts::cmdExit_Click)};
}

inline Parts partsOf(frmReplace& form) {
    const auto lines = [&] {
        std::vector<std::string> all;
        for (const auto& row : form.Grid1.rows)
            all.push_back(joined({row.begin(), row.end()}, " "));
        return joined(all, ", ");
    };
    const auto signs = [&] { return joined({form.faults.begin() + 1, form.faults.end()}, " | "); };
    return {{"grid", lines, {}},
            {"signs", signs, {}},
            button(form.Command1, form, &frmReplace::Command1_Click),
            button(form.Command2, form, &frmReplace::Command2_Click)};
}

inline Parts partsOf(frmFind& form) {
    return {field(form.lblName, form.txtFind), button(form.cmdFind, form, &frmFind::cmdFind_Click),
            button(form.cmdNext, form, &frmFind::cmdNext_Click),
            button(form.cmdCancel, form, &frmFind::cmdCancel_Click)};
}

}  // namespace dialogParts

class ScriptedUser : public EditorWorld {
 public:
    ScriptedUser() {
        forms.whenAnyIsShown([this](auto& form) { playDialog(form); });
    }

    /// Performs the action: `open OUTLINE but PIECE is OTHER ...`, `click KEY`, `row TEXT` and
    /// others below, or a command of the table. Returns false if the node or row does not exist.
    bool play(const Step& step) {
        entries_ = step.entries;
        desktop.forgetAnswers();
        const std::map<std::string, Answer> answers{
            {"yes", Answer::yes}, {"no", Answer::no}, {"cancel", Answer::cancel}};
        for (const std::string& each : step.answers)
            each[0] == '/' ? desktop.willChoose(each) : desktop.willAnswer({answers.at(each)});
        return act(step.verb, step.what);
    }

    /// Called when a dialog does not show what the line expects.
    std::function<void(const std::string& part, const std::string& expected,
                       const std::string& actual)>
        differs = [](const auto& part, const auto&, const auto&) { ADD_FAILURE() << part; };

 protected:
    template <typename Form>
    void playDialog(Form& form) {
        const auto parts = dialogParts::partsOf(form);
        for (const std::string& entry : entries_) {
            const auto [seen, expected] = cut(entry, " is ");
            const auto [name, text] = cut(entry, " = ");
            const bool looks = seen != entry;
            const auto part =
                std::ranges::find(parts, looks ? seen : name, &dialogParts::Part::name);
            if (part == parts.end()) return differs(entry, "", "no such part in the dialog");
            if (!looks) {
                part->use(text);
            } else if (const std::string shown = part->shown();
                       shown != expected && cut(shown, " of ").first != expected) {
                differs(seen, expected, shown);
            }
            if constexpr (requires { form.closed(); }) {
                if (form.closed()) return;
                if (&entry == &entries_.back()) differs("dialog", "closed", "open");
            }
        }
    }

 private:
    bool act(const std::string& verb, const std::string& what) {
        if (verb == "open") {
            const auto changes = split(what, " but ");
            std::string_view outline = changes[0];
            std::string text = configuration(contentsFrom(outline, true));
            for (const std::string& change : changes)
                if (const auto [piece, other] = cut(change, " is "); piece != change)
                    text.replace(text.find(piece), piece.size(), withLineEnds(other));
            open("/house.xml", text);
        } else if (verb == "load") {
            open("/house.xml", readBack::latin1(withLineEnds(what)));  // one byte per character
        } else if (verb == "import") {
            disk.files["/house.esf"] = readBack::latin1(withLineEnds(what));
            desktop.willChoose("/house.esf");
            editor.mnuImpCfg_Click();
        } else if (verb == "click" || verb == "doubleclick") {
            const bool isSelected = verb == "doubleclick" && what.empty();
            if (!isSelected && document.tree().FindNode(what) == nullptr) return false;
            if (!isSelected) click(what);
            if (verb == "doubleclick") editor.TreeView1_DblClick();
        } else if (verb == "row" || verb == "doublerow") {
            const auto& rows = editor.ListView1.rows();
            if (std::ranges::find(rows, what, &ListView::Row::text) == rows.end()) return false;
            selectRows({what});
            verb == "row" ? editor.ListView1_Click() : editor.ListView1_DblClick();
        } else if (verb == "rows") {
            const auto texts = split(what, " ");
            selectRows({texts.begin(), texts.end()});
            editor.ListView1_Click();
        } else if (verb == "drag") {
            const auto [nodes, shift] = cut(what, " with ");
            const auto [from, target] = cut(nodes, " to ");
            const auto isThere = [&](const auto& key) { return document.tree().FindNode(key); };
            if (!isThere(from) || (!isThere(target) && target != "space" && !target.empty()))
                return false;
            drag(from, target, shift.empty() ? 0 : std::stoi(shift));
        } else if (verb == "sort") {
            editor.ListView1_ColumnClick(std::stoul(what));
        } else if (verb == "fold") {
            document.tree().setExpanded(document.tree().nodeAt(what), false);
        } else if (verb == "focus") {
            editor.activeControl = what == "tree"   ? frmEditing::ActiveControl::tree
                                   : what == "list" ? frmEditing::ActiveControl::list
                                                    : frmEditing::ActiveControl::none;
        } else if (verb == "search") {
            if (forms.find == nullptr) return false;
            playDialog(*forms.find);
        } else if (verb == "drop") {
            editor.dropFile(what);
        } else if (verb == "clipboard") {
            desktop.clipboard = withLineEnds(what);
        } else if (verb == "file") {
            const auto [path, text] = cut(what, " ");
            disk.files[path] = withLineEnds(text);
            ++disk.time;
        } else if (verb == "fail") {
            desktop.fails = true;
            const auto [next, rest] = cut(what, " ");
            return act(next, rest);
        } else {
            editor.run(commandNamed(verb));
        }
        return true;
    }

    std::vector<std::string> entries_;
};
