// The controls of a form, without a toolkit: what the rules read and write.
#pragma once

#include <string>
#include <vector>

struct Label {
    std::string caption;
    bool enabled = true;
};

struct TextBox {
    std::string text;
    bool enabled = true;
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
