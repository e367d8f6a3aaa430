#include "platform/forms/operation.h"

#include <QAbstractButton>
#include <QLabel>
#include <QProgressBar>
#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "platform/controls/qtext.h"
#include "platform/forms/timer.h"

namespace forms {

namespace {

constexpr int TurnMs = 33;
bool slicesEndAtOnce = false;

}  // namespace

bool WorkSlice::isOver() const { return slicesEndAtOnce || clock_.elapsed() >= milliseconds_; }

void WorkSlice::endAllAtOnce(bool atOnce) { slicesEndAtOnce = atOnce; }

BusyCursor::BusyCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }

BusyCursor::~BusyCursor() { QApplication::restoreOverrideCursor(); }

void OperationPanel::clear() const {
    if (timer != nullptr) {
        timer->setEnabled(false);
    }
    for (QProgressBar* bar : bars) {
        bar->hide();
    }
    if (status != nullptr) {
        status->setText(idleText);
        status->hide();
    }
}

Form::Operation::Operation(Form& form, OperationPanel panel)
    : form_(&form), panel_(std::move(panel)), untilYield_(TurnMs) {
    if (form.isBusy()) {
        throw std::logic_error("A long operation of this form is running already.");
    }
    form.busy_ = true;
    focused_.emplace_back(form.focusWidget());
    cancel_ = form.cancel_;
    for (QWidget* control : form.findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        disable(control);
    }
    disableAround();
    show();
}

void Form::Operation::show() {
    panel_.clear();
    for (QProgressBar* bar : panel_.bars) {
        bar->setRange(0, 100);
        bar->setValue(0);
        bar->show();
    }
    if (panel_.status != nullptr) {
        panel_.status->show();
    }
    if (QAbstractButton* stop = panel_.stop; stop != nullptr) {
        hidesStop_ = stop->isHidden();
        stop->show();
        stop->setEnabled(true);
        form_->cancel_ = stop;
        QObject::connect(stop, &QAbstractButton::clicked, &context_, [this] { stopped_ = true; });
    }
}

void Form::Operation::disable(QWidget* control) {
    if (control == panel_.stop || control->isWindow() ||
        qobject_cast<QProgressBar*>(control) != nullptr ||
        qobject_cast<QLabel*>(control) != nullptr) {
        return;
    }
    if (panel_.stop != nullptr && control->isAncestorOf(panel_.stop)) {
        for (QWidget* inner : control->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
            disable(inner);
        }
        return;
    }
    if (control->isEnabled()) {
        control->setEnabled(false);
        disabled_.emplace_back(control);
    }
}

/// Whole forms: what their own procedures enable or disable meanwhile stays so.
void Form::Operation::disableAround() {
    for (Form* form : form_->usableBeside()) {
        if (form->isEnabled()) {
            focused_.emplace_back(form->focusWidget());
            form->setEnabled(false);
            disabled_.emplace_back(form);
        }
    }
    form_->setEnabled(true);  // an owner takes what it owns with it
}

void Form::Operation::showIdle() {
    if (panel_.stop != nullptr) {
        panel_.stop->setEnabled(false);
        panel_.stop->setHidden(hidesStop_);
    }
    if (panel_.timer != nullptr) {
        panel_.timer->startOnce(panel_.clearAfterMs);
    }
}

Form::Operation::~Operation() {
    for (const QPointer<QWidget>& control : disabled_) {
        if (control) {
            control->setEnabled(true);
        }
    }
    if (form_) {
        showIdle();
        form_->cancel_ = cancel_;
        form_->busy_ = false;
    }
    for (const QPointer<QWidget>& control : focused_) {
        if (control) {
            control->setFocus();
        }
    }
}

void Form::Operation::progress(double percent) {
    if (!panel_.bars.empty()) {
        panel_.bars.front()->setValue(
            static_cast<int>(std::lround(std::clamp(percent, 0.0, 100.0))));
    }
}

void Form::Operation::status(const std::string& text) {
    if (panel_.status != nullptr) {
        panel_.status->setText(controls::toQt(text));
    }
}

bool Form::Operation::yield() {
    if (untilYield_.isOver()) {
        Application::instance().yield();
        untilYield_.restart();
    }
    return stopped_;
}

void hideInPlace(QWidget& control) {
    QSizePolicy policy = control.sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    control.setSizePolicy(policy);
    control.hide();
}

}  // namespace forms
