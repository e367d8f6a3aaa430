#pragma once

#include <QObject>
#include <string>
#include <vector>

namespace script {

/// How long the window stands still: each turn of the event loop, from its waking to where it
/// listens again. What a long operation repaints in between ends a turn.
class TurnWatch : public QObject {
    Q_OBJECT

public:
    TurnWatch();

    /// What goes on from now on.
    void setDeed(const std::string& deed);

    struct Turn {
        std::string deed;        ///< at its end
        double ms = 0;           ///< as a planner waits
        double computingMs = 0;  ///< of the thread alone, whatever else the computer does
    };
    /// The turns that computed so long, in their order, since this was asked last.
    [[nodiscard]] std::vector<Turn> take(double ms);

private:
    struct Moment {
        double ms = 0;
        double computingMs = 0;
    };
    [[nodiscard]] static Moment now();
    void endTurn();

    Moment begin_;
    std::string deed_;
    std::vector<Turn> turns_;
};

}  // namespace script
