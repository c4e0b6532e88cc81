#include "model/ListView.h"

#include <gtest/gtest.h>

namespace {

TEST(List, ResetsItsListenerOnceForAllThatHappensInOneUpdate) {
    struct : ListView::Listener {
        void aboutToReset() override { heard += "("; }
        void reset() override { heard += ")"; }
        void columnsBuilt() override { heard += "columns"; }
        void viewChanged() override { heard += "view"; }
        void madeVisible(std::size_t /*row*/) override {}
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
    list.addRow({"6", NodeKind::item, {"b"}, "EIS1"});
    list.setView(ListView::View::icon);
    EXPECT_EQ(view.heard, "(columns)view()view");
}

}  // namespace
