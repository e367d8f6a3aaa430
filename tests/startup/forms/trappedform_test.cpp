#include "startup/forms/trappedform.h"

#include <QPushButton>
#include <utility>

#include "platform/base/error.h"
#include "startup/base/mdlDBConnection.h"
#include "support/formtest.h"

namespace startup {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Action = std::function<void()>;

void fails() { base::raise(base::errors::TypeMismatch); }
void writes() { gcnRouting->Execute("UPDATE RUN SET DESCRIPTION='written' WHERE RUN='101-AM'"); }

/// A form whose procedures do what a test says.
class AnyForm : public TrappedForm {
public:
    AnyForm(AfterError after, Action load)
        : TrappedForm("AnyForm", nullptr, after), load_(std::move(load)) {
        go_.setObjectName("Go");
        go_.setParent(this);
        on(&go_, &QPushButton::clicked, "Go_Click", [this] { click(); });
    }
    Action click = [] {};
    /// Another procedure's answer, 7.
    int answer(const Action& action) {
        return trap("Inner", [&] {
            action();
            return 7;
        });
    }

protected:
    void Form_Load() override { load_(); }

private:
    QPushButton go_;
    Action load_;
};

class TrappedFormTest : public support::FormTest<> {
protected:
    AnyForm& form() override { return loaded<AnyForm>(after, load); }
    void clickDoing(Action action) {
        form().click = std::move(action);
        click("Go");
    }

    AfterError after = AfterError::ProgramEnds;
    Action load = [] {};
};

constexpr auto Reported =
    "The following error has occurred in procedure: \nGo_Click of Module: AnyForm.\n\nError (13) "
    "Type mismatch";

TEST_F(TrappedFormTest, AnErrorIsReportedAndEndsTheProgram) {
    gErrorHandling = false;
    EXPECT_THROW(form().answer(fails), base::RunTimeError);
    EXPECT_THAT(texts(), IsEmpty());
    gErrorHandling = true;
    clickDoing(fails);
    EXPECT_THAT(texts(), ElementsAre(Reported));
    EXPECT_TRUE(ending());
    EXPECT_FALSE(gcnRouting) << "the databases are closed";
    EXPECT_EQ(session.forms.unloads, 1);
}

TEST_F(TrappedFormTest, AFormThatStaysGoesOnWithTheDefaultOfWhatFailed) {
    after = AfterError::FormStays;
    EXPECT_EQ(form().answer([] {}), 7);
    EXPECT_EQ(form().answer(fails), 0);
    clickDoing(fails);
    EXPECT_THAT(texts(), ElementsAre(testing::HasSubstr("Inner of Module: AnyForm."), Reported));
    EXPECT_FALSE(ending());
    EXPECT_TRUE(gcnRouting);
}

TEST_F(TrappedFormTest, ALockIsToldAndEndsNothingWhereverItComesFrom) {
    const Action fromModule = [] { trapped("Save", "mdlAny", writes); };
    for (const bool errorHandling : {true, false}) {
        for (const auto& write : {Action(writes), fromModule}) {
            gErrorHandling = errorHandling;
            byOthers("UPDATE RUN SET DESCRIPTION='before'");
            {
                const auto held = heldByOthers();
                clickDoing(write);
            }
            EXPECT_THAT(titles(), ElementsAre("Database in Use"));
            EXPECT_FALSE(ending());
            click("Go");
            EXPECT_THAT(titles(), IsEmpty());
            EXPECT_EQ(storedRun("DESCRIPTION"), "written");
        }
    }
}

TEST_F(TrappedFormTest, AFullDiskAndAFileThatMayOnlyBeReadEndNothing) {
    const auto refusal = [&](store::Fault fault) {
        clickDoing([=] {
            trapped("Save", "mdlAny", [=] { throw store::StoreError(fault, "No room left."); });
        });
        EXPECT_FALSE(ending());
        EXPECT_THAT(lastText(), testing::HasSubstr("No room left."));
        EXPECT_THAT(lastText(), testing::EndsWith("What you have entered is not lost."));
        EXPECT_THAT(session.boxes.shown.back().details,
                    testing::StartsWith("Go_Click of Module: AnyForm.\n\nError ("));
        return lastTitle();
    };
    EXPECT_EQ(refusal(store::Fault::Full), "Disk Full");
    EXPECT_EQ(refusal(store::Fault::ReadOnly), "No Right to Write");
    EXPECT_EQ(refusal(store::Fault::Replaced), "File Replaced");
}

TEST_F(TrappedFormTest, ALockOutsideAFormIsAnErrorOfTheModule) {
    const auto held = heldByOthers();
    EXPECT_THROW(trapped("Save", "mdlAny", writes), base::EndProgram);
    EXPECT_THAT(lastText(), testing::HasSubstr("Save of Module: mdlAny."));
}

TEST_F(TrappedFormTest, AFormThatCannotBeFilledIsNotThere) {
    struct MainForm : forms::Form {
        MainForm() : Form("MainForm") {}
    };
    made<MainForm>().showForm();  // without any form the program is at its end
    load = writes;
    {
        const auto held = heldByOthers();
        EXPECT_FALSE(form().isLoaded());
    }
    EXPECT_THAT(titles(), ElementsAre("Database in Use"));
    EXPECT_FALSE(ending());
    forms::Application::instance().yield();
    EXPECT_TRUE(form().isLoaded());
}

TEST_F(TrappedFormTest, TheEndOfTheProgramPassesUnreported) {
    clickDoing([] { ShutDown(3); });
    EXPECT_TRUE(ending());
    EXPECT_EQ(forms::Application::instance().exitCode(), 3);
    EXPECT_THAT(texts(), IsEmpty());
}

}  // namespace
}  // namespace startup
