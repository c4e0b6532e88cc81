// Menus, toolbar and icons of the main window.
#include "model/DataTypes.h"
#include "qt/Icons.h"
#include "qt/WindowWorld.h"

class CommandsTest : public QObject {
    Q_OBJECT

    /// Menus and toolbar must follow the table and its order, and be enabled as the editor says.
    static void expectCommandsAsInTheTable(const WindowWorld& world) {
        QList<QAction*> menus = world.window.menuBar()->actions(), entries;
        QList<QAction*> buttons = world.window.findChild<QToolBar*>("Toolbar1")->actions();
        for (const Command& command : commandTable()) {
            if (command.kind == Command::Kind::inContextMenus) continue;
            const bool isMenu = command.kind == Command::Kind::menu;
            const QAction* action = (isMenu ? menus : entries).takeFirst();
            if (isMenu && action->menu() != nullptr) entries = action->menu()->actions();
            QCOMPARE(action->isSeparator(), command.kind == Command::Kind::separator);
            if (action->isSeparator()) continue;
            QCOMPARE(action->text(), toQt(command.caption));
            QCOMPARE(action->shortcut().toString(), toQt(command.shortcut));
            QVERIFY2(action->isEnabled() == world.form.isEnabled(command), command.name.data());
            QCOMPARE(action->isChecked(),
                     command.view && *command.view == world.form.ListView1.view());
        }
        auto group = toolbarCommands().front()->button.group;
        int right = -1;  // of the button before
        for (const Command* command : toolbarCommands()) {
            const bool isNext = command->button.group == group;
            group = command->button.group;
            QVERIFY(isNext || buttons.takeFirst()->isSeparator());
            const QAction* action = buttons.takeFirst();
            auto& button = world.button(command->button.key.data());
            QVERIFY(isNext ? button.x() == right + 1 : button.x() > right + 1);
            right = button.geometry().right();
            QVERIFY(button.parentWidget()->rect().contains(button.geometry()) &&
                    button.iconSize().height() <= button.height());
            QCOMPARE(tooltipAt(button, {1, 1}), toQt(command->button.tooltip));
            QCOMPARE(accessible(button, QAccessible::Name), toQt(command->caption).remove('&'));
            QVERIFY2(action->isEnabled() == world.form.isEnabled(*command), command->name.data());
            QCOMPARE(button.isChecked(),
                     command->view && *command->view == world.form.ListView1.view());
        }
        QVERIFY(menus.isEmpty() && entries.isEmpty() && buttons.isEmpty());
    }

 private Q_SLOTS:
    static void commandsFollowTheTableInEveryState() {
        WindowWorld world;
        QVERIFY(QTest::qWaitForWindowActive(&world.window));
        QCOMPARE(world.window.windowTitle(), "QUONAutomation - OPCOlvan");
        const QLabel& hint = *world.window.findChild<QLabel*>("hint");
        QVERIFY(hint.text().startsWith("Begin with <b>New Configuration</b>, <b>Open Config"));
        QVERIFY(hint.isVisible() && hint.rect() == world.window.centralWidget()->rect());
        expectCommandsAsInTheTable(world);
        world.window.resize(1, 1);
        bool loading = false;
        world.desktop.onPendingEvents = [&] {
            if (std::exchange(loading, true)) return;
            expectCommandsAsInTheTable(world);
            QCOMPARE(world.window.findChild<QLabel*>("lblLabel")->text(), "Loading File ....");
            const auto& panel = *world.window.findChild<QLabel*>("lblLabel")->parentWidget();
            const QPoint middle = world.window.centralWidget()->rect().center();
            QVERIFY((panel.geometry().center() - middle).manhattanLength() < 3);
            QVERIFY(!panel.visibleRegion().isEmpty());
        };
        world.openText(configuration(
            plc("Plant", branch("FLOOR1", tag("Text1") + tag("Text2")) + tag("Light1"))));
        QVERIFY(loading && !world.window.findChild<QLabel*>("lblLabel")->isVisible());
        QVERIFY(!hint.isVisible());
        world.clicks("Plant.FLOOR1");
        expectCommandsAsInTheTable(world);
        world.clicks(0);
        world.button("list").click();
        expectCommandsAsInTheTable(world);
        QCOMPARE(reading(world.window), "QUONAutomation - OPCOlvan: Contents, Configuration tree");
        // At the opening size the parts have fixed fractions of the inner area.
        world.window.resize(world.form.referenceSize.width, world.form.referenceSize.height);
        const QSize inner = world.window.centralWidget()->size();
        const auto layout = frmEditing::layoutFor({inner.width(), inner.height()});
        for (const auto& [part, place] :
             {std::pair<QWidget&, Rectangle>(world.tree, layout.tree), {world.list, layout.list}})
            QCOMPARE(part.geometry(), QRect(place.left, place.top, place.width, place.height));
    }

    /// No icon is missing, and each is drawn for the pixels of the screen, not scaled.
    static void everyIconIsDrawnAtEverySize() {
        for (const QString& folder : QDir(":/icons").entryList({"tree", "list", "toolbar"})) {
            const QDir files(":/icons/" + folder);
            for (const QString& file : files.entryList()) {
                const std::string key = fromQt(file.chopped(4));
                const QIcon picture = folder == "tree"   ? icons::tree(key)
                                      : folder == "list" ? icons::list(key)
                                                         : icons::toolbar(key);
                const auto drawn = picture.pixmap(QSize(24, 24), 1.5).toImage();
                const QIcon own(files.filePath(file));
                QVERIFY(drawn == own.pixmap(QSize(24, 24), 1.5).toImage() && drawn.width() == 36);
            }
        }
        QCOMPARE(icons::besideText(QFontMetrics(QFont("", 1))), QSize(16, 16));
        for (const int side : {16, 24, 32, 48, 64, 96})
            for (const auto mode : {QIcon::Normal, QIcon::Selected}) {
                const auto drawn = [&](const QIcon& icon) {
                    return icon.pixmap(QSize(side, side), 1, mode).toImage();
                };
                const QImage plain = drawn(icons::tree("plc"));
                const QImage marked = drawn(icons::marked(icons::tree("plc")));
                const QRect upper(0, 0, side, side - side * 11 / 16);
                QVERIFY(marked != plain && marked.copy(upper) == plain.copy(upper));
                QCOMPARE(marked.pixel(side / 8, side / 2), plain.pixel(side / 8, side / 2));
            }
        QStringList needed{"tree/config", "list/plc", "toolbar/group", "list/EIS4_F"};
        for (const DataType& type : dataTypes())
            needed.append("list/" + toQt(type.name));
        for (const Command* command : toolbarCommands())
            needed.append("toolbar/" + toQt(command->button.picture));
        for (const QString& each : needed)
            QVERIFY2(QFile::exists(":/icons/" + each + ".svg"), qPrintable(each));
    }
};

std::unique_ptr<QObject> commandsTest() { return std::make_unique<CommandsTest>(); }

#include "CommandsTest.moc"
