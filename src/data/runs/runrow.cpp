#include "data/runs/runrow.h"

#include "platform/ado/sqltext.h"
#include "platform/base/text.h"

namespace data {

std::string runSql(std::string_view run) {
    return "Select Run.* from RUN WHERE RUN.RUN='" + ado::escaped(run) + "'";
}

bool openRun(ado::Recordset& row, ado::Connection& routing, std::string_view run,
             ado::CursorType type) {
    row.Open(runSql(run), routing, type);
    return !row.Eof();
}

bool runExists(ado::Connection& routing, std::string_view run) {
    ado::Recordset row(
        "Select Run.Run From Run Where Run.Run='" + ado::escaped(base::trim(run)) + "'", routing);
    return !row.Eof();
}

void markForMap(ado::Connection& routing, std::string_view run) {
    routing.Execute("UPDATE RUN SET RUN.REGENERATE=True WHERE RUN.RUN='" +
                    ado::escaped(base::trim(run)) + "'");
}

}  // namespace data
