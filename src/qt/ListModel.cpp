#include "qt/ListModel.h"

#include "qt/Icons.h"
#include "qt/Text.h"

ListModel::ListModel(ListView& list, QObject* parent) : QAbstractTableModel(parent), list_(list) {
    list_.setListener(this);
}

ListModel::~ListModel() { list_.setListener(nullptr); }

int ListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(list_.rows().size());
}

int ListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(list_.columns().size());
}

QVariant ListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const auto& row = list_.rows()[static_cast<std::size_t>(index.row())];
    switch (role) {
        case Qt::DisplayRole: return toQt(row.cell(static_cast<std::size_t>(index.column())));
        case Qt::DecorationRole:
            if (index.column() != 0) return {};
            return largeIcons_ ? icons::list(row.icon) : icons::tree(row.smallIcon);
        case Qt::SizeHintRole: return cellSize_.isValid() ? cellSize_ : QVariant();
        default: return {};
    }
}

QVariant ListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) return {};
    switch (role) {
        case Qt::DisplayRole: return toQt(list_.columns()[static_cast<std::size_t>(section)].text);
        case Qt::TextAlignmentRole: return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
        default: return {};
    }
}
