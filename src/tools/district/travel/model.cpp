#include "tools/district/travel/model.h"

#include <algorithm>

#include "data/schema/schema.h"

namespace tools::district {

namespace {

bool timed(const Visit& visit) { return visit.stop->type != data::stoptype::Directional; }

}  // namespace

std::int64_t Run::firstStop() const {
    const auto first = std::ranges::find_if(visits, timed);
    return first == visits.end() ? 0 : first->stop->id;
}

std::int64_t Run::lastStop() const {
    const auto last = std::find_if(visits.rbegin(), visits.rend(), timed);
    return last == visits.rend() ? 0 : last->stop->id;
}

int Run::timedStops() const { return static_cast<int>(std::ranges::count_if(visits, timed)); }

}  // namespace tools::district
