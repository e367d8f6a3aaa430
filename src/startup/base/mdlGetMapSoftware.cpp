#include "startup/base/mdlGetMapSoftware.h"

#include "startup/base/mdlIniRoutines.h"
#include "startup/base/trap.h"

namespace startup {

void GetMapSoftware() {
    trapped("GetMapSoftware", "mdlGetMapSoftware",
            [] { gMapSoftware = INIGetSettingString("AppSettings", "MAPSoftware", "", gIniFile); });
}

}  // namespace startup
