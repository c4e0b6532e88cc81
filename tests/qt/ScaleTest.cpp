// The window with all group addresses of a bus, and with the deepest nesting.
#include <ctime>

#include "qt/WindowWorld.h"

class ScaleTest : public QObject {
    Q_OBJECT

 private Q_SLOTS:
    static void fullBusAndDeepNestingAreShownQuickly() {
        constexpr int count = 65'536;
        std::string items;
        for (int i = 0; i < count; ++i)
            items += tag("Item" + std::to_string(i * 7919 % count));  // unsorted
        std::string deep = tag("End");
        for (int level = 0; level < 1'000; ++level)  // the limit
            deep = branch("B", deep);
        WindowWorld world;
        const std::string text = configuration(plc("Bus", branch("ALL", items) + deep));
        world.desktop.onPendingEvents = [] { QCoreApplication::processEvents(); };

        // Processor time in seconds, independent of other programs.
        const auto painted = [&](const std::function<void()>& act) {
            const std::clock_t start = std::clock();
            act();
            QCoreApplication::processEvents();
            world.window.grab();
            return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
        };
        const double opening = painted([&] { world.openText(text); });
        const double click = painted([&] { world.clickNode("Bus.ALL"); });
        qInfo("opening: %.3f s, node click: %.3f s", opening, click);
        QCOMPARE(world.rows().model()->rowCount(), count);
#ifdef NDEBUG  // promised for release builds
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
