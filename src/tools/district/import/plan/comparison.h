#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <unordered_set>
#include <vector>

#include "platform/base/date.h"
#include "tools/district/base/progress.h"
#include "tools/district/import/map/binding.h"
#include "tools/district/import/map/mapfile.h"
#include "tools/district/import/plan/linereader.h"
#include "tools/district/import/plan/outcome.h"
#include "tools/district/import/plan/rowsink.h"
#include "tools/district/import/plan/runguard.h"

namespace tools::district {

/// One file to be read as one kind.
struct ImportSource {
    std::filesystem::path path;
    const FileKind* kind = nullptr;
    std::optional<MapSection> section = {};
};

/// What an import may do beside adding and changing rows.
struct ImportRules {
    bool addCodes = false;                ///< unknown codes of schools, places and needs are put in
    bool overwriteEdited = false;         ///< runs that planners have changed, too
    std::set<std::string> replaced = {};  ///< tables that keep only what the sources have
    std::optional<base::Date> rollOver =
        {};  ///< the last day of students who left or changed school
};

/// The open files of a district.
using OpenDistrict = std::map<data::DatabaseFile, std::unique_ptr<store::Database>>;

/// Compares sources with a district, row by row and in memory. What differs is told, and handed to
/// a sink where there is one.
class Comparison : private TableSet {
public:
    /// The sources stand in the order of practicalKinds(). Raises base::RunTimeError for a source
    /// that cannot be read or lacks a column.
    Comparison(std::vector<ImportSource> sources, ImportRules rules, const OpenDistrict& district);
    ~Comparison() override;

    using Reject = std::function<void(const Rejection&)>;
    /// Reads all sources; refused lines are handed to `reject`. Raises Interrupted,
    /// base::RunTimeError.
    ImportOutcome read(RowSink* sink, const Reject& reject, Progress& progress);

    /// Before the sources are read once more: everything is read from the district anew.
    void forgetDistrict();
    /// The files that rows go to.
    [[nodiscard]] std::set<data::DatabaseFile> filesWritten() const;
    [[nodiscard]] RunGuard& runs() { return guard_; }
    /// Runs that got, lost or changed a stop in the last reading.
    [[nodiscard]] const std::set<std::string>& runsWithOtherStops() const { return otherStops_; }
    /// Runs that are new or changed in the last reading, their stops included.
    [[nodiscard]] const std::set<std::string>& runsTouched() const { return touched_; }
    [[nodiscard]] bool brings(std::string_view table, std::string_view column) const;

private:
    struct Opened;

    [[nodiscard]] StoredTable& of(const std::string& table,
                                  const std::vector<std::string>& key) override;
    void open(ImportSource source);
    void readTables();
    void readSource(Opened& source);
    void takeRecord(Opened& source, const CsvRecord& record);
    void checkRow(const Opened& source, const MadeRow& row);
    void take(Opened& source, const CsvRecord& record, std::vector<MadeRow>& rows);
    std::int64_t takeRow(const LineReader::BoundRow& bound, MadeRow& row, bool ownerIsNew,
                         std::uint32_t line);
    std::int64_t addRow(const LineReader::BoundRow& bound, const MadeRow& row,
                        KeyMap::Number number);
    void changeRow(const LineReader::BoundRow& bound, const MadeRow& row, KeyMap::Number number);
    void addCodes(const LineReader::Made& made);
    bool isLeftToPlanners(const LineReader::BoundRow& bound, const MadeRow& row,
                          const KeyMap::Entry* entry);
    void noteRuns(const LineReader::BoundRow& bound, const MadeRow& row, const KeyMap::Entry* entry,
                  bool isChanged);
    void noteRow(const LineReader::BoundRow& bound, const MadeRow& row, KeyMap::Entry& entry);
    void takeStopsOff(StoredTable& stopTrips);
    void endRides(StoredTable& students);
    void removeUnmet(StoredTable& table);
    void finishTable(Opened& source);
    [[nodiscard]] std::string described() const;
    void tellNew(TableOutcome& outcome) const;
    [[nodiscard]] std::string changeTold(const LineReader::BoundRow& bound, const MadeRow& row,
                                         std::int64_t stored) const;
    TableOutcome& outcomeOf(const std::string& table);
    void reject(Rejection rejection);

    ImportRules rules_;
    const OpenDistrict& district_;
    RunGuard guard_;
    std::map<std::pair<std::string, std::vector<std::string>>, std::unique_ptr<StoredTable>>
        tables_;
    std::vector<std::unique_ptr<Opened>> sources_;
    std::unordered_set<std::int64_t> otherStopTypes_;  ///< stops that are not REGULAR
    std::set<std::string> runsMet_;                    ///< whose stops a source lists
    std::set<std::string> otherStops_;
    std::set<std::string> touched_;
    std::set<std::int64_t> moved_;  ///< students whose school is another one
    std::int64_t several_ = 0;

    Opened* inHand_ = nullptr;
    const CsvRecord* record_ = nullptr;
    RowSink* sink_ = nullptr;
    const Reject* reject_ = nullptr;
    Progress* progress_ = nullptr;
    ImportOutcome outcome_;
};

}  // namespace tools::district
