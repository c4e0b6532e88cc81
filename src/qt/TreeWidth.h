// Measures the width of the tree's contents.
#pragma once

#include <QFont>
#include <array>

#include "model/ConfigTree.h"

/// The width of the widest open row, in pixels. A row is open if all nodes above it are expanded,
/// whether it is scrolled into view or not. The functions are called when rows open, close or
/// change, and measure these rows only. So a change takes little time even in the largest tree.
class TreeWidth {
 public:
    /// Measures all rows again. `indentation` is the width of a level, `besideText` that of the
    /// parts of a row beside its text, in pixels.
    void reset(const QFont& font, int indentation, int besideText);
    /// Measures all rows again, with the same font and widths.
    void reset() { mustRemeasure_ = true; }
    /// The node was added or expanded.
    void opened(const Node& node);
    /// The text of the node has changed.
    void changed(const Node& node);
    /// The node is about to be removed (`itself`), or was collapsed.
    void closing(const Node& node, bool itself);

    /// The width of the widest open row of the tree with that root; 0 without a root.
    int width(const Node* root);

 private:
    void measure(const Node& node, std::size_t level);
    static std::size_t levelIfOpen(const Node& node);
    void measureOpenRows(const Node& top);
    double advanceOf(std::string_view text) const;

    QFont font_;
    int indentation_ = 0;
    int besideText_ = 0;
    // The widths of the characters of ISO-8859-1; nearly all names contain no others.
    std::array<double, 256> advances_{};
    const Node* widest_ = nullptr;
    double width_ = 0;
    bool mustRemeasure_ = true;
};
