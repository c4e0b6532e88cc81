// The initial geometry of a control.
#pragma once

#include <optional>
#include <string>
#include <vector>

/// The initial geometry of one control of a form. Every later geometry is computed from it.
struct clsResizeControl {
    std::string Ctrl_Name;
    /// The index in a control array; empty for a control that is in none.
    std::optional<int> Ctrl_Index;
    /// Numbers joined with "|": X1, X2, Y1, Y2 of a line; Left, Top, Width, Height of any other
    /// control; then the font size, if the control has one. A number that the control does not have
    /// is an empty field: "10|20||30|8.25".
    std::string Tag;
    /// The initial column widths and row heights of a grid; empty for other controls.
    std::vector<int> ColWidth;
    std::vector<int> RowHeight;

    /// The key of the control within its form: its name, "_" and its index ("cmdOk_",
    /// "txtAddress_2").
    static std::string keyOf(const std::string& name, std::optional<int> index) {
        return name + "_" + (index ? std::to_string(*index) : std::string());
    }
};
