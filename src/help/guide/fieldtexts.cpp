#include "help/guide/fieldtexts.h"

#include <array>

namespace help {

namespace {

constexpr std::string_view Level =
    "A vehicle type has three numbers of seats, for how closely students may sit. The level says "
    "with which of them the run is planned. Empty counts as Medium.";

constexpr std::string_view SortBy =
    "Groups stay together; the rows within each stand in this order. The second field decides "
    "where two rows are alike in the first, the third where they are alike in both.";

constexpr std::array Texts{
    // The main form
    FieldText{
        "frmTarn", "RunId",
        "The id's beginning. % stands for any characters, _ for exactly one, [12] for a 1 or a "
        "2. A run must meet every criterion of all three tabs to be listed."},
    FieldText{"frmTarn", "cmbRunFamily",
              "Runs that a district plans together carry the same family, such as all that serve "
              "one part of the town. The family changes nothing about the run itself."},
    FieldText{"frmTarn", "Start_EndTime",
              "The end of a range is meant to the second: 07:05 leaves out a run that starts at "
              "07:05:30. Type 7:05:59 to take in the whole minute."},
    FieldText{"frmTarn", "NeedResolve",
              "A run is marked when its stops changed and it did not reach the map since: its "
              "distances, driving times and directions are those of before. Map It or Group Solve "
              "take the mark away."},
    FieldText{"frmTarn", "cmbSchoolType",
              "Stands for every listed school of that type. With schools selected as well, a run "
              "must meet both."},
    FieldText{"frmTarn", "UseRoute",
              "A route is a bus's day: the runs that one vehicle, driver and aid drive one after "
              "another. Adds four columns to the list; the last three columns then show capacity "
              "and time to use one place further left."},

    // The run editor
    FieldText{"Run", "cmbRunFamily",
              "Runs that are planned together carry the same family. It is a criterion of searches "
              "and a group of reports; times, stops and checks do not depend on it."},
    FieldText{"Run", "cmbLOCCODE",
              "The yard or area that looks after the run. A criterion of searches and a group of "
              "reports. The garage that dead-head starts from is that of the route, not this."},
    FieldText{"Run", "cmbVEHTYPE",
              "Its seats count while the run is on no route, or its route has no vehicle; "
              "otherwise the vehicle of the route decides. It also says which special needs can be "
              "carried."},
    FieldText{"Run", "cmbCapacity", Level},
    FieldText{
        "Run", "OverFill",
        "Seats beyond the capacity that may be taken, 0 to 999. The map and the reports add "
        "them to the seats; the warning PASSENGERS does not, and tells of a run that only the "
        "overfill makes room for."},
    FieldText{"Run", "Regenerate",
              "Says that the map has not seen the run's last changes: distances, driving minutes "
              "and directions may be out of date. It is set by changed stops and by a way to the "
              "map that failed, and taken away when the map has answered. Tick it to have Group "
              "Solve find the run."},
    FieldText{"Run", "chkMonday",
              "The days on which the run is driven. Searches, times and checks take no account of "
              "them; the run schedule can show one day, and the export of the timetable gives each "
              "run its days. A run of no day is asked about when you save it."},
    FieldText{
        "Run", "Pickup",
        "Decides what the bell means: a pickup run must not arrive later, a drop off run must "
        "not leave earlier. It also decides whether passengers are added up or taken off "
        "from stop to stop."},
    FieldText{"Run", "BellTime",
              "When the school begins for a pickup run, when it ends for a drop off run. Stops are "
              "compared with it after Calculate Times and when the run is saved; without one "
              "nothing is compared."},
    FieldText{"Run", "TimeToUse",
              "The end of the run that stays where it is when times are calculated. Start Time: "
              "stops are timed on from the start, and the end follows. End Time: they are timed "
              "back from the end, and the start follows."},
    FieldText{"Run", "Seats",
              "The seats of the vehicle on the run's route, without one those of the vehicle type, "
              "at the run's capacity level. The tick in the bar stands at the last seat; what is "
              "hatched behind it has none."},
    FieldText{"Run", "TotalRideTime",
              "Minutes of driving and loading from the first stop to the last, added up from the "
              "stops in the list below."},
    FieldText{"Run", "cmbDirType",
              "Detailed shows every line that the map delivered, the others leave out more and "
              "more of what a driver knows by himself. Printing takes the style chosen here."},
    FieldText{"Run", "GIS_CLOSEDSTREETFILENAME",
              "A file of the mapping software that names streets the run must not use, such as a "
              "closed bridge. It is handed over when the run goes to the map. Empty: all streets."},
    FieldText{"Run", "WarningList",
              "What the last check found: of OK for all rules, of Calculate Times and of a stop's "
              "record for times only. A warning stays until the same rule is checked again. Rules "
              "are switched off for the whole district, not for one run."},

    // One stop of a run
    FieldText{"frmStopTripType", "NUM_STUDENTS",
              "Planned passengers of this stop on this trip type, 0 to 999. It is the number that "
              "seats are compared with; students who are assigned by name stand beside it and do "
              "not change it."},
    FieldText{"frmStopTripType", "LOAD_TIME",
              "Minutes the bus stands here, with decimals: 0.5 is half a minute. Timing the run "
              "adds them between arriving here and leaving for the next stop."},
    FieldText{"frmStopTripType", "TIME_TOSTOP",
              "Minutes from the stop before to this one, with decimals. The map replaces them when "
              "it solves the run."},
    FieldText{"frmStopTripType", "DIST_TOSTOP",
              "Miles from the stop before to this one. The map replaces them when it solves the "
              "run; times do not depend on them."},
    FieldText{"frmStopTripType", "TIME_AT_STOP",
              "When the bus arrives. OK saves it and leaves all other stops alone; Recalculate "
              "Times keeps it and times the whole run around it."},
    FieldText{"frmStopTripType", "RUN_PICKUP_SIDE",
              "The side of the street that the bus stands on. A stop that may be served from the "
              "right-hand side only gets the warning RIGHTSIDE with any other."},
    FieldText{"frmStopTripType", "Comment",
              "Belongs to the stop, not to this trip: every trip type of the stop shows the same "
              "one, and a change here changes it for all."},

    // Stops on a run
    FieldText{"Add_Remove_Stops", "StopList",
              "The stops in the order in which they are driven. Top is first, Bottom is last; a "
              "moved stop exchanges its number with its neighbour and is written at once. Times "
              "are those of before until the run is timed or solved anew."},
    FieldText{"Add_Remove_Stops", "Passengers",
              "Passengers of the regular stops against the seats of the bus at the run's capacity "
              "level."},
    FieldText{"StopSearchPanel", "chkTRIPTYPES",
              "A stop has a record for each trip type, with its own passengers, times and run. "
              "Ticked, those records are found, which is what goes on a run; otherwise the stops."},
    FieldText{"StopSearchPanel", "chkNoStudents",
              "Stops where no passenger is planned and no student is assigned: candidates for "
              "taking off."},
    FieldText{"StopSearchPanel", "cmbGeocoded",
              "Whether the stop has coordinates. A run with a stop that has none cannot go to the "
              "map."},

    // Bell times
    FieldText{"BellTimeChange", "SameGap",
              "Keeps, run by run, the whole minutes between its end and the old bell; seconds are "
              "rounded off once. A run without a bell time has no gap to keep and ends a minute "
              "off its first bell."},
    FieldText{"BellTimeChange", "FixedMinutes",
              "Gives all runs the same gap, whatever it was: runs to school so many minutes before "
              "the new bell, runs home so many after it."},
    FieldText{"BellTimeChange", "NumOfMinutes",
              "Whole minutes between the bell and the end of the run that times are calculated "
              "from. With Start Time a run to school starts, not ends, so long before the bell."},
    FieldText{"BellTimeChange", "TimeToUse",
              "The end of every run that the bell decides on. The stops are timed from there with "
              "their driving and loading minutes, so the other end follows. Each run keeps its own "
              "Time To Use."},
    FieldText{"BellTimeChange", "Change_Run_Time",
              "Ticked, the dead-head of all routes of the district is calculated after the change. "
              "The runs get their new times in either case; without it the empty travel still "
              "follows the old ones."},
    FieldText{
        "BellTimeChange", "MinChanged",
        "Minutes added to the current bell, never to a new one entered before: pressing twice "
        "does not add twice. A minus sign makes it earlier."},

    // Group change
    FieldText{"frmGroupRunChange", "cmbCapacity", Level},
    FieldText{
        "frmGroupRunChange", "OverFill",
        "Seats beyond the capacity that each of the runs may use, 0 to 999. Ticked and empty, "
        "it is emptied for all."},

    // Dead-head
    FieldText{"frmCalcDeadHead", "ResetDeadHead",
              "Ticked, every run first loses its figures and every route counts as failed until it "
              "is calculated, so that nothing old is left where a route fails or you stop. Without "
              "the tick old figures stay until their route has its turn."},
    FieldText{"frmCalcDeadHead", "OpenLegs",
              "Ways that have no figures: -1 where the district's travel table knows no time "
              "between the two stops, -3 where a garage, a first or a last stop is missing."},

    // The map
    FieldText{"Group_Run_Solve", "LeaveOutSolved",
              "Sends only runs that the map has not answered since this form was opened, so that "
              "what failed can be sent again by itself."},

    // The run log
    FieldText{"RunLogInquiry", "cmbActivityCode",
              "1 a stop was added, 2 removed, 3 moved, 5 brought along by a merge. A stop taken "
              "from another run has an entry there, too."},

    // Reports and the schedule
    FieldText{"ReportSelection", "Maps",
              "Drawn when the report is made, from the run as it is stored. The discs have the "
              "numbers of the sheet. Files that are tables have no pictures."},
    FieldText{"ReportSelection", "StudentNames",
              "Names who rides at each stop on the day of printing. Every page and file then says "
              "Confidential, and a file can be read by those who can read its folder."},
    FieldText{"ReportSelection", "OnlyChanged",
              "Keeps runs that were saved, or that a stop was added to, removed from, moved on or "
              "merged into after the day. A report of changes without a day takes the last 30."},
    FieldText{"ReportSelection", "Sort1", SortBy},
    FieldText{"ReportSelection", "Sort2", SortBy},
    FieldText{"ReportSelection", "Sort3", SortBy},
    FieldText{"frmRunSchdl", "TightUnder",
              "Minutes between the end of a run and the start of the next on the same route, less "
              "the way between them. Fewer are amber; less than none overlaps or cannot be driven, "
              "and is red."},
    FieldText{
        "frmRunSchdl", "Day",
        "Shows the runs that are ticked for that weekday. With all days, runs of different days "
        "stand on top of one another and may look as if they overlapped."},
};

}  // namespace

std::span<const FieldText> fieldTexts() { return Texts; }

}  // namespace help
