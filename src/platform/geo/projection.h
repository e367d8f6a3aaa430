#pragma once

#include <memory>

namespace geo {

/// A place on the earth, in degrees of WGS 84; north and east are positive.
struct Degrees {
    double latitude = 0;
    double longitude = 0;
};

/// A place on a district's plane, in feet; y grows to the north.
struct Feet {
    double x = 0;
    double y = 0;
};

/// The place that both know: where a plane touches the earth.
struct Centre {
    Degrees degrees;
    Feet feet;
};

/// Between a district's plane and the earth: the azimuthal equidistant projection around a centre.
/// Distances between places are off by 0.3 ft at most 15 miles from it, by 2.4 ft at 30 miles.
class Projection {
public:
    /// Raises InvalidProcedureCall (5) for a centre that is nowhere on the earth.
    explicit Projection(const Centre& centre);
    ~Projection();
    Projection(Projection&&) noexcept;
    Projection& operator=(Projection&&) noexcept;

    [[nodiscard]] Degrees toDegrees(Feet feet) const;
    [[nodiscard]] Feet toFeet(Degrees degrees) const;

private:
    struct Library;
    Centre centre_;
    std::unique_ptr<Library> library_;
};

}  // namespace geo
