#pragma once

#include <string>
#include <vector>

#include "groupops/base/runselection.h"
#include "platform/ado/recordset.h"
#include "platform/base/ports.h"
#include "startup/base/session.h"

/// What the tests of group operations share.
namespace support {

/// A run list whose selection the test sets; counts how often the search was repeated.
class FakeSelection : public groupops::RunSelection {
public:
    [[nodiscard]] std::vector<std::string> selectedRuns() const override { return selected; }
    void searchAgain() override { ++searches; }

    std::vector<std::string> selected;
    int searches = 0;
};

/// Keeps what an operation reports and asks it to stop at the given turn (0: never).
class FakeProgress : public base::ProgressPort {
public:
    explicit FakeProgress(int stopsAt = 0) : stopsAt_(stopsAt) {}
    void progress(double percent) override { percents.push_back(percent); }
    void status(const std::string& text) override { texts.push_back(text); }
    bool yield() override { return ++turns == stopsAt_; }

    std::vector<double> percents;
    std::vector<std::string> texts;
    int turns = 0;

private:
    int stopsAt_;
};

/// All cells of a query's rows, apart by "|"; Null shows as "-".
inline std::vector<std::string> rowsOf(const std::string& sql, ado::Connection& connection) {
    ado::Recordset rows;
    rows.Open(sql, connection);
    std::vector<std::string> lines;
    for (; !rows.Eof(); rows.MoveNext()) {
        std::string line;
        for (int i = 0; i < rows.fieldCount(); ++i) {
            line += (i == 0 ? "" : "|") + (rows.Fields(i).isNull() ? "-" : rows.Fields(i).asText());
        }
        lines.push_back(line);
    }
    return lines;
}

}  // namespace support
