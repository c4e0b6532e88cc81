#include "qt/MainWindow.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QDropEvent>
#include <QLabel>
#include <QLayout>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QScreen>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <algorithm>
#include <array>
#include <utility>

#include "qt/Icons.h"
#include "qt/ListPane.h"
#include "qt/LoadingPanel.h"
#include "qt/Text.h"
#include "qt/TreePane.h"

namespace {

QRect rectangleOf(const Rectangle& rectangle) {
    return {rectangle.left, rectangle.top, rectangle.width, rectangle.height};
}

/// The caption without "&".
QString plainCaption(const Command& command) { return toQt(command.caption).remove('&'); }

QList<QKeySequence> keysOf(std::string_view shortcut) {
    return QKeySequence::listFromString(toQt(shortcut));
}

/// The keys that no menu shows, without duplicates.
QList<QKeySequence> hiddenKeysOf(const Command& command) {
    constexpr std::array desktopKeys{QKeySequence::UnknownKey, QKeySequence::New,
                                     QKeySequence::Open,       QKeySequence::Save,
                                     QKeySequence::SaveAs,     QKeySequence::Find};
    QList<QKeySequence> keys = keysOf(command.hiddenShortcut);
    const auto standard = desktopKeys.at(static_cast<std::size_t>(command.desktopKey));
    for (const QKeySequence& key : QKeySequence::keyBindings(standard))
        if (!keys.contains(key)) keys.append(key);
    return keys;
}

/// The path of the dragged file; empty if there is none or more than one.
QString fileIn(const QDropEvent& event) {
    const auto urls = event.mimeData()->urls();
    return urls.size() == 1 ? QDir::toNativeSeparators(urls.front().toLocalFile()) : QString();
}

/// The text in the window while no configuration is open.
QLabel* makeHint(QWidget* parent) {
    const auto caption = [](std::string_view command) {
        return "<b>" + plainCaption(commandNamed(command)) + "</b>";
    };
    auto* hint =
        new QLabel(MainWindow::tr("Begin with %1, %2 or %3 in the File menu,<br>"
                                  "or drop a file here.")
                       .arg(caption("mnuNewCfg"), caption("mnuOpenCfg"), caption("mnuImpCfg")),
                   parent);
    hint->setObjectName("hint");
    hint->setAlignment(Qt::AlignCenter);
    hint->setWordWrap(true);
    hint->setForegroundRole(QPalette::PlaceholderText);
    return hint;
}

}  // namespace

MainWindow::MainWindow(frmEditing& form, Document& document)
    : form_(form),
      client_(new QWidget(this)),
      toolbar_(new QToolBar(client_)),
      tree_(new TreePane(document.tree(), form.fileRules(), form.treeDrag(), client_)),
      list_(new ListPane(form.ListView1, form.fileRules(), client_)),
      panel_(new LoadingPanel(form, client_)),
      hint_(makeHint(client_)),
      innerArea_(client_) {
    setObjectName("frmEditing");
    tree_->setObjectName("TreeView1");
    list_->setObjectName("ListView1");
    setCentralWidget(client_);
    buildMenus();
    buildToolbar();
    addHiddenKeys();
    connectViews();
    setAcceptDrops(true);
    // Room for the menus, all buttons and some rows.
    setMinimumSize(fontMetrics().averageCharWidth() * 80, fontMetrics().height() * 20);

    form_.setWindow(this);
    form_.Form_Initialize();
    setWindowTitle(toQt(form_.caption));
    const QSize screen = this->screen()->size();
    form_.Form_Load({screen.width(), screen.height()});
    resize(form_.referenceSize.width, form_.referenceSize.height);
}

MainWindow::~MainWindow() {
    form_.setWindow(nullptr);
    disconnect(qApp, nullptr, this, nullptr);  // the focus changes while the widgets are deleted
}

void MainWindow::buildMenus() {
    QMenu* menu = nullptr;
    auto* viewModes = new QActionGroup(this);
    for (const Command& command : commandTable()) {
        QAction* action = nullptr;
        if (command.kind == Command::Kind::separator) {
            action = menu->addSeparator();
        } else if (command.kind == Command::Kind::menu && command.handler == nullptr) {
            menu = menuBar()->addMenu(toQt(command.caption));
            action = menu->menuAction();
        } else {
            action = new QAction(toQt(command.caption), this);
            action->setShortcuts(keysOf(command.shortcut));
            connect(action, &QAction::triggered, this, [this, &command] { form_.run(command); });
            if (command.view) viewModes->addAction(action)->setCheckable(true);
            QWidget* place = menu;
            if (command.kind == Command::Kind::menu) place = menuBar();
            if (command.kind == Command::Kind::inContextMenus) place = this;
            place->addAction(action);
        }
        action->setObjectName(toQt(command.name));
        if (command.kind != Command::Kind::separator) bound_.push_back({action, &command});
    }
}

void MainWindow::buildToolbar() {
    toolbar_->setObjectName("Toolbar1");
    toolbar_->setWindowTitle(tr("Toolbar"));
    // The toolkit's button for the commands that do not fit.
    if (auto* more = toolbar_->findChild<QToolButton*>("qt_toolbar_ext_button")) {
        more->setAccessibleName(tr("More commands"));
    }
    toolbar_->layout()->setContentsMargins(QMargins());
    toolbar_->layout()->setSpacing(0);
    auto* viewModes = new QActionGroup(this);
    auto group = ToolbarButton::Group::none;
    for (const Command* command : toolbarCommands()) {
        const ToolbarButton& place = command->button;
        const auto before = std::exchange(group, place.group);
        if (before != group && before != ToolbarButton::Group::none) toolbar_->addSeparator();
        auto* action = new QAction(icons::toolbar(place.picture), plainCaption(*command), this);
        action->setObjectName(toQt(place.key));
        action->setToolTip(toQt(place.tooltip));
        connect(action, &QAction::triggered, this,
                [this, command] { form_.Toolbar1_ButtonClick(command->button.key); });
        if (command->view) viewModes->addAction(action)->setCheckable(true);
        toolbar_->addAction(action);
        QWidget* button = toolbar_->widgetForAction(action);
        button->setObjectName(toQt(place.key));
        // The toolkit would show the caption if there is no tooltip.
        if (place.tooltip.empty()) button->installEventFilter(this);
        bound_.push_back({action, command});
    }
}

/// Makes a separate action for the keys that no menu shows.
void MainWindow::addHiddenKeys() {
    for (const Command& command : commandTable()) {
        const auto keys = hiddenKeysOf(command);
        if (keys.isEmpty()) continue;
        auto* action = new QAction(this);
        action->setShortcuts(keys);
        connect(action, &QAction::triggered, this, [this, &command] { form_.run(command); });
        addAction(action);
        bound_.push_back({action, &command});
    }
}

void MainWindow::connectViews() {
    using View = frmEditing::ActiveControl;
    connect(tree_, &TreePane::menuRequested, this,
            [this](QPoint place) { showContextMenu(View::tree, place); });
    connect(list_, &ListPane::menuRequested, this,
            [this](QPoint place) { showContextMenu(View::list, place); });
    connect(list_, &ListPane::viewModeChanged, this, &MainWindow::showViewMode);
    showViewMode();
    connect(tree_, &TreePane::nodeClicked, this,
            [this](Node& node) { form_.TreeView1_NodeClick(node); });
    connect(tree_, &TreePane::nodeDoubleClicked, this, [this] { form_.TreeView1_DblClick(); });
    connect(tree_, &TreePane::signsChanged, list_, &ListPane::repaintRows);
    connect(list_, &ListPane::rowClicked, this, [this] { form_.ListView1_Click(); });
    connect(list_, &ListPane::rowDoubleClicked, this, [this] { form_.ListView1_DblClick(); });
    connect(list_, &ListPane::columnClicked, this,
            [this](std::size_t column) { form_.ListView1_ColumnClick(column); });
    // Toolbar and menus do not take the focus.
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget* /*old*/, QWidget* now) {
        if (now == tree_) form_.activeControl = View::tree;
        if (list_->isAncestorOf(now)) form_.activeControl = View::list;
        showActiveView();
    });
}

void MainWindow::showActiveView() {
    tree_->setActive(form_.activeControl == frmEditing::ActiveControl::tree);
    list_->setActive(form_.activeControl == frmEditing::ActiveControl::list);
}

void MainWindow::showViewMode() {
    for (const auto& [action, command] : bound_)
        if (command->view == form_.ListView1.view()) action->setChecked(true);
}

void MainWindow::showContextMenu(frmEditing::ActiveControl view, QPoint place) {
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const bool inTree = view == frmEditing::ActiveControl::tree;
    auto group = ContextEntry::Group::none;
    for (const Command* command : contextCommands()) {
        const ContextEntry& entry = command->context;
        if (inTree && entry.views != ContextEntry::Views::both) continue;
        // The toolkit hides a separator above the first entry.
        if (std::exchange(group, entry.group) != entry.group) menu->addSeparator();
        addEntry(*menu, *command);
    }
    menu->addSeparator();
    inTree ? tree_->addOwnEntries(*menu) : list_->addOwnEntries(*menu);
    menu->popup(place);
}

/// Adds the action of the menu bar; for a command of the context menus only, a new action with its
/// present caption.
void MainWindow::addEntry(QMenu& menu, const Command& command) {
    QAction* action = findChild<QAction*>(toQt(command.name));
    if (command.captionNow != nullptr) {
        constexpr int mostCharacters = 80;
        const auto caption = (form_.*command.captionNow)();
        action = new QAction(
            toQt(caption.value_or(std::string(command.caption)), mostCharacters).simplified(),
            &menu);
        action->setShortcuts(keysOf(command.shortcut));
        action->setEnabled(caption.has_value());
        connect(action, &QAction::triggered, this, [this, &command] { form_.run(command); });
    }
    menu.addAction(action);
    if (command.context.isDoubleClick) menu.setDefaultAction(action);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    // If a file were moved, it would be deleted from its folder.
    event->setDropAction(Qt::CopyAction);
    event->setAccepted(form_.isFree() && event->possibleActions().testFlag(Qt::CopyAction) &&
                       form_.acceptsFile(fromQt(fileIn(*event))));
}

/// Opens the file after the drag has ended, as a drag may hold the mouse, which questions need. If
/// a dialog has been opened in between, the file is ignored.
void MainWindow::dropEvent(QDropEvent* event) {
    event->setDropAction(Qt::CopyAction);
    event->accept();
    QTimer::singleShot(0, this, [this, path = fromQt(fileIn(*event))] {
        if (!form_.isFree()) return;
        activateWindow();
        form_.dropFile(path);
    });
}

void MainWindow::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (!laidOut_) layOut();
}

/// Places the parts for a window of the reference size, then resizes them if the desktop has given
/// the window another size.
void MainWindow::layOut() {
    layout()->activate();                            // so that the inner area has its size
    const int frame = height() - client_->height();  // the height of the menu bar
    innerReference_ = {form_.referenceSize.width, form_.referenceSize.height - frame};
    const EditingLayout parts = frmEditing::layoutFor(innerReference_);
    toolbar_->setGeometry(rectangleOf(parts.toolbar));
    tree_->setGeometry(rectangleOf(parts.tree));
    list_->setGeometry(rectangleOf(parts.list));
    panel_->centerIn({innerReference_.width, innerReference_.height});
    hint_->lower();
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

/// The parts follow the inner area, not the whole window, as the menu bar keeps its height.
void MainWindow::resizeParts() {
    layout()->activate();
    form_.Form_Resize(innerArea_, innerReference_);
    hint_->setGeometry(client_->rect());
}

/// Sets the size of the buttons and their pictures for a toolbar of that height in pixels. In a low
/// toolbar the buttons have no margin, so that they are not cut off.
void MainWindow::setToolbarPicture(int toolbarHeight) {
    const int picture = std::clamp(toolbarHeight * 2 / 3, std::min(16, toolbarHeight), 32);
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
    if (treeAppears) tree_->setFocus();  // so that the keyboard works at once
    list_->setVisible(form_.ListView1State.visible);
    list_->setEnabled(form_.ListView1State.enabled);
    panel_->follow();
    hint_->setVisible(!form_.TreeView1.visible && !form_.pnlImpStat.visible);
}

void MainWindow::focusTree() {
    tree_->setFocus();
    showActiveView();
}

bool MainWindow::isBehindDialog() const { return QApplication::activeModalWidget() != nullptr; }

void MainWindow::endApplication(int exitStatus) {
    ending_ = true;
    Q_EMIT applicationEnded(exitStatus);
}
