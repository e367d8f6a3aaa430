#pragma once

#include <QPushButton>
#include <QVBoxLayout>
#include <string>
#include <vector>

#include "platform/forms/form.h"
#include "platform/forms/formregistry.h"

/// A form that notes what happens to it.
class DemoForm : public forms::Form {
public:
    DemoForm(const char* name, std::vector<std::string>& log, Form* owner = nullptr)
        : Form(name, owner), log_(log) {
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(&button);
        layout->addWidget(&stop);
        on(&button, &QPushButton::clicked, [this] { onClick(); });
    }
    ~DemoForm() override { note("destroyed"); }

    void pages(QTabWidget& tabs) { pageKeys(tabs); }

    QPushButton button{"Go"};
    QPushButton stop{"Stop"};
    std::function<void()> onClick = [] {};
    std::function<void()> onLoad = [] {};
    bool mayClose = true;

protected:
    void formLoad() override {
        note("loaded");
        onLoad();
    }
    void formDress() override {
        if (isLoaded()) {
            note("dressed");
        }
    }
    void formActivate() override { note("activated"); }
    bool formQueryUnload() override { return mayClose; }
    void formUnload() override { note("unloaded"); }

private:
    void note(const char* what) { log_.push_back(name() + " " + what); }

    std::vector<std::string>& log_;
};

/// Further classes, so that all may be loaded at once.
class OtherForm : public DemoForm {
public:
    using DemoForm::DemoForm;
};
class ThirdForm : public DemoForm {
public:
    using DemoForm::DemoForm;
};
