#pragma once

#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/base/ports.h"
#include "platform/forms/form.h"

namespace forms {

/// Every form of the program by its name. It owns the forms: an unloaded form is destroyed when no
/// procedure is running any more, the others after the event loop.
class FormRegistry : public base::FormRegistryPort {
public:
    static FormRegistry& instance();
    ~FormRegistry() override;

    /// The form of that class, made if there is none; a form just made is not loaded yet.
    template <class T, class... Arguments>
    T& make(Arguments&&... arguments) {
        for (const auto& form : forms_) {
            if (auto* known = dynamic_cast<T*>(form.get()); known != nullptr && usable(*known)) {
                return *known;
            }
        }
        forms_.push_back(std::make_unique<T>(std::forward<Arguments>(arguments)...));
        return static_cast<T&>(*forms_.back());
    }

    /// The same, loaded. Raises what its loading raises; such a form is given up.
    template <class T, class... Arguments>
    T& load(Arguments&&... arguments) {
        T& form = make<T>(std::forward<Arguments>(arguments)...);
        form.load();
        return form;
    }

    /// The loaded form of that name, without regard to case; null if there is none.
    [[nodiscard]] Form* find(std::string_view name) const;
    /// The loaded forms in the order of their loading.
    [[nodiscard]] std::vector<Form*> loaded() const;
    /// The form that was active last; null if there is none.
    [[nodiscard]] Form* lastActive() const { return lastActive_; }

    void unloadAll() override;
    /// Destroys every form, loaded or not; no procedure may be running.
    void destroyAll();

private:
    friend class Form;

    static bool usable(const Form& form);
    void activated(Form& form);
    void unloaded(const Form& form);
    void giveUp(const Form& form);
    void destroyUnloaded();

    std::vector<std::unique_ptr<Form>> forms_;
    Form* lastActive_ = nullptr;
    bool unloadingAll_ = false;
};

}  // namespace forms
