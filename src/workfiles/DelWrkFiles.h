#pragma once

#include <memory>

#include "platform/forms/timer.h"
#include "startup/forms/trappedform.h"
#include "workfiles/cleanup.h"

namespace Ui {
class DelWrkFiles;
}

namespace workfiles {

/// Deletes the work files of the runs that were handed to the map program, and keeps trying while
/// the map program holds them. Ends the program when all are gone, or when it has tried long
/// enough.
class DelWrkFiles : public startup::TrappedForm {
    Q_OBJECT

public:
    DelWrkFiles();
    ~DelWrkFiles() override;

    void DelFile_Click();
    void SetFile_Click();

protected:
    void Form_Load() override;
    bool Form_QueryUnload() override;

private:
    void Timer1_Timer();
    void showFiles(const QString& status);

    std::unique_ptr<Ui::DelWrkFiles> ui_;
    forms::Timer Timer1;
    CleanUp cleanUp_;
    std::vector<RunFile> shown_;
    int ticks_ = 0;
};

}  // namespace workfiles
