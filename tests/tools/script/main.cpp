#include <gtest/gtest.h>

#include "platform/forms/application.h"

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    testing::InitGoogleTest(&argc, argv);
    forms::Application application(argc, argv);
    application.setApplicationName("Test Program");
    return RUN_ALL_TESTS();
}
