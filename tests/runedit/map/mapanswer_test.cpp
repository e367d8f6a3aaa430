#include "runedit/map/mapanswer.h"

#include <QTest>

#include "fakemap.h"
#include "mapsession.h"
#include "platform/forms/application.h"
#include "runedit/map/requestline.h"

namespace {

using runedit::MapAnswer;
using runedit::MapScreen;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

class MapAnswerTest : public MapSession {
protected:
    MapAnswerTest() {
        forms::Application::instance().startAfresh();
        forms::Timer::setSpeed(200);
    }
    ~MapAnswerTest() override { forms::Timer::setSpeed(1); }

    /// Everything that the answer signals, in order.
    std::unique_ptr<MapAnswer> waiting(MapScreen screen) {
        auto answer = std::make_unique<MapAnswer>(screen, nullptr);
        const auto keep = [this](const char* event) { return [this, event] { note(event); }; };
        QObject::connect(answer.get(), &MapAnswer::status,
                         [this](const QString& text) { note(text.toStdString()); });
        QObject::connect(answer.get(), &MapAnswer::reload, keep("<reload>"));
        QObject::connect(answer.get(), &MapAnswer::lists, keep("<lists>"));
        answer->start("101-AM");
        return answer;
    }
    void note(const std::string& event) { events.push_back(event); }

    std::vector<std::string> log() const {
        const auto text = file("log.txt");
        std::vector<std::string> lines;
        for (const auto line : runedit::linesOf(text)) {
            lines.emplace_back(line.substr(0, line.find('\t')));
        }
        return lines;
    }

    FakeMap map;
    std::vector<std::string> events;
};

TEST_F(MapAnswerTest, GoesFromWaitingThroughTheCountdownToTheLists) {
    startup::TotSavedRuns = 3;
    const auto answer = waiting(MapScreen::Run);
    QTest::qWait(50);
    EXPECT_THAT(events, ElementsAre("Waiting for updated information from mapping software."));
    write("RUNDONE.TXT", "\xFF\x00 no text");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !answer->isWaiting(); }));

    std::vector<std::string> expected{"Waiting for updated information from mapping software."};
    for (int seconds = 10; seconds > 0; --seconds) {
        expected.push_back("Processing Map Results..." + std::to_string(seconds) +
                           " seconds remaining");
    }
    for (const auto* event :
         {"Run Not Saved.", "<reload>", "Information Received from Mapping Software.", "<lists>"}) {
        expected.push_back(event);
    }
    EXPECT_THAT(events, ElementsAreArray(expected));
    const std::vector<std::string> logged{
        "In Tarn, in Timer1 Rundone.txt found so Timer1 code will continue after 10 second pause. ",
        "In Tarn, in Timer1 code will now continue... ",
        "In Tarn, in Timer2 about to do Command1_Click ",
        "In Tarn, in Timer2 performed Command1_Click and about to see if Build_StopList should be "
        "run.  TotSavedRuns: 3",
        "In Tarn, in Timer2 after Build_StopList ",
        "In Tarn, in Timer2 after Build_WarnList ",
        "In Tarn, in Timer2 after Build_DirList ",
        "In Tarn, in Timer2 after Build_SpecialNeedsList "};
    EXPECT_EQ(log(), logged);

    const auto group = waiting(MapScreen::GroupRunSolve);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !group->isWaiting(); }));
    EXPECT_EQ(log()[10], "In Tarn, in Timer2 about to do Command1_Click ");
    EXPECT_EQ(log()[11],
              "In Group_Run_Solve, in Timer2 performed Command1_Click and about to see "
              "if Build_StopList should be run.  TotSavedRuns: 3");
}

TEST_F(MapAnswerTest, CountsWhenItIsNotAnothersAndTheRunsFileIsFree) {
    write("101-AM.dbf", "");
    write("RunDone.txt", "102-AM\n");
    const auto answer = waiting(MapScreen::Run);
    QTest::qWait(60);
    write("RunDone.txt", "101-am\r\n");
    ASSERT_TRUE(QTest::qWaitFor([this] { return events.size() == 2; }));
    EXPECT_THAT(events.back(), testing::HasSubstr("has answered, but still holds"));
    write("RunDone.txt", "102-AM\n");
    files::remove(district.progPath() + "101-AM.dbf");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !answer->isWaiting(); }));
    EXPECT_EQ(events.back(), "<lists>");
}

TEST_F(MapAnswerTest, IsNotWaitedForWithoutEnd) {
    write("RunDone.txt", "102-AM\n");
    const auto answer = waiting(MapScreen::Run);
    ASSERT_TRUE(QTest::qWaitFor([&] { return !answer->isWaiting(); }));
    EXPECT_THAT(events.back(), testing::StartsWith("The mapping software has ended without an"));
    EXPECT_EQ(storedRun("REGENERATE"), "True");
    EXPECT_THAT(log(), IsEmpty());

    write("RunDone.txt", "101-AM\n");
    sql("DELETE FROM RUN WHERE RUN = '101-AM'");
    answer->start("101-AM");
    ASSERT_TRUE(QTest::qWaitFor([&] { return !answer->isWaiting(); }));
    EXPECT_EQ(events.back(), "The run was deleted while it was with the mapping software.");
}

TEST_F(MapAnswerTest, StoppedInTheCountdownNothingFollows) {
    const auto answer = waiting(MapScreen::Run);
    write("RunDone.txt", "");
    ASSERT_TRUE(QTest::qWaitFor([this] { return events.size() >= 3; }));
    answer->stop();
    events.clear();
    QTest::qWait(150);
    EXPECT_THAT(events, IsEmpty());
}

}  // namespace
