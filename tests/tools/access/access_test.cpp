#include <algorithm>
#include <cstdio>
#include <random>
#include <sstream>

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include "platform/files/files.h"
#include "support/temporaryfolder.h"
#include "tools/access/cells.h"

namespace {

using namespace tools::access;
using namespace std::string_literals;

const std::string Files = VIREO_SOURCE_DIR "/tests/tools/access/files/";

struct Result {
    int code = -1;
    std::string text;  ///< what was written, complaints first
};

/// The program as the import starts it.
Result read(const std::string& file, const std::string& more = {}) {
    const std::string line = fmt::format("'{}' '{}' {} 2>&1", VIREO_READ_ACCESS, file, more);
    Result result;
    std::FILE* pipe = popen(line.c_str(), "r");
    char buffer[4096];
    for (std::size_t got = 0; (got = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;) {
        result.text.append(buffer, got);
    }
    const int status = pclose(pipe);
    result.code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return result;
}

std::string cellOf(const std::string& text, std::size_t column) {
    std::istringstream lines(text);
    std::string line;
    for (int skipped = 0; skipped < 3; ++skipped) {
        std::getline(lines, line);
    }
    std::istringstream cells(line);
    for (std::size_t at = 0; at <= column; ++at) {
        std::getline(cells, line, ',');
    }
    return line;
}

/// Lines but those that end inside quotes.
std::ptrdiff_t recordsOf(const std::string& text) {
    bool isQuoted = false;
    return std::ranges::count_if(text, [&](char letter) {
        isQuoted ^= letter == '"';
        return letter == '\n' && !isQuoted;
    });
}

TEST(AccessTest, TablesOfSeveralVersionsAreReadToTheLastCell) {
    EXPECT_EQ(read(Files + "testV1997.mdb").text,
              "Kind,Name,Rows,Linked To\ntable,Table1,2,\ntable,Table2,0,\ntable,Table3,0,\n"
              "table,Table4,0,\n");
    EXPECT_EQ(read(Files + "testV1997.mdb", "TABLE1").text,
              "A,B,C,D,E,F,G,H,I\n"
              "a,b,0,0,0,0,1981-12-12 00:00:00,0,False\n"
              "abcdefg,hijklmnop,2,222,333333333,444.555,1974-09-21 00:00:00,3.5,True\n");
    EXPECT_EQ(read(Files + "delColTestV2000.mdb", "Table1").text,
              "id,id2,data,data2\n0,2,foo,foo2\n3,5,bar,bar2\n");
    EXPECT_EQ(read(Files + "fixedTextTestV2003.mdb", "users").text,
              "i_user_id,c_user_login,c_user_pwd,c_user_session,c_user_name,i_user_flags,"
              "i_user_type,i_user_merch,c_flag_,d_stamp_\n"
              "1,CORE USER, ,-1,Core User,1,16408,-1,N,2009-11-05 23:41:28\n"
              "2,admin,X03MO1qnZdYdgyfeuILPmQ==,-1,Admin User,1,81928,120,N,"
              "2009-10-22 03:57:13\n");
}

TEST(AccessTest, AMemoIsWholeAndAColumnOfBytesIsNamed) {
    const Result result = read(Files + "test2V2000.mdb", "MSP_PROJECTS");
    EXPECT_EQ(result.code, 0);
    EXPECT_TRUE(result.text.starts_with(
        "The column \"RESERVED_BINARY_DATA\" is left out: it holds bytes, not text.\n"))
        << result.text.substr(0, 200);
    EXPECT_EQ(cellOf(result.text, 2).size(), 348U);
    EXPECT_EQ(cellOf(result.text, 9), "\u00A3");
    EXPECT_EQ(cellOf(result.text, 11), "2006-02-03 08:00:00");
}

TEST(AccessTest, WhatIsNoWholeFileIsToldAndGivesNoSuccess) {
    support::TemporaryFolder folder;
    const std::string file = folder.path() + "some.mdb";
    const std::string whole = files::read(Files + "testV1997.mdb");
    EXPECT_EQ(read(file).text, "It cannot be read.\n");
    for (const std::string& contents : {""s, "SCHOOL,NAME\n"s, std::string(9000, '\0')}) {
        files::write(file, contents);
        EXPECT_EQ(read(file).code, 1);
        EXPECT_NE(read(file).text.find("no Access file"), std::string::npos);
    }
    for (const std::size_t pages : {4U, 10U, 20U}) {
        files::write(file, whole.substr(0, pages * 2048));
        EXPECT_NE(read(file, "Table1").code, 0) << pages << " pages of " << whole.size() / 2048;
    }
    files::write(file, whole.substr(0, whole.size() - 100));
    EXPECT_EQ(read(file).text, "It is cut short: its size is no whole number of pages.\n");
    EXPECT_EQ(read(Files + "testV1997.mdb", "Absent").text,
              "There is no table \"Absent\" in it.\n");
}

TEST(AccessTest, NoDamageIsTakenForOtherRowsWithoutAnEnd) {
    support::TemporaryFolder folder;
    const std::string whole = files::read(Files + "delColTestV2000.mdb");
    std::mt19937 random(7);
    std::uniform_int_distribution<std::size_t> place(0, whole.size() - 1);
    for (int mutant = 0; mutant < 12; ++mutant) {
        std::string damaged = whole;
        for (int fault = 0; fault < 400; ++fault) {
            damaged[place(random)] = static_cast<char>(place(random));
        }
        files::write(folder.path() + "m.mdb", damaged);
        const Result result = read(folder.path() + "m.mdb", "Table1");
        const auto rows = recordsOf(result.text) - 1;
        EXPECT_TRUE(result.code != 0 || rows == 2) << mutant << ": " << result.text;
    }
}

TEST(AccessTest, CellsMeanWhatTheirBytesSay) {
    EXPECT_EQ(dateText(0.3125), "1899-12-30 07:30:00");
    EXPECT_EQ(dateText(-1.25), "1899-12-29 06:00:00");
    EXPECT_EQ(dateText(-657434), "0100-01-01 00:00:00");
    EXPECT_EQ(dateText(2958465.75), "9999-12-31 18:00:00");
    EXPECT_EQ(dateText(0.999999), "1899-12-31 00:00:00");
    EXPECT_EQ(dateText(3e6), "");
    EXPECT_EQ(moneyText(-125000), "-12.5");
    EXPECT_EQ(moneyText(INT64_MIN), "-922337203685477.5808");
    EXPECT_EQ(moneyText(70000), "7");
    EXPECT_EQ(wideText("\xFF\xFE"
                       "Caf\0\xE9\0\0 au"s),
              "Caf\u00E9 au");
    EXPECT_EQ(wideText("\x45\x06\x3D\xD8\x8C\xDE"s), "\u0645\U0001F68C");
    EXPECT_EQ(narrowText("\xB1\xE0\xC2\xEB", "GBK"), "\u7F16\u7801");
    EXPECT_EQ(guidText("\x33\x22\x11\x00\x55\x44\x77\x66\x88\x99\xAA\xBB\xCC\xDD\xEE\xFF"s),
              "{00112233-4455-6677-8899-AABBCCDDEEFF}");
}

}  // namespace
