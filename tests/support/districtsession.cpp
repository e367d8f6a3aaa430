#include "support/districtsession.h"

#include "platform/ado/session.h"
#include "platform/store/open/open.h"
#include "startup/base/session.h"

namespace support {

DistrictSession::DistrictSession(void (*fill)(const TestDistrict&)) {
    fill(district);
    session.start(district.configFolder());
}

std::shared_ptr<void> DistrictSession::heldByOthers() const {
    for (auto* connection : {&startup::gcnRouting, &startup::gcnRouteWrk, &startup::gcnTrip}) {
        (*connection)->session()->database().setLockTimeout(1);
    }
    auto other = store::open(district.path(data::DatabaseFile::Routing));
    other->begin();
    return other;
}

std::vector<std::string> DistrictSession::rows(std::string_view query) {
    return rowsOf(query, *startup::gcnRouting);
}

std::string DistrictSession::stored(std::string_view query) {
    const auto found = rows(query);
    return found.empty() ? "no row" : found.front();
}

std::string DistrictSession::lastTitle() const {
    return session.boxes.shown.empty() ? "" : session.boxes.shown.back().title;
}

std::string DistrictSession::lastText() const {
    return session.boxes.shown.empty() ? "" : session.boxes.shown.back().text;
}

std::vector<std::string> DistrictSession::taken(std::string base::MsgRequest::*part) {
    std::vector<std::string> parts;
    for (const auto& box : std::exchange(session.boxes.shown, {})) {
        parts.push_back(box.*part);
    }
    return parts;
}

}  // namespace support
