#include "tools/district/import/plan/runguard.h"

#include <bit>

#include "platform/base/text.h"
#include "tools/district/import/plan/values.h"

namespace tools::district {

namespace {

constexpr std::string_view RunColumns =
    "SELECT RUN, DESCRIPTION, ACTIVE, SCHOOL, TRIPTYPE, RUNFAMILY, LOCCODE, INT_ROUTEID, VEHTYPE,"
    " \"Capacity\", \"OverFill\", BELLTIME, PICKUP, \"TimeToUse\", STARTTIME, ENDTIME, COMMENT,"
    " \"monday\", \"tuesday\", \"wednesday\", \"thursday\", \"friday\" FROM RUN";
constexpr std::string_view StopColumns =
    "SELECT RUN, INT_STOPID, RUNSEQ, NUM_STUDENTS, LOAD_TIME, TIME_TOSTOP, TIME_AT_STOP,"
    " RUN_PICKUP_SIDE, ACTIVE, UPDATE_TIME FROM STOP_TRIPTYPE"
    " WHERE RUN IS NOT NULL AND RUN NOT IN ('', ' ')";

const store::Table& recordTable() {
    using enum store::ColumnKind;
    static const store::Table table{.name = "IMPORTED_RUN",
                                    .columns = {{"RUN", Code, false}, {"DIGEST", Integer, false}},
                                    .key = {"RUN"}};
    return table;
}

std::uint64_t digestOfRow(const store::Statement& row) {
    std::string text;
    for (int column = 1; column < row.columnCount(); ++column) {
        appendDigestText(row.cell(column), store::ColumnKind::Text, text);
    }
    return digestOf(text);
}

}  // namespace

std::string RunGuard::keyOf(const std::string& run) { return base::lowered(base::trimRight(run)); }

void RunGuard::read() {
    now_ = digestsNow();
    recorded_.clear();
    left_.clear();
    brought_.clear();
    if (routing_.catalog().find(recordTable().name) != nullptr) {
        readRecorded();
    }
}

void RunGuard::readRecorded() {
    const auto rows = routing_.prepare("SELECT RUN, DIGEST FROM IMPORTED_RUN");
    while (rows->step()) {
        recorded_[keyOf(std::string(rows->text(0)))] =
            std::bit_cast<std::uint64_t>(rows->integer(1));
    }
}

// Stops come in no order, so that their digests are added up.
RunGuard::Digests RunGuard::digestsNow() const {
    Digests digests;
    for (const std::string_view columns : {RunColumns, StopColumns}) {
        const auto rows = routing_.prepare(columns);
        while (rows->step()) {
            digests[keyOf(std::string(rows->text(0)))] += digestOfRow(*rows);
        }
    }
    return digests;
}

bool RunGuard::isEdited(const std::string& run) const {
    const auto now = now_.find(keyOf(run));
    if (now == now_.end()) {
        return false;
    }
    const auto recorded = recorded_.find(now->first);
    return recorded == recorded_.end() || recorded->second != now->second;
}

void RunGuard::record() {
    routing_.complete(recordTable());
    const Digests digests = digestsNow();
    const auto forget = routing_.prepare("DELETE FROM IMPORTED_RUN WHERE RUN = ?");
    const auto add = routing_.prepare("INSERT INTO IMPORTED_RUN (RUN, DIGEST) VALUES (?, ?)");
    for (const std::string& run : brought_) {
        const auto now = digests.find(run);
        const auto before = recorded_.find(run);
        const bool isKnown = before != recorded_.end();
        if (left_.contains(run) || now == digests.end() ||
            (isKnown && before->second == now->second)) {
            continue;
        }
        forget->bind(0, run);
        forget->step();
        forget->reset();
        add->bind(0, run);
        add->bind(1, std::bit_cast<std::int64_t>(now->second));
        add->step();
        add->reset();
    }
}

}  // namespace tools::district
