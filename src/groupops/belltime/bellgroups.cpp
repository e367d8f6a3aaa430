#include "groupops/belltime/bellgroups.h"

#include "platform/ado/recordset.h"
#include "platform/base/wait.h"
#include "startup/base/mdlNONULL.h"

namespace groupops {

namespace {

std::string bellText(const base::Value& bellTime) {
    return bellTime.isNull() ? " " : bellTime.asText();
}

/// The runs of the query in the order of the groups: school, bell time and run of each.
template <class Take>
void forEachRun(ado::Connection& routing, const std::string& runsSql, Take take) {
    ado::Recordset runs(runsSql + " ORDER BY RUN.SCHOOL, RUN.BELLTIME", routing);
    const ado::Field& school = runs["SCHOOL"];
    const ado::Field& bell = runs["BELLTIME"];
    const ado::Field& run = runs["RUN"];
    for (base::Breath breath; !runs.Eof(); runs.MoveNext()) {
        breath.take();
        take(startup::NoNullString(school.Value()).asText(), bell.Value(), run);
    }
}

}  // namespace

void BellGroups::add(std::string_view school, const base::Value& bellTime, std::string_view run) {
    const std::string bell = bellText(bellTime);
    if (count_ == 0 || groups_[count_].school != school || groups_[count_].bellTime != bell) {
        BellGroup& begun = groups_[count_ + 1];
        begun.school = school;
        begun.bellTime = bell;
        ++count_;
    }
    BellGroup& group = groups_[count_];
    group.runs[group.runCount + 1] = run;
    ++group.runCount;
}

BellExtent bellExtent(ado::Connection& routing, const std::string& runsSql) {
    BellExtent extent;
    BellCrowd group;
    forEachRun(routing, runsSql,
               [&](const std::string& school, const base::Value& bellTime, const ado::Field&) {
                   const std::string bell = bellText(bellTime);
                   if (group.runs == 0 || group.school != school || group.bellTime != bell) {
                       group = {school, bell};
                       ++extent.groups;
                   }
                   ++group.runs;
                   const bool same = extent.crowd && extent.crowd->school == school &&
                                     extent.crowd->bellTime == bell;
                   if (same || (!extent.crowd && group.runs > BellGroup::MaxRuns)) {
                       extent.crowd = group;
                   }
               });
    return extent;
}

void readBellGroups(ado::Connection& routing, const std::string& runsSql, BellGroups& groups) {
    forEachRun(routing, runsSql,
               [&](const std::string& school, const base::Value& bellTime, const ado::Field& run) {
                   groups.add(school, bellTime, run.asText());
               });
}

}  // namespace groupops
