#include "runedit/map/Set_StartorEnd.h"

#include "platform/ado/sqltext.h"
#include "platform/base/value.h"

namespace runedit {

std::string startEndSql(const MapRun& run, double seats, std::string_view updateMap) {
    const auto& calcTime = run.countsFromStart() ? run.startTime : run.endTime;
    // The bell time brings the mark that closes it.
    const std::string bellTime = mapTimeText(run.bellTime) + "#";
    std::string sql = "UPDATE StartEnd SET StartEnd.StartorEnd = '" + run.startOrEnd();
    sql += "', StartEnd.[CalcTime] = #" + mapTimeText(calcTime);
    sql += "#, StartEnd.Run='" + ado::escaped(run.run);
    sql += "', StartEnd.VehType='" + ado::escaped(run.vehType);
    sql += "', StartEnd.BellTime=#" + bellTime;
    sql += ", StartEnd.Pickup=" + base::Value(run.pickup).asText();
    sql += ", StartEnd.VehCapacity=" + base::numberText(seats);
    sql += ",StartEnd.UpdateMap=" + std::string(updateMap);
    return sql;
}

void Set_StartorEnd(ado::Connection& connection, const MapRun& run, double seats,
                    std::string_view updateMap) {
    const std::string sql = startEndSql(run, seats, updateMap);
    ado::CommitOnExit unit(connection);  // another program folder may add the row, too
    if (connection.Execute(sql) == 0) {
        connection.Execute("INSERT INTO StartEnd (StartorEnd) VALUES (' ')");
        connection.Execute(sql);
    }
    unit.commit();
}

}  // namespace runedit
