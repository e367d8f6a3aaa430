#include "stops/sequence/runhead.h"

#include "data/runs/runrow.h"
#include "platform/ado/recordset.h"
#include "platform/base/text.h"
#include "runedit/validation/checkedrun.h"

namespace stops {

RunHead readRunHead(ado::Connection& routing, ado::Connection& trip, const std::string& run) {
    RunHead head;
    ado::Recordset row;
    if (!data::openRun(row, routing, run)) {
        return head;
    }
    const auto text = [&](const char* field) {
        return std::string(base::trim(row[field].textView()));
    };
    head.exists = true;
    head.description = text("DESCRIPTION");
    head.tripType = text("TRIPTYPE");
    head.school = text("SCHOOL");
    row.Close();
    // Vehicle and capacity as the validation takes them.
    const auto checked = runedit::readCheckedRun(run, 0, {routing, trip});
    head.bell = checked.bell;
    head.isPickup = checked.pickup;
    head.vehicle = base::trim(checked.vehicle);
    head.vehType = base::trim(checked.vehType);
    head.capacityLevel = checked.capacityLevel;
    return head;
}

}  // namespace stops
