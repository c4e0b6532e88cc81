#include "qt/ListModel.h"

#include <QGuiApplication>

#include "model/DataTypes.h"
#include "qt/CellDelegate.h"
#include "qt/Icons.h"
#include "qt/Text.h"

ListModel::ListModel(ListView& list, const FileRules& rules, QObject* parent)
    : QAbstractTableModel(parent), list_(list), rules_(rules) {
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
    const auto hasFault = [&] { return fault().kind != FaultKind::none; };
    switch (role) {
        case Qt::DisplayRole: return toQt(text, drawnCharacters);
        case CellDelegate::wholeTextRole: return toQt(text, CellDelegate::tooltipCharacters);
        case Qt::DecorationRole: {
            if (column != ListView::nameColumn) return hasFault() ? icons::mark() : QVariant();
            const QIcon& picture =
                largeIcons_ ? icons::list(row.icon) : icons::tree(tagOf(row.kind));
            return hasFault() ? icons::marked(picture) : picture;
        }
        case Qt::ForegroundRole:
            return hasFault() ? icons::markColour(QGuiApplication::palette()) : QVariant();
        case Qt::ToolTipRole:
        case Qt::AccessibleDescriptionRole: {
            if (hasFault()) return toQt(fault().text);
            // The icon of an item is its data type. The tooltip describes the type.
            const DataType* type = text == row.icon ? findDataType(text) : nullptr;
            return type == nullptr ? QVariant() : toQt(descriptionOf(*type));
        }
        default: return {};
    }
}

/// The fault of a cell's text. It is found when the cell is painted, as the user does not look at
/// all rows of a large branch. Only faults of long texts are stored.
Fault ListModel::faultOf(int row, int column) const {
    constexpr std::size_t readAtOnce = 10'000;
    const auto& shown = list_.rows()[static_cast<std::size_t>(row)];
    const auto place = static_cast<std::size_t>(column);
    const std::string_view text = shown.cell(place);
    const auto find = [&] { return rules_.faultOf(shown, place); };
    if (text.size() < readAtOnce) return find();
    const auto [known, isNew] = faults_.try_emplace({row, column});
    if (isNew) known->second = find();
    return known->second;
}

QVariant ListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    // A view may still ask for a column that was removed.
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
    switch (role) {
        case Qt::DisplayRole:
        case Qt::ToolTipRole: return toQt(list_.columns()[static_cast<std::size_t>(section)].text);
        default: return {};
    }
}
