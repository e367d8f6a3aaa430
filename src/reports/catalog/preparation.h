#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/connection.h"
#include "platform/base/date.h"
#include "platform/base/notcopied.h"
#include "reports/base/content.h"

namespace reports {

struct SortField {
    std::string field = {};
    bool descending = false;
};

/// What somebody asks of a report.
struct Request {
    std::string report = {};  ///< its id
    /// The question whose rows are the runs: that of the last search, or one for a single run.
    std::string runs = {};
    std::string selection = {};        ///< the runs in words, for the head of the pages
    std::vector<SortField> sort = {};  ///< of the rows within their groups
    Options options = {};
    std::optional<base::Date> changedSince = {};  ///< only runs that were changed after it
};

/// Finds the map of a run; null where it has none.
using MapsOfRuns = std::function<std::shared_ptr<const Drawable>(const std::string& run)>;

/// Where the data are and who asks.
struct Sources {
    ado::Connection& routing;
    ado::Connection& work;  ///< the report file
    std::string user;
    base::Date now;
    MapsOfRuns maps = {};  ///< empty where there are no streets
};

/// The reports that a group of the suite offers, in their order: "RUNSEARCH" those of a search,
/// "RUN" those of one run.
[[nodiscard]] const std::vector<Report>& reportsOf(std::string_view group);
/// Any of them by its id; null where none has it.
[[nodiscard]] const Report* reportNamed(std::string_view id);

/// A report's rows in the work tables, under a key of their own, so that two programs on one
/// district do not meet. They are removed when this goes, and those that a killed program left when
/// the next report is prepared.
class Prepared : private base::NotCopied {
public:
    virtual ~Prepared() = default;

    /// Reads the report from its beginning; may be called again. What it gives must not outlive
    /// this.
    [[nodiscard]] virtual std::unique_ptr<Content> content() = 0;
    /// How many runs it shows.
    [[nodiscard]] virtual std::size_t runs() const = 0;
};

/// Fills the work tables. Nothing where `keepGoing` said no. The report file must see the tables of
/// routing and trip, too (Connection::link). Raises "Invalid procedure call" (5) for a report that
/// is none, jet::SqlError, store::StoreError.
[[nodiscard]] std::unique_ptr<Prepared> prepare(const Sources& sources, const Request& request,
                                                const KeepGoing& keepGoing = {});

}  // namespace reports
