#include "tools/district/streets/makestreets.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <system_error>
#include <utility>

#include <fmt/format.h>

#include "platform/files/files.h"
#include "streets/file/streetfile.h"
#include "streets/network/pieceindex.h"
#include "tools/district/base/cases.h"
#include "tools/district/base/refuse.h"
#include "tools/district/export/snapshot.h"
#include "tools/district/place/centre.h"
#include "tools/district/streets/addresstable.h"
#include "tools/extract/read/extract.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

constexpr const char* FileName = "district.streets";
constexpr double FeetPerMile = 5280;
constexpr double FarFeet = 300;
constexpr std::chrono::seconds OthersTake{30};  // to write their streets

struct PlacedStop {
    std::string stop;
    std::string description;
    geo::Feet at;
};

std::vector<PlacedStop> readStops(const Folders& folders) {
    const DistrictSnapshot district(folders);
    const auto rows = district.database(data::DatabaseFile::Routing)
                          .prepare(
                              "SELECT STOPID, DESCRIPTION, XPOS, YPOS FROM STOP WHERE"
                              " XPOS <> 0 OR YPOS <> 0 ORDER BY STOPID");
    std::vector<PlacedStop> stops;
    while (rows->step()) {
        stops.push_back({std::string(rows->text(0)),
                         std::string(rows->text(1)),
                         {rows->real(2), rows->real(3)}});
    }
    return stops;
}

/// What a killed program left of a file; nobody else writes it now.
void removeDrafts(const fs::path& file) {
    std::error_code error;
    const std::string beginning = "." + file.filename().string() + ".";
    for (const auto& entry : fs::directory_iterator(file.parent_path(), error)) {
        if (entry.path().filename().string().starts_with(beginning)) {
            fs::remove(entry.path(), error);
        }
    }
}

streets::Box boxOf(const std::vector<PlacedStop>& stops) {
    streets::Box box{stops.front().at, stops.front().at};
    for (const PlacedStop& stop : stops) {
        box.low = {std::min(box.low.x, stop.at.x), std::min(box.low.y, stop.at.y)};
        box.high = {std::max(box.high.x, stop.at.x), std::max(box.high.y, stop.at.y)};
    }
    return box;
}

geo::Feet middleOf(const streets::Box& box) {
    return {std::round((box.low.x + box.high.x) / 2), std::round((box.low.y + box.high.y) / 2)};
}

/// The degrees around a rectangle of the plane, whose edges bend a little on the earth.
extract::DegreeBox degreesAround(const streets::Box& box, double feet,
                                 const geo::Projection& projection) {
    extract::DegreeBox all{projection.toDegrees(box.low), projection.toDegrees(box.low)};
    for (const double x : {box.low.x - feet, (box.low.x + box.high.x) / 2, box.high.x + feet}) {
        for (const double y : {box.low.y - feet, (box.low.y + box.high.y) / 2, box.high.y + feet}) {
            const geo::Degrees at = projection.toDegrees({x, y});
            all.low = {std::min(all.low.latitude, at.latitude),
                       std::min(all.low.longitude, at.longitude)};
            all.high = {std::max(all.high.latitude, at.latitude),
                        std::max(all.high.longitude, at.longitude)};
        }
    }
    return all;
}

std::string told(const extract::DegreeBox& box) {
    return fmt::format("{:.4f},{:.4f} to {:.4f},{:.4f}", box.low.latitude, box.low.longitude,
                       box.high.latitude, box.high.longitude);
}

/// One run of the work, whose steps share what is known of the district.
class Maker {
public:
    Maker(const StreetsOptions& options, Progress& progress)
        : options_(options), progress_(progress), stops_(readStops(options.folders)) {}

    StreetsReport make() {
        if (!stops_.empty() || keptCentre(options_.folders) || options_.centre) {
            centre_ = centreFor(options_.folders, options_.centre, [&] {
                return stops_.empty() ? geo::Feet() : middleOf(boxOf(stops_));
            });
        }
        extract::Extract extract = read();
        const std::size_t places = extract.nodes.size();
        const std::size_t lines = extract.ways.size();
        const AddressTable addresses = readAddressTable();
        progress_.begin("Joining the streets", 0);
        const auto built = extract::streetsOf(std::move(extract), *centre_, addresses.addresses);
        if (std::ranges::none_of(built.map.pieces, &streets::Piece::reachable)) {
            refuse(
                fmt::format("The extracts have no streets that buses drive, in {} places and {} "
                            "lines. Perhaps they are cut off.",
                            places, lines));
        }
        progress_.begin("Writing the street file", 0);
        store(built.map);
        report_.addressFaults = addresses.faults;
        report_.turnRules = built.turnRules;
        report_.turnRulesTaken = built.turnRulesTaken;
        report_.unreachable = built.unreachable;
        tell(built.map);
        return std::move(report_);
    }

private:
    extract::Extract read() {
        std::optional<extract::DegreeBox> box;
        if (!stops_.empty()) {
            box = degreesAround(boxOf(stops_), options_.milesAround * FeetPerMile,
                                geo::Projection(*centre_));
        }
        progress_.begin("Reading the extracts", 0);
        auto extract = extract::readExtracts(
            options_.extracts, box,
            [&](std::int64_t done, std::int64_t bytes) { progress_.reach(done, bytes); });
        if (!extract.covered) {
            refuse("The extracts hold no places.");
        }
        if (box && extract.nodes.empty()) {
            refuse(
                fmt::format("The extracts are of another region: they hold {}, and the "
                            "district lies within {}. Take other extracts, or look after the "
                            "centre.",
                            told(*extract.covered), told(*box)));
        }
        if (!centre_) {
            centre_ = geo::Centre{
                {(extract.covered->low.latitude + extract.covered->high.latitude) / 2,
                 (extract.covered->low.longitude + extract.covered->high.longitude) / 2},
                {}};
        }
        return extract;
    }

    AddressTable readAddressTable() {
        if (!options_.addresses && !files::exists(options_.folders.addresses().string())) {
            return {};
        }
        progress_.begin("Reading the addresses", 0);
        return readAddresses(options_.addresses.value_or(options_.folders.addresses().string()),
                             geo::Projection(*centre_));
    }

    void store(const streets::StreetMap& map) {
        const files::FolderLock alone(options_.folders.files().string(), OthersTake);
        report_.file = options_.folders.files() / FileName;
        removeDrafts(report_.file);
        streets::writeStreetFile(report_.file.string(), map);
        if (options_.addresses) {
            files::write(options_.folders.addresses().string(),
                         files::read(options_.addresses->string()));
        }
        if (!keptCentre(options_.folders)) {
            keepCentre(options_.folders, *centre_);
        }
        keepSetting(options_.folders, "Streets", FileName);
        report_.bytes = fs::file_size(report_.file);
    }

    void tell(const streets::StreetMap& map) {
        report_.miles = extract::milesOf(map);
        report_.pieces =
            static_cast<std::size_t>(std::ranges::count_if(map.pieces, &streets::Piece::reachable));
        report_.crossings = map.nodes.size();
        report_.names = map.names.size() - 1;
        report_.houses = map.houses.size();
        report_.stops = stops_.size();
        const streets::PieceIndex index(
            map, [&](std::uint32_t piece) { return map.pieces[piece].reachable; });
        for (const PlacedStop& stop : stops_) {
            if (index.near(stop.at, FarFeet).empty()) {
                const auto near = index.near(stop.at, FeetPerMile);
                report_.farStops.push_back(
                    {stop.stop, stop.description,
                     near.empty() ? std::nullopt : std::optional(near[0].foot.distance)});
            }
        }
        std::ranges::stable_sort(report_.farStops, std::greater(), [](const FarStop& stop) {
            return stop.feet.value_or(FeetPerMile * 2);
        });
    }

    const StreetsOptions& options_;
    Progress& progress_;
    std::vector<PlacedStop> stops_;
    std::optional<geo::Centre> centre_;
    StreetsReport report_;
};

}  // namespace

std::string StreetsReport::text() const {
    constexpr double Kilobyte = 1e3;
    std::string text = fmt::format(
        "Wrote {:.0f} miles of streets to {} ({:.0f} KB): {} pieces, {} crossings and ends, {} "
        "names, {} addresses, {} of {} turn rules.\n",
        miles, file.string(), static_cast<double>(bytes) / Kilobyte, pieces, crossings, names,
        houses, turnRulesTaken, turnRules);
    if (unreachable > 0) {
        text += fmt::format(
            "{} pieces are cut off from the rest: they are drawn and never driven.\n", unreachable);
    }
    if (!addressFaults.empty()) {
        text += fmt::format("{} lines of the addresses were left out:\n{}", addressFaults.size(),
                            firstCases(addressFaults));
    }
    if (farStops.empty()) {
        return text + fmt::format("All {} stops lie at a street.\n", stops);
    }
    std::vector<std::string> far;
    for (const FarStop& stop : farStops) {
        far.push_back(fmt::format(
            "{}, {}: {}", stop.stop, stop.description,
            stop.feet ? fmt::format("{:.0f} feet", *stop.feet) : std::string("over a mile")));
    }
    return text + fmt::format("{} of {} stops lie farther than {:.0f} feet from a street:\n{}",
                              farStops.size(), stops, FarFeet, firstCases(far));
}

StreetsReport makeStreets(const StreetsOptions& options, Progress& progress) {
    return Maker(options, progress).make();
}

}  // namespace tools::district
