#include "qt/QtForms.h"

#include <QApplication>

#include "qt/AboutBox.h"
#include "qt/ItemDialog.h"
#include "qt/SmallDialogs.h"

void QtForms::showModal(frmItems& form) { ItemDialog(form).exec(); }

void QtForms::showModal(frmPLC& form) { DeviceDialog(form).exec(); }

void QtForms::showModal(frmBranch& form) { BranchDialog(form).exec(); }

void QtForms::showModal(frmSetts& form) { SettingsDialog(form).exec(); }

void QtForms::showAbout() { AboutBox(QApplication::activeWindow()).exec(); }
