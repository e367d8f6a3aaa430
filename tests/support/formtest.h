#pragma once

#include "platform/controls/layoutmemory.h"
#include "platform/forms/formregistry.h"
#include "support/controls.h"
#include "support/districtsession.h"

namespace support {

/// A form at work in a session. The test says which form it is, and what stands in its district:
///
///     class MergeRunForm : public support::FormTest<> {
///     protected:
///         MergeRunForm() : FormTest(fillMerge) { form().receive("TO"); }
///         groupops::MergeRun& form() override { return made<groupops::MergeRun>(); }
///     };
///     TEST_F(MergeRunForm, TellsOfARunThatIsNotThere) {
///         type("cmbRUN", "NONE");
///         click("Merge");
///         EXPECT_EQ(lastTitle(), "Run Not Found");
///     }
///
/// `Session` is what the form works in, where that is more than a district.
template <class Session = DistrictSession>
class FormTest : public Session, public Controls {
protected:
    template <class... Arguments>
    explicit FormTest(Arguments&&... arguments) : Session(std::forward<Arguments>(arguments)...) {
        forms::Application::instance().startAfresh();
    }
    /// Forms go while what they were given is still there.
    void TearDown() override {
        forms::FormRegistry::instance().destroyAll();
        forms::Application::instance().startAfresh();
        controls::LayoutMemory::instance().forget();
    }

    /// The only form of that class, made if there is none; loaded() also fills it.
    template <class Form, class... Arguments>
    static Form& made(Arguments&&... arguments) {
        return forms::FormRegistry::instance().make<Form>(std::forward<Arguments>(arguments)...);
    }
    template <class Form, class... Arguments>
    static Form& loaded(Arguments&&... arguments) {
        return forms::FormRegistry::instance().load<Form>(std::forward<Arguments>(arguments)...);
    }
    /// The loaded form of that name; null without one.
    static forms::Form* opened(const char* name) {
        return forms::FormRegistry::instance().find(name);
    }
    static bool ending() { return forms::Application::instance().ending(); }
};

}  // namespace support
