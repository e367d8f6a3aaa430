#include "streets/rules/drivingrules.h"

#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>

#include <gtest/gtest.h>

#include "platform/base/error.h"

namespace streets {

namespace {

/// Keys and values that the guide tells, in its order.
std::vector<std::pair<std::string, std::string>> keysOfGuide() {
    std::ifstream page(VIREO_SOURCE_DIR "/docs/driving.md");
    std::vector<std::pair<std::string, std::string>> keys;
    for (std::string line; std::getline(page, line);) {
        std::smatch cells;
        if (std::regex_match(line, cells, std::regex(R"(\| (`.*`) \| ([^|]+) \|.*)"))) {
            const std::string names = cells[1];
            std::istringstream values(std::regex_replace(cells[2].str(), std::regex(","), " "));
            const std::regex key("`(\\w+)`");
            for (std::sregex_iterator name(names.begin(), names.end(), key), end; name != end;
                 ++name) {
                keys.emplace_back((*name)[1], "");
                values >> keys.back().second;
            }
        }
    }
    return keys;
}

std::string section(const std::string& lines) { return "[Streets]\n" + lines; }

}  // namespace

TEST(DrivingRules, AreThoseOfTheGuide) {
    const auto keys = keysOfGuide();
    EXPECT_EQ(keys.size(), 29U);
    std::string all;
    for (const auto& [key, value] : keys) {
        all.append(key).append("=").append(value).append("\n");
        const std::string other = value == "yes" ? "no" : value == "no" ? "yes" : "100";
        EXPECT_NE(drivingRulesIn(section(key + "=" + (key == "BusWeight" ? "9.5" : other))),
                  DrivingRules())
            << key;
        for (const char* wrong : {"-1", "9e9", "nan", "12 mph", "maybe"}) {
            EXPECT_THROW((void)drivingRulesIn(section(key + "=" + wrong)), base::RunTimeError)
                << key;
        }
    }
    EXPECT_EQ(drivingRulesIn(section(all)), DrivingRules());
    EXPECT_EQ(drivingRulesIn("[Other]\nTurnLeft=50\n"), DrivingRules());
}

}  // namespace streets
