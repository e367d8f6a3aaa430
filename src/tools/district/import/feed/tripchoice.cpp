#include "tools/district/import/feed/tripchoice.h"

#include <QRegularExpression>
#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "tools/district/base/refuse.h"

namespace tools::district {

namespace {

using transit::Feed;
using transit::Trip;

struct NamedSign {
    std::string_view name;
    TripSign::Of of;
};
constexpr NamedSign Signs[] = {{"route", TripSign::Of::Route},
                               {"service", TripSign::Of::Service},
                               {"headsign", TripSign::Of::Headsign},
                               {"ends-at", TripSign::Of::End}};

constexpr const char* SchoolWords =
    R"(\b(school|college|academy|primary|elementary|kindergarten|high)\b)";

QRegularExpression expression(const std::string& pattern) {
    return QRegularExpression(
        QString::fromStdString(pattern),
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption);
}

bool holds(const QRegularExpression& pattern, const std::string& text) {
    return pattern.match(QString::fromStdString(text)).hasMatch();
}

bool hasSign(const Feed& feed, const Trip& trip, TripSign::Of of,
             const QRegularExpression& pattern) {
    switch (of) {
        case TripSign::Of::Route:
            return holds(pattern, feed.routes[trip.route].id);
        case TripSign::Of::Service:
            return holds(pattern, trip.service);
        case TripSign::Of::Headsign:
            return holds(pattern, trip.headsign);
        case TripSign::Of::End:
            break;
    }
    return !trip.times.empty() && (holds(pattern, feed.stops[trip.times.front().stop].name) ||
                                   holds(pattern, feed.stops[trip.times.back().stop].name));
}

/// The services by how many trips they have.
std::string servicesTold(const Feed& feed) {
    constexpr std::size_t Most = 12;
    std::map<std::string, int> counts;
    for (const Trip& trip : feed.trips) {
        ++counts[trip.service];
    }
    std::vector<std::pair<std::string, int>> services(counts.begin(), counts.end());
    std::ranges::stable_sort(services, std::greater(), [](const auto& one) { return one.second; });
    std::string text;
    for (std::size_t at = 0; at < std::min(Most, services.size()); ++at) {
        text += fmt::format("  {:5} trips: service {}\n", services[at].second, services[at].first);
    }
    if (services.size() > Most) {
        text += fmt::format("  and {} more services\n", services.size() - Most);
    }
    return text;
}

}  // namespace

TripSign tripSign(std::string_view text) {
    const std::size_t tilde = std::min(text.find('~'), text.size());
    const auto known = std::ranges::find(Signs, text.substr(0, tilde), &NamedSign::name);
    if (known == std::end(Signs) || tilde + 1 >= text.size()) {
        refuse(
            fmt::format("\"{}\" chooses no trips. route~, service~, headsign~ or ends-at~ and "
                        "a pattern does: route~AM$",
                        text));
    }
    TripSign sign{known->of, std::string(text.substr(tilde + 1))};
    if (const auto pattern = expression(sign.pattern); !pattern.isValid()) {
        refuse(fmt::format("\"{}\" is no pattern: {}.", sign.pattern,
                           pattern.errorString().toStdString()));
    }
    return sign;
}

std::vector<std::size_t> tripsWith(const Feed& feed, const std::vector<TripSign>& signs) {
    std::vector<QRegularExpression> patterns;
    patterns.reserve(signs.size());
    for (const TripSign& sign : signs) {
        patterns.push_back(expression(sign.pattern));
    }
    std::vector<std::size_t> chosen;
    for (std::size_t trip = 0; trip < feed.trips.size(); ++trip) {
        for (std::size_t sign = 0; sign < signs.size(); ++sign) {
            if (hasSign(feed, feed.trips[trip], signs[sign].of, patterns[sign])) {
                chosen.push_back(trip);
                break;
            }
        }
    }
    return chosen;
}

std::string signsTold(const Feed& feed) {
    const auto count = [&](TripSign::Of of, const std::string& pattern) {
        return tripsWith(feed, {{of, pattern}}).size();
    };
    using enum TripSign::Of;
    return fmt::format(
               "{} trips. Choose the school trips among them with --trips, as often as needed:\n"
               "  {:5} trips: --trips 'route~(AM|PM)$'\n"
               "  {:5} trips: --trips 'service~(term|school)'\n"
               "  {:5} trips: --trips 'headsign~(school|college|academy|primary|high)'\n"
               "  {:5} trips: --trips 'ends-at~(school|college|academy|primary|high)'\n",
               feed.trips.size(), count(Route, "(AM|PM)$"), count(Service, "(term|school)"),
               count(Headsign, SchoolWords), count(End, SchoolWords)) +
           servicesTold(feed);
}

bool namesSchool(std::string_view name) {
    static const QRegularExpression Words = expression(SchoolWords);
    return holds(Words, std::string(name));
}

}  // namespace tools::district
