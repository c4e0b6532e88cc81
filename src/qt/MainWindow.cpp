#include "qt/MainWindow.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QLayout>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QToolBar>
#include <QToolButton>
#include <algorithm>

#include "qt/Icons.h"
#include "qt/ListPane.h"
#include "qt/LoadingPanel.h"
#include "qt/Text.h"
#include "qt/TreePane.h"

namespace {

QRect rectangleOf(const Rectangle& rectangle) {
    return {rectangle.left, rectangle.top, rectangle.width, rectangle.height};
}

/// The caption without the marks of accelerator letters.
QString plainCaption(const Command& command) { return toQt(command.caption).remove('&'); }

/// The toolbar keys before which a gap sets the groups of buttons apart.
bool beginsToolbarGroup(std::string_view key) {
    return key == "setts" || key == "plc" || key == "copy" || key == "icon" || key == "find" ||
           key == "exit";
}

}  // namespace

MainWindow::MainWindow(frmEditing& form, Document& document)
    : form_(form),
      client_(new QWidget(this)),
      toolbar_(new QToolBar(client_)),
      tree_(new TreePane(document.tree(), form.treeDrag(), client_)),
      list_(new ListPane(form.ListView1, client_)),
      panel_(new LoadingPanel(form.pnlImpStat, client_)),
      innerArea_(client_) {
    setObjectName("frmEditing");
    tree_->setObjectName("TreeView1");
    list_->setObjectName("ListView1");
    setCentralWidget(client_);
    buildMenus();
    buildToolbar();
    connectViews();

    form_.setWindow(this);
    form_.Form_Initialize();
    setWindowTitle(toQt(form_.caption));
    const QSize screen = this->screen()->size();
    form_.Form_Load({screen.width(), screen.height()});
    resize(form_.referenceSize.width, form_.referenceSize.height);
}

MainWindow::~MainWindow() {
    form_.setWindow(nullptr);
    disconnect(qApp, nullptr, this, nullptr);  // the focus changes as the parts go
}

void MainWindow::buildMenus() {
    QMenu* menu = nullptr;
    const auto table = commandTable();
    for (std::size_t row = 0; row < table.size(); ++row) {
        const Command& command = table[row];
        const bool hasEntries =
            row + 1 < table.size() && table[row + 1].kind != Command::Kind::menu;
        QAction* action = nullptr;
        if (command.kind == Command::Kind::separator) {
            action = menu->addSeparator();
        } else if (command.kind == Command::Kind::menu && hasEntries) {
            menu = menuBar()->addMenu(toQt(command.caption));
            action = menu->menuAction();
        } else {
            action = new QAction(toQt(command.caption), this);
            action->setShortcut(QKeySequence(toQt(command.shortcut)));
            connect(action, &QAction::triggered, this, [this, &command] { form_.run(command); });
            (command.kind == Command::Kind::menu ? static_cast<QWidget*>(menuBar()) : menu)
                ->addAction(action);
        }
        action->setObjectName(toQt(command.name));
        if (command.kind != Command::Kind::separator) bound_.push_back({action, &command});
    }
}

void MainWindow::buildToolbar() {
    toolbar_->setObjectName("Toolbar1");
    toolbar_->setWindowTitle(tr("Toolbar"));
    // The toolkit's own button, for those that have no room.
    if (auto* more = toolbar_->findChild<QToolButton*>("qt_toolbar_ext_button")) {
        more->setAccessibleName(tr("More commands"));
    }
    toolbar_->layout()->setContentsMargins(0, 0, 0, 0);
    toolbar_->layout()->setSpacing(0);
    for (const Command* command : toolbarCommands()) {
        if (beginsToolbarGroup(command->toolbarKey)) toolbar_->addSeparator();
        auto* action = new QAction(icons::toolbar(command->picture), plainCaption(*command), this);
        action->setObjectName(toQt(command->toolbarKey));
        action->setToolTip(toQt(command->tooltip));
        connect(action, &QAction::triggered, this,
                [this, command] { form_.Toolbar1_ButtonClick(command->toolbarKey); });
        toolbar_->addAction(action);
        QWidget* button = toolbar_->widgetForAction(action);
        button->setObjectName(toQt(command->toolbarKey));
        // The toolkit would show the caption in place of the tooltip that is missing.
        if (command->tooltip.empty()) button->installEventFilter(this);
        bound_.push_back({action, command});
    }
}

void MainWindow::connectViews() {
    connect(tree_, &TreePane::nodeClicked, this,
            [this](Node& node) { form_.TreeView1_NodeClick(node); });
    connect(tree_, &TreePane::nodeDoubleClicked, this, [this] { form_.TreeView1_DblClick(); });
    connect(list_, &ListPane::rowClicked, this, [this] { form_.ListView1_Click(); });
    connect(list_, &ListPane::rowDoubleClicked, this, [this] { form_.ListView1_DblClick(); });
    connect(list_, &ListPane::columnClicked, this,
            [this](std::size_t column) { form_.ListView1_ColumnClick(column); });
    // Toolbar and menus take no focus of their own.
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget* /*old*/, QWidget* now) {
        if (now == tree_) form_.activeControl = frmEditing::ActiveControl::tree;
        if (list_->isAncestorOf(now)) form_.activeControl = frmEditing::ActiveControl::list;
    });
}

void MainWindow::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (!laidOut_) layOut();
}

/// Places the parts by the fixed fractions of the inner area of a window of the reference size.
/// The desktop may have given it another one: that is then the first to be followed.
void MainWindow::layOut() {
    layout()->activate();                            // so that the inner area has its size
    const int frame = height() - client_->height();  // the menus
    innerReference_ = {form_.referenceSize.width, form_.referenceSize.height - frame};
    const EditingLayout parts = frmEditing::layoutFor(innerReference_);
    toolbar_->setGeometry(rectangleOf(parts.toolbar));
    tree_->setGeometry(rectangleOf(parts.tree));
    list_->setGeometry(rectangleOf(parts.list));
    panel_->centerIn({innerReference_.width, innerReference_.height});
    setToolbarPicture(parts.toolbar.height);
    innerArea_.add(toolbar_, [this](int height) { setToolbarPicture(height); });
    innerArea_.add(tree_);
    innerArea_.add(list_);
    innerArea_.add(panel_);
    laidOut_ = true;
    resizeParts();
}

void MainWindow::resizeEvent(QResizeEvent* event) {
    QMainWindow::resizeEvent(event);
    if (laidOut_) resizeParts();
}

/// The inner area is the form, not the window: the menus keep their height, and what they leave
/// is filled.
void MainWindow::resizeParts() {
    layout()->activate();
    form_.Form_Resize(innerArea_, innerReference_);
}

/// Buttons as high as the toolbar, and in them pictures as large as look well; these are drawn at
/// any size. In a low toolbar the buttons do without a margin rather than be cut off.
void MainWindow::setToolbarPicture(int toolbarHeight) {
    const int picture = std::clamp(toolbarHeight * 2 / 3, std::min(16, toolbarHeight - 2), 32);
    const int button = std::min(toolbarHeight, picture + 9);
    toolbar_->setIconSize({picture, picture});
    for (QToolButton* each : toolbar_->findChildren<QToolButton*>(Qt::FindDirectChildrenOnly))
        if (!each->objectName().startsWith("qt_")) each->setFixedSize(button, button);
}

void MainWindow::closeEvent(QCloseEvent* event) {
    event->setAccepted(ending_ || form_.Form_Unload());
}

bool MainWindow::eventFilter(QObject* object, QEvent* event) {
    return event->type() == QEvent::ToolTip || QMainWindow::eventFilter(object, event);
}

void MainWindow::formChanged() {
    for (const auto& [action, command] : bound_)
        action->setEnabled(form_.isEnabled(*command));
    const bool treeAppears = form_.TreeView1.enabled && !tree_->isEnabled();
    tree_->setVisible(form_.TreeView1.visible);
    tree_->setEnabled(form_.TreeView1.enabled);
    if (treeAppears) tree_->setFocus();  // so that the keyboard works from the start
    list_->setVisible(form_.ListView1State.visible);
    list_->setEnabled(form_.ListView1State.enabled);
    panel_->follow();
}

void MainWindow::focusTree() { tree_->setFocus(); }

void MainWindow::endApplication(int exitStatus) {
    ending_ = true;
    Q_EMIT applicationEnded(exitStatus);
}
