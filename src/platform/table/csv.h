#pragma once

#include <functional>
#include <ostream>
#include <string_view>

#include "platform/table/excerpt.h"

namespace table {

/// Writes comma-separated values (RFC 4180): lines end in CR LF; a text stands in quotes where it
/// holds a comma, a quote, a line end or a blank at one of its ends. The empty text is `""`, so
/// that Null, which is nothing, stays apart from it.
class CsvWriter {
public:
    explicit CsvWriter(std::ostream& out) : out_(out) {}

    void text(std::string_view text);
    void null() { separate(); }
    void endRow();

private:
    void separate();

    std::ostream& out_;
    bool isFirst_ = true;
};

/// What a spreadsheet opens: a mark that says UTF-8, a row of captions, and the rows as a list
/// shows them. False where `keepGoing`, which is told the share that is done, said no.
bool writeCsv(const Excerpt& excerpt, std::ostream& out,
              const std::function<bool(double)>& keepGoing = {});

}  // namespace table
