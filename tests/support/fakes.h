#pragma once

#include <deque>
#include <string>
#include <vector>

#include "platform/base/ports.h"
#include "platform/process/process.h"

/// Ports that answer and record. Each is in force from its construction to its end.
namespace support {

/// Keeps every message box, its text with what it concerns; answers from `answers` in order, then
/// with the default button.
class FakeBoxes : public base::MsgBoxPort {
public:
    FakeBoxes();
    ~FakeBoxes() override;
    FakeBoxes(const FakeBoxes&) = delete;
    FakeBoxes& operator=(const FakeBoxes&) = delete;
    base::MsgAnswer show(const base::MsgRequest& request) override;

    std::deque<base::MsgAnswer> answers;
    std::vector<base::MsgRequest> shown;

private:
    base::MsgBoxPort* before_;
};

/// A clock that stands still at 1/31/2026 8:05:09 AM until it is set.
class FakeClock : public base::ClockPort {
public:
    FakeClock();
    ~FakeClock() override;
    FakeClock(const FakeClock&) = delete;
    FakeClock& operator=(const FakeClock&) = delete;
    [[nodiscard]] base::Date now() const override { return time; }

    base::Date time = base::Date::of(2026, 1, 31, 8, 5, 9);

private:
    base::ClockPort* before_;
};

/// Counts how often all forms were asked to unload.
class FakeForms : public base::FormRegistryPort {
public:
    FakeForms();
    ~FakeForms() override;
    FakeForms(const FakeForms&) = delete;
    FakeForms& operator=(const FakeForms&) = delete;
    void unloadAll() override { ++unloads; }

    int unloads = 0;

private:
    base::FormRegistryPort* before_;
};

/// Keeps each start as one text, "PROGRAM ARGUMENT …"; starts raise `failure` unless it is 0.
class FakeProcesses : public process::ProcessHost {
public:
    FakeProcesses() { process::setHost(this); }
    ~FakeProcesses() override { process::setHost(nullptr); }
    FakeProcesses(const FakeProcesses&) = delete;
    FakeProcesses& operator=(const FakeProcesses&) = delete;
    void start(const std::string& program, const std::vector<std::string>& arguments) override;
    [[nodiscard]] bool isRunning(const std::string& name) override;

    int failure = 0;
    std::vector<std::string> started;
    std::vector<std::string> running;
};

}  // namespace support
