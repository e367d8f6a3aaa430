// slowline FROM TO MILLISECONDS: hands on what comes to the socket TO from the socket FROM and
// back, each way so much later. It ends when nobody holds its standard input any more.

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <iostream>
#include <list>
#include <string>
#include <vector>

#include <poll.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;

sockaddr_un addressOf(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    return address;
}

/// What is on its way from one socket to another.
struct Way {
    struct Part {
        Clock::time_point due;
        std::string bytes;
    };
    int from;
    int to;
    std::deque<Part> parts = {};

    /// Takes in what has come; false at its end.
    bool take(Clock::duration delay) {
        std::vector<char> bytes(1U << 16U);
        const auto count = read(from, bytes.data(), bytes.size());
        if (count > 0) {
            parts.push_back(
                {Clock::now() + delay, {bytes.data(), static_cast<std::size_t>(count)}});
        }
        return count > 0;
    }
    void handOn() {
        for (; !parts.empty() && parts.front().due <= Clock::now(); parts.pop_front()) {
            const std::string& bytes = parts.front().bytes;
            for (std::size_t sent = 0; sent < bytes.size();) {
                const auto count = send(to, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
                if (count <= 0) {
                    return parts.clear();
                }
                sent += static_cast<std::size_t>(count);
            }
        }
    }
};

/// A connection of a program with the server.
struct Line {
    Way there;
    Way back;
    bool isOver = false;
};

class SlowLine {
public:
    SlowLine(std::string server, const std::string& own, Clock::duration delay)
        : server_(std::move(server)), delay_(delay), door_(socket(AF_UNIX, SOCK_STREAM, 0)) {
        const sockaddr_un address = addressOf(own);
        if (bind(door_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0 ||
            listen(door_, 20) != 0) {
            throw std::runtime_error(own + ": " + std::strerror(errno));
        }
    }

    void serve() {
        prctl(PR_SET_TIMERSLACK, 1);  // a nanosecond: a tenth of a millisecond counts here
        while (turn()) {
        }
    }

private:
    void open() {
        const int program = accept(door_, nullptr, nullptr);
        const int server = socket(AF_UNIX, SOCK_STREAM, 0);
        const sockaddr_un address = addressOf(server_);
        if (connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
            close(program);
            close(server);
            return;
        }
        lines_.push_back({{program, server}, {server, program}});
    }

    /// Until the first part is due; null where none is on its way.
    const timespec* untilDue(timespec& wait) const {
        auto due = Clock::time_point::max();
        for (const Line& line : lines_) {
            for (const Way* way : {&line.there, &line.back}) {
                due = way->parts.empty() ? due : std::min(due, way->parts.front().due);
            }
        }
        if (due == Clock::time_point::max()) {
            return nullptr;
        }
        const auto rest = std::max(due - Clock::now(), Clock::duration::zero());
        wait = {0, std::chrono::duration_cast<std::chrono::nanoseconds>(rest).count()};
        return &wait;
    }

    bool turn() {
        std::vector<pollfd> watched{{STDIN_FILENO, POLLIN, 0}, {door_, POLLIN, 0}};
        for (const Line& line : lines_) {
            watched.push_back({line.there.from, POLLIN, 0});
            watched.push_back({line.back.from, POLLIN, 0});
        }
        timespec wait{};
        ppoll(watched.data(), watched.size(), untilDue(wait), nullptr);
        auto place = watched.begin() + 2;
        for (Line& line : lines_) {
            for (Way* way : {&line.there, &line.back}) {
                const bool hasCome = (place++)->revents != 0;
                line.isOver = (hasCome && !way->take(delay_)) || line.isOver;
                way->handOn();
            }
        }
        endLines();
        if (watched[1].revents != 0) {
            open();
        }
        return watched[0].revents == 0;
    }

    void endLines() {
        lines_.remove_if([](const Line& line) {
            if (line.isOver) {
                close(line.there.from);
                close(line.there.to);
            }
            return line.isOver;
        });
    }

    std::string server_;
    Clock::duration delay_;
    int door_;
    std::list<Line> lines_;
};

}  // namespace

int main(int argc, char** argv) {
    try {
        const std::vector<std::string> arguments(argv + 1, argv + argc);
        const std::chrono::duration<double, std::milli> delay(std::stod(arguments.at(2)));
        SlowLine(arguments[0], arguments[1], std::chrono::duration_cast<Clock::duration>(delay))
            .serve();
        return 0;
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
