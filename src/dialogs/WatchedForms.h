// Counts open dialogs.
#pragma once

#include "desktop/OpenBoxes.h"
#include "dialogs/Forms.h"

/// Forwards to another Forms object, and counts the open modal dialogs in OpenBoxes.
class WatchedForms : public Forms {
 public:
    WatchedForms(Forms& forms, OpenBoxes& boxes) : forms_(forms), boxes_(boxes) {}

    void showModal(frmItems& form) override { show(form); }
    void showModal(CommonProperties& form) override { show(form); }
    void showModal(frmPLC& form) override { show(form); }
    void showModal(frmBranch& form) override { show(form); }
    void showModal(frmSetts& form) override { show(form); }
    void showModal(frmReplace& form) override { show(form); }
    void show(frmFind& form) override { forms_.show(form); }
    void close(frmFind& form) override { forms_.close(form); }
    void showAbout() override {
        const OpenBoxes::Open open(boxes_);
        forms_.showAbout();
    }

 private:
    template <typename Form>
    void show(Form& form) {
        const OpenBoxes::Open open(boxes_);
        forms_.showModal(form);
    }

    Forms& forms_;
    OpenBoxes& boxes_;
};
