#include "tools/district/make/writer.h"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>

#include "data/schema/schema.h"
#include "platform/base/value.h"
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

Value idOrNull(std::int64_t id) { return id == 0 ? Value() : Value(id); }

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
        auto rows = file_.into("SCHOOL");
        for (const auto& school : district_.schools) {
            rows.add("SCHOOL"_c = school->code, "SCHOOLNAME"_c = school->name,
                     "SCHOOLTYPE"_c = school->type, "ACTIVE"_c = school->active);
        }
    }

    void stops() {
        progress_.begin("Stops", steps(district_.stops));
        auto rows = file_.into("STOP");
        for (const auto& stop : district_.stops) {
            const Town& town = townOf(stop->location);
            const Point at = stop->placed ? stop->at : Point{};
            rows.add("INT_STOPID"_c = stop->id, "STOPID"_c = stop->stopId,
                     "STOPTYPE"_c = stop->type, "DESCRIPTION"_c = stop->description,
                     "ADDR1"_c = stop->address, "CITY"_c = town.name, "STATE"_c = State,
                     "ZIP"_c = town.zip, "SCHOOL"_c = textOrNull(stop->school),
                     "LOCCODE"_c = stop->location, "ACTIVE"_c = stop->active,
                     "RIGHTSIDE"_c = stop->rightSide, "XPOS"_c = at.x, "YPOS"_c = at.y,
                     "COMMENT"_c = textOrNull(stop->comment));
            progress_.step();
        }
    }

    void routes() {
        auto rows = file_.into("ROUTE");
        for (const Route& route : district_.routes) {
            rows.add("INT_ROUTEID"_c = route.id, "ROUTEID"_c = route.routeId,
                     "ROUTENAME"_c = route.name, "ROUTEFAMILY"_c = "REGULAR",
                     "LOCCODE"_c = route.location, "VEHICLE"_c = route.vehicle,
                     "EMPNUM"_c = orNull(route.driver), "AID_EMPNUM"_c = orNull(route.aide),
                     "COMMENT"_c = textOrNull(route.comment), "DEADERROR"_c = true,
                     "GARAGE_STOPID"_c = route.garage);
        }
    }

    void runs() {
        progress_.begin("Runs", steps(district_.runs));
        auto rows = file_.into("RUN");
        for (const Run& run : district_.runs) {
            rows.add(
                "RUN"_c = run.id, "DESCRIPTION"_c = run.description, "ACTIVE"_c = run.active,
                "SCHOOL"_c = run.school, "TRIPTYPE"_c = run.tripType, "RUNFAMILY"_c = run.family,
                "LOCCODE"_c = run.location, "INT_ROUTEID"_c = orNull(run.route),
                "VEHTYPE"_c = run.vehicleType, "Capacity"_c = run.capacity,
                "OverFill"_c = run.overfill, "BELLTIME"_c = run.bell, "PICKUP"_c = run.pickup,
                "TimeToUse"_c = run.pickup ? "End Time" : "Start Time", "STARTTIME"_c = run.start,
                "ENDTIME"_c = run.end, "TOTAL_TIME"_c = run.totalMinutes,
                "TOTAL_MILES"_c = run.totalMiles, "TOTAL_STUDENTS"_c = run.students,
                "total_stops"_c = run.timedStops(), "COMMENT"_c = textOrNull(run.comment),
                "REGENERATE"_c = run.regenerate, "DEADHEAD_BEFORE_TIME"_c = NotCalculated,
                "DEADHEAD_AFTER_TIME"_c = NotCalculated, "CreatedBy"_c = run.audit.createdBy,
                "CREATEDDT"_c = run.audit.created, "ChangedBy"_c = run.audit.changedBy,
                "changeddt"_c = run.audit.changed,
                "STATUSCHGDT"_c = run.active ? Value() : Value(run.audit.changed),
                "monday"_c = true, "tuesday"_c = true, "wednesday"_c = true, "thursday"_c = true,
                "friday"_c = run.fridays, "FirstStop"_c = idOrNull(run.firstStop()),
                "LastStop"_c = idOrNull(run.lastStop()));
            progress_.step();
        }
    }

    void stopTrips() {
        progress_.begin("Stop trips", steps(district_.runs) + steps(district_.loose));
        auto rows = file_.into("STOP_TRIPTYPE");
        const auto add = [&](const Visit& visit, std::string_view tripType, const Value& run,
                             const Audit& audit) {
            rows.add("INT_STOPID"_c = visit.stop->id, "TRIPTYPE"_c = tripType, "RUN"_c = run,
                     "RUNSEQ"_c = visit.sequence, "NUM_STUDENTS"_c = visit.students,
                     "LOAD_TIME"_c = visit.loadMinutes, "TIME_TOSTOP"_c = visit.driveMinutes,
                     "DIST_TOSTOP"_c = visit.miles, "TIME_AT_STOP"_c = orNull(visit.time),
                     "CUM_TIME"_c = visit.cumulatedMinutes, "CUM_MILES"_c = visit.cumulatedMiles,
                     "RUN_PICKUP_SIDE"_c = visit.rightHand ? "right" : "left",
                     "ACTIVE"_c = visit.active, "CREATEDDT"_c = audit.created,
                     "changeddt"_c = audit.changed, "CreatedBy"_c = audit.createdBy,
                     "ChangedBy"_c = audit.changedBy, "UPDATE_TIME"_c = true);
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
        auto rows = file_.into("RUNDIR");
        for (const Run& run : district_.runs) {
            for (const auto& line : directionsOf(run)) {
                const Stop& stop = *run.visits[line.stop].stop;
                rows.add("RUN"_c = run.id, "INT_STOPID"_c = stop.id, "STOPID"_c = stop.stopId,
                         "LINETYPE"_c = line.type, "LINETEXT1"_c = line.text1,
                         "LINETEXT2"_c = line.text2, "SHORTTEXT"_c = line.shortText,
                         "SHORTDIST"_c = line.shortDistance);
            }
            progress_.step();
        }
    }

    void students() {
        progress_.begin("Students", steps(district_.students));
        auto students = file_.into("STUDENT");
        auto addresses = file_.into("STU_ADDR");
        auto rides = file_.into("STU_ADDR_TRIPTYPE");
        auto needs = file_.into("STU_SPECIALNEEDS");
        for (const Student& student : district_.students) {
            const std::int64_t id = student.id;
            students.add("INT_STUID"_c = id, "STUID"_c = fmt::format("S{:06}", id),
                         "LASTNAME"_c = student.lastName, "FIRSTNAME"_c = student.firstName,
                         "SCHOOL"_c = student.school->code);
            addresses.add("ADDRESSID"_c = id, "INT_STUID"_c = id, "CONTACTID"_c = id,
                          "ADDR1"_c = student.stop->address,
                          "CITY"_c = townOf(student.stop->location).name, "STATE"_c = State,
                          "PHONE"_c = fmt::format("555-01{:02}", id % 100));
            for (const auto tripType : {triptype::Morning, triptype::Afternoon}) {
                rides.add("INT_STUID"_c = id, "ADDRESSID"_c = id, "TRIPTYPE"_c = tripType,
                          "INT_STOPID"_c = student.stop->id, "STARTDT"_c = SchoolYearBegins,
                          "MONDAY"_c = true, "TUESDAY"_c = true, "WEDNESDAY"_c = true,
                          "THURSDAY"_c = true, "FRIDAY"_c = true);
            }
            for (const std::string_view need : student.needs) {
                needs.add("INT_STUID"_c = id, "SPECIALNEEDS_CODE"_c = need);
            }
            progress_.step();
        }
    }

    void warnings() {
        auto rows = file_.into("RUNWARNING");
        for (const Run& run : district_.runs) {
            for (const Finding& finding : run.findings) {
                rows.add("RUN"_c = run.id, "WARNINGTYPE"_c = finding.type,
                         "WARNINGDATETIME"_c = run.audit.changed, "WARNINGTEXT"_c = finding.text);
            }
        }
    }

    void history() {
        progress_.begin("Run log", district_.logEntries);
        auto rows = file_.into("RUNLOG");
        tellHistory(district_, [&](const LogEntry& entry) {
            const Stop& stop = *entry.visit->stop;
            const bool isRegular = stop.type == data::stoptype::Regular;
            rows.add("RUNID"_c = entry.run->id,
                     "Int_STOPID"_c = isRegular ? Value(stop.id) : Value(),
                     "StopID"_c = stop.stopId, "TripType"_c = entry.run->tripType,
                     "LOGDATE"_c = entry.date, "User"_c = entry.user,
                     "ACTIVITYCODE"_c = entry.activity, "Description"_c = entry.description);
            progress_.step();
        });
    }

    void settings() {
        file_.into("District")
            .add("DistName"_c = district_.name, "Load_Time"_c = 0.5,
                 "MaxRideTime"_c = district_.maxRideMinutes, "RUNREFRESHTIME"_c = 10,
                 "RUNCOST"_c = district_.runCost, "SENDTOMAP"_c = true,
                 "Back_To_Garage_Gap"_c = district_.backToGarageMinutes, "CHECKRUNNUMPASS"_c = true,
                 "CHECKRUNRIGHT"_c = true, "CHECKRUNEARLYBELL"_c = true,
                 "CHECKRUNLATEBELL"_c = true, "CHECKRUNRIDETIME"_c = true,
                 "CHECKRUNSPECIAL"_c = true, "CHECKSTOPOVERLAP"_c = true);
        file_.into("SYSTEM").add("NEEDDEADHEADBUILD"_c = true);
        file_.into("StartEnd")
            .add("StartorEnd"_c = "End", "CalcTime"_c = Date{}, "Run"_c = " ", "VehType"_c = " ",
                 "BellTime"_c = Date{}, "Pickup"_c = true, "VehCapacity"_c = 0,
                 "UpdateMap"_c = true);
    }

    const District& district_;
    TableFile& file_;
    Progress& progress_;
};

void writeCodes(const std::vector<CodeRows>& start, TableFile& file, DatabaseFile which) {
    for (const CodeRows& codes : start) {
        if (codes.file == which) {
            auto rows = file.into(codes.table);
            for (const auto& values : codes.rows) {
                std::vector<Cell> cells;
                std::ranges::transform(codes.columns, values, std::back_inserter(cells),
                                       [](const auto& column, const Value& value) {
                                           return Cell{column, value};
                                       });
                rows.addRow(cells);
            }
        }
    }
}

void writeStaff(const District& district, TableFile& file) {
    auto employees = file.into("EMPLOYEE");
    for (const Employee& employee : district.employees) {
        employees.add("EMPNUM"_c = employee.number, "LASTNAME"_c = employee.lastName,
                      "FIRSTNAME"_c = employee.firstName);
    }
    auto vehicles = file.into("VEHICLE");
    for (const Vehicle& vehicle : district.vehicles) {
        vehicles.add("VEHICLE"_c = vehicle.id, "VEHDESC"_c = vehicle.description,
                     "VEHTYPE"_c = vehicle.type);
    }
}

void writeTravels(const District& district, TableFile& file) {
    auto rows = file.into("DEADHEAD_CROSS");
    for (const Travel& travel : district.travels) {
        rows.add("ENDPOINT_INT_STOPID"_c = travel.from, "DEST_INT_STOPID"_c = travel.to,
                 "TRAVEL_MINUTES"_c = travel.minutes, "TRAVEL_MILES"_c = travel.miles);
    }
}

}  // namespace

void writeDistrict(const District& district, const std::vector<CodeRows>& start,
                   const Folders& folders, Progress& progress) {
    for (const DatabaseFile which : data::AllDatabaseFiles) {
        TableFile file(folders, which);
        writeCodes(start, file, which);
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
