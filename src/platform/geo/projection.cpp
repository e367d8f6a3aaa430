#include "platform/geo/projection.h"

#include <cmath>

#include <fmt/format.h>
#include <proj.h>

#include "platform/base/error.h"

namespace geo {

namespace {

constexpr double MetresPerFoot = 0.3048;

bool isOnEarth(Degrees place) {
    return std::abs(place.latitude) <= 90 && std::abs(place.longitude) <= 180;
}

}  // namespace

/// The library keeps a context a thread; it would tell on standard error that it finds no database
/// of projections, which this one does not need.
struct Projection::Library {
    std::unique_ptr<PJ_CONTEXT, PJ_CONTEXT* (*)(PJ_CONTEXT*)> context{proj_context_create(),
                                                                      proj_context_destroy};
    std::unique_ptr<PJ, PJ* (*)(PJ*)> projection{nullptr, proj_destroy};

    explicit Library(Degrees centre) {
        proj_log_func(context.get(), nullptr, [](void*, int, const char*) {});
        const auto definition = fmt::format("+proj=aeqd +lat_0={} +lon_0={} +ellps=WGS84",
                                            centre.latitude, centre.longitude);
        projection.reset(proj_create(context.get(), definition.c_str()));
    }
};

Projection::Projection(const Centre& centre)
    : centre_(centre), library_(std::make_unique<Library>(centre.degrees)) {
    if (!isOnEarth(centre.degrees) || library_->projection == nullptr) {
        base::raise(base::errors::InvalidProcedureCall);
    }
}

Projection::~Projection() = default;
Projection::Projection(Projection&&) noexcept = default;
Projection& Projection::operator=(Projection&&) noexcept = default;

Degrees Projection::toDegrees(Feet feet) const {
    const PJ_COORD plane = proj_coord((feet.x - centre_.feet.x) * MetresPerFoot,
                                      (feet.y - centre_.feet.y) * MetresPerFoot, 0, 0);
    const PJ_COORD earth = proj_trans(library_->projection.get(), PJ_INV, plane);
    return {proj_todeg(earth.lp.phi), proj_todeg(earth.lp.lam)};
}

Feet Projection::toFeet(Degrees degrees) const {
    const PJ_COORD earth =
        proj_coord(proj_torad(degrees.longitude), proj_torad(degrees.latitude), 0, 0);
    const PJ_COORD plane = proj_trans(library_->projection.get(), PJ_FWD, earth);
    return {centre_.feet.x + plane.xy.x / MetresPerFoot,
            centre_.feet.y + plane.xy.y / MetresPerFoot};
}

}  // namespace geo
