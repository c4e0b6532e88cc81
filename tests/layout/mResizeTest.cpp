#include "layout/mResize.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <sstream>

#include "editor/frmEditing.h"

namespace {

/// Left, top, width and height; then the end points of a line.
using Measures = std::array<std::optional<int>, 8>;
constexpr auto none = std::nullopt;

struct Control : ResizableControl {
    Control(const char* itsId, int itsNumber, const char* itsKind, Measures all)
        : id(itsId), number(itsNumber), kind(itsKind), values(all) {}
    std::string name() const override { return id; }
    std::optional<int> index() const override { return number; }
    std::string typeName() const override { return kind; }
    std::optional<int> measure(Measure measure) const override {
        return values.at(static_cast<std::size_t>(measure));
    }
    void setMeasure(Measure measure, int value) override {
        values.at(static_cast<std::size_t>(measure)) = std::max(value, least);
        if (inside != nullptr) inside->values = values;
    }
    std::optional<double> fontSize() const override { return font; }
    void setFontSize(double size) override { font = size; }
    std::vector<int> colWidths() const override { return columns; }
    void setColWidth(std::size_t column, int width) override { columns.at(column) = width; }
    std::vector<int> rowHeights() const override { return rows; }
    void setRowHeight(std::size_t row, int height) override { rows.at(row) = height; }

    const char* id;
    int number;
    const char* kind;
    Measures values;
    std::optional<double> font;
    std::vector<int> columns, rows;
    int least = -1000;
    Control* inside = nullptr;  // fills it
};

struct Form : ResizableForm {
    std::string name() const override { return title; }
    FormSize size() const override { return now; }
    bool minimised() const override { return now.width == 10; }
    std::vector<ResizableControl*> controls() override { return all; }
    void refresh() override {}

    std::string title = "frmEditing";
    FormSize now;
    std::vector<ResizableControl*> all;
};

/// All numbers of a control. "FONT" in upper case means: exactly the first font size.
std::string shown(const Control& control) {
    std::ostringstream text;
    for (const std::optional<int> value : control.values)
        if (value) text << " " << *value;
    if (control.font) text << (*control.font == 9.9 ? " FONT " : " font ") << *control.font;
    for (const auto& lanes : {control.columns, control.rows})
        for (const int lane : lanes)
            text << " " << lane;
    return text.str();
}

TEST(Resizing, StartsFromFixedFractionsOfTheWindow) {
    const auto [toolbar, tree, list] = frmEditing::layoutFor({1000, 600});
    EXPECT_EQ(toolbar, (Rectangle{0, 0, 1000, 24}));
    EXPECT_EQ(tree, (Rectangle{0, 30, 400, 570}));
    EXPECT_EQ(list, (Rectangle{410, 30, 590, 570}));
}

TEST(Resizing, ScalesControlsFromTheirFirstMeasures) {
    Control box("a", 0, "TextBox", {200, 101, 30, 30});
    Control frame("a", 1, "Frame", {100, 100, 50, 50});
    Control line("b", 1, "Line", {none, none, none, none, 10, 90, -7, 8});
    Control label("b", 2, "Label", {10, 4});  // without a size
    Control grid("c", 1, "MSFlexGrid", {200, 200, 300, 200});
    Control later("c", 2, "TextBox", {20, 10, 5, 1});
    box.font = label.font = 9.9;
    frame.inside = &box;
    grid.columns = {100, 33};
    grid.rows = {20};
    grid.least = 150;
    Form form;
    form.all = {&frame, &box, &line, &label, &grid};
    mResize resizing;
    std::string all;
    // At 10 x 10 the form is minimised. At 200 x 900 the grid reaches its minimum width.
    for (const FormSize size : {FormSize{1000, 600},
                                {1500, 600},
                                {10, 10},
                                {1500, 660},
                                {1290, 200},
                                {200, 900},
                                {1000, 600}}) {
        form.now = size;
        resizing.resize(form);
        all += "\n" + std::to_string(size.width) + " x " + std::to_string(size.height) + ":";
        for (const ResizableControl* control : form.all)
            all += shown(dynamic_cast<const Control&>(*control)) + ",";
        if (form.all.size() == 5) form.all.push_back(&later);
        if (grid.columns.size() == 2) grid.columns.push_back(70);
        if (size.height == 900) grid.columns = {50};
    }
    EXPECT_EQ(all, R"(
1000 x 600: 100 100 50 50, 200 101 30 30 FONT 9.9, 10 90 -7 8, 10 4 FONT 9.9, 200 200 300 200 100 33 20,
1500 x 600: 150 100 75 50, 300 101 45 30 FONT 9.9, 15 135 -7 8, 15 4 FONT 9.9, 300 200 450 200 150 49 70 20, 30 10 7 1,
10 x 10: 150 100 75 50, 300 101 45 30 FONT 9.9, 15 135 -7 8, 15 4 FONT 9.9, 300 200 450 200 150 49 70 20, 30 10 7 1,
1500 x 660: 150 110 75 55, 300 111 45 33 font 10.89, 15 135 -7 8, 15 4 font 10.89, 300 220 450 220 150 49 70 22, 30 11 7 1,
1290 x 200: 129 33 64 16, 258 33 38 10 font 3.3, 12 116 -2 2, 12 1 font 3.3, 258 150 387 150 129 42 70 15, 25 3 6 0,
200 x 900: 20 150 10 75, 40 151 6 45 font 1.98, 2 18 -10 12, 2 6 font 1.98, 150 300 150 300 50 16 70 30, 4 15 1 1,
1000 x 600: 100 100 50 50, 200 101 30 30 FONT 9.9, 10 90 -7 8, 10 4 FONT 9.9, 200 200 300 200 100 20, 20 10 5 1,)");

    // The first call for another form sets its reference size, here without a height.
    form.title = "frmFind";
    form.now = {1000, 600};
    resizing.resize(form, FormSize{500, 0});
    resizing.resize(form, FormSize{1000, 600});
    EXPECT_EQ(shown(box), " 400 101 60 30 FONT 9.9");
}

}  // namespace
