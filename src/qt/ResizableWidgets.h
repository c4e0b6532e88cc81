// Adapts widgets to the interface of the proportional resizing.
#pragma once

#include <QWidget>
#include <deque>
#include <functional>

#include "layout/mResize.h"

/// Reads and sets a widget's rectangle within its parent, in pixels, and its font size, in points.
class ResizableWidget : public ResizableControl {
 public:
    /// `heightChanged` is called with each new height of the widget.
    explicit ResizableWidget(QWidget* widget, std::function<void(int)> heightChanged = nullptr)
        : widget_(widget), heightChanged_(std::move(heightChanged)) {}

    std::string name() const override;
    std::string typeName() const override;
    std::optional<int> measure(Measure measure) const override;
    void setMeasure(Measure measure, int value) override;
    std::optional<double> fontSize() const override;
    /// Sets at least the smallest readable size.
    void setFontSize(double size) override;

 private:
    QWidget* widget_;
    std::function<void(int)> heightChanged_;
    double fontSize_ = widget_->font().pointSizeF();  // as set, even if too small to read
};

/// A widget and those of its children that are resized with it.
class ResizableArea : public ResizableForm {
 public:
    explicit ResizableArea(QWidget* area) : area_(area) {}

    void add(QWidget* child, std::function<void(int)> heightChanged = nullptr) {
        children_.emplace_back(child, std::move(heightChanged));
    }

    std::string name() const override;
    FormSize size() const override { return {area_->width(), area_->height()}; }
    bool minimised() const override { return area_->window()->isMinimized(); }
    std::vector<ResizableControl*> controls() override;
    void refresh() override { area_->update(); }

 private:
    QWidget* area_;
    std::deque<ResizableWidget> children_;
};
