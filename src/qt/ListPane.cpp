#include "qt/ListPane.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QItemSelection>
#include <QKeyEvent>
#include <QListView>
#include <QMenu>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTreeView>
#include <algorithm>
#include <iterator>
#include <utility>

#include "qt/CellDelegate.h"
#include "qt/Icons.h"
#include "qt/Text.h"

namespace {

/// One of the list's two views. Its selection has the active colour while the list is active. The
/// toolkit sends key events to the view, and mouse events to its viewport.
template <typename View>
class PaneView : public View {
 public:
    explicit PaneView(ListPane* pane) : View(pane), pane_(pane) {}

 protected:
    void initViewItemOption(QStyleOptionViewItem* option) const override {
        View::initViewItemOption(option);
        if (!pane_->isActive()) showInactive(*option);
    }

    bool event(QEvent* event) override {
        return pane_->handle(*event, [&] { return View::event(event); });
    }

    bool viewportEvent(QEvent* event) override {
        return pane_->handle(*event, [&] { return View::viewportEvent(event); });
    }

 private:
    ListPane* pane_;
};

/// The headings of the columns. A heading that is too long ends with "…". The toolkit's own elide
/// mode would cut it in the middle of a letter.
class Headings : public QHeaderView {
 public:
    explicit Headings(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
        setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    }

 protected:
    void initStyleOptionForIndex(QStyleOptionHeader* option, int column) const override {
        QHeaderView::initStyleOptionForIndex(option, column);
        option->rect.setSize({sectionSize(column), height()});
        const QRect room = style()->subElementRect(QStyle::SE_HeaderLabel, option, this);
        option->text = fontMetrics().elidedText(option->text, Qt::ElideRight, room.width());
    }
};

}  // namespace

ListPane::ListPane(ListView& list, const FileRules& rules, QWidget* parent)
    : QStackedWidget(parent),
      list_(list),
      model_(new ListModel(list, rules, this)),
      report_(new PaneView<QTreeView>(this)),
      icons_(new PaneView<QListView>(this)) {
    report_->setHeader(new Headings(report_));
    report_->header()->setSectionsClickable(true);  // setHeader() turns it off
    report_->setRootIsDecorated(false);
    report_->setUniformRowHeights(true);
    report_->setAllColumnsShowFocus(true);
    icons_->setUniformItemSizes(true);
    icons_->setResizeMode(QListView::Adjust);

    for (QAbstractItemView* view :
         {static_cast<QAbstractItemView*>(report_), static_cast<QAbstractItemView*>(icons_)}) {
        view->setModel(model_);
        view->setItemDelegate(new CellDelegate(view));
        view->setSelectionMode(QAbstractItemView::ExtendedSelection);
        view->setSelectionBehavior(QAbstractItemView::SelectRows);
        view->setAccessibleName(tr("Contents"));
        view->installEventFilter(this);
        view->viewport()->installEventFilter(this);
        connect(view, &QAbstractItemView::clicked, this, [this] {
            if (!isClickReported_) reportClick();
        });
        connect(view, &QAbstractItemView::doubleClicked, this, &ListPane::rowDoubleClicked);
        addWidget(view);
    }
    selection_ = report_->selectionModel();
    icons_->setSelectionModel(selection_);
    showViewMode();

    connect(model_, &ListModel::viewModeChanged, this, &ListPane::showViewMode);
    connect(model_, &ListModel::rowMadeVisible, this, [this](const QModelIndex& index) {
        report_->scrollTo(index);
        icons_->scrollTo(index);
    });
    connect(model_, &ListModel::columnsRebuilt, this, [this] { columnsRebuilt_ = true; });
    connect(model_, &ListModel::modelReset, this, &ListPane::restoreAfterReset);
    connect(model_, &ListModel::rowsReplaced, this, &ListPane::repaintRows);
    connect(selection_, &QItemSelectionModel::selectionChanged, this, &ListPane::selectionChanged);
    connect(selection_, &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex& current) {
                if (!current.isValid() || restoring_) return;
                list_.setCurrentRow(static_cast<std::size_t>(current.row()));
                reportClick();  // by the keyboard or the mouse
            });
    connect(report_->header(), &QHeaderView::sectionClicked, this,
            [this](int column) { Q_EMIT columnClicked(static_cast<std::size_t>(column)); });
    connect(report_->header(), &QHeaderView::sectionResized, this, [this] {
        if (!scaling_) keepColumnWidths();
    });
}

void ListPane::setActive(bool active) {
    isActive_ = active;
    repaintRows();
}

void ListPane::repaintRows() {
    report_->viewport()->update();
    icons_->viewport()->update();
}

bool ListPane::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::KeyPress:
            if (keyPressed(*static_cast<QKeyEvent*>(event))) return true;
            break;
        case QEvent::MouseButtonPress: pressed(*static_cast<QMouseEvent*>(event)); break;
        case QEvent::MouseButtonRelease:
            if (watched != currentWidget()) rightButtonReleased(*static_cast<QMouseEvent*>(event));
            break;
        default: break;
    }
    return QStackedWidget::eventFilter(watched, event);
}

bool ListPane::handle(const QEvent& event, const std::function<bool()>& byView) {
    if (event.type() == QEvent::MouseButtonPress) isClickReported_ = false;
    const bool isInner = std::exchange(inEvent_, true);
    const bool handled = byView();
    inEvent_ = isInner;
    if (!isInner && std::exchange(isClickPending_, false)) reportClick();
    return handled;
}

void ListPane::reportClick() {
    if (inEvent_) {
        isClickPending_ = true;
        return;
    }
    isClickReported_ = true;
    Q_EMIT rowClicked();
}

void ListPane::pressed(const QMouseEvent& event) {
    pressedAt_ = event.globalPosition().toPoint();
    const auto* view = qobject_cast<QAbstractItemView*>(currentWidget());
    // As the left button does. The context menu then applies to no row.
    if (event.button() == Qt::RightButton && !view->indexAt(event.position().toPoint()).isValid()) {
        selection_->clearSelection();
    }
}

bool ListPane::keyPressed(QKeyEvent& key) {
    if (const auto row = rowSelectedBy(key)) {
        return handle(key, [&] {
            selection_->setCurrentIndex(
                model_->index(*row, 0),
                QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
            return true;
        });
    }
    if (opensProperties(key)) {
        Q_EMIT rowDoubleClicked();
        return true;
    }
    // The toolkit would copy a text to the clipboard, which may contain names to be pasted.
    return key.matches(QKeySequence::Copy);
}

/// Returns the row that Home or End selects; for an arrow key while no row is selected, the current
/// row or the first. With these keys the toolkit selects nothing if the row is the current one.
std::optional<int> ListPane::rowSelectedBy(const QKeyEvent& key) const {
    const int rows = model_->rowCount();
    if (rows == 0 || (key.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier) return {};
    switch (key.key()) {
        case Qt::Key_Home: return 0;
        case Qt::Key_End: return rows - 1;
        case Qt::Key_Left:
        case Qt::Key_Right:
            if (currentWidget() != icons_) return {};
            [[fallthrough]];
        case Qt::Key_Up:
        case Qt::Key_Down:
            if (selection_->hasSelection()) return {};
            return std::max(0, selection_->currentIndex().row());
        default: return {};
    }
}

void ListPane::rightButtonReleased(const QMouseEvent& event) {
    const QPoint place = event.globalPosition().toPoint();
    if (event.button() != Qt::RightButton) return;
    if ((place - pressedAt_).manhattanLength() >= QApplication::startDragDistance()) return;
    if (!isClickReported_) reportClick();  // if the row was selected before the click
    Q_EMIT menuRequested(place);
}

/// Handles the keyboard only. With the mouse the menu opens when the right button is released, on
/// all systems; some would open it when the button is pressed.
void ListPane::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() != QContextMenuEvent::Keyboard) return;
    const auto* view = qobject_cast<QAbstractItemView*>(currentWidget());
    const QRect row = view->visualRect(view->currentIndex()) & view->viewport()->rect();
    Q_EMIT menuRequested(
        view->viewport()->mapToGlobal(row.isEmpty() ? QPoint() : row.bottomLeft()));
}

void ListPane::addOwnEntries(QMenu& menu) {
    const auto& columns = list_.columns();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        menu.addAction(tr("Sort by %1").arg(toQt(columns[i].text)), this,
                       [this, i] { Q_EMIT columnClicked(i); });
    }
}

void ListPane::showViewMode() {
    const auto mode = list_.view();
    QWidget* const before = currentWidget();
    report_->setIconSize(icons::besideText(fontMetrics()));
    if (mode == ListView::View::report) {
        model_->setLargeIcons(false);
        setCurrentWidget(report_);
    } else {
        showIcons(mode == ListView::View::icon, mode == ListView::View::list);
        setCurrentWidget(icons_);
    }
    if (before->hasFocus()) currentWidget()->setFocus();
    Q_EMIT viewModeChanged();
}

void ListPane::changeEvent(QEvent* event) {
    QStackedWidget::changeEvent(event);
    // The sizes of icons and cells depend on the font.
    if (event->type() == QEvent::FontChange) showViewMode();
}

void ListPane::showIcons(bool large, bool inColumns) {
    const int side = icons::besideText(fontMetrics()).height() * (large ? 2 : 1);
    const int line = fontMetrics().height();
    const int character = fontMetrics().averageCharWidth();
    const QSize cell = large ? QSize(24 * character, side + 2 * line)
                             : QSize(side + 26 * character, std::max(side, line) + 4);
    model_->setLargeIcons(large);
    qobject_cast<CellDelegate*>(icons_->itemDelegate())->setCellSize(cell);
    icons_->setViewMode(large ? QListView::IconMode : QListView::ListMode);
    icons_->setMovement(QListView::Static);
    icons_->setFlow(inColumns ? QListView::TopToBottom : QListView::LeftToRight);
    icons_->setWrapping(true);
    icons_->setIconSize({side, side});
    icons_->setGridSize(cell);
}

void ListPane::setColumnWidths() {
    const auto& columns = list_.columns();
    // Not the width of the viewport, which has none before the list is shown for the first time.
    const int ownWidth = width() - 2 * report_->frameWidth();
    for (std::size_t i = 0; i < columns.size(); ++i)
        report_->setColumnWidth(static_cast<int>(i), static_cast<int>(columns[i].width * ownWidth));
    report_->horizontalScrollBar()->setValue(0);
}

/// The width that a column needs for its heading. Columns do not become narrower than it.
int ListPane::headingWidth(std::size_t column) const {
    return report_->header()->sectionSizeHint(static_cast<int>(column));
}

void ListPane::keepColumnWidths() {
    keptWidths_.clear();
    for (int column = 0; column < model_->columnCount(); ++column)
        keptWidths_.push_back(report_->columnWidth(column));
    keptListWidth_ = width();
}

/// Resizes the columns in proportion to the list. The widths are computed from the kept widths, so
/// that rounding errors do not add up.
void ListPane::resizeEvent(QResizeEvent* event) {
    QStackedWidget::resizeEvent(event);
    if (keptListWidth_ == 0) return;
    const QScopedValueRollback guard(scaling_, true);
    for (std::size_t i = 0; i < keptWidths_.size(); ++i) {
        const int least = std::min(keptWidths_[i], headingWidth(i));
        report_->setColumnWidth(static_cast<int>(i),
                                std::max(least, keptWidths_[i] * width() / keptListWidth_));
    }
}

void ListPane::restoreAfterReset() {
    if (columnsRebuilt_) setColumnWidths();
    columnsRebuilt_ = false;
    const auto sorted = list_.sortColumn();
    report_->header()->setSortIndicatorShown(sorted.has_value());
    if (sorted) report_->header()->setSortIndicator(static_cast<int>(*sorted), Qt::AscendingOrder);

    const QScopedValueRollback guard(restoring_, true);
    QItemSelection selected;
    const auto& rows = list_.rows();
    const auto isSelected = [](const ListView::Row& row) { return row.selected; };
    const auto indexOf = [&](auto row, int column) {
        return model_->index(static_cast<int>(row - rows.begin()), column);
    };
    for (auto row = std::ranges::find_if(rows, isSelected); row != rows.end();) {
        const auto end = std::find_if_not(row, rows.end(), isSelected);
        selected.select(indexOf(row, 0), indexOf(std::prev(end), model_->columnCount() - 1));
        row = std::find_if(end, rows.end(), isSelected);
    }
    selection_->select(selected, QItemSelectionModel::ClearAndSelect);
    if (const auto current = list_.currentRow()) {
        selection_->setCurrentIndex(model_->index(static_cast<int>(*current), 0),
                                    QItemSelectionModel::NoUpdate);
    }
}

void ListPane::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) {
    if (restoring_) return;
    const auto mark = [this](const QItemSelection& ranges, bool value) {
        for (const QItemSelectionRange& range : ranges) {
            for (int row = range.top(); row <= range.bottom(); ++row)
                list_.setSelected(static_cast<std::size_t>(row), value);
        }
    };
    mark(deselected, false);
    mark(selected, true);
    if (!selected.isEmpty()) reportClick();
}
