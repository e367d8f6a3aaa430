#include "tools/district/streets/keephomes.h"

#include <algorithm>
#include <chrono>
#include <fstream>
#include <optional>

#include <fmt/format.h>

#include "platform/base/error.h"
#include "platform/base/text.h"
#include "platform/files/files.h"
#include "platform/geo/projection.h"
#include "streets/base/streetnames.h"
#include "streets/district/homes.h"
#include "streets/district/placesearch.h"
#include "tools/district/base/cases.h"
#include "tools/district/base/refuse.h"
#include "tools/district/export/snapshot.h"
#include "tools/district/import/source/csv.h"
#include "tools/district/place/centre.h"
#include "tools/district/place/streetsof.h"
#include "tools/district/streets/tablecolumns.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::seconds OthersWrite{30};  // to write their list

struct HomeColumns {
    std::size_t student = MissingColumn;
    std::size_t address = MissingColumn;
    std::size_t number = MissingColumn;
    std::size_t street = MissingColumn;
    PlaceColumns place = {};

    [[nodiscard]] std::string addressIn(const CsvRecord& record) const {
        const std::string whole(cell(record, address));
        return !whole.empty() ? whole
                              : std::string(base::trim(fmt::format("{} {}", cell(record, number),
                                                                   cell(record, street))));
    }
};

HomeColumns homeColumnsIn(const fs::path& file, const CsvRecord& heading) {
    const HomeColumns columns{.student = columnOf(heading, {"student", "student_id", "stuid"}),
                              .address = columnOf(heading, {"address"}),
                              .number = columnOf(heading, {"number", "house_number"}),
                              .street = columnOf(heading, {"street", "street_name"}),
                              .place = placeColumnsIn(heading)};
    const bool hasAddress = columns.address != MissingColumn ||
                            (columns.number != MissingColumn && columns.street != MissingColumn);
    if (!hasAddress && !columns.place.areThere()) {
        refuse(
            fmt::format("{} lacks a column: its first line must name address, or number and "
                        "street, or x and y, or latitude and longitude.",
                        file.string()));
    }
    return columns;
}

class Keeper {
public:
    Keeper(const Folders& folders, const fs::path& file, Progress& progress)
        : folders_(folders), file_(file), progress_(progress) {
        if (const auto centre = keptCentre(folders)) {
            projection_.emplace(*centre);
        }
    }

    HomesReport keep() {
        read();
        if (homes_.empty()) {
            refuse(fmt::format("{} places no home; nothing was changed.\n{}", file_.string(),
                               report_.text()));
        }
        const files::FolderLock alone(folders_.files().string(), OthersWrite);
        files::write(folders_.homes().string(), streets::textOf(homes_));
        report_.file = folders_.homes();
        report_.homes = homes_.size();
        return std::move(report_);
    }

private:
    void read() {
        std::ifstream text(file_, std::ios::binary);
        if (!fs::is_regular_file(file_) || !text) {
            throw base::RunTimeError(base::errors::FileNotFound,
                                     fmt::format("There is no file {}.", file_.string()));
        }
        const CsvShape shape = shapeOf(text);
        progress_.begin("Placing the homes", shape.lines);
        CsvReader reader(text, shape);
        std::optional<HomeColumns> columns;
        for (auto item = reader.next(); item != CsvReader::Item::End; item = reader.next()) {
            if (item == CsvReader::Item::Fault) {
                leaveOut(reader.fault().line, reader.fault().reason);
            } else if (!columns) {
                columns = homeColumnsIn(file_, reader.record());
                requireCentre(*columns);
            } else {
                take(reader.record(), *columns);
                progress_.reach(reader.record().line, shape.lines);
            }
        }
    }

    void requireCentre(const HomeColumns& columns) const {
        if (columns.place.areThere() && !columns.place.areFeet && !projection_) {
            refuse(
                "The district keeps no centre, so that degrees mean nothing to it. Make its "
                "streets first, or give x and y in feet.");
        }
    }

    void take(const CsvRecord& record, const HomeColumns& columns) {
        streets::Home home{.student = std::string(cell(record, columns.student)),
                           .address = columns.addressIn(record)};
        const bool saysPlace = !cell(record, columns.place.right).empty();
        const auto place =
            saysPlace ? placeIn(record, columns.place, projection_ ? &*projection_ : nullptr)
                      : placeOf(home.address);
        if (place) {
            home.at = *place;
            report_.byAddress += saysPlace ? 0 : 1;
            homes_.push_back(std::move(home));
        } else if (saysPlace || home.address.empty()) {
            leaveOut(record.line, "It names no place.");
        } else {
            report_.unplaced.push_back(fmt::format("Line {}: {}", record.line, home.address));
        }
    }

    /// Only the very house: one that is merely like it would put a student into another street.
    /// What stands behind the first comma is the town.
    std::optional<geo::Feet> placeOf(const std::string& address) {
        const std::string house(base::trim(address.substr(0, address.find(','))));
        const auto blank = std::min(house.find(' '), house.size());
        if (!streets_) {
            const DistrictSnapshot district(folders_);
            streets_ = openStreetsOf(folders_, district.database(data::DatabaseFile::Routing));
        }
        const auto found = streets::findPlaces(*streets_, house, 1);
        const std::string whole =
            house.substr(0, blank) + ' ' + streets::spelledOut(house.substr(blank));
        const bool isIt = !found.empty() && found[0].kind == streets::FoundPlace::Kind::Address &&
                          base::equalsNoCase(found[0].text, whole);
        return isIt ? std::optional(found[0].at) : std::nullopt;
    }

    void leaveOut(std::int64_t line, const std::string& why) {
        report_.faults.push_back(fmt::format("Line {}: {}", line, why));
    }

    const Folders& folders_;
    const fs::path& file_;
    Progress& progress_;
    std::optional<geo::Projection> projection_;
    std::shared_ptr<const streets::DistrictStreets> streets_;
    std::vector<streets::Home> homes_;
    HomesReport report_;
};

std::string homeCases(const std::string& heading, const std::vector<std::string>& all) {
    return all.empty() ? "" : fmt::format("{}: {}\n", heading, all.size()) + firstCases(all);
}

}  // namespace

std::string HomesReport::text() const {
    const std::string kept =
        homes == 0 ? ""
                   : fmt::format("Homes kept in {}: {}, of which {} by their address.\n",
                                 file.string(), homes, byAddress);
    return kept + homeCases("Addresses without a place", unplaced) +
           homeCases("Lines left out", faults);
}

HomesReport keepHomes(const Folders& folders, const fs::path& file, Progress& progress) {
    return Keeper(folders, file, progress).keep();
}

}  // namespace tools::district
