// How wide the tree's contents are.
#pragma once

#include <QFont>
#include <array>

#include "model/ConfigTree.h"

/// The width of the widest row that lies open, in pixels. It is told what opens, closes and
/// changes, and measures no more than that: so a tree of all rows that a bus can fill costs
/// nothing while the user works in a part of it. Whether a row is in sight does not count.
class TreeWidth {
 public:
    /// Begins anew: rows are indented by so much for each level, and have so much beside a text.
    void reset(const QFont& font, int indentation, int besideText);
    /// Begins anew, with the same measures.
    void reset() { countAnew_ = true; }
    /// The node has come, or what is below it opens.
    void opened(const Node& node);
    /// The node has another text.
    void changed(const Node& node);
    /// The node goes itself, or what is below it closes.
    void leaving(const Node& node, bool itself);

    /// Of all rows below the root and its own; 0 without a root.
    int width(const Node* root);

 private:
    void measure(const Node& node, std::size_t level);
    static std::size_t levelIfOpen(const Node& node);
    void measureOpenRows(const Node& top);
    double advanceOf(std::string_view text) const;

    QFont font_;
    int indentation_ = 0;
    int besideText_ = 0;
    // Of the characters of ISO-8859-1, which nearly all names are made of.
    std::array<double, 256> advances_{};
    const Node* widest_ = nullptr;
    double width_ = 0;
    bool countAnew_ = true;
};
