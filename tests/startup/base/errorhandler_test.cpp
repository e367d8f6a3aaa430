#include <filesystem>
#include <string>

#include <fmt/format.h>
#include <gmock/gmock.h>

#include "platform/ado/connection.h"
#include "platform/store/base/database.h"
#include "platform/store/open/open.h"
#include "startup/base/applicationinfo.h"
#include "startup/base/cErrorHandler.h"
#include "startup/base/mdlFileUtilities.h"
#include "startup/base/trap.h"
#include "support/errors.h"
#include "support/rows.h"
#include "support/testsession.h"

namespace {

using startup::cErrorHandler;
using support::contentsOf;
using support::errorOf;

class ErrorHandler : public testing::Test {
protected:
    void SetUp() override { handler_.Destination(log_); }

    void handle(int number, const std::string& text) {
        try {
            throw base::RunTimeError(number, text);
        } catch (const base::RunTimeError&) {
            handler_.HandleError();
        }
    }
    [[nodiscard]] std::string trace() const {
        return contentsOf(session_.programFolder.path() + "/trace.log");
    }

    support::TestSession session_;
    support::TemporaryFolder folder_;
    const std::string log_ = folder_.path() + "/Error.txt";
    cErrorHandler handler_;
};

TEST_F(ErrorHandler, WritesTheLogToTheLetter) {
    handler_.CurrentOperation("cmdSearch_Click of Module: frmTarn.");
    handle(-2147217900, "Syntax error");
    const startup::ApplicationInfo& app = startup::applicationInfo();
    EXPECT_EQ(contentsOf(log_),
              fmt::format("Vireo Routing - Tarn Application Error Information\n"
                          "====================================\n"
                          "Current Time   : 1/31/2026 8:05:09 AM\n"
                          "Error String   : Syntax error\n"
                          "Error Number   : -2147217900\n"
                          "Error Line     : 0\n"
                          "Error Procedure: \n"
                          "\n"
                          "Procedure Stack\n"
                          "---------------\n"
                          "\n"
                          "Current Operation: cmdSearch_Click of Module: frmTarn.\n"
                          "\n"
                          "Additional Information\n"
                          "----------------------\n"
                          "Current Directory: {}\n"
                          "App Title: Tarn\n"
                          "App CompanyName: Vireo\n"
                          "App Major: {}\n"
                          "App Minor: {}\n"
                          "App Revision: {}\n"
                          "App Path: {}\n"
                          "App ProductName: Vireo Routing\n"
                          "User: {}\n",
                          std::filesystem::current_path().string(), app.major, app.minor,
                          app.revision, app.path, startup::userAndComputer()));
}

TEST_F(ErrorHandler, KeepsOnlyTheLatestErrorAndEndsAfterTheStackWithoutExpandedInfo) {
    folder_.write("error.TXT", "an older one");
    handler_.IncludeExpandedInfo(false);
    handle(9, std::string(300, 'x'));
    handle(13, std::string(300, 'y'));
    const std::string text = contentsOf(log_);
    EXPECT_TRUE(text.ends_with("---------------\n\n"));
    EXPECT_NE(text.find("Error String   : " + std::string(255, 'y') + "\n"), std::string::npos);
    EXPECT_EQ(text.find('x'), std::string::npos);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder_.path()), {}), 1);
}

TEST_F(ErrorHandler, ShowsTheMessageUnlessToldNotTo) {
    handler_.CurrentOperation("Main of Module: RunStartup.");
    handle(53, "File not found");
    handler_.DisplayMsgOnError(false);
    handle(53, "File not found");
    ASSERT_EQ(session_.boxes.shown.size(), 1U);
    const base::MsgRequest box = session_.boxes.shown[0];
    EXPECT_EQ(box.text,
              "The following error has occurred in procedure: \nMain of Module: RunStartup.\n\n"
              "Error (53) File not found");
    EXPECT_EQ(box.title, "Vireo Routing - Tarn");
    EXPECT_EQ(box.icon, base::MsgIcon::Critical);
    EXPECT_THAT(box.plainWords, testing::StartsWith("Oops, a file that the program needs is not"));
    EXPECT_THAT(box.plainWords, testing::EndsWith("The program will now end."));
    handler_.DisplayMsgOnError(true);
    handler_.Destination(folder_.path() + "missing/Error.txt");
    handle(53, "File not found");
    EXPECT_EQ(session_.boxes.shown.size(), 2U) << "a log that cannot be written";
}

TEST_F(ErrorHandler, ReportsErrorsOfTheLibraryUnderNumbersOfTheRunTime) {
    startup::gErrorHandling = true;
    startup::gErrHandler = std::make_unique<cErrorHandler>();
    startup::gErrHandler->Destination(log_);
    const auto reported = [&](const auto& fails) {
        EXPECT_THROW(startup::trapped("A", "B", fails), base::EndProgram);
        return session_.boxes.shown.back().text;
    };
    EXPECT_THAT(reported([] { throw std::bad_alloc(); }),
                testing::EndsWith("A of Module: B.\n\nError (7) Out of memory"));
    EXPECT_THAT(reported([] { throw std::logic_error("odd"); }),
                testing::EndsWith("Error (51) Internal error: odd"));
    ado::Connection closed;
    const auto sql = "SELECT * FROM RUN WHERE RUN='" + std::string(3000, 'x') + "'";
    EXPECT_THAT(reported([&] { closed.Execute(sql); }),
                testing::EndsWith("A of Module: B.\n\nError (3704) The connection is closed."));
    EXPECT_THAT(session_.boxes.shown.back().details,
                testing::AllOf(testing::HasSubstr("Statement: SELECT * FROM RUN WHERE RUN='xx"),
                               testing::EndsWith("x … (3030 bytes in all)")));
    startup::gErrorHandling = false;
    EXPECT_THROW(startup::trapped("A", "B", [] { throw std::bad_alloc(); }), std::bad_alloc);
    EXPECT_EQ(session_.boxes.shown.size(), 3U);
}

TEST_F(ErrorHandler, AListenerCanCancelTheReport) {
    std::string order;
    handler_.beforeReport = [&](bool& cancel) {
        order += "before ";
        cancel = true;
    };
    handler_.afterReport = [&] { order += "after"; };
    handle(53, "File not found");
    EXPECT_EQ(order, "before after");
    EXPECT_TRUE(session_.boxes.shown.empty());
    EXPECT_FALSE(std::filesystem::exists(log_));
}

TEST_F(ErrorHandler, ShowsTheStackWithItsDepthAndNamesItsTop) {
    handler_.IncludeExpandedInfo(false);
    handler_.Push("Outer");
    handler_.Push("Gone");
    handler_.Pop();
    handler_.Push("Inner");
    handle(6, "Overflow");
    const std::string text = contentsOf(log_);
    EXPECT_NE(text.find("Error Procedure: Inner\n"), std::string::npos);
    EXPECT_NE(text.find("---------------\n01  Outer\n02    Inner\n\n"), std::string::npos);
    EXPECT_EQ(trace(), "Outer\nGone\nInner\n");
    handler_.TraceExecution(false);
    handler_.Push("Untraced");
    EXPECT_EQ(trace(), "Outer\nGone\nInner\n");
    handler_.TraceExecution(true);
    EXPECT_EQ(trace(), "");
}

TEST_F(ErrorHandler, ThePushPastTheCapacityFails) {
    for (int depth = 1; depth <= 100; ++depth) {
        handler_.Push("P");
    }
    EXPECT_EQ(errorOf([&] { return handler_.Push("P"), 0; }), base::errors::SubscriptOutOfRange);
    for (int depth = 0; depth < 110; ++depth) {
        handler_.Pop();
    }
    handler_.Push("Lost");
    handle(6, "Overflow");
    EXPECT_NE(contentsOf(log_).find("01  Lost\n"), std::string::npos);
    handler_.MaxProcStackItems(1);
    handler_.Push("First");
    EXPECT_EQ(errorOf([&] { return handler_.Push("Second"), 0; }),
              base::errors::SubscriptOutOfRange);
    EXPECT_EQ(errorOf([&] { return handler_.MaxProcStackItems(-3), 0; }),
              base::errors::SubscriptOutOfRange);
    EXPECT_EQ(errorOf([&] { return handler_.MaxProcStackItems(32766), 0; }),
              base::errors::Overflow);
    handle(6, "Overflow");
    EXPECT_EQ(contentsOf(log_).find("Lost"), std::string::npos);
}

TEST_F(ErrorHandler, RefusesAnyOtherDestination) {
    const std::pair<base::Value, const char*> others[] = {
        {12, "3"}, {{}, "1"}, {true, "11"}, {base::Date{}, "7"}};
    for (const auto& other : others) {
        const base::Value& value = other.first;
        EXPECT_THAT([&] { handler_.Destination(value); },
                    testing::ThrowsMessage<base::RunTimeError>(
                        std::string("Invalid object type: ") + other.second));
        EXPECT_EQ(errorOf([&] { return handler_.Destination(value), 0; }),
                  static_cast<int>(0x800403E8U));
    }
    EXPECT_EQ(std::get<std::string>(handler_.Destination()), log_);
}

TEST_F(ErrorHandler, ClearLogDeletesTheFileAndNamesATableThatIsNotSet) {
    handle(6, "Overflow");
    handler_.ClearLog();
    EXPECT_FALSE(std::filesystem::exists(log_));
    handler_.ClearLog();
    handler_.Destination(static_cast<ado::Recordset*>(nullptr));
    handle(6, "Overflow");
    EXPECT_EQ(session_.boxes.shown.size(), 2U);
    EXPECT_THAT([&] { handler_.ClearLog(); },
                testing::ThrowsMessage<base::RunTimeError>(
                    "Error handler cannot write to the [Errors] errors table because the "
                    "Destination recordset \nvariable has not been initialized."));
}

class ErrorsTable : public ErrorHandler {
protected:
    void SetUp() override {
        using enum store::ColumnKind;
        const std::string file = folder_.path() + "errors.mdb";
        store::createFile(file)->create({.name = "Errors",
                                         .columns = {{"ID", Counter, false},
                                                     {"ErrorDate", Date},
                                                     {"ErrorString", Text},
                                                     {"ErrorNumber", Integer},
                                                     {"ErrorLine", Integer},
                                                     {"ErrorProc", Text},
                                                     {"CallStack", Text},
                                                     {"AdditionalInfo", Text}},
                                         .key = {"ID"}});
        connection_.Open(file);
        table_.Open("SELECT * FROM Errors", connection_, ado::CursorType::Dynamic);
        handler_.Destination(&table_);
    }

    ado::Connection connection_;
    ado::Recordset table_;
};

TEST_F(ErrorsTable, GetsARowForEachErrorAndIsCleared) {
    handler_.CurrentOperation("A of Module: B.");
    handler_.Push("Outer");
    handle(6, "Overflow");
    handle(13, "Type mismatch");
    EXPECT_THAT(
        support::rowsOf("SELECT ErrorDate, ErrorString, ErrorNumber, ErrorLine, ErrorProc, "
                        "CallStack, Left(AdditionalInfo, 24) AS More FROM Errors ORDER BY ID",
                        connection_),
        testing::ElementsAre("1/31/2026 8:05:09 AM|Overflow|6|0|Outer|01  Outer\nCurrent "
                             "Operation: A of Module: B.\n|\nAdditional Information\n",
                             testing::HasSubstr("|Type mismatch|13|")));
    table_.Close();
    table_.Open("SELECT * FROM Errors", connection_, ado::CursorType::Dynamic);
    handler_.ClearLog();
    EXPECT_THAT(support::rowsOf("SELECT ID FROM Errors", connection_), testing::IsEmpty());
}

}  // namespace
