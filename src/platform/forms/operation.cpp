#include "platform/forms/operation.h"

#include <QAbstractButton>
#include <QLabel>
#include <QProgressBar>
#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "platform/controls/qtext.h"

namespace forms {

namespace {

constexpr int TurnMs = 33;
bool slicesEndAtOnce = false;

}  // namespace

bool WorkSlice::isOver() const { return slicesEndAtOnce || clock_.elapsed() >= milliseconds_; }

void WorkSlice::endAllAtOnce(bool atOnce) { slicesEndAtOnce = atOnce; }

BusyCursor::BusyCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }

BusyCursor::~BusyCursor() { QApplication::restoreOverrideCursor(); }

Form::Operation::Operation(Form& form, QWidget* stop) : form_(&form) {
    if (form.busy_) {
        throw std::logic_error("A long operation of this form is running already.");
    }
    form.busy_ = true;
    focus_ = form.focusWidget();
    for (QWidget* control : form.findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
        disable(control, stop);
    }
    if (stop != nullptr) {
        stop->setEnabled(true);
    }
}

void Form::Operation::disable(QWidget* control, const QWidget* stop) {
    if (control == stop || control->isWindow() || qobject_cast<QProgressBar*>(control) != nullptr ||
        qobject_cast<QLabel*>(control) != nullptr) {
        return;
    }
    if (stop != nullptr && control->isAncestorOf(stop)) {
        for (QWidget* inner : control->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
            disable(inner, stop);
        }
        return;
    }
    if (control->isEnabled()) {
        control->setEnabled(false);
        disabled_.emplace_back(control);
    }
}

Form::Operation::~Operation() {
    for (const QPointer<QWidget>& control : disabled_) {
        if (control) {
            control->setEnabled(true);
        }
    }
    if (form_) {
        form_->busy_ = false;
    }
    if (focus_) {
        focus_->setFocus();
    }
}

void hideInPlace(QWidget& control) {
    QSizePolicy policy = control.sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    control.setSizePolicy(policy);
    control.hide();
}

Progress::Progress(QProgressBar* bar, QLabel* status, QAbstractButton* stop)
    : bar_(bar), status_(status), untilYield_(TurnMs) {
    if (bar_ != nullptr) {
        bar_->setRange(0, 100);
        bar_->setValue(0);
    }
    if (stop != nullptr) {
        QObject::connect(stop, &QAbstractButton::clicked, &context_, [this] { stopped_ = true; });
    }
}

void Progress::progress(double percent) {
    if (bar_ != nullptr) {
        bar_->setValue(static_cast<int>(std::lround(std::clamp(percent, 0.0, 100.0))));
    }
}

void Progress::status(const std::string& text) {
    if (status_ != nullptr) {
        status_->setText(controls::toQt(text));
    }
}

bool Progress::yield() {
    if (untilYield_.isOver()) {
        Application::instance().yield();
        untilYield_.restart();
    }
    return stopped_;
}

}  // namespace forms
