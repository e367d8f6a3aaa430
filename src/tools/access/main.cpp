#include <cstdio>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>
#include <sys/resource.h>
#include <unistd.h>

#include "platform/files/installation.h"
#include "tools/access/accessfile.h"

namespace {

constexpr auto Help = R"(Usage: vireo-read-access FILE [TABLE [CODEPAGE]]

Writes the tables of an Access file, or one of them, as separated values in UTF-8: Null as nothing,
an empty text as "". What is left out and what is wrong goes to standard error; it ends with 0 only
where all of it was read. CODEPAGE is that of an Access 97 file, CP1252 where none is named.

  --help     this text
  --version  the program's version
)";

using tools::access::AccessFile;

struct CannotWrite : std::exception {
    [[nodiscard]] const char* what() const noexcept override {
        return "The output cannot be written.";
    }
};

std::FILE* output = nullptr;

void put(std::string_view text) {
    if (std::fwrite(text.data(), 1, text.size(), output) != text.size()) {
        throw CannotWrite();
    }
}

void putCell(bool isFirst, const tools::access::Cell& cell) {
    if (!isFirst) {
        put(",");
    }
    if (!cell) {
        return;
    }
    if (!cell->empty() && cell->find_first_of(",\"\r\n") == std::string::npos) {
        put(*cell);
        return;
    }
    put("\"");
    for (const char letter : *cell) {
        put(letter == '"' ? std::string_view("\"\"") : std::string_view(&letter, 1));
    }
    put("\"");
}

void putRow(const std::vector<tools::access::Cell>& cells) {
    for (std::size_t at = 0; at < cells.size(); ++at) {
        putCell(at == 0, cells[at]);
    }
    put("\n");
}

/// A damaged file may keep the library busy for ever or let it ask for all memory there is.
void limitMyself() {
    constexpr rlim_t Seconds = 60;
    const rlimit cpu{Seconds, Seconds};
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CPU, &cpu);
    setrlimit(RLIMIT_CORE, &none);
#ifndef VIREO_SANITIZED  // the sanitizers want terabytes of addresses
    constexpr rlim_t Memory = rlim_t{1} << 30;
    const rlimit memory{Memory, Memory};
    setrlimit(RLIMIT_AS, &memory);
#endif
}

/// A stream of ours in the place of one that the library writes its troubles to.
std::FILE* ownStream(std::FILE* given) {
    std::FILE* own = fdopen(dup(fileno(given)), "w");
    if (std::freopen("/dev/null", "w", given) == nullptr) {
        std::fclose(given);
    }
    return own;
}

void listTables(const AccessFile& file) {
    constexpr const char* Kinds[] = {"table", "linked table", "query"};
    put("Kind,Name,Rows,Linked To\n");
    for (const auto& entry : file.entries()) {
        const bool isTable = entry.kind == tools::access::Entry::Kind::Table;
        putRow({Kinds[static_cast<int>(entry.kind)], entry.name,
                isTable ? tools::access::Cell(std::to_string(entry.rows)) : std::nullopt,
                entry.linkedTo.empty() ? std::nullopt : tools::access::Cell(entry.linkedTo)});
    }
}

void copyTable(const AccessFile& file, const std::string& name, std::FILE* messages) {
    const auto head = [&](const std::vector<tools::access::Column>& columns) {
        std::vector<tools::access::Cell> names;
        for (const auto& column : columns) {
            if (column.refused.empty()) {
                names.emplace_back(column.name);
            } else {
                std::fputs(
                    fmt::format("The column \"{}\" is left out: {}.\n", column.name, column.refused)
                        .c_str(),
                    messages);
            }
        }
        putRow(names);
    };
    file.read(name, head, putRow);
}

}  // namespace

int main(int argc, char** argv) {
    output = ownStream(stdout);
    std::FILE* messages = ownStream(stderr);
    (void)std::setvbuf(messages, nullptr, _IONBF, 0);
    const std::string_view first = argc > 1 ? argv[1] : "";
    if (first == "--help" || first == "--version") {
        const std::string text = first == "--help" ? Help
                                                   : fmt::format("vireo-read-access {}\n",
                                                                 files::installation().version);
        std::fputs(text.c_str(), output);
        return std::fflush(output) == 0 ? 0 : 1;
    }
    if (argc < 2 || argc > 4) {
        std::fputs(Help, messages);
        return 2;
    }
    limitMyself();
    try {
        const AccessFile file(argv[1], argc > 3 ? argv[3] : "CP1252");
        if (argc > 2) {
            copyTable(file, argv[2], messages);
        } else {
            listTables(file);
        }
        if (std::fflush(output) != 0) {
            throw CannotWrite();
        }
        return 0;
    } catch (const std::exception& error) {
        (void)std::fflush(output);
        std::fputs(fmt::format("{}\n", error.what()).c_str(), messages);
        return 1;
    }
}
