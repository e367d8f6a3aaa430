#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>

#include "platform/store/base/database.h"
#include "support/rows.h"
#include "support/smalldistrict.h"
#include "support/testsession.h"

namespace support {

/// A running program on a district of its own, with other programs at work on the same files. Forms
/// are added by FormTest.
class DistrictSession : public testing::Test {
protected:
    /// `fill` puts the district's rows there before the session starts.
    explicit DistrictSession(void (*fill)(const TestDistrict&) = fillSmall);

    /// Another program writes to the routing file, in the store's own dialect.
    void byOthers(std::string_view statement) const {
        district.sql(data::DatabaseFile::Routing, statement);
    }
    /// Another program holds the routing file from here to the end of what is returned. The session
    /// waits for it no longer than a moment.
    [[nodiscard]] std::shared_ptr<void> heldByOthers() const;

    /// What the routing file holds: all rows as rowsOf() gives them, or the first row, "no row"
    /// without one.
    static std::vector<std::string> rows(std::string_view query);
    static std::string stored(std::string_view query);
    /// A column of the run with that id.
    static std::string storedRun(const std::string& column, const std::string& run = "101-AM") {
        return stored("SELECT " + column + " FROM RUN WHERE RUN='" + run + "'");
    }

    void answer(base::MsgAnswer given) { session.boxes.answers.push_back(given); }
    /// The boxes shown since the last call, by title or text.
    std::vector<std::string> titles() { return taken(&base::MsgRequest::title); }
    std::vector<std::string> texts() { return taken(&base::MsgRequest::text); }
    /// Of the last box; "" where none was shown.
    [[nodiscard]] std::string lastTitle() const;
    [[nodiscard]] std::string lastText() const;

    TestDistrict district;
    TestSession session;

private:
    std::vector<std::string> taken(std::string base::MsgRequest::*part);
};

}  // namespace support
