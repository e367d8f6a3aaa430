#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/base/notcopied.h"
#include "platform/jet/ast.h"
#include "platform/jet/columnnames.h"
#include "platform/jet/dialect.h"
#include "platform/jet/joins.h"

namespace jet {

/// Writes a bound and rewritten statement in a store's dialect.
class Emitter {
public:
    Emitter(std::string_view sql, const Dialect& dialect) : sql_(sql), dialect_(dialect) {}

    /// Writes the whole statement, a SELECT whose rows stand for themselves with its tables' row
    /// keys behind the columns.
    void emit(const Statement& statement);

    [[nodiscard]] std::string& text() { return out_; }
    [[nodiscard]] std::vector<Parameter>& parameters() { return parameters_; }
    /// The tables whose row keys were written, in that order, as indexes into the sources.
    [[nodiscard]] const std::vector<int>& keys() const { return keys_; }

private:
    /// How tightly a written expression binds, loosest first.
    enum Rank { Disjunction, Conjunction, Negation, Comparison, Sum, Product, Joined, Atom };
    using Form = void (Emitter::*)(const Expr&);
    struct Argument {
        const Expr* expr;
        Form form;
    };
    using Targets = std::vector<Assignment>;
    /// Numbered and Named results can be named from outside; a Rank is a row's place in the order.
    enum class Results { AsTheyAre, WithKeys, Trimmed, Presence, Numbered, Named, Rank };

    struct Scope {
        const Select& select;
        ColumnNames names;
        bool takesAnyRow = false;  ///< columns are written as those of any row of a group
    };

    /// While it lives, columns of the innermost SELECT are those of any row of a group, or of each
    /// row. A store that is not strict needs no telling.
    class Rows : private base::NotCopied {
    public:
        enum class Of { AnyOne, Each };
        Rows(Emitter& emitter, Of which);
        ~Rows() { emitter_.scopes_[scope_].takesAnyRow = before_; }

    private:
        Emitter& emitter_;
        std::size_t scope_;
        bool before_;
    };

    // statements
    void emitSelect(const Select& select, Results results, const Targets* targets = nullptr);
    [[nodiscard]] static bool isOrderUnique(const Select& select);
    [[nodiscard]] static bool isOneRow(const Select& select);
    void emitLimit(const Select& select);
    void emitParts(const Source& source);
    void emitJoined(const Statement& statement);
    void emitOutputs(const Select& select, Results results, const Targets* targets);
    void emitResult(const Output& output);
    template <class F>
    void onOutput(const Output& output, F&& write);
    void emitKeys(const Select& select, const std::vector<JoinStep>& steps);
    void emitSteps(const Select& select, const std::vector<JoinStep>& steps);
    void emitWhere(const Select& select, const JoinOrder& order);
    void emitGrouping(const Select& select, bool distinct);
    void emitOrder(const Select& select);
    void emitOwnOrder(const Select& select, const std::vector<JoinStep>& steps);
    [[nodiscard]] bool goesOnWithTies(const Select& select) const;
    void sortKey(const Expr& expr, bool descending);
    void sortRows(const Select& select, const std::vector<JoinStep>& steps, std::string_view joint);
    void emitUpdate(const Statement& statement);
    void emitDelete(const Statement& statement);
    void emitInsert(const Statement& statement);
    void emitTarget(const Source& source);

    // expressions
    void ranked(const Expr& expr, Rank least);
    [[nodiscard]] Rank rankOf(const Expr& expr) const;
    void plain(const Expr& expr);
    void atom(const Expr& expr) { ranked(expr, Atom); }
    void sum(const Expr& expr) { ranked(expr, Sum); }
    void textual(const Expr& expr);
    void numeric(const Expr& expr);
    void asYesNo(const Expr& expr);
    void dated(const Expr& expr);
    void condition(const Expr& expr);
    void ordered(const Expr& expr);
    void textOrEmpty(const Expr& expr);
    void column(int scope, int source, const store::Column& column);
    void column(const Expr& expr);
    void bareColumn(const Scope& at, int scope, int source, const store::Column& column);
    void arithmetic(const Expr& expr);
    void concatenation(const Expr& expr);
    void call(const Expr& expr);
    void branch(const Expr& value, const Expr& call);
    void conditional(const Expr& expr);
    void nz(const Expr& expr);
    void format(const Expr& expr);
    void subSelect(const Expr& expr);
    void assigned(const Expr& expr, const store::Column& target);
    void assigned(const Expr& expr, Binding binding, bool fits, Op conversion);
    bool signedParameter(const Expr& expr, Binding binding);
    void parameter(const Expr& literal, Binding binding);
    void expand(Op op, Argument first = {}, Argument second = {}, Argument third = {});
    void name(std::string_view text);

    // conditions
    void chain(const std::vector<const Expr*>& terms, std::string_view joint, Rank rank);
    void compare(const Expr& expr);
    void compare(const Expr& left, Operator op, const Expr& right);
    void compareText(const Expr& left, Operator op, const Expr& right);
    void compareYesNo(const Expr& left, Operator op, const Expr& right);
    void yesNoSide(const Expr& expr);
    void compareDays(const Expr& expr);
    void like(const Expr& expr);
    void matches(const Expr& text, const Expr& pattern);
    void likeRange(const Expr& text, const Expr& pattern);
    void between(const Expr& expr);
    void in(const Expr& expr);
    void inItem(const Expr& value, const Expr& item, bool asStored);
    void inSelect(const Expr& expr);
    void trimmed(const Expr& expr);
    void comparable(const Expr& expr);
    void groupKey(const Expr& expr);
    void operand(const Expr& expr, const Expr& against);
    void refuseMismatch(const Expr& left, const Expr& right) const;

    std::string_view sql_;
    const Dialect& dialect_;
    std::string out_;
    std::vector<Parameter> parameters_;
    std::vector<int> keys_;
    std::vector<Scope> scopes_;  // the SELECTs around what is being written, innermost last
};

}  // namespace jet
