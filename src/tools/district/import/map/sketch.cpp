#include <algorithm>
#include <numeric>

#include <fmt/format.h>

#include "tools/district/import/map/binding.h"

namespace tools::district {

namespace {

/// How many letters must be put in, taken out or exchanged to make one word of the other.
std::size_t distance(const std::string& a, const std::string& b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), 0U);
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t exchanged = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, exchanged});
        }
    }
    return row.back();
}

/// How far a column's name is from a field's, at best; in hundredths of the longer name.
std::size_t farness(const FileField& field, const std::string& column) {
    const std::string plain = plainName(column);
    const auto to = [&](const std::string& name) {
        return 100 * distance(plain, name) / std::max<std::size_t>({plain.size(), name.size(), 1});
    };
    std::size_t best = to(plainName(field.name));
    for (const std::string& synonym : field.synonyms) {
        best = std::min(best, to(synonym));
    }
    return best;
}

constexpr std::size_t TooFar = 40;

}  // namespace

std::string sketchMap(const std::string& source, const FileKind& kind, const CsvRecord& header) {
    const Binding byName(kind, &header, nullptr);
    std::vector<std::string> left = byName.unused();
    std::string text = fmt::format("[{} as {}]\n", source, kind.name);
    for (const FileField& field : kind.fields) {
        if (byName.has(field.name)) {
            text += fmt::format("{} = {}\n", field.name, byName.sourceName(field.name));
            continue;
        }
        const auto nearest = std::ranges::min_element(
            left, {}, [&](const std::string& column) { return farness(field, column); });
        if (nearest != left.end() && farness(field, *nearest) <= TooFar) {
            text += fmt::format("{} = {}\n", field.name, *nearest);
            left.erase(nearest);
        } else {
            text += fmt::format("# {}{} =\n", field.name, field.isRequired ? " (needed)" : "");
        }
    }
    for (const std::string& column : left) {
        text += fmt::format("# left out: {}\n", column);
    }
    return text;
}

const FileKind& likeliestKind(const CsvRecord& header) {
    const auto bound = [&](const FileKind& kind) {
        const Binding binding(kind, &header, nullptr);
        const auto found = header.fields.size() - binding.unused().size();
        return static_cast<int>(found) - 2 * static_cast<int>(binding.missing().size());
    };
    return *std::ranges::max_element(practicalKinds(), {}, bound);
}

}  // namespace tools::district
