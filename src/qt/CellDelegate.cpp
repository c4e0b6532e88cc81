#include "qt/CellDelegate.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QTextDocument>
#include <QToolTip>

#include "qt/Text.h"

bool opensProperties(const QKeyEvent& key) {
    return key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter || key.key() == Qt::Key_F2;
}

void showInactive(QStyleOptionViewItem& cell) {
    cell.state &= ~QStyle::State_Active;
    QPalette& colours = cell.palette;
    const QColor active = colours.color(QPalette::Active, QPalette::Highlight);
    if (colours.color(QPalette::Inactive, QPalette::Highlight) != active) return;
    // Some desktops have the same colour for both. Then the background becomes grey, with the usual
    // text colour.
    const QColor base = colours.color(QPalette::Active, QPalette::Base);
    const QColor text = colours.color(QPalette::Active, QPalette::Text);
    const auto mix = [](int most, int rest) { return (4 * most + rest) / 5; };
    colours.setColor(QPalette::Inactive, QPalette::Highlight,
                     {mix(base.red(), text.red()), mix(base.green(), text.green()),
                      mix(base.blue(), text.blue())});
    colours.setColor(QPalette::Inactive, QPalette::HighlightedText, text);
}

bool CellDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                             const QStyleOptionViewItem& option, const QModelIndex& index) {
    QStringList paragraphs;
    const QString fault = index.data(Qt::ToolTipRole).toString();
    if (!fault.isEmpty()) paragraphs.append(fault);
    if (index.isValid() && isElided(*view, option, index)) {
        paragraphs.append(breakable(index.data(wholeTextRole).toString()));
    }
    // The toolkit must not read the text as markup.
    const QString tip =
        paragraphs.isEmpty() ? QString() : Qt::convertFromPlainText(paragraphs.join('\n'));
    QToolTip::showText(event->globalPos(), tip, view->viewport(), view->visualRect(index));
    return true;
}

bool CellDelegate::isElided(const QAbstractItemView& view, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const {
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    if (cell.text != index.data(wholeTextRole).toString()) return true;
    const QStyle* style = view.style();
    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, &cell, &view) + 1;
    const QRect place = style->subElementRect(QStyle::SE_ItemViewItemText, &cell, &view);
    const QRect seen = place & view.viewport()->rect();
    return cell.fontMetrics.horizontalAdvance(cell.text) > seen.width() - 2 * margin;
}
