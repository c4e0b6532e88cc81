// The tree on the left of the main window.
#pragma once

#include <QTimer>
#include <QTreeView>
#include <optional>

#include "editor/TreeDrag.h"
#include "qt/TreeModel.h"
#include "qt/TreeWidth.h"

class QMenu;

/// Shows the configuration tree. Selection and expanded nodes are always those of the document's
/// tree. Nodes are dragged with the right mouse button.
class TreePane : public QTreeView {
    Q_OBJECT

 public:
    TreePane(const ConfigTree& tree, const FileRules& rules, TreeDrag& drag, QWidget* parent);

    /// Sets whether commands use the selection of the tree. Only then is it drawn in the active
    /// colour.
    void setActive(bool active);
    /// Adds the commands that take and drop a node to the context menu. They do the same as
    /// dragging, without a mouse.
    void addOwnEntries(QMenu& menu);
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

 Q_SIGNALS:
    /// The user chose a node with the mouse or the keyboard. Not emitted when the program selects a
    /// node.
    void nodeClicked(Node& node);
    void nodeDoubleClicked();
    /// The fault signs of other nodes than the changed ones may have changed.
    void signsChanged();
    /// The user asks for the context menu of the selected node at that place of the screen.
    void menuRequested(QPoint place);

 protected:
    void changeEvent(QEvent* event) override;
    void initViewItemOption(QStyleOptionViewItem* option) const override;
    void rowsInserted(const QModelIndex& parent, int start, int end) override;
    void rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) override;
    void dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                     const QList<int>& roles) override;
    void updateGeometries() override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event) const override;
    void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                 const QModelIndex& index) const override;
    void drawBranches(QPainter* painter, const QRect& rect,
                      const QModelIndex& index) const override;

 private:
    void measureTexts();
    void expandAsInTree(const Node& node);
    void followSelection();
    void restoreAfterReset();
    void reportClick();
    Node* nodeUnder(QPoint place) const;
    bool press(bool ctrl, Node* node);
    void dragNode();
    QPixmap pictureOf(const QModelIndex& node) const;
    void dragOver(std::optional<QPoint> place);
    void scrollNearEdge();
    void scrollSideways();

    const ConfigTree& tree_;
    TreeDrag& drag_;
    TreeModel* model_;
    TreeWidth width_;
    bool isActive_ = false;
    int scrolledTo_ = 0;
    bool pressedOnNode_ = false;
    bool isClickReported_ = false;
    // The state of a drag, from the press of the button to its end.
    QPoint pressedAt_;
    bool mayDrag_ = false;
    bool dragging_ = false;
    bool dropped_ = false;
    ConfigTree::Reference taken_;  // the node that the context menu took, to be dropped
    bool takenToCopy_ = false;
    std::optional<QPoint> draggedTo_;  // none while the pointer is outside the tree
    QTimer opening_;                   // expands the node under the pointer
    QTimer scrolling_;                 // scrolls while the pointer is near an edge
    QPersistentModelIndex sought_;     // the node that was scrolled into view last
    QTimer sideways_;
};
