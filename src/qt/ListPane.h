// The list on the right of the main window.
#pragma once

#include <QStackedWidget>
#include <functional>
#include <optional>
#include <vector>

#include "qt/ListModel.h"

class QAbstractItemView;
class QItemSelection;
class QItemSelectionModel;
class QListView;
class QMenu;
class QTreeView;

/// Shows the contents list in its four view modes, which share one model and one selection. Writes
/// the rows that the user selects to the list.
class ListPane : public QStackedWidget {
    Q_OBJECT

 public:
    ListPane(ListView& list, const FileRules& rules, QWidget* parent);

    /// Sets whether commands use the selection of the list. Only then is it drawn in the active
    /// colour.
    void setActive(bool active);
    bool isActive() const { return isActive_; }
    void repaintRows();
    /// Calls `byView`, with which a view handles an event, and returns its result. Afterwards emits
    /// rowClicked() once if the event has chosen a row, as the toolkit may emit several signals.
    bool handle(const QEvent& event, const std::function<bool()>& byView);
    /// Adds the sort commands to the context menu, for the keyboard and for view modes without
    /// headers.
    void addOwnEntries(QMenu& menu);

 Q_SIGNALS:
    /// The user clicked a row, or chose it from the keyboard.
    void rowClicked();
    void rowDoubleClicked();
    void columnClicked(std::size_t column);
    void viewModeChanged();
    /// The user asks for the context menu at that place of the screen.
    void menuRequested(QPoint place);

 protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

 private:
    void reportClick();
    void showViewMode();
    void showIcons(bool large, bool inColumns);
    bool keyPressed(QKeyEvent& key);
    std::optional<int> rowSelectedBy(const QKeyEvent& key) const;
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
    // The column widths that the user or setColumnWidths() set, and the width of the list then. The
    // widths in a list of another size are computed from them.
    std::vector<int> keptWidths_;
    int keptListWidth_ = 0;
    bool columnsRebuilt_ = false;
    bool scaling_ = false;
    bool restoring_ = false;
    bool isActive_ = false;
    QPoint pressedAt_;  // by the right button
    // The toolkit emits up to three signals for one click.
    bool inEvent_ = false;
    bool isClickPending_ = false;   // by the event being handled
    bool isClickReported_ = false;  // since the mouse button was pressed
};
