#include "tools/district/import/map/binding.h"

#include <algorithm>
#include <charconv>

#include <fmt/format.h>

#include "platform/base/error.h"
#include "platform/base/text.h"
#include "platform/base/value.h"

namespace tools::district {

namespace {

/// A number in another unit; a text that is none stays as it is, to be refused where it is read.
std::string scaled(std::string_view text, double factor) {
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool isNumber = error == std::errc{} && end == text.data() + text.size();
    return isNumber ? base::numberText(number * factor) : std::string(text);
}

std::string_view partOf(const FieldMap& how, std::string_view text) {
    if (how.part == FieldMap::Part::Whole) {
        return text;
    }
    const std::size_t at = text.find(how.separator);
    const bool isBefore = how.part == FieldMap::Part::Before;
    if (at == std::string_view::npos) {
        return isBefore ? text : std::string_view();
    }
    return base::trim(isBefore ? text.substr(0, at) : text.substr(at + how.separator.size()));
}

}  // namespace

Binding::Binding(const FileKind& kind, const CsvRecord* header, const MapSection* section)
    : kind_(kind) {
    if (header != nullptr) {
        for (const CsvField& field : header->fields) {
            header_.emplace_back(base::trim(field.text));
        }
    }
    taken_.resize(header_.size());
    if (section != nullptr) {
        bindByMap(*section);
    }
    bindByName(kind);
    if (section != nullptr) {
        changeByMap(*section);
    }
    for (std::size_t i = 0; i < header_.size(); ++i) {
        if (!taken_[i]) {
            unused_.push_back(header_[i]);
        }
    }
}

void Binding::bindByMap(const MapSection& section) {
    for (const auto& [field, how] : section.fields) {
        if (how.constant) {
            bound_.push_back({field, 0, how});
        } else if (how.number > 0) {
            if (how.number > header_.size() && section.hasHeader) {
                throw base::RunTimeError(
                    base::errors::InvalidProcedureCall,
                    fmt::format("{} has no column #{}, which the map names for {}.", section.source,
                                how.number, field));
            }
            bound_.push_back({field, how.number - 1, how});
        } else if (!how.column.empty()) {
            const auto found =
                std::ranges::find_if(header_, [&wanted = how.column](const auto& one) {
                    return base::equalsNoCase(one, wanted);
                });
            if (found == header_.end()) {
                throw base::RunTimeError(
                    base::errors::InvalidProcedureCall,
                    fmt::format("{} has no column \"{}\", which the map names for {}.",
                                section.source, how.column, field));
            }
            bound_.push_back({field, static_cast<std::size_t>(found - header_.begin()), how});
        } else {
            continue;  // values or a unit for a column that is found by its name
        }
        const std::size_t column = bound_.back().column;
        if (!how.constant && column < taken_.size()) {
            taken_[column] = true;
        }
    }
}

/// Values and units of columns that were found by their names.
void Binding::changeByMap(const MapSection& section) {
    for (Bound& bound : bound_) {
        const auto found = section.fields.find(bound.field);
        if (found != section.fields.end()) {
            bound.how = found->second;
        }
    }
}

// Names of one's own first, so that a synonym of another field never takes them.
void Binding::bindByName(const FileKind& kind) {
    for (const FileField& field : kind.fields) {
        bind(field.name, field.name);
    }
    for (const FileField& field : kind.fields) {
        for (const std::string& synonym : field.synonyms) {
            bind(field.name, synonym);
        }
    }
}

void Binding::bind(const std::string& field, std::string_view header) {
    if (has(field)) {
        return;
    }
    const std::string wanted = plainName(header);
    for (std::size_t i = 0; i < header_.size(); ++i) {
        if (!taken_[i] && plainName(header_[i]) == wanted) {
            taken_[i] = true;
            bound_.push_back({field, i, {}});
            return;
        }
    }
}

std::vector<std::string> Binding::missing() const {
    std::vector<std::string> names;
    for (const FileField& field : kind_.fields) {
        if (field.isRequired && !has(field.name)) {
            names.push_back(field.name);
        }
    }
    return names;
}

int Binding::placeOf(std::string_view field) const {
    const auto found = std::ranges::find(bound_, field, &Bound::field);
    return found == bound_.end() ? -1 : static_cast<int>(found - bound_.begin());
}

bool Binding::has(std::string_view field) const { return placeOf(field) >= 0; }

std::string Binding::sourceName(std::string_view field) const {
    const int place = placeOf(field);
    if (place < 0) {
        return std::string(field);
    }
    const Bound& bound = bound_[static_cast<std::size_t>(place)];
    return bound.how.constant              ? std::string(field)
           : bound.column < header_.size() ? header_[bound.column]
                                           : fmt::format("column {}", bound.column + 1);
}

BoundCell Binding::cell(int place, const CsvRecord& record) {
    const Bound& bound = bound_[static_cast<std::size_t>(place)];
    if (bound.how.constant) {
        return {*bound.how.constant, false};
    }
    if (bound.column >= record.fields.size()) {
        return {};
    }
    const CsvField& field = record.fields[bound.column];
    if (kind_.isTable) {
        const std::string_view text = transformed(bound, field.text);
        return {text, text.empty() && !field.quoted};
    }
    const std::string_view text = transformed(bound, base::trim(field.text));
    return {text, text.empty()};
}

std::string_view Binding::transformed(const Bound& bound, std::string_view text) {
    text = partOf(bound.how, text);
    if (!bound.how.values.empty()) {
        const auto found = bound.how.values.find(base::lowered(text));
        if (found != bound.how.values.end()) {
            return found->second;
        }
    }
    if (bound.how.otherwise) {
        return *bound.how.otherwise;
    }
    if (bound.how.factor != 1) {
        scratch_ = scaled(text, bound.how.factor);
        return scratch_;
    }
    return text;
}

}  // namespace tools::district
