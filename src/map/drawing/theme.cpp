#include "map/drawing/theme.h"

#include <algorithm>
#include <iterator>

namespace map {

namespace {

/// One colour in each look: light, dark, and both again in high contrast, where what is written
/// and what it is written on are black and white.
using Colours = std::array<unsigned, 4>;

struct Ink {
    QColor Theme::*of;
    Colours colours;
};

constexpr Ink Inks[] = {
    {&Theme::ground, {0xf2f0ea, 0x1e2125, 0xffffff, 0x000000}},
    {&Theme::streetName, {0x3b3f45, 0xc6ccd4, 0x000000, 0xffffff}},
    {&Theme::parkName, {0x47713a, 0x8fb283, 0x000000, 0xffffff}},
    {&Theme::waterName, {0x33607f, 0x7fa9c6, 0x000000, 0xffffff}},
    {&Theme::way, {0x1f6fd1, 0x5aa5ff, 0x0033b3, 0x66c2ff}},
    {&Theme::wayCasing, {0xffffff, 0x0c0e11, 0xffffff, 0x000000}},
    {&Theme::oldWay, {0xa98a5a, 0x8d7a5c, 0x7a3f00, 0xd9a441}},
    {&Theme::emptyWay, {0x5a6070, 0xc0c6cf, 0x000000, 0xffffff}},
    {&Theme::walk, {0x2c7a4b, 0x7fd1a0, 0x00591f, 0x7dff9b}},
    {&Theme::crossingWalk, {0x8a5300, 0xffc46b, 0x7a2e00, 0xffd24d}},
    {&Theme::warning, {0x8a5300, 0xffc46b, 0x7a2e00, 0xffd24d}},
    {&Theme::onWarning, {0xffffff, 0x16191d, 0xffffff, 0x000000}},
    {&Theme::bus, {0xf5b800, 0xf5b800, 0xf5b800, 0xf5b800}},
    {&Theme::school, {0x16191d, 0xf4f6f8, 0x000000, 0xffffff}},
    {&Theme::garage, {0x5a6070, 0xc0c6cf, 0x000000, 0xffffff}},
    {&Theme::onPlace, {0xffffff, 0x16191d, 0xffffff, 0x000000}},
    {&Theme::candidate, {0x5a6070, 0xaab1bc, 0x000000, 0xffffff}},
    {&Theme::plate, {0xffffff, 0x16181c, 0xffffff, 0x000000}},
    {&Theme::plateInk, {0x16191d, 0xe8ebef, 0x000000, 0xffffff}},
    {&Theme::plateFrame, {0xc9ced6, 0x454b54, 0x000000, 0xffffff}},
    {&Theme::onRun, {0xffffff, 0x0c0e11, 0xffffff, 0x000000}},
};

/// By GroundKind.
constexpr Colours Areas[] = {
    {0xb9d3e4, 0x18303f, 0xb4d4f0, 0x0f3a5c}, {0xd9e7cd, 0x232f27, 0xe2f0da, 0x12301a},
    {0xcbdfbd, 0x212e22, 0xd6e9cb, 0x102a16}, {0xeae4ee, 0x29272f, 0xeeeeee, 0x222222},
    {0xdfd9d0, 0x2c2f34, 0xdddddd, 0x2e2e2e}, {0xcfe0c0, 0x283a2c, 0xd8ebcf, 0x173a20},
    {0x9a9a97, 0x5b616b, 0x444444, 0xb0b0b0}, {0xb9d3e4, 0x18303f, 0x4d8fc7, 0x3d8fd0},
};

/// Filling and casing, by StreetClass.
constexpr Colours Streets[][2] = {
    {{0xf3cf9b, 0x75643f, 0xffd966, 0xa08a3c}, {0xb98643, 0x332c1f, 0x000000, 0x000000}},
    {{0xf3cf9b, 0x75643f, 0xffd966, 0xa08a3c}, {0xb98643, 0x332c1f, 0x000000, 0x000000}},
    {{0xfbe9b7, 0x625c48, 0xffd966, 0xa08a3c}, {0xc5a55c, 0x2d2b25, 0x000000, 0x000000}},
    {{0xfdf6d8, 0x55544c, 0xffffff, 0x7a7a7a}, {0xc9b981, 0x2a2a28, 0x595959, 0x000000}},
    {{0xffffff, 0x474c54, 0xffffff, 0x7a7a7a}, {0xb9b4a8, 0x2a2d32, 0x595959, 0x000000}},
    {{0xffffff, 0x3b4047, 0xffffff, 0x7a7a7a}, {0xd0ccc2, 0x2a2d32, 0x595959, 0x000000}},
    {{0xffffff, 0x3b4047, 0xffffff, 0x7a7a7a}, {0xd0ccc2, 0x2a2d32, 0x595959, 0x000000}},
    {{0xf3cf9b, 0x75643f, 0xffffff, 0x7a7a7a}, {0xb98643, 0x332c1f, 0x595959, 0x000000}},
    {{0xffffff, 0x3b4047, 0xffffff, 0x7a7a7a}, {0xd0ccc2, 0x2a2d32, 0x595959, 0x000000}},
    {{0xffffff, 0x3b4047, 0xffffff, 0x7a7a7a}, {0xd0ccc2, 0x2a2d32, 0x595959, 0x000000}},
};

constexpr Colours Runs[] = {
    {0x1f6fd1, 0x6aaeff, 0x0033b3, 0x66c2ff}, {0xc2410c, 0xff9d66, 0x9a2800, 0xffa366},
    {0x0f766e, 0x4fd1c0, 0x00564f, 0x4dffe1}, {0x7e22ce, 0xc79bff, 0x5c00a3, 0xd9b3ff},
    {0xb45309, 0xe6b84d, 0x6e4200, 0xffd24d}, {0xbe185d, 0xff8fc0, 0x8f003c, 0xff99cc},
    {0x4d7c0f, 0xa8d35f, 0x2f5200, 0xb8ff5c}, {0x334155, 0xc3ccd8, 0x111111, 0xffffff},
};

QColor faded(QColor colour, int alpha) {
    colour.setAlpha(alpha);
    return colour;
}

Theme made(std::size_t look) {
    const auto colour = [look](const Colours& colours) { return QColor::fromRgb(colours[look]); };
    Theme theme;
    for (const Ink& ink : Inks) {
        theme.*ink.of = colour(ink.colours);
    }
    std::transform(std::begin(Areas), std::end(Areas), theme.areas.begin(), colour);
    std::transform(std::begin(Runs), std::end(Runs), theme.runs.begin(), colour);
    for (std::size_t i = 0; i < theme.streets.size(); ++i) {
        theme.streets[i] = {colour(Streets[i][0]), colour(Streets[i][1])};
    }
    return theme;
}

Theme makeLight() {
    Theme theme = made(0);
    theme.streetNameHalo = faded(0xfaf9f6, 224);
    theme.veil = faded(theme.ground, 80);
    return theme;
}

Theme makeDark() {
    Theme theme = made(1);
    theme.streetNameHalo = faded(0x181a1e, 219);
    theme.veil = faded(theme.ground, 30);
    return theme;
}

Theme makeStrong(std::size_t look) {
    constexpr double BroaderWay = 2;
    Theme theme = made(look);
    theme.streetNameHalo = theme.ground;
    theme.veil = Qt::transparent;
    theme.wayMore = BroaderWay;
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
    static const Theme StrongLight = makeStrong(2);
    static const Theme StrongDark = makeStrong(3);
    if (contrast == Contrast::High) {
        return isDark ? StrongDark : StrongLight;
    }
    return isDark ? darkTheme() : lightTheme();
}

}  // namespace map
