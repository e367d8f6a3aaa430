#include "platform/base/ports.h"

#include <cstdio>
#include <ctime>

#include <fmt/format.h>

namespace base {

namespace {

class StandardErrorBoxes : public MsgBoxPort {
public:
    MsgAnswer show(const MsgRequest& request) override {
        fmt::print(stderr, "{}: {}\n", request.title, request.text);
        return defaultAnswer(request.buttons);
    }
};

class SystemClock : public ClockPort {
public:
    [[nodiscard]] Date now() const override {
        const std::time_t seconds = std::time(nullptr);
        std::tm local{};
        localtime_r(&seconds, &local);
        return Date::of(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                        local.tm_min, std::min(local.tm_sec, 59));
    }
};

class NoForms : public FormRegistryPort {
public:
    void unloadAll() override {}
};

}  // namespace

Ports& ports() {
    static StandardErrorBoxes boxes;
    static SystemClock clock;
    static NoForms forms;
    static Ports inForce{&boxes, &clock, &forms, [] {}, [] {}};
    return inForce;
}

MsgAnswer MsgBox(const std::string& text, const std::string& title, MsgIcon icon,
                 MsgButtons buttons) {
    return ports().msgBox->show({text, title, icon, buttons});
}

Date Now() { return ports().clock->now(); }

MsgAnswer defaultAnswer(MsgButtons buttons) {
    switch (buttons) {
        case MsgButtons::YesNo:
        case MsgButtons::YesNoCancel:
            return MsgAnswer::Yes;
        case MsgButtons::RetryCancel:
            return MsgAnswer::Retry;
        case MsgButtons::Ok:
        case MsgButtons::OkCancel:
            break;
    }
    return MsgAnswer::Ok;
}

}  // namespace base
