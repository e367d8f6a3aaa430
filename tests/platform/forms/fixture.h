#pragma once

#include <QTest>
#include <QTimer>
#include <deque>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/base/ports.h"
#include "platform/controls/layoutmemory.h"
#include "testform.h"

/// Records the boxes and gives each its default answer.
class RecordedBoxes : public base::MsgBoxPort {
public:
    base::MsgAnswer show(const base::MsgRequest& request) override {
        boxes.push_back(request);
        return base::defaultAnswer(request);
    }
    std::vector<base::MsgRequest> boxes;
};

/// The one application of the test program, fresh for each test.
class FormsTest : public testing::Test {
protected:
    FormsTest() {
        app().startAfresh();
        desktopBoxes_ = base::ports().msgBox;
        base::ports().msgBox = &recorded;
    }
    ~FormsTest() override {
        app().startAfresh();
        base::ports().msgBox = desktopBoxes_;
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
    RecordedBoxes recorded;

private:
    base::MsgBoxPort* desktopBoxes_;
};
