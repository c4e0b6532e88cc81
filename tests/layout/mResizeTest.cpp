#include "layout/mResize.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace {

using ::testing::ElementsAre;

constexpr Measure rectangle[] = {Measure::left, Measure::top, Measure::width, Measure::height};
constexpr Measure line[] = {Measure::x1, Measure::x2, Measure::y1, Measure::y2};

struct Control : ResizableControl {
    Control(const char* typeName, const Measure (&measures)[4], std::vector<int> numbers)
        : type(typeName),
          has(std::begin(measures), std::end(measures)),
          values(std::move(numbers)) {}

    std::string name() const override { return "control"; }
    std::optional<int> index() const override { return place; }
    std::string typeName() const override { return type; }
    std::optional<int> measure(Measure measure) const override {
        const std::size_t i = placeOf(measure);
        return i < values.size() ? std::optional(values[i]) : std::nullopt;
    }
    void setMeasure(Measure measure, int value) override {
        ++changes;
        values.at(placeOf(measure)) = std::max(value, least);
    }
    std::size_t placeOf(Measure measure) const {
        return static_cast<std::size_t>(std::ranges::find(has, measure) - has.begin());
    }
    std::optional<double> fontSize() const override { return font; }
    void setFontSize(double size) override { font = size; }
    std::vector<int> colWidths() const override { return columns; }
    void setColWidth(std::size_t column, int width) override { columns[column] = width; }
    std::vector<int> rowHeights() const override { return rows; }
    void setRowHeight(std::size_t row, int height) override { rows[row] = height; }

    std::string type;
    std::vector<Measure> has;
    std::vector<int> values, columns, rows;
    std::optional<int> place;
    std::optional<double> font;
    int least = -1000;
    int changes = 0;
};

struct Form : ResizableForm {
    std::string name() const override { return title; }
    FormSize size() const override { return now; }
    bool minimised() const override { return isMinimised; }
    std::vector<ResizableControl*> controls() override { return all; }
    void refresh() override { ++refreshed; }

    std::string title = "frmEditing";
    FormSize now{1000, 600};
    bool isMinimised = false;
    std::vector<ResizableControl*> all;
    int refreshed = 0;
};

class Resizing : public ::testing::Test {
 protected:
    void resizeTo(int width, int height) {
        form.now = {width, height};
        resizing.resize(form);
    }
    mResize resizing;
    Form form;
    Control box{"TextBox", rectangle, {200, 101, 30, 30}};
};

TEST_F(Resizing, MovesAndStretchesInProportionCutToWholeNumbers) {
    const struct {
        int width, height;
        std::vector<int> box;
        double font;
    } cases[] = {{1500, 600, {300, 101, 45, 30}, 9.9},  // the smaller percentage is 0
                 {1500, 660, {300, 111, 45, 33}, 9.9 * 1.1},
                 {1290, 200, {258, 33, 38, 10}, 9.9 / 3},
                 {999, 599, {199, 100, 29, 29}, 9.9 * 599 / 600},
                 {1000, 600, {200, 101, 30, 30}, 9.9}};
    box.font = 9.9;
    form.all = {&box};
    resizeTo(1000, 600);
    EXPECT_EQ(box.changes, 0);
    for (const auto& [width, height, values, font] : cases) {
        resizeTo(width, height);
        EXPECT_EQ(box.values, values) << width << " x " << height;
        EXPECT_NEAR(*box.font, font, 1e-9) << width << " x " << height;
    }
    EXPECT_EQ(*box.font, 9.9);  // exactly
}

TEST_F(Resizing, MeasuresFromTheReferenceThatTheFirstCallGave) {
    form.all = {&box};
    resizing.resize(form, FormSize{500, 300});
    resizing.resize(form, FormSize{1000, 600});
    EXPECT_THAT(box.values, ElementsAre(400, 202, 60, 60));

    form.title = "frmFind";  // has a record of its own, and no reference in height
    resizing.resize(form, FormSize{500, 0});
    EXPECT_THAT(box.values, ElementsAre(800, 202, 120, 60));
}

TEST_F(Resizing, LeavesAMinimisedFormAlone) {
    form.all = {&box};
    resizeTo(1000, 600);
    form.isMinimised = true;
    resizeTo(10, 10);
    EXPECT_EQ(box.changes, 0);
    EXPECT_EQ(form.refreshed, 1);
}

TEST_F(Resizing, RecordsAControlThatAppearsLaterAsItIsThen) {
    Control later("TextBox", rectangle, {20, 10, 5, 1});
    later.place = 1;  // of the same name
    form.all = {&box};
    resizeTo(1000, 600);
    form.all.push_back(&later);
    resizeTo(2000, 600);
    EXPECT_THAT(later.values, ElementsAre(40, 10, 10, 1));
    resizeTo(1000, 600);
    EXPECT_THAT(box.values, ElementsAre(200, 101, 30, 30));
    EXPECT_THAT(later.values, ElementsAre(20, 10, 5, 1));
}

TEST_F(Resizing, StretchesLinesAndPassesOverWhatAControlDoesNotHave) {
    Control rule("Line", line, {10, 90, -7, 8});
    Control label("Label", rectangle, {10, 4});  // neither width nor height
    label.place = 1;
    label.font = 8.25;
    form.all = {&rule, &label};
    resizeTo(1000, 600);
    resizeTo(2000, 900);
    EXPECT_THAT(rule.values, ElementsAre(20, 180, -10, 12));
    EXPECT_THAT(label.values, ElementsAre(20, 6));
    EXPECT_EQ(label.font, 8.25 * 1.5);
}

TEST_F(Resizing, LetsColumnsAndRowsFollowTheirGrid) {
    Control grid("MSFlexGrid", rectangle, {200, 200, 300, 200});
    grid.columns = {100, 33};
    grid.rows = {20};
    grid.least = 150;
    form.all = {&grid};
    resizeTo(1000, 600);
    resizeTo(200, 900);  // the grid keeps half of its width
    grid.columns.push_back(70);
    EXPECT_THAT(grid.columns, ElementsAre(50, 16, 70));
    EXPECT_THAT(grid.rows, ElementsAre(30));
    resizeTo(1000, 600);
    EXPECT_THAT(grid.columns, ElementsAre(100, 33, 70));
    EXPECT_THAT(grid.rows, ElementsAre(20));
}

}  // namespace
