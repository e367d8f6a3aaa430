#pragma once

#include <string>

#include <gtest/gtest.h>

#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"
#include "platform/store/base/database.h"
#include "platform/store/open/open.h"
#include "platform/store/open/plainfile.h"
#include "support/errors.h"
#include "support/rows.h"
#include "support/temporaryfolder.h"

/// A district of two runs and four stops, one of them on two runs, with an open connection.
class SmallDistrict : public testing::Test {
protected:
    SmallDistrict() {
        using store::ColumnKind;
        const auto database = store::createFile(path);
        database->setDurability(store::Durability::Crash);
        database->create({"RUN",
                          {{"RUN", ColumnKind::Code},
                           {"DESCRIPTION", ColumnKind::Text},
                           {"BELLTIME", ColumnKind::Date},
                           {"PICKUP", ColumnKind::YesNo},
                           {"INT_ROUTEID", ColumnKind::Integer},
                           {"TOTAL_MILES", ColumnKind::Number}},
                          {"RUN"}});
        database->create({"STOP",
                          {{"INT_STOPID", ColumnKind::Integer},
                           {"STOPID", ColumnKind::Text},
                           {"STOPTYPE", ColumnKind::Code},
                           {"ACTIVE", ColumnKind::YesNo}},
                          {"INT_STOPID"}});
        database->create({"STOP_TRIPTYPE",
                          {{"ID", ColumnKind::Counter},
                           {"INT_STOPID", ColumnKind::Integer},
                           {"RUN", ColumnKind::Code},
                           {"RUNSEQ", ColumnKind::Integer, true, "0"},
                           {"LOAD_TIME", ColumnKind::Single, true, "0"},
                           {"TIME_AT_STOP", ColumnKind::Date},
                           {"ACTIVE", ColumnKind::YesNo, true, "1"},
                           {"NOTE", ColumnKind::Text, true, "'new'"}},
                          {"ID"},
                          {{{"RUN", "RUNSEQ"}, false}}});
        database->execute(
            "INSERT INTO RUN VALUES ('R1', 'Oak ', '1899-12-30 08:00:00', 1, NULL, 3.5),"
            " ('R2', NULL, NULL, 0, 7, 0)");
        database->execute(
            "INSERT INTO STOP VALUES (1, 'S1', 'REGULAR', 1), (2, 'S2', 'REGULAR', 0),"
            " (3, 'S3', 'SCHOOL', 1), (4, 'S4', 'REGULAR', 1)");
        database->execute(
            "INSERT INTO STOP_TRIPTYPE (INT_STOPID, RUN, RUNSEQ, LOAD_TIME) VALUES"
            " (1, 'R1', 1, 0.5), (2, 'R1', 2, 1.1), (3, 'R1', 3, 0), (3, 'R2', 1, 2)");
        connection.Open(path);
    }

    /// What another program sees or does in the file.
    std::string other(const std::string& sql) const { return PlainFile(path).run(sql); }

    support::TemporaryFolder folder{support::TemporaryFolder::Place::Memory};
    std::string path = folder.path() + "routing.mdb";
    ado::Connection connection;
};

using support::errorOf;

/// All rows in one text, parted by commas.
inline std::string rowsOf(ado::Recordset& records) {
    return support::joined(support::rowsOf(records), ",");
}
