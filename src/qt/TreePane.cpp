#include "qt/TreePane.h"

#include <QApplication>
#include <QDrag>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <utility>

#include "qt/CellDelegate.h"
#include "qt/Icons.h"

namespace {

const char* const nodeFormat = "application/x-configuration-node";

}  // namespace

TreePane::TreePane(const ConfigTree& tree, const FileRules& rules, TreeDrag& drag, QWidget* parent)
    : QTreeView(parent),
      tree_(tree),
      drag_(drag),
      model_(new TreeModel(tree, rules, this)),
      taken_(tree) {
    setModel(model_);
    setItemDelegate(new CellDelegate(this));
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setExpandsOnDoubleClick(false);  // a double click opens a node's properties
    // The tree scrolls to texts that are wider than it. The toolkit would measure the visible rows
    // only: if the scroll bar covered the widest row, it would be hidden and shown again endlessly.
    header()->setStretchLastSection(false);
    measureTexts();
    setAccessibleName(tr("Configuration tree"));
    setAcceptDrops(true);
    opening_.setSingleShot(true);
    opening_.setInterval(700);
    connect(&opening_, &QTimer::timeout, this, [this] {
        if (const Node* node = drag_.dropHighlight()) setExpanded(model_->indexOf(node), true);
    });
    sideways_.setSingleShot(true);
    connect(&sideways_, &QTimer::timeout, this, &TreePane::scrollSideways);
    scrolling_.setInterval(60);
    connect(&scrolling_, &QTimer::timeout, this, &TreePane::scrollNearEdge);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, [this] {
        if (dragging_) dragOver(draggedTo_);  // another node is under the pointer now
    });

    connect(model_, &TreeModel::nodeSelected, this, &TreePane::followSelection);
    connect(model_, &TreeModel::nodeMadeVisible, this,
            [this](const QModelIndex& index) { scrollTo(index); });
    connect(model_, &TreeModel::modelAboutToBeReset, this,
            [this] { scrolledTo_ = verticalScrollBar()->value(); });
    connect(model_, &TreeModel::modelReset, this, &TreePane::restoreAfterReset);
    for (const auto change : {&TreeModel::rowsInserted, &TreeModel::rowsRemoved})
        connect(model_, change, this, &TreePane::signsChanged);
    connect(model_, &TreeModel::dataChanged, this, &TreePane::signsChanged);
    connect(model_, &TreeModel::modelReset, this, &TreePane::signsChanged);
    connect(model_, &TreeModel::signsChanged, this, &TreePane::signsChanged);
    connect(this, &TreePane::signsChanged, viewport(), qOverload<>(&QWidget::update));
    connect(this, &QTreeView::expanded, this, [this](const QModelIndex& index) {
        ConfigTree::setExpanded(*TreeModel::nodeAt(index), true);
        width_.opened(*TreeModel::nodeAt(index));
    });
    connect(this, &QTreeView::collapsed, this, [this](const QModelIndex& index) {
        ConfigTree::setExpanded(*TreeModel::nodeAt(index), false);
        width_.closing(*TreeModel::nodeAt(index), false);
    });
    connect(this, &QTreeView::clicked, this, &TreePane::reportClick);
    connect(this, &QTreeView::doubleClicked, this, &TreePane::nodeDoubleClicked);
}

void TreePane::changeEvent(QEvent* event) {
    QTreeView::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) measureTexts();
}

void TreePane::measureTexts() {
    setIconSize(icons::besideText(fontMetrics()));
    const int margin = style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, this) + 1;
    // A pair of letters may be a little wider than the two letters: this adds the width of a
    // letter.
    width_.reset(font(), indentation(),
                 iconSize().width() + 4 * margin + fontMetrics().averageCharWidth());
}

/// Called for one node at a time, as is rowsAboutToBeRemoved().
void TreePane::rowsInserted(const QModelIndex& parent, int start, int end) {
    const Node& top = *TreeModel::nodeAt(model_->index(start, 0, parent));
    width_.opened(top);
    QTreeView::rowsInserted(parent, start, end);
    // A subtree that undo restores is expanded as before.
    expandAsInTree(top);
    for (TreeWalk walk(top); const Node* node = walk.next();)
        expandAsInTree(*node);
}

void TreePane::expandAsInTree(const Node& node) {
    if (node.expanded() && !node.GetChildren().empty()) {
        setExpanded(model_->indexOf(&node), true);
    }
}

void TreePane::rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) {
    width_.closing(*TreeModel::nodeAt(model_->index(start, 0, parent)), true);
    QTreeView::rowsAboutToBeRemoved(parent, start, end);
}

void TreePane::dataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight,
                           const QList<int>& roles) {
    width_.changed(*TreeModel::nodeAt(topLeft));  // each signal is for one node
    QTreeView::dataChanged(topLeft, bottomRight, roles);
    updateGeometries();
}

/// The rows are at least as wide as the view.
void TreePane::updateGeometries() {
    header()->resizeSection(0, std::max(width_.width(tree_.root()), viewport()->width()));
    QTreeView::updateGeometries();
}

/// Also scrolls sideways as far as needed. The toolkit would scroll back to the left edge.
void TreePane::scrollTo(const QModelIndex& index, ScrollHint hint) {
    const int before = horizontalScrollBar()->value();
    QTreeView::scrollTo(index, hint);
    horizontalScrollBar()->setValue(before);
    sought_ = index;
    // Later, as the node must be measured: the present change of the tree may be incomplete.
    sideways_.start();
}

/// Scrolls sideways to the sought node with its expand box, or as much of it as fits.
void TreePane::scrollSideways() {
    if (!sought_.isValid()) return;
    updateGeometries();
    const int start = visualRect(sought_).left();
    const int left = start - indentation();
    const int right = start + sizeHintForIndex(sought_).width();
    const int hidden = std::min(left, std::max(0, right - viewport()->width()));
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() + hidden);
}

void TreePane::setActive(bool active) {
    isActive_ = active;
    viewport()->update();
}

void TreePane::initViewItemOption(QStyleOptionViewItem* option) const {
    QTreeView::initViewItemOption(option);
    if (!isActive_) showInactive(*option);
}

void TreePane::keyPressEvent(QKeyEvent* event) {
    if (opensProperties(*event)) return Q_EMIT nodeDoubleClicked();
    if (event->matches(QKeySequence::Copy)) return event->ignore();
    if (event->key() == Qt::Key_Escape) {  // cancels "Take to move" and "Take to copy"
        taken_ = nullptr;
        viewport()->update();
    }
    const QModelIndex before = currentIndex();
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    if (event->key() == Qt::Key_Left && isPlain && model_->hasChildren(before) &&
        isExpanded(before)) {
        return collapse(before);  // the toolkit does not while the tree is scrolled sideways
    }
    QTreeView::keyPressEvent(event);
    if (currentIndex() != before) reportClick();
}

/// Handles the keyboard only. With the mouse the menu opens when the right button is released, as
/// its press may begin a drag.
void TreePane::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() != QContextMenuEvent::Keyboard || tree_.selected() == nullptr) return;
    Q_EMIT menuRequested(viewport()->mapToGlobal(visualRect(currentIndex()).bottomLeft()));
}

void TreePane::addOwnEntries(QMenu& menu) {
    const auto take = [this](bool toCopy) {
        taken_ = tree_.selected();
        takenToCopy_ = toCopy;
        viewport()->update();
    };
    const bool isRoot = tree_.selected() == tree_.root();  // which cannot be moved or copied
    if (!isRoot) {
        menu.addAction(tr("Take to &move"), this, [take] { take(false); });
        menu.addAction(tr("Take to cop&y"), this, [take] { take(true); });
    }
    QAction* drop = menu.addAction(tr("Drop &here what was taken"), this, [this] {
        press(takenToCopy_, taken_.get());
        taken_ = nullptr;
        drag_.TreeView1_OLEDragOver(tree_.selected());
        drag_.TreeView1_OLEDragDrop(drag_.TreeView1_OLEStartDrag());
        viewport()->update();
    });
    drop->setEnabled(taken_.get() != nullptr);
}

/// Reports a press of the button to the rules of dragging. Returns whether a drag may begin.
bool TreePane::press(bool ctrl, Node* node) {
    return drag_.TreeView1_MouseDown(TreeDrag::rightButton, ctrl ? TreeDrag::ctrlMask : 0, node);
}

/// Returns the node at a place of the viewport; null over its expand box and over empty space.
Node* TreePane::nodeUnder(QPoint place) const {
    const QModelIndex index = indexAt(place);
    return visualRect(index).contains(place) ? TreeModel::nodeAt(index) : nullptr;
}

void TreePane::mousePressEvent(QMouseEvent* event) {
    pressedAt_ = event->position().toPoint();
    pressedOnNode_ = nodeUnder(pressedAt_) != nullptr;
    isClickReported_ = false;
    // The right button selects when it is released, as it may drag until then.
    if (event->button() == Qt::RightButton) {
        mayDrag_ = press(event->modifiers().testFlag(Qt::ControlModifier), nodeUnder(pressedAt_));
        return;
    }
    QTreeView::mousePressEvent(event);
}

void TreePane::mouseMoveEvent(QMouseEvent* event) {
    if (!event->buttons().testFlag(Qt::RightButton)) return QTreeView::mouseMoveEvent(event);
    const QPoint way = event->position().toPoint() - pressedAt_;
    if (mayDrag_ && way.manhattanLength() >= QApplication::startDragDistance()) dragNode();
}

void TreePane::mouseReleaseEvent(QMouseEvent* event) {
    // The next press may not reach the tree: it may only close the context menu.
    mayDrag_ = false;
    const bool right = event->button() == Qt::RightButton;
    if (right) {
        if (pressedOnNode_) setCurrentIndex(indexAt(pressedAt_));
    } else {
        QTreeView::mouseReleaseEvent(event);
    }
    // The toolkit also selects with other buttons, and by dragging, without a click signal.
    const bool onNode = std::exchange(pressedOnNode_, false);
    if (onNode && !isClickReported_) reportClick();
    if (onNode && right) Q_EMIT menuRequested(event->globalPosition().toPoint());
}

void TreePane::dragNode() {
    mayDrag_ = pressedOnNode_ = false;
    auto* content = new QMimeData;
    content->setData(nodeFormat, QByteArray::fromStdString(drag_.source()->key().string()));
    auto* drag = new QDrag(this);
    drag->setMimeData(content);
    drag->setPixmap(pictureOf(model_->indexOf(drag_.source())));
    // Beside the pointer, so that the node under it can be read.
    drag->setHotSpot({-12, -8});
    const DropEffect effect = drag_.TreeView1_OLEStartDrag();
    drag_.TreeView1_OLEGiveFeedback();
    dragging_ = true;
    dropped_ = false;
    scrolling_.start();
    drag->exec(effect == DropEffect::copy ? Qt::CopyAction : Qt::MoveAction);
    dragging_ = false;
    opening_.stop();
    scrolling_.stop();
    // Not earlier: a message may be shown, and a drag holds the mouse.
    if (dropped_) {
        drag_.TreeView1_OLEDragDrop(effect);
    } else {
        drag_.cancelled();
    }
    viewport()->update();
}

/// The picture that follows the pointer: the visible part of the node's row.
QPixmap TreePane::pictureOf(const QModelIndex& node) const {
    const QRect row(visualRect(node).topLeft(), sizeHintForIndex(node));
    return viewport()->grab(row & viewport()->rect());
}

void TreePane::dragEnterEvent(QDragEnterEvent* event) { dragMoveEvent(event); }

void TreePane::dragMoveEvent(QDragMoveEvent* event) {
    // Only nodes of this tree; not those of another running editor.
    if (!dragging_) return event->ignore();
    dragOver(event->position().toPoint());
    event->acceptProposedAction();
}

void TreePane::dragLeaveEvent(QDragLeaveEvent* /*event*/) { dragOver(std::nullopt); }

void TreePane::dropEvent(QDropEvent* event) {
    if (!dragging_) return event->ignore();
    dragOver(event->position().toPoint());
    dropped_ = true;
    event->acceptProposedAction();
}

void TreePane::dragOver(std::optional<QPoint> place) {
    draggedTo_ = place;
    const Node* before = drag_.dropHighlight();
    drag_.TreeView1_OLEDragOver(place ? nodeUnder(*place) : nullptr);
    if (drag_.dropHighlight() == before) return;
    opening_.start();
    viewport()->update();
}

/// Scrolls by one row while the pointer is near an edge. The toolkit scrolls only while the pointer
/// moves.
void TreePane::scrollNearEdge() {
    if (!draggedTo_) return;
    QScrollBar* bar = verticalScrollBar();
    const int margin = autoScrollMargin();
    if (draggedTo_->y() < margin) {
        bar->triggerAction(QAbstractSlider::SliderSingleStepSub);
    } else if (draggedTo_->y() >= viewport()->height() - margin) {
        bar->triggerAction(QAbstractSlider::SliderSingleStepAdd);
    }
}

void TreePane::drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                       const QModelIndex& index) const {
    const Node* node = TreeModel::nodeAt(index);
    painter->save();
    if (node == taken_.get()) painter->setOpacity(0.5);  // pale, as usual for a cut object
    QTreeView::drawRow(painter, option, index);
    if (node == drag_.dropHighlight()) {
        painter->setOpacity(0.4);
        painter->fillRect(visualRect(index), palette().highlight());
    }
    painter->restore();
}

void TreePane::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTreeView::currentChanged(current, previous);
    // While the model is reset, the view has no current node.
    if (!current.isValid()) return;
    selectionModel()->select(current, QItemSelectionModel::ClearAndSelect);
    tree_.select(TreeModel::nodeAt(current));
}

/// Does nothing, as the selected node is always the current node. The toolkit would select what is
/// at the pointer: nothing beside the nodes, or where a node is scrolled out of view.
void TreePane::setSelection(const QRect& /*rect*/,
                            QItemSelectionModel::SelectionFlags /*command*/) {}

QItemSelectionModel::SelectionFlags TreePane::selectionCommand(const QModelIndex& /*index*/,
                                                               const QEvent* /*event*/) const {
    return QItemSelectionModel::NoUpdate;
}

/// Draws the lines of the tree, which not every style of the toolkit draws, then the expand boxes.
void TreePane::drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const {
    const auto hasNext = [](const QModelIndex& node) {
        return node.siblingAtRow(node.row() + 1).isValid();
    };
    QColor colour = palette().color(QPalette::Text);
    colour.setAlphaF(0.3F);
    painter->save();
    painter->setPen(colour);
    int x = rect.right() - indentation() / 2;
    const int middle = rect.center().y();
    // No lines within expand boxes.
    const int gap = model_->hasChildren(index) ? indentation() / 3 : 0;
    if (index.parent().isValid()) painter->drawLine(x, rect.top(), x, middle - gap);
    if (hasNext(index)) painter->drawLine(x, middle + gap, x, rect.bottom());
    painter->drawLine(x + gap, middle, rect.right(), middle);
    for (QModelIndex above = index.parent(); above.isValid(); above = above.parent()) {
        x -= indentation();
        if (hasNext(above)) painter->drawLine(x, rect.top(), x, rect.bottom());
    }
    painter->restore();
    QTreeView::drawBranches(painter, rect, index);
}

void TreePane::followSelection() { setCurrentIndex(model_->indexOf(tree_.selected())); }

void TreePane::restoreAfterReset() {
    width_.reset();
    for (const auto& node : tree_.nodes())
        expandAsInTree(*node);
    followSelection();
    // The same scroll position as before; the top for a new configuration.
    if (tree_.root() == nullptr) scrolledTo_ = 0;
    executeDelayedItemsLayout();
    verticalScrollBar()->setValue(scrolledTo_);
}

void TreePane::reportClick() {
    isClickReported_ = true;
    if (Node* node = TreeModel::nodeAt(currentIndex()); node != nullptr) Q_EMIT nodeClicked(*node);
}
