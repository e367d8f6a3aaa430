#pragma once

#include <cstdint>
#include <fstream>
#include <functional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "platform/ado/recordset.h"
#include "platform/base/value.h"

namespace startup {

/// The run-time error that is being handled: number, line (0, lines are not numbered), description.
struct CurrentError {
    int number = 0;
    int line = 0;
    std::string description;
    std::string statement = {};  ///< the SQL that raised it; "" for any other error
};

/// "\n\nStatement: …" for the details of a message; "" where no statement raised the error.
[[nodiscard]] std::string statementDetail(const CurrentError& error);

/// Reads the exception that is being handled; all zero and empty where there is none.
[[nodiscard]] CurrentError currentError();

/// Reports run-time errors: an error log (a file that holds the latest error only, or the rows of
/// an errors table), a message box, a procedure stack and a trace of the procedures pushed.
class cErrorHandler {
public:
    /// Error of setting Destination to something else: vbObjectError + 1000.
    static constexpr int InvalidObjectType = -2147220504;

    cErrorHandler();

    /// A file's path; any other value raises InvalidObjectType, "Invalid object type: " and the
    /// number of its type.
    void Destination(const base::Value& file);
    /// An errors table; the recordset must outlive its use here. Null stands for one that has not
    /// been initialised.
    void Destination(ado::Recordset* table);
    [[nodiscard]] const std::variant<std::string, ado::Recordset*>& Destination() const;

    void DisplayMsgOnError(bool show) { displayMsgOnError_ = show; }
    [[nodiscard]] bool DisplayMsgOnError() const { return displayMsgOnError_; }
    void IncludeExpandedInfo(bool include) { includeExpandedInfo_ = include; }
    [[nodiscard]] bool IncludeExpandedInfo() const { return includeExpandedInfo_; }
    /// Empties the stack and gives it room for indices 0 to `count` + 2.
    void MaxProcStackItems(std::int16_t count);
    [[nodiscard]] std::int16_t MaxProcStackItems() const { return maxProcStackItems_; }
    /// Starts a new trace file in the program's own folder.
    void TraceExecution(bool trace);
    [[nodiscard]] bool TraceExecution() const { return traceExecution_; }
    void Title(const std::string& title) { title_ = title; }
    [[nodiscard]] const std::string& Title() const { return title_; }
    void CurrentOperation(const std::string& operation) { currentOperation_ = operation; }
    [[nodiscard]] const std::string& CurrentOperation() const { return currentOperation_; }

    /// What the message box says of what follows: the program ends (as at first), or goes on.
    void endsProgram(bool ends) { endsProgram_ = ends; }

    /// Deletes the log file, or the rows of the errors table.
    void ClearLog();
    /// Reports the run-time error that is being handled. The message box shows plain words first
    /// and folds away the text that names procedure and number.
    void HandleError();
    /// Raises "Subscript out of range" (9) past the stack's capacity.
    void Push(std::string_view procedure);
    void Pop();

    /// Raised before a report; setting `cancel` leaves the report out.
    std::function<void(bool& cancel)> beforeReport;
    /// Raised after a report, and after one that was cancelled.
    std::function<void()> afterReport;

private:
    [[nodiscard]] std::string topOfStack() const;
    [[nodiscard]] std::string stackText() const;
    [[nodiscard]] std::string operationText() const;
    [[nodiscard]] std::string expandedInfo() const;
    void writeDestination();
    void writeFile(const std::string& path) const;
    void writeTable(ado::Recordset* table) const;
    void showMessage() const;

    std::int16_t maxProcStackItems_ = 100;
    bool includeExpandedInfo_ = true;
    bool displayMsgOnError_ = true;
    bool endsProgram_ = true;
    CurrentError error_;
    std::string errorProcedure_;
    std::string title_;
    std::variant<std::string, ado::Recordset*> destination_ = std::string("C:\\ERRORS.TXT");
    std::string currentOperation_;
    bool traceExecution_ = true;
    std::vector<std::string> procedureStack_;
    std::int16_t stackDepth_ = 0;
    std::string traceFilePath_;
    std::ofstream traceFile_;
};

}  // namespace startup
