#include "qt/ReplaceDialog.h"

#include <QAbstractTableModel>
#include <QGuiApplication>
#include <QHeaderView>
#include <QPushButton>
#include <QScreen>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>
#include <numeric>

#include "qt/Icons.h"
#include "qt/Text.h"

namespace {

/// The grid as a model for the toolkit. Its first row is the header.
class GridModel : public QAbstractTableModel {
 public:
    GridModel(const frmReplace& form, QObject* parent)
        : QAbstractTableModel(parent), form_(form), grid_(form.Grid1) {}

    int rowCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : static_cast<int>(grid_.rows.size()) - 1;
    }

    int columnCount(const QModelIndex& parent) const override {
        return parent.isValid() ? 0 : static_cast<int>(grid_.colWidth.size());
    }

    QVariant data(const QModelIndex& index, int role) const override {
        // Ctrl+C asks for the current cell, also if there is none.
        if (!index.isValid()) return {};
        if (role == Qt::TextAlignmentRole && index.column() == 1) return Qt::AlignCenter;
        const auto text = [&] { return textAt(index.row() + 1, index.column()); };
        if (role == Qt::DisplayRole) return text();
        const QString fault = index.column() == 2 ? faultAt(index.row() + 1) : QString();
        const bool isFaulty = !fault.isEmpty();
        switch (role) {
            case Qt::DecorationRole: return isFaulty ? icons::mark() : QVariant();
            case Qt::ForegroundRole:
                return isFaulty ? icons::markColour(QGuiApplication::palette()) : QVariant();
            case Qt::AccessibleDescriptionRole: return fault;
            case Qt::ToolTipRole: return isFaulty ? fault + '\n' + text() : text();
            default: return {};
        }
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        const bool heading = orientation == Qt::Horizontal && role == Qt::DisplayRole;
        // The column of arrows has no heading. Screen readers get this one.
        if (role == Qt::AccessibleTextRole && section == 1) return tr("becomes");
        return heading ? textAt(0, section)
                       : QAbstractTableModel::headerData(section, orientation, role);
    }

 private:
    QString textAt(int row, int column) const {
        const auto& cells = grid_.rows[static_cast<std::size_t>(row)];
        return toQt(cells[static_cast<std::size_t>(column)], drawnCharacters);
    }

    QString faultAt(int row) const { return toQt(form_.faults[static_cast<std::size_t>(row)]); }

    const frmReplace& form_;
    const Grid& grid_;
};

}  // namespace

ReplaceDialog::ReplaceDialog(frmReplace& form)
    : FormDialog(
          frmReplace::caption, [&form] { return form.closed(); },
          [&form] { form.Command1_Click(); }),
      content_(form.Grid1),
      grid_(new QTableView(this)) {
    setObjectName("frmReplace");
    grid_->setObjectName("Grid1");
    grid_->setAccessibleName(windowTitle());
    grid_->setModel(new GridModel(form, grid_));
    grid_->setSelectionMode(QAbstractItemView::NoSelection);
    grid_->setTabKeyNavigation(false);
    grid_->setWordWrap(false);
    grid_->verticalHeader()->hide();
    grid_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    grid_->horizontalHeader()->setSectionsClickable(false);
    grid_->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    grid_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    grid_->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Fixed);

    auto* accept = bind("Command2", form.Command2, 'R', [&form] { form.Command2_Click(); });
    auto* reject = bind("Command1", form.Command1, 'C', [&form] { form.Command1_Click(); });
    auto* contents = new QVBoxLayout;
    contents->addWidget(grid_);
    arrange(contents, {accept, reject});
    accept->setFocus();
    const int character = fontMetrics().averageCharWidth();
    const QSize room = screen()->availableSize() * 9 / 10;
    resize(QSize(90 * character, 24 * fontMetrics().height()).boundedTo(room));
    showForm();
}

void ReplaceDialog::resizeEvent(QResizeEvent* event) {
    FormDialog::resizeEvent(event);
    const auto& widths = content_.colWidth;
    const int whole = std::accumulate(widths.begin(), widths.end(), 0);
    const int arrow = fontMetrics().horizontalAdvance("<--- ") + 8;
    grid_->setColumnWidth(1, std::max(arrow, widths[1] * grid_->width() / whole));
}
