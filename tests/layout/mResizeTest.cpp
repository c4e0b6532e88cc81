#include "layout/mResize.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace {

using Measures = std::map<Measure, int>;
Measures rectangle(int left, int top, int width, int height) {
    return {{Measure::left, left},
            {Measure::top, top},
            {Measure::width, width},
            {Measure::height, height}};
}

struct Control : ResizableControl {
    Control(const char* typeName, Measures measures)
        : type(typeName), values(std::move(measures)) {}

    std::string name() const override { return "control"; }
    std::optional<int> index() const override { return place; }
    std::string typeName() const override { return type; }
    std::optional<int> measure(Measure measure) const override {
        return values.contains(measure) ? std::optional(values.at(measure)) : std::nullopt;
    }
    void setMeasure(Measure measure, int value) override {
        values.at(measure) = std::max(value, least);
        if (inside != nullptr) inside->values = values;
    }
    std::optional<double> fontSize() const override { return font; }
    void setFontSize(double size) override { font = size; }
    std::vector<int> colWidths() const override { return columns; }
    void setColWidth(std::size_t column, int width) override { columns[column] = width; }
    std::vector<int> rowHeights() const override { return rows; }
    void setRowHeight(std::size_t row, int height) override { rows[row] = height; }

    std::string type;
    Measures values;
    std::vector<int> columns, rows;
    std::optional<int> place;
    std::optional<double> font;
    int least = -1000;
    Control* inside = nullptr;  // fills it
};

struct Form : ResizableForm {
    std::string name() const override { return title; }
    FormSize size() const override { return now; }
    bool minimised() const override { return isMinimised; }
    std::vector<ResizableControl*> controls() override { return all; }
    void refresh() override {}

    std::string title = "frmEditing";
    FormSize now;
    bool isMinimised = false;
    std::vector<ResizableControl*> all;
};

class Resizing : public ::testing::Test {
 protected:
    void resizeTo(int width, int height) {
        form.now = {width, height};
        resizing.resize(form);
    }
    mResize resizing;
    Form form;
    Control box{"TextBox", rectangle(200, 101, 30, 30)};
};

TEST_F(Resizing, MovesAndStretchesInProportionCutToWholeNumbers) {
    const struct {
        int width, height;
        Measures box;
        double font;
    } cases[] = {{1500, 600, rectangle(300, 101, 45, 30), 9.9},  // the smaller percentage is 0
                 {1500, 660, rectangle(300, 111, 45, 33), 9.9 * 1.1},
                 {1290, 200, rectangle(258, 33, 38, 10), 9.9 / 3},
                 {999, 599, rectangle(199, 100, 29, 29), 9.9 * 599 / 600},
                 {1000, 600, rectangle(200, 101, 30, 30), 9.9}};
    box.font = 9.9;
    form.all = {&box};
    resizeTo(1000, 600);
    for (const auto& [width, height, values, font] : cases) {
        form.isMinimised = true;
        resizeTo(10, 10);
        form.isMinimised = false;
        resizeTo(width, height);
        EXPECT_EQ(box.values, values) << width << " x " << height;
        EXPECT_NEAR(*box.font, font, 1e-9) << width << " x " << height;
    }
    EXPECT_EQ(*box.font, 9.9);  // exactly
}

TEST_F(Resizing, MeasuresFromTheReferenceThatTheFirstCallGave) {
    form.all = {&box};
    form.now = {1000, 600};
    resizing.resize(form, FormSize{500, 300});
    resizing.resize(form, FormSize{1000, 600});
    EXPECT_EQ(box.values, rectangle(400, 202, 60, 60));

    form.title = "frmFind";  // has a record of its own, and no reference in height
    resizing.resize(form, FormSize{500, 0});
    EXPECT_EQ(box.values, rectangle(800, 202, 120, 60));
}

TEST_F(Resizing, TakesEachControlAsItWasFirstSeenAndIsWithWhatItHas) {
    Control later("TextBox", rectangle(20, 10, 5, 1));
    later.place = 1;  // of the same name
    Control rule("Line",
                 {{Measure::x1, 10}, {Measure::x2, 90}, {Measure::y1, -7}, {Measure::y2, 8}});
    rule.place = 2;
    Control label("Label", {{Measure::left, 10}, {Measure::top, 4}});
    label.place = 3;
    label.font = 8.25;
    Control frame("Frame", rectangle(100, 100, 50, 50));
    frame.place = 4;
    frame.inside = &box;
    form.all = {&frame, &box, &rule, &label};
    resizeTo(1000, 600);
    form.all.push_back(&later);
    resizeTo(2000, 900);
    EXPECT_EQ(later.values, rectangle(40, 15, 10, 1));
    const Measures stretched{
        {Measure::x1, 20}, {Measure::x2, 180}, {Measure::y1, -10}, {Measure::y2, 12}};
    EXPECT_EQ(rule.values, stretched);
    EXPECT_EQ(label.values, (Measures{{Measure::left, 20}, {Measure::top, 6}}));
    EXPECT_EQ(label.font, 8.25 * 1.5);
    resizeTo(1000, 600);
    EXPECT_EQ(box.values, rectangle(200, 101, 30, 30));
    EXPECT_EQ(later.values, rectangle(20, 10, 5, 1));
}

TEST_F(Resizing, LetsColumnsAndRowsFollowTheirGrid) {
    Control grid("MSFlexGrid", rectangle(200, 200, 300, 200));
    grid.columns = {100, 33};
    grid.rows = {20};
    grid.least = 150;
    form.all = {&grid};
    resizeTo(1000, 600);
    resizeTo(200, 900);  // the grid keeps half of its width
    grid.columns.push_back(70);
    EXPECT_EQ(grid.columns, (std::vector{50, 16, 70}));
    EXPECT_EQ(grid.rows, std::vector{30});
    resizeTo(1000, 600);
    EXPECT_EQ(grid.columns, (std::vector{100, 33, 70}));
    EXPECT_EQ(grid.rows, std::vector{20});
}

}  // namespace
