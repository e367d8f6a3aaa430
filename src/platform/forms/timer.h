#pragma once

#include <QObject>
#include <QTimer>

namespace forms {

/// A form's timer: ticks every `interval` milliseconds while it is enabled. All timers run on one
/// clock, which tests and scripts can speed up.
class Timer : public QObject {
    Q_OBJECT

public:
    explicit Timer(QObject* parent = nullptr);
    ~Timer() override;

    [[nodiscard]] int interval() const { return intervalMs_; }
    /// 0 stops the ticking.
    void setInterval(int milliseconds);
    [[nodiscard]] bool isEnabled() const { return enabled_; }
    void setEnabled(bool enabled);
    /// Enables the timer for a single tick after `milliseconds`.
    void startOnce(int milliseconds);

    /// How many times faster than the wall clock all timers run; 1 from the start.
    static void setSpeed(double factor);
    /// The wall clock's milliseconds for a timer's, at the present speed; at least 1.
    static int wallMilliseconds(int milliseconds);

signals:
    void tick();

private:
    void restart();

    QTimer timer_;
    int intervalMs_ = 0;
    bool enabled_ = false;
    bool once_ = false;
};

/// Lets the event loop run for that long on the timers' clock; for a procedure that waits for
/// another program. Throws base::EndProgram if the program ended meanwhile.
void pause(int milliseconds);

}  // namespace forms
