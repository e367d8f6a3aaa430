#include "stops/sequence/stoplist.h"

#include "data/lists/listreader.h"
#include "stops/sequence/runstops.h"

namespace stops {

table::TextTable readStopsInSequence(ado::Connection& connection, std::string_view run) {
    using table::CellKind;
    static constexpr data::ListColumn Columns[]{
        {"Stop ID", "STOPID", 1200},
        {"Location", "ADDR1", 2200},
        {"Time At Stop", "TIME_AT_STOP", 1000, CellKind::Time},
        {"Passengers", "NUM_STUDENTS", 0, CellKind::Number},
        {"Trip Type", "TRIPTYPE"},
        {"Stop Type", "STOPTYPE"},
        {"School", "SCHOOL"},
        {"Description", "DESCRIPTION", 2440},
        {"Time to Stop", "TIME_TOSTOP", 0, CellKind::Number},
        {"Distance to Stop", "DIST_TOSTOP", 0, CellKind::Number},
        {"Load Time", "LOAD_TIME", 0, CellKind::Number},
        {"Cum. Time", "CUM_TIME", 0, CellKind::Number},
        {"Cum. Distance", "CUM_MILES", 0, CellKind::Number},
        {"Run ID", "RUN"},
        {"Sequence", "RUNSEQ", 0, CellKind::Number},
        {"Int. ID", "INT_STOPID", 0, CellKind::Number},
        {"ID", "ID", 0, CellKind::Number},
    };
    return data::readList(Columns, runStopsQuery(run), connection);
}

}  // namespace stops
