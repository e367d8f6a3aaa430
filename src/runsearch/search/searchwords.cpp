#include "runsearch/search/searchwords.h"

#include <string_view>
#include <vector>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "platform/base/text.h"
#include "platform/base/timetext.h"

namespace runsearch {

namespace {

constexpr std::size_t MostNamed = 3;

/// "start from 7:00 AM to 8:00 AM"
std::string rangeText(std::string_view what, const TimeRange& range) {
    if (range.from && range.to) {
        return fmt::format("{} from {} to {}", what, base::clockText(*range.from),
                           base::clockText(*range.to));
    }
    return range.from ? fmt::format("{} at {} or later", what, base::clockText(*range.from))
                      : fmt::format("{} at {} or earlier", what, base::clockText(*range.to));
}

/// "A, B or C"; many are only counted.
std::string anyOf(const std::vector<std::string>& names, std::string_view many) {
    if (names.size() > MostNamed) {
        return fmt::format("{} {}", names.size(), many);
    }
    const auto first = std::vector(names.begin(), names.end() - 1);
    return first.empty() ? names.back()
                         : fmt::format("{} or {}", fmt::join(first, ", "), names.back());
}

class Words {
public:
    void add(std::string_view part) { parts_.emplace_back(part); }
    void text(fmt::format_string<std::string_view> words, std::string_view typed) {
        if (!base::trim(typed).empty()) {
            add(fmt::format(words, base::trim(typed)));
        }
    }
    void range(std::string_view what, const TimeRange& range) {
        if (range.from || range.to) {
            add(rangeText(what, range));
        }
    }
    [[nodiscard]] std::string all() const {
        return parts_.empty() ? "all runs" : fmt::format("{}", fmt::join(parts_, "; "));
    }

private:
    std::vector<std::string> parts_;
};

void addSchools(Words& words, const RunSearchCriteria& criteria) {
    std::vector<std::string> names;
    for (const SchoolRow& school : criteria.schools) {
        if (school.selected) {
            names.emplace_back(
                base::trim(base::trim(school.name).empty() ? school.code : school.name));
        }
    }
    const std::string_view stopping = criteria.searchSchoolStops ? "stopping at " : "";
    if (!names.empty()) {
        words.add(fmt::format("{}{}", stopping, anyOf(names, "schools")));
    }
    if (const auto type = base::trim(criteria.schoolType); !type.empty()) {
        words.add(fmt::format("{}schools of type {}", stopping, type));
    }
}

}  // namespace

std::string inWords(const RunSearchCriteria& criteria) {
    Words words;
    words.text("run {}…", criteria.runId);
    words.text("description “{}…”", criteria.description);
    addSchools(words, criteria);
    if (!criteria.tripTypes.empty()) {
        words.add(fmt::format("{} {}",
                              criteria.searchTripTypeStops ? "stops of trip type" : "trip type",
                              anyOf(criteria.tripTypes, "of them")));
    }
    words.range("start", criteria.startTime);
    words.range("end", criteria.endTime);
    words.range("bell", criteria.bellTime);
    words.text("run family {}", criteria.runFamily);
    words.text("location {}", criteria.location);
    words.text("driver {}", criteria.driver);
    words.text("vehicle {}", criteria.vehicle);
    words.text("aid {}", criteria.aid);
    words.text("route {}", criteria.route);
    if (criteria.notOnRoute) {
        words.add("on no route");
    }
    if (criteria.needsResolve) {
        words.add("to be resolved on the map");
    }
    return words.all();
}

}  // namespace runsearch
