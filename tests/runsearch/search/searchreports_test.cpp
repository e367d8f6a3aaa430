#include "runsearch/search/searchreports.h"

#include <gmock/gmock.h>

#include "runsearch/search/searchwords.h"

namespace runsearch {
namespace {

using testing::ElementsAre;

class RecordedIntake : public reports::SelectionIntake {
public:
    void caption(const std::string& text) override { handed.push_back("caption " + text); }
    void area(const std::string& name) override { handed.push_back("area " + name); }
    void reportGroup(const std::string& group) override { handed.push_back("group " + group); }
    void copies(int count) override { handed.push_back(std::to_string(count)); }
    void sortField(int place, const std::string& field) override {
        handed.push_back(std::to_string(place) + " " + field);
    }
    void sortDirection(int place, const std::string& direction) override {
        sortField(place, direction);
    }
    void present() override { handed.emplace_back("shown"); }

    std::vector<std::string> handed;
};

TEST(SearchReports, HandTheSelectionItsValuesInTheirOrder) {
    RecordedIntake form;
    offerSearchReports(form);
    EXPECT_THAT(form.handed,
                ElementsAre("caption Run Search Reports", "area Routing", "group RUNSEARCH", "1",
                            "1 Run", "2 RunSeq", "3 RunSeq", "1 ASC", "2 ASC", "3 ASC", "shown"));
}

TEST(SearchWords, SayWhatWasLookedFor) {
    RunSearchCriteria criteria;
    EXPECT_EQ(inWords(criteria), "all runs");
    criteria.runId = " 10 ";
    criteria.schools = {{"CBMS", "MS", true, "Clear Brook"}, {"NFES", ""}, {"MLES", "ES", true}};
    criteria.tripTypes = {"AM"};
    criteria.startTime.from = base::Date::timeOfDay(7, 0);
    criteria.startTime.to = base::Date::timeOfDay(12, 5);
    criteria.bellTime.to = base::Date::timeOfDay(8, 30);
    criteria.needsResolve = criteria.notOnRoute = true;
    EXPECT_EQ(inWords(criteria),
              "run 10…; Clear Brook or MLES; trip type AM; start from 7:00 AM to 12:05 PM; bell at "
              "8:30 AM or earlier; on no route; to be resolved on the map");
    criteria = {};
    criteria.schools.assign(4, {"S", "HS", true});
    criteria.searchSchoolStops = true;
    EXPECT_EQ(inWords(criteria), "stopping at 4 schools");
}

}  // namespace
}  // namespace runsearch
