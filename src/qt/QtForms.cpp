#include "qt/QtForms.h"

#include "qt/AboutBox.h"
#include "qt/FindDialog.h"
#include "qt/ItemDialog.h"
#include "qt/ReplaceDialog.h"
#include "qt/SmallDialogs.h"

void QtForms::showModal(frmItems& form) { ItemDialog(form).exec(); }

void QtForms::showModal(CommonProperties& form) { CommonPropertiesDialog(form).exec(); }

void QtForms::showModal(frmPLC& form) { DeviceDialog(form).exec(); }

void QtForms::showModal(frmBranch& form) { BranchDialog(form).exec(); }

void QtForms::showModal(frmSetts& form) { SettingsDialog(form).exec(); }

void QtForms::showModal(frmReplace& form) { ReplaceDialog(form).exec(); }

QtForms::~QtForms() { delete find_; }

void QtForms::show(frmFind& form) {
    if (find_ == nullptr) find_ = new FindDialog(form);
    find_->show();
    find_->raise();
    find_->activateWindow();
}

void QtForms::close(frmFind& /*form*/) { delete find_; }

void QtForms::showAbout() { AboutBox(ownerOfDialogs()).exec(); }
