// A monkey test of the editor's real windows.
#include <qpa/qplatformdrag.h>
#include <qpa/qwindowsysteminterface.h>
#include <QAbstractItemModelTester>

#include <fstream>
#include <random>
#include <regex>

#include "qt/QtDesktop.h"
#include "qt/QtForms.h"
#include "qt/WindowWorld.h"

namespace {

/// A file with extreme names, comments and types.
std::string extremeFile() {
    const std::string wide = "Ein_sehr_langer_Name_" + std::string(300, 'w');
    std::string deep = "<tag><name>" + wide + "</name><comment>" + std::string(1000000, 'c') +
                       "</comment><address>99/9/x</address><eistype>EIS99</eistype><flag>?</flag>"
                       "<accessrights>NONE</accessrights><elements>-1</elements></tag>";
    for (int level = 0; level < 60; ++level)
        deep = branch("B" + std::to_string(level), deep + tag("&#228; &lt;"));
    return configuration(plc(wide, deep) + plc("&#9;", tag("x") + tag("X") + tag("a.b") + tag("")));
}

// All errors but these are faults of the editor.
const std::regex unexpected("Error n\\. (?!(5|6|9|13|53|70|75|76|91|94|321|457|35601|35602) )");
const QString files =
    "house.xml|house.xml|odd.xml|house.esf|house-dimmer.esf|other.xml|none/x.xml|";
const QString texts =
    "|x|A|Lamp|a.b c!|1|15|255|65536|-1|1e99|USB|com3|LIGHT|x\ny|<&\"'|\t|07|EIS1|\u00e4\u20ac|"
    "\u00ad|\U0001F600|wwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwwww";
const QString keys =
    "Up|Down|Left|Right|Home|End|PgUp|Return|Return|Return|Esc|Tab|Tab|Backtab|Enter|Space|Del|"
    "Backspace|F2|F3|F10|*|Shift+Down|Shift+End|Shift+Return|Ctrl+A|Ctrl+B|Ctrl+C|Ctrl+End|Ctrl+F|"
    "Ctrl+G|Ctrl+I|Ctrl+N|Ctrl+O|Ctrl+P|Ctrl+S|Ctrl+V|Ctrl+X|Ctrl+Y|Ctrl+Z|Ctrl+Shift+Z|Ctrl+Z";

class Monkey : public QObject {
 public:
    /// Each iteration runs one program, from its start to its end, as main() builds it, except for
    /// a fake registry.
    void run() {
        // A fixed folder, as the width of message boxes depends on the paths in them.
        QDir(folder_).removeRecursively();
        QDir().mkpath(folder_.path());
        qputenv("HOME", folder_.absolutePath().toUtf8());  // the proposed folder of new files
        for (const QString& file : QDir(SAMPLES_DIR).entryList(QDir::Files))
            QFile::copy(SAMPLES_DIR "/" + file, folder_.filePath(file));
        std::ofstream(fromQt(folder_.filePath("odd.xml"))) << extremeFile();
        QGuiApplication::styleHints()->setKeyboardInputInterval(-1);  // independent of the clock
        qInfo("Seed %d, %d events", seed_, events_);
        qApp->installEventFilter(this);
        QTimer::singleShot(0, this, &Monkey::next);
        while (goesOn()) {
            const auto disk = systemDisk();
            QtDesktop desktop;
            QtForms forms;
            WindowWorld program(&forms, disk.get(), &desktop);
            const QAbstractItemModelTester ofTree(program.tree.model());
            const QAbstractItemModelTester ofRows(program.rows().model());
            program_ = &program;
            connect(&program.window, &MainWindow::applicationEnded, qApp, &QCoreApplication::exit,
                    Qt::QueuedConnection);
            QApplication::exec();
            // After Escape in a drag, Qt keeps a pointer to the widget below the mouse, which must
            // not reach the next program.
            QDragLeaveEvent leave;
            QCoreApplication::sendEvent(program.tree.viewport(), &leave);
            program_ = nullptr;
        }
    }

 private:
    bool goesOn() const { return step_ < events_ && !QTest::currentTestFailed(); }
    void expect(bool holds, const QString& fault) {
        if (!holds)
            QTest::qFail(qPrintable(fault + ": see the end of monkey.log"), __FILE__, __LINE__);
    }

    /// Dialogs, menus and drags run nested event loops. Sends the next event in each of them, but
    /// none while the last one is still being processed in the same loop.
    void next() {
        QTimer::singleShot(0, this, &Monkey::next);
        const int level = QThread::currentThread()->loopLevel();
        if (program_ == nullptr || level == actingAt_) return;
        const QScopedValueRollback guard(actingAt_, level);
        if (!goesOn()) return QCoreApplication::exit();
        ++step_;
        target_ = QApplication::activePopupWidget();
        if (target_ == nullptr) target_ = QApplication::activeModalWidget();
        if (target_ == nullptr || !closesDialog()) act();
        if (!oneIn(4)) QCoreApplication::processEvents();
        // While a dialog is open, its command is unfinished.
        if (level != 1 || QApplication::activeModalWidget() != nullptr) return;
        expectTreeAndRegistriesAgree(program_->document);
        const QString wrong = program_->disagreement(oneIn(4));
        expect(wrong.isEmpty(), wrong);
    }

    /// Closes a dialog after many events, with Escape or a button.
    bool closesDialog() {
        const int turns = target_->property("turns").toInt() + 1;
        target_->setProperty("turns", turns);
        const auto* box = qobject_cast<QMessageBox*>(target_);
        if (turns == 1 && box != nullptr) {
            log("message: " + box->text().left(200));
            expect(!std::regex_search(fromQt(box->text()), unexpected), "unexpected error");
        }
        expect(turns <= 200, "cannot be closed");
        if (turns < 60) return false;
        const auto buttons = target_->findChildren<QPushButton*>();
        oneIn(2) || buttons.isEmpty() ? press("Esc") : oneOf(buttons)->click();
        return true;
    }

    void act() {
        if (target_ == nullptr) {
            target_ = &program_->window;
            for (QWidget* other : QApplication::topLevelWidgets())
                if (other->objectName() == "frmFind" && other->isVisible() && oneIn(4))
                    target_ = other;
        }
        if (held_ != Qt::NoButton) return drag();
        if (auto* chooser = qobject_cast<QFileDialog*>(target_)) return choose(*chooser);
        if (auto* menu = qobject_cast<QMenu*>(target_);
            menu != nullptr && !menu->isEmpty() && !oneIn(4))
            return mouse(QTest::MouseClick, Qt::LeftButton,
                         within(menu->actionGeometry(oneOf(menu->actions())).center()));
        if (target_ == &program_->window && !program_->document.open && oneIn(4))
            return press(oneIn(3) ? "Ctrl+N" : "Ctrl+O");
        const int chance = below(1000);
        if (chance < 350)
            return mouse(QTest::MouseClick, oneIn(8) ? Qt::RightButton : Qt::LeftButton,
                         position());
        if (chance < 430) return mouse(QTest::MouseDClick, Qt::LeftButton, position());
        if (chance < 470)
            return mouse(QTest::MousePress, oneIn(3) ? Qt::LeftButton : Qt::RightButton,
                         position());
        if (chance < 650)
            return press(oneIn(8) ? QString("Alt+%1").arg(QChar('A' + below(26))) : wordOf(keys));
        if (chance < 830) return type();
        if (chance < 920) return scroll();
        if (chance < 970) return resize();
        if (chance < 976) return dropFile();
        if (chance < 984) return trigger();
        if (chance < 988) {
            log("closes " + target_->objectName());
            QWindowSystemInterface::handleCloseEvent(target_->windowHandle());
        }
        if (chance < 995) return;
        // The end of the session or a signal, which can come at any time.
        log("end of the session");
        if (oneIn(2)) return QCoreApplication::postEvent(qApp, new QEvent(QEvent::Quit));
        if (program_->form.mayEnd([this] { return !oneIn(4); })) QCoreApplication::exit();
    }

    /// As main() does.
    bool eventFilter(QObject* object, QEvent* event) override {
        if (object != qApp || event->type() != QEvent::Quit) return false;
        if (program_ != nullptr && program_->form.mayEnd([] { return true; }))
            QCoreApplication::exit();
        return true;
    }

    /// A random position, often on a row of a view.
    QPoint position() {
        QList<QWidget*> parts{target_};
        QList<QWidget*> views;
        for (auto* part : target_->findChildren<QWidget*>())
            if (part->isVisible() && part->window() == target_)
                (qobject_cast<QAbstractItemView*>(part) != nullptr ? views : parts).append(part);
        QWidget* part = oneOf(views.isEmpty() || oneIn(2) ? parts : views);
        QPoint place(below(part->width()), below(part->height()));
        if (auto* view = qobject_cast<QAbstractItemView*>(part)) {
            part = view->viewport();
            if (const auto row = view->indexAt(place); row.isValid() && !oneIn(4))
                place = view->visualRect(row).center();
        }
        return within(part->mapTo(target_, place));
    }
    QPoint within(QPoint place) const {
        return {qBound(1, place.x(), target_->width() - 1),
                qBound(1, place.y(), target_->height() - 1)};
    }

    /// Sends mouse events through Qt's event queue, as a desktop does. A later one waits there
    /// while an earlier one opens a message box.
    void mouse(QTest::MouseAction action, Qt::MouseButton button, QPoint place) {
        QString what;
        QDebug(&what) << "mouse" << action << button << place << target_->objectName();
        log(what);
        static const QList<Qt::KeyboardModifiers> modifiers{
            {}, {}, {}, Qt::ControlModifier, Qt::ShiftModifier};
        const auto held = oneOf(modifiers);
        time_ += 1000;  // prevents accidental double clicks
        const int clicks = action == QTest::MouseDClick ? 2 : 1;
        for (int click = 0; click < clicks; ++click) {
            if (action != QTest::MouseRelease) queue(QEvent::MouseButtonPress, button, held, place);
            if (action != QTest::MousePress) queue(QEvent::MouseButtonRelease, button, held, place);
        }
    }
    void queue(QEvent::Type type, Qt::MouseButton button, Qt::KeyboardModifiers modifiers,
               QPoint place) {
        if (type == QEvent::MouseButtonPress) held_ = button;
        if (type == QEvent::MouseButtonRelease) held_ = Qt::NoButton;
        QWindow* const window = target_->windowHandle();
        QWindowSystemInterface::handleMouseEvent(window, ++time_, place, window->mapToGlobal(place),
                                                 held_, button, type, modifiers);
    }

    /// Drops a file from another program on the window.
    void dropFile() {
        const QString file = wordOf(files);
        log("drops the file " + file);
        QMimeData content;
        content.setUrls({QUrl::fromLocalFile(folder_.absoluteFilePath(file))});
        QWindow* const window = program_->window.windowHandle();
        const QPoint place(below(window->width()), below(window->height()));
        const auto copying = Qt::CopyAction | Qt::MoveAction;
        const bool isTaken =
            QWindowSystemInterface::handleDrag(window, &content, place, copying, Qt::LeftButton, {})
                .isAccepted();
        if (!isTaken) {  // the drag leaves the window
            QWindowSystemInterface::handleDrag(window, nullptr, {}, Qt::IgnoreAction, {}, {});
            return;
        }
        QWindowSystemInterface::handleDrop(window, &content, place, copying, {}, {});
        if (oneIn(2)) press(wordOf(keys));  // immediately
    }

    /// Triggers an action as an assistive tool does, whatever dialog is open.
    void trigger() {
        QAction* const action = oneOf(program_->window.findChildren<QAction*>());
        log("triggers " + action->objectName() + " " + action->text());
        action->trigger();
    }

    void drag() {
        if (oneIn(8)) return press("Esc");
        const QPoint place = position();
        queue(QEvent::MouseMove, Qt::NoButton, {}, place);
        if (target_ != nullptr && oneIn(3)) mouse(QTest::MouseRelease, held_, within(place));
    }

    void press(const QString& key) {
        log("presses " + key);
        const QKeyCombination code = QKeySequence(key)[0];
        // A modifier alone can close a menu, whose window Qt Test would still use.
        if (qobject_cast<QMenu*>(target_) != nullptr && code.keyboardModifiers() != 0) return;
        if (target_ == nullptr) return;
        const QPointer<QWindow> window(target_->windowHandle());
        QTest::keyPress(window, code.key(), code.keyboardModifiers());
        if (window) QTest::keyRelease(window, code.key(), code.keyboardModifiers());
    }

    /// Types at the focus, or over the text of a random field.
    void type() {
        const auto fields = target_->findChildren<QLineEdit*>();
        if (!fields.isEmpty() && oneIn(2)) {
            oneOf(fields)->setFocus();
            press("Ctrl+A");
        }
        const QString text = wordOf(texts);
        log("types " + text.left(20));
        for (const char32_t c : text.left(30).toUcs4())
            if (QWindow* window = QGuiApplication::focusWindow())
                QTest::sendKeyEvent(QTest::Click, window, Qt::Key_unknown, QString::fromUcs4(&c, 1),
                                    {});
    }

    void choose(QFileDialog& chooser) {
        const QString file = wordOf(files);
        log("chooses the file " + file);
        if (file.isEmpty()) return chooser.reject();
        chooser.findChild<QLineEdit*>("fileNameEdit")->setText(folder_.absoluteFilePath(file));
        QTest::keyClick(chooser.windowHandle(), Qt::Key_Return);
    }

    void scroll() {
        const QPoint place = position();
        const QPoint by = oneIn(3) ? QPoint(240, 0) : QPoint(0, 240);
        log("scrolls");
        QWheelEvent wheel(place, target_->mapToGlobal(place), {}, oneIn(2) ? by : -by, {}, {},
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(target_->windowHandle(), &wheel);
    }

    /// Resizes to a random size, or by single pixels.
    void resize() {
        if (qobject_cast<QMenu*>(target_) != nullptr) return;
        const QSize to = oneIn(3) ? QSize(below(1500), below(1000))
                                  : target_->size() + QSize(below(5) - 2, below(9) - 4);
        log("resizes");
        target_->resize(to.expandedTo({20, 20}));
    }

    void log(const QString& what) { log_ << step_ << ' ' << fromQt(what) << std::endl; }

    int below(int n) { return n < 1 ? 0 : static_cast<int>(random_() % static_cast<unsigned>(n)); }
    bool oneIn(int n) { return below(n) == 0; }
    template <typename Each>
    Each oneOf(const QList<Each>& all) {
        return all[below(static_cast<int>(all.size()))];
    }
    QString wordOf(const QString& all) { return oneOf(all.split('|')); }

    const int seed_ = qEnvironmentVariable("MONKEY_SEED", "3").toInt();
    const int events_ = qEnvironmentVariable("MONKEY_EVENTS", "20000").toInt();
    std::mt19937 random_{static_cast<unsigned>(seed_)};
    const QDir folder_{QDir::temp().filePath(QString("monkey-%1").arg(seed_))};
    std::ofstream log_{"monkey.log"};
    int step_ = 0;
    int actingAt_ = 0;
    WindowWorld* program_ = nullptr;
    QPointer<QWidget> target_;  // a dialog; an event may delete it
    Qt::MouseButton held_ = Qt::NoButton;
    unsigned long time_ = 0;  // of the last mouse event, in milliseconds
};

}  // namespace

/// Sends MONKEY_EVENTS random events (20,000 if not set), always the same for one MONKEY_SEED (3 if
/// not set), and works on copies of the samples. Fails the running test at the first warning of Qt,
/// unexpected error, dialog that cannot be closed, or difference between tree, records and windows.
/// Qt Test ends a test that hangs after QTEST_FUNCTION_TIMEOUT milliseconds. The interaction log is
/// monkey.log in the working directory, also after a crash.
void runMonkeyTest() { Monkey().run(); }
