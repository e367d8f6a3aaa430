#include "runsearch/search/runlist.h"

#include "data/lists/cells.h"

namespace runsearch {

namespace {

using table::CellKind;

constexpr int DescriptionTwips = 2440;
constexpr int NarrowTwips = 1000;

}  // namespace

RunListLayout::RunListLayout(bool withRouting) : withRouting_(withRouting) {
    columns_ = {{"Run ID", 0, CellKind::Text},
                {"Description", DescriptionTwips, CellKind::Text},
                {"Start Time", NarrowTwips, CellKind::Time},
                {"End Time", NarrowTwips, CellKind::Time},
                {"Bell Time", NarrowTwips, CellKind::Time},
                {"School", 0, CellKind::Text},
                {"Trip Type", 0, CellKind::Text},
                {"Location", 0, CellKind::Text},
                {"Family", 0, CellKind::Text}};
    fields_ = {"Run",    "Description", "StartTime", "EndTime",  "BellTime",
               "School", "TripType",    "LocCode",   "RunFamily"};
    const auto add = [this](std::initializer_list<table::TableColumn> columns,
                            std::initializer_list<std::string_view> fields) {
        columns_.insert(columns_.end(), columns);
        fields_.insert(fields_.end(), fields);
    };
    if (withRouting) {
        add({{"Route"}, {"Driver"}, {"Vehicle"}, {"Aid"}},
            {"RouteID", "EmpName", "Vehicle", "AidName"});
        add({{"Total Time", 0, CellKind::Number},
             {"Total Miles", 0, CellKind::Number},
             {"Total Stops", 0, CellKind::Number},
             {"Total Students", NarrowTwips},
             {"Capacity"},
             {"Time To Use"}},
            {"total_time", "total_miles", "total_stops", "Capacity", "TimeToUse"});
    } else {
        add({{"Total Time", 0, CellKind::Number},
             {"Total Miles", 0, CellKind::Number},
             {"Total Stops", NarrowTwips, CellKind::Number},
             {"Total Students", 0, CellKind::Number},
             {"Capacity"},
             {"Time To Use"}},
            {"total_time", "total_miles", "total_stops", "Total_Students", "Capacity",
             "TimeToUse"});
    }
}

table::TextTable readRuns(const RunListLayout& layout, ado::Recordset& runs) {
    std::vector<const ado::Field*> fields;
    for (const auto name : layout.fields()) {
        fields.push_back(&runs.Fields(name));
    }
    const auto& regenerate = runs.Fields("Regenerate");
    const auto red = layout.redCells();

    table::TextTable table;
    table.columns = layout.columns();
    for (; !runs.Eof(); runs.MoveNext()) {
        const auto row = table.addRow();
        for (std::size_t i = 0; i < fields.size(); ++i) {
            data::setCell(table, row, i, *fields[i]);
        }
        if (fields.size() < table.columns.size()) {
            table.setText(row, fields.size(), "");
        }
        if (regenerate.asBoolean()) {
            table.colourRed(row, red.first, red.last);
        }
    }
    return table;
}

}  // namespace runsearch
