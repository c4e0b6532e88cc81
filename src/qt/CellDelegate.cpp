#include "qt/CellDelegate.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QTextDocument>
#include <QToolTip>

namespace {

/// A tooltip's lines end at blanks only: where there are none for long, the text is told to end
/// one anywhere.
QString breakable(QString text) {
    constexpr int longest = 60;
    int sinceBlank = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        sinceBlank = text[i].isSpace() ? 0 : sinceBlank + 1;
        if (sinceBlank < longest || text[i].isHighSurrogate()) continue;
        text.insert(i + 1, QChar(0x200B));  // a blank without a width
        sinceBlank = 0;
        ++i;
    }
    return text;
}

}  // namespace

bool opensProperties(const QKeyEvent& key) {
    return key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter || key.key() == Qt::Key_F2;
}

void showInactive(QStyleOptionViewItem& cell) {
    cell.state &= ~QStyle::State_Active;
    QPalette& colours = cell.palette;
    const QColor active = colours.color(QPalette::Active, QPalette::Highlight);
    if (colours.color(QPalette::Inactive, QPalette::Highlight) != active) return;
    // Not every desktop has a colour for this: a grey then, in which the text stays as it is.
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
    if (index.isValid() && isCut(*view, option, index)) {
        paragraphs.append(breakable(index.data(wholeTextRole).toString()));
    }
    // A text that looks like markup is none.
    const QString tip =
        paragraphs.isEmpty() ? QString() : Qt::convertFromPlainText(paragraphs.join('\n'));
    QToolTip::showText(event->globalPos(), tip, view->viewport(), view->visualRect(index));
    return true;
}

bool CellDelegate::isCut(const QAbstractItemView& view, const QStyleOptionViewItem& option,
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
