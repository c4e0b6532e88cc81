#include "qt/ListModel.h"

#include <QGuiApplication>

#include "model/FileFitness.h"
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
    const auto column = static_cast<std::size_t>(index.column());
    const std::string& text = row.cell(column);
    // Worked out for what is painted: nobody looks at all rows of a large branch.
    const auto fault = [&] { return spoilsFile(text, filePlaceOf(row.smallIcon)); };
    switch (role) {
        case Qt::DisplayRole: return toQt(text);
        case Qt::DecorationRole: {
            if (column != 0) return fault().empty() ? QVariant() : icons::mark();
            const QIcon& picture = largeIcons_ ? icons::list(row.icon) : icons::tree(row.smallIcon);
            return fault().empty() ? picture : icons::marked(picture);
        }
        case Qt::ForegroundRole:
            return fault().empty() ? QVariant() : icons::markColour(QGuiApplication::palette());
        case Qt::ToolTipRole:
        case Qt::AccessibleDescriptionRole: return toQt(fault());
        case Qt::SizeHintRole: return cellSize_.isValid() ? cellSize_ : QVariant();
        default: return {};
    }
}

QVariant ListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal) return {};
    switch (role) {
        case Qt::DisplayRole:
        case Qt::ToolTipRole: return toQt(list_.columns()[static_cast<std::size_t>(section)].text);
        case Qt::TextAlignmentRole: return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
        default: return {};
    }
}
