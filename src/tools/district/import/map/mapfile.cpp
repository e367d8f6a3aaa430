#include "tools/district/import/map/mapfile.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include <fmt/format.h>

#include "platform/base/error.h"
#include "platform/base/text.h"

namespace tools::district {

namespace {

struct Unit {
    std::string_view name;
    double factor;
};
/// What the district keeps: feet for places, miles for ways, minutes for times.
constexpr std::array Units = {Unit{"feet", 1},
                              Unit{"miles", 1},
                              Unit{"minutes", 1},
                              Unit{"metres", 3.280839895},
                              Unit{"meters", 3.280839895},
                              Unit{"km", 0.621371192},
                              Unit{"seconds", 1.0 / 60},
                              Unit{"hours", 60}};

std::string_view unquoted(std::string_view text) {
    const bool isQuoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
    return isQuoted ? text.substr(1, text.size() - 2) : text;
}

class MapReader {
public:
    explicit MapReader(std::string_view text) : text_(text) {}

    std::vector<MapSection> read() {
        if (text_.starts_with("\xEF\xBB\xBF")) {
            text_.remove_prefix(3);
        }
        if (firstInvalid(text_) != text_.size()) {
            refuse("the map file is not in UTF-8");
        }
        while (!text_.empty()) {
            ++line_;
            const std::size_t end = std::min(text_.find('\n'), text_.size());
            std::string_view line = text_.substr(0, end);
            text_.remove_prefix(std::min(end + 1, text_.size()));
            line.remove_suffix(line.ends_with('\r') ? 1 : 0);
            take(base::trim(line));
        }
        return std::move(sections_);
    }

private:
    [[noreturn]] void refuse(const std::string& why) const {
        throw base::RunTimeError(base::errors::InvalidProcedureCall,
                                 fmt::format("Line {} of the map file: {}.", line_, why));
    }

    void take(std::string_view line) {
        if (line.empty() || line.starts_with('#')) {
            return;
        }
        if (line.starts_with('[')) {
            return begin(line);
        }
        if (sections_.empty()) {
            refuse("a section such as [students.csv] must come first");
        }
        const bool isValue = line.find(':') < line.find('=');  // theirs may hold an = itself
        const std::size_t sign = std::min(isValue ? line.rfind('=') : line.find('='), line.size());
        const std::string_view left = base::trim(line.substr(0, sign));
        const std::string_view right =
            sign == line.size() ? std::string_view() : base::trim(line.substr(sign + 1));
        if (const std::size_t colon = left.find(':'); colon != std::string_view::npos) {
            return value(base::trim(left.substr(0, colon)), base::trim(left.substr(colon + 1)),
                         right, sign != line.size());
        }
        if (sign == line.size()) {
            return unit(line);
        }
        assign(left, right);
    }

    /// "[Export.csv as students]"
    void begin(std::string_view line) {
        if (!line.ends_with(']')) {
            refuse("the bracket of the section is not closed");
        }
        line = base::trim(line.substr(1, line.size() - 2));
        const std::size_t as = line.rfind(" as ");
        const std::string_view source = base::trim(line.substr(0, as));
        const std::string_view stem = source.substr(0, source.rfind('.'));
        const std::string_view name =
            as == std::string_view::npos ? stem : base::trim(line.substr(as + 4));
        const FileKind* kind = kindNamed(name);
        if (source.empty() || kind == nullptr) {
            refuse(
                fmt::format("\"{}\" is no table and none of the files that can be imported; "
                            "write [{} as students], for instance",
                            name, source));
        }
        sections_.push_back({.source = std::string(source),
                             .kind = kind,
                             .fields = {},
                             .hints = {},
                             .line = line_});
    }

    FieldMap& fieldOf(std::string_view name) {
        MapSection& section = sections_.back();
        const FileField* field = section.kind->find(name);
        if (field == nullptr) {
            refuse(fmt::format("{} has no \"{}\"", section.kind->name, name));
        }
        return section.fields[field->name];
    }

    void assign(std::string_view left, std::string_view right) {
        MapSection& section = sections_.back();
        if (left == "header") {
            section.hasHeader = right != "none";
        } else if (left == "separator") {
            section.hints.separator = separatorNamed(right);
        } else if (left == "charset") {
            section.hints.charset = charsetNamed(right);
        } else {
            source(fieldOf(left), right);
        }
    }

    [[nodiscard]] char separatorNamed(std::string_view name) const {
        if (name == "tab") {
            return '\t';
        }
        const std::string_view one = unquoted(name);
        if (one.size() != 1 || one == "\"" || static_cast<unsigned char>(one[0]) >= 0x80) {
            refuse("the separator is one character, or tab");
        }
        return one.front();
    }

    [[nodiscard]] Charset charsetNamed(std::string_view name) const {
        if (base::equalsNoCase(name, "utf-8")) {
            return Charset::Utf8;
        }
        if (!base::equalsNoCase(name, "windows-1252")) {
            refuse("the charset is utf-8 or windows-1252");
        }
        return Charset::Windows1252;
    }

    /// `"constant"`, `#3`, `Column`, `Column before ", "`, `Column after ", "`
    void source(FieldMap& field, std::string_view right) const {
        if (right.empty()) {
            refuse("a column, #number or \"constant\" is missing behind =");
        }
        if (right.front() == '"' && right.find('"', 1) == right.size() - 1) {
            field.constant = std::string(unquoted(right));
            return;
        }
        for (const auto& [word, part] :
             {std::pair{std::string_view(" before \""), FieldMap::Part::Before},
              std::pair{std::string_view(" after \""), FieldMap::Part::After}}) {
            const std::size_t at = right.rfind(word);
            if (at != std::string_view::npos && right.size() > at + word.size() + 1 &&
                right.back() == '"') {
                field.part = part;
                field.separator =
                    right.substr(at + word.size(), right.size() - at - word.size() - 1);
                right = base::trim(right.substr(0, at));
            }
        }
        field.number = right.starts_with('#') ? numberOf(right.substr(1)) : 0;
        field.column = unquoted(right);
    }

    [[nodiscard]] std::size_t numberOf(std::string_view digits) const {
        std::size_t number = 0;
        const auto [end, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), number);
        if (error != std::errc{} || end != digits.data() + digits.size() || number == 0 ||
            number > CsvReader::MostFields) {
            refuse(fmt::format("\"#{}\" is no number of a column", digits));
        }
        return number;
    }

    void value(std::string_view left, std::string_view theirs, std::string_view ours,
               bool isAssigned) {
        if (!isAssigned) {
            refuse("a value of ours is missing: \"active: A = yes\"");
        }
        FieldMap& field = fieldOf(left);
        if (theirs == "*") {
            field.otherwise = std::string(unquoted(ours));
        } else {
            field.values[base::lowered(unquoted(theirs))] = unquoted(ours);
        }
    }

    /// "x in metres"
    void unit(std::string_view line) {
        const std::size_t in = line.rfind(" in ");
        const std::string_view name =
            in == std::string_view::npos ? std::string_view() : base::trim(line.substr(in + 4));
        const auto* const unit = std::ranges::find(Units, name, &Unit::name);
        if (unit == Units.end()) {
            refuse(
                "\"field = column\", \"field: theirs = ours\" or \"field in metres\" is expected");
        }
        fieldOf(base::trim(line.substr(0, in))).factor = unit->factor;
    }

    std::string_view text_;
    std::int64_t line_ = 0;
    std::vector<MapSection> sections_;
};

}  // namespace

std::vector<MapSection> readMap(std::string_view text) { return MapReader(text).read(); }

}  // namespace tools::district
