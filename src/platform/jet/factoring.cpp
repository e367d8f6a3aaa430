#include "platform/jet/factoring.h"

#include <utility>

#include "platform/jet/kinds.h"

namespace jet {

namespace {

// Terms are only gathered with one of so many kinds before them: the cost stays linear.
constexpr std::size_t MostBuckets = 8;
constexpr std::size_t Nowhere = static_cast<std::size_t>(-1);

/// Terms that one IN can replace; where they are ANDs, `varying` is the place that differs.
struct Bucket {
    std::vector<ExprPtr> terms;
    std::size_t varying = Nowhere;
};

/// Puts `literal = column` the other way round.
void columnFirst(Expr& compare) {
    if (isLiteral(*compare.children[0]) && isColumn(*compare.children[1])) {
        std::swap(compare.children[0], compare.children[1]);
        compare.op = flipped(compare.op);
    }
}

bool isEquality(const Expr& term) {
    return term.kind == ExprKind::Compare && term.op == Operator::Equal &&
           isColumn(*term.children[0]) && isLiteral(*term.children[1]) &&
           categoryOf(*term.children[0]) == categoryOf(*term.children[1]);
}

bool comparesSameColumn(const Expr& a, const Expr& b) {
    return isEquality(a) && isEquality(b) && sameColumn(*a.children[0], *b.children[0]);
}

/// The only place where two ANDs differ, both comparing one column there; the first equality where
/// they do not differ at all.
std::size_t varyingPlace(const Expr& a, const Expr& b) {
    if (a.kind != ExprKind::And || b.kind != ExprKind::And ||
        a.children.size() != b.children.size()) {
        return Nowhere;
    }
    std::size_t place = Nowhere;
    std::size_t equality = Nowhere;
    for (std::size_t i = 0; i < a.children.size(); ++i) {
        const bool same = sameExpression(*a.children[i], *b.children[i]);
        const bool comparable = comparesSameColumn(*a.children[i], *b.children[i]);
        if (comparable && equality == Nowhere) {
            equality = i;
        }
        if (!same && (!comparable || place != Nowhere)) {
            return Nowhere;
        }
        place = same ? place : i;
    }
    return place == Nowhere ? equality : place;
}

bool takes(Bucket& bucket, const Expr& term) {
    const Expr& first = *bucket.terms.front();
    if (comparesSameColumn(first, term)) {
        return true;
    }
    const std::size_t place = varyingPlace(first, term);
    if (place == Nowhere || (bucket.varying != Nowhere && bucket.varying != place)) {
        return false;
    }
    bucket.varying = place;
    return true;
}

Bucket& bucketFor(std::vector<Bucket>& buckets, const Expr& term) {
    for (std::size_t i = 0; i < buckets.size() && i < MostBuckets; ++i) {
        if (takes(buckets[i], term)) {
            return buckets[i];
        }
    }
    return buckets.emplace_back();
}

void turnColumnsFirst(Expr& term) {
    if (term.kind == ExprKind::Compare) {
        columnFirst(term);
    } else if (term.kind == ExprKind::And) {
        for (const ExprPtr& child : term.children) {
            turnColumnsFirst(*child);
        }
    }
}

Expr& varyingTerm(Expr& term, std::size_t varying) {
    return varying == Nowhere ? term : *term.children[varying];
}

/// The first term with its equality turned into an IN over the literals of all.
ExprPtr merged(Bucket bucket) {
    ExprPtr result = std::move(bucket.terms.front());
    if (bucket.terms.size() == 1) {
        return result;
    }
    Expr& in = varyingTerm(*result, bucket.varying);
    in.kind = ExprKind::In;
    in.op = Operator::None;
    for (auto term = bucket.terms.begin() + 1; term != bucket.terms.end(); ++term) {
        in.children.push_back(std::move(varyingTerm(**term, bucket.varying).children[1]));
    }
    return result;
}

}  // namespace

void factorOr(Expr& alternatives) {
    std::vector<Bucket> buckets;
    for (ExprPtr& term : alternatives.children) {
        turnColumnsFirst(*term);
        bucketFor(buckets, *term).terms.push_back(std::move(term));
    }
    alternatives.children.clear();
    for (Bucket& bucket : buckets) {
        alternatives.children.push_back(merged(std::move(bucket)));
    }
    if (alternatives.children.size() == 1) {
        ExprPtr only = std::move(alternatives.children.front());
        alternatives = std::move(*only);
    }
}

}  // namespace jet
