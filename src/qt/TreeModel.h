// The configuration tree as a model for the toolkit's views.
#pragma once

#include <QAbstractItemModel>

#include "file/FileRules.h"
#include "model/ConfigTree.h"

/// Provides the tree of the document without copying it. Each index points to a node.
class TreeModel : public QAbstractItemModel, private ConfigTree::Listener {
    Q_OBJECT

 public:
    TreeModel(const ConfigTree& tree, const FileRules& rules, QObject* parent = nullptr);
    ~TreeModel() override;

    QModelIndex indexOf(const Node* node) const;
    static Node* nodeAt(const QModelIndex& index);

    QModelIndex index(int row, int column, const QModelIndex& parent) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent) const override;
    int columnCount(const QModelIndex& parent) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    /// For screen readers only, as the header is hidden.
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 Q_SIGNALS:
    /// Another node is selected in the tree of the document, or none.
    void nodeSelected();
    /// The fault signs of nodes may have changed. Emitted when control returns to the event loop,
    /// once for all changes of records until then.
    void signsChanged();
    /// The view scrolls the node into view.
    void nodeMadeVisible(const QModelIndex& index);

 private:
    void aboutToAdd(const Node* parent, int row) override;
    void added() override;
    void aboutToRemove(const Node& node) override;
    void removed() override;
    void changed(const Node& node) override;
    void recordsChanged() override;
    void aboutToReorder(const Node& parent) override;
    void reordered(const Node& parent) override;
    void aboutToReset() override;
    void reset() override;
    void selectionChanged() override;
    void madeVisible(const Node& node) override;

    const ConfigTree& tree_;
    const FileRules& rules_;
    bool willEmitSigns_ = false;
};
