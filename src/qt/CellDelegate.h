// Draws the cells of tree and list and shows their tooltips.
#pragma once

#include <QStyledItemDelegate>

class QKeyEvent;

/// Returns whether a key opens the properties of the selected node or row.
bool opensProperties(const QKeyEvent& key);

/// Draws a selected cell in the inactive colour, for the view that is not the active one.
void showInactive(QStyleOptionViewItem& cell);

/// Draws a cell as the toolkit does. Its tooltip contains the fault of the cell, if there is one,
/// then the text of the cell if it is not completely visible.
class CellDelegate : public QStyledItemDelegate {
    Q_OBJECT

 public:
    using QStyledItemDelegate::QStyledItemDelegate;

    /// The role of a cell's text for its tooltip, cut after that many characters. The text that is
    /// drawn may be shorter.
    static constexpr int wholeTextRole = Qt::UserRole;
    static constexpr int tooltipCharacters = 5000;

    /// Sets the size of every cell. Otherwise it depends on the texts.
    void setCellSize(QSize size) { cellSize_ = size; }
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        return cellSize_.isValid() ? cellSize_ : QStyledItemDelegate::sizeHint(option, index);
    }
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

 private:
    bool isElided(const QAbstractItemView& view, const QStyleOptionViewItem& option,
                  const QModelIndex& index) const;

    QSize cellSize_;
};
