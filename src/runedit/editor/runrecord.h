#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/connection.h"
#include "platform/base/date.h"
#include "runedit/editor/runfields.h"

/// The run's row as the editor reads and writes it. A row that another program changes or deletes
/// while it is being edited is noticed: nothing is overwritten that the planner has not been shown.
namespace runedit {

/// Who created and changed a run and when, as texts; "" for what is not known.
struct RunAudit {
    std::string createdBy;
    std::string created;
    std::string changedBy;
    std::string changed;
    std::string statusChanged;
};

struct StoredRun {
    RunTexts texts;
    RunAudit audit;
};

/// The run's row; nothing where there is none. Ids are compared without case and trailing blanks.
[[nodiscard]] std::optional<StoredRun> readStoredRun(ado::Connection& routing,
                                                     std::string_view run);

/// What another program has stored in a field since the planner was last shown it.
struct FieldChange {
    RunField field;
    std::string shown;   ///< what the planner knows to be stored
    std::string stored;  ///< what is stored now
    /// What the planner has entered instead; nothing where the field was not touched.
    std::optional<std::string> entered;
};

/// Keeps apart what is stored in the fields of an open run, what the planner was shown of it, and
/// what the planner enters.
class RunEntries {
public:
    /// All fields were filled with `stored`; `shown` is what they hold afterwards, which a control
    /// may write differently.
    void filled(const RunTexts& stored, const RunTexts& shown);
    /// One untouched field was filled anew.
    void filled(RunField field, const std::string& stored, const std::string& shown);
    /// The planner has been told what is stored now, also of the fields that keep their entries.
    void told(const RunTexts& stored) { stored_ = stored; }

    /// Whether the planner has changed a field that holds `text` now.
    [[nodiscard]] bool isTouched(RunField field, const std::string& text) const {
        return shown_[field] != text;
    }
    [[nodiscard]] bool anyTouched(const RunTexts& entered) const;
    /// What differs from what the planner knows. Totals do not count: nobody enters them.
    [[nodiscard]] std::vector<FieldChange> changesByOthers(const RunTexts& storedNow,
                                                           const RunTexts& entered) const;

private:
    RunTexts stored_;
    RunTexts shown_;
};

/// Fields that the program shows but nobody enters.
[[nodiscard]] bool isTotal(RunField field);

/// Who saves, and when.
struct Author {
    std::string user;
    base::Date now;
};

enum class SaveOutcome {
    Saved,
    IdTaken,  ///< a new run's id belongs to another run by now
    Changed,  ///< another program has changed fields; nothing was written
    Deleted,  ///< another program has deleted the run; nothing was written
};

struct SaveResult {
    SaveOutcome outcome;
    StoredRun stored = {};                  ///< the row as it is now; empty when deleted
    std::vector<FieldChange> changes = {};  ///< of other programs; none when saved
};

/// Adds a row with all fields; `created` and `changed` are the author's. The texts must have passed
/// findFault. Both raise store::StoreError, and are one unit of work.
[[nodiscard]] SaveResult createRun(ado::Connection& routing, const RunTexts& texts,
                                   const Author& author);

/// Writes the fields that the planner has touched, unless another program has changed one meanwhile
/// that the planner was not told of. The id, who created the run and when are never written.
[[nodiscard]] SaveResult changeRun(ado::Connection& routing, const RunEntries& entries,
                                   const RunTexts& texts, const Author& author);

/// The changes as the planner reads them, one a line.
[[nodiscard]] std::string describe(const std::vector<FieldChange>& changes);

}  // namespace runedit
