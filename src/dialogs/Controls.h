// The controls of a form as plain data, which the rules read and write without a toolkit.
#pragma once

#include <array>
#include <string>
#include <vector>

struct Label {
    std::string caption;
    bool enabled = true;
};

struct TextBox {
    std::string text;
    bool enabled = true;
    /// Set to move the keyboard focus here once, with the text selected.
    bool getsFocus = false;
};

/// A text with a list of proposals. The window decides whether the user may type another text.
struct ComboBox {
    std::string text;
    std::vector<std::string> list;
};

struct Button {
    std::string caption;
    bool enabled = true;
};

/// Three columns of texts. The first row contains the headings.
struct Grid {
    std::array<int, 3> colWidth{};  ///< in twips, 1/1440 of an inch
    std::vector<std::array<std::string, 3>> rows;
};
