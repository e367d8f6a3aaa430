#include "runsearch/search/searchreports.h"

#include <array>

namespace runsearch {

void offerSearchReports(reports::SelectionIntake& form) {
    constexpr std::array Fields{"Run", "RunSeq", "RunSeq"};
    form.caption("Run Search Reports");
    form.area("Routing");
    form.reportGroup("RUNSEARCH");
    form.copies(1);
    for (int place = 1; const char* field : Fields) {
        form.sortField(place++, field);
    }
    for (int place = 1; place <= static_cast<int>(Fields.size()); ++place) {
        form.sortDirection(place, "ASC");
    }
    form.present();
}

}  // namespace runsearch
