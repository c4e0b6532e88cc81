#include "qt/ResizableWidgets.h"

#include <algorithm>

#include "qt/Text.h"

std::string ResizableWidget::name() const { return fromQt(widget_->objectName()); }

std::string ResizableWidget::typeName() const { return widget_->metaObject()->className(); }

std::optional<int> ResizableWidget::measure(Measure measure) const {
    switch (measure) {
        case Measure::left: return widget_->x();
        case Measure::top: return widget_->y();
        case Measure::width: return widget_->width();
        case Measure::height: return widget_->height();
        default: return std::nullopt;  // widgets are not lines
    }
}

void ResizableWidget::setMeasure(Measure measure, int value) {
    switch (measure) {
        case Measure::left: return widget_->move(value, widget_->y());
        case Measure::top: return widget_->move(widget_->x(), value);
        case Measure::width: return widget_->resize(value, widget_->height());
        case Measure::height:
            if (heightChanged_) heightChanged_(value);
            return widget_->resize(widget_->width(), value);
        default: return;
    }
}

std::optional<double> ResizableWidget::fontSize() const {
    if (fontSize_ <= 0) return std::nullopt;  // the size of the font is set in pixels
    return fontSize_;
}

void ResizableWidget::setFontSize(double size) {
    constexpr double leastReadable = 7;
    fontSize_ = size;
    QFont font = widget_->font();
    font.setPointSizeF(std::max(size, leastReadable));
    widget_->setFont(font);
}

std::string ResizableArea::name() const { return fromQt(area_->window()->objectName()); }

std::vector<ResizableControl*> ResizableArea::controls() {
    std::vector<ResizableControl*> controls;
    for (ResizableWidget& child : children_)
        controls.push_back(&child);
    return controls;
}
