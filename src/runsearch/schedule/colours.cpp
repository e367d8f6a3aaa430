#include "runsearch/schedule/colours.h"

#include "platform/controls/tones.h"
#include "runsearch/schedule/plan.h"

namespace schedule {

namespace {

constexpr int DarkerByTurn = 125;
constexpr int LighterStrong = 112;
constexpr int DarkerStrong = 150;

const Colours Light{
    .zones = {{{"#8fa6e6", "#2f478f", "#4a63b8"},
               {"#cfe6fb", "#2f74ad", "#6fb1e4"},
               {"#7cc49a", "#1f7044", "#2f9460"},
               {"#f6d6e6", "#a8407c", "#e39ac4"},
               {"#a3927a", "#5c4a2e", "#6e5a3c"}}},
    .noZone = {"#e4e6ea", "#6b727b", "#e4e6ea"},
    .words = "#1d2126",
    .ground = "#ffffff",
    .oddRow = "#f7f8fa",
    .heads = "#fafbfc",
    .grid = "#eaecef",
    .hours = "#d5d9df",
    .frame = "#c3c8cf",
    .soft = "#565e69",
    .idle = "#5f6873",
    .emptyTrip = "#6b7583",
    .red = "#c4161c",
    .onRed = "#ffffff",
    .redWords = "#b01116",
    .amber = "#ffb81c",
    .amberLine = "#8a5300",
    .onAmber = "#1d2126",
    .accent = "#1f6fd1",
    .accentFill = "#1f6fd1",
    .curve = "#7f8da0",
    .curveOut = "#dde2e8",
};

const Colours Dark{
    .zones = {{{"#3c4da8", "#8fa2f0", "#6f84e0"},
               {"#2c769d", "#9bd4f5", "#8fd0f5"},
               {"#2b6b46", "#74c796", "#55b883"},
               {"#a1527e", "#f0a6cf", "#e79cc6"},
               {"#48392a", "#c9b08c", "#8a7046"}}},
    .noZone = {"#474d56", "#a3abb6", "#474d56"},
    .words = "#ffffff",
    .ground = "#1a1c20",
    .oddRow = "#1f2227",
    .heads = "#1f2227",
    .grid = "#292d33",
    .hours = "#3a3f47",
    .frame = "#4a5059",
    .soft = "#a9b0ba",
    .idle = "#a9b0ba",
    .emptyTrip = "#96a1af",
    .red = "#ff5a55",
    .onRed = "#1a1c20",
    .redWords = "#ff8a85",
    .amber = "#ffc247",
    .amberLine = "#ffc247",
    .onAmber = "#1d2126",
    .accent = "#5a9bec",
    .accentFill = "#2f73c8",
    .curve = "#6f7c8c",
    .curveOut = "#3b424c",
};

/// Black and white, and the zones as far from their words as those are from the ground.
Colours strong(Colours colours, const QColor& ink, const QColor& ground, const QColor& between) {
    for (ZoneColours& zone : colours.zones) {
        zone.fill =
            ground == Qt::white ? zone.fill.lighter(LighterStrong) : zone.fill.darker(DarkerStrong);
        zone.edge = ink;
    }
    colours.noZone = {ground, ink, between};
    for (QColor* line : {&colours.words, &colours.hours, &colours.frame, &colours.soft,
                         &colours.idle, &colours.emptyTrip, &colours.curve}) {
        *line = ink;
    }
    for (QColor* area : {&colours.ground, &colours.oddRow, &colours.heads}) {
        *area = ground;
    }
    colours.grid = colours.curveOut = between;
    return colours;
}

Colours strongLight() {
    Colours colours = strong(Light, Qt::black, Qt::white, "#8c8c8c");
    colours.red = "#a30d12";
    colours.redWords = "#8b0000";
    colours.amberLine = "#5c3700";
    colours.onAmber = Qt::black;
    colours.accent = colours.accentFill = "#003e92";
    return colours;
}

Colours strongDark() {
    Colours colours = strong(Dark, Qt::white, Qt::black, "#737373");
    colours.red = colours.redWords = "#ffb3b0";
    colours.onRed = colours.onAmber = Qt::black;
    colours.accent = "#ffe14d";
    colours.accentFill = "#0046a6";
    return colours;
}

}  // namespace

ZoneColours Colours::zone(int place) const {
    if (place == None) {
        return noZone;
    }
    const auto count = static_cast<int>(zones.size());
    auto colours = zones[static_cast<std::size_t>(place % count)];
    for (int turn = 0; turn < place / count; ++turn) {
        colours.fill = colours.fill.darker(DarkerByTurn);
        colours.solid = colours.solid.darker(DarkerByTurn);
    }
    return colours;
}

const Colours& coloursFor(const QPalette& palette) {
    static const Colours onWhite = strongLight();
    static const Colours onBlack = strongDark();
    const bool dark = controls::isDark(palette);
    return controls::isHighContrast(palette) ? (dark ? onBlack : onWhite) : dark ? Dark : Light;
}

const Colours& coloursOfPaper() { return Light; }

}  // namespace schedule
