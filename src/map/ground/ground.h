#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/notcopied.h"
#include "platform/geo/projection.h"
#include "streets/base/streetmap.h"

namespace map {

/// Asked in between by what takes long: false where nobody waits for it any more.
using KeepGoing = std::function<bool()>;

/// Street pieces of one name and class, joined end to end.
struct Stroke {
    streets::StreetClass kind = streets::StreetClass::Residential;
    std::string_view name = {};  ///< spelled out; empty where the street has none
    std::span<const geo::Feet> points = {};
    bool oneWay = false;  ///< driven along its points only
    bool closed = false;  ///< no bus drives it
};

struct Area {
    streets::GroundKind kind = streets::GroundKind::Park;
    std::string_view name = {};
    const std::vector<std::vector<geo::Feet>>* rings = nullptr;  ///< a rail or stream has one, open
};

struct House {
    std::string_view number = {};
    geo::Feet at = {};
};

/// What of the ground lies in a rectangle. Lives no longer than its ground.
struct GroundPart {
    GroundPart() = default;
    GroundPart(GroundPart&&) = default;
    GroundPart& operator=(GroundPart&&) = default;

    std::vector<Area> areas = {};
    std::vector<Stroke> strokes =
        {};  ///< those of one class stand together, the narrowest class first
    std::vector<House> houses = {};

    // What was made for this part only; the spans and names above point here.
    std::deque<std::vector<geo::Feet>> madePoints;
    std::deque<std::string> madeNames;
};

/// What lies below the runs of a district: made once, then read by any thread.
class Ground : private base::NotCopied {
public:
    virtual ~Ground();

    /// What is seen of a rectangle at so many feet a pixel, as the zoom rules say.
    [[nodiscard]] virtual GroundPart partIn(const streets::Box& box, double feetPerPixel) const = 0;
    /// Around all streets; empty where the ground goes on for ever.
    [[nodiscard]] virtual streets::Box extent() const = 0;
    /// Stands on every picture and print; may be empty.
    [[nodiscard]] virtual std::string attribution() const = 0;
    /// Whether buses drive on the right of these streets' middle.
    [[nodiscard]] virtual bool hasSides() const = 0;
};

/// The streets of a file; `closed` are the pieces that no bus drives, ascending.
[[nodiscard]] std::shared_ptr<const Ground> streetGround(
    std::shared_ptr<const streets::StreetMap> streets, const std::vector<std::uint32_t>& closed);
/// Numbered streets and avenues as a rule, in the middle of blocks of so many feet.
[[nodiscard]] std::shared_ptr<const Ground> gridGround(double blockFeet);
/// Nothing but ground, for a district without streets.
[[nodiscard]] std::shared_ptr<const Ground> bareGround();

}  // namespace map
