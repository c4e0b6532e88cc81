#include "model/ListView.h"

#include <gmock/gmock.h>

#include <string>

#include "model/RunTimeError.h"

namespace {

using testing::Optional;

class List : public testing::Test {
 protected:
    List() {
        add("1", "lamp", "hall");
        add("2", "Blind", "Attic");
        add("3", "Lamp", "hall");
        add("4", "\u00C4rger", "");
    }
    void add(const char* key, const char* text, const char* comment) {
        list.addRow({key, text, {comment}, "EIS1", "item"});
    }
    std::string keys() const {
        std::string result;
        for (const auto& row : list.rows())
            result += row.key;
        return result;
    }

    ListView list;
};

TEST_F(List, SortsAscendingByTheShownTextAndKeepsTheOrderOfEqualRows) {
    list.sortBy(1);
    EXPECT_EQ(keys(), "4213");
    list.sortBy(0);
    EXPECT_EQ(keys(), "4231");
    // Beyond the last column every text is empty; enough rows that a sort which mixes up equal
    // ones would do so.
    for (const char key : std::string("abcdefghijklmnopqrstuvwxyz"))
        add(std::string(1, key).c_str(), "", "");
    list.sortBy(17);
    EXPECT_EQ(keys(), "4231abcdefghijklmnopqrstuvwxyz");
}

TEST_F(List, KeepsItsCurrentRowAcrossASort) {
    list.setCurrentRow(0);
    EXPECT_EQ(list.selectedRow(), nullptr) << "current, but not selected";
    list.setSelected(0, true);
    list.sortBy(1);
    EXPECT_THAT(list.currentRow(), Optional(2U));
    EXPECT_EQ(list.selectedRow(), &list.rows()[2]);
    EXPECT_THAT(list.findRow("1"), Optional(2U));
    EXPECT_THROW(add("2", "Other", ""), RunTimeError);
    EXPECT_EQ(keys(), "4213");
    list.clearRows();
    EXPECT_EQ(list.selectedRow(), nullptr);
    EXPECT_EQ(list.findRow("1"), std::nullopt);
}

TEST_F(List, ResetsItsListenerOnceForAllThatHappensInOneUpdate) {
    struct ListeningView : ListView::Listener {
        void aboutToReset() override { heard += "("; }
        void reset() override { heard += ")"; }
        void columnsBuilt() override { heard += "columns"; }
        void viewChanged() override { heard += "view"; }
        std::string heard;
    } view;
    list.setListener(&view);
    {
        const ListView::Update update(list);
        list.clearRows();
        list.setColumns({{"Item Name", 0.5}});
        const ListView::Update within(list);
        add("5", "a", "");
        list.sortBy(0);
    }
    EXPECT_EQ(view.heard, "(columns)");
    add("6", "b", "");
    list.setView(ListView::View::icon);
    EXPECT_EQ(view.heard, "(columns)()view");
}

}  // namespace
