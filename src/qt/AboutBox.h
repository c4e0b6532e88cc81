// The about box.
#pragma once

#include <QDialog>

/// Shows the application's title, version and description, and the contact of its maker.
class AboutBox : public QDialog {
    Q_OBJECT

 public:
    explicit AboutBox(QWidget* parent);
};
