#include "layout/mResize.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <string_view>
#include <system_error>

namespace {

/// How a length has changed since it was recorded. One that was 0 gives no proportion, and counts
/// as unchanged.
class Change {
 public:
    Change(int recorded, int now) : recorded_(recorded), now_(now) {
        if (recorded <= 0) recorded_ = now_ = 1;
    }

    double ratio() const { return static_cast<double>(now_) / recorded_; }

    /// The initial value plus the change's percentage of it, cut down to a whole number. Without
    /// the percentage on the way: a double seldom holds it. Of 30, when 600 has become 200, it
    /// would make 9.999..., which is cut to 9.
    int appliedTo(int initial) const {
        return static_cast<int>(std::int64_t{initial} * now_ / recorded_);
    }

 private:
    int recorded_;
    int now_;
};

/// The two directions of a form, or of a grid.
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

/// The number as a text that gives exactly this number again; an empty one for no number.
template <typename Number>
std::string fieldText(std::optional<Number> number) {
    if (!number) return {};
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), *number);
    return {text.data(), end.ptr};
}

/// Takes the first field off the tag, and gives its number.
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

/// Makes the columns or the rows of a grid follow; those that were not there when the grid was
/// recorded stay as they are.
template <typename Set>
void resizeLanes(const std::vector<int>& initial, const std::vector<int>& present, Change change,
                 Set set) {
    const std::size_t count = std::min(initial.size(), present.size());
    for (std::size_t lane = 0; lane < count; ++lane) {
        const int size = change.appliedTo(initial[lane]);
        if (size != present[lane]) set(lane, size);
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
        // What the control made of it, not what it was told: it may have a least size.
        const int became = control.measure(field.measure).value_or(value);
        if (field.measure == Measure::width) own.width = {*initial, became};
        if (field.measure == Measure::height) own.height = {*initial, became};
    }
    if (const auto initial = takeField<double>(tag)) {
        const double size = *initial * std::min(changes.width.ratio(), changes.height.ratio());
        const auto present = control.fontSize();
        if (present && *present != size) control.setFontSize(size);
    }
    // From what was recorded, as all else: so they too come back exactly.
    resizeLanes(record.ColWidth, control.colWidths(), own.width,
                [&](std::size_t column, int width) { control.setColWidth(column, width); });
    resizeLanes(record.RowHeight, control.rowHeights(), own.height,
                [&](std::size_t row, int height) { control.setRowHeight(row, height); });
}

/// The control's record in its form's; made now where there is none yet.
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

    // All are recorded before the first is moved, as one may hold another.
    const auto controls = form.controls();
    for (const ResizableControl* control : controls)
        recordIn(record, *control);
    const Changes changes{{record.Form_Width, size.width}, {record.Form_Height, size.height}};
    for (ResizableControl* control : controls)
        resizeControl(*control, recordIn(record, *control), changes);
    form.refresh();
}
