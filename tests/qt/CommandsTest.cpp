// Menus, toolbar, pictures, and what each command state enables.
#include <QFile>
#include <QHelpEvent>
#include <QMenu>
#include <QMenuBar>
#include <QRegularExpression>
#include <QToolBar>
#include <QToolTip>

#include "qt/Icons.h"
#include "qt/WindowWorld.h"

namespace {

/// The actions of the menu bar and of its menus, then the toolbar's buttons, as they stand.
QObjectList commandsOf(const WindowWorld& world) {
    QObjectList commands;
    for (QAction* top : world.window.menuBar()->actions()) {
        commands.append(top);
        if (top->menu() == nullptr) continue;
        for (QAction* entry : top->menu()->actions())
            commands.append(entry);
    }
    const auto* toolbar = world.window.findChild<QToolBar*>("Toolbar1");
    for (QAction* action : toolbar->actions())
        if (!action->isSeparator()) commands.append(toolbar->widgetForAction(action));
    return commands;
}

/// Their names and keys, as far as they are enabled.
QString enabledNow(const WindowWorld& world) {
    QStringList names;
    for (const QObject* command : commandsOf(world))
        if (command->property("enabled").toBool()) names.append(command->objectName());
    return names.filter(QRegularExpression("^(?!mnunull)")).join(' ');  // no separators
}

}  // namespace

class CommandsTest : public QObject {
    Q_OBJECT

 private Q_SLOTS:
    static void enabledByWhatIsClicked() {
        WindowWorld world;
        const std::string text =
            configuration(plc("Plant", tag("Light1") + branch("FLOOR1", tag("Text1"))));
        const auto expect = [&](const QString& state, const QString& menusAndButtons,
                                std::optional<QString> now = {}) {
            if (!now) now = enabledNow(world);
            QCOMPARE(state + *now, state + menusAndButtons);
        };
        const QString file =
            "mnuFile mnuNewCfg mnuOpenCfg mnuSaveCfg mnuSaveAs mnuImpCfg mnuCloseCfg mnuExit "
            "mnuObjects mnuSetts ";
        const QString view =
            " mnuView mnuIcon mnuSmallIcon mnuList mnuReport mnuTools mnuFind mnuAbout "
            "new open save close setts ";
        const QString viewButtons = " icon smallicon list report find ";
        const QString item = file +
                             "mnuEdit mnuCopy mnuCut mnuDelete mnuPasteName mnuPasteComment" +
                             view + "copy cut delete" + viewButtons + "pastitem pastcomment exit";

        expect("no configuration: ",
               "mnuFile mnuNewCfg mnuOpenCfg mnuImpCfg mnuExit mnuAbout new open exit");

        QString whileLoading;
        const auto* panel = world.window.findChild<QWidget*>("pnlImpStat");
        bool panelShown = false;
        world.desktop.onPendingEvents = [&] {
            whileLoading = enabledNow(world);
            panelShown = panel->isVisible();
        };
        world.openText(text);
        expect("loading: ", "mnuExit mnuAbout exit", whileLoading);
        QVERIFY(panelShown && !panel->isVisible());
        expect("configuration open: ", file +
                                           "mnuAddPlc mnuTools mnuFind mnuAbout "
                                           "new open save close setts plc find exit");
        world.clickNode("config");
        expect("root selected: ",
               file + "mnuAddPlc mnuEdit mnuPaste" + view + "plc paste" + viewButtons + "exit");
        world.clickRow(0);
        expect("device row selected: ", file + "mnuAddBranch mnuAddItem mnuEdit mnuPaste" + view +
                                            "branch item paste" + viewButtons + "exit");
        world.clickNode("Plant");  // in it an item, but a branch before it
        const QString container = file + "mnuAddBranch mnuAddItem mnuEdit mnuPaste mnuDelete" +
                                  view + "branch item paste delete" + viewButtons + "exit";
        expect("container selected: ", container);
        world.clickRow(0);
        expect("item row selected: ", item);
        world.clickNode("Plant.FLOOR1");
        expect(
            "container selected, items listed: ",
            file +
                "mnuAddBranch mnuAddItem mnuEdit mnuPaste mnuDelete mnuPasteName mnuPasteComment" +
                view + "branch item paste delete" + viewButtons + "pastitem pastcomment exit");
        world.clickNode("Plant.FLOOR1.Text1");
        expect("item selected: ", item);
        // No listing shows branches; the state is there for one that will.
        world.form.ListView1.addRow(
            {.key = "Plant.FLOOR1", .text = "FLOOR1", .subItems = {}, .icon = {}, .smallIcon = {}});
        world.clickRow(1);
        expect("branch row selected: ", container);
    }

    static void menusAndToolbarAsTheUserReadsThem() {
        const WindowWorld world;
        const auto tooltipOf = [](QToolButton& button) {
            QHelpEvent hover(QEvent::ToolTip, {1, 1}, button.mapToGlobal(QPoint(1, 1)));
            QCoreApplication::sendEvent(&button, &hover);
            return QToolTip::text();
        };
        QCOMPARE(tooltipOf(world.button("find")), QString());  // before any other is shown
        QStringList menus;
        QStringList buttons;
        for (QObject* command : commandsOf(world)) {
            if (const auto* action = qobject_cast<QAction*>(command)) {
                const QString text =
                    action->isSeparator() ? "-" + action->objectName() : action->text();
                menus.append((text + " " + action->shortcut().toString()).trimmed());
                continue;
            }
            auto& button = *qobject_cast<QToolButton*>(command);
            QVERIFY2(!button.icon().isNull(), qPrintable(button.objectName()));
            const bool silent = button.objectName() == "find";
            buttons.append(button.objectName() + ":" + (silent ? QString() : tooltipOf(button)));
        }
        QCOMPARE(menus, QString("&File,&New Configuration,&Open Configuration,-mnunull1,"
                                "&Save Configuration,Save Configuration &As,-mnunull6,"
                                "Import from ETS,-mnunull2,&Close Configuration,E&xit,"
                                "&Objects,&Global Settings Ctrl+G,-mnunull5,Add &Object Ctrl+P,"
                                "Add &Branch Ctrl+B,Add &Item Ctrl+I,"
                                "&Edit,&Copy Ctrl+C,Cu&t Ctrl+X,&Paste Ctrl+V,&Delete Object Del,"
                                "-mnunull4,Paste Item names from Clipboard,"
                                "Paste Item comments from Clipboard,"
                                "&View,&Icon,&SmallIcon,&List,&Report,&Tools,&Find,&About")
                            .split(','));
        QCOMPARE(buttons, QString("new:new config,open:open config,save:save config,"
                                  "close:close config,setts:global settings,plc:add Object,"
                                  "branch:add Branch,item:add Item,copy:copy,cut:cut,paste:paste,"
                                  "delete:delete,icon:view icon,smallicon:view smallicon,"
                                  "list:view list,report:view report,find:,"
                                  "pastitem:Replace Item Name,pastcomment:Replace Item Comment,"
                                  "exit:exit")
                              .split(','));
    }

    static void everyPictureIsDrawnAtEverySize() {
        const auto check = [&](const QString& folder, const auto& pictureOf, const QString& keys) {
            for (const QString& key : keys.split(' ')) {
                const QString file = ":/icons/" + folder + "/" + key + ".svg";
                QVERIFY2(QFile::exists(file), qPrintable(file));
                for (const int side : {16, 24, 32})
                    for (const double ratio : {1.0, 1.5, 2.0}) {
                        const QPixmap drawn =
                            pictureOf(fromQt(key)).pixmap(QSize(side, side), ratio);
                        // For the screen's own pixels, not stretched to them.
                        QCOMPARE(drawn.width(), qRound(side * ratio));
                        QImage shape = drawn.toImage().convertToFormat(QImage::Format_Alpha8);
                        const QImage picture = shape;
                        shape.fill(0);
                        QVERIFY2(picture != shape, qPrintable(file));
                    }
            }
        };
        check("tree", icons::tree, "plc serial branch config item main");
        check("list", icons::list,
              "plc item NOEIS EIS1 EIS2_C EIS2_P EIS2_V_D EIS2_V_P EIS3 EIS4_C EIS4_F EIS5 EIS6_D "
              "EIS6_P EIS7_M EIS7_S EIS8_C EIS8_P EIS9 EIS10_S EIS10_U EIS11_S EIS11_U EIS12 EIS13 "
              "EIS14_S EIS14_U EIS15");
        check("toolbar", icons::toolbar,
              "new open save close setts plc branch item copy cut paste delete icon smallicon list "
              "report find pastename pastecomment exit group");
    }
};

std::unique_ptr<QObject> commandsTest() { return std::make_unique<CommandsTest>(); }

#include "CommandsTest.moc"
