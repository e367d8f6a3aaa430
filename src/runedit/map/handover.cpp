#include "runedit/map/handover.h"

#include <chrono>
#include <functional>
#include <optional>

#include "platform/ado/recordset.h"
#include "platform/base/notcopied.h"
#include "platform/base/text.h"
#include "platform/base/wait.h"
#include "runedit/map/Set_StartorEnd.h"
#include "runedit/map/maprequest.h"
#include "runedit/map/requestline.h"
#include "runedit/map/runanswer.h"
#include "runedit/map/stopexport.h"

namespace runedit {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds Patience{3000};  // with answers to other runs

/// Takes back what a hand-over has done, the last first, unless it is kept.
class WayBack : private base::NotCopied {
public:
    ~WayBack() {
        for (; !steps_.empty(); steps_.pop_back()) {
            try {
                steps_.back()();
            } catch (const std::exception&) {
                // The first fault is the one to tell.
            }
        }
    }
    void add(std::function<void()> step) { steps_.push_back(std::move(step)); }
    void forget() { steps_.clear(); }

private:
    std::vector<std::function<void()>> steps_;
};

/// The run's stop export, made by this program and by no other.
void exportStops(const HandOver& of, WayBack& back) {
    const std::string file = of.files.stopExport(of.run.run);
    if (!files::writeNew(file, stopExportFile(of.routing, of.run.run))) {
        throw StillProcessing();
    }
    back.add([file] { files::remove(file); });
}

/// The next answer will be this run's. The one before it may be another run's, written a moment
/// ago.
void clearAnswer(const HandOver& of, WayBack& back) {
    const auto end = std::chrono::steady_clock::now() + Patience;
    base::Wait wait("Waiting until the map's answer to another run was read.");
    while (isUnreadAnswerOfAnother(of.run.run, of.files, of.routing) &&
           std::chrono::steady_clock::now() < end) {
        if (!wait.goesOn()) {
            throw base::RunTimeError(dde::errors::GivenUp,
                                     "You did not wait until the map's answer was read.");
        }
    }
    if (const auto before = of.files.contentsOf(workfile::RunDone)) {
        of.files.clear(workfile::RunDone);
        back.add([file = of.files.path(workfile::RunDone), before] {
            (void)files::writeNew(file, *before);
        });
    }
}

constexpr auto RecordSql = "SELECT StartEnd.* FROM StartEnd";

/// Puts the hand-off record back, unless another program folder's hand-over has come since.
void putRecordBack(const HandOver& of, const std::vector<base::Value>& before) {
    ado::CommitOnExit unit(of.routing);
    ado::Recordset row(RecordSql, of.routing, ado::CursorType::Dynamic);
    if (row.Eof() || !base::equalsNoCase(base::trim(row["Run"].textView()), of.run.run)) {
        return;
    }
    if (before.empty()) {
        row.Delete();
        return;
    }
    for (int i = 0; i < row.fieldCount(); ++i) {
        row.Fields(i).Value(before[static_cast<std::size_t>(i)]);
    }
    row.Update();
}

void writeRecord(const HandOver& of, WayBack& back) {
    std::vector<base::Value> before;
    {
        ado::Recordset row(RecordSql, of.routing);
        for (int i = 0; !row.Eof() && i < row.fieldCount(); ++i) {
            before.push_back(row.Fields(i).Value());
        }
    }
    back.add([&of, before] { putRecordBack(of, before); });
    Set_StartorEnd(of.routing, of.run, of.seats, "YES");
}

void putListBack(const std::string& file, const std::optional<std::string>& before) {
    if (before) {
        files::write(file, *before);
    } else {
        files::remove(file);
    }
}

void writeRequest(const HandOver& of, WayBack& back) {
    for (const auto* name : {workfile::Runs, workfile::RunsOld, workfile::RunsOrg}) {
        const std::string file = of.files.path(name);
        back.add([file, before = of.files.contentsOf(name)] { putListBack(file, before); });
    }
    writeRequestList(of.files, {lineText(requestFor(of.run, screenWord(of.screen), of.seats))});
    files::copy(of.files.path(workfile::Runs), of.files.path(workfile::RunsOrg));
}

void sendRequests(dde::Conversation& map, const HandOver& of) {
    const std::string& run = of.run.run;
    if (!base::trim(of.closedStreets).empty()) {
        map.Execute(commandText(closeStreetsRequest(of.files, of.closedStreets)));
    }
    if (of.screen == MapScreen::Run) {
        map.Execute(commandText(showMapRequest(of.files, run)));
        map.Execute(commandText(startRunRequest(of.files, run)));
    } else {
        map.Execute(commandText(solveRunRequest(of.files, run)));
    }
}

}  // namespace

StillProcessing::StillProcessing()
    : base::RunTimeError(base::errors::PermissionDenied, MapStillProcessingText) {}

std::string_view screenWord(MapScreen screen) {
    switch (screen) {
        case MapScreen::AddRun:
            return "AddRun";
        case MapScreen::GroupRunSolve:
            return "Group_Run_Solve";
        case MapScreen::Run:
            break;
    }
    return "Run";
}

void handOver(const HandOver& of) {
    if (of.files.isRunAtWork(of.run.run)) {
        throw StillProcessing();
    }
    const auto map = of.transport.open(MapService, MapTopic);
    const auto alone = of.files.lock();
    WayBack back;
    exportStops(of, back);
    clearAnswer(of, back);
    writeRecord(of, back);
    writeRequest(of, back);
    sendRequests(*map, of);
    back.forget();
}

void writeRequestList(const WorkFiles& files, const std::vector<std::string>& lines) {
    files.rotateRequests();
    std::string list;
    for (const std::string& line : lines) {
        list += line + "\n";
    }
    files::write(files.path(workfile::Runs), list);
}

}  // namespace runedit
