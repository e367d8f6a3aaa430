#include "smalldistrict.h"

namespace {

using Plans = SmallDistrict;

TEST_F(Plans, OfOneShapeServeEveryValue) {
    for (const std::string run : {"R1", "R2", "r1 ", "none", ""}) {
        ado::Recordset runs;
        runs.Open("SELECT RUN.PICKUP FROM RUN WHERE RUN.RUN='" + run + "'", connection);
        const std::string expected = run == "R2"                   ? "False"
                                     : run == "R1" || run == "r1 " ? "True"
                                                                   : "";
        EXPECT_EQ(rowsOf(runs), expected) << run;
    }
}

TEST_F(Plans, AreSharedByRecordsetsThatAreOpenAtTheSameTime) {
    ado::Recordset outer;
    outer.Open("SELECT ID FROM STOP_TRIPTYPE WHERE ID > 0 ORDER BY ID", connection);
    std::string all;
    for (; !outer.Eof(); outer.MoveNext()) {
        ado::Recordset inner;
        inner.Open(
            "SELECT ID FROM STOP_TRIPTYPE WHERE ID > " + outer["ID"].asText() + " ORDER BY ID",
            connection);
        all += rowsOf(inner) + ";";
    }
    EXPECT_EQ(all, "2|3|4;3|4;4;;");
}

TEST_F(Plans, AreForgottenInTheirTurnAndMadeAgain) {
    for (int round = 0; round < 2; ++round) {
        for (int width = 1; width <= 300; ++width) {
            std::string where = "ID = 1";
            for (int i = 1; i < width % 40 + width / 40; ++i) {
                where +=
                    " AND RUNSEQ + " + std::string(static_cast<std::size_t>(width), '0') + "1 > 0";
            }
            ado::Recordset rows;
            rows.Open(
                "SELECT ID AS N" + std::to_string(width) + " FROM STOP_TRIPTYPE WHERE " + where,
                connection);
            ASSERT_EQ(rows.Fields("n" + std::to_string(width)).asInteger(), 1);
        }
    }
}

TEST_F(Plans, VeryLongStatementsWork) {
    std::string where = "RUN.RUN = 'R1'";
    for (int i = 0; i < 2000; ++i) {
        where += " OR RUN.RUN = 'X" + std::to_string(i) + "'";
    }
    ado::Recordset runs;
    runs.Open("SELECT RUN.RUN FROM RUN WHERE " + where, connection);
    EXPECT_EQ(rowsOf(runs), "R1");
}

}  // namespace
