#include "map/ground/zoomrules.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace map {

namespace {

using streets::GroundKind;
using streets::StreetClass;

constexpr double Always = std::numeric_limits<double>::infinity();
constexpr double Never = 0;

struct Rule {
    double shownBelow;
    double namedBelow;
    double feet;         ///< its real width
    double leastPixels;  ///< up to ClogsAbove
    int rank;
};

// By StreetClass.
constexpr std::array<Rule, streets::StreetClasses> Rules{{
    {Always, Always, 46, 3.2, 9},  // motorway
    {Always, Always, 46, 3.2, 8},  // trunk
    {400, 70, 44, 2.6, 7},         // primary
    {200, 70, 40, 2.2, 6},         // secondary
    {100, 26, 34, 1.7, 5},         // tertiary
    {60, 13, 26, 1.1, 3},          // unclassified
    {52, 13, 26, 1.1, 2},          // residential
    {140, Never, 22, 1.2, 4},      // ramp
    {9, 2, 14, 0.8, 1},            // service
    {3.2, Never, 6, 0.8, 0},       // footway
}};

const Rule& ruleOf(StreetClass kind) { return Rules[static_cast<std::size_t>(kind)]; }

constexpr double ClogsAbove = 14;  ///< feet a pixel
constexpr double ClogPower = 0.32;

}  // namespace

double shownBelow(StreetClass kind) { return ruleOf(kind).shownBelow; }

double namedBelow(StreetClass kind) { return ruleOf(kind).namedBelow; }

double shownBelow(GroundKind kind) {
    switch (kind) {
        case GroundKind::Building:
            return 9;
        case GroundKind::Pitch:
            return 12;
        case GroundKind::Stream:
            return 30;
        default:
            return Always;
    }
}

double streetWidth(StreetClass kind, double feetPerPixel) {
    const Rule& rule = ruleOf(kind);
    const double least =
        rule.leastPixels * std::pow(std::min(1.0, ClogsAbove / feetPerPixel), ClogPower);
    return std::max(rule.feet / feetPerPixel, least);
}

int rankOf(StreetClass kind) { return ruleOf(kind).rank; }

}  // namespace map
