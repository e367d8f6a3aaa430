#include "tools/district/import/plan/linereader.h"

#include <algorithm>

#include <fmt/format.h>

#include "platform/base/text.h"
#include "tools/district/import/plan/values.h"

namespace tools::district {

namespace {

const store::Table& schemaOf(data::DatabaseFile file, std::string_view name) {
    return *std::ranges::find(data::tablesOf(file), name, &store::Table::name);
}

bool isFollowing(const CellSource& source) {
    return source.reference && source.reference->as == Reference::As::Note;
}

/// Blank codes name nothing.
bool namesNothing(const base::Value& value) {
    return value.isNull() || (value.isText() && base::trim(value.heldText()).empty());
}

/// Each word of a list once.
std::vector<std::string> wordsIn(std::string_view list) {
    constexpr std::string_view Between = " ,;|/";
    std::vector<std::string> words;
    while (true) {
        list.remove_prefix(std::min(list.find_first_not_of(Between), list.size()));
        if (list.empty()) {
            return words;
        }
        const std::size_t end = std::min(list.find_first_of(Between), list.size());
        std::string word(list.substr(0, end));
        if (std::ranges::find(words, word) == words.end()) {
            words.push_back(std::move(word));
        }
        list.remove_prefix(end);
    }
}

}  // namespace

LineReader::LineReader(const FileKind& kind, Binding& binding, TableSet& tables)
    : kind_(kind), binding_(binding) {
    for (std::size_t i = 0; i < kind.rows.size(); ++i) {
        const RowSource& row = kind.rows[i];
        if (row.onlyWith.empty() || binding.has(row.onlyWith)) {
            rows_.push_back(bound(i, tables));
        }
    }
}

LineReader::BoundRow LineReader::bound(std::size_t which, TableSet& tables) {
    const RowSource& source = kind_.rows[which];
    const store::Table& schema = schemaOf(source.file, source.table);
    BoundRow row;
    row.which = which;
    row.source = &source;
    std::vector<std::string> key;
    std::vector<std::string> values;
    for (const CellSource& one : source.key) {
        row.key.push_back(boundCell(one, schema, tables));
        key.push_back(one.column);
    }
    for (const CellSource& one : source.values) {
        if (binding_.has(one.field)) {
            row.values.push_back(boundCell(one, schema, tables));
            values.push_back(one.column);
        }
    }
    for (const CellSource& one : source.onAdding) {
        if (one.field.empty() || binding_.has(one.field)) {
            row.onAdding.push_back(boundCell(one, schema, tables));
        }
    }
    for (BoundCellSource& value : row.values) {
        const auto usual = std::ranges::find_if(source.onAdding, [&](const CellSource& one) {
            return one.column == value.source->column && one.always;
        });
        value.usual = usual == source.onAdding.end() ? nullptr : &*usual->always;
    }
    row.table = &tables.of(source.table, key);
    row.table->compare(values);
    row.onlyWith = source.onlyWith.empty() ? -1 : binding_.placeOf(source.onlyWith);
    row.list = source.listIn.empty() ? -1 : binding_.placeOf(source.listIn);
    for (const auto* cells : {&row.key, &row.values, &row.onAdding}) {
        for (const BoundCellSource& one : *cells) {
            if (std::ranges::find(row.added, one.column) == row.added.end()) {
                row.added.push_back(one.column);
            }
        }
    }
    return row;
}

LineReader::BoundCellSource LineReader::boundCell(const CellSource& source,
                                                  const store::Table& table,
                                                  TableSet& tables) const {
    BoundCellSource cell{.source = &source, .column = table.find(source.column)};
    cell.place = source.field.empty() ? -1 : binding_.placeOf(source.field);
    const FileField* field = kind_.find(source.field);
    cell.isRequired = !kind_.isTable && field != nullptr && field->isRequired;
    if (source.reference) {
        cell.refers = &tables.of(source.reference->table, {source.reference->column});
    }
    return cell;
}

void LineReader::make(const CsvRecord& record, Made& made) {
    made.rows.clear();
    made.codes.clear();
    for (const BoundRow& row : rows_) {
        makeRow(row, record, made);
    }
}

void LineReader::makeRow(const BoundRow& row, const CsvRecord& record, Made& made) {
    if (row.onlyWith >= 0 && binding_.cell(row.onlyWith, record).isNull) {
        return;
    }
    if (row.list < 0) {
        return makeOne(row, record, {}, made);
    }
    for (const std::string& word : wordsIn(binding_.cell(row.list, record).text)) {
        makeOne(row, record, word, made);
    }
}

void LineReader::makeOne(const BoundRow& row, const CsvRecord& record, std::string_view listed,
                         Made& made) {
    MadeRow one{.which = row.which, .key = {}, .values = {}, .onAdding = {}};
    const auto take = [&](const std::vector<BoundCellSource>& sources,
                          std::vector<base::Value>& values) {
        for (const BoundCellSource& source : sources) {
            const bool isListed = source.place >= 0 && source.place == row.list;
            const BoundCell cell = isListed            ? BoundCell{listed, false}
                                   : source.place >= 0 ? binding_.cell(source.place, record)
                                                       : BoundCell{};
            if (cell.isNull && source.isRequired) {
                throw Refusal{binding_.sourceName(source.source->field), "must not be empty"};
            }
            try {
                const bool isUsual = cell.isNull && source.usual != nullptr;
                values.push_back(isUsual ? *source.usual : cellOf(source, cell, made));
            } catch (const Refusal& refusal) {
                throw Refusal{binding_.sourceName(source.source->field), refusal.reason};
            }
        }
    };
    take(row.key, one.key);
    for (std::size_t i = 0; i < one.key.size(); ++i) {
        const BoundCellSource& source = row.key[i];
        if (one.key[i].isNull() && source.place >= 0 && !isFollowing(*source.source) &&
            (!kind_.isTable || !source.column->nullable)) {
            throw Refusal{binding_.sourceName(source.source->field), "must not be empty"};
        }
    }
    take(row.values, one.values);
    take(row.onAdding, one.onAdding);
    made.rows.push_back(std::move(one));
}

base::Value LineReader::cellOf(const BoundCellSource& source, const BoundCell& cell,
                               Made& made) const {
    if (source.source->always) {
        return *source.source->always;
    }
    if (source.place < 0) {
        return {};
    }
    if (source.refers == nullptr) {
        base::Value value = valueOf(cell, *source.column, source.source->rule);
        if (cell.isNull && !kind_.isTable && !source.column->defaultSql.empty()) {
            return source.column->kind == store::ColumnKind::YesNo
                       ? base::Value(source.column->defaultSql == "1")
                       : base::Value(0);
        }
        if (value.isNull() && !source.column->nullable &&
            source.column->kind != store::ColumnKind::Counter) {
            throw Refusal{{}, "must not be empty"};
        }
        return value;
    }
    const store::Column& named = *source.refers->table().find(source.source->reference->column);
    return referred(source, valueOf(cell, named, TextRule::None), made);
}

base::Value LineReader::referred(const BoundCellSource& source, base::Value value,
                                 Made& made) const {
    const Reference& reference = *source.source->reference;
    if (namesNothing(value)) {
        return {};
    }
    StoredTable& table = *source.refers;
    const auto number = table.rows().find(table.keyText({value}));
    const bool isKnown = number != KeyMap::None &&
                         (!reference.isCode || table.rows()[number].state != KeyMap::State::New);
    if (!isKnown) {
        if (!reference.isCode || !allowsUnknownCodes_) {
            throw Refusal{
                {},
                fmt::format("\"{}\" does not stand in {}{}", value.asText(), reference.table,
                            reference.isCode ? " (--add-codes puts it there)" : "")};
        }
        made.codes.push_back({&table, value});
        return value;
    }
    const KeyMap::Entry& entry = table.rows()[number];
    if (entry.state == KeyMap::State::Several && reference.as != Reference::As::Text) {
        throw Refusal{
            {}, fmt::format("\"{}\" stands more than once in {}", value.asText(), reference.table)};
    }
    if (reference.as == Reference::As::Note) {
        return reference.ofNote(table.note(entry.note));
    }
    return reference.as == Reference::As::Row ? base::Value(entry.row) : value;
}

}  // namespace tools::district
