#include "map/small/streetplaces.h"

#include "data/lookups/mdlGetItems.h"
#include "platform/base/text.h"
#include "startup/base/mdlDBConnection.h"
#include "startup/base/session.h"

namespace map {

streets::StreetPlaces streetsOfSession() {
    constexpr auto None = "NOT FOUND";  // the look-up's word
    const std::string closed = data::GetGGClosedStreet();
    return {.settings = startup::gIniFile,
            .folder = startup::folderOfFiles(),
            .closed = closed == None ? "" : std::string(base::trim(closed))};
}

}  // namespace map
