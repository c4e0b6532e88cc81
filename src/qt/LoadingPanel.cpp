#include "qt/LoadingPanel.h"

#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

#include "qt/Text.h"

LoadingPanel::LoadingPanel(const frmEditing::StatusPanel& panel, QWidget* parent)
    : QFrame(parent), panel_(panel), label_(new QLabel(this)), bar_(new QProgressBar(this)) {
    setObjectName("pnlImpStat");
    setAccessibleName(tr("Loading"));
    setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
    setAutoFillBackground(true);
    label_->setObjectName("lblLabel");
    label_->setAlignment(Qt::AlignCenter);
    bar_->setRange(0, 99);
    bar_->setTextVisible(false);
    bar_->setAccessibleName(tr("Progress of loading"));
    auto* column = new QVBoxLayout(this);
    const int margin = fontMetrics().height();
    column->setContentsMargins(margin * 2, margin, margin * 2, margin);
    column->addWidget(label_);
    column->addWidget(bar_);
    connect(&refresh_, &QTimer::timeout, this, [this] { bar_->setValue(panel_.progress); });
    hide();
}

void LoadingPanel::centerIn(QSize area) {
    label_->setText(toQt(panel_.lblLabel));
    resize(sizeHint() * 2);
    move((area.width() - width()) / 2, (area.height() - height()) / 2);
}

void LoadingPanel::follow() {
    if (isVisible() == panel_.visible) return;
    label_->setText(toQt(panel_.lblLabel));
    bar_->setValue(panel_.progress);
    setVisible(panel_.visible);
    raise();
    if (panel_.visible) {
        refresh_.start(40);
    } else {
        refresh_.stop();
    }
}
