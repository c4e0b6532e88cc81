// Widgets as the proportional resizing knows controls.
#pragma once

#include <QWidget>
#include <deque>
#include <functional>

#include "layout/mResize.h"

/// A widget's rectangle within its parent and its font.
class ResizableWidget : public ResizableControl {
 public:
    /// `heightChanged` is called with the height that the widget has been given.
    explicit ResizableWidget(QWidget* widget, std::function<void(int)> heightChanged = nullptr)
        : widget_(widget), heightChanged_(std::move(heightChanged)) {}

    std::string name() const override;
    std::string typeName() const override;
    std::optional<int> measure(Measure measure) const override;
    void setMeasure(Measure measure, int value) override;
    std::optional<double> fontSize() const override;
    /// A text that is too small to be read keeps the least readable size.
    void setFontSize(double size) override;

 private:
    QWidget* widget_;
    std::function<void(int)> heightChanged_;
    double fontSize_ = widget_->font().pointSizeF();  // what was asked for, readable or not
};

/// A widget and the children that follow its size.
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
