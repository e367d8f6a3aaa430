#include <array>

#include <fmt/format.h>

#include "importing.h"
#include "support/faultof.h"

namespace tools::district {

namespace {

struct BadLine {
    std::string file;
    std::string line;
    std::string column;
    std::string reason;
};

const std::map<std::string, std::string> Headers = {
    {"schools.csv", "School ID,Name,Type,active"},
    {"stops.csv", "stop,type,school,location,x,y,active"},
    {"employees.csv", "number,last name"},
    {"vehicles.csv", "vehicle,type"},
    {"routes.csv", "route,vehicle,driver,aide,garage,location"},
    {"runs.csv",
     "run,school,trip type,route,vehicle type,capacity,bell,start,minutes,students,"
     "overfill,monday"},
    {"run_stops.csv", "run,stop,seq,students,load minutes,drive minutes,time"},
    {"students.csv", "STUID,Surname,school,address,am stop,needs"},
    {"deadhead.csv", "from,to,minutes,miles"},
    {"users.csv", "user,print"}};

/// Faults as people and other systems make them. In each file a good line stands before and after.
const std::vector<BadLine> BadLines = {
    {"schools.csv", ",None,,", "School ID", "must not be empty"},
    {"schools.csv", "  ,None,,", "School ID", "must not be empty"},
    {"schools.csv", "B1,Bad,NOTYPE,", "Type",
     "\"NOTYPE\" does not stand in SCHOOLTYPE (--add-codes puts it there)"},
    {"schools.csv", "B1,Bad,,perhaps", "active", "\"perhaps\" is neither yes nor no"},
    {"schools.csv", "good1,Again,,", "School ID", "stands in line 2 already"},
    {"schools.csv", "B1,Bad", "", "has 2 fields, where the first line has 4"},
    {"schools.csv", "B1,Bad,,,x", "", "has 5 fields, where the first line has 4"},
    {"schools.csv", "\"B\n1\",Bad,,", "School ID",
     "\"B\n1\" holds a line end or another control character"},
    {"schools.csv", "\"B1\"x,Bad,,", "character 5", "text follows the closing quote"},
    {"schools.csv", "B1,\"Bad,,", "character 4", "this quote is never closed"},
    {"schools.csv", std::string(300, 'B') + ",Bad,,", "School ID",
     "\"BBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBBB…\" is longer than 255 bytes"},
    {"stops.csv", ",,,,,,", "stop", "must not be empty"},
    {"stops.csv", "B1,HALT,,,,,", "type", "\"HALT\" does not stand in STOPTYPE"},
    {"stops.csv", "B1,,NOSCHOOL,,,,", "school", "\"NOSCHOOL\" does not stand in SCHOOL"},
    {"stops.csv", "B1,,,MOON,,,", "location",
     "\"MOON\" does not stand in LOCCODE (--add-codes puts it there)"},
    {"stops.csv", "B1,,,,12x,,", "x", "\"12x\" is no number"},
    {"employees.csv", "x7,Bad", "number", "\"x7\" is no whole number"},
    {"employees.csv", "99999999999999999999,Bad", "number",
     "\"99999999999999999999\" is no whole number"},
    {"employees.csv", ",Bad", "number", "must not be empty"},
    {"vehicles.csv", "B1,TANK", "type", "\"TANK\" does not stand in VEHTYPE"},
    {"routes.csv", "B1,NOBUS,,,,", "vehicle", "\"NOBUS\" does not stand in VEHICLE"},
    {"routes.csv", "B1,,99,,,", "driver", "\"99\" does not stand in EMPLOYEE"},
    {"routes.csv", "B1,,,x,,", "aide", "\"x\" is no whole number"},
    {"routes.csv", "B1,,,,NOSTOP,", "garage", "\"NOSTOP\" does not stand in STOP"},
    {"runs.csv", "A#1,,,,,,,,,,,", "run", "\"A#1\" holds #, which a run id must not"},
    {"runs.csv", "A\\1,,,,,,,,,,,", "run", "\"A\\1\" holds \\, which a run id must not"},
    {"runs.csv", "B1,,NIGHT,,,,,,,,,", "trip type", "\"NIGHT\" does not stand in TRIPTYPE"},
    {"runs.csv", "B1,,,NOROUTE,,,,,,,,", "route", "\"NOROUTE\" does not stand in ROUTE"},
    {"runs.csv", "B1,,,,,Full,,,,,,", "capacity", "\"Full\" is none of High, Medium, Low"},
    {"runs.csv", "B1,,,,,,25:00,,,,,", "bell", "\"25:00\" is neither a date nor a time"},
    {"runs.csv", "B1,,,,,,,soon,,,,", "start", "\"soon\" is neither a date nor a time"},
    {"runs.csv", "B1,,,,,,,,-5,,,", "minutes", "\"-5\" is below 0"},
    {"runs.csv", "B1,,,,,,,,2000,,,", "minutes", "\"2000\" is more than a day of minutes"},
    {"runs.csv", "B1,,,,,,,,,-1,,", "students", "\"-1\" is below 0"},
    {"runs.csv", "B1,,,,,,,,,,-1,", "overfill", "\"-1\" is below 0"},
    {"runs.csv", "B1,,,,,,,,,,,2", "monday", "\"2\" is neither yes nor no"},
    {"run_stops.csv", "NORUN,good1,5,,,,", "run", "\"NORUN\" does not stand in RUN"},
    {"run_stops.csv", "good1,NOSTOP,5,,,,", "stop", "\"NOSTOP\" does not stand in STOP"},
    {"run_stops.csv", "good1,good2,,,,,", "seq", "must not be empty"},
    {"run_stops.csv", "good1,good2,-1,,,,", "seq", "\"-1\" is below 0"},
    {"run_stops.csv", "good1,good1,7,,,,", "stop", "stands in line 2 already"},
    {"run_stops.csv", "good1,good2,5,,-1,,", "load minutes", "\"-1\" is below 0"},
    {"run_stops.csv", "good1,good2,5,,,1500,", "drive minutes",
     "\"1500\" is more than a day of minutes"},
    {"students.csv", "B1,Bad,NOSCHOOL,,,", "school", "\"NOSCHOOL\" does not stand in SCHOOL"},
    {"students.csv", "B1,Bad,,,NOSTOP,", "am stop", "\"NOSTOP\" does not stand in STOP"},
    {"students.csv", "B1,Bad,,,,FLY", "needs",
     "\"FLY\" does not stand in SPECIALNEEDS (--add-codes puts it there)"},
    {"students.csv", "good1,Again,,,,", "STUID", "stands in line 2 already"},
    {"deadhead.csv", "good1,NOSTOP,1,1", "to", "\"NOSTOP\" does not stand in STOP"},
    {"deadhead.csv", "good1,good1,2,2", "from", "stands in line 2 already"},
    {"deadhead.csv", "good1,good1,,1", "minutes", "must not be empty"},
    {"deadhead.csv", "good1,good1,-1,1", "minutes", "\"-1\" is below 0"},
    {"users.csv", "B1,maybe", "print", "\"maybe\" is neither yes nor no"}};

/// A line that names rows of the good lines of the other files.
std::string goodLine(const std::string& file, int which) {
    static const std::map<std::string, std::string> Lines = {
        {"schools.csv", "good{0},Good,,y"},
        {"stops.csv", "good{0},,good1,,1,2,y"},
        {"employees.csv", "{0},Good"},
        {"vehicles.csv", "good{0},BUS"},
        {"routes.csv", "good{0},good1,1,,,"},
        {"runs.csv", "good{0},good1,AM,good1,,,8:00,,,,,y"},
        {"run_stops.csv", "good1,good{0},{0},,,,"},
        {"students.csv", "good{0},Good,good1,,good1,"},
        {"deadhead.csv", "good{0},good1,1,1"},
        {"users.csv", "good{0},y"}};
    std::string line = Lines.at(file);
    for (std::size_t at = 0; (at = line.find("{0}")) != std::string::npos;) {
        line.replace(at, 3, std::to_string(which));
    }
    return line;
}

}  // namespace

class Refusals : public Importing {};

TEST_F(Refusals, EachBadLineIsToldWithLineColumnAndReasonAndTheOthersAreTaken) {
    for (const BadLine& bad : BadLines) {
        std::map<std::string, std::string> files;
        for (const auto& [name, header] : Headers) {
            files[name] = header + '\n' + goodLine(name, 1) + '\n' +
                          (name == bad.file ? bad.line + '\n' : "") + goodLine(name, 2) + '\n';
        }
        options_.apply = false;
        const ImportResult result = import(files);
        ASSERT_EQ(result.outcome.refused, 1) << bad.file << ' ' << bad.line;
        const Rejection& told = result.outcome.rejections.front();
        EXPECT_EQ(fmt::format("{} {} {}: {}", told.file, told.line, told.column, told.reason),
                  fmt::format("{} 3 {}: {}", bad.file, bad.column, bad.reason));
        std::int64_t added = 0;
        for (const TableOutcome& table : result.outcome.tables) {
            added += table.added;
        }
        EXPECT_EQ(added, 24) << bad.file << ' ' << bad.line;
    }
    EXPECT_GE(BadLines.size(), 50U);
}

TEST_F(Refusals, RejectedLinesCanBeMendedAndImportedAgain) {
    const ImportResult result =
        import({{"stops.csv", "stop,x\nA,\"1,\"\nB,2\n\"C \"\"c\"\"\",y\n"}});
    EXPECT_EQ(result.outcome.refused, 2);
    EXPECT_EQ(support::contentsOf(options_.rejected.string()),
              "file,line,column,reason,text\r\n"
              "stops.csv,2,x,\"\"\"1,\"\" is no number\",\"A,\"\"1,\"\"\"\r\n"
              "stops.csv,4,x,\"\"\"y\"\" is no number\",\"\"\"C \"\"\"\"c\"\"\"\"\"\",y\"\r\n");
    EXPECT_EQ(rows("SELECT STOPID FROM STOP"), "B");
}

TEST_F(Refusals, FilesThatCannotBeReadAtAllSayWhy) {
    const auto refusal = [this](const std::map<std::string, std::string>& files) {
        return support::faultOf([&] { return import(files); });
    };
    using testing::HasSubstr;
    EXPECT_THAT(refusal({{"stops.csv", ""}}), HasSubstr("is empty"));
    EXPECT_THAT(refusal({{"stops.csv", "x,y\n"}}), HasSubstr("no column for stop"));
    EXPECT_THAT(refusal({{"pupils.csv", "x,y\n"}}), HasSubstr("is none of schools.csv, "));
    EXPECT_THAT(refusal({{"stops.csv", "stop\n"}, {"STOP.csv", "INT_STOPID\n"}}),
                HasSubstr("cannot be imported together"));
}

}  // namespace tools::district
