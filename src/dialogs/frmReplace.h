// The preview dialog of pasted names and comments.
#pragma once

#include "dialogs/Controls.h"

/// Shows the old and the new text of each selected item. The user accepts or rejects all of them.
class frmReplace {
 public:
    static constexpr const char* caption = "Replace Text";
    Grid Grid1{.colWidth = {2000, 400, 2000}, .rows = {}};
    /// For each row of the grid, why its text will be refused or cannot be saved; empty for no
    /// fault.
    std::vector<std::string> faults;
    Button Command1{"Cancel"};
    Button Command2{"Replace"};

    void Command1_Click() { closed_ = true; }
    void Command2_Click() { accepted_ = closed_ = true; }

    bool accepted() const { return accepted_; }
    bool closed() const { return closed_; }

 private:
    bool accepted_ = false;
    bool closed_ = false;
};
