#include <tests/support/Sandbox.h>
#include <tests/support/TestMain.h>
#include <tests/support/UnpaintedProgram.h>
#include <ui/window/Window.h>

#include <QTest>

#include <optional>
#include <vector>

class FirstPaintTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_program.emplace(); }
    void cleanup() { m_program.reset(); }

    void blocksWaitForAWindowToBePainted()
    {
        int done = 0;
        FirstPaint::afterwards([&done] { ++done; });
        MainQueue::shared().runUntilIdle();
        QCOMPARE(done, 0);
        ui::Window window;
        window.show();
        QTRY_COMPARE(done, 1);
    }

    void blocksRunInTheirOrderAndNotDuringThePaint()
    {
        std::vector<int> done;
        FirstPaint::afterwards([&done] { done.push_back(1); });
        FirstPaint::afterwards([&done] { done.push_back(2); });
        FirstPaint::notice();
        QVERIFY(done.empty());
        FirstPaint::afterwards([&done] { done.push_back(3); });
        QVERIFY(done.empty());
        MainQueue::shared().runUntilIdle();
        QCOMPARE(done, (std::vector{1, 2, 3}));
    }

    void blocksRunOnceHoweverOftenIsPainted()
    {
        int done = 0;
        FirstPaint::afterwards([&done] { ++done; });
        for (int paints = 0; paints < 3; ++paints)
            FirstPaint::notice();
        MainQueue::shared().runUntilIdle();
        QCOMPARE(done, 1);
    }

    void withoutAnyWindowBlocksWaitASecond()
    {
        int done = 0;
        FirstPaint::afterwards([&done] { ++done; });
        MainQueue::shared().advance(std::chrono::milliseconds(999));
        MainQueue::shared().runUntilIdle();
        QCOMPARE(done, 0);
        MainQueue::shared().advance(std::chrono::milliseconds(1));
        MainQueue::shared().runUntilIdle();
        QCOMPARE(done, 1);
    }

private:
    Sandbox m_sandbox;
    std::optional<UnpaintedProgram> m_program;
};

PLOVENDIX_GUI_TEST(FirstPaintTest)
#include "FirstPaintTest.moc"
