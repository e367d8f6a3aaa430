#include "support/runbuilder.h"

#include <algorithm>

#include <fmt/format.h>

#include "platform/store/base/database.h"
#include "platform/store/open/open.h"

namespace support {

namespace {

using Row = TestDistrict::Row;

/// Values of one row; the last one of a column holds.
std::vector<store::ColumnValue> valuesOf(const store::Table& table, const Row& row) {
    std::vector<store::ColumnValue> values;
    for (const auto& [name, value] : row) {
        const auto* column = table.find(name);
        if (column == nullptr) {
            throw std::logic_error("no column " + name + " in " + table.name);
        }
        std::erase_if(values, [&](const auto& former) { return former.column == column; });
        const bool isDateAsText = column->kind == store::ColumnKind::Date && value.isText();
        values.push_back({column, isDateAsText ? base::Value(value.asDate()) : value});
    }
    return values;
}

std::int64_t insert(store::Database& routing, const char* table, const Row& row) {
    const auto& found = *routing.catalog().find(table);
    return routing.insert(found, valuesOf(found, row)).asInteger();
}

std::int64_t keyOfStop(store::Database& routing, const std::string& stopId, const RunStop& stop) {
    const auto known = routing.prepare("SELECT INT_STOPID FROM STOP WHERE STOPID = ?");
    known->bind(0, stopId);
    if (known->step()) {
        return known->integer(0);
    }
    Row row{{"STOPID", stopId}, {"STOPTYPE", stop.type}, {"ACTIVE", true}};
    if (stop.stop) {
        row.emplace_back("INT_STOPID", *stop.stop);
    }
    row.insert(row.end(), stop.ofStop.begin(), stop.ofStop.end());
    return insert(routing, "STOP", row);
}

Row tripRow(const RunStop& stop) {
    Row row{{"ACTIVE", true}};
    const auto add = [&row](const char* column, const auto& value) {
        if (value) {
            row.emplace_back(column, *value);
        }
    };
    add("ID", stop.id);
    add("LOAD_TIME", stop.load);
    add("TIME_TOSTOP", stop.drive);
    add("NUM_STUDENTS", stop.students);
    add("TIME_AT_STOP", stop.at.empty() ? std::optional<std::string>() : stop.at);
    return row;
}

}  // namespace

void RunBuilder::into(const TestDistrict& district) const {
    const auto routing = store::open(district.path(data::DatabaseFile::Routing));
    routing->setDurability(store::Durability::Crash);
    if (!run_.empty()) {
        Row row{{"RUN", run_}, {"TRIPTYPE", tripType_}, {"ACTIVE", true}};
        row.insert(row.end(), columns_.begin(), columns_.end());
        insert(*routing, "RUN", row);
    }
    int sequence = 0;
    for (const auto& [stopId, stop] : stops_) {
        auto row = tripRow(stop);
        row.insert(row.end(), {{"INT_STOPID", keyOfStop(*routing, stopId, stop)},
                               {"TRIPTYPE", tripType_},
                               {"RUN", run_.empty() ? " " : run_},
                               {"RUNSEQ", run_.empty() ? 0 : ++sequence}});
        row.insert(row.end(), stop.more.begin(), stop.more.end());
        insert(*routing, "STOP_TRIPTYPE", row);
    }
}

}  // namespace support
