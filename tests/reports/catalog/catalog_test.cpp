#include <csignal>
#include <numeric>
#include <set>

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/ado/recordset.h"
#include "platform/base/text.h"
#include "reports/catalog/preparation.h"
#include "reports/catalog/worksession.h"
#include "runsearch/schedule/summaries.h"
#include "runsearch/search/runsearchquery.h"
#include "startup/base/session.h"
#include "support/districtsession.h"
#include "support/errors.h"
#include "support/runbuilder.h"
#include "tools/district/make/madedistrict.h"

namespace reports {

namespace {

using Lines = std::vector<std::string>;

const base::Date Now = base::Date::of(2026, 11, 21, 9, 41);

Sources sources() { return {*startup::gcnRouting, *startup::gcnVIREORpt, "PLANNER", Now}; }

Request asked(std::string report, std::string runs = "SELECT RUN.* FROM RUN") {
    return {.report = std::move(report), .runs = std::move(runs)};
}

std::string piecesOf(const std::vector<SheetWay::Piece>& pieces) {
    std::string text;
    for (const auto& piece : pieces) {
        text += piece.strong ? "*" + piece.text + "*" : piece.text;
    }
    return text;
}

/// An item in one line; cells as a reader sees them, parted by "|".
struct Told {
    const Report& report;

    [[nodiscard]] std::string cells(const std::vector<base::Value>& values) const {
        std::string text;
        for (std::size_t i = 0; i < values.size(); ++i) {
            text += (i == 0 ? "" : "|") + cellText(report.columns[i].kind, values[i]);
        }
        return text;
    }
    std::string operator()(const GroupHead& head) const {
        return fmt::format("{}: {}{}", head.title, head.note, head.newPage ? " (new page)" : "");
    }
    std::string operator()(const Row& row) const { return cells(row.cells); }
    std::string operator()(const Remark& remark) const { return remark.text; }
    std::string operator()(const Totals& totals) const {
        return totals.title + " = " + cells(totals.cells);
    }
    std::string operator()(const SheetHead& head) const {
        std::string text = fmt::format("[{}] {}, {}, {}, {}:", head.plate, head.title,
                                       head.subtitle, head.right, head.rightSub);
        for (const Fact& fact : head.facts) {
            text += fmt::format(" {} {},", fact.label, fact.value);
        }
        return text;
    }
    std::string operator()(const SheetStop& stop) const {
        return fmt::format("{}|{}|{}|{}{}|{}|{}/{}|{}|{}", stop.number,
                           cellText(CellKind::Time, stop.time), stop.place, stop.corner,
                           stop.leftSide ? " LEFT" : "", fmt::join(stop.names, " & "),
                           stop.students.value_or(0), stop.onBus.value_or(0),
                           cellText(CellKind::Decimal, stop.miles), stop.note);
    }
    std::string operator()(const SheetWay& way) const {
        return fmt::format("{}> {} {}", static_cast<int>(way.sign), piecesOf(way.pieces),
                           cellText(CellKind::Decimal, way.miles));
    }
    std::string operator()(const SheetRemark& remark) const { return piecesOf(remark.pieces); }
    std::string operator()(const SheetMap& /*map*/) const { return "map"; }
};

Lines told(Content& content) {
    Lines lines;
    while (const auto item = content.next()) {
        lines.push_back(std::visit(Told{content.report()}, *item));
    }
    return lines;
}
Lines told(const Request& request) { return told(*prepare(sources(), request)->content()); }

std::int64_t workRows() {
    std::int64_t rows = 0;
    for (const char* table :
         {"RPT_SESSION", "RPT_RUN", "RPT_STOP", "RPT_STUDENT", "RPT_LINE", "RPT_NOTE"}) {
        ado::Recordset count;
        count.Open(fmt::format("SELECT COUNT(*) AS N FROM {}", table), *startup::gcnVIREORpt);
        rows += count["N"].asInteger();
    }
    return rows;
}

/// The sample district with empty trips, some through the garage, some not calculated.
class Sample : public testing::Test {
protected:
    Sample() {
        district_.execute(data::DatabaseFile::Routing,
                          "UPDATE RUN SET DEADHEAD_BEFORE_TIME = rowid % 9 - 1,"
                          " DEADHEAD_MILES_BEFORE = 3.5 + rowid % 5, DEADHEAD_AFTER_TIME ="
                          " rowid % 7 - 1, DEADHEAD_MILES_AFTER = 2.25 + rowid % 3,"
                          " SHOW_BOTH_BEG = rowid % 4 = 0, SHOW_BOTH_END = rowid % 6 = 0,"
                          " VEHTYPE = CASE rowid % 5 WHEN 0 THEN ' ' ELSE VEHTYPE END");
        session_.start(district_.folder() + "/vireo");
    }

    tools::district::MadeDistrict district_;
    support::TestSession session_;
};

}  // namespace

// The schedule sums up in memory, from its own reading of the runs.
TEST_F(Sample, SummariesSayWhatTheScheduleSays) {
    using schedule::Grouping;
    const auto runs = runsearch::runSearchQuery({})->runsSchool;
    const auto plan = schedule::readPlan(*startup::gcnRouting, runs);
    std::vector<int> all(plan.runs.size());
    std::iota(all.begin(), all.end(), 0);
    for (const auto& [id, grouping] : {std::pair{"summary-school", Grouping::School},
                                       std::pair{"summary-school-type", Grouping::SchoolType},
                                       std::pair{"summary-trip-type", Grouping::TripType},
                                       std::pair{"summary-location", Grouping::Location}}) {
        auto summaries = schedule::summarise(plan, all, grouping);
        summaries.groups.push_back(summaries.all);
        auto expected = summaries.groups.begin();
        const auto prepared = prepare(sources(), asked(id, runs));
        const auto content = prepared->content();
        while (const auto item = content->next()) {
            const auto* row = std::get_if<Row>(&*item);
            const auto& cells = row != nullptr ? row->cells : std::get<Totals>(*item).cells;
            ASSERT_NE(expected, summaries.groups.end());
            EXPECT_EQ(cells[1].asInteger(), expected->runs) << id;
            EXPECT_EQ(cells[2].asInteger(), expected->students) << id;
            EXPECT_EQ(cells[3].asInteger(), expected->stops) << id;
            EXPECT_NEAR(cells[4].asNumber(), expected->hours, 1e-6) << id;
            EXPECT_NEAR(cells[5].asNumber(), expected->miles, 1e-6) << id;
            EXPECT_NEAR(cells[6].asNumber(), expected->emptyMiles, 1e-6) << id;
            EXPECT_NEAR(cells[9].asNumber(), 2.5 * (expected->miles + expected->emptyMiles), 1e-6);
            ++expected;
        }
        EXPECT_EQ(expected, summaries.groups.end()) << id;
    }
}

// Every report is made of exactly the runs of the search, whatever else is at work in the file, and
// leaves nothing there.
TEST_F(Sample, ReportsOfTwoProgramsAtOnceKeepApart) {
    const auto firstRuns = std::string("SELECT RUN.* FROM RUN WHERE RUN.RUN LIKE '10%'");
    const auto otherRuns = std::string("SELECT RUN.* FROM RUN WHERE RUN.RUN LIKE '11%'");
    const auto ids = [](const std::string& runs) {
        const auto prepared = prepare(sources(), asked("run-list-short", runs));
        std::set<std::string> found;
        const auto content = prepared->content();
        while (const auto item = content->next()) {
            if (const auto* row = std::get_if<Row>(&*item)) {
                found.insert(row->cells[0].asText());
            }
        }
        return found;
    };
    const auto expected = ids(firstRuns);
    EXPECT_EQ(static_cast<std::int64_t>(expected.size()),
              district_.number("SELECT COUNT(*) FROM RUN WHERE RUN LIKE '10%'"));
    for (const Report& report : reportsOf("RUNSEARCH")) {
        const auto alone = told(asked(report.id, firstRuns));
        auto other = prepare(sources(), asked("run-stops", otherRuns));
        const auto read = other->content();
        (void)read->next();
        auto prepared = prepare(sources(), asked(report.id, firstRuns));
        EXPECT_GE(prepared->runs(), expected.size()) << report.id;
        const auto left = read->size();
        std::size_t rows = 0;
        while (const auto item = read->next()) {
            rows += std::holds_alternative<Row>(*item) ? 1 : 0;
        }
        EXPECT_EQ(rows, left);
        other.reset();
        EXPECT_EQ(told(*prepared->content()), alone) << report.id;
        EXPECT_EQ(told(*prepared->content()), alone) << report.id;
        prepared.reset();
        EXPECT_EQ(workRows(), 0) << report.id;
    }
}

TEST_F(Sample, RowsOfAProgramThatWasKilledAreRemovedThoseOfARunningOneStay) {
    const auto sessionOf = [](const std::string& owner) {
        startup::gcnVIREORpt->Execute("INSERT INTO RPT_SESSION (OWNER) VALUES ('" + owner + "')");
        startup::gcnVIREORpt->Execute(
            "INSERT INTO RPT_STOP (SESSION, RUNID) SELECT MAX(S.SESSION), 1 FROM RPT_SESSION AS S");
    };
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    const pid_t other = ::fork();
    if (other == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        const auto mark = processMark();
        (void)!::write(pipe[1], mark.data(), mark.size());
        ::pause();
        ::_exit(0);
    }
    std::string mark(300, ' ');
    mark.resize(static_cast<std::size_t>(::read(pipe[0], mark.data(), mark.size())));
    sessionOf(mark);
    (void)prepare(sources(), asked("run-stops"));
    EXPECT_EQ(workRows(), 2);
    ::kill(other, SIGKILL);
    ::waitpid(other, nullptr, 0);
    sessionOf(processMark());
    sessionOf("another start of the machine, as far as one can read it");
    (void)prepare(sources(), asked("run-stops"));
    EXPECT_EQ(workRows(), 2);  // its own
}

TEST_F(Sample, StoppedOrRefusedAPreparationLeavesNothing) {
    int questions = 0;
    EXPECT_EQ(prepare(sources(), asked("run-students"), [&](double) { return ++questions < 2; }),
              nullptr);
    EXPECT_EQ(questions, 2);
    EXPECT_EQ(workRows(), 0);
    startup::gcnVIREORpt->session()->database().setLockTimeout(1);
    const auto other = district_.open(data::DatabaseFile::VIREORpt);
    other->begin();
    EXPECT_THROW((void)prepare(sources(), asked("run-list")), store::StoreError);
    other->rollback();
    EXPECT_NE(prepare(sources(), asked("RUN-LIST ")), nullptr);
    EXPECT_THROW((void)prepare(sources(), asked("run list")), base::RunTimeError);
}

// Far more runs than are filled at once, in groups that begin in one part and end in another; the
// store sorts them in one go.
TEST_F(Sample, ManyRunsStandInOneOrder) {
    district_.execute(data::DatabaseFile::Routing,
                      "WITH N(I) AS (SELECT 1 UNION ALL SELECT I + 1 FROM N WHERE I < 1200)"
                      " INSERT INTO RUN (RUN, DESCRIPTION, SCHOOL, STARTTIME) SELECT 'N' || I,"
                      " CASE I % 3 WHEN 0 THEN 'b' || I % 7 WHEN 1 THEN 'B' || I % 5 ELSE NULL END,"
                      " (SELECT S.SCHOOL FROM SCHOOL AS S WHERE I % 4 ="
                      " (SELECT COUNT(*) FROM SCHOOL AS B WHERE B.SCHOOL < S.SCHOOL)),"
                      " CASE I % 6 WHEN 0 THEN NULL ELSE '1899-12-30 0' || I % 9 || ':00:00' END"
                      " FROM N");
    auto request = asked("run-list");
    request.sort = {{"DESCRIPTION", true}, {"STARTTIME", false}};
    int looks = 0;
    const auto prepared = prepare(sources(), request, [&](double) { return ++looks > 0; });
    EXPECT_GT(looks, 10);
    const auto runs = [](const std::string& question) {
        Lines ids;
        ado::Recordset rows;
        for (rows.Open(question, *startup::gcnVIREORpt); !rows.Eof(); rows.MoveNext()) {
            ids.push_back(rows["RUN"].asText());
        }
        return ids;
    };
    const auto shown = runs("SELECT RPT_RUN.RUN FROM RPT_RUN ORDER BY RPT_RUN.ID");
    EXPECT_EQ(shown.size(), static_cast<std::size_t>(district_.number("SELECT COUNT(*) FROM RUN")));
    EXPECT_EQ(shown, runs("SELECT RUN.RUN FROM RUN LEFT JOIN SCHOOL ON RUN.SCHOOL=SCHOOL.SCHOOL "
                          "ORDER BY IIF(NZ(SCHOOL.SCHOOLNAME,' ')=' ','No school',"
                          "SCHOOL.SCHOOLNAME), RUN.DESCRIPTION DESC, RUN.STARTTIME, RUN.RUN"));
    std::size_t inGroups = 0;
    for (const auto& line : told(*prepared->content())) {
        const auto note = line.rfind(": ");
        inGroups += line.ends_with(" runs") && note != std::string::npos
                        ? static_cast<std::size_t>(base::leadingNumber(line.substr(note + 2)))
                        : 0;
    }
    EXPECT_EQ(inGroups, shown.size());
}

// Lines of the map, stops, students and findings are counted by the store itself.
TEST_F(Sample, ListsHoldEveryRowOfTheirTables) {
    const auto rows = [](const char* id) {
        return prepare(sources(), asked(id))->content()->size();
    };
    const auto counted = [&](const std::string& sql) {
        return static_cast<std::size_t>(district_.number("SELECT COUNT(*) FROM " + sql));
    };
    EXPECT_EQ(rows("directions-original"), counted("RUNDIR JOIN RUN USING (RUN)"));
    EXPECT_EQ(rows("directions"), rows("directions-original"));
    EXPECT_EQ(rows("directions-brief"),
              counted("RUNDIR JOIN RUN USING (RUN) WHERE LINETYPE <> 'Landmark'"));
    EXPECT_EQ(rows("directions-very-brief"),
              counted("RUNDIR JOIN RUN USING (RUN) WHERE LINETYPE NOT IN ('Landmark', 'Turn "
                      "Back')"));
    EXPECT_EQ(rows("warnings-by-run"), counted("RUNWARNING JOIN RUN USING (RUN)"));
    EXPECT_EQ(rows("run-stops"),
              counted("STOP_TRIPTYPE AS T JOIN RUN USING (RUN) JOIN STOP AS S ON S.INT_STOPID = "
                      "T.INT_STOPID WHERE STOPTYPE <> 'DIRECTIONAL'"));
    EXPECT_EQ(rows("run-students"),
              counted("STOP_TRIPTYPE AS T JOIN RUN USING (RUN) JOIN STU_ADDR_TRIPTYPE AS A ON "
                      "A.INT_STOPID = T.INT_STOPID AND A.TRIPTYPE = T.TRIPTYPE"));
    double riders = 0;
    double seats = 0;
    base::Value load;
    const auto runList = prepare(sources(), asked("run-list"));
    const auto runs = runList->content();
    while (const auto item = runs->next()) {
        if (const auto* row = std::get_if<Row>(&*item);
            row != nullptr && !row->cells[10].isNull()) {
            riders += row->cells[9].asNumber();
            seats += row->cells[10].asNumber();
        } else if (const auto* totals = std::get_if<Totals>(&*item)) {
            load = totals->cells[11];
        }
    }
    EXPECT_NEAR(load.asNumber(), riders * 100 / seats, 1e-9) << "of the runs whose seats are known";
    const auto since = base::Date::of(2026, 1, 1);
    auto changed = asked("changed-runs");
    changed.changedSince = since;
    const auto prepared = prepare(sources(), changed);
    EXPECT_EQ(prepared->content()->size(),
              counted("RUNLOG JOIN RUN ON RUN = RUNID WHERE LOGDATE > '" + since.iso() + "'") +
                  counted("RUN WHERE changeddt > '" + since.iso() + "'") +
                  counted("RUN WHERE CREATEDDT > '" + since.iso() + "'"));
    EXPECT_EQ(prepared->runs(), counted("RUN WHERE changeddt > '" + since.iso() +
                                        "' OR RUN IN (SELECT RUNID FROM RUNLOG WHERE LOGDATE > '" +
                                        since.iso() + "')"));
}

/// The small district with a run to school and one home that say all that a sheet can say.
class Sheets : public support::DistrictSession {
protected:
    Sheets() {
        support::RunBuilder("A-1")
            .school("OAK")
            .bell("8:00")
            .starts("7:10")
            .ends("7:50")
            .with("PICKUP", true)
            .with("INT_ROUTEID", 1)
            .with("monday", true)
            .with("wednesday", true)
            .with("COMMENT", "Wait for Ann's sister.")
            .with("DEADHEAD_BEFORE_TIME", 12)
            .with("DEADHEAD_MILES_BEFORE", 4.25)
            .with("DEADHEAD_BEFORE_STARTTIME", base::Date::timeOfDay(6, 58))
            .with("DEADHEAD_AFTER_TIME", 5)
            .stop("E1", {.students = 2,
                         .at = "7:10",
                         .stop = 71,
                         .more = {{"RUN_PICKUP_SIDE", "left"}},
                         .ofStop = {{"ADDR1", "12 Elm Street"},
                                    {"DESCRIPTION", "Elm Street at 2nd Avenue"},
                                    {"COMMENT", " (dog)"}}})
            .stop("E2", {.students = 1, .stop = 72, .ofStop = {{"DESCRIPTION", "O'Hara's Mill"}}})
            .stop("T1", {.type = "DIRECTIONAL"})
            .stop("S1", {.at = "7:50", .type = "SCHOOL"})
            .into(district);
        support::RunBuilder("B-1")
            .tripType("PM")
            .school("OAK")
            .starts("15:00")
            .with("INT_ROUTEID", 1)
            .with("ACTIVE", true)
            .with("monday", true)
            .stop("S1", {.at = "15:00"})
            .stop("E2", {.students = 3})
            .into(district);
        byOthers("DELETE FROM RUN WHERE RUN = '101-AM'");
        byOthers("UPDATE STOP SET ADDR1 = '1 Oak Road', STOPTYPE = 'SCHOOL' WHERE STOPID = 'S1'");
        for (const char* line :
             {"71, 'Start', 'Start at 12 Elm Street', 'SKIP'", "71, 'Stop', 'Stop E1', '07:10 AM'",
              "72, 'Direction', 'Turn left onto Main, go east', '1.5 miles'",
              "72, 'Landmark', 'Railroad crossing', 'SKIP'", "72, 'Stop', 'Stop E2', 'SKIP'",
              "1, 'Turn Back', 'Turn back on Main', 'SKIP'", "1, 'Stop', 'Stop S1', '07:50 AM'",
              "1, 'Total', 'Total', '1.5 miles'"}) {
            byOthers(
                fmt::format("INSERT INTO RUNDIR (RUN, INT_STOPID, LINETYPE, LINETEXT1,"
                            " LINETEXT2) VALUES ('A-1', {})",
                            line));
        }
        byOthers(
            "INSERT INTO STUDENT (INT_STUID, STUID, LASTNAME, FIRSTNAME) VALUES"
            " (502, 'ST2', 'O''Hara', 'Zoe'), (503, 'ST3', 'Gone', 'Away')");
        byOthers("INSERT INTO STU_SPECIALNEEDS (INT_STUID, SPECIALNEEDS_CODE) VALUES (502, 'WC')");
        byOthers(
            "INSERT INTO STU_ADDR_TRIPTYPE (INT_STUID, TRIPTYPE, INT_STOPID, STARTDT, ENDDT,"
            " MONDAY) VALUES (502, 'AM', 71, '2026-11-21 00:00:00', NULL, 1),"
            " (501, 'AM', 71, NULL, '2026-11-21 00:00:00', 1),"
            " (503, 'AM', 71, NULL, '2026-11-20 00:00:00', 1)");
    }
};

TEST_F(Sheets, ADriverReadsTheWholeRun) {
    auto request = asked("driver-instructions", "SELECT RUN.RUN FROM RUN WHERE RUN.RUN='A-1'");
    request.options.names = true;
    EXPECT_TRUE(prepare(sources(), request)->content()->heading().confidential);
    EXPECT_EQ(support::joined(told(request), "\n"),
              "[A-1] Oak School, Morning · Monday and Wednesday, Bus B7, Route R1: DRIVER Ann "
              "Smith, AIDE Bo Adams, FIRST STOP 7:10 AM, AT SCHOOL 7:50 AM, BELL 8:00 AM, "
              "STUDENTS 3, MILES –,\n"
              "0|6:58 AM|Leave the bus garage; empty to the first stop|||0/0|4.2|\n"
              "1|7:10 AM|12 Elm Street|at 2nd Avenue LEFT|Hill, Kim & O'Hara, Zoe "
              "(Wheelchair)|2/2||(dog)\n"
              "2> Turn left onto *Main*, go east 1.5\n"
              "5> *Railroad crossing* \n"
              "2||O'Hara's Mill|||1/3||\n"
              "4> Turn back on *Main* \n"
              "0|7:50 AM|Oak School|1 Oak Road||-3/0||\n"
              "Next: run *B-1*, Oak School, from school at 3:00 PM\n"
              "Wait for Ann's sister.\n"
              "Pick up on the right-hand side unless the stop is marked LEFT SIDE.");
}

TEST_F(Sheets, ADayHasAllRunsOfTheRouteAndNamesNobodyUnasked) {
    const auto prepared =
        prepare(sources(), asked("driver-day", "SELECT RUN.RUN FROM RUN WHERE RUN.RUN='B-1'"));
    EXPECT_EQ(prepared->runs(), 2U);
    EXPECT_FALSE(prepared->content()->heading().confidential);
    const auto lines = told(*prepared->content());
    EXPECT_EQ(support::joined(lines, "\n").find("Hill"), std::string::npos);
    EXPECT_THAT(lines, testing::IsSupersetOf(
                           {"0|3:00 PM|Oak School|1 Oak Road||3/3||", "1||O'Hara's Mill|||-3/0||",
                            "There are no directions: the map has not solved this run yet."}));
}

// Runs without times, stops, school, route or seats, and no run at all.
TEST_F(Sheets, EveryReportBearsWhatIsMissing) {
    byOthers("INSERT INTO RUN (RUN) VALUES ('O')");
    byOthers("UPDATE SCHOOL SET SCHOOLNAME = 'St. Mary''s \"<&>\"' WHERE SCHOOL = 'PINE'");
    for (const Report& report : reportsOf("RUNSEARCH")) {
        auto request = asked(report.id);
        request.options.names = report.mayName;
        EXPECT_FALSE(told(request).empty()) << report.id;
        EXPECT_EQ(prepare(sources(), asked(report.id, "  "))->runs(), 0U);
        EXPECT_EQ(told(asked(report.id, "SELECT RUN.* FROM RUN WHERE False")).size(),
                  report.form == Form::Sheet ? 0U : 1U)
            << report.id;
    }
    auto request = asked("run-list");
    request.sort = {{"Run", true}, {"RunSeq"}, {"RunSeq"}, {"NO SUCH"}};
    request.options.breaks = PageBreak::School;
    EXPECT_THAT(told(request),
                testing::IsSupersetOf({"No school: 1 run (new page)", "O||.....|||||||||||",
                                       "Oak School: 3 runs (new page)",
                                       "St. Mary's \"<&>\": 1 run (new page)"}));
    EXPECT_THAT(told(asked("summary-school")).back(), testing::StartsWith("All, 4 schools = |6|"));
    auto students = asked("run-students");
    students.sort = {{"NAME", true}};
    EXPECT_THAT(told(students).at(1), testing::HasSubstr("O'Hara, Zoe"));
    const auto lines = told(request);
    const auto placeOf = [&](const std::string& run) {
        return std::ranges::find_if(lines, [&](const auto& line) { return line.starts_with(run); });
    };
    EXPECT_LT(placeOf("B-1"), placeOf("A-1"));
}

TEST_F(Sheets, RidersAreCountedAlongEachRun) {
    EXPECT_THAT(
        told(asked("run-stops", "SELECT RUN.* FROM RUN WHERE RUN.RUN LIKE '_-1'")),
        testing::ElementsAre(
            "A-1, Oak School: 3 stops",
            "1|7:10 AM|E1|12 Elm Street|Elm Street at 2nd Avenue|Left|0.0|0.0|2|2",
            "2||E2||O'Hara's Mill||0.0|0.0|1|3", "3|7:50 AM|S1|1 Oak Road|Oak School||0.0|0.0|0|3",
            "A-1, Oak School, total = |||||||0.0|3|", "B-1, Oak School: 2 stops",
            "1|3:00 PM|S1|1 Oak Road|Oak School||0.0|0.0|0|3", "2||E2||O'Hara's Mill||0.0|0.0|3|0",
            "B-1, Oak School, total = |||||||0.0|3|", "All runs, 5 stops = |||||||0.0|6|"));
}

}  // namespace reports
