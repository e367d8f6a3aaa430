#pragma once

#include <memory>
#include <optional>
#include <string>

#include "platform/forms/operation.h"
#include "reports/catalog/preparation.h"
#include "reports/formats/export.h"

namespace forms {
struct PrintChoice;
}

namespace reports {

class SavedFileBar;

/// What a form makes of a report: each step is a long operation of the form, shown and stopped on
/// its panel.
class ReportOutput {
public:
    ReportOutput(forms::Form& form, forms::OperationPanel panel, SavedFileBar* saved = nullptr);

    /// The report in the work tables. Null where the planner stopped, or where no run is left to be
    /// shown, which is told. Raises what the preparation raises.
    [[nodiscard]] std::shared_ptr<Prepared> prepare(const Request& request) const;

    /// Asks for a file in the report folder and writes it; what failed is told.
    void exportFile(Prepared& prepared, Format format) const;

    /// Asks for a printer and hands it the pages as they would be exported. Where there is no
    /// printer, or the print service does not answer, a file is offered instead. `pages` is 0 where
    /// nobody knows yet.
    void print(Prepared& prepared, const Request& request, int copies, int pages) const;

private:
    [[nodiscard]] MapsOfRuns mapsFor(const Request& request) const;
    /// False where it was stopped or failed, which is told.
    [[nodiscard]] bool write(Prepared& prepared, Format format, const std::string& path) const;
    void save(Prepared& prepared, Format format, const QString& path) const;
    [[nodiscard]] std::optional<std::string> whyNoPrinter() const;
    void offerFile(Prepared& prepared, const std::string& why) const;
    void send(Prepared& prepared, const std::string& title, const forms::PrintChoice& choice) const;

    forms::Form& form_;
    forms::OperationPanel panel_;
    SavedFileBar* saved_;
};

/// How far an operation is, and whether it goes on.
[[nodiscard]] KeepGoing keepGoing(forms::Form::Operation& operation);

}  // namespace reports
