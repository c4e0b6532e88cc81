#include "model/ListView.h"

#include <gtest/gtest.h>

namespace {

TEST(List, ResetsItsListenerOncePerUpdate) {
    struct : ListView::Listener {
        void aboutToReset() override { events += "("; }
        void reset() override { events += ")"; }
        void columnsBuilt() override { events += "columns"; }
        void viewChanged() override { events += "view"; }
        void madeVisible(std::size_t /*row*/) override {}
        std::string events;
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
    EXPECT_EQ(view.events, "(columns)view()view");
}

}  // namespace
