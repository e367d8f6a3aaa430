#include "platform/forms/timer.h"

#include <QSignalSpy>

#include "fixture.h"

namespace {

using forms::Timer;

class TimerTest : public FormsTest {
protected:
    ~TimerTest() override { Timer::setSpeed(1); }
};

TEST_F(TimerTest, AFasterClockReachesRunningTimers) {
    Timer timer;
    QSignalSpy ticks(&timer, &Timer::tick);
    timer.setInterval(3600 * 1000);
    timer.setEnabled(true);
    Timer::setSpeed(1e6);
    ASSERT_TRUE(QTest::qWaitFor([&] { return ticks.count() >= 3; }));
    timer.setEnabled(false);
    const auto count = ticks.count();
    QTest::qWait(20);
    EXPECT_EQ(ticks.count(), count);
    EXPECT_EQ(Timer::wallMilliseconds(5), 1);
}

TEST_F(TimerTest, AOneShotTicksOnceAndMayBeStartedAnewFromItsTick) {
    Timer timer;
    int ticks = 0;
    QObject::connect(&timer, &Timer::tick, &timer, [&] {
        EXPECT_FALSE(timer.isEnabled());
        if (++ticks == 1) {
            timer.startOnce(1);
        }
    });
    timer.startOnce(1);
    ASSERT_TRUE(QTest::qWaitFor([&] { return ticks == 2; }));
    QTest::qWait(20);
    EXPECT_EQ(ticks, 2);
}

}  // namespace
