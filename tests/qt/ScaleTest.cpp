// The window with as much as a bus can hold, and with more depth than one ever has.
#include <ctime>

#include "qt/WindowWorld.h"

namespace {

/// Seconds of processor time from the start of `act` until its outcome has been painted: other
/// work on the machine does not count.
double painted(WindowWorld& world, const std::function<void()>& act) {
    const std::clock_t start = std::clock();
    act();
    QCoreApplication::processEvents();
    world.window.grab();
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

}  // namespace

class ScaleTest : public QObject {
    Q_OBJECT

 private Q_SLOTS:
    static void allGroupAddressesInOneBranchAndBranchesNestedVeryDeep() {
        constexpr int count = 65'536;
        std::string items;
        for (int i = 0; i < count; ++i)
            items += tag("Item" + std::to_string(i * 7919 % count));  // in no order
        std::string deep = tag("End");
        for (int level = 0; level < 1'000; ++level)  // reading refuses more
            deep = branch("B", deep);
        WindowWorld world;
        const std::string text = configuration(plc("Bus", branch("ALL", items) + deep));
        world.desktop.onPendingEvents = [] { QCoreApplication::processEvents(); };

        const double opening = painted(world, [&] { world.openText(text); });
        const double click = painted(world, [&] { world.clickNode("Bus.ALL"); });
        qInfo("opening: %.3f s, node click: %.3f s", opening, click);
        QCOMPARE(world.rows().model()->rowCount(), count);
#ifdef NDEBUG  // times are promised for the program as it is delivered
        QVERIFY(opening < 3.0 && click < 0.6);
#endif
        QTest::keyClick(&world.tree, Qt::Key_End);
        QCOMPARE(world.names(), QString("End"));
        world.window.grab();
        world.entry("mnuCloseCfg").trigger();
        QVERIFY(!world.tree.isVisible() && world.window.close());
    }
};

std::unique_ptr<QObject> scaleTest() { return std::make_unique<ScaleTest>(); }

#include "ScaleTest.moc"
