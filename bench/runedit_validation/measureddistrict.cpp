#include "measureddistrict.h"

#include <stdexcept>

#include <fmt/format.h>
#include <stdlib.h>

#include "platform/store/base/database.h"
#include "platform/store/open/open.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/base/session.h"
#include "support/insertmany.h"
#include "tools/district/base/progress.h"
#include "tools/district/make/create.h"

namespace bench {

namespace {

namespace fs = std::filesystem;

fs::path temporaryFolder() {
    std::string pattern = (fs::temp_directory_path() / "vireo-bench-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("no folder to work in");
    }
    return pattern;
}

}  // namespace

MeasuredDistrict::MeasuredDistrict(std::optional<std::int64_t> runs) : folder_(temporaryFolder()) {
    tools::district::Progress progress;
    tools::district::createDistrict({.folder = folder_ / "district", .runs = runs, .seed = 1},
                                    progress);
    addRun();
}

MeasuredDistrict::~MeasuredDistrict() {
    startup::closeConnections();
    fs::remove_all(folder_);
}

std::string MeasuredDistrict::routing() const { return folder_ / "district/data/routing.mdb"; }

std::string MeasuredDistrict::trip() const { return folder_ / "district/common/trip.mdb"; }

void MeasuredDistrict::openSession() const {
    startup::gcnRouting = startup::GetJetConnection(routing());
    startup::gcnTrip = startup::GetJetConnection(trip());
    startup::gcnRouting->link(trip());
}

void MeasuredDistrict::addRun() const {
    const auto trip = store::open(this->trip());
    trip->execute("INSERT INTO VEHTYPE(VEHTYPE, MEDIUM) VALUES ('BENCH', 59)");
    trip->execute(
        "INSERT INTO VEHTYPE_SPECIALNEEDS(VEHTYPE, SPECIALNEEDS_CODE, Capacity) VALUES "
        "('BENCH', 'WC', 11)");
    const auto routing = store::open(this->routing());
    routing->execute(
        "INSERT INTO RUN(RUN, VEHTYPE, PICKUP, BELLTIME) VALUES ('BENCH-20', 'BENCH', "
        "1, '1899-12-30 08:18:00')");
    routing->execute(insertMany("STOP", 20, "INT_STOPID, STOPID, STOPTYPE, RIGHTSIDE",
                                "9000000 + i, 'BENCH-' || i, 'REGULAR', i = 1"));
    routing->execute(insertMany("STOP_TRIPTYPE", 20,
                                "INT_STOPID, TRIPTYPE, RUN, RUNSEQ, NUM_STUDENTS, TIME_AT_STOP, "
                                "CUM_TIME, RUN_PICKUP_SIDE",
                                "9000000 + i, 'AM', 'BENCH-20', i, 3, "
                                "'1899-12-30 08:' || CASE i WHEN 2 THEN '01' ELSE substr('0' || i, "
                                "-2) END || ':00', CASE i WHEN 20 THEN 100 ELSE i END, CASE WHEN i "
                                "= 1 THEN 'left' ELSE 'right' "
                                "END"));
    routing->execute(insertMany("STUDENT", 60, "INT_STUID", "9000000 + i"));
    routing->execute(insertMany("STU_ADDR_TRIPTYPE", 60, "INT_STUID, TRIPTYPE, INT_STOPID",
                                "9000000 + i, 'AM', 9000001 + i % 20"));
    routing->execute(
        insertMany("STU_SPECIALNEEDS", 6, "INT_STUID, SPECIALNEEDS_CODE", "9000000 + i, 'WC'"));
    routing->checkpoint();
}

}  // namespace bench
