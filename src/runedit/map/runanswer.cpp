#include "runedit/map/runanswer.h"

#include "data/runs/runrow.h"
#include "platform/base/text.h"

namespace runedit {

namespace {

constexpr std::size_t LongestId = 100;
constexpr std::chrono::milliseconds TimeToRead{1500};

/// The first line; blank where that cannot be the id of a run.
std::string_view namedIn(std::string_view contents) {
    const auto line = base::trim(contents.substr(0, contents.find_first_of("\r\n")));
    return line.size() <= LongestId && canNameFiles(line) ? line : std::string_view{};
}

}  // namespace

RunAnswer lookForAnswer(const std::string& run, const WorkFiles& files, ado::Connection& routing) {
    const auto contents = files.contentsOf(workfile::RunDone);
    if (!contents) {
        return RunAnswer::Missing;
    }
    const auto name = namedIn(*contents);
    if (base::equalsNoCase(name, base::trim(run))) {
        return RunAnswer::ForThisRun;
    }
    return !name.empty() && data::runExists(routing, name) ? RunAnswer::ForAnotherRun
                                                           : RunAnswer::Unnamed;
}

bool isUnreadAnswerOfAnother(const std::string& run, const WorkFiles& files,
                             ado::Connection& routing) {
    return files::age(files.path(workfile::RunDone)).value_or(TimeToRead) < TimeToRead &&
           lookForAnswer(run, files, routing) == RunAnswer::ForAnotherRun;
}

}  // namespace runedit
