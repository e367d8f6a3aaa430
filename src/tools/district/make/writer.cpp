#include "tools/district/make/writer.h"

#include <array>

#include <fmt/format.h>

#include "data/schema/schema.h"
#include "platform/base/value.h"
#include "tools/district/make/codes.h"
#include "tools/district/make/history.h"
#include "tools/district/make/names.h"
#include "tools/district/make/tablefile.h"
#include "tools/district/travel/directions.h"

namespace tools::district {

namespace {

using base::Date;
using base::Value;
using data::DatabaseFile;

constexpr double NotCalculated = -2;
const Date SchoolYearBegins = Date::of(2025, 8, 25);

Value orNull(const auto& value) { return value ? Value(*value) : Value(); }

Value textOrNull(const std::string& text) { return text.empty() ? Value() : Value(text); }

Value whereIfNowhere(NoRun noRun) {
    return noRun == NoRun::Null ? Value() : noRun == NoRun::Empty ? Value("") : Value(" ");
}

std::int64_t steps(const auto& items) { return static_cast<std::int64_t>(items.size()); }

/// The rows of "routing.mdb".
class RoutingWriter {
public:
    RoutingWriter(const District& district, TableFile& file, Progress& progress)
        : district_(district), file_(file), progress_(progress) {}

    void write() {
        schools();
        stops();
        routes();
        runs();
        stopTrips();
        directions();
        students();
        warnings();
        history();
        settings();
    }

private:
    void schools() {
        auto rows = file_.into("SCHOOL", {"SCHOOL", "SCHOOLNAME", "SCHOOLTYPE", "ACTIVE"});
        for (const auto& school : district_.schools) {
            rows.add(school->code, school->name, school->type, school->active);
        }
    }

    void stops() {
        progress_.begin("Stops", steps(district_.stops));
        auto rows = file_.into(
            "STOP", {"INT_STOPID", "STOPID", "STOPTYPE", "DESCRIPTION", "ADDR1", "CITY", "STATE",
                     "ZIP", "SCHOOL", "LOCCODE", "ACTIVE", "RIGHTSIDE", "XPOS", "YPOS", "COMMENT"});
        for (const auto& stop : district_.stops) {
            const Town& town = townOf(stop->location);
            rows.add(stop->id, stop->stopId, stop->type, stop->description, stop->address,
                     town.name, State, town.zip, textOrNull(stop->school), stop->location,
                     stop->active, stop->rightSide, stop->placed ? stop->at.x : 0,
                     stop->placed ? stop->at.y : 0, textOrNull(stop->comment));
            progress_.step();
        }
    }

    void routes() {
        auto rows = file_.into(
            "ROUTE", {"INT_ROUTEID", "ROUTEID", "ROUTENAME", "ROUTEFAMILY", "LOCCODE", "VEHICLE",
                      "EMPNUM", "AID_EMPNUM", "COMMENT", "DEADERROR", "GARAGE_STOPID"});
        for (const Route& route : district_.routes) {
            rows.add(route.id, route.routeId, route.name, "REGULAR", route.location, route.vehicle,
                     orNull(route.driver), orNull(route.aide), textOrNull(route.comment), true,
                     route.garage);
        }
    }

    void runs() {
        progress_.begin("Runs", steps(district_.runs));
        auto rows = file_.into("RUN", {"RUN",
                                       "DESCRIPTION",
                                       "ACTIVE",
                                       "SCHOOL",
                                       "TRIPTYPE",
                                       "RUNFAMILY",
                                       "LOCCODE",
                                       "INT_ROUTEID",
                                       "VEHTYPE",
                                       "Capacity",
                                       "OverFill",
                                       "BELLTIME",
                                       "PICKUP",
                                       "TimeToUse",
                                       "STARTTIME",
                                       "ENDTIME",
                                       "TOTAL_TIME",
                                       "TOTAL_MILES",
                                       "TOTAL_STUDENTS",
                                       "total_stops",
                                       "COMMENT",
                                       "REGENERATE",
                                       "DEADHEAD_BEFORE_TIME",
                                       "DEADHEAD_AFTER_TIME",
                                       "CreatedBy",
                                       "CREATEDDT",
                                       "ChangedBy",
                                       "changeddt",
                                       "STATUSCHGDT",
                                       "monday",
                                       "tuesday",
                                       "wednesday",
                                       "thursday",
                                       "friday",
                                       "FirstStop",
                                       "LastStop"});
        for (const Run& run : district_.runs) {
            const std::int64_t first = run.firstStop();
            const std::int64_t last = run.lastStop();
            rows.add(run.id, run.description, run.active, run.school, run.tripType, run.family,
                     run.location, orNull(run.route), run.vehicleType, run.capacity, run.overfill,
                     run.bell, run.pickup, run.pickup ? "End Time" : "Start Time", run.start,
                     run.end, run.totalMinutes, run.totalMiles, run.students, run.timedStops(),
                     textOrNull(run.comment), run.regenerate, NotCalculated, NotCalculated,
                     run.audit.createdBy, run.audit.created, run.audit.changedBy, run.audit.changed,
                     run.active ? Value() : Value(run.audit.changed), true, true, true, true,
                     run.fridays, first == 0 ? Value() : Value(first),
                     last == 0 ? Value() : Value(last));
            progress_.step();
        }
    }

    void stopTrips() {
        progress_.begin("Stop trips", steps(district_.runs) + steps(district_.loose));
        auto rows = file_.into(
            "STOP_TRIPTYPE",
            {"INT_STOPID", "TRIPTYPE", "RUN", "RUNSEQ", "NUM_STUDENTS", "LOAD_TIME", "TIME_TOSTOP",
             "DIST_TOSTOP", "TIME_AT_STOP", "CUM_TIME", "CUM_MILES", "RUN_PICKUP_SIDE", "ACTIVE",
             "CREATEDDT", "changeddt", "CreatedBy", "ChangedBy", "UPDATE_TIME"});
        const auto add = [&](const Visit& visit, std::string_view tripType, const Value& run,
                             const Audit& audit) {
            rows.add(visit.stop->id, tripType, run, visit.sequence, visit.students,
                     visit.loadMinutes, visit.driveMinutes, visit.miles, orNull(visit.time),
                     visit.cumulatedMinutes, visit.cumulatedMiles,
                     visit.rightHand ? "right" : "left", visit.active, audit.created, audit.changed,
                     audit.createdBy, audit.changedBy, true);
            progress_.step();
        };
        for (const Run& run : district_.runs) {
            for (const Visit& visit : run.visits) {
                add(visit, run.tripType, run.id, run.audit);
            }
        }
        const Audit imported{.created = SchoolYearBegins, .changed = SchoolYearBegins};
        for (const LooseVisit& loose : district_.loose) {
            add(loose.visit, loose.tripType, whereIfNowhere(loose.noRun), imported);
        }
    }

    void directions() {
        progress_.begin("Directions", steps(district_.runs));
        auto rows = file_.into("RUNDIR", {"RUN", "INT_STOPID", "STOPID", "LINETYPE", "LINETEXT1",
                                          "LINETEXT2", "SHORTTEXT", "SHORTDIST"});
        for (const Run& run : district_.runs) {
            for (const DirectionLine& line : directionsOf(run)) {
                rows.add(run.id, line.stop->id, line.stop->stopId, line.type, line.text1,
                         line.text2, line.shortText, line.shortDistance);
            }
            progress_.step();
        }
    }

    void students() {
        progress_.begin("Students", steps(district_.students));
        auto students =
            file_.into("STUDENT", {"INT_STUID", "STUID", "LASTNAME", "FIRSTNAME", "SCHOOL"});
        auto addresses = file_.into(
            "STU_ADDR", {"ADDRESSID", "INT_STUID", "CONTACTID", "ADDR1", "CITY", "STATE", "PHONE"});
        auto rides = file_.into("STU_ADDR_TRIPTYPE",
                                {"INT_STUID", "ADDRESSID", "TRIPTYPE", "INT_STOPID", "STARTDT",
                                 "MONDAY", "TUESDAY", "WEDNESDAY", "THURSDAY", "FRIDAY"});
        auto needs = file_.into("STU_SPECIALNEEDS", {"INT_STUID", "SPECIALNEEDS_CODE"});
        for (const Student& student : district_.students) {
            const std::int64_t id = student.id;
            students.add(id, fmt::format("S{:06}", id), student.lastName, student.firstName,
                         student.school->code);
            addresses.add(id, id, id, student.stop->address, townOf(student.stop->location).name,
                          State, fmt::format("555-01{:02}", id % 100));
            for (const auto tripType : {triptype::Morning, triptype::Afternoon}) {
                rides.add(id, id, tripType, student.stop->id, SchoolYearBegins, true, true, true,
                          true, true);
            }
            for (const std::string_view need : student.needs) {
                needs.add(id, need);
            }
            progress_.step();
        }
    }

    void warnings() {
        auto rows =
            file_.into("RUNWARNING", {"RUN", "WARNINGTYPE", "WARNINGDATETIME", "WARNINGTEXT"});
        for (const Run& run : district_.runs) {
            for (const Finding& finding : run.findings) {
                rows.add(run.id, finding.type, run.audit.changed, finding.text);
            }
        }
    }

    void history() {
        progress_.begin("Run log", district_.logEntries);
        auto rows = file_.into("RUNLOG", {"RUNID", "Int_STOPID", "StopID", "TripType", "LOGDATE",
                                          "User", "ACTIVITYCODE", "Description"});
        tellHistory(district_, [&](const LogEntry& entry) {
            const Stop& stop = *entry.visit->stop;
            rows.add(entry.run->id, stop.type == data::stoptype::Regular ? Value(stop.id) : Value(),
                     stop.stopId, entry.run->tripType, entry.date, entry.user, entry.activity,
                     entry.description);
            progress_.step();
        });
    }

    void settings() {
        file_
            .into("District",
                  {"DistName", "Load_Time", "MaxRideTime", "RUNREFRESHTIME", "RUNCOST", "SENDTOMAP",
                   "Back_To_Garage_Gap", "CHECKRUNNUMPASS", "CHECKRUNRIGHT", "CHECKRUNEARLYBELL",
                   "CHECKRUNLATEBELL", "CHECKRUNRIDETIME", "CHECKRUNSPECIAL", "CHECKSTOPOVERLAP"})
            .add(district_.name, 0.5, district_.maxRideMinutes, 10, 2.5, true,
                 district_.backToGarageMinutes, true, true, true, true, true, true, true);
        file_.into("SYSTEM", {"NEEDDEADHEADBUILD"}).add(true);
        file_
            .into("StartEnd", {"StartorEnd", "CalcTime", "Run", "VehType", "BellTime", "Pickup",
                               "VehCapacity", "UpdateMap"})
            .add("End", Date{}, " ", " ", Date{}, true, 0, true);
    }

    const District& district_;
    TableFile& file_;
    Progress& progress_;
};

void writeCodes(TableFile& file, DatabaseFile which) {
    for (const CodeRows& codes : codeRows()) {
        if (codes.file == which) {
            auto rows = file.into(codes.table, codes.columns);
            for (const auto& values : codes.rows) {
                rows.add(values);
            }
        }
    }
}

void writeStaff(const District& district, TableFile& file) {
    auto employees = file.into("EMPLOYEE", {"EMPNUM", "LASTNAME", "FIRSTNAME"});
    for (const Employee& employee : district.employees) {
        employees.add(employee.number, employee.lastName, employee.firstName);
    }
    auto vehicles = file.into("VEHICLE", {"VEHICLE", "VEHDESC", "VEHTYPE"});
    for (const Vehicle& vehicle : district.vehicles) {
        vehicles.add(vehicle.id, vehicle.description, vehicle.type);
    }
}

void writeTravels(const District& district, TableFile& file) {
    auto rows = file.into("DEADHEAD_CROSS", {"ENDPOINT_INT_STOPID", "DEST_INT_STOPID",
                                             "TRAVEL_MINUTES", "TRAVEL_MILES"});
    for (const Travel& travel : district.travels) {
        rows.add(travel.from, travel.to, travel.minutes, travel.miles);
    }
}

}  // namespace

void writeDistrict(const District& district, const Folders& folders, Progress& progress) {
    for (const DatabaseFile which : data::AllDatabaseFiles) {
        TableFile file(folders, which);
        writeCodes(file, which);
        if (which == DatabaseFile::Routing) {
            RoutingWriter(district, file, progress).write();
        } else if (which == DatabaseFile::Trip) {
            writeStaff(district, file);
        } else if (which == DatabaseFile::DeadCross) {
            writeTravels(district, file);
        }
        file.finish(progress);
    }
}

}  // namespace tools::district
