#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// The system's print service. It may take long to answer, or never do: call it from a thread of
/// its own.
namespace printing {

/// A file to be printed as it is.
struct PrintJob {
    std::string printer;
    std::string title;  ///< as the queue shows it
    std::string file;
    std::vector<std::pair<std::string, std::string>> options;  ///< "copies", "page-ranges", "sides"
};

/// What the print service answers.
struct Service {
    /// The names of the printers; nothing where there is no print service or it does not answer.
    std::function<std::optional<std::vector<std::string>>()> printers;
    /// Hands a file over; when it returns the service has it. Empty, or the service's own words for
    /// what went wrong.
    std::function<std::string(const PrintJob&)> print;
};

/// The system's own, unless another one was put into its place, for tests; an empty one brings it
/// back.
[[nodiscard]] Service service();
void setService(Service service);

}  // namespace printing
