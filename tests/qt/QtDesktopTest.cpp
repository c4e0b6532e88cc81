// Message boxes, as the user answers them.
#include "qt/QtDesktop.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace {

/// Does something to the box that is about to open.
void inTheBox(const std::function<void(QMessageBox&)>& act) {
    QTimer::singleShot(0, qApp, [act] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        QVERIFY(box);
        QVERIFY(QTest::qWaitForWindowExposed(box));
        act(*box);
    });
}

void press(const QMessageBox& box, QMessageBox::StandardButton button) {
    QTest::mouseClick(box.button(button), Qt::LeftButton);
}

}  // namespace

class QtDesktopTest : public QObject {
    Q_OBJECT

 private Q_SLOTS:
    static void betweenYesAndNoNothingElseAnswers() {
        for (const auto proposed : {Answer::yes, Answer::no}) {
            bool stayed = false;
            inTheBox([&](QMessageBox& box) {
                QTest::keyClick(&box, Qt::Key_Escape);
                box.close();
                stayed = box.isVisible();
                QTest::keyClick(&box, Qt::Key_Return);
            });
            QCOMPARE(QtDesktop().askYesNo("Save?", proposed), proposed == Answer::yes);
            QVERIFY(stayed);
        }
    }

    static void escapeIsCancelWhereThereIsOne() {
        const auto answered = [](const std::function<void(QMessageBox&)>& act) {
            inTheBox(act);
            return QtDesktop().askYesNoCancel("Overwrite?");
        };
        const auto escape = [](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); };
        QVERIFY(answered(escape) == Answer::cancel);
        QVERIFY(answered([](QMessageBox& box) { box.close(); }) == Answer::cancel);
        QVERIFY(answered([](QMessageBox& box) { press(box, QMessageBox::Yes); }) == Answer::yes);
        QVERIFY(answered([](QMessageBox& box) { press(box, QMessageBox::No); }) == Answer::no);
    }
};

std::unique_ptr<QObject> qtDesktopTest() { return std::make_unique<QtDesktopTest>(); }

#include "QtDesktopTest.moc"
