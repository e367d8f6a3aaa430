#pragma once

#include <memory>

#include <libpq-fe.h>

namespace store::postgres {

/// What the server's library offers, as far as it is used. It is loaded when the first district on
/// a server is opened, so that a machine whose districts are files needs none.
struct Library {
    decltype(&PQconnectdbParams) connect;
    decltype(&PQfinish) finish;
    decltype(&PQstatus) status;
    decltype(&PQerrorMessage) errorMessage;
    decltype(&PQsocket) socket;
    decltype(&PQsslInUse) sslInUse;
    decltype(&PQbackendPID) backendPid;
    decltype(&PQnotifies) notifies;
    decltype(&PQfreemem) freeMemory;
    decltype(&PQsendQuery) sendQuery;
    decltype(&PQsendQueryParams) sendQueryParams;
    decltype(&PQsendPrepare) sendPrepare;
    decltype(&PQsendQueryPrepared) sendQueryPrepared;
    decltype(&PQenterPipelineMode) enterPipelineMode;
    decltype(&PQexitPipelineMode) exitPipelineMode;
    decltype(&PQpipelineSync) pipelineSync;
    decltype(&PQconsumeInput) consumeInput;
    decltype(&PQisBusy) isBusy;
    decltype(&PQgetResult) getResult;
    decltype(&PQgetCancel) getCancel;
    decltype(&PQcancel) cancel;
    decltype(&PQfreeCancel) freeCancel;
    decltype(&PQresultStatus) resultStatus;
    decltype(&PQresultErrorMessage) resultErrorMessage;
    decltype(&PQresultErrorField) resultErrorField;
    decltype(&PQclear) clear;
    decltype(&PQntuples) rowCount;
    decltype(&PQnfields) columnCount;
    decltype(&PQftype) columnType;
    decltype(&PQgetvalue) value;
    decltype(&PQgetlength) length;
    decltype(&PQgetisnull) isNull;
    decltype(&PQcmdStatus) commandStatus;
    decltype(&PQcmdTuples) commandRows;
    decltype(&PQputCopyData) putCopyData;
    decltype(&PQputCopyEnd) putCopyEnd;
    decltype(&PQsetNoticeProcessor) setNoticeProcessor;
};

/// The library, loaded once. Raises StoreError where it is not installed.
[[nodiscard]] const Library& library();

struct Clear {
    void operator()(PGresult* result) const { library().clear(result); }
};
/// What the server answered to one command; null where the connection was lost before.
using Result = std::unique_ptr<PGresult, Clear>;

}  // namespace store::postgres
