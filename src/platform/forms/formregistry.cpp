#include "platform/forms/formregistry.h"

#include <algorithm>

#include "platform/base/text.h"

namespace forms {

namespace {

/// A form that stands beside the others ends with them, and is never the one in front.
bool keepsProgramAlive(const Form& form) { return form.testAttribute(Qt::WA_QuitOnClose); }

}  // namespace

FormRegistry& FormRegistry::instance() {
    // Never destroyed: where the toolkit itself exits (its display is gone), no form can be closed.
    static auto* registry = new FormRegistry;
    return *registry;
}

FormRegistry::~FormRegistry() = default;

bool FormRegistry::usable(const Form& form) { return form.state_ != Form::State::Unloaded; }

Form* FormRegistry::find(std::string_view name) const {
    const auto found = std::find_if(forms_.begin(), forms_.end(), [&](const auto& form) {
        return form->isLoaded() && base::equalsNoCase(form->name(), name);
    });
    return found == forms_.end() ? nullptr : found->get();
}

std::vector<Form*> FormRegistry::loaded() const {
    std::vector<Form*> all;
    for (const auto& form : forms_) {
        if (form->isLoaded()) {
            all.push_back(form.get());
        }
    }
    return all;
}

void FormRegistry::unloadAll() {
    unloadingAll_ = true;
    for (std::size_t i = forms_.size(); i > 0; --i) {
        forms_[i - 1]->unload();
    }
    unloadingAll_ = false;
}

void FormRegistry::destroyAll() {
    lastActive_ = nullptr;
    while (!forms_.empty()) {
        forms_.pop_back();
    }
}

void FormRegistry::activated(Form& form) {
    if (lastActive_ == &form || !keepsProgramAlive(form)) {
        return;
    }
    lastActive_ = &form;
    if (!form.isBusy()) {
        form.formActivate();
    }
}

void FormRegistry::giveUp(const Form& form) {
    if (lastActive_ == &form) {
        lastActive_ = nullptr;
    }
    Application::instance().whenIdle([this] { destroyUnloaded(); });
}

void FormRegistry::unloaded(const Form& form) {
    giveUp(form);
    Application& application = Application::instance();
    if (unloadingAll_ || application.ending()) {
        return;
    }
    if (QWidget* owner = form.parentWidget(); owner != nullptr && owner->isVisible()) {
        owner->activateWindow();
        return;
    }
    const std::vector<Form*> left = loaded();
    if (std::none_of(left.begin(), left.end(),
                     [](const Form* one) { return one->isVisible() && keepsProgramAlive(*one); })) {
        application.endProgram(0);
    }
}

void FormRegistry::destroyUnloaded() {
    std::erase_if(forms_, [](const auto& form) { return !usable(*form); });
}

}  // namespace forms
