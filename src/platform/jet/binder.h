#pragma once

#include <string_view>

#include "platform/jet/ast.h"

namespace jet {

/// Finds the tables and columns that a statement names, spells out its stars, and gives every
/// expression its kind. Raises SqlError: unknown tables, unknown and ambiguous columns, columns
/// beside a grouping.
class Binder {
public:
    Binder(std::string_view sql, const store::Catalog& catalog) : sql_(sql), catalog_(catalog) {}

    void bind(Statement& statement);

private:
    struct Scope {
        Select& select;
        Scope* outer;
    };

    void bindChange(Statement& statement);
    void bindInsert(Statement& statement);
    void bindSelect(Select& select, Scope* outer);
    void findTable(Source& source);
    void makeTable(Source& source);
    void mergeColumns(store::Table& made, const Select& part) const;
    void joinKinds(store::ColumnKind& kind, store::ColumnKind other, const Select& part,
                   const Output& output) const;
    void findChanged(Statement& statement) const;
    void findTarget(Assignment& assignment, const Select& select, std::size_t& changed) const;
    void refuseTwins(const Select& select) const;
    void bindJoin(Join* join, Scope& scope);
    void bindOutputs(Scope& scope);
    void spellOut(Select& select, const OutputItem& star) const;
    void bindOrder(Scope& scope);
    bool orderByAlias(OrderItem& item, const Select& select) const;
    void refuseUngrouped(const Select& select, const Expr& expr) const;
    void checkGrouping(const Select& select) const;
    void refuseAggregate(const Expr* expr, std::string_view where) const;

    void bind(Expr& expr, Scope& scope);
    void bindInside(Expr& expr, Scope& scope);
    void bindColumn(Expr& expr, Scope& scope) const;
    bool findInScope(Expr& expr, const Select& select) const;
    void bindCall(Expr& expr, Scope& scope) const;
    void refuseSetTwice(const Statement& statement) const;
    void findTarget(Assignment& assignment, const Source& source) const;
    [[noreturn]] void unknownColumn(const Expr& expr, const Scope& scope) const;

    std::string_view sql_;
    const store::Catalog& catalog_;
};

}  // namespace jet
