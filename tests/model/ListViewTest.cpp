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

TEST_F(List, SortsAscendingByTheShownTextForAsLongAsNobodyStopsIt) {
    list.sortBy(1);
    EXPECT_EQ(keys(), "4213");
    list.sortBy(0);
    EXPECT_EQ(keys(), "4231");
    // Beyond the last column every text is empty; enough rows that a sort which mixes up equal
    // ones would do so.
    for (const char key : std::string("abcdefghijklmnopqrstuvwxyz"))
        add(std::string(1, key).c_str(), "", "");
    list.stopSorting();
    add("5", "", "");
    EXPECT_EQ(keys(), "abcdefghijklmnopqrstuvwxyz42315");
    list.sortBy(17);
    EXPECT_EQ(keys(), "abcdefghijklmnopqrstuvwxyz42315");
}

TEST_F(List, KeepsRowsThatGetOtherKeysAndTextsInTheirOrder) {
    list.sortBy(0);  // 4231
    list.rekeyRows("2", "2.a");
    list.rekeyRows("2.a", "9.b");
    list.rekeyRows("9", "8");
    EXPECT_EQ(keys(), "48.b31");
    list.setSelected(1, true);
    list.replaceRow({"8.b", "Zebra", {"hall"}, "EIS1", "item"});
    list.replaceRow({"2", "Gone", {}, "", ""});
    EXPECT_EQ(keys(), "4318.b");
    EXPECT_TRUE(list.rows()[3].selected);
    EXPECT_THAT(list.findRow("8.b"), Optional(3U));
    EXPECT_EQ(list.findRow("2"), std::nullopt);
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
        list.setView(ListView::View::list);
        const ListView::Update within(list);
        add("5", "a", "");
        list.sortBy(0);
    }
    EXPECT_EQ(view.heard, "(columns)view");
    add("6", "b", "");
    list.setView(ListView::View::icon);
    EXPECT_EQ(view.heard, "(columns)view()view");
}

}  // namespace
