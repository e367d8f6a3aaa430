#pragma once

#include <cstdint>
#include <vector>

#include "platform/jet/ast.h"

namespace jet {

/// One step of a FROM written from left to right: a table, or a group in parentheses, and how it is
/// joined to what stands before.
struct JoinStep {
    bool outer = false;  ///< LEFT JOIN; otherwise an inner one
    int source = -1;     ///< -1 for a group
    std::vector<JoinStep> group;
    std::vector<const Expr*> on;  ///< all of them must hold
};

struct JoinOrder {
    std::vector<JoinStep> steps;
    /// Conditions of inner joins that no step could take; they belong into WHERE.
    std::vector<const Expr*> where;
};

/// The normal form of a FROM: inner tables first, each condition as soon as its tables stand, then
/// the outer ones; RIGHT turned to LEFT; an outer join that a condition of an inner one makes inner
/// becomes so. What cannot be written without parentheses keeps them.
[[nodiscard]] JoinOrder joinOrder(const Join* from);

/// The tables of this SELECT that an expression names, a bit for each. A sub-query counts as naming
/// all of them.
[[nodiscard]] std::uint64_t tablesOf(const Expr& expr);

}  // namespace jet
