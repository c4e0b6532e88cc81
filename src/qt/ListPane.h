// The list on the right of the main window.
#pragma once

#include <QStackedWidget>
#include <vector>

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

 protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* view, QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

 private:
    void showViewMode();
    void showIcons(bool large, bool inColumns);
    void sortBy(int column);
    void setColumnWidths();
    void keepColumnWidths();
    int headingWidth(std::size_t column) const;
    void restoreAfterReset();
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected);

    ListView& list_;
    ListModel* model_;
    QTreeView* report_;
    QListView* icons_;
    QItemSelectionModel* selection_;
    // What the columns' widths are computed from while the list changes its own.
    std::vector<int> keptWidths_;
    int keptAt_ = 0;
    bool columnsRebuilt_ = false;
    bool scaling_ = false;
    bool restoring_ = false;
};
