#include "runedit/times/storedstoptimes.h"

#include <cmath>
#include <limits>
#include <optional>

#include <fmt/format.h>

#include "platform/ado/sqltext.h"
#include "platform/base/error.h"
#include "platform/base/text.h"

namespace runedit {

namespace {

constexpr int MaxRetries = 3;
constexpr auto RetryText =
    "In Tarn, in Calc_Times received the 'Record Already Deleted Error' trying again to update "
    "record this is the {} attempt.";

std::optional<float> minutesOf(const ado::Field& field) {
    if (field.isNull()) {
        return std::nullopt;
    }
    const double minutes = field.asNumber();
    if (std::abs(minutes) > static_cast<double>(std::numeric_limits<float>::max())) {
        base::raise(base::errors::Overflow);
    }
    return static_cast<float>(minutes);
}

/// A column that not every district's file has.
const ado::Field* findField(ado::Recordset& rows, std::string_view name) {
    for (int i = 0; i < rows.fieldCount(); ++i) {
        if (base::equalsNoCase(rows.Fields(i).Name(), name)) {
            return &rows.Fields(i);
        }
    }
    return nullptr;
}

void updateOrRetry(ado::Recordset& rows, const LogLine& log) {
    for (int retry = 1;; ++retry) {
        try {
            rows.Update();
            return;
        } catch (const base::RunTimeError& error) {
            if (error.number() != ado::errors::RecordDeleted || retry > MaxRetries) {
                throw;
            }
        }
        log(fmt::format(RetryText, retry));
    }
}

/// One way along the run; nothing where `timesOf` finds no stop to start from.
template <class TimesOf>
std::optional<StopTimes> pass(const StoredStops& stops, TimeOrder order, const LogLine& log,
                              TimesOf timesOf) {
    ado::Recordset rows(stopRowsSql(stops.rows, order, stops.run), stops.connection,
                        ado::CursorType::Dynamic);
    std::optional<StopTimes> times = timesOf(readStops(rows));
    if (times) {
        writeStops(rows, times->writes, log);
    }
    return times;
}

base::Date passFromEnd(const StoredStops& stops, TimeOrder order, base::Date anchor,
                       const LogLine& log) {
    const auto times = pass(stops, order, log,
                            [&](const std::vector<TimedStop>& read) -> std::optional<StopTimes> {
                                return timesFrom(read, order, anchor);
                            });
    return times->last;
}

base::Date passesFromMiddle(const StoredStops& stops, std::string& mode, base::Date& anchor,
                            const LogLine& log) {
    const auto forwards =
        pass(stops, TimeOrder::Forwards, log,
             [&](const std::vector<TimedStop>& read) { return timesFromMiddle(read, anchor); });
    if (!forwards) {
        return anchor;
    }
    mode = "End";
    anchor = forwards->last;
    return passFromEnd(stops, TimeOrder::Backwards, anchor, log);
}

base::Date passes(const StoredStops& stops, std::string& mode, base::Date& anchor,
                  const LogLine& log) {
    if (base::equalsNoCase(mode, "Start")) {
        return passFromEnd(stops, TimeOrder::Forwards, anchor, log);
    }
    if (base::equalsNoCase(mode, "End")) {
        return passFromEnd(stops, TimeOrder::Backwards, anchor, log);
    }
    if (base::equalsNoCase(mode, "MID")) {
        return passesFromMiddle(stops, mode, anchor, log);
    }
    base::raise(base::errors::InvalidProcedureCall);
}

}  // namespace

std::string stopRowsSql(StopTable rows, TimeOrder order, std::string_view run) {
    const std::string_view descending = order == TimeOrder::Backwards ? " DESC" : "";
    if (rows == StopTable::Working) {
        return fmt::format(
            "Select * from Temp_Stop_TripType where Temp_Stop_TripType.StopType<>'DIRECTIONAL'"
            " ORDER By Temp_Stop_TripType.RUNSEQ{}",
            descending);
    }
    return fmt::format(
        "SELECT STOP.*, STOP_TRIPTYPE.* FROM STOP"
        " INNER JOIN STOP_TRIPTYPE ON STOP.INT_STOPID = STOP_TRIPTYPE.INT_STOPID"
        " WHERE STOP.STOPTYPE<>'DIRECTIONAL' AND STOP_TRIPTYPE.RUN='{}'"
        " ORDER BY STOP_TRIPTYPE.RUNSEQ{}",
        ado::escaped(base::trim(run)), descending);
}

std::vector<TimedStop> readStops(ado::Recordset& rows) {
    const ado::Field& stopId = rows["StopID"];
    const ado::Field& load = rows["Load_Time"];
    const ado::Field& drive = rows["time_tostop"];
    const ado::Field& time = rows["Time_At_Stop"];
    const ado::Field* updatesTime = findField(rows, "UPDATE_TIME");
    std::vector<TimedStop> stops;
    for (; !rows.Eof(); rows.MoveNext()) {
        stops.push_back({stopId.isNull() ? std::nullopt : std::optional(stopId.asText()),
                         minutesOf(load), minutesOf(drive),
                         time.isNull() ? base::Date() : time.Value().asDate(),
                         updatesTime == nullptr || updatesTime->asBoolean()});
    }
    return stops;
}

void writeStops(ado::Recordset& rows, const std::vector<StopWrite>& writes, const LogLine& log) {
    if (writes.empty()) {
        return;
    }
    rows.MoveFirst();
    std::size_t at = 0;
    for (const StopWrite& write : writes) {
        for (; at < write.stop; ++at) {
            rows.MoveNext();
        }
        if (write.clearsMinutes) {
            rows["Load_Time"].Value(0);
            rows["time_tostop"].Value(0);
        }
        if (write.time) {
            rows["Time_At_Stop"].Value(*write.time);
        }
        updateOrRetry(rows, log);
    }
}

base::Date timeStoredStops(const StoredStops& stops, std::string& mode, base::Date& anchor,
                           const LogLine& log) {
    const auto first = base::equalsNoCase(mode, "End") ? TimeOrder::Backwards : TimeOrder::Forwards;
    ado::CommitOnExit unit(stops.connection, {.reads = {stopRowsSql(stops.rows, first, stops.run)},
                                              .writesTogether = true});
    const base::Date last = passes(stops, mode, anchor, log);
    unit.commit();
    return last;
}

}  // namespace runedit
