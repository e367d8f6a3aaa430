#include "runsearch/search/rundeletion.h"

#include <fmt/format.h>

#include "platform/ado/command.h"
#include "platform/ado/recordset.h"
#include "platform/ado/sqltext.h"
#include "platform/base/text.h"

namespace runsearch {

Deletion deleteRun(ado::Connection& routing, std::string_view run) {
    const auto id = ado::escaped(base::trim(run));
    ado::CommitOnExit unit(routing);
    // The blank before the closing quote belongs to the text; comparisons ignore it.
    ado::Recordset stops(fmt::format("Select Stop_TripType.* From Stop_TripType "
                                     "Where Stop_TripType.Run='{} '",
                                     id),
                         routing);
    if (!stops.Eof()) {
        return Deletion::HasStops;
    }
    stops.Close();
    ado::Command command;
    command.ActiveConnection(&routing);
    command.CommandText(fmt::format("DELETE RUN.* From Run WHERE RUN.RUN='{} '", id));
    const bool wasThere = command.Execute() > 0;
    unit.commit();
    return wasThere ? Deletion::Done : Deletion::NoSuchRun;
}

}  // namespace runsearch
