#include "platform/forms/timer.h"

#include <QEventLoop>
#include <QSet>
#include <algorithm>
#include <cmath>

#include "platform/forms/application.h"

namespace forms {

namespace {

double speed = 1;

QSet<Timer*>& timers() {
    static QSet<Timer*> all;
    return all;
}

}  // namespace

Timer::Timer(QObject* parent) : QObject(parent) {
    timers().insert(this);
    connect(&timer_, &QTimer::timeout, this, [this] {
        enabled_ = enabled_ && !once_;
        restart();
        emit tick();
    });
    timer_.setSingleShot(true);
}

Timer::~Timer() { timers().remove(this); }

void Timer::setInterval(int milliseconds) {
    intervalMs_ = milliseconds;
    restart();
}

void Timer::setEnabled(bool enabled) {
    enabled_ = enabled;
    once_ = false;
    restart();
}

void Timer::startOnce(int milliseconds) {
    intervalMs_ = milliseconds;
    enabled_ = true;
    once_ = true;
    restart();
}

void Timer::restart() {
    if (enabled_ && intervalMs_ > 0) {
        timer_.start(wallMilliseconds(intervalMs_));
    } else {
        timer_.stop();
    }
}

void Timer::setSpeed(double factor) {
    speed = factor;
    for (Timer* timer : timers()) {
        timer->restart();
    }
}

int Timer::wallMilliseconds(int milliseconds) {
    return std::max(1, static_cast<int>(std::lround(milliseconds / speed)));
}

void pause(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(Timer::wallMilliseconds(milliseconds), &loop, &QEventLoop::quit);
    loop.exec();
    Application::instance().throwIfEnding();
}

}  // namespace forms
