#include "runedit/editor/fieldcheck.h"

#include <gmock/gmock.h>

namespace runedit {

namespace {

using testing::ElementsAre;

/// Texts that pass every check.
RunTexts goodTexts() {
    RunTexts texts = textsOfNewRun();
    texts[RunField::RunId] = "104-AM";
    texts[RunField::School] = "OAK";
    texts[RunField::BellTime] = "08:00 AM";
    texts[RunField::StartTime] = "07:05 AM";
    texts[RunField::EndTime] = "07:45 AM";
    return texts;
}

/// A district that knows the run 101-AM and one key of each kind; notes what was asked.
struct Keys {
    std::vector<std::string> asked;

    KeyQuestions questions() {
        const auto knows = [this](std::string known) {
            return [this, known = std::move(known)](const std::string& key) -> std::string {
                asked.push_back(key);
                return key == known ? "Description of " + key : "NOT FOUND";
            };
        };
        return {knows("101-AM"), knows("REG"),   knows("OAK"),
                knows("AM"),     knows("NORTH"), knows("LARGE")};
    }
};

struct Refusal {
    RunField field;
    std::string text;
    int code;
    std::string title;
    std::string message;
};

const std::string TimeAdvice =
    ".  Please reenter the time, making sure to include the ':' to seperate the hour from minutes "
    "(hh:mm:ss AM format).";
const std::string IllegalCharacter =
    "Oops, you have entered a RunID using one of the following characters: (#, %, *, /, \\\\, \", "
    "') these are not allowed.  Please change your Run ID.";

const std::vector<Refusal> Refusals = {
    {RunField::RunId, "  ", 1, "Blank RunID", "Oops, you have not entered a RunID.  Please do so."},
    {RunField::RunId, "104\"AM", 7, "Illegal Character in the RUNID", IllegalCharacter},
    {RunField::RunId, "'; DELETE", 7, "Illegal Character in the RUNID", IllegalCharacter},
    {RunField::RunId, " 101-AM ", 2, "Conflicting RunID",
     "Oops, you have entered a RunID that is already being used by another run.  The description "
     "of the other conflicting run is: Description of 101-AM.  Please change the RunID."},
    {RunField::RunFamily, "X", 3, "Invalid Run Family ID",
     "Oops, you have entered a Run Family ID that is not in the list.  Please do so."},
    {RunField::School, "X", 4, "Invalid School",
     "Oops, you have entered a School that is not in the list.  Please do so."},
    {RunField::TripType, "X", 5, "Invalid Trip Type",
     "Oops, you have entered a Trip Type that is not in the list.  Please do so."},
    {RunField::LocCode, "X", 6, "Invalid Location",
     "Oops, you have entered a Location that is not in the list.  Please do so."},
    {RunField::VehType, "X", 7, "Invalid Vehicle Type",
     "Oops, you have entered a Vehicle Type that is not in the list.  Please do so."},
    {RunField::BellTime, "", 8, "Invalid Bell Time",
     "Oops, you have entered an Invalid Bell Time" + TimeAdvice},
    {RunField::StartTime, "soon", 8, "Invalid Start Time",
     "Oops, you have entered an Invalid Start Time" + TimeAdvice},
    {RunField::EndTime, "25:00", 8, "Invalid End Time",
     "Oops, you have entered an Invalid End Time" + TimeAdvice},
    {RunField::OverFill, "-1", 9, "Invalid Over Fill",
     "Oops, you have entered an Over Fill that is not a number of seats.  Please enter a whole "
     "number from 0 to 999."},
    {RunField::RunId, std::string(31, '7'), 10, "Run ID Too Long",
     "Oops, the Run ID may not be longer than 30 characters.  Please shorten it."},
    {RunField::Description, std::string(256, 'x'), 10, "Description Too Long",
     "Oops, the Description may not be longer than 255 characters.  Please shorten it."},
};

TEST(FieldCheck, RefusesEachFieldInItsOwnWords) {
    Keys keys;
    ASSERT_EQ(findFault(goodTexts(), true, keys.questions()), std::nullopt);
    for (const auto& refusal : Refusals) {
        RunTexts texts = goodTexts();
        texts[refusal.field] = refusal.text;
        const auto fault = findFault(texts, true, keys.questions());
        ASSERT_TRUE(fault) << refusal.title << ": " << refusal.text;
        EXPECT_EQ(fault->field, refusal.field) << refusal.text;
        EXPECT_EQ(fault->code, refusal.code) << refusal.text;
        EXPECT_EQ(fault->title, refusal.title);
        EXPECT_EQ(fault->text, refusal.message);
    }
}

TEST(FieldCheck, TellsTheFirstFaultOnly) {
    // Each refusal's text is put in and stays while the ones before it are mended.
    RunTexts texts = goodTexts();
    std::vector<RunField> order;
    for (const auto field :
         {RunField::RunId, RunField::RunFamily, RunField::School, RunField::TripType,
          RunField::LocCode, RunField::VehType, RunField::BellTime, RunField::StartTime,
          RunField::EndTime, RunField::OverFill}) {
        order.push_back(field);
        texts[field] = field == RunField::RunId ? "" : "?";
    }
    Keys keys;
    std::vector<RunField> refused;
    while (const auto fault = findFault(texts, true, keys.questions())) {
        refused.push_back(fault->field);
        texts[fault->field] = goodTexts()[fault->field];
    }
    EXPECT_EQ(refused, order);
}

TEST(FieldCheck, AsksForTrimmedKeys) {
    Keys keys;
    RunTexts texts = goodTexts();
    texts[RunField::School] = " OAK ";
    texts[RunField::VehType] = " O'BRIEN ";
    EXPECT_EQ(findFault(texts, false, keys.questions())->field, RunField::VehType);
    EXPECT_THAT(keys.asked, ElementsAre("OAK", "O'BRIEN"));
}

TEST(FieldCheck, LeavesTheKeyOfAStoredRunAlone) {
    Keys keys;
    RunTexts texts = goodTexts();
    for (const auto* id : {"101-AM", "ST MARY'S", "an id that is longer than a new one may be"}) {
        texts[RunField::RunId] = id;
        EXPECT_EQ(findFault(texts, false, keys.questions()), std::nullopt) << id;
    }
}

TEST(FieldCheck, NeedsForTheCalculationTheAnchorAndNoBell) {
    RunTexts texts = textsOfNewRun();
    const auto refused = [&] {
        const auto fault = findTimeFault(texts);
        return fault ? fault->title : "";
    };
    EXPECT_EQ(refused(), "Invalid Start Time");
    texts[RunField::StartTime] = "705";
    EXPECT_EQ(refused(), "");
    texts[RunField::BellTime] = "noon";
    EXPECT_EQ(refused(), "Invalid Bell Time");
    texts[RunField::TimeToUse] = "End Time";
    EXPECT_EQ(refused(), "Invalid End Time");
}

}  // namespace

}  // namespace runedit
