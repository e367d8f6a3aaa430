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

constexpr double BroaderWay = 2;

/// Streets of one look but for the large ones.
void setStreets(Theme& theme, const StreetColours& large, const StreetColours& other) {
    using streets::StreetClass;
    theme.streets.fill(other);
    for (const auto kind : {StreetClass::Motorway, StreetClass::Trunk, StreetClass::Primary}) {
        theme.streets[static_cast<std::size_t>(kind)] = large;
    }
}

/// Ink for all that is written and ground for all that it is written on.
void setInks(Theme& theme, const QColor& ink, const QColor& ground) {
    for (QColor* of :
         {&theme.streetName, &theme.parkName, &theme.waterName, &theme.emptyWay, &theme.school,
          &theme.garage, &theme.candidate, &theme.plateInk, &theme.plateFrame}) {
        *of = ink;
    }
    for (QColor* of : {&theme.ground, &theme.streetNameHalo, &theme.wayCasing, &theme.onWarning,
                       &theme.onPlace, &theme.plate, &theme.onRun}) {
        *of = ground;
    }
    theme.veil = Qt::transparent;
    theme.wayMore = BroaderWay;
}

Theme makeStrongLight() {
    Theme theme = makeLight();
    setInks(theme, Qt::black, Qt::white);
    theme.areas = {colour(0xb4d4f0), colour(0xe2f0da), colour(0xd6e9cb), colour(0xeeeeee),
                   colour(0xdddddd), colour(0xd8ebcf), colour(0x444444), colour(0x4d8fc7)};
    setStreets(theme, {colour(0xffd966), colour(0x000000)}, {colour(0xffffff), colour(0x595959)});
    theme.way = colour(0x0033b3);
    theme.oldWay = colour(0x7a3f00);
    theme.walk = colour(0x00591f);
    theme.crossingWalk = theme.warning = colour(0x7a2e00);
    theme.runs = {colour(0x0033b3), colour(0x9a2800), colour(0x00564f), colour(0x5c00a3),
                  colour(0x6e4200), colour(0x8f003c), colour(0x2f5200), colour(0x111111)};
    return theme;
}

Theme makeStrongDark() {
    Theme theme = makeDark();
    setInks(theme, Qt::white, Qt::black);
    theme.areas = {colour(0x0f3a5c), colour(0x12301a), colour(0x102a16), colour(0x222222),
                   colour(0x2e2e2e), colour(0x173a20), colour(0xb0b0b0), colour(0x3d8fd0)};
    setStreets(theme, {colour(0xa08a3c), colour(0x000000)}, {colour(0x7a7a7a), colour(0x000000)});
    theme.way = colour(0x66c2ff);
    theme.oldWay = colour(0xd9a441);
    theme.walk = colour(0x7dff9b);
    theme.crossingWalk = theme.warning = colour(0xffd24d);
    theme.runs = {colour(0x66c2ff), colour(0xffa366), colour(0x4dffe1), colour(0xd9b3ff),
                  colour(0xffd24d), colour(0xff99cc), colour(0xb8ff5c), colour(0xffffff)};
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

const Theme& themeFor(bool isDark, Contrast contrast) {
    static const Theme StrongLight = makeStrongLight();
    static const Theme StrongDark = makeStrongDark();
    if (contrast == Contrast::High) {
        return isDark ? StrongDark : StrongLight;
    }
    return isDark ? darkTheme() : lightTheme();
}

}  // namespace map
