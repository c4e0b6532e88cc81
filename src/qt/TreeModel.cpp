#include "qt/TreeModel.h"

#include <QGuiApplication>
#include <utility>

#include "qt/CellDelegate.h"
#include "qt/Icons.h"
#include "qt/Text.h"

TreeModel::TreeModel(const ConfigTree& tree, const FileRules& rules, QObject* parent)
    : QAbstractItemModel(parent), tree_(tree), rules_(rules) {
    tree_.setListener(this);
}

TreeModel::~TreeModel() { tree_.setListener(nullptr); }

QModelIndex TreeModel::indexOf(const Node* node) const {
    if (node == nullptr) return {};
    return createIndex(ConfigTree::rowOf(*node), 0, node);
}

Node* TreeModel::nodeAt(const QModelIndex& index) {
    return static_cast<Node*>(index.internalPointer());
}

QModelIndex TreeModel::index(int row, int column, const QModelIndex& parent) const {
    if (row < 0 || column != 0 || row >= rowCount(parent)) return {};
    const Node* node = parent.isValid()
                           ? nodeAt(parent)->GetChildren()[static_cast<std::size_t>(row)]
                           : tree_.root();
    return createIndex(row, column, node);
}

QModelIndex TreeModel::parent(const QModelIndex& index) const {
    return index.isValid() ? indexOf(nodeAt(index)->parent()) : QModelIndex();
}

int TreeModel::rowCount(const QModelIndex& parent) const {
    if (!parent.isValid()) return tree_.root() == nullptr ? 0 : 1;
    return static_cast<int>(nodeAt(parent)->GetChildren().size());
}

int TreeModel::columnCount(const QModelIndex& /*parent*/) const { return 1; }

QVariant TreeModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const Node& node = *nodeAt(index);
    const auto hasFault = [&] { return rules_.faultOf(node).kind != FaultKind::none; };
    switch (role) {
        case Qt::DisplayRole: return toQt(node.text(), drawnCharacters);
        case CellDelegate::wholeTextRole: return toQt(node.text(), CellDelegate::tooltipCharacters);
        case Qt::DecorationRole: {
            const QIcon& picture = icons::tree(tagOf(node.kind()));
            return hasFault() ? icons::marked(picture) : picture;
        }
        case Qt::ForegroundRole:
            return hasFault() ? icons::markColour(QGuiApplication::palette()) : QVariant();
        case Qt::ToolTipRole:
        case Qt::AccessibleDescriptionRole: return toQt(rules_.faultOf(node).text);
        default: return {};
    }
}

QVariant TreeModel::headerData(int /*section*/, Qt::Orientation orientation, int role) const {
    const bool named = orientation == Qt::Horizontal && role == Qt::DisplayRole;
    return named ? tr("Configuration") : QVariant();
}

void TreeModel::aboutToAdd(const Node* parent, int row) {
    beginInsertRows(indexOf(parent), row, row);
}

void TreeModel::added() { endInsertRows(); }

void TreeModel::aboutToRemove(const Node& node) {
    const int row = ConfigTree::rowOf(node);
    beginRemoveRows(indexOf(node.parent()), row, row);
}

void TreeModel::removed() { endRemoveRows(); }

void TreeModel::changed(const Node& node) {
    const QModelIndex index = indexOf(&node);
    Q_EMIT dataChanged(index, index);
}

void TreeModel::recordsChanged() {
    if (std::exchange(willEmitSigns_, true)) return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            willEmitSigns_ = false;
            Q_EMIT signsChanged();
        },
        Qt::QueuedConnection);
}

void TreeModel::aboutToReorder(const Node& parent) {
    Q_EMIT layoutAboutToBeChanged({indexOf(&parent)}, VerticalSortHint);
}

void TreeModel::reordered(const Node& parent) {
    const auto before = persistentIndexList();
    QModelIndexList now;
    now.reserve(before.size());
    for (const QModelIndex& index : before)
        now.append(indexOf(nodeAt(index)));
    changePersistentIndexList(before, now);
    Q_EMIT layoutChanged({indexOf(&parent)}, VerticalSortHint);
}

void TreeModel::aboutToReset() { beginResetModel(); }

void TreeModel::reset() { endResetModel(); }

void TreeModel::selectionChanged() { Q_EMIT nodeSelected(); }

void TreeModel::madeVisible(const Node& node) { Q_EMIT nodeMadeVisible(indexOf(&node)); }
