// Runs the tests of the windows: all of them, or the class that the first argument names.
#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>
#include <memory>

std::unique_ptr<QObject> commandsTest();
std::unique_ptr<QObject> dialogsTest();
std::unique_ptr<QObject> editingTest();
std::unique_ptr<QObject> mainWindowTest();
std::unique_ptr<QObject> scaleTest();

/// What the faked desktop complains of fails the running test.
class FailsRunningTest : public testing::EmptyTestEventListener {
    void OnTestPartResult(const testing::TestPartResult& result) override {
        if (result.passed()) return;
        QTest::qFail(result.message(), result.file_name(), result.line_number());
    }
};

int main(int argc, char* argv[]) {
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new FailsRunningTest);
    const QApplication application(argc, argv);
    // A test's window that is closed must not end the event loops of the tests after it.
    QApplication::setQuitOnLastWindowClosed(false);
    QStringList arguments = QApplication::arguments();
    const bool one = argc > 1 && !arguments[1].startsWith('-');
    const QString wanted = one ? arguments.takeAt(1) : QString();

    int failures = 0;
    for (const auto& make : {commandsTest, dialogsTest, editingTest, mainWindowTest, scaleTest}) {
        const auto suite = make();
        if (one && wanted != suite->metaObject()->className()) continue;
        failures += QTest::qExec(suite.get(), arguments);
    }
    return failures;
}
