#include "startup/base/cErrorHandler.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <limits>
#include <new>

#include <fmt/format.h>

#include "platform/base/error.h"
#include "platform/base/ports.h"
#include "platform/base/text.h"
#include "platform/files/files.h"
#include "startup/base/applicationinfo.h"
#include "startup/base/mdlFileUtilities.h"
#include "startup/base/plainwords.h"

namespace startup {

namespace {

constexpr std::size_t LoggedCharacters = 255;
constexpr const char* ErrorsTable = "Errors";
constexpr auto ProgramEnds = "The program will now end.";

int typeNumber(const base::Value& value) {
    enum { Null = 1, Long = 3, Double = 5, Date = 7, String = 8, Boolean = 11, LongLong = 20 };
    if (value.isNull()) {
        return Null;
    }
    if (value.isInteger()) {
        const std::int64_t number = value.asInteger();
        return number == static_cast<std::int32_t>(number) ? Long : LongLong;
    }
    return value.isDouble() ? Double : value.isDate() ? Date : value.isYesNo() ? Boolean : String;
}

[[noreturn]] void raiseUninitialised() {
    throw base::RunTimeError(
        base::errors::ObjectNotSet,
        fmt::format("Error handler cannot write to the [{}] errors table because the Destination "
                    "recordset \nvariable has not been initialized.",
                    ErrorsTable));
}

std::string loggedString(const std::string& description) {
    return std::string(base::firstCharacters(description, LoggedCharacters));
}

}  // namespace

CurrentError currentError() {
    if (!std::current_exception()) {
        return {};
    }
    try {
        throw;
    } catch (const base::RunTimeError& error) {
        return {error.number(), 0, error.description(), error.statement()};
    } catch (const std::bad_alloc&) {
        return {base::errors::OutOfMemory, 0, "Out of memory"};
    } catch (const std::exception& error) {
        return {base::errors::InternalError, 0, fmt::format("Internal error: {}", error.what())};
    } catch (...) {
        return {base::errors::InternalError, 0, "Internal error"};
    }
}

std::string statementDetail(const CurrentError& error) {
    return error.statement.empty() ? std::string()
                                   : fmt::format("\n\nStatement: {}", error.statement);
}

cErrorHandler::cErrorHandler()
    : traceFilePath_(applicationInfo().path + files::Separator + "trace.log") {
    MaxProcStackItems(maxProcStackItems_);
    TraceExecution(traceExecution_);
}

void cErrorHandler::Destination(const base::Value& file) {
    if (!file.isText()) {
        throw base::RunTimeError(InvalidObjectType,
                                 fmt::format("Invalid object type: {}", typeNumber(file)));
    }
    destination_ = file.heldText();
}

void cErrorHandler::Destination(ado::Recordset* table) { destination_ = table; }

const std::variant<std::string, ado::Recordset*>& cErrorHandler::Destination() const {
    return destination_;
}

void cErrorHandler::MaxProcStackItems(std::int16_t count) {
    if (count > std::numeric_limits<std::int16_t>::max() - 2) {
        base::raise(base::errors::Overflow);
    }
    if (count < -2) {
        base::raise(base::errors::SubscriptOutOfRange);
    }
    maxProcStackItems_ = count;
    procedureStack_.assign(static_cast<std::size_t>(count) + 3, {});
    stackDepth_ = 0;
}

void cErrorHandler::TraceExecution(bool trace) {
    traceExecution_ = trace;
    traceFile_.close();
    traceFile_.clear();
    if (trace) {
        files::remove(traceFilePath_);
        traceFile_.open(traceFilePath_, std::ios::binary | std::ios::trunc);
    }
}

void cErrorHandler::ClearLog() {
    if (const auto* path = std::get_if<std::string>(&destination_)) {
        files::remove(*path);
        return;
    }
    ado::Recordset* table = std::get<ado::Recordset*>(destination_);
    if (table == nullptr) {
        raiseUninitialised();
    }
    if (table->RecordCount() == 0) {
        return;
    }
    for (table->MoveFirst(); !table->Eof(); table->MoveNext()) {
        table->Delete();
    }
}

void cErrorHandler::HandleError() {
    error_ = currentError();
    errorProcedure_ = topOfStack();
    if (title_.empty()) {
        title_ = "Vireo Routing - " + applicationInfo().title;
    }
    bool isCancelled = false;
    if (beforeReport) {
        beforeReport(isCancelled);
    }
    if (!isCancelled) {
        writeDestination();
        if (displayMsgOnError_) {
            showMessage();
        }
    }
    if (afterReport) {
        afterReport();
    }
}

void cErrorHandler::Push(std::string_view procedure) {
    ++stackDepth_;
    // Past the capacity the index lies beyond the array's end on purpose: too deep a nesting fails.
    const int index = stackDepth_ <= maxProcStackItems_ ? stackDepth_ : stackDepth_ + 2;
    if (index >= static_cast<int>(procedureStack_.size())) {
        base::raise(base::errors::SubscriptOutOfRange);
    }
    procedureStack_[static_cast<std::size_t>(index)] = procedure;
    if (traceExecution_) {
        traceFile_ << procedure << '\n' << std::flush;
    }
}

void cErrorHandler::Pop() {
    if (stackDepth_ <= maxProcStackItems_) {
        procedureStack_[static_cast<std::size_t>(stackDepth_)].clear();
    }
    stackDepth_ = std::max<std::int16_t>(static_cast<std::int16_t>(stackDepth_ - 1), 0);
}

std::string cErrorHandler::topOfStack() const {
    const auto top = static_cast<std::size_t>(stackDepth_);
    return top < procedureStack_.size() ? procedureStack_[top] : std::string();
}

std::string cErrorHandler::stackText() const {
    const auto used = std::min(static_cast<std::size_t>(stackDepth_) + 1, procedureStack_.size());
    std::string text;
    for (std::size_t index = 0; index < used; ++index) {
        if (!procedureStack_[index].empty()) {
            text += fmt::format("{:02}{:{}}{}\n", index, "", index * 2, procedureStack_[index]);
        }
    }
    return text;
}

std::string cErrorHandler::operationText() const {
    return currentOperation_.empty() ? std::string()
                                     : "Current Operation: " + currentOperation_ + "\n";
}

std::string cErrorHandler::expandedInfo() const {
    if (!includeExpandedInfo_) {
        return {};
    }
    const ApplicationInfo& app = applicationInfo();
    std::error_code error;
    return fmt::format(
        "\nAdditional Information\n----------------------\nCurrent Directory: {}\nApp Title: {}\n"
        "App CompanyName: {}\nApp Major: {}\nApp Minor: {}\nApp Revision: {}\nApp Path: {}\n"
        "App ProductName: {}\nUser: {}\n",
        std::filesystem::current_path(error).string(), app.title, app.companyName, app.major,
        app.minor, app.revision, app.path, app.productName, userAndComputer());
}

// An error on the way to the log must not hide the one that is being reported.
void cErrorHandler::writeDestination() {
    try {
        if (const auto* path = std::get_if<std::string>(&destination_)) {
            writeFile(*path);
        } else {
            writeTable(std::get<ado::Recordset*>(destination_));
        }
    } catch (const std::exception& error) {
        // No error of its own where standard error is a file on the same full disk.
        std::fputs(fmt::format("{}: {}\n", title_, error.what()).c_str(), stderr);
    }
}

void cErrorHandler::writeFile(const std::string& path) const {
    files::remove(path);
    std::ofstream file(path, std::ios::binary | std::ios::app);
    file << fmt::format(
        "{} Application Error Information\n====================================\n"
        "Current Time   : {}\nError String   : {}\nError Number   : {}\nError Line     : {}\n"
        "Error Procedure: {}\n\nProcedure Stack\n---------------\n{}\n{}{}",
        title_, base::Now().text(), loggedString(error_.description), error_.number, error_.line,
        errorProcedure_, stackText(), operationText(), expandedInfo());
    if (!file.flush()) {
        throw base::RunTimeError(base::errors::PathFileAccess, "Path/File access error: " + path);
    }
}

void cErrorHandler::writeTable(ado::Recordset* table) const {
    if (table == nullptr) {
        raiseUninitialised();
    }
    ado::Recordset& row = *table;
    row.AddNew();
    row["ErrorDate"].Value(base::Now());
    row["ErrorString"].Value(error_.description);
    row["ErrorNumber"].Value(error_.number);
    row["ErrorLine"].Value(error_.line);
    row["ErrorProc"].Value(errorProcedure_);
    row["CallStack"].Value(stackText() + operationText());
    row["AdditionalInfo"].Value(expandedInfo());
    row.Update();
}

void cErrorHandler::showMessage() const {
    base::ports().beep();
    const std::string words = plainWordsFor(error_.number, error_.description).text;
    base::MsgBox({.text = fmt::format("The following error has occurred in procedure: "
                                      "\n{}\n\nError ({}) {}",
                                      currentOperation_, error_.number, error_.description),
                  .title = title_,
                  .icon = base::MsgIcon::Critical,
                  .details = fmt::format("{}, {}{}", base::Now().text(), userAndComputer(),
                                         statementDetail(error_)),
                  .plainWords = endsProgram_ ? words + "\n\n" + ProgramEnds : words});
}

}  // namespace startup
