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

std::string tabSeparated(const Excerpt& excerpt, Captions captions) {
    const auto& table = excerpt.table;
    std::string text;
    const auto addLine = [&](const auto& cellText) {
        for (const std::size_t column : excerpt.columns) {
            text += column == excerpt.columns.front() ? "" : "\t";
            text += onOneLine(cellText(column));
        }
        text += '\n';
    };
    if (captions == Captions::Shown) {
        addLine([&](std::size_t column) { return table.columns[column].caption; });
    }
    for (const std::size_t row : excerpt.rows) {
        addLine([&](std::size_t column) { return table.text(row, column); });
    }
    return text;
}

std::string htmlTable(const Excerpt& excerpt, Captions captions) {
    const auto& table = excerpt.table;
    std::string html = "<table>\n";
    if (captions == Captions::Shown) {
        html += "<tr>";
        for (const std::size_t column : excerpt.columns) {
            html += "<th>" + escaped(table.columns[column].caption) + "</th>";
        }
        html += "</tr>\n";
    }
    for (const std::size_t row : excerpt.rows) {
        html += "<tr>";
        for (const std::size_t column : excerpt.columns) {
            html += table.isRed(row, column) ? "<td bgcolor=\"#ff0000\">" : "<td>";
            html += escaped(table.text(row, column));
            html += "</td>";
        }
        html += "</tr>\n";
    }
    return html + "</table>\n";
}

}  // namespace table
