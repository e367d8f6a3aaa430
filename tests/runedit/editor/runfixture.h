#pragma once

#include "runedit/editor/Run.h"
#include "startup/base/session.h"
#include "support/formtest.h"

/// The real run editor on the small district. The run 101-AM has 2 minutes of loading at S3 and 10
/// minutes of driving to S1.
class RunTest : public support::FormTest<> {
protected:
    struct Form : runedit::Run {
        using Run::Form_Activate;
    };

    RunTest() {
        for (const auto* change :
             {"UPDATE STOP_TRIPTYPE SET LOAD_TIME=2, NUM_STUDENTS=50 WHERE RUN='101-AM' AND "
              "RUNSEQ=1",
              "UPDATE STOP_TRIPTYPE SET LOAD_TIME=0, TIME_TOSTOP=10 WHERE RUN='101-AM' AND "
              "RUNSEQ=2",
              "UPDATE STOP SET XPOS=1, YPOS=1", "UPDATE District SET CHECKRUNNUMPASS=1",
              "UPDATE RUN SET VEHTYPE='SMALL', PICKUP=1, CREATEDBY='BO' WHERE RUN='101-AM'"}) {
            byOthers(change);
        }
        startup::gCommandLine = "ANN";
    }
    Form& form() override { return made<Form>(); }

    /// Opens a run, or a new one for "", out of a list where one is given.
    Form& open(const std::string& run = "101-AM", runedit::RunSequence* list = nullptr) {
        forms::Application::instance().startAfresh();  // closing the only form ended the program
        if (list != nullptr) {
            form().follow(*list);
        }
        run.empty() ? form().editNew() : form().edit(run);
        form().showForm();
        return form();
    }
};
