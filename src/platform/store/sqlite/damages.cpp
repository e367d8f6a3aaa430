#include <algorithm>
#include <string_view>

#include <fmt/format.h>

#include "platform/store/sqlite/database.h"

namespace store::sqlite {

namespace {

bool isOfIndex(std::string_view finding) {
    return finding.find(" index ") != std::string_view::npos;
}

/// The engine's finding in plain words. What it says of single rows of an index is one damage.
std::string inPlainWords(std::string_view finding) {
    if (isOfIndex(finding)) {
        const auto name = finding.substr(finding.rfind(' ') + 1);
        return fmt::format("the index {} does not hold the rows of its table", name);
    }
    std::string words(finding);
    std::ranges::replace(words, '\n', ' ');
    return fmt::format("its contents do not fit together ({})", words);
}

}  // namespace

std::vector<std::string> SqliteDatabase::damages() {
    std::vector<std::string> found;
    const auto add = [&found](std::string words) {
        if (std::ranges::find(found, words) == found.end()) {
            found.push_back(std::move(words));
        }
    };
    try {
        PreparedStatement rows(source_, "PRAGMA main.integrity_check(1000)");
        while (rows.step()) {
            if (rows.text(0) != "ok") {
                add(inPlainWords(rows.text(0)));
            }
        }
    } catch (const StoreError& error) {  // too damaged to be looked over to the end
        if (error.fault() != Fault::Damaged) {
            throw;
        }
        add(inPlainWords(sqlite3_errmsg(source_.handle)));
    }
    return found;
}

}  // namespace store::sqlite
