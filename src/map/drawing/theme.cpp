#include "map/drawing/theme.h"

namespace map {

namespace {

constexpr int Opaque = 255;

QColor colour(unsigned value) { return QColor::fromRgb(value); }

QColor faded(unsigned value, int alpha) {
    QColor ink = colour(value);
    ink.setAlpha(alpha);
    return ink;
}

// By GroundKind: water, park, wood, school ground, building, pitch, rail, stream.
// By StreetClass: motorway, trunk, primary, secondary, tertiary, unclassified, residential, ramp,
// service, footway.

Theme makeLight() {
    Theme theme;
    theme.ground = colour(0xf2f0ea);
    theme.areas = {colour(0xb9d3e4), colour(0xd9e7cd), colour(0xcbdfbd), colour(0xeae4ee),
                   colour(0xdfd9d0), colour(0xcfe0c0), colour(0x9a9a97), colour(0xb9d3e4)};
    const StreetColours other{colour(0xffffff), colour(0xd0ccc2)};
    theme.streets = {{{colour(0xf3cf9b), colour(0xb98643)},
                      {colour(0xf3cf9b), colour(0xb98643)},
                      {colour(0xfbe9b7), colour(0xc5a55c)},
                      {colour(0xfdf6d8), colour(0xc9b981)},
                      {colour(0xffffff), colour(0xb9b4a8)},
                      other,
                      other,
                      {colour(0xf3cf9b), colour(0xb98643)},
                      other,
                      other}};
    theme.streetName = colour(0x3b3f45);
    theme.streetNameHalo = faded(0xfaf9f6, Opaque * 88 / 100);
    theme.parkName = colour(0x47713a);
    theme.waterName = colour(0x33607f);
    theme.way = colour(0x1f6fd1);
    theme.wayCasing = colour(0xffffff);
    theme.oldWay = colour(0xa98a5a);
    theme.emptyWay = colour(0x5a6070);
    theme.walk = colour(0x2c7a4b);
    theme.crossingWalk = colour(0x8a5300);
    theme.warning = colour(0x8a5300);
    theme.onWarning = colour(0xffffff);
    theme.bus = colour(0xf5b800);
    theme.school = colour(0x16191d);
    theme.garage = colour(0x5a6070);
    theme.onPlace = colour(0xffffff);
    theme.candidate = colour(0x5a6070);
    theme.plate = colour(0xffffff);
    theme.plateInk = colour(0x16191d);
    theme.plateFrame = colour(0xc9ced6);
    theme.runs = {colour(0x1f6fd1), colour(0xc2410c), colour(0x0f766e), colour(0x7e22ce),
                  colour(0xb45309), colour(0xbe185d), colour(0x4d7c0f), colour(0x334155)};
    theme.onRun = colour(0xffffff);
    theme.veil = faded(0xf2f0ea, 80);
    return theme;
}

Theme makeDark() {
    Theme theme;
    theme.isDark = true;
    theme.ground = colour(0x1e2125);
    theme.areas = {colour(0x18303f), colour(0x232f27), colour(0x212e22), colour(0x29272f),
                   colour(0x2c2f34), colour(0x283a2c), colour(0x5b616b), colour(0x18303f)};
    const StreetColours other{colour(0x3b4047), colour(0x2a2d32)};
    theme.streets = {{{colour(0x75643f), colour(0x332c1f)},
                      {colour(0x75643f), colour(0x332c1f)},
                      {colour(0x625c48), colour(0x2d2b25)},
                      {colour(0x55544c), colour(0x2a2a28)},
                      {colour(0x474c54), colour(0x2a2d32)},
                      other,
                      other,
                      {colour(0x75643f), colour(0x332c1f)},
                      other,
                      other}};
    theme.streetName = colour(0xc6ccd4);
    theme.streetNameHalo = faded(0x181a1e, Opaque * 86 / 100);
    theme.parkName = colour(0x8fb283);
    theme.waterName = colour(0x7fa9c6);
    theme.way = colour(0x5aa5ff);
    theme.wayCasing = colour(0x0c0e11);
    theme.oldWay = colour(0x8d7a5c);
    theme.emptyWay = colour(0xc0c6cf);
    theme.walk = colour(0x7fd1a0);
    theme.crossingWalk = colour(0xffc46b);
    theme.warning = colour(0xffc46b);
    theme.onWarning = colour(0x16191d);
    theme.bus = colour(0xf5b800);
    theme.school = colour(0xf4f6f8);
    theme.garage = colour(0xc0c6cf);
    theme.onPlace = colour(0x16191d);
    theme.candidate = colour(0xaab1bc);
    theme.plate = colour(0x16181c);
    theme.plateInk = colour(0xe8ebef);
    theme.plateFrame = colour(0x454b54);
    theme.runs = {colour(0x6aaeff), colour(0xff9d66), colour(0x4fd1c0), colour(0xc79bff),
                  colour(0xe6b84d), colour(0xff8fc0), colour(0xa8d35f), colour(0xc3ccd8)};
    theme.onRun = colour(0x0c0e11);
    theme.veil = faded(0x1e2125, 30);
    return theme;
}

}  // namespace

QColor Theme::run(int colour) const {
    return runs[static_cast<std::size_t>((colour % RunColours + RunColours) % RunColours)];
}

const Theme& lightTheme() {
    static const Theme Light = makeLight();
    return Light;
}

const Theme& darkTheme() {
    static const Theme Dark = makeDark();
    return Dark;
}

}  // namespace map
