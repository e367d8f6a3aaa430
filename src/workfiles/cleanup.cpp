#include "workfiles/cleanup.h"

#include <algorithm>
#include <utility>

#include "platform/base/ports.h"
#include "platform/files/files.h"
#include "platform/table/itemtable.h"
#include "runedit/map/requestline.h"

namespace workfiles {

namespace {

const char* wordFor(FileState state) {
    switch (state) {
        case FileState::There:
            return "there";
        case FileState::Deleted:
            return "deleted";
        case FileState::Held:
            return "in use";
        case FileState::Missing:
            break;
    }
    return "not there";
}

}  // namespace

CleanUp::CleanUp(runedit::WorkFiles files, LogLine log)
    : files_(std::move(files)), log_(std::move(log)) {}

void CleanUp::logWithTime(const std::string& text) const {
    log_(text + ".  The time is: " + base::Now().text());
}

void CleanUp::look() {
    readRuns([](const std::string&) {});
    forEachFile([](RunFile& file, const std::string& path) {
        file.state = files::exists(path) ? FileState::There : FileState::Missing;
    });
}

void CleanUp::deleteFiles() {
    const auto alone = files_.lock();
    logWithTime("In DelWrkFiles - about to open runs.txt");
    readRuns([this](const std::string& line) { logWithTime(line); });
    forEachFile([this](RunFile& file, const std::string& path) {
        logWithTime("In DelWrkFiles - about to delete file: " + file.name);
        if (!files::exists(path)) {
            return;
        }
        const bool deleted = files::removeUnheld(path);
        file.state = deleted ? FileState::Deleted : FileState::Held;
        logWithTime((deleted ? "In DelWrkFiles - successfully able to delete file: "
                             : "In DelWrkFiles - unable to delete file: ") +
                    file.name);
    });
}

bool CleanUp::retry() {
    const auto alone = files_.lock();
    forEachFile([](RunFile& file, const std::string& path) {
        if (files::exists(path)) {
            file.state = files::removeUnheld(path) ? FileState::Deleted : FileState::Held;
        } else if (file.state != FileState::Deleted) {
            file.state = FileState::Missing;
        }
    });
    if (heldFiles() > 0) {
        return false;
    }
    return !isListStillThere() || files::removeUnheld(files_.path(runedit::workfile::Runs));
}

bool CleanUp::isListStillThere() const {
    return files_.contentsOf(runedit::workfile::Runs) == list_;
}

int CleanUp::heldFiles() const {
    return static_cast<int>(std::ranges::count(runFiles_, FileState::Held, &RunFile::state));
}

void CleanUp::readRuns(const LogLine& log) {
    runCount_ = 0;
    runFiles_.clear();
    list_ = files_.contentsOf(runedit::workfile::Runs).value_or("");
    for (const std::string_view line : runedit::linesOf(list_)) {
        const std::string run(runedit::runOfLine(line));
        runs_[runCount_++] = run;
        log("In DelWrkFiles - Just read a line in Runs.txt ging the RunID of:" + run);
    }
    for (int i = 0; i < runCount_; ++i) {
        for (const auto* ending : runedit::RunFileEndings) {
            runFiles_.push_back({runs_[i], runs_[i] + ending});
        }
    }
}

/// A run whose name would lead out of the program folder has no files there.
void CleanUp::forEachFile(const std::function<void(RunFile&, const std::string& path)>& task) {
    for (RunFile& file : runFiles_) {
        if (runedit::canNameFiles(file.run)) {
            task(file, files_.path(file.name));
        }
    }
}

table::TextTable tableOf(const std::vector<RunFile>& files) {
    auto table = table::tableOf<RunFile>(
        files, {{"Run", 1950, &RunFile::run},
                {"Work File", 3300, &RunFile::name},
                {"State", 1350, [](const RunFile& file) { return wordFor(file.state); }}});
    for (std::size_t row = 0; row < files.size(); ++row) {
        if (files[row].state == FileState::Held) {
            table.colourRed(row, 2, 2);
        }
    }
    return table;
}

}  // namespace workfiles
