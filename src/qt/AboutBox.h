// The about box.
#pragma once

#include <QDialog>

/// The application's title, version and description, and how to reach its maker.
class AboutBox : public QDialog {
    Q_OBJECT

 public:
    explicit AboutBox(QWidget* parent);
};
