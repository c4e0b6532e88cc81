// The controls of a form, without a toolkit: what the rules read and write.
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
    /// Once: the keyboard goes there, to type over the text.
    bool getsFocus = false;
};

/// A text with proposals. Whether the user may type another one is the window's matter.
struct ComboBox {
    std::string text;
    std::vector<std::string> list;
};

struct Button {
    std::string caption;
    bool enabled = true;
};

/// Three columns of texts; the first row holds the headings.
struct Grid {
    std::array<int, 3> colWidth{};  ///< in twips, 1/1440 of an inch
    std::vector<std::array<std::string, 3>> rows;
};
