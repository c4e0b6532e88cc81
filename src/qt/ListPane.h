// The list on the right of the main window.
#pragma once

#include <QStackedWidget>

#include "qt/ListModel.h"

class QItemSelection;
class QItemSelectionModel;
class QListView;
class QTreeView;

/// Shows the contents list in its four view modes, which share one model and one selection, and
/// tells the list which rows the user has selected.
class ListPane : public QStackedWidget {
    Q_OBJECT

 public:
    ListPane(ListView& list, QWidget* parent);

    /// The view of the present mode, which takes the keyboard.
    QWidget* activeView() const { return currentWidget(); }

 Q_SIGNALS:
    /// The user clicked a row, or chose it from the keyboard.
    void rowClicked();
    void rowDoubleClicked();
    void columnClicked(std::size_t column);

 private:
    void showViewMode();
    void showIcons(bool large, bool inColumns);
    void setColumnWidths();
    void restoreAfterReset();
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected);

    ListView& list_;
    ListModel* model_;
    QTreeView* report_;
    QListView* icons_;
    QItemSelectionModel* selection_;
    bool columnsRebuilt_ = false;
    bool restoring_ = false;
};
