#include "platform/store/postgres/names.h"

#include <algorithm>
#include <vector>

#include "platform/base/text.h"
#include "platform/store/base/ddl.h"

namespace store::postgres {

namespace {

bool isWordPart(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_';
}

/// A piece of a statement: a bare word, something in quotes, or one other character.
struct Piece {
    std::string_view text;
    bool isWord = false;
};

Piece nextPiece(std::string_view rest) {
    const char first = rest.front();
    if (first == '"' || first == '\'') {
        const auto close = rest.find(first, 1);
        return {rest.substr(0, close == std::string_view::npos ? close : close + 1), false};
    }
    const auto* end = std::ranges::find_if_not(rest, isWordPart);
    const auto size = static_cast<std::size_t>(end - rest.begin());
    const bool isNumber = first >= '0' && first <= '9';
    return size == 0 ? Piece{rest.substr(0, 1), false} : Piece{rest.substr(0, size), !isNumber};
}

/// The name without its quotes.
std::string_view nameIn(std::string_view piece) {
    return piece.size() > 1 && piece.front() == '"' ? piece.substr(1, piece.size() - 2) : piece;
}

std::vector<const Table*> tablesIn(std::string_view sql, const Catalog& catalog) {
    std::vector<const Table*> tables;
    while (!sql.empty()) {
        const Piece piece = nextPiece(sql);
        sql.remove_prefix(piece.text.size());
        const Table* table =
            piece.isWord || piece.text.front() == '"' ? catalog.find(nameIn(piece.text)) : nullptr;
        if (table != nullptr) {
            tables.push_back(table);
        }
    }
    return tables;
}

/// The name as the catalogue has it; empty for a word that is none.
std::string_view writtenName(std::string_view word, const std::vector<const Table*>& tables) {
    for (const Table* table : tables) {
        if (base::equalsNoCase(table->name, word)) {
            return table->name;
        }
        if (const Column* column = table->find(word)) {
            return column->name;
        }
    }
    return {};
}

}  // namespace

std::string withQuotedNames(std::string_view sql, const Catalog& catalog) {
    const auto tables = tablesIn(sql, catalog);
    std::string text;
    while (!sql.empty()) {
        const Piece piece = nextPiece(sql);
        sql.remove_prefix(piece.text.size());
        const bool isCall = sql.starts_with('(');
        const std::string_view name =
            piece.isWord && !isCall ? writtenName(piece.text, tables) : std::string_view();
        text += name.empty() ? std::string(piece.text) : quoted(name);
    }
    return text;
}

}  // namespace store::postgres
