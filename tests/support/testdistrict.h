#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "data/schema/schema.h"
#include "platform/base/value.h"
#include "support/temporaryfolder.h"

namespace support {

/// A district for one test: the six files with their tables, still empty, in "data", "prog" and
/// "common" of a temporary folder (in memory: no program can be run from it), and "vireo/route.ini"
/// that names them with error handling on.
class TestDistrict {
public:
    using Row = std::vector<std::pair<std::string, base::Value>>;

    TestDistrict();

    /// Ends in a separator, as do the paths below.
    [[nodiscard]] const std::string& folder() const { return folder_.path(); }
    [[nodiscard]] std::string dataPath() const { return folder() + "data/"; }
    [[nodiscard]] std::string progPath() const { return folder() + "prog/"; }
    [[nodiscard]] std::string vireoPath() const { return folder() + "common/"; }
    /// The folder of "route.ini", without a separator at its end.
    [[nodiscard]] std::string configFolder() const { return folder() + "vireo"; }
    [[nodiscard]] std::string path(data::DatabaseFile file) const;

    /// Writes "route.ini" anew.
    void writeIni(std::string_view text) const;
    /// Writes "route.ini" with all its keys and this text as ERRORHANDLING, or as progpath.
    void writeIniWithErrorHandling(std::string_view text) const;
    void writeIniWithProgPath(std::string_view path) const;

    /// Adds a row; columns that are not named get their defaults.
    void insert(data::DatabaseFile file, std::string_view table, const Row& row) const;
    /// Runs one statement of the store's own dialect in that file.
    void sql(data::DatabaseFile file, std::string_view statement) const;

    /// Adds a user with this password and these permission codes; the codes become permission
    /// points of the product too.
    void addUser(const std::string& user, const std::string& password,
                 const std::vector<std::string>& grantedCodes) const;

private:
    void writeIni(std::string_view progPath, std::string_view errorHandling) const;

    TemporaryFolder folder_{TemporaryFolder::Place::Memory};
};

}  // namespace support
