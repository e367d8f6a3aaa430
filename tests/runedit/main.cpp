#include <gtest/gtest.h>

#include "platform/forms/application.h"
#include "platform/forms/look.h"

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    forms::Application application(argc, argv);
    forms::applyLook(application, forms::Scheme::Light);
    return RUN_ALL_TESTS();
}
