// What one control looked like at first.
#pragma once

#include <optional>
#include <string>
#include <vector>

/// The initial geometry of one control of a form: what every later geometry is computed from.
struct clsResizeControl {
    std::string Ctrl_Name;
    /// The control's index in a control array; nothing for a control that stands alone.
    std::optional<int> Ctrl_Index;
    /// The initial geometry, its numbers joined with "|": X1, X2, Y1, Y2 of a line, else Left,
    /// Top, Width, Height; then the font size, where there is one. A number that the control does
    /// not have is an empty field: "10|20||30|8.25".
    std::string Tag;
    /// The initial widths of a grid's columns and heights of its rows; empty for other controls.
    std::vector<int> ColWidth;
    std::vector<int> RowHeight;

    /// What the control is known by within its form: its name, "_" and its index ("cmdOk_",
    /// "txtAddress_2").
    static std::string keyOf(const std::string& name, std::optional<int> index) {
        return name + "_" + (index ? std::to_string(*index) : std::string());
    }
};
