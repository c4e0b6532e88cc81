#include "model/ListView.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "base/RunTimeError.h"
#include "base/Text.h"

namespace {

TEST(List, KeepsItsRowsAsAPlainVectorSortedAfterEachChangeDoes) {
    ListView list;
    std::vector<ListView::Row> expected;
    std::optional<std::size_t> column;
    std::mt19937 random(1);  // NOLINT(cert-msc51-cpp)
    const auto any = [&](const std::vector<std::string>& of) { return of[random() % of.size()]; };
    const auto text = [&] { return any({"lamp", "Lamp", "\u00C4rger", "Blind", ""}); };
    const std::string device = "A device with a name of its own ";
    for (int i = 0; i < 20000; ++i) {
        ListView::Row row{device + std::to_string(random() % 60) + any({"", ".b", "b"}),
                          text(),
                          {text()},
                          "EIS1",
                          "item"};
        const auto place = std::ranges::find(expected, row.key, &ListView::Row::key);
        const bool isThere = place != expected.end();
        EXPECT_EQ(list.findRow(row.key).has_value(), isThere);
        const int deed = static_cast<int>(random() % 6);
        if (deed < 2 && !isThere) {
            list.addRow(row);
            expected.push_back(row);
        }
        if (deed == 2 && isThere) {
            row.selected = place->selected;
            *place = row;
        }
        if (deed == 2) list.replaceRow(row);
        if (deed == 3 && isThere) {
            const std::size_t at = *list.findRow(row.key);
            list.setSelected(at, place->selected = !place->selected);
            list.setCurrentRow(at);
        }
        if (deed == 4) {
            const std::string newKey = device + std::to_string(i + 100);
            list.rekeyRows(row.key, newKey, [](const SharedText& /*key*/) { return true; });
            for (ListView::Row& each : expected)
                if (each.key == row.key || each.key.string().starts_with(row.key.string() + "."))
                    each.key = newKey + each.key.string().substr(row.key.size());
        }
        const auto* current = list.selectedRow();
        const SharedText key = current == nullptr ? "" : current->key;
        if (deed == 5) list.sortBy(*(column = random() % 4));
        if (column)
            std::ranges::stable_sort(expected, [&](const auto& a, const auto& b) {
                return alphabeticallyBefore(a.cell(*column), b.cell(*column));
            });
        EXPECT_EQ(list.selectedRow() == nullptr ? "" : list.selectedRow()->key, key);
        ASSERT_TRUE(std::ranges::equal(list.rows(), expected)) << i;
        if (random() % 50 == 0) list.stopSorting();
        column = list.sortColumn();
        if (random() % 300 == 0) {
            list.clearRows();
            expected.clear();
            EXPECT_EQ(list.selectedRow(), nullptr);
        }
    }
}

TEST(List, ResetsItsListenerOnceForAllThatHappensInOneUpdate) {
    struct : ListView::Listener {
        void aboutToReset() override { heard += "("; }
        void reset() override { heard += ")"; }
        void columnsBuilt() override { heard += "columns"; }
        void viewChanged() override { heard += "view"; }
        std::string heard;
    } view;
    ListView list;
    list.setListener(&view);
    {
        const ListView::Update update(list);
        list.clearRows();
        list.setColumns({{"Item Name", 0.5}});
        list.setView(ListView::View::list);
        list.sortBy(0);
    }
    list.addRow({"6", "b", {}, "EIS1", "item"});
    list.setView(ListView::View::icon);
    EXPECT_EQ(view.heard, "(columns)view()view");
}

}  // namespace
