#include "platform/table/tablecopy.h"

#include <algorithm>

namespace table {

namespace {

std::string onOneLine(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\t' || c == '\n' || c == '\r'; }, ' ');
    return text;
}

std::string escaped(const std::string& text) {
    std::string html;
    for (const char c : text) {
        html += c == '&' ? "&amp;" : c == '<' ? "&lt;" : c == '>' ? "&gt;" : std::string(1, c);
    }
    return html;
}

}  // namespace

std::string tabSeparated(const TextTable& table, std::span<const std::size_t> rows) {
    std::string text;
    const auto addLine = [&](const auto& cellText) {
        for (std::size_t column = 0; column < table.columns.size(); ++column) {
            text += column == 0 ? "" : "\t";
            text += onOneLine(cellText(column));
        }
        text += '\n';
    };
    addLine([&](std::size_t column) { return table.columns[column].caption; });
    for (const std::size_t row : rows) {
        addLine([&](std::size_t column) { return table.text(row, column); });
    }
    return text;
}

std::string htmlTable(const TextTable& table, std::span<const std::size_t> rows) {
    std::string html = "<table>\n<tr>";
    for (const TableColumn& column : table.columns) {
        html += "<th>";
        html += escaped(column.caption);
        html += "</th>";
    }
    html += "</tr>\n";
    for (const std::size_t row : rows) {
        html += "<tr>";
        for (std::size_t column = 0; column < table.columns.size(); ++column) {
            html += table.isRed(row, column) ? "<td bgcolor=\"#ff0000\">" : "<td>";
            html += escaped(table.text(row, column));
            html += "</td>";
        }
        html += "</tr>\n";
    }
    return html + "</table>\n";
}

}  // namespace table
