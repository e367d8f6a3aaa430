#pragma once

#include <QTest>
#include <QTimer>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/controls/layoutmemory.h"
#include "support/fakes.h"
#include "testform.h"

/// The one application of the test program, fresh for each test.
class FormsTest : public testing::Test {
protected:
    FormsTest() { app().startAfresh(); }
    ~FormsTest() override {
        app().startAfresh();
        controls::LayoutMemory::instance().forget();
    }

    static forms::Application& app() { return forms::Application::instance(); }
    static forms::FormRegistry& registry() { return forms::FormRegistry::instance(); }
    DemoForm& shown(const char* name, forms::Form* owner = nullptr) {
        auto& form = registry().load<DemoForm>(name, log, owner);
        form.showForm();
        waitUntilActive(form);
        return form;
    }
    OtherForm& otherShown(const char* name, forms::Form* owner) {
        auto& form = registry().load<OtherForm>(name, log, owner);
        form.showForm();
        waitUntilActive(form);
        return form;
    }
    static void waitUntilActive(const QWidget& form) {
        // A window counts as active in the toolkit's own wait as soon as its owner is.
        EXPECT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == &form; }));
    }
    static void settle() {
        for (int turn = 0; turn < 5; ++turn) {
            QCoreApplication::processEvents();
        }
    }

    std::vector<std::string> log;
    support::FakeBoxes recorded;
};
