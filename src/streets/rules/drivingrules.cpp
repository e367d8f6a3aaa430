#include "streets/rules/drivingrules.h"

#include <charconv>
#include <string>

#include <fmt/format.h>

#include "platform/base/error.h"
#include "platform/base/text.h"
#include "platform/ini/ini.h"

namespace streets {

namespace {

constexpr auto Section = "Streets";

struct Figure {
    const char* key;
    double* figure;
    double least;
    double most;
};

struct Switch {
    const char* key;
    bool* on;
};

[[noreturn]] void refuse(const char* key, std::string_view text, std::string_view wanted) {
    throw base::RunTimeError(
        base::errors::InvalidProcedureCall,
        fmt::format("{} in the section [{}] of the settings is \"{}\", which is not {}.", key,
                    Section, text, wanted));
}

/// Reads what the settings say of a figure or a switch.
class RuleReader {
public:
    explicit RuleReader(std::string_view settings) : settings_(settings) {}

    void read(const Figure& wanted) const {
        const auto text = textOf(wanted.key);
        if (text.empty()) {
            return;
        }
        double figure = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), figure);
        if (error != std::errc() || end != text.data() + text.size() ||
            !(figure >= wanted.least && figure <= wanted.most)) {
            refuse(wanted.key, text,
                   fmt::format("a number from {:g} to {:g}", wanted.least, wanted.most));
        }
        *wanted.figure = figure;
    }

    void read(const Switch& wanted) const {
        const auto text = textOf(wanted.key);
        if (text.empty()) {
            return;
        }
        const bool isYes = base::equalsNoCase(text, "yes");
        if (!isYes && !base::equalsNoCase(text, "no")) {
            refuse(wanted.key, text, "yes or no");
        }
        *wanted.on = isYes;
    }

private:
    [[nodiscard]] std::string textOf(const char* key) const {
        return ini::valueIn(settings_, Section, key, "");
    }

    std::string_view settings_;
};

void readSpeeds(const RuleReader& reader, DrivingRules& rules) {
    constexpr std::array Keys{"SpeedMotorway",    "SpeedTrunk",    "SpeedPrimary",
                              "SpeedSecondary",   "SpeedTertiary", "SpeedUnclassified",
                              "SpeedResidential", "SpeedRamp",     "SpeedService"};
    for (std::size_t i = 0; i < Keys.size(); ++i) {
        reader.read(Figure{Keys[i], &rules.milesPerHour[i], 1, 100});
    }
}

void readTurns(const RuleReader& reader, TurnSeconds& turns) {
    for (const auto& [key, seconds] :
         {std::pair{"TurnRight", &turns.right},
          {"TurnRightOntoArterial", &turns.rightOntoArterial},
          {"TurnLeft", &turns.left},
          {"TurnLeftOffArterial", &turns.leftOffArterial},
          {"TurnLeftOntoArterial", &turns.leftOntoArterial},
          {"TurnStraightOverLike", &turns.straightOverLike},
          {"TurnStraightOverArterial", &turns.straightOverArterial},
          {"TurnSignalRight", &turns.signalRight},
          {"TurnSignalStraight", &turns.signalStraight},
          {"TurnSignalLeft", &turns.signalLeft},
          {"TurnSignalLeftOverArterial", &turns.signalLeftOverArterial},
          {"TurnUTurn", &turns.uTurn},
          {"TurnDeadEnd", &turns.deadEnd}}) {
        reader.read(Figure{key, seconds, 0, 600});
    }
}

}  // namespace

DrivingRules drivingRulesIn(std::string_view settings) {
    const RuleReader reader(settings);
    DrivingRules rules;
    readSpeeds(reader, rules);
    readTurns(reader, rules.turns);
    for (const Switch& option :
         {Switch{"UTurns", &rules.uTurns}, Switch{"DeadEndTurns", &rules.turnsInDeadEnds},
          Switch{"Alleys", &rules.alleys}}) {
        reader.read(option);
    }
    reader.read(Figure{"AlleyReluctance", &rules.alleyReluctance, 0, 3600});
    reader.read(Figure{"BusHeight", &rules.busHeightInches, 60, 200});
    reader.read(Figure{"BusWeight", &rules.busWeightTons, 1, 40});
    reader.read(Figure{"FarthestStop", &rules.farthestFeet, 50, 20000});
    return rules;
}

}  // namespace streets
