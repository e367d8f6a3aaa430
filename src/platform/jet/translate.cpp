#include "platform/jet/translate.h"

#include <utility>

#include <fmt/format.h>

#include "platform/jet/binder.h"
#include "platform/jet/emitter.h"
#include "platform/jet/kinds.h"
#include "platform/jet/parser.h"
#include "platform/jet/rewrites.h"

namespace jet {

namespace {

std::string nameOf(const Output& output, std::size_t place) {
    if (!output.alias.empty()) {
        return std::string(output.alias);
    }
    return output.column != nullptr ? output.column->name : fmt::format("Expr{}", 1000 + place);
}

void describeColumns(const Select& select, Translation& translation) {
    translation.columns.reserve(select.outputs.size());
    for (const Output& output : select.outputs) {
        OutputColumn& column = translation.columns.emplace_back();
        column.name = nameOf(output, translation.columns.size() - 1);
        column.kind = outputKind(output);
        column.table = output.source;
        if (output.column != nullptr) {
            column.source = select.sources[static_cast<std::size_t>(output.source)].writtenName();
            column.column = output.column->name;
        }
    }
}

/// The tables, and which of them get a hidden key behind the columns.
std::vector<int> describeTables(const Select& select, Translation& translation) {
    std::vector<int> keys;
    const bool rows = !select.grouped() && !select.distinct;
    for (std::size_t i = 0; i < select.sources.size(); ++i) {
        const Source& source = select.sources[i];
        BaseTable table{source.table->name, std::string(source.writtenName()), -1};
        if (rows && !source.table->rowKey.empty()) {
            table.keyColumn = static_cast<int>(translation.columns.size() + keys.size());
            keys.push_back(static_cast<int>(i));
        }
        translation.tables.push_back(std::move(table));
    }
    translation.updatable = !keys.empty();
    return keys;
}

}  // namespace

Translation translate(std::string_view sql, const store::Catalog& catalog) {
    Statement statement = Parser(sql).statement();
    Binder(sql, catalog).bind(statement);
    rewrite(statement);
    Translation translation;
    translation.kind = statement.kind;
    std::vector<int> keys;
    if (statement.kind == StatementKind::Select) {
        describeColumns(*statement.select, translation);
        keys = describeTables(*statement.select, translation);
    }
    Emitter emitter(sql, sqliteDialect());
    emitter.emit(statement, keys);
    translation.text = std::move(emitter.text());
    translation.parameters = std::move(emitter.parameters());
    return translation;
}

}  // namespace jet
