#include "platform/ado/plan.h"

#include <utility>

#include "platform/base/text.h"

namespace ado {

std::size_t Plan::NoCaseHash::operator()(std::string_view text) const noexcept {
    // FNV-1a; the bit tells upper and lower case apart and falls together with few other letters.
    std::size_t hash = 14695981039346656037U;
    for (const char c : text) {
        hash = (hash ^ (static_cast<unsigned char>(c) | 0x20U)) * 1099511628211U;
    }
    return hash;
}

bool Plan::NoCaseEqual::operator()(std::string_view a, std::string_view b) const noexcept {
    return base::equalsNoCase(a, b);
}

void Plan::readNames() const {
    int index = 0;
    for (const jet::OutputColumn& column : translation_.columns) {
        const auto [at, isNew] = indexByName_.emplace(column.name, index);
        if (!isNew) {
            at->second = Ambiguous;
        }
        ++index;
    }
    index = 0;
    for (const jet::OutputColumn& column : translation_.columns) {
        const std::string qualified =
            column.source.empty() ? column.name : column.source + "." + column.name;
        const bool isBare = indexByName_.find(column.name)->second != Ambiguous;
        names_.push_back(isBare ? column.name : qualified);
        indexByName_.emplace(qualified, index);
        ++index;
    }
}

int Plan::find(std::string_view name) const {
    if (names_.empty()) {
        readNames();
    }
    const auto at = indexByName_.find(name);
    return at == indexByName_.end() ? Unknown : at->second;
}

const std::string& Plan::nameOf(int column) const {
    if (names_.empty()) {
        readNames();
    }
    return names_[static_cast<std::size_t>(column)];
}

const RowLayout& Plan::layout(const store::Catalog& catalog) const {
    if (layout_ == nullptr) {
        layout_ = std::make_unique<RowLayout>(translation_, catalog);
    }
    return *layout_;
}

std::unique_ptr<store::Statement> Plan::take(store::Database& database) {
    if (idle_.empty()) {
        return database.prepare(translation_.text);
    }
    auto statement = std::move(idle_.back());
    idle_.pop_back();
    return statement;
}

void Plan::giveBack(std::unique_ptr<store::Statement> statement) {
    constexpr std::size_t MaxIdle = 20;  // so many go to a server together
    statement->reset();
    if (idle_.size() < MaxIdle) {
        idle_.push_back(std::move(statement));
    }
}

std::shared_ptr<Plan> PlanCache::find(const std::string& key) {
    const auto at = byKey_.find(key);
    if (at == byKey_.end()) {
        return nullptr;
    }
    newestFirst_.splice(newestFirst_.begin(), newestFirst_, at->second);
    return at->second->second;
}

void PlanCache::add(const std::string& key, std::shared_ptr<Plan> plan) {
    if (key.size() > MaxKeyBytes) {
        return;
    }
    newestFirst_.emplace_front(key, std::move(plan));
    byKey_[newestFirst_.front().first] = newestFirst_.begin();
    if (newestFirst_.size() > MaxPlans) {
        byKey_.erase(newestFirst_.back().first);
        newestFirst_.pop_back();
    }
}

void PlanCache::clear() {
    byKey_.clear();
    newestFirst_.clear();
}

}  // namespace ado
