#include "groupops/deadhead/mdlDeadHead_Process.h"

#include "groupops/deadhead/routedeadhead.h"
#include "startup/base/session.h"
#include "startup/base/trap.h"

namespace groupops {

namespace {

constexpr auto DeadHeadModule = "mdlDeadHead_Process";

}  // namespace

bool Calc_Route_DeadHead(std::int32_t intRouteId, std::int32_t garageStopId) {
    return startup::trapped("Calc_Route_DeadHead", DeadHeadModule, [&] {
        const DeadHeadData data{*startup::gcnRouting, *startup::gcnDeadCross};
        return calculateRoute(data, intRouteId, garageStopId).empty();
    });
}

Travel Get_DeadHead_Travel(std::int32_t a, std::int32_t b) {
    return startup::trapped("Get_DeadHead_Travel", DeadHeadModule,
                            [&] { return readTravel(*startup::gcnDeadCross, a, b); });
}

}  // namespace groupops
