#include "qt/LoadingPanel.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "qt/Text.h"

LoadingPanel::LoadingPanel(frmEditing& form, QWidget* parent)
    : QFrame(parent),
      form_(form),
      panel_(form.pnlImpStat),
      bar_(new QProgressBar(this)),
      cancel_(new QPushButton(tr("Cancel"), this)) {
    setObjectName("pnlImpStat");
    setAccessibleName(tr("Loading"));
    setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
    auto* label = new QLabel(toQt(panel_.lblLabel), this);
    label->setObjectName("lblLabel");
    label->setAlignment(Qt::AlignCenter);
    bar_->setRange(0, 99);
    bar_->setTextVisible(false);
    bar_->setAccessibleName(tr("Progress of loading"));
    cancel_->setObjectName("cmdCancel");
    cancel_->setFocusPolicy(Qt::NoFocus);
    QSizePolicy retained = cancel_->sizePolicy();
    retained.setRetainSizeWhenHidden(true);
    cancel_->setSizePolicy(retained);
    auto* column = new QVBoxLayout(this);
    const int margin = fontMetrics().height();
    column->setContentsMargins(margin * 2, margin, margin * 2, margin);
    column->addWidget(label);
    column->addWidget(bar_);
    column->addWidget(cancel_, 0, Qt::AlignCenter);
    connect(cancel_, &QPushButton::clicked, this, [this] { form_.pnlImpStat_Cancel(); });
    refresh_.setSingleShot(true);
    refresh_.setInterval(40);
    connect(&refresh_, &QTimer::timeout, this, [this] {
        if (!panel_.visible) return;
        bar_->setValue(panel_.progress);
        if (panel_.offersCancel) takeInput();
        refresh_.start();
    });
    hide();
}

void LoadingPanel::centerIn(QSize area) {
    resize(sizeHint() * 2);
    move((area.width() - width()) / 2, (area.height() - height()) / 2);
}

void LoadingPanel::follow() {
    cancel_->setVisible(panel_.offersCancel);
    if (isVisible() == panel_.visible) return;
    bar_->setValue(panel_.progress);
    setVisible(panel_.visible);
    if (panel_.visible) refresh_.start();
}

/// Processes the user's input, but only for this panel. The work itself processes other pending
/// events only, as input would reach commands while the configuration is incomplete.
void LoadingPanel::takeInput() {
    qApp->installEventFilter(this);
    QCoreApplication::processEvents();
    qApp->removeEventFilter(this);
}

bool LoadingPanel::eventFilter(QObject* object, QEvent* event) {
    if (QApplication::activeModalWidget() != nullptr) return false;  // it gets all input
    switch (event->type()) {
        case QEvent::KeyPress:
            if (static_cast<QKeyEvent*>(event)->matches(QKeySequence::Cancel)) {
                form_.pnlImpStat_Cancel();
            }
            return true;
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
        case QEvent::MouseMove:
            // The toolkit sends an event of a window on to the widget under the pointer, and so
            // calls this again.
            return !object->isWindowType() && object != cancel_;
        case QEvent::KeyRelease:
        case QEvent::ShortcutOverride:
        case QEvent::Shortcut:
        case QEvent::InputMethod:
        case QEvent::ContextMenu:
        case QEvent::Wheel:
        case QEvent::TouchBegin:
        case QEvent::TabletPress: return true;
        default: return false;
    }
}
