#include "tools/district/import/plan/comparison.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <utility>

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "platform/base/error.h"
#include "platform/base/text.h"
#include "platform/table/csv.h"
#include "tools/district/import/plan/values.h"

namespace tools::district {

namespace {

using data::DatabaseFile;
using State = KeyMap::State;

/// What later sources need to know of a row beside its key.
std::string notedColumn(std::string_view table) {
    return table == "RUN"             ? "TRIPTYPE"
           : table == "STOP"          ? "STOPTYPE"
           : table == "TRIPTYPE"      ? "CATEGORY"
           : table == "STOP_TRIPTYPE" ? "RUN"
           : table == "STUDENT"       ? "SCHOOL"
                                      : "";
}

std::pair<DatabaseFile, const store::Table*> schemaOf(const std::string& name) {
    for (const DatabaseFile file : data::AllDatabaseFiles) {
        for (const store::Table& table : data::tablesOf(file)) {
            if (table.name == name) {
                return {file, &table};
            }
        }
    }
    throw base::RunTimeError(base::errors::InternalError, "There is no table " + name);
}

[[noreturn]] void refuseSource(const std::filesystem::path& path, const std::string& why) {
    throw base::RunTimeError(base::errors::PathFileAccess,
                             fmt::format("{}: {}", path.filename().string(), why));
}

std::string lineText(const CsvRecord& record) {
    std::ostringstream text;
    table::CsvWriter csv(text);
    for (const CsvField& field : record.fields) {
        field.text.empty() && !field.quoted ? csv.null() : csv.text(field.text);
    }
    return text.str();
}

/// Which row of the line a cell takes the number of gets it.
void putRowNumbers(const std::vector<LineReader::BoundCellSource>& sources,
                   std::vector<base::Value>& values, const std::vector<std::int64_t>& numbers) {
    for (std::size_t i = 0; i < sources.size(); ++i) {
        if (const auto& of = sources[i].source->rowOf) {
            values[i] = numbers[*of] == 0 ? base::Value() : base::Value(numbers[*of]);
        }
    }
}

/// The values of a new row, in the order of its columns. Where key, values and defaults all have
/// one for a column, the first that says anything counts.
std::vector<base::Value> newValues(const LineReader::BoundRow& bound, const MadeRow& row) {
    std::vector<base::Value> values(bound.added.size());
    const auto put = [&](const std::vector<LineReader::BoundCellSource>& sources,
                         const std::vector<base::Value>& from) {
        for (std::size_t i = 0; i < sources.size(); ++i) {
            const auto place = std::ranges::find(bound.added, sources[i].column);
            base::Value& value = values[static_cast<std::size_t>(place - bound.added.begin())];
            if (value.isNull()) {
                value = from[i];
            }
        }
    };
    put(bound.key, row.key);
    put(bound.values, row.values);
    put(bound.onAdding, row.onAdding);
    return values;
}

/// The value that a row has for a column, of its key and values; null where it has none.
const base::Value* valueOfColumn(const LineReader::BoundRow& bound, const MadeRow& row,
                                 std::string_view column) {
    for (const auto& [sources, values] :
         {std::pair{&bound.key, &row.key}, std::pair{&bound.values, &row.values},
          std::pair{&bound.onAdding, &row.onAdding}}) {
        for (std::size_t i = 0; i < sources->size(); ++i) {
            if ((*sources)[i].column->name == column && !(*values)[i].isNull()) {
                return &(*values)[i];
            }
        }
    }
    return nullptr;
}

bool isAboutRuns(const StoredTable& table) {
    return table.table().name == "RUN" || table.table().name == "STOP_TRIPTYPE";
}

std::string runOf(const LineReader::BoundRow& bound, const MadeRow& row) {
    const base::Value* run = valueOfColumn(bound, row, "RUN");
    return run == nullptr || !run->isText() ? std::string()
                                            : std::string(base::trim(run->heldText()));
}

}  // namespace

/// A source with all that is needed to read it.
struct Comparison::Opened {
    Opened(ImportSource given, const CsvShape& found, const CsvRecord* header, TableSet& tables)
        : source(std::move(given)),
          shape(found),
          binding(*source.kind, header, source.section ? &*source.section : nullptr),
          lines(*source.kind, binding, tables) {}

    [[nodiscard]] std::string name() const { return source.path.filename().string(); }
    [[nodiscard]] bool hasHeader() const { return !source.section || source.section->hasHeader; }

    ImportSource source;
    CsvShape shape;
    Binding binding;
    LineReader lines;
};

Comparison::Comparison(std::vector<ImportSource> sources, ImportRules rules,
                       const OpenDistrict& district)
    : rules_(std::move(rules)), district_(district), guard_(*district.at(DatabaseFile::Routing)) {
    for (ImportSource& source : sources) {
        open(std::move(source));
    }
}

Comparison::~Comparison() = default;

void Comparison::open(ImportSource source) {
    std::ifstream file(source.path, std::ios::binary);
    if (!file) {
        refuseSource(source.path, "the file cannot be opened.");
    }
    const CsvShape shape = shapeOf(file, source.section ? source.section->hints : CsvHints{});
    CsvReader reader(file, shape);
    const bool hasHeader = !source.section || source.section->hasHeader;
    if (hasHeader && reader.next() != CsvReader::Item::Record) {
        refuseSource(source.path, reader.fault().reason.empty()
                                      ? "the file is empty; its first line must name the columns."
                                      : "the line that names the columns cannot be read.");
    }
    auto opened =
        std::make_unique<Opened>(std::move(source), shape, hasHeader ? &reader.record() : nullptr,
                                 static_cast<TableSet&>(*this));
    if (const auto missing = opened->binding.missing(); !missing.empty()) {
        refuseSource(opened->source.path,
                     fmt::format("no column for {}. A map file can name one; --sketch-map writes a "
                                 "first one.",
                                 fmt::join(missing, ", ")));
    }
    opened->lines.allowUnknownCodes(rules_.addCodes);
    sources_.push_back(std::move(opened));
}

StoredTable& Comparison::of(const std::string& table, const std::vector<std::string>& key) {
    auto& stored = tables_[{table, key}];
    if (stored == nullptr) {
        const auto [file, schema] = schemaOf(table);
        stored = std::make_unique<StoredTable>(file, *schema, key);
        stored->noteColumn(notedColumn(table));
        if (table == "DEADHEAD_CROSS") {
            stored->tidyKeys([](std::vector<base::Value>& ends) {
                if (ends.size() == 2 && ends[0].isInteger() && ends[1].isInteger() &&
                    ends[0].asInteger() > ends[1].asInteger()) {
                    std::swap(ends[0], ends[1]);
                }
            });
        } else if (table == "STOP_TRIPTYPE" && key.size() > 2) {
            // A regular stop has one record a trip type, whatever its run; a school has many.
            const auto isRegular = [this](const std::vector<base::Value>& cells) {
                return !cells[0].isInteger() || !otherStopTypes_.contains(cells[0].asInteger());
            };
            stored->tidyKeys([isRegular](std::vector<base::Value>& cells) {
                cells.resize(isRegular(cells) ? 2 : cells.size());
            });
            stored->repeatKeys(
                [isRegular](const std::vector<base::Value>& cells) { return !isRegular(cells); });
        }
    }
    return *stored;
}

void Comparison::forgetDistrict() {
    for (const auto& [name, table] : tables_) {
        table->forget();
    }
}

// Stops come first: whether one is regular decides how its records are told apart.
void Comparison::readTables() {
    guard_.read();
    otherStopTypes_.clear();
    for (const bool isFirst : {true, false}) {
        for (const auto& [name, table] : tables_) {
            if ((name.first == "STOP") != isFirst) {
                continue;
            }
            progress_->begin(fmt::format("Reading {}", name.first), 0);
            table->read(*district_.at(table->file()));
            for (KeyMap::Number i = 0; isFirst && i < table->rows().size(); ++i) {
                const KeyMap::Entry& stop = table->rows()[i];
                if (!base::equalsNoCase(table->note(stop.note), data::stoptype::Regular)) {
                    otherStopTypes_.insert(stop.row);
                }
            }
        }
    }
}

ImportOutcome Comparison::read(RowSink* sink, const Reject& reject, Progress& progress) {
    sink_ = sink;
    reject_ = &reject;
    progress_ = &progress;
    outcome_ = {};
    several_ = 0;
    runsMet_.clear();
    otherStops_.clear();
    touched_.clear();
    moved_.clear();
    readTables();
    for (const auto& source : sources_) {
        readSource(*source);
        finishTable(*source);
    }
    if (several_ > 0) {
        outcome_.remarks.push_back(fmt::format(
            "{} rows were left alone because the district has more than one of each.", several_));
    }
    return std::move(outcome_);
}

void Comparison::readSource(Opened& source) {
    outcome_.remarks.push_back(fmt::format(
        "{}: {}{}", source.name(), source.shape.charset == Charset::Utf8 ? "UTF-8" : "Windows-1252",
        source.binding.unused().empty()
            ? ""
            : fmt::format("; columns left out: {}", fmt::join(source.binding.unused(), ", "))));
    for (const LineReader::BoundRow& row : source.lines.rows()) {
        outcomeOf(row.table->table().name);
    }
    std::ifstream file(source.source.path, std::ios::binary);
    CsvReader reader(file, source.shape);
    bool isHeader = source.hasHeader();
    progress_->begin(
        fmt::format("{} {}", sink_ == nullptr ? "Comparing" : "Writing", source.name()),
        source.shape.lines);
    for (auto item = reader.next(); item != CsvReader::Item::End; item = reader.next()) {
        if (item == CsvReader::Item::Fault) {
            const CsvFault& fault = reader.fault();
            this->reject({source.name(), fault.line, fmt::format("character {}", fault.column),
                          fault.reason, fault.text});
        } else if (!std::exchange(isHeader, false)) {
            takeRecord(source, reader.record());
        }
        progress_->step();
    }
}

void Comparison::takeRecord(Opened& source, const CsvRecord& record) {
    try {
        const std::size_t width = source.binding.width();
        const auto isBlank = [](const CsvField& field) { return base::trim(field.text).empty(); };
        const bool isTooLong =
            width > 0 && record.fields.size() > width &&
            !std::all_of(record.fields.begin() + static_cast<std::ptrdiff_t>(width),
                         record.fields.end(), isBlank);
        if (isTooLong || record.fields.size() < width) {
            throw Refusal{{},
                          fmt::format("has {} fields, where the first line has {}",
                                      record.fields.size(), width)};
        }
        LineReader::Made made;
        source.lines.make(record, made);
        take(source, record, made.rows);
        addCodes(made);
    } catch (const Refusal& refusal) {
        reject({source.name(), record.line, refusal.field, refusal.reason, lineText(record)});
    }
}

void Comparison::tellNew(TableOutcome& outcome) const {
    if (outcome.cases.size() < TableOutcome::MostCases) {
        outcome.tell("new: " + described());
    }
}

/// All rows of a line, or none.
void Comparison::take(Opened& source, const CsvRecord& record, std::vector<MadeRow>& rows) {
    const auto& bounds = source.lines.rows();
    const auto boundOf = [&](const MadeRow& row) -> const LineReader::BoundRow& {
        return *std::ranges::find(bounds, row.which, &LineReader::BoundRow::which);
    };
    inHand_ = &source;
    record_ = &record;
    StoredTable& owners = *boundOf(rows.front()).table;
    const auto number = owners.rows().find(owners.keyText(rows.front().key));
    const bool isNew = number == KeyMap::None || owners.rows()[number].state == State::New;
    std::vector<std::int64_t> numbers(source.source.kind->rows.size());
    for (MadeRow& row : rows) {
        const LineReader::BoundRow& bound = boundOf(row);
        if (!isNew) {
            numbers[0] = owners.rows()[number].row;
            putRowNumbers(bound.key, row.key, numbers);
        }
        if (!isNew || row.which == 0) {
            checkRow(source, row);
        }
    }
    for (MadeRow& row : rows) {
        const LineReader::BoundRow& bound = boundOf(row);
        putRowNumbers(bound.key, row.key, numbers);
        putRowNumbers(bound.onAdding, row.onAdding, numbers);
        numbers[row.which] =
            takeRow(bound, row, isNew && row.which != 0, static_cast<std::uint32_t>(record.line));
    }
}

/// Raises Refusal where another line has brought this row already.
void Comparison::checkRow(const Opened& source, const MadeRow& row) {
    const auto& bound =
        *std::ranges::find(source.lines.rows(), row.which, &LineReader::BoundRow::which);
    StoredTable& table = *bound.table;
    const auto number = table.rows().find(table.keyText(row.key));
    if (number == KeyMap::None || table.mayRepeat(row.key)) {
        return;
    }
    const KeyMap::Entry& entry = table.rows()[number];
    const std::string& field = bound.key.empty() ? std::string() : bound.key.front().source->field;
    const std::string column = field.empty() ? field : source.binding.sourceName(field);
    if (entry.line != 0) {
        throw Refusal{column, fmt::format("stands in line {} already", entry.line)};
    }
    if (entry.state == State::Several && row.which == 0) {
        throw Refusal{column, "stands more than once in the district"};
    }
}

std::int64_t Comparison::takeRow(const LineReader::BoundRow& bound, MadeRow& row, bool ownerIsNew,
                                 std::uint32_t line) {
    StoredTable& table = *bound.table;
    TableOutcome& outcome = outcomeOf(table.table().name);
    if (ownerIsNew) {
        ++outcome.added;
        return addRow(bound, row, KeyMap::None);
    }
    std::string key = table.keyText(row.key);
    auto number = table.rows().find(key);
    while (number != KeyMap::None && table.rows()[number].line != 0 && table.mayRepeat(row.key)) {
        key += '+';
        number = table.rows().find(key);
    }
    const KeyMap::Entry* entry = number == KeyMap::None ? nullptr : &table.rows()[number];
    if (entry != nullptr && entry->state == State::Several) {
        ++several_;
        table.rows()[number].line = line;
        return 0;
    }
    const bool isStored = entry != nullptr && entry->state == State::Stored;
    const std::uint64_t digest = table.digest(row.values);
    if (isStored && entry->digest == digest) {
        ++outcome.same;
        noteRuns(bound, row, entry, false);
    } else if (isLeftToPlanners(bound, row, isStored ? entry : nullptr)) {
        ++outcome.left;
        if (!isStored) {
            return 0;
        }
    } else if (isStored) {
        ++outcome.changed;
        noteRuns(bound, row, entry, true);
        changeRow(bound, row, number);
    } else {
        ++outcome.added;
        noteRuns(bound, row, nullptr, true);
        if (number == KeyMap::None) {
            number = table.rows().add(key, {.digest = digest, .state = State::New});
        }
        addRow(bound, row, number);
    }
    table.rows()[number].line = line;
    return table.rows()[number].row;
}

/// Adds a row; `number` is its entry, or None where nobody asks for it again.
std::int64_t Comparison::addRow(const LineReader::BoundRow& bound, const MadeRow& row,
                                KeyMap::Number number) {
    StoredTable& table = *bound.table;
    const auto values = newValues(bound, row);
    tellNew(outcomeOf(table.table().name));
    const std::int64_t added =
        sink_ == nullptr ? table.madeUpRow() : sink_->add(table, bound.added, values);
    if (number != KeyMap::None) {
        KeyMap::Entry& entry = table.rows()[number];
        entry.row = added;
        noteRow(bound, row, entry);
    }
    return added;
}

void Comparison::changeRow(const LineReader::BoundRow& bound, const MadeRow& row,
                           KeyMap::Number number) {
    StoredTable& table = *bound.table;
    KeyMap::Entry& entry = table.rows()[number];
    TableOutcome& outcome = outcomeOf(table.table().name);
    if (outcome.cases.size() < TableOutcome::MostCases) {
        outcome.tell(changeTold(bound, row, entry.row));
    }
    if (const auto* school = valueOfColumn(bound, row, "SCHOOL");
        table.table().name == "STUDENT" && school != nullptr &&
        !base::equalsNoCase(school->asText(), table.note(entry.note))) {
        moved_.insert(entry.row);
    }
    if (sink_ != nullptr) {
        sink_->change(table, entry.row, table.compared(), row.values);
    }
    noteRow(bound, row, entry);
}

// The run of a stop's record and the school of a student are noted as they are stored: who loses a
// stop is changed, too.
void Comparison::noteRow(const LineReader::BoundRow& bound, const MadeRow& row,
                         KeyMap::Entry& entry) {
    StoredTable& table = *bound.table;
    const std::string& name = table.table().name;
    const bool isKept = name == "STOP_TRIPTYPE" || name == "STUDENT";
    const std::string column = notedColumn(name);
    const base::Value* noted = column.empty() ? nullptr : valueOfColumn(bound, row, column);
    if (noted == nullptr || isKept) {
        return;
    }
    entry.note = table.numberOfNote(noted->asText());
    if (name == "STOP") {
        if (base::equalsNoCase(noted->asText(), data::stoptype::Regular)) {
            otherStopTypes_.erase(entry.row);
        } else {
            otherStopTypes_.insert(entry.row);
        }
    }
}

void Comparison::addCodes(const LineReader::Made& made) {
    for (const auto& [table, code] : made.codes) {
        const std::string key = table->keyText({code});
        if (table->rows().find(key) != KeyMap::None) {
            continue;
        }
        table->rows().add(key, {.state = State::New});
        TableOutcome& outcome = outcomeOf(table->table().name);
        ++outcome.added;
        outcome.tell("new: " + code.asText());
        if (sink_ != nullptr) {
            const store::Column* active = table->table().find("ACTIVE");
            std::vector<const store::Column*> columns = {table->table().find(table->key().front())};
            std::vector<base::Value> values = {code};
            if (active != nullptr) {
                columns.push_back(active);
                values.emplace_back(true);
            }
            sink_->add(*table, columns, values);
        }
    }
}

/// Whether the row would change a run that planners have changed since the last import.
bool Comparison::isLeftToPlanners(const LineReader::BoundRow& bound, const MadeRow& row,
                                  const KeyMap::Entry* entry) {
    if (rules_.overwriteEdited || !isAboutRuns(*bound.table)) {
        return false;
    }
    const std::string run = runOf(bound, row);
    const std::string before = entry == nullptr || bound.table->table().name == "RUN"
                                   ? std::string()
                                   : std::string(base::trim(bound.table->note(entry->note)));
    bool isLeft = false;
    for (const std::string& one : {run, before}) {
        if (!one.empty() && guard_.isEdited(one)) {
            isLeft = true;
            if (!guard_.isLeft(one)) {
                outcome_.editedRuns.push_back(one);
            }
            guard_.leave(one);
        }
    }
    if (isLeft && bound.table->table().name == "STOP_TRIPTYPE") {
        runsMet_.insert(base::lowered(run));
    }
    return isLeft;
}

void Comparison::noteRuns(const LineReader::BoundRow& bound, const MadeRow& row,
                          const KeyMap::Entry* entry, bool isChanged) {
    if (!isAboutRuns(*bound.table)) {
        return;
    }
    const bool isStop = bound.table->table().name == "STOP_TRIPTYPE";
    const std::string run = runOf(bound, row);
    if (run.empty()) {
        return;
    }
    guard_.bring(run);
    if (isStop) {
        runsMet_.insert(base::lowered(run));
    }
    if (!isChanged) {
        return;
    }
    touched_.insert(run);
    if (isStop) {
        otherStops_.insert(run);
        const std::string before =
            entry == nullptr ? std::string() : std::string(bound.table->note(entry->note));
        if (!base::trim(before).empty()) {
            touched_.insert(before);
            otherStops_.insert(before);
            guard_.bring(before);
        }
    }
}

void Comparison::finishTable(Opened& source) {
    for (const LineReader::BoundRow& row : source.lines.rows()) {
        StoredTable& table = *row.table;
        if (row.which == 0 && source.source.kind->name == "run_stops") {
            takeStopsOff(table);
        }
        if (row.which == 0 && source.source.kind->name == "students" && rules_.rollOver) {
            endRides(table);
        }
        if (row.which == 0 && rules_.replaced.contains(table.table().name)) {
            removeUnmet(table);
        }
    }
}

/// The line in hand by what names it in its file: "101-1, 100195, 1".
std::string Comparison::described() const {
    std::string text;
    for (const FileField& field : inHand_->source.kind->fields) {
        const int place = field.isRequired ? inHand_->binding.placeOf(field.name) : -1;
        const std::string_view cell =
            place < 0 ? std::string_view() : inHand_->binding.cell(place, *record_).text;
        text += (text.empty() || cell.empty() ? "" : ", ") + std::string(cell);
    }
    return text.empty() ? fmt::format("line {}", record_->line) : text;
}

std::string Comparison::changeTold(const LineReader::BoundRow& bound, const MadeRow& row,
                                   std::int64_t stored) const {
    const StoredTable& table = *bound.table;
    store::Database& database = *district_.at(table.file());
    const auto columns = base::joined(table.compared(), ", ", [](const auto* column) {
        return fmt::format("\"{}\"", column->name);
    });
    const auto now = database.prepare(
        fmt::format("SELECT {} FROM \"{}\" WHERE {} = ?", columns, table.table().name,
                    database.catalog().find(table.table().name)->rowKey));
    now->bind(0, stored);
    std::string text = described();
    for (int i = 0, count = now->step() ? now->columnCount() : 0; i < count; ++i) {
        const store::Column& column = *table.compared()[static_cast<std::size_t>(i)];
        const base::Value& value = row.values[static_cast<std::size_t>(i)];
        std::string before;
        std::string after;
        appendDigestText(now->cell(i), column.kind, before);
        appendDigestText(value, column.kind, after);
        if (before != after) {
            text +=
                fmt::format("; {} {} becomes {}", column.name,
                            shownValue(storedValue(now->cell(i), column.kind)), shownValue(value));
        }
    }
    return text;
}

bool Comparison::brings(std::string_view table, std::string_view column) const {
    return std::ranges::any_of(tables_, [&](const auto& one) {
        return one.first.first == table &&
               std::ranges::any_of(one.second->compared(), [&](const store::Column* compared) {
                   return compared->name == column;
               });
    });
}

std::set<DatabaseFile> Comparison::filesWritten() const {
    std::set<DatabaseFile> files;
    for (const auto& source : sources_) {
        for (const LineReader::BoundRow& row : source->lines.rows()) {
            files.insert(row.table->file());
        }
    }
    return files;
}

TableOutcome& Comparison::outcomeOf(const std::string& table) {
    const auto found = std::ranges::find(outcome_.tables, table, &TableOutcome::table);
    if (found != outcome_.tables.end()) {
        return *found;
    }
    outcome_.tables.push_back({.table = table, .cases = {}});
    return outcome_.tables.back();
}

void Comparison::reject(Rejection rejection) {
    ++outcome_.refused;
    if (*reject_) {
        (*reject_)(rejection);
    }
    if (outcome_.rejections.size() < ImportOutcome::MostTold) {
        outcome_.rejections.push_back(std::move(rejection));
    }
}

}  // namespace tools::district
