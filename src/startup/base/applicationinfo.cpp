#include "startup/base/applicationinfo.h"

#include "platform/files/files.h"

namespace startup {

ApplicationInfo& applicationInfo() {
    static ApplicationInfo info{"Tarn",         "Vireo",        VIREO_MAJOR,
                                VIREO_MINOR,    VIREO_REVISION, files::programFolder(),
                                "Vireo Routing"};
    return info;
}

}  // namespace startup
