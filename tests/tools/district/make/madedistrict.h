#pragma once

#include <string>

#include "platform/store/base/database.h"
#include "platform/store/open/open.h"
#include "support/temporaryfolder.h"
#include "tools/district/base/folders.h"
#include "tools/district/make/create.h"

namespace tools::district {

/// A district made in a temporary folder: the sample, or a generated one of so many runs.
class MadeDistrict {
public:
    explicit MadeDistrict(std::optional<std::int64_t> runs = {}, std::uint64_t seed = 1) {
        Progress progress;
        createDistrict({.folder = folder(), .runs = runs, .seed = seed}, progress);
    }

    [[nodiscard]] std::string folder() const { return temporary_.path() + "district"; }
    [[nodiscard]] Folders folders() const { return {folder()}; }

    [[nodiscard]] std::unique_ptr<store::Database> open(data::DatabaseFile file) const {
        return store::open(folders().database(file).string());
    }

    /// The first cell of a query on the routing file.
    [[nodiscard]] std::int64_t number(const std::string& sql) const {
        const auto database = open(data::DatabaseFile::Routing);
        const auto row = database->prepare(sql);
        row->step();
        return row->integer(0);
    }

    void execute(data::DatabaseFile file, const std::string& sql) const {
        open(file)->execute(sql);
    }

private:
    support::TemporaryFolder temporary_;
};

}  // namespace tools::district
