#include "qt/TreeWidth.h"

#include <QFontMetricsF>
#include <cmath>

#include "qt/Text.h"

void TreeWidth::reset(const QFont& font, int indentation, int besideText) {
    font_ = font;
    indentation_ = indentation;
    besideText_ = besideText;
    const QFontMetricsF metrics(font_);
    for (std::size_t c = 0; c < advances_.size(); ++c)
        advances_[c] = metrics.horizontalAdvance(QChar(static_cast<char16_t>(c)));
    mustRemeasure_ = true;
}

void TreeWidth::opened(const Node& node) {
    if (!mustRemeasure_) measureOpenRows(node);
}

void TreeWidth::changed(const Node& node) {
    if (widest_ == &node) mustRemeasure_ = true;  // it may be narrower now
    const std::size_t level = levelIfOpen(node);
    if (!mustRemeasure_ && level > 0) measure(node, level);
}

void TreeWidth::closing(const Node& node, bool itself) {
    if (mustRemeasure_) return;
    const Node* above = widest_;
    if (above == &node && !itself) return;
    while (above != nullptr && above != &node)
        above = above->parent();
    if (above != nullptr) mustRemeasure_ = true;
}

int TreeWidth::width(const Node* root) {
    if (mustRemeasure_) {
        mustRemeasure_ = false;
        widest_ = nullptr;
        width_ = 0;
        if (root != nullptr) measureOpenRows(*root);
    }
    return static_cast<int>(std::ceil(width_));
}

/// The level of the node, 1 for the root; 0 while the node is not open.
std::size_t TreeWidth::levelIfOpen(const Node& node) {
    std::size_t level = 1;
    for (const Node* above = node.parent(); above != nullptr; above = above->parent(), ++level)
        if (!above->expanded()) return 0;
    return level;
}

/// Measures the node and the open rows below it; nothing while the node itself is not open.
void TreeWidth::measureOpenRows(const Node& top) {
    const std::size_t level = levelIfOpen(top);
    if (level == 0) return;
    measure(top, level);
    if (!top.expanded()) return;
    for (TreeWalk walk(top); const Node* node = walk.next();) {
        measure(*node, level + walk.depth());
        if (!node->expanded()) walk.skipChildren();
    }
}

void TreeWidth::measure(const Node& node, std::size_t level) {
    const double width =
        static_cast<double>(level) * indentation_ + besideText_ + advanceOf(node.text());
    if (width <= width_) return;
    width_ = width;
    widest_ = &node;
}

double TreeWidth::advanceOf(std::string_view text) const {
    double advance = 0;
    int characters = 0;
    for (std::size_t i = 0; i < text.size(); ++characters) {
        const char32_t c = nextCharacter(text, i);
        // The lines of a text are below one another.
        if (c >= advances_.size() || c == '\n' || characters == drawnCharacters) {
            return QFontMetricsF(font_).size(Qt::AlignLeft, toQt(text, drawnCharacters)).width();
        }
        advance += advances_[c];
    }
    return advance;
}
