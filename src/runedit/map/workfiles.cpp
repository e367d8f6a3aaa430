#include "runedit/map/workfiles.h"

#include <algorithm>

#include "platform/base/error.h"
#include "platform/base/text.h"

namespace runedit {

WorkFiles::WorkFiles(std::string_view programFolder) : folder_(base::trim(programFolder)) {}

files::FolderLock WorkFiles::lock() const {
    return files::FolderLock(folder_, std::chrono::seconds(10));
}

std::optional<std::string> WorkFiles::contentsOf(std::string_view name) const {
    try {
        return files::read(path(name));
    } catch (const base::RunTimeError& error) {
        if (error.number() == base::errors::FileNotFound) {
            return std::nullopt;
        }
        throw;
    }
}

std::string WorkFiles::ofRun(std::string_view run, std::string_view ending) const {
    if (!canNameFiles(run)) {
        throw base::RunTimeError(base::errors::PathFileAccess,
                                 "Path/File access error: the run \"" + std::string(run) +
                                     "\" cannot go to the map, because files cannot be named "
                                     "after it.");
    }
    return path(std::string(base::trim(run)) + std::string(ending));
}

std::string WorkFiles::stopExport(std::string_view run) const {
    return ofRun(run, RunFileEndings.front());
}

bool WorkFiles::isRunAtWork(std::string_view run) const {
    return canNameFiles(run) && files::exists(stopExport(run));
}

bool WorkFiles::deleteRun(std::string_view run) const {
    bool allGone = true;
    for (const auto* ending : RunFileEndings) {
        const std::string file = ofRun(run, ending);
        allGone = (!files::exists(file) || files::removeUnheld(file)) && allGone;
    }
    return allGone;
}

void WorkFiles::rotateRequests() const {
    if (files::exists(path(workfile::Runs))) {
        files::copy(path(workfile::Runs), path(workfile::RunsOld));
        clear(workfile::Runs);
    }
}

void WorkFiles::clear(std::string_view name) const {
    const std::string file = path(name);
    if (!files::remove(file) && files::exists(file)) {
        throw base::RunTimeError(base::errors::PathFileAccess,
                                 "Path/File access error: " + file + " cannot be deleted.");
    }
}

bool canNameFiles(std::string_view run) {
    return std::ranges::none_of(run, [](char c) {
        return c == '/' || c == '|' || static_cast<unsigned char>(c) < ' ' || c == '\x7F';
    });
}

}  // namespace runedit
