#include <optional>

#include <gtest/gtest.h>

#include "platform/forms/application.h"
#include "platform/forms/look.h"
#include "platform/forms/screenless.h"

/// The main function of every test with forms or controls.
int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    testing::InitGoogleTest(&argc, argv);
    std::optional<forms::ScreenlessScreen> screen(std::in_place, QSize(1024, 768));
    forms::Application application(argc, argv);
    screen.reset();
    application.setApplicationName("Test Program");
    forms::applyLook(application, forms::Scheme::Light);
    return RUN_ALL_TESTS();
}
