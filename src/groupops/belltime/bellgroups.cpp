#include "groupops/belltime/bellgroups.h"

#include "platform/ado/recordset.h"
#include "startup/base/mdlNONULL.h"

namespace groupops {

void BellGroups::add(std::string_view school, const base::Value& bellTime, std::string_view run) {
    const std::string bell = bellTime.isNull() ? " " : bellTime.asText();
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

void readBellGroups(ado::Connection& routing, const std::string& runsSql, BellGroups& groups) {
    ado::Recordset runs;
    runs.Open(runsSql + " ORDER BY RUN.SCHOOL, RUN.BELLTIME", routing);
    for (; !runs.Eof(); runs.MoveNext()) {
        groups.add(startup::NoNullString(runs["SCHOOL"].Value()).asText(), runs["BELLTIME"].Value(),
                   runs["RUN"].asText());
    }
    runs.Close();
}

}  // namespace groupops
