// The windows of the dialogs with one column of fields.
#pragma once

#include "dialogs/CommonProperties.h"
#include "dialogs/frmBranch.h"
#include "dialogs/frmPLC.h"
#include "dialogs/frmSetts.h"
#include "qt/FormDialog.h"

/// Adds or changes a device.
class DeviceDialog : public FormDialog {
    Q_OBJECT

 public:
    explicit DeviceDialog(frmPLC& form);
};

/// Changes the properties of several items.
class CommonPropertiesDialog : public FormDialog {
    Q_OBJECT

 public:
    explicit CommonPropertiesDialog(CommonProperties& form);
};

/// Adds or renames a branch.
class BranchDialog : public FormDialog {
    Q_OBJECT

 public:
    explicit BranchDialog(frmBranch& form);
};

/// Changes the global settings.
class SettingsDialog : public FormDialog {
    Q_OBJECT

 public:
    explicit SettingsDialog(frmSetts& form);
};
