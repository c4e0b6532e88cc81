#include "qt/ListModel.h"

#include <QGuiApplication>

#include "model/FileFitness.h"
#include "qt/CellDelegate.h"
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
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) return {};
    const auto& row = list_.rows()[static_cast<std::size_t>(index.row())];
    const auto column = static_cast<std::size_t>(index.column());
    const std::string_view text = row.cell(column);
    const auto fault = [&] { return faultOf(index.row(), index.column()); };
    switch (role) {
        case Qt::DisplayRole: return toQt(text, drawnCharacters);
        case CellDelegate::wholeTextRole: return toQt(text, CellDelegate::shownInTooltip);
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

/// What in a cell's text would spoil the saved file. Worked out for what is painted: nobody looks
/// at all rows of a large branch.
std::string ListModel::faultOf(int row, int column) const {
    constexpr std::size_t readAtOnce = 10'000;
    const auto& shown = list_.rows()[static_cast<std::size_t>(row)];
    const auto place = static_cast<std::size_t>(column);
    const std::string_view text = shown.cell(place);
    const auto find = [&] { return spoilsFile(text, filePlaceOf(shown.smallIcon)); };
    if (text.size() < readAtOnce) return find();
    const auto [known, isNew] = faults_.try_emplace({row, column});
    if (isNew) known->second = find();
    return known->second;
}

QVariant ListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    // A view may ask for what it had before the columns changed.
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
    switch (role) {
        case Qt::DisplayRole:
        case Qt::ToolTipRole: return toQt(list_.columns()[static_cast<std::size_t>(section)].text);
        default: return {};
    }
}
