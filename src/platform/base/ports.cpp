#include "platform/base/ports.h"

#include <cstdio>
#include <ctime>

#include <fmt/format.h>

namespace base {

namespace {

class StandardErrorBoxes : public MsgBoxPort {
public:
    MsgAnswer show(const MsgRequest& request) override {
        fmt::print(stderr, "{}: {}\n", request.title, request.plainText());
        return defaultAnswer(request);
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

std::string MsgRequest::plainText() const {
    return concerns.empty() ? text : text + "\n\n" + concerns;
}

Ports& ports() {
    static StandardErrorBoxes boxes;
    static SystemClock clock;
    static NoForms forms;
    static Ports inForce{&boxes, &clock, &forms,
                         [] {},  [] {},  [](const std::string&) { return nullptr; }};
    return inForce;
}

MsgAnswer MsgBox(const std::string& text, const std::string& title, MsgIcon icon,
                 MsgButtons buttons) {
    return MsgBox({.text = text, .title = title, .icon = icon, .buttons = buttons});
}

MsgAnswer MsgBox(const MsgRequest& request) { return ports().msgBox->show(request); }

bool confirmLoss(const std::string& question, const std::string& title,
                 const std::string& concerns) {
    return MsgBox({.text = question,
                   .title = title,
                   .icon = MsgIcon::Question,
                   .buttons = MsgButtons::YesNo,
                   .concerns = concerns,
                   .preferred = MsgAnswer::No}) == MsgAnswer::Yes;
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

MsgAnswer defaultAnswer(const MsgRequest& request) {
    return request.preferred.value_or(defaultAnswer(request.buttons));
}

}  // namespace base
