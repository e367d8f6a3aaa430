#include "runedit/map/maprequest.h"

#include <utility>

#include "platform/base/text.h"

namespace runedit {

namespace {

constexpr std::string_view Opening = "av.Run(";
constexpr std::string_view True = "True";
constexpr std::string_view False = "False";
constexpr char Quote = '"';

std::string inQuotes(std::string_view text) {
    std::string result(1, Quote);
    for (const char c : text) {
        result.append(c == Quote ? 2 : 1, c);
    }
    return result + Quote;
}

std::string argumentText(const MapRequest::Argument& argument) {
    const auto* text = std::get_if<std::string>(&argument);
    return text != nullptr ? inQuotes(*text) : std::string(std::get<bool>(argument) ? True : False);
}

/// Reads a command from left to right; every step says whether it found what it looks for.
class CommandReader {
public:
    explicit CommandReader(std::string_view text) : rest_(text) {}

    bool token(std::string_view expected) {
        skipBlanks();
        if (!rest_.starts_with(expected)) {
            return false;
        }
        rest_.remove_prefix(expected.size());
        return true;
    }

    bool text(std::string& result) {
        if (!token("\"")) {
            return false;
        }
        for (;;) {
            const auto end = rest_.find(Quote);
            if (end == std::string_view::npos) {
                return false;
            }
            result += rest_.substr(0, end);
            rest_.remove_prefix(end + 1);
            if (!rest_.starts_with(Quote)) {
                return true;
            }
            result += Quote;
            rest_.remove_prefix(1);
        }
    }

    bool argument(MapRequest& request) {
        if (token(True) || token("true")) {
            request.arguments.emplace_back(true);
            return true;
        }
        if (token(False) || token("false")) {
            request.arguments.emplace_back(false);
            return true;
        }
        std::string value;
        const bool found = text(value);
        request.arguments.emplace_back(std::move(value));
        return found;
    }

    bool arguments(MapRequest& request) {
        if (!token("{")) {
            return false;
        }
        if (token("}")) {
            return true;
        }
        do {
            if (!argument(request)) {
                return false;
            }
        } while (token(","));
        return token("}");
    }

    bool end() {
        skipBlanks();
        return rest_.empty();
    }

private:
    void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(' '), rest_.size())); }

    std::string_view rest_;
};

}  // namespace

std::string commandText(const MapRequest& request) {
    return std::string(Opening) + inQuotes(request.script) + ", {" +
           base::joined(request.arguments, ", ", argumentText) + "})";
}

std::optional<MapRequest> requestInCommand(std::string_view command) {
    CommandReader reader(command);
    MapRequest request;
    const bool isRequest = reader.token(Opening) && reader.text(request.script) &&
                           reader.token(",") && reader.arguments(request) && reader.token(")") &&
                           reader.end();
    return isRequest ? std::optional(std::move(request)) : std::nullopt;
}

MapRequest closeStreetsRequest(const WorkFiles& files, const std::string& closedStreets) {
    return {"CloseStreets", {true, files.path(workfile::ClosedStreets), closedStreets}};
}

MapRequest showMapRequest(const WorkFiles& files, const std::string& run) {
    return {"ShowMap", {files.path(workfile::RunStops), files.path(workfile::RunRoute), run}};
}

MapRequest startRunRequest(const WorkFiles& files, const std::string& run) {
    return {"StartRun",
            {files.path(workfile::RunStops), files.path(workfile::RunRoute), files.stopExport(run),
             run}};
}

MapRequest solveRunRequest(const WorkFiles& files, const std::string& run) {
    return {"SolveRun", {files.path(workfile::RunStops), run}};
}

}  // namespace runedit
