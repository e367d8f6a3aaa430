#pragma once

#include <iterator>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "reports/base/content.h"

namespace reports {

/// A report of items that a test puts together.
class Invented : public Content {
public:
    explicit Invented(Form form = Form::List) {
        definition.form = form;
        said = {"Run list", "All runs", "Four Towns", "Nov 21, 2026 9:41 AM", "PLANNER", "", false};
    }
    Invented(Report report, std::vector<Item> all)
        : definition(std::move(report)),
          chosen{Paper::A4, true},
          said{"Run list & more",
               "Active <runs>",
               "Łódź Unified",
               "Nov 21, 2026 9:41 AM",
               "O'HARA",
               "Foot.",
               true},
          items(std::move(all)) {}

    [[nodiscard]] const Report& report() const override { return definition; }
    [[nodiscard]] const Options& options() const override { return chosen; }
    [[nodiscard]] const Heading& heading() const override { return said; }
    [[nodiscard]] std::size_t size() const override { return items.size(); }
    std::optional<Item> next() override {
        return at_ < items.size() ? std::optional(items[at_++]) : std::nullopt;
    }
    void rewind() { at_ = 0; }

    Column& addColumn(CellKind kind, double width, const std::string& caption = "Caption") {
        Column& column = definition.columns.emplace_back();
        column.kind = kind;
        column.width = width;
        column.caption = caption;
        return column;
    }
    /// A group of rows with an increasing number in each cell, and its totals.
    void addGroup(const std::string& title, int rows) {
        items.emplace_back(GroupHead{0, title, std::to_string(rows) + " runs"});
        for (int row = 0; row < rows; ++row) {
            items.emplace_back(Row{std::vector<base::Value>(definition.columns.size(), ++last_)});
        }
        items.emplace_back(Totals{0, title + ", total",
                                  std::vector<base::Value>(definition.columns.size(), rows)});
    }

    Report definition;
    Options chosen;
    Heading said;
    std::vector<Item> items;

private:
    std::size_t at_ = 0;
    int last_ = 0;
};

/// Texts as people type them, and worse.
class Texts {
public:
    explicit Texts(unsigned seed) : random_(seed) {}

    int upTo(int most) { return std::uniform_int_distribution(0, most)(random_); }
    /// Mostly some words, now and then many.
    std::string text() { return words(upTo(upTo(12) == 0 ? 60 : 5)); }
    /// What a name's field holds: at most 200 letters.
    std::string name() {
        std::string name = words(upTo(4));
        return name.size() > 200 ? std::string(200, 'W') : name;
    }

private:
    std::string words(int count) {
        static const std::vector<std::string> Words = [] {
            std::istringstream words(
                "O'Brien <Annex> & Łódź Zoë שרה כהן مدرسة النور 12 Street a e\u0301 - 5th "
                "\xFF\xC3 東京 متحدة/שלום Featherstonehaugh-Bartholomew");
            std::vector<std::string> all{"\n", std::string(200, 'W')};
            all.insert(all.end(), std::istream_iterator<std::string>(words), {});
            return all;
        }();
        std::string text;
        for (; count > 0; --count) {
            text += Words[static_cast<std::size_t>(upTo(static_cast<int>(Words.size()) - 1))];
            text += upTo(4) == 0 ? "" : " ";
        }
        return text;
    }

    std::mt19937 random_;
};

}  // namespace reports
