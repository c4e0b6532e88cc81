// The dialogs as windows of the toolkit.
#pragma once

#include "dialogs/Forms.h"

/// Each form has a window of its own, over the window that is active when it is shown.
class QtForms : public Forms {
 public:
    void showModal(frmItems& form) override;
    void showModal(frmPLC& form) override;
    void showModal(frmBranch& form) override;
    void showModal(frmSetts& form) override;
    void showAbout() override;
};
