#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/base/error.h"
#include "platform/dde/transport.h"

/// The other side of the exchange in memory; in force while it lives, unless it is one of several.
/// Records what it is sent, and fails where it is told to.
class FakeMap : public dde::Transport {
public:
    FakeMap() { dde::setTransport(this); }
    explicit FakeMap(std::function<void()> taker) : whenTaken(std::move(taker)), inForce_(false) {}
    ~FakeMap() override {
        if (inForce_) {
            dde::setTransport(nullptr);
        }
    }
    FakeMap(const FakeMap&) = delete;
    FakeMap& operator=(const FakeMap&) = delete;

    std::unique_ptr<dde::Conversation> open(const std::string& service,
                                            const std::string& topic) override {
        failIf(0);
        return std::make_unique<Talk>(*this, service + "|" + topic + " ");
    }
    bool isThere(const std::string&) override { return there; }

    bool there = true;
    /// Fails at the opening (0) or at that command, counted from 1; -1 never.
    int failsAt = -1;
    int failure = dde::errors::NobodyThere;
    std::vector<std::string> taken;
    std::function<void()> whenTaken = [] {};

private:
    bool inForce_ = true;

    struct Talk : dde::Conversation {
        Talk(FakeMap& owner, std::string to) : map(owner), prefix(std::move(to)) {}
        void Execute(const std::string& command) override {
            map.failIf(static_cast<int>(map.taken.size()) + 1);
            map.taken.push_back(prefix + command);
            map.whenTaken();
        }
        FakeMap& map;
        std::string prefix;
    };

    void failIf(int step) const {
        if (step == failsAt) {
            throw base::RunTimeError(failure, "ArcView is not running.");
        }
    }
};
