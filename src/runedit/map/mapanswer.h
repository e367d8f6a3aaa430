#pragma once

#include <QObject>
#include <QString>
#include <string>

#include "platform/forms/timer.h"
#include "runedit/map/maphandoff.h"

namespace runedit {

/// Waits for the map program's answer to a run that was handed over, and tells the form when it
/// may read the run again. The waiting never blocks; the texts of log and status are given. The
/// answer counts when the run's stop export is free. Where none comes within a minute from then on,
/// or the map program has ended, a status says so and the run is marked to be resolved.
///
///     status "Waiting for updated information from mapping software."
///     … "RunDone.txt" appears: a countdown of ten seconds in status
///     status "Run Not Saved."
///     reload()
///     status "Information Received from Mapping Software."
///     lists(), then one signal for each list, finished()
class MapAnswer : public QObject {
    Q_OBJECT

public:
    explicit MapAnswer(QObject* parent);
    /// For a screen other than the run editor; only the log line about the reload differs.
    MapAnswer(MapScreen screen, QObject* parent);

    /// Shows the waiting status and waits anew, for the answer to that run.
    void start(const std::string& run);
    /// Stops waiting; nothing more is signalled.
    void stop();
    [[nodiscard]] bool isWaiting() const { return waiting_; }

signals:
    void status(const QString& text);
    /// No answer comes any more; the run was marked to be resolved, and a status will say so.
    void ended();
    /// The run was deleted while it was with the map program; a status has said so, and nothing
    /// else follows.
    void gone();
    /// Read the run from the database again.
    void reload();
    /// Build the four lists again; they are logged as done when it returns.
    void lists();

private:
    void Timer1_Timer();
    void Timer2_Timer();
    void poll();
    void lookWhileHeld();
    void lookOnceFree();
    [[nodiscard]] bool mapHasEnded() const;
    void takeAnswer();
    void countDown();
    void giveUp();
    void tellGone();
    void buildLists();
    template <class Step>
    void guarded(const char* procedure, Step step);

    MapScreen screen_ = MapScreen::Run;
    forms::Timer Timer1;  ///< looks for the answer, then counts the seconds down
    forms::Timer Timer2;  ///< takes the answer over
    std::string run_;
    bool waiting_ = false;
    bool answered_ = false;  ///< the answer has named the run, and may be another run's by now
    int secondsLeft_ = 0;    ///< 0 while the answer is not there
    int looks_ = 0;          ///< since the answer or the end of the hold was seen
    bool wasHeld_ = false;
};

}  // namespace runedit
