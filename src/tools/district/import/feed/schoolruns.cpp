#include "tools/district/import/feed/schoolruns.h"

#include <QRegularExpression>
#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <set>
#include <sstream>
#include <utility>

#include <fmt/format.h>

#include "platform/base/date.h"
#include "platform/base/fold.h"
#include "platform/base/text.h"
#include "platform/files/files.h"
#include "platform/table/csv.h"
#include "tools/district/import/feed/shapeway.h"
#include "tools/district/import/feed/tripchoice.h"

namespace tools::district {

namespace {

using transit::Day;
using transit::Feed;
using transit::Trip;

constexpr double FeetPerMile = 5280;
constexpr double RoundAbout = 1.3;  ///< a street's way over the straight one
constexpr double FastestMph = 70;
constexpr std::size_t MostStops = 100;
constexpr std::size_t MostRunsOfRoute = 50;
constexpr std::size_t FewDays = 2;  ///< of a holiday's or an event's service
constexpr int Noon = 12 * 3600;
constexpr std::string_view CommentHead = "Trip ";

using Weekdays = std::array<bool, 7>;

/// A trip that becomes a run.
struct Run {
    std::size_t trip = 0;  ///< the first of those that are alike
    std::set<Day> days;
    Weekdays on{};
    std::vector<int> arrivals;
    std::vector<int> departures;
    std::vector<double> feet;  ///< from the stop before
    bool isMorning = true;
    std::optional<std::size_t> schoolStop;  ///< of the feed
    std::string route;
    std::string id;
};

std::string plural(std::size_t count, std::string_view one, std::string_view many) {
    return fmt::format("{} {}", count, count == 1 ? one : many);
}

/// The weekdays on a third of whose dates, in the weeks that have any, something runs.
Weekdays weekdaysOf(const std::set<Day>& days) {
    std::set<Day> weeks;
    std::array<std::size_t, 7> counts{};
    for (const Day day : days) {
        weeks.insert(day - transit::weekdayOf(day));
        ++counts[static_cast<std::size_t>(transit::weekdayOf(day))];
    }
    Weekdays on{};
    for (std::size_t day = 0; day < on.size(); ++day) {
        on[day] = counts[day] > 0 && 3 * counts[day] >= weeks.size();
    }
    return on;
}

/// "Hellyer College" of "Stop 10, Mooreville Rd (Hellyer College)" and of "Hellyer College (Inside
/// Grounds)".
std::string schoolName(const std::string& stop) {
    static const QRegularExpression InBrackets(R"(\s*\(([^()]*)\))");
    static const QRegularExpression Numbered(R"(^Stop [A-Z0-9]+,\s*)",
                                             QRegularExpression::CaseInsensitiveOption);
    QString name = QString::fromStdString(stop);
    const QString bracketed = InBrackets.match(name).captured(1);
    if (!bracketed.isEmpty() && namesSchool(bracketed.toStdString())) {
        return bracketed.toStdString();
    }
    name.remove(InBrackets).remove(Numbered);
    return name.trimmed().toStdString();
}

/// The first letters of the words, in capitals: "HC".
std::string initials(std::string_view name) {
    std::string letters;
    bool isFirst = true;
    for (const char letter : name) {
        const bool isLetter = std::isalnum(static_cast<unsigned char>(letter)) != 0;
        if (isLetter && isFirst) {
            letters += static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
        }
        isFirst = !isLetter;
    }
    return letters.empty() ? "S" : letters;
}

/// Codes that are not taken yet.
class Codes {
public:
    std::string make(const std::string& wish, std::string_view between) {
        std::string code = wish;
        for (int more = 2; !taken_.insert(base::folded(code)).second; ++more) {
            code = fmt::format("{}{}{}", wish, between, more);
        }
        return code;
    }
    void take(const std::string& code) { taken_.insert(base::folded(code)); }

private:
    std::set<std::string> taken_;
};

/// A run id holds none of the characters that the suite's statements give a meaning.
std::string asRunId(std::string text) {
    std::erase_if(text, [](char c) {
        return std::string_view("#%*'/\\\" ").find(c) != std::string_view::npos;
    });
    return text.empty() ? "RUN" : text;
}

std::string timeText(int seconds) {
    return base::Date{seconds}.iso();  // past midnight it is the next day, 1899-12-31
}

class Making {
public:
    Making(const Feed& feed, const SchoolTripOptions& options) : feed_(feed), options_(options) {}

    SchoolRuns made();

private:
    void take(std::size_t place);
    bool isOut(const Trip& trip);
    [[nodiscard]] bool fillTimes(Run& run) const;
    void joinAlike();
    void dropWithoutDays();
    void orient(Run& run) const;
    void plane();
    void measure(Run& run);
    void nameRoutes();
    void nameRuns();
    void warnOfSpeed(const Run& run);

    void writeSchools();
    void writeRuns();
    void writeRunStops();
    void writeRun(table::CsvWriter& csv, const Run& run);
    std::string stopOf(const Run& run, std::size_t place);
    void tellRest();

    void leaveOut(const Trip& trip, const std::string& why) {
        made_.remarks.push_back(fmt::format("Trip {} is left out: {}.", trip.id, why));
    }
    [[nodiscard]] const Trip& tripOf(const Run& run) const { return feed_.trips[run.trip]; }
    [[nodiscard]] geo::Feet placeOf(std::size_t stop) const {
        return projection_->toFeet(feed_.stops[stop].at);
    }

    const Feed& feed_;
    const SchoolTripOptions& options_;
    SchoolRuns made_;
    std::vector<Run> runs_;
    std::optional<geo::Projection> projection_;
    std::map<std::string, std::string> schools_;  ///< codes by names
    std::ostringstream stops_;
    Codes stopCodes_;
    std::map<std::pair<std::size_t, bool>, std::string> shared_;  ///< codes of places
    std::size_t guessedTimes_ = 0;
    std::size_t straight_ = 0;
};

bool Making::isOut(const Trip& trip) {
    if (trip.isRepeated) {
        leaveOut(trip, "it is repeated by frequency and has no times of its own");
    } else if (trip.times.size() < 2) {
        leaveOut(trip, "it has fewer than two stops");
    } else if (trip.times.size() > MostStops) {
        leaveOut(trip, fmt::format("it has {} stops, more than the {} of a run", trip.times.size(),
                                   MostStops));
    } else {
        return false;
    }
    return true;
}

/// Times that the feed leaves open are spread evenly between those it gives; false where the ends
/// have none or a time goes back.
bool Making::fillTimes(Run& run) const {
    const auto& times = tripOf(run).times;
    const auto given = [&](std::size_t at) {
        return times[at].arrival ? times[at].arrival : times[at].departure;
    };
    if (!given(0) || !given(times.size() - 1)) {
        return false;
    }
    std::size_t last = 0;
    for (std::size_t at = 0; at < times.size(); ++at) {
        if (const auto arrival = given(at)) {
            const double step = at == last ? 0
                                           : static_cast<double>(*arrival - run.departures[last]) /
                                                 static_cast<double>(at - last);
            for (std::size_t open = last + 1; open < at; ++open) {
                const auto guess =
                    run.departures[last] +
                    static_cast<int>(std::lround(step * static_cast<double>(open - last)));
                run.arrivals.push_back(guess);
                run.departures.push_back(guess);
            }
            run.arrivals.push_back(*arrival);
            run.departures.push_back(times[at].departure.value_or(*arrival));
            last = at;
        }
    }
    int before = run.arrivals.front();
    for (std::size_t at = 0; at < run.arrivals.size(); ++at) {
        if (run.arrivals[at] < before || run.departures[at] < run.arrivals[at]) {
            return false;
        }
        before = run.departures[at];
    }
    return true;
}

void Making::take(std::size_t place) {
    const Trip& trip = feed_.trips[place];
    if (isOut(trip)) {
        return;
    }
    Run run;
    run.trip = place;
    if (!fillTimes(run)) {
        leaveOut(trip, "it has no time at its first or last stop, or one that goes back");
        return;
    }
    if (const auto service = feed_.services.find(trip.service); service != feed_.services.end()) {
        run.days = service->second;
    }
    if (run.days.size() <= FewDays) {
        leaveOut(trip, fmt::format("it runs on {} only", plural(run.days.size(), "day", "days")));
        return;
    }
    guessedTimes_ += static_cast<std::size_t>(std::ranges::count_if(
        trip.times, [](const auto& time) { return !time.arrival && !time.departure; }));
    runs_.push_back(std::move(run));
}

/// The same stops at the same times on the same route under several services.
void Making::joinAlike() {
    using Key = std::pair<std::size_t, std::vector<int>>;
    std::map<Key, std::size_t> met;
    std::vector<Run> joined;
    for (Run& run : runs_) {
        Key key{tripOf(run).route, run.arrivals};
        key.second.insert(key.second.end(), run.departures.begin(), run.departures.end());
        for (const auto& time : tripOf(run).times) {
            key.second.push_back(static_cast<int>(time.stop));
        }
        const auto [found, isNew] = met.emplace(std::move(key), joined.size());
        if (isNew) {
            joined.push_back(std::move(run));
        } else {
            joined[found->second].days.insert(run.days.begin(), run.days.end());
        }
    }
    if (const std::size_t fewer = runs_.size() - joined.size(); fewer > 0) {
        made_.remarks.push_back(
            fmt::format("{} the same stops at the same times as another under another service and "
                        "became one run with it.",
                        plural(fewer, "trip has", "trips have")));
    }
    runs_ = std::move(joined);
}

void Making::dropWithoutDays() {
    std::size_t weekends = 0;
    std::erase_if(runs_, [&](Run& run) {
        run.on = weekdaysOf(run.days);
        weekends += run.on[5] || run.on[6] ? 1 : 0;
        const bool hasSchoolDay = std::any_of(run.on.begin(), run.on.begin() + 5, std::identity());
        if (!hasSchoolDay) {
            leaveOut(tripOf(run), "it runs on no day from Monday to Friday");
        }
        return !hasSchoolDay;
    });
    if (weekends > 0) {
        made_.remarks.push_back(
            fmt::format("{} also on Saturday or Sunday, which a run does not know.",
                        plural(weekends, "trip runs", "trips run")));
    }
}

void Making::orient(Run& run) const {
    const auto& times = tripOf(run).times;
    const bool endsThere = namesSchool(feed_.stops[times.back().stop].name);
    const bool startsThere = namesSchool(feed_.stops[times.front().stop].name);
    run.isMorning = endsThere || (!startsThere && run.arrivals.front() < Noon);
    if (endsThere || startsThere) {
        run.schoolStop = endsThere ? times.back().stop : times.front().stop;
    }
}

/// The district's plane, or one whose centre is the middle of the stops and whose corner in the
/// south-west lies a mile inside.
void Making::plane() {
    geo::Degrees least{90, 180};
    geo::Degrees most{-90, -180};
    for (const Run& run : runs_) {
        for (const auto& time : tripOf(run).times) {
            const geo::Degrees at = feed_.stops[time.stop].at;
            least = {std::min(least.latitude, at.latitude),
                     std::min(least.longitude, at.longitude)};
            most = {std::max(most.latitude, at.latitude), std::max(most.longitude, at.longitude)};
        }
    }
    if (options_.centre || runs_.empty()) {
        made_.centre = options_.centre.value_or(geo::Centre{});
    } else {
        made_.centre.degrees = {(least.latitude + most.latitude) / 2,
                                (least.longitude + most.longitude) / 2};
        const geo::Feet corner = geo::Projection(made_.centre).toFeet(least);
        made_.centre.feet = {std::ceil(FeetPerMile - corner.x), std::ceil(FeetPerMile - corner.y)};
    }
    projection_.emplace(made_.centre);
}

void Making::measure(Run& run) {
    const Trip& trip = tripOf(run);
    std::vector<geo::Feet> stops;
    for (const auto& time : trip.times) {
        stops.push_back(placeOf(time.stop));
    }
    std::vector<geo::Feet> line;
    if (const auto shape = feed_.shapes.find(trip.shape); shape != feed_.shapes.end()) {
        for (const geo::Degrees point : shape->second) {
            line.push_back(projection_->toFeet(point));
        }
    }
    const auto along = placesAlong(line, stops);
    straight_ += along ? 0 : 1;
    run.feet.push_back(0);
    for (std::size_t at = 1; at < stops.size(); ++at) {
        run.feet.push_back(along ? (*along)[at] - (*along)[at - 1]
                                 : RoundAbout * distance(stops[at - 1], stops[at]));
    }
    warnOfSpeed(run);
}

void Making::warnOfSpeed(const Run& run) {
    constexpr double SecondsPerHour = 3600;
    for (std::size_t at = 1; at < run.feet.size(); ++at) {
        const double hours = (run.arrivals[at] - run.departures[at - 1]) / SecondsPerHour;
        const double miles = run.feet[at] / FeetPerMile;
        if (miles > 0.2 && miles > FastestMph * hours) {
            made_.remarks.push_back(fmt::format(
                "Trip {} is faster than {:.0f} miles an hour on the way to its stop {}.",
                tripOf(run).id, FastestMph, at + 1));
            return;
        }
    }
}

void Making::nameRoutes() {
    std::map<std::string, std::size_t> counts;
    for (Run& run : runs_) {
        const Trip& trip = tripOf(run);
        run.route = trip.block.empty() ? feed_.routes[trip.route].id : trip.block;
        ++counts[run.route];
    }
    for (const auto& [route, count] : counts) {
        if (count > MostRunsOfRoute) {
            made_.remarks.push_back(
                fmt::format("Route {} is left out: it has {} runs, more than the {} of a route.",
                            route, count, MostRunsOfRoute));
        }
    }
    std::erase_if(runs_, [&](const Run& run) { return counts[run.route] > MostRunsOfRoute; });
}

/// The id of an earlier import, otherwise route and number in the order of time.
void Making::nameRuns() {
    std::ranges::stable_sort(runs_, [](const Run& a, const Run& b) {
        return std::pair(a.route, a.arrivals.front()) < std::pair(b.route, b.arrivals.front());
    });
    Codes taken;
    for (const auto& [trip, run] : options_.knownRuns) {
        taken.take(run);
    }
    std::map<std::string, int> numbers;
    for (Run& run : runs_) {
        const auto known = options_.knownRuns.find(tripOf(run).id);
        const std::string number =
            fmt::format("{}-{}", feed_.routes[tripOf(run).route].id, ++numbers[run.route]);
        run.id =
            known != options_.knownRuns.end() ? known->second : taken.make(asRunId(number), "-");
    }
}

void Making::writeSchools() {
    std::ostringstream text;
    table::CsvWriter csv(text);
    for (const char* name : {"school", "name"}) {
        csv.text(name);
    }
    csv.endRow();
    Codes codes;
    for (const Run& run : runs_) {
        const std::string name =
            run.schoolStop ? schoolName(feed_.stops[*run.schoolStop].name) : std::string();
        if (name.empty() || schools_.contains(name)) {
            continue;
        }
        schools_[name] = codes.make(initials(name), "");
        csv.text(schools_[name]);
        csv.text(name);
        csv.endRow();
    }
    made_.schools = text.str();
}

void Making::writeRun(table::CsvWriter& csv, const Run& run) {
    const Trip& trip = tripOf(run);
    const transit::Route& route = feed_.routes[trip.route];
    double feet = 0;
    for (const double part : run.feet) {
        feet += part;
    }
    const std::string headsign =
        trip.headsign.empty() ? feed_.stops[trip.times.back().stop].name : trip.headsign;
    csv.text(run.id);
    csv.text(base::trim(fmt::format("{} {}", route.shortName, headsign)));
    if (run.schoolStop) {
        csv.text(schools_[schoolName(feed_.stops[*run.schoolStop].name)]);
    } else {
        csv.null();
    }
    csv.text(run.isMorning ? "AM" : "PM");
    csv.text(run.route);
    csv.text(timeText(run.arrivals.front()));
    csv.text(timeText(run.departures.back()));
    csv.text(fmt::format("{}", (run.departures.back() - run.arrivals.front()) / 60.0));
    csv.text(fmt::format("{:.2f}", feet / FeetPerMile));
    csv.text(fmt::format("{}{}", CommentHead, trip.id));
    for (std::size_t day = 0; day < 5; ++day) {
        csv.text(run.on[day] ? "yes" : "no");
    }
    csv.endRow();
}

void Making::writeRuns() {
    std::ostringstream text;
    table::CsvWriter csv(text);
    for (const char* name :
         {"run", "description", "school", "trip_type", "route", "start", "end", "minutes", "miles",
          "comment", "monday", "tuesday", "wednesday", "thursday", "friday"}) {
        csv.text(name);
    }
    csv.endRow();
    std::ostringstream routesText;
    table::CsvWriter routes(routesText);
    routes.text("route");
    routes.text("name");
    routes.endRow();
    std::set<std::string> met;
    for (const Run& run : runs_) {
        writeRun(csv, run);
        if (met.insert(run.route).second) {
            const transit::Route& route = feed_.routes[tripOf(run).route];
            routes.text(run.route);
            routes.text(route.longName.empty() ? route.shortName : route.longName);
            routes.endRow();
        }
    }
    made_.runs = text.str();
    made_.routes = routesText.str();
    made_.count = runs_.size();
}

/// The stop's code, once it stands among the stops: one for each visit, of a school one for all.
std::string Making::stopOf(const Run& run, std::size_t place) {
    const transit::Stop& stop = feed_.stops[place];
    const bool isSchool = run.schoolStop == place;
    const bool isOne = isSchool || options_.sharedStops;
    if (const auto met = shared_.find({place, isSchool}); isOne && met != shared_.end()) {
        return met->second;
    }
    std::string code = stopCodes_.make(stop.id, "-");
    if (isOne) {
        shared_[{place, isSchool}] = code;
    }
    table::CsvWriter csv(stops_);
    const geo::Feet feet = placeOf(place);
    csv.text(code);
    csv.text(isSchool ? "SCHOOL" : options_.sharedStops ? "TRANSFER" : "REGULAR");
    csv.text(stop.name);
    csv.text(stop.name);
    if (isSchool) {
        csv.text(schools_[schoolName(stop.name)]);
    } else {
        csv.null();
    }
    csv.text(fmt::format("{:.1f}", feet.x));
    csv.text(fmt::format("{:.1f}", feet.y));
    csv.endRow();
    return code;
}

void Making::writeRunStops() {
    stops_ << "stop,type,description,address,school,x,y\r\n";
    std::ostringstream text;
    text << "run,stop,sequence,students,load_minutes,drive_minutes,miles,time,side,update_time\r\n";
    table::CsvWriter csv(text);
    for (const Run& run : runs_) {
        const auto& times = tripOf(run).times;
        for (std::size_t at = 0; at < times.size(); ++at) {
            const int drive = at == 0 ? 0 : run.arrivals[at] - run.departures[at - 1];
            csv.text(run.id);
            csv.text(stopOf(run, times[at].stop));
            csv.text(std::to_string(at + 1));
            csv.text("0");
            csv.text(fmt::format("{}", (run.departures[at] - run.arrivals[at]) / 60.0));
            csv.text(fmt::format("{}", drive / 60.0));
            csv.text(fmt::format("{:.2f}", run.feet[at] / FeetPerMile));
            csv.text(timeText(run.arrivals[at]));
            csv.text("right");
            csv.text("no");
            csv.endRow();
        }
    }
    made_.runStops = text.str();
    made_.stops = stops_.str();
}

void Making::tellRest() {
    if (guessedTimes_ > 0) {
        made_.remarks.push_back(
            fmt::format("{} no time in the feed and got one between its neighbours.",
                        plural(guessedTimes_, "stop has", "stops have")));
    }
    if (straight_ > 0) {
        made_.remarks.push_back(
            fmt::format("{} no shape; the miles between the stops are {} times the straight ones.",
                        plural(straight_, "trip has", "trips have"), RoundAbout));
    }
    const auto schoolless = static_cast<std::size_t>(
        std::ranges::count_if(runs_, [](const Run& run) { return !run.schoolStop; }));
    if (schoolless > 0) {
        made_.remarks.push_back(fmt::format(
            "{} without a school: neither the first nor the last stop has a school's name.",
            plural(schoolless, "run", "runs")));
    }
    made_.remarks.emplace_back(
        "A feed knows no bell times, students, vehicle types and drivers; enter them or import "
        "them from other files.");
}

SchoolRuns Making::made() {
    for (const std::size_t trip : options_.trips) {
        take(trip);
    }
    joinAlike();
    dropWithoutDays();
    nameRoutes();
    plane();
    for (Run& run : runs_) {
        orient(run);
        measure(run);
    }
    nameRuns();
    writeSchools();
    writeRuns();
    writeRunStops();
    tellRest();
    return std::move(made_);
}

}  // namespace

SchoolRuns schoolRunsOf(const Feed& feed, const SchoolTripOptions& options) {
    return Making(feed, options).made();
}

void SchoolRuns::writeTo(const std::filesystem::path& folder) const {
    const std::pair<const char*, const std::string*> Files[] = {{"schools.csv", &schools},
                                                                {"stops.csv", &stops},
                                                                {"routes.csv", &routes},
                                                                {"runs.csv", &runs},
                                                                {"run_stops.csv", &runStops}};
    for (const auto& [name, text] : Files) {
        files::write((folder / name).string(), *text);
    }
}

std::string tripOfComment(std::string_view comment) {
    return comment.starts_with(CommentHead) ? std::string(comment.substr(CommentHead.size()))
                                            : std::string();
}

}  // namespace tools::district
