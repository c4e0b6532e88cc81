// Proportional resizing: when a form changes its size, everything on it follows.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "layout/clsResizeForm.h"

/// The geometry of a control within its form, in whole units of the toolkit (pixels, say). A
/// line has its two ends, any other control its rectangle.
enum class Measure { left, top, width, height, x1, x2, y1, y2 };

/// A control, as a toolkit offers it to mResize. What the control does not have, or what cannot
/// be read just now, is nothing; a value that it cannot take is ignored.
class ResizableControl {
 public:
    virtual ~ResizableControl() = default;

    /// Name and index together tell the controls of a form apart.
    virtual std::string name() const = 0;
    /// The index in a control array.
    virtual std::optional<int> index() const { return std::nullopt; }
    /// "Line" for a line, "MSFlexGrid" or "Grid" for a grid; any other word for the rest.
    virtual std::string typeName() const = 0;

    virtual std::optional<int> measure(Measure measure) const = 0;
    virtual void setMeasure(Measure measure, int value) = 0;

    /// The font's size in points, fractions included.
    virtual std::optional<double> fontSize() const { return std::nullopt; }
    virtual void setFontSize(double /*size*/) {}

    /// A grid's column widths and row heights, from the first on.
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

    /// What tells the forms of the program apart.
    virtual std::string name() const = 0;
    virtual FormSize size() const = 0;
    virtual bool minimised() const = 0;
    /// All controls that are to follow; they must live until the resizing is done.
    virtual std::vector<ResizableControl*> controls() = 0;
    /// Draws the form anew.
    virtual void refresh() = 0;
};

/// Moves and resizes the controls of forms in proportion to these. The program has one, and
/// hands it a form whenever that has changed its size:
///
///     resizing.resize(form, sizeAtStart);
///
/// The first call for a form records its reference size and the geometry of its controls; every
/// call computes all controls from what was recorded. So nothing is lost however often the form
/// is resized, and at its reference size everything is as it was at first. A control that
/// appears later is recorded at the first call that finds it, with the geometry that it has
/// then and as if the form had its reference size.
///
/// Positions and sizes are cut down to whole numbers. Fonts are not, and follow the direction in
/// which the form grew least, so that text never outgrows its control. The columns and rows of a
/// grid follow the grid.
class mResize {
 public:
    /// Makes the form's controls follow its present size, and draws it anew. Does nothing while
    /// the form is minimised. `reference` counts at the first call for the form only; without it
    /// the form's size at that call is the reference. In a direction in which the reference is 0
    /// there is no proportion, and everything keeps its initial values.
    void resize(ResizableForm& form, std::optional<FormSize> reference = std::nullopt);

 private:
    std::map<std::string, clsResizeForm> forms_;
};
