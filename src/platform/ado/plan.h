#pragma once

#include <cstddef>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/ado/rowlayout.h"
#include "platform/jet/translate.h"
#include "platform/store/base/database.h"

namespace ado {

/// A translated statement with what its recordsets share: names of its columns, idle prepared
/// statements.
class Plan {
public:
    explicit Plan(jet::Translation translation) : translation_(std::move(translation)) {}

    [[nodiscard]] const jet::Translation& translation() const { return translation_; }

    static constexpr int Unknown = -1;
    static constexpr int Ambiguous = -2;
    /// The index of a visible column by its name or TABLE.COLUMN, without regard to case.
    [[nodiscard]] int find(std::string_view name) const;
    /// The column's name, as TABLE.COLUMN where the result has its bare name more than once.
    [[nodiscard]] const std::string& nameOf(int column) const;

    /// Made when rows are first written; the plan does not outlive the catalogue.
    [[nodiscard]] const RowLayout& layout(const store::Catalog& catalog) const;

    /// An idle statement, or one newly prepared.
    [[nodiscard]] std::unique_ptr<store::Statement> take(store::Database& database);
    /// Gives a statement back; it is reset.
    void giveBack(std::unique_ptr<store::Statement> statement);

private:
    struct NoCaseHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const noexcept;
    };
    struct NoCaseEqual {
        using is_transparent = void;
        bool operator()(std::string_view a, std::string_view b) const noexcept;
    };

    void readNames() const;

    jet::Translation translation_;
    std::vector<std::unique_ptr<store::Statement>> idle_;
    // Made when the first field is asked for by name.
    mutable std::unordered_map<std::string, int, NoCaseHash, NoCaseEqual> indexByName_;
    mutable std::vector<std::string> names_;
    mutable std::unique_ptr<RowLayout> layout_;
};

/// The plans last used, by the shape of their statements. Very long statements are not kept: they
/// hardly ever come twice.
class PlanCache {
public:
    /// The plan for a shape; null where it is not kept.
    [[nodiscard]] std::shared_ptr<Plan> find(const std::string& key);
    void add(const std::string& key, std::shared_ptr<Plan> plan);
    void clear();

private:
    static constexpr std::size_t MaxPlans = 250;
    static constexpr std::size_t MaxKeyBytes = 6000;

    using Entry = std::pair<std::string, std::shared_ptr<Plan>>;

    std::list<Entry> newestFirst_;
    std::unordered_map<std::string_view, std::list<Entry>::iterator> byKey_;
};

}  // namespace ado
