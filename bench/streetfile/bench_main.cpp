// Makes the street file of extracts that are named on the command line and opens it with its
// network, then does the same for invented cities of 20,000 to 300,000 crossings. A city of 20,000:
// at most half a second to make, below 1 MB, open within 50 ms, below 30 MB; of 300,000: linear.

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "streets/file/streetfile.h"
#include "streets/network/graphnetwork.h"
#include "tools/extract/build/build.h"
#include "tools/extract/read/extract.h"

namespace {

namespace fs = std::filesystem;
using namespace tools::extract;

double secondsOf(const std::function<void()>& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

/// Streets 500 ft apart, each fourth an arterial, each tenth piece one way, every one with a bend.
Extract inventedCity(std::uint32_t side) {
    constexpr double Step = 500 / 364'000.0;  // degrees
    Extract city;
    const auto add = [&](double column, double line) {
        const auto number = static_cast<std::uint32_t>(city.nodes.size());
        city.nodes.push_back({number, {39.5 + line * Step, -83.5 + column * Step}});
        return number;
    };
    for (std::uint32_t i = 0; i < side * side; ++i) {
        const std::uint32_t line = i / side;
        add(i % side, line);
    }
    for (std::uint32_t along = 0; along < side; ++along) {
        for (const bool isStreet : {true, false}) {
            StreetTraits traits{
                .kind = along % 4 == 0 ? streets::StreetClass::Secondary
                                       : streets::StreetClass::Residential,
                .name = fmt::format("{} {}", along, isStreet ? "Street" : "Avenue")};
            traits.backward = along % 10 != 1;
            ExtractWay way{.id = static_cast<std::int64_t>(city.ways.size()),
                           .street = static_cast<std::int32_t>(city.streets.size())};
            city.streets.push_back(traits);
            for (std::uint32_t i = 0; i < side; ++i) {
                way.nodes.push_back(isStreet ? along * side + i : i * side + along);
                const double bend = 0.05 * ((i + along) % 3);
                way.nodes.push_back(isStreet ? add(i + 0.5, along + bend)
                                             : add(along + bend, i + 0.5));
            }
            city.ways.push_back(std::move(way));
        }
    }
    return city;
}

std::int64_t peakMegabytes() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss / 1024;
}

/// In a process of its own, so that its memory counts alone.
void apart(const std::function<void()>& work) {
    std::fflush(stdout);
    if (const pid_t child = ::fork(); child == 0) {
        work();
        std::fflush(stdout);
        ::_exit(EXIT_SUCCESS);
    } else {
        ::waitpid(child, nullptr, 0);
    }
}

void measure(const std::string& what, const std::string& file,
             const std::function<Extract()>& source) {
    apart([&] {
        Extract extract;
        const double reading = secondsOf([&] { extract = source(); });
        const geo::Centre centre{extract.nodes[extract.nodes.size() / 2].at, {}};
        BuiltStreets built;
        const double making = secondsOf([&] { built = streetsOf(std::move(extract), centre, {}); });
        const double writing = secondsOf([&] { streets::writeStreetFile(file, built.map); });
        fmt::print(
            "{:<28} {:>7} crossings: read {:.3f} s, made {:.3f} s, written {:.3f} s, {:.0f} KB, {} "
            "MB\n",
            what, built.map.nodes.size(), reading, making, writing,
            static_cast<double>(fs::file_size(file)) / 1e3, peakMegabytes());
    });
    apart([&] {
        const auto before = peakMegabytes();
        std::shared_ptr<streets::StreetMap> map;
        std::unique_ptr<const streets::Network> network;
        const double opening = secondsOf(
            [&] { map = std::make_shared<streets::StreetMap>(streets::readStreetFile(file)); });
        const double preparing =
            secondsOf([&] { network = streets::graphNetwork(map, streets::DrivingRules()); });
        fmt::print("{:<28} opened in {:.4f} s, its network in {:.4f} s, {} MB\n", "", opening,
                   preparing, peakMegabytes() - before);
    });
}

}  // namespace

int main(int count, char** words) {
    std::string folder = (fs::temp_directory_path() / "vireo-bench-XXXXXX").string();
    if (::mkdtemp(folder.data()) == nullptr) {
        return EXIT_FAILURE;
    }
    const std::string file = folder + "/bench.streets";
    for (int i = 1; i < count; ++i) {
        const std::vector<fs::path> extracts{words[i]};
        measure(extracts[0].filename().string(), file,
                [&] { return readExtracts(extracts, {}, [](std::int64_t, std::int64_t) {}); });
    }
    for (const std::uint32_t side : {142U, 275U, 548U}) {
        measure("invented", file, [&] { return inventedCity(side); });
    }
    fs::remove_all(folder);
    return EXIT_SUCCESS;
}
