// The list on the right of the main window.
#pragma once

#include <QStackedWidget>
#include <functional>
#include <vector>

#include "qt/ListModel.h"

class QAbstractItemView;
class QItemSelection;
class QItemSelectionModel;
class QListView;
class QMenu;
class QTreeView;

/// Shows the contents list in its four view modes, which share one model and one selection, and
/// tells the list which rows the user has selected.
class ListPane : public QStackedWidget {
    Q_OBJECT

 public:
    ListPane(ListView& list, const FileRules& rules, QWidget* parent);

    /// Commands act on the list: only then is its selection drawn with the active colour.
    void setActing(bool acting);
    bool acting() const { return acting_; }
    void repaintRows();
    /// Has a view handle an event. However often the toolkit tells of a row that is chosen by it,
    /// rowClicked() is told once, and at the end.
    bool handle(const QEvent& event, const std::function<bool()>& byView);
    /// What the context menu offers beside the commands: what clicks on the headers do, also
    /// without a mouse and where there are no headers.
    void addOwnEntries(QMenu& menu);

 Q_SIGNALS:
    /// The user clicked a row, or chose it from the keyboard.
    void rowClicked();
    void rowDoubleClicked();
    void columnClicked(std::size_t column);
    void viewModeChanged();
    /// The context menu is to open at that place of the screen.
    void menuRequested(QPoint place);

 protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

 private:
    void choose();
    void showViewMode();
    void showIcons(bool large, bool inColumns);
    bool keyPressed(QKeyEvent& key);
    bool beginsSelection(const QKeyEvent& key) const;
    void pressed(const QMouseEvent& event);
    void rightButtonReleased(const QMouseEvent& event);
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
    bool acting_ = false;
    QPoint pressedAt_;  // by the right button
    // The toolkit tells of one click up to three times.
    bool inEvent_ = false;
    bool isChosen_ = false;    // in this event
    bool isReported_ = false;  // since the button went down
};
