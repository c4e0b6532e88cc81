// The windows of the dialogs that are one column of fields.
#pragma once

#include "dialogs/CommonProperties.h"
#include "dialogs/frmBranch.h"
#include "dialogs/frmPLC.h"
#include "dialogs/frmSetts.h"
#include "qt/FormDialog.h"

class DeviceDialog : public FormDialog {
    Q_OBJECT

 public:
    explicit DeviceDialog(frmPLC& form);
};

class CommonPropertiesDialog : public FormDialog {
    Q_OBJECT

 public:
    explicit CommonPropertiesDialog(CommonProperties& form);
};

class BranchDialog : public FormDialog {
    Q_OBJECT

 public:
    explicit BranchDialog(frmBranch& form);
};

class SettingsDialog : public FormDialog {
    Q_OBJECT

 public:
    explicit SettingsDialog(frmSetts& form);
};
