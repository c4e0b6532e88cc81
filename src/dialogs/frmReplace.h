// The preview dialog of pasted names and comments.
#pragma once

#include "dialogs/Controls.h"

/// Shows the old and the new text of each selected item. The user accepts or rejects all of them.
class frmReplace {
 public:
    static constexpr const char* caption = "Replace Text";
    Grid Grid1{.colWidth = {2000, 400, 2000}, .rows = {}};
    /// Why a row of the grid will be refused, or would spoil the file; empty for the others.
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
