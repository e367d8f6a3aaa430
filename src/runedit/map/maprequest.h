#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "runedit/map/workfiles.h"

namespace runedit {

/// A request to the map program: one of its scripts with arguments, which are texts or yes/no.
struct MapRequest {
    using Argument = std::variant<std::string, bool>;

    std::string script = {};
    std::vector<Argument> arguments = {};

    friend bool operator==(const MapRequest&, const MapRequest&) = default;
};

/// `av.Run("SolveRun", {"runstop.avl", True})`; a quote inside a text is doubled.
[[nodiscard]] std::string commandText(const MapRequest& request);
/// Reads such a text; nothing for any other.
[[nodiscard]] std::optional<MapRequest> requestInCommand(std::string_view command);

/// The map programs' scripts and what each is told. `closedStreets` is the district's own file.
[[nodiscard]] MapRequest closeStreetsRequest(const WorkFiles& files,
                                             const std::string& closedStreets);
[[nodiscard]] MapRequest showMapRequest(const WorkFiles& files, const std::string& run);
[[nodiscard]] MapRequest startRunRequest(const WorkFiles& files, const std::string& run);
[[nodiscard]] MapRequest solveRunRequest(const WorkFiles& files, const std::string& run);

}  // namespace runedit
