#pragma once

#include <QDBusVirtualObject>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/ado/connection.h"
#include "platform/files/files.h"
#include "runedit/map/maprequest.h"
#include "runedit/map/workfiles.h"
#include "streets/district/districtstreets.h"
#include "tools/map/solver.h"

namespace tools::map {

/// What may go wrong on the map's side, to be played on purpose when a run is asked for.
enum class Fault {
    None,
    Refuse,     ///< answers that it cannot
    Silence,    ///< never answers the request
    Die,        ///< takes the request and ends before it has done anything
    BadAnswer,  ///< writes an answer file that is no text
    FileStays,  ///< never gives the run's stop export free
};

using DistrictStreets = std::shared_ptr<const streets::DistrictStreets>;

/// What the service has of a window; without one it works unseen.
struct Screen {
    std::function<void(const std::string& run)> show;
    /// Whether a run that is to be shown is taken over only when the planner says so.
    std::function<bool()> asksFirst;
    /// Shows a solved run before it is written, and tells once whether to write it.
    std::function<void(const std::string& run, std::function<void(bool taken)> decided)> ask;
    std::function<void(const std::string& run)> saved;
    std::function<void()> showPoints;
    std::function<void(const DistrictStreets& streets)> drive;  ///< other streets from now on
};

/// The map's side of the exchange. It takes requests, solves the run, writes what it found into the
/// routing database and then "RunDone.txt", and holds the run's stop export a while longer before
/// it deletes it. A run that Map It sends is shown; only such a one waits for its planner, because
/// whoever has runs solved without showing them waits for the answer.
class MapService : public QDBusVirtualObject {
public:
    using Milliseconds = std::chrono::milliseconds;
    struct Manner {
        Milliseconds work{1500};  ///< from the request to the answer
        Milliseconds hold{3000};  ///< from the answer to the deletion of the stop export
        Fault fault = Fault::None;
        std::function<void(const std::string&)> tell = [](const std::string&) {};
        std::function<void()> end = [] {};  ///< ends the program
        std::optional<Screen> screen = {};
        /// Opens what the district drives on, without the streets of that list of closed ones.
        std::function<DistrictStreets(const std::string& closedStreets)> openStreets = {};
    };

    MapService(ado::Connection& routing, runedit::WorkFiles files, Manner manner);

    /// Beside the name that requests go to, each map has one of its district's: requests for the
    /// program folder of another district are passed on by it.
    [[nodiscard]] QString ownName() const;

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    struct Job {
        Job(const runedit::RequestLine& request, const std::string& stops, DistrictStreets drivenOn,
            const std::set<std::int64_t>& rightSide)
            : streets(std::move(drivenOn)),
              solved(request, dbf::tableIn(files::read(stops)), streets->network(), rightSide),
              stopExport(stops),
              hold(stops) {}

        DistrictStreets streets;
        SolvedRun solved;
        std::string stopExport;
        files::Hold hold;
    };

    /// Whether the request was for another district; then that one's map answers.
    bool passOn(const runedit::MapRequest& request, const QDBusMessage& message,
                const QDBusConnection& connection);
    [[nodiscard]] const DistrictStreets& streets();
    void closeStreets(const runedit::MapRequest& request);
    /// Raises base::RunTimeError for a request that cannot be taken.
    void take(const runedit::MapRequest& request);
    void takeRun(const std::string& run, bool isShown);
    /// Solved as asked for; the planner may have a word first.
    void finish(const std::shared_ptr<Job>& job, bool isShown);
    void answer(const std::shared_ptr<Job>& job);
    void keep(const std::shared_ptr<Job>& job);
    /// Once the request is answered.
    void onScreen(const std::function<void(const Screen&)>& step);
    /// A step that fails is told, and the run let go without an answer.
    void orFail(const std::shared_ptr<Job>& job, const std::function<void()>& step);
    void tellDone(const std::shared_ptr<Job>& job, const std::string& news);
    void holdOn(const std::shared_ptr<Job>& job);
    void letGo(const Job& job) const;

    ado::Connection& routing_;
    runedit::WorkFiles files_;
    Manner manner_;
    DistrictStreets streets_;
};

}  // namespace tools::map
