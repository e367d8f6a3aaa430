#pragma once

#include <fmt/format.h>

#include "platform/store/base/location.h"
#include "startup/base/session.h"
#include "support/districtsession.h"
#include "support/privateserver.h"
#include "support/runbuilder.h"
#include "tools/district/copy/copydistrict.h"

inline constexpr int Stops = 17;
inline const std::vector<std::string> Runs{"FAR", "FAR-2", "FAR-3"};

/// Three runs of 17 stops on a route with a bus, checked by all rules; on a server.
inline void fillFar(const support::TestDistrict& district) {
    if (support::PrivateServer::find() == nullptr) {
        return;
    }
    fillSmall(district);
    const auto sql = [&](const char* text) { district.sql(data::DatabaseFile::Routing, text); };
    sql("UPDATE District SET MaxRideTime = 60, CHECKRUNNUMPASS = 1, CHECKRUNRIGHT = 1, "
        "CHECKRUNEARLYBELL = 1, CHECKRUNLATEBELL = 1, CHECKRUNRIDETIME = 1, CHECKRUNSPECIAL = 1, "
        "CHECKSTOPOVERLAP = 1");
    for (const std::string& run : Runs) {
        support::RunBuilder builder(run);
        builder.school("OAK").bell("8:00").starts("7:10").ends("7:50").with("PICKUP", true);
        builder.with("INT_ROUTEID", 1).with("VEHTYPE", "LARGE").with("TimeToUse", "Start Time");
        for (int stop = 1; stop <= Stops; ++stop) {
            builder.stop(
                fmt::format("{}-{}", run, stop),
                {.load = 1, .drive = 1, .students = 1, .at = fmt::format("7:{}", 10 + stop)});
        }
        builder.into(district);
    }
    sql("UPDATE RUN SET FIRSTSTOP = 1, LASTSTOP = 3 WHERE INT_ROUTEID = 1");
    sql("UPDATE ROUTE SET GARAGE_STOPID = 4");
    for (const char* way : {"4, 1", "3, 1", "3, 4"}) {
        district.sql(data::DatabaseFile::DeadCross,
                     fmt::format("INSERT INTO DEADHEAD_CROSS(DEST_INT_STOPID, "
                                 "ENDPOINT_INT_STOPID, TRAVEL_MINUTES) VALUES ({}, 7)",
                                 way));
    }
    tools::district::Progress silent;
    const std::string place = support::PrivateServer::find()->newPlace();
    tools::district::copyDistrict(district.folder(), place, silent);
    district.writeIni(
        fmt::format("[AppPaths]\ndatapath={0}\nprogpath={0}\nVIREOpath={0}\n\n"
                    "[AppSettings]\nERRORHANDLING=True\nMAPSoftware=None\n",
                    place));
}

/// A session on that server, with what counts its waiting.
class FarSession : public support::DistrictSession {
public:
    static void byServer(const std::string& sql) {
        static_cast<void>(support::PrivateServer::find()->tell(
            store::serverPathOf(store::pathIn(startup::gDataPath, "routing.mdb")).connection, sql));
    }

protected:
    FarSession() : DistrictSession(fillFar) {}
    static void SetUpTestSuite() {
        if (support::PrivateServer::find() == nullptr) {
            GTEST_SKIP() << "PostgreSQL's server is not installed";
        }
    }

    /// What an action takes the second time, when its statements are prepared.
    template <class Action>
    static std::int64_t tripsOf(Action action) {
        action();
        const std::int64_t before = trips();
        action();
        return trips() - before;
    }
    static std::int64_t trips() {
        std::int64_t sum = 0;
        for (auto* connection : {&startup::gcnRouting, &startup::gcnTrip, &startup::gcnRouteWrk,
                                 &startup::gcnDeadCross}) {
            sum += (*connection)->roundTrips();
        }
        return sum;
    }
};
