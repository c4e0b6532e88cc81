// What the cells of tree and list have in common.
#pragma once

#include <QStyledItemDelegate>

class QKeyEvent;

/// True for the keys that open the properties of what is selected.
bool opensProperties(const QKeyEvent& key);

/// Makes a selected cell look as one does on which commands do not act.
void showInactive(QStyleOptionViewItem& cell);

/// Draws a cell as the toolkit does. Its tooltip says what is wrong with the cell, then shows its
/// text where that is not to be seen whole.
class CellDelegate : public QStyledItemDelegate {
    Q_OBJECT

 public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// The cell's text as far as a tooltip can show it. The text to be drawn is shorter.
    static constexpr int wholeTextRole = Qt::UserRole;
    static constexpr int shownInTooltip = 5000;

    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

 private:
    bool isCut(const QAbstractItemView& view, const QStyleOptionViewItem& option,
               const QModelIndex& index) const;
};
