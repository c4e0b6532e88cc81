// The contents list as a model for the toolkit's views.
#pragma once

#include <QAbstractTableModel>
#include <QSize>
#include <map>
#include <utility>

#include "file/FileRules.h"
#include "model/ListView.h"

/// Provides the rows of the list without copying them.
class ListModel : public QAbstractTableModel, private ListView::Listener {
    Q_OBJECT

 public:
    ListModel(ListView& list, const FileRules& rules, QObject* parent = nullptr);
    ~ListModel() override;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// Chooses large pictures instead of small ones.
    void setLargeIcons(bool large) { largeIcons_ = large; }

 Q_SIGNALS:
    /// Any rows have other contents. Unlike dataChanged for all rows, this takes constant time: the
    /// views would compute the place of each row.
    void rowsReplaced();
    void columnsRebuilt();
    void viewModeChanged();
    /// The views scroll the row into view.
    void rowMadeVisible(const QModelIndex& index);

 private:
    Fault faultOf(int row, int column) const;

    void aboutToReset() override { beginResetModel(); }
    void reset() override {
        faults_.clear();
        endResetModel();
    }
    void rowsChanged() override {
        faults_.clear();
        Q_EMIT rowsReplaced();
    }
    void columnsBuilt() override { Q_EMIT columnsRebuilt(); }
    void viewChanged() override { Q_EMIT viewModeChanged(); }
    void madeVisible(std::size_t row) override {
        Q_EMIT rowMadeVisible(index(static_cast<int>(row), ListView::nameColumn));
    }

    ListView& list_;
    const FileRules& rules_;
    bool largeIcons_ = false;
    // The faults of very long texts by row and column, as every painting needs them.
    mutable std::map<std::pair<int, int>, Fault> faults_;
};
