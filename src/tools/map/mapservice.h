#pragma once

#include <QDBusVirtualObject>
#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "platform/ado/connection.h"
#include "platform/files/files.h"
#include "runedit/map/maprequest.h"
#include "runedit/map/workfiles.h"
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

/// The map's side of the exchange, for tests and demonstration. It takes requests, solves the run
/// along the street grid, writes what it found into the routing database and then "RunDone.txt",
/// and holds the run's stop export a while longer before it deletes it.
class MapService : public QDBusVirtualObject {
public:
    using Milliseconds = std::chrono::milliseconds;
    struct Manner {
        Milliseconds work{1500};  ///< from the request to the answer
        Milliseconds hold{3000};  ///< from the answer to the deletion of the stop export
        Fault fault = Fault::None;
        std::function<void(const std::string&)> tell = [](const std::string&) {};
        std::function<void()> end = [] {};  ///< ends the program
    };

    MapService(ado::Connection& routing, runedit::WorkFiles files, Manner manner);

    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    struct Job {
        Job(const runedit::RequestLine& request, const std::string& stops,
            const streets::Network& network, const std::set<std::int64_t>& rightSide)
            : solved(request, dbf::tableIn(files::read(stops)), network, rightSide),
              stopExport(stops),
              hold(stops) {}

        SolvedRun solved;
        std::string stopExport;
        files::Hold hold;
    };

    /// Raises base::RunTimeError for a request that cannot be taken.
    void take(const runedit::MapRequest& request);
    void takeRun(const std::string& run);
    void answer(const std::shared_ptr<Job>& job);
    /// A step that fails is told, and the run let go without an answer.
    void orFail(const std::shared_ptr<Job>& job, const std::function<void()>& step);
    void tellDone(const std::shared_ptr<Job>& job);
    void holdOn(const std::shared_ptr<Job>& job);
    void letGo(const Job& job) const;

    ado::Connection& routing_;
    runedit::WorkFiles files_;
    Manner manner_;
};

}  // namespace tools::map
