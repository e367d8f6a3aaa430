#include <gtest/gtest.h>

#include "platform/forms/application.h"

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    forms::Application application(argc, argv);
    return RUN_ALL_TESTS();
}
