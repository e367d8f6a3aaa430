#include "stops/sequence/stoplist.h"

#include "data/lists/cells.h"
#include "platform/ado/recordset.h"
#include "stops/sequence/runstops.h"

namespace stops {

table::TextTable readStopsInSequence(ado::Connection& connection, std::string_view run) {
    using table::CellKind;
    table::TextTable table;
    // In the order of the question's fields.
    table.columns = {{"Stop ID", 1200},
                     {"Location", 2200},
                     {"Time At Stop", 1000, CellKind::Time},
                     {"Passengers", 0, CellKind::Number},
                     {"Trip Type"},
                     {"Stop Type"},
                     {"School"},
                     {"Description", 2440},
                     {"Time to Stop", 0, CellKind::Number},
                     {"Distance to Stop", 0, CellKind::Number},
                     {"Load Time", 0, CellKind::Number},
                     {"Cum. Time", 0, CellKind::Number},
                     {"Cum. Distance", 0, CellKind::Number},
                     {"Run ID"},
                     {"Sequence", 0, CellKind::Number},
                     {"Int. ID", 0, CellKind::Number},
                     {"ID", 0, CellKind::Number}};
    ado::Recordset rows;
    rows.Open(runStopsQuery(run), connection);
    for (; !rows.Eof(); rows.MoveNext()) {
        const auto row = table.addRow();
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            data::setCell(table, row, i, rows.Fields(static_cast<int>(i)));
        }
    }
    return table;
}

}  // namespace stops
