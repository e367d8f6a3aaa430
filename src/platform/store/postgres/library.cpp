#include "platform/store/postgres/library.h"

#include <dlfcn.h>

#include "platform/store/base/database.h"

namespace store::postgres {

namespace {

[[noreturn]] void raiseNoLibrary() {
    throw StoreError(Fault::Unreachable,
                     "This machine cannot reach a database server: its library libpq is not "
                     "installed, or too old. Debian's package is called libpq5.");
}

template <class F>
void find(void* from, const char* name, F& function) {
    function = reinterpret_cast<F>(dlsym(from, name));
    if (function == nullptr) {
        raiseNoLibrary();
    }
}

Library load() {
    void* from = dlopen("libpq.so.5", RTLD_NOW | RTLD_LOCAL);
    if (from == nullptr) {
        raiseNoLibrary();
    }
    Library l{};
    find(from, "PQconnectdbParams", l.connect);
    find(from, "PQfinish", l.finish);
    find(from, "PQstatus", l.status);
    find(from, "PQerrorMessage", l.errorMessage);
    find(from, "PQsocket", l.socket);
    find(from, "PQsslInUse", l.sslInUse);
    find(from, "PQbackendPID", l.backendPid);
    find(from, "PQnotifies", l.notifies);
    find(from, "PQfreemem", l.freeMemory);
    find(from, "PQsendQuery", l.sendQuery);
    find(from, "PQsendQueryParams", l.sendQueryParams);
    find(from, "PQsendPrepare", l.sendPrepare);
    find(from, "PQsendQueryPrepared", l.sendQueryPrepared);
    find(from, "PQenterPipelineMode", l.enterPipelineMode);
    find(from, "PQexitPipelineMode", l.exitPipelineMode);
    find(from, "PQpipelineSync", l.pipelineSync);
    find(from, "PQconsumeInput", l.consumeInput);
    find(from, "PQisBusy", l.isBusy);
    find(from, "PQgetResult", l.getResult);
    find(from, "PQgetCancel", l.getCancel);
    find(from, "PQcancel", l.cancel);
    find(from, "PQfreeCancel", l.freeCancel);
    find(from, "PQresultStatus", l.resultStatus);
    find(from, "PQresultErrorMessage", l.resultErrorMessage);
    find(from, "PQresultErrorField", l.resultErrorField);
    find(from, "PQclear", l.clear);
    find(from, "PQntuples", l.rowCount);
    find(from, "PQnfields", l.columnCount);
    find(from, "PQftype", l.columnType);
    find(from, "PQgetvalue", l.value);
    find(from, "PQgetlength", l.length);
    find(from, "PQgetisnull", l.isNull);
    find(from, "PQcmdStatus", l.commandStatus);
    find(from, "PQcmdTuples", l.commandRows);
    find(from, "PQputCopyData", l.putCopyData);
    find(from, "PQputCopyEnd", l.putCopyEnd);
    find(from, "PQsetNoticeProcessor", l.setNoticeProcessor);
    return l;
}

}  // namespace

const Library& library() {
    static const Library one = load();
    return one;
}

}  // namespace store::postgres
