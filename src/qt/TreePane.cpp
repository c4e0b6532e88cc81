#include "qt/TreePane.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

TreePane::TreePane(ConfigTree& tree, QWidget* parent)
    : QTreeView(parent), tree_(tree), model_(new TreeModel(tree, this)) {
    setModel(model_);
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setExpandsOnDoubleClick(false);  // a double click opens a node's properties
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    // Texts that are wider than the tree are reached by scrolling, and only those in sight are
    // measured.
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    header()->setResizeContentsPrecision(0);
    setAccessibleName(tr("Configuration tree"));

    connect(model_, &TreeModel::nodeSelected, this, &TreePane::followSelection);
    connect(model_, &TreeModel::nodeMadeVisible, this,
            [this](const QModelIndex& index) { scrollTo(index); });
    connect(model_, &TreeModel::modelReset, this, &TreePane::restoreAfterReset);
    connect(this, &QTreeView::expanded, this, [this](const QModelIndex& index) {
        tree_.setExpanded(*TreeModel::nodeAt(index), true);
    });
    connect(this, &QTreeView::collapsed, this, [this](const QModelIndex& index) {
        tree_.setExpanded(*TreeModel::nodeAt(index), false);
    });
    connect(this, &QTreeView::clicked, this, &TreePane::reportClick);
    connect(this, &QTreeView::doubleClicked, this, &TreePane::nodeDoubleClicked);
}

void TreePane::keyPressEvent(QKeyEvent* event) {
    const QModelIndex before = currentIndex();
    QTreeView::keyPressEvent(event);
    if (currentIndex() != before) reportClick();
}

void TreePane::mousePressEvent(QMouseEvent* event) {
    const QPoint place = event->position().toPoint();
    pressedOnNode_ = visualRect(indexAt(place)).contains(place);  // and not on its expand box
    clickReported_ = false;
    QTreeView::mousePressEvent(event);
}

void TreePane::mouseReleaseEvent(QMouseEvent* event) {
    QTreeView::mouseReleaseEvent(event);
    // The toolkit selects with every button, and a node that the pointer was dragged to, but
    // calls neither a click.
    if (pressedOnNode_ && !clickReported_) reportClick();
    pressedOnNode_ = false;
}

void TreePane::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTreeView::currentChanged(current, previous);
    // A view without a current node is one whose model is being reset.
    if (!current.isValid()) return;
    selectionModel()->select(current, QItemSelectionModel::ClearAndSelect);
    tree_.select(TreeModel::nodeAt(current));
}

/// The selected node is the current one, always. The toolkit would select what lies at a place:
/// nothing beside the nodes, nor where a node is indented out of sight.
void TreePane::setSelection(const QRect& /*rect*/,
                            QItemSelectionModel::SelectionFlags /*command*/) {}

QItemSelectionModel::SelectionFlags TreePane::selectionCommand(const QModelIndex& index,
                                                               const QEvent* /*event*/) const {
    return index.isValid() ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate;
}

/// The lines of the tree, which not every style of the toolkit draws, below the expand boxes.
void TreePane::drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const {
    const auto hasNext = [](const QModelIndex& node) {
        return node.siblingAtRow(node.row() + 1).isValid();
    };
    QColor colour = palette().color(QPalette::Text);
    colour.setAlphaF(0.3F);
    painter->save();
    painter->setPen(QPen(colour, 1));
    int x = rect.right() - indentation() / 2;
    const int middle = rect.center().y();
    // Expand boxes stay free of lines.
    const int gap = model_->hasChildren(index) ? indentation() / 3 : 0;
    if (index.parent().isValid()) painter->drawLine(x, rect.top(), x, middle - gap);
    if (hasNext(index)) painter->drawLine(x, middle + gap, x, rect.bottom());
    painter->drawLine(x + gap, middle, rect.right(), middle);
    for (QModelIndex above = index.parent(); above.isValid() && x > rect.left();
         above = above.parent()) {
        x -= indentation();
        if (hasNext(above)) painter->drawLine(x, rect.top(), x, rect.bottom());
    }
    painter->restore();
    QTreeView::drawBranches(painter, rect, index);
}

void TreePane::followSelection() { setCurrentIndex(model_->indexOf(tree_.selected())); }

void TreePane::restoreAfterReset() {
    for (const Node* node = tree_.firstAdded(); node != nullptr;
         node = ConfigTree::addedAfter(*node)) {
        if (node->expanded() && !node->children().empty()) {
            setExpanded(model_->indexOf(node), true);
        }
    }
    followSelection();
}

void TreePane::reportClick() {
    clickReported_ = true;
    if (Node* node = TreeModel::nodeAt(currentIndex()); node != nullptr) Q_EMIT nodeClicked(*node);
}
