// The tree on the left of the main window.
#pragma once

#include <QTreeView>

#include "qt/TreeModel.h"

/// Shows the configuration tree and keeps its selection and its expanded nodes the same as those
/// of the document's tree.
class TreePane : public QTreeView {
    Q_OBJECT

 public:
    TreePane(ConfigTree& tree, QWidget* parent);

 Q_SIGNALS:
    /// The user chose a node, with the mouse or from the keyboard. A node that a rule selects
    /// counts as no click.
    void nodeClicked(Node& node);
    void nodeDoubleClicked();

 protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                         const QEvent* event) const override;
    void drawBranches(QPainter* painter, const QRect& rect,
                      const QModelIndex& index) const override;

 private:
    void followSelection();
    void restoreAfterReset();
    void reportClick();

    ConfigTree& tree_;
    TreeModel* model_;
    bool pressedOnNode_ = false;
    bool clickReported_ = false;
};
