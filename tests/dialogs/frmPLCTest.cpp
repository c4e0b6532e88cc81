#include "dialogs/frmPLC.h"

#include <gtest/gtest.h>

#include <new>

#include "support/FakeDesktop.h"

namespace {

TEST(DeviceDialog, SaysWhenItsCheckItselfFailsAndCloses) {
    struct : FakeDesktop {
        void showMessage(const std::string& text, MessageIcon icon) override {
            FakeDesktop::showMessage(text, icon);
            if (messages().size() == 1) throw std::bad_alloc();
        }
    } failing;
    Document document;
    frmPLC form(document, failing);
    form.cmdApply_Click();
    EXPECT_TRUE(form.closed());
    EXPECT_EQ(failing.messages().back(), "Error. Check fields.");
}

}  // namespace
