#include "support/testdistrict.h"

#include <filesystem>

#include <fmt/format.h>

#include "data/schema/version.h"
#include "platform/store/base/database.h"
#include "platform/store/open/open.h"

namespace support {

using data::DatabaseFile;

TestDistrict::TestDistrict() {
    for (const std::string& path : {dataPath(), progPath(), vireoPath(), configFolder()}) {
        std::filesystem::create_directories(path);
    }
    for (const DatabaseFile file : data::AllDatabaseFiles) {
        const auto database = store::createFile(path(file));
        database->setDurability(store::Durability::Crash);
        database->setMark(data::markOf(file));
        for (const store::Table& table : data::tablesOf(file)) {
            database->create(table);
        }
    }
    writeIniWithErrorHandling("True");
}

std::string TestDistrict::path(DatabaseFile file) const {
    const auto folderOf = [&] {
        switch (file) {
            case DatabaseFile::RouteWrk:
                return progPath();
            case DatabaseFile::Trip:
            case DatabaseFile::QDSC:
                return vireoPath();
            default:
                return dataPath();
        }
    };
    return folderOf() + std::string(data::fileName(file));
}

void TestDistrict::writeIni(std::string_view text) const { folder_.write("vireo/route.ini", text); }

void TestDistrict::writeIni(std::string_view progPath, std::string_view errorHandling) const {
    writeIni(
        fmt::format("[AppPaths]\ndatapath={}\nprogpath={}\nVIREOpath={}\n\n"
                    "[AppSettings]\nERRORHANDLING={}\nMAPSoftware=None\n",
                    dataPath(), progPath, vireoPath(), errorHandling));
}

void TestDistrict::writeIniWithErrorHandling(std::string_view text) const {
    writeIni(progPath(), text);
}

void TestDistrict::writeIniWithProgPath(std::string_view path) const { writeIni(path, "True"); }

void TestDistrict::insert(DatabaseFile file, std::string_view table, const Row& row) const {
    std::string columns;
    std::string places;
    for (const auto& [name, value] : row) {
        columns += fmt::format("{}\"{}\"", columns.empty() ? "" : ", ", name);
        places += places.empty() ? "?" : ", ?";
    }
    const auto database = store::open(path(file));
    const auto statement = database->prepare(
        fmt::format("INSERT INTO \"{}\" ({}) VALUES ({})", table, columns, places));
    int place = 0;
    for (const auto& [name, value] : row) {
        statement->bind(place++, value);
    }
    statement->step();
}

void TestDistrict::sql(DatabaseFile file, std::string_view statement) const {
    store::open(path(file))->execute(statement);
}

void TestDistrict::addUser(const std::string& user, const std::string& password,
                           const std::vector<std::string>& grantedCodes) const {
    insert(DatabaseFile::QDSC, "QDSCU", {{"QDSC1", user}, {"QDSC2", password}});
    for (const std::string& code : grantedCodes) {
        sql(DatabaseFile::QDSC,
            fmt::format(
                "INSERT INTO QDSCPP (PRODUCT, PERM) SELECT 'ROUTING', '{0}' WHERE NOT EXISTS "
                "(SELECT 1 FROM QDSCPP WHERE PRODUCT = 'ROUTING' AND PERM = '{0}')",
                code));
        insert(DatabaseFile::QDSC, "QDSCU_PP",
               {{"PRODUCT", "ROUTING"}, {"QDSC1", user}, {"PERM", code}, {"Authority", true}});
    }
}

}  // namespace support
