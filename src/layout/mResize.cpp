#include "layout/mResize.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <string_view>
#include <system_error>

namespace {

/// How a length has changed since it was recorded. A recorded length of 0 has no proportion; it
/// counts as unchanged.
class Change {
 public:
    Change(int recorded, int now) : recorded_(recorded), now_(now) {
        if (recorded <= 0) recorded_ = now_ = 1;
    }

    double ratio() const { return static_cast<double>(now_) / recorded_; }

    /// Scales the initial value and truncates the result to a whole number. Uses integers: a double
    /// seldom holds the ratio exactly, so that 30 * (200 / 600) would be 9.999..., truncated to 9.
    int appliedTo(int initial) const {
        return static_cast<int>(std::int64_t{initial} * now_ / recorded_);
    }

 private:
    int recorded_;
    int now_;
};

/// The changes of a form or a grid in both directions.
struct Changes {
    Change width;
    Change height;
};

struct TagField {
    Measure measure;
    Change Changes::*direction;
};

/// The fields that a control's Tag begins with.
const std::array<TagField, 4>& tagFields(const ResizableControl& control) {
    static constexpr std::array<TagField, 4> line{{{Measure::x1, &Changes::width},
                                                   {Measure::x2, &Changes::width},
                                                   {Measure::y1, &Changes::height},
                                                   {Measure::y2, &Changes::height}}};
    static constexpr std::array<TagField, 4> rectangle{{{Measure::left, &Changes::width},
                                                        {Measure::top, &Changes::height},
                                                        {Measure::width, &Changes::width},
                                                        {Measure::height, &Changes::height}}};
    return control.typeName() == "Line" ? line : rectangle;
}

/// The number as a text that reads back as exactly this number; an empty text for no number.
template <typename Number>
std::string fieldText(std::optional<Number> number) {
    if (!number) return {};
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), *number);
    return {text.data(), end.ptr};
}

/// Removes the first field from the tag, and returns its number.
template <typename Number>
std::optional<Number> takeField(std::string_view& tag) {
    const std::string_view field = tag.substr(0, tag.find('|'));
    tag.remove_prefix(std::min(field.size() + 1, tag.size()));
    Number number{};
    const auto end = std::from_chars(field.data(), field.data() + field.size(), number);
    return end.ec == std::errc() ? std::optional(number) : std::nullopt;
}

clsResizeControl recordOf(const ResizableControl& control) {
    clsResizeControl record;
    record.Ctrl_Name = control.name();
    record.Ctrl_Index = control.index();
    for (const TagField& field : tagFields(control))
        record.Tag += fieldText(control.measure(field.measure)) + "|";
    record.Tag.pop_back();
    if (const auto size = control.fontSize()) record.Tag += "|" + fieldText(size);
    if (const auto type = control.typeName(); type == "MSFlexGrid" || type == "Grid") {
        record.ColWidth = control.colWidths();
        record.RowHeight = control.rowHeights();
    }
    return record;
}

/// Resizes the columns or the rows of a grid. Those that did not exist when the grid was recorded
/// keep their sizes.
template <typename Set>
void resizeColumnsOrRows(const std::vector<int>& initial, const std::vector<int>& present,
                         Change change, Set set) {
    const std::size_t count = std::min(initial.size(), present.size());
    for (std::size_t i = 0; i < count; ++i) {
        const int size = change.appliedTo(initial[i]);
        if (size != present[i]) set(i, size);
    }
}

void resizeControl(ResizableControl& control, const clsResizeControl& record,
                   const Changes& changes) {
    std::string_view tag = record.Tag;
    Changes own = changes;
    for (const TagField& field : tagFields(control)) {
        const auto initial = takeField<int>(tag);
        const auto present = control.measure(field.measure);
        if (!initial || !present) continue;
        const int value = (changes.*field.direction).appliedTo(*initial);
        if (value != *present) control.setMeasure(field.measure, value);
        // Read the size back: the control may have a minimum size.
        const int became = control.measure(field.measure).value_or(value);
        if (field.measure == Measure::width) own.width = {*initial, became};
        if (field.measure == Measure::height) own.height = {*initial, became};
    }
    if (const auto initial = takeField<double>(tag)) {
        const double size = *initial * std::min(changes.width.ratio(), changes.height.ratio());
        const auto present = control.fontSize();
        if (present && *present != size) control.setFontSize(size);
    }
    // Computed from the recorded sizes, like all else, so that they also come back exactly.
    resizeColumnsOrRows(record.ColWidth, control.colWidths(), own.width,
                        [&](std::size_t column, int width) { control.setColWidth(column, width); });
    resizeColumnsOrRows(record.RowHeight, control.rowHeights(), own.height,
                        [&](std::size_t row, int height) { control.setRowHeight(row, height); });
}

/// Returns the record of the control; makes it when there is none.
const clsResizeControl& recordIn(clsResizeForm& form, const ResizableControl& control) {
    const auto* found = form.GetControl(clsResizeControl::keyOf(control.name(), control.index()));
    return found != nullptr ? *found : form.SetControl(recordOf(control));
}

}  // namespace

void mResize::resize(ResizableForm& form, std::optional<FormSize> reference) {
    if (form.minimised()) return;
    const FormSize size = form.size();
    const auto [entry, isNew] = forms_.try_emplace(form.name());
    clsResizeForm& record = entry->second;
    if (isNew) {
        record.Form_Name = form.name();
        record.Form_Width = reference.value_or(size).width;
        record.Form_Height = reference.value_or(size).height;
    }

    // Record all before the first is moved: a control may contain another.
    const auto controls = form.controls();
    for (const ResizableControl* control : controls)
        recordIn(record, *control);
    const Changes changes{{record.Form_Width, size.width}, {record.Form_Height, size.height}};
    for (ResizableControl* control : controls)
        resizeControl(*control, recordIn(record, *control), changes);
    form.refresh();
}
