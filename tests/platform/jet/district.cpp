#include "district.h"

#include <fstream>

#include "data/schema/schema.h"
#include "platform/base/text.h"
#include "platform/jet/functions.h"
#include "platform/store/base/copying.h"
#include "platform/store/open/open.h"
#include "support/privateserver.h"

namespace jet::testing {

namespace {

std::string cell(const store::Statement& row, int column, store::ColumnKind kind) {
    switch (row.type(column)) {
        case store::CellType::Null:
            return "Null";
        case store::CellType::Text:
            return std::string(row.text(column));
        default:
            return kind == store::ColumnKind::YesNo ? row.integer(column) != 0 ? "Yes" : "No"
                                                    : base::Value(row.real(column)).asText();
    }
}

std::unique_ptr<store::Statement> prepared(store::Database& database,
                                           const Translation& translation,
                                           const std::vector<base::Value>& literals,
                                           const std::string& prefix = {}) {
    auto statement = database.prepare(prefix + translation.text);
    for (std::size_t i = 0; i < translation.parameters.size(); ++i) {
        statement->bind(static_cast<int>(i), boundValue(translation.parameters[i], literals));
    }
    return statement;
}

}  // namespace

void District::createTables() {
    for (const data::DatabaseFile file : data::AllDatabaseFiles) {
        for (const store::Table& table : data::tablesOf(file)) {
            if (catalog().find(table.name) == nullptr) {
                database_->create(table);
            }
        }
    }
    for (const StoreFunction& function : storeFunctions()) {
        database_->registerFunction(
            {function.name, function.arguments, function.deterministic, function.call});
    }
}

District::District() : database_(store::createFile(folder_.path() + "district.mdb")) {
    createTables();
    std::ifstream rows(VIREO_SOURCE_DIR "/tests/platform/jet/district.txt");
    database_->begin();
    for (std::string line; std::getline(rows, line);) {
        if (!line.empty() && line.front() != '#') {
            database_->execute(line);
        }
    }
    database_->commit();
}

District::District(const std::string& path, District& original)
    : database_(store::createFile(path)) {
    createTables();
    database_->begin();
    for (const store::Table& table : original.catalog().tables()) {
        store::copyRows(original.database(), table, *database_);
    }
    database_->commit();
}

std::vector<std::string> District::run(std::string_view sql) {
    const Shape shape = shapeOf(sql);
    const Translation translation = translate(sql, catalog());
    const auto statement = prepared(*database_, translation, shape.literals);
    std::vector<std::string> rows;
    while (statement->step()) {
        std::string& row = rows.emplace_back();
        for (std::size_t i = 0; i < translation.columns.size(); ++i) {
            row += (i > 0 ? "|" : "") +
                   cell(*statement, static_cast<int>(i), translation.columns[i].kind);
        }
    }
    if (translation.kind != StatementKind::Select) {
        rows = {std::to_string(database_->changedRows())};
    }
    return rows;
}

std::string District::first(std::string_view sql) {
    const auto rows = run(sql);
    return rows.empty() ? "" : rows.front();
}

std::string District::plan(std::string_view sql) {
    const auto statement = prepared(*database_, translate(sql, catalog()), shapeOf(sql).literals,
                                    "EXPLAIN QUERY PLAN ");
    std::string steps;
    while (statement->step()) {
        steps += std::string(statement->text(3)) + "\n";
    }
    return steps;
}

District& sharedDistrict() {
    static District one;
    return one;
}

District* serverDistrict() {
    support::PrivateServer* const server = support::PrivateServer::find();
    if (server == nullptr) {
        return nullptr;
    }
    static District one(server->newPlace() + "district.mdb", sharedDistrict());
    return &one;
}

}  // namespace jet::testing
