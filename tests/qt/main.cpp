// Runs all tests of the windows, or the class that the first argument names.
#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>

std::unique_ptr<QObject> commandsTest();
std::unique_ptr<QObject> dialogsTest();
std::unique_ptr<QObject> editingTest();
std::unique_ptr<QObject> mainWindowTest();

/// Lets failures of GoogleTest, as in FakeDesktop, fail the running test of Qt Test.
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
    // A closed window must not end the event loops of later tests.
    QApplication::setQuitOnLastWindowClosed(false);
    QStringList arguments = QApplication::arguments();
    const bool hasName = argc > 1 && !arguments[1].startsWith('-');
    const QString wanted = hasName ? arguments.takeAt(1) : QString();

    int failures = 0;
    for (const auto& make : {commandsTest, dialogsTest, editingTest, mainWindowTest}) {
        const auto suite = make();
        if (hasName && wanted != suite->metaObject()->className()) continue;
        failures += QTest::qExec(suite.get(), arguments);
    }
    return failures;
}
