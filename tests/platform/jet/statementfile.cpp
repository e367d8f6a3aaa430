#include "statementfile.h"

#include <fstream>
#include <stdexcept>

namespace jet::testing {

namespace {

void addRows(Step& step, std::string_view rows) {
    constexpr std::string_view Between = " ; ";
    step.comparesRows = true;
    while (rows != "none") {
        const auto end = rows.find(Between);
        step.rows.emplace_back(rows.substr(0, end));
        if (end == rows.npos) {
            return;
        }
        rows.remove_prefix(end + Between.size());
    }
}

void expect(Step& step, const std::string& outcome) {
    if (outcome.starts_with("# ")) {
        step.rowCount = std::stoi(outcome.substr(2));
    } else if (outcome.starts_with("! ")) {
        std::size_t digits = 0;
        step.position = std::stoul(outcome.substr(2), &digits);
        step.error = outcome.substr(digits + 3);
    } else {
        addRows(step, outcome);
    }
}

std::string sqlOf(char kind, const std::string& text) {
    return kind == '*'   ? "SELECT " + text + " FROM SYSTEM"
           : kind == '&' ? "SELECT RUN.RUN FROM RUN WHERE " + text + " ORDER BY RUN.RUN"
                         : text;
}

Step stepOf(char kind, const std::string& rest, int line) {
    const auto outcome = rest.rfind(" -> ");
    Step step;
    step.line = line;
    step.sql = sqlOf(kind, rest.substr(0, outcome));
    if (outcome != rest.npos) {
        expect(step, rest.substr(outcome + 4));
    }
    return step;
}

}  // namespace

std::vector<Block> readStatements() {
    std::ifstream file(VIREO_SOURCE_DIR "/tests/platform/jet/statements.txt");
    std::vector<Block> blocks;
    int number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        if (line.empty() || line.starts_with("--")) {
            continue;
        }
        const char kind = line.front();
        const std::string rest = line.substr(2);
        if (kind == '+') {
            blocks.back().push_back(stepOf(kind, rest, number));
        } else if (kind == '>') {
            blocks.back().back().translation = rest;
        } else if (kind == '=' || kind == '#' || kind == '!') {
            expect(blocks.back().back(), kind == '=' ? rest : line);
        } else if (kind == '?' || kind == '*' || kind == '&') {
            blocks.push_back({stepOf(kind, rest, number)});
        } else {
            throw std::runtime_error("line " + std::to_string(number) + " is of no kind");
        }
    }
    return blocks;
}

}  // namespace jet::testing
