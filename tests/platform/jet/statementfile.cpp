#include "statementfile.h"

#include <fstream>
#include <stdexcept>

namespace jet::testing {

namespace {

void readError(Step& step, const std::string& rest) {
    std::size_t digits = 0;
    step.position = static_cast<std::size_t>(std::stoul(rest, &digits));
    step.error = rest.substr(digits + 1);
}

void read(Block& block, const std::string& line, int number) {
    const std::string rest = line.size() > 2 ? line.substr(2) : "";
    if (line.front() == '?') {
        block.emplace_back().line = number;
        block.back().sql = rest;
        return;
    }
    if (block.empty()) {
        throw std::runtime_error("line " + std::to_string(number) + " stands before a statement");
    }
    Step& step = block.back();
    switch (line.front()) {
        case '>':
            step.translation = rest;
            break;
        case '#':
            step.rowCount = std::stoi(rest);
            break;
        case '!':
            readError(step, rest);
            break;
        case '=':
            step.comparesRows = true;
            if (line != "=none") {
                step.rows.push_back(rest);
            }
            break;
        default:
            throw std::runtime_error("line " + std::to_string(number) + " is of no kind");
    }
}

}  // namespace

std::vector<Block> readStatements(const std::string& path) {
    std::ifstream file(path);
    std::vector<Block> blocks(1);
    int number = 0;
    for (std::string line; std::getline(file, line);) {
        ++number;
        if (line.starts_with("--")) {
            continue;
        }
        if (!line.empty()) {
            read(blocks.back(), line, number);
        } else if (!blocks.back().empty()) {
            blocks.emplace_back();
        }
    }
    if (blocks.back().empty()) {
        blocks.pop_back();
    }
    return blocks;
}

}  // namespace jet::testing
