#include "runsearch/search/rundeletion.h"

#include <fmt/format.h>

#include "platform/ado/command.h"
#include "platform/ado/recordset.h"
#include "platform/base/text.h"

namespace runsearch {

namespace {

bool hasRow(ado::Connection& routing, const std::string& query) {
    ado::Recordset rows;
    rows.Open(query, routing);
    return !rows.Eof() && !rows.Bof();
}

}  // namespace

bool runExists(ado::Connection& routing, std::string_view run) {
    return hasRow(routing,
                  fmt::format("Select Run.Run From Run Where Run.Run='{}'", base::trim(run)));
}

Deletion deleteRun(ado::Connection& routing, std::string_view run) {
    const std::string_view id = base::trim(run);
    ado::CommitOnExit unit(routing);
    // The blank before the closing quote belongs to the text; comparisons ignore it.
    if (hasRow(routing, fmt::format("Select Stop_TripType.* From Stop_TripType "
                                    "Where Stop_TripType.Run='{} '",
                                    id))) {
        return Deletion::HasStops;
    }
    ado::Command command;
    command.ActiveConnection(&routing);
    command.CommandText(fmt::format("DELETE RUN.* From Run WHERE RUN.RUN='{} '", id));
    const bool wasThere = command.Execute() > 0;
    unit.commit();
    return wasThere ? Deletion::Done : Deletion::NoSuchRun;
}

}  // namespace runsearch
