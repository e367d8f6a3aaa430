#include "startup/mdlGetMapSoftware.h"

#include "startup/mdlIniRoutines.h"
#include "startup/trap.h"

namespace startup {

void GetMapSoftware() {
    trapped("GetMapSoftware", "mdlGetMapSoftware",
            [] { gMapSoftware = INIGetSettingString("AppSettings", "MAPSoftware", "", gIniFile); });
}

}  // namespace startup
