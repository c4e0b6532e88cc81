// A sequence of what a user can do, a byte or a few for each deed.
#include <set>

#include "Fuzzing.h"
#include "support/EditorWorld.h"

namespace {

class User : private EditorWorld {
 public:
    explicit User(std::string_view deeds) : deeds_(deeds) {
        disk.writesSpoiledFiles = true;
        whenShown<frmPLC>([this](frmPLC& form) {
            form.txtName.text = name();
            below(4) != 0 ? form.cmdApply_Click() : form.cmdExit_Click();
        });
        whenShown<frmBranch>([this](frmBranch& form) {
            form.txtBranchName.text = name();
            below(4) != 0 ? form.cmdOk_Click() : form.cmdCancel_Click();
        });
        whenShown<frmItems>([this](frmItems& form) {
            form.txtItemName.text = name();
            form.txtAddress.fill({.text = number()});
            form.txtElements.text = number();
            below(4) != 0 || form.modify() ? form.cmdOk_Click() : form.cmdAdd_Click();
        });
        whenShown<frmReplace>(&frmReplace::Command2_Click);
        whenShown<frmSetts>([this](frmSetts& form) {
            form.txtTimeout.text = number();
            form.cmdApply_Click();
        });
    }

    void doAll() {
        while (!deeds_.empty()) {
            while (desktop.answersLeft() < 6)
                desktop.willAnswer({std::array{Answer::yes, Answer::no, Answer::cancel}[below(3)]});
            disk.files.insert(
                {"/a.xml", configuration(plc("A", branch("B", tag("x") + tag("y"))))});
            disk.files.insert({"/a.esf", "t\r\nA.B.1/1/1\tx\tEIS 1\r\nA.C.1/1/2\ty\tEIS 1\r\n"});
            desktop.willChoose(below(4) == 0 ? "/a.esf" : "/a.xml");
            desktop.clipboard = name() + "\r\n" + name() + "\r\n";
            doOne(below(64));
            desktop.forgetMessages();
            expectTreeAndRegistriesAgree(document);
        }
    }

 private:
    template <typename Form>
    void whenShown(const std::function<void(Form&)>& user) {
        forms.whenShown<Form>([=, this](Form& form) {
            whenShown<Form>(user);
            user(form);
        });
    }

    std::size_t below(std::size_t count) {
        if (deeds_.empty()) return 0;
        const auto byte = static_cast<unsigned char>(deeds_.front());
        deeds_.remove_prefix(1);
        return byte % count;
    }
    std::string name() {
        static const char* const names[] = {"A", "B",      "x",  "y",           "X.y",    "1OG",
                                            "",  "Büro 2", "a<", "Copied_Item", "config", "x"};
        return names[below(std::size(names))];
    }
    std::string number() {
        static const char* const numbers[] = {"1", "255", "256", "-1", "2.5", "", "1e9", "x"};
        return numbers[below(std::size(numbers))];
    }
    Node* anyNode() {
        auto node = document.tree().nodes().begin();
        for (auto skipped = below(document.tree().nodes().size()); skipped > 0; --skipped)
            ++node;
        return (*node).get();
    }

    void doOne(std::size_t deed) {
        const bool tree = document.open && document.tree().nodes().size() > 0;
        if (deed == 0 && tree) return click(anyNode()->key().string());
        if (deed == 1 && tree) return editor.TreeView1_DblClick();
        if (deed == 2 && tree) return editor.ListView1_DblClick();
        if (deed == 3) return editor.ListView1_ColumnClick(below(7));
        if (deed == 4 && !editor.ListView1.rows().empty()) {
            selectRow(below(editor.ListView1.rows().size()));
            return editor.ListView1_Click();
        }
        if (deed == 5 && tree) {
            const std::string from = anyNode()->key().string();
            TreeDrag& drag = editor.treeDrag();
            if (!drag.TreeView1_MouseDown(TreeDrag::rightButton,
                                          below(2) == 0 ? 0 : TreeDrag::ctrlMask,
                                          document.tree().FindNode(from))) {
                return;
            }
            const DropEffect effect = drag.TreeView1_OLEStartDrag();
            drag.TreeView1_OLEDragOver(anyNode());
            return drag.TreeView1_OLEDragDrop(effect);
        }
        // Whatever the menus would let the user do now.
        const auto& commands = commandTable();
        const Command& command = commands[deed % commands.size()];
        if (command.kind == Command::Kind::entry && command.name != "mnuExit" &&
            command.name != "mnuFind" && editor.isEnabled(command)) {
            editor.run(command);
        }
    }

    std::string_view deeds_;
};

}  // namespace

/// What many deeds break, a few hundred do; and shorter runs are more runs.
FUZZ_TARGET(input) { User(input.substr(0, 300)).doAll(); }
