#include <gtest/gtest.h>

#include "platform/forms/application.h"
#include "platform/forms/look.h"

/// The main function of every test with forms or controls.
int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    testing::InitGoogleTest(&argc, argv);
    forms::Application application(argc, argv);
    application.setApplicationName("Test Program");
    forms::applyLook(application, forms::Scheme::Light);
    return RUN_ALL_TESTS();
}
