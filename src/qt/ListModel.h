// The contents list as the toolkit's views read it.
#pragma once

#include <QAbstractTableModel>
#include <QSize>
#include <map>
#include <utility>

#include "file/FileRules.h"
#include "model/ListView.h"

/// Shows the rows of the list, without a copy.
class ListModel : public QAbstractTableModel, private ListView::Listener {
    Q_OBJECT

 public:
    ListModel(ListView& list, const FileRules& rules, QObject* parent = nullptr);
    ~ListModel() override;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// The large pictures instead of the small ones.
    void setLargeIcons(bool large) { largeIcons_ = large; }
    /// The size of every cell; an invalid one leaves it to the texts.
    void setCellSize(QSize size) { cellSize_ = size; }

 Q_SIGNALS:
    void columnsRebuilt();
    void viewModeChanged();
    /// The row is to be scrolled into view.
    void rowMadeVisible(const QModelIndex& index);

 private:
    Fault faultOf(int row, int column) const;

    void aboutToReset() override { beginResetModel(); }
    void reset() override {
        faults_.clear();
        endResetModel();
    }
    void columnsBuilt() override { Q_EMIT columnsRebuilt(); }
    void viewChanged() override { Q_EMIT viewModeChanged(); }
    void madeVisible(std::size_t row) override {
        Q_EMIT rowMadeVisible(index(static_cast<int>(row), ListView::nameColumn));
    }

    ListView& list_;
    const FileRules& rules_;
    bool largeIcons_ = false;
    QSize cellSize_;
    // Of the longest texts, by row and column: they are asked for at every stroke of the brush.
    mutable std::map<std::pair<int, int>, Fault> faults_;
};
