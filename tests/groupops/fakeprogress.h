#pragma once

#include <string>
#include <vector>

#include "platform/base/ports.h"

namespace groupops {

/// Keeps what it was told; asks to stop when it has let so many steps pass.
class FakeProgress : public base::ProgressPort {
public:
    explicit FakeProgress(int steps = -1) : left_(steps) {}
    void progress(double percent) override { percents.push_back(percent); }
    void status(const std::string& text) override { texts.push_back(text); }
    bool yield() override { return left_-- == 0; }

    std::vector<double> percents;
    std::vector<std::string> texts;

private:
    int left_;
};

}  // namespace groupops
