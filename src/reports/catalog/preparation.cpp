#include "reports/catalog/preparation.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include <fmt/format.h>

#include "platform/ado/recordset.h"
#include "platform/base/error.h"
#include "platform/base/text.h"
#include "reports/catalog/reading.h"
#include "reports/catalog/worksession.h"

namespace reports {

namespace {

/// So many runs are filled by one statement a table, between two questions whether to go on.
constexpr std::int64_t BatchRuns = 500;
/// How far back changes are told where nobody said since when.
constexpr std::int64_t ChangeDays = 30;

const Definition* definitionNamed(std::string_view id) {
    const auto& all = definitions();
    const auto found = std::ranges::find_if(all, [&](const Definition& definition) {
        return base::equalsNoCase(definition.report.id, base::trim(id));
    });
    return found == all.end() ? nullptr : &*found;
}

std::vector<Report> collected(bool ofOneRun) {
    std::vector<Report> reports;
    for (const Definition& definition : definitions()) {
        if (!ofOneRun || definition.ofOneRun) {
            reports.push_back(definition.report);
        }
    }
    return reports;
}

/// What the main form hands over as sort fields: the run, and its place in a sequence. A run's
/// stops stand by their sequence in any case; of a list of runs it is their sequence over the day.
std::string runColumn(const std::string& field) {
    return base::equalsNoCase(field, "RunSeq") ? "STARTTIME" : base::uppered(base::trim(field));
}

void addOnce(std::vector<std::string>& order, std::string term) {
    const auto column = term.substr(0, term.find(' '));
    const auto isThere = std::ranges::any_of(order, [&](const std::string& other) {
        return other.substr(0, other.find(' ')) == column;
    });
    if (!column.empty() && !isThere) {
        order.push_back(std::move(term));
    }
}

void addAll(std::vector<std::string>& order, std::string_view terms) {
    while (!terms.empty()) {
        const auto end = std::min(terms.find(','), terms.size());
        addOnce(order, std::string(base::trim(terms.substr(0, end))));
        terms.remove_prefix(std::min(end + 1, terms.size()));
    }
}

std::string orderOf(const Definition& definition, const Request& request) {
    std::vector<std::string> order;
    addAll(order, definition.groupOrder);
    addAll(order, request.options.breaks == PageBreak::School  ? "SCHOOLNAME"
                  : request.options.breaks == PageBreak::Route ? "ROUTEID"
                                                               : "");
    for (const SortField& sort : request.sort) {
        if (const auto column = runColumn(sort.field); isRunColumn(column)) {
            addOnce(order, column + (sort.descending ? " DESC" : ""));
        }
    }
    addAll(order, definition.runOrder);
    addOnce(order, "RUN");
    return fmt::format("{}", fmt::join(order, ", "));
}

bool hasColumn(const Report& report, std::string_view field) {
    return std::ranges::any_of(report.columns, [&](const Column& column) {
        return base::equalsNoCase(column.field, field);
    });
}

/// Fields of runs have ordered the runs already.
std::string rowOrderOf(const Definition& definition, const Request& request) {
    std::vector<std::string> order;
    for (const SortField& sort : request.sort) {
        const auto field = base::uppered(base::trim(sort.field));
        if (definition.sortsRows && hasColumn(definition.report, field) && !isRunColumn(field)) {
            addOnce(order, field + (sort.descending ? " DESC" : ""));
        }
    }
    if (!order.empty() && !definition.sortedBy.empty()) {
        order.insert(order.begin(), definition.sortedBy);
    }
    addAll(order, definition.order);
    return fmt::format("{}", fmt::join(order, ", "));
}

/// Where all runs lead the same way, the end that is at the school says so.
void nameSchoolTime(Report& report, const std::string& field, const std::string& caption) {
    const auto column = std::ranges::find(report.columns, field, &Column::field);
    if (column != report.columns.end()) {
        column->caption = caption;
    }
}

std::string conditionOf(const Definition& definition, const Request& request) {
    if (base::trim(request.runs).empty()) {
        return "False";
    }
    const std::string found = fmt::format("RUN IN (SELECT Q.RUN FROM ({}) AS Q)", request.runs);
    std::string condition = "RUN." + found;
    if (definition.wholeDay) {
        condition = fmt::format(
            "({} OR RUN.INT_ROUTEID IN (SELECT X.INT_ROUTEID FROM RUN AS X WHERE X.{} AND "
            "X.INT_ROUTEID<>0))",
            condition, found);
    }
    if (request.changedSince) {
        condition += fmt::format(
            " AND (RUN.changeddt>#{0}# OR RUN.RUN IN (SELECT RUNLOG.RUNID FROM RUNLOG WHERE "
            "RUNLOG.LOGDATE>#{0}#))",
            request.changedSince->text());
    }
    return condition;
}

struct District {
    std::string name;
    double runCost = 0;
};

District readDistrict(ado::Connection& routing) {
    ado::Recordset row("SELECT District.DistName, District.RUNCOST FROM District", routing);
    return row.Eof() ? District()
                     : District{wordsOf(row["DistName"]), figureOf(row["RUNCOST"]).value_or(0)};
}

/// "Nov 21, 2026 9:41 AM"
std::string printed(base::Date now) {
    constexpr std::array Months{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const auto iso = now.iso();
    const auto month = static_cast<std::size_t>(base::leadingNumber(iso.substr(5, 2)));
    return fmt::format("{} {}, {} {}", Months[month - 1],
                       base::numberText(base::leadingNumber(iso.substr(8, 2))), iso.substr(0, 4),
                       cellText(CellKind::Time, now));
}

Heading headingOf(const Sources& sources, const Request& request, const Report& report,
                  std::string district) {
    const bool named = report.confidential == Confidential::WithNames && request.options.names;
    return {.title = report.title,
            .selection = request.selection,
            .district = std::move(district),
            .printed = printed(sources.now),
            .user = sources.user,
            .foot = report.foot,
            .confidential = report.confidential == Confidential::Always || named};
}

/// The keys of the session's runs, which stand one behind the other.
struct Extent {
    std::int64_t first = 0;
    std::int64_t count = 0;
    std::int64_t toSchool = 0;
};

Extent extentOf(ado::Connection& work, std::int64_t session) {
    ado::Recordset row(
        fmt::format("SELECT MIN(R.ID) AS FIRSTID, COUNT(*) AS N, SUM(IIF(R.PICKUP,1,0)) AS "
                    "TOSCHOOL FROM RPT_RUN AS R WHERE "
                    "R.SESSION={}",
                    session),
        work);
    const auto count = row["N"].asInteger();
    return count == 0 ? Extent()
                      : Extent{row["FIRSTID"].asInteger(), count, row["TOSCHOOL"].asInteger()};
}

class PreparedReport final : public Prepared {
public:
    PreparedReport(const Sources& sources, const Request& request, const Definition& definition)
        : work_(sources.work),
          session_(sources.work, sources.now),
          definition_(definition),
          options_(request.options) {}

    /// False where `keepGoing` said no.
    bool fill(const Sources& sources, const Request& request, const KeepGoing& keepGoing);

    [[nodiscard]] std::unique_ptr<Content> content() override {
        return definition_.report.form == Form::Sheet ? sheetContent(*stored_)
                                                      : listContent(*stored_);
    }
    [[nodiscard]] std::size_t runs() const override { return static_cast<std::size_t>(runs_); }

private:
    [[nodiscard]] bool addRuns(const Request& request, const KeepGoing& keepGoing);
    [[nodiscard]] std::optional<std::vector<std::string>> runsInOrder(const Request& request,
                                                                      const std::string& order,
                                                                      const KeepGoing& keepGoing);
    [[nodiscard]] bool fillAll(std::span<const std::string> runs, const std::string& order,
                               RunColumns columns, const KeepGoing& keepGoing);
    void fillBatch(const Sources& sources, const Request& request, std::int64_t first,
                   std::int64_t last);

    ado::Connection& work_;
    WorkSession session_;
    const Definition& definition_;
    Options options_;
    std::int64_t runs_ = 0;
    double runCost_ = 0;
    std::unique_ptr<Stored> stored_;
};

bool PreparedReport::fill(const Sources& sources, const Request& request,
                          const KeepGoing& keepGoing) {
    const District district = readDistrict(sources.routing);
    stored_ = std::make_unique<Stored>(
        Stored{.work = work_,
               .session = session_.key(),
               .definition = definition_,
               .report = definition_.report,
               .order = rowOrderOf(definition_, request),
               .options = options_,
               .heading = headingOf(sources, request, definition_.report, district.name),
               .maps = definition_.report.mayMap && options_.maps ? sources.maps : nullptr});
    if (!addRuns(request, keepGoing)) {
        return false;
    }
    const Extent extent = extentOf(work_, session_.key());
    stored_->first = extent.first;
    stored_->last = extent.first + extent.count - 1;
    runs_ = extent.count;
    runCost_ = district.runCost;
    if (runs_ > 0 && extent.toSchool == runs_) {
        nameSchoolTime(stored_->report, "ENDTIME", "At School");
    } else if (runs_ > 0 && extent.toSchool == 0) {
        nameSchoolTime(stored_->report, "STARTTIME", "From School");
    }
    for (std::int64_t done = 0; done < extent.count; done += BatchRuns) {
        if (keepGoing &&
            !keepGoing(static_cast<double>(done) / static_cast<double>(extent.count))) {
            return false;
        }
        const auto count = std::min(BatchRuns, extent.count - done);
        fillBatch(sources, request, extent.first + done, extent.first + done + count - 1);
    }
    return !keepGoing || keepGoing(1);
}

bool PreparedReport::fillAll(std::span<const std::string> runs, const std::string& order,
                             RunColumns columns, const KeepGoing& keepGoing) {
    constexpr auto Most = static_cast<std::size_t>(BatchRuns);
    for (; !runs.empty(); runs = runs.subspan(std::min(Most, runs.size()))) {
        if (keepGoing && !keepGoing(0)) {
            return false;
        }
        fillRuns(work_, session_.key(), runs.first(std::min(Most, runs.size())), order, columns);
    }
    return true;
}

/// The store puts the runs into their order by what the order names and no more: sorting them in
/// one go with all that it is made from would hold the form up.
std::optional<std::vector<std::string>> PreparedReport::runsInOrder(const Request& request,
                                                                    const std::string& order,
                                                                    const KeepGoing& keepGoing) {
    const auto found = runsOf(work_, runsMeeting(conditionOf(definition_, request)), keepGoing);
    if (!found || !fillAll(*found, order, RunColumns::OfOrder, keepGoing)) {
        return std::nullopt;
    }
    auto runs = runsOf(work_, runsFilled(session_.key(), order), keepGoing);
    session_.removeRows();
    return runs;
}

/// One transaction for all of them: another program must not come between their keys.
bool PreparedReport::addRuns(const Request& request, const KeepGoing& keepGoing) {
    const std::string order = orderOf(definition_, request);
    const auto runs = runsInOrder(request, order, keepGoing);
    if (!runs) {
        return false;
    }
    ado::CommitOnExit unit(work_);
    const bool isWhole = fillAll(*runs, order, RunColumns::All, keepGoing);
    unit.commit();
    return isWhole;
}

void PreparedReport::fillBatch(const Sources& sources, const Request& request, std::int64_t first,
                               std::int64_t last) {
    ado::CommitOnExit unit(work_);
    const Batch batch{.work = work_,
                      .session = session_.key(),
                      .first = first,
                      .last = last,
                      .stopsBefore = lastKey(work_, "RPT_STOP"),
                      .now = sources.now,
                      .since = request.changedSince.value_or(
                          sources.now.plusSeconds(-ChangeDays * base::Date::SecondsPerDay)),
                      .runCost = runCost_};
    const std::string& table = definition_.table;
    const auto before = table.empty() ? 0 : lastKey(work_, table);
    for (const auto fill : definition_.fills) {
        fill(batch);
    }
    if (options_.names && definition_.report.mayName) {
        fillStudents(batch);
    }
    if (base::equalsNoCase(table, "RPT_RUN")) {
        countRows(*stored_, fmt::format("{}.ID BETWEEN {} AND {}", definition_.alias, first, last));
    } else if (!table.empty()) {
        countRows(*stored_, fmt::format("{}.ID>{}", definition_.alias, before));
    }
    unit.commit();
}

}  // namespace

const std::vector<Report>& reportsOf(std::string_view group) {
    static const auto ofSearch = collected(false);
    static const auto ofRun = collected(true);
    static const std::vector<Report> none;
    return base::equalsNoCase(group, "RUNSEARCH") ? ofSearch
           : base::equalsNoCase(group, "RUN")     ? ofRun
                                                  : none;
}

const Report* reportNamed(std::string_view id) {
    const Definition* definition = definitionNamed(id);
    return definition == nullptr ? nullptr : &definition->report;
}

std::unique_ptr<Prepared> prepare(const Sources& sources, const Request& request,
                                  const KeepGoing& keepGoing) {
    const Definition* definition = definitionNamed(request.report);
    if (definition == nullptr) {
        throw base::RunTimeError(base::errors::InvalidProcedureCall,
                                 fmt::format("There is no report named {}.", request.report));
    }
    sources.work.setDurability(store::Durability::Crash);
    auto prepared = std::make_unique<PreparedReport>(sources, request, *definition);
    return prepared->fill(sources, request, keepGoing) ? std::move(prepared) : nullptr;
}

}  // namespace reports
