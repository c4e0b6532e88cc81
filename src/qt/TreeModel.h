// The configuration tree as the toolkit's views read it.
#pragma once

#include <QAbstractItemModel>

#include "file/FileRules.h"
#include "model/ConfigTree.h"

/// Shows the one tree of the document, without a copy: every index points to a node.
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
    /// Read out only: the header is hidden.
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 Q_SIGNALS:
    /// Another node is selected in the tree, or none.
    void nodeSelected();
    /// Nodes may have other signs. Emitted when control returns to the event loop, once for all
    /// changes of records until then.
    void signsChanged();
    /// The node is to be scrolled into view.
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
