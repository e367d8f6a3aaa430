#pragma once

#include <functional>
#include <string>
#include <vector>

#include "groupops/base/runselection.h"
#include "platform/base/ports.h"

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

/// Keeps what an operation reports. At each of its turns, counted from 1, something may happen that
/// says whether it is asked to stop.
class FakeProgress : public base::ProgressPort {
public:
    using Turn = std::function<bool(int turn)>;
    explicit FakeProgress(Turn turn = [](int) { return false; }) : turn_(std::move(turn)) {}
    void progress(double percent) override { percents.push_back(percent); }
    void status(const std::string& text) override { texts.push_back(text); }
    bool yield() override { return turn_(++turns_); }

    std::vector<double> percents;
    std::vector<std::string> texts;

private:
    Turn turn_;
    int turns_ = 0;
};

}  // namespace support
