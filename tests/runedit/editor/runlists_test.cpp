#include "runedit/editor/runlists.h"

#include "runedit/editor/warningtext.h"
#include "startup/base/session.h"
#include "support/districtsession.h"

namespace runedit {

namespace {

using testing::ElementsAre;

/// Rows as texts, cells apart by "|".
std::vector<std::string> lines(const table::TextTable& table) {
    std::vector<std::string> result;
    for (std::size_t row = 0; row < table.rowCount(); ++row) {
        std::string line;
        for (std::size_t column = 0; column < table.columns.size(); ++column) {
            line += (column == 0 ? "" : "|") + table.text(row, column);
        }
        result.push_back(line);
    }
    return result;
}

/// The run "R1" and stops of others that must not show up.
class RunLists : public support::DistrictSession {
protected:
    RunLists() : DistrictSession([](const support::TestDistrict&) {}) {
        byOthers(
            "INSERT INTO STOP(INT_STOPID, STOPID, STOPTYPE, ADDR1, SCHOOL, DESCRIPTION, XPOS, "
            "YPOS) VALUES (1, 'S1', 'REGULAR', '12 Elm Street', ' ', 'Elm', 10, 20), (2, 'S2', "
            "'REGULAR', NULL, NULL, NULL, 0, 0), (3, 'T3', 'DIRECTIONAL', 'Turn', NULL, NULL, 0, "
            "0), (4, 'OAK', 'SCHOOL', NULL, 'OAK', NULL, NULL, NULL), (5, 'S5', 'REGULAR', NULL, "
            "NULL, NULL, 0, 7)");
        byOthers(
            "INSERT INTO STOP_TRIPTYPE(INT_STOPID, TRIPTYPE, RUN, RUNSEQ, NUM_STUDENTS, "
            "TIME_AT_STOP, TIME_TOSTOP, DIST_TOSTOP, LOAD_TIME, CUM_TIME, CUM_MILES) VALUES (4, "
            "'AM', 'R1', 40, 9, '1899-12-30 08:05:30', 9.5075, 3, 0, 21, 5.25), (1, 'AM', 'R1', "
            "10, "
            "12, '1899-12-30 07:30:00', 0, 0, 0.5, 0.5, 0), (2, 'AM', 'R1', 20, NULL, NULL, NULL, "
            "NULL, NULL, NULL, NULL), (3, 'AM', 'R1', 25, 0, NULL, 1, 1, 1, 1, 1), (5, 'AM', 'R1', "
            "30, 1, NULL, 1, 1, 1, 1, 1), (2, 'PM', 'R2', 1, 1, NULL, 1, 1, 1, 1, 1)");
    }
    [[nodiscard]] static ado::Connection& routing() { return *startup::gcnRouting; }
};

TEST_F(RunLists, StopsStandInTheirOrderAndThoseWithoutAPlaceAreRed) {
    const auto [stops, unplaced, totals] = readStopList(routing(), " r1 ");
    EXPECT_THAT(
        lines(stops),
        ElementsAre(
            "S1|12 Elm Street|07:30 AM|12|AM|REGULAR| |Elm|0.00|0.00|0.50|0.50|0.00|R1|10|1|2|1|"
            "|12",
            "S2| ||0|AM|REGULAR| | |0.00|0.00|0.00|0.00|0.00|R1|20|2|3|2|No place on the map|12",
            "S5| ||1|AM|REGULAR| | |1.00|1.00|1.00|1.00|1.00|R1|30|5|5|3||13",
            "OAK| |08:05 AM|9|AM|SCHOOL|OAK| |9.51|3.00|0.00|21.00|5.25|R1|40|4|1|4|No place on "
            "the map|13"));
    EXPECT_EQ(totals.stops, 4);
    EXPECT_EQ(totals.passengers, 13);
    EXPECT_EQ(totals.miles, 4);
    EXPECT_DOUBLE_EQ(totals.minutes, 12.0075);
    const auto home = readStopList(routing(), "R1", false).table;
    EXPECT_EQ(home.text(0, "On the Bus") + home.text(2, "On the Bus"), "10");
    for (std::size_t column = 0; column < 17; ++column) {
        EXPECT_FALSE(stops.isRed(0, column) || stops.isRed(2, column)) << column;
        EXPECT_TRUE(stops.isRed(1, column) && stops.isRed(3, column)) << column;
    }
    EXPECT_THAT(unplaced, ElementsAre(1, 3));

    byOthers("UPDATE STOP SET XPOS = 1");
    EXPECT_TRUE(readStopList(routing(), "R1").unplaced.empty());
    EXPECT_TRUE(readStopList(routing(), "nobody").unplaced.empty());
}

TEST_F(RunLists, DirectionsInThreeStyles) {
    byOthers(
        "INSERT INTO RUNDIR(ID, RUN, LINETYPE, LINETEXT1, LINETEXT2, SHORTTEXT, SHORTDIST) VALUES "
        "(7, 'R1', 'Total', 'Total distance', '9 miles', 'Total', '9'), "
        "(1, 'R1', 'Start', 'Start at Elm', 'SKIP', 'Elm', ' skip '), "
        "(2, 'R1', 'Direction', 'Turn left onto Oak Street', '1.5 miles', 'left Oak', '1.5'), "
        "(3, 'R1', 'Landmark', 'Railroad crossing', 'SKIP', 'Crossing', ''), "
        "(4, 'R1', 'Turn Back', 'Turn back', NULL, 'Back', NULL), "
        "(5, 'R1', 'Stop', 'Stop S1', '07:30 AM', 'S1', ''), (6, 'R2', 'Stop', 'Not mine', '', "
        "'', '')");
    const auto shown = [](const char* choice) {
        return lines(readDirections(routing(), "R1 ", directionStyle(choice)));
    };
    EXPECT_THAT(shown("Very Brief"), ElementsAre("Elm| ", "left Oak|1.5", "S1| ", "Total|9"));
    EXPECT_THAT(shown("Brief"),
                ElementsAre("Start at Elm| ", "Turn left onto Oak Street|1.5 miles", "Turn back| ",
                            "Stop S1|07:30 AM", "Total distance|9 miles"));
    EXPECT_THAT(
        shown("Detailed"),
        ElementsAre("Start at Elm| ", "Turn left onto Oak Street|1.5 miles", "Railroad crossing| ",
                    "Turn back| ", "Stop S1|07:30 AM", "Total distance|9 miles"));
    EXPECT_EQ(shown(""), shown("Detailed"));
}

TEST_F(RunLists, WarningsAreNewestFirst) {
    EXPECT_EQ(readWarnings(routing(), "R1").rowCount(), 0U);
    byOthers(
        "INSERT INTO RUNWARNING(RUN, WARNINGTYPE, WARNINGDATETIME, WARNINGTEXT) VALUES "
        "('R1', 'RIDETIME', '2026-01-31 08:05:09', 'Too long.'), "
        "('R1', 'BELL', '2026-02-01 00:00:00', 'Too late.'), ('R2', 'BELL', NULL, 'Not mine.')");
    EXPECT_THAT(lines(readWarnings(routing(), "R1")),
                ElementsAre("2/1/2026|BELL|Too late.", "1/31/2026 8:05:09 AM|RIDETIME|Too long."));
    EXPECT_EQ(warningsCaption(false), "No Warnings");
    EXPECT_EQ(warningsCaption(true), " * Warnings *");
}

TEST_F(RunLists, SeatsAreThoseOfTheTypeAtItsLevel) {
    district.sql(data::DatabaseFile::Trip,
                 "INSERT INTO VEHTYPE(VEHTYPE, HIGH, MEDIUM, LOW) VALUES ('BUS', 70, 60, NULL)");
    EXPECT_EQ(seatsOf("BUS", "High"), 70);
    EXPECT_EQ(seatsOf("bus ", " "), 60);
    EXPECT_EQ(seatsOf("BUS", "Low"), 0);
    EXPECT_FALSE(seatsOf("BUS", "Tall") || seatsOf("", "High") || seatsOf("GONE", "High"));
}

TEST(WarningText, IsTakenApartForReading) {
    const std::string text =
        "StopID: 12 A has an arrival time. The stop's time is: 7.50.  The  vehicle was late.";
    EXPECT_THAT(statementsOf(text),
                ElementsAre("StopID: 12 A has an arrival time.", "The stop's time is: 7.50.",
                            "The  vehicle was late."));
    EXPECT_EQ(stopNamedIn(text), "12 A");
    EXPECT_EQ(stopNamedIn("In Run: R1StopID: 7 was marked as Right.  *** "), "7");
    EXPECT_THAT(statementsOf("A was marked.  *** "), ElementsAre("A was marked."));
    EXPECT_EQ(stopNamedIn("no stop"), "");
    EXPECT_EQ(mendingFieldOf("LATE BELL")->control, "BellTime");
    EXPECT_EQ(mendingFieldOf("RIGHTSIDE"), nullptr);
}

TEST_F(RunLists, SpecialNeedsCountThePassengersOfTheRunsTripType) {
    byOthers(
        "INSERT INTO SPECIALNEEDS(SPECIALNEEDS_CODE, DESCRIPTION) VALUES ('WC', 'Wheelchair'), "
        "('AIDE', NULL)");
    byOthers(
        "INSERT INTO STU_SPECIALNEEDS(INT_STUID, SPECIALNEEDS_CODE) VALUES (1, 'WC'), (2, 'WC'), "
        "(2, 'AIDE'), (3, 'WC'), (4, 'GONE')");
    byOthers(
        "INSERT INTO STU_ADDR_TRIPTYPE(INT_STUID, ADDRESSID, TRIPTYPE, INT_STOPID) VALUES "
        "(1, 1, 'AM', 1), (2, 1, 'AM', 2), (3, 1, 'PM', 2), (4, 1, 'AM', 1)");
    EXPECT_THAT(lines(readSpecialNeeds(routing(), "R1")),
                ElementsAre("AIDE| |1", "WC|Wheelchair|2"));
    EXPECT_THAT(lines(readSpecialNeeds(routing(), "R2")), ElementsAre("WC|Wheelchair|1"));
}

}  // namespace

}  // namespace runedit
