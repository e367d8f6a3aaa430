#include "support/privateserver.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <thread>

#include <fmt/format.h>

namespace support {

PrivateServer* PrivateServer::find() {
    static const std::unique_ptr<PrivateServer> one(new PrivateServer);
    return one->isReady_ ? one.get() : nullptr;
}

PrivateServer::PrivateServer()
    : life_(popen(
          ("exec " VIREO_SOURCE_DIR "/tests/support/private-server " + folder_.path()).c_str(),
          "we")) {
    const std::string state = folder_.path() + "state";
    while (contentsOf(state).empty()) {
        std::this_thread::sleep_for(std::chrono::milliseconds{20});
    }
    isReady_ = contentsOf(state) == "ready\n";
}

PrivateServer::~PrivateServer() { pclose(life_); }

std::string PrivateServer::newPlace() {
    std::string host;
    for (const char c : folder_.path().substr(0, folder_.path().size() - 1)) {
        host += c == '/' ? "%2F" : std::string(1, c);
    }
    const std::string name = fmt::format("one{}", ++places_);
    static_cast<void>(tell("postgres", "CREATE DATABASE " + name));
    return fmt::format("postgresql://vireo@{}/{}/", host, name);
}

std::string PrivateServer::tell(const std::string& database, const std::string& sql) const {
    const std::string script = folder_.write("tell.sql", sql);
    const std::string command =
        fmt::format("psql -qAtX -h {} -U vireo -d '{}' -f {}", folder_.path(), database, script);
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> output(popen(command.c_str(), "re"),
                                                                 pclose);
    char line[256] = {};
    const std::string text = std::fgets(line, sizeof line, output.get()) == nullptr ? "" : line;
    return text.substr(0, text.find('\n'));
}

}  // namespace support
