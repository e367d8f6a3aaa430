// 200,000 students, 150,000 stops and 20,000 runs from CSV into an empty district, beside the
// engine's own shell reading the same rows into the same tables: at most 1.5 times its time, below
// 100 MB of memory, and the dry run no slower than the import. Needs sqlite3 on the search path.

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>

#include <fmt/format.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tools/district/import/apply/importer.h"
#include "tools/district/make/create.h"

namespace {

namespace fs = std::filesystem;
using namespace tools::district;

constexpr int Students = 200'000;
constexpr int Stops = 150'000;
constexpr int Runs = 20'000;

fs::path temporaryFolder() {
    std::string name = (fs::temp_directory_path() / "vireo-bench-XXXXXX").string();
    return ::mkdtemp(name.data()) == nullptr ? fs::path() : fs::path(name);
}

/// The same rows twice: as a student system exports them, and by the tables' own columns for the
/// shell, with the numbers that the import gives.
void writeSources(const fs::path& folder) {
    fs::create_directories(folder / "own");
    std::ofstream(folder / "schools.csv") << "school\nOAK\n";
    std::ofstream stops(folder / "stops.csv");
    std::ofstream ownStops(folder / "own/STOP.csv");
    stops << "stop,type,description,address,city,state,zip,school,active,x,y\n";
    for (int i = 1; i <= Stops; ++i) {
        const auto rest = fmt::format("REGULAR,Corner {0},{0} Main Street,Oakville,KS,67000,,", i);
        stops << fmt::format("S{},{}1,{},{}\n", i, rest, i % 3000 * 10.5, i / 3000 * 20.25);
        ownStops << fmt::format("{},S{},{},1,0,{},{},\n", i, i, rest, i % 3000 * 10.5,
                                i / 3000 * 20.25);
    }
    std::ofstream runs(folder / "runs.csv");
    runs << "run,description,school,trip_type,bell,start,end\n";
    for (int i = 1; i <= Runs; ++i) {
        runs << fmt::format("R{0},Run {0},OAK,AM,8:00,7:05,7:50\n", i);
    }
    std::ofstream students(folder / "students.csv");
    std::ofstream ownStudents(folder / "own/STUDENT.csv");
    std::ofstream ownAddresses(folder / "own/STU_ADDR.csv");
    students << "student,last_name,first_name,school,address,city,state,phone\n";
    for (int i = 1; i <= Students; ++i) {
        students << fmt::format("N{0},Last{0},First,OAK,{0} Elm Street,Oakville,KS,555-0101\n", i);
        ownStudents << fmt::format("{0},N{0},Last{0},First,OAK\n", i);
        ownAddresses << fmt::format("{0},{0},,{0} Elm Street,,Oakville,KS,555-0101,\n", i);
    }
}

template <class Work>
double secondsOf(const Work& work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

double shellSeconds(const fs::path& folder, const fs::path& district) {
    const fs::path script = folder / "own/script";
    std::ofstream(script)
        << ".mode csv\nBEGIN;\n.import own/STOP.csv STOP\n.import own/STUDENT.csv "
           "STUDENT\n.import own/STU_ADDR.csv STU_ADDR\n.import runs.csv work\n"
           "INSERT INTO RUN (RUN, DESCRIPTION, SCHOOL, TRIPTYPE) SELECT run, "
           "description, school, trip_type FROM work;\nDROP TABLE work;\nCOMMIT;\n";
    return secondsOf([&] {
        const std::string command =
            fmt::format("cd '{}' && sqlite3 '{}' < own/script > /dev/null 2>&1", folder.string(),
                        (district / "data/routing.mdb").string());
        if (std::system(command.c_str()) != 0) {
            std::cerr << "The shell could not import; is sqlite3 installed?\n";
            std::exit(1);
        }
    });
}

/// In a process of its own, whose memory is told.
double importSeconds(const fs::path& folder, const fs::path& district, bool apply) {
    return secondsOf([&] {
        const pid_t child = ::fork();
        if (child == 0) {
            Progress progress;
            const ImportOptions options{.folders = {district},
                                        .sources = {folder},
                                        .map = {},
                                        .rejected = {},
                                        .rules = {},
                                        .now = base::Date::of(2026, 8, 1),
                                        .apply = apply};
            const ImportResult result = importInto(options, progress);
            rusage own{};
            ::getrusage(RUSAGE_SELF, &own);
            std::cout << fmt::format("  {}: {} lines refused, {} MB at most\n",
                                     apply ? "import" : "dry run", result.outcome.refused,
                                     own.ru_maxrss / 1024)
                      << std::flush;
            ::_exit(0);
        }
        ::waitpid(child, nullptr, 0);
    });
}

void makeEmpty(const fs::path& folder) {
    Progress progress;
    createDistrict({.folder = folder, .empty = EmptyDistrict{"Bench", {"ADMIN", "bench"}}},
                   progress);
}

}  // namespace

int main() {
    const fs::path folder = temporaryFolder();
    writeSources(folder);
    makeEmpty(folder / "by-shell");
    makeEmpty(folder / "imported");
    const double shell = shellSeconds(folder, folder / "by-shell");
    const double dry = importSeconds(folder, folder / "imported", false);
    const double written = importSeconds(folder, folder / "imported", true);
    const double again = importSeconds(folder, folder / "imported", false);
    std::cout << fmt::format(
        "shell {:.2f} s, dry run {:.2f} s, import {:.2f} s ({:.2f} times the "
        "shell), once more the same {:.2f} s\n",
        shell, dry, written, written / shell, again);
    fs::remove_all(folder);
    return 0;
}
