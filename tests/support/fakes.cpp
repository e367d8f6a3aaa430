#include "support/fakes.h"

#include <algorithm>

#include "platform/base/error.h"

namespace support {

FakeBoxes::FakeBoxes() : before_(base::ports().msgBox) { base::ports().msgBox = this; }

FakeBoxes::~FakeBoxes() { base::ports().msgBox = before_; }

base::MsgAnswer FakeBoxes::show(const base::MsgRequest& request) {
    shown.push_back(request);
    shown.back().text = request.plainText();
    if (answers.empty()) {
        return base::defaultAnswer(request);
    }
    const base::MsgAnswer answer = answers.front();
    answers.pop_front();
    return answer;
}

FakeClock::FakeClock() : before_(base::ports().clock) { base::ports().clock = this; }

FakeClock::~FakeClock() { base::ports().clock = before_; }

FakeForms::FakeForms() : before_(base::ports().forms) { base::ports().forms = this; }

FakeForms::~FakeForms() { base::ports().forms = before_; }

void FakeProcesses::start(const std::string& program, const std::vector<std::string>& arguments) {
    std::string words = program;
    for (const std::string& argument : arguments) {
        words += " " + argument;
    }
    started.push_back(words);
    if (failure != 0) {
        base::raise(failure);
    }
}

bool FakeProcesses::isRunning(const std::string& name) {
    return std::find(running.begin(), running.end(), name) != running.end();
}

}  // namespace support
