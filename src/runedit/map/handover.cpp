#include "runedit/map/handover.h"

#include <array>
#include <optional>

#include "platform/base/text.h"
#include "platform/files/files.h"
#include "runedit/map/Set_StartorEnd.h"
#include "runedit/map/maprequest.h"
#include "runedit/map/requestline.h"
#include "runedit/map/stopexport.h"

namespace runedit {

namespace {

/// The request lists as they were; put back unless the hand-over is kept.
class RequestListsBefore {
public:
    explicit RequestListsBefore(const WorkFiles& files) : files_(files) {
        for (std::size_t i = 0; i < Names.size(); ++i) {
            const std::string file = files.path(Names[i]);
            contents_[i] = files::exists(file) ? std::optional(files::read(file)) : std::nullopt;
        }
    }
    RequestListsBefore(const RequestListsBefore&) = delete;
    RequestListsBefore& operator=(const RequestListsBefore&) = delete;
    ~RequestListsBefore() {
        for (std::size_t i = 0; !kept_ && i < Names.size(); ++i) {
            putBack(files_.path(Names[i]), contents_[i]);
        }
    }
    void keep() { kept_ = true; }

private:
    static constexpr std::array Names{workfile::Runs, workfile::RunsOld, workfile::RunsOrg};

    static void putBack(const std::string& file, const std::optional<std::string>& contents) {
        try {
            if (contents) {
                files::write(file, *contents);
            } else {
                files::remove(file);
            }
        } catch (const base::RunTimeError&) {
            // The first fault is the one to tell.
        }
    }

    const WorkFiles& files_;
    std::array<std::optional<std::string>, Names.size()> contents_;
    bool kept_ = false;
};

/// The run's stop export, made by this program and by no other; deleted unless it is kept.
class StopExportFile {
public:
    StopExportFile(std::string path, const std::string& contents) : path_(std::move(path)) {
        if (!files::writeNew(path_, contents)) {
            throw StillProcessing();
        }
    }
    StopExportFile(const StopExportFile&) = delete;
    StopExportFile& operator=(const StopExportFile&) = delete;
    ~StopExportFile() {
        if (!kept_) {
            files::remove(path_);
        }
    }
    void keep() { kept_ = true; }

private:
    std::string path_;
    bool kept_ = false;
};

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
    StopExportFile stops(of.files.stopExport(of.run.run),
                         dbf::bytesOf(readStopExport(of.routing, of.run.run)));
    RequestListsBefore lists(of.files);
    of.files.clear(workfile::RunDone);
    Set_StartorEnd(of.routing, of.run, of.seats, "YES");
    writeRequestList(of.files, {lineText(requestFor(of.run, screenWord(of.screen), of.seats))});
    files::copy(of.files.path(workfile::Runs), of.files.path(workfile::RunsOrg));
    sendRequests(*map, of);
    lists.keep();
    stops.keep();
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
