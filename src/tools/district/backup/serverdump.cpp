#include "tools/district/backup/serverdump.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include <fmt/format.h>
#include <unistd.h>

#include "platform/base/text.h"
#include "platform/store/base/database.h"
#include "platform/store/base/location.h"
#include "platform/store/open/open.h"
#include "tools/district/backup/newfile.h"
#include "tools/district/backup/servertool.h"
#include "tools/district/base/openalone.h"
#include "tools/district/base/refuse.h"

namespace tools::district {

namespace {

namespace fs = std::filesystem;

using data::DatabaseFile;

/// What all six share: types, functions and the marks of the files.
constexpr std::string_view Shared = "vireo";

store::ServerPath placeOf(const Folders& folders, DatabaseFile file) {
    return store::serverPathOf(folders.database(file).string());
}

std::string connectionOf(const Folders& folders) {
    std::string connection = placeOf(folders, DatabaseFile::Routing).connection;
    for (const DatabaseFile file : data::AllDatabaseFiles) {
        if (placeOf(folders, file).connection != connection) {
            refuse(
                "The settings name more than one database of the server for this district. Name "
                "its place itself: postgresql://owner@server/database/.");
        }
    }
    return connection;
}

std::vector<std::string> schemasOf(const Folders& folders) {
    std::vector<std::string> schemas{std::string(Shared)};
    for (const DatabaseFile file : data::AllDatabaseFiles) {
        schemas.push_back(placeOf(folders, file).file);
    }
    return schemas;
}

void writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(file, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) {
            refuse(fmt::format("The back-up cannot be written: {}.", std::strerror(errno)));
        }
        bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
}

/// Tells of megabytes as they pass.
class Passing {
public:
    Passing(Progress& progress, std::string deed) : progress_(progress), deed_(std::move(deed)) {
        progress_.begin(deed_, 0);
    }
    void add(std::size_t bytes) {
        constexpr std::size_t Megabyte = 1'000'000;
        bytes_ += bytes;
        if (bytes_ / Megabyte != told_) {
            told_ = bytes_ / Megabyte;
            progress_.begin(fmt::format("{}, {} MB", deed_, told_), 0);
        }
    }

private:
    Progress& progress_;
    std::string deed_;
    std::size_t bytes_ = 0;
    std::size_t told_ = 0;
};

/// The tool of that name with what every one is told; it never asks for a password.
std::unique_ptr<ServerTool> tool(std::string_view name, int version,
                                 std::vector<std::string> arguments, Progress& progress) {
    return std::make_unique<ServerTool>(serverProgram(name, version), std::move(arguments),
                                        [&progress] { progress.reach(0, 0); });
}

/// The answer to a question, which any version of psql asks.
std::string answerTo(const std::string& question, const Folders& folders, Progress& progress) {
    constexpr int AnyVersion = 0;
    const auto psql = tool("psql", AnyVersion,
                           {"--no-psqlrc", "--no-password", "--no-align", "--tuples-only",
                            "--command=" + question, "--dbname=" + connectionOf(folders)},
                           progress);
    std::string answer;
    for (auto bytes = psql->read(); !bytes.empty(); bytes = psql->read()) {
        answer += bytes;
    }
    psql->finish();
    return std::string(base::trim(answer));
}

int versionOf(const Folders& folders, Progress& progress) {
    constexpr int Thousands = 10'000;
    return std::stoi(answerTo("SHOW server_version_num", folders, progress)) / Thousands;
}

void dump(const Folders& folders, int version, int file, Progress& progress) {
    std::vector<std::string> arguments{"--format=custom", "--no-password", "--strict-names",
                                       "--dbname=" + connectionOf(folders)};
    for (const std::string& schema : schemasOf(folders)) {
        arguments.push_back(fmt::format("--schema=\"{}\"", schema));
    }
    Passing passing(progress, "Packing");
    const auto dumping = tool("pg_dump", version, std::move(arguments), progress);
    for (auto bytes = dumping->read(); !bytes.empty(); bytes = dumping->read()) {
        writeAll(file, bytes);
        passing.add(bytes.size());
    }
    dumping->finish();
}

/// What pg_restore makes of a file, as statements.
std::unique_ptr<ServerTool> unpacking(const fs::path& file, int version, Progress& progress) {
    return tool("pg_restore", version, {"--no-owner", "--file=-", file.string()}, progress);
}

void requireReadable(const fs::path& file, int version, Progress& progress) {
    Passing passing(progress, "Reading it again");
    const auto reading = unpacking(file, version, progress);
    for (auto bytes = reading->read(); !bytes.empty(); bytes = reading->read()) {
        passing.add(bytes.size());
    }
    reading->finish();
}

/// The district's databases that are there, with everybody else kept out.
std::vector<std::unique_ptr<store::Database>> shutOnServer(const Folders& folders) {
    std::vector<std::unique_ptr<store::Database>> there;
    for (const DatabaseFile file : data::AllDatabaseFiles) {
        try {
            there.push_back(openAlone(folders.database(file).string()));
        } catch (const store::StoreError& error) {
            if (error.fault() != store::Fault::Missing) {
                throw;
            }
        }
    }
    return there;
}

/// The transaction that has put everything back and is still to be committed.
std::unique_ptr<ServerTool> refill(const fs::path& file, const Folders& folders,
                                   Progress& progress) {
    const int version = versionOf(folders, progress);
    auto psql = tool("psql", version,
                     {"--no-psqlrc", "--quiet", "--no-password", "--output=/dev/null",
                      "--set=ON_ERROR_STOP=1", "--dbname=" + connectionOf(folders)},
                     progress);
    psql->write("SET client_min_messages = warning;\nBEGIN;\n");
    for (const std::string& schema : schemasOf(folders)) {
        psql->write(fmt::format("DROP SCHEMA IF EXISTS \"{}\" CASCADE;\n", schema));
    }
    Passing passing(progress, "Restoring");
    const auto restoring = unpacking(file, version, progress);
    for (auto bytes = restoring->read(); !bytes.empty(); bytes = restoring->read()) {
        psql->write(bytes);
        passing.add(bytes.size());
    }
    restoring->finish();
    psql->write("\\echo done\n");
    if (psql->read().empty()) {  // it says so only behind statements that went well
        psql->finish();
    }
    return psql;
}

}  // namespace

bool isServerDump(const fs::path& file) {
    constexpr std::string_view Sign = "PGDMP";
    std::array<char, Sign.size()> first{};
    std::ifstream(file, std::ios::binary).read(first.data(), first.size());
    return std::string_view(first.data(), first.size()) == Sign;
}

std::string nameOnServer(const Folders& folders) {
    const std::string root = folders.root.string();
    if (!store::isServer(root)) {
        return folders.root.filename().string();
    }
    const std::string place = connectionOf(folders);
    const std::string path = place.substr(0, place.find('?'));
    const std::string name = path.substr(path.rfind('/') + 1);
    return name.empty() ? "district" : name;
}

std::int64_t dumpDatabases(const Folders& folders, const fs::path& target, Progress& progress) {
    NewFile file(target);
    const int version = versionOf(folders, progress);
    dump(folders, version, file.handle(), progress);
    requireReadable(file.path(), version, progress);
    const auto bytes =
        std::stoll(answerTo("SELECT pg_database_size(current_database())", folders, progress));
    file.finish();
    return bytes;
}

bool restoreDatabases(const fs::path& file, const Folders& folders,
                      const std::function<bool()>& mayReplace, const fs::path& former,
                      Progress& progress) {
    const auto there = shutOnServer(folders);
    if (!there.empty()) {
        progress.clear();
        if (!mayReplace()) {
            refuse(fmt::format("There is a district at {} already; nothing was restored.",
                               folders.data().string()));
        }
        dumpDatabases(folders, former, progress);
    }
    std::unique_ptr<ServerTool> unit;
    try {
        unit = refill(file, folders, progress);
    } catch (...) {
        std::error_code ignored;
        fs::remove(former, ignored);  // it is as it stands there
        throw;
    }
    unit->write("COMMIT;\n");  // a server that is gone from here on may have done it
    unit->finish();
    return !there.empty();
}

}  // namespace tools::district
