// Proportional resizing: when a form changes its size, its controls change with it.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "layout/clsResizeForm.h"

/// The geometry of a control within its form, in whole units of the toolkit, for example pixels. A
/// line has two end points, any other control a rectangle.
enum class Measure { left, top, width, height, x1, x2, y1, y2 };

/// A control, as a toolkit presents it to mResize. A value that the control does not have, or that
/// cannot be read now, is empty. A value that the control cannot take is ignored.
class ResizableControl {
 public:
    virtual ~ResizableControl() = default;

    /// Name and index together are unique within the form.
    virtual std::string name() const = 0;
    /// The index in a control array.
    virtual std::optional<int> index() const { return std::nullopt; }
    /// "Line" for a line, "MSFlexGrid" or "Grid" for a grid; any other text for other controls.
    virtual std::string typeName() const = 0;

    virtual std::optional<int> measure(Measure measure) const = 0;
    virtual void setMeasure(Measure measure, int value) = 0;

    /// The font size in points; may be a fraction.
    virtual std::optional<double> fontSize() const { return std::nullopt; }
    virtual void setFontSize(double /*size*/) {}

    /// The column widths and row heights of a grid, in order; empty for other controls.
    virtual std::vector<int> colWidths() const { return {}; }
    virtual void setColWidth(std::size_t /*column*/, int /*width*/) {}
    virtual std::vector<int> rowHeights() const { return {}; }
    virtual void setRowHeight(std::size_t /*row*/, int /*height*/) {}
};

struct FormSize {
    int width = 0;
    int height = 0;
};

/// A window with controls on it.
class ResizableForm {
 public:
    virtual ~ResizableForm() = default;

    /// Unique among the forms of the program.
    virtual std::string name() const = 0;
    virtual FormSize size() const = 0;
    virtual bool minimised() const = 0;
    /// All controls to resize. They must exist until the resizing is done.
    virtual std::vector<ResizableControl*> controls() = 0;
    /// Repaints the form.
    virtual void refresh() = 0;
};

/// Moves and resizes the controls of forms in proportion to the size of the form. The program has
/// one mResize, and calls it whenever a form has changed its size:
///
///     resizing.resize(form, sizeAtStart);
///
/// The first call for a form records its reference size and the geometry of its controls. Every
/// call computes all controls from the recorded values. So rounding errors do not add up, and at
/// the reference size every control has its initial geometry again. A control that is added later
/// is recorded at the next call, with the geometry that it has then, as if the form had its
/// reference size.
///
/// Positions and sizes are truncated to whole numbers. Font sizes are not; they follow the
/// direction in which the form grew less, so that the text still fits its control. The columns and
/// rows of a grid follow the size of the grid.
class mResize {
 public:
    /// Adapts the form's controls to its present size, and repaints it. Does nothing while the form
    /// is minimised. `reference` is used only at the first call for the form; without it, the
    /// form's size at that call is the reference. In a direction in which the reference is 0, the
    /// controls keep their initial values.
    void resize(ResizableForm& form, std::optional<FormSize> reference = std::nullopt);

 private:
    std::map<std::string, clsResizeForm> forms_;
};
