// The window with as much as a bus can hold, and with more depth than one ever has.
#include <ctime>

#include "qt/WindowWorld.h"

namespace {

/// Seconds of processor time from the start of `act` until its outcome has been painted: other
/// work on the machine does not count.
template <typename Act>
double painted(WindowWorld& world, const char* what, const Act& act) {
    const std::clock_t start = std::clock();
    act();
    QCoreApplication::processEvents();
    world.window.grab();
    const double taken = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    qInfo("%s: %.3f s", what, taken);
    return taken;
}

}  // namespace

class ScaleTest : public QObject {
    Q_OBJECT

 private Q_SLOTS:
    static void allGroupAddressesInOneBranch() {
        constexpr int count = 65'536;
        std::string items;
        for (int i = 0; i < count; ++i)
            items += tag("Item" + std::to_string(i * 7919 % count));  // in no order
        WindowWorld world;
        const std::string text = configuration(plc("Bus", branch("ALL", items)));
        world.desktop.onPendingEvents = [] { QCoreApplication::processEvents(); };

        [[maybe_unused]] const double opening =
            painted(world, "opening", [&] { world.openText(text); });
        [[maybe_unused]] const double click =
            painted(world, "node click", [&] { world.clickNode("Bus.ALL"); });
        QCOMPARE(world.rows().model()->rowCount(), count);
#ifdef NDEBUG  // times are promised for the program as it is delivered
        QVERIFY(opening < 3.0 && click < 0.6);
#endif
    }

    static void branchesNestedVeryDeep() {
        constexpr int depth = 1'000;  // reading refuses more
        WindowWorld world;
        std::string text = tag("End");
        for (int level = 0; level < depth; ++level)
            text = branch("B", text);

        painted(world, "opening", [&] { world.openText(configuration(plc("Bus", text))); });
        QCOMPARE(world.document.items().count(), std::size_t{1});
        painted(world, "deepest item", [&] { QTest::keyClick(&world.tree, Qt::Key_End); });
        QCOMPARE(world.names(), QString("End"));
        painted(world, "closing", [&] { world.entry("mnuCloseCfg").trigger(); });
        QVERIFY(!world.tree.isVisible() && world.window.close());
    }
};

std::unique_ptr<QObject> scaleTest() { return std::make_unique<ScaleTest>(); }

#include "ScaleTest.moc"
