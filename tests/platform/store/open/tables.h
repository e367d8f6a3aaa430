#pragma once

#include "platform/store/base/schema.h"

/// A small table with a column of each kind.
inline store::Table everyKind() {
    using store::ColumnKind;
    return {"STOPS",
            {{"ID", ColumnKind::Counter},
             {"RUN", ColumnKind::Code},
             {"DESCRIPTION", ColumnKind::Text},
             {"SEQ", ColumnKind::Integer, true, "0"},
             {"MILES", ColumnKind::Number, false, "1.5"},
             {"LOAD_TIME", ColumnKind::Single},
             {"ACTIVE", ColumnKind::YesNo},
             {"AT", ColumnKind::Date}},
            {"ID"},
            {{{"RUN", "SEQ"}, false}, {{"DESCRIPTION"}, true}}};
}
