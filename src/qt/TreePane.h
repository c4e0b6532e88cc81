// The tree on the left of the main window.
#pragma once

#include <QTimer>
#include <QTreeView>
#include <optional>

#include "editor/TreeDrag.h"
#include "qt/TreeModel.h"
#include "qt/TreeWidth.h"

class QMenu;

/// Shows the configuration tree and keeps its selection and its expanded nodes the same as those
/// of the document's tree. Nodes are dragged with the right mouse button.
class TreePane : public QTreeView {
    Q_OBJECT

 public:
    TreePane(const ConfigTree& tree, const FileRules& rules, TreeDrag& drag, QWidget* parent);

    /// Commands act on the tree: only then is its selection drawn with the active colour.
    void setActing(bool acting);
    /// What the context menu offers beside the commands: taking and dropping, the keyboard's way
    /// of dragging.
    void addOwnEntries(QMenu& menu);
    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

 Q_SIGNALS:
    /// The user chose a node, with the mouse or from the keyboard. A node that a rule selects
    /// counts as no click.
    void nodeClicked(Node& node);
    void nodeDoubleClicked();
    /// Other nodes than those that changed may have another sign now.
    void signsChanged();
    /// The context menu of the selected node is to open at that place of the screen.
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
    bool acting_ = false;
    int scrolledTo_ = 0;
    bool pressedOnNode_ = false;
    bool clickReported_ = false;
    // The drag: from a press that may become one, to its end.
    QPoint pressedAt_;
    bool mayDrag_ = false;
    bool dragging_ = false;
    bool dropped_ = false;
    ConfigTree::Reference taken_;  // by the menu's entry, to be dropped by another
    bool takenToCopy_ = false;
    std::optional<QPoint> draggedTo_;  // none outside the tree
    QTimer opening_;                   // of a closed node on which the pointer rests
    QTimer scrolling_;                 // while the pointer is near an edge
    QPersistentModelIndex sought_;     // the last node that was to be in sight
    QTimer sideways_;
};
