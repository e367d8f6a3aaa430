#include "platform/jet/translate.h"

#include <utility>

#include "platform/jet/binder.h"
#include "platform/jet/emitter.h"
#include "platform/jet/kinds.h"
#include "platform/jet/parser.h"
#include "platform/jet/rewrites.h"

namespace jet {

namespace {

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

/// The tables; `keys` are those whose row keys stand behind the columns.
void describeTables(const Select& select, const std::vector<int>& keys, Translation& translation) {
    for (const Source& source : select.sources) {
        translation.tables.push_back({source.table->name, std::string(source.writtenName()), -1});
    }
    auto place = static_cast<int>(translation.columns.size());
    for (const int source : keys) {
        translation.tables[static_cast<std::size_t>(source)].keyColumn = place++;
    }
    translation.updatable = !keys.empty();
}

}  // namespace

Translation translate(std::string_view sql, const store::Catalog& catalog) {
    Statement statement = Parser(sql).statement();
    Binder(sql, catalog).bind(statement);
    rewrite(statement);
    Translation translation;
    translation.kind = statement.kind;
    Emitter emitter(sql, dialectOf(catalog.engine()));
    emitter.emit(statement);
    translation.text = std::move(emitter.text());
    translation.parameters = std::move(emitter.parameters());
    if (statement.kind == StatementKind::Select) {
        describeColumns(*statement.select, translation);
        describeTables(*statement.select, emitter.keys(), translation);
    }
    return translation;
}

}  // namespace jet
